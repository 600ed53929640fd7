// The one route by which tests reach private members of CSystemFuncs. Each helper
// forwards to the member of the same name.
#pragma once

#include "FormulaFunction/FormulaFunction.h"

struct CSystemFuncsTestAccess {
    // Bar access.
    static double RealHigh(CSystemFuncs& f, int32_t offset) { return f.RealHigh(offset); }
    static double RealLow(CSystemFuncs& f, int32_t offset) { return f.RealLow(offset); }

    // Properties.
    static bool GetPropertys(CSystemFuncs& f, int32_t id, tagKelDataType& value) {
        return f.GetPropertys(id, value);
    }
    static bool CurrentSymbol(CSystemFuncs& f, tagSymbol& symbol) { return f.CurrentSymbol(symbol); }
    static int32_t MarginMode(CSystemFuncs& f) { return f.MarginMode(); }

    // Prices.
    static bool LastestBar(CSystemFuncs& f) { return f.LastestBar(); }
    static bool GetValidPrice(CSystemFuncs& f, bool up, double& price) {
        return f.GetValidPrice(up, price);
    }
};
