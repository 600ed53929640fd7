// The host data object of one formula instance. The host owns it; the library reads
// and writes its members directly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/KelTypes.h"
#include "host/StrategyResult.h"

class CKelBaseData {
public:
    int32_t FormulaKind = 0;  // 7 strategy; 4, 5, 6 linked to a strategy; 3 field formula
    int32_t CurrentBar = 0;
    int32_t DataIndex = 0;
    std::vector<DataStream> DataStreams;
    uint32_t OrderSource = 0;

    // Backtest settings.
    double InitialCapital = 0;
    int32_t MaxOpenEntries = 0;
    bool AllowSameSourceEntries = false;
    double MaxPositionContracts = 0;
    int32_t CommissionType = 0;
    double CommissionValue = 0;
    bool SingleSideCommission = false;
    bool FreeCloseToday = false;
    double MarginRate = 0;
    int32_t TradeSizeMode = 0;
    int32_t TradeSizeValue = 0;
    int32_t PerformanceMode = 0;
    bool LastBarOfRun = false;

    // The simulated position.
    std::vector<tagTradeSignal> SignalHistory;
    std::vector<tagTradeList> TradeList;
    std::vector<tagTradeSignal> OpenEntries;
    std::vector<tagTradeSignal> DelayedSignals;
    CStrategyResult* Result = nullptr;

    // Chart output.
    std::vector<std::vector<std::string>> BarTexts;
    std::vector<PlotPoint> PlotPoints;
    std::vector<std::string> PlotNames;
    std::vector<std::vector<PlotPoint>> PlotSeries;
    std::vector<BarPlotPoint> BarPlots;
    bool AlertEnabled = false;
    std::vector<std::string> Alerts;
    tagFieldValue FieldValue;
    std::string FormulaNameText;
    std::vector<FormulaEntry> FormulaEntries;
    int32_t FormulaEntryIndex = 0;

    // Live account and persistence.
    std::string BrokerId, AccountId;
    std::vector<double> GlobalVars;

    // The strategy that a formula of kind 4, 5 or 6 is linked to.
    const CStrategyResult* LinkedStrategy = nullptr;
};
