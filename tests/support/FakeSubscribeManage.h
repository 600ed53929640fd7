// A test double of the platform's market-data and brokerage interface. Tests fill
// its tables, and read its call counters to see which operations the library made.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/SubscibeManage.h"

class FakeSubscribeManage : public CSubscibeManage {
public:
    struct Calls {
        int GetSymbolProperty = 0, GetAllExchanges = 0, GetMarketQuote = 0,
            GetAccountSummary = 0, GetPosition = 0, GetOrders = 0, GetOpenOrders = 0,
            SendOrder = 0, DeleteOrder = 0, GetConfigFileProperty = 0,
            SetConfigFileProperty = 0;
    };

    // Instruments are keyed by market id and code.
    using SymbolKey = std::pair<uint16_t, std::string>;

    std::map<SymbolKey, IModuleFutureTrader::ISpecDetailValue> Specs;
    std::vector<tagExchangeInfo> Exchanges;
    std::map<SymbolKey, IModuleFutureTrader::ITickEx> Quotes;

    // Account data answers only for this broker and account; Ok flags make an
    // operation fail on purpose.
    std::string BrokerId = "broker", AccountId = "account";
    tagAccountSummary Account;
    bool AccountOk = true;
    std::map<SymbolKey, tagOpenedPosition> Positions;
    std::vector<tagBrokerOrder> Orders;  // every order, in submission order
    bool OrdersOk = true;
    int SendResult = 1;
    int DeleteResult = 1;
    std::vector<tagBrokerOrder> SentOrders;
    std::vector<std::string> DeletedContracts;

    // table -> "section\nkey" -> value
    std::map<std::string, std::map<std::string, std::string>> Config;

    Calls calls;

    void AddSpec(uint16_t market, const std::string& code,
                 const IModuleFutureTrader::ISpecDetailValue& spec) {
        Specs[{market, code}] = spec;
    }

    int GetSymbolProperty(const tagSymbol& symbol,
                          IModuleFutureTrader::ISpecDetailValue& spec) override {
        ++calls.GetSymbolProperty;
        auto it = Specs.find(Key(symbol));
        if (it == Specs.end()) return 0;
        spec = it->second;
        return 1;
    }

    int GetAllExchanges(std::vector<tagExchangeInfo>& exchanges) override {
        ++calls.GetAllExchanges;
        exchanges.insert(exchanges.end(), Exchanges.begin(), Exchanges.end());
        return 1;
    }

    int GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) override {
        ++calls.GetMarketQuote;
        auto it = Quotes.find(Key(symbol));
        if (it == Quotes.end()) return 0;
        tick = it->second;
        return 1;
    }

    int GetAccountSummary(tagAccountSummary& summary, const std::string& brokerId,
                          const std::string& accountId) override {
        ++calls.GetAccountSummary;
        if (!AccountOk || !IsAccount(brokerId, accountId)) return 0;
        summary = Account;
        return 1;
    }

    int GetPosition(tagOpenedPosition& position, const std::string& brokerId,
                    const std::string& accountId, const tagSymbol& symbol) override {
        ++calls.GetPosition;
        if (!IsAccount(brokerId, accountId)) return 0;
        auto it = Positions.find(Key(symbol));
        if (it == Positions.end()) return 0;
        position = it->second;
        return 1;
    }

    int GetOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                  const std::string& accountId, const tagSymbol& symbol) override {
        ++calls.GetOrders;
        return ListOrders(orders, brokerId, accountId, symbol, false);
    }

    int GetOpenOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                      const std::string& accountId, const tagSymbol& symbol) override {
        ++calls.GetOpenOrders;
        return ListOrders(orders, brokerId, accountId, symbol, true);
    }

    int SendOrder(tagBrokerOrder& order) override {
        ++calls.SendOrder;
        SentOrders.push_back(order);
        return SendResult;
    }

    int DeleteOrder(const std::string& brokerId, const std::string& accountId,
                    const std::string& contractNo) override {
        ++calls.DeleteOrder;
        if (!IsAccount(brokerId, accountId)) return 0;
        DeletedContracts.push_back(contractNo);
        return DeleteResult;
    }

    bool GetConfigFileProperty(const std::string& table, const std::string& section,
                               const std::string& key, std::string& value) override {
        ++calls.GetConfigFileProperty;
        auto t = Config.find(table);
        if (t == Config.end()) return false;
        auto v = t->second.find(section + "\n" + key);
        if (v == t->second.end()) return false;
        value = v->second;
        return true;
    }

    void SetConfigFileProperty(const std::string& table, const std::string& section,
                               const std::string& key, const std::string& value) override {
        ++calls.SetConfigFileProperty;
        Config[table][section + "\n" + key] = value;
    }

    // Orders of an open status for GetOpenOrders; tests set the codes they use.
    std::vector<int32_t> OpenStatuses = {0, 1, 2};

private:
    static SymbolKey Key(const tagSymbol& symbol) { return {symbol.MarketId, symbol.Code}; }

    bool IsAccount(const std::string& brokerId, const std::string& accountId) const {
        return brokerId == BrokerId && accountId == AccountId;
    }

    bool IsOpen(int32_t status) const {
        for (int32_t s : OpenStatuses)
            if (s == status) return true;
        return false;
    }

    int ListOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                   const std::string& accountId, const tagSymbol& symbol, bool openOnly) {
        if (!OrdersOk || !IsAccount(brokerId, accountId)) return 0;
        for (const tagBrokerOrder& o : Orders) {
            if (o.MarketId != symbol.MarketId || o.Code != symbol.Code) continue;
            if (openOnly && !IsOpen(o.Status)) continue;
            orders.push_back(o);
        }
        return 1;
    }
};
