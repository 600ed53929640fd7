// File deletion.
#include <cstdio>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

bool RemoveFile(const std::string& path) { return std::remove(path.c_str()) == 0; }

}  // namespace ffplatform
