#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "FormulaFunction/FormulaFunction.h"
#include "TempRoot.h"

namespace {

using outputtest::ReadText;
using outputtest::TempRoot;

TEST(FileAppend, CreatesTheFileAndAddsOneLinePerCall) {
    TempRoot root;
    const std::filesystem::path file = root.path() / "log.txt";
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(file.string(), "first"));
    EXPECT_EQ(ReadText(file), "first\n");
    EXPECT_TRUE(f.FileAppend(file.string(), ""));
    EXPECT_TRUE(f.FileAppend(file.string(), "third line, 100%s"));
    EXPECT_EQ(ReadText(file), "first\n\nthird line, 100%s\n");
}

TEST(FileAppend, KeepsWhatTheFileHeld) {
    TempRoot root;
    const std::filesystem::path file = root.path() / "old.txt";
    {
        std::ofstream out(file);
        out << "no newline";
    }
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(file.string(), "next"));
    EXPECT_EQ(ReadText(file), "no newlinenext\n");
}

TEST(FileAppend, TheLineEndsAtItsFirstNul) {
    TempRoot root;
    const std::filesystem::path file = root.path() / "nul.txt";
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(file.string(), std::string("ab\0cd", 5)));
    EXPECT_EQ(ReadText(file), "ab\n");
}

TEST(FileAppend, ANameBuiltWithBackslashesIsOpened) {
    TempRoot root;
    std::filesystem::create_directories(root.path() / "sub");
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileAppend(root.str() + "\\sub\\built.txt", "x"));
    EXPECT_EQ(ReadText(root.path() / "sub" / "built.txt"), "x\n");
}

TEST(FileAppend, AFileThatCannotBeOpenedIsFalse) {
    TempRoot root;
    CSystemFuncs f(nullptr);
    EXPECT_FALSE(f.FileAppend((root.path() / "missing" / "log.txt").string(), "x"));
    EXPECT_FALSE(f.FileAppend(root.str(), "x"));  // a folder
    EXPECT_FALSE(f.FileAppend("", "x"));
    EXPECT_FALSE(std::filesystem::exists(root.path() / "missing"));
}

TEST(FileDelete, DeletesAnExistingFileOnce) {
    TempRoot root;
    const std::filesystem::path file = root.path() / "gone.txt";
    CSystemFuncs f(nullptr);
    ASSERT_TRUE(f.FileAppend(file.string(), "x"));
    EXPECT_TRUE(f.FileDelete(file.string()));
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_FALSE(f.FileDelete(file.string()));
}

TEST(FileDelete, AMissingFileIsFalse) {
    TempRoot root;
    CSystemFuncs f(nullptr);
    EXPECT_FALSE(f.FileDelete((root.path() / "never.txt").string()));
    EXPECT_FALSE(f.FileDelete(""));
}

TEST(FileDelete, ANameBuiltWithBackslashesIsDeleted) {
    TempRoot root;
    std::filesystem::create_directories(root.path() / "sub");
    const std::filesystem::path file = root.path() / "sub" / "b.txt";
    { std::ofstream out(file); }
    CSystemFuncs f(nullptr);
    EXPECT_TRUE(f.FileDelete(root.str() + "\\sub\\b.txt"));
    EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
