// Builds against the installed headers and library only.
#include <cstdio>

#include "FormulaFunction/FormulaFunction.h"

int main() {
    CKelBaseData data{};
    CStrategyResult result{};
    data.Result = &result;
    if (FormulaFunction_Init(0, nullptr, "/nonexistent-root", "nobody") != 1) return 1;
    CSystemFuncs funcs(&data);
    if (funcs.GetBaseData() != &data) return 1;
    if (g_strUserName != "nobody" || g_bUseFileProfile != 0) return 1;
    std::printf("consumer: %zu catalogue names\n", g_mapFuncNameToId.size());
    return 0;
}
