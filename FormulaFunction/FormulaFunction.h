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
namespace fftrading {
struct RememberedInstrument;
struct OpenPosition;
}  // namespace fftrading

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
    void PrepareBar();
    void RestoreLastBar();

    // Math, strings, date and time, constants.
    double Abs(double v);
    double Neg(double v);
    int32_t Sign(double v);
    double Sqr(double v);
    double Sqrt(double v);
    double Power(double base, double exponent);
    double Exp(double v);
    double Ln(double v);
    double Log(double a, double b);
    double Pi();
    double Sin(double v);
    double Cos(double v);
    double Tan(double v);
    double Ctan(double v);
    double Asin(double v);
    double Acos(double v);
    double Atan(double v);
    double Atan2(double y, double x);
    double Sinh(double v);
    double Cosh(double v);
    double Tanh(double v);
    double Asinh(double v);
    double Acosh(double v);
    double Atanh(double v);
    int32_t IntPart(double v);
    double FracPart(double v);
    double Round(double v, int32_t digits);
    double RoundUp(double v, int32_t digits);
    double RoundDown(double v, int32_t digits);
    int32_t Trunc(double v, int32_t digits);
    double Ceiling(double v, double significance);
    double Floor(double v, double significance);
    int32_t Even(double v);
    int32_t Odd(double v);
    int32_t Mod(int32_t a, int32_t b);
    int32_t Fact(int32_t n);
    int32_t Combin(int32_t n, int32_t k);
    double Rand(double low, double high);

    int32_t Len(const std::string& s);
    bool Exact(const std::string& a, const std::string& b);
    std::string Upper(const std::string& s);
    std::string Lower(const std::string& s);
    std::string Trim(const std::string& s);
    std::string Left(const std::string& s, int32_t n);
    std::string Right(const std::string& s, int32_t n);
    std::string Mid(const std::string& s, int32_t first, int32_t n);
    double Value(const std::string& s);
    std::string Text(double v);

    int32_t CurrentDate();
    double CurrentTime();
    double SystemDateTime();
    int32_t MakeDate(int32_t year, int32_t month, int32_t day);
    double MakeTime(int32_t hour, int32_t minute, int32_t second);
    double MakeDateTime(int32_t date, double time);
    int32_t DateAdd(int32_t date, int32_t days);
    int32_t DateDiff(int32_t date1, int32_t date2);
    std::string DateToString(int32_t date);
    std::string TimeToString(double time);
    std::string DateTimeToString(double value);
    int32_t StringToDate(const std::string& text);
    double StringToTime(const std::string& text);
    double StringToDateTime(const std::string& text);

    int32_t Black();
    int32_t White();
    int32_t Red();
    int32_t Green();
    int32_t Blue();
    int32_t Yellow();
    int32_t Cyan();
    int32_t Magenta();
    int32_t DarkRed();
    int32_t DarkGreen();
    int32_t DarkCyan();
    int32_t DarkMagenta();
    int32_t DarkBrown();
    int32_t DarkGray();
    int32_t LightGray();
    int32_t DefaultColor();
    int32_t Rgb(int32_t red, int32_t green, int32_t blue);
    int32_t Sunday();
    int32_t Monday();
    int32_t Tuesday();
    int32_t Wednesday();
    int32_t Thursday();
    int32_t Friday();
    int32_t Saturday();
    int32_t Enum_Entry();
    int32_t Enum_Exit();
    int32_t Enum_ExitToday();
    int32_t Enum_Buy();
    int32_t Enum_Sell();
    int32_t Enum_Declared();
    int32_t Enum_FillPart();
    int32_t Enum_Filled();
    int32_t Enum_Canceled();
    int32_t Enum_Deleted();
    int32_t Enum_Canceling();
    int32_t Enum_Declare();
    int32_t InvalidInteger();
    double InvalidNumeric();
    std::string InvalidString();
    double IIF(bool condition, double a, double b);
    std::string IIFString(bool condition, const std::string& a, const std::string& b);

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

    bool QuoteDataExist();
    double Q_AskPrice(int32_t depth);
    double Q_AskVol(int32_t depth);
    double Q_BidPrice(int32_t depth);
    double Q_BidVol(int32_t depth);
    double Q_Close();
    double Q_High();
    int32_t Q_LastDate();
    double Q_LastTime();
    double Q_LastVol();
    double Q_Low();
    double Q_Open();
    double Q_OpenInt();
    double Q_Oscillation();
    double Q_PriceChg();
    double Q_PriceChgRatio();
    double Q_TickChg();
    double Q_TotalVol();
    double Q_PreSettlePrice();
    double Q_PreOpenInt();
    double Q_AvgPrice();
    double Q_TurnOver();
    double Q_HisHigh();
    double Q_HisLow();
    double Q_UpperLimit();
    double Q_LowerLimit();
    double Q_InsideVol();
    double Q_OutsideVol();
    double Q_TodayEntryVol();
    double Q_TodayExitVol();
    double Q_Last();
    int32_t Q_LastFlag();
    int32_t Q_BidPriceFlag();
    int32_t Q_AskPriceFlag();
    int32_t Q_OpenIntFlag();

    bool AccountDataExist();
    std::string A_BrokerID();
    std::string A_AccountID();
    double A_PreviousEquity();
    double A_ProfitLoss();
    double A_CurrentEquity();
    double A_FreeMargin();
    double A_BuyFreeze();
    double A_BuyMargin();
    double A_SellFreeze();
    double A_SellMargin();
    double A_TodayDeposit();
    double A_TodayDrawing();
    double A_BuyPosition();
    double A_BuyAvgPrice();
    double A_BuyProfitLoss();
    double A_TodayBuyPosition();
    double A_SellPosition();
    double A_SellAvgPrice();
    double A_SellProfitLoss();
    double A_TodaySellPosition();
    double A_TotalPosition();
    double A_TotalAvgPrice();
    double A_PositionProfitLoss();
    int32_t A_GetOrderCount();
    int32_t A_GetOpenOrderCount();
    int32_t A_GetLastOrderIndex(int32_t buyOrSell, int32_t entryOrExit);
    int32_t A_GetLastOpenOrderIndex(int32_t buyOrSell, int32_t entryOrExit);
    int32_t A_OrderStatus(int32_t index);
    std::string A_OrderContractNo(int32_t index);
    int32_t A_OrderBuyOrSell(int32_t index);
    int32_t A_OrderEntryOrExit(int32_t index);
    double A_OrderTime(int32_t index);
    double A_OrderLot(int32_t index);
    double A_OrderPrice(int32_t index);
    double A_OrderFilledLot(int32_t index);
    double A_OrderFilledPrice(int32_t index);
    double A_OrderCanceledLot(int32_t index);
    int32_t A_OpenOrderStatus(int32_t index);
    std::string A_OpenOrderContractNo(int32_t index);
    int32_t A_OpenOrderBuyOrSell(int32_t index);
    int32_t A_OpenOrderEntryOrExit(int32_t index);
    double A_OpenOrderTime(int32_t index);
    double A_OpenOrderLot(int32_t index);
    double A_OpenOrderPrice(int32_t index);
    double A_OpenOrderFilledLot(int32_t index);
    double A_OpenOrderFilledPrice(int32_t index);
    bool A_SendOrder(int32_t buyOrSell, int32_t entryOrExit, double lots, double price);
    bool A_DeleteOrder(const std::string& contractNo);

    // Positions and the records in use.
    int32_t MarketPosition();
    double CurrentContracts();
    int32_t CurrentEntries();
    double AvgEntryPrice();
    double EntryPrice();
    double LastEntryPrice();
    int32_t EntryDate();
    double EntryTime();
    int32_t LastEntryDate();
    double LastEntryTime();
    int32_t BarsSinceEntry();
    int32_t BarsSinceLastEntry();
    double ExitPrice();
    int32_t ExitDate();
    double ExitTime();
    int32_t BarsSinceExit();
    double ContractProfit();
    double PositionProfit();
    double CurrentCapital();
    double MaxContracts();
    double MaxContractsHeld();
    int32_t MaxEntries();
    double MaxPositionProfit();
    double MaxPositionLoss();
    double MaxIDDrawDown();
    double I_AvgEntryPrice();
    double I_CurrentContracts();
    int32_t I_MarketPosition();
    double I_CloseEquity();
    double I_OpenEquity();

    // Money: sizing, commission, margin.

    // Entry orders.
    bool Buy(double lots, double price, bool delay);
    bool SellShort(double lots, double price, bool delay);

    // Exit orders.
    bool Sell(double lots, double price, bool delay);
    bool BuyToCover(double lots, double price, bool delay);

    // Fixed stops.
    bool SetStopLoss(int32_t nMode, double dAmount, bool bWholePosition);
    bool SetProfitTarget(int32_t nMode, double dAmount, bool bWholePosition);
    bool SetBreakEven(int32_t nMode, double dAmount, bool bWholePosition);
    bool SetExitOnClose();

    // Trailing and inactivity stops.
    bool SetDollarTrailing(double dAmount, bool bWholePosition);
    bool SetPercentTrailing(double dAmount, double dPercent, bool bWholePosition);
    bool SetPeriodTrailing(int32_t nMode, double dAmount, int32_t nBars, bool bWholePosition);
    bool SetInactivate(int32_t nMode, double dAmount, int32_t nBars, bool bWholePosition);

    // Trade figures.
    int32_t TotalTrades();
    int32_t NumWinTrades();
    int32_t NumLosTrades();
    int32_t NumEvenTrades();
    double PercentProfit();
    int32_t TotalBarsWinTrades();
    int32_t TotalBarsLosTrades();
    int32_t TotalBarsEvenTrades();
    int32_t AvgBarsWinTrade();
    int32_t AvgBarsLosTrade();
    int32_t AvgBarsEvenTrade();
    double LargestWinTrade();
    double LargestLosTrade();
    double GrossProfit();
    double GrossLoss();
    double NetProfit();
    int32_t MaxConsecWinners();
    int32_t MaxConsecLosers();

    // The statistics step.
    void CalStatistic();

    // Plotting.
    double PlotNumeric(const std::string& name, double value, int32_t colour, int32_t barsAgo);
    bool PlotBool(const std::string& name, bool value, int32_t colour, int32_t barsAgo);
    std::string PlotString(const std::string& name, const std::string& value, int32_t colour,
                           int32_t barsAgo);
    void PlotBar(const std::string& name, double value1, double value2, int32_t colour,
                 int32_t barsAgo);
    bool Unplot(const std::string& name, int32_t barsAgo);

    // Alerts, commentary, fields and formula name.
    void Alert(const std::string& message);
    bool AlertEnabled();
    void Commentary(const std::string& text);
    bool FieldBool(const std::string& name, bool value, int32_t colour);
    double FieldNumeric(const std::string& name, double value, int32_t colour);
    std::string FieldString(const std::string& name, const std::string& value, int32_t colour);
    std::string FormulaName();

    // Files, profile strings and global variables.
    bool FileAppend(const std::string& fileName, const std::string& line);
    bool FileDelete(const std::string& fileName);
    bool SetOstraProfileString(const std::string& section, const std::string& key,
                               const std::string& value);
    std::string GetOstraProfileString(const std::string& section, const std::string& key);
    bool SetGlobalVar(int32_t index, double value);
    double GetGlobalVar(int32_t index);

private:
    int32_t GetServerTime();

    // Private helpers of bar access.
    double RealHigh(int32_t offset);
    double RealLow(int32_t offset);
    // The bar at `index` of the current data stream, or null when the stream or the
    // bar does not exist.
    const BarRecord* StreamBar(uint32_t index) {
        if (m_pBaseData == nullptr) return nullptr;
        const uint32_t stream = static_cast<uint32_t>(m_pBaseData->DataIndex);
        if (stream >= m_pBaseData->DataStreams.size()) return nullptr;
        const std::vector<BarRecord>& bars = m_pBaseData->DataStreams[stream].Bars;
        return index < bars.size() ? &bars[index] : nullptr;
    }
    const BarRecord* CurrentStreamBar() {
        return m_pBaseData == nullptr ? nullptr
                                      : StreamBar(static_cast<uint32_t>(m_pBaseData->CurrentBar));
    }

    // Private helpers of the per-bar driver.
    class Valuation;
    void RealHighLow(int32_t offset, const Valuation& value, double& high, double& low);
    void PrepareFirstBar();
    void PrepareNormalBar();
    void SaveLastBarData();
    void DetectNewDay();
    bool FollowPreviousBarExcursion(const fftrading::OpenPosition& position, Valuation& value);
    void CloseOnPreviousBar(double price);
    void RecordPreviousBarEquity(const fftrading::OpenPosition& position, Valuation& value);
    double PreviousBarCommission(int32_t bar);
    void TrackEquity(double equity, int64_t time);
    PositionSnapshot PreviousBarSnapshot(const fftrading::OpenPosition& position, Valuation& value);
    void RunDelayedSignals();
    void MarkRestorePoint();
    // Defined in bars/MainBars.h.
    int64_t MainBarTime(int32_t bar);
    double MainBarClose(int32_t bar);
    bool FollowBarExcursion(const fftrading::OpenPosition& position, Valuation& value);
    void RecordBarPosition(const fftrading::OpenPosition& position, Valuation& value);
    void SummarizeTrades();
    void RecordBarEquity(const fftrading::OpenPosition& position, Valuation& value);
    double BarCommission(int32_t bar);

    // Where SignalHistory and TradeList stood when the state of the live last bar was
    // saved (bar -1: nothing saved by this object). What lies beyond was recorded by
    // evaluations of that bar, including a forced exit booked on the bar before it.
    struct RestorePoint {
        int32_t bar = -1;
        size_t signals = 0;
        size_t trades = 0;
    };
    RestorePoint m_restorePoint;

    // Private helpers of properties, quotes and account.
    using ValueFetch = bool (CSystemFuncs::*)(int32_t valueId, tagKelDataType& value);
    const tagKelDataType* CachedValue(const char* keyFormat, int32_t valueId, ValueFetch fetch);
    bool GetPropertys(int32_t id, tagKelDataType& value);
    bool CurrentSymbol(tagSymbol& symbol);
    int32_t MarginMode();
    bool OnLastTradingDay();
    const tagKelDataType* LatestQuote(const char* keyFormat, int32_t valueId);
    const tagKelDataType* SameDayQuote(const char* keyFormat, int32_t valueId);
    bool GetQuoteValue(int32_t valueId, tagKelDataType& value);
    bool AccountBound();
    bool InstrumentAccountReady();
    const tagKelDataType* AccountValue(const char* keyFormat, int32_t valueId);
    bool GetAccountValue(int32_t valueId, tagKelDataType& value);
    const tagKelDataType* InstrumentAccountValue(const char* keyFormat, int32_t valueId,
                                                 ValueFetch fetch);
    bool GetPositionValue(int32_t valueId, tagKelDataType& value);
    bool GetOrderCountValue(int32_t valueId, tagKelDataType& value);
    bool ListOrders(bool openOnly, std::vector<tagBrokerOrder>& orders);
    bool OrderByIndex(bool openOnly, int32_t index, tagBrokerOrder& order);
    int32_t LastOrderIndex(bool openOnly, int32_t buyOrSell, int32_t entryOrExit);

    // Private helpers of positions, money, entries and exits.
    bool LastestBar();
    bool GetValidPrice(bool up, double& price);
    // Only a trading strategy with a result block has a simulated position; every
    // other formula sees a flat strategy with no history.
    bool InStrategy() const {
        return m_pBaseData != nullptr && m_pBaseData->FormulaKind == 7 &&
               m_pBaseData->Result != nullptr;
    }
    int32_t GetCurrentEntryPositions();
    bool BarDateTime(int32_t bar, int32_t& date, double& time);
    const PositionSnapshot* LinkedSnapshot();
    double GetProfitLoss(bool isLong, double entryPrice, double price);
    double GetRequiredMargin(double lots, double price);
    void ReadRememberedInstrument(fftrading::RememberedInstrument& out);
    fftrading::OpenPosition ReadOpenPosition();
    double GetMarginCallPrice(double amount, double entryPrice, double contracts);
    double GetCommission(double lots, double price);
    double GetDoubleCommission(const tagTradeList& trade);
    bool SingleCommission();
    bool FreeCommission(int32_t entryBar, int32_t exitBar);
    double AvailableCapital();
    double GetMaxTradeSize(double money, double price);
    double GetTradeSize(double lots, double price);
    double GetDefaultTradeSize(double price);
    double GetSpread();
    int32_t CalcTradeList(const tagTradeList& trade);
    int32_t CalcTradeList(const tagTradeList& trade, double& net, double& commission);
    void ClampToTodayLimits(double& price);
    bool OrderFillPrice(bool roundUp, double price, double& fill);
    void ParkSignal(int32_t type, double lots, double price);
    void UpdateEntryTrackers(bool isLong);
    bool SimpleBuy(double lots, double price, bool delay);
    bool SimpleSellShort(double lots, double price, bool delay);
    bool CombineBuy(double lots, double price, bool delay);
    bool CombineSellShort(double lots, double price, bool delay);
    bool OpenEntry(bool isLong, double lots, double price, bool delay);
    bool ReverseInto(bool isLong, double lots, double price, bool delay);
    void HandleDelaySignal(const tagTradeSignal& signal);
    bool SimpleSell(double lots, double price, bool delay);
    bool SimpleBuyToCover(double lots, double price, bool delay);
    bool ExitPosition(bool isLong, double lots, double price, bool delay);
    double WriteRoundTrip(bool isLong, const tagTradeSignal& entry, double lots, double price);
    void CloseEntriesFifo(bool isLong, double quantity, double price, double& commission,
                          double& lotsTimesPrice);
    void ClosePosition(double price);
    void ClosePosition(const tagTradeSignal& entry, double price);

    // Private helpers of the stops.
    struct StopContext;
    using StopDecision = bool (CSystemFuncs::*)(const StopContext& stop, double& fill);
    void CalcStopMaxInfo();
    bool PrepareStop(int32_t mode, double amount, StopContext& stop);
    bool ApplyStop(bool wholePosition, bool senseOfEntry, StopContext& stop, StopDecision decide);
    bool LossStopHit(const StopContext& stop, double& fill);
    bool ProfitTargetHit(const StopContext& stop, double& fill);
    bool BreakEvenHit(const StopContext& stop, double& fill);
    bool TrailingStopHit(const StopContext& stop, double& fill);
    bool PercentTrailingHit(const StopContext& stop, double& fill);
    bool InactivityHit(const StopContext& stop, double& fill);
    double ScanBarPrice(int32_t index, bool high, int32_t first, bool firstIsEntry);
    void ScanExtremes(int32_t first, bool firstIsEntry, double& high, double& low);
    void StretchExtremes(int32_t first, int32_t last, double& high, double& low);
    bool GainRisesWithPrice(double lots);
    double PeakGain(const StopContext& stop, double& peakPrice);

    // Private helpers of the statistics.
    void CalcTradePerformance(bool isLong, double& gross, double& commission,
                              const tagTradeList& trade);
    bool UpdateTradeFigures();
    bool TradeFiguresHold();
    void AppendValuationInputs(int32_t dataIndex);

    // Private helpers of the output functions.
    bool PlotTargetBar(const std::string& name, int32_t barsAgo, size_t& index);
    PlotPoint* PlotRecord(const std::string& name, int32_t barsAgo);
    int32_t FindPlotName(const std::string& name) const;

    CKelBaseData* m_pBaseData;

    // Figures derived from the host data object and PropertyCache to make hot paths
    // cheap. Dropping them never changes a result; a copy starts without them.
    std::unique_ptr<DerivedCaches> m_pDerivedCaches;
    DerivedCaches& Derived() { return m_pDerivedCaches ? *m_pDerivedCaches.get() : NewDerived(); }
    DerivedCaches& NewDerived();

    friend struct CSystemFuncsTestAccess;
};
