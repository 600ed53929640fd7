// Composing, formatting and parsing dates and times: none of these depends on the
// time zone.
#include <cmath>
#include <limits>
#include <string>

#include "BuiltinsFixture.h"

namespace {

using DateTimeTest = BuiltinsTest;

double TimeOfDay(int h, int m, int s) { return s * 0.000001 + h * 0.01 + m * 0.0001; }

TEST_F(DateTimeTest, MakeDate) {
    EXPECT_EQ(f.MakeDate(2010, 3, 25), 20100325);
    EXPECT_EQ(f.MakeDate(1900, 1, 1), 19000101);
    EXPECT_EQ(f.MakeDate(9999, 12, 31), 99991231);
}

TEST_F(DateTimeTest, MakeDateClampsEachPartToItsFirstValue) {
    EXPECT_EQ(f.MakeDate(1899, 3, 25), 19000325);
    EXPECT_EQ(f.MakeDate(10000, 3, 25), 19000325);
    EXPECT_EQ(f.MakeDate(2010, 0, 25), 20100125);
    EXPECT_EQ(f.MakeDate(2010, 13, 25), 20100125);
    EXPECT_EQ(f.MakeDate(2010, 3, 0), 20100301);
    EXPECT_EQ(f.MakeDate(2010, 3, 32), 20100301);
    EXPECT_EQ(f.MakeDate(2010, 2, 31), 20100231);  // no calendar check
}

TEST_F(DateTimeTest, MakeDateClampsTheInvalidIntegerLikeAnyNumber) {
    EXPECT_EQ(f.MakeDate(kInvalidInt, 5, 5), 19000505);
    EXPECT_EQ(f.MakeDate(2010, kInvalidInt, kInvalidInt), 20100101);
}

TEST_F(DateTimeTest, MakeTime) {
    EXPECT_EQ(f.MakeTime(14, 35, 7), TimeOfDay(14, 35, 7));
    EXPECT_EQ(f.MakeTime(0, 0, 0), 0.0);
}

TEST_F(DateTimeTest, MakeTimeKeepsTheUpperLimits) {
    EXPECT_EQ(f.MakeTime(24, 60, 60), TimeOfDay(24, 60, 60));
    EXPECT_EQ(f.MakeTime(24, 60, 60), 0.24606);
}

TEST_F(DateTimeTest, MakeTimeZeroesPartsBeyondTheLimits) {
    EXPECT_EQ(f.MakeTime(25, 61, 61), 0.0);
    EXPECT_EQ(f.MakeTime(-1, 5, 5), TimeOfDay(0, 5, 5));
    EXPECT_EQ(f.MakeTime(9, 61, 5), TimeOfDay(9, 0, 5));
    EXPECT_EQ(f.MakeTime(9, 5, 61), TimeOfDay(9, 5, 0));
}

TEST_F(DateTimeTest, MakeTimeKeepsNegativeMinutesAndSeconds) {
    EXPECT_EQ(f.MakeTime(9, -5, -7), TimeOfDay(9, -5, -7));
}

TEST_F(DateTimeTest, MakeTimeRefusesTheInvalidInteger) {
    EXPECT_EQ(f.MakeTime(kInvalidInt, 0, 0), kInvalid);
    EXPECT_EQ(f.MakeTime(0, kInvalidInt, 0), kInvalid);
    EXPECT_EQ(f.MakeTime(0, 0, kInvalidInt), kInvalid);
}

TEST_F(DateTimeTest, MakeDateTimePutsTheMonthInTheMinuteSlot) {
    EXPECT_EQ(f.MakeDateTime(20100325, 0.143520), 20 * 0.000001 + 14 * 0.01 + 3 * 0.0001 + 20100325);
    EXPECT_EQ(f.MakeDateTime(20100325, 0.143520), 20100325.140320);
    EXPECT_EQ(f.MakeDateTime(20101225, 0.0), 12 * 0.0001 + 20101225);
}

TEST_F(DateTimeTest, MakeDateTimeNormalisesTheDate) {
    // Seven digits are scaled up; surplus digits dropped.
    EXPECT_EQ(f.MakeDateTime(2010032, 0.0), 3 * 0.0001 + 20100320);
    EXPECT_EQ(f.MakeDateTime(201003251, 0.0), 3 * 0.0001 + 20100325);
    // A month past December becomes January and keeps its day; a day past 31 becomes 1.
    EXPECT_EQ(f.MakeDateTime(20101315, 0.0), 1 * 0.0001 + 20100115);
    EXPECT_EQ(f.MakeDateTime(20101340, 0.0), 1 * 0.0001 + 20100101);
    EXPECT_EQ(f.MakeDateTime(20100340, 0.0), 3 * 0.0001 + 20100301);
}

TEST_F(DateTimeTest, MakeDateTimeZeroesHoursAndSecondsBeyondTheLimits) {
    // 0.25 reads as hour 25.
    EXPECT_EQ(f.MakeDateTime(20100325, 0.25), 3 * 0.0001 + 20100325);
    // 0.120075 reads as 12:00:75.
    EXPECT_EQ(f.MakeDateTime(20100325, 0.120075), 12 * 0.01 + 3 * 0.0001 + 20100325);
    EXPECT_EQ(f.MakeDateTime(20100325, 0.240060), 60 * 0.000001 + 24 * 0.01 + 3 * 0.0001 + 20100325);
}

TEST_F(DateTimeTest, MakeDateTimeOfZeroDate) {
    // Zero never reaches eight digits: year, month and day stay 0.
    EXPECT_EQ(f.MakeDateTime(0, 0.1), 10 * 0.01);
}

TEST_F(DateTimeTest, MakeDateTimeRefusesInvalidValues) {
    EXPECT_EQ(f.MakeDateTime(kInvalidInt, 0.1), kInvalid);
    EXPECT_EQ(f.MakeDateTime(20100325, kInvalid), kInvalid);
}

TEST_F(DateTimeTest, MakeDateTimeOfTimesBeyondTheIntegerRange) {
    // Every scaled part converts to 0x80000000; the products wrap to 0 in 32 bits,
    // so hour and second stay -2^31 (neither is above its limit).
    const double expected = -2147483648.0 * 0.000001 + -2147483648.0 * 0.01 + 3 * 0.0001 + 20100325;
    EXPECT_EQ(f.MakeDateTime(20100325, 1e300), expected);
    EXPECT_EQ(f.MakeDateTime(20100325, std::numeric_limits<double>::quiet_NaN()), expected);
}

TEST_F(DateTimeTest, DateToString) {
    EXPECT_EQ(f.DateToString(20100325), "2010-03-25");
    EXPECT_EQ(f.DateToString(19650101), "1965-01-01");  // no raise to 1970 here
    EXPECT_EQ(f.DateToString(201003251), "2010-03-25");
    EXPECT_EQ(f.DateToString(20101315), "2010-01-01");
    EXPECT_EQ(f.DateToString(20100340), "2010-03-01");
    EXPECT_EQ(f.DateToString(kInvalidInt), "N/A");
}

TEST_F(DateTimeTest, DateToStringScalesShortValues) {
    // 2010325 becomes 20103250, whose month 32 resets month and day.
    EXPECT_EQ(f.DateToString(2010325), "2010-01-01");
    EXPECT_EQ(f.DateToString(1), "1000-00-00");  // month and day 0 are not reset
    EXPECT_EQ(f.DateToString(0), "0000-00-00");
    // Negative values are scaled with wrapping multiplications: -5 ends at 1539607552.
    EXPECT_EQ(f.DateToString(-5), "1539-01-01");
}

TEST_F(DateTimeTest, TimeToString) {
    EXPECT_EQ(f.TimeToString(0.0935), "09:35:00");
    EXPECT_EQ(f.TimeToString(0.143507), "14:35:07");
    EXPECT_EQ(f.TimeToString(0), "00:00:00");
    EXPECT_EQ(f.TimeToString(0.235959), "23:59:59");
    EXPECT_EQ(f.TimeToString(kInvalid), "N/A");
}

TEST_F(DateTimeTest, TimeToStringZeroesPartsBeyondTheLimits) {
    EXPECT_EQ(f.TimeToString(0.24), "00:00:00");
    EXPECT_EQ(f.TimeToString(0.0975), "09:00:00");
    EXPECT_EQ(f.TimeToString(0.093575), "09:35:00");
}

TEST_F(DateTimeTest, TimeToStringReadsCharacterPositions) {
    // "1.093500": the same positions as a pure fraction.
    EXPECT_EQ(f.TimeToString(1.0935), "09:35:00");
    // "12.500000": hours from ".5", minutes "00", seconds "00".
    EXPECT_EQ(f.TimeToString(12.5), "00:00:00");
    // "-0.093500": hours from ".0", minutes 93 reset minutes and seconds.
    EXPECT_EQ(f.TimeToString(-0.0935), "00:00:00");
    // Seconds come from the last two characters: rounding shows there.
    EXPECT_EQ(f.TimeToString(0.1435069999), "14:35:07");
}

TEST_F(DateTimeTest, TimeToStringOfOddValuesDoesNotFail) {
    EXPECT_EQ(f.TimeToString(std::numeric_limits<double>::quiet_NaN()), "00:00:00");
    EXPECT_EQ(f.TimeToString(std::numeric_limits<double>::infinity()), "00:00:00");
    EXPECT_EQ(f.TimeToString(-kInvalid).size(), 8u);
}

TEST_F(DateTimeTest, DateTimeToString) {
    EXPECT_EQ(f.DateTimeToString(20100325.143507), "2010-03-25 14:35:07");
    EXPECT_EQ(f.DateTimeToString(20100325), "2010-03-25 00:00:00");
    EXPECT_EQ(f.DateTimeToString(kInvalid), "N/A");
}

TEST_F(DateTimeTest, DateTimeToStringSplitsAtTheFloor) {
    // -0.5 splits into -1 (scaled with wrapping to 727379968, month 79) and 0.5,
    // which reads as hour 50.
    EXPECT_EQ(f.DateTimeToString(-0.5), "7273-01-01 00:00:00");
    EXPECT_EQ(f.DateTimeToString(2147483647.5), "N/A 00:00:00");
}

TEST_F(DateTimeTest, StringToDate) {
    EXPECT_EQ(f.StringToDate("2010-03-25"), 20100325);
    EXPECT_EQ(f.StringToDate("2010/03/25"), 20100325);
    EXPECT_EQ(f.StringToDate("1900-01-01"), 19000101);
    EXPECT_EQ(f.StringToDate("2010-03-25 14:35:07"), 20100325);
    EXPECT_EQ(f.StringToDate("N/A"), kInvalidInt);
}

TEST_F(DateTimeTest, StringToDateFallsBackToTheFirstDayOf1900) {
    EXPECT_EQ(f.StringToDate("1899-12-31"), 19000101);
    EXPECT_EQ(f.StringToDate("2010-13-01"), 19000101);
    EXPECT_EQ(f.StringToDate("2010-00-10"), 19000101);
    EXPECT_EQ(f.StringToDate("2010-03-32"), 19000101);
    EXPECT_EQ(f.StringToDate("2010-03-00"), 19000101);
    EXPECT_EQ(f.StringToDate(""), 19000101);
    EXPECT_EQ(f.StringToDate("n/a"), 19000101);
}

TEST_F(DateTimeTest, StringToDateReadsFixedPositions) {
    // "2010-3-25": month from "3-", day from "5".
    EXPECT_EQ(f.StringToDate("2010-3-25"), 20100305);
    EXPECT_EQ(f.StringToDate("2010 03 25"), 20100325);
}

TEST_F(DateTimeTest, StringToTime) {
    EXPECT_EQ(f.StringToTime("09:05:07"), TimeOfDay(9, 5, 7));
    EXPECT_DOUBLE_EQ(f.StringToTime("09:05:07"), 0.090507);
    EXPECT_EQ(f.StringToTime("23:59:59"), TimeOfDay(23, 59, 59));
    EXPECT_EQ(f.StringToTime("00:00:00"), 0.0);
    EXPECT_EQ(f.StringToTime("9:05:07"), TimeOfDay(9, 5, 7));  // fields "9:", "5:", "7"
    EXPECT_EQ(f.StringToTime("N/A"), kInvalid);
}

TEST_F(DateTimeTest, StringToTimeGivesZeroOutOfRange) {
    EXPECT_EQ(f.StringToTime("24:00:00"), 0.0);
    EXPECT_EQ(f.StringToTime("12:60:00"), 0.0);
    EXPECT_EQ(f.StringToTime("12:00:60"), 0.0);
    EXPECT_EQ(f.StringToTime("-1:00:00"), 0.0);
    EXPECT_EQ(f.StringToTime("abc"), 0.0);
}

TEST_F(DateTimeTest, StringToDateTime) {
    EXPECT_EQ(f.StringToDateTime("2010-03-25 14:35:07"), 20100325 + TimeOfDay(14, 35, 7));
    EXPECT_EQ(f.StringToDateTime("2010-03-25"), 20100325.0);
    EXPECT_EQ(f.StringToDateTime("1899-01-01 25:00:00"), 19000101.0);
    EXPECT_EQ(f.StringToDateTime("N/A"), kInvalid);
}

TEST_F(DateTimeTest, InvalidStringIsWhatTheParsersRecognise) {
    const std::string invalid = f.InvalidString();
    EXPECT_EQ(f.StringToDate(invalid), f.InvalidInteger());
    EXPECT_EQ(f.StringToTime(invalid), f.InvalidNumeric());
    EXPECT_EQ(f.StringToDateTime(invalid), f.InvalidNumeric());
}

}  // namespace
