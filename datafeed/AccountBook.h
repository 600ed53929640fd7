// The accounts table and the money summary of one account.
#pragma once

#include <cstdint>

#include "datafeed/MarketView.h"
#include "host/SubscibeManage.h"

namespace datafeed {

class Database;

// Realised profit is split into the part booked before the account's day and the part
// booked on it, so that the previous day's equity stays known.
struct AccountState {
    double StartingBalance = 0;
    double RealisedBefore = 0;
    double RealisedToday = 0;
    int32_t Day = 0;

    void RollTo(int32_t today);
};

// False when the account was never set up.
bool LoadAccount(Database& db, const AccountKey& account, AccountState& state);
void StoreAccount(Database& db, const AccountKey& account, const AccountState& state);

// The account's money at the current quotes (the state must be rolled to today):
// previous equity = starting balance + profit realised before today;
// profit and loss = profit realised today + floating profit of every open position;
// current equity = previous equity + profit and loss;
// buy and sell margin = margin of the open positions at their average prices;
// buy and sell freeze = margin of the unfilled lots of open entry orders at their prices;
// free margin = current equity - both margins - both freezes; no deposits or drawings.
// A position of an instrument missing from the catalogue counts for nothing; one without
// a usable quote has no floating profit.
tagAccountSummary SummariseAccount(Database& db, const AccountKey& account,
                                   const AccountState& state, const MarketView& market);

}  // namespace datafeed
