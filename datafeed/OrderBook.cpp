#include "datafeed/OrderBook.h"

#include "datafeed/Database.h"

namespace datafeed {
namespace {

constexpr const char* kColumns =
    "id, broker_id, account_id, market_id, code, status, buy_or_sell, order_time, lots, price, "
    "filled_lots, filled_price, entry_or_exit, reserved, tag";

// Open statuses: the paper broker writes only 1, but an order written as 2, 7 or 11 by
// a newer writer is still waiting.
constexpr const char* kOpenCondition = "status IN (1, 2, 7, 11)";

tagBrokerOrder ReadOrder(const Statement& row) {
    tagBrokerOrder order;
    order.ContractNo = std::to_string(row.Int(0));
    order.BrokerId = row.Text(1);
    order.AccountId = row.Text(2);
    order.MarketId = static_cast<uint16_t>(row.Int(3));
    order.Code = row.Text(4);
    order.Status = static_cast<int32_t>(row.Int(5));
    order.BuyOrSell = static_cast<int32_t>(row.Int(6));
    order.OrderTime = static_cast<int32_t>(row.Int(7));
    order.Lots = row.Real(8);
    order.Price = row.Real(9);
    order.FilledLots = row.Real(10);
    order.FilledPrice = row.Real(11);
    order.EntryOrExit = static_cast<int32_t>(row.Int(12));
    order.Reserved = static_cast<int32_t>(row.Int(13));
    order.Tag = row.Text(14);
    return order;
}

}  // namespace

bool IsOpenStatus(int32_t status) {
    return status == 1 || status == 2 || status == 7 || status == 11;
}

int64_t InsertOrder(Database& db, const tagBrokerOrder& order) {
    Statement insert(db,
                     "INSERT INTO orders (broker_id, account_id, market_id, code, status, "
                     "buy_or_sell, order_time, lots, price, filled_lots, filled_price, "
                     "entry_or_exit, reserved, tag) "
                     "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)");
    insert.BindText(1, order.BrokerId).BindText(2, order.AccountId);
    insert.BindInt(3, order.MarketId).BindText(4, order.Code);
    insert.BindInt(5, order.Status).BindInt(6, order.BuyOrSell).BindInt(7, order.OrderTime);
    insert.BindReal(8, order.Lots).BindReal(9, order.Price);
    insert.BindReal(10, order.FilledLots).BindReal(11, order.FilledPrice);
    insert.BindInt(12, order.EntryOrExit).BindInt(13, order.Reserved).BindText(14, order.Tag);
    insert.Run();
    return db.LastInsertId();
}

int64_t OrderIdOf(const std::string& contractNo) {
    // Only the plain decimal form the broker hands out: no sign, blanks or leading zero.
    if (contractNo.empty() || contractNo.size() > 18 || contractNo[0] == '0') return 0;
    int64_t id = 0;
    for (char c : contractNo) {
        if (c < '0' || c > '9') return 0;
        id = id * 10 + (c - '0');
    }
    return id;
}

std::vector<tagBrokerOrder> SelectAccountOrders(Database& db, const AccountKey& account,
                                                const InstrumentKey* instrument, bool openOnly) {
    std::string sql = std::string("SELECT ") + kColumns +
                      " FROM orders WHERE broker_id = ?1 AND account_id = ?2";
    if (instrument != nullptr) sql += " AND market_id = ?3 AND code = ?4";
    if (openOnly) sql += std::string(" AND ") + kOpenCondition;
    sql += " ORDER BY id";
    Statement select(db, sql.c_str());
    select.BindText(1, account.BrokerId).BindText(2, account.AccountId);
    if (instrument != nullptr) select.BindInt(3, instrument->MarketId).BindText(4, instrument->Code);
    std::vector<tagBrokerOrder> orders;
    while (select.Step()) orders.push_back(ReadOrder(select));
    return orders;
}

std::vector<OpenOrder> SelectOpenOrders(Database& db, const InstrumentKey& instrument) {
    const std::string sql = std::string("SELECT ") + kColumns +
                            " FROM orders WHERE market_id = ?1 AND code = ?2 AND " +
                            kOpenCondition + " ORDER BY id";
    Statement select(db, sql.c_str());
    select.BindInt(1, instrument.MarketId).BindText(2, instrument.Code);
    std::vector<OpenOrder> orders;
    while (select.Step()) orders.push_back(OpenOrder{select.Int(0), ReadOrder(select)});
    return orders;
}

bool HasOpenOrders(Database& db, const InstrumentKey& instrument) {
    const std::string sql = std::string("SELECT 1 FROM orders WHERE market_id = ?1 AND code = ?2 "
                                        "AND ") + kOpenCondition + " LIMIT 1";
    Statement select(db, sql.c_str());
    select.BindInt(1, instrument.MarketId).BindText(2, instrument.Code);
    return select.Step();
}

void UpdateOrderState(Database& db, int64_t id, int32_t status, double filledLots,
                      double filledPrice) {
    Statement update(db,
                     "UPDATE orders SET status = ?2, filled_lots = ?3, filled_price = ?4 "
                     "WHERE id = ?1");
    update.BindInt(1, id).BindInt(2, status).BindReal(3, filledLots).BindReal(4, filledPrice);
    update.Run();
}

bool CloseOpenOrder(Database& db, const AccountKey& account, int64_t id, int32_t status) {
    const std::string sql = std::string("UPDATE orders SET status = ?4 WHERE id = ?1 AND "
                                        "broker_id = ?2 AND account_id = ?3 AND ") +
                            kOpenCondition;
    Statement update(db, sql.c_str());
    update.BindInt(1, id).BindText(2, account.BrokerId).BindText(3, account.AccountId);
    update.BindInt(4, status);
    update.Run();
    return db.Changes() == 1;
}

}  // namespace datafeed
