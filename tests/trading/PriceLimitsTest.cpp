#include "support/LiveMarketFixture.h"
#include "support/TestAccess.h"

namespace {

// Orders on the newest bar of today, with a live quote whose limits are 3150 and
// 2850 (bars range from 2990 to 3014).
class PriceLimitsTest : public LiveMarketFixture {
protected:
    void SetUp() override {
        LiveMarketFixture::SetUp();
        data.Result = &result;
        result.Figures.Capital = 1000000;
        data.MaxOpenEntries = 5;
        data.AllowSameSourceEntries = true;
        data.MaxPositionContracts = 10;
        StampBarsToday();
    }
    CStrategyResult result{};
};

TEST_F(PriceLimitsTest, EntriesAreHeldToTodaysLimits) {
    EXPECT_TRUE(funcs.Buy(1, 3200, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3150.0);
    EXPECT_TRUE(funcs.Buy(1, 2800.005, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 2850.0);
    data.OpenEntries.clear();
    EXPECT_TRUE(funcs.SellShort(1, 2800, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 2850.0);
    EXPECT_TRUE(funcs.SellShort(1, 3200.009, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3150.0);
}

TEST_F(PriceLimitsTest, PricesInsideTheLimitsAreOnlyRounded) {
    EXPECT_TRUE(funcs.Buy(1, 3100.001, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3100.01);
}

TEST_F(PriceLimitsTest, ExitsAreHeldToTodaysLimits) {
    data.OpenEntries.push_back({1, 1, 0, 0, 3, 3000});
    EXPECT_TRUE(funcs.Sell(1, 3200, false));
    EXPECT_EQ(funcs.ExitPrice(), 0.0);  // still long
    EXPECT_EQ(data.TradeList.back().dExitPrice, 3150.0);
    CSystemFuncsTestAccess::ClosePosition(funcs, data.OpenEntries[0], 2700);
    EXPECT_EQ(data.TradeList.back().dExitPrice, 2850.0);
    data.OpenEntries = {{3, 1, 0, 0, 3, 3000}};
    EXPECT_TRUE(funcs.BuyToCover(0, 2700, false));
    EXPECT_EQ(funcs.ExitPrice(), 2850.0);
}

TEST_F(PriceLimitsTest, MarketOrdersFillAtTheClose) {
    data.DataStreams[0].Bars.back().close = 3300;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3300.0);
}

TEST_F(PriceLimitsTest, WithoutAQuoteNoLimitApplies) {
    fake.Quotes.clear();
    EXPECT_TRUE(funcs.Buy(1, 3200, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3200.0);
    EXPECT_TRUE(funcs.Sell(0, 2700, false));
    EXPECT_EQ(funcs.ExitPrice(), 2700.0);
}

TEST_F(PriceLimitsTest, LimitsOfZeroDoNotApply) {
    LiveTick().UpperLimit = 0;
    LiveTick().LowerLimit = 0.0001;
    EXPECT_TRUE(funcs.Buy(1, 3200, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3200.0);
    EXPECT_TRUE(funcs.Buy(1, 2700, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 2700.0);
}

TEST_F(PriceLimitsTest, NewestBarOfAnotherDayIsNotClamped) {
    StampBars({1269479103000LL, 1269479163000LL, 1269479223000LL, 1269479283000LL,
               1269479343000LL});
    EXPECT_TRUE(funcs.Buy(1, 3200, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3200.0);
}

TEST_F(PriceLimitsTest, EarlierBarsOfTodayAreHeldToTheBarInstead) {
    data.CurrentBar = 3;  // range 2993 to 3013
    EXPECT_TRUE(funcs.Buy(1, 3200, false));
    EXPECT_EQ(funcs.LastEntryPrice(), 3013.0);
}

}  // namespace
