// The values of the live quote: the fields, the reference-price computations, the
// direction flags and the quote's date and time.
#include <gtest/gtest.h>

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "support/LiveMarketFixture.h"
#include "support/TimeZone.h"

namespace {

using QuoteValues = LiveMarketFixture;

TEST_F(QuoteValues, EveryFieldOfTheQuoteOnTheNewestBar) {
    EXPECT_EQ(funcs.Q_AskPrice(1), 3037.0);
    EXPECT_EQ(funcs.Q_AskVol(1), 7.0);
    EXPECT_EQ(funcs.Q_BidPrice(1), 3035.0);
    EXPECT_EQ(funcs.Q_BidVol(1), 12.0);
    EXPECT_EQ(funcs.Q_Close(), 3033.0);
    EXPECT_EQ(funcs.Q_High(), 3045.0);
    EXPECT_EQ(funcs.Q_LastVol(), 4.0);
    EXPECT_EQ(funcs.Q_Low(), 2998.0);
    EXPECT_EQ(funcs.Q_Open(), 3004.0);
    EXPECT_EQ(funcs.Q_OpenInt(), 801234.0);
    EXPECT_EQ(funcs.Q_TickChg(), 1.0);
    EXPECT_EQ(funcs.Q_TotalVol(), 123456.0);
    EXPECT_EQ(funcs.Q_PreSettlePrice(), 3000.0);
    EXPECT_EQ(funcs.Q_PreOpenInt(), 800000.0);
    EXPECT_EQ(funcs.Q_AvgPrice(), 3021.5);
    EXPECT_EQ(funcs.Q_TurnOver(), 3.7e9);
    EXPECT_EQ(funcs.Q_HisHigh(), 5100.0);
    EXPECT_EQ(funcs.Q_HisLow(), 1800.0);
    EXPECT_EQ(funcs.Q_UpperLimit(), 3150.0);
    EXPECT_EQ(funcs.Q_LowerLimit(), 2850.0);
    EXPECT_EQ(funcs.Q_InsideVol(), 61000.0);
    EXPECT_EQ(funcs.Q_OutsideVol(), 62456.0);
    EXPECT_EQ(funcs.Q_TodayEntryVol(), 9500.0);
    EXPECT_EQ(funcs.Q_TodayExitVol(), 9000.0);
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(funcs.Q_LastFlag(), 0);
    EXPECT_EQ(funcs.Q_BidPriceFlag(), 0);
    EXPECT_EQ(funcs.Q_AskPriceFlag(), 0);
    EXPECT_EQ(funcs.Q_OpenIntFlag(), 0);
}

TEST_F(QuoteValues, EveryDepthAnswersTheBestLevelFromOneEntry) {
    EXPECT_EQ(funcs.Q_AskPrice(1), 3037.0);
    EXPECT_EQ(funcs.Q_AskPrice(5), 3037.0);
    EXPECT_EQ(funcs.Q_AskPrice(-3), 3037.0);
    EXPECT_EQ(funcs.Q_BidPrice(2), 3035.0);
    EXPECT_EQ(funcs.Q_AskVol(4), 7.0);
    EXPECT_EQ(funcs.Q_BidVol(9), 12.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 4);
    EXPECT_EQ(funcs.PropertyCache.size(), 4u);
    EXPECT_EQ(funcs.PropertyCache.count("Data0.Q_AskPrice"), 1u);
}

// Changes against the previous settlement price 3000, which is above 0.0001.
TEST_F(QuoteValues, ChangesMeasureFromThePreviousSettlement) {
    EXPECT_EQ(funcs.Q_PriceChg(), 3036.0 - 3000.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), (3036.0 - 3000.0) / 3000.0);
    EXPECT_EQ(funcs.Q_Oscillation(), (3045.0 - 2998.0) / 3000.0);
}

TEST_F(QuoteValues, ChangesFallBackToTheSecondReferencePrice) {
    LiveTick().PreSettlePrice = 0;
    EXPECT_EQ(funcs.Q_PriceChg(), 3036.0 - 2990.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), (3036.0 - 2990.0) / 2990.0);
    EXPECT_EQ(funcs.Q_Oscillation(), (3045.0 - 2998.0) / 2990.0);
}

// The threshold is strictly greater than 0.0001: 0.00005 and 0.0001 are missing.
TEST_F(QuoteValues, ATinyPreviousSettlementCountsAsMissing) {
    LiveTick().PreSettlePrice = 0.00005;
    EXPECT_EQ(funcs.Q_PriceChg(), 3036.0 - 2990.0);

    CSystemFuncs other(&data);
    LiveTick().PreSettlePrice = 0.0001;
    EXPECT_EQ(other.Q_PriceChgRatio(), (3036.0 - 2990.0) / 2990.0);

    CSystemFuncs third(&data);
    LiveTick().PreSettlePrice = 0.00011;
    EXPECT_EQ(third.Q_PriceChg(), 3036.0 - 0.00011);
}

TEST_F(QuoteValues, WithoutAnyReferenceTheChangesAreZeroAndCached) {
    LiveTick().PreSettlePrice = 0;
    LiveTick().PreClosePrice = 0;
    EXPECT_EQ(funcs.Q_PriceChg(), 0.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), 0.0);
    EXPECT_EQ(funcs.Q_Oscillation(), 0.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 3);
    ASSERT_EQ(funcs.PropertyCache.count("Data0.Q_PriceChg"), 1u);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.Q_PriceChg").nType, 4);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.Q_Oscillation").dValue, 0.0);

    LiveTick().PreSettlePrice = 3000;
    EXPECT_EQ(funcs.Q_PriceChg(), 0.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), 0.0);
    EXPECT_EQ(funcs.Q_Oscillation(), 0.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 3);
}

// A second reference of 0.00005 is missing too, so there is no reference at all.
TEST_F(QuoteValues, ATinySecondReferenceLeavesNoReference) {
    LiveTick().PreSettlePrice = -5;
    LiveTick().PreClosePrice = 0.00005;
    EXPECT_EQ(funcs.Q_PriceChg(), 0.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), 0.0);
}

TEST_F(QuoteValues, NegativeChangeAndRatio) {
    LiveTick().Last = 2970;
    EXPECT_EQ(funcs.Q_PriceChg(), -30.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), -30.0 / 3000.0);
    EXPECT_EQ(funcs.Q_PriceChgRatio(), -0.01);
}

TEST_F(QuoteValues, FlagsByteSixFallsForTheLastAndRisesForTheBid) {
    LiveTick().Flags = 0x06;
    EXPECT_EQ(funcs.Q_LastFlag(), -1);
    EXPECT_EQ(funcs.Q_BidPriceFlag(), 1);
    EXPECT_EQ(funcs.Q_AskPriceFlag(), 0);
    EXPECT_EQ(funcs.Q_OpenIntFlag(), 0);
}

TEST_F(QuoteValues, FlagsOfTheAskAndTheOpenInterest) {
    LiveTick().Flags = 0x90;  // ask pair 1, open interest pair 2
    EXPECT_EQ(funcs.Q_LastFlag(), 0);
    EXPECT_EQ(funcs.Q_BidPriceFlag(), 0);
    EXPECT_EQ(funcs.Q_AskPriceFlag(), 1);
    EXPECT_EQ(funcs.Q_OpenIntFlag(), -1);
}

TEST_F(QuoteValues, APairOfThreeIsUnchanged) {
    LiveTick().Flags = 0xFF;
    EXPECT_EQ(funcs.Q_LastFlag(), 0);
    EXPECT_EQ(funcs.Q_BidPriceFlag(), 0);
    EXPECT_EQ(funcs.Q_AskPriceFlag(), 0);
    EXPECT_EQ(funcs.Q_OpenIntFlag(), 0);
    ASSERT_EQ(funcs.PropertyCache.count("Data0.Q_LastFlag"), 1u);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.Q_LastFlag").nType, 10);
}

TEST_F(QuoteValues, FlagsOfARisingLastAndAFallingAsk) {
    LiveTick().Flags = 0x21;  // last pair 1, ask pair 2
    EXPECT_EQ(funcs.Q_LastFlag(), 1);
    EXPECT_EQ(funcs.Q_AskPriceFlag(), -1);
}

// 2010-03-25 01:05:03.250 UTC is 21:05:03 on the 24th in New York (daylight-saving
// time) and 09:05:03 on the 25th in Shanghai; the milliseconds are dropped.
TEST_F(QuoteValues, DateAndTimeOfTheQuoteInNewYork) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    CSystemFuncs fresh(&data);
    EXPECT_EQ(fresh.Q_LastDate(), 20100324);
    EXPECT_EQ(fresh.Q_LastTime(), 3 * 0.000001 + 21 * 0.01 + 5 * 0.0001);
    EXPECT_EQ(fresh.PropertyCache.at("Data0.Q_LastDate").nType, 10);
    EXPECT_EQ(fresh.PropertyCache.at("Data0.Q_LastTime").nType, 4);
}

TEST_F(QuoteValues, DateAndTimeOfTheQuoteInShanghai) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    CSystemFuncs fresh(&data);
    EXPECT_EQ(fresh.Q_LastDate(), 20100325);
    EXPECT_EQ(fresh.Q_LastTime(), 3 * 0.000001 + 9 * 0.01 + 5 * 0.0001);
}

// New York in winter (standard time, UTC-5): 2010-01-15 14:30:59 UTC is 09:30:59.
TEST_F(QuoteValues, DateAndTimeOfTheQuoteInNewYorkWinter) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    LiveTick().Time = 1263565859999LL;
    CSystemFuncs fresh(&data);
    EXPECT_EQ(fresh.Q_LastDate(), 20100115);
    EXPECT_EQ(fresh.Q_LastTime(), 59 * 0.000001 + 9 * 0.01 + 30 * 0.0001);
}

// 10000-01-01 00:00:00 UTC. Where the system converts it, the year beyond 9999 is
// clamped to 1900 as MakeDate does; where it refuses (the Windows runtime stops at
// year 3000), there is no date and nothing is cached.
TEST_F(QuoteValues, ATimeStampBeyondYear9999) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    LiveTick().Time = 253402300800000LL;
    CSystemFuncs fresh(&data);
#if defined(_WIN32)
    EXPECT_EQ(fresh.Q_LastDate(), kInvalidInt);
    EXPECT_EQ(fresh.Q_LastTime(), kInvalid);
    EXPECT_TRUE(fresh.PropertyCache.empty());
#else
    EXPECT_EQ(fresh.Q_LastDate(), 19000101);
    EXPECT_EQ(fresh.Q_LastTime(), 0 * 0.000001 + 8 * 0.01 + 0 * 0.0001);
#endif
    EXPECT_EQ(fresh.Q_Last(), 3036.0);
}

}  // namespace
