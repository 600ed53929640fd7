// Valuing the open position many times within one call: the position read in one
// walk of the open entries, and the instrument's money terms and bar type read once.
//
// The terms are those GetProfitLoss and GetRequiredMargin read on every call, the
// bar type and interval those RealHigh and RealLow read. When every property a part
// needs is a remembered PropertyCache entry, reading it again would give the same
// values and have no effect, so it is read once and the arithmetic is done here, in
// the same order and to the same bits. Otherwise each valuation is the function's
// own call, lookups and all.
#pragma once

#include <cmath>
#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/trading/TradingRules.h"

namespace fftrading {

// Margin modes: 1 the contract is worth ContractSize x price; 2 and 3 a fixed amount
// per contract; 4 ContractUnit x BigPointValue x price. Any other mode has no value.
inline bool IsFixedValueMode(int32_t mode) { return mode == 2 || mode == 3; }

// The terms of one instrument: its margin mode, the value of one point of one
// contract (ContractSize, or ContractUnit x BigPointValue in mode 4), and the margin
// of one contract per unit of price (ContractSize x MarginRate, or ContractUnit x
// MarginRatio x BigPointValue in mode 4; per contract alone in the fixed modes).
struct MoneyTerms {
    int32_t mode = 0;
    double pointValue = 0.0;
    double marginPerLot = 0.0;

    // Profit of one contract moved from the entry price to the price; in the
    // fixed-value modes the move is converted at the price it ended at.
    double ProfitLoss(bool isLong, double entryPrice, double price) const {
        const double move = isLong ? price - entryPrice : entryPrice - price;
        if (mode == 1 || mode == 4) return pointValue * move;
        if (IsFixedValueMode(mode)) return pointValue * move / price;
        return 0.0;
    }

    double RequiredMargin(double lots, double price) const {
        if (mode == 1 || mode == 4) return marginPerLot * lots * price;
        if (IsFixedValueMode(mode)) return marginPerLot * lots;
        return 0.0;
    }
};

// On bars of type 2 with interval 1 the high and low carry no meaning, so the close
// stands in for both.
inline bool CloseStandsForHighAndLow(int32_t barType, int32_t barInterval) {
    return barType == 2 && barInterval == 1;
}

// What a call reads once of the instrument of the current data index: the money
// terms and whether the close stands in for the high and the low. Each part is known only when every property it needs is a remembered
// PropertyCache entry.
struct RememberedInstrument {
    MoneyTerms terms;
    bool termsKnown = false;
    bool closeOnly = false;
    bool closeOnlyKnown = false;
};

// The signed size of the open entries: their lots added in list order, negative
// unless the first entry is a buy (CurrentContracts without its checks).
inline double SignedContracts(const std::vector<tagTradeSignal>& entries) {
    double lots = 0.0;
    for (const tagTradeSignal& entry : entries) lots += entry.dLots;
    return !entries.empty() && entries.front().nType == kBuy ? lots : -lots;
}

// The simulated position: the signed contracts (the sign of the first entry's
// direction), the average entry price and the market position, as CurrentContracts,
// AvgEntryPrice and MarketPosition answer.
struct OpenPosition {
    double contracts = 0.0;
    double average = 0.0;
    int32_t marketPosition = 0;

    bool IsLong() const { return IsLongContracts(contracts); }
    bool IsFlat() const { return IsFlatContracts(contracts); }
    double Lots() const { return std::fabs(contracts); }
};

}  // namespace fftrading

// The instrument of the current data index for the length of one call. Read() (or
// the constructor that calls it) comes before any valuation.
class CSystemFuncs::Valuation {
public:
    Valuation() = default;
    explicit Valuation(CSystemFuncs& funcs) { Read(funcs); }

    void Read(CSystemFuncs& funcs) {
        funcs_ = &funcs;
        funcs.ReadRememberedInstrument(instrument_);
    }

    double ProfitLoss(bool isLong, double entryPrice, double price) const {
        return instrument_.termsKnown ? instrument_.terms.ProfitLoss(isLong, entryPrice, price)
                                      : funcs_->GetProfitLoss(isLong, entryPrice, price);
    }

    double RequiredMargin(double lots, double price) const {
        return instrument_.termsKnown ? instrument_.terms.RequiredMargin(lots, price)
                                      : funcs_->GetRequiredMargin(lots, price);
    }

    // The open result of the position at the price.
    double OpenProfit(const fftrading::OpenPosition& position, double price) const {
        return ProfitLoss(position.IsLong(), position.average, price) * position.Lots();
    }

    const fftrading::RememberedInstrument& Instrument() const { return instrument_; }

private:
    CSystemFuncs* funcs_ = nullptr;
    fftrading::RememberedInstrument instrument_;
};
