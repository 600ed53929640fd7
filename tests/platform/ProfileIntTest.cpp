// The integer reader: the digits of the value as an unsigned 32-bit number.
#include <gtest/gtest.h>

#include <string>

#include "FormulaFunction/platform/Platform.h"
#include "FormulaFunction/platform/portable/ProfileEmulation.h"
#include "TempDir.h"

namespace {

using ffplatform::emulated::ParseProfileInt;

TEST(ProfileIntParse, SignAndDigits) {
    EXPECT_EQ(ParseProfileInt("0"), 0u);
    EXPECT_EQ(ParseProfileInt("42"), 42u);
    EXPECT_EQ(ParseProfileInt("+12"), 12u);
    EXPECT_EQ(ParseProfileInt("-3"), 4294967293u);
    EXPECT_EQ(ParseProfileInt("-0"), 0u);
    EXPECT_EQ(ParseProfileInt("7abc"), 7u);
    EXPECT_EQ(ParseProfileInt("abc"), 0u);
    EXPECT_EQ(ParseProfileInt(""), 0u);
    EXPECT_EQ(ParseProfileInt("-"), 0u);
    EXPECT_EQ(ParseProfileInt("- 5"), 0u);
    EXPECT_EQ(ParseProfileInt("--5"), 0u);
    EXPECT_EQ(ParseProfileInt("1 2"), 1u);
    EXPECT_EQ(ParseProfileInt("3.9"), 3u);
}

// The prefixes of the system's reader choose another base; they are lower case only
// and need at least one digit of their base after them.
TEST(ProfileIntParse, BasePrefixes) {
    EXPECT_EQ(ParseProfileInt("0x10"), 16u);
    EXPECT_EQ(ParseProfileInt("0x1F"), 31u);
    EXPECT_EQ(ParseProfileInt("0xaf"), 175u);
    EXPECT_EQ(ParseProfileInt("0xFFFFFFFF"), 4294967295u);
    EXPECT_EQ(ParseProfileInt("0x100000001"), 1u);
    EXPECT_EQ(ParseProfileInt("-0x10"), 4294967280u);
    EXPECT_EQ(ParseProfileInt("+0x10"), 16u);
    EXPECT_EQ(ParseProfileInt("0o17"), 15u);
    EXPECT_EQ(ParseProfileInt("0o8"), 0u);
    EXPECT_EQ(ParseProfileInt("0b101"), 5u);
    EXPECT_EQ(ParseProfileInt("0b102"), 2u);
    EXPECT_EQ(ParseProfileInt("0X10"), 0u);
    EXPECT_EQ(ParseProfileInt("0B101"), 0u);
    EXPECT_EQ(ParseProfileInt("0O17"), 0u);
    EXPECT_EQ(ParseProfileInt("0x"), 0u);
    EXPECT_EQ(ParseProfileInt("0xg"), 0u);
    EXPECT_EQ(ParseProfileInt("0x 10"), 0u);
    EXPECT_EQ(ParseProfileInt("00x10"), 0u);
    EXPECT_EQ(ParseProfileInt("017"), 17u);
    EXPECT_EQ(ParseProfileInt("0d10"), 0u);
    EXPECT_EQ(ParseProfileInt("x10"), 0u);
    EXPECT_EQ(ParseProfileInt("1e3"), 1u);
}

TEST(ProfileIntParse, LeadingBlanks) {
    EXPECT_EQ(ParseProfileInt("  8"), 8u);
    EXPECT_EQ(ParseProfileInt("\t\v\f -8"), 4294967288u);
    EXPECT_EQ(ParseProfileInt("\x01\x1a" "5"), 5u);  // every control character
    EXPECT_EQ(ParseProfileInt("\xA0" "5"), 0u);
}

TEST(ProfileIntParse, WrapsModulo2To32) {
    EXPECT_EQ(ParseProfileInt("4294967295"), 4294967295u);
    EXPECT_EQ(ParseProfileInt("4294967296"), 0u);
    EXPECT_EQ(ParseProfileInt("4294967297"), 1u);
    EXPECT_EQ(ParseProfileInt("-2147483648"), 2147483648u);
    EXPECT_EQ(ParseProfileInt("-2147483649"), 2147483647u);
    EXPECT_EQ(ParseProfileInt("12345678901234567890123456789"), 1849262357u);
}

class ProfileInt : public ::testing::Test {
protected:
    uint32_t Get(const std::string& key, int32_t def = -1) {
        return ffplatform::ProfileGetInt("S", key, def, path);
    }
    void SetUp() override {
        fftest::PutBytes(path,
                         "[S]\r\n"
                         "n1= -3\r\n"
                         "n2=+12\r\n"
                         "n3=7abc\r\n"
                         "n4=abc\r\n"
                         "quoted=\"42\"\r\n"
                         "quotedBlank=\" 5\"\r\n"
                         "emptyQuotes=\"\"\r\n"
                         "emptySingle=''\r\n"
                         "quoteOnly=\"\r\n"
                         "empty=\r\n"
                         "noequals\r\n"
                         "blanks=\t 8\r\n"
                         "long=1234567890123456789012345678901234567890\r\n"
                         "exact=12345678901234567890123456789\r\n"
                         "flag=1\r\n");
    }
    fftest::TempDir dir;
    const std::string path = dir.File("profile.ini");
};

TEST_F(ProfileInt, ReadsTheDigitsOfTheValue) {
    EXPECT_EQ(Get("n1"), 4294967293u);
    EXPECT_EQ(Get("n2"), 12u);
    EXPECT_EQ(Get("n3"), 7u);
    EXPECT_EQ(Get("n4"), 0u);
    EXPECT_EQ(Get("quoted"), 42u);
    EXPECT_EQ(Get("quotedBlank"), 5u);
    EXPECT_EQ(Get("quoteOnly"), 0u);
    EXPECT_EQ(Get("blanks"), 8u);
    EXPECT_EQ(Get("FLAG", 0), 1u);
}

TEST_F(ProfileInt, EmptyOrMissingValueGivesTheDefaultAsUnsigned) {
    EXPECT_EQ(Get("empty", 7), 7u);
    EXPECT_EQ(Get("emptyQuotes", 7), 7u);
    EXPECT_EQ(Get("emptySingle", 7), 7u);
    EXPECT_EQ(Get("noequals", 7), 7u);
    EXPECT_EQ(Get("missing", 7), 7u);
    EXPECT_EQ(Get("missing", -1), 4294967295u);
    EXPECT_EQ(Get("missing", INT32_MIN), 2147483648u);
    EXPECT_EQ(ffplatform::ProfileGetInt("Other", "n2", 9, path), 9u);
    EXPECT_EQ(ffplatform::ProfileGetInt("S", "n2", -5, dir.File("none.ini")), 4294967291u);
}

TEST_F(ProfileInt, ReadsTheValueThroughAThirtyCharacterBuffer) {
    // Only the first 29 digits reach the number.
    EXPECT_EQ(Get("long"), 1849262357u);
    EXPECT_EQ(Get("exact"), 1849262357u);
}

TEST_F(ProfileInt, BackslashPath) {
    EXPECT_EQ(ffplatform::ProfileGetInt("S", "n2", 0, dir.Path().string() + "\\profile.ini"),
              12u);
}

}  // namespace
