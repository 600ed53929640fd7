// A datafeed for the host loop's tests and benchmarks: every instrument is
// rebar-like (margin mode 4, 10 units a contract, tick 1); there are no quotes,
// accounts or orders.
#pragma once

#include <utility>
#include <vector>

#include "host/KelBaseData.h"
#include "host/SubscibeManage.h"

namespace fftest {

// Answers every instrument with a rebar-like specification: margin mode 4,
// 10 units a contract, tick 1.
class RebarFeed : public CSubscibeManage {
public:
    int GetSymbolProperty(const tagSymbol&, IModuleFutureTrader::ISpecDetailValue& spec) override {
        spec = Spec();
        return 1;
    }
    int GetAllExchanges(std::vector<tagExchangeInfo>&) override { return 1; }
    int GetMarketQuote(const tagSymbol&, IModuleFutureTrader::ITickEx&) override { return 0; }
    int GetAccountSummary(tagAccountSummary&, const std::string&, const std::string&) override {
        return 0;
    }
    int GetPosition(tagOpenedPosition&, const std::string&, const std::string&,
                    const tagSymbol&) override {
        return 0;
    }
    int GetOrders(std::vector<tagBrokerOrder>&, const std::string&, const std::string&,
                  const tagSymbol&) override {
        return 0;
    }
    int GetOpenOrders(std::vector<tagBrokerOrder>&, const std::string&, const std::string&,
                      const tagSymbol&) override {
        return 0;
    }
    int SendOrder(tagBrokerOrder&) override { return 0; }
    int DeleteOrder(const std::string&, const std::string&, const std::string&) override {
        return 0;
    }
    bool GetConfigFileProperty(const std::string&, const std::string&, const std::string&,
                               std::string&) override {
        return false;
    }
    void SetConfigFileProperty(const std::string&, const std::string&, const std::string&,
                               const std::string&) override {}

    static IModuleFutureTrader::ISpecDetailValue Spec() {
        IModuleFutureTrader::ISpecDetailValue spec;
        spec.CanTrade = 1;
        spec.PriceScale = 1;
        spec.MinMove = 1;
        spec.BigPointValue = 1;
        spec.ContractUnit = 10;
        spec.MarginMode = 4;
        spec.ContractSize = 10;
        return spec;
    }
};

// A trading strategy over one stream of rebar bars ("rb2510" on market 1) with the
// equity series of statistics mode 2: one contract an order, one entry at most,
// a margin rate of 10%.
inline CKelBaseData RebarStrategyData(std::vector<BarRecord> bars, double capital,
                                      double commission) {
    CKelBaseData data{};
    data.FormulaKind = 7;
    data.InitialCapital = capital;
    data.MaxOpenEntries = 1;
    data.MaxPositionContracts = 100;
    data.TradeSizeMode = 0;
    data.TradeSizeValue = 1;
    data.MarginRate = 0.1;
    data.CommissionValue = commission;
    data.PerformanceMode = 2;
    data.DataStreams.resize(1);
    data.DataStreams[0].MarketId = 1;
    data.DataStreams[0].Code = "rb2510";
    data.DataStreams[0].Bars = std::move(bars);
    return data;
}

}  // namespace fftest
