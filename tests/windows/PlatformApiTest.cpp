// The Windows platform layer against the system itself.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "FormulaFunction/platform/Platform.h"
#include "support/TimeZone.h"
#include "platform/TempDir.h"

namespace {

using fftest::GetBytes;
using fftest::PutBytes;
using fftest::TempDir;

TEST(WindowsProfile, MissingFileGivesTheDefaults) {
    TempDir dir;
    const std::string path = dir.File("absent.ini");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path), "N/A");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "", path), "");
    EXPECT_EQ(ffplatform::ProfileGetInt("S", "k", 7, path), 7u);
    EXPECT_EQ(ffplatform::ProfileGetInt("S", "k", -2, path), 4294967294u);
}

TEST(WindowsProfile, ValuesAreCutTo259Characters) {
    TempDir dir;
    const std::string path = dir.File("long.ini");
    const std::string value(300, 'v');
    PutBytes(path, "[S]\r\nk=" + value + "\r\n");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path), value.substr(0, 259));
    const std::string exact(259, 'w');
    PutBytes(path, "[S]\r\nk=" + exact + "\r\n");
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", "N/A", path), exact);
}

TEST(WindowsProfile, LongDefaultsAreCutToo) {
    TempDir dir;
    const std::string fallback(400, 'd');
    EXPECT_EQ(ffplatform::ProfileGetString("S", "k", fallback, dir.File("absent.ini")),
              fallback.substr(0, 259));
}

TEST(WindowsProfile, IntegersComeBackUnsigned) {
    TempDir dir;
    const std::string path = dir.File("int.ini");
    PutBytes(path, "[Corvane]\r\nbUseFileProfile=1\r\nneg=-3\r\nmixed=7abc\r\n");
    EXPECT_EQ(ffplatform::ProfileGetInt("Corvane", "bUseFileProfile", 0, path), 1u);
    EXPECT_EQ(ffplatform::ProfileGetInt("corvane", "BUSEFILEPROFILE", 0, path), 1u);
    EXPECT_EQ(ffplatform::ProfileGetInt("Corvane", "neg", 0, path), 4294967293u);
    EXPECT_EQ(ffplatform::ProfileGetInt("Corvane", "mixed", 0, path), 7u);
}

TEST(WindowsProfile, WritingCreatesTheFileAndReadsBack) {
    TempDir dir;
    const std::string path = dir.File("new.ini");
    ASSERT_TRUE(ffplatform::ProfileWriteString("Sec", "Key", "value 1", path));
    EXPECT_EQ(ffplatform::ProfileGetString("Sec", "Key", "N/A", path), "value 1");
    ASSERT_TRUE(ffplatform::ProfileWriteString("Sec", "Key", "value 2", path));
    EXPECT_EQ(ffplatform::ProfileGetString("SEC", "key", "N/A", path), "value 2");
    EXPECT_EQ(GetBytes(path), "[Sec]\r\nKey=value 2\r\n");
}

TEST(WindowsProfile, WritingIntoAMissingFolderFails) {
    TempDir dir;
    EXPECT_FALSE(ffplatform::ProfileWriteString("S", "k", "v", dir.File("no\\such\\x.ini")));
}

TEST(WindowsFiles, RemoveFileDeletesOnlyWhatExists) {
    TempDir dir;
    const std::string path = dir.File("gone.txt");
    PutBytes(path, "x\n");
    EXPECT_TRUE(ffplatform::RemoveFile(path));
    EXPECT_EQ(GetBytes(path), "<missing>");
    EXPECT_FALSE(ffplatform::RemoveFile(path));
    EXPECT_FALSE(ffplatform::RemoveFile(dir.File("")));  // a folder is not a file
}

TEST(WindowsClock, TheRuntimeRefusesTimesBefore1970) {
    fftest::ScopedTimeZone zone(fftest::Zone::Utc);
    ffplatform::LocalTime local;
    EXPECT_FALSE(ffplatform::ToLocalTime(-1, local));
    EXPECT_TRUE(ffplatform::ToLocalTime(0, local));
    EXPECT_EQ(local.year, 1970);
    ffplatform::LocalTime early;
    early.year = 1969;
    early.month = 12;
    early.day = 31;
    early.isDst = -1;
    EXPECT_EQ(ffplatform::FromLocalTime(early), -1);
}

TEST(WindowsClock, LocalTimesInShanghai) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    ffplatform::LocalTime local;
    ASSERT_TRUE(ffplatform::ToLocalTime(1262275200, local));  // 2009-12-31 16:00 UTC
    EXPECT_EQ(local.year, 2010);
    EXPECT_EQ(local.month, 1);
    EXPECT_EQ(local.day, 1);
    EXPECT_EQ(local.hour, 0);
    EXPECT_EQ(local.weekday, 5);
    EXPECT_EQ(local.yearDay, 0);
    EXPECT_EQ(local.isDst, 0);
    EXPECT_EQ(ffplatform::FromLocalTime(local), 1262275200);
}

TEST(WindowsClock, TheClockIsTheSystemClock) {
    const auto now = std::chrono::duration_cast<std::chrono::seconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count();
    const int64_t clock = ffplatform::CurrentTimeSeconds();
    EXPECT_GE(clock, now - 2);
    EXPECT_LE(clock, now + 2);
}

}  // namespace
