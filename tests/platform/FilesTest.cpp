// File deletion and the native form of built paths.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "FormulaFunction/platform/Platform.h"
#include "TempDir.h"

namespace {

using ffplatform::NativePath;
using ffplatform::RemoveFile;

TEST(NativePath, BackslashesBecomeTheSystemSeparator) {
#if defined(_WIN32)
    EXPECT_EQ(NativePath("C:\\root\\User\\u\\profile.ini"), "C:\\root\\User\\u\\profile.ini");
#else
    EXPECT_EQ(NativePath("/opt/root\\User\\u\\profile.ini"), "/opt/root/User/u/profile.ini");
    EXPECT_EQ(NativePath("\\System\\Formula\\SysFuncs.dat"), "/System/Formula/SysFuncs.dat");
    EXPECT_EQ(NativePath("a\\\\b\\"), "a//b/");
    EXPECT_EQ(NativePath("C:\\x"), "C:/x");
#endif
    EXPECT_EQ(NativePath(""), "");
    EXPECT_EQ(NativePath("plain.txt"), "plain.txt");
    EXPECT_EQ(NativePath("dir/file"), "dir/file");
}

TEST(RemoveFile, ExistingFileIsDeleted) {
    fftest::TempDir dir;
    const std::string path = dir.File("out.txt");
    fftest::PutBytes(path, "line\n");
    EXPECT_TRUE(RemoveFile(path));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(RemoveFile(path));
}

TEST(RemoveFile, MissingFileFails) {
    fftest::TempDir dir;
    EXPECT_FALSE(RemoveFile(dir.File("never.txt")));
    EXPECT_FALSE(RemoveFile(dir.File("none") + "/never.txt"));
    EXPECT_FALSE(RemoveFile(""));
}

TEST(RemoveFile, FolderIsNotAFile) {
    fftest::TempDir dir;
    const std::string folder = dir.File("sub");
    std::filesystem::create_directory(folder);
    EXPECT_FALSE(RemoveFile(folder));
    EXPECT_TRUE(std::filesystem::is_directory(folder));
}

TEST(RemoveFile, BackslashPath) {
    fftest::TempDir dir;
    fftest::PutBytes(dir.File("out.txt"), "x");
    EXPECT_TRUE(RemoveFile(dir.Path().string() + "\\out.txt"));
    EXPECT_FALSE(std::filesystem::exists(dir.File("out.txt")));
}

}  // namespace
