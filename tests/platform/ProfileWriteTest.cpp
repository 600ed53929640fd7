// Writing keys: where the new text goes, and that every other byte stays.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "FormulaFunction/platform/Platform.h"
#include "FormulaFunction/platform/portable/ProfileEmulation.h"
#include "TempDir.h"

namespace {

using ffplatform::emulated::SetProfileValue;

TEST(ProfileWrite, ExistingKeyKeepsItsSpellingPlaceAndLineEnding) {
    const std::string text = "[X]\nnoeq\n  Spaced  =  old\ndup=1\nDUP=2\n[Y]\r\n";
    EXPECT_EQ(SetProfileValue(text, "x", "SPACED", "b"),
              "[X]\nnoeq\nSpaced=b\ndup=1\nDUP=2\n[Y]\r\n");
    EXPECT_EQ(SetProfileValue(text, "X", "Dup", "c"),
              "[X]\nnoeq\n  Spaced  =  old\ndup=c\nDUP=2\n[Y]\r\n");
    EXPECT_EQ(SetProfileValue("[X]\rk=1\rz=2", "X", "z", "3"), "[X]\rk=1\rz=3");
    EXPECT_EQ(SetProfileValue("[X]\r\nk=1\r\n", "X", "k", ""), "[X]\r\nk=\r\n");
}

TEST(ProfileWrite, KeyWithoutEqualsGetsTheValue) {
    EXPECT_EQ(SetProfileValue("[X]\nnoeq\nb=1\n", "X", "NOEQ", "a"), "[X]\nnoeq=a\nb=1\n");
}

TEST(ProfileWrite, SemicolonLineIsAKeyLikeAnyOther) {
    EXPECT_EQ(SetProfileValue("[X]\n;c=1\n", "X", ";c", "2"), "[X]\n;c=2\n");
    EXPECT_EQ(SetProfileValue("[X]\n; note\n", "X", "k", "v"), "[X]\n; note\nk=v\r\n");
}

TEST(ProfileWrite, NewKeyGoesAfterTheLastNonBlankLineOfItsSection) {
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n\n[Y]\n", "X", "c", "3"),
              "[X]\nb=2\nc=3\r\n\n[Y]\n");
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n  \t\n\n", "X", "c", "3"),
              "[X]\nb=2\nc=3\r\n  \t\n\n");
    EXPECT_EQ(SetProfileValue("[X]\n[Y]\n", "X", "c", "3"), "[X]\nc=3\r\n[Y]\n");
    EXPECT_EQ(SetProfileValue("[X]\n\n[Y]\n", "X", "c", "3"), "[X]\nc=3\r\n\n[Y]\n");
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n[Y]\nd=4\n", "y", "c", "3"),
              "[X]\nb=2\n[Y]\nd=4\nc=3\r\n");
}

TEST(ProfileWrite, NewKeyAfterALastLineWithoutNewline) {
    EXPECT_EQ(SetProfileValue("[X]\nb=2", "X", "c", "3"), "[X]\nb=2\r\nc=3\r\n");
    EXPECT_EQ(SetProfileValue("[X]", "X", "c", "3"), "[X]\r\nc=3\r\n");
}

TEST(ProfileWrite, OnlyTheFirstSectionOfANameIsWritten) {
    EXPECT_EQ(SetProfileValue("[X]\na=1\n[x]\nz=1\n", "X", "z", "2"),
              "[X]\na=1\nz=2\r\n[x]\nz=1\n");
}

TEST(ProfileWrite, NewSectionGoesAtTheEnd) {
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n", "Y", "c", "3"), "[X]\nb=2\n[Y]\r\nc=3\r\n");
    EXPECT_EQ(SetProfileValue("[X]\nb=2", "Y", "c", "3"), "[X]\nb=2\r\n[Y]\r\nc=3\r\n");
    EXPECT_EQ(SetProfileValue("[X]\rb=2\r", "Y", "c", "3"), "[X]\rb=2\r[Y]\r\nc=3\r\n");
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n\n\n", "Y", "c", "3"), "[X]\nb=2\n\n\n[Y]\r\nc=3\r\n");
    EXPECT_EQ(SetProfileValue("", "S", "k", "v"), "[S]\r\nk=v\r\n");
}

TEST(ProfileWrite, NamelessSectionIsTheTopOfTheFile) {
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n", "", "c", "3"), "c=3\r\n[X]\nb=2\n");
    EXPECT_EQ(SetProfileValue("a=1\n\n[X]\n", "", "c", "3"), "a=1\nc=3\r\n\n[X]\n");
    EXPECT_EQ(SetProfileValue("a=1\n[]\nc=1\n", " ", "c", "3"), "a=1\nc=3\r\n[]\nc=1\n");
    EXPECT_EQ(SetProfileValue("", "", "k", "v"), "k=v\r\n");
}

TEST(ProfileWrite, EmptyKeyName) {
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n", "X", "", "v"), "[X]\nb=2\n=v\r\n");
    EXPECT_EQ(SetProfileValue("[X]\n = old\n", "X", "", "v"), "[X]\n=v\n");
}

TEST(ProfileWrite, ValueLosesLeadingBlanksOnly) {
    EXPECT_EQ(SetProfileValue("[X]\n", "X", "k", "\t x\t "), "[X]\nk=x\t \r\n");
    EXPECT_EQ(SetProfileValue("[X]\nk=1\n", "X", "k", "  new val  "), "[X]\nk=new val  \n");
    EXPECT_EQ(SetProfileValue("[X]\n", "X", "k", "a;b=c"), "[X]\nk=a;b=c\r\n");
}

TEST(ProfileWrite, NewNamesLoseLeadingBlanksAndMatchTrimmed) {
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n", " New ", " k ", "v"),
              "[X]\nb=2\n[New ]\r\nk =v\r\n");
    EXPECT_EQ(SetProfileValue("[X]\nb=2\n", " x ", " B\t", "v"), "[X]\nb=v\n");
}

TEST(ProfileWrite, EveryOtherByteStays) {
    const std::string before = "; top\r\n\r\n  [A]  tail\rk = 1  \n\t\n[B]\r\n#x\r\nj=2";
    EXPECT_EQ(SetProfileValue(before, "a", "K", "9"),
              "; top\r\n\r\n  [A]  tail\rk=9\n\t\n[B]\r\n#x\r\nj=2");
    EXPECT_EQ(SetProfileValue(before, "B", "new", "v"),
              "; top\r\n\r\n  [A]  tail\rk = 1  \n\t\n[B]\r\n#x\r\nj=2\r\nnew=v\r\n");
}

TEST(ProfileWrite, ByteOrderMarkIsPartOfTheFirstLine) {
    const std::string text = "\xEF\xBB\xBF[Bom]\r\nk=1\r\n";
    const std::string after = SetProfileValue(text, "Bom", "k", "2");
    EXPECT_EQ(after, text + "[Bom]\r\nk=2\r\n");
    const auto value = ffplatform::emulated::FindProfileValue(after, "Bom", "k");
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(*value, "2");
}

class ProfileWriteFile : public ::testing::Test {
protected:
    fftest::TempDir dir;
    const std::string path = dir.File("profile.ini");

    // The names in the folder, to see that no temporary file is left behind.
    std::string Listing() const {
        std::string names;
        for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
            names += entry.path().filename().string() + ";";
        return names;
    }
};

TEST_F(ProfileWriteFile, MissingFileIsCreated) {
    EXPECT_TRUE(ffplatform::ProfileWriteString("S", "k", "v", path));
    EXPECT_EQ(fftest::GetBytes(path), "[S]\r\nk=v\r\n");
    EXPECT_EQ(Listing(), "profile.ini;");
}

TEST_F(ProfileWriteFile, WritesReadBack) {
    ASSERT_TRUE(ffplatform::ProfileWriteString("S", "k", "first", path));
    ASSERT_TRUE(ffplatform::ProfileWriteString("S", "q", "\"quoted\"", path));
    ASSERT_TRUE(ffplatform::ProfileWriteString("S", "k", "second", path));
    ASSERT_TRUE(ffplatform::ProfileWriteString("T", "n", "-3", path));
    EXPECT_EQ(ffplatform::ProfileGetString("s", "K", "N/A", path), "second");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "q", "N/A", path), "quoted");
    EXPECT_EQ(ffplatform::ProfileGetInt("T", "n", 0, path), 4294967293u);
    EXPECT_EQ(fftest::GetBytes(path), "[S]\r\nk=second\r\nq=\"quoted\"\r\n[T]\r\nn=-3\r\n");
    EXPECT_EQ(Listing(), "profile.ini;");
}

TEST_F(ProfileWriteFile, OtherBytesOfTheFileStay) {
    const std::string before = "\xEF\xBB\xBF; saved\n[A]\rx=1\n\n[B]\r\ny = 2 ";
    fftest::PutBytes(path, before);
    ASSERT_TRUE(ffplatform::emulated::ProfileWriteString("A", "x", "7", path));
    EXPECT_EQ(fftest::GetBytes(path), "\xEF\xBB\xBF; saved\n[A]\rx=7\n\n[B]\r\ny = 2 ");
}

TEST_F(ProfileWriteFile, MissingFolderFails) {
    const std::string missing = dir.File("none") + "/profile.ini";
    EXPECT_FALSE(ffplatform::ProfileWriteString("S", "k", "v", missing));
    EXPECT_FALSE(std::filesystem::exists(dir.File("none")));
}

TEST_F(ProfileWriteFile, FolderInPlaceOfTheFileFailsAndStays) {
    std::filesystem::create_directory(path);
    EXPECT_FALSE(ffplatform::ProfileWriteString("S", "k", "v", path));
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(Listing(), "profile.ini;");
}

TEST_F(ProfileWriteFile, EmptyPathFails) {
    EXPECT_FALSE(ffplatform::ProfileWriteString("S", "k", "v", ""));
    EXPECT_FALSE(ffplatform::ProfileWriteString("S", "k", "v", std::string("\0x", 2)));
}

TEST_F(ProfileWriteFile, BackslashPathsAreMadeNative) {
    EXPECT_TRUE(ffplatform::ProfileWriteString("S", "k", "v", dir.Path().string() + "\\profile.ini"));
    EXPECT_EQ(fftest::GetBytes(path), "[S]\r\nk=v\r\n");
}

TEST_F(ProfileWriteFile, ArgumentsEndAtAnEmbeddedNul) {
    EXPECT_TRUE(ffplatform::ProfileWriteString(std::string("S\0a", 3), std::string("k\0b", 3),
                                               std::string("v\0c", 3), path));
    EXPECT_EQ(fftest::GetBytes(path), "[S]\r\nk=v\r\n");
}

TEST_F(ProfileWriteFile, PermissionsOfTheFileStay) {
#if defined(_WIN32)
    GTEST_SKIP() << "Windows files have no POSIX permissions";
#endif
    namespace fs = std::filesystem;
    fftest::PutBytes(path, "[S]\nk=1\n");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_TRUE(ffplatform::emulated::ProfileWriteString("S", "k", "2", path));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fftest::GetBytes(path), "[S]\nk=2\n");
}

// The portable writer's own check: the system's writer cannot be asked here, as Wine
// run by root writes read-only files too.
TEST_F(ProfileWriteFile, ReadOnlyFileIsRefusedAndStays) {
    namespace fs = std::filesystem;
    fftest::PutBytes(path, "[S]\nk=1\n");
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read);
    EXPECT_FALSE(ffplatform::emulated::ProfileWriteString("S", "k", "2", path));
    EXPECT_EQ(fftest::GetBytes(path), "[S]\nk=1\n");
    EXPECT_EQ(Listing(), "profile.ini;");
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
    EXPECT_TRUE(ffplatform::emulated::ProfileWriteString("S", "k", "2", path));
    EXPECT_EQ(fftest::GetBytes(path), "[S]\nk=2\n");
}

TEST_F(ProfileWriteFile, SymbolicLinkIsFollowedAndKept) {
#if defined(_WIN32)
    GTEST_SKIP() << "symbolic links need a privilege on Windows";
#endif
    namespace fs = std::filesystem;
    const std::string target = dir.File("real.ini");
    fftest::PutBytes(target, "[S]\nk=1\n");
    fs::create_symlink(target, path);
    ASSERT_TRUE(ffplatform::emulated::ProfileWriteString("S", "k", "2", path));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(fftest::GetBytes(target), "[S]\nk=2\n");
}

TEST_F(ProfileWriteFile, LeftoverTemporaryFileDoesNotDisturbTheWrite) {
    // A process that died during an earlier write left its temporary file.
    fftest::PutBytes(path, "[S]\nk=1\n");
    fftest::PutBytes(path + ".~00000000", "partial");
    ASSERT_TRUE(ffplatform::emulated::ProfileWriteString("S", "k", "2", path));
    EXPECT_EQ(fftest::GetBytes(path), "[S]\nk=2\n");
    EXPECT_EQ(fftest::GetBytes(path + ".~00000000"), "partial");
}

}  // namespace
