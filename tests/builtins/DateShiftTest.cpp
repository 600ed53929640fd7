// Shifting and counting dates, and the machine clock: these go through local time,
// so every test runs in a zone it sets itself, one with daylight-saving time and one
// without.
#include <memory>

#include "BuiltinsFixture.h"
#include "FormulaFunction/platform/Platform.h"
#include "support/ScopedTimeZone.h"

namespace {

class ZonedTest : public ::testing::Test {
protected:
    explicit ZonedTest(const char* zone) : zone_(zone) {}
    void SetUp() override { scope_ = std::make_unique<ScopedTimeZone>(zone_); }
    void TearDown() override { scope_.reset(); }

    CKelBaseData data{};
    CSystemFuncs f{&data};

private:
    const char* zone_;
    std::unique_ptr<ScopedTimeZone> scope_;
};

class NewYorkTest : public ZonedTest {
protected:
    NewYorkTest() : ZonedTest("America/New_York") {}
};

class ShanghaiTest : public ZonedTest {
protected:
    ShanghaiTest() : ZonedTest("Asia/Shanghai") {}
};

class EveryZoneTest : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override { scope_ = std::make_unique<ScopedTimeZone>(GetParam()); }
    void TearDown() override { scope_.reset(); }

    CKelBaseData data{};
    CSystemFuncs f{&data};

private:
    std::unique_ptr<ScopedTimeZone> scope_;
};

INSTANTIATE_TEST_SUITE_P(Zones, EveryZoneTest,
                         ::testing::Values("America/New_York", "Asia/Shanghai"));

TEST_P(EveryZoneTest, DateAddByCalendarDays) {
    EXPECT_EQ(f.DateAdd(20100228, 1), 20100301);
    EXPECT_EQ(f.DateAdd(20120228, 1), 20120229);
    EXPECT_EQ(f.DateAdd(20100301, -1), 20100228);
    EXPECT_EQ(f.DateAdd(20101231, 1), 20110101);
    EXPECT_EQ(f.DateAdd(20100325, 0), 20100325);
    EXPECT_EQ(f.DateAdd(20100101, 365), 20110101);
}

TEST_P(EveryZoneTest, DateAddRaisesEarlyDatesTo19700102) {
    EXPECT_EQ(f.DateAdd(19650101, 0), 19700102);
    EXPECT_EQ(f.DateAdd(0, 1), 19700103);
}

TEST_P(EveryZoneTest, DateAddNormalisesTheDate) {
    EXPECT_EQ(f.DateAdd(201003251, 0), 20100325);
    EXPECT_EQ(f.DateAdd(20101315, 0), 20100101);  // month 13 restarts the year
    EXPECT_EQ(f.DateAdd(20100332, 0), 20100301);  // day 32 restarts the month
}

TEST_P(EveryZoneTest, DateAddReadsMonthAndDayZeroAsTheCalendarDoes) {
    EXPECT_EQ(f.DateAdd(20100300, 0), 20100228);
    EXPECT_EQ(f.DateAdd(20100015, 0), 20091215);
    EXPECT_EQ(f.DateAdd(20100000, 1), 20091201);
}

TEST_P(EveryZoneTest, DateAddClampsTheResultLikeMakeDate) {
#if defined(_WIN32)
    // The Windows runtime converts no local time after the year 3000.
    EXPECT_EQ(f.DateAdd(99991231, 1), kInvalidInt);
    EXPECT_EQ(f.DateAdd(29991231, 1), 30000101);
#else
    EXPECT_EQ(f.DateAdd(99991231, 1), 19000101);
#endif
}

TEST_P(EveryZoneTest, DateAddRefusesTheInvalidInteger) {
    EXPECT_EQ(f.DateAdd(kInvalidInt, 1), kInvalidInt);
    EXPECT_EQ(f.DateAdd(20100325, kInvalidInt), kInvalidInt);
}

TEST_P(EveryZoneTest, DateDiff) {
    EXPECT_EQ(f.DateDiff(20100101, 20100201), 31);
    EXPECT_EQ(f.DateDiff(20100201, 20100101), -31);
    EXPECT_EQ(f.DateDiff(20100325, 20100325), 0);
    EXPECT_EQ(f.DateDiff(20100101, 20110101), 365);
    EXPECT_EQ(f.DateDiff(19650101, 19700103), 1);     // raised to 19700102 first
    EXPECT_EQ(f.DateDiff(20100300, 20100301), 1);     // day 0 is 28 February
    EXPECT_EQ(f.DateDiff(20100325, 201003261), 1);    // surplus digit dropped
}

TEST_P(EveryZoneTest, DateDiffRefusesTheInvalidInteger) {
    EXPECT_EQ(f.DateDiff(kInvalidInt, 20100101), kInvalidInt);
    EXPECT_EQ(f.DateDiff(20100101, kInvalidInt), kInvalidInt);
}

TEST_P(EveryZoneTest, DateAddAndDateDiffUseLocalMidnight) {
    ffplatform::LocalTime midnight;
    midnight.year = 2010;
    midnight.month = 3;
    midnight.day = 25;
    midnight.isDst = -1;
    const int64_t t = ffplatform::FromLocalTime(midnight);
    ffplatform::LocalTime back;
    ASSERT_TRUE(ffplatform::ToLocalTime(t + 10 * 86400, back));
    EXPECT_EQ(f.DateAdd(20100325, 10), back.year * 10000 + back.month * 100 + back.day);
}

// The clock is read around the call; a call that straddles a second is retried.
TEST_P(EveryZoneTest, CurrentDateAndTimeFollowTheMachineClock) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        const int64_t before = ffplatform::CurrentTimeSeconds();
        const int32_t date = f.CurrentDate();
        const double time = f.CurrentTime();
        const double both = f.SystemDateTime();
        if (ffplatform::CurrentTimeSeconds() != before) continue;
        ffplatform::LocalTime now;
        ASSERT_TRUE(ffplatform::ToLocalTime(before, now));
        const int32_t expectedDate = now.year * 10000 + now.month * 100 + now.day;
        const double expectedTime = now.second * 0.000001 + now.hour * 0.01 + now.minute * 0.0001;
        EXPECT_EQ(date, expectedDate);
        EXPECT_EQ(time, expectedTime);
        EXPECT_EQ(both,
                  ((now.second * 0.000001 + now.hour * 0.01) + now.minute * 0.0001) + expectedDate);
        return;
    }
    FAIL() << "the clock kept moving";
}

// Autumn: the clock goes back an hour on 2010-11-07, so 48 hours after midnight of
// the 6th is 23:00 on the 7th.
TEST_F(NewYorkTest, DateAddAcrossTheAutumnChangeLandsADayEarly) {
    EXPECT_EQ(f.DateAdd(20101106, 2), 20101107);
    EXPECT_EQ(f.DateAdd(20101106, 1), 20101107);
    // Midnight of the 7th is still daylight time: a day later is 23:00 on the 7th.
    EXPECT_EQ(f.DateAdd(20101107, 1), 20101107);
    EXPECT_EQ(f.DateAdd(20101108, 1), 20101109);
}

// Spring: the clock goes forward on 2010-03-14, so going back 48 hours from midnight
// of the 15th reaches 23:00 on the 12th.
TEST_F(NewYorkTest, DateAddBackAcrossTheSpringChangeLandsADayEarly) {
    EXPECT_EQ(f.DateAdd(20100315, -2), 20100312);
    // Forward across it the result is 01:00 of the right day.
    EXPECT_EQ(f.DateAdd(20100313, 2), 20100315);
}

TEST_F(NewYorkTest, DateDiffLosesADayWhenTheSpanIsAnHourShort) {
    EXPECT_EQ(f.DateDiff(20100301, 20100401), 30);
    EXPECT_EQ(f.DateDiff(20100401, 20100301), -30);
    EXPECT_EQ(f.DateDiff(20100314, 20100315), 0);
    // An hour long in autumn: still whole days.
    EXPECT_EQ(f.DateDiff(20101001, 20101201), 61);
    EXPECT_EQ(f.DateDiff(20101107, 20101108), 1);
}

TEST_F(NewYorkTest, DateAddJustAfterTheEpoch) { EXPECT_EQ(f.DateAdd(19700102, -1), 19700101); }

TEST_F(ShanghaiTest, DateAddWithoutDaylightSavingTime) {
    EXPECT_EQ(f.DateAdd(20101106, 2), 20101108);
    EXPECT_EQ(f.DateAdd(20100315, -2), 20100313);
    EXPECT_EQ(f.DateAdd(20100313, 2), 20100315);
}

TEST_F(ShanghaiTest, DateDiffWithoutDaylightSavingTime) {
    EXPECT_EQ(f.DateDiff(20100301, 20100401), 31);
    EXPECT_EQ(f.DateDiff(20100401, 20100301), -31);
    EXPECT_EQ(f.DateDiff(20100314, 20100315), 1);
    EXPECT_EQ(f.DateDiff(20101001, 20101201), 61);
}

TEST_F(ShanghaiTest, TheZoneIsInForce) {
    // 2010-03-25 00:00 in Shanghai is 16:00 UTC the day before.
    ffplatform::LocalTime local;
    ASSERT_TRUE(ffplatform::ToLocalTime(1269446400, local));
    EXPECT_EQ(local.day, 25);
    EXPECT_EQ(local.hour, 0);
}

TEST_F(NewYorkTest, TheZoneIsInForce) {
    // 2010-11-07 06:00 UTC is 01:00 EST, after the change back.
    ffplatform::LocalTime local;
    ASSERT_TRUE(ffplatform::ToLocalTime(1289109600, local));
    EXPECT_EQ(local.hour, 1);
    EXPECT_EQ(local.isDst, 0);
}

}  // namespace
