#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "DatafeedTestSupport.h"
#include "datafeed/DatafeedError.h"
#include "datafeed/InstrumentFile.h"

using datafeed::DatafeedError;
using datafeed::InstrumentCatalogue;
using datafeed::InstrumentKey;
using datafeed::ParseInstrumentText;
using nlohmann::json;

namespace {

json RebarJson() {
    return json{{"MarketId", 1},          {"Code", "rb2510"},
                {"SymbolType", 1},        {"ExchangeId", 1},
                {"SymbolName", "Rebar"},  {"CurrencySymbol", "CNY"},
                {"CurrencyName", "Yuan"}, {"CanTrade", 1},
                {"TradePermissions", 3},  {"ShortTradeBits", 12},
                {"PriceScale", 0.1},      {"MinMove", 5},
                {"BigPointValue", 2.5},   {"BidAskSize", 4},
                {"ContractUnit", 10},     {"MaxSingleTradeSize", 500},
                {"MarginRatio", 0.07},    {"ExpiredDate", "20251015"},
                {"MarginMode", 4},        {"ContractSize", 10},
                {"InitialMargin", 2100},  {"MaintenanceMargin", 1800.5}};
}

json FileWith(const json& instruments) {
    return json{{"exchanges", json::array({json{{"ExchangeId", 1}, {"Name", "SHFE"}}})},
                {"instruments", instruments}};
}

json ThreeInstruments() {
    json second = RebarJson();
    second["Code"] = "rb2601";
    json third = RebarJson();
    third["Code"] = "rb2605";
    return json::array({RebarJson(), second, third});
}

// The message of the DatafeedError that parsing `text` throws, or "" when none.
std::string Refusal(const std::string& text) {
    try {
        ParseInstrumentText(text, "instruments.json");
    } catch (const DatafeedError& e) {
        return e.what();
    }
    return "";
}

std::string RefusalOfField(const char* field, const json& value) {
    json instruments = ThreeInstruments();
    instruments[2][field] = value;
    return Refusal(FileWith(instruments).dump());
}

}  // namespace

TEST(InstrumentFile, CopiesEveryFieldOfAnInstrument) {
    const InstrumentCatalogue catalogue =
        ParseInstrumentText(FileWith(json::array({RebarJson()})).dump(), "instruments.json");
    ASSERT_EQ(catalogue.Instruments.size(), 1u);
    const IModuleFutureTrader::ISpecDetailValue* spec = catalogue.Find(InstrumentKey{1, "rb2510"});
    ASSERT_NE(spec, nullptr);
    EXPECT_EQ(spec->SymbolType, 1);
    EXPECT_EQ(spec->ExchangeId, 1u);
    EXPECT_EQ(spec->SymbolName, "Rebar");
    EXPECT_EQ(spec->CurrencySymbol, "CNY");
    EXPECT_EQ(spec->CurrencyName, "Yuan");
    EXPECT_EQ(spec->CanTrade, 1);
    EXPECT_EQ(spec->TradePermissions, 3);
    EXPECT_EQ(spec->ShortTradeBits, 12u);
    EXPECT_EQ(spec->PriceScale, 0.1f);
    EXPECT_EQ(spec->MinMove, 5);
    EXPECT_EQ(spec->BigPointValue, 2.5f);
    EXPECT_EQ(spec->BidAskSize, 4);
    EXPECT_EQ(spec->ContractUnit, 10);
    EXPECT_EQ(spec->MaxSingleTradeSize, 500);
    EXPECT_EQ(spec->MarginRatio, 0.07f);
    EXPECT_EQ(spec->ExpiredDate, "20251015");
    EXPECT_EQ(spec->MarginMode, 4);
    EXPECT_EQ(spec->ContractSize, 10.0f);
    EXPECT_EQ(spec->InitialMargin, 2100.0f);
    EXPECT_EQ(spec->MaintenanceMargin, 1800.5f);
    ASSERT_EQ(catalogue.Exchanges.size(), 1u);
    EXPECT_EQ(catalogue.Exchanges[0].ExchangeId, 1u);
    EXPECT_EQ(catalogue.Exchanges[0].Name, "SHFE");
}

TEST(InstrumentFile, KeysInstrumentsByMarketAndCode) {
    json other = RebarJson();
    other["MarketId"] = 2;
    other["MinMove"] = 7;
    const InstrumentCatalogue catalogue = ParseInstrumentText(
        FileWith(json::array({RebarJson(), other})).dump(), "instruments.json");
    EXPECT_EQ(catalogue.Find(InstrumentKey{1, "rb2510"})->MinMove, 5);
    EXPECT_EQ(catalogue.Find(InstrumentKey{2, "rb2510"})->MinMove, 7);
    EXPECT_EQ(catalogue.Find(InstrumentKey{3, "rb2510"}), nullptr);
    EXPECT_EQ(catalogue.Find(InstrumentKey{1, "RB2510"}), nullptr);
}

TEST(InstrumentFile, AcceptsEmptyLists) {
    const InstrumentCatalogue catalogue =
        ParseInstrumentText(R"({"exchanges": [], "instruments": []})", "instruments.json");
    EXPECT_TRUE(catalogue.Exchanges.empty());
    EXPECT_TRUE(catalogue.Instruments.empty());
}

TEST(InstrumentFile, NamesTheFileAndTheMissingField) {
    json instruments = ThreeInstruments();
    instruments[2].erase("MinMove");
    EXPECT_EQ(Refusal(FileWith(instruments).dump()),
              "instruments.json: instruments[2].MinMove: missing");
}

TEST(InstrumentFile, RefusesEachMissingField) {
    const json fields = RebarJson();
    for (const auto& item : fields.items()) {
        json instruments = ThreeInstruments();
        instruments[1].erase(item.key());
        EXPECT_EQ(Refusal(FileWith(instruments).dump()),
                  "instruments.json: instruments[1]." + item.key() + ": missing");
    }
}

TEST(InstrumentFile, RefusesWrongTypes) {
    EXPECT_EQ(RefusalOfField("MinMove", 1.5),
              "instruments.json: instruments[2].MinMove: expected an integer");
    EXPECT_EQ(RefusalOfField("MinMove", "1"),
              "instruments.json: instruments[2].MinMove: expected an integer");
    EXPECT_EQ(RefusalOfField("PriceScale", "0.1"),
              "instruments.json: instruments[2].PriceScale: expected a number");
    EXPECT_EQ(RefusalOfField("SymbolName", 5),
              "instruments.json: instruments[2].SymbolName: expected a text");
    EXPECT_EQ(RefusalOfField("ExpiredDate", nullptr),
              "instruments.json: instruments[2].ExpiredDate: expected a text");
}

TEST(InstrumentFile, RefusesValuesOutOfRange) {
    EXPECT_EQ(RefusalOfField("CanTrade", 256),
              "instruments.json: instruments[2].CanTrade: out of range (0 to 255)");
    EXPECT_EQ(RefusalOfField("CanTrade", -1),
              "instruments.json: instruments[2].CanTrade: out of range (0 to 255)");
    EXPECT_EQ(RefusalOfField("MarketId", 65536),
              "instruments.json: instruments[2].MarketId: out of range (0 to 65535)");
    EXPECT_EQ(RefusalOfField("ExchangeId", -1),
              "instruments.json: instruments[2].ExchangeId: out of range (0 to 4294967295)");
    EXPECT_EQ(RefusalOfField("MinMove", 2147483648LL),
              "instruments.json: instruments[2].MinMove: out of range (-2147483648 to 2147483647)");
    EXPECT_EQ(RefusalOfField("MaxSingleTradeSize", 18446744073709551615ULL),
              "instruments.json: instruments[2].MaxSingleTradeSize: out of range "
              "(-2147483648 to 2147483647)");
    EXPECT_EQ(RefusalOfField("PriceScale", 1e39),
              "instruments.json: instruments[2].PriceScale: out of range");
    EXPECT_EQ(RefusalOfField("Code", ""), "instruments.json: instruments[2].Code: empty");
    EXPECT_EQ(RefusalOfField("Code", std::string(32, 'x')),
              "instruments.json: instruments[2].Code: longer than 31 bytes");
    EXPECT_EQ(RefusalOfField("Code", std::string(31, 'x')), "");
    EXPECT_EQ(RefusalOfField("ExchangeId", 4294967295LL), "");
    EXPECT_EQ(RefusalOfField("MinMove", -2147483648LL), "");
}

TEST(InstrumentFile, RefusesUnknownFieldsSoThatMisspellingsShow) {
    EXPECT_EQ(RefusalOfField("Margin", 0.1),
              "instruments.json: instruments[2].Margin: unknown field");
    EXPECT_EQ(Refusal(R"({"exchanges": [], "instruments": [], "extra": 1})"),
              "instruments.json: extra: unknown field");
    EXPECT_EQ(Refusal(R"({"exchanges": [{"ExchangeId": 1, "Name": "x", "Id": 2}],
                          "instruments": []})"),
              "instruments.json: exchanges[0].Id: unknown field");
}

TEST(InstrumentFile, RefusesDuplicates) {
    EXPECT_EQ(Refusal(FileWith(json::array({RebarJson(), RebarJson()})).dump()),
              "instruments.json: instruments[1].Code: duplicate instrument 1/rb2510");
    EXPECT_EQ(Refusal(R"({"exchanges": [{"ExchangeId": 3, "Name": "a"},
                                        {"ExchangeId": 3, "Name": "b"}],
                          "instruments": []})"),
              "instruments.json: exchanges[1].ExchangeId: duplicate 3");
}

TEST(InstrumentFile, RefusesAWrongShape) {
    EXPECT_EQ(Refusal("[]"), "instruments.json: expected a JSON object at the top");
    EXPECT_EQ(Refusal(R"({"instruments": []})"), "instruments.json: exchanges: missing");
    EXPECT_EQ(Refusal(R"({"exchanges": []})"), "instruments.json: instruments: missing");
    EXPECT_EQ(Refusal(R"({"exchanges": [], "instruments": {}})"),
              "instruments.json: instruments: expected an array");
    EXPECT_EQ(Refusal(R"({"exchanges": [], "instruments": [5]})"),
              "instruments.json: instruments[0]: expected an object");
    EXPECT_EQ(Refusal(R"({"exchanges": [{"ExchangeId": 1}], "instruments": []})"),
              "instruments.json: exchanges[0].Name: missing");
}

TEST(InstrumentFile, RefusesTextThatIsNotJson) {
    const std::string message = Refusal("{\"exchanges\": [],\n \"instruments\": [}");
    EXPECT_EQ(message.rfind("instruments.json: not valid JSON: parse error at line 2", 0), 0u)
        << message;
    EXPECT_EQ(Refusal("").rfind("instruments.json: not valid JSON: ", 0), 0u);
}

TEST(InstrumentFile, ReadsAFileAndNamesItInErrors) {
    datafeed_test::TempDir dir;
    const std::string path = dir.File("instruments.json");
    json instruments = ThreeInstruments();
    datafeed_test::WriteBytes(path, FileWith(instruments).dump(2));
    EXPECT_EQ(datafeed::LoadInstrumentFile(path).Instruments.size(), 3u);

    instruments[2].erase("MinMove");
    datafeed_test::WriteBytes(path, FileWith(instruments).dump(2));
    try {
        datafeed::LoadInstrumentFile(path);
        FAIL() << "an incomplete file was accepted";
    } catch (const DatafeedError& e) {
        EXPECT_EQ(std::string(e.what()), path + ": instruments[2].MinMove: missing");
    }
    try {
        datafeed::LoadInstrumentFile(dir.File("missing.json"));
        FAIL() << "a missing file was accepted";
    } catch (const DatafeedError& e) {
        EXPECT_EQ(std::string(e.what()), dir.File("missing.json") + ": cannot be opened");
    }
}

TEST(InstrumentFile, ShippedExampleCoversEveryMarginMode) {
    const InstrumentCatalogue catalogue =
        datafeed::LoadInstrumentFile(std::string(FF_EXAMPLES_DIR) + "/instruments.json");
    EXPECT_EQ(catalogue.Exchanges.size(), 5u);
    EXPECT_EQ(catalogue.Instruments.size(), 6u);
    bool modes[5] = {};
    for (const auto& entry : catalogue.Instruments) {
        const IModuleFutureTrader::ISpecDetailValue& spec = entry.second;
        ASSERT_GE(spec.MarginMode, 1);
        ASSERT_LE(spec.MarginMode, 4);
        modes[spec.MarginMode] = true;
        EXPECT_GT(spec.PriceScale * static_cast<float>(spec.MinMove), 0.0f) << entry.first.Code;
        EXPECT_GT(spec.ContractUnit * spec.BigPointValue, 0.0f) << entry.first.Code;
        bool exchangeListed = false;
        for (const tagExchangeInfo& exchange : catalogue.Exchanges) {
            exchangeListed = exchangeListed || exchange.ExchangeId == spec.ExchangeId;
        }
        EXPECT_TRUE(exchangeListed) << entry.first.Code;
    }
    EXPECT_TRUE(modes[1] && modes[2] && modes[3] && modes[4]);
    const IModuleFutureTrader::ISpecDetailValue* index = catalogue.Find(InstrumentKey{4, "IF2509"});
    ASSERT_NE(index, nullptr);
    EXPECT_EQ(index->ContractSize, 300.0f);
    EXPECT_EQ(index->ContractUnit * index->BigPointValue, 300.0f);
}
