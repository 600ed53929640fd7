// A datafeed for the host loop's tests and benchmarks: every instrument is
// rebar-like (margin mode 4, 10 units a contract, tick 1); there are no quotes,
// accounts or orders.
#pragma once

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

}  // namespace fftest
