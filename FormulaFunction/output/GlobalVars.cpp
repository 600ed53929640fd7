// Numbered numeric variables held by the host, shared by everything that uses the
// same host data object. The host fixes their number; the library never resizes.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/output/OutputValues.h"

bool CSystemFuncs::SetGlobalVar(int32_t index, double value) {
    if (m_pBaseData == nullptr) return false;
    std::vector<double>& vars = m_pBaseData->GlobalVars;
    if (index < 0 || static_cast<size_t>(index) >= vars.size()) return false;
    vars[static_cast<size_t>(index)] = value;
    return true;
}

double CSystemFuncs::GetGlobalVar(int32_t index) {
    if (m_pBaseData == nullptr) return ff::kInvalidNumeric;
    const std::vector<double>& vars = m_pBaseData->GlobalVars;
    if (index < 0 || static_cast<size_t>(index) >= vars.size()) return ff::kInvalidNumeric;
    return vars[static_cast<size_t>(index)];
}
