// The performance record of the run, brought up to date once per round trip as the
// engine closes it: all trades and each side, runs, bars held, the longest pause
// between trades, and the figures of each calendar year, month and month of the year.
#include "FormulaFunction/FormulaFunction.h"

#include <charconv>
#include <cmath>
#include <utility>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/bars/MainBars.h"
#include "FormulaFunction/statistics/WrappingCounts.h"
#include "FormulaFunction/trading/TradingRules.h"

using ffstatistics::AddWrapping;
using fftrading::kTolerance;

namespace {

constexpr int64_t kSecondsPerDay = 86400;

// The year and month marks of the period keys in the GBK code page.
constexpr char kYearMark[] = "\xC4\xEA";
constexpr char kMonthMark[] = "\xD4\xC2";

// Room for two 32-bit numbers and both marks.
constexpr size_t kKeyRoom = 32;

// Writes `number` in decimal followed by `mark`; returns the end of what it wrote.
char* AppendNumber(char* out, char* end, int32_t number, const char* mark) {
    out = std::to_chars(out, end, number).ptr;
    while (*mark != '\0' && out != end) *out++ = *mark++;
    return out;
}

// One more trade on a side, or on all trades: count, net, commission and the largest
// and smallest single net, which start from the zeroed record.
void AddTrade(SideFigures& side, double net, double commission) {
    AddWrapping(side.nTrades, 1);
    side.dNetProfit += net;
    side.dCommission += commission;
    if (net > side.dLargestNet) side.dLargestNet = net;
    if (net < side.dSmallestNet) side.dSmallestNet = net;
}

void AddWinner(SideFigures& side, double net, int32_t barsHeld) {
    side.dGrossProfit += net;
    AddWrapping(side.nWinners, 1);
    AddWrapping(side.nWinRun, 1);
    if (side.nWinRun > side.nLongestWinRun) side.nLongestWinRun = side.nWinRun;
    side.nLossRun = 0;
    AddWrapping(side.nBarsWinners, barsHeld);
    AddWrapping(side.nBarsAll, barsHeld);
}

void AddLoser(SideFigures& side, double net, int32_t barsHeld) {
    side.dGrossLoss += net;
    AddWrapping(side.nLosers, 1);
    AddWrapping(side.nLossRun, 1);
    if (side.nLossRun > side.nLongestLossRun) side.nLongestLossRun = side.nLossRun;
    side.nWinRun = 0;
    AddWrapping(side.nBarsLosers, barsHeld);
    AddWrapping(side.nBarsAll, barsHeld);
}

// An even trade breaks no run and adds nothing to the bars of all trades.
void AddEven(SideFigures& side, int32_t barsHeld) {
    AddWrapping(side.nEvenTrades, 1);
    AddWrapping(side.nBarsEven, barsHeld);
}

// The winners' gross profit against what the other trades netted, as a magnitude;
// 1.0 when the others netted nothing to within the tolerance.
double ProfitFactor(double net, double winnersGross) {
    const double others = net - winnersGross;
    if (others > kTolerance || others < -kTolerance) return std::fabs(winnersGross / others);
    return 1.0;
}

// Adds a trade to the period list under the key [key, keyEnd). Only the last record
// is compared, so a trade closing in an earlier period than the one before it opens
// a new record under a key the list already holds.
void AddToPeriod(std::vector<PeriodRecord>& periods, const char* key, const char* keyEnd,
                 double net, double capital) {
    const size_t keyLength = static_cast<size_t>(keyEnd - key);
    const bool winner = net > kTolerance;
    if (periods.empty() || periods.back().strKey.compare(0, std::string::npos, key, keyLength) != 0) {
        PeriodRecord record;
        record.strKey.assign(key, keyLength);
        record.dNetProfit = net;
        record.nTrades = 1;
        record.nWinners = winner ? 1 : 0;
        record.dWinnersGrossProfit = winner ? net : 0.0;
        record.dReturnRatio = net / capital;
        record.dProfitFactor = ProfitFactor(net, record.dWinnersGrossProfit);
        record.dPercentProfitable = record.nWinners;
        periods.push_back(std::move(record));
        return;
    }
    PeriodRecord& record = periods.back();
    record.dNetProfit += net;
    AddWrapping(record.nTrades, 1);
    if (winner) {
        AddWrapping(record.nWinners, 1);
        record.dWinnersGrossProfit += net;
    }
    record.dReturnRatio = record.dNetProfit / capital;
    record.dProfitFactor = ProfitFactor(record.dNetProfit, record.dWinnersGrossProfit);
    record.dPercentProfitable = static_cast<double>(record.nWinners) / record.nTrades;
}

}  // namespace

// Called by the engine for each round trip it closes while the strategy keeps its
// figures per round trip. Bars held count the entry bar too here, one more than the
// statistics functions count. The pause before a trade runs from the previous exit
// to this entry in elapsed whole seconds, and is not measured for the first trade
// of a run (no exit is stored yet) nor when a bar is missing. A round trip whose
// exit bar is missing or has no local date adds nothing to the period figures.
void CSystemFuncs::CalcTradePerformance(bool isLong, double& gross, double& commission,
                                        const tagTradeList& trade) {
    if (!InStrategy()) return;
    TradePerformance& performance = m_pBaseData->Result->Performance;
    const double net = gross - commission;
    AddTrade(performance.All, net, commission);
    const int32_t barsHeld = fftrading::WrappingSub(trade.nExitBar, trade.nEntryBar);
    const int32_t barsHeldHere = ffbuiltins::WrapToInt32(static_cast<uint32_t>(barsHeld) + 1u);

    const BarRecord* entryBar = ffbars::MainStreamBar(m_pBaseData, trade.nEntryBar);
    const BarRecord* exitBar = ffbars::MainStreamBar(m_pBaseData, trade.nExitBar);
    if (performance.PrevExitTime != 0 && entryBar != nullptr) {
        const int64_t seconds = entryBar->time / 1000 - performance.PrevExitTime / 1000;
        const int64_t days = seconds / kSecondsPerDay;
        if (days > performance.nLongestGapDays)
            performance.nLongestGapDays = days > INT32_MAX ? INT32_MAX : static_cast<int32_t>(days);
    }
    performance.PrevExitTime = exitBar != nullptr ? exitBar->time : 0;

    ffplatform::LocalTime exit;
    if (exitBar != nullptr && Derived().LocalDays.ToLocal(exitBar->time / 1000, exit) &&
        exit.month >= 1 && exit.month <= 12) {
        const double capital = m_pBaseData->InitialCapital == 0.0 ? 1.0 : m_pBaseData->InitialCapital;
        char key[kKeyRoom];
        char* const keyRoomEnd = key + kKeyRoom;
        char* const yearEnd = AppendNumber(key, keyRoomEnd, exit.year, kYearMark);
        AddToPeriod(performance.Years, key, yearEnd, net, capital);
        char* const monthEnd = AppendNumber(yearEnd, keyRoomEnd, exit.month, kMonthMark);
        AddToPeriod(performance.Months, key, monthEnd, net, capital);

        MonthFigures& month = performance.ByMonth[exit.month - 1];
        month.dNetProfit += net;
        AddWrapping(month.nTrades, 1);
        if (net > kTolerance) {
            month.dGrossProfit += net;
            AddWrapping(month.nWinners, 1);
        }
    }

    SideFigures& side = isLong ? performance.Long : performance.Short;
    AddTrade(side, net, commission);
    if (net > kTolerance) {
        AddWinner(performance.All, net, barsHeldHere);
        AddWinner(side, net, barsHeldHere);
    } else if (net >= -kTolerance) {
        AddEven(performance.All, barsHeldHere);
        AddEven(side, barsHeldHere);
    } else {
        AddLoser(performance.All, net, barsHeldHere);
        AddLoser(side, net, barsHeldHere);
    }
}
