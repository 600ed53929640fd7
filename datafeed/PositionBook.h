// One account's holding in one instrument, and its rows in the positions table.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "datafeed/InstrumentKey.h"
#include "datafeed/MarketView.h"
#include "host/SubscibeManage.h"

namespace datafeed {

class Database;

// Lots are kept apart by whether they were opened on the holding's day or before it;
// the average prices cover both.
struct Holding {
    double BuyBefore = 0, BuyToday = 0, BuyAvg = 0;
    double SellBefore = 0, SellToday = 0, SellAvg = 0;
    int32_t Day = 0;

    double Buy() const { return BuyBefore + BuyToday; }
    double Sell() const { return SellBefore + SellToday; }
    // On a new day, the lots opened on the old day no longer count as today's.
    void RollTo(int32_t today);
};

// False, and an empty holding, when the account has no row for the instrument.
bool LoadHolding(Database& db, const AccountKey& account, const InstrumentKey& instrument,
                 Holding& holding);
void StoreHolding(Database& db, const AccountKey& account, const InstrumentKey& instrument,
                  const Holding& holding);
std::vector<std::pair<InstrumentKey, Holding>> LoadHoldings(Database& db,
                                                            const AccountKey& account);

// Books one fill. An entry adds lots at the price to its side's average. An exit closes
// the other side: a sell closes bought lots, a buy closes sold lots; "exit today" (2)
// closes only lots opened today, a plain exit (1) closes earlier lots first. Returns
// false, with the holding untouched, when the exit asks for more lots than it may close;
// otherwise adds the realised profit to `realised`.
bool BookFill(Holding& holding, int32_t buyOrSell, int32_t entryOrExit, double lots,
              double price, double pointValue, double& realised);

// The figures the broker reports: each side, today's lots of each side, and the total
// of both sides with its average price.
tagOpenedPosition PositionFigures(const Holding& holding);

}  // namespace datafeed
