// Sending and cancelling real orders.
#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "support/LiveMarketFixture.h"

namespace {

using SendOrder = LiveMarketFixture;

TEST_F(SendOrder, AnOrderCarriesTheAccountTheInstrumentAndTheArguments) {
    const int64_t before = static_cast<int64_t>(std::time(nullptr));
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 2, 3001.5));
    const int64_t after = static_cast<int64_t>(std::time(nullptr));
    ASSERT_EQ(fake.SentOrders.size(), 1u);
    const tagBrokerOrder& o = fake.SentOrders[0];
    EXPECT_EQ(o.BrokerId, "broker");
    EXPECT_EQ(o.AccountId, "account");
    EXPECT_EQ(o.MarketId, kMarket);
    EXPECT_EQ(o.Code, "rb2405");
    EXPECT_EQ(o.ContractNo, "");
    EXPECT_EQ(o.Status, 0);
    EXPECT_EQ(o.BuyOrSell, 1);
    EXPECT_GE(o.OrderTime, before);
    EXPECT_LE(o.OrderTime, after);
    EXPECT_EQ(o.Lots, 2.0);
    EXPECT_EQ(o.Price, 30015000 * 0.0001);  // on the tick of 0.01 already
    EXPECT_EQ(o.FilledLots, 0.0);
    EXPECT_EQ(o.FilledPrice, 0.0);
    EXPECT_EQ(o.EntryOrExit, 0);
    EXPECT_EQ(o.Reserved, 0);
    EXPECT_EQ(o.Tag, "A_SendOrder");
}

TEST_F(SendOrder, EveryValidSideAndKindIsSent) {
    EXPECT_TRUE(funcs.A_SendOrder(funcs.Enum_Buy(), funcs.Enum_Entry(), 1, 3000));
    EXPECT_TRUE(funcs.A_SendOrder(funcs.Enum_Sell(), funcs.Enum_Exit(), 1, 3000));
    EXPECT_TRUE(funcs.A_SendOrder(funcs.Enum_Sell(), funcs.Enum_ExitToday(), 1, 3000));
    EXPECT_TRUE(funcs.A_SendOrder(funcs.Enum_Buy(), funcs.Enum_Exit(), 1, 3000));
    ASSERT_EQ(fake.SentOrders.size(), 4u);  // several orders on the newest bar are allowed
    EXPECT_EQ(fake.SentOrders[1].BuyOrSell, 2);
    EXPECT_EQ(fake.SentOrders[1].EntryOrExit, 1);
    EXPECT_EQ(fake.SentOrders[2].EntryOrExit, 2);
}

TEST_F(SendOrder, TheBrokersRefusalIsFalse) {
    fake.SendResult = 0;
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    EXPECT_EQ(fake.calls.SendOrder, 1);
}

TEST_F(SendOrder, NothingIsSentOnAHistoryBar) {
    data.CurrentBar = 3;
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    EXPECT_EQ(fake.calls.SendOrder, 0);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 0);
}

TEST_F(SendOrder, NothingIsSentWithoutADataSourceOrAnAccount) {
    data.DataIndex = 1;
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    data.DataIndex = 0;
    data.FormulaKind = 6;
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    data.FormulaKind = 7;
    data.BrokerId.clear();
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    data.BrokerId = "broker";
    data.AccountId.clear();
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    EXPECT_EQ(fake.calls.SendOrder, 0);
}

TEST_F(SendOrder, NothingIsSentForAnInstrumentThatCannotTrade) {
    IModuleFutureTrader::ISpecDetailValue spec = Spec();
    spec.CanTrade = 0;
    fake.AddSpec(kMarket, "rb2405", spec);
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    fake.Specs.clear();  // an unknown instrument cannot trade either
    CSystemFuncs fresh(&data);
    EXPECT_FALSE(fresh.A_SendOrder(1, 0, 1, 3000));
    EXPECT_EQ(fake.calls.SendOrder, 0);
}

TEST_F(SendOrder, SideAndKindMustBeKnown) {
    EXPECT_FALSE(funcs.A_SendOrder(1, 3, 1, 100));  // 3 is no entry-or-exit value
    EXPECT_FALSE(funcs.A_SendOrder(1, -1, 1, 100));
    EXPECT_FALSE(funcs.A_SendOrder(0, 0, 1, 100));
    EXPECT_FALSE(funcs.A_SendOrder(3, 1, 1, 100));
    EXPECT_EQ(fake.calls.SendOrder, 0);
}

TEST_F(SendOrder, LotsAndPriceMustExceedTheTolerance) {
    EXPECT_FALSE(funcs.A_SendOrder(2, 1, 0.00005, 100));
    EXPECT_FALSE(funcs.A_SendOrder(2, 1, 0.0001, 100));
    EXPECT_FALSE(funcs.A_SendOrder(2, 1, -1, 100));
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 0.0001));
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, -3000));
    EXPECT_EQ(fake.calls.SendOrder, 0);
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 0.00011, 3000));
}

TEST_F(SendOrder, NothingIsSentWithoutTheLibraryOrAHostObject) {
    g_pSubscribeManage = nullptr;
    EXPECT_FALSE(funcs.A_SendOrder(1, 0, 1, 3000));
    g_pSubscribeManage = &fake;
    CSystemFuncs none(nullptr);
    EXPECT_FALSE(none.A_SendOrder(1, 0, 1, 3000));
    EXPECT_EQ(fake.calls.SendOrder, 0);
}

// On a history day the price is only put on the tick (0.01): up for a buy, down for
// a sell; the limits are not asked for.
TEST_F(SendOrder, ThePriceIsPutOnTheTick) {
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 3001.251));
    EXPECT_TRUE(funcs.A_SendOrder(2, 0, 1, 3001.259));
    ASSERT_EQ(fake.SentOrders.size(), 2u);
    EXPECT_EQ(fake.SentOrders[0].Price, 30012600 * 0.0001);
    EXPECT_EQ(fake.SentOrders[1].Price, 30012500 * 0.0001);
    EXPECT_EQ(fake.calls.GetMarketQuote, 0);
}

// On today's bar a buy above the upper limit is lowered to it.
TEST_F(SendOrder, APriceAboveTheUpperLimitIsLoweredToItToday) {
    StampBarsToday();
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 3200));
    ASSERT_EQ(fake.SentOrders.size(), 1u);
    EXPECT_EQ(fake.SentOrders[0].Price, 3150.0);
}

TEST_F(SendOrder, APriceBelowTheLowerLimitIsRaisedToItToday) {
    StampBarsToday();
    EXPECT_TRUE(funcs.A_SendOrder(2, 0, 1, 2800));
    ASSERT_EQ(fake.SentOrders.size(), 1u);
    EXPECT_EQ(fake.SentOrders[0].Price, 2850.0);
}

TEST_F(SendOrder, APriceWithinTheLimitsIsKeptToday) {
    StampBarsToday();
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 3000.004));
    ASSERT_EQ(fake.SentOrders.size(), 1u);
    EXPECT_EQ(fake.SentOrders[0].Price, 30000100 * 0.0001);
    EXPECT_EQ(fake.calls.GetMarketQuote, 2);
}

// A limit of 0.0001 or less is not applied.
TEST_F(SendOrder, LimitsNotAboveTheToleranceAreNotApplied) {
    StampBarsToday();
    LiveTick().UpperLimit = 0.0001;
    LiveTick().LowerLimit = 0;
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 3200));
    EXPECT_TRUE(funcs.A_SendOrder(2, 0, 1, 2800));
    ASSERT_EQ(fake.SentOrders.size(), 2u);
    EXPECT_EQ(fake.SentOrders[0].Price, 32000000 * 0.0001);
    EXPECT_EQ(fake.SentOrders[1].Price, 28000000 * 0.0001);
}

// Without a quote both limits are the invalid value: the upper one never lowers a
// price, the lower one lifts every price up to it.
TEST_F(SendOrder, WithoutAQuoteTodayThePriceIsRaisedToTheInvalidValue) {
    StampBarsToday();
    fake.Quotes.clear();
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 100));
    ASSERT_EQ(fake.SentOrders.size(), 1u);
    EXPECT_EQ(fake.SentOrders[0].Price, kInvalid);
}

// The limits stay as first fetched: a later change of the live quote is not seen.
TEST_F(SendOrder, TheLimitsAreTheCachedOnes) {
    StampBarsToday();
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 3000));
    LiveTick().UpperLimit = 2900;
    EXPECT_TRUE(funcs.A_SendOrder(1, 0, 1, 3000));
    ASSERT_EQ(fake.SentOrders.size(), 2u);
    EXPECT_EQ(fake.SentOrders[1].Price, 30000000 * 0.0001);
    EXPECT_EQ(fake.calls.GetMarketQuote, 2);
}

class DeleteOrder : public LiveMarketFixture {
protected:
    void SetUp() override {
        LiveMarketFixture::SetUp();
        fake.OpenStatuses = {1};
        Add("A1", 1, "rb2405");
        Add("A2", 3, "rb2405");
        Add("A3", 1, "rb2405");
        Add("B1", 1, "hc2405");
        Add("A4", 1, "rb2405");
    }

    void Add(const std::string& contract, int32_t status, const std::string& code) {
        tagBrokerOrder o;
        o.MarketId = kMarket;
        o.Code = code;
        o.ContractNo = contract;
        o.Status = status;
        fake.Orders.push_back(o);
    }
};

TEST_F(DeleteOrder, OneOrderByItsContractNumber) {
    EXPECT_TRUE(funcs.A_DeleteOrder("A2"));
    ASSERT_EQ(fake.DeletedContracts, std::vector<std::string>{"A2"});
    EXPECT_EQ(fake.calls.GetOpenOrders, 0);
    fake.DeleteResult = 0;
    EXPECT_FALSE(funcs.A_DeleteOrder("A3"));
}

TEST_F(DeleteOrder, AnEmptyNumberCancelsEveryOpenOrderOfTheInstrument) {
    EXPECT_TRUE(funcs.A_DeleteOrder(""));
    EXPECT_EQ(fake.DeletedContracts, (std::vector<std::string>{"A1", "A3", "A4"}));
    EXPECT_EQ(fake.calls.GetOpenOrders, 1);
}

TEST_F(DeleteOrder, AnEmptyNumberIsTrueEvenWhenCancellationsFail) {
    fake.DeleteResult = 0;
    EXPECT_TRUE(funcs.A_DeleteOrder(""));
    EXPECT_EQ(fake.calls.DeleteOrder, 3);
}

TEST_F(DeleteOrder, AnEmptyNumberWithoutOpenOrdersIsTrue) {
    fake.Orders.clear();
    EXPECT_TRUE(funcs.A_DeleteOrder(""));
    EXPECT_EQ(fake.calls.DeleteOrder, 0);
}

TEST_F(DeleteOrder, AnEmptyNumberIsFalseWhenTheOpenOrdersCannotBeListed) {
    fake.OrdersOk = false;
    EXPECT_FALSE(funcs.A_DeleteOrder(""));
    EXPECT_EQ(fake.calls.DeleteOrder, 0);
}

TEST_F(DeleteOrder, NothingIsCancelledOnAHistoryBarOrWithoutAnAccount) {
    data.CurrentBar = 1;
    EXPECT_FALSE(funcs.A_DeleteOrder("A1"));
    EXPECT_FALSE(funcs.A_DeleteOrder(""));
    data.CurrentBar = kLastBar;
    data.DataIndex = 4;
    EXPECT_FALSE(funcs.A_DeleteOrder("A1"));
    data.DataIndex = 0;
    data.FormulaKind = 3;
    EXPECT_FALSE(funcs.A_DeleteOrder("A1"));
    data.FormulaKind = 7;
    data.AccountId.clear();
    EXPECT_FALSE(funcs.A_DeleteOrder(""));
    EXPECT_EQ(fake.calls.DeleteOrder, 0);
    EXPECT_EQ(fake.calls.GetOpenOrders, 0);
}

TEST_F(DeleteOrder, NothingIsCancelledWithoutTheLibraryOrAHostObject) {
    g_pSubscribeManage = nullptr;
    EXPECT_FALSE(funcs.A_DeleteOrder("A1"));
    EXPECT_FALSE(funcs.A_DeleteOrder(""));
    g_pSubscribeManage = &fake;
    CSystemFuncs none(nullptr);
    EXPECT_FALSE(none.A_DeleteOrder(""));
    EXPECT_EQ(fake.calls.DeleteOrder, 0);
}

}  // namespace
