// How many contracts an order may trade: the capital available at the bar's open,
// the contracts that capital can carry, and the default size of an order that gives
// none.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

// Cash when flat; otherwise cash less the open position's margin plus its open
// profit, both valued at the current bar's open.
double CSystemFuncs::AvailableCapital() {
    if (!InStrategy()) return 0.0;
    const double capital = m_pBaseData->Result->Figures.Capital;
    const double contracts = CurrentContracts();
    if (IsFlatContracts(contracts)) return capital;
    const double lots = std::fabs(contracts);
    const double open = Open();
    return capital - GetRequiredMargin(lots, open) +
           GetProfitLoss(IsLongContracts(contracts), AvgEntryPrice(), open) * lots;
}

// Whole contracts the money carries: the money is measured in tenths of a contract's
// margin and needs at least one whole contract's worth. The count is a 32-bit
// integer, so a margin of zero (an instrument without a value) gives the x86
// out-of-range result, a negative count that no order accepts.
double CSystemFuncs::GetMaxTradeSize(double money, double price) {
    const double tenth = GetRequiredMargin(0.1, price);
    int32_t size = 0;
    if (money >= tenth && money >= 10 * tenth) size = TruncateToInt32(money / (10 * tenth));
    const int32_t cap = MaxSingleTradeSize();
    if (cap > 0 && size > cap) size = cap;
    return size;
}

// An explicit size is traded whole or not at all.
double CSystemFuncs::GetTradeSize(double lots, double price) {
    if (GetMaxTradeSize(AvailableCapital(), price) >= lots) return std::trunc(lots);
    return 0.0;
}

// The size of an order that names none, by the strategy's sizing mode: 0 a fixed
// number of contracts, 1 a percentage of the available capital, 2 a fixed amount of
// money.
double CSystemFuncs::GetDefaultTradeSize(double price) {
    if (m_pBaseData == nullptr) return 0.0;
    const int32_t value = m_pBaseData->TradeSizeValue;
    switch (m_pBaseData->TradeSizeMode) {
    case 0:
        return GetMaxTradeSize(AvailableCapital(), price) >= value ? value : 0.0;
    case 1:
        return GetMaxTradeSize(value * AvailableCapital() * 0.01, price);
    case 2:
        return value <= AvailableCapital() ? GetMaxTradeSize(value, price) : 0.0;
    default:
        return 0.0;
    }
}
