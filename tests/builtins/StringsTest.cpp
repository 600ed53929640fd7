#include <cmath>
#include <cstdlib>
#include <string>

#include "BuiltinsFixture.h"

namespace {

using StringsTest = BuiltinsTest;

const std::string kNA = "N/A";

TEST_F(StringsTest, Len) {
    EXPECT_EQ(f.Len("abc"), 3);
    EXPECT_EQ(f.Len(""), 0);
    EXPECT_EQ(f.Len(std::string("a\0b", 3)), 3);
    EXPECT_EQ(f.Len("n/a"), 3);
}

TEST_F(StringsTest, LenOfTheInvalidTextIsTheInvalidInteger) { EXPECT_EQ(f.Len(kNA), kInvalidInt); }

TEST_F(StringsTest, ExactComparesLengthAndBytes) {
    EXPECT_TRUE(f.Exact("abc", "abc"));
    EXPECT_TRUE(f.Exact("", ""));
    EXPECT_FALSE(f.Exact("abc", "ABC"));
    EXPECT_FALSE(f.Exact("abc", "abcd"));
    EXPECT_FALSE(f.Exact(std::string("ab\0c", 4), std::string("ab\0d", 4)));
}

TEST_F(StringsTest, ExactIsFalseForMissingTexts) {
    EXPECT_FALSE(f.Exact(kNA, kNA));
    EXPECT_FALSE(f.Exact(kNA, "x"));
    EXPECT_FALSE(f.Exact("x", kNA));
}

TEST_F(StringsTest, UpperAndLowerConvertAsciiLetters) {
    EXPECT_EQ(f.Upper("abc-Xyz 1"), "ABC-XYZ 1");
    EXPECT_EQ(f.Lower("ABC-xYZ 1"), "abc-xyz 1");
    EXPECT_EQ(f.Upper(""), "");
    // Bytes above 0x7F are left alone in the C locale (a GBK character here).
    EXPECT_EQ(f.Upper("\xD6\xD0" "a"), "\xD6\xD0" "A");
}

TEST_F(StringsTest, UpperAndLowerEndAtTheFirstNulByte) {
    EXPECT_EQ(f.Upper(std::string("ab\0cd", 5)), std::string("AB\0cd", 5));
    EXPECT_EQ(f.Lower(std::string("AB\0CD", 5)), std::string("ab\0CD", 5));
}

TEST_F(StringsTest, UpperAndLowerKeepTheInvalidText) {
    EXPECT_EQ(f.Upper(kNA), kNA);
    EXPECT_EQ(f.Lower(kNA), kNA);
    EXPECT_EQ(f.Lower("N/AB"), "n/ab");
}

TEST_F(StringsTest, TrimDropsOuterBlanksAndShrinksInnerRuns) {
    EXPECT_EQ(f.Trim("  a   b "), "a b");
    EXPECT_EQ(f.Trim("abc"), "abc");
    EXPECT_EQ(f.Trim(""), "");
    EXPECT_EQ(f.Trim("    "), "");
    EXPECT_EQ(f.Trim("a b c"), "a b c");
}

TEST_F(StringsTest, TrimOnlyTreatsTheBlankAsWhiteSpace) {
    EXPECT_EQ(f.Trim(" \tx \t "), "\tx \t");
    EXPECT_EQ(f.Trim("a\n\nb"), "a\n\nb");
}

TEST_F(StringsTest, TrimOfTheInvalidText) {
    EXPECT_EQ(f.Trim(kNA), kNA);
    EXPECT_EQ(f.Trim(" N/A "), kNA);  // not missing data, but trimmed to the same text
}

TEST_F(StringsTest, Left) {
    EXPECT_EQ(f.Left("abcdef", 2), "ab");
    EXPECT_EQ(f.Left("abcdef", 0), "");
    EXPECT_EQ(f.Left("abcdef", -1), "");
    EXPECT_EQ(f.Left("abcdef", 10), "abcdef");
    EXPECT_EQ(f.Left("abcdef", kInvalidInt), kNA);
    EXPECT_EQ(f.Left(kNA, 1), kNA);
}

TEST_F(StringsTest, Right) {
    EXPECT_EQ(f.Right("abcdef", 2), "ef");
    EXPECT_EQ(f.Right("abcdef", 0), "");
    EXPECT_EQ(f.Right("abcdef", -3), "");
    EXPECT_EQ(f.Right("abcdef", 10), "abcdef");
    EXPECT_EQ(f.Right("abcdef", kInvalidInt), kNA);
    EXPECT_EQ(f.Right(kNA, 1), kNA);
}

TEST_F(StringsTest, Mid) {
    EXPECT_EQ(f.Mid("abcdef", 2, 3), "cde");
    EXPECT_EQ(f.Mid("abcdef", 0, 1), "a");
    EXPECT_EQ(f.Mid("abcdef", -2, 3), "abc");
    EXPECT_EQ(f.Mid("abcdef", 4, 10), "ef");
    EXPECT_EQ(f.Mid("abcdef", 6, 1), "");
    EXPECT_EQ(f.Mid("abcdef", 10, 1), "");
    EXPECT_EQ(f.Mid("abcdef", 2, -1), "");
    EXPECT_EQ(f.Mid("abcdef", 2, 0), "");
}

TEST_F(StringsTest, MidWithInvalidArguments) {
    EXPECT_EQ(f.Mid("abcdef", kInvalidInt, 1), kNA);
    EXPECT_EQ(f.Mid("abcdef", 1, kInvalidInt), kNA);
    EXPECT_EQ(f.Mid(kNA, 0, 1), kNA);
}

TEST_F(StringsTest, ValueReadsTheLeadingDecimalNumber) {
    EXPECT_EQ(f.Value("3.25"), 3.25);
    EXPECT_EQ(f.Value("  -1.5e2xyz"), -150.0);
    EXPECT_EQ(f.Value("+7"), 7.0);
    EXPECT_EQ(f.Value(".5"), 0.5);
    EXPECT_EQ(f.Value("12."), 12.0);
    EXPECT_EQ(f.Value("1e"), 1.0);
    EXPECT_EQ(f.Value("2E+3"), 2000.0);
    EXPECT_EQ(f.Value("0.1"), 0.1);
}

TEST_F(StringsTest, ValueIsZeroWithoutANumber) {
    EXPECT_EQ(f.Value("abc"), 0.0);
    EXPECT_EQ(f.Value(""), 0.0);
    EXPECT_EQ(f.Value("-"), 0.0);
    EXPECT_EQ(f.Value("."), 0.0);
    EXPECT_EQ(f.Value("0x1A"), 0.0);  // only decimal text
    EXPECT_EQ(f.Value("inf"), 0.0);
    EXPECT_EQ(f.Value("nan"), 0.0);
}

TEST_F(StringsTest, ValueOfTheInvalidText) { EXPECT_EQ(f.Value(kNA), kInvalid); }

TEST_F(StringsTest, ValueOfLongAndHugeNumbers) {
    const std::string digits(100, '1');
    EXPECT_EQ(f.Value(digits), std::strtod(digits.c_str(), nullptr));
    EXPECT_TRUE(std::isinf(f.Value("1e400")));
    EXPECT_EQ(f.Value(std::string("12\0" "34", 5)), 12.0);
}

TEST_F(StringsTest, TextOfWholeNumbersHasNoDecimals) {
    EXPECT_EQ(f.Text(3.000001), "3");
    EXPECT_EQ(f.Text(0), "0");
    EXPECT_EQ(f.Text(-7), "-7");
    EXPECT_EQ(f.Text(123456789), "123456789");
}

TEST_F(StringsTest, TextOfOtherNumbersHasFourDecimals) {
    EXPECT_EQ(f.Text(3.5), "3.5000");
    EXPECT_EQ(f.Text(-2.25), "-2.2500");
    EXPECT_EQ(f.Text(12345678.9), "12345678.9000");
    EXPECT_EQ(f.Text(0.123456), "0.1235");
}

TEST_F(StringsTest, TextMeasuresTheFractionAboveTheFloor) {
    // -2.000001 lies 0.999999 above its floor -3.
    EXPECT_EQ(f.Text(-2.000001), "-2.0000");
    // Beyond the 32-bit range the integer part is 0x80000000, so the fraction is large.
    EXPECT_EQ(f.Text(1e10), "10000000000.0000");
}

TEST_F(StringsTest, TextOfTheInvalidNumeric) {
    EXPECT_EQ(f.Text(kInvalid), kNA);
    // The negative largest double is an ordinary number: below the 32-bit range its
    // fraction is negative, so it prints whole, 309 digits after the sign.
    const std::string text = f.Text(-kInvalid);
    EXPECT_EQ(text.size(), 310u);
    EXPECT_EQ(text.substr(0, 18), "-17976931348623157");
}

}  // namespace
