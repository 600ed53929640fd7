// The instrument of the current data source and its specification, as served by
// the platform's market-data library.
#include <algorithm>
#include <cstring>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"

namespace {

void SetLong(tagKelDataType& v, int32_t n) {
    v.nType = KelInteger;
    v.nValue = n;
}

void SetBool(tagKelDataType& v, bool b) {
    v.nType = KelBool;
    v.bValue = b;
}

void SetDouble(tagKelDataType& v, double d) {
    v.nType = KelDouble;
    v.dValue = d;
}

void SetText(tagKelDataType& v, const std::string& s) {
    v.nType = KelText;
    v.strValue = s;
}

}  // namespace

// The tagSymbol of the current data source: cleared first, then the market id and
// the code with its terminating zero. A code of 32 characters or more is cut to 31.
// False when there is no current data source.
bool CSystemFuncs::CurrentSymbol(tagSymbol& symbol) {
    if (m_pBaseData == nullptr) return false;
    const uint32_t index = static_cast<uint32_t>(m_pBaseData->DataIndex);
    if (index >= m_pBaseData->DataStreams.size()) return false;
    const DataStream& source = m_pBaseData->DataStreams[index];
    symbol.MarketId = 0;
    symbol.Code[0] = '\0';
    symbol.MarketId = source.MarketId;
    const size_t length = std::min(std::strlen(source.Code.c_str()), sizeof symbol.Code - 1);
    std::memcpy(symbol.Code, source.Code.c_str(), length);
    symbol.Code[length] = '\0';
    return true;
}

// Fills `value` with property `id` of the current instrument. The instrument must be
// known to the market-data library even for the two properties that come from the
// data source record (bar interval and type). Spread is always 0; id 18 succeeds
// without touching the record; the margin ratio reports the host's MarginRate, the
// specification's own ratio being overwritten.
bool CSystemFuncs::GetPropertys(int32_t id, tagKelDataType& value) {
    tagSymbol symbol;
    if (!CurrentSymbol(symbol)) return false;
    if (g_pSubscribeManage == nullptr) return false;
    IModuleFutureTrader::ISpecDetailValue spec;
    if (g_pSubscribeManage->GetSymbolProperty(symbol, spec) == 0) return false;
    if (id < 1 || id > 25) return false;

    const DataStream& source = m_pBaseData->DataStreams[static_cast<uint32_t>(m_pBaseData->DataIndex)];
    switch (id) {
        case 1: SetLong(value, source.BarInterval); break;
        case 2: SetLong(value, source.BarType); break;
        case 3: SetBool(value, (spec.TradePermissions & 0x1) != 0); break;
        case 4: SetBool(value, (spec.ShortTradeBits & 0x4) != 0 || (spec.ShortTradeBits & 0x8) != 0); break;
        case 5: SetBool(value, (spec.TradePermissions & 0x2) != 0); break;
        case 6: SetBool(value, spec.CanTrade != 0); break;
        case 7: SetDouble(value, spec.ContractSize); break;
        case 8: SetText(value, spec.CurrencyName); break;
        case 9: SetText(value, spec.CurrencySymbol); break;
        case 10: {
            SetText(value, std::string());
            std::vector<tagExchangeInfo> exchanges;
            g_pSubscribeManage->GetAllExchanges(exchanges);
            for (const tagExchangeInfo& exchange : exchanges) {
                if (exchange.ExchangeId == spec.ExchangeId) {
                    value.strValue = exchange.Name;
                    break;
                }
            }
            break;
        }
        case 11: SetText(value, spec.ExpiredDate); break;
        case 12: SetDouble(value, spec.InitialMargin); break;
        case 13: SetDouble(value, spec.MaintenanceMargin); break;
        case 14: SetLong(value, spec.MaxSingleTradeSize); break;
        case 15: SetLong(value, spec.MinMove); break;
        case 16: SetDouble(value, spec.PriceScale); break;
        case 17: SetLong(value, 0); break;
        case 18: break;
        case 19: SetText(value, spec.SymbolName); break;
        case 20: SetLong(value, spec.SymbolType); break;
        case 21: SetDouble(value, spec.BigPointValue); break;
        case 22: SetLong(value, spec.BidAskSize); break;
        case 23: SetLong(value, spec.ContractUnit); break;
        case 24:
            SetDouble(value, spec.MarginRatio);
            value.dValue = m_pBaseData->MarginRate;
            break;
        case 25: SetLong(value, spec.MarginMode); break;
    }
    return true;
}
