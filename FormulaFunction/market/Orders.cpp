// The account's orders in the current instrument: counts, lookups, fields by index,
// and sending and cancelling real orders. Only the two counts are cached; every
// lookup and every field asks the broker for the list anew. Orders sent or deleted
// belong to the broker side; nothing of them is kept here.
#include <vector>

#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/InvalidValues.h"
#include "FormulaFunction/market/CachedResults.h"
#include "FormulaFunction/market/ValueIds.h"
#include "FormulaFunction/platform/Platform.h"

using namespace ffmarket;

namespace {

constexpr double kAmountTolerance = 0.0001;

// The order time's local time of day, hour first: 0.HHMMSS.
double OrderTimeOfDay(int32_t seconds) {
    ffplatform::LocalTime local;
    if (!ffplatform::ToLocalTime(seconds, local)) return ff::kInvalidNumeric;
    return local.hour * 0.01 + local.minute * 0.0001 + local.second * 0.000001;
}

}  // namespace

// The account's orders in the current instrument, all of them or the open ones
// only, in the broker's order. Asks the broker; no precondition is checked here.
bool CSystemFuncs::ListOrders(bool openOnly, std::vector<tagBrokerOrder>& orders) {
    tagSymbol symbol;
    if (!CurrentSymbol(symbol) || g_pSubscribeManage == nullptr) return false;
    const std::string& broker = m_pBaseData->BrokerId;
    const std::string& account = m_pBaseData->AccountId;
    const int result = openOnly ? g_pSubscribeManage->GetOpenOrders(orders, broker, account, symbol)
                                : g_pSubscribeManage->GetOrders(orders, broker, account, symbol);
    return result != 0;
}

bool CSystemFuncs::GetOrderCountValue(int32_t valueId, tagKelDataType& value) {
    std::vector<tagBrokerOrder> orders;
    if (!ListOrders(valueId == kOpenOrderCount, orders)) return false;
    value.nType = KelInteger;
    value.nValue = static_cast<int32_t>(orders.size());
    return true;
}

int32_t CSystemFuncs::A_GetOrderCount() {
    return LongOf(InstrumentAccountValue("Data%d.A_GetOrderCount", kOrderCount,
                                         &CSystemFuncs::GetOrderCountValue));
}

int32_t CSystemFuncs::A_GetOpenOrderCount() {
    return LongOf(InstrumentAccountValue("Data%d.A_GetOpenOrderCount", kOpenOrderCount,
                                         &CSystemFuncs::GetOrderCountValue));
}

// The 1-based place in the list of the latest order of the given side and kind:
// only order times above 0 count, and of equal times the first in the list wins.
// The invalid integer when nothing matches or the list cannot be had.
int32_t CSystemFuncs::LastOrderIndex(bool openOnly, int32_t buyOrSell, int32_t entryOrExit) {
    if (!InstrumentAccountReady()) return ff::kInvalidInteger;
    std::vector<tagBrokerOrder> orders;
    if (!ListOrders(openOnly, orders)) return ff::kInvalidInteger;
    int32_t found = ff::kInvalidInteger;
    int32_t latest = 0;
    for (size_t i = 0; i < orders.size(); ++i) {
        const tagBrokerOrder& order = orders[i];
        if (order.BuyOrSell != buyOrSell || order.EntryOrExit != entryOrExit) continue;
        if (order.OrderTime > latest) {
            latest = order.OrderTime;
            found = static_cast<int32_t>(i + 1);
        }
    }
    return found;
}

int32_t CSystemFuncs::A_GetLastOrderIndex(int32_t buyOrSell, int32_t entryOrExit) {
    return LastOrderIndex(false, buyOrSell, entryOrExit);
}

int32_t CSystemFuncs::A_GetLastOpenOrderIndex(int32_t buyOrSell, int32_t entryOrExit) {
    return LastOrderIndex(true, buyOrSell, entryOrExit);
}

// Copies the order at 1-based `index` of a fresh list into `order`; index 0 means
// the last order. False for an empty list, an index beyond the count or below 0.
bool CSystemFuncs::OrderByIndex(bool openOnly, int32_t index, tagBrokerOrder& order) {
    if (!InstrumentAccountReady()) return false;
    std::vector<tagBrokerOrder> orders;
    if (!ListOrders(openOnly, orders)) return false;
    if (index < 0) return false;
    const size_t count = orders.size();
    const size_t place = index == 0 ? count : static_cast<size_t>(index);
    if (count == 0 || place > count) return false;
    order = orders[place - 1];
    return true;
}

namespace {

// One field of the order at `index`, or `invalid` when there is none.
template <typename T>
T FieldOf(bool found, const tagBrokerOrder& order, T tagBrokerOrder::*field, T invalid) {
    return found ? order.*field : invalid;
}

}  // namespace

int32_t CSystemFuncs::A_OrderStatus(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::Status, ff::kInvalidInteger);
}

std::string CSystemFuncs::A_OrderContractNo(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::ContractNo, std::string());
}

int32_t CSystemFuncs::A_OrderBuyOrSell(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::BuyOrSell,
                   ff::kInvalidInteger);
}

int32_t CSystemFuncs::A_OrderEntryOrExit(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::EntryOrExit,
                   ff::kInvalidInteger);
}

double CSystemFuncs::A_OrderTime(int32_t index) {
    tagBrokerOrder o;
    return OrderByIndex(false, index, o) ? OrderTimeOfDay(o.OrderTime) : ff::kInvalidNumeric;
}

double CSystemFuncs::A_OrderLot(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::Lots, ff::kInvalidNumeric);
}

double CSystemFuncs::A_OrderPrice(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::Price, ff::kInvalidNumeric);
}

double CSystemFuncs::A_OrderFilledLot(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::FilledLots,
                   ff::kInvalidNumeric);
}

double CSystemFuncs::A_OrderFilledPrice(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(false, index, o), o, &tagBrokerOrder::FilledPrice,
                   ff::kInvalidNumeric);
}

// The part of a canceled order that was never filled; status 6 counts as canceled
// too. 0 for an order in any other state.
double CSystemFuncs::A_OrderCanceledLot(int32_t index) {
    tagBrokerOrder o;
    if (!OrderByIndex(false, index, o)) return ff::kInvalidNumeric;
    if (o.Status != 4 && o.Status != 6) return 0.0;
    return o.Lots - o.FilledLots;
}

int32_t CSystemFuncs::A_OpenOrderStatus(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::Status, ff::kInvalidInteger);
}

std::string CSystemFuncs::A_OpenOrderContractNo(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::ContractNo, std::string());
}

int32_t CSystemFuncs::A_OpenOrderBuyOrSell(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::BuyOrSell,
                   ff::kInvalidInteger);
}

int32_t CSystemFuncs::A_OpenOrderEntryOrExit(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::EntryOrExit,
                   ff::kInvalidInteger);
}

double CSystemFuncs::A_OpenOrderTime(int32_t index) {
    tagBrokerOrder o;
    return OrderByIndex(true, index, o) ? OrderTimeOfDay(o.OrderTime) : ff::kInvalidNumeric;
}

double CSystemFuncs::A_OpenOrderLot(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::Lots, ff::kInvalidNumeric);
}

double CSystemFuncs::A_OpenOrderPrice(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::Price, ff::kInvalidNumeric);
}

double CSystemFuncs::A_OpenOrderFilledLot(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::FilledLots,
                   ff::kInvalidNumeric);
}

double CSystemFuncs::A_OpenOrderFilledPrice(int32_t index) {
    tagBrokerOrder o;
    return FieldOf(OrderByIndex(true, index, o), o, &tagBrokerOrder::FilledPrice,
                   ff::kInvalidNumeric);
}

// Sends a real order for the current instrument. Orders go out only on the newest
// bar, so history never sends one, but nothing stops several orders on that bar.
// The price is put on the tick (up for a buy, down for a sell) and, on a bar of
// today, held to the exchange's limits. A limit counts whenever it is above 0.0001,
// invalid or not: without a quote the lower limit's invalid value lifts the price
// up to it.
bool CSystemFuncs::A_SendOrder(int32_t buyOrSell, int32_t entryOrExit, double lots,
                               double price) {
    if (!InstrumentAccountReady()) return false;
    if (!CanTrade()) return false;
    if (buyOrSell != Enum_Buy() && buyOrSell != Enum_Sell()) return false;
    if (entryOrExit != Enum_Entry() && entryOrExit != Enum_Exit() &&
        entryOrExit != Enum_ExitToday())
        return false;
    if (!(lots > kAmountTolerance) || !(price > kAmountTolerance)) return false;

    GetValidPrice(buyOrSell == Enum_Buy(), price);
    if (Date() == CurrentDate()) {
        const double upper = Q_UpperLimit();
        if (upper > kAmountTolerance && upper < price) price = upper;
        const double lower = Q_LowerLimit();
        if (lower > kAmountTolerance && lower > price) price = lower;
    }

    tagSymbol symbol;
    if (!CurrentSymbol(symbol) || g_pSubscribeManage == nullptr) return false;
    tagBrokerOrder order;
    order.BrokerId = m_pBaseData->BrokerId;
    order.AccountId = m_pBaseData->AccountId;
    order.MarketId = symbol.MarketId;
    order.Code = symbol.Code;
    order.Status = 0;
    order.BuyOrSell = buyOrSell;
    order.OrderTime = GetServerTime();
    order.Lots = lots;
    order.Price = price;
    order.EntryOrExit = entryOrExit;
    order.Reserved = 0;
    order.Tag = "A_SendOrder";
    return g_pSubscribeManage->SendOrder(order) != 0;
}

// Cancels one order by its contract number, or with an empty number every open
// order of the instrument, front to back; the cancellations' own results are not
// looked at then, and the answer is true once the open orders could be listed.
bool CSystemFuncs::A_DeleteOrder(const std::string& contractNo) {
    if (!InstrumentAccountReady() || g_pSubscribeManage == nullptr) return false;
    const std::string& broker = m_pBaseData->BrokerId;
    const std::string& account = m_pBaseData->AccountId;
    if (!contractNo.empty()) return g_pSubscribeManage->DeleteOrder(broker, account, contractNo) != 0;

    std::vector<tagBrokerOrder> orders;
    if (!ListOrders(true, orders)) return false;
    for (const tagBrokerOrder& order : orders)
        g_pSubscribeManage->DeleteOrder(broker, account, order.ContractNo);
    return true;
}
