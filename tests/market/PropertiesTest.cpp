#include <gtest/gtest.h>

#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "support/FakeSubscribeManage.h"
#include "support/InstrumentFixture.h"
#include "support/TestAccess.h"

namespace {

constexpr double kInvalid = 1.7976931348623157e308;
constexpr int32_t kInvalidInt = 2147483647;

using Properties = InstrumentFixture;

TEST_F(Properties, EveryPropertyOfAKnownInstrument) {
    fake.Exchanges = {{5, "DCE"}, {7, "SHFE"}, {9, "CZCE"}};
    EXPECT_EQ(funcs.BarInterval(), 5);
    EXPECT_EQ(funcs.BarType(), 1);
    EXPECT_TRUE(funcs.CanMarketOrder());
    EXPECT_TRUE(funcs.CanShortTrade());
    EXPECT_TRUE(funcs.CanStopOrder());
    EXPECT_TRUE(funcs.CanTrade());
    EXPECT_EQ(funcs.ContractSize(), 10.0);
    EXPECT_EQ(funcs.CurrencyName(), "Renminbi");
    EXPECT_EQ(funcs.CurrencySymbol(), "CNY");
    EXPECT_EQ(funcs.ExchangeName(), "SHFE");
    EXPECT_EQ(funcs.ExpiredDate(), "20240515");
    EXPECT_EQ(funcs.InitialMargin(), 5000.5);
    EXPECT_EQ(funcs.MaintenanceMargin(), 4000.25);
    EXPECT_EQ(funcs.MaxSingleTradeSize(), 500);
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(funcs.PriceScale(), static_cast<double>(0.01f));  // the float widened
    EXPECT_EQ(funcs.Spread(), 0);
    EXPECT_EQ(funcs.SymbolName(), "Rebar 2405");
    EXPECT_EQ(funcs.SymbolType(), 2);
    EXPECT_EQ(funcs.BigPointValue(), 10.0);
    EXPECT_EQ(funcs.BidAskSize(), 1);
    EXPECT_EQ(funcs.ContractUnit(), 10);
    EXPECT_EQ(funcs.MarginRatio(), 0.15);
    EXPECT_EQ(CSystemFuncsTestAccess::MarginMode(funcs), 4);
    EXPECT_EQ(funcs.Symbol(), "rb2405");
}

TEST_F(Properties, CacheEntriesCarryTheHostsKeysAndTypes) {
    funcs.BarInterval();
    funcs.CanTrade();
    funcs.ContractSize();
    funcs.SymbolName();
    funcs.MinMove();
    funcs.MarginRatio();
    funcs.Spread();
    CSystemFuncsTestAccess::MarginMode(funcs);
    ASSERT_EQ(funcs.PropertyCache.size(), 8u);
    const auto& cache = funcs.PropertyCache;
    EXPECT_EQ(cache.at("Data0.BarInterval").nType, 10);
    EXPECT_EQ(cache.at("Data0.BarInterval").nValue, 5);
    EXPECT_EQ(cache.at("Data0.CanTrade").nType, 1);
    EXPECT_TRUE(cache.at("Data0.CanTrade").bValue);
    EXPECT_EQ(cache.at("Data0.ContractSize").nType, 4);
    EXPECT_EQ(cache.at("Data0.ContractSize").dValue, 10.0);
    EXPECT_EQ(cache.at("Data0.SymbolName").nType, 7);
    EXPECT_EQ(cache.at("Data0.SymbolName").strValue, "Rebar 2405");
    EXPECT_EQ(cache.at("Data0.MinMove").nType, 10);
    EXPECT_EQ(cache.at("Data0.MinMove").nValue, 1);
    EXPECT_EQ(cache.at("Data0.MarginRatio").nType, 4);
    EXPECT_EQ(cache.at("Data0.Spread").nType, 10);
    EXPECT_EQ(cache.at("Data0.Spread").nValue, 0);
    EXPECT_EQ(cache.at("Data0.MarginMode").nValue, 4);
    // The other slots of a record stay cleared.
    EXPECT_EQ(cache.at("Data0.MinMove").dValue, 0.0);
    EXPECT_FALSE(cache.at("Data0.MinMove").bValue);
    EXPECT_TRUE(cache.at("Data0.MinMove").strValue.empty());
}

TEST_F(Properties, EveryKeyFormat) {
    funcs.BarInterval(); funcs.BarType(); funcs.CanMarketOrder(); funcs.CanShortTrade();
    funcs.CanStopOrder(); funcs.CanTrade(); funcs.ContractSize(); funcs.CurrencyName();
    funcs.CurrencySymbol(); funcs.ExchangeName(); funcs.ExpiredDate(); funcs.InitialMargin();
    funcs.MaintenanceMargin(); funcs.MaxSingleTradeSize(); funcs.MinMove(); funcs.PriceScale();
    funcs.Spread(); funcs.SymbolName(); funcs.SymbolType(); funcs.BigPointValue();
    funcs.BidAskSize(); funcs.ContractUnit(); funcs.MarginRatio();
    CSystemFuncsTestAccess::MarginMode(funcs);
    funcs.Symbol();
    std::string keys;
    for (const auto& entry : funcs.PropertyCache) keys += entry.first + " ";
    EXPECT_EQ(keys,
              "Data0.BarInterval Data0.BarType Data0.BidAskSize Data0.BigPointValue "
              "Data0.CanMarketOrder Data0.CanShortTrade Data0.CanStopOrder Data0.CanTrade "
              "Data0.ContractSize Data0.ContractUnit Data0.CurrencyName Data0.CurrencySymbol "
              "Data0.ExchangeName Data0.ExpiredDate Data0.InitialMargin Data0.MaintenanceMargin "
              "Data0.MarginMode Data0.MarginRatio Data0.MaxSingleTradeSize Data0.MinMove "
              "Data0.PriceScale Data0.Spread Data0.SymbolName Data0.SymbolType ");
    EXPECT_EQ(fake.calls.GetSymbolProperty, 24);
}

TEST_F(Properties, SecondCallAfterSuccessMakesNoLibraryCall) {
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 1);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 1);
    EXPECT_EQ(funcs.PriceScale(), static_cast<double>(0.01f));
    EXPECT_EQ(funcs.PriceScale(), static_cast<double>(0.01f));
    EXPECT_EQ(fake.calls.GetSymbolProperty, 2);
}

// Properties are taken as fixed for a run: a later change of the specification is
// not seen by a value already cached.
TEST_F(Properties, CachedValueOutlivesAChangeOfTheSpecification) {
    EXPECT_EQ(funcs.MinMove(), 1);
    fake.Specs.begin()->second.MinMove = 5;
    fake.Specs.begin()->second.ContractUnit = 3;
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(funcs.ContractUnit(), 3);  // first read of this one
}

TEST_F(Properties, FailuresAreRetriedOnEveryCall) {
    data.DataStreams[0].Code = "unknown";
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(funcs.MinMove(), kInvalidInt);
        EXPECT_EQ(fake.calls.GetSymbolProperty, i);
    }
    EXPECT_TRUE(funcs.PropertyCache.empty());
    // Once the instrument becomes known the value is fetched and kept.
    data.DataStreams[0].Code = "rb2405";
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(funcs.MinMove(), 1);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 4);
}

TEST_F(Properties, UnknownInstrumentGivesTheInvalidValueOfEachType) {
    data.DataStreams[0].MarketId = kMarket + 1;
    EXPECT_EQ(funcs.BarInterval(), kInvalidInt);
    EXPECT_EQ(funcs.BarType(), kInvalidInt);
    EXPECT_EQ(funcs.Spread(), kInvalidInt);
    EXPECT_EQ(funcs.MinMove(), kInvalidInt);
    EXPECT_EQ(funcs.ContractSize(), kInvalid);
    EXPECT_EQ(funcs.PriceScale(), kInvalid);
    EXPECT_EQ(funcs.MarginRatio(), kInvalid);
    EXPECT_FALSE(funcs.CanTrade());
    EXPECT_FALSE(funcs.CanShortTrade());
    EXPECT_EQ(funcs.SymbolName(), "");
    EXPECT_EQ(funcs.ExchangeName(), "");
    EXPECT_EQ(funcs.Symbol(), "rb2405");  // not a cached property
    EXPECT_TRUE(funcs.PropertyCache.empty());
    EXPECT_EQ(fake.calls.GetAllExchanges, 0);
}

TEST_F(Properties, NoDataSourceGivesInvalidValuesWithoutALibraryCall) {
    data.DataIndex = 1;  // equal to the number of data sources
    EXPECT_EQ(funcs.BarInterval(), kInvalidInt);
    EXPECT_EQ(funcs.ContractSize(), kInvalid);
    EXPECT_FALSE(funcs.CanTrade());
    EXPECT_EQ(funcs.SymbolName(), "");
    EXPECT_EQ(funcs.Symbol(), "");
    data.DataIndex = -1;
    EXPECT_EQ(funcs.MinMove(), kInvalidInt);
    EXPECT_EQ(funcs.Symbol(), "");
    EXPECT_EQ(fake.calls.GetSymbolProperty, 0);
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

TEST_F(Properties, SpreadIsZeroWhateverTheInstrument) {
    EXPECT_EQ(funcs.Spread(), 0);
    DataStream other = data.DataStreams[0];
    other.Code = "cu2406";
    data.DataStreams.push_back(other);
    IModuleFutureTrader::ISpecDetailValue spec = Spec();
    spec.BidAskSize = 7;
    fake.AddSpec(kMarket, "cu2406", spec);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.Spread(), 0);
    EXPECT_EQ(funcs.BidAskSize(), 7);
}

TEST_F(Properties, MarginRatioReportsTheHostsMarginRate) {
    data.MarginRate = 0.07;
    EXPECT_EQ(funcs.MarginRatio(), 0.07);
    EXPECT_NE(static_cast<double>(Spec().MarginRatio), 0.07);
}

TEST_F(Properties, ExchangeWithoutMatchIsEmptyAndCached) {
    fake.Exchanges = {{5, "DCE"}, {9, "CZCE"}};
    EXPECT_EQ(funcs.ExchangeName(), "");
    EXPECT_EQ(funcs.ExchangeName(), "");
    EXPECT_EQ(fake.calls.GetAllExchanges, 1);
    ASSERT_EQ(funcs.PropertyCache.count("Data0.ExchangeName"), 1u);
    EXPECT_EQ(funcs.PropertyCache["Data0.ExchangeName"].nType, 7);
}

TEST_F(Properties, FirstMatchingExchangeWins) {
    fake.Exchanges = {{5, "DCE"}, {7, "SHFE"}, {7, "INE"}};
    EXPECT_EQ(funcs.ExchangeName(), "SHFE");
}

TEST_F(Properties, PermissionBits) {
    struct Case {
        uint8_t permissions;
        uint32_t shortBits;
        uint8_t canTrade;
        bool market, stop, shortTrade, trade;
    };
    const Case cases[] = {
        {0x0, 0x0, 0, false, false, false, false},
        {0x1, 0x4, 1, true, false, true, true},
        {0x2, 0x8, 2, false, true, true, true},
        {0xFC, 0x3, 0, false, false, false, false},
        {0x3, 0xC, 0xFF, true, true, true, true},
        {0x0, 0xFFFFFFF3u, 1, false, false, false, true},
    };
    for (const Case& c : cases) {
        IModuleFutureTrader::ISpecDetailValue spec = Spec();
        spec.TradePermissions = c.permissions;
        spec.ShortTradeBits = c.shortBits;
        spec.CanTrade = c.canTrade;
        fake.AddSpec(kMarket, "rb2405", spec);
        CSystemFuncs fresh(&data);
        EXPECT_EQ(fresh.CanMarketOrder(), c.market) << int(c.permissions);
        EXPECT_EQ(fresh.CanStopOrder(), c.stop) << int(c.permissions);
        EXPECT_EQ(fresh.CanShortTrade(), c.shortTrade) << c.shortBits;
        EXPECT_EQ(fresh.CanTrade(), c.trade) << int(c.canTrade);
    }
}

TEST_F(Properties, BarIntervalAndTypeComeFromTheDataSourceRecord) {
    IModuleFutureTrader::ISpecDetailValue spec = Spec();
    fake.AddSpec(kMarket, "rb2405", spec);
    data.DataStreams[0].BarType = 2;
    data.DataStreams[0].BarInterval = 1;
    EXPECT_EQ(funcs.BarType(), 2);
    EXPECT_EQ(funcs.BarInterval(), 1);
}

TEST_F(Properties, TwoDataSourcesHaveSeparateEntries) {
    DataStream second = data.DataStreams[0];
    second.MarketId = 4;
    second.Code = "IF2406";
    data.DataStreams.push_back(second);
    IModuleFutureTrader::ISpecDetailValue spec = Spec();
    spec.MinMove = 2;
    spec.PriceScale = 0.1f;
    fake.AddSpec(4, "IF2406", spec);

    EXPECT_EQ(funcs.MinMove(), 1);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.MinMove(), 2);
    EXPECT_EQ(funcs.PriceScale(), static_cast<double>(0.1f));
    data.DataIndex = 0;
    EXPECT_EQ(funcs.MinMove(), 1);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.MinMove(), 2);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 3);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.MinMove").nValue, 1);
    EXPECT_EQ(funcs.PropertyCache.at("Data1.MinMove").nValue, 2);
    EXPECT_EQ(funcs.PropertyCache.count("Data0.PriceScale"), 0u);
}

TEST_F(Properties, NullManagerGivesInvalidValuesAndIsRetried) {
    g_pSubscribeManage = nullptr;
    EXPECT_EQ(funcs.MinMove(), kInvalidInt);
    EXPECT_EQ(funcs.PriceScale(), kInvalid);
    EXPECT_FALSE(funcs.CanTrade());
    EXPECT_EQ(funcs.ExchangeName(), "");
    EXPECT_EQ(funcs.Symbol(), "rb2405");
    EXPECT_TRUE(funcs.PropertyCache.empty());
    g_pSubscribeManage = &fake;
    EXPECT_EQ(funcs.MinMove(), 1);
}

TEST(PropertiesNull, NullHostDataGivesInvalidValues) {
    CSystemFuncs funcs(nullptr);
    EXPECT_EQ(funcs.MinMove(), kInvalidInt);
    EXPECT_EQ(funcs.ContractSize(), kInvalid);
    EXPECT_FALSE(funcs.CanTrade());
    EXPECT_EQ(funcs.SymbolName(), "");
    EXPECT_EQ(funcs.Symbol(), "");
    EXPECT_TRUE(funcs.PropertyCache.empty());
}

}  // namespace
