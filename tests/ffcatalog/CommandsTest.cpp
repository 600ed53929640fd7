// The command line of ffcatalog, in-process and by running the built program.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

#include "FormulaFunction/frame/Catalogue.h"
#include "support/TempFolder.h"
#include "tools/ffcatalog/Commands.h"

using namespace ffcatalog;

namespace {

struct ToolRun {
    int status = -1;
    std::string out, err;
};

ToolRun RunTool(const std::vector<std::string>& args) {
    ToolRun run;
    run.status = RunCommandLine(args, run.out, run.err);
    return run;
}

const char kSource[] =
    "function Average\n"
    "  number 2\n"
    "  text2 \"Moving average\"\n"
    "  param Price double 0 flag 1\n"
    "  param Length int 10\n"
    "  param Title text \"MA\"\n"
    "  param Visible bool true\n"
    "  param Extra 42\n"
    "function Close\n"
    "  number 1\n";

class Commands : public ::testing::Test {
protected:
    std::string P(const std::string& name) const { return (folder_.Path() / name).string(); }
    TempFolder folder_;
};

TEST_F(Commands, UsageErrorsExitWithTwo) {
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"frob"},
        {"dump"},
        {"dump", "a", "b"},
        {"dump", "--bogus", "a"},
        {"dump", "--functions", "--groups", "a"},
        {"build", "a"},
        {"build", "a", "b", "c"},
        {"build", "--json", "a", "b"},
    };
    for (const auto& args : cases) {
        const ToolRun run = RunTool(args);
        EXPECT_EQ(run.status, kExitUsage) << ::testing::PrintToString(args);
        EXPECT_EQ(run.err.rfind("ffcatalog: ", 0), 0u) << run.err;
        EXPECT_NE(run.err.find("usage: ffcatalog dump"), std::string::npos);
        EXPECT_TRUE(run.out.empty());
    }
    EXPECT_EQ(RunTool({"frob"}).err.substr(0, 36), "ffcatalog: unknown command 'frob'\nus");
    EXPECT_EQ(RunTool({"dump", "--functions", "--groups", "a"}).err.substr(0, 57),
              "ffcatalog: --functions and --groups exclude each other\nus");
}

TEST_F(Commands, HelpDescribesTheFormAndTheDetectionRule) {
    for (const char* flag : {"--help", "-h", "help"}) {
        const ToolRun run = RunTool({flag});
        EXPECT_EQ(run.status, kExitOk);
        EXPECT_EQ(run.out, HelpText());
    }
    const std::string help = HelpText();
    EXPECT_NE(help.find("param NAME KIND [VALUE] [flag N]"), std::string::npos);
    EXPECT_NE(help.find("A record agrees when writing it back"), std::string::npos);
    EXPECT_EQ(RunTool({"dump", "--help"}).out, HelpText());
}

TEST_F(Commands, BuildThenDumpGivesTheSameBytesBack) {
    folder_.Write("src.txt", kSource);
    ASSERT_EQ(RunTool({"build", P("src.txt"), P("SysFuncs.dat")}).status, kExitOk);
    const std::string bytes = folder_.Read("SysFuncs.dat");

    std::vector<SysFuncInfo> list;
    ffcatalogue::CatalogueInput in(bytes.data(), bytes.size());
    const auto result = ffcatalogue::ReadFunctionCatalogue(in, list);
    EXPECT_FALSE(result.truncated);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].strName, "Average");
    EXPECT_EQ(list[0].vParams.size(), 5u);
    EXPECT_EQ(list[1].wFuncId, 1);

    const ToolRun dump = RunTool({"dump", P("SysFuncs.dat")});
    ASSERT_EQ(dump.status, kExitOk);
    EXPECT_TRUE(dump.err.empty());
    EXPECT_EQ(dump.out.rfind("# function catalogue, records: 2\n", 0), 0u);
    folder_.Write("again.txt", dump.out);
    ASSERT_EQ(RunTool({"build", "--functions", P("again.txt"), P("again.dat")}).status, kExitOk);
    EXPECT_EQ(folder_.Read("again.dat"), bytes);
}

TEST_F(Commands, GroupsAreDetectedAndFlagsOverrideDetection) {
    folder_.Write("g.txt", "group 1 Bars\ngroup 2 Math \"Mathematics\"\n");
    ASSERT_EQ(RunTool({"build", P("g.txt"), P("g.dat")}).status, kExitOk);
    const ToolRun dump = RunTool({"dump", P("g.dat")});
    EXPECT_EQ(dump.out, "# group catalogue, records: 2\ngroup 1 \"Bars\" \"\"\ngroup 2 \"Math\" \"Mathematics\"\n");
    const ToolRun json = RunTool({"dump", "--json", "--groups", P("g.dat")});
    EXPECT_EQ(json.out.rfind("{\"kind\": \"groups\"", 0), 0u);
    // Read as functions on request: the group file does not hold a whole function record.
    const ToolRun forced = RunTool({"dump", P("g.dat"), "--functions"});
    EXPECT_EQ(forced.status, kExitOk);
    EXPECT_EQ(forced.out, "# function catalogue, records: 0\n");
    EXPECT_NE(forced.err.find("warning"), std::string::npos);
}

TEST_F(Commands, TruncatedCatalogueIsDumpedUpToItsLastWholeRecordWithAWarning) {
    folder_.Write("src.txt", kSource);
    ASSERT_EQ(RunTool({"build", P("src.txt"), P("f.dat")}).status, kExitOk);
    const std::string bytes = folder_.Read("f.dat");
    folder_.Write("cut.dat", bytes.substr(0, bytes.size() - 3));
    const ToolRun run = RunTool({"dump", "--json", P("cut.dat")});
    EXPECT_EQ(run.status, kExitOk);
    EXPECT_NE(run.out.find("\"Average\""), std::string::npos);
    EXPECT_EQ(run.out.find("\"Close\""), std::string::npos);
    const std::size_t wholeSize = bytes.size() - (28 + 6 + 1 + 1);
    EXPECT_EQ(run.err, "ffcatalog: warning: " + P("cut.dat") +
                           ": the file ends inside a record; printed the 1 whole records before it (" +
                           std::to_string(wholeSize) + " of " + std::to_string(bytes.size() - 3) +
                           " bytes)\n");
}

TEST_F(Commands, MalformedSourceNamesFileAndLineAndWritesNothing) {
    folder_.Write("bad.txt", "function A\n  number 1\n  colour red\n");
    const ToolRun run = RunTool({"build", P("bad.txt"), P("out.dat")});
    EXPECT_EQ(run.status, kExitFailure);
    EXPECT_EQ(run.err, P("bad.txt") + ":3: unknown keyword 'colour'\n");
    EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "out.dat"));

    folder_.Write("mixed.txt", "function A\n");
    const ToolRun mixed = RunTool({"build", "--groups", P("mixed.txt"), P("out.dat")});
    EXPECT_EQ(mixed.status, kExitFailure);
    EXPECT_EQ(mixed.err, P("mixed.txt") + ":1: 'function' record in a groups catalogue\n");
}

TEST_F(Commands, UnreadableInputAndUnwritableOutputExitWithOne) {
    const ToolRun missing = RunTool({"dump", P("missing.dat")});
    EXPECT_EQ(missing.status, kExitFailure);
    EXPECT_EQ(missing.err, "ffcatalog: " + P("missing.dat") + ": cannot read the file\n");
    EXPECT_EQ(RunTool({"build", P("missing.txt"), P("x.dat")}).status, kExitFailure);

    folder_.Write("src.txt", kSource);
    std::filesystem::create_directory(folder_.Path() / "dir");
    const ToolRun unwritable = RunTool({"build", P("src.txt"), P("dir")});
    EXPECT_EQ(unwritable.status, kExitFailure);
    EXPECT_EQ(unwritable.err, "ffcatalog: " + P("dir") + ": cannot write the file\n");
}

TEST_F(Commands, EmptySourceWritesAnEmptyCatalogue) {
    folder_.Write("empty.txt", "# nothing yet\n");
    ASSERT_EQ(RunTool({"build", P("empty.txt"), P("e.dat")}).status, kExitOk);
    EXPECT_TRUE(std::filesystem::exists(folder_.Path() / "e.dat"));
    EXPECT_EQ(folder_.Read("e.dat"), "");
    EXPECT_EQ(RunTool({"dump", P("e.dat")}).out, "# function catalogue, records: 0\n");
}

TEST_F(Commands, DoubleDashEndsTheOptions) {
    folder_.Write("--odd", "group 1 a\n");
    EXPECT_EQ(RunTool({"build", "--", P("--odd"), P("g.dat")}).status, kExitOk);
    EXPECT_EQ(RunTool({"dump", "--", P("g.dat")}).status, kExitOk);
}

// The built program: exit statuses and the split between standard output and error.
int System(const std::string& command) {
#if defined(_WIN32)
    // cmd /c drops the first and the last quote of a line that starts with one.
    return std::system(("\"" + command + "\"").c_str());
#else
    const int raw = std::system(command.c_str());
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
#endif
}

// What the program printed: on Windows its standard streams are in text mode,
// so each "\n" reaches the file as "\r\n".
std::string Printed(const std::string& bytes) {
#if defined(_WIN32)
    std::string out;
    for (size_t i = 0; i < bytes.size(); ++i)
        if (!(bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n')) out += bytes[i];
    return out;
#else
    return bytes;
#endif
}

TEST_F(Commands, ProgramEndToEnd) {
    const std::string tool = std::string("\"") + FFCATALOG_PROGRAM + "\"";
    auto q = [](const std::string& s) { return "\"" + s + "\""; };
    folder_.Write("src.txt", kSource);
    EXPECT_EQ(System(tool + " build " + q(P("src.txt")) + " " + q(P("f.dat"))), 0);
    EXPECT_EQ(System(tool + " dump --json " + q(P("f.dat")) + " > " + q(P("out.json")) + " 2> " +
                     q(P("err.txt"))),
              0);
    EXPECT_EQ(Printed(folder_.Read("out.json")).rfind("{\"kind\": \"functions\", \"records\": [\n", 0), 0u);
    EXPECT_EQ(Printed(folder_.Read("err.txt")), "");

    const std::string bytes = folder_.Read("f.dat");
    folder_.Write("cut.dat", bytes.substr(0, bytes.size() - 1));
    EXPECT_EQ(System(tool + " dump " + q(P("cut.dat")) + " > " + q(P("out.txt")) + " 2> " +
                     q(P("err.txt"))),
              0);
    EXPECT_NE(Printed(folder_.Read("out.txt")).find("function \"Average\""), std::string::npos);
    EXPECT_EQ(Printed(folder_.Read("err.txt")).rfind("ffcatalog: warning: ", 0), 0u);

    folder_.Write("bad.txt", "function A\n number 99999\n");
    EXPECT_EQ(System(tool + " build " + q(P("bad.txt")) + " " + q(P("b.dat")) + " 2> " + q(P("err.txt"))), 1);
    EXPECT_EQ(Printed(folder_.Read("err.txt")),
              P("bad.txt") + ":2: '99999' is out of range 0..65535 (function number)\n");
    EXPECT_EQ(System(tool + " dump 2> " + q(P("err.txt"))), 2);
    EXPECT_EQ(System(tool + " --help > " + q(P("help.txt"))), 0);
    EXPECT_EQ(Printed(folder_.Read("help.txt")), HelpText());
}

}  // namespace
