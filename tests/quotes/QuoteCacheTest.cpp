// How quote values are fetched and kept: once per function and data index, served
// from PropertyCache afterwards, and asked for again after every failure.
#include <gtest/gtest.h>

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "support/LiveMarketFixture.h"

namespace {

using QuoteCache = LiveMarketFixture;

TEST_F(QuoteCache, AValueIsFetchedOnceAndThenServedFromTheCache) {
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 1);
    ASSERT_EQ(funcs.PropertyCache.size(), 1u);
    const tagKelDataType& entry = funcs.PropertyCache.at("Data0.Q_Last");
    EXPECT_EQ(entry.nType, 4);
    EXPECT_EQ(entry.dValue, 3036.0);
}

TEST_F(QuoteCache, EachFunctionFetchesForItself) {
    funcs.Q_Last();
    funcs.Q_High();
    funcs.Q_Open();
    funcs.Q_LastFlag();
    EXPECT_EQ(fake.calls.GetMarketQuote, 4);
    funcs.Q_Last();
    funcs.Q_High();
    funcs.Q_Open();
    funcs.Q_LastFlag();
    EXPECT_EQ(fake.calls.GetMarketQuote, 4);
    EXPECT_EQ(funcs.PropertyCache.size(), 4u);
}

TEST_F(QuoteCache, ALaterChangeOfTheLiveQuoteIsNotSeen) {
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    LiveTick().Last = 3100;
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(funcs.Q_High(), 3045.0);  // another value is fetched now, and sees the change
    LiveTick().High = 3200;
    EXPECT_EQ(funcs.Q_High(), 3045.0);

    CSystemFuncs fresh(&data);  // the library object is the unit of freshness
    EXPECT_EQ(fresh.Q_Last(), 3100.0);
}

TEST_F(QuoteCache, AFailedFetchCachesNothingAndIsRetried) {
    fake.Quotes.clear();
    EXPECT_EQ(funcs.Q_Last(), kInvalid);
    EXPECT_EQ(funcs.Q_Last(), kInvalid);
    EXPECT_EQ(funcs.Q_LastFlag(), kInvalidInt);
    EXPECT_EQ(funcs.Q_Open(), kInvalid);
    EXPECT_EQ(fake.calls.GetMarketQuote, 4);
    EXPECT_TRUE(funcs.PropertyCache.empty());

    fake.Quotes[{kMarket, "rb2405"}] = Tick();
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 5);
}

TEST_F(QuoteCache, DataSourcesKeepSeparateEntries) {
    AddSecondSource("hc2405");
    IModuleFutureTrader::ITickEx other = Tick();
    other.Last = 3900;
    fake.Quotes[{kMarket, "hc2405"}] = other;

    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.Q_Last(), 3900.0);
    EXPECT_EQ(funcs.Q_Open(), 3004.0);
    data.DataIndex = 0;
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 3);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.Q_Last").dValue, 3036.0);
    EXPECT_EQ(funcs.PropertyCache.at("Data1.Q_Last").dValue, 3900.0);
    EXPECT_EQ(funcs.PropertyCache.count("Data1.Q_Open"), 1u);
}

TEST_F(QuoteCache, AValueThatTheHostPutInTheCacheIsServed) {
    tagKelDataType v;
    v.nType = 4;
    v.dValue = 2999.5;
    funcs.PropertyCache["Data0.Q_Last"] = v;
    EXPECT_EQ(funcs.Q_Last(), 2999.5);
    EXPECT_EQ(fake.calls.GetMarketQuote, 0);
}

// The cache is consulted only once the bar qualifies: a cached value is not served
// on a history bar.
TEST_F(QuoteCache, ACachedValueIsNotServedOnAHistoryBar) {
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.Q_Last(), kInvalid);
    data.CurrentBar = kLastBar;
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 1);
}

TEST_F(QuoteCache, ACopyCarriesTheQuoteValues) {
    EXPECT_EQ(funcs.Q_Last(), 3036.0);
    CSystemFuncs copy(funcs);
    LiveTick().Last = 3100;
    EXPECT_EQ(copy.Q_Last(), 3036.0);
    EXPECT_EQ(fake.calls.GetMarketQuote, 1);
}

TEST_F(QuoteCache, QuoteDataExistAsksEveryTimeAndCachesNothing) {
    EXPECT_TRUE(funcs.QuoteDataExist());
    EXPECT_TRUE(funcs.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 2);
    EXPECT_TRUE(funcs.PropertyCache.empty());
    fake.Quotes.clear();
    EXPECT_FALSE(funcs.QuoteDataExist());
    EXPECT_EQ(fake.calls.GetMarketQuote, 3);
}

}  // namespace
