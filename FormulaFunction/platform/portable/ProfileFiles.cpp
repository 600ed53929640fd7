// The profile functions over files: read the whole file, answer from its text,
// and replace it whole when writing.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "FormulaFunction/platform/portable/ProfileEmulation.h"

namespace ffplatform {
namespace emulated {

namespace {

namespace fs = std::filesystem;

// The text up to an embedded NUL, which is all a C string would carry.
std::string AsCString(const std::string& s) { return std::string(s.c_str()); }

// False when the file cannot be opened or read (missing, a folder, no access).
bool ReadWholeFile(const std::string& path, std::string& text) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    text.clear();
    char chunk[4096];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0) text.append(chunk, n);
    const bool ok = std::ferror(file) == 0;
    std::fclose(file);
    return ok;
}

// A name beside `path` that no file has yet, for the new contents.
std::string TemporarySibling(const std::string& path) {
    static uint32_t counter = 0;
    const auto ticks = static_cast<uint64_t>(
        std::chrono::steady_clock::now().time_since_epoch().count());
    std::string name;
    for (int attempt = 0; attempt < 64; ++attempt) {
        const uint32_t tag = static_cast<uint32_t>(ticks ^ (ticks >> 32)) + 2654435761u * ++counter;
        char suffix[16];
        std::snprintf(suffix, sizeof suffix, ".~%08x", static_cast<unsigned>(tag));
        name = path + suffix;
        std::error_code ec;
        if (!fs::exists(name, ec) && !ec) break;
    }
    return name;
}

// Writes the new contents to a temporary file beside the old one and renames it
// over the old, so that a process dying midway leaves the old file whole. A
// symbolic link is followed so that the link itself survives; a read-only file
// is refused, as a rename would otherwise slip past its protection.
bool ReplaceFile(const std::string& path, const std::string& text) {
    std::error_code ec;
    std::string target = path;
    if (fs::is_symlink(path, ec)) {
        const fs::path resolved = fs::canonical(path, ec);
        if (ec) return false;
        target = resolved.string();
    }
    const fs::file_status old = fs::status(target, ec);
    const bool replacing = !ec && fs::exists(old);
    if (replacing && (old.permissions() & fs::perms::owner_write) == fs::perms::none) return false;
    const std::string temp = TemporarySibling(target);
    std::FILE* file = std::fopen(temp.c_str(), "wb");
    if (file == nullptr) return false;
    bool ok = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    ok = std::fflush(file) == 0 && ok;
    ok = std::fclose(file) == 0 && ok;
    if (ok) {
        if (replacing) fs::permissions(temp, old.permissions(), ec);
        fs::rename(temp, target, ec);
        ok = !ec;
    }
    if (!ok) std::remove(temp.c_str());
    return ok;
}

}  // namespace

uint32_t ProfileGetInt(const std::string& section, const std::string& key,
                       int32_t defaultValue, const std::string& path) {
    std::string text;
    if (ReadWholeFile(AsCString(path), text)) {
        const auto value = FindProfileValue(text, AsCString(section), AsCString(key));
        if (value) {
            const std::string copied = CopyProfileValue(*value, kProfileIntBuffer);
            if (!copied.empty()) return ParseProfileInt(copied);
        }
    }
    return static_cast<uint32_t>(defaultValue);
}

std::string ProfileGetString(const std::string& section, const std::string& key,
                             const std::string& defaultValue, const std::string& path) {
    std::string text;
    if (ReadWholeFile(AsCString(path), text)) {
        const auto value = FindProfileValue(text, AsCString(section), AsCString(key));
        if (value) return CopyProfileValue(*value, kProfileStringBuffer);
    }
    return CopyProfileDefault(AsCString(defaultValue), kProfileStringBuffer);
}

// A file that is there but cannot be read is left alone rather than replaced by
// one holding only the new key.
bool ProfileWriteString(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& path) {
    const std::string file = AsCString(path);
    if (file.empty()) return false;
    std::string text;
    if (!ReadWholeFile(file, text)) {
        std::error_code ec;
        if (fs::exists(file, ec) || ec) return false;
        text.clear();
    }
    return ReplaceFile(file, SetProfileValue(text, AsCString(section), AsCString(key),
                                             AsCString(value)));
}

}  // namespace emulated
}  // namespace ffplatform
