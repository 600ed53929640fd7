#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/bars/LocalDayCache.h"
#include "FormulaFunction/platform/Platform.h"
#include "support/ScopedTimeZone.h"

namespace {

constexpr int64_t kStart = 1262304000;             // 2010-01-01 00:00:00 UTC
constexpr int64_t kTwoYears = 2 * 365 * 86400LL;   // to 2011-12-31

bool SameLocal(const ffplatform::LocalTime& a, const ffplatform::LocalTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
           a.minute == b.minute && a.second == b.second && a.weekday == b.weekday &&
           a.yearDay == b.yearDay && a.isDst == b.isDst;
}

// The cache must answer exactly what the system answers. Returns the number of
// mismatches and reports the first.
int CompareWithSystem(LocalDayCache& cache, const std::vector<int64_t>& times) {
    int mismatches = 0;
    for (int64_t s : times) {
        ffplatform::LocalTime cached, direct;
        const bool okCached = cache.ToLocal(s, cached);
        const bool okDirect = ffplatform::ToLocalTime(s, direct);
        if (okCached != okDirect || (okDirect && !SameLocal(cached, direct))) {
            if (mismatches == 0) ADD_FAILURE() << "first mismatch at " << s;
            ++mismatches;
        }
    }
    return mismatches;
}

// Every hour of two years, plus the last second of each hour and every second of
// the three hours around each clock change.
std::vector<int64_t> HoursAndClockChanges() {
    std::vector<int64_t> times;
    ffplatform::LocalTime previous;
    ffplatform::ToLocalTime(kStart, previous);
    for (int64_t s = kStart; s < kStart + kTwoYears; s += 3600) {
        times.push_back(s);
        times.push_back(s + 3599);
        ffplatform::LocalTime now;
        ffplatform::ToLocalTime(s, now);
        if (now.isDst != previous.isDst) {
            for (int64_t t = s - 7200; t < s + 3600; ++t) times.push_back(t);
        }
        previous = now;
    }
    return times;
}

class LocalDayCacheZones : public ::testing::TestWithParam<const char*> {};

TEST_P(LocalDayCacheZones, AgreesWithTheSystemEveryHourForTwoYears) {
    if (!fftest::TimeZoneExpressible(GetParam())) GTEST_SKIP() << GetParam() << " cannot be set here";
    ScopedTimeZone zone(GetParam());
    const std::vector<int64_t> times = HoursAndClockChanges();

    LocalDayCache forward;
    EXPECT_EQ(CompareWithSystem(forward, times), 0);

    // Out of order: a fixed shuffle, so that days are evicted and found again.
    std::vector<int64_t> shuffled = times;
    uint32_t state = 12345;
    for (size_t i = shuffled.size(); i > 1; --i) {
        state = state * 214013u + 2531011u;
        std::swap(shuffled[i - 1], shuffled[state % i]);
    }
    LocalDayCache random;
    EXPECT_EQ(CompareWithSystem(random, shuffled), 0);

    // Backwards, and two alternating days far apart.
    std::vector<int64_t> backwards(times.rbegin(), times.rend());
    LocalDayCache reverse;
    EXPECT_EQ(CompareWithSystem(reverse, backwards), 0);
    std::vector<int64_t> alternating;
    for (int64_t s = 0; s < 86400; s += 937) {
        alternating.push_back(kStart + 100 * 86400 + s);
        alternating.push_back(kStart + 300 * 86400 + s);
    }
    LocalDayCache alternate;
    EXPECT_EQ(CompareWithSystem(alternate, alternating), 0);
}

// The bar functions give what the system conversion gives for every hourly bar.
TEST_P(LocalDayCacheZones, BarPartsAgreeWithTheSystemEveryHour) {
    if (!fftest::TimeZoneExpressible(GetParam())) GTEST_SKIP() << GetParam() << " cannot be set here";
    ScopedTimeZone zone(GetParam());
    CKelBaseData data{};
    data.DataStreams.emplace_back();
    for (int64_t s = kStart; s < kStart + kTwoYears; s += 3600) {
        BarRecord b;
        b.time = s * 1000 + 250;
        data.DataStreams[0].Bars.push_back(b);
    }
    CSystemFuncs funcs(&data);
    int mismatches = 0;
    for (size_t i = 0; i < data.DataStreams[0].Bars.size(); ++i) {
        data.CurrentBar = static_cast<int32_t>(i);
        ffplatform::LocalTime t;
        ASSERT_TRUE(ffplatform::ToLocalTime(data.DataStreams[0].Bars[i].time / 1000, t));
        long double sum = static_cast<long double>(t.second) * static_cast<long double>(0.000001);
        sum += static_cast<long double>(t.hour) * static_cast<long double>(0.01);
        sum += static_cast<long double>(250) * static_cast<long double>(0.000000001);
        sum += static_cast<long double>(t.minute) * static_cast<long double>(0.0001);
        const bool same = funcs.Date() == t.year * 10000 + t.month * 100 + t.day &&
                          funcs.Time() == static_cast<double>(sum) && funcs.Year() == t.year &&
                          funcs.Month() == t.month && funcs.Day() == t.day &&
                          funcs.Hour() == t.hour && funcs.Minute() == t.minute &&
                          funcs.Second() == t.second && funcs.Weekday() == t.weekday;
        if (!same) {
            if (mismatches == 0) ADD_FAILURE() << "first mismatch at bar " << i;
            ++mismatches;
        }
    }
    EXPECT_EQ(mismatches, 0);
}

// Two times said to share a known day have the same local date by the system; the
// day must have been seen first, and a day with a clock change is never known.
TEST_P(LocalDayCacheZones, OneKnownDayMeansOneLocalDate) {
    if (!fftest::TimeZoneExpressible(GetParam())) GTEST_SKIP() << GetParam() << " cannot be set here";
    ScopedTimeZone zone(GetParam());
    const std::vector<int64_t> times = HoursAndClockChanges();
    LocalDayCache cache;
    EXPECT_FALSE(cache.InOneKnownDay(times[0], times[0]));
    int sameDay = 0, wrong = 0;
    for (size_t i = 1; i < times.size(); ++i) {
        ffplatform::LocalTime unused;
        cache.ToLocal(times[i - 1], unused);
        for (const int64_t other : {times[i], times[i - 1] + 1800, times[i - 1] - 7200}) {
            if (!cache.InOneKnownDay(times[i - 1], other)) continue;
            ++sameDay;
            ffplatform::LocalTime a, b;
            ASSERT_TRUE(ffplatform::ToLocalTime(times[i - 1], a));
            ASSERT_TRUE(ffplatform::ToLocalTime(other, b));
            if (a.year != b.year || a.month != b.month || a.day != b.day || a.isDst != b.isDst) ++wrong;
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(sameDay, 10000);
}

// A time one second before the known day's midnight and one at it are not in one
// day, whatever the zone.
TEST(LocalDayCache, MidnightSeparatesKnownDays) {
    ScopedTimeZone zone("Asia/Shanghai");
    LocalDayCache cache;
    const int64_t midnight = kStart - 8 * 3600;  // 2010-01-01 00:00 in Shanghai
    ffplatform::LocalTime local;
    ASSERT_TRUE(cache.ToLocal(midnight + 3600, local));
    EXPECT_TRUE(cache.InOneKnownDay(midnight, midnight + 86399));
    EXPECT_FALSE(cache.InOneKnownDay(midnight - 1, midnight));
    EXPECT_FALSE(cache.InOneKnownDay(midnight, midnight + 86400));
}

INSTANTIATE_TEST_SUITE_P(Zones, LocalDayCacheZones,
                         ::testing::Values("America/New_York", "Europe/London", "Asia/Shanghai",
                                           "Australia/Lord_Howe"));

// Lord Howe Island moves its clocks by half an hour: 2010-10-03 02:00 local
// standard time (15:30 UTC the day before) becomes 02:30.
TEST(LocalDayCache, HalfHourShiftOnLordHowe) {
    if (!fftest::TimeZoneExpressible("Australia/Lord_Howe")) GTEST_SKIP() << "no such zone here";
    ScopedTimeZone zone("Australia/Lord_Howe");
    LocalDayCache cache;
    ffplatform::LocalTime before, after;
    ASSERT_TRUE(cache.ToLocal(1286033399, before));
    ASSERT_TRUE(cache.ToLocal(1286033400, after));
    EXPECT_EQ(before.day, 3);
    EXPECT_EQ(before.hour, 1);
    EXPECT_EQ(before.minute, 59);
    EXPECT_EQ(before.second, 59);
    EXPECT_EQ(after.day, 3);
    EXPECT_EQ(after.hour, 2);
    EXPECT_EQ(after.minute, 30);
    EXPECT_EQ(after.second, 0);
}

TEST(LocalDayCache, TimesTheSystemRefusesAreRefused) {
    ScopedTimeZone zone("Asia/Shanghai");
    LocalDayCache cache;
    ffplatform::LocalTime direct, cached;
    for (int64_t s : {INT64_MAX, INT64_MIN, INT64_MAX - 1}) {
        const bool okDirect = ffplatform::ToLocalTime(s, direct);
        EXPECT_EQ(cache.ToLocal(s, cached), okDirect) << s;
    }
    EXPECT_FALSE(cache.ToLocal(INT64_MAX, cached));
}

// A fresh cache in another zone gives that zone's answer for the same instant.
TEST(LocalDayCache, FreshCacheFollowsTheZone) {
    ffplatform::LocalTime t;
    {
        ScopedTimeZone zone("Asia/Shanghai");
        LocalDayCache cache;
        ASSERT_TRUE(cache.ToLocal(1269479103, t));
        EXPECT_EQ(t.hour, 9);
    }
    {
        ScopedTimeZone zone("America/New_York");
        LocalDayCache cache;
        ASSERT_TRUE(cache.ToLocal(1269479103, t));
        EXPECT_EQ(t.hour, 21);
    }
}

}  // namespace
