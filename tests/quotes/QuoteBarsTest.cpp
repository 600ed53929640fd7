// On which bars a quote is answered: the newest bar for most values, every bar of
// the last bar's day for the five values fixed for the day; and what a quote
// function does without a data source, a market-data library or a host object.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "support/LiveMarketFixture.h"
#include "support/TimeZone.h"

namespace {

constexpr double kInvalid = 1.7976931348623157e308;
constexpr int32_t kInvalidInt = 2147483647;

// Bars at 15:00 UTC: 11:00 in New York and 23:00 in Shanghai, so the local date is
// the UTC date in both zones. Bars 0 and 1 lie on the 23rd, bars 2 to 4 on the 24th.
constexpr int64_t kDay23 = 1269356400000LL;  // 2010-03-23 15:00:00 UTC
constexpr int64_t kDay24 = 1269442800000LL;  // 2010-03-24 15:00:00 UTC
constexpr int64_t kMinute = 60000;

// Every quote value that is answered on the newest bar only.
std::vector<std::function<double(CSystemFuncs&)>> LatestBarDoubles() {
    return {
        [](CSystemFuncs& f) { return f.Q_AskPrice(1); },
        [](CSystemFuncs& f) { return f.Q_AskVol(1); },
        [](CSystemFuncs& f) { return f.Q_BidPrice(1); },
        [](CSystemFuncs& f) { return f.Q_BidVol(1); },
        [](CSystemFuncs& f) { return f.Q_Close(); },
        [](CSystemFuncs& f) { return f.Q_High(); },
        [](CSystemFuncs& f) { return f.Q_LastTime(); },
        [](CSystemFuncs& f) { return f.Q_LastVol(); },
        [](CSystemFuncs& f) { return f.Q_Low(); },
        [](CSystemFuncs& f) { return f.Q_OpenInt(); },
        [](CSystemFuncs& f) { return f.Q_Oscillation(); },
        [](CSystemFuncs& f) { return f.Q_PriceChg(); },
        [](CSystemFuncs& f) { return f.Q_PriceChgRatio(); },
        [](CSystemFuncs& f) { return f.Q_TickChg(); },
        [](CSystemFuncs& f) { return f.Q_TotalVol(); },
        [](CSystemFuncs& f) { return f.Q_AvgPrice(); },
        [](CSystemFuncs& f) { return f.Q_TurnOver(); },
        [](CSystemFuncs& f) { return f.Q_HisHigh(); },
        [](CSystemFuncs& f) { return f.Q_HisLow(); },
        [](CSystemFuncs& f) { return f.Q_InsideVol(); },
        [](CSystemFuncs& f) { return f.Q_OutsideVol(); },
        [](CSystemFuncs& f) { return f.Q_TodayEntryVol(); },
        [](CSystemFuncs& f) { return f.Q_TodayExitVol(); },
        [](CSystemFuncs& f) { return f.Q_Last(); },
    };
}

std::vector<std::function<int32_t(CSystemFuncs&)>> LatestBarLongs() {
    return {
        [](CSystemFuncs& f) { return f.Q_LastDate(); },
        [](CSystemFuncs& f) { return f.Q_LastFlag(); },
        [](CSystemFuncs& f) { return f.Q_BidPriceFlag(); },
        [](CSystemFuncs& f) { return f.Q_AskPriceFlag(); },
        [](CSystemFuncs& f) { return f.Q_OpenIntFlag(); },
    };
}

// The five values that stay the same all day.
std::vector<std::function<double(CSystemFuncs&)>> SameDayDoubles() {
    return {
        [](CSystemFuncs& f) { return f.Q_Open(); },
        [](CSystemFuncs& f) { return f.Q_PreSettlePrice(); },
        [](CSystemFuncs& f) { return f.Q_PreOpenInt(); },
        [](CSystemFuncs& f) { return f.Q_UpperLimit(); },
        [](CSystemFuncs& f) { return f.Q_LowerLimit(); },
    };
}

// Expects every quote function to give its invalid value.
void ExpectAllInvalid(CSystemFuncs& f) {
    for (auto& q : LatestBarDoubles()) EXPECT_EQ(q(f), kInvalid);
    for (auto& q : LatestBarLongs()) EXPECT_EQ(q(f), kInvalidInt);
    for (auto& q : SameDayDoubles()) EXPECT_EQ(q(f), kInvalid);
}

class QuoteBars : public LiveMarketFixture {
protected:
    // On an earlier bar of the last bar's day the five day values answer and the
    // others do not; in both zones the bars keep their UTC dates.
    void ExpectDayValuesOnlyOnBarTwo(fftest::Zone zoneName) {
        fftest::ScopedTimeZone zone(zoneName);
        StampBars({kDay23, kDay23 + kMinute, kDay24, kDay24 + kMinute, kDay24 + 2 * kMinute});
        data.CurrentBar = 2;
        CSystemFuncs f(&data);
        EXPECT_EQ(f.Q_Open(), 3004.0);
        EXPECT_EQ(f.Q_PreSettlePrice(), 3000.0);
        EXPECT_EQ(f.Q_PreOpenInt(), 800000.0);
        EXPECT_EQ(f.Q_UpperLimit(), 3150.0);
        EXPECT_EQ(f.Q_LowerLimit(), 2850.0);
        EXPECT_EQ(f.Q_High(), kInvalid);
        EXPECT_EQ(f.Q_Last(), kInvalid);
        EXPECT_EQ(f.Q_LastFlag(), kInvalidInt);
        EXPECT_FALSE(f.QuoteDataExist());
        EXPECT_EQ(fake.calls.GetMarketQuote, 5);
    }
};

TEST_F(QuoteBars, EveryValueIsAnsweredOnTheNewestBar) {
    for (auto& q : LatestBarDoubles()) EXPECT_NE(q(funcs), kInvalid);
    for (auto& q : LatestBarLongs()) EXPECT_NE(q(funcs), kInvalidInt);
    for (auto& q : SameDayDoubles()) EXPECT_NE(q(funcs), kInvalid);
    EXPECT_EQ(funcs.PropertyCache.size(), 34u);
    EXPECT_EQ(fake.calls.GetMarketQuote, 34);
}

TEST_F(QuoteBars, NothingIsAnsweredOnABarOfAnEarlierDay) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    StampBars({kDay23, kDay23 + kMinute, kDay24, kDay24 + kMinute, kDay24 + 2 * kMinute});
    data.CurrentBar = 1;
    CSystemFuncs f(&data);
    ExpectAllInvalid(f);
    EXPECT_EQ(f.Q_Last(), kInvalid);
    EXPECT_EQ(f.Q_LastFlag(), kInvalidInt);
    EXPECT_FALSE(f.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 0);
    EXPECT_TRUE(f.PropertyCache.empty());
}

TEST_F(QuoteBars, DayValuesAnswerOnEarlierBarsOfTheLastDayInNewYork) {
    ExpectDayValuesOnlyOnBarTwo(fftest::Zone::NewYork);
}

TEST_F(QuoteBars, DayValuesAnswerOnEarlierBarsOfTheLastDayInShanghai) {
    ExpectDayValuesOnlyOnBarTwo(fftest::Zone::Shanghai);
}

// 2010-03-24 15:00 UTC and 2010-03-25 02:00 UTC: one day in New York (11:00 and
// 22:00 on the 24th), two days in Shanghai (23:00 on the 24th, 10:00 on the 25th).
TEST_F(QuoteBars, TheSameDayIsTheLocalDay) {
    StampBars({1269442800000LL, 1269482400000LL});
    data.CurrentBar = 0;
    {
        fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
        CSystemFuncs f(&data);
        EXPECT_EQ(f.Q_Open(), 3004.0);
    }
    {
        fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
        CSystemFuncs f(&data);
        EXPECT_EQ(f.Q_Open(), kInvalid);
        data.CurrentBar = 1;
        EXPECT_EQ(f.Q_Open(), 3004.0);
    }
}

// A day with a clock change: 2010-03-14 in New York springs forward at 02:00. Bars
// at 00:30 EST and 23:30 EDT of that day share the date.
TEST_F(QuoteBars, TheSameDayAcrossAClockChange) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    StampBars({1268544600000LL, 1268623800000LL});  // 05:30 UTC on the 14th, 03:30 UTC on the 15th
    data.CurrentBar = 0;
    CSystemFuncs f(&data);
    EXPECT_EQ(f.Q_LowerLimit(), 2850.0);
}

TEST_F(QuoteBars, ACachedDayValueIsNotServedOnAnotherDay) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    StampBars({kDay23, kDay23 + kMinute, kDay24, kDay24 + kMinute, kDay24 + 2 * kMinute});
    CSystemFuncs f(&data);
    EXPECT_EQ(f.Q_Open(), 3004.0);
    data.CurrentBar = 0;
    EXPECT_EQ(f.Q_Open(), kInvalid);
    data.CurrentBar = 3;
    EXPECT_EQ(f.Q_Open(), 3004.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 1);
}

// The last bar is looked up at the main chart's bar count in the current data
// source: a source without bars, or with fewer bars, has no last day.
TEST_F(QuoteBars, DayValuesOfASourceWithoutBarsOrWithFewerBarsAreInvalid) {
    AddSecondSource("hc2405");
    fake.Quotes[{kMarket, "hc2405"}] = Tick();
    data.DataIndex = 1;
    data.DataStreams[1].Bars.clear();
    EXPECT_EQ(funcs.Q_Open(), kInvalid);
    EXPECT_EQ(funcs.Q_Last(), 3036.0);  // the newest bar is the main chart's
    data.DataStreams[1].Bars.resize(4);
    EXPECT_EQ(funcs.Q_UpperLimit(), kInvalid);
    EXPECT_EQ(fake.calls.GetMarketQuote, 1);
}

TEST_F(QuoteBars, NothingIsAnsweredWithoutACurrentDataSource) {
    data.DataIndex = 1;
    ExpectAllInvalid(funcs);
    EXPECT_FALSE(funcs.QuoteDataExist());
    data.DataIndex = -1;
    ExpectAllInvalid(funcs);
    EXPECT_FALSE(funcs.QuoteDataExist());
    data.CurrentBar = 2;
    EXPECT_FALSE(funcs.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 0);
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST_F(QuoteBars, QuoteDataExistOnlyOnTheNewestBar) {
    EXPECT_TRUE(funcs.QuoteDataExist());
    data.CurrentBar = 3;
    EXPECT_FALSE(funcs.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 1);
}

TEST_F(QuoteBars, NothingIsAnsweredWithoutTheMarketDataLibrary) {
    g_pSubscribeManage = nullptr;
    ExpectAllInvalid(funcs);
    EXPECT_FALSE(funcs.QuoteDataExist());
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST_F(QuoteBars, NothingIsAnsweredWithoutAHostObject) {
    CSystemFuncs f(nullptr);
    ExpectAllInvalid(f);
    EXPECT_FALSE(f.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 0);
}

TEST_F(QuoteBars, NothingIsAnsweredOnAChartWithoutDataSources) {
    data.DataStreams.clear();
    data.CurrentBar = -1;  // the newest bar of an empty chart
    ExpectAllInvalid(funcs);
    EXPECT_FALSE(funcs.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 0);
}

}  // namespace
