// A simulated broker over the database: accounts with a starting balance, orders that
// fill against the current quote, positions and realised profit. Every change is one
// write transaction, so no other connection ever sees half of it.
#pragma once

#include <string>
#include <vector>

#include "datafeed/MarketView.h"
#include "host/SubscibeManage.h"

namespace datafeed {

class Database;
struct AccountState;

class PaperBroker {
public:
    explicit PaperBroker(Database& db) : db_(db) {}

    // Sets up the account, or changes its starting balance; profit booked so far stays.
    // False for an empty broker or account id or a balance that is not a finite number.
    bool SetStartingBalance(const AccountKey& account, double balance, const MarketView& market);

    // Each returns false when the account or the instrument is unknown.
    bool AccountSummary(const AccountKey& account, const MarketView& market,
                        tagAccountSummary& summary);
    bool Position(const AccountKey& account, const InstrumentKey& instrument,
                  const MarketView& market, tagOpenedPosition& position);
    bool Orders(const AccountKey& account, const InstrumentKey& instrument,
                const MarketView& market, bool openOnly, std::vector<tagBrokerOrder>& orders);

    // Accepts the order and fills it at once when it is marketable; see the .cpp for the
    // reasons it refuses one. On acceptance the record gets its contract number, status,
    // order time and fill.
    bool Send(tagBrokerOrder& order, const MarketView& market);
    // Cancels the account's open order; false when there is none with that number.
    bool Cancel(const AccountKey& account, const std::string& contractNo);
    // Fills every open order of the instrument that the current quote makes marketable.
    void Match(const InstrumentKey& instrument, const MarketView& market);

private:
    bool Acceptable(const tagBrokerOrder& order, const IModuleFutureTrader::ISpecDetailValue& spec,
                    const AccountKey& account, const AccountState& state,
                    const MarketView& market);
    void Fill(int64_t id, tagBrokerOrder& order, double price, const MarketView& market);

    Database& db_;
};

}  // namespace datafeed
