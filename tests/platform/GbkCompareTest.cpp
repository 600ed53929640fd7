// Case-insensitive comparison of GBK texts.
#include <gtest/gtest.h>

#include <string>

#include "FormulaFunction/platform/Platform.h"

namespace {

using ffplatform::CompareNoCaseGbk;

// The sign of the comparison, and that swapping the texts swaps it.
int Sign(const std::string& a, const std::string& b) {
    const int forward = CompareNoCaseGbk(a, b);
    const int backward = CompareNoCaseGbk(b, a);
    const int sign = forward < 0 ? -1 : (forward > 0 ? 1 : 0);
    const int reverse = backward < 0 ? -1 : (backward > 0 ? 1 : 0);
    EXPECT_EQ(sign, -reverse) << "not antisymmetric";
    return sign;
}

// Two bytes as one text.
std::string Pair(unsigned lead, unsigned trail) {
    return std::string{static_cast<char>(lead), static_cast<char>(trail)};
}

TEST(GbkCompare, AsciiLettersFold) {
    EXPECT_EQ(Sign("abc", "ABC"), 0);
    EXPECT_EQ(Sign("Close MA", "close ma"), 0);
    EXPECT_EQ(Sign("", ""), 0);
    EXPECT_EQ(Sign("a", "B"), -1);
    EXPECT_EQ(Sign("b", "A"), 1);
    EXPECT_EQ(Sign("", "a"), -1);
    EXPECT_EQ(Sign("ab", "AB c"), -1);
}

TEST(GbkCompare, SingleBytesCompareFoldedToLowerCase) {
    // '_' (0x5F) and '`' (0x60) lie between the upper- and the lower-case letters.
    EXPECT_EQ(Sign("_", "a"), -1);
    EXPECT_EQ(Sign("_", "A"), -1);
    EXPECT_EQ(Sign("`", "A"), -1);
    EXPECT_EQ(Sign("[", "a"), -1);
    EXPECT_EQ(Sign("{", "Z"), 1);
}

TEST(GbkCompare, BytesAboveAsciiCompareUnsigned) {
    EXPECT_EQ(Sign("\x80", "a"), 1);
    EXPECT_EQ(Sign("\xFF", "\x80"), 1);
    EXPECT_EQ(Sign("\xFF", "\xff"), 0);
}

TEST(GbkCompare, PairCompareAsOneCharacter) {
    EXPECT_EQ(Sign("\xB0\xA1", "\xB0\xA1"), 0);
    EXPECT_EQ(Sign("\xB0\xA1", "\xB0\xA2"), -1);
    EXPECT_EQ(Sign("a\xB0\xA1", "A\xB0\xA1"), 0);
    EXPECT_EQ(Sign("\xB0\xA1x", "\xB0\xA1X"), 0);
    // A pair is above every single byte, 0xFF included.
    EXPECT_EQ(Sign("\xA3\xC1", "A"), 1);
    EXPECT_EQ(Sign("\xA3\xC1", "a"), 1);
    EXPECT_EQ(Sign("\xFF", "\xFE\x40"), -1);
    EXPECT_EQ(Sign("\x81\x40", "\xFF"), 1);
}

TEST(GbkCompare, TrailByteIsNeverFoldedAsAnAsciiLetter) {
    EXPECT_NE(Sign("\x81" "a", "\x81" "A"), 0);
    EXPECT_EQ(Sign("\x81" "a", "\x81" "A"), 1);
    EXPECT_EQ(Sign("\xB0" "Z", "\xB0" "z"), -1);
    // The trail byte is taken even when it looks like a lead byte.
    EXPECT_EQ(Sign("\x81\x81" "a", "\x81\x81" "A"), 0);
}

TEST(GbkCompare, LeadByteAtTheEndEndsTheText) {
    EXPECT_EQ(Sign("ab\x81", "ab"), 0);
    EXPECT_EQ(Sign("AB\xFE", "ab\x81"), 0);
    EXPECT_EQ(Sign("ab\x81", "abc"), -1);
    EXPECT_EQ(Sign("\x81", ""), 0);
}

TEST(GbkCompare, TextsEndAtAnEmbeddedNul) {
    EXPECT_EQ(Sign(std::string("ab\0c", 4), "AB"), 0);
    EXPECT_EQ(Sign(std::string("\x81\0a", 3), ""), 0);
}

TEST(GbkCompare, FullWidthLatinLettersFold) {
    EXPECT_EQ(Sign(Pair(0xA3, 0xC1), Pair(0xA3, 0xE1)), 0);  // A a
    EXPECT_EQ(Sign(Pair(0xA3, 0xDA), Pair(0xA3, 0xFA)), 0);  // Z z
    EXPECT_EQ(Sign(Pair(0xA3, 0xDB), Pair(0xA3, 0xFB)), -1);  // [ {
    EXPECT_EQ(Sign(Pair(0xA3, 0xC0), Pair(0xA3, 0xE0)), -1);  // @ `
    // Lower case compares as its upper-case partner.
    EXPECT_EQ(Sign(Pair(0xA3, 0xE1), Pair(0xA3, 0xD0)), -1);
    EXPECT_EQ(Sign(Pair(0xA3, 0xE1), Pair(0xA3, 0xC0)), 1);
}

TEST(GbkCompare, FullWidthLetterNeverEqualsAnAsciiLetter) {
    EXPECT_NE(Sign(Pair(0xA3, 0xC1), "A"), 0);
    EXPECT_NE(Sign(Pair(0xA3, 0xE1), "a"), 0);
    EXPECT_NE(Sign(Pair(0xA3, 0xE1) + "b", "ab"), 0);
}

TEST(GbkCompare, GreekLettersFold) {
    EXPECT_EQ(Sign(Pair(0xA6, 0xA1), Pair(0xA6, 0xC1)), 0);
    EXPECT_EQ(Sign(Pair(0xA6, 0xB8), Pair(0xA6, 0xD8)), 0);
    EXPECT_EQ(Sign(Pair(0xA6, 0xB9), Pair(0xA6, 0xD9)), -1);
    EXPECT_EQ(Sign(Pair(0xA6, 0xA0), Pair(0xA6, 0xC0)), -1);
}

TEST(GbkCompare, CyrillicLettersFold) {
    EXPECT_EQ(Sign(Pair(0xA7, 0xA1), Pair(0xA7, 0xD1)), 0);
    EXPECT_EQ(Sign(Pair(0xA7, 0xA7), Pair(0xA7, 0xD7)), 0);
    EXPECT_EQ(Sign(Pair(0xA7, 0xC1), Pair(0xA7, 0xF1)), 0);
    EXPECT_EQ(Sign(Pair(0xA7, 0xC2), Pair(0xA7, 0xF2)), -1);
    EXPECT_EQ(Sign(Pair(0xA7, 0xA0), Pair(0xA7, 0xD0)), -1);
}

TEST(GbkCompare, RomanNumeralsFold) {
    EXPECT_EQ(Sign(Pair(0xA2, 0xF1), Pair(0xA2, 0xA1)), 0);
    EXPECT_EQ(Sign(Pair(0xA2, 0xFA), Pair(0xA2, 0xAA)), 0);
    EXPECT_EQ(Sign(Pair(0xA2, 0xFB), Pair(0xA2, 0xAB)), 1);
    EXPECT_EQ(Sign(Pair(0xA2, 0xF0), Pair(0xA2, 0xA0)), 1);
    // The small numerals sort as the capitals they fold to, above A2B0.
    EXPECT_EQ(Sign(Pair(0xA2, 0xA1), Pair(0xA2, 0xB0)), 1);
}

TEST(GbkCompare, MixedText) {
    const std::string upper = "MA" + Pair(0xA3, 0xC1) + Pair(0xB0, 0xA1) + Pair(0xA6, 0xA2);
    const std::string lower = "ma" + Pair(0xA3, 0xE1) + Pair(0xB0, 0xA1) + Pair(0xA6, 0xC2);
    EXPECT_EQ(Sign(upper, lower), 0);
    EXPECT_EQ(Sign(upper + "x", lower), 1);
}

}  // namespace
