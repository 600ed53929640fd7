// The statistics step the host runs after each bar of a trading strategy: the open
// position's excursions and margin call, the close-out at the end of a run, the
// per-bar position series, and the figures of the selected statistics mode.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/bars/MainBars.h"
#include "FormulaFunction/trading/TradingRules.h"
#include "FormulaFunction/trading/Valuation.h"

using namespace fftrading;

// The position and the instrument's terms are read once, and again after anything
// that closed the position.
void CSystemFuncs::CalStatistic() {
    if (!InStrategy()) return;
    CKelBaseData& data = *m_pBaseData;
    OpenPosition position = ReadOpenPosition();
    Valuation value(*this);
    bool closed = FollowBarExcursion(position, value);
    if ((data.PerformanceMode == 1 || data.PerformanceMode == 2) && data.LastBarOfRun) {
        ClosePosition(Close());
        closed = true;
    }
    if (closed) {
        position = ReadOpenPosition();
        value = Valuation(*this);
    }
    RecordBarPosition(position, value);
    if (data.PerformanceMode == 1)
        SummarizeTrades();
    else if (data.PerformanceMode == 2)
        RecordBarEquity(position, value);
}

// Follows the open position's best and worst result within the current bar. When the
// capital with the worst result no longer covers the margin valued at that same price,
// the position is closed, booked on the previous bar, at the price where it has lost
// what the capital holds above that margin. True when it was.
bool CSystemFuncs::FollowBarExcursion(const OpenPosition& position, Valuation& value) {
    PositionFigures& figures = m_pBaseData->Result->Figures;
    const double contracts = position.contracts;
    if (std::fabs(contracts) <= kTolerance) return false;
    const bool isLong = position.IsLong();
    const double lots = position.Lots();
    const double average = position.average;
    double high = 0.0, low = 0.0;
    RealHighLow(0, value, high, low);
    const double favourable = isLong ? high : low;
    const double adverse = isLong ? low : high;

    const double margin = value.RequiredMargin(lots, adverse);
    const double best = value.ProfitLoss(isLong, average, favourable) * lots;
    const double worst = value.ProfitLoss(isLong, average, adverse) * lots;
    if (best > figures.MaxPositionProfitMark) figures.MaxPositionProfitMark = best;
    if (worst < figures.MaxPositionLossMark) figures.MaxPositionLossMark = worst;

    if (figures.Capital + worst - margin >= -kTolerance) return false;
    const double price = GetMarginCallPrice(figures.Capital - margin, average, contracts);
    CloseOnPreviousBar(price);
    const double atCall = GetProfitLoss(isLong, average, price) * lots;
    if (atCall < figures.MaxPositionLossMark) figures.MaxPositionLossMark = atCall;
    return true;
}

// The position at the end of the current bar; the record of a bar evaluated again is
// overwritten.
void CSystemFuncs::RecordBarPosition(const OpenPosition& position, Valuation& value) {
    const int32_t bar = m_pBaseData->CurrentBar;
    if (bar < 0) return;
    BarPosition record;
    record.dContracts = position.contracts;
    record.dAvgEntryPrice = position.average;
    record.nMarketPosition = position.marketPosition;
    record.dNetProfit = NetProfit();
    // PositionProfit() with the size and the average already at hand.
    const double open = position.IsFlat() ? 0.0 : value.OpenProfit(position, Close());
    record.dEquity = record.dNetProfit + open;
    std::vector<BarPosition>& series = m_pBaseData->Result->PositionSeries;
    if (series.size() < static_cast<size_t>(bar) + 1)
        series.push_back(record);
    else
        series[static_cast<size_t>(bar)] = record;
}

// Statistics mode 1: the summary of all round trips, classified with the tolerant
// evaluation, with bars held counted inclusively. The walk is the one the
// statistics functions keep, so a bar only adds the round trips closed since.
void CSystemFuncs::SummarizeTrades() {
    SummaryFigures& summary = m_pBaseData->Result->Summary;
    summary = SummaryFigures();
    summary.nMaxConsecWinners = MaxConsecWinners();
    summary.nMaxConsecLosers = MaxConsecLosers();
    summary.dLargestPosition = MaxContractsHeld();
    summary.dMaxIDDrawDown = MaxIDDrawDown();
    if (!UpdateTradeFigures()) return;
    const TradeListFigures& walk = Derived().TradeFigures.Walked.Figures;
    summary.dGrossProfit = walk.dGrossProfit;
    summary.dGrossLoss = walk.dGrossLoss;
    summary.nWinners = walk.nValuedWinners;
    summary.nEvenTrades = walk.nValuedEven;
    summary.nLosers = walk.nValuedLosers;
    summary.nBarsWinners = walk.nValuedBarsWinners;
    summary.nBarsEven = walk.nValuedBarsEven;
    summary.nBarsLosers = walk.nValuedBarsLosers;
    summary.dLargestWinner = walk.dLargestWin;
    summary.dLargestLoser = walk.dLargestLoss;
    const size_t trades = m_pBaseData->TradeList.size();
    if (trades >= 2) {
        const double n = static_cast<double>(trades);
        const double total = walk.dGrossProfit + walk.dGrossLoss;
        summary.dStdDev = std::sqrt((walk.dSumOfSquares - total * total / n) / (n - 1));
    }
}

// Statistics mode 2: one equity record per bar, valued at the bar's close, with the
// extremes of the equity, the bars in a position and the largest margins in use. A
// bar evaluated again overwrites its record and is not counted twice.
void CSystemFuncs::RecordBarEquity(const OpenPosition& position, Valuation& value) {
    CKelBaseData& data = *m_pBaseData;
    CStrategyResult& result = *data.Result;
    const int32_t bar = data.CurrentBar;
    const double capital = result.Figures.Capital;
    const double contracts = position.contracts;
    const bool inPosition = !position.IsFlat();
    std::vector<BarEquity>& list = result.BarEquityList;
    const bool again = !list.empty() && list.back().nBar == bar;

    BarEquity record;
    record.nBar = bar;
    ffplatform::LocalTime local;
    if (Derived().LocalDays.ToLocal(MainBarTime(bar) / 1000, local)) {
        record.nDate = local.year * 10000 + local.month * 100 + local.day;
        record.nTime = local.hour * 10000 + local.minute * 100 + local.second;
    }
    double margin = 0.0, open = 0.0;
    if (inPosition) {
        if (!again) ++result.nBarsWithPosition;
        const double close = Close();
        margin = value.RequiredMargin(position.Lots(), close);
        open = value.OpenProfit(position, close);
        if (margin > result.dLargestMargin) result.dLargestMargin = margin;
        double& side = IsLongContracts(contracts) ? result.dLargestLongMargin
                                                  : result.dLargestShortMargin;
        if (margin > side) side = margin;
    }
    record.dMargin = margin;
    record.dAvailable = capital - margin + open;
    record.dEquity = record.dAvailable + margin;
    record.dCommission = BarCommission(bar);
    record.dCapital = capital;
    if (again)
        list.back() = record;
    else
        list.push_back(record);

    if (record.dEquity < result.dLowestBarEquity) result.dLowestBarEquity = record.dEquity;
    if (record.dEquity > result.dHighestBarEquity) {
        result.dHighestBarEquity = record.dEquity;
        result.nHighestEquityDate = record.nDate;
        result.nHighestEquityTime = record.nTime;
    }
}

// The commission of the round trips closed on the bar, newest first: the exit side
// unless the close is free, and the entry side too when the trip opened on the bar and
// both sides are charged.
double CSystemFuncs::BarCommission(int32_t bar) {
    const std::vector<tagTradeList>& trades = m_pBaseData->TradeList;
    double commission = 0.0;
    for (size_t i = trades.size(); i > 0; --i) {
        const tagTradeList& trip = trades[i - 1];
        if (trip.nExitBar != bar) break;
        if (!FreeCommission(trip.nEntryBar, trip.nExitBar))
            commission += GetCommission(trip.dLots, trip.dExitPrice);
        if (trip.nEntryBar == bar && !SingleCommission())
            commission += GetCommission(trip.dLots, trip.dEntryPrice);
    }
    return commission;
}
