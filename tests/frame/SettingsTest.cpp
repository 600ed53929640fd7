// Library entry: the settings Init stores, the profile flag and the name map.
#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/frame/Catalogue.h"
#include "support/TempFolder.h"

namespace {

SysFuncInfo Function(const std::string& name, uint16_t id) {
    SysFuncInfo f;
    f.strName = name;
    f.wFuncId = id;
    return f;
}

// Each test starts from the state of a freshly loaded library under its own root,
// and puts the process-wide settings back afterwards.
class Settings : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = {g_pSubscribeManage, g_strRootPath, g_strUserName, g_bUseFileProfile,
                  g_mapFuncNameToId};
        g_pSubscribeManage = nullptr;
        g_strRootPath.clear();
        g_strUserName.clear();
        g_bUseFileProfile = 0;
        g_mapFuncNameToId.clear();
    }
    void TearDown() override {
        g_pSubscribeManage = saved_.manager;
        g_strRootPath = saved_.root;
        g_strUserName = saved_.user;
        g_bUseFileProfile = saved_.flag;
        g_mapFuncNameToId = saved_.map;
    }

    void WriteProfile(const std::string& user, const std::string& text) {
        root_.Write("User/" + user + "/profile.ini", text);
    }
    void WriteCatalogue(const std::vector<SysFuncInfo>& functions) {
        std::string bytes;
        for (const SysFuncInfo& f : functions) ffcatalogue::WriteFunctionRecord(f, bytes);
        root_.Write("System/Formula/SysFuncs.dat", bytes);
    }
    int Init(const std::string& user, CSubscibeManage* manager = nullptr) {
        return FormulaFunction_Init(0, manager, root_.String().c_str(), user.c_str());
    }

    struct Saved {
        CSubscibeManage* manager;
        std::string root, user;
        uint32_t flag;
        std::map<std::string, uint16_t> map;
    } saved_;
    TempFolder root_;
};

TEST_F(Settings, InitStoresTheContextAndReturnsOne) {
    int anything = 0;
    // Init stores the manager as it is and never calls it.
    CSubscibeManage* manager = reinterpret_cast<CSubscibeManage*>(&anything);
    EXPECT_EQ(FormulaFunction_Init(0xDEADBEEF, manager, root_.String().c_str(), "alice"), 1);
    EXPECT_EQ(g_pSubscribeManage, manager);
    EXPECT_EQ(g_strRootPath, root_.String());
    EXPECT_EQ(g_strUserName, "alice");
}

TEST_F(Settings, NoProfileGivesFlagZero) {
    g_bUseFileProfile = 5;  // set to 0 before the profile is read
    EXPECT_EQ(Init("alice"), 1);
    EXPECT_EQ(g_bUseFileProfile, 0u);
}

TEST_F(Settings, ProfileFlagIsReadFromTheUsersProfile) {
    WriteProfile("alice", "[Corvane]\r\nbUseFileProfile=1\r\n");
    EXPECT_EQ(Init("alice"), 1);
    EXPECT_EQ(g_bUseFileProfile, 1u);
}

TEST_F(Settings, ProfileFlagKeepsTheIntegerRead) {
    WriteProfile("bob", "[Other]\nbUseFileProfile=9\n[Corvane]\nbUseFileProfile=7\n");
    Init("bob");
    EXPECT_EQ(g_bUseFileProfile, 7u);
}

TEST_F(Settings, ProfileOfAnotherUserIsNotRead) {
    WriteProfile("alice", "[Corvane]\nbUseFileProfile=1\n");
    Init("bob");
    EXPECT_EQ(g_bUseFileProfile, 0u);
}

TEST_F(Settings, MissingSectionOrKeyGivesFlagZero) {
    WriteProfile("alice", "[Corvane]\nOther=1\n[Elsewhere]\nbUseFileProfile=1\n");
    Init("alice");
    EXPECT_EQ(g_bUseFileProfile, 0u);
}

TEST_F(Settings, ChangeUserKeepsTheFlagReadAtInit) {
    WriteProfile("alice", "[Corvane]\nbUseFileProfile=1\n");
    WriteProfile("bob", "[Corvane]\nbUseFileProfile=0\n");
    Init("alice");
    ASSERT_EQ(g_bUseFileProfile, 1u);
    FormulaFunction_ChangeUser("bob");
    EXPECT_EQ(g_strUserName, "bob");
    EXPECT_EQ(g_bUseFileProfile, 1u);
}

TEST_F(Settings, ChangeUserChangesOnlyTheUserName) {
    WriteCatalogue({Function("Close", 3)});
    Init("alice");
    FormulaFunction_ChangeUser("carol");
    EXPECT_EQ(g_strUserName, "carol");
    EXPECT_EQ(g_strRootPath, root_.String());
    EXPECT_EQ(g_mapFuncNameToId.size(), 1u);
}

TEST_F(Settings, MapHoldsEveryCatalogueName) {
    WriteCatalogue({Function("Close", 3), Function("Average", 1), Function("", 0)});
    Init("alice");
    const std::map<std::string, uint16_t> expected = {{"Close", 3}, {"Average", 1}, {"", 0}};
    EXPECT_EQ(g_mapFuncNameToId, expected);
}

TEST_F(Settings, DuplicateNameKeepsTheFirstNumber) {
    WriteCatalogue({Function("Close", 3), Function("Open", 4), Function("Close", 9)});
    Init("alice");
    ASSERT_EQ(g_mapFuncNameToId.size(), 2u);
    EXPECT_EQ(g_mapFuncNameToId["Close"], 3);
    EXPECT_EQ(g_mapFuncNameToId["Open"], 4);
}

TEST_F(Settings, MissingCatalogueLeavesTheMapEmpty) {
    EXPECT_EQ(Init("alice"), 1);
    EXPECT_TRUE(g_mapFuncNameToId.empty());
}

TEST_F(Settings, MissingCatalogueLeavesTheMapAsItWas) {
    g_mapFuncNameToId["Earlier"] = 12;
    EXPECT_EQ(Init("alice"), 1);
    ASSERT_EQ(g_mapFuncNameToId.size(), 1u);
    EXPECT_EQ(g_mapFuncNameToId["Earlier"], 12);
}

// Stands for a read-only catalogue: the file cannot be opened for update (a directory
// in its place, which fails for every user), so the map stays empty.
TEST_F(Settings, CatalogueThatCannotBeOpenedForUpdateGivesAnEmptyMap) {
    std::filesystem::create_directories(root_.Path() / "System/Formula/SysFuncs.dat");
    EXPECT_EQ(Init("alice"), 1);
    EXPECT_TRUE(g_mapFuncNameToId.empty());
}

TEST_F(Settings, SecondInitAddsToTheMapAndKeepsEarlierNumbers) {
    WriteCatalogue({Function("Close", 3), Function("Open", 4)});
    Init("alice");
    WriteCatalogue({Function("Close", 30), Function("High", 5)});
    Init("alice");
    const std::map<std::string, uint16_t> expected = {{"Close", 3}, {"Open", 4}, {"High", 5}};
    EXPECT_EQ(g_mapFuncNameToId, expected);
}

TEST_F(Settings, SecondInitOverwritesTheContextAndRereadsTheFlag) {
    WriteProfile("alice", "[Corvane]\nbUseFileProfile=1\n");
    Init("alice");
    ASSERT_EQ(g_bUseFileProfile, 1u);
    int anything = 0;
    CSubscibeManage* manager = reinterpret_cast<CSubscibeManage*>(&anything);
    Init("bob", manager);
    EXPECT_EQ(g_strUserName, "bob");
    EXPECT_EQ(g_pSubscribeManage, manager);
    EXPECT_EQ(g_bUseFileProfile, 0u);
}

TEST_F(Settings, NullTextsAreTakenAsEmpty) {
    EXPECT_EQ(FormulaFunction_Init(0, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(g_strRootPath, "");
    EXPECT_EQ(g_strUserName, "");
    FormulaFunction_ChangeUser("x");
    FormulaFunction_ChangeUser(nullptr);
    EXPECT_EQ(g_strUserName, "");
}

TEST_F(Settings, ExitChangesNothing) {
    WriteProfile("alice", "[Corvane]\nbUseFileProfile=1\n");
    WriteCatalogue({Function("Close", 3)});
    Init("alice");
    FormulaFunction_Exit();
    EXPECT_EQ(g_strRootPath, root_.String());
    EXPECT_EQ(g_strUserName, "alice");
    EXPECT_EQ(g_bUseFileProfile, 1u);
    EXPECT_EQ(g_mapFuncNameToId.size(), 1u);
}

}  // namespace
