// File deletion. unlink, unlike remove, refuses a folder, as deleting a file on
// Windows does.
#include <unistd.h>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

bool RemoveFile(const std::string& path) { return ::unlink(NativePath(path).c_str()) == 0; }

}  // namespace ffplatform
