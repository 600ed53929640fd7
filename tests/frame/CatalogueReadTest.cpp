// Reading whole catalogues: truncation, corrupt lengths, and the two plain exports
// over files under a temporary installation root.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/frame/Catalogue.h"
#include "frame/CatalogueTestUtil.h"
#include "support/TempFolder.h"

using namespace ffcatalogue;

namespace {

SysFuncInfo Function(const std::string& name, uint16_t id, int params) {
    SysFuncInfo f;
    f.strName = name;
    f.wFuncId = id;
    for (int i = 0; i < params; ++i) {
        SysFuncParam p;
        p.strName = name + "_p" + std::to_string(i);
        p.Default.nType = KelInteger;
        p.Default.nValue = i;
        f.vParams.push_back(p);
    }
    return f;
}

FuncGroupInfo Group(int32_t id, const std::string& name) {
    FuncGroupInfo g;
    g.nGroupId = id;
    g.strName = name;
    g.strSecond = name + " functions";
    return g;
}

std::string FunctionFile(const std::vector<SysFuncInfo>& functions) {
    std::string out;
    for (const SysFuncInfo& f : functions) WriteFunctionRecord(f, out);
    return out;
}

std::string GroupFile(const std::vector<FuncGroupInfo>& groups) {
    std::string out;
    for (const FuncGroupInfo& g : groups) WriteGroupRecord(g, out);
    return out;
}

TEST(CatalogueRead, EmptyInputGivesNoRecordsAndIsNotTruncated) {
    CatalogueInput in(nullptr, 0);
    std::vector<SysFuncInfo> list;
    const CatalogueReadResult r = ReadFunctionCatalogue(in, list);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(r.records, 0u);
    EXPECT_FALSE(r.truncated);
}

TEST(CatalogueRead, TruncatedLastRecordIsDroppedAtEveryCut) {
    const std::vector<SysFuncInfo> functions = {Function("A", 1, 2), Function("B", 2, 1)};
    const std::string bytes = FunctionFile(functions);
    std::string first;
    WriteFunctionRecord(functions[0], first);
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        CatalogueInput in(bytes.data(), size);
        std::vector<SysFuncInfo> list;
        const CatalogueReadResult r = ReadFunctionCatalogue(in, list);
        const std::size_t whole = size == bytes.size() ? 2 : size >= first.size() ? 1 : 0;
        ASSERT_EQ(list.size(), whole) << size;
        EXPECT_EQ(r.records, whole);
        EXPECT_EQ(r.bytesRead, whole == 2 ? bytes.size() : whole == 1 ? first.size() : 0u);
        EXPECT_EQ(r.truncated, size != r.bytesRead) << size;
        for (std::size_t i = 0; i < whole; ++i) ExpectSameFunction(list[i], functions[i]);
    }
}

TEST(CatalogueRead, TruncatedLastGroupIsDroppedAtEveryCut) {
    const std::vector<FuncGroupInfo> groups = {Group(1, "Bars"), Group(2, "Math")};
    const std::string bytes = GroupFile(groups);
    const std::size_t firstSize = 4 + 4 + 5 + 4 + 15;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        CatalogueInput in(bytes.data(), size);
        std::vector<FuncGroupInfo> list;
        const CatalogueReadResult r = ReadGroupCatalogue(in, list);
        const std::size_t whole = size == bytes.size() ? 2 : size >= firstSize ? 1 : 0;
        ASSERT_EQ(list.size(), whole) << size;
        EXPECT_EQ(r.truncated, size != r.bytesRead) << size;
        for (std::size_t i = 0; i < whole; ++i) ExpectSameGroup(list[i], groups[i]);
    }
}

TEST(CatalogueRead, RecordsAreAppendedAfterWhatTheListHeld) {
    const std::string bytes = FunctionFile({Function("A", 1, 0)});
    CatalogueInput in(bytes.data(), bytes.size());
    std::vector<SysFuncInfo> list = {Function("Kept", 9, 1)};
    ReadFunctionCatalogue(in, list);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].strName, "Kept");
    EXPECT_EQ(list[1].strName, "A");
}

// A name length of 3 GB in a file of a few dozen bytes is a short read: the record
// fails before anything is allocated for the text.
TEST(CatalogueRead, AbsurdTextLengthFailsWithoutAllocating) {
    const std::string bytes = Bytes({0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00}) +
                              Le32(0xC0000000u) + std::string(40, 'x');
    CatalogueInput in(bytes.data(), bytes.size());
    SysFuncInfo f;
    EXPECT_FALSE(ReadFunctionRecord(in, f, nullptr));
    EXPECT_LT(f.strName.capacity(), 1024u);
    EXPECT_EQ(in.Consumed(), 12u);  // the text's bytes were not even asked for

    TempFolder folder;
    const std::string path = folder.Write("corrupt.dat", bytes);
    std::FILE* file = std::fopen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    CatalogueInput fileIn(file);
    EXPECT_EQ(fileIn.Size(), bytes.size());
    std::vector<SysFuncInfo> list;
    const CatalogueReadResult r = ReadFunctionCatalogue(fileIn, list);
    std::fclose(file);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(r.truncated);
}

TEST(CatalogueRead, AbsurdDefaultTextLengthFailsWithoutAllocating) {
    const std::string bytes = Bytes({0x00, 0x07, 0x00, 0x00, 0x00}) + Le32(0xFFFFFFFFu) + "abc";
    CatalogueInput in(bytes.data(), bytes.size());
    SysFuncParam p;
    EXPECT_FALSE(ReadParameterEntry(in, p, nullptr));
    EXPECT_LT(p.Default.strValue.capacity(), 1024u);
}

// A huge parameter count in a short file runs into the end of the file: the record
// is dropped, nothing is reserved for the count.
TEST(CatalogueRead, HugeParameterCountEndsAtTheEndOfTheFile) {
    const std::string bytes = Bytes({0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00,
                                     0x02, 0x00, 0x00, 0x00, 'A', 0x00,
                                     0x01, 0x00, 0x00, 0x00, 0x00,
                                     0x01, 0x00, 0x00, 0x00, 0x00}) +
                              Le32(0x7FFFFFFFu) +
                              Bytes({0x00, 0x63, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00});
    CatalogueInput in(bytes.data(), bytes.size());
    std::vector<SysFuncInfo> list;
    const CatalogueReadResult r = ReadFunctionCatalogue(in, list);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(r.truncated);
}

TEST(CatalogueRead, FileInputReadsFromTheStartWhereverTheFileWas) {
    TempFolder folder;
    const std::vector<FuncGroupInfo> groups = {Group(5, "G")};
    const std::string path = folder.Write("g.dat", GroupFile(groups));
    std::FILE* file = std::fopen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    std::fseek(file, 7, SEEK_SET);
    CatalogueInput in(file);
    std::vector<FuncGroupInfo> list;
    const CatalogueReadResult r = ReadGroupCatalogue(in, list);
    std::fclose(file);
    ASSERT_EQ(list.size(), 1u);
    ExpectSameGroup(list[0], groups[0]);
    EXPECT_FALSE(r.truncated);
}

// The plain exports read the files under g_strRootPath; each test sets its own root.
class CatalogueFiles : public ::testing::Test {
protected:
    void SetUp() override {
        savedRoot_ = g_strRootPath;
        g_strRootPath = root_.String();
    }
    void TearDown() override { g_strRootPath = savedRoot_; }

    void WriteFunctions(const std::string& bytes) { root_.Write("System/Formula/SysFuncs.dat", bytes); }
    void WriteGroups(const std::string& bytes) { root_.Write("System/Formula/FuncGroup.dat", bytes); }

    TempFolder root_;
    std::string savedRoot_;
};

TEST_F(CatalogueFiles, FunctionListIsReadInFileOrder) {
    const std::vector<SysFuncInfo> functions = {Function("Close", 3, 0), Function("Average", 1, 3),
                                                Function("Close", 4, 1)};
    WriteFunctions(FunctionFile(functions));
    std::vector<SysFuncInfo> list;
    GetSysFunctionList(list);
    ASSERT_EQ(list.size(), 3u);
    for (std::size_t i = 0; i < list.size(); ++i) ExpectSameFunction(list[i], functions[i]);
}

TEST_F(CatalogueFiles, GroupListIsReadInFileOrder) {
    const std::vector<FuncGroupInfo> groups = {Group(2, "Math"), Group(-1, ""), Group(1, "Bars")};
    WriteGroups(GroupFile(groups));
    std::vector<FuncGroupInfo> list;
    GetFuncGroupList(list);
    ASSERT_EQ(list.size(), 3u);
    for (std::size_t i = 0; i < list.size(); ++i) ExpectSameGroup(list[i], groups[i]);
}

TEST_F(CatalogueFiles, MissingFilesLeaveTheListsAsTheyWere) {
    std::vector<SysFuncInfo> functions = {Function("Kept", 1, 0)};
    GetSysFunctionList(functions);
    ASSERT_EQ(functions.size(), 1u);
    EXPECT_EQ(functions[0].strName, "Kept");
    std::vector<FuncGroupInfo> groups = {Group(1, "Kept")};
    GetFuncGroupList(groups);
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].strName, "Kept");
}

// A catalogue that cannot be opened for update reads as no catalogue at all. A
// directory in the catalogue's place stands for it: unlike a read-only file, it
// cannot be opened for writing even by the superuser the tests may run as.
TEST_F(CatalogueFiles, CatalogueThatCannotBeOpenedForUpdateGivesNothing) {
    std::filesystem::create_directories(root_.Path() / "System/Formula/SysFuncs.dat");
    std::filesystem::create_directories(root_.Path() / "System/Formula/FuncGroup.dat");
    std::vector<SysFuncInfo> functions = {Function("Kept", 1, 0)};
    GetSysFunctionList(functions);
    ASSERT_EQ(functions.size(), 1u);
    EXPECT_EQ(functions[0].strName, "Kept");
    std::vector<FuncGroupInfo> groups;
    GetFuncGroupList(groups);
    EXPECT_TRUE(groups.empty());
}

TEST_F(CatalogueFiles, EmptyFilesGiveEmptyLists) {
    WriteFunctions("");
    WriteGroups("");
    std::vector<SysFuncInfo> functions;
    GetSysFunctionList(functions);
    EXPECT_TRUE(functions.empty());
    std::vector<FuncGroupInfo> groups;
    GetFuncGroupList(groups);
    EXPECT_TRUE(groups.empty());
}

TEST_F(CatalogueFiles, TruncatedLastRecordIsDroppedSilently) {
    const std::string bytes = FunctionFile({Function("A", 1, 1), Function("B", 2, 2)});
    WriteFunctions(bytes.substr(0, bytes.size() - 1));
    std::vector<SysFuncInfo> list;
    GetSysFunctionList(list);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].strName, "A");

    const std::string groups = GroupFile({Group(1, "A"), Group(2, "B")});
    WriteGroups(groups.substr(0, groups.size() - 3));
    std::vector<FuncGroupInfo> glist;
    GetFuncGroupList(glist);
    ASSERT_EQ(glist.size(), 1u);
    EXPECT_EQ(glist[0].strName, "A");
}

// Files are read in blocks: records and texts that straddle block boundaries, and a
// text longer than a block, read the same as from memory.
TEST_F(CatalogueFiles, LargeCatalogueReadsWholeAcrossBlocks) {
    std::vector<SysFuncInfo> functions;
    for (int i = 0; i < 400; ++i) {
        SysFuncInfo f = Function("F" + std::to_string(i), static_cast<uint16_t>(i), i % 5);
        f.strSecond = std::string(static_cast<std::size_t>(i * 37 % 1000), static_cast<char>('a' + i % 26));
        functions.push_back(f);
    }
    functions[200].strThird = std::string(150000, 'L');
    const std::string bytes = FunctionFile(functions);
    ASSERT_GT(bytes.size(), 3u * 65536);
    WriteFunctions(bytes);
    std::vector<SysFuncInfo> list;
    GetSysFunctionList(list);
    ASSERT_EQ(list.size(), functions.size());
    for (std::size_t i = 0; i < list.size(); ++i) ExpectSameFunction(list[i], functions[i]);

    WriteFunctions(bytes.substr(0, bytes.size() - 1));
    list.clear();
    GetSysFunctionList(list);
    EXPECT_EQ(list.size(), functions.size() - 1);
}

TEST_F(CatalogueFiles, ReadingLeavesTheFileUnchanged) {
    const std::string bytes = FunctionFile({Function("A", 1, 2)});
    WriteFunctions(bytes);
    std::vector<SysFuncInfo> list;
    GetSysFunctionList(list);
    EXPECT_EQ(root_.Read("System/Formula/SysFuncs.dat"), bytes);
}

// The path is the root followed by a suffix with backslashes, turned into the
// system's separators only when the file is opened.
TEST_F(CatalogueFiles, SuffixIsAppendedToTheRootAsItStands) {
    WriteGroups(GroupFile({Group(7, "G")}));
    g_strRootPath = root_.String() + "/";  // a trailing separator gives a doubled one
    std::vector<FuncGroupInfo> list;
    GetFuncGroupList(list);
    EXPECT_EQ(list.size(), 1u);
    g_strRootPath = root_.String() + "/System";  // the suffix is appended as it stands
    list.clear();
    GetFuncGroupList(list);
    EXPECT_TRUE(list.empty());
}

TEST_F(CatalogueFiles, EmptyRootStartsThePathAtTheBackslash) {
    g_strRootPath.clear();
    std::vector<SysFuncInfo> list = {Function("Kept", 1, 0)};
    GetSysFunctionList(list);  // "\System\Formula\SysFuncs.dat": absent here
    EXPECT_EQ(list.size(), 1u);
}

}  // namespace
