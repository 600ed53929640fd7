#include <cstdio>

#include "runner/ProgressBar.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace ffrunner {

bool StandardErrorIsTerminal() {
#if defined(_WIN32)
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(fileno(stderr)) != 0;
#endif
}

}  // namespace ffrunner
