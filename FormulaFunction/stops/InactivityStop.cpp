// The inactivity stop: leave at the close when the price has not moved far enough
// from the entry, either way, within the last few bars.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/stops/StopRules.h"

// A look-back of 0 bars is taken as 1. The window of the last `bars` bars is the
// same for every entry, so it is read once; when it would begin before the first
// bar, no entry is old enough to be judged.
bool CSystemFuncs::SetInactivate(int32_t nMode, double dAmount, int32_t nBars,
                                 bool bWholePosition) {
    if (nBars < 0) return false;
    StopContext stop;
    if (!PrepareStop(nMode, dAmount, stop)) return false;
    stop.bars = nBars == 0 ? 1 : nBars;
    const int64_t windowStart = static_cast<int64_t>(stop.current) - stop.bars + 1;
    if (windowStart < 0) return false;
    ScanExtremes(static_cast<int32_t>(windowStart), false, stop.windowHigh, stop.windowLow);
    return ApplyStop(bWholePosition, false, stop, &CSystemFuncs::InactivityHit);
}

// Judged only once the entry is at least `bars` bars old. The gain level is where the
// subject gains the amount, the loss level where it loses it (mode 1: per contract).
// A long has been active when the window's high reached the gain level above the
// entry or its low the loss level below; a short is the mirror image, with the gain
// level below the entry reached by the low and the loss level above it by the high.
bool CSystemFuncs::InactivityHit(const StopContext& stop, double& fill) {
    if (!stop.EntryBarInRange()) return false;
    if (static_cast<int64_t>(stop.current) - stop.entryBar < stop.bars) return false;
    const double contracts = stop.mode == 0 ? stop.SignedLots() : (stop.isLong ? 1.0 : -1.0);
    const double gainLevel = GetMarginCallPrice(-stop.amount, stop.price, contracts);
    const double lossLevel = GetMarginCallPrice(stop.amount, stop.price, contracts);
    const bool active = stop.isLong
                            ? stop.windowHigh >= gainLevel || stop.windowLow <= lossLevel
                            : stop.windowLow <= gainLevel || stop.windowHigh >= lossLevel;
    if (active) return false;
    fill = stop.bar.close;
    return true;
}
