// ffcatalog: prints and builds catalogue files. See Commands.h and README.md.
#include <cstdio>
#include <string>
#include <vector>

#include "tools/ffcatalog/Commands.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    std::string out;
    std::string err;
    const int status = ffcatalog::RunCommandLine(args, out, err);
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fflush(stdout);
    std::fwrite(err.data(), 1, err.size(), stderr);
    return status;
}
