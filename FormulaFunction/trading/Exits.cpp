// Exit orders and the closing of open entries: first-in first-out for an order, one
// particular entry for a stop. Every close writes round trips and books their profit
// less commission into the capital.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

bool CSystemFuncs::Sell(double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    if (lots == kInvalidNumber || price == kInvalidNumber) return false;
    if (MarketPosition() != 1) return false;
    return SimpleSell(std::trunc(lots), price, delay);
}

bool CSystemFuncs::BuyToCover(double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    if (lots == kInvalidNumber || price == kInvalidNumber) return false;
    if (MarketPosition() != -1) return false;
    return SimpleBuyToCover(std::trunc(lots), price, delay);
}

bool CSystemFuncs::SimpleSell(double lots, double price, bool delay) {
    return ExitPosition(true, lots, price, delay);
}

bool CSystemFuncs::SimpleBuyToCover(double lots, double price, bool delay) {
    return ExitPosition(false, lots, price, delay);
}

// Closes lots of the position (0: all of it) first-in first-out. Closing more than is
// held is refused, not clipped. The close is booked at the average entry price of
// the pieces closed.
bool CSystemFuncs::ExitPosition(bool isLong, double lots, double price, bool delay) {
    if (!InStrategy()) return false;
    const int32_t type = isLong ? kSell : kBuyToCover;
    if (delay) {
        ParkSignal(type, lots, price);
        return true;
    }
    double fill = 0.0;
    if (!OrderFillPrice(!isLong, price, fill)) return false;

    const double held = isLong ? CurrentContracts() : std::fabs(CurrentContracts());
    double quantity = 0.0;
    if (IsNearZero(lots))
        quantity = held;
    else if (lots <= kTolerance || lots > held)
        return false;
    else
        quantity = lots;
    if (quantity <= kTolerance) return false;

    double commission = 0.0, lotsTimesPrice = 0.0;
    CloseEntriesFifo(isLong, quantity, fill, commission, lotsTimesPrice);
    m_pBaseData->SignalHistory.push_back({type, m_pBaseData->CurrentBar, m_pBaseData->OrderSource,
                                          m_pBaseData->DataIndex, quantity, fill});
    const double averageEntry = lotsTimesPrice / quantity;
    m_pBaseData->Result->Figures.Capital +=
        GetProfitLoss(isLong, averageEntry, fill) * quantity - commission;
    CalcStopMaxInfo();
    return true;
}

// Appends the round trip of `lots` contracts of an open entry closed at the price and
// returns its commission. The trade figures are brought up to date at once when the
// strategy keeps them per round trip.
double CSystemFuncs::WriteRoundTrip(bool isLong, const tagTradeSignal& entry, double lots,
                                    double price) {
    tagTradeList trip;
    trip.nEntryType = entry.nType;
    trip.nExitType = isLong ? kSell : kBuyToCover;
    trip.nEntryBar = entry.nBar;
    trip.nExitBar = m_pBaseData->CurrentBar;
    trip.nEntrySource = entry.nSource;
    trip.nExitSource = m_pBaseData->OrderSource;
    trip.nEntryDataIndex = entry.nDataIndex;
    trip.dLots = lots;
    trip.dEntryPrice = entry.dPrice;
    trip.dExitPrice = price;
    m_pBaseData->TradeList.push_back(trip);
    const double commission = GetDoubleCommission(trip);
    if (m_pBaseData->PerformanceMode == 2) {
        double gross = GetProfitLoss(isLong, trip.dEntryPrice, trip.dExitPrice) * trip.dLots;
        double charged = commission;
        CalcTradePerformance(isLong, gross, charged, trip);
    }
    return commission;
}

// Closes `quantity` contracts from the oldest entry on. An entry within 0.01 lots of
// what is left is closed whole and ends the walk; a larger entry gives up what is
// left and stays open with the rest; a smaller one is closed whole and the walk goes
// on. Returns the summed commission and the summed lots x entry price of the pieces.
void CSystemFuncs::CloseEntriesFifo(bool isLong, double quantity, double price,
                                    double& commission, double& lotsTimesPrice) {
    commission = 0.0;
    lotsTimesPrice = 0.0;
    std::vector<tagTradeSignal>& entries = m_pBaseData->OpenEntries;
    double remaining = quantity;
    for (size_t i = 0; i < entries.size(); ++i) {
        tagTradeSignal& entry = entries[i];
        const auto first = entries.begin();
        if (std::fabs(entry.dLots - remaining) < kWholeEntryTolerance) {
            commission += WriteRoundTrip(isLong, entry, entry.dLots, price);
            lotsTimesPrice += entry.dLots * entry.dPrice;
            entries.erase(first, first + static_cast<std::ptrdiff_t>(i) + 1);
            return;
        }
        if (entry.dLots > remaining) {
            commission += WriteRoundTrip(isLong, entry, remaining, price);
            lotsTimesPrice += remaining * entry.dPrice;
            entry.dLots -= remaining;
            entries.erase(first, first + static_cast<std::ptrdiff_t>(i));
            return;
        }
        commission += WriteRoundTrip(isLong, entry, entry.dLots, price);
        lotsTimesPrice += entry.dLots * entry.dPrice;
        remaining -= entry.dLots;
    }
    // The walk ran past the newest entry: every entry was closed whole.
    entries.clear();
}

void CSystemFuncs::ClosePosition(double price) {
    const int32_t position = MarketPosition();
    if (position > 0)
        Sell(0, price, false);
    else if (position < 0)
        BuyToCover(0, price, false);
}

// Closes one open entry at a price a stop has already placed: the price is put on the
// tick against the position and held to today's limits, but not to the bar's range.
// An entry that is no longer open is ignored, so two stops firing on one entry in the
// same bar close it once. The data index is not part of an entry's identity.
void CSystemFuncs::ClosePosition(const tagTradeSignal& entry, double price) {
    if (!InStrategy()) return;
    const tagTradeSignal wanted = entry;  // the caller may hand in an element of the list
    const bool isLong = MarketPosition() > 0;
    double fill = price;
    GetValidPrice(!isLong, fill);
    if (LastestBar()) ClampToTodayLimits(fill);

    std::vector<tagTradeSignal>& entries = m_pBaseData->OpenEntries;
    size_t i = 0;
    while (i < entries.size() &&
           !(entries[i].nBar == wanted.nBar && entries[i].nSource == wanted.nSource &&
             entries[i].dLots == wanted.dLots && entries[i].dPrice == wanted.dPrice &&
             entries[i].nType == wanted.nType))
        ++i;
    if (i == entries.size()) return;

    const tagTradeSignal closed = entries[i];
    const double commission = WriteRoundTrip(isLong, closed, closed.dLots, fill);
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(i));
    m_pBaseData->SignalHistory.push_back({isLong ? kSell : kBuyToCover, m_pBaseData->CurrentBar,
                                          m_pBaseData->OrderSource, m_pBaseData->DataIndex,
                                          closed.dLots, fill});
    const double profit = GetProfitLoss(isLong, closed.dPrice, fill) * closed.dLots;
    m_pBaseData->Result->Figures.Capital += profit - commission;
    CalcStopMaxInfo();
}
