// Money arithmetic of the simulated trading engine: the profit of a price move, the
// margin a position ties up, the price at which a money amount is reached, the
// commission of one side and of a round trip, and the classification of round trips.
// Every figure follows the margin mode of the instrument the formula trades.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/market/RememberedProperties.h"
#include "FormulaFunction/trading/TradingRules.h"
#include "FormulaFunction/trading/Valuation.h"

using namespace fftrading;
using ffmarket::RememberedProperties;
using fftrading::MoneyTerms;
using fftrading::RememberedInstrument;
using fftrading::IsFixedValueMode;

// Profit of one contract moved from the entry price to the price, with the terms
// read as the instrument's properties are read for every valuation.
double CSystemFuncs::GetProfitLoss(bool isLong, double entryPrice, double price) {
    if (m_pBaseData == nullptr) return 0.0;
    const RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
    MoneyTerms terms;
    terms.mode = p.Long(ffmarket::kPropertyMarginMode, [this] { return MarginMode(); });
    if (terms.mode == 1 || IsFixedValueMode(terms.mode)) terms.pointValue = p.ContractSize();
    if (terms.mode == 4) terms.pointValue = p.ContractUnit() * p.BigPointValue();
    return terms.ProfitLoss(isLong, entryPrice, price);
}

// The price scale is fetched like the other properties of the instrument although
// the margin does not depend on it.
double CSystemFuncs::GetRequiredMargin(double lots, double price) {
    if (m_pBaseData == nullptr) return 0.0;
    const RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
    MoneyTerms terms;
    terms.mode = p.Long(ffmarket::kPropertyMarginMode, [this] { return MarginMode(); });
    (void)p.PriceScale();
    if (terms.mode == 1 || IsFixedValueMode(terms.mode))
        terms.marginPerLot = p.ContractSize() * m_pBaseData->MarginRate;
    if (terms.mode == 4) terms.marginPerLot = p.ContractUnit() * p.MarginRatio() * p.BigPointValue();
    return terms.RequiredMargin(lots, price);
}

// What the per-call valuation and the true high and low read, from one look at
// the remembered entries: the terms both functions above read when every property
// they read is remembered, and the bar type and interval when both are; a part
// whose property is not remembered is left unknown for the functions to read.
void CSystemFuncs::ReadRememberedInstrument(RememberedInstrument& out) {
    out = RememberedInstrument();
    if (m_pBaseData == nullptr) return;
    const CachedValueSlots::Row* row = Derived().Values.Entries(PropertyCache, m_pBaseData->DataIndex);
    if (row == nullptr) return;
    const CachedValueSlots::Row& entries = *row;

    const tagKelDataType* type = entries[ffmarket::kPropertyBarType];
    const tagKelDataType* interval = entries[ffmarket::kPropertyBarInterval];
    if (type != nullptr && interval != nullptr) {
        out.closeOnly = fftrading::CloseStandsForHighAndLow(type->nValue, interval->nValue);
        out.closeOnlyKnown = true;
    }

    const tagKelDataType* mode = entries[ffmarket::kPropertyMarginMode];
    if (mode == nullptr || entries[ffmarket::kPropertyPriceScale] == nullptr) return;
    MoneyTerms& terms = out.terms;
    terms.mode = mode->nValue;
    if (terms.mode == 1 || IsFixedValueMode(terms.mode)) {
        const tagKelDataType* size = entries[ffmarket::kPropertyContractSize];
        if (size == nullptr) return;
        terms.pointValue = size->dValue;
        terms.marginPerLot = size->dValue * m_pBaseData->MarginRate;
    } else if (terms.mode == 4) {
        const tagKelDataType* unit = entries[ffmarket::kPropertyContractUnit];
        const tagKelDataType* ratio = entries[ffmarket::kPropertyMarginRatio];
        const tagKelDataType* point = entries[ffmarket::kPropertyBigPointValue];
        if (unit == nullptr || ratio == nullptr || point == nullptr) return;
        terms.pointValue = unit->nValue * point->dValue;
        terms.marginPerLot = unit->nValue * ratio->dValue * point->dValue;
    }
    out.termsKnown = true;
}

// The price at which a position of the signed size has lost the amount (a negative
// amount: gained it), rounded to the tick away from the position's favour: down for
// a long, up for a short. With no contracts or a margin mode that gives no value the
// entry price itself, rounded down, is the answer.
double CSystemFuncs::GetMarginCallPrice(double amount, double entryPrice, double contracts) {
    if (m_pBaseData == nullptr) return entryPrice;
    const RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
    const int32_t mode = p.Long(ffmarket::kPropertyMarginMode, [this] { return MarginMode(); });
    double price = entryPrice;
    if (contracts != 0.0 && (mode == 1 || IsFixedValueMode(mode) || mode == 4)) {
        const double perPoint = mode == 4 ? p.ContractUnit() * p.BigPointValue() : p.ContractSize();
        if (IsFixedValueMode(mode))
            price = entryPrice / (amount / (perPoint * contracts) + 1);
        else
            price = entryPrice - amount / (perPoint * contracts);
        GetValidPrice(contracts < 0.0, price);
        return price;
    }
    GetValidPrice(false, price);
    return price;
}

// Commission of one side. Type 1 counts whole ticks per contract (the price-valued
// mode 1 is charged on the price as well), type 2 is a rate in ten-thousandths of the
// traded value, and any other type is money per contract.
double CSystemFuncs::GetCommission(double lots, double price) {
    if (m_pBaseData == nullptr) return 0.0;
    const double value = m_pBaseData->CommissionValue;
    if (m_pBaseData->CommissionType == 1) {
        const RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
        const double ticks = std::trunc(value);
        const int32_t mode = p.Long(ffmarket::kPropertyMarginMode, [this] { return MarginMode(); });
        if (mode == 1)
            return ticks * p.MinMove() * p.PriceScale() * p.ContractSize() * lots * price;
        if (IsFixedValueMode(mode))
            return ticks * p.MinMove() * p.PriceScale() * p.ContractSize() * lots;
        if (mode == 4)
            return ticks * p.MinMove() * p.ContractUnit() * p.PriceScale() * p.BigPointValue() *
                   lots;
        return 0.0;
    }
    if (m_pBaseData->CommissionType == 2) {
        const RememberedProperties p(*this, Derived().Values, m_pBaseData->DataIndex);
        return p.ContractUnit() * p.BigPointValue() * (value * 0.0001) * lots * price;
    }
    return lots * value;
}

// Both sides of a round trip, less the entry side when only exits are charged and
// less the exit side when the round trip is a free same-day close.
double CSystemFuncs::GetDoubleCommission(const tagTradeList& trade) {
    const double entrySide =
        SingleCommission() ? 0.0 : GetCommission(trade.dLots, trade.dEntryPrice);
    if (FreeCommission(trade.nEntryBar, trade.nExitBar)) return entrySide;
    return entrySide + GetCommission(trade.dLots, trade.dExitPrice);
}

bool CSystemFuncs::SingleCommission() {
    return m_pBaseData != nullptr && m_pBaseData->SingleSideCommission;
}

// The exit side is free when the round trip opened and closed on the same local
// calendar day of the main stream. Two unknown bars (-1) count as the same day; a bar
// that does not exist proves nothing, so the exit is charged.
bool CSystemFuncs::FreeCommission(int32_t entryBar, int32_t exitBar) {
    if (m_pBaseData == nullptr || !m_pBaseData->FreeCloseToday) return false;
    if (entryBar == -1 && exitBar == -1) return true;
    int32_t entryDate = 0, exitDate = 0;
    double entryTime = 0.0, exitTime = 0.0;
    if (!BarDateTime(entryBar, entryDate, entryTime)) return false;
    if (!BarDateTime(exitBar, exitDate, exitTime)) return false;
    return entryDate == exitDate;
}

double CSystemFuncs::GetSpread() { return Spread() * PriceScale(); }

// Net result of a round trip, worked out with the properties of the stream it was
// entered on. The exact form tells winners from losers by the sign alone.
int32_t CSystemFuncs::CalcTradeList(const tagTradeList& trade) {
    double net = 0.0, commission = 0.0;
    CalcTradeList(trade, net, commission);
    if (net > 0.0) return 1;
    if (net == 0.0) return 0;
    return -1;
}

// The valued form counts a net within the tolerance as even.
int32_t CSystemFuncs::CalcTradeList(const tagTradeList& trade, double& net, double& commission) {
    net = 0.0;
    commission = 0.0;
    if (m_pBaseData == nullptr) return 0;
    const int32_t savedIndex = m_pBaseData->DataIndex;
    m_pBaseData->DataIndex = trade.nEntryDataIndex;
    commission = GetDoubleCommission(trade);
    double gross = 0.0;
    if (trade.nEntryType == kBuy)
        gross = GetProfitLoss(true, trade.dEntryPrice, trade.dExitPrice) * trade.dLots;
    else if (trade.nEntryType == kSellShort)
        gross = GetProfitLoss(false, trade.dEntryPrice, trade.dExitPrice) * trade.dLots;
    net = gross - commission;
    m_pBaseData->DataIndex = savedIndex;
    if (net > kTolerance) return 1;
    if (net >= -kTolerance) return 0;
    return -1;
}
