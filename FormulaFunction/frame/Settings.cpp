// The process-wide settings and the library's entry and exit.
#include "FormulaFunction/Settings.h"

#include "FormulaFunction/platform/Platform.h"

CSubscibeManage* g_pSubscribeManage = nullptr;
std::string g_strRootPath;
std::string g_strUserName;
uint32_t g_bUseFileProfile = 0;
std::map<std::string, uint16_t> g_mapFuncNameToId;

namespace {

// A text the host hands over; a null pointer stands for the empty text.
std::string HostText(const char* text) { return text != nullptr ? std::string(text) : std::string(); }

}  // namespace

// Takes over the host's context, reads whether profile strings live in a plain INI
// file, and adds the catalogue's names to the name map. The handle is not used. The
// map is not cleared first: a second Init adds to what the first one found, and a
// name already present keeps the number it was first given.
int FormulaFunction_Init(uintptr_t /*handle*/, CSubscibeManage* manager, const char* rootPath,
                         const char* userName) {
    g_pSubscribeManage = manager;
    g_strRootPath = HostText(rootPath);
    g_strUserName = HostText(userName);

    g_bUseFileProfile = 0;
    const std::string profilePath = g_strRootPath + "\\User\\" + g_strUserName + "\\profile.ini";
    g_bUseFileProfile =
        ffplatform::ProfileGetInt("Corvane", "bUseFileProfile", 0, ffplatform::NativePath(profilePath));

    std::vector<SysFuncInfo> functions;
    GetSysFunctionList(functions);
    for (const SysFuncInfo& function : functions)
        g_mapFuncNameToId.emplace(function.strName, function.wFuncId);
    return 1;
}

// Switches the user whose folder later paths lead to. The profile flag is not read
// again: it keeps the value read for the user of Init.
void FormulaFunction_ChangeUser(const char* userName) { g_strUserName = HostText(userName); }

// Nothing to release: the settings live until the library is unloaded.
void FormulaFunction_Exit() {}
