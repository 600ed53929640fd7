#include "datafeed/AccountBook.h"

#include "datafeed/Database.h"
#include "datafeed/OrderBook.h"
#include "datafeed/PositionBook.h"
#include "datafeed/Valuation.h"

namespace datafeed {

void AccountState::RollTo(int32_t today) {
    if (Day == today) return;
    RealisedBefore += RealisedToday;
    RealisedToday = 0;
    Day = today;
}

bool LoadAccount(Database& db, const AccountKey& account, AccountState& state) {
    Statement select(db,
                     "SELECT starting_balance, realised_before, realised_today, day FROM accounts "
                     "WHERE broker_id = ?1 AND account_id = ?2");
    select.BindText(1, account.BrokerId).BindText(2, account.AccountId);
    state = AccountState();
    if (!select.Step()) return false;
    state.StartingBalance = select.Real(0);
    state.RealisedBefore = select.Real(1);
    state.RealisedToday = select.Real(2);
    state.Day = static_cast<int32_t>(select.Int(3));
    return true;
}

void StoreAccount(Database& db, const AccountKey& account, const AccountState& state) {
    Statement upsert(db,
                     "INSERT OR REPLACE INTO accounts (broker_id, account_id, starting_balance, "
                     "realised_before, realised_today, day) VALUES (?1, ?2, ?3, ?4, ?5, ?6)");
    upsert.BindText(1, account.BrokerId).BindText(2, account.AccountId);
    upsert.BindReal(3, state.StartingBalance).BindReal(4, state.RealisedBefore);
    upsert.BindReal(5, state.RealisedToday).BindInt(6, state.Day);
    upsert.Run();
}

tagAccountSummary SummariseAccount(Database& db, const AccountKey& account,
                                   const AccountState& state, const MarketView& market) {
    tagAccountSummary summary;
    double floating = 0;
    for (auto& [instrument, holding] : LoadHoldings(db, account)) {
        const IModuleFutureTrader::ISpecDetailValue* spec = market.Instruments.Find(instrument);
        if (spec == nullptr) continue;
        holding.RollTo(market.Today);
        const IModuleFutureTrader::ITickEx* quote = market.Quotes.Find(instrument);
        const double pointValue = PointValue(*spec);
        if (holding.Buy() > kTolerance) {
            summary.BuyMargin += MarginOf(*spec, holding.Buy(), holding.BuyAvg);
            const double mark = MarkPrice(quote, true);
            if (mark > 0) floating += (mark - holding.BuyAvg) * pointValue * holding.Buy();
        }
        if (holding.Sell() > kTolerance) {
            summary.SellMargin += MarginOf(*spec, holding.Sell(), holding.SellAvg);
            const double mark = MarkPrice(quote, false);
            if (mark > 0) floating += (holding.SellAvg - mark) * pointValue * holding.Sell();
        }
    }
    for (const tagBrokerOrder& order : SelectAccountOrders(db, account, nullptr, true)) {
        if (order.EntryOrExit != 0) continue;
        const IModuleFutureTrader::ISpecDetailValue* spec =
            market.Instruments.Find(InstrumentKey{order.MarketId, order.Code});
        if (spec == nullptr) continue;
        const double frozen = MarginOf(*spec, order.Lots - order.FilledLots, order.Price);
        (order.BuyOrSell == 1 ? summary.BuyFreeze : summary.SellFreeze) += frozen;
    }
    summary.PreviousEquity = state.StartingBalance + state.RealisedBefore;
    summary.ProfitLoss = state.RealisedToday + floating;
    summary.CurrentEquity = summary.PreviousEquity + summary.ProfitLoss;
    summary.FreeMargin = summary.CurrentEquity - summary.BuyMargin - summary.SellMargin -
                         summary.BuyFreeze - summary.SellFreeze;
    return summary;
}

}  // namespace datafeed
