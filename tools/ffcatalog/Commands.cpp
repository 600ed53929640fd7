// ffcatalog dump and ffcatalog build.
#include "tools/ffcatalog/Commands.h"

#include <cstdio>

#include "FormulaFunction/frame/Catalogue.h"
#include "tools/ffcatalog/CataloguePrinters.h"
#include "tools/ffcatalog/CatalogueSource.h"
#include "tools/ffcatalog/KindDetection.h"

namespace ffcatalog {

namespace {

const char kUsage[] =
    "usage: ffcatalog dump [--functions|--groups] [--json] FILE\n"
    "       ffcatalog build [--functions|--groups] SOURCE OUT\n"
    "       ffcatalog --help\n";

const char kHelp[] =
    "ffcatalog: print and build the catalogue files of built-in functions\n"
    "(System/Formula/SysFuncs.dat) and of function groups (System/Formula/FuncGroup.dat).\n"
    "\n"
    "usage: ffcatalog dump [--functions|--groups] [--json] FILE\n"
    "       ffcatalog build [--functions|--groups] SOURCE OUT\n"
    "\n"
    "dump   prints FILE in the text form below (which build reads back) or, with\n"
    "       --json, as one JSON object {\"kind\": ..., \"records\": [...]}. A file that\n"
    "       ends inside a record is printed up to its last whole record, with a\n"
    "       warning on standard error.\n"
    "build  writes the catalogue described by the text file SOURCE to OUT.\n"
    "\n"
    "--functions, --groups  the kind of catalogue. Without either, dump reads FILE\n"
    "       both ways. A record agrees when writing it back gives the bytes it was\n"
    "       read from; a way fits when agreeing records cover every byte. If one way\n"
    "       fits, that is the kind; if both fit (an empty file) it is a function\n"
    "       catalogue; if neither fits (a damaged file), the way whose leading\n"
    "       agreeing records cover more bytes wins, functions on a tie. Without\n"
    "       either, build takes the kind of the first record of SOURCE.\n"
    "\n"
    "Text form (one statement per line; '#' outside quotes starts a comment):\n"
    "  function NAME                  starts a function record; its lines follow\n"
    "    number N                     function number, 0..65535 (default 65535)\n"
    "    first N                      first number, 32-bit signed (default -1)\n"
    "    second N                     second number, 32-bit signed (default 0)\n"
    "    first16 N                    first 16-bit field, 0..65535 (default 0)\n"
    "    text2 TEXT                   second text (default empty)\n"
    "    text3 TEXT                   third text (default empty)\n"
    "    param NAME KIND [VALUE] [flag N]   one parameter, in order; KIND is\n"
    "                                 bool (true/false/1/0), double, text (quoted),\n"
    "                                 int, or a kind code; codes other than 1, 4, 7\n"
    "                                 and 10 store no value; flag is 0..255 (default 0)\n"
    "  group N NAME [TEXT]            one group record: number, name, second text\n"
    "A NAME or TEXT is a bare word or a quoted text with the escapes \\\\ \\\" \\n \\r \\t\n"
    "and \\xHH (not \\x00); other bytes stand for themselves. See README.md.\n"
    "\n"
    "Exit status: 0 done, 1 unreadable input, malformed source (reported as\n"
    "SOURCE:LINE: reason) or unwritable output, 2 usage error.\n";

struct Options {
    std::string command;
    CatalogueKind kind = CatalogueKind::Unknown;
    bool json = false;
    std::vector<std::string> files;
};

int UsageError(const std::string& reason, std::string& err) {
    err += "ffcatalog: " + reason + "\n" + kUsage;
    return kExitUsage;
}

bool ReadWholeFile(const std::string& path, std::string& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    bytes.clear();
    char buffer[1 << 16];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) bytes.append(buffer, got);
    const bool ok = std::ferror(file) == 0;
    std::fclose(file);
    return ok;
}

bool WriteWholeFile(const std::string& path, const std::string& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

int Dump(const Options& options, std::string& out, std::string& err) {
    const std::string& path = options.files[0];
    std::string bytes;
    if (!ReadWholeFile(path, bytes)) {
        err += "ffcatalog: " + path + ": cannot read the file\n";
        return kExitFailure;
    }
    CatalogueKind kind = options.kind;
    if (kind == CatalogueKind::Unknown) kind = DetectCatalogueKind(bytes);

    ffcatalogue::CatalogueInput in(bytes.data(), bytes.size());
    ffcatalogue::CatalogueReadResult result;
    if (kind == CatalogueKind::Groups) {
        std::vector<FuncGroupInfo> groups;
        result = ffcatalogue::ReadGroupCatalogue(in, groups);
        options.json ? PrintGroupsJson(groups, out) : PrintGroupsText(groups, out);
    } else {
        std::vector<SysFuncInfo> functions;
        result = ffcatalogue::ReadFunctionCatalogue(in, functions);
        options.json ? PrintFunctionsJson(functions, out) : PrintFunctionsText(functions, out);
    }
    if (result.truncated)
        err += "ffcatalog: warning: " + path + ": the file ends inside a record; printed the " +
               std::to_string(result.records) + " whole records before it (" +
               std::to_string(result.bytesRead) + " of " + std::to_string(bytes.size()) +
               " bytes)\n";
    return kExitOk;
}

int Build(const Options& options, std::string& err) {
    const std::string& sourcePath = options.files[0];
    const std::string& outPath = options.files[1];
    std::string text;
    if (!ReadWholeFile(sourcePath, text)) {
        err += "ffcatalog: " + sourcePath + ": cannot read the file\n";
        return kExitFailure;
    }
    CatalogueSource source;
    std::string error;
    if (!ParseCatalogueSource(text, sourcePath, options.kind, source, error)) {
        err += error + "\n";
        return kExitFailure;
    }
    std::string bytes;
    for (const SysFuncInfo& record : source.functions) ffcatalogue::WriteFunctionRecord(record, bytes);
    for (const FuncGroupInfo& record : source.groups) ffcatalogue::WriteGroupRecord(record, bytes);
    if (!WriteWholeFile(outPath, bytes)) {
        err += "ffcatalog: " + outPath + ": cannot write the file\n";
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace

const char* HelpText() { return kHelp; }

int RunCommandLine(const std::vector<std::string>& args, std::string& out, std::string& err) {
    if (args.empty()) return UsageError("no command given", err);
    Options options;
    options.command = args[0];
    if (options.command == "--help" || options.command == "-h" || options.command == "help") {
        out += kHelp;
        return kExitOk;
    }
    if (options.command != "dump" && options.command != "build")
        return UsageError("unknown command '" + options.command + "'", err);

    bool optionsEnded = false;
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
            options.files.push_back(arg);
        } else if (arg == "--") {
            optionsEnded = true;
        } else if (arg == "--help" || arg == "-h") {
            out += kHelp;
            return kExitOk;
        } else if (arg == "--functions" || arg == "--groups") {
            const CatalogueKind kind = arg == "--functions" ? CatalogueKind::Functions : CatalogueKind::Groups;
            if (options.kind != CatalogueKind::Unknown && options.kind != kind)
                return UsageError("--functions and --groups exclude each other", err);
            options.kind = kind;
        } else if (arg == "--json" && options.command == "dump") {
            options.json = true;
        } else {
            return UsageError("unknown option '" + arg + "' for " + options.command, err);
        }
    }
    const std::size_t wanted = options.command == "dump" ? 1 : 2;
    if (options.files.size() != wanted)
        return UsageError(options.command + " takes " +
                              (wanted == 1 ? std::string("one file") : std::string("SOURCE and OUT")),
                          err);
    return options.command == "dump" ? Dump(options, out, err) : Build(options, err);
}

}  // namespace ffcatalog
