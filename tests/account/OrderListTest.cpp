// The account's orders in the instrument: counts, the latest order of a kind, and
// the fields of an order by its place in the list.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "support/LiveMarketFixture.h"
#include "support/TimeZone.h"

namespace {

class OrderList : public LiveMarketFixture {
protected:
    void SetUp() override {
        LiveMarketFixture::SetUp();
        // Open statuses are 1 and 2; orders 1, 3 and 5 of the instrument are open.
        fake.OpenStatuses = {1, 2};
        Add("C1", 1, 1, 0, 1269479103, 3, 3001, 0, 0);
        Add("C2", 3, 2, 1, 1269479200, 2, 3010, 2, 3009);
        Add("C3", 2, 1, 0, 1269479300, 5, 3002, 1, 3002);
        Add("C4", 4, 2, 0, 1269479250, 6, 3020, 2, 3020);
        Add("C5", 1, 1, 2, 1269479400, 1, 3003, 0, 0);
        Add("X1", 1, 1, 0, 1269479999, 1, 1, 0, 0, "hc2405");  // another instrument
    }

    void Add(const std::string& contract, int32_t status, int32_t buyOrSell, int32_t entryOrExit,
             int32_t time, double lots, double price, double filledLots, double filledPrice,
             const std::string& code = "rb2405") {
        tagBrokerOrder o;
        o.BrokerId = fake.BrokerId;
        o.AccountId = fake.AccountId;
        o.MarketId = kMarket;
        o.Code = code;
        o.ContractNo = contract;
        o.Status = status;
        o.BuyOrSell = buyOrSell;
        o.OrderTime = time;
        o.Lots = lots;
        o.Price = price;
        o.FilledLots = filledLots;
        o.FilledPrice = filledPrice;
        o.EntryOrExit = entryOrExit;
        fake.Orders.push_back(o);
    }
};

TEST_F(OrderList, CountsOfAllAndOfOpenOrders) {
    EXPECT_EQ(funcs.A_GetOrderCount(), 5);
    EXPECT_EQ(funcs.A_GetOpenOrderCount(), 3);
    ASSERT_EQ(funcs.PropertyCache.count("Data0.A_GetOrderCount"), 1u);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.A_GetOrderCount").nType, 10);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.A_GetOpenOrderCount").nValue, 3);
}

TEST_F(OrderList, CountsAreCachedOnceFetched) {
    EXPECT_EQ(funcs.A_GetOrderCount(), 5);
    Add("C6", 1, 1, 0, 1269479500, 1, 3000, 0, 0);
    EXPECT_EQ(funcs.A_GetOrderCount(), 5);
    EXPECT_EQ(fake.calls.GetOrders, 1);
}

TEST_F(OrderList, AFailedListCachesNothingAndIsRetried) {
    fake.OrdersOk = false;
    EXPECT_EQ(funcs.A_GetOrderCount(), kInvalidInt);
    EXPECT_EQ(funcs.A_GetOpenOrderCount(), kInvalidInt);
    EXPECT_EQ(funcs.A_GetOrderCount(), kInvalidInt);
    EXPECT_EQ(fake.calls.GetOrders, 2);
    EXPECT_EQ(fake.calls.GetOpenOrders, 1);
    EXPECT_TRUE(funcs.PropertyCache.empty());
    fake.OrdersOk = true;
    EXPECT_EQ(funcs.A_GetOrderCount(), 5);
}

TEST_F(OrderList, CountsAreKeptPerDataSource) {
    AddSecondSource("hc2405");
    EXPECT_EQ(funcs.A_GetOrderCount(), 5);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.A_GetOrderCount(), 1);
    EXPECT_EQ(funcs.PropertyCache.at("Data1.A_GetOrderCount").nValue, 1);
}

TEST_F(OrderList, NothingOnAHistoryBarOrWithoutAnAccount) {
    data.CurrentBar = 0;
    EXPECT_EQ(funcs.A_GetOrderCount(), kInvalidInt);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderStatus(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderContractNo(1), "");
    data.CurrentBar = kLastBar;
    data.AccountId.clear();
    EXPECT_EQ(funcs.A_GetOpenOrderCount(), kInvalidInt);
    EXPECT_EQ(funcs.A_GetLastOpenOrderIndex(1, 0), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderLot(1), kInvalid);
    data.AccountId = fake.AccountId;
    data.DataIndex = 2;
    EXPECT_EQ(funcs.A_GetOrderCount(), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderPrice(1), kInvalid);
    EXPECT_EQ(fake.calls.GetOrders + fake.calls.GetOpenOrders, 0);
}

TEST_F(OrderList, NothingWithoutTheLibraryOrAHostObject) {
    g_pSubscribeManage = nullptr;
    EXPECT_EQ(funcs.A_GetOrderCount(), kInvalidInt);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderStatus(0), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderContractNo(0), "");
    EXPECT_EQ(funcs.A_OpenOrderTime(0), kInvalid);
    CSystemFuncs none(nullptr);
    EXPECT_EQ(none.A_GetOpenOrderCount(), kInvalidInt);
    EXPECT_EQ(none.A_OrderCanceledLot(1), kInvalid);
}

// Buy entries are orders 1 and 3; the later time wins.
TEST_F(OrderList, LastOrderIndexFindsTheLatestMatchingOrder) {
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), 3);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(2, 1), 2);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(2, 0), 4);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 2), 5);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(2, 2), kInvalidInt);  // no such order
}

TEST_F(OrderList, LastOrderIndexKeepsTheFirstOfEqualTimes) {
    fake.Orders[2].OrderTime = fake.Orders[0].OrderTime;
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), 1);
    Add("C6", 1, 1, 0, fake.Orders[0].OrderTime, 1, 3000, 0, 0);
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), 1);
}

TEST_F(OrderList, LastOrderIndexIgnoresTimesNotAboveZero) {
    fake.Orders[0].OrderTime = 0;
    fake.Orders[2].OrderTime = -5;
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), kInvalidInt);
    fake.Orders[0].OrderTime = 1;
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), 1);
}

TEST_F(OrderList, LastOrderIndexAsksEveryTime) {
    funcs.A_GetLastOrderIndex(1, 0);
    funcs.A_GetLastOrderIndex(1, 0);
    funcs.A_GetLastOpenOrderIndex(1, 0);
    EXPECT_EQ(fake.calls.GetOrders, 2);
    EXPECT_EQ(fake.calls.GetOpenOrders, 1);
    EXPECT_TRUE(funcs.PropertyCache.empty());
    fake.OrdersOk = false;
    EXPECT_EQ(funcs.A_GetLastOrderIndex(1, 0), kInvalidInt);
    EXPECT_EQ(funcs.A_GetLastOpenOrderIndex(1, 0), kInvalidInt);
}

// The open list is C1, C3, C5: places count within that list.
TEST_F(OrderList, LastOpenOrderIndexCountsInTheOpenList) {
    EXPECT_EQ(funcs.A_GetLastOpenOrderIndex(1, 0), 2);
    EXPECT_EQ(funcs.A_GetLastOpenOrderIndex(1, 2), 3);
    EXPECT_EQ(funcs.A_GetLastOpenOrderIndex(2, 1), kInvalidInt);
}

TEST_F(OrderList, FieldsOfAnOrderByPlace) {
    EXPECT_EQ(funcs.A_OrderStatus(2), 3);
    EXPECT_EQ(funcs.A_OrderContractNo(2), "C2");
    EXPECT_EQ(funcs.A_OrderBuyOrSell(2), 2);
    EXPECT_EQ(funcs.A_OrderEntryOrExit(2), 1);
    EXPECT_EQ(funcs.A_OrderLot(2), 2.0);
    EXPECT_EQ(funcs.A_OrderPrice(2), 3010.0);
    EXPECT_EQ(funcs.A_OrderFilledLot(2), 2.0);
    EXPECT_EQ(funcs.A_OrderFilledPrice(2), 3009.0);
    EXPECT_EQ(funcs.A_OrderCanceledLot(2), 0.0);
    EXPECT_EQ(fake.calls.GetOrders, 9);
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST_F(OrderList, FieldsOfAnOpenOrderByPlace) {
    EXPECT_EQ(funcs.A_OpenOrderStatus(2), 2);
    EXPECT_EQ(funcs.A_OpenOrderContractNo(2), "C3");
    EXPECT_EQ(funcs.A_OpenOrderBuyOrSell(2), 1);
    EXPECT_EQ(funcs.A_OpenOrderEntryOrExit(3), 2);
    EXPECT_EQ(funcs.A_OpenOrderLot(2), 5.0);
    EXPECT_EQ(funcs.A_OpenOrderPrice(2), 3002.0);
    EXPECT_EQ(funcs.A_OpenOrderFilledLot(2), 1.0);
    EXPECT_EQ(funcs.A_OpenOrderFilledPrice(2), 3002.0);
    EXPECT_EQ(fake.calls.GetOpenOrders, 8);
}

TEST_F(OrderList, PlaceZeroIsTheLastOrder) {
    EXPECT_EQ(funcs.A_OrderStatus(0), 1);
    EXPECT_EQ(funcs.A_OrderContractNo(0), "C5");
    EXPECT_EQ(funcs.A_OpenOrderContractNo(0), "C5");
    EXPECT_EQ(funcs.A_OrderStatus(5), 1);
    EXPECT_EQ(funcs.A_OrderContractNo(1), "C1");
}

TEST_F(OrderList, APlaceBeyondTheCountOrBelowZeroIsInvalid) {
    EXPECT_EQ(funcs.A_OrderStatus(6), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderStatus(4), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderContractNo(6), "");
    EXPECT_EQ(funcs.A_OrderTime(6), kInvalid);
    EXPECT_EQ(funcs.A_OrderLot(-1), kInvalid);
    EXPECT_EQ(funcs.A_OrderStatus(-1), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderBuyOrSell(-2147483647 - 1), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderCanceledLot(2147483647), kInvalid);
}

TEST_F(OrderList, AnEmptyListHasNoOrderAtAnyPlace) {
    fake.Orders.clear();
    EXPECT_EQ(funcs.A_OrderStatus(0), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderStatus(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderFilledPrice(0), kInvalid);
    EXPECT_EQ(funcs.A_GetOrderCount(), 0);
}

TEST_F(OrderList, AFailedListHasNoFields) {
    fake.OrdersOk = false;
    EXPECT_EQ(funcs.A_OrderStatus(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderContractNo(1), "");
    EXPECT_EQ(funcs.A_OrderBuyOrSell(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderEntryOrExit(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OrderTime(1), kInvalid);
    EXPECT_EQ(funcs.A_OrderLot(1), kInvalid);
    EXPECT_EQ(funcs.A_OrderPrice(1), kInvalid);
    EXPECT_EQ(funcs.A_OrderFilledLot(1), kInvalid);
    EXPECT_EQ(funcs.A_OrderFilledPrice(1), kInvalid);
    EXPECT_EQ(funcs.A_OrderCanceledLot(1), kInvalid);
    EXPECT_EQ(funcs.A_OpenOrderStatus(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderContractNo(1), "");
    EXPECT_EQ(funcs.A_OpenOrderBuyOrSell(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderEntryOrExit(1), kInvalidInt);
    EXPECT_EQ(funcs.A_OpenOrderTime(1), kInvalid);
    EXPECT_EQ(funcs.A_OpenOrderLot(1), kInvalid);
    EXPECT_EQ(funcs.A_OpenOrderPrice(1), kInvalid);
    EXPECT_EQ(funcs.A_OpenOrderFilledLot(1), kInvalid);
    EXPECT_EQ(funcs.A_OpenOrderFilledPrice(1), kInvalid);
}

// Canceled (4) and status 6 report the unfilled lots; any other status 0.
TEST_F(OrderList, CanceledLotsOfCanceledOrders) {
    EXPECT_EQ(funcs.A_OrderCanceledLot(4), 6.0 - 2.0);
    fake.Orders[3].Status = 6;
    EXPECT_EQ(funcs.A_OrderCanceledLot(4), 4.0);
    fake.Orders[3].Status = 5;
    EXPECT_EQ(funcs.A_OrderCanceledLot(4), 0.0);
    fake.Orders[3].Status = 7;
    EXPECT_EQ(funcs.A_OrderCanceledLot(4), 0.0);
    EXPECT_EQ(funcs.A_OrderCanceledLot(3), 0.0);
}

// 1269479103 is 2010-03-25 01:05:03 UTC: 21:05:03 in New York, 09:05:03 in Shanghai.
TEST_F(OrderList, OrderTimeIsTheLocalTimeOfDayInNewYork) {
    fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
    EXPECT_EQ(funcs.A_OrderTime(1), 21 * 0.01 + 5 * 0.0001 + 3 * 0.000001);
    EXPECT_EQ(funcs.A_OpenOrderTime(1), 21 * 0.01 + 5 * 0.0001 + 3 * 0.000001);
}

TEST_F(OrderList, OrderTimeIsTheLocalTimeOfDayInShanghai) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    EXPECT_EQ(funcs.A_OrderTime(1), 9 * 0.01 + 5 * 0.0001 + 3 * 0.000001);
    EXPECT_EQ(funcs.A_OrderTime(5), 9 * 0.01 + 10 * 0.0001 + 0 * 0.000001);  // 01:10:00 UTC
}

// The hour is added first: for 01:10:01 that sum differs in its last bit from the
// sum that starts with the second.
TEST_F(OrderList, OrderTimeSumsFromTheHour) {
    fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
    fake.Orders[0].OrderTime = 1269450601;  // 2010-03-24 17:10:01 UTC
    const double fromHour = 1 * 0.01 + 10 * 0.0001 + 1 * 0.000001;
    const double fromSecond = 1 * 0.000001 + 1 * 0.01 + 10 * 0.0001;
    ASSERT_NE(fromHour, fromSecond);
    EXPECT_EQ(funcs.A_OrderTime(1), fromHour);
}

}  // namespace
