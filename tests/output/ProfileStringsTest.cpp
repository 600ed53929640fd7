#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/platform/Platform.h"
#include "SavedSettings.h"
#include "support/FakeSubscribeManage.h"
#include "support/TempFolder.h"

namespace {

using outputtest::SavedSettings;

// The file store: the INI file in the user's formula folder under the root.
class FileProfile : public ::testing::Test {
protected:
    void SetUp() override {
        g_strRootPath = root.String();
        g_strUserName = "alice";
        g_bUseFileProfile = 1;
        g_pSubscribeManage = &manager;
        std::filesystem::create_directories(FormulaFolder("alice"));
    }

    std::filesystem::path FormulaFolder(const std::string& user) const {
        return root.Path() / "User" / user / "Formula";
    }
    std::filesystem::path IniFile(const std::string& user) const {
        return FormulaFolder(user) / "tblprofile.ini";
    }

    SavedSettings saved;
    TempFolder root;
    FakeSubscribeManage manager;
    CSystemFuncs f{nullptr};
};

TEST_F(FileProfile, WritesAndReadsTheUsersIniFile) {
    EXPECT_TRUE(f.SetOstraProfileString("Levels", "Stop", "12.5"));
    ASSERT_TRUE(std::filesystem::exists(IniFile("alice")));
    EXPECT_EQ(ffplatform::ProfileGetString("Levels", "Stop", "none", IniFile("alice").string()),
              "12.5");
    EXPECT_EQ(f.GetOstraProfileString("Levels", "Stop"), "12.5");
    EXPECT_EQ(f.GetOstraProfileString("LEVELS", "stop"), "12.5");

    EXPECT_TRUE(f.SetOstraProfileString("Levels", "Stop", "13"));
    EXPECT_EQ(f.GetOstraProfileString("Levels", "Stop"), "13");
    EXPECT_EQ(manager.calls.GetConfigFileProperty, 0);
    EXPECT_EQ(manager.calls.SetConfigFileProperty, 0);
}

TEST_F(FileProfile, AKeyNeverWrittenReadsTheInvalidText) {
    EXPECT_EQ(f.GetOstraProfileString("Levels", "Stop"), "N/A");
    f.SetOstraProfileString("Levels", "Stop", "1");
    EXPECT_EQ(f.GetOstraProfileString("Levels", "Other"), "N/A");
    EXPECT_EQ(f.GetOstraProfileString("Other", "Stop"), "N/A");
}

TEST_F(FileProfile, ALongValueComesBackCutTo259Characters) {
    const std::string value(300, 'v');
    EXPECT_TRUE(f.SetOstraProfileString("S", "K", value));
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), std::string(259, 'v'));
}

TEST_F(FileProfile, TheCurrentUserChoosesTheFile) {
    f.SetOstraProfileString("S", "K", "alice's");
    std::filesystem::create_directories(FormulaFolder("bob"));
    g_strUserName = "bob";
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "N/A");
    EXPECT_TRUE(f.SetOstraProfileString("S", "K", "bob's"));
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "bob's");
    g_strUserName = "alice";
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "alice's");
}

TEST_F(FileProfile, AUserWithoutAFormulaFolderCannotWrite) {
    g_strUserName = "carol";
    EXPECT_FALSE(f.SetOstraProfileString("S", "K", "v"));
    EXPECT_FALSE(std::filesystem::exists(IniFile("carol")));
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "N/A");
}

TEST_F(FileProfile, TheFileStoreNeedsNoManager) {
    g_pSubscribeManage = nullptr;
    EXPECT_TRUE(f.SetOstraProfileString("S", "K", "v"));
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "v");
}

// The configuration store: the manager's table "tblprofile".
class TableProfile : public FileProfile {
protected:
    void SetUp() override {
        FileProfile::SetUp();
        g_bUseFileProfile = 0;
    }
};

TEST_F(TableProfile, WritesAndReadsTheConfigurationTable) {
    EXPECT_TRUE(f.SetOstraProfileString("Levels", "Stop", "12.5"));
    EXPECT_EQ(manager.calls.SetConfigFileProperty, 1);
    EXPECT_EQ(manager.Config["tblprofile"]["Levels\nStop"], "12.5");
    EXPECT_EQ(f.GetOstraProfileString("Levels", "Stop"), "12.5");
    EXPECT_EQ(manager.calls.GetConfigFileProperty, 1);
    EXPECT_FALSE(std::filesystem::exists(IniFile("alice")));
}

TEST_F(TableProfile, AKeyNeverWrittenReadsTheEmptyText) {
    EXPECT_EQ(f.GetOstraProfileString("Levels", "Stop"), "");
    EXPECT_EQ(manager.calls.GetConfigFileProperty, 1);
}

TEST_F(TableProfile, OnlyTheProfileTableIsUsed) {
    manager.Config["other"]["S\nK"] = "elsewhere";
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "");
    manager.Config["tblprofile"]["S\nK"] = "here";
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "here");
}

TEST_F(TableProfile, LongValuesAreNotCut) {
    const std::string value(300, 'v');
    EXPECT_TRUE(f.SetOstraProfileString("S", "K", value));
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), value);
}

TEST_F(TableProfile, ANullManagerStoresNothingAndReadsEmpty) {
    g_pSubscribeManage = nullptr;
    EXPECT_FALSE(f.SetOstraProfileString("S", "K", "v"));
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "");
    EXPECT_FALSE(std::filesystem::exists(IniFile("alice")));
}

TEST_F(TableProfile, AnyNonZeroFlagChoosesTheFile) {
    g_bUseFileProfile = 2;
    EXPECT_TRUE(f.SetOstraProfileString("S", "K", "file"));
    EXPECT_EQ(manager.calls.SetConfigFileProperty, 0);
    EXPECT_TRUE(std::filesystem::exists(IniFile("alice")));
    g_bUseFileProfile = 0;
    EXPECT_EQ(f.GetOstraProfileString("S", "K"), "");
}

}  // namespace
