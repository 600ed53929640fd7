#include <gtest/gtest.h>

#include "runner/CivilTime.h"
#include "runner/LocalTimeConverter.h"
#include "runner/ZoneClock.h"

namespace {

using ffrunner::DaysFromCivil;
using ffrunner::LocalMapping;
using ffrunner::LocalTimeConverter;

TEST(CivilTime, DayNumbersRoundTrip) {
    EXPECT_EQ(DaysFromCivil(1970, 1, 1), 0);
    EXPECT_EQ(DaysFromCivil(2000, 3, 1), 11017);
    EXPECT_EQ(DaysFromCivil(1969, 12, 31), -1);
    for (int64_t d = -800000; d < 800000; d += 997) {
        const ffrunner::CivilDate c = ffrunner::CivilFromDays(d);
        EXPECT_EQ(DaysFromCivil(c.year, c.month, c.day), d);
    }
    EXPECT_EQ(ffrunner::WeekdayFromDays(0), 4);   // Thursday
    EXPECT_EQ(ffrunner::WeekdayFromDays(-1), 3);
    EXPECT_EQ(ffrunner::DaysInMonth(2024, 2), 29);
    EXPECT_EQ(ffrunner::DaysInMonth(1900, 2), 28);
    EXPECT_EQ(ffrunner::DaysInMonth(2000, 2), 29);
}

TEST(ZoneClock, KnowsZoneNamesAndPosixRules) {
    EXPECT_TRUE(ffrunner::ZoneIsKnown(""));
    EXPECT_TRUE(ffrunner::ZoneIsKnown("America/New_York"));
    EXPECT_TRUE(ffrunner::ZoneIsKnown("CST-8"));
    EXPECT_TRUE(ffrunner::ZoneIsKnown("EST5EDT,M3.2.0,M11.1.0"));
    EXPECT_FALSE(ffrunner::ZoneIsKnown("Asia/Nowhere"));
    EXPECT_FALSE(ffrunner::ZoneIsKnown("../../etc/passwd"));
    EXPECT_FALSE(ffrunner::ZoneIsKnown("Xy"));
}

TEST(ZoneClock, MapsGapsAndOverlapsByTheDocumentedRule) {
    ffrunner::ScopedZone zone("America/New_York");
    const int64_t march10 = DaysFromCivil(2024, 3, 10) * 86400;
    LocalMapping m;
    ASSERT_TRUE(ffrunner::LocalSecondsToUtc(march10 + 2 * 3600 + 1800, m));
    EXPECT_TRUE(m.skipped);
    EXPECT_FALSE(m.ambiguous);
    EXPECT_EQ(m.utc, march10 + 7 * 3600 + 1800);
    const int64_t nov3 = DaysFromCivil(2024, 11, 3) * 86400;
    ASSERT_TRUE(ffrunner::LocalSecondsToUtc(nov3 + 3600 + 1800, m));
    EXPECT_TRUE(m.ambiguous);
    EXPECT_EQ(m.utc, nov3 + 5 * 3600 + 1800);
    EXPECT_EQ(m.laterUtc, nov3 + 6 * 3600 + 1800);
    ASSERT_TRUE(ffrunner::LocalSecondsToUtc(nov3 + 12 * 3600, m));
    EXPECT_FALSE(m.ambiguous);
    EXPECT_FALSE(m.skipped);
    EXPECT_EQ(m.utc, nov3 + 17 * 3600);
}

TEST(ZoneClock, ScopedZoneRestoresTheZoneBefore) {
    ffrunner::ScopedZone outer("Asia/Shanghai");
    int64_t offset = 0;
    {
        ffrunner::ScopedZone inner("America/New_York");
        ASSERT_TRUE(ffrunner::ZoneOffsetAt(1705329000, offset));
        EXPECT_EQ(offset, -5 * 3600);
    }
    ASSERT_TRUE(ffrunner::ZoneOffsetAt(1705329000, offset));
    EXPECT_EQ(offset, 8 * 3600);
}

// The per-day shortcut must agree with the bar-by-bar conversion everywhere,
// including the days on which the clocks change.
void ExpectShortcutAgrees(const char* zoneName, int64_t year) {
    ffrunner::ScopedZone zone(zoneName);
    LocalTimeConverter converter;
    const int64_t first = DaysFromCivil(year, 1, 1);
    const int64_t last = DaysFromCivil(year + 1, 1, 1);
    int64_t mismatches = 0;
    for (int64_t day = first; day < last; ++day) {
        for (int32_t second = 0; second < 86400; second += 7 * 60 + 13) {
            int64_t fast = 0;
            ASSERT_TRUE(converter.ToUtcMillis(day, second, 250, INT64_MIN, fast));
            LocalMapping slow;
            ASSERT_TRUE(ffrunner::LocalSecondsToUtc(day * 86400 + second, slow));
            mismatches += fast != slow.utc * 1000 + 250;
        }
    }
    EXPECT_EQ(mismatches, 0);
    EXPECT_EQ(converter.DaysExamined(), last - first);
}

TEST(LocalTimeConverter, ShortcutAgreesWithTheSystemInNewYork) {
    ExpectShortcutAgrees("America/New_York", 2024);
}

TEST(LocalTimeConverter, ShortcutAgreesWithTheSystemInShanghai) {
    ExpectShortcutAgrees("Asia/Shanghai", 1991);  // Shanghai still kept summer time then
    ExpectShortcutAgrees("Asia/Shanghai", 2024);
}

TEST(LocalTimeConverter, TakesTheLaterInstantWhenTheEarlierWouldGoBackwards) {
    ffrunner::ScopedZone zone("America/New_York");
    LocalTimeConverter converter;
    const int64_t nov3 = DaysFromCivil(2024, 11, 3);
    int64_t t = 0;
    ASSERT_TRUE(converter.ToUtcMillis(nov3, 3600 + 900, 0, INT64_MIN, t));
    EXPECT_EQ(t, (nov3 * 86400 + 5 * 3600 + 900) * 1000);
    const int64_t previous = (nov3 * 86400 + 5 * 3600 + 2700) * 1000;
    ASSERT_TRUE(converter.ToUtcMillis(nov3, 3600 + 900, 0, previous, t));
    EXPECT_EQ(t, (nov3 * 86400 + 6 * 3600 + 900) * 1000);
}

}  // namespace
