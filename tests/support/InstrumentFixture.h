// A chart on one known instrument, with the test double of the market-data library
// installed as the process's manager for the life of the fixture.
#pragma once

#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "support/FakeSubscribeManage.h"

class InstrumentFixture : public ::testing::Test {
protected:
    static constexpr uint16_t kMarket = 3;

    void SetUp() override {
        previous_ = g_pSubscribeManage;
        g_pSubscribeManage = &fake;
        DataStream s;
        s.MarketId = kMarket;
        s.Code = "rb2405";
        s.BarType = 1;
        s.BarInterval = 5;
        for (int i = 0; i < 5; ++i) {
            BarRecord b;
            b.time = 1269479103000LL + i * 60000LL;
            b.open = 3000 + i;
            b.high = 3010 + i;
            b.low = 2990 + i;
            b.close = 3005 + i;
            s.Bars.push_back(b);
        }
        data.DataStreams.push_back(s);
        data.MarginRate = 0.15;
        fake.AddSpec(kMarket, "rb2405", Spec());
    }

    void TearDown() override { g_pSubscribeManage = previous_; }

    // The specification of the chart's instrument.
    static IModuleFutureTrader::ISpecDetailValue Spec() {
        IModuleFutureTrader::ISpecDetailValue spec;
        spec.SymbolType = 2;
        spec.ExchangeId = 7;
        spec.SymbolName = "Rebar 2405";
        spec.CurrencySymbol = "CNY";
        spec.CurrencyName = "Renminbi";
        spec.CanTrade = 1;
        spec.TradePermissions = 0x3;
        spec.ShortTradeBits = 0x8;
        spec.PriceScale = 0.01f;
        spec.MinMove = 1;
        spec.BigPointValue = 10;
        spec.BidAskSize = 1;
        spec.ContractUnit = 10;
        spec.MaxSingleTradeSize = 500;
        spec.MarginRatio = 0.12f;
        spec.ExpiredDate = "20240515";
        spec.MarginMode = 4;
        spec.ContractSize = 10;
        spec.InitialMargin = 5000.5f;
        spec.MaintenanceMargin = 4000.25f;
        return spec;
    }

    FakeSubscribeManage fake;
    CKelBaseData data{};
    CSystemFuncs funcs{&data};

private:
    CSubscibeManage* previous_ = nullptr;
};
