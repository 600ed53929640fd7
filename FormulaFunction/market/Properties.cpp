// The instrument properties of the current data source. Each is fetched once per
// data index through PropertyCache and served from there for the life of the
// object; a failed fetch is not cached and is tried again on the next call.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/market/CachedResults.h"

using ffmarket::BoolOf;
using ffmarket::DoubleOf;
using ffmarket::LongOf;
using ffmarket::TextOf;

int32_t CSystemFuncs::BarInterval() {
    return LongOf(CachedValue("Data%d.BarInterval", 1, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::BarType() {
    return LongOf(CachedValue("Data%d.BarType", 2, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanMarketOrder() {
    return BoolOf(CachedValue("Data%d.CanMarketOrder", 3, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanShortTrade() {
    return BoolOf(CachedValue("Data%d.CanShortTrade", 4, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanStopOrder() {
    return BoolOf(CachedValue("Data%d.CanStopOrder", 5, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanTrade() {
    return BoolOf(CachedValue("Data%d.CanTrade", 6, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::ContractSize() {
    return DoubleOf(CachedValue("Data%d.ContractSize", 7, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::CurrencyName() {
    return TextOf(CachedValue("Data%d.CurrencyName", 8, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::CurrencySymbol() {
    return TextOf(CachedValue("Data%d.CurrencySymbol", 9, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::ExchangeName() {
    return TextOf(CachedValue("Data%d.ExchangeName", 10, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::ExpiredDate() {
    return TextOf(CachedValue("Data%d.ExpiredDate", 11, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::InitialMargin() {
    return DoubleOf(CachedValue("Data%d.InitialMargin", 12, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::MaintenanceMargin() {
    return DoubleOf(CachedValue("Data%d.MaintenanceMargin", 13, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::MaxSingleTradeSize() {
    return LongOf(CachedValue("Data%d.MaxSingleTradeSize", 14, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::MinMove() {
    return LongOf(CachedValue("Data%d.MinMove", 15, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::PriceScale() {
    return DoubleOf(CachedValue("Data%d.PriceScale", 16, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::Spread() {
    return LongOf(CachedValue("Data%d.Spread", 17, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::SymbolName() {
    return TextOf(CachedValue("Data%d.SymbolName", 19, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::SymbolType() {
    return LongOf(CachedValue("Data%d.SymbolType", 20, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::BigPointValue() {
    return DoubleOf(CachedValue("Data%d.BigPointValue", 21, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::BidAskSize() {
    return LongOf(CachedValue("Data%d.BidAskSize", 22, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::ContractUnit() {
    return LongOf(CachedValue("Data%d.ContractUnit", 23, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::MarginRatio() {
    return DoubleOf(CachedValue("Data%d.MarginRatio", 24, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::MarginMode() {
    return LongOf(CachedValue("Data%d.MarginMode", 25, &CSystemFuncs::GetPropertys));
}

// The instrument code of the current data source as a zero-terminated text; empty
// when there is no current data source. Not cached.
std::string CSystemFuncs::Symbol() {
    if (m_pBaseData == nullptr) return std::string();
    const uint32_t index = static_cast<uint32_t>(m_pBaseData->DataIndex);
    if (index >= m_pBaseData->DataStreams.size()) return std::string();
    return std::string(m_pBaseData->DataStreams[index].Code.c_str());
}
