// A fresh folder under the system's temporary folder, removed with everything in it
// when the object goes.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

class TempFolder {
public:
    TempFolder() {
        std::random_device random;
        const auto base = std::filesystem::temp_directory_path();
        for (;;) {
            path_ = base / ("ff-test-" + std::to_string(random()) + "-" + std::to_string(random()));
            if (std::filesystem::create_directory(path_)) break;
        }
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::string String() const { return path_.string(); }

    // The full name of the file `name` in the folder.
    std::string File(const std::string& name) const { return (path_ / name).string(); }

    // Writes `bytes` to the file at `relative`, creating the folders on the way.
    std::string Write(const std::string& relative, const std::string& bytes) const {
        const std::filesystem::path file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return file.string();
    }

    // The whole content of the file at `relative`, or "" when it cannot be read.
    std::string Read(const std::string& relative) const {
        std::ifstream in(path_ / relative, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    std::filesystem::path path_;
};
