// Position queries: everything is derived from the list of open entries, the list of
// round trips and the position figures of the result block.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/bars/MainBars.h"
#include "FormulaFunction/trading/TradingRules.h"
#include "FormulaFunction/trading/Valuation.h"

using namespace fftrading;

int32_t CSystemFuncs::GetCurrentEntryPositions() {
    if (!InStrategy()) return 0;
    return static_cast<int32_t>(m_pBaseData->OpenEntries.size());
}

// Local date and time of a bar of the main data stream, whatever stream the formula
// trades; false when the bar does not exist or its time cannot be converted. The
// conversion goes through the day cache, so the bars of one day cost one system
// conversion.
bool CSystemFuncs::BarDateTime(int32_t bar, int32_t& date, double& time) {
    const BarRecord* record = ffbars::MainStreamBar(m_pBaseData, bar);
    if (record == nullptr) return false;
    ffplatform::LocalTime local;
    if (!Derived().LocalDays.ToLocal(record->time / 1000, local)) return false;
    date = ffbuiltins::DateValue(local.year, local.month, local.day);
    time = local.hour * 0.01 + local.minute * 0.0001 + local.second * 0.000001;
    return true;
}

int32_t CSystemFuncs::MarketPosition() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0;
    const int32_t type = m_pBaseData->OpenEntries.front().nType;
    if (type == kBuy) return 1;
    if (type == kSellShort) return -1;
    return 0;
}

// The entries carry positive lots; the sign comes from the direction of the first.
double CSystemFuncs::CurrentContracts() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0.0;
    return SignedContracts(m_pBaseData->OpenEntries);
}

// The three answers above from one walk of the open entries, to the same bits.
OpenPosition CSystemFuncs::ReadOpenPosition() {
    OpenPosition position;
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return position;
    double lots = 0.0, value = 0.0;
    for (const tagTradeSignal& entry : m_pBaseData->OpenEntries) {
        lots += entry.dLots;
        value += entry.dLots * entry.dPrice;
    }
    const int32_t type = m_pBaseData->OpenEntries.front().nType;
    position.contracts = type == kBuy ? lots : -lots;
    position.marketPosition = type == kBuy ? 1 : type == kSellShort ? -1 : 0;
    position.average = lots == 0.0 ? 0.0 : value / std::fabs(lots);
    return position;
}

int32_t CSystemFuncs::CurrentEntries() { return GetCurrentEntryPositions(); }

double CSystemFuncs::AvgEntryPrice() {
    if (!InStrategy()) return 0.0;
    double lots = 0.0, value = 0.0;
    for (const tagTradeSignal& entry : m_pBaseData->OpenEntries) {
        lots += entry.dLots;
        value += entry.dLots * entry.dPrice;
    }
    if (lots == 0.0) return 0.0;
    return value / std::fabs(lots);
}

double CSystemFuncs::EntryPrice() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0.0;
    return m_pBaseData->OpenEntries.front().dPrice;
}

double CSystemFuncs::LastEntryPrice() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0.0;
    return m_pBaseData->OpenEntries.back().dPrice;
}

int32_t CSystemFuncs::EntryDate() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0;
    int32_t date = 0;
    double time = 0.0;
    if (!BarDateTime(m_pBaseData->OpenEntries.front().nBar, date, time)) return kInvalidInteger;
    return date;
}

// The entry times answer for any formula kind that holds open entries.
double CSystemFuncs::EntryTime() {
    if (m_pBaseData == nullptr || m_pBaseData->OpenEntries.empty()) return 0.0;
    int32_t date = 0;
    double time = 0.0;
    if (!BarDateTime(m_pBaseData->OpenEntries.front().nBar, date, time)) return kInvalidNumber;
    return time;
}

int32_t CSystemFuncs::LastEntryDate() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0;
    int32_t date = 0;
    double time = 0.0;
    if (!BarDateTime(m_pBaseData->OpenEntries.back().nBar, date, time)) return kInvalidInteger;
    return date;
}

double CSystemFuncs::LastEntryTime() {
    if (m_pBaseData == nullptr || m_pBaseData->OpenEntries.empty()) return 0.0;
    int32_t date = 0;
    double time = 0.0;
    if (!BarDateTime(m_pBaseData->OpenEntries.back().nBar, date, time)) return kInvalidNumber;
    return time;
}

int32_t CSystemFuncs::BarsSinceEntry() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0;
    return WrappingSub(m_pBaseData->CurrentBar, m_pBaseData->OpenEntries.front().nBar);
}

int32_t CSystemFuncs::BarsSinceLastEntry() {
    if (!InStrategy() || m_pBaseData->OpenEntries.empty()) return 0;
    return WrappingSub(m_pBaseData->CurrentBar, m_pBaseData->OpenEntries.back().nBar);
}

// The exit queries describe the last round trip only while the strategy is flat.
double CSystemFuncs::ExitPrice() {
    if (!InStrategy() || !m_pBaseData->OpenEntries.empty() || m_pBaseData->TradeList.empty())
        return 0.0;
    return m_pBaseData->TradeList.back().dExitPrice;
}

int32_t CSystemFuncs::ExitDate() {
    if (!InStrategy() || !m_pBaseData->OpenEntries.empty() || m_pBaseData->TradeList.empty())
        return 0;
    int32_t date = 0;
    double time = 0.0;
    if (!BarDateTime(m_pBaseData->TradeList.back().nExitBar, date, time)) return kInvalidInteger;
    return date;
}

double CSystemFuncs::ExitTime() {
    if (!InStrategy() || !m_pBaseData->OpenEntries.empty() || m_pBaseData->TradeList.empty())
        return 0.0;
    int32_t date = 0;
    double time = 0.0;
    if (!BarDateTime(m_pBaseData->TradeList.back().nExitBar, date, time)) return kInvalidNumber;
    return time;
}

int32_t CSystemFuncs::BarsSinceExit() {
    if (!InStrategy() || !m_pBaseData->OpenEntries.empty() || m_pBaseData->TradeList.empty())
        return 0;
    return WrappingSub(m_pBaseData->CurrentBar, m_pBaseData->TradeList.back().nExitBar);
}

double CSystemFuncs::ContractProfit() {
    const double contracts = CurrentContracts();
    if (IsFlatContracts(contracts)) return 0.0;
    return GetProfitLoss(IsLongContracts(contracts), AvgEntryPrice(), Close());
}

double CSystemFuncs::PositionProfit() {
    return ContractProfit() * std::fabs(CurrentContracts());
}

// Cash plus the open position valued at the current close, less the margin it ties up.
double CSystemFuncs::CurrentCapital() {
    if (!InStrategy()) return 0.0;
    const double capital = m_pBaseData->Result->Figures.Capital;
    const double contracts = CurrentContracts();
    if (IsFlatContracts(contracts)) return capital;
    const double lots = std::fabs(contracts);
    const double close = Close();
    return capital - GetRequiredMargin(lots, close) +
           GetProfitLoss(IsLongContracts(contracts), AvgEntryPrice(), close) * lots;
}

double CSystemFuncs::MaxContracts() {
    if (!InStrategy()) return 0.0;
    return m_pBaseData->Result->Figures.PositionContracts;
}

double CSystemFuncs::MaxContractsHeld() {
    if (!InStrategy()) return 0.0;
    return m_pBaseData->Result->Figures.MaxContractsHeld;
}

int32_t CSystemFuncs::MaxEntries() {
    if (!InStrategy()) return 0;
    return m_pBaseData->Result->Figures.MaxOpenEntriesHeld;
}

// The best open profit of the position: the mark of earlier bars, or the current
// bar's best price when that is at least as good.
double CSystemFuncs::MaxPositionProfit() {
    if (!InStrategy()) return 0.0;
    const double contracts = CurrentContracts();
    if (IsFlatContracts(contracts)) return 0.0;
    const bool isLong = IsLongContracts(contracts);
    const double best = isLong ? RealHigh(0) : RealLow(0);
    const double current = GetProfitLoss(isLong, AvgEntryPrice(), best) * std::fabs(contracts);
    const double mark = m_pBaseData->Result->Figures.MaxPositionProfitMark;
    return mark > current ? mark : current;
}

double CSystemFuncs::MaxPositionLoss() {
    if (!InStrategy()) return 0.0;
    const double contracts = CurrentContracts();
    if (IsFlatContracts(contracts)) return 0.0;
    const bool isLong = IsLongContracts(contracts);
    const double worst = isLong ? RealLow(0) : RealHigh(0);
    const double current = GetProfitLoss(isLong, AvgEntryPrice(), worst) * std::fabs(contracts);
    const double mark = m_pBaseData->Result->Figures.MaxPositionLossMark;
    return mark < current ? mark : current;
}

double CSystemFuncs::MaxIDDrawDown() {
    if (!InStrategy()) return 0.0;
    return MaxPositionLoss() + m_pBaseData->Result->Figures.ClosedPositionsDrawDown;
}

// The linked strategy's position as it stood at this formula's current bar; null for
// a formula that is not linked or a bar the strategy has not reached.
const PositionSnapshot* CSystemFuncs::LinkedSnapshot() {
    if (m_pBaseData == nullptr) return nullptr;
    const int32_t kind = m_pBaseData->FormulaKind;
    if (kind != 4 && kind != 5 && kind != 6) return nullptr;
    const CStrategyResult* strategy = m_pBaseData->LinkedStrategy;
    if (strategy == nullptr) return nullptr;
    const uint32_t bar = static_cast<uint32_t>(m_pBaseData->CurrentBar);
    if (bar >= strategy->PositionSnapshots.size()) return nullptr;
    return &strategy->PositionSnapshots[bar];
}

double CSystemFuncs::I_AvgEntryPrice() {
    const PositionSnapshot* snapshot = LinkedSnapshot();
    return snapshot != nullptr ? snapshot->dAvgEntryPrice : 0.0;
}

double CSystemFuncs::I_CurrentContracts() {
    const PositionSnapshot* snapshot = LinkedSnapshot();
    return snapshot != nullptr ? snapshot->dCurrentContracts : 0.0;
}

int32_t CSystemFuncs::I_MarketPosition() {
    const PositionSnapshot* snapshot = LinkedSnapshot();
    return snapshot != nullptr ? snapshot->nMarketPosition : 0;
}

double CSystemFuncs::I_CloseEquity() {
    const PositionSnapshot* snapshot = LinkedSnapshot();
    return snapshot != nullptr ? snapshot->dCloseEquity : 0.0;
}

double CSystemFuncs::I_OpenEquity() {
    const PositionSnapshot* snapshot = LinkedSnapshot();
    return snapshot != nullptr ? snapshot->dOpenEquity : 0.0;
}
