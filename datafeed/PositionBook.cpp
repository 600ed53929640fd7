#include "datafeed/PositionBook.h"

#include "datafeed/Database.h"
#include "datafeed/Valuation.h"

namespace datafeed {
namespace {

// Takes `lots` from today's lots or, for a plain exit, from earlier lots first.
void TakeLots(double& before, double& today, double lots, bool todayOnly) {
    if (!todayOnly) {
        const double fromBefore = lots < before ? lots : before;
        before -= fromBefore;
        lots -= fromBefore;
    }
    today -= lots;
    if (before < kTolerance) before = 0;
    if (today < kTolerance) today = 0;
}

void AddLots(double& today, double& average, double held, double lots, double price) {
    average = (average * held + price * lots) / (held + lots);
    today += lots;
}

}  // namespace

void Holding::RollTo(int32_t today) {
    if (Day == today) return;
    BuyBefore += BuyToday;
    BuyToday = 0;
    SellBefore += SellToday;
    SellToday = 0;
    Day = today;
}

bool LoadHolding(Database& db, const AccountKey& account, const InstrumentKey& instrument,
                 Holding& holding) {
    Statement select(db,
                     "SELECT buy_before, buy_today, buy_avg, sell_before, sell_today, sell_avg, day "
                     "FROM positions WHERE broker_id = ?1 AND account_id = ?2 AND market_id = ?3 "
                     "AND code = ?4");
    select.BindText(1, account.BrokerId).BindText(2, account.AccountId);
    select.BindInt(3, instrument.MarketId).BindText(4, instrument.Code);
    holding = Holding();
    if (!select.Step()) return false;
    holding.BuyBefore = select.Real(0);
    holding.BuyToday = select.Real(1);
    holding.BuyAvg = select.Real(2);
    holding.SellBefore = select.Real(3);
    holding.SellToday = select.Real(4);
    holding.SellAvg = select.Real(5);
    holding.Day = static_cast<int32_t>(select.Int(6));
    return true;
}

void StoreHolding(Database& db, const AccountKey& account, const InstrumentKey& instrument,
                  const Holding& holding) {
    Statement upsert(db,
                     "INSERT OR REPLACE INTO positions (broker_id, account_id, market_id, code, "
                     "buy_before, buy_today, buy_avg, sell_before, sell_today, sell_avg, day) "
                     "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)");
    upsert.BindText(1, account.BrokerId).BindText(2, account.AccountId);
    upsert.BindInt(3, instrument.MarketId).BindText(4, instrument.Code);
    upsert.BindReal(5, holding.BuyBefore).BindReal(6, holding.BuyToday);
    upsert.BindReal(7, holding.BuyAvg).BindReal(8, holding.SellBefore);
    upsert.BindReal(9, holding.SellToday).BindReal(10, holding.SellAvg);
    upsert.BindInt(11, holding.Day);
    upsert.Run();
}

std::vector<std::pair<InstrumentKey, Holding>> LoadHoldings(Database& db,
                                                            const AccountKey& account) {
    Statement select(db,
                     "SELECT market_id, code, buy_before, buy_today, buy_avg, sell_before, "
                     "sell_today, sell_avg, day FROM positions "
                     "WHERE broker_id = ?1 AND account_id = ?2 ORDER BY market_id, code");
    select.BindText(1, account.BrokerId).BindText(2, account.AccountId);
    std::vector<std::pair<InstrumentKey, Holding>> holdings;
    while (select.Step()) {
        InstrumentKey key{static_cast<uint16_t>(select.Int(0)), select.Text(1)};
        Holding holding;
        holding.BuyBefore = select.Real(2);
        holding.BuyToday = select.Real(3);
        holding.BuyAvg = select.Real(4);
        holding.SellBefore = select.Real(5);
        holding.SellToday = select.Real(6);
        holding.SellAvg = select.Real(7);
        holding.Day = static_cast<int32_t>(select.Int(8));
        holdings.emplace_back(std::move(key), holding);
    }
    return holdings;
}

bool BookFill(Holding& holding, int32_t buyOrSell, int32_t entryOrExit, double lots,
              double price, double pointValue, double& realised) {
    const bool buy = buyOrSell == 1;
    if (entryOrExit == 0) {
        if (buy) {
            AddLots(holding.BuyToday, holding.BuyAvg, holding.Buy(), lots, price);
        } else {
            AddLots(holding.SellToday, holding.SellAvg, holding.Sell(), lots, price);
        }
        return true;
    }
    const bool todayOnly = entryOrExit == 2;
    // A sell closes bought lots, a buy closes sold lots.
    double& before = buy ? holding.SellBefore : holding.BuyBefore;
    double& today = buy ? holding.SellToday : holding.BuyToday;
    double& average = buy ? holding.SellAvg : holding.BuyAvg;
    const double closable = todayOnly ? today : before + today;
    if (lots > closable + kTolerance) return false;
    const double move = buy ? average - price : price - average;
    realised += move * pointValue * lots;
    TakeLots(before, today, lots, todayOnly);
    if (before + today < kTolerance) average = 0;
    return true;
}

tagOpenedPosition PositionFigures(const Holding& holding) {
    tagOpenedPosition figures;
    figures.BuyPosition = holding.Buy();
    figures.BuyAvgPrice = holding.BuyAvg;
    figures.TodayBuyPosition = holding.BuyToday;
    figures.SellPosition = holding.Sell();
    figures.SellAvgPrice = holding.SellAvg;
    figures.TodaySellPosition = holding.SellToday;
    figures.TotalPosition = figures.BuyPosition + figures.SellPosition;
    if (figures.TotalPosition > kTolerance) {
        figures.TotalAvgPrice = (figures.BuyPosition * figures.BuyAvgPrice +
                                 figures.SellPosition * figures.SellAvgPrice) /
                                figures.TotalPosition;
    }
    return figures;
}

}  // namespace datafeed
