// CSubscibeManage for hosts without the platform's market-data and brokerage library:
// instruments from a JSON file, quotes that the host sets, and a configuration table
// and paper broker kept in one SQLite database file that several processes may share.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "datafeed/InstrumentFile.h"
#include "datafeed/InstrumentKey.h"
#include "datafeed/QuoteBoard.h"
#include "host/KelTypes.h"
#include "host/SubscibeManage.h"

namespace datafeed {

class ConfigStore;
class Database;
class PaperBroker;
struct MarketView;

class CLocalDataFeed final : public CSubscibeManage {
public:
    // Opens or creates the database. Throws DatafeedError, naming the file, when it
    // cannot be opened or is not a sound datafeed database; such a file is not written.
    explicit CLocalDataFeed(const std::string& databasePath);
    ~CLocalDataFeed() override;
    CLocalDataFeed(const CLocalDataFeed&) = delete;
    CLocalDataFeed& operator=(const CLocalDataFeed&) = delete;

    // Replaces the instruments and exchanges. The file form throws DatafeedError and
    // keeps the old catalogue when the file is refused.
    void LoadInstruments(const std::string& path);
    void SetInstruments(InstrumentCatalogue catalogue);

    // Sets the current quote of a known instrument and then fills the open orders it
    // makes marketable. False for an unknown instrument (nothing set) or when the fills
    // could not be written (the quote is set; LastError says why).
    bool SetQuote(const InstrumentKey& instrument, const IModuleFutureTrader::ITickEx& tick);
    bool SetQuoteFromBar(const InstrumentKey& instrument, const BarRecord& newestBar);
    // Sets every quote of the file. Throws DatafeedError, and sets none, when the file is
    // refused or names an unknown instrument.
    void LoadQuotes(const std::string& path);

    // Sets up a paper account or changes its starting balance.
    bool SetStartingBalance(const std::string& brokerId, const std::string& accountId,
                            double balance);

    // The clock that stamps orders and decides which day is today (seconds since
    // 1970-01-01 UTC); the system clock unless set. A backtest sets it to its bar times.
    void SetClock(std::function<int64_t()> clock);

    // The message of the last failure that an operation could only answer with 0.
    std::string LastError() const;

    int GetSymbolProperty(const tagSymbol& symbol,
                          IModuleFutureTrader::ISpecDetailValue& spec) override;
    int GetAllExchanges(std::vector<tagExchangeInfo>& exchanges) override;
    int GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) override;
    int GetAccountSummary(tagAccountSummary& summary, const std::string& brokerId,
                          const std::string& accountId) override;
    int GetPosition(tagOpenedPosition& position, const std::string& brokerId,
                    const std::string& accountId, const tagSymbol& symbol) override;
    int GetOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                  const std::string& accountId, const tagSymbol& symbol) override;
    int GetOpenOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                      const std::string& accountId, const tagSymbol& symbol) override;
    int SendOrder(tagBrokerOrder& order) override;
    int DeleteOrder(const std::string& brokerId, const std::string& accountId,
                    const std::string& contractNo) override;
    bool GetConfigFileProperty(const std::string& table, const std::string& section,
                               const std::string& key, std::string& value) override;
    void SetConfigFileProperty(const std::string& table, const std::string& section,
                               const std::string& key, const std::string& value) override;

private:
    MarketView Market() const;
    bool MatchLocked(const InstrumentKey& instrument);
    // Runs a database operation; a failure is kept in LastError and answered with
    // `failed`, since the operations of CSubscibeManage report nothing but 0.
    template <typename Result, typename Operation>
    Result Guarded(Result failed, Operation operation);

    mutable std::mutex mutex_;
    std::unique_ptr<Database> db_;
    std::unique_ptr<ConfigStore> config_;
    std::unique_ptr<PaperBroker> broker_;
    InstrumentCatalogue instruments_;
    QuoteBoard quotes_;
    std::function<int64_t()> clock_;
    std::string lastError_;
};

}  // namespace datafeed
