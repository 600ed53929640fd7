// State a CSystemFuncs keeps besides what the host sees. Every member is derived
// from the host data object or PropertyCache, may be dropped at any moment without
// changing a result, and is rebuilt when its inputs change.
#pragma once

#include "FormulaFunction/bars/LocalDayCache.h"
#include "FormulaFunction/market/CachedValueSlots.h"
#include "FormulaFunction/stops/BarStretchCache.h"
#include "FormulaFunction/statistics/RunningTradeFigures.h"

struct DerivedCaches {
    LocalDayCache LocalDays;
    CachedValueSlots Values;
    BarStretchCache Stretches;
    RunningTradeFigures TradeFigures;
};
