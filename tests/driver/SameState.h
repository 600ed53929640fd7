// Comparison of two host data objects field by field, for runs that must end in the
// same state.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "trading/TradingFixture.h"

// Every field of the host data object and the result block that the driver, the
// engine and the statistics step write.
inline void ExpectSameState(const CKelBaseData& a, const CKelBaseData& b) {
    auto signals = [](const std::vector<tagTradeSignal>& v) {
        std::string s;
        for (const tagTradeSignal& x : v) s += Text(x) + "\n";
        return s;
    };
    auto trips = [](const std::vector<tagTradeList>& v) {
        std::string s;
        for (const tagTradeList& x : v) s += Text(x) + "\n";
        return s;
    };
    EXPECT_EQ(a.CurrentBar, b.CurrentBar);
    EXPECT_EQ(a.DataIndex, b.DataIndex);
    EXPECT_EQ(a.OrderSource, b.OrderSource);
    EXPECT_EQ(signals(a.SignalHistory), signals(b.SignalHistory));
    EXPECT_EQ(trips(a.TradeList), trips(b.TradeList));
    EXPECT_EQ(signals(a.OpenEntries), signals(b.OpenEntries));
    EXPECT_EQ(signals(a.DelayedSignals), signals(b.DelayedSignals));
    EXPECT_EQ(a.BarTexts, b.BarTexts);
    const CStrategyResult& x = *a.Result;
    const CStrategyResult& y = *b.Result;
    auto figures = [](const PositionFigures& f) {
        char buf[256];
        std::snprintf(buf, sizeof buf, "%.17g %.17g %.17g %d %.17g %.17g %.17g", f.Capital,
                      f.PositionContracts, f.MaxContractsHeld, f.MaxOpenEntriesHeld,
                      f.MaxPositionProfitMark, f.MaxPositionLossMark, f.ClosedPositionsDrawDown);
        return std::string(buf);
    };
    EXPECT_EQ(figures(x.Figures), figures(y.Figures));
    EXPECT_EQ(figures(x.SavedFigures), figures(y.SavedFigures));
    EXPECT_EQ(x.DayStartTime, y.DayStartTime);
    EXPECT_EQ(x.NewDay, y.NewDay);
    EXPECT_EQ(signals(x.SavedOpenEntries), signals(y.SavedOpenEntries));
    EXPECT_EQ(signals(x.SavedDelayedSignals), signals(y.SavedDelayedSignals));
    ASSERT_EQ(x.PositionSnapshots.size(), y.PositionSnapshots.size());
    for (size_t i = 0; i < x.PositionSnapshots.size(); ++i) {
        const PositionSnapshot& p = x.PositionSnapshots[i];
        const PositionSnapshot& q = y.PositionSnapshots[i];
        EXPECT_EQ(p.dAvgEntryPrice, q.dAvgEntryPrice);
        EXPECT_EQ(p.dCurrentContracts, q.dCurrentContracts);
        EXPECT_EQ(p.nMarketPosition, q.nMarketPosition);
        EXPECT_EQ(p.dCloseEquity, q.dCloseEquity);
        EXPECT_EQ(p.dOpenEquity, q.dOpenEquity);
    }
    ASSERT_EQ(x.EquityHistory.size(), y.EquityHistory.size());
    for (size_t i = 0; i < x.EquityHistory.size(); ++i) {
        const EquityRecord& p = x.EquityHistory[i];
        const EquityRecord& q = y.EquityHistory[i];
        EXPECT_EQ(p.nBar, q.nBar);
        EXPECT_EQ(p.nTime, q.nTime);
        EXPECT_EQ(p.dMargin, q.dMargin);
        EXPECT_EQ(p.dFreeCapital, q.dFreeCapital);
        EXPECT_EQ(p.dEquity, q.dEquity);
        EXPECT_EQ(p.dCommission, q.dCommission);
        EXPECT_EQ(p.dCapital, q.dCapital);
    }
    EXPECT_EQ(x.TroughEquity, y.TroughEquity);
    EXPECT_EQ(x.PeakAfterTrough, y.PeakAfterTrough);
    EXPECT_EQ(x.PeakAfterTroughTime, y.PeakAfterTroughTime);
    EXPECT_EQ(x.DrawDownPeak, y.DrawDownPeak);
    EXPECT_EQ(x.DrawDownTrough, y.DrawDownTrough);
    EXPECT_EQ(x.MaxDrawDown, y.MaxDrawDown);
    EXPECT_EQ(x.MaxDrawDownTime, y.MaxDrawDownTime);
    EXPECT_EQ(x.HighestEquity, y.HighestEquity);
    EXPECT_EQ(x.LowestEquity, y.LowestEquity);
    EXPECT_EQ(x.BarsInMarket, y.BarsInMarket);
    EXPECT_EQ(x.LargestPositionHeld, y.LargestPositionHeld);
    EXPECT_EQ(x.LargestLongPosition, y.LargestLongPosition);
    EXPECT_EQ(x.LargestShortPosition, y.LargestShortPosition);
    EXPECT_EQ(x.ExitOnClose, y.ExitOnClose);
    const SummaryFigures& s = x.Summary;
    const SummaryFigures& t = y.Summary;
    EXPECT_EQ(s.dGrossProfit, t.dGrossProfit);
    EXPECT_EQ(s.dGrossLoss, t.dGrossLoss);
    EXPECT_EQ(s.nWinners, t.nWinners);
    EXPECT_EQ(s.nEvenTrades, t.nEvenTrades);
    EXPECT_EQ(s.nLosers, t.nLosers);
    EXPECT_EQ(s.nBarsWinners, t.nBarsWinners);
    EXPECT_EQ(s.nBarsEven, t.nBarsEven);
    EXPECT_EQ(s.nBarsLosers, t.nBarsLosers);
    EXPECT_EQ(s.dLargestWinner, t.dLargestWinner);
    EXPECT_EQ(s.dLargestLoser, t.dLargestLoser);
    EXPECT_EQ(s.nMaxConsecWinners, t.nMaxConsecWinners);
    EXPECT_EQ(s.nMaxConsecLosers, t.nMaxConsecLosers);
    EXPECT_EQ(s.dLargestPosition, t.dLargestPosition);
    EXPECT_EQ(s.dMaxIDDrawDown, t.dMaxIDDrawDown);
    EXPECT_EQ(s.dStdDev, t.dStdDev);
    ASSERT_EQ(x.PositionSeries.size(), y.PositionSeries.size());
    for (size_t i = 0; i < x.PositionSeries.size(); ++i) {
        EXPECT_EQ(x.PositionSeries[i].dContracts, y.PositionSeries[i].dContracts);
        EXPECT_EQ(x.PositionSeries[i].dAvgEntryPrice, y.PositionSeries[i].dAvgEntryPrice);
        EXPECT_EQ(x.PositionSeries[i].nMarketPosition, y.PositionSeries[i].nMarketPosition);
        EXPECT_EQ(x.PositionSeries[i].dNetProfit, y.PositionSeries[i].dNetProfit);
        EXPECT_EQ(x.PositionSeries[i].dEquity, y.PositionSeries[i].dEquity);
    }
    ASSERT_EQ(x.BarEquityList.size(), y.BarEquityList.size());
    for (size_t i = 0; i < x.BarEquityList.size(); ++i) {
        const BarEquity& p = x.BarEquityList[i];
        const BarEquity& q = y.BarEquityList[i];
        EXPECT_EQ(p.nBar, q.nBar);
        EXPECT_EQ(p.nDate, q.nDate);
        EXPECT_EQ(p.nTime, q.nTime);
        EXPECT_EQ(p.dMargin, q.dMargin);
        EXPECT_EQ(p.dAvailable, q.dAvailable);
        EXPECT_EQ(p.dEquity, q.dEquity);
        EXPECT_EQ(p.dCommission, q.dCommission);
        EXPECT_EQ(p.dCapital, q.dCapital);
    }
    EXPECT_EQ(x.dLowestBarEquity, y.dLowestBarEquity);
    EXPECT_EQ(x.dHighestBarEquity, y.dHighestBarEquity);
    EXPECT_EQ(x.nHighestEquityDate, y.nHighestEquityDate);
    EXPECT_EQ(x.nHighestEquityTime, y.nHighestEquityTime);
    EXPECT_EQ(x.nBarsWithPosition, y.nBarsWithPosition);
    EXPECT_EQ(x.dLargestMargin, y.dLargestMargin);
    EXPECT_EQ(x.dLargestLongMargin, y.dLargestLongMargin);
    EXPECT_EQ(x.dLargestShortMargin, y.dLargestShortMargin);
}
