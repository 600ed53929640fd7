// The work done before each bar of a trading strategy is evaluated: a new day, the
// open position's excursions and margin, the equity history, the position snapshot of
// the previous bar and the signals delayed to this bar; plus the save and restore of
// the state that the live last bar re-evaluates from.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/bars/MainBars.h"
#include "FormulaFunction/trading/TradingRules.h"
#include "FormulaFunction/trading/Valuation.h"

using namespace fftrading;

void CSystemFuncs::PrepareBar() {
    if (!InStrategy()) return;
    m_restorePoint = RestorePoint();
    if (m_pBaseData->CurrentBar == 0) {
        PrepareFirstBar();
        return;
    }
    if (LastestBar()) SaveLastBarData();
    PrepareNormalBar();
}

// Bar 0 starts a run: every figure, list and tracker of an earlier run is reset.
void CSystemFuncs::PrepareFirstBar() {
    CKelBaseData& data = *m_pBaseData;
    CStrategyResult& result = *data.Result;
    const double capital = data.InitialCapital;
    const int64_t start = MainBarTime(0);

    PositionFigures& figures = result.Figures;
    figures.Capital = capital;
    figures.PositionContracts = 0.0;
    figures.MaxContractsHeld = 0.0;
    figures.MaxOpenEntriesHeld = 0;
    figures.MaxPositionProfitMark = 0.0;
    figures.MaxPositionLossMark = 0.0;
    figures.ClosedPositionsDrawDown = 0.0;
    result.DayStartTime = start;
    result.NewDay = false;
    result.ExitOnClose = false;

    result.TroughEquity = capital;
    result.PeakAfterTrough = capital;
    result.DrawDownPeak = capital;
    result.DrawDownTrough = capital;
    result.HighestEquity = capital;
    result.LowestEquity = capital;
    result.dLowestBarEquity = capital;
    result.dHighestBarEquity = capital;
    result.PeakAfterTroughTime = start;
    result.MaxDrawDownTime = start;

    result.EquityHistory.clear();
    result.EquityHistory.push_back({0, start, 0.0, capital, capital, 0.0, capital});

    data.SignalHistory.clear();
    data.TradeList.clear();
    data.OpenEntries.clear();
    data.DelayedSignals.clear();
    if (!data.BarTexts.empty()) data.BarTexts[0].clear();
}

void CSystemFuncs::SaveLastBarData() {
    CStrategyResult& result = *m_pBaseData->Result;
    result.SavedFigures = result.Figures;
    result.SavedOpenEntries = m_pBaseData->OpenEntries;
    result.SavedDelayedSignals = m_pBaseData->DelayedSignals;
    MarkRestorePoint();
}

// Notes how long the signal and round-trip lists are at the moment the live bar's
// state is saved.
void CSystemFuncs::MarkRestorePoint() {
    m_restorePoint.bar = m_pBaseData->CurrentBar;
    m_restorePoint.signals = m_pBaseData->SignalHistory.size();
    m_restorePoint.trades = m_pBaseData->TradeList.size();
}

// Puts back the state saved when the live bar was first prepared and drops the
// signals and round trips that the earlier evaluation recorded on this bar. Records
// of later bars are passed over; the first record of an earlier bar ends each walk.
// A margin call of the statistics step is booked on the bar before, so the walk
// would stop at it and keep it; when this object saved the bar, the lists are first
// cut back to where they stood then, which drops such a forced exit with the rest.
void CSystemFuncs::RestoreLastBar() {
    if (!InStrategy()) return;
    CKelBaseData& data = *m_pBaseData;
    CStrategyResult& result = *data.Result;
    result.Figures = result.SavedFigures;
    data.OpenEntries = result.SavedOpenEntries;
    data.DelayedSignals = result.SavedDelayedSignals;

    const int32_t bar = data.CurrentBar;
    const RestorePoint& point = m_restorePoint;
    if (point.bar == bar && point.signals <= data.SignalHistory.size() &&
        point.trades <= data.TradeList.size()) {
        data.SignalHistory.resize(point.signals);
        data.TradeList.resize(point.trades);
    }
    for (size_t i = data.SignalHistory.size(); i > 0; --i) {
        const int32_t signalBar = data.SignalHistory[i - 1].nBar;
        if (signalBar < bar) break;
        if (signalBar == bar) data.SignalHistory.pop_back();
    }
    for (size_t i = data.TradeList.size(); i > 0; --i) {
        const int32_t exitBar = data.TradeList[i - 1].nExitBar;
        if (exitBar < bar) break;
        if (exitBar == bar) data.TradeList.pop_back();
    }
}

// Settles what bar t - 1 left behind before the formula runs for bar t. The position
// and the instrument's terms are read once; a margin call closes the position and
// they are read again.
void CSystemFuncs::PrepareNormalBar() {
    CKelBaseData& data = *m_pBaseData;
    CStrategyResult& result = *data.Result;
    const int32_t bar = data.CurrentBar;
    const int32_t previous = WrappingSub(bar, 1);

    DetectNewDay();
    OpenPosition position = ReadOpenPosition();
    Valuation value(*this);
    if (FollowPreviousBarExcursion(position, value)) {
        position = ReadOpenPosition();
        value = Valuation(*this);
    }
    if (data.PerformanceMode == 2) RecordPreviousBarEquity(position, value);

    // The record of the previous bar is overwritten when it exists; bar 0 has no
    // previous bar, and its wrapped index must never reach the list.
    PositionSnapshot snapshot = PreviousBarSnapshot(position, value);
    std::vector<PositionSnapshot>& snapshots = result.PositionSnapshots;
    if (bar > 0 && snapshots.size() >= static_cast<uint32_t>(bar))
        snapshots[static_cast<uint32_t>(previous)] = snapshot;
    else
        snapshots.push_back(snapshot);

    RunDelayedSignals();

    if (static_cast<uint32_t>(bar) < data.BarTexts.size())
        data.BarTexts[static_cast<uint32_t>(bar)].clear();
}

// Only the day of the month is compared: two bars a whole number of months apart on
// the same day of the month stay in one trading day.
void CSystemFuncs::DetectNewDay() {
    CStrategyResult& result = *m_pBaseData->Result;
    const int64_t now = MainBarTime(m_pBaseData->CurrentBar);
    if (Derived().LocalDays.InOneKnownDay(result.DayStartTime / 1000, now / 1000)) {
        result.NewDay = false;
        return;
    }
    ffplatform::LocalTime start, current;
    const bool known = Derived().LocalDays.ToLocal(result.DayStartTime / 1000, start) &&
                       Derived().LocalDays.ToLocal(now / 1000, current);
    if (known && start.day != current.day) {
        result.DayStartTime = now;
        result.NewDay = true;
    } else {
        result.NewDay = false;
    }
}

// Raises the open position's best and lowers its worst excursion with the previous
// bar's range, then liquidates the position when its equity at the previous close no
// longer covers the margin. The forced exit is booked on the previous bar. True when
// it was.
bool CSystemFuncs::FollowPreviousBarExcursion(const OpenPosition& position, Valuation& value) {
    CKelBaseData& data = *m_pBaseData;
    PositionFigures& figures = data.Result->Figures;
    if (position.IsFlat()) {
        figures.MaxPositionProfitMark = 0.0;
        figures.MaxPositionLossMark = 0.0;
        return false;
    }
    double high = 0.0, low = 0.0;
    RealHighLow(1, value, high, low);
    const double close = MainBarClose(WrappingSub(data.CurrentBar, 1));
    const double average = position.average;
    const double lots = position.Lots();
    const bool isLong = position.IsLong();

    const double margin = value.RequiredMargin(lots, close);
    const double best = value.ProfitLoss(isLong, average, isLong ? high : low) * lots;
    double worst = value.ProfitLoss(isLong, average, isLong ? low : high) * lots;
    const double open = value.ProfitLoss(isLong, average, close) * lots;
    if (best >= figures.MaxPositionProfitMark) figures.MaxPositionProfitMark = best;
    if (worst <= figures.MaxPositionLossMark) figures.MaxPositionLossMark = worst;

    const double equity = open + figures.Capital;
    if (equity - margin >= 0.0) return false;
    const double price = GetMarginCallPrice(equity, average, position.contracts);
    CloseOnPreviousBar(price);
    worst = GetProfitLoss(isLong, average, price) * lots;
    if (worst < figures.MaxPositionLossMark) figures.MaxPositionLossMark = worst;
    return true;
}

// Closes the whole position at the price with the exit booked on the bar before the
// current one.
void CSystemFuncs::CloseOnPreviousBar(double price) {
    const int32_t bar = m_pBaseData->CurrentBar;
    m_pBaseData->CurrentBar = WrappingSub(bar, 1);
    ClosePosition(price);
    m_pBaseData->CurrentBar = bar;
}

// Statistics mode 2 keeps an equity record for every earlier bar that held a position
// or closed a round trip.
//
// A flat bar is charged, per round trip closed on it, the exit side unless the close
// is free, and the entry side when the trip also opened on that bar and both sides
// are charged. A bar in a position is charged every signal it executed exactly as the
// signal's round trips are charged: an entry its entry side (nothing when only the
// exit side is charged), whether or not it is still open; an exit, per round trip it
// closed, the exit side unless FreeCommission makes that trip's close free. Each side
// is valued with the instrument of the entry, as a round trip is. The two rules agree
// on a bar whose entries were all closed on it.
void CSystemFuncs::RecordPreviousBarEquity(const OpenPosition& position, Valuation& value) {
    CKelBaseData& data = *m_pBaseData;
    CStrategyResult& result = *data.Result;
    const double capital = result.Figures.Capital;
    const int32_t previous = WrappingSub(data.CurrentBar, 1);
    const int64_t time = MainBarTime(previous);

    if (position.IsFlat()) {
        double commission = 0.0;
        bool closed = false;
        for (size_t i = data.TradeList.size(); i > 0; --i) {
            const tagTradeList& trip = data.TradeList[i - 1];
            if (trip.nExitBar != previous) break;
            closed = true;
            ++result.BarsInMarket;
            if (!FreeCommission(trip.nEntryBar, trip.nExitBar))
                commission += GetCommission(trip.dLots, trip.dExitPrice);
            if (trip.nEntryBar == previous && !SingleCommission())
                commission += GetCommission(trip.dLots, trip.dEntryPrice);
        }
        if (!closed) return;
        result.EquityHistory.push_back({previous, time, 0.0, capital, capital, commission, capital});
        TrackEquity(capital, time);
        return;
    }

    ++result.BarsInMarket;
    const double close = MainBarClose(previous);
    const double margin = value.RequiredMargin(position.Lots(), close);
    const double open = value.OpenProfit(position, close);
    const double free = capital - margin + open;
    const double equity = free + margin;
    const double commission = PreviousBarCommission(previous);
    result.EquityHistory.push_back({previous, time, margin, free, equity, commission, capital});
    TrackEquity(equity, time);
}

// The commission of the signals executed on the bar, by the rule above.
double CSystemFuncs::PreviousBarCommission(int32_t bar) {
    CKelBaseData& data = *m_pBaseData;
    const int32_t savedIndex = data.DataIndex;
    double commission = 0.0;
    if (!SingleCommission()) {
        for (size_t i = data.SignalHistory.size(); i > 0; --i) {
            const tagTradeSignal& signal = data.SignalHistory[i - 1];
            if (signal.nBar != bar) break;
            if (signal.nType != kBuy && signal.nType != kSellShort) continue;
            data.DataIndex = signal.nDataIndex;
            commission += GetCommission(signal.dLots, signal.dPrice);
        }
    }
    for (size_t i = data.TradeList.size(); i > 0; --i) {
        const tagTradeList& trip = data.TradeList[i - 1];
        if (trip.nExitBar != bar) break;
        if (FreeCommission(trip.nEntryBar, trip.nExitBar)) continue;
        data.DataIndex = trip.nEntryDataIndex;
        commission += GetCommission(trip.dLots, trip.dExitPrice);
    }
    data.DataIndex = savedIndex;
    return commission;
}

// Follows the lowest equity and the highest since it, the highest and the lowest
// since that, the largest drawdown between them, and the extremes of the run.
void CSystemFuncs::TrackEquity(double equity, int64_t time) {
    CStrategyResult& result = *m_pBaseData->Result;
    if (result.TroughEquity > equity) {
        result.TroughEquity = equity;
        result.PeakAfterTrough = 0.0;
    }
    if (result.PeakAfterTrough < equity) {
        result.PeakAfterTrough = equity;
        result.PeakAfterTroughTime = time;
    }
    if (result.DrawDownTrough > equity) result.DrawDownTrough = equity;
    if (result.DrawDownPeak >= equity) {
        const double drawDown = result.DrawDownPeak - result.DrawDownTrough;
        if (drawDown > result.MaxDrawDown) {
            result.MaxDrawDown = drawDown;
            result.MaxDrawDownTime = time;
        }
    } else {
        result.DrawDownPeak = equity;
        result.DrawDownTrough = equity;
    }
    if (result.HighestEquity < equity) result.HighestEquity = equity;
    if (result.LowestEquity > equity) result.LowestEquity = equity;
}

// The position as the previous bar closed, valued at that bar's close.
PositionSnapshot CSystemFuncs::PreviousBarSnapshot(const OpenPosition& position, Valuation& value) {
    PositionSnapshot snapshot;
    snapshot.dAvgEntryPrice = position.average;
    snapshot.dCurrentContracts = position.contracts;
    snapshot.nMarketPosition = position.marketPosition;
    snapshot.dCloseEquity = NetProfit();
    double open = 0.0;
    if (!position.IsFlat())
        open = value.OpenProfit(position, MainBarClose(WrappingSub(m_pBaseData->CurrentBar, 1)));
    snapshot.dOpenEquity = snapshot.dCloseEquity + open;
    return snapshot;
}

// Closing the whole position goes first, whatever the order of the list. The open
// entries that close leaves, and the other signals, are what RestoreLastBar puts back
// on the live bar. On the live bar the saved figures and the restore point are taken
// again at that same moment: the excursion, a margin call and the close have changed
// the figures and booked their round trips on the previous bar, and those round trips
// stay, so the figures put back must be the ones that go with them.
void CSystemFuncs::RunDelayedSignals() {
    CKelBaseData& data = *m_pBaseData;
    CStrategyResult& result = *data.Result;
    for (size_t i = 0; i < data.DelayedSignals.size(); ++i) {
        if (data.DelayedSignals[i].nType == kCloseAll) HandleDelaySignal(data.DelayedSignals[i]);
    }
    result.SavedOpenEntries = data.OpenEntries;
    if (m_restorePoint.bar == data.CurrentBar) {
        result.SavedFigures = result.Figures;
        MarkRestorePoint();
    }
    result.SavedDelayedSignals.clear();
    for (size_t i = 0; i < data.DelayedSignals.size(); ++i) {
        if (data.DelayedSignals[i].nType == kCloseAll) continue;
        const tagTradeSignal signal = data.DelayedSignals[i];
        HandleDelaySignal(signal);
        result.SavedDelayedSignals.push_back(signal);
    }
    data.DelayedSignals.clear();
}
