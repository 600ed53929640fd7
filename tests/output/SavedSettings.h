// Restores the process-wide settings that the output tests change, and reads a
// file the way a formula's text file is read.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "FormulaFunction/FormulaFunction.h"

namespace outputtest {

class SavedSettings {
public:
    SavedSettings()
        : manager_(g_pSubscribeManage), root_(g_strRootPath), user_(g_strUserName),
          useFile_(g_bUseFileProfile) {}
    ~SavedSettings() {
        g_pSubscribeManage = manager_;
        g_strRootPath = root_;
        g_strUserName = user_;
        g_bUseFileProfile = useFile_;
    }
    SavedSettings(const SavedSettings&) = delete;
    SavedSettings& operator=(const SavedSettings&) = delete;

private:
    CSubscibeManage* manager_;
    std::string root_, user_;
    uint32_t useFile_;
};

// The whole file read in text mode, so that a line ends in '\n' on every system.
inline std::string ReadText(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

}  // namespace outputtest
