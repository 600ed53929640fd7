#include "datafeed/InstrumentFile.h"

#include <cfloat>
#include <cstdint>
#include <limits>

#include "datafeed/DatafeedError.h"
#include "datafeed/JsonFields.h"

namespace datafeed {
namespace {

constexpr int64_t kInt32Min = std::numeric_limits<int32_t>::min();
constexpr int64_t kInt32Max = std::numeric_limits<int32_t>::max();
constexpr int64_t kUInt32Max = std::numeric_limits<uint32_t>::max();
constexpr size_t kMaxCodeLength = sizeof(tagSymbol::Code) - 1;

float ReadFloat(JsonObjectReader& reader, const char* name) {
    return static_cast<float>(reader.Number(name, FLT_MAX));
}

int32_t ReadInt32(JsonObjectReader& reader, const char* name) {
    return static_cast<int32_t>(reader.Integer(name, kInt32Min, kInt32Max));
}

std::pair<InstrumentKey, IModuleFutureTrader::ISpecDetailValue> ReadInstrument(
    const nlohmann::json& item, const std::string& file, const std::string& where) {
    JsonObjectReader reader(item, file, where);
    InstrumentKey key;
    key.MarketId = static_cast<uint16_t>(reader.Integer("MarketId", 0, UINT16_MAX));
    key.Code = reader.Text("Code", 1, kMaxCodeLength);

    IModuleFutureTrader::ISpecDetailValue spec;
    spec.SymbolType = ReadInt32(reader, "SymbolType");
    spec.ExchangeId = static_cast<uint32_t>(reader.Integer("ExchangeId", 0, kUInt32Max));
    spec.SymbolName = reader.Text("SymbolName", 0, SIZE_MAX);
    spec.CurrencySymbol = reader.Text("CurrencySymbol", 0, SIZE_MAX);
    spec.CurrencyName = reader.Text("CurrencyName", 0, SIZE_MAX);
    spec.CanTrade = static_cast<uint8_t>(reader.Integer("CanTrade", 0, UINT8_MAX));
    spec.TradePermissions = static_cast<uint8_t>(reader.Integer("TradePermissions", 0, UINT8_MAX));
    spec.ShortTradeBits = static_cast<uint32_t>(reader.Integer("ShortTradeBits", 0, kUInt32Max));
    spec.PriceScale = ReadFloat(reader, "PriceScale");
    spec.MinMove = ReadInt32(reader, "MinMove");
    spec.BigPointValue = ReadFloat(reader, "BigPointValue");
    spec.BidAskSize = ReadInt32(reader, "BidAskSize");
    spec.ContractUnit = ReadInt32(reader, "ContractUnit");
    spec.MaxSingleTradeSize = ReadInt32(reader, "MaxSingleTradeSize");
    spec.MarginRatio = ReadFloat(reader, "MarginRatio");
    spec.ExpiredDate = reader.Text("ExpiredDate", 0, SIZE_MAX);
    spec.MarginMode = ReadInt32(reader, "MarginMode");
    spec.ContractSize = ReadFloat(reader, "ContractSize");
    spec.InitialMargin = ReadFloat(reader, "InitialMargin");
    spec.MaintenanceMargin = ReadFloat(reader, "MaintenanceMargin");
    reader.RefuseUnknown();
    return {key, spec};
}

tagExchangeInfo ReadExchange(const nlohmann::json& item, const std::string& file,
                             const std::string& where) {
    JsonObjectReader reader(item, file, where);
    tagExchangeInfo exchange;
    exchange.ExchangeId = static_cast<uint32_t>(reader.Integer("ExchangeId", 0, kUInt32Max));
    exchange.Name = reader.Text("Name", 0, SIZE_MAX);
    reader.RefuseUnknown();
    return exchange;
}

InstrumentCatalogue CatalogueFromJson(const nlohmann::json& root, const std::string& fileName) {
    CheckTopLevel(root, {"exchanges", "instruments"}, fileName);
    InstrumentCatalogue catalogue;
    const nlohmann::json& exchanges = TopLevelArray(root, "exchanges", fileName);
    for (size_t i = 0; i < exchanges.size(); ++i) {
        const std::string where = "exchanges[" + std::to_string(i) + "]";
        tagExchangeInfo exchange = ReadExchange(exchanges[i], fileName, where);
        for (const tagExchangeInfo& known : catalogue.Exchanges) {
            if (known.ExchangeId == exchange.ExchangeId) {
                throw DatafeedError(fileName + ": " + where + ".ExchangeId: duplicate " +
                                    std::to_string(exchange.ExchangeId));
            }
        }
        catalogue.Exchanges.push_back(std::move(exchange));
    }
    const nlohmann::json& instruments = TopLevelArray(root, "instruments", fileName);
    for (size_t i = 0; i < instruments.size(); ++i) {
        const std::string where = "instruments[" + std::to_string(i) + "]";
        auto entry = ReadInstrument(instruments[i], fileName, where);
        const std::string name = std::to_string(entry.first.MarketId) + "/" + entry.first.Code;
        if (!catalogue.Instruments.emplace(std::move(entry)).second) {
            throw DatafeedError(fileName + ": " + where + ".Code: duplicate instrument " + name);
        }
    }
    return catalogue;
}

}  // namespace

const IModuleFutureTrader::ISpecDetailValue* InstrumentCatalogue::Find(
    const InstrumentKey& key) const {
    const auto it = Instruments.find(key);
    return it == Instruments.end() ? nullptr : &it->second;
}

InstrumentCatalogue LoadInstrumentFile(const std::string& path) {
    return CatalogueFromJson(ParseJsonFile(path), path);
}

InstrumentCatalogue ParseInstrumentText(const std::string& text, const std::string& fileName) {
    return CatalogueFromJson(ParseJsonText(text, fileName), fileName);
}

}  // namespace datafeed
