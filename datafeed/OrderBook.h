// The orders table: every order ever accepted, in submission order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "datafeed/InstrumentKey.h"
#include "datafeed/MarketView.h"
#include "host/SubscibeManage.h"

namespace datafeed {

class Database;

// Order status codes.
constexpr int32_t kStatusDeclared = 1;    // accepted, waiting for a fill
constexpr int32_t kStatusPartFilled = 2;  // never set by the paper broker: fills are whole
constexpr int32_t kStatusFilled = 3;
constexpr int32_t kStatusCanceled = 4;    // canceled at the account's request
constexpr int32_t kStatusDeleted = 5;     // removed by the broker: it could no longer fill

bool IsOpenStatus(int32_t status);

// Inserts the order and returns its id; its contract number is the id in decimal.
int64_t InsertOrder(Database& db, const tagBrokerOrder& order);

// The id a contract number stands for, or 0 when the text is not one.
int64_t OrderIdOf(const std::string& contractNo);

// The account's orders in submission order, of one instrument or (null) of all.
std::vector<tagBrokerOrder> SelectAccountOrders(Database& db, const AccountKey& account,
                                                const InstrumentKey* instrument, bool openOnly);

struct OpenOrder {
    int64_t Id = 0;
    tagBrokerOrder Order;
};
// The open orders of every account in one instrument, in submission order.
std::vector<OpenOrder> SelectOpenOrders(Database& db, const InstrumentKey& instrument);
bool HasOpenOrders(Database& db, const InstrumentKey& instrument);

void UpdateOrderState(Database& db, int64_t id, int32_t status, double filledLots,
                      double filledPrice);

// Sets the status of the account's open order; false when it has no such open order.
bool CloseOpenOrder(Database& db, const AccountKey& account, int64_t id, int32_t status);

}  // namespace datafeed
