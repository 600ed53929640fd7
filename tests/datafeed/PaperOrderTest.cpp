#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

#include "DatafeedTestSupport.h"

using datafeed::InstrumentKey;
using datafeed::MakeSymbol;
using datafeed_test::FeedFixture;
using datafeed_test::kAccount;
using datafeed_test::kBroker;
using datafeed_test::kClosed;
using datafeed_test::kIndex;
using datafeed_test::kNoShort;
using datafeed_test::kRebar;
using datafeed_test::MakeOrder;
using datafeed_test::MakeQuote;
using datafeed_test::OpenOrders;
using datafeed_test::Orders;

namespace {

int Send(FeedFixture& fixture, tagBrokerOrder order) {
    return fixture.Feed().SendOrder(order);
}

}  // namespace

TEST(PaperOrders, BuyAtOrAboveTheAskFillsAtTheAsk) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3001));
    tagBrokerOrder order = MakeOrder(1, 0, 2, 3005);
    ASSERT_EQ(fixture.Feed().SendOrder(order), 1);
    EXPECT_EQ(order.ContractNo, "1");
    EXPECT_EQ(order.Status, 3);
    EXPECT_EQ(order.FilledLots, 2);
    EXPECT_EQ(order.FilledPrice, 3000);

    const std::vector<tagBrokerOrder> orders = Orders(fixture);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].BrokerId, kBroker);
    EXPECT_EQ(orders[0].AccountId, kAccount);
    EXPECT_EQ(orders[0].MarketId, kRebar.MarketId);
    EXPECT_EQ(orders[0].Code, kRebar.Code);
    EXPECT_EQ(orders[0].ContractNo, "1");
    EXPECT_EQ(orders[0].Status, 3);
    EXPECT_EQ(orders[0].BuyOrSell, 1);
    EXPECT_EQ(orders[0].OrderTime, 1709258400);
    EXPECT_EQ(orders[0].Lots, 2);
    EXPECT_EQ(orders[0].Price, 3005);
    EXPECT_EQ(orders[0].FilledLots, 2);
    EXPECT_EQ(orders[0].FilledPrice, 3000);
    EXPECT_EQ(orders[0].EntryOrExit, 0);
    EXPECT_EQ(orders[0].Reserved, 0);
    EXPECT_EQ(orders[0].Tag, "A_SendOrder");
    EXPECT_TRUE(OpenOrders(fixture).empty());
}

TEST(PaperOrders, BuyAtTheAskExactlyFills) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3001));
    tagBrokerOrder order = MakeOrder(1, 0, 1, 3000);
    ASSERT_EQ(fixture.Feed().SendOrder(order), 1);
    EXPECT_EQ(order.Status, 3);
    EXPECT_EQ(order.FilledPrice, 3000);
}

TEST(PaperOrders, BuyBelowTheAskStaysOpen) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 2999));
    tagBrokerOrder order = MakeOrder(1, 0, 1, 2999);
    ASSERT_EQ(fixture.Feed().SendOrder(order), 1);
    EXPECT_EQ(order.Status, 1);
    EXPECT_EQ(order.FilledLots, 0);
    const std::vector<tagBrokerOrder> open = OpenOrders(fixture);
    ASSERT_EQ(open.size(), 1u);
    EXPECT_EQ(open[0].ContractNo, order.ContractNo);
    EXPECT_EQ(open[0].Status, 1);
}

TEST(PaperOrders, SellAtOrBelowTheBidFillsAtTheBid) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3001));
    tagBrokerOrder low = MakeOrder(2, 0, 1, 2990);
    ASSERT_EQ(fixture.Feed().SendOrder(low), 1);
    EXPECT_EQ(low.Status, 3);
    EXPECT_EQ(low.FilledPrice, 2999);
    tagBrokerOrder atBid = MakeOrder(2, 0, 1, 2999);
    ASSERT_EQ(fixture.Feed().SendOrder(atBid), 1);
    EXPECT_EQ(atBid.Status, 3);
    tagBrokerOrder above = MakeOrder(2, 0, 1, 3000);
    ASSERT_EQ(fixture.Feed().SendOrder(above), 1);
    EXPECT_EQ(above.Status, 1);
}

TEST(PaperOrders, TheLastPriceStandsInForAnEmptySide) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(0, 0, 3001));
    tagBrokerOrder buy = MakeOrder(1, 0, 1, 3001);
    ASSERT_EQ(fixture.Feed().SendOrder(buy), 1);
    EXPECT_EQ(buy.Status, 3);
    EXPECT_EQ(buy.FilledPrice, 3001);
    tagBrokerOrder buyLow = MakeOrder(1, 0, 1, 3000);
    ASSERT_EQ(fixture.Feed().SendOrder(buyLow), 1);
    EXPECT_EQ(buyLow.Status, 1);
    tagBrokerOrder sell = MakeOrder(2, 0, 1, 3001);
    ASSERT_EQ(fixture.Feed().SendOrder(sell), 1);
    EXPECT_EQ(sell.Status, 3);
    EXPECT_EQ(sell.FilledPrice, 3001);
    tagBrokerOrder sellHigh = MakeOrder(2, 0, 1, 3002);
    ASSERT_EQ(fixture.Feed().SendOrder(sellHigh), 1);
    EXPECT_EQ(sellHigh.Status, 1);
}

TEST(PaperOrders, WithoutAnyQuoteOrdersStayOpen) {
    FeedFixture fixture;
    tagBrokerOrder order = MakeOrder(1, 0, 1, 3500);
    ASSERT_EQ(fixture.Feed().SendOrder(order), 1);
    EXPECT_EQ(order.Status, 1);
    fixture.Feed().SetQuote(kRebar, MakeQuote(0, 0, 0));
    EXPECT_EQ(OpenOrders(fixture).size(), 1u);
}

TEST(PaperOrders, ANewQuoteFillsTheOrdersItMakesMarketable) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3000));
    tagBrokerOrder buy = MakeOrder(1, 0, 1, 2995);
    tagBrokerOrder deepBuy = MakeOrder(1, 0, 1, 2980);
    ASSERT_EQ(fixture.Feed().SendOrder(buy), 1);
    ASSERT_EQ(fixture.Feed().SendOrder(deepBuy), 1);
    EXPECT_TRUE(fixture.Feed().SetQuote(kRebar, MakeQuote(2992, 2993, 2993)));
    const std::vector<tagBrokerOrder> orders = Orders(fixture);
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_EQ(orders[0].Status, 3);
    EXPECT_EQ(orders[0].FilledPrice, 2993);
    EXPECT_EQ(orders[1].Status, 1);
    tagOpenedPosition position;
    ASSERT_EQ(fixture.Feed().GetPosition(position, kBroker, kAccount, MakeSymbol(kRebar)), 1);
    EXPECT_EQ(position.BuyPosition, 1);
    EXPECT_EQ(position.BuyAvgPrice, 2993);
}

TEST(PaperOrders, ContractNumbersAreNewForEveryOrderAndListedInSubmissionOrder) {
    FeedFixture fixture;
    std::set<std::string> numbers;
    for (int i = 0; i < 5; ++i) {
        tagBrokerOrder order = MakeOrder(1, 0, 1, 2000 + i, i % 2 == 0 ? kRebar : kIndex);
        ASSERT_EQ(fixture.Feed().SendOrder(order), 1);
        EXPECT_TRUE(numbers.insert(order.ContractNo).second);
    }
    const std::vector<tagBrokerOrder> rebar = Orders(fixture);
    ASSERT_EQ(rebar.size(), 3u);
    EXPECT_EQ(rebar[0].Price, 2000);
    EXPECT_EQ(rebar[1].Price, 2002);
    EXPECT_EQ(rebar[2].Price, 2004);
    EXPECT_EQ(rebar[0].ContractNo, "1");
    EXPECT_EQ(rebar[2].ContractNo, "5");
    EXPECT_EQ(Orders(fixture, kIndex).size(), 2u);
}

TEST(PaperOrders, OrderTimeIsTheClockWhenNotGiven) {
    FeedFixture fixture;
    fixture.SetTime(1709260000);
    tagBrokerOrder order = MakeOrder(1, 0, 1, 2000);
    order.OrderTime = 0;
    ASSERT_EQ(fixture.Feed().SendOrder(order), 1);
    EXPECT_EQ(order.OrderTime, 1709260000);
    EXPECT_EQ(Orders(fixture)[0].OrderTime, 1709260000);
}

TEST(PaperOrders, MalformedOrdersAreRefusedAndNotRecorded) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3000));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Send(fixture, MakeOrder(3, 0, 1, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(0, 0, 1, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 3, 1, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, -1, 1, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 0.00005, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, -1, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, nan, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, 0)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, nan)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, inf)), 0);
    tagBrokerOrder noBroker = MakeOrder(1, 0, 1, 3000);
    noBroker.BrokerId.clear();
    EXPECT_EQ(Send(fixture, noBroker), 0);
    tagBrokerOrder unknownAccount = MakeOrder(1, 0, 1, 3000);
    unknownAccount.AccountId = "nobody";
    EXPECT_EQ(Send(fixture, unknownAccount), 0);
    EXPECT_TRUE(Orders(fixture).empty());
}

TEST(PaperOrders, UnknownInstrumentAnswersZero) {
    FeedFixture fixture;
    const InstrumentKey unknown{1, "zz9999"};
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, 3000, unknown)), 0);
    std::vector<tagBrokerOrder> orders;
    EXPECT_EQ(fixture.Feed().GetOrders(orders, kBroker, kAccount, MakeSymbol(unknown)), 0);
    EXPECT_EQ(fixture.Feed().GetOpenOrders(orders, kBroker, kAccount, MakeSymbol(unknown)), 0);
    tagOpenedPosition position;
    EXPECT_EQ(fixture.Feed().GetPosition(position, kBroker, kAccount, MakeSymbol(unknown)), 0);
}

TEST(PaperOrders, UnknownAccountAnswersZero) {
    FeedFixture fixture;
    std::vector<tagBrokerOrder> orders;
    EXPECT_EQ(fixture.Feed().GetOrders(orders, kBroker, "nobody", MakeSymbol(kRebar)), 0);
    EXPECT_EQ(fixture.Feed().GetOpenOrders(orders, "other", kAccount, MakeSymbol(kRebar)), 0);
    tagOpenedPosition position;
    EXPECT_EQ(fixture.Feed().GetPosition(position, kBroker, "nobody", MakeSymbol(kRebar)), 0);
    tagAccountSummary summary;
    EXPECT_EQ(fixture.Feed().GetAccountSummary(summary, kBroker, "nobody"), 0);
}

TEST(PaperOrders, InstrumentsThatMayNotTradeRefuseOrders) {
    FeedFixture fixture;
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, 3000, kClosed)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(2, 0, 1, 3000, kNoShort)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, 3000, kNoShort)), 1);
    EXPECT_TRUE(Orders(fixture, kClosed).empty());
    ASSERT_EQ(Orders(fixture, kNoShort).size(), 1u);
}

TEST(PaperOrders, EitherShortBitAllowsShortEntries) {
    FeedFixture fixture;
    datafeed::InstrumentCatalogue catalogue = datafeed_test::TestCatalogue();
    catalogue.Instruments[kNoShort].ShortTradeBits = 0x4;
    catalogue.Instruments[kClosed].CanTrade = 1;
    catalogue.Instruments[kClosed].ShortTradeBits = 0x8;
    fixture.Feed().SetInstruments(catalogue);
    EXPECT_EQ(Send(fixture, MakeOrder(2, 0, 1, 3000, kNoShort)), 1);
    EXPECT_EQ(Send(fixture, MakeOrder(2, 0, 1, 3000, kClosed)), 1);
}

TEST(PaperOrders, DeleteCancelsOnlyAnOpenOrderOfTheAccount) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3000));
    tagBrokerOrder open = MakeOrder(1, 0, 3, 2990);
    tagBrokerOrder filled = MakeOrder(1, 0, 1, 3000);
    ASSERT_EQ(fixture.Feed().SendOrder(open), 1);
    ASSERT_EQ(fixture.Feed().SendOrder(filled), 1);
    ASSERT_TRUE(fixture.Feed().SetStartingBalance(kBroker, "B2", 1e6));

    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, "B2", open.ContractNo), 0);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, filled.ContractNo), 0);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, "999"), 0);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, ""), 0);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, "abc"), 0);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, "0" + open.ContractNo), 0);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, "99999999999999999999999"), 0);
    EXPECT_EQ(OpenOrders(fixture).size(), 1u);

    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, open.ContractNo), 1);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, open.ContractNo), 0);
    EXPECT_TRUE(OpenOrders(fixture).empty());
    const std::vector<tagBrokerOrder> orders = Orders(fixture);
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_EQ(orders[0].Status, 4);
    EXPECT_EQ(orders[0].Lots, 3);
    EXPECT_EQ(orders[0].FilledLots, 0);
    // A canceled order does not fill when the market comes to it.
    fixture.Feed().SetQuote(kRebar, MakeQuote(2980, 2981, 2981));
    EXPECT_EQ(Orders(fixture)[0].Status, 4);
}

TEST(PaperOrders, AccountsDoNotSeeEachOthersOrders) {
    FeedFixture fixture;
    ASSERT_TRUE(fixture.Feed().SetStartingBalance(kBroker, "B2", 1e6));
    tagBrokerOrder mine = MakeOrder(1, 0, 1, 2000);
    tagBrokerOrder theirs = MakeOrder(1, 0, 1, 2001);
    theirs.AccountId = "B2";
    ASSERT_EQ(fixture.Feed().SendOrder(mine), 1);
    ASSERT_EQ(fixture.Feed().SendOrder(theirs), 1);
    const std::vector<tagBrokerOrder> orders = Orders(fixture);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].Price, 2000);
    std::vector<tagBrokerOrder> other;
    ASSERT_EQ(fixture.Feed().GetOrders(other, kBroker, "B2", MakeSymbol(kRebar)), 1);
    ASSERT_EQ(other.size(), 1u);
    EXPECT_EQ(other[0].ContractNo, "2");
}

TEST(PaperOrders, ListsArePassedBackWithoutStaleEntries) {
    FeedFixture fixture;
    std::vector<tagBrokerOrder> orders(3);
    ASSERT_EQ(fixture.Feed().GetOrders(orders, kBroker, kAccount, MakeSymbol(kRebar)), 1);
    EXPECT_TRUE(orders.empty());
}
