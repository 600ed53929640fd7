// A fresh folder under the system's temporary folder, removed with everything in
// it when the test ends, and the settings the output functions read, restored
// afterwards.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "FormulaFunction/FormulaFunction.h"

namespace outputtest {

class TempRoot {
public:
    TempRoot() {
        static std::atomic<int> counter{0};
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        path_ = std::filesystem::temp_directory_path() /
                ("ff_output_" + std::to_string(stamp) + "_" + std::to_string(counter++));
        std::filesystem::create_directories(path_);
    }
    ~TempRoot() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::string str() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

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
