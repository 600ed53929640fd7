// Plain records shared between the host and the library: bars, typed values,
// signals, round trips, catalogue entries and chart output.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One bar. `time` is milliseconds since 1970-01-01 00:00:00 UTC.
struct BarRecord {
    int64_t time = 0;
    double open = 0, high = 0, low = 0, close = 0, vol = 0, openInt = 0;
};

// One data source of a chart: the instrument, its bar type and interval, and its bars,
// oldest first.
struct DataStream {
    uint16_t MarketId = 0;
    std::string Code;
    int32_t BarType = 0;
    int32_t BarInterval = 0;
    std::vector<BarRecord> Bars;
};

// A typed value. Only the slot that nType names carries meaning:
// 1 boolean, 4 double, 7 text, 10 32-bit integer.
struct tagKelDataType {
    int32_t nType = 0;
    bool bValue = false;
    double dValue = 0;
    std::string strValue;
    int32_t nValue = 0;
};

enum KelDataKind : int32_t {
    KelBool = 1,
    KelDouble = 4,
    KelText = 7,
    KelInteger = 10,
};

// One executed entry or exit, or one signal waiting for the next bar.
// Types: 1 buy, 2 sell, 3 sell short, 4 buy to cover, 5 close everything.
struct tagTradeSignal {
    int32_t nType = 0;
    int32_t nBar = 0;
    uint32_t nSource = 0;
    int32_t nDataIndex = 0;
    double dLots = 0;
    double dPrice = 0;
};

// One completed round trip.
struct tagTradeList {
    int32_t nEntryType = 0, nExitType = 0, nEntryBar = 0, nExitBar = 0;
    uint32_t nEntrySource = 0, nExitSource = 0;
    int32_t nEntryDataIndex = 0, nExitDataIndex = 0;
    double dLots = 0, dEntryPrice = 0, dExitPrice = 0;
};

// Catalogue records handed to the host.
struct SysFuncParam {
    uint8_t cFlag = 0;
    tagKelDataType Default;
    std::string strName;
};

struct SysFuncInfo {
    int32_t nFirst = -1;
    int32_t nSecond = 0;
    std::string strName, strSecond, strThird;
    std::vector<SysFuncParam> vParams;
    uint16_t wFirst = 0;
    uint16_t wFuncId = 65535;
};

struct FuncGroupInfo {
    int32_t nGroupId = 0;
    std::string strName, strSecond;
};

// One bar of a plot series (formula kinds 4 and 6).
struct PlotPoint {
    bool bBoolSet = false;
    bool bBoolValue = false;
    bool bNumericSet = false;
    double dNumeric = 0;
    bool bTextSet = false;
    std::string strText;
    bool bColourSet = false;
    int32_t nColour = -1;
};

// One bar of the two-value bar plot series (formula kind 5).
struct BarPlotPoint {
    bool bSet = false;
    double dValue1 = 0;
    double dValue2 = 0;
    bool bColourSet = false;
    int32_t nColour = -1;
};

// The one typed field of a kind-3 formula.
struct tagFieldValue {
    int32_t nKind = 0;
    bool bBoolSet = false, bBoolValue = false;
    bool bNumericSet = false;
    double dNumeric = 0;
    bool bTextSet = false;
    std::string strText;
    bool bColourSet = false;
    int32_t nColour = -1;
};

// One formula of a strategy; the host may extend it.
struct FormulaEntry {
    std::string Name;
};
