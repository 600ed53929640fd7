#include <cfloat>
#include <cstdint>
#include <limits>

#include "datafeed/DatafeedError.h"
#include "datafeed/JsonFields.h"
#include "datafeed/QuoteBoard.h"

namespace datafeed {
namespace {

// Every price and volume member of the quote record, by its name in the file.
struct PriceField {
    const char* name;
    double IModuleFutureTrader::ITickEx::*member;
};

using Tick = IModuleFutureTrader::ITickEx;
constexpr PriceField kPriceFields[] = {
    {"PreSettlePrice", &Tick::PreSettlePrice}, {"PreClosePrice", &Tick::PreClosePrice},
    {"Open", &Tick::Open},                     {"Last", &Tick::Last},
    {"BidPrice", &Tick::BidPrice},             {"BidVol", &Tick::BidVol},
    {"AskPrice", &Tick::AskPrice},             {"AskVol", &Tick::AskVol},
    {"High", &Tick::High},                     {"Low", &Tick::Low},
    {"TotalVol", &Tick::TotalVol},             {"PreOpenInt", &Tick::PreOpenInt},
    {"OpenInt", &Tick::OpenInt},               {"AvgPrice", &Tick::AvgPrice},
    {"LastVol", &Tick::LastVol},               {"TurnOver", &Tick::TurnOver},
    {"Close", &Tick::Close},                   {"HisHigh", &Tick::HisHigh},
    {"HisLow", &Tick::HisLow},                 {"UpperLimit", &Tick::UpperLimit},
    {"LowerLimit", &Tick::LowerLimit},         {"InsideVol", &Tick::InsideVol},
    {"OutsideVol", &Tick::OutsideVol},         {"TodayExitVol", &Tick::TodayExitVol},
    {"TodayEntryVol", &Tick::TodayEntryVol},   {"TickChg", &Tick::TickChg},
};

std::vector<QuoteEntry> QuotesFromJson(const nlohmann::json& root, const std::string& fileName) {
    CheckTopLevel(root, {"quotes"}, fileName);
    const nlohmann::json& quotes = TopLevelArray(root, "quotes", fileName);
    std::vector<QuoteEntry> entries;
    for (size_t i = 0; i < quotes.size(); ++i) {
        JsonObjectReader reader(quotes[i], fileName, "quotes[" + std::to_string(i) + "]");
        QuoteEntry entry;
        entry.Key.MarketId = static_cast<uint16_t>(reader.Integer("MarketId", 0, UINT16_MAX));
        entry.Key.Code = reader.Text("Code", 1, sizeof(tagSymbol::Code) - 1);
        entry.Tick.Time = reader.OptionalInteger("Time", std::numeric_limits<int64_t>::min(),
                                                 std::numeric_limits<int64_t>::max(), 0);
        for (const PriceField& field : kPriceFields) {
            entry.Tick.*field.member = reader.OptionalNumber(field.name, DBL_MAX, 0.0);
        }
        entry.Tick.Flags = static_cast<uint8_t>(reader.OptionalInteger("Flags", 0, UINT8_MAX, 0));
        reader.RefuseUnknown();
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace

std::vector<QuoteEntry> LoadQuoteFile(const std::string& path) {
    return QuotesFromJson(ParseJsonFile(path), path);
}

std::vector<QuoteEntry> ParseQuoteText(const std::string& text, const std::string& fileName) {
    return QuotesFromJson(ParseJsonText(text, fileName), fileName);
}

}  // namespace datafeed
