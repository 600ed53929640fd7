// Local-time conversion both ways, in a zone without daylight-saving time and in
// one with it, and the machine's clock.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

#include "FormulaFunction/platform/Platform.h"
#include "support/TimeZone.h"

namespace {

using ffplatform::FromLocalTime;
using ffplatform::LocalTime;
using ffplatform::ToLocalTime;

LocalTime Make(int32_t year, int32_t month, int32_t day, int32_t hour = 0, int32_t minute = 0,
               int32_t second = 0, int32_t isDst = -1) {
    LocalTime t;
    t.year = year;
    t.month = month;
    t.day = day;
    t.hour = hour;
    t.minute = minute;
    t.second = second;
    t.isDst = isDst;
    return t;
}

// The calendar fields as one comparable number, YYYYMMDDhhmmss.
int64_t Stamp(const LocalTime& t) {
    return ((((static_cast<int64_t>(t.year) * 100 + t.month) * 100 + t.day) * 100 + t.hour) * 100 +
            t.minute) * 100 + t.second;
}

// Local calendar time of a UTC second, as one comparable number.
int64_t LocalStamp(int64_t seconds) {
    LocalTime t;
    EXPECT_TRUE(ToLocalTime(seconds, t));
    return Stamp(t);
}

TEST(LocalTimeShanghai, EpochAndAKnownInstant) {
    fftest::ScopedTimeZone zone("Asia/Shanghai");
    LocalTime t;
    ASSERT_TRUE(ToLocalTime(0, t));
    EXPECT_EQ(Stamp(t), 19700101080000);
    EXPECT_EQ(t.weekday, 4);
    EXPECT_EQ(t.yearDay, 0);
    EXPECT_EQ(t.isDst, 0);

    // 2010-03-25 09:05:03 local is 01:05:03 UTC.
    ASSERT_TRUE(ToLocalTime(1269479103, t));
    EXPECT_EQ(Stamp(t), 20100325090503);
    EXPECT_EQ(t.weekday, 4);
    EXPECT_EQ(t.yearDay, 83);
    EXPECT_EQ(FromLocalTime(Make(2010, 3, 25, 9, 5, 3)), 1269479103);
    EXPECT_EQ(FromLocalTime(Make(2010, 3, 25)), 1269475200 - 8 * 3600);
}

// The Windows runtime refuses every time before 1970, in both directions.
TEST(LocalTimeShanghai, BeforeTheEpoch) {
    fftest::ScopedTimeZone zone("Asia/Shanghai");
#if defined(_WIN32)
    LocalTime t;
    EXPECT_FALSE(ToLocalTime(-1, t));
    EXPECT_EQ(FromLocalTime(Make(1969, 12, 31, 23, 0, 0)), -1);
#else
    EXPECT_EQ(LocalStamp(-1), 19700101075959);
    EXPECT_EQ(FromLocalTime(Make(1969, 12, 31, 23, 0, 0)), -9 * 3600);
#endif
}

TEST(LocalTimeShanghai, MidnightPlusADayIsTheNextMidnight) {
    fftest::ScopedTimeZone zone("Asia/Shanghai");
    const int64_t midnight = FromLocalTime(Make(2010, 7, 1));
    EXPECT_EQ(LocalStamp(midnight + 86400), 20100702000000);
}

TEST(LocalTimeShanghai, OutOfRangeFieldsNormaliseAsMktime) {
    fftest::ScopedTimeZone zone("Asia/Shanghai");
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 3, 0))), 20100228000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2012, 3, 0))), 20120229000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 3, -1))), 20100227000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 1, 0))), 20091231000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 13, 1))), 20110101000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 0, 1))), 20091201000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 0, 0))), 20091130000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 1, 32))), 20100201000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 12, 31, 24, 0, 0))), 20110101000000);
    EXPECT_EQ(LocalStamp(FromLocalTime(Make(2010, 1, 1, 0, 0, -1))), 20091231235959);
    EXPECT_EQ(FromLocalTime(Make(2010, 3, 0)), FromLocalTime(Make(2010, 2, 28)));
}

TEST(LocalTimeShanghai, FieldsBeyondWhatTheCLibraryHoldsAreRefused) {
    fftest::ScopedTimeZone zone("Asia/Shanghai");
    EXPECT_EQ(FromLocalTime(Make(INT32_MIN, 1, 1)), -1);
    EXPECT_EQ(FromLocalTime(Make(INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX,
                                 INT32_MAX)),
              -1);
    EXPECT_EQ(FromLocalTime(Make(2010, INT32_MIN, 1)), -1);
    LocalTime t;
    EXPECT_FALSE(ToLocalTime(INT64_MAX, t));
    EXPECT_FALSE(ToLocalTime(INT64_MIN, t));
    // The first second of year 2^31 in UTC: the year no longer fits 32 bits.
    EXPECT_FALSE(ToLocalTime(67767976233532800, t));
#if defined(_WIN32)
    // The Windows runtime stops at its largest time, 3001-01-01 07:59:59 UTC.
    EXPECT_FALSE(ToLocalTime(32535244799 + 1, t));
    ASSERT_TRUE(ToLocalTime(32535215999 - 8 * 3600, t));
    EXPECT_EQ(t.year, 3000);
#else
    ASSERT_TRUE(ToLocalTime(67767976233532799 - 8 * 3600, t));
    EXPECT_EQ(t.year, INT32_MAX);
#endif
    EXPECT_EQ(t.month, 12);
    EXPECT_EQ(t.day, 31);
}

TEST(LocalTimeNewYork, StandardAndDaylightSavingTime) {
    fftest::ScopedTimeZone zone("America/New_York");
    LocalTime t;
    ASSERT_TRUE(ToLocalTime(1269479103, t));  // 2010-03-25 01:05:03 UTC
    EXPECT_EQ(Stamp(t), 20100324210503);
    EXPECT_GT(t.isDst, 0);
    ASSERT_TRUE(ToLocalTime(1262322000, t));  // 2010-01-01 05:00:00 UTC
    EXPECT_EQ(Stamp(t), 20100101000000);
    EXPECT_EQ(t.isDst, 0);
    EXPECT_EQ(FromLocalTime(Make(2010, 1, 1)), 1262322000);
    EXPECT_EQ(FromLocalTime(Make(2010, 7, 1)), 1277956800);  // 04:00 UTC
}

TEST(LocalTimeNewYork, SpringForward) {
    fftest::ScopedTimeZone zone("America/New_York");
    // 2010-03-14: 02:00 EST becomes 03:00 EDT at 07:00 UTC.
    LocalTime t;
    ASSERT_TRUE(ToLocalTime(1268549999, t));
    EXPECT_EQ(Stamp(t), 20100314015959);
    EXPECT_EQ(t.isDst, 0);
    ASSERT_TRUE(ToLocalTime(1268550000, t));
    EXPECT_EQ(Stamp(t), 20100314030000);
    EXPECT_GT(t.isDst, 0);
    EXPECT_EQ(FromLocalTime(Make(2010, 3, 14, 3, 0, 0)), 1268550000);
    // Midnight before the change plus one day in seconds lands an hour late.
    const int64_t midnight = FromLocalTime(Make(2010, 3, 14));
    EXPECT_EQ(midnight, 1268542800);
    EXPECT_EQ(LocalStamp(midnight + 86400), 20100315010000);
    EXPECT_EQ((FromLocalTime(Make(2010, 3, 15)) - midnight), 23 * 3600);
}

TEST(LocalTimeNewYork, FallBack) {
    fftest::ScopedTimeZone zone("America/New_York");
    // 2010-11-07: 01:30 happens twice, at 05:30 and at 06:30 UTC.
    EXPECT_EQ(LocalStamp(1289107800), 20101107013000);
    EXPECT_EQ(LocalStamp(1289107800 + 3600), 20101107013000);
    EXPECT_EQ(FromLocalTime(Make(2010, 11, 7, 1, 30, 0, 1)), 1289107800);
    EXPECT_EQ(FromLocalTime(Make(2010, 11, 7, 1, 30, 0, 0)), 1289107800 + 3600);
    const int64_t midnight = FromLocalTime(Make(2010, 11, 7));
    EXPECT_EQ(FromLocalTime(Make(2010, 11, 8)) - midnight, 25 * 3600);
    EXPECT_EQ(LocalStamp(midnight + 86400), 20101107230000);
}

TEST(LocalTimeNewYork, ExplicitStandardTimeInSummerShiftsByTheClockChange) {
    fftest::ScopedTimeZone zone("America/New_York");
    // 00:00 standard time on a summer day is 01:00 daylight-saving time.
    const int64_t t = FromLocalTime(Make(2010, 7, 1, 0, 0, 0, 0));
    EXPECT_EQ(t, 1277956800 + 3600);
    EXPECT_EQ(LocalStamp(t), 20100701010000);
}

TEST(LocalTimeNewYork, DefaultRecordLetsTheSystemDecide) {
    fftest::ScopedTimeZone zone("America/New_York");
    LocalTime t;
    EXPECT_LT(t.isDst, 0);
    t.year = 2010;
    t.month = 7;
    t.day = 1;
    EXPECT_EQ(FromLocalTime(t), 1277956800);
}

TEST(Clock, CurrentTimeIsTheSystemClock) {
    using std::chrono::system_clock;
    const int64_t before =
        std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch())
            .count();
    const int64_t now = ffplatform::CurrentTimeSeconds();
    const int64_t after =
        std::chrono::duration_cast<std::chrono::seconds>(system_clock::now().time_since_epoch())
            .count();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

}  // namespace
