// The result block of a trading strategy: position figures, per-bar records and
// the statistics the host's report is built from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/KelTypes.h"

// The position figures that the live last bar saves and restores.
struct PositionFigures {
    double Capital = 0;
    double PositionContracts = 0;
    double MaxContractsHeld = 0;
    int32_t MaxOpenEntriesHeld = 0;
    double MaxPositionProfitMark = 0, MaxPositionLossMark = 0, ClosedPositionsDrawDown = 0;
};

// The position as it stood at the close of one bar; read by linked formulas.
struct PositionSnapshot {
    double dAvgEntryPrice = 0;
    double dCurrentContracts = 0;
    int32_t nMarketPosition = 0;
    double dCloseEquity = 0;
    double dOpenEquity = 0;
};

// One record of the equity history.
struct EquityRecord {
    int32_t nBar = 0;
    int64_t nTime = 0;
    double dMargin = 0, dFreeCapital = 0, dEquity = 0, dCommission = 0, dCapital = 0;
};

// Figures of one side (all trades, long trades or short trades).
struct SideFigures {
    int32_t nTrades = 0;
    double dNetProfit = 0, dCommission = 0, dLargestNet = 0, dSmallestNet = 0,
           dGrossProfit = 0, dGrossLoss = 0;
    int32_t nWinners = 0, nLosers = 0, nEvenTrades = 0, nWinRun = 0, nLossRun = 0,
            nLongestWinRun = 0, nLongestLossRun = 0, nBarsWinners = 0, nBarsLosers = 0,
            nBarsEven = 0, nBarsAll = 0;
};

// Figures of one calendar year or month, keyed by its text.
struct PeriodRecord {
    std::string strKey;
    double dNetProfit = 0, dReturnRatio = 0, dProfitFactor = 0;
    int32_t nTrades = 0;
    double dPercentProfitable = 0;
    int32_t nWinners = 0;
    double dWinnersGrossProfit = 0;
};

struct MonthFigures {
    double dNetProfit = 0;
    int32_t nTrades = 0;
    double dGrossProfit = 0;
    int32_t nWinners = 0;
};

// Per-round-trip figures accumulated as trades close (statistics mode 2).
struct TradePerformance {
    SideFigures All, Long, Short;
    int64_t PrevExitTime = 0;  // milliseconds; 0 = no exit yet
    int32_t nLongestGapDays = 0;
    std::vector<PeriodRecord> Years, Months;
    MonthFigures ByMonth[12] = {};  // index = month - 1
};

// Summary figures of statistics mode 1.
struct SummaryFigures {
    double dGrossProfit = 0, dGrossLoss = 0;
    int32_t nWinners = 0, nEvenTrades = 0, nLosers = 0, nBarsWinners = 0, nBarsEven = 0,
            nBarsLosers = 0;
    double dLargestWinner = 0, dLargestLoser = 0;
    int32_t nMaxConsecWinners = 0, nMaxConsecLosers = 0;
    double dLargestPosition = 0, dMaxIDDrawDown = 0, dStdDev = 0;
};

// The position and profit at the end of one bar, written by the statistics step.
struct BarPosition {
    double dContracts = 0, dAvgEntryPrice = 0;
    int32_t nMarketPosition = 0;
    double dNetProfit = 0, dEquity = 0;
};

// One bar of the equity series of statistics mode 2, written by the statistics step
// for every bar, flat or not, valued at the bar's close (a bar evaluated again
// overwrites its record). nDate is YYYYMMDD and nTime HHMMSS, local time. dMargin is
// the margin of the open position (0 when flat); dAvailable is the capital less that
// margin plus the open result; dEquity is dAvailable + dMargin; dCommission is the
// commission of the round trips closed on the bar; dCapital is Capital.
struct BarEquity {
    int32_t nBar = 0, nDate = 0, nTime = 0;
    double dMargin = 0, dAvailable = 0, dEquity = 0, dCommission = 0, dCapital = 0;
};

class CStrategyResult {
public:
    PositionFigures Figures, SavedFigures;

    int64_t DayStartTime = 0;
    bool NewDay = false;
    std::vector<tagTradeSignal> SavedOpenEntries;
    std::vector<tagTradeSignal> SavedDelayedSignals;
    std::vector<PositionSnapshot> PositionSnapshots;
    std::vector<EquityRecord> EquityHistory;
    double TroughEquity = 0, PeakAfterTrough = 0;
    int64_t PeakAfterTroughTime = 0;
    double DrawDownPeak = 0, DrawDownTrough = 0;
    double MaxDrawDown = 0;
    int64_t MaxDrawDownTime = 0;
    double HighestEquity = 0, LowestEquity = 0;
    int32_t BarsInMarket = 0;

    double LargestPositionHeld = 0, LargestLongPosition = 0, LargestShortPosition = 0;
    bool ExitOnClose = false;

    TradePerformance Performance;
    SummaryFigures Summary;
    std::vector<BarPosition> PositionSeries;

    // Statistics mode 2. dLowestBarEquity and dHighestBarEquity start at the initial
    // capital and follow the lowest and highest dEquity of BarEquityList;
    // nHighestEquityDate and nHighestEquityTime are the nDate and nTime of the record
    // that set the highest. nBarsWithPosition counts the bars whose close found a
    // position open. dLargestMargin is the largest margin in use at a bar's close;
    // dLargestLongMargin and dLargestShortMargin the same for long and short
    // positions. The drawdown figures of the equity are TroughEquity to MaxDrawDownTime
    // above, kept by the per-bar driver.
    std::vector<BarEquity> BarEquityList;
    double dLowestBarEquity = 0, dHighestBarEquity = 0;
    int32_t nHighestEquityDate = 0, nHighestEquityTime = 0, nBarsWithPosition = 0;
    double dLargestMargin = 0, dLargestLongMargin = 0, dLargestShortMargin = 0;
};
