// The host loop with the library's own engine: a hand-checked run, and the live last
// bar re-evaluated at price updates ending where a single evaluation stands.
#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "runner/HostLoop.h"
#include "runner/Report.h"
#include "support/RebarFeed.h"
#include "support/RebarRunTest.h"

namespace {

class EngineLoop : public RebarRunTest {
protected:
    static CKelBaseData Strategy(const std::vector<BarRecord>& bars) {
        return fftest::RebarStrategyData(bars, 100000, 2);
    }

    // Long while the bar closes up, flat after a bar that closes down.
    static void Body(CSystemFuncs& f) {
        if (f.MarketPosition() == 0 && f.Close() > f.Open()) f.Buy(0, 0, false);
        else if (f.MarketPosition() == 1 && f.Close() < f.Open()) f.Sell(0, 0, false);
    }
};

BarRecord Bar(int64_t minute, double o, double h, double l, double c) {
    return BarRecord{1704157200000 + minute * 60000, o, h, l, c, 10, 100};
}

TEST_F(EngineLoop, AHandCheckedRun) {
    // Buy 1 at 102 (bar 1), sell at 101 (bar 3); buy at 104 (bar 4), closed out at the
    // end at 107. Each side costs 2.
    const std::vector<BarRecord> bars = {Bar(0, 100, 101, 99, 100), Bar(1, 100, 103, 100, 102),
                                         Bar(2, 102, 104, 101, 103), Bar(3, 103, 103, 100, 101),
                                         Bar(4, 101, 105, 101, 104), Bar(5, 104, 108, 103, 107)};
    CKelBaseData data = Strategy(bars);
    CStrategyResult result{};
    data.Result = &result;
    CSystemFuncs funcs(&data);
    ffrunner::RunStrategyBars(data, funcs, [&] { Body(funcs); });
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(data.TradeList[0].nEntryBar, 1);
    EXPECT_EQ(data.TradeList[0].dEntryPrice, 102);
    EXPECT_EQ(data.TradeList[0].nExitBar, 3);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 101);
    EXPECT_EQ(data.TradeList[1].nEntryBar, 4);
    EXPECT_EQ(data.TradeList[1].dEntryPrice, 104);
    EXPECT_EQ(data.TradeList[1].nExitBar, 5);
    EXPECT_EQ(data.TradeList[1].dExitPrice, 107);
    EXPECT_TRUE(data.OpenEntries.empty());
    // −10 − 4 and +30 − 4.
    EXPECT_EQ(result.Figures.Capital, 100000 - 14 + 26);
    const ffrunner::Report report = RebarReport(data);
    EXPECT_EQ(report.figures.netProfit, 12);
    EXPECT_EQ(report.figures.finalEquity, result.Figures.Capital);
}

TEST_F(EngineLoop, TheLiveLastBarEndsWhereASingleEvaluationStands) {
    std::vector<BarRecord> bars;
    double price = 100;
    for (int i = 0; i < 60; ++i) {
        const double open = price;
        price += (i * 7 % 5) - 2;
        bars.push_back(Bar(i, open, std::max(open, price) + 1, std::min(open, price) - 1, price));
    }
    auto run = [&](int32_t updates, CStrategyResult& result) {
        CKelBaseData data = Strategy(bars);
        data.Result = &result;
        CSystemFuncs funcs(&data);
        ffrunner::LoopOptions options;
        options.liveUpdates = updates;
        ffrunner::RunStrategyBars(data, funcs, [&] { Body(funcs); }, options);
        return data;
    };
    CStrategyResult once{}, live{};
    const CKelBaseData a = run(0, once);
    const CKelBaseData b = run(6, live);
    ASSERT_EQ(a.TradeList.size(), b.TradeList.size());
    ASSERT_GT(a.TradeList.size(), 3u);
    for (size_t i = 0; i < a.TradeList.size(); ++i) {
        EXPECT_EQ(a.TradeList[i].nEntryBar, b.TradeList[i].nEntryBar);
        EXPECT_EQ(a.TradeList[i].nExitBar, b.TradeList[i].nExitBar);
        EXPECT_EQ(a.TradeList[i].dExitPrice, b.TradeList[i].dExitPrice);
    }
    EXPECT_EQ(a.SignalHistory.size(), b.SignalHistory.size());
    EXPECT_EQ(once.Figures.Capital, live.Figures.Capital);
    EXPECT_EQ(once.Performance.All.nTrades, live.Performance.All.nTrades);
    EXPECT_EQ(once.Performance.All.dNetProfit, live.Performance.All.dNetProfit);
    EXPECT_EQ(once.PositionSeries.size(), live.PositionSeries.size());
    EXPECT_EQ(once.BarEquityList.size(), live.BarEquityList.size());
    EXPECT_EQ(RebarJson(a), RebarJson(b));
}

}  // namespace
