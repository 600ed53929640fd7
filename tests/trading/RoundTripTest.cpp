#include "support/InstrumentFixture.h"

namespace {

// The engine reading a real instrument through the value cache: margin mode 4,
// contract unit 10, big point value 10, tick 0.01 (a float widened to double).
class RoundTripTest : public InstrumentFixture {
protected:
    void SetUp() override {
        InstrumentFixture::SetUp();
        data.FormulaKind = 7;
        data.Result = &result;
        result.Figures.Capital = 1000000;
        data.MaxOpenEntries = 1;
        data.MaxPositionContracts = 10;
        data.TradeSizeValue = 2;
        data.CommissionValue = 1.5;
    }
    CStrategyResult result{};
};

TEST_F(RoundTripTest, BuyThenSellBooksProfitLessCommission) {
    data.CurrentBar = 1;
    EXPECT_TRUE(funcs.Buy(0, 0, false));
    EXPECT_EQ(funcs.CurrentContracts(), 2.0);
    EXPECT_EQ(funcs.EntryPrice(), 3006.0);
    data.CurrentBar = 3;
    EXPECT_EQ(funcs.PositionProfit(), 400.0);
    EXPECT_TRUE(funcs.Sell(0, 0, false));
    EXPECT_EQ(funcs.MarketPosition(), 0);
    // 10 x 10 x (3008 - 3006) x 2, less 1.5 a contract on each side.
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (400.0 - 6.0));
    EXPECT_EQ(funcs.ExitPrice(), 3008.0);
    EXPECT_EQ(funcs.BarsSinceExit(), 0);
}

TEST_F(RoundTripTest, LimitPricesMoveToTheInstrumentsTick) {
    data.CurrentBar = 2;
    EXPECT_TRUE(funcs.SellShort(1, 3000.127, false));
    EXPECT_EQ(funcs.EntryPrice(), 30001200 * 0.0001);
    data.CurrentBar = 4;  // the newest bar: no range clamp
    EXPECT_TRUE(funcs.BuyToCover(0, 2900.001, false));
    EXPECT_EQ(funcs.ExitPrice(), 2900.01);
}

TEST_F(RoundTripTest, AnUnknownInstrumentTradesNothing) {
    data.DataStreams[0].Code = "unknown";
    data.CurrentBar = 1;
    EXPECT_FALSE(funcs.Buy(0, 0, false));
    EXPECT_FALSE(funcs.Buy(1, 3005, false));
    EXPECT_TRUE(data.OpenEntries.empty());
}

}  // namespace
