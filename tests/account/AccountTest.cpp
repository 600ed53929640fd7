// The bound account: its identity, its money and its position in the instrument.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "support/LiveMarketFixture.h"

namespace {

class Account : public LiveMarketFixture {
protected:
    void SetUp() override {
        LiveMarketFixture::SetUp();
        tagAccountSummary& a = fake.Account;
        a.PreviousEquity = 1000000;
        a.ProfitLoss = 2500.5;
        a.CurrentEquity = 1002500.5;
        a.FreeMargin = 800000;
        a.BuyFreeze = 11;
        a.BuyMargin = 120000;
        a.SellFreeze = 13;
        a.SellMargin = 80000;
        a.TodayDeposit = 5000;
        a.TodayDrawing = 3000;
        tagOpenedPosition p;
        p.BuyPosition = 3;
        p.BuyAvgPrice = 3010;
        p.TodayBuyPosition = 1;
        p.SellPosition = 2;
        p.SellAvgPrice = 3050;
        p.TodaySellPosition = 2;
        p.TotalPosition = 5;
        p.TotalAvgPrice = 3026;
        fake.Positions[{kMarket, "rb2405"}] = p;
    }
};

std::vector<std::function<double(CSystemFuncs&)>> MoneyFunctions() {
    return {
        [](CSystemFuncs& f) { return f.A_PreviousEquity(); },
        [](CSystemFuncs& f) { return f.A_ProfitLoss(); },
        [](CSystemFuncs& f) { return f.A_CurrentEquity(); },
        [](CSystemFuncs& f) { return f.A_FreeMargin(); },
        [](CSystemFuncs& f) { return f.A_BuyFreeze(); },
        [](CSystemFuncs& f) { return f.A_BuyMargin(); },
        [](CSystemFuncs& f) { return f.A_SellFreeze(); },
        [](CSystemFuncs& f) { return f.A_SellMargin(); },
        [](CSystemFuncs& f) { return f.A_TodayDeposit(); },
        [](CSystemFuncs& f) { return f.A_TodayDrawing(); },
    };
}

std::vector<std::function<double(CSystemFuncs&)>> PositionFunctions() {
    return {
        [](CSystemFuncs& f) { return f.A_BuyPosition(); },
        [](CSystemFuncs& f) { return f.A_BuyAvgPrice(); },
        [](CSystemFuncs& f) { return f.A_BuyProfitLoss(); },
        [](CSystemFuncs& f) { return f.A_TodayBuyPosition(); },
        [](CSystemFuncs& f) { return f.A_SellPosition(); },
        [](CSystemFuncs& f) { return f.A_SellAvgPrice(); },
        [](CSystemFuncs& f) { return f.A_SellProfitLoss(); },
        [](CSystemFuncs& f) { return f.A_TodaySellPosition(); },
        [](CSystemFuncs& f) { return f.A_TotalPosition(); },
        [](CSystemFuncs& f) { return f.A_TotalAvgPrice(); },
        [](CSystemFuncs& f) { return f.A_PositionProfitLoss(); },
    };
}

void ExpectNoAccountValues(CSystemFuncs& f) {
    for (auto& a : MoneyFunctions()) EXPECT_EQ(a(f), 1.7976931348623157e308);
    for (auto& a : PositionFunctions()) EXPECT_EQ(a(f), 1.7976931348623157e308);
}

TEST_F(Account, DataExistsOnTheNewestBarOfAStrategyWithAnAccount) {
    EXPECT_TRUE(funcs.AccountDataExist());
    data.CurrentBar = 3;
    EXPECT_FALSE(funcs.AccountDataExist());
    data.CurrentBar = kLastBar;
    data.FormulaKind = 4;
    EXPECT_FALSE(funcs.AccountDataExist());
    data.FormulaKind = 7;
    data.AccountId.clear();
    EXPECT_FALSE(funcs.AccountDataExist());
    data.AccountId = fake.AccountId;
    data.BrokerId.clear();
    EXPECT_FALSE(funcs.AccountDataExist());
    EXPECT_FALSE(CSystemFuncs(nullptr).AccountDataExist());
}

TEST_F(Account, IdsAreReportedOnTheNewestBarOfAStrategyEvenWhenEmpty) {
    EXPECT_EQ(funcs.A_BrokerID(), "broker");
    EXPECT_EQ(funcs.A_AccountID(), "account");
    data.AccountId.clear();
    EXPECT_EQ(funcs.A_AccountID(), "");
    EXPECT_EQ(funcs.A_BrokerID(), "broker");
    data.CurrentBar = 0;
    EXPECT_EQ(funcs.A_BrokerID(), "");
    data.CurrentBar = kLastBar;
    data.FormulaKind = 6;
    EXPECT_EQ(funcs.A_BrokerID(), "");
    EXPECT_EQ(funcs.A_AccountID(), "");
    EXPECT_EQ(CSystemFuncs(nullptr).A_BrokerID(), "");
}

TEST_F(Account, EveryMoneyFigure) {
    EXPECT_EQ(funcs.A_PreviousEquity(), 1000000.0);
    EXPECT_EQ(funcs.A_ProfitLoss(), 2500.5);
    EXPECT_EQ(funcs.A_CurrentEquity(), 1002500.5);
    EXPECT_EQ(funcs.A_FreeMargin(), 800000.0);
    EXPECT_EQ(funcs.A_BuyFreeze(), 11.0);
    EXPECT_EQ(funcs.A_BuyMargin(), 120000.0);
    EXPECT_EQ(funcs.A_SellMargin(), 80000.0);
    EXPECT_EQ(funcs.A_TodayDeposit(), 5000.0);
    EXPECT_EQ(funcs.A_TodayDrawing(), 3000.0);
}

TEST_F(Account, SellFreezeReportsTheSellMargin) {
    EXPECT_EQ(funcs.A_SellFreeze(), 80000.0);
    EXPECT_EQ(funcs.A_SellFreeze(), funcs.A_SellMargin());
}

TEST_F(Account, MoneyIsCachedUnderPlainKeysSharedByAllDataSources) {
    EXPECT_EQ(funcs.A_CurrentEquity(), 1002500.5);
    EXPECT_EQ(funcs.A_FreeMargin(), 800000.0);
    fake.Account.CurrentEquity = 1;
    AddSecondSource("hc2405");
    data.DataIndex = 1;
    EXPECT_EQ(funcs.A_CurrentEquity(), 1002500.5);
    data.DataIndex = 0;
    EXPECT_EQ(funcs.A_CurrentEquity(), 1002500.5);
    EXPECT_EQ(fake.calls.GetAccountSummary, 2);
    ASSERT_EQ(funcs.PropertyCache.size(), 2u);
    EXPECT_EQ(funcs.PropertyCache.at("A_CurrentEquity").nType, 4);
    EXPECT_EQ(funcs.PropertyCache.at("A_FreeMargin").dValue, 800000.0);
}

// The money needs no data source: the summary is the account's.
TEST_F(Account, MoneyIsAnsweredWithoutACurrentDataSource) {
    data.DataIndex = 3;
    EXPECT_EQ(funcs.A_PreviousEquity(), 1000000.0);
    EXPECT_EQ(funcs.A_BuyPosition(), kInvalid);
}

TEST_F(Account, AFailedSummaryCachesNothingAndIsRetried) {
    fake.AccountOk = false;
    EXPECT_EQ(funcs.A_CurrentEquity(), kInvalid);
    EXPECT_EQ(funcs.A_CurrentEquity(), kInvalid);
    EXPECT_EQ(fake.calls.GetAccountSummary, 2);
    EXPECT_TRUE(funcs.PropertyCache.empty());
    fake.AccountOk = true;
    EXPECT_EQ(funcs.A_CurrentEquity(), 1002500.5);
    EXPECT_EQ(fake.calls.GetAccountSummary, 3);
}

TEST_F(Account, NothingOnAHistoryBarAndNothingAsked) {
    data.CurrentBar = 2;
    ExpectNoAccountValues(funcs);
    EXPECT_EQ(funcs.A_CurrentEquity(), 1.7976931348623157e308);
    EXPECT_EQ(fake.calls.GetAccountSummary, 0);
    EXPECT_EQ(fake.calls.GetPosition, 0);
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST_F(Account, NothingWithoutABoundAccount) {
    data.FormulaKind = 5;
    ExpectNoAccountValues(funcs);
    data.FormulaKind = 7;
    data.BrokerId.clear();
    ExpectNoAccountValues(funcs);
    data.BrokerId = "broker";
    data.AccountId.clear();
    ExpectNoAccountValues(funcs);
    EXPECT_EQ(fake.calls.GetAccountSummary, 0);
    EXPECT_EQ(fake.calls.GetPosition, 0);
}

TEST_F(Account, NothingWithoutTheLibraryOrAHostObject) {
    g_pSubscribeManage = nullptr;
    ExpectNoAccountValues(funcs);
    EXPECT_TRUE(funcs.PropertyCache.empty());
    g_pSubscribeManage = &fake;
    CSystemFuncs none(nullptr);
    ExpectNoAccountValues(none);
    EXPECT_EQ(fake.calls.GetAccountSummary, 0);
}

TEST_F(Account, EveryPositionFigure) {
    EXPECT_EQ(funcs.A_BuyPosition(), 3.0);
    EXPECT_EQ(funcs.A_BuyAvgPrice(), 3010.0);
    EXPECT_EQ(funcs.A_TodayBuyPosition(), 1.0);
    EXPECT_EQ(funcs.A_SellPosition(), 2.0);
    EXPECT_EQ(funcs.A_SellAvgPrice(), 3050.0);
    EXPECT_EQ(funcs.A_TodaySellPosition(), 2.0);
    EXPECT_EQ(funcs.A_TotalPosition(), 5.0);
    EXPECT_EQ(funcs.A_TotalAvgPrice(), 3026.0);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.A_BuyPosition").nType, 4);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.A_TotalAvgPrice").dValue, 3026.0);
}

TEST_F(Account, PositionsAreCachedPerDataSource) {
    AddSecondSource("hc2405");
    tagOpenedPosition other;
    other.BuyPosition = 9;
    fake.Positions[{kMarket, "hc2405"}] = other;
    EXPECT_EQ(funcs.A_BuyPosition(), 3.0);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.A_BuyPosition(), 9.0);
    data.DataIndex = 0;
    fake.Positions[{kMarket, "rb2405"}].BuyPosition = 4;
    EXPECT_EQ(funcs.A_BuyPosition(), 3.0);
    EXPECT_EQ(fake.calls.GetPosition, 2);
    EXPECT_EQ(funcs.PropertyCache.at("Data1.A_BuyPosition").dValue, 9.0);
}

TEST_F(Account, AFailedPositionCachesNothingAndIsRetried) {
    fake.Positions.clear();
    EXPECT_EQ(funcs.A_SellPosition(), kInvalid);
    EXPECT_EQ(funcs.A_SellPosition(), kInvalid);
    EXPECT_EQ(funcs.A_PositionProfitLoss(), kInvalid);
    EXPECT_EQ(fake.calls.GetPosition, 3);
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST_F(Account, NoPositionWithoutACurrentDataSource) {
    data.DataIndex = 1;
    for (auto& a : PositionFunctions()) EXPECT_EQ(a(funcs), kInvalid);
    EXPECT_EQ(fake.calls.GetPosition, 0);
}

// The long side is valued at the bid: (3035 - 3010) x 10 x 10 x 3.
TEST_F(Account, LongProfitAtTheBid) {
    EXPECT_EQ(funcs.A_BuyProfitLoss(), (3035.0 - 3010.0) * 10 * 10.0 * 3);
    EXPECT_EQ(funcs.A_BuyProfitLoss(), 7500.0);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.A_BuyProfitLoss").dValue, 7500.0);
    EXPECT_EQ(funcs.PropertyCache.count("Data0.Q_BidPrice"), 1u);
    EXPECT_EQ(funcs.PropertyCache.count("Data0.Q_Last"), 0u);
}

// Without a bid above 0.0001 the last price stands in.
TEST_F(Account, LongProfitAtTheLastPriceWithoutABid) {
    LiveTick().BidPrice = 0.0001;
    EXPECT_EQ(funcs.A_BuyProfitLoss(), (3036.0 - 3010.0) * 10 * 10.0 * 3);
}

TEST_F(Account, ShortProfitAtTheAsk) {
    EXPECT_EQ(funcs.A_SellProfitLoss(), (3050.0 - 3037.0) * 10 * 10.0 * 2);
    EXPECT_EQ(funcs.A_SellProfitLoss(), 2600.0);
}

TEST_F(Account, ShortProfitAtTheLastPriceWithoutAnAsk) {
    LiveTick().AskPrice = 0;
    EXPECT_EQ(funcs.A_SellProfitLoss(), (3050.0 - 3036.0) * 10 * 10.0 * 2);
}

// With the contract unit and the big point value of a finer instrument.
TEST_F(Account, ProfitUsesContractUnitAndBigPointValue) {
    IModuleFutureTrader::ISpecDetailValue spec = Spec();
    spec.ContractUnit = 5;
    spec.BigPointValue = 0.5f;
    fake.AddSpec(kMarket, "rb2405", spec);
    EXPECT_EQ(funcs.A_BuyProfitLoss(), (3035.0 - 3010.0) * 5 * 0.5 * 3);
}

TEST_F(Account, PositionProfitIsBothSidesAndCachesAll) {
    EXPECT_EQ(funcs.A_PositionProfitLoss(), 2600.0 + 7500.0);
    EXPECT_EQ(fake.calls.GetPosition, 3);  // its own check, then each side
    EXPECT_EQ(funcs.PropertyCache.count("Data0.A_SellProfitLoss"), 1u);
    EXPECT_EQ(funcs.PropertyCache.count("Data0.A_BuyProfitLoss"), 1u);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.A_PositionProfitLoss").dValue, 10100.0);
    EXPECT_EQ(funcs.A_BuyProfitLoss(), 7500.0);
    EXPECT_EQ(funcs.A_PositionProfitLoss(), 10100.0);
    EXPECT_EQ(fake.calls.GetPosition, 3);
}

// Sides valued once stay as they were: the whole position adds the cached sides.
TEST_F(Account, PositionProfitAddsTheCachedSides) {
    EXPECT_EQ(funcs.A_BuyProfitLoss(), 7500.0);
    fake.Positions[{kMarket, "rb2405"}].BuyPosition = 0;
    fake.Positions[{kMarket, "rb2405"}].SellPosition = 1;
    EXPECT_EQ(funcs.A_PositionProfitLoss(), 1300.0 + 7500.0);
}

// Without a quote the market price is the invalid value; the profit is computed
// from it all the same and overflows.
TEST_F(Account, ProfitWithoutAQuoteUsesTheInvalidPrice) {
    fake.Quotes.clear();
    EXPECT_EQ(funcs.A_BuyProfitLoss(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(funcs.A_SellProfitLoss(), -std::numeric_limits<double>::infinity());
}

}  // namespace
