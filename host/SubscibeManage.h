// The platform's market-data and brokerage interface, as the library calls it.
// The host implements CSubscibeManage; every operation returns non-zero on success.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct tagSymbol {
    uint16_t MarketId = 0;
    char Code[32] = {};
};

struct tagExchangeInfo {
    uint32_t ExchangeId = 0;
    std::string Name;
};

namespace IModuleFutureTrader {

// The specification of one instrument.
struct ISpecDetailValue {
    int32_t SymbolType = 0;
    uint32_t ExchangeId = 0;
    std::string SymbolName, CurrencySymbol, CurrencyName;
    uint8_t CanTrade = 0;
    uint8_t TradePermissions = 0;
    uint32_t ShortTradeBits = 0;
    float PriceScale = 0;
    int32_t MinMove = 0;
    float BigPointValue = 0;
    int32_t BidAskSize = 0, ContractUnit = 0, MaxSingleTradeSize = 0;
    float MarginRatio = 0;
    std::string ExpiredDate;
    int32_t MarginMode = 0;
    float ContractSize = 0, InitialMargin = 0, MaintenanceMargin = 0;
};

// The current quote of one instrument. PreClosePrice is the second reference price.
struct ITickEx {
    int64_t Time = 0;
    double PreSettlePrice = 0, PreClosePrice = 0, Open = 0, Last = 0, BidPrice = 0,
           BidVol = 0, AskPrice = 0, AskVol = 0, High = 0, Low = 0, TotalVol = 0,
           PreOpenInt = 0, OpenInt = 0, AvgPrice = 0, LastVol = 0, TurnOver = 0, Close = 0,
           HisHigh = 0, HisLow = 0, UpperLimit = 0, LowerLimit = 0, InsideVol = 0,
           OutsideVol = 0, TodayExitVol = 0, TodayEntryVol = 0, TickChg = 0;
    uint8_t Flags = 0;
};

}  // namespace IModuleFutureTrader

struct tagAccountSummary {
    double PreviousEquity = 0, ProfitLoss = 0, CurrentEquity = 0, FreeMargin = 0,
           BuyFreeze = 0, BuyMargin = 0, SellFreeze = 0, SellMargin = 0, TodayDeposit = 0,
           TodayDrawing = 0;
};

struct tagOpenedPosition {
    double BuyPosition = 0, BuyAvgPrice = 0, TodayBuyPosition = 0, SellPosition = 0,
           SellAvgPrice = 0, TodaySellPosition = 0, TotalPosition = 0, TotalAvgPrice = 0;
};

struct tagBrokerOrder {
    std::string BrokerId, AccountId;
    uint16_t MarketId = 0;
    std::string Code, ContractNo;
    int32_t Status = 0, BuyOrSell = 0, OrderTime = 0;
    double Lots = 0, Price = 0, FilledLots = 0, FilledPrice = 0;
    int32_t EntryOrExit = 0;
    int32_t Reserved = 0;
    std::string Tag;
};

class CSubscibeManage {
public:
    virtual ~CSubscibeManage() = default;

    virtual int GetSymbolProperty(const tagSymbol& symbol,
                                  IModuleFutureTrader::ISpecDetailValue& spec) = 0;
    virtual int GetAllExchanges(std::vector<tagExchangeInfo>& exchanges) = 0;
    virtual int GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) = 0;
    virtual int GetAccountSummary(tagAccountSummary& summary, const std::string& brokerId,
                                  const std::string& accountId) = 0;
    virtual int GetPosition(tagOpenedPosition& position, const std::string& brokerId,
                            const std::string& accountId, const tagSymbol& symbol) = 0;
    virtual int GetOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                          const std::string& accountId, const tagSymbol& symbol) = 0;
    virtual int GetOpenOrders(std::vector<tagBrokerOrder>& orders, const std::string& brokerId,
                              const std::string& accountId, const tagSymbol& symbol) = 0;
    virtual int SendOrder(tagBrokerOrder& order) = 0;
    virtual int DeleteOrder(const std::string& brokerId, const std::string& accountId,
                            const std::string& contractNo) = 0;
    virtual bool GetConfigFileProperty(const std::string& table, const std::string& section,
                                       const std::string& key, std::string& value) = 0;
    virtual void SetConfigFileProperty(const std::string& table, const std::string& section,
                                       const std::string& key, const std::string& value) = 0;
};
