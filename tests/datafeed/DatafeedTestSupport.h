// Shared pieces of the datafeed tests: a temporary directory, a small catalogue of
// instruments with round numbers, quotes and orders.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "datafeed/InstrumentFile.h"
#include "datafeed/LocalDataFeed.h"
#include "host/SubscibeManage.h"

namespace datafeed_test {

// A fresh directory under the system's temporary directory, removed with its contents.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::string File(const std::string& name) const;

private:
    std::filesystem::path path_;
};

// Sets TZ for the lifetime of the object and restores the previous value.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone);
    ~ScopedTimeZone();

private:
    bool hadValue_ = false;
    std::string previous_;
};

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);

// Rebar: margin mode 4, ContractUnit 10, BigPointValue 1, MarginRatio 0.125, tick 1.
extern const datafeed::InstrumentKey kRebar;
// Index future: margin mode 1, ContractSize 300, MarginRatio 0.12, tick 0.2.
extern const datafeed::InstrumentKey kIndex;
// Inverse coin contract: margin mode 2, ContractSize 10, MarginRatio 0.02.
extern const datafeed::InstrumentKey kCoin;
// As rebar, but short selling is not allowed.
extern const datafeed::InstrumentKey kNoShort;
// As rebar, but not tradable.
extern const datafeed::InstrumentKey kClosed;

IModuleFutureTrader::ISpecDetailValue RebarSpec();
datafeed::InstrumentCatalogue TestCatalogue();

IModuleFutureTrader::ITickEx MakeQuote(double bid, double ask, double last);

constexpr const char* kBroker = "paper";
constexpr const char* kAccount = "A1";

tagBrokerOrder MakeOrder(int32_t buyOrSell, int32_t entryOrExit, double lots, double price,
                         const datafeed::InstrumentKey& instrument = kRebar);

// 2024-03-01 10:00:00 in Shanghai (UTC+8), and one day later.
constexpr int64_t kDayOne = 1709258400;
constexpr int64_t kDayTwo = kDayOne + 86400;

// A feed over a new database in `dir` with the test catalogue, a fixed clock at
// kDayOne in Shanghai time, and account kBroker/kAccount with the given balance.
class FeedFixture {
public:
    explicit FeedFixture(double balance = 1000000.0);

    datafeed::CLocalDataFeed& Feed() { return *feed_; }
    void SetTime(int64_t seconds) { now_ = seconds; }
    void Reopen();
    std::string DatabasePath() const { return dir_.File("feed.db"); }

private:
    ScopedTimeZone zone_{"Asia/Shanghai"};
    TempDir dir_;
    int64_t now_ = kDayOne;
    std::unique_ptr<datafeed::CLocalDataFeed> feed_;
};

// The account's orders, or its open orders, in the instrument (kBroker/kAccount).
std::vector<tagBrokerOrder> Orders(FeedFixture& fixture,
                                   const datafeed::InstrumentKey& instrument = kRebar);
std::vector<tagBrokerOrder> OpenOrders(FeedFixture& fixture,
                                       const datafeed::InstrumentKey& instrument = kRebar);

}  // namespace datafeed_test
