#include <gtest/gtest.h>

#include <cstring>

#include "DatafeedTestSupport.h"
#include "datafeed/DatafeedError.h"
#include "datafeed/QuoteBoard.h"

using datafeed::DatafeedError;
using datafeed::InstrumentKey;
using datafeed::MakeSymbol;
using datafeed_test::FeedFixture;
using datafeed_test::kIndex;
using datafeed_test::kRebar;
using datafeed_test::MakeQuote;

TEST(QuoteFromBar, StandsForTheNewestBar) {
    BarRecord bar;
    bar.time = 1709258400123;
    bar.open = 3000;
    bar.high = 3020;
    bar.low = 2990;
    bar.close = 3011;
    bar.vol = 1234;
    bar.openInt = 5678;
    const IModuleFutureTrader::ITickEx tick = datafeed::QuoteFromBar(bar);
    EXPECT_EQ(tick.Time, 1709258400123);
    EXPECT_EQ(tick.Open, 3000);
    EXPECT_EQ(tick.High, 3020);
    EXPECT_EQ(tick.Low, 2990);
    EXPECT_EQ(tick.Last, 3011);
    EXPECT_EQ(tick.Close, 3011);
    EXPECT_EQ(tick.BidPrice, 3011);
    EXPECT_EQ(tick.AskPrice, 3011);
    EXPECT_EQ(tick.TotalVol, 1234);
    EXPECT_EQ(tick.OpenInt, 5678);
    EXPECT_EQ(tick.PreSettlePrice, 0);
    EXPECT_EQ(tick.UpperLimit, 0);
    EXPECT_EQ(tick.Flags, 0);
}

TEST(QuoteFile, ReadsNamedFieldsAndLeavesTheRestZero) {
    const std::vector<datafeed::QuoteEntry> entries = datafeed::ParseQuoteText(
        R"({"quotes": [{"MarketId": 1, "Code": "rb2510", "Time": 1709258400000,
                        "Last": 3012, "BidPrice": 3011.5, "AskPrice": 3012.5,
                        "UpperLimit": 3207, "TickChg": -1, "Flags": 6},
                       {"MarketId": 4, "Code": "IF2509"}]})",
        "quotes.json");
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].Key, (InstrumentKey{1, "rb2510"}));
    EXPECT_EQ(entries[0].Tick.Time, 1709258400000);
    EXPECT_EQ(entries[0].Tick.Last, 3012);
    EXPECT_EQ(entries[0].Tick.BidPrice, 3011.5);
    EXPECT_EQ(entries[0].Tick.AskPrice, 3012.5);
    EXPECT_EQ(entries[0].Tick.UpperLimit, 3207);
    EXPECT_EQ(entries[0].Tick.TickChg, -1);
    EXPECT_EQ(entries[0].Tick.Flags, 6);
    EXPECT_EQ(entries[0].Tick.Open, 0);
    EXPECT_EQ(entries[1].Key, (InstrumentKey{4, "IF2509"}));
    EXPECT_EQ(entries[1].Tick.Last, 0);
}

TEST(QuoteFile, RefusesBadEntriesNamingTheField) {
    auto refusal = [](const std::string& text) {
        try {
            datafeed::ParseQuoteText(text, "quotes.json");
        } catch (const DatafeedError& e) {
            return std::string(e.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal(R"({"quotes": [{"MarketId": 1}]})"), "quotes.json: quotes[0].Code: missing");
    EXPECT_EQ(refusal(R"({"quotes": [{"MarketId": 1, "Code": "a", "Last": "x"}]})"),
              "quotes.json: quotes[0].Last: expected a number");
    EXPECT_EQ(refusal(R"({"quotes": [{"MarketId": 1, "Code": "a", "Flags": 300}]})"),
              "quotes.json: quotes[0].Flags: out of range (0 to 255)");
    EXPECT_EQ(refusal(R"({"quotes": [{"MarketId": 1, "Code": "a", "Bid": 1}]})"),
              "quotes.json: quotes[0].Bid: unknown field");
    EXPECT_EQ(refusal(R"({"quote": []})"), "quotes.json: quote: unknown field");
    EXPECT_EQ(refusal(R"({})"), "quotes.json: quotes: missing");
}

TEST(MarketQuote, AnswersOnlyForAKnownInstrumentWithAQuote) {
    FeedFixture fixture;
    IModuleFutureTrader::ITickEx tick;
    EXPECT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kRebar), tick), 0);

    IModuleFutureTrader::ITickEx set = MakeQuote(3011, 3012, 3011);
    set.UpperLimit = 3207;
    set.Flags = 0x06;
    EXPECT_TRUE(fixture.Feed().SetQuote(kRebar, set));
    ASSERT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kRebar), tick), 1);
    EXPECT_EQ(tick.BidPrice, 3011);
    EXPECT_EQ(tick.AskPrice, 3012);
    EXPECT_EQ(tick.UpperLimit, 3207);
    EXPECT_EQ(tick.Flags, 0x06);
    EXPECT_EQ(tick.Time, set.Time);

    EXPECT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kIndex), tick), 0);
    const InstrumentKey unknown{1, "zz9999"};
    EXPECT_FALSE(fixture.Feed().SetQuote(unknown, set));
    EXPECT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(unknown), tick), 0);
}

TEST(MarketQuote, ANewQuoteReplacesTheOld) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(3011, 3012, 3011));
    BarRecord bar;
    bar.close = 3050;
    EXPECT_TRUE(fixture.Feed().SetQuoteFromBar(kRebar, bar));
    IModuleFutureTrader::ITickEx tick;
    ASSERT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kRebar), tick), 1);
    EXPECT_EQ(tick.Last, 3050);
    EXPECT_EQ(tick.BidPrice, 3050);
}

TEST(MarketQuote, SymbolCodeWithoutTerminatorIsReadSafely) {
    FeedFixture fixture;
    tagSymbol symbol;
    symbol.MarketId = 1;
    std::memset(symbol.Code, 'r', sizeof(symbol.Code));
    IModuleFutureTrader::ITickEx tick;
    IModuleFutureTrader::ISpecDetailValue spec;
    EXPECT_EQ(fixture.Feed().GetMarketQuote(symbol, tick), 0);
    EXPECT_EQ(fixture.Feed().GetSymbolProperty(symbol, spec), 0);
    EXPECT_EQ(datafeed::KeyOf(symbol).Code, std::string(32, 'r'));
}

TEST(MarketQuote, MakeSymbolCutsLongCodes) {
    const tagSymbol symbol = MakeSymbol(InstrumentKey{7, std::string(40, 'x')});
    EXPECT_EQ(symbol.MarketId, 7);
    EXPECT_EQ(std::string(symbol.Code), std::string(31, 'x'));
    EXPECT_EQ(datafeed::KeyOf(MakeSymbol(kRebar)), kRebar);
}

TEST(MarketQuote, QuoteFileSetsAllOrNothing) {
    FeedFixture fixture;
    datafeed_test::TempDir dir;
    const std::string path = dir.File("quotes.json");
    datafeed_test::WriteBytes(path, R"({"quotes": [{"MarketId": 1, "Code": "rb2510", "Last": 3000},
                                                  {"MarketId": 1, "Code": "nosuch", "Last": 1}]})");
    try {
        fixture.Feed().LoadQuotes(path);
        FAIL() << "a quote of an unknown instrument was accepted";
    } catch (const DatafeedError& e) {
        EXPECT_EQ(std::string(e.what()), path + ": quotes[1]: unknown instrument 1/nosuch");
    }
    IModuleFutureTrader::ITickEx tick;
    EXPECT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kRebar), tick), 0);

    datafeed_test::WriteBytes(path, R"({"quotes": [{"MarketId": 1, "Code": "rb2510", "Last": 3000},
                                                  {"MarketId": 4, "Code": "IF2509", "Last": 3900.2}]})");
    fixture.Feed().LoadQuotes(path);
    ASSERT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kIndex), tick), 1);
    EXPECT_EQ(tick.Last, 3900.2);
    ASSERT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kRebar), tick), 1);
    EXPECT_EQ(tick.Last, 3000);
}

TEST(MarketQuote, ShippedQuoteFileMatchesTheShippedInstruments) {
    FeedFixture fixture;
    fixture.Feed().LoadInstruments(std::string(FF_EXAMPLES_DIR) + "/instruments.json");
    fixture.Feed().LoadQuotes(std::string(FF_EXAMPLES_DIR) + "/quotes.json");
    IModuleFutureTrader::ITickEx tick;
    ASSERT_EQ(fixture.Feed().GetMarketQuote(MakeSymbol(kRebar), tick), 1);
    EXPECT_EQ(tick.Last, 3012);
    EXPECT_LE(tick.BidPrice, tick.AskPrice);
}

TEST(Instruments, PropertyAndExchangesComeFromTheCatalogue) {
    FeedFixture fixture;
    IModuleFutureTrader::ISpecDetailValue spec;
    ASSERT_EQ(fixture.Feed().GetSymbolProperty(MakeSymbol(kIndex), spec), 1);
    EXPECT_EQ(spec.MarginMode, 1);
    EXPECT_EQ(spec.ContractSize, 300.0f);
    EXPECT_EQ(fixture.Feed().GetSymbolProperty(MakeSymbol(InstrumentKey{2, "rb2510"}), spec), 0);

    std::vector<tagExchangeInfo> exchanges{{99, "stale"}};
    EXPECT_NE(fixture.Feed().GetAllExchanges(exchanges), 0);
    ASSERT_EQ(exchanges.size(), 2u);
    EXPECT_EQ(exchanges[0].ExchangeId, 1u);
    EXPECT_EQ(exchanges[1].Name, "China Financial Futures Exchange");
}

TEST(Instruments, ARefusedFileKeepsTheOldCatalogue) {
    FeedFixture fixture;
    datafeed_test::TempDir dir;
    const std::string path = dir.File("instruments.json");
    datafeed_test::WriteBytes(path, R"({"exchanges": []})");
    EXPECT_THROW(fixture.Feed().LoadInstruments(path), DatafeedError);
    IModuleFutureTrader::ISpecDetailValue spec;
    EXPECT_EQ(fixture.Feed().GetSymbolProperty(MakeSymbol(kRebar), spec), 1);

    datafeed_test::WriteBytes(path, R"({"exchanges": [], "instruments": []})");
    fixture.Feed().LoadInstruments(path);
    EXPECT_EQ(fixture.Feed().GetSymbolProperty(MakeSymbol(kRebar), spec), 0);
}
