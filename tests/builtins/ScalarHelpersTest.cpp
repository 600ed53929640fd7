#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "FormulaFunction/builtins/ScalarHelpers.h"

namespace {

using namespace ffbuiltins;

TEST(ScalarHelpers, InvalidValues) {
    EXPECT_EQ(kInvalidInteger, 2147483647);
    EXPECT_EQ(kInvalidNumeric, 1.7976931348623157e308);
    EXPECT_TRUE(IsInvalidText("N/A"));
    EXPECT_FALSE(IsInvalidText("n/a"));
    EXPECT_FALSE(IsInvalidText(" N/A"));
    EXPECT_FALSE(IsInvalidText(std::string("N/A\0", 4)));
}

TEST(ScalarHelpers, TruncateToInt32TruncatesTowardZero) {
    EXPECT_EQ(TruncateToInt32(1.9), 1);
    EXPECT_EQ(TruncateToInt32(-1.9), -1);
    EXPECT_EQ(TruncateToInt32(-0.5), 0);
    EXPECT_EQ(TruncateToInt32(2147483647.9), 2147483647);
    EXPECT_EQ(TruncateToInt32(-2147483648.9), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(-2147483647.5), -2147483647);
}

TEST(ScalarHelpers, TruncateToInt32GivesTheIndefiniteValueOutOfRange) {
    EXPECT_EQ(TruncateToInt32(2147483648.0), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(-2147483649.0), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(1e300), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(DBL_MAX), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(std::numeric_limits<double>::infinity()), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(-std::numeric_limits<double>::infinity()), INT32_MIN);
    EXPECT_EQ(TruncateToInt32(std::nan("")), INT32_MIN);
}

TEST(ScalarHelpers, TruncateToInt64) {
    EXPECT_EQ(TruncateToInt64(-3.7), -3);
    EXPECT_EQ(TruncateToInt64(4e18), 4000000000000000000LL);
    EXPECT_EQ(TruncateToInt64(9223372036854775808.0), INT64_MIN);
    EXPECT_EQ(TruncateToInt64(DBL_MAX), INT64_MIN);
    EXPECT_EQ(TruncateToInt64(std::nan("")), INT64_MIN);
}

TEST(ScalarHelpers, WrapToInt32) {
    EXPECT_EQ(WrapToInt32(0x80000000u), INT32_MIN);
    EXPECT_EQ(WrapToInt32(0xFFFFFFFFu), -1);
    EXPECT_EQ(WrapToInt32(5u), 5);
}

TEST(ScalarHelpers, ReadDecimalFieldReadsLikeAtoi) {
    EXPECT_EQ(ReadDecimalField("2010-03-25", 0, 4), 2010);
    EXPECT_EQ(ReadDecimalField("2010-03-25", 5, 2), 3);
    EXPECT_EQ(ReadDecimalField("2010-03-25", 8, 2), 25);
    EXPECT_EQ(ReadDecimalField("  7x", 0, 4), 7);
    EXPECT_EQ(ReadDecimalField("\t-42", 0, 4), -42);
    EXPECT_EQ(ReadDecimalField("+5", 0, 2), 5);
    EXPECT_EQ(ReadDecimalField("-", 0, 1), 0);
    EXPECT_EQ(ReadDecimalField("ab12", 0, 4), 0);
    EXPECT_EQ(ReadDecimalField("5:", 0, 2), 5);
    EXPECT_EQ(ReadDecimalField(".5", 0, 2), 0);
}

TEST(ScalarHelpers, ReadDecimalFieldStopsAtTheFieldAndTheText) {
    EXPECT_EQ(ReadDecimalField("123456", 1, 2), 23);
    EXPECT_EQ(ReadDecimalField("123", 2, 5), 3);
    EXPECT_EQ(ReadDecimalField("123", 3, 2), 0);
    EXPECT_EQ(ReadDecimalField("123", 9, 2), 0);
    EXPECT_EQ(ReadDecimalField("", 0, 4), 0);
}

TEST(ScalarHelpers, ReadDecimalFieldSaturates) {
    EXPECT_EQ(ReadDecimalField("99999999999", 0, 11), INT32_MAX);
    EXPECT_EQ(ReadDecimalField("-99999999999", 0, 12), INT32_MIN);
    EXPECT_EQ(ReadDecimalField("-2147483648", 0, 11), INT32_MIN);
}

TEST(ScalarHelpers, TimeOfDayValueSumsSecondsHoursMinutes) {
    EXPECT_EQ(TimeOfDayValue(14, 35, 7), 7 * 0.000001 + 14 * 0.01 + 35 * 0.0001);
    EXPECT_EQ(TimeOfDayValue(0, 0, 0), 0.0);
}

TEST(ScalarHelpers, RaiseToEpochDate) {
    EXPECT_EQ(RaiseToEpochDate(19650101), 19700102);
    EXPECT_EQ(RaiseToEpochDate(19700101), 19700102);
    EXPECT_EQ(RaiseToEpochDate(19700102), 19700102);
    EXPECT_EQ(RaiseToEpochDate(-5), 19700102);
    EXPECT_EQ(RaiseToEpochDate(20100325), 20100325);
}

TEST(ScalarHelpers, ScaleToEightDigits) {
    EXPECT_EQ(ScaleToEightDigits(2010325), 20103250);
    EXPECT_EQ(ScaleToEightDigits(20100325), 20100325);
    EXPECT_EQ(ScaleToEightDigits(1), 10000000);
    EXPECT_EQ(ScaleToEightDigits(999999), 99999900);
    EXPECT_EQ(ScaleToEightDigits(0), 0);
    // -5 x 10^9 wraps to -705032704, whose next multiple wraps to 1539607552.
    EXPECT_EQ(ScaleToEightDigits(-5), 1539607552);
    // -2^31 is 0 after one more wrapping multiplication: it stops there.
    EXPECT_EQ(ScaleToEightDigits(INT32_MIN), 0);
}

TEST(ScalarHelpers, SplitDateValue) {
    CalendarDate d = SplitDateValue(20100325);
    EXPECT_EQ(d.year, 2010);
    EXPECT_EQ(d.month, 3);
    EXPECT_EQ(d.day, 25);
    d = SplitDateValue(2010032512);  // surplus digits dropped
    EXPECT_EQ(d.year, 2010);
    EXPECT_EQ(d.month, 3);
    EXPECT_EQ(d.day, 25);
    d = SplitDateValue(20109977);  // no range checks
    EXPECT_EQ(d.month, 99);
    EXPECT_EQ(d.day, 77);
}

TEST(ScalarHelpers, ResetOverflowingParts) {
    CalendarDate d{2010, 13, 15};
    ResetOverflowingParts(d);
    EXPECT_EQ(d.month, 1);
    EXPECT_EQ(d.day, 1);
    d = CalendarDate{2010, 3, 32};
    ResetOverflowingParts(d);
    EXPECT_EQ(d.month, 3);
    EXPECT_EQ(d.day, 1);
    d = CalendarDate{2010, 0, 0};
    ResetOverflowingParts(d);
    EXPECT_EQ(d.month, 0);
    EXPECT_EQ(d.day, 0);
    d = CalendarDate{2010, 12, 31};
    ResetOverflowingParts(d);
    EXPECT_EQ(d.month, 12);
    EXPECT_EQ(d.day, 31);
}

TEST(ScalarHelpers, DateValue) { EXPECT_EQ(DateValue(2010, 3, 25), 20100325); }

}  // namespace
