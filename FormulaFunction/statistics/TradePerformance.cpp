// Performance figures of each round trip as it is closed.
#include "FormulaFunction/FormulaFunction.h"

// filled in by the trade figures
void CSystemFuncs::CalcTradePerformance(bool, double&, double&, const tagTradeList&) {}
