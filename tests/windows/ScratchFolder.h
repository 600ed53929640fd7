// A private folder under the system's temporary folder, removed with its contents
// when the object goes out of scope.
#pragma once

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

namespace fftest {

class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& purpose) {
        const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
        path_ = std::filesystem::temp_directory_path() /
                ("ff_" + purpose + "_" + std::to_string(ticks));
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    // The full path of a file in the folder, with the system's separators.
    std::string File(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

// The whole content of a file, or an empty text with `exists` false.
inline std::string ReadBytes(const std::string& path, bool* exists = nullptr) {
    std::string bytes;
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (exists) *exists = f != nullptr;
    if (!f) return bytes;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) bytes.append(buffer, n);
    std::fclose(f);
    return bytes;
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return;
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
}

}  // namespace fftest
