// The time-zone helper gives the same local times on every system the suite runs
// on, and puts the previous zone back.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "FormulaFunction/platform/Platform.h"
#include "support/TimeZone.h"

namespace {

using fftest::ScopedTimeZone;
using fftest::Zone;

ffplatform::LocalTime Local(int64_t seconds) {
    ffplatform::LocalTime local;
    EXPECT_TRUE(ffplatform::ToLocalTime(seconds, local)) << seconds;
    return local;
}

// yyyymmdd * 1000000 + hhmmss, with the daylight flag as the last digit.
int64_t Stamp(int64_t seconds) {
    const ffplatform::LocalTime t = Local(seconds);
    return ((t.year * 10000LL + t.month * 100 + t.day) * 1000000LL + t.hour * 10000LL +
            t.minute * 100 + t.second) * 10 + (t.isDst > 0 ? 1 : 0);
}

ffplatform::LocalTime Fields(int32_t y, int32_t mo, int32_t d, int32_t h, int32_t mi, int32_t s) {
    ffplatform::LocalTime t;
    t.year = y;
    t.month = mo;
    t.day = d;
    t.hour = h;
    t.minute = mi;
    t.second = s;
    t.isDst = -1;
    return t;
}

TEST(TimeZone, NewYorkWinterAndSummer) {
    ScopedTimeZone zone(Zone::NewYork);
    EXPECT_EQ(Stamp(1262304000), 200912311900000);  // 2010-01-01 00:00 UTC
    EXPECT_EQ(Stamp(1278000000), 201007011200001);  // 2010-07-01 16:00 UTC
}

TEST(TimeZone, NewYorkDaylightSavingChanges) {
    ScopedTimeZone zone(Zone::NewYork);
    // Spring forward on 2010-03-14 at 07:00 UTC.
    EXPECT_EQ(Stamp(1268549999), 201003140159590);
    EXPECT_EQ(Stamp(1268550000), 201003140300001);
    // Fall back on 2010-11-07 at 06:00 UTC: 01:00-02:00 happens twice.
    EXPECT_EQ(Stamp(1289109599), 201011070159591);
    EXPECT_EQ(Stamp(1289109600), 201011070100000);
    // From 2007 on it comes on the second Sunday of March, before on the first
    // Sunday of April.
    EXPECT_EQ(Stamp(1173596400), 200703110300001);  // 2007-03-11 07:00 UTC
    EXPECT_EQ(Stamp(1143961200), 200604020300001);  // 2006-04-02 07:00 UTC
    EXPECT_EQ(Stamp(1143961199), 200604020159590);
}

TEST(TimeZone, NewYorkLocalTimesBackToSeconds) {
    ScopedTimeZone zone(Zone::NewYork);
    EXPECT_EQ(ffplatform::FromLocalTime(Fields(2010, 1, 15, 9, 30, 0)), 1263565800);
    EXPECT_EQ(ffplatform::FromLocalTime(Fields(2010, 7, 15, 9, 30, 0)), 1279200600);
    // Day 0 of month 13 is the last day of the year.
    EXPECT_EQ(ffplatform::FromLocalTime(Fields(2010, 13, 0, 0, 0, 0)), 1293771600);
}

TEST(TimeZone, ShanghaiHasNoDaylightSaving) {
    ScopedTimeZone zone(Zone::Shanghai);
    EXPECT_EQ(Stamp(1262304000), 201001010800000);
    EXPECT_EQ(Stamp(1278000000), 201007020000000);
    EXPECT_EQ(ffplatform::FromLocalTime(Fields(2010, 7, 2, 0, 0, 0)), 1278000000);
    EXPECT_EQ(ffplatform::FromLocalTime(Fields(2010, 13, 0, 0, 0, 0)), 1293724800);
}

TEST(TimeZone, UtcIsTheEpochClock) {
    ScopedTimeZone zone(Zone::Utc);
    EXPECT_EQ(Stamp(0), 197001010000000);
    EXPECT_EQ(Stamp(1278000000), 201007011600000);
}

TEST(TimeZone, ThePreviousZoneComesBack) {
    ScopedTimeZone outer(Zone::Shanghai);
    {
        ScopedTimeZone inner(Zone::NewYork);
        EXPECT_EQ(Stamp(1262304000), 200912311900000);
    }
    EXPECT_EQ(Stamp(1262304000), 201001010800000);
    const char* tz = std::getenv("TZ");
    ASSERT_NE(tz, nullptr);
    EXPECT_EQ(std::string(tz), fftest::TimeZoneSetting(Zone::Shanghai));
}

TEST(TimeZone, AnUnsetZoneStaysUnset) {
    const char* before = std::getenv("TZ");
    const bool wasSet = before != nullptr;
    const std::string saved = wasSet ? before : "";
    fftest::SetTimeZoneVariable("");
    {
        ScopedTimeZone zone(Zone::NewYork);
        EXPECT_NE(std::getenv("TZ"), nullptr);
    }
    EXPECT_EQ(std::getenv("TZ"), nullptr);
    if (wasSet) fftest::SetTimeZoneVariable(saved.c_str());
}

// Under Wine, reading the machine's own zone once used to leave the runtime with no
// daylight-saving bias for every TZ set afterwards.
TEST(TimeZone, ChangesStayRightAfterTheMachineZoneWasRead) {
    const char* before = std::getenv("TZ");
    const bool wasSet = before != nullptr;
    const std::string saved = wasSet ? before : "";
    fftest::SetTimeZoneVariable("");
    Local(1278000000);
    {
        ScopedTimeZone zone(Zone::NewYork);
        EXPECT_EQ(Stamp(1278000000), 201007011200001);
        EXPECT_EQ(Stamp(1268550000), 201003140300001);
        EXPECT_EQ(Stamp(1289109599), 201011070159591);
        EXPECT_EQ(ffplatform::FromLocalTime(Fields(2010, 7, 15, 9, 30, 0)), 1279200600);
    }
    if (wasSet) fftest::SetTimeZoneVariable(saved.c_str());
}

}  // namespace
