// Whole runs driven as the host drives them, and the live last bar evaluated again
// and again.
#include <cmath>

#include "driver/DriverFixture.h"
#include "driver/SameState.h"

namespace {

// Bar i closes at 101 + i. Bar 1 buys 2 at 102, bar 3 sells 1 at 104, bar 4 queues a
// buy that fills on bar 5 at 106, bar 7 sells the rest at 108. One unit of commission
// per contract and side.
class WholeRunTest : public DriverTest {
protected:
    void Body(int32_t bar) {
        if (bar == 1) funcs.Buy(2, 0, false);
        if (bar == 3) funcs.Sell(1, 0, false);
        if (bar == 4) funcs.Buy(1, 0, true);
        if (bar == 7) funcs.Sell(0, 0, false);
    }
};

TEST_F(WholeRunTest, ModeTwoRun) {
    data.PerformanceMode = 2;
    data.CommissionValue = 1;
    Run(0, 9, [&](int32_t bar) { Body(bar); });
    const double c = 1000000;
    ASSERT_EQ(3u, data.TradeList.size());
    EXPECT_EQ(TripText(1, 2, 1, 3, 0, 0, 0, 1, 102, 104), Text(data.TradeList[0]));
    EXPECT_EQ(TripText(1, 2, 1, 7, 0, 0, 0, 1, 102, 108), Text(data.TradeList[1]));
    EXPECT_EQ(TripText(1, 2, 5, 7, 0, 0, 0, 1, 106, 108), Text(data.TradeList[2]));
    EXPECT_EQ(c + 94, result.Figures.Capital);
    EXPECT_EQ(94.0, funcs.NetProfit());

    // Equity history: the first bar, bars 1 to 6 in a position, bar 7 closing flat.
    ASSERT_EQ(8u, result.EquityHistory.size());
    const double equity[] = {c, c, c + 20, c + 38, c + 48, c + 58, c + 78, c + 94};
    const double commission[] = {0, 2, 0, 1, 0, 1, 0, 2};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(i == 0 ? 0 : i, result.EquityHistory[i].nBar) << i;
        EXPECT_EQ(equity[i], result.EquityHistory[i].dEquity) << i;
        EXPECT_EQ(commission[i], result.EquityHistory[i].dCommission) << i;
    }
    EXPECT_EQ(204.0, result.EquityHistory[1].dMargin);
    EXPECT_EQ(c - 204, result.EquityHistory[1].dFreeCapital);
    EXPECT_EQ(8, result.BarsInMarket);
    EXPECT_EQ(c + 94, result.HighestEquity);
    EXPECT_EQ(c, result.LowestEquity);
    EXPECT_EQ(0.0, result.MaxDrawDown);

    ASSERT_EQ(9u, result.PositionSnapshots.size());
    const PositionSnapshot& s = result.PositionSnapshots[6];
    EXPECT_EQ(2.0, s.dCurrentContracts);
    EXPECT_EQ(104.0, s.dAvgEntryPrice);
    EXPECT_EQ(1, s.nMarketPosition);
    EXPECT_EQ(18.0, s.dCloseEquity);
    EXPECT_EQ(78.0, s.dOpenEquity);
    EXPECT_EQ(0.0, result.PositionSnapshots[8].dCurrentContracts);
    EXPECT_EQ(94.0, result.PositionSnapshots[8].dCloseEquity);

    ASSERT_EQ(10u, result.PositionSeries.size());
    EXPECT_EQ(94.0, result.PositionSeries[9].dNetProfit);
    EXPECT_EQ(2.0, result.PositionSeries[6].dContracts);
    EXPECT_EQ(18.0 + 10 * (107 - 104) * 2, result.PositionSeries[6].dEquity);

    ASSERT_EQ(10u, result.BarEquityList.size());
    EXPECT_EQ(1.0, result.BarEquityList[3].dCommission);
    EXPECT_EQ(2.0, result.BarEquityList[7].dCommission);
    EXPECT_EQ(6, result.nBarsWithPosition);
    EXPECT_EQ(c + 94, result.dHighestBarEquity);
    EXPECT_EQ(20100308, result.nHighestEquityDate);
    EXPECT_EQ(2 * 107.0, result.dLargestMargin);  // bar 6: 2 contracts at 107
}

TEST_F(WholeRunTest, ModeOneRun) {
    data.PerformanceMode = 1;
    data.CommissionValue = 1;
    Run(0, 9, [&](int32_t bar) { Body(bar); });
    const SummaryFigures& s = result.Summary;
    EXPECT_EQ(94.0, s.dGrossProfit);
    EXPECT_EQ(0.0, s.dGrossLoss);
    EXPECT_EQ(3, s.nWinners);
    EXPECT_EQ(3 + 7 + 3, s.nBarsWinners);
    EXPECT_EQ(58.0, s.dLargestWinner);
    EXPECT_EQ(3, s.nMaxConsecWinners);
    EXPECT_EQ(2.0, s.dLargestPosition);
    EXPECT_EQ(std::sqrt((18.0 * 18 + 58.0 * 58 + 18.0 * 18 - 94.0 * 94 / 3) / 2), s.dStdDev);
    EXPECT_EQ(1u, result.EquityHistory.size());
}

// On the live bar the formula buys, sells part, buys again and queues an order for
// the next bar; the run's end closes the rest out. Evaluated four times, the state is
// that of one evaluation.
TEST_F(WholeRunTest, LiveBarEvaluatedAgainEndsInTheStateOfOneEvaluation) {
    for (int32_t mode : {0, 1, 2}) {
        auto body = [&](int32_t bar) {
            Body(bar);
            if (bar == 9) {
                funcs.Buy(3, 0, false);
                funcs.Sell(1, 0, false);
                funcs.Buy(1, 0, false);
                funcs.SellShort(1, 0, true);
            }
        };
        CKelBaseData once = data;
        CStrategyResult onceResult{};
        once.Result = &onceResult;
        once.PerformanceMode = mode;
        once.CommissionValue = 1;
        data.PerformanceMode = mode;
        data.CommissionValue = 1;
        {
            CSystemFuncs single(&once);
            single.PropertyCache = funcs.PropertyCache;
            for (int32_t bar = 0; bar <= 9; ++bar) {
                once.CurrentBar = bar;
                once.LastBarOfRun = bar == 9;
                single.PrepareBar();
                // The same formula, over the other object.
                if (bar == 1) single.Buy(2, 0, false);
                if (bar == 3) single.Sell(1, 0, false);
                if (bar == 4) single.Buy(1, 0, true);
                if (bar == 7) single.Sell(0, 0, false);
                if (bar == 9) {
                    single.Buy(3, 0, false);
                    single.Sell(1, 0, false);
                    single.Buy(1, 0, false);
                    single.SellShort(1, 0, true);
                }
                single.CalStatistic();
            }
        }
        Run(0, 9, body);
        for (int i = 0; i < 3; ++i) Reevaluate(body);
        SCOPED_TRACE(mode);
        ExpectSameState(data, once);
        data = CKelBaseData{};
        result = CStrategyResult{};
        SetUp();
    }
}

}  // namespace
