#include "datafeed/PaperBroker.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "datafeed/AccountBook.h"
#include "datafeed/Database.h"
#include "datafeed/OrderBook.h"
#include "datafeed/PositionBook.h"
#include "datafeed/Valuation.h"

namespace datafeed {
namespace {

bool Positive(double value) {
    return std::isfinite(value) && value > kTolerance;
}

bool WellFormed(const tagBrokerOrder& order) {
    return !order.BrokerId.empty() && !order.AccountId.empty() &&
           (order.BuyOrSell == 1 || order.BuyOrSell == 2) && order.EntryOrExit >= 0 &&
           order.EntryOrExit <= 2 && Positive(order.Lots) && Positive(order.Price);
}

int32_t SecondsAsInt32(int64_t seconds) {
    if (seconds > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    if (seconds < 0) return 0;
    return static_cast<int32_t>(seconds);
}

}  // namespace

bool PaperBroker::SetStartingBalance(const AccountKey& account, double balance,
                                     const MarketView& market) {
    if (account.BrokerId.empty() || account.AccountId.empty() || !std::isfinite(balance)) {
        return false;
    }
    Transaction transaction(db_, Transaction::Write);
    AccountState state;
    LoadAccount(db_, account, state);
    state.RollTo(market.Today);
    state.StartingBalance = balance;
    StoreAccount(db_, account, state);
    transaction.Commit();
    return true;
}

bool PaperBroker::AccountSummary(const AccountKey& account, const MarketView& market,
                                 tagAccountSummary& summary) {
    Transaction transaction(db_, Transaction::Read);
    AccountState state;
    if (!LoadAccount(db_, account, state)) return false;
    state.RollTo(market.Today);
    summary = SummariseAccount(db_, account, state, market);
    return true;
}

bool PaperBroker::Position(const AccountKey& account, const InstrumentKey& instrument,
                           const MarketView& market, tagOpenedPosition& position) {
    if (market.Instruments.Find(instrument) == nullptr) return false;
    Transaction transaction(db_, Transaction::Read);
    AccountState state;
    if (!LoadAccount(db_, account, state)) return false;
    Holding holding;
    LoadHolding(db_, account, instrument, holding);
    holding.RollTo(market.Today);
    position = PositionFigures(holding);
    return true;
}

bool PaperBroker::Orders(const AccountKey& account, const InstrumentKey& instrument,
                         const MarketView& market, bool openOnly,
                         std::vector<tagBrokerOrder>& orders) {
    orders.clear();
    if (market.Instruments.Find(instrument) == nullptr) return false;
    Transaction transaction(db_, Transaction::Read);
    AccountState state;
    if (!LoadAccount(db_, account, state)) return false;
    orders = SelectAccountOrders(db_, account, &instrument, openOnly);
    return true;
}

// An order is refused, and nothing is written, when a field is out of range, the
// instrument is unknown or not tradable, it opens a short position in an instrument that
// may not be sold short, the account is unknown, an entry needs more margin than is free,
// or an exit asks for more lots than are held and not already being closed by other open
// exit orders.
bool PaperBroker::Send(tagBrokerOrder& order, const MarketView& market) {
    if (!WellFormed(order)) return false;
    const InstrumentKey instrument{order.MarketId, order.Code};
    const IModuleFutureTrader::ISpecDetailValue* spec = market.Instruments.Find(instrument);
    if (spec == nullptr || spec->CanTrade == 0) return false;
    if (order.EntryOrExit == 0 && order.BuyOrSell == 2 && (spec->ShortTradeBits & 0xC) == 0) {
        return false;
    }
    const AccountKey account{order.BrokerId, order.AccountId};
    Transaction transaction(db_, Transaction::Write);
    AccountState state;
    if (!LoadAccount(db_, account, state)) return false;
    state.RollTo(market.Today);
    if (!Acceptable(order, *spec, account, state, market)) return false;

    tagBrokerOrder accepted = order;
    accepted.Status = kStatusDeclared;
    accepted.FilledLots = 0;
    accepted.FilledPrice = 0;
    if (accepted.OrderTime <= 0) accepted.OrderTime = SecondsAsInt32(market.Now);
    const int64_t id = InsertOrder(db_, accepted);
    accepted.ContractNo = std::to_string(id);
    double price = 0;
    if (FillPrice(market.Quotes.Find(instrument), accepted.BuyOrSell == 1, accepted.Price, price)) {
        Fill(id, accepted, price, market);
    }
    transaction.Commit();
    order = accepted;
    return true;
}

bool PaperBroker::Acceptable(const tagBrokerOrder& order,
                             const IModuleFutureTrader::ISpecDetailValue& spec,
                             const AccountKey& account, const AccountState& state,
                             const MarketView& market) {
    if (order.EntryOrExit == 0) {
        const tagAccountSummary summary = SummariseAccount(db_, account, state, market);
        return MarginOf(spec, order.Lots, order.Price) <= summary.FreeMargin + kTolerance;
    }
    const InstrumentKey instrument{order.MarketId, order.Code};
    Holding holding;
    LoadHolding(db_, account, instrument, holding);
    holding.RollTo(market.Today);
    const bool buy = order.BuyOrSell == 1;
    const double held = buy ? holding.Sell() : holding.Buy();
    const double heldToday = buy ? holding.SellToday : holding.BuyToday;
    double pending = 0;
    double pendingToday = 0;
    for (const tagBrokerOrder& open : SelectAccountOrders(db_, account, &instrument, true)) {
        if (open.EntryOrExit == 0 || open.BuyOrSell != order.BuyOrSell) continue;
        const double remaining = open.Lots - open.FilledLots;
        pending += remaining;
        if (open.EntryOrExit == 2) pendingToday += remaining;
    }
    if (order.Lots > held - pending + kTolerance) return false;
    return order.EntryOrExit != 2 || order.Lots <= heldToday - pendingToday + kTolerance;
}

// Books the unfilled lots of the order at the price. An exit that can no longer be
// covered (an "exit today" order whose lots became earlier lots on a new day) is
// deleted instead.
void PaperBroker::Fill(int64_t id, tagBrokerOrder& order, double price,
                       const MarketView& market) {
    const AccountKey account{order.BrokerId, order.AccountId};
    const InstrumentKey instrument{order.MarketId, order.Code};
    const IModuleFutureTrader::ISpecDetailValue* spec = market.Instruments.Find(instrument);
    AccountState state;
    Holding holding;
    LoadHolding(db_, account, instrument, holding);
    holding.RollTo(market.Today);
    const double lots = order.Lots - order.FilledLots;
    double realised = 0;
    if (spec == nullptr || !LoadAccount(db_, account, state) ||
        !BookFill(holding, order.BuyOrSell, order.EntryOrExit, lots, price, PointValue(*spec),
                  realised)) {
        order.Status = kStatusDeleted;
        UpdateOrderState(db_, id, order.Status, order.FilledLots, order.FilledPrice);
        return;
    }
    state.RollTo(market.Today);
    state.RealisedToday += realised;
    StoreHolding(db_, account, instrument, holding);
    StoreAccount(db_, account, state);
    order.FilledPrice = (order.FilledPrice * order.FilledLots + price * lots) / order.Lots;
    order.FilledLots = order.Lots;
    order.Status = kStatusFilled;
    UpdateOrderState(db_, id, order.Status, order.FilledLots, order.FilledPrice);
}

bool PaperBroker::Cancel(const AccountKey& account, const std::string& contractNo) {
    const int64_t id = OrderIdOf(contractNo);
    if (id == 0) return false;
    Transaction transaction(db_, Transaction::Write);
    const bool canceled = CloseOpenOrder(db_, account, id, kStatusCanceled);
    transaction.Commit();
    return canceled;
}

void PaperBroker::Match(const InstrumentKey& instrument, const MarketView& market) {
    const IModuleFutureTrader::ITickEx* quote = market.Quotes.Find(instrument);
    if (quote == nullptr || market.Instruments.Find(instrument) == nullptr) return;
    if (!HasOpenOrders(db_, instrument)) return;
    Transaction transaction(db_, Transaction::Write);
    for (OpenOrder& open : SelectOpenOrders(db_, instrument)) {
        double price = 0;
        if (FillPrice(quote, open.Order.BuyOrSell == 1, open.Order.Price, price)) {
            Fill(open.Id, open.Order, price, market);
        }
    }
    transaction.Commit();
}

}  // namespace datafeed
