// Entry orders: opening or adding to a position, reversing an opposite one, and
// carrying out the orders that were parked for the next bar.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/bars/MainBars.h"
#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

bool CSystemFuncs::Buy(double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    if (lots == kInvalidNumber || price == kInvalidNumber) return false;
    lots = std::trunc(lots);
    if (MarketPosition() == -1) return CombineBuy(lots, price, delay);
    return SimpleBuy(lots, price, delay);
}

bool CSystemFuncs::SellShort(double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    if (lots == kInvalidNumber || price == kInvalidNumber) return false;
    lots = std::trunc(lots);
    if (MarketPosition() == 1) return CombineSellShort(lots, price, delay);
    return SimpleSellShort(lots, price, delay);
}

bool CSystemFuncs::SimpleBuy(double lots, double price, bool delay) {
    return OpenEntry(true, lots, price, delay);
}

bool CSystemFuncs::SimpleSellShort(double lots, double price, bool delay) {
    return OpenEntry(false, lots, price, delay);
}

bool CSystemFuncs::CombineBuy(double lots, double price, bool delay) {
    return ReverseInto(true, lots, price, delay);
}

bool CSystemFuncs::CombineSellShort(double lots, double price, bool delay) {
    return ReverseInto(false, lots, price, delay);
}

// A parked order keeps its arguments as given; every check is made when it is
// carried out on the next bar.
void CSystemFuncs::ParkSignal(int32_t type, double lots, double price) {
    m_pBaseData->DelayedSignals.push_back({type, m_pBaseData->CurrentBar, m_pBaseData->OrderSource,
                                           m_pBaseData->DataIndex, lots, price});
}

// After an entry: the largest number of entries, the size the position has grown to,
// the largest size of the run (replaced only by a strictly larger absolute size) and
// the largest size of each side. A short position's sizes are reported as absolute
// values.
void CSystemFuncs::UpdateEntryTrackers(bool isLong) {
    CStrategyResult& result = *m_pBaseData->Result;
    PositionFigures& figures = result.Figures;
    const int32_t entries = static_cast<int32_t>(m_pBaseData->OpenEntries.size());
    if (entries > figures.MaxOpenEntriesHeld) figures.MaxOpenEntriesHeld = entries;
    figures.PositionContracts = CurrentContracts();
    const double size = std::fabs(figures.PositionContracts);
    if (std::fabs(figures.MaxContractsHeld) < size) {
        figures.MaxContractsHeld = figures.PositionContracts;
        result.LargestPositionHeld = isLong ? figures.PositionContracts : size;
    }
    if (isLong) {
        if (figures.PositionContracts > result.LargestLongPosition)
            result.LargestLongPosition = figures.PositionContracts;
    } else if (size > result.LargestShortPosition) {
        result.LargestShortPosition = size;
    }
}

// Opens or adds to a position in the order's direction. The order is refused when its
// price or size is unusable, when the capital cannot carry it, when the position
// would exceed its largest allowed size, or when the pyramiding rules forbid another
// entry (too many entries, or one from the same source already open).
bool CSystemFuncs::OpenEntry(bool isLong, double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    const int32_t type = isLong ? kBuy : kSellShort;
    if (delay) {
        ParkSignal(type, lots, price);
        return true;
    }
    double fill = 0.0;
    if (!OrderFillPrice(isLong, price, fill)) return false;

    double size = 0.0;
    if (IsNearZero(lots))
        size = GetDefaultTradeSize(fill);
    else if (lots <= kTolerance)
        return false;
    else
        size = GetTradeSize(lots, fill);
    if (size < 1) return false;

    const double held = CurrentContracts();
    const double allowed = m_pBaseData->MaxPositionContracts;
    if (isLong ? allowed - held < size : held + allowed < size) return false;

    const int32_t open = GetCurrentEntryPositions();
    if (open > 0) {
        const int32_t limit = m_pBaseData->MaxOpenEntries;
        if (limit == 0 || static_cast<int64_t>(open) + 1 > limit) return false;
        if (!m_pBaseData->AllowSameSourceEntries) {
            for (const tagTradeSignal& entry : m_pBaseData->OpenEntries)
                if (entry.nSource == m_pBaseData->OrderSource) return false;
        }
    }

    const tagTradeSignal entry{type, m_pBaseData->CurrentBar, m_pBaseData->OrderSource,
                               m_pBaseData->DataIndex, size, fill};
    m_pBaseData->SignalHistory.push_back(entry);
    m_pBaseData->OpenEntries.push_back(entry);
    UpdateEntryTrackers(isLong);
    return true;
}

// Reverses an opposite position into the order's direction. The old position is
// booked into the capital at once at the fill price with one side of commission; its
// round trips are written first-in first-out but not booked a second time. The new
// size is found with the capital after that booking while the old entries are still
// open. Once the price and lots pass, the old position is always closed, even when
// no new one can be opened.
bool CSystemFuncs::ReverseInto(bool isLong, double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    const int32_t entryType = isLong ? kBuy : kSellShort;
    const int32_t exitType = isLong ? kBuyToCover : kSell;
    if (delay) {
        ParkSignal(entryType, lots, price);
        return true;
    }
    double fill = 0.0;
    if (!OrderFillPrice(isLong, price, fill)) return false;
    if (lots < -kTolerance || lots > m_pBaseData->MaxPositionContracts) return false;

    PositionFigures& figures = m_pBaseData->Result->Figures;
    const double held = CurrentContracts();
    const double closed = isLong ? -held : held;
    figures.Capital += GetProfitLoss(!isLong, AvgEntryPrice(), fill) * closed -
                       GetCommission(closed, fill);

    double size = 0.0;
    if (lots > kTolerance)
        size = GetMaxTradeSize(figures.Capital, fill) >= lots ? lots : 0.0;
    else if (IsNearZero(lots))
        size = GetDefaultTradeSize(fill);

    double commission = 0.0, lotsTimesPrice = 0.0;
    CloseEntriesFifo(!isLong, closed, fill, commission, lotsTimesPrice);

    figures.ClosedPositionsDrawDown += figures.MaxPositionLossMark;
    figures.PositionContracts = 0.0;
    figures.MaxPositionProfitMark = 0.0;
    figures.MaxPositionLossMark = 0.0;
    m_pBaseData->SignalHistory.push_back({exitType, m_pBaseData->CurrentBar,
                                          m_pBaseData->OrderSource, m_pBaseData->DataIndex,
                                          closed, fill});
    if (size < 1) return true;

    const tagTradeSignal entry{entryType, m_pBaseData->CurrentBar, m_pBaseData->OrderSource,
                               m_pBaseData->DataIndex, size, fill};
    m_pBaseData->SignalHistory.push_back(entry);
    m_pBaseData->OpenEntries.push_back(entry);
    UpdateEntryTrackers(isLong);
    return true;
}

// Carries out a parked order on the bar after it was given, as if it were given now
// by the same data stream and order source. A close-everything signal closes at the
// previous bar's close of the main stream, booked on that bar, and only while the
// exit-on-close stop is in force.
void CSystemFuncs::HandleDelaySignal(const tagTradeSignal& signal) {
    if (!InStrategy()) return;
    const tagTradeSignal order = signal;
    const int32_t savedIndex = m_pBaseData->DataIndex;
    const uint32_t savedSource = m_pBaseData->OrderSource;
    m_pBaseData->DataIndex = order.nDataIndex;
    m_pBaseData->OrderSource = order.nSource;
    switch (order.nType) {
    case kBuy:
        Buy(order.dLots, order.dPrice, false);
        break;
    case kSell:
        Sell(order.dLots, order.dPrice, false);
        break;
    case kSellShort:
        SellShort(order.dLots, order.dPrice, false);
        break;
    case kBuyToCover:
        BuyToCover(order.dLots, order.dPrice, false);
        break;
    case kCloseAll:
        if (m_pBaseData->Result->ExitOnClose) {
            const int32_t bar = m_pBaseData->CurrentBar;
            m_pBaseData->CurrentBar = WrappingSub(bar, 1);
            ClosePosition(MainBarClose(m_pBaseData->CurrentBar));
            m_pBaseData->CurrentBar = bar;
        }
        break;
    default:
        break;
    }
    m_pBaseData->DataIndex = savedIndex;
    m_pBaseData->OrderSource = savedSource;
}
