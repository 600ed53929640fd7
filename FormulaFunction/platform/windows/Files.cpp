// File deletion through the Windows API.
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

bool RemoveFile(const std::string& path) { return DeleteFileA(path.c_str()) != FALSE; }

}  // namespace ffplatform
