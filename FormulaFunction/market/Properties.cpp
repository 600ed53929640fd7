// The instrument properties of the current data source. Each is fetched once per
// data index through PropertyCache and served from there for the life of the
// object; a failed fetch is not cached and is tried again on the next call.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/market/CachedResults.h"
#include "FormulaFunction/market/ValueIds.h"

using ffmarket::BoolOf;
using ffmarket::DoubleOf;
using ffmarket::LongOf;
using ffmarket::TextOf;

int32_t CSystemFuncs::BarInterval() {
    return LongOf(CachedValue("Data%d.BarInterval", ffmarket::kPropertyBarInterval, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::BarType() {
    return LongOf(CachedValue("Data%d.BarType", ffmarket::kPropertyBarType, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanMarketOrder() {
    return BoolOf(CachedValue("Data%d.CanMarketOrder", ffmarket::kPropertyCanMarketOrder, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanShortTrade() {
    return BoolOf(CachedValue("Data%d.CanShortTrade", ffmarket::kPropertyCanShortTrade, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanStopOrder() {
    return BoolOf(CachedValue("Data%d.CanStopOrder", ffmarket::kPropertyCanStopOrder, &CSystemFuncs::GetPropertys));
}

bool CSystemFuncs::CanTrade() {
    return BoolOf(CachedValue("Data%d.CanTrade", ffmarket::kPropertyCanTrade, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::ContractSize() {
    return DoubleOf(CachedValue("Data%d.ContractSize", ffmarket::kPropertyContractSize, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::CurrencyName() {
    return TextOf(CachedValue("Data%d.CurrencyName", ffmarket::kPropertyCurrencyName, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::CurrencySymbol() {
    return TextOf(CachedValue("Data%d.CurrencySymbol", ffmarket::kPropertyCurrencySymbol, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::ExchangeName() {
    return TextOf(CachedValue("Data%d.ExchangeName", ffmarket::kPropertyExchangeName, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::ExpiredDate() {
    return TextOf(CachedValue("Data%d.ExpiredDate", ffmarket::kPropertyExpiredDate, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::InitialMargin() {
    return DoubleOf(CachedValue("Data%d.InitialMargin", ffmarket::kPropertyInitialMargin, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::MaintenanceMargin() {
    return DoubleOf(CachedValue("Data%d.MaintenanceMargin", ffmarket::kPropertyMaintenanceMargin, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::MaxSingleTradeSize() {
    return LongOf(CachedValue("Data%d.MaxSingleTradeSize", ffmarket::kPropertyMaxSingleTradeSize, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::MinMove() {
    return LongOf(CachedValue("Data%d.MinMove", ffmarket::kPropertyMinMove, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::PriceScale() {
    return DoubleOf(CachedValue("Data%d.PriceScale", ffmarket::kPropertyPriceScale, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::Spread() {
    return LongOf(CachedValue("Data%d.Spread", ffmarket::kPropertySpread, &CSystemFuncs::GetPropertys));
}

std::string CSystemFuncs::SymbolName() {
    return TextOf(CachedValue("Data%d.SymbolName", ffmarket::kPropertySymbolName, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::SymbolType() {
    return LongOf(CachedValue("Data%d.SymbolType", ffmarket::kPropertySymbolType, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::BigPointValue() {
    return DoubleOf(CachedValue("Data%d.BigPointValue", ffmarket::kPropertyBigPointValue, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::BidAskSize() {
    return LongOf(CachedValue("Data%d.BidAskSize", ffmarket::kPropertyBidAskSize, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::ContractUnit() {
    return LongOf(CachedValue("Data%d.ContractUnit", ffmarket::kPropertyContractUnit, &CSystemFuncs::GetPropertys));
}

double CSystemFuncs::MarginRatio() {
    return DoubleOf(CachedValue("Data%d.MarginRatio", ffmarket::kPropertyMarginRatio, &CSystemFuncs::GetPropertys));
}

int32_t CSystemFuncs::MarginMode() {
    return LongOf(CachedValue("Data%d.MarginMode", ffmarket::kPropertyMarginMode, &CSystemFuncs::GetPropertys));
}

// The instrument code of the current data source as a zero-terminated text; empty
// when there is no current data source. Not cached.
std::string CSystemFuncs::Symbol() {
    if (m_pBaseData == nullptr) return std::string();
    const uint32_t index = static_cast<uint32_t>(m_pBaseData->DataIndex);
    if (index >= m_pBaseData->DataStreams.size()) return std::string();
    return std::string(m_pBaseData->DataStreams[index].Code.c_str());
}
