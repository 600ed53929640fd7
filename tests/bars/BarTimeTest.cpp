#include <gtest/gtest.h>

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "support/TimeZone.h"

namespace {

constexpr double kInvalid = 1.7976931348623157e308;
constexpr int32_t kInvalidInt = 2147483647;

// 2010-03-25 01:05:03.007 UTC: 09:05:03.007 in Shanghai, a Thursday.
constexpr int64_t kShanghaiMorning = 1269479103007LL;

// The bar time as the library defines it: the terms summed in this order in
// extended precision, rounded once.
double ExpectedTime(int hour, int minute, int second, int millis) {
    long double sum = static_cast<long double>(second) * static_cast<long double>(0.000001);
    sum += static_cast<long double>(hour) * static_cast<long double>(0.01);
    sum += static_cast<long double>(millis) * static_cast<long double>(0.000000001);
    sum += static_cast<long double>(minute) * static_cast<long double>(0.0001);
    return static_cast<double>(sum);
}

class BarTime : public ::testing::Test {
protected:
    void AddBar(int64_t millis) {
        if (data.DataStreams.empty()) data.DataStreams.emplace_back();
        BarRecord b;
        b.time = millis;
        data.DataStreams[0].Bars.push_back(b);
    }
    CKelBaseData data{};
};

TEST_F(BarTime, DateAndTimeOfAShanghaiMorningBar) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    AddBar(kShanghaiMorning);
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.Date(), 20100325);
    EXPECT_EQ(funcs.Time(), ExpectedTime(9, 5, 3, 7));
    EXPECT_EQ(funcs.Time(), 0.090503007);
    EXPECT_EQ(funcs.Year(), 2010);
    EXPECT_EQ(funcs.Month(), 3);
    EXPECT_EQ(funcs.Day(), 25);
    EXPECT_EQ(funcs.Hour(), 9);
    EXPECT_EQ(funcs.Minute(), 5);
    EXPECT_EQ(funcs.Second(), 3);
    EXPECT_EQ(funcs.Weekday(), 4);
}

TEST_F(BarTime, SameInstantInNewYorkIsThePreviousEvening) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    AddBar(kShanghaiMorning);
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.Date(), 20100324);
    EXPECT_EQ(funcs.Time(), ExpectedTime(21, 5, 3, 7));
    EXPECT_EQ(funcs.Hour(), 21);
    EXPECT_EQ(funcs.Weekday(), 3);
}

TEST_F(BarTime, MillisecondsAreTheRestAfterWholeSeconds) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    AddBar(kShanghaiMorning - 7);        // .000
    AddBar(kShanghaiMorning - 7 + 999);  // .999
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.Time(), ExpectedTime(9, 5, 3, 0));
    EXPECT_EQ(funcs.Time(), 0.090503);
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.Time(), ExpectedTime(9, 5, 3, 999));
    EXPECT_EQ(funcs.Second(), 3);
}

TEST_F(BarTime, EndOfDayAndStartOfDay) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    AddBar(1269446399000LL);  // 2010-03-24 23:59:59 local
    AddBar(1269446400000LL);  // 2010-03-25 00:00:00 local
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.Date(), 20100324);
    EXPECT_EQ(funcs.Time(), ExpectedTime(23, 59, 59, 0));
    EXPECT_EQ(funcs.Time(), 0.235959);
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.Date(), 20100325);
    EXPECT_EQ(funcs.Time(), 0.0);
    EXPECT_EQ(funcs.Hour(), 0);
}

// 2010-03-14: New York clocks jump from 01:59:59 EST to 03:00:00 EDT.
TEST_F(BarTime, DaylightSavingStartInNewYork) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    AddBar(1268549999000LL);
    AddBar(1268550000000LL);
    AddBar(1268550000000LL + 3600000LL);
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.Date(), 20100314);
    EXPECT_EQ(funcs.Hour(), 1);
    EXPECT_EQ(funcs.Minute(), 59);
    EXPECT_EQ(funcs.Second(), 59);
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.Date(), 20100314);
    EXPECT_EQ(funcs.Hour(), 3);
    EXPECT_EQ(funcs.Time(), ExpectedTime(3, 0, 0, 0));
    data.CurrentBar = 2;
    EXPECT_EQ(funcs.Hour(), 4);
    EXPECT_EQ(funcs.Weekday(), 0);
}

TEST_F(BarTime, WeekdayRunsFromSundayZeroToSaturdaySix) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    const int64_t sundayNoon = 1269144000000LL;  // 2010-03-21 12:00 local
    for (int i = 0; i < 7; ++i) AddBar(sundayNoon + i * 86400000LL);
    CSystemFuncs funcs(&data);
    for (int i = 0; i < 7; ++i) {
        data.CurrentBar = i;
        EXPECT_EQ(funcs.Weekday(), i);
        EXPECT_EQ(funcs.Date(), 20100321 + i);
    }
}

TEST_F(BarTime, PartsOutOfRangeAreInvalid) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    AddBar(kShanghaiMorning);
    CSystemFuncs funcs(&data);
    for (int32_t bar : {1, -1}) {
        data.CurrentBar = bar;
        EXPECT_EQ(funcs.Year(), kInvalidInt);
        EXPECT_EQ(funcs.Month(), kInvalidInt);
        EXPECT_EQ(funcs.Day(), kInvalidInt);
        EXPECT_EQ(funcs.Hour(), kInvalidInt);
        EXPECT_EQ(funcs.Minute(), kInvalidInt);
        EXPECT_EQ(funcs.Second(), kInvalidInt);
        EXPECT_EQ(funcs.Weekday(), kInvalidInt);
    }
    data.CurrentBar = 0;
    data.DataIndex = 1;
    EXPECT_EQ(funcs.Year(), kInvalidInt);
    EXPECT_EQ(funcs.Weekday(), kInvalidInt);
    EXPECT_EQ(funcs.Date(), kInvalidInt);
    EXPECT_EQ(funcs.Time(), kInvalid);
}

// The date number is computed in wrapping 32-bit arithmetic, so a year far beyond
// any chart gives a defined (if meaningless) number. Where the system refuses such
// a time, every part is invalid.
TEST_F(BarTime, DateOfTheLastRepresentableTimeWraps) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    AddBar(INT64_MAX);
    CSystemFuncs funcs(&data);
    if (funcs.Year() == kInvalidInt) {
        EXPECT_EQ(funcs.Date(), kInvalidInt);
        EXPECT_EQ(funcs.Time(), kInvalid);
        EXPECT_EQ(funcs.Second(), kInvalidInt);
        return;
    }
    const uint32_t wrapped = static_cast<uint32_t>(funcs.Year()) * 10000u +
                             static_cast<uint32_t>(funcs.Month()) * 100u +
                             static_cast<uint32_t>(funcs.Day());
    EXPECT_EQ(funcs.Date(), static_cast<int32_t>(wrapped));
    EXPECT_NE(funcs.Time(), kInvalid);
}

// Each object converts in the zone in force when it first converts a day.
TEST_F(BarTime, NewObjectSeesANewTimeZone) {
    AddBar(kShanghaiMorning);
    {
        fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
        CSystemFuncs funcs(&data);
        EXPECT_EQ(funcs.Date(), 20100325);
    }
    {
        fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
        CSystemFuncs funcs(&data);
        EXPECT_EQ(funcs.Date(), 20100324);
        CSystemFuncs copy(funcs);
        EXPECT_EQ(copy.Hour(), 21);
    }
}

}  // namespace
