// Paths are built with backslashes; systems whose separator is '/' get each
// backslash turned into '/' just before the file is opened.
#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

std::string NativePath(const std::string& builtPath) {
#if defined(_WIN32)
    return builtPath;
#else
    std::string path = builtPath;
    for (char& c : path)
        if (c == '\\') c = '/';
    return path;
#endif
}

}  // namespace ffplatform
