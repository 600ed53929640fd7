// The report of a finished strategy run: figures over its round trips, the equity
// curve bar by bar, yearly and monthly tables and the trade list. Everything is
// worked out from the host's records (bars, round trips, open entries, settings)
// and the instrument's specification, so a report can be built for any result
// block, including hand-made ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/KelBaseData.h"
#include "host/SubscibeManage.h"

namespace ffrunner {

// One line drawn over the price chart: a plot of an indicator formula linked to the
// strategy. `values` has one element per bar; NaN where nothing was plotted.
struct PlotLine {
    std::string name;
    std::vector<double> values;
    int32_t colour = -1;  // 0x00BBGGRR, -1 for the report's own choice
};

struct ReportInput {
    const CKelBaseData* data = nullptr;            // settings, TradeList, OpenEntries
    const std::vector<BarRecord>* bars = nullptr;  // the bars of the main stream
    IModuleFutureTrader::ISpecDetailValue spec;    // the instrument
    std::string strategyName;
    std::string instrument;                        // code shown in the report
    std::vector<PlotLine> plots;
};

// One closed round trip with its money.
struct TradeRow {
    tagTradeList trade;
    bool isLong = true;
    double gross = 0;       // profit of the price move × lots
    double commission = 0;  // entry and exit sides
    double net = 0;         // gross − commission
    int32_t barsHeld = 0;   // exit bar − entry bar
    int64_t entryTime = 0;  // UTC ms of the entry and exit bars (0 when out of range)
    int64_t exitTime = 0;
};

// One calendar year ("2024") or month ("2024-03").
struct PeriodRow {
    std::string key;
    int32_t year = 0;
    int32_t month = 0;  // 0 for a year
    int32_t trades = 0, winners = 0, losers = 0;
    double netProfit = 0, grossProfit = 0, grossLoss = 0;  // of the trades closed in it
    double startEquity = 0, endEquity = 0;                 // at the bars around it
    double returnPercent = 0;  // (end − start) ÷ start × 100
};

struct ReportFigures {
    double initialCapital = 0;
    double finalEquity = 0;
    double netProfit = 0, grossProfit = 0, grossLoss = 0;
    double profitFactor = 0;  // gross profit ÷ |gross loss|; infinite without a loss
    int32_t trades = 0, winners = 0, losers = 0, evenTrades = 0;
    double percentProfitable = 0;  // winners ÷ trades × 100
    double averageTrade = 0, averageWin = 0, averageLoss = 0;
    double largestWin = 0, largestLoss = 0;
    int32_t maxConsecutiveWinners = 0, maxConsecutiveLosers = 0;
    double averageBarsWinners = 0, averageBarsLosers = 0;
    double maxDrawdown = 0, maxDrawdownPercent = 0;
    int64_t maxDrawdownTime = 0;
    double maxIntradayDrawdown = 0;
    double commission = 0;
    double returnOnCapital = 0;   // percent
    double annualisedReturn = 0;  // percent a year, compounded
    double sharpeRatio = 0;       // of daily equity returns, × √252
    double largestPosition = 0;   // contracts
    int32_t bars = 0, barsInMarket = 0;
    int64_t firstTime = 0, lastTime = 0;
    double openPositionContracts = 0;  // signed contracts still open at the end
};

struct Report {
    std::string strategyName;
    std::string instrument;
    ReportFigures figures;
    std::vector<TradeRow> trades;
    std::vector<double> equity;    // per bar, at the close
    std::vector<double> drawdown;  // per bar, equity − running peak (≤ 0)
    std::vector<double> position;  // per bar, signed contracts at the close
    std::vector<PeriodRow> years, months;
    std::vector<PlotLine> plots;
    std::vector<BarRecord> bars;   // a copy for the charts
};

// Builds the report in the process's time zone (dates of periods and same-day
// commission). A missing data object or bars give an empty report.
Report BuildReport(const ReportInput& input);

// The plot lines of a formula of kind 4, 5 or 6 (any other kind has none), one
// value per bar of `barCount`.
std::vector<PlotLine> PlotLinesOf(const CKelBaseData& formula, size_t barCount);

}  // namespace ffrunner
