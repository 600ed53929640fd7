// The process-wide settings and the five plain exports of the library.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "FormulaFunction/Export.h"
#include "host/KelTypes.h"
#include "host/SubscibeManage.h"

// Written only by FormulaFunction_Init and FormulaFunction_ChangeUser.
FF_API extern CSubscibeManage* g_pSubscribeManage;
FF_API extern std::string g_strRootPath;
FF_API extern std::string g_strUserName;
FF_API extern uint32_t g_bUseFileProfile;
FF_API extern std::map<std::string, uint16_t> g_mapFuncNameToId;

extern "C" {
FF_API int FormulaFunction_Init(uintptr_t handle, CSubscibeManage* manager,
                                const char* rootPath, const char* userName);
FF_API void FormulaFunction_ChangeUser(const char* userName);
FF_API void FormulaFunction_Exit();
}

// Plain (unmangled) exports that hand C++ containers to the host; both sides are
// built with the same compiler and standard library.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" {
FF_API void GetSysFunctionList(std::vector<SysFuncInfo>& list);
FF_API void GetFuncGroupList(std::vector<FuncGroupInfo>& list);
}
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
