// The chief header of the built-in function library. An outside program includes
// this one file: it declares CSystemFuncs, the plain exports, the process-wide
// settings, the host data object, the result block and the platform records.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FormulaFunction/Export.h"
#include "FormulaFunction/Settings.h"
#include "host/KelBaseData.h"
#include "host/KelTypes.h"
#include "host/StrategyResult.h"
#include "host/SubscibeManage.h"

struct DerivedCaches;

// One object per running formula instance, bound to that instance's host data
// object. The compiled formula calls the public members as its built-in functions.
class FF_API CSystemFuncs {
public:
    explicit CSystemFuncs(CKelBaseData* baseData);
    CSystemFuncs(const CSystemFuncs& other);
    CSystemFuncs& operator=(const CSystemFuncs& other);
    virtual ~CSystemFuncs();

    CKelBaseData* GetBaseData();

    // Instrument, quote and account values fetched so far, by key ("Data0.MinMove").
    std::map<std::string, tagKelDataType> PropertyCache;

    // Bar access.
    int32_t BarCount();
    double Open();
    double O();
    double High();
    double H();
    double Low();
    double L();
    double Close();
    double C();
    double Vol();
    double V();
    double OpenInt();
    double NextOpen();
    double NextHigh();
    double NextLow();
    double NextClose();
    double NextVol();
    double NextOpenInt();
    int32_t Date();
    int32_t D();
    double Time();
    double T();
    int32_t BarStatus();
    int32_t CurrentBar();
    bool HistoryDataExist();
    int32_t Year();
    int32_t Month();
    int32_t Day();
    int32_t Hour();
    int32_t Minute();
    int32_t Second();
    int32_t Weekday();

    // The per-bar driver.

    // Math, strings, date and time, constants.

    // Instrument properties, quotes, account and live orders.
    int32_t BarInterval();
    int32_t BarType();
    bool CanMarketOrder();
    bool CanShortTrade();
    bool CanStopOrder();
    bool CanTrade();
    double ContractSize();
    std::string CurrencyName();
    std::string CurrencySymbol();
    std::string ExchangeName();
    std::string ExpiredDate();
    double InitialMargin();
    double MaintenanceMargin();
    int32_t MaxSingleTradeSize();
    int32_t MinMove();
    double PriceScale();
    int32_t Spread();
    std::string SymbolName();
    int32_t SymbolType();
    double BigPointValue();
    int32_t BidAskSize();
    int32_t ContractUnit();
    double MarginRatio();
    std::string Symbol();

    // Positions and the records in use.

    // Money: sizing, commission, margin.

    // Entry orders.

    // Exit orders.

    // Fixed stops.

    // Trailing and inactivity stops.

    // Trade figures.

    // The statistics step.

    // Plotting.

    // Alerts, commentary, fields and formula name.

    // Files, profile strings and global variables.

private:
    int32_t GetServerTime();

    // Private helpers of bar access.
    double RealHigh(int32_t offset);
    double RealLow(int32_t offset);
    const BarRecord* StreamBar(uint32_t index);
    const BarRecord* CurrentStreamBar();

    // Private helpers of the per-bar driver.

    // Private helpers of properties, quotes and account.
    using ValueFetch = bool (CSystemFuncs::*)(int32_t valueId, tagKelDataType& value);
    const tagKelDataType* CachedValue(const char* keyFormat, int32_t valueId, ValueFetch fetch);
    bool GetPropertys(int32_t id, tagKelDataType& value);
    bool CurrentSymbol(tagSymbol& symbol);
    int32_t MarginMode();

    // Private helpers of positions, money, entries and exits.
    bool LastestBar();
    bool GetValidPrice(bool up, double& price);

    // Private helpers of the stops.

    // Private helpers of the statistics.

    // Private helpers of the output functions.

    CKelBaseData* m_pBaseData;

    // Figures derived from the host data object and PropertyCache to make hot paths
    // cheap. Dropping them never changes a result; a copy starts without them.
    std::unique_ptr<DerivedCaches> m_pDerivedCaches;
    DerivedCaches& Derived();

    friend struct CSystemFuncsTestAccess;
};
