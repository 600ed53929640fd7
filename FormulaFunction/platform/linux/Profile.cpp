// Private-profile files: this system has no profile functions of its own, so the
// portable reproduction of the Windows ones serves, over the path made native.
#include "FormulaFunction/platform/Platform.h"
#include "FormulaFunction/platform/portable/ProfileEmulation.h"

namespace ffplatform {

uint32_t ProfileGetInt(const std::string& section, const std::string& key,
                       int32_t defaultValue, const std::string& path) {
    return emulated::ProfileGetInt(section, key, defaultValue, NativePath(path));
}

std::string ProfileGetString(const std::string& section, const std::string& key,
                             const std::string& defaultValue, const std::string& path) {
    return emulated::ProfileGetString(section, key, defaultValue, NativePath(path));
}

bool ProfileWriteString(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& path) {
    return emulated::ProfileWriteString(section, key, value, NativePath(path));
}

}  // namespace ffplatform
