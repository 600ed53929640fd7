#include <gtest/gtest.h>

#include <limits>

#include "DatafeedTestSupport.h"

using datafeed::InstrumentKey;
using datafeed::MakeSymbol;
using datafeed_test::FeedFixture;
using datafeed_test::kAccount;
using datafeed_test::kBroker;
using datafeed_test::kCoin;
using datafeed_test::kDayOne;
using datafeed_test::kDayTwo;
using datafeed_test::kIndex;
using datafeed_test::kRebar;
using datafeed_test::MakeOrder;
using datafeed_test::MakeQuote;
using datafeed_test::OpenOrders;
using datafeed_test::Orders;

namespace {

tagOpenedPosition PositionOf(FeedFixture& fixture, const InstrumentKey& instrument = kRebar) {
    tagOpenedPosition position;
    EXPECT_EQ(fixture.Feed().GetPosition(position, kBroker, kAccount, MakeSymbol(instrument)), 1);
    return position;
}

tagAccountSummary SummaryOf(FeedFixture& fixture) {
    tagAccountSummary summary;
    EXPECT_EQ(fixture.Feed().GetAccountSummary(summary, kBroker, kAccount), 1);
    return summary;
}

// Sends an order that must be accepted and returns it as the broker left it.
tagBrokerOrder Accepted(FeedFixture& fixture, tagBrokerOrder order) {
    EXPECT_EQ(fixture.Feed().SendOrder(order), 1);
    return order;
}

int Send(FeedFixture& fixture, tagBrokerOrder order) {
    return fixture.Feed().SendOrder(order);
}

}  // namespace

TEST(PaperPositions, EntriesAverageTheirPrices) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(2999, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 2, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3029, 3030, 3030));
    Accepted(fixture, MakeOrder(1, 0, 1, 3030));
    const tagOpenedPosition position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 3);
    EXPECT_EQ(position.BuyAvgPrice, 3010);
    EXPECT_EQ(position.TodayBuyPosition, 3);
    EXPECT_EQ(position.SellPosition, 0);
    EXPECT_EQ(position.SellAvgPrice, 0);
    EXPECT_EQ(position.TotalPosition, 3);
    EXPECT_EQ(position.TotalAvgPrice, 3010);
}

TEST(PaperPositions, NoPositionIsAllZero) {
    FeedFixture fixture;
    const tagOpenedPosition position = PositionOf(fixture, kIndex);
    EXPECT_EQ(position.BuyPosition, 0);
    EXPECT_EQ(position.TotalPosition, 0);
    EXPECT_EQ(position.TotalAvgPrice, 0);
}

TEST(PaperPositions, BothSidesAreHeldApartAndTotalled) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 1, 3000));
    Accepted(fixture, MakeOrder(2, 0, 3, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3040, 3040, 3040));
    Accepted(fixture, MakeOrder(2, 0, 1, 3040));
    const tagOpenedPosition position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 1);
    EXPECT_EQ(position.SellPosition, 4);
    EXPECT_EQ(position.SellAvgPrice, 3010);
    EXPECT_EQ(position.TodaySellPosition, 4);
    EXPECT_EQ(position.TotalPosition, 5);
    EXPECT_EQ(position.TotalAvgPrice, 3008);
}

TEST(PaperPositions, ASellExitClosesBoughtLotsAndRealisesProfit) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 3, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3040, 3041, 3040));
    const tagBrokerOrder exit = Accepted(fixture, MakeOrder(2, 1, 1, 3040));
    EXPECT_EQ(exit.Status, 3);
    const tagOpenedPosition position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 2);
    EXPECT_EQ(position.BuyAvgPrice, 3000);
    EXPECT_EQ(position.SellPosition, 0);

    // Realised (3040 - 3000) x 10 x 1 x 1 = 400; floating at the bid (3040 - 3000) x 10 x 2.
    const tagAccountSummary summary = SummaryOf(fixture);
    EXPECT_EQ(summary.PreviousEquity, 100000);
    EXPECT_EQ(summary.ProfitLoss, 400 + 800);
    EXPECT_EQ(summary.CurrentEquity, 101200);
}

TEST(PaperPositions, ABuyExitClosesSoldLotsAndRealisesProfit) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(2, 0, 2, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3019, 3020, 3020));
    Accepted(fixture, MakeOrder(1, 1, 2, 3020));
    const tagOpenedPosition position = PositionOf(fixture);
    EXPECT_EQ(position.SellPosition, 0);
    EXPECT_EQ(position.SellAvgPrice, 0);
    EXPECT_EQ(SummaryOf(fixture).ProfitLoss, -400);
    EXPECT_EQ(SummaryOf(fixture).CurrentEquity, 99600);
}

TEST(PaperPositions, AnExitCannotCloseMoreThanIsHeldAndNotAlreadyBeingClosed) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    EXPECT_EQ(Send(fixture, MakeOrder(2, 1, 1, 3000)), 0);
    Accepted(fixture, MakeOrder(1, 0, 3, 3000));
    EXPECT_EQ(Send(fixture, MakeOrder(2, 1, 4, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(1, 1, 1, 3000)), 0);  // nothing sold to buy back
    // An exit above the bid stays open and holds its lots.
    const tagBrokerOrder pending = Accepted(fixture, MakeOrder(2, 1, 2, 3100));
    EXPECT_EQ(pending.Status, 1);
    EXPECT_EQ(Send(fixture, MakeOrder(2, 1, 2, 3000)), 0);
    EXPECT_EQ(Accepted(fixture, MakeOrder(2, 1, 1, 3000)).Status, 3);
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, pending.ContractNo), 1);
    EXPECT_EQ(Accepted(fixture, MakeOrder(2, 1, 2, 3000)).Status, 3);
    EXPECT_EQ(PositionOf(fixture).BuyPosition, 0);
    EXPECT_EQ(Orders(fixture).size(), 4u);
}

TEST(PaperPositions, TodaysLotsBecomeEarlierLotsOnANewDay) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 2, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3010, 3010, 3010));
    Accepted(fixture, MakeOrder(2, 1, 1, 3010));
    EXPECT_EQ(SummaryOf(fixture).ProfitLoss, 100 + 100);

    fixture.SetTime(kDayTwo);
    tagOpenedPosition position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 1);
    EXPECT_EQ(position.TodayBuyPosition, 0);
    tagAccountSummary summary = SummaryOf(fixture);
    EXPECT_EQ(summary.PreviousEquity, 100100);
    EXPECT_EQ(summary.ProfitLoss, 100);

    Accepted(fixture, MakeOrder(1, 0, 1, 3010));
    position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 2);
    EXPECT_EQ(position.TodayBuyPosition, 1);
    EXPECT_EQ(position.BuyAvgPrice, 3005);
}

TEST(PaperPositions, ExitTodayClosesOnlyTodaysLotsAndAPlainExitTakesEarlierLotsFirst) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 2, 3000));
    fixture.SetTime(kDayTwo);
    Accepted(fixture, MakeOrder(1, 0, 1, 3000));
    EXPECT_EQ(Send(fixture, MakeOrder(2, 2, 2, 3000)), 0);
    Accepted(fixture, MakeOrder(2, 1, 1, 3000));
    tagOpenedPosition position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 2);
    EXPECT_EQ(position.TodayBuyPosition, 1);
    Accepted(fixture, MakeOrder(2, 2, 1, 3000));
    position = PositionOf(fixture);
    EXPECT_EQ(position.BuyPosition, 1);
    EXPECT_EQ(position.TodayBuyPosition, 0);
    EXPECT_EQ(Send(fixture, MakeOrder(2, 2, 1, 3000)), 0);
}

TEST(PaperPositions, AnExitTodayOrderLeftOpenOverNightIsDeletedWhenItWouldFill) {
    FeedFixture fixture;
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 1, 3000));
    const tagBrokerOrder exit = Accepted(fixture, MakeOrder(2, 2, 1, 3050));
    EXPECT_EQ(exit.Status, 1);
    fixture.SetTime(kDayTwo);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3060, 3061, 3060));
    const std::vector<tagBrokerOrder> orders = Orders(fixture);
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_EQ(orders[1].Status, 5);
    EXPECT_EQ(orders[1].FilledLots, 0);
    EXPECT_EQ(PositionOf(fixture).BuyPosition, 1);
}

TEST(PaperPositions, TheDayFollowsTheLocalCalendar) {
    // 2024-03-01 23:30 in Shanghai is still 10:30 that day in New York; half an hour
    // later it is the next day in Shanghai only.
    const int64_t lateInShanghai = 1709307000;
    FeedFixture fixture;
    fixture.SetTime(lateInShanghai);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 1, 3000));
    fixture.SetTime(lateInShanghai + 3600);
    EXPECT_EQ(PositionOf(fixture).TodayBuyPosition, 0);
    {
        datafeed_test::ScopedTimeZone newYork("America/New_York");
        EXPECT_EQ(PositionOf(fixture).TodayBuyPosition, 1);
    }
}

TEST(PaperAccount, MarginAndFloatingProfitFollowTheMarginMode) {
    FeedFixture fixture(1000000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    fixture.Feed().SetQuote(kIndex, MakeQuote(3900, 3900, 3900));
    fixture.Feed().SetQuote(kCoin, MakeQuote(60000, 60000, 60000));
    Accepted(fixture, MakeOrder(1, 0, 2, 3000));          // mode 4
    Accepted(fixture, MakeOrder(2, 0, 1, 3900, kIndex));  // mode 1
    Accepted(fixture, MakeOrder(1, 0, 4, 60000, kCoin));  // mode 2
    tagAccountSummary summary = SummaryOf(fixture);
    // 10 x 0.125 x 1 x 2 x 3000 + 10 x 0.25 x 4
    EXPECT_EQ(summary.BuyMargin, 7500 + 10);
    // 300 x 0.125 x 1 x 3900
    EXPECT_EQ(summary.SellMargin, 146250);
    EXPECT_EQ(summary.ProfitLoss, 0);
    EXPECT_EQ(summary.FreeMargin, 1000000 - 7510 - 146250);

    fixture.Feed().SetQuote(kRebar, MakeQuote(3010, 3012, 3011));
    fixture.Feed().SetQuote(kIndex, MakeQuote(3880, 3880.4, 3880.2));
    fixture.Feed().SetQuote(kCoin, MakeQuote(60100, 60110, 60105));
    summary = SummaryOf(fixture);
    // Longs at the bid, shorts at the ask: 10 x 10 x 2 + 300 x 19.6 x 1 + 0.5 x 100 x 4.
    const double floating = 200 + 300 * (3900 - 3880.4) + 200;
    EXPECT_EQ(summary.ProfitLoss, floating);
    EXPECT_EQ(summary.CurrentEquity, 1000000 + floating);
    EXPECT_EQ(summary.BuyMargin, 7510);
    EXPECT_EQ(summary.FreeMargin, 1000000 + floating - 7510 - 146250);
    EXPECT_EQ(summary.TodayDeposit, 0);
    EXPECT_EQ(summary.TodayDrawing, 0);
}

TEST(PaperAccount, TheLastPriceValuesAPositionWhenItsSideIsEmpty) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 1, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(0, 3050, 3020));
    EXPECT_EQ(SummaryOf(fixture).ProfitLoss, 200);
    fixture.Feed().SetQuote(kRebar, MakeQuote(0, 0, 0));
    EXPECT_EQ(SummaryOf(fixture).ProfitLoss, 0);
}

TEST(PaperAccount, OpenEntryOrdersFreezeMargin) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3001, 3000));
    Accepted(fixture, MakeOrder(1, 0, 1, 2990));
    Accepted(fixture, MakeOrder(2, 0, 2, 3010));
    tagAccountSummary summary = SummaryOf(fixture);
    // 10 x 0.125 x 1 x 2990, and 10 x 0.125 x 1 x 2 x 3010.
    EXPECT_EQ(summary.BuyFreeze, 3737.5);
    EXPECT_EQ(summary.SellFreeze, 7525);
    EXPECT_EQ(summary.BuyMargin, 0);
    EXPECT_EQ(summary.FreeMargin, 100000 - 3737.5 - 7525);
    const std::vector<tagBrokerOrder> open = OpenOrders(fixture);
    ASSERT_EQ(open.size(), 2u);
    fixture.Feed().DeleteOrder(kBroker, kAccount, open[0].ContractNo);
    EXPECT_EQ(SummaryOf(fixture).BuyFreeze, 0);
}

TEST(PaperAccount, AnEntryNeedsFreeMargin) {
    FeedFixture fixture(10000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 2, 3000));  // 7500 of margin
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 1, 3000)), 0);
    EXPECT_EQ(Send(fixture, MakeOrder(2, 0, 1, 3000)), 0);
    // A profit frees margin: 10 x 40 x 2 = 800 floating, 3300 free, 1900 needed.
    fixture.Feed().SetQuote(kRebar, MakeQuote(3040, 3040, 3040));
    EXPECT_EQ(Send(fixture, MakeOrder(1, 0, 0.5, 3040)), 1);
    // Exits need no margin.
    EXPECT_EQ(Send(fixture, MakeOrder(2, 1, 1, 3040)), 1);
}

TEST(PaperAccount, ChangingTheStartingBalanceKeepsRealisedProfit) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 1, 3000));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3100, 3100, 3100));
    Accepted(fixture, MakeOrder(2, 1, 1, 3100));
    ASSERT_TRUE(fixture.Feed().SetStartingBalance(kBroker, kAccount, 50000));
    EXPECT_EQ(SummaryOf(fixture).CurrentEquity, 51000);
    EXPECT_FALSE(fixture.Feed().SetStartingBalance(kBroker, "", 1));
    EXPECT_FALSE(fixture.Feed().SetStartingBalance("", kAccount, 1));
    EXPECT_FALSE(fixture.Feed().SetStartingBalance(kBroker, kAccount,
                                                   std::numeric_limits<double>::infinity()));
    EXPECT_EQ(SummaryOf(fixture).CurrentEquity, 51000);
}

TEST(PaperAccount, APositionInAnInstrumentNoLongerListedCountsForNothing) {
    FeedFixture fixture(1000000);
    fixture.Feed().SetQuote(kIndex, MakeQuote(3900, 3900, 3900));
    Accepted(fixture, MakeOrder(1, 0, 1, 3900, kIndex));
    datafeed::InstrumentCatalogue catalogue = datafeed_test::TestCatalogue();
    catalogue.Instruments.erase(kIndex);
    fixture.Feed().SetInstruments(catalogue);
    const tagAccountSummary summary = SummaryOf(fixture);
    EXPECT_EQ(summary.BuyMargin, 0);
    EXPECT_EQ(summary.CurrentEquity, 1000000);
    EXPECT_EQ(summary.FreeMargin, 1000000);
}

TEST(PaperAccount, EverythingSurvivesReopeningTheDatabase) {
    FeedFixture fixture(100000);
    fixture.Feed().SetQuote(kRebar, MakeQuote(3000, 3000, 3000));
    Accepted(fixture, MakeOrder(1, 0, 2, 3000));
    Accepted(fixture, MakeOrder(2, 1, 1, 3000));
    const tagBrokerOrder open = Accepted(fixture, MakeOrder(1, 0, 1, 2900));
    fixture.Feed().SetQuote(kRebar, MakeQuote(3050, 3050, 3050));
    Accepted(fixture, MakeOrder(2, 1, 1, 3050));
    const std::vector<tagBrokerOrder> before = Orders(fixture);

    fixture.Reopen();
    const std::vector<tagBrokerOrder> after = Orders(fixture);
    ASSERT_EQ(after.size(), before.size());
    for (size_t i = 0; i < after.size(); ++i) {
        EXPECT_EQ(after[i].ContractNo, before[i].ContractNo);
        EXPECT_EQ(after[i].Status, before[i].Status);
        EXPECT_EQ(after[i].FilledPrice, before[i].FilledPrice);
    }
    EXPECT_EQ(PositionOf(fixture).BuyPosition, 0);
    // The quote was not kept, so nothing floats; realised 0 + 500 stays.
    EXPECT_EQ(SummaryOf(fixture).CurrentEquity, 100500);
    EXPECT_EQ(SummaryOf(fixture).BuyFreeze, 3625);

    // Numbering goes on after the highest number ever handed out.
    EXPECT_EQ(fixture.Feed().DeleteOrder(kBroker, kAccount, open.ContractNo), 1);
    EXPECT_EQ(Accepted(fixture, MakeOrder(1, 0, 1, 2900)).ContractNo, "5");
}
