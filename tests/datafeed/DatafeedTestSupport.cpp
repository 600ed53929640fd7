#include "DatafeedTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace datafeed_test {

using datafeed::InstrumentKey;

const InstrumentKey kRebar{1, "rb2510"};
const InstrumentKey kIndex{4, "IF2509"};
const InstrumentKey kCoin{9, "BTC-26SEP25"};
const InstrumentKey kNoShort{1, "noshort"};
const InstrumentKey kClosed{1, "closed"};

TempDir::TempDir() {
    std::random_device seed;
    std::mt19937_64 generator(seed());
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::filesystem::path candidate =
            base / ("ff-datafeed-" + std::to_string(generator()));
        if (std::filesystem::create_directory(candidate)) {
            path_ = candidate;
            return;
        }
    }
    throw std::runtime_error("cannot create a temporary directory");
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::File(const std::string& name) const {
    return (path_ / name).string();
}

ScopedTimeZone::ScopedTimeZone(const char* zone) {
    if (const char* old = std::getenv("TZ")) {
        hadValue_ = true;
        previous_ = old;
    }
    setenv("TZ", zone, 1);
    tzset();
}

ScopedTimeZone::~ScopedTimeZone() {
    if (hadValue_) {
        setenv("TZ", previous_.c_str(), 1);
    } else {
        unsetenv("TZ");
    }
    tzset();
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

IModuleFutureTrader::ISpecDetailValue RebarSpec() {
    IModuleFutureTrader::ISpecDetailValue spec;
    spec.SymbolType = 1;
    spec.ExchangeId = 1;
    spec.SymbolName = "Rebar 2510";
    spec.CurrencySymbol = "CNY";
    spec.CurrencyName = "Chinese Yuan";
    spec.CanTrade = 1;
    spec.TradePermissions = 3;
    spec.ShortTradeBits = 12;
    spec.PriceScale = 1;
    spec.MinMove = 1;
    spec.BigPointValue = 1;
    spec.BidAskSize = 1;
    spec.ContractUnit = 10;
    spec.MaxSingleTradeSize = 500;
    spec.MarginRatio = 0.125f;
    spec.ExpiredDate = "20251015";
    spec.MarginMode = 4;
    spec.ContractSize = 10;
    return spec;
}

datafeed::InstrumentCatalogue TestCatalogue() {
    datafeed::InstrumentCatalogue catalogue;
    catalogue.Exchanges = {{1, "Shanghai Futures Exchange"}, {4, "China Financial Futures Exchange"}};
    catalogue.Instruments[kRebar] = RebarSpec();

    IModuleFutureTrader::ISpecDetailValue index = RebarSpec();
    index.ExchangeId = 4;
    index.MarginMode = 1;
    index.ContractSize = 300;
    index.ContractUnit = 300;
    index.MarginRatio = 0.125f;
    index.PriceScale = 0.1f;
    index.MinMove = 2;
    catalogue.Instruments[kIndex] = index;

    IModuleFutureTrader::ISpecDetailValue coin = RebarSpec();
    coin.ExchangeId = 9;
    coin.MarginMode = 2;
    coin.ContractSize = 10;
    coin.ContractUnit = 1;
    coin.BigPointValue = 0.5f;
    coin.MarginRatio = 0.25f;
    catalogue.Instruments[kCoin] = coin;

    IModuleFutureTrader::ISpecDetailValue noShort = RebarSpec();
    noShort.ShortTradeBits = 3;
    catalogue.Instruments[kNoShort] = noShort;

    IModuleFutureTrader::ISpecDetailValue closed = RebarSpec();
    closed.CanTrade = 0;
    catalogue.Instruments[kClosed] = closed;
    return catalogue;
}

IModuleFutureTrader::ITickEx MakeQuote(double bid, double ask, double last) {
    IModuleFutureTrader::ITickEx tick;
    tick.Time = kDayOne * 1000;
    tick.BidPrice = bid;
    tick.AskPrice = ask;
    tick.Last = last;
    return tick;
}

tagBrokerOrder MakeOrder(int32_t buyOrSell, int32_t entryOrExit, double lots, double price,
                         const InstrumentKey& instrument) {
    tagBrokerOrder order;
    order.BrokerId = kBroker;
    order.AccountId = kAccount;
    order.MarketId = instrument.MarketId;
    order.Code = instrument.Code;
    order.BuyOrSell = buyOrSell;
    order.EntryOrExit = entryOrExit;
    order.Lots = lots;
    order.Price = price;
    order.OrderTime = 1709258400;
    order.Tag = "A_SendOrder";
    return order;
}

std::vector<tagBrokerOrder> Orders(FeedFixture& fixture, const InstrumentKey& instrument) {
    std::vector<tagBrokerOrder> orders;
    if (fixture.Feed().GetOrders(orders, kBroker, kAccount, datafeed::MakeSymbol(instrument)) == 0) {
        ADD_FAILURE() << "the order list was refused";
    }
    return orders;
}

std::vector<tagBrokerOrder> OpenOrders(FeedFixture& fixture, const InstrumentKey& instrument) {
    std::vector<tagBrokerOrder> orders;
    if (fixture.Feed().GetOpenOrders(orders, kBroker, kAccount,
                                     datafeed::MakeSymbol(instrument)) == 0) {
        ADD_FAILURE() << "the open order list was refused";
    }
    return orders;
}

FeedFixture::FeedFixture(double balance) {
    Reopen();
    if (!feed_->SetStartingBalance(kBroker, kAccount, balance)) {
        throw std::runtime_error("cannot set up the test account");
    }
}

void FeedFixture::Reopen() {
    feed_.reset();
    feed_ = std::make_unique<datafeed::CLocalDataFeed>(DatabasePath());
    feed_->SetInstruments(TestCatalogue());
    feed_->SetClock([this] { return now_; });
}

}  // namespace datafeed_test
