// The command line of ffcatalog, apart from main() so that tests can run it in-process.
#pragma once

#include <string>
#include <vector>

namespace ffcatalog {

// Exit statuses.
constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;  // unreadable input, malformed source, unwritable output
constexpr int kExitUsage = 2;    // a command line that cannot be understood

// Runs the tool on `args` (the arguments after the program name). What belongs on
// standard output is appended to `out`, messages to `err`. Returns the exit status.
int RunCommandLine(const std::vector<std::string>& args, std::string& out, std::string& err);

// The text of --help.
const char* HelpText();

}  // namespace ffcatalog
