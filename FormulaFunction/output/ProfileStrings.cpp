// Named texts that outlive a formula run, kept either in the user's INI file or in
// the platform's configuration table, as the user's profile chose at start-up.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/output/OutputValues.h"
#include "FormulaFunction/platform/Platform.h"

namespace {

const char kProfileTable[] = "tblprofile";

// Built with backslashes from the current root and user, so a change of user
// takes effect on the next call.
std::string ProfileFilePath() {
    return ffplatform::NativePath(g_strRootPath + "\\User\\" + g_strUserName +
                                  "\\Formula\\tblprofile.ini");
}

}  // namespace

// The configuration table reports nothing about a write, so a write through it
// counts as done; without a manager there is nowhere to write.
bool CSystemFuncs::SetOstraProfileString(const std::string& section, const std::string& key,
                                         const std::string& value) {
    if (g_bUseFileProfile != 0)
        return ffplatform::ProfileWriteString(section, key, value, ProfileFilePath());
    if (g_pSubscribeManage == nullptr) return false;
    g_pSubscribeManage->SetConfigFileProperty(kProfileTable, section, key, value);
    return true;
}

// A key never written reads "N/A" from the file but the empty text from the
// configuration table; the table's own answer about success is not consulted.
std::string CSystemFuncs::GetOstraProfileString(const std::string& section,
                                                const std::string& key) {
    if (g_bUseFileProfile != 0)
        return ffplatform::ProfileGetString(section, key, ff::kInvalidString,
                                            ProfileFilePath());
    std::string value;
    if (g_pSubscribeManage != nullptr)
        g_pSubscribeManage->GetConfigFileProperty(kProfileTable, section, key, value);
    return value;
}
