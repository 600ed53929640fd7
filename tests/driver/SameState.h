// Comparison of two host data objects field by field, for runs that must end in the
// same state.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "trading/TradingFixture.h"

// Two lists of per-bar records of the same length, record by record; `expectSame`
// compares the fields of one pair.
template <typename Record, typename Compare>
void ExpectSameRecords(const std::vector<Record>& a, const std::vector<Record>& b,
                       Compare expectSame) {
    ASSERT_EQ(a.size(), b.size());
    for (size_t i = 0; i < a.size(); ++i) {
        SCOPED_TRACE("record " + std::to_string(i));
        expectSame(a[i], b[i]);
    }
}

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
    ExpectSameRecords(x.PositionSnapshots, y.PositionSnapshots,
                      [](const PositionSnapshot& p, const PositionSnapshot& q) {
                          EXPECT_EQ(p.dAvgEntryPrice, q.dAvgEntryPrice);
                          EXPECT_EQ(p.dCurrentContracts, q.dCurrentContracts);
                          EXPECT_EQ(p.nMarketPosition, q.nMarketPosition);
                          EXPECT_EQ(p.dCloseEquity, q.dCloseEquity);
                          EXPECT_EQ(p.dOpenEquity, q.dOpenEquity);
                      });
    ExpectSameRecords(x.EquityHistory, y.EquityHistory,
                      [](const EquityRecord& p, const EquityRecord& q) {
                          EXPECT_EQ(p.nBar, q.nBar);
                          EXPECT_EQ(p.nTime, q.nTime);
                          EXPECT_EQ(p.dMargin, q.dMargin);
                          EXPECT_EQ(p.dFreeCapital, q.dFreeCapital);
                          EXPECT_EQ(p.dEquity, q.dEquity);
                          EXPECT_EQ(p.dCommission, q.dCommission);
                          EXPECT_EQ(p.dCapital, q.dCapital);
                      });
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
    ExpectSameRecords(x.PositionSeries, y.PositionSeries,
                      [](const BarPosition& p, const BarPosition& q) {
                          EXPECT_EQ(p.dContracts, q.dContracts);
                          EXPECT_EQ(p.dAvgEntryPrice, q.dAvgEntryPrice);
                          EXPECT_EQ(p.nMarketPosition, q.nMarketPosition);
                          EXPECT_EQ(p.dNetProfit, q.dNetProfit);
                          EXPECT_EQ(p.dEquity, q.dEquity);
                      });
    ExpectSameRecords(x.BarEquityList, y.BarEquityList,
                      [](const BarEquity& p, const BarEquity& q) {
                          EXPECT_EQ(p.nBar, q.nBar);
                          EXPECT_EQ(p.nDate, q.nDate);
                          EXPECT_EQ(p.nTime, q.nTime);
                          EXPECT_EQ(p.dMargin, q.dMargin);
                          EXPECT_EQ(p.dAvailable, q.dAvailable);
                          EXPECT_EQ(p.dEquity, q.dEquity);
                          EXPECT_EQ(p.dCommission, q.dCommission);
                          EXPECT_EQ(p.dCapital, q.dCapital);
                      });
    EXPECT_EQ(x.dLowestBarEquity, y.dLowestBarEquity);
    EXPECT_EQ(x.dHighestBarEquity, y.dHighestBarEquity);
    EXPECT_EQ(x.nHighestEquityDate, y.nHighestEquityDate);
    EXPECT_EQ(x.nHighestEquityTime, y.nHighestEquityTime);
    EXPECT_EQ(x.nBarsWithPosition, y.nBarsWithPosition);
    EXPECT_EQ(x.dLargestMargin, y.dLargestMargin);
    EXPECT_EQ(x.dLargestLongMargin, y.dLargestLongMargin);
    EXPECT_EQ(x.dLargestShortMargin, y.dLargestShortMargin);
}
