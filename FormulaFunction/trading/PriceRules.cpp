// Price rules of the simulated trading engine: whether the bar being evaluated is
// the newest one.
#include "FormulaFunction/FormulaFunction.h"

// True when the bar being evaluated is the newest bar of the main chart.
bool CSystemFuncs::LastestBar() {
    if (m_pBaseData == nullptr) return false;
    return static_cast<int64_t>(m_pBaseData->CurrentBar) == static_cast<int64_t>(BarCount()) - 1;
}
