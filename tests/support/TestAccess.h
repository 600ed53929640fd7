// The one route by which tests reach private members of CSystemFuncs. Each helper
// forwards to the member of the same name.
#pragma once

#include "FormulaFunction/FormulaFunction.h"

struct CSystemFuncsTestAccess {
    static bool LastestBar(CSystemFuncs& f) { return f.LastestBar(); }
};
