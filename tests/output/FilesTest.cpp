#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "FormulaFunction/FormulaFunction.h"
#include "SavedSettings.h"
#include "support/TempFolder.h"

namespace {

using outputtest::ReadText;

TEST(FileAppend, CreatesTheFileAndAddsOneLinePerCall) {
    TempFolder root;
    const std::filesystem::path file = root.Path() / "log.txt";
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(file.string(), "first"));
    EXPECT_EQ(ReadText(file), "first\n");
    EXPECT_TRUE(f.FileAppend(file.string(), ""));
    EXPECT_TRUE(f.FileAppend(file.string(), "third line, 100%s"));
    EXPECT_EQ(ReadText(file), "first\n\nthird line, 100%s\n");
}

TEST(FileAppend, KeepsWhatTheFileHeld) {
    TempFolder root;
    const std::filesystem::path file = root.Path() / "old.txt";
    {
        std::ofstream out(file);
        out << "no newline";
    }
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(file.string(), "next"));
    EXPECT_EQ(ReadText(file), "no newlinenext\n");
}

TEST(FileAppend, TheLineEndsAtItsFirstNul) {
    TempFolder root;
    const std::filesystem::path file = root.Path() / "nulbyte.txt";
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(file.string(), std::string("ab\0cd", 5)));
    EXPECT_EQ(ReadText(file), "ab\n");
}

TEST(FileAppend, ANameBuiltWithBackslashesIsOpened) {
    TempFolder root;
    std::filesystem::create_directories(root.Path() / "sub");
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(root.String() + "\\sub\\built.txt", "x"));
    EXPECT_EQ(ReadText(root.Path() / "sub" / "built.txt"), "x\n");
}

TEST(FileAppend, AFileThatCannotBeOpenedIsFalse) {
    TempFolder root;
    CSystemFuncs f(nullptr);
    EXPECT_FALSE(f.FileAppend((root.Path() / "missing" / "log.txt").string(), "x"));
    EXPECT_FALSE(f.FileAppend(root.String(), "x"));  // a folder
    EXPECT_FALSE(f.FileAppend("", "x"));
    EXPECT_FALSE(std::filesystem::exists(root.Path() / "missing"));
}

TEST(FileDelete, DeletesAnExistingFileOnce) {
    TempFolder root;
    const std::filesystem::path file = root.Path() / "gone.txt";
    CSystemFuncs f(nullptr);
    ASSERT_TRUE(f.FileAppend(file.string(), "x"));
    EXPECT_TRUE(f.FileDelete(file.string()));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_FALSE(f.FileDelete(file.string()));
}

TEST(FileDelete, AMissingFileIsFalse) {
    TempFolder root;
    CSystemFuncs f(nullptr);
    EXPECT_FALSE(f.FileDelete((root.Path() / "never.txt").string()));
    EXPECT_FALSE(f.FileDelete(""));
}

TEST(FileDelete, ANameBuiltWithBackslashesIsDeleted) {
    TempFolder root;
    std::filesystem::create_directories(root.Path() / "sub");
    const std::filesystem::path file = root.Path() / "sub" / "b.txt";
    { std::ofstream out(file); }
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileDelete(root.String() + "\\sub\\b.txt"));
    EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
