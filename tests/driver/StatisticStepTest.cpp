// The statistics step: excursions, the margin call, the close-out at the end of a
// run, the position series, and the figures of statistics modes 1 and 2.
#include <cmath>
#include <random>

#include "driver/DriverFixture.h"

namespace {

TEST_F(DriverTest, StatisticsFollowTheCurrentBarsExcursion) {
    Evaluate(0, nullptr);
    AddEntry(1, 0, 1, 101);
    data.CurrentBar = 2;  // 100..104, close 103
    funcs.CalStatistic();
    EXPECT_EQ(30.0, result.Figures.MaxPositionProfitMark);
    EXPECT_EQ(-10.0, result.Figures.MaxPositionLossMark);
    data.CurrentBar = 1;  // 99..103: neither mark moves
    funcs.CalStatistic();
    EXPECT_EQ(30.0, result.Figures.MaxPositionProfitMark);
    EXPECT_EQ(-20.0, result.Figures.MaxPositionLossMark);
}

TEST_F(DriverTest, StatisticsMarginCallIsBookedOnThePreviousBar) {
    Evaluate(0, nullptr);
    result.Figures.Capital = 200;
    AddEntry(1, 0, 1, 102);
    Bar(2).low = 88;
    data.CurrentBar = 2;
    funcs.CalStatistic();
    // 200 - 140 - margin 88 is below zero: the capital carries 112 above the margin.
    const double price = Access::GetMarginCallPrice(funcs, 112, 102, 1);
    EXPECT_TRUE(data.OpenEntries.empty());
    ASSERT_EQ(1u, data.TradeList.size());
    // Bar 1 ranges 99..103, so the exit price is held to its low.
    EXPECT_EQ(TripText(1, 2, 0, 1, 0, 0, 0, 1, 102, 99), Text(data.TradeList[0]));
    EXPECT_EQ(2, data.CurrentBar);
    EXPECT_EQ(-140.0, result.Figures.ClosedPositionsDrawDown);
    EXPECT_EQ(ProfitLoss(true, 102, price), result.Figures.MaxPositionLossMark);
}

TEST_F(DriverTest, StatisticsMarginCallNeedsMoreThanTheTolerance) {
    Evaluate(0, nullptr);
    result.Figures.Capital = 228;  // 228 - 140 - 88 = 0
    AddEntry(1, 0, 1, 102);
    Bar(2).low = 88;
    data.CurrentBar = 2;
    funcs.CalStatistic();
    EXPECT_EQ(1u, data.OpenEntries.size());
    EXPECT_EQ(-140.0, result.Figures.MaxPositionLossMark);
}

TEST_F(DriverTest, ShortMarginCallValuesTheMarginAtTheHigh) {
    Evaluate(0, nullptr);
    result.Figures.Capital = 250;
    AddEntry(3, 0, 1, 100);
    Bar(2).high = 112;  // worst -120, margin 112: 250 - 232 is still above
    data.CurrentBar = 2;
    funcs.CalStatistic();
    EXPECT_EQ(1u, data.OpenEntries.size());
    Bar(3).high = 114;  // worst -140, margin 114
    data.CurrentBar = 3;
    funcs.CalStatistic();
    EXPECT_TRUE(data.OpenEntries.empty());
    ASSERT_EQ(1u, data.TradeList.size());
    EXPECT_EQ(2, data.TradeList[0].nExitBar);
    // 250 - 114 = 136 gives 113.6, held to bar 2's high of 112.
    EXPECT_EQ(112.0, data.TradeList[0].dExitPrice);
}

TEST_F(DriverTest, LastBarOfRunClosesOutInModesOneAndTwo) {
    for (int32_t mode : {0, 1, 2, 3}) {
        data.PerformanceMode = mode;
        Run(0, 9, [&](int32_t bar) {
            if (bar == 6) funcs.Buy(1, 0, false);
        });
        const bool closes = mode == 1 || mode == 2;
        EXPECT_EQ(closes ? 0u : 1u, data.OpenEntries.size()) << mode;
        EXPECT_EQ(closes ? 1u : 0u, data.TradeList.size()) << mode;
        if (closes) {
            EXPECT_EQ(TripText(1, 2, 6, 9, 0, 0, 0, 1, 107, 110), Text(data.TradeList[0]));
        }
        ASSERT_EQ(10u, result.PositionSeries.size());
        EXPECT_EQ(closes ? 0.0 : 1.0, result.PositionSeries[9].dContracts);
        EXPECT_EQ(closes ? 30.0 : 0.0, result.PositionSeries[9].dNetProfit);
        EXPECT_EQ(30.0, result.PositionSeries[9].dEquity);
        result = CStrategyResult{};
    }
}

TEST_F(DriverTest, PositionSeriesIsAppendedThenOverwritten) {
    Evaluate(0, nullptr);
    AddEntry(3, 0, 2, 104);
    data.TradeList.push_back(Trip(1, 0, 0, 1, 100, 105));
    data.CurrentBar = 1;
    funcs.CalStatistic();
    ASSERT_EQ(2u, result.PositionSeries.size());
    const BarPosition& p = result.PositionSeries[1];
    EXPECT_EQ(-2.0, p.dContracts);
    EXPECT_EQ(104.0, p.dAvgEntryPrice);
    EXPECT_EQ(-1, p.nMarketPosition);
    EXPECT_EQ(50.0, p.dNetProfit);
    EXPECT_EQ(50.0 + 2 * 10 * (104 - 102), p.dEquity);
    data.OpenEntries.clear();
    data.CurrentBar = 0;
    funcs.CalStatistic();
    ASSERT_EQ(2u, result.PositionSeries.size());
    EXPECT_EQ(0.0, result.PositionSeries[0].dContracts);
    EXPECT_EQ(50.0, result.PositionSeries[0].dEquity);
}

// Nets +30, -10, +20 and an even trade.
TEST_F(DriverTest, ModeOneSummaryOfAllTrades) {
    data.PerformanceMode = 1;
    Evaluate(0, nullptr);
    data.TradeList = {Trip(1, 0, 2, 1, 100, 103), Trip(3, 3, 3, 1, 104, 105),
                      Trip(1, 4, 7, 2, 100, 101), Trip(1, 8, 8, 1, 100, 100)};
    result.Figures.MaxContractsHeld = -3;
    result.Figures.ClosedPositionsDrawDown = -7;
    data.CurrentBar = 8;
    funcs.CalStatistic();
    const SummaryFigures& s = result.Summary;
    EXPECT_EQ(50.0, s.dGrossProfit);
    EXPECT_EQ(-10.0, s.dGrossLoss);
    EXPECT_EQ(2, s.nWinners);
    EXPECT_EQ(1, s.nLosers);
    EXPECT_EQ(1, s.nEvenTrades);
    EXPECT_EQ(3 + 4, s.nBarsWinners);
    EXPECT_EQ(1, s.nBarsLosers);
    EXPECT_EQ(1, s.nBarsEven);
    EXPECT_EQ(30.0, s.dLargestWinner);
    EXPECT_EQ(-10.0, s.dLargestLoser);
    EXPECT_EQ(1, s.nMaxConsecWinners);
    EXPECT_EQ(1, s.nMaxConsecLosers);
    EXPECT_EQ(-3.0, s.dLargestPosition);
    EXPECT_EQ(-7.0, s.dMaxIDDrawDown);
    EXPECT_EQ(std::sqrt((1400.0 - 40.0 * 40.0 / 4) / 3), s.dStdDev);
}

TEST_F(DriverTest, ModeOneStandardDeviationNeedsTwoTrades) {
    data.PerformanceMode = 1;
    Evaluate(0, nullptr);
    data.TradeList = {Trip(1, 0, 2, 1, 100, 103)};
    data.CurrentBar = 2;
    funcs.CalStatistic();
    EXPECT_EQ(0.0, result.Summary.dStdDev);
    EXPECT_EQ(30.0, result.Summary.dGrossProfit);
    data.TradeList.clear();
    funcs.CalStatistic();
    EXPECT_EQ(0.0, result.Summary.dGrossProfit);
    EXPECT_EQ(0, result.Summary.nWinners);
}

// The summary of a plain walk over every round trip, as the figures are defined.
SummaryFigures PlainSummary(CSystemFuncs& funcs, const CKelBaseData& data) {
    SummaryFigures s;
    double squares = 0.0;
    for (const tagTradeList& trade : data.TradeList) {
        double net = 0.0, commission = 0.0;
        const int32_t r = CSystemFuncsTestAccess::CalcTradeList(funcs, trade, net, commission);
        const int32_t bars = trade.nExitBar - trade.nEntryBar + 1;
        if (r > 0) {
            s.dGrossProfit += net;
            ++s.nWinners;
            s.nBarsWinners += bars;
            if (net > s.dLargestWinner) s.dLargestWinner = net;
        } else if (r < 0) {
            s.dGrossLoss += net;
            ++s.nLosers;
            s.nBarsLosers += bars;
            if (net < s.dLargestLoser) s.dLargestLoser = net;
        } else {
            ++s.nEvenTrades;
            s.nBarsEven += bars;
        }
        squares += net * net;
    }
    const double n = static_cast<double>(data.TradeList.size());
    if (data.TradeList.size() >= 2) {
        const double total = s.dGrossProfit + s.dGrossLoss;
        s.dStdDev = std::sqrt((squares - total * total / n) / (n - 1));
    }
    return s;
}

TEST_F(DriverTest, ModeOneRunningSummaryMatchesAPlainWalk) {
    data.PerformanceMode = 1;
    Evaluate(0, nullptr);
    data.CurrentBar = 5;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> price(95.0, 105.0);
    for (int step = 0; step < 1500; ++step) {
        const uint32_t what = random() % 20;
        if (what == 0 && !data.TradeList.empty()) {
            data.TradeList.resize(random() % data.TradeList.size());
        } else if (what == 1 && !data.TradeList.empty()) {
            data.TradeList.back().dExitPrice = price(random);  // replaced in place
        } else if (what == 2) {
            data.CommissionValue = (random() % 3) * 0.7;
        } else if (what == 3) {
            data.SingleSideCommission = !data.SingleSideCommission;
        } else if (what == 4) {
            data.FreeCloseToday = !data.FreeCloseToday;
        } else {
            const int32_t entry = static_cast<int32_t>(random() % 9);
            data.TradeList.push_back(Trip(random() % 2 ? 1 : 3, entry,
                                          entry + static_cast<int32_t>(random() % 2),
                                          1 + random() % 3, price(random), price(random)));
        }
        funcs.CalStatistic();
        const SummaryFigures want = PlainSummary(funcs, data);
        const SummaryFigures& got = result.Summary;
        ASSERT_EQ(want.dGrossProfit, got.dGrossProfit) << step;
        ASSERT_EQ(want.dGrossLoss, got.dGrossLoss) << step;
        ASSERT_EQ(want.nWinners, got.nWinners) << step;
        ASSERT_EQ(want.nLosers, got.nLosers) << step;
        ASSERT_EQ(want.nEvenTrades, got.nEvenTrades) << step;
        ASSERT_EQ(want.nBarsWinners, got.nBarsWinners) << step;
        ASSERT_EQ(want.nBarsLosers, got.nBarsLosers) << step;
        ASSERT_EQ(want.nBarsEven, got.nBarsEven) << step;
        ASSERT_EQ(want.dLargestWinner, got.dLargestWinner) << step;
        ASSERT_EQ(want.dLargestLoser, got.dLargestLoser) << step;
        if (std::isnan(want.dStdDev))
            ASSERT_TRUE(std::isnan(got.dStdDev)) << step;
        else
            ASSERT_EQ(want.dStdDev, got.dStdDev) << step;
    }
}

TEST_F(DriverTest, ModeTwoRecordsEveryBar) {
    data.PerformanceMode = 2;
    data.CommissionValue = 2;
    Run(0, 4, [&](int32_t bar) {
        if (bar == 1) funcs.Buy(2, 0, false);
        if (bar == 3) funcs.Sell(0, 0, false);
        if (bar == 4) {
            funcs.SellShort(1, 0, false);
        }
    });
    // The short of bar 4 is still open.
    ASSERT_EQ(5u, result.BarEquityList.size());
    const double c = 1000000;
    const BarEquity& flat = result.BarEquityList[0];
    EXPECT_EQ(0, flat.nBar);
    EXPECT_EQ(20100301, flat.nDate);
    EXPECT_EQ(103000, flat.nTime);
    EXPECT_EQ(0.0, flat.dMargin);
    EXPECT_EQ(c, flat.dAvailable);
    EXPECT_EQ(c, flat.dEquity);
    EXPECT_EQ(0.0, flat.dCommission);
    EXPECT_EQ(c, flat.dCapital);
    const BarEquity& held = result.BarEquityList[2];  // 2 bought at 102, close 103
    EXPECT_EQ(2, held.nBar);
    EXPECT_EQ(20100303, held.nDate);
    EXPECT_EQ(206.0, held.dMargin);
    EXPECT_EQ(c - 206 + 20, held.dAvailable);
    EXPECT_EQ(c + 20, held.dEquity);
    EXPECT_EQ(c, held.dCapital);
    const BarEquity& closed = result.BarEquityList[3];  // sold at 104
    EXPECT_EQ(0.0, closed.dMargin);
    EXPECT_EQ(4.0, closed.dCommission);  // exit side of 2 contracts
    EXPECT_EQ(c + 40 - 8, closed.dCapital);
    const BarEquity& last = result.BarEquityList[4];
    EXPECT_EQ(0.0, last.dCommission);  // no round trip closed on it
    EXPECT_EQ(105.0, last.dMargin);
    EXPECT_EQ(c + 32, last.dEquity);
    EXPECT_EQ(3, result.nBarsWithPosition);
    EXPECT_EQ(206.0, result.dLargestMargin);
    EXPECT_EQ(206.0, result.dLargestLongMargin);
    EXPECT_EQ(105.0, result.dLargestShortMargin);
    EXPECT_EQ(c + 32, result.dHighestBarEquity);
    EXPECT_EQ(20100304, result.nHighestEquityDate);
    EXPECT_EQ(103000, result.nHighestEquityTime);
    EXPECT_EQ(c, result.dLowestBarEquity);
}

TEST_F(DriverTest, ModeTwoShortMargin) {
    data.PerformanceMode = 2;
    Run(0, 3, [&](int32_t bar) {
        if (bar == 1) funcs.SellShort(1, 0, false);
    });
    EXPECT_EQ(104.0, result.dLargestShortMargin);  // the close of bar 3
    EXPECT_EQ(0.0, result.dLargestLongMargin);
    EXPECT_EQ(104.0, result.dLargestMargin);
}

TEST_F(DriverTest, StatisticsOutsideAStrategyDoNothing) {
    Evaluate(0, nullptr);
    AddEntry(1, 0, 1, 102);
    Bar(2).low = 10;
    data.CurrentBar = 2;
    data.PerformanceMode = 2;
    data.FormulaKind = 4;
    funcs.CalStatistic();
    EXPECT_EQ(1u, data.OpenEntries.size());
    EXPECT_EQ(0.0, result.Figures.MaxPositionLossMark);
    EXPECT_EQ(1u, result.PositionSeries.size());  // bar 0's only
    EXPECT_TRUE(result.BarEquityList.empty());
}

// Without statistics mode 1 or 2 there is no summary and no equity list, only the
// position series.
TEST_F(DriverTest, OtherModesKeepOnlyThePositionSeries) {
    for (int32_t mode : {0, 3}) {
        data.PerformanceMode = mode;
        Run(0, 4, [&](int32_t bar) {
            if (bar == 1) funcs.Buy(1, 0, false);
            if (bar == 3) funcs.Sell(0, 0, false);
        });
        EXPECT_EQ(0.0, result.Summary.dGrossProfit) << mode;
        EXPECT_EQ(0, result.Summary.nWinners) << mode;
        EXPECT_TRUE(result.BarEquityList.empty()) << mode;
        EXPECT_EQ(0, result.nBarsWithPosition) << mode;
        EXPECT_EQ(5u, result.PositionSeries.size()) << mode;
        EXPECT_EQ(20.0, result.PositionSeries[4].dNetProfit) << mode;
        result = CStrategyResult{};
    }
}

// A net within 0.0001 of zero is an even trade for the summary, though the counting
// classification calls it a winner.
TEST_F(DriverTest, ModeOneNetWithinTheToleranceIsEven) {
    data.PerformanceMode = 1;
    Evaluate(0, nullptr);
    data.TradeList = {Trip(1, 1, 3, 1, 100, 100.000005), Trip(3, 2, 2, 1, 100, 100.000005)};
    data.CurrentBar = 3;
    funcs.CalStatistic();
    const SummaryFigures& s = result.Summary;
    EXPECT_EQ(2, s.nEvenTrades);
    EXPECT_EQ(3 + 1, s.nBarsEven);
    EXPECT_EQ(0, s.nWinners);
    EXPECT_EQ(0, s.nLosers);
    EXPECT_EQ(0.0, s.dGrossProfit);
    EXPECT_EQ(0.0, s.dLargestWinner);
    EXPECT_EQ(1, funcs.NumWinTrades());
}

// The bar's commission: the exit side of a round trip closed on it unless the close is
// free, and its entry side too when it also opened on the bar and both sides are
// charged.
TEST_F(DriverTest, ModeTwoBarCommissionBySides) {
    struct Case {
        bool single, freeToday;
        double commission;
    };
    for (const Case& c : {Case{false, false, 4}, Case{true, false, 2}, Case{false, true, 2},
                          Case{true, true, 0}}) {
        data.PerformanceMode = 2;
        data.CommissionValue = 2;
        data.SingleSideCommission = c.single;
        data.FreeCloseToday = c.freeToday;
        Run(0, 3, [&](int32_t bar) {
            if (bar == 1) {
                funcs.Buy(1, 0, false);
                funcs.Sell(0, 0, false);
            }
            if (bar == 2) funcs.Buy(1, 0, false);
            if (bar == 3) funcs.Sell(0, 0, false);
        });
        SCOPED_TRACE(c.single);
        SCOPED_TRACE(c.freeToday);
        ASSERT_EQ(4u, result.BarEquityList.size());
        EXPECT_EQ(c.commission, result.BarEquityList[1].dCommission);
        EXPECT_EQ(0.0, result.BarEquityList[2].dCommission);  // entry only
        EXPECT_EQ(2.0, result.BarEquityList[3].dCommission);  // exit of an earlier day
        result = CStrategyResult{};
    }
}

// A bar evaluated again overwrites its record and is counted in the market once.
TEST_F(DriverTest, ModeTwoBarEvaluatedAgainOverwritesItsRecord) {
    data.PerformanceMode = 2;
    Run(0, 2, [&](int32_t bar) {
        if (bar == 1) funcs.Buy(1, 0, false);
    });
    Bar(2).close = 90;
    Bar(2).low = 89;
    funcs.CalStatistic();
    ASSERT_EQ(3u, result.BarEquityList.size());
    EXPECT_EQ(2, result.nBarsWithPosition);
    EXPECT_EQ(1000000.0 - 120, result.BarEquityList[2].dEquity);
    EXPECT_EQ(90.0, result.BarEquityList[2].dMargin);
}

// The lowest equity follows every record; the highest starts at the initial capital
// and keeps its date and time only when a record exceeds it.
TEST_F(DriverTest, ModeTwoEquityExtremes) {
    data.PerformanceMode = 2;
    Bar(2).close = 95;
    Bar(2).low = 94;
    Run(0, 3, [&](int32_t bar) {
        if (bar == 1) funcs.Buy(1, 0, false);
    });
    EXPECT_EQ(1000000.0 - 70, result.dLowestBarEquity);  // bar 2: 102 down to 95
    EXPECT_EQ(1000000.0 + 20, result.dHighestBarEquity);  // bar 3 closes at 104
    EXPECT_EQ(20100304, result.nHighestEquityDate);
    EXPECT_EQ(103000, result.nHighestEquityTime);
    EXPECT_EQ(1000000.0 + 20, result.BarEquityList[3].dEquity);
}

}  // namespace
