// Private-profile (INI) files through the Windows API itself.
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

namespace {
// The buffer the library reads profile strings into: at most 259 characters and
// the terminating NUL come back.
constexpr DWORD kProfileBufferSize = 260;
}  // namespace

uint32_t ProfileGetInt(const std::string& section, const std::string& key,
                       int32_t defaultValue, const std::string& path) {
    return static_cast<uint32_t>(
        GetPrivateProfileIntA(section.c_str(), key.c_str(), defaultValue, path.c_str()));
}

std::string ProfileGetString(const std::string& section, const std::string& key,
                             const std::string& defaultValue, const std::string& path) {
    char buffer[kProfileBufferSize] = {};
    const DWORD length = GetPrivateProfileStringA(section.c_str(), key.c_str(),
                                                  defaultValue.c_str(), buffer,
                                                  kProfileBufferSize, path.c_str());
    return std::string(buffer, length < kProfileBufferSize ? length : kProfileBufferSize - 1);
}

bool ProfileWriteString(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& path) {
    return WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(),
                                      path.c_str()) != FALSE;
}

}  // namespace ffplatform
