// A trading strategy over one data stream of ten daily bars, with an instrument whose
// contract is worth ContractUnit x BigPointValue x price (margin mode 4) and a tick
// of 0.01, plus helpers to set time zones, properties, bars and positions.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/platform/Platform.h"
#include "support/TimeZone.h"
#include "support/TestAccess.h"

// Milliseconds of a local calendar time in the zone in force.
inline int64_t LocalMs(int32_t year, int32_t month, int32_t day, int32_t hour = 10,
                       int32_t minute = 30, int32_t second = 0) {
    ffplatform::LocalTime t;
    t.year = year;
    t.month = month;
    t.day = day;
    t.hour = hour;
    t.minute = minute;
    t.second = second;
    t.isDst = -1;
    return ffplatform::FromLocalTime(t) * 1000;
}

class TradingTest : public ::testing::Test {
protected:
    using Access = CSystemFuncsTestAccess;
    static constexpr double kInvalid = 1.7976931348623157e308;

    TradingTest() : zone_(fftest::Zone::Shanghai) {}

    void SetUp() override {
        data.FormulaKind = 7;
        data.Result = &result;
        data.InitialCapital = 1000000;
        result.Figures.Capital = 1000000;
        data.MaxOpenEntries = 10;
        data.AllowSameSourceEntries = true;
        data.MaxPositionContracts = 100;
        data.MarginRate = 0.1;
        data.TradeSizeMode = 0;
        data.TradeSizeValue = 1;
        data.DataStreams.resize(1);
        UseInstrument(0, 4);
        // Bar i opens at 100 + i, ranges from 98 + i to 102 + i and closes at 101 + i,
        // one bar a day from 1 March 2010 at 10:30.
        for (int i = 0; i < 10; ++i)
            AddBar(0, LocalMs(2010, 3, 1 + i), 100 + i, 102 + i, 98 + i, 101 + i);
        data.CurrentBar = 5;
    }

    void SetDouble(int index, const char* name, double value) {
        tagKelDataType v;
        v.nType = KelDouble;
        v.dValue = value;
        funcs.PropertyCache[Key(index, name)] = v;
    }

    void SetInteger(int index, const char* name, int32_t value) {
        tagKelDataType v;
        v.nType = KelInteger;
        v.nValue = value;
        funcs.PropertyCache[Key(index, name)] = v;
    }

    // Tick 0.01, contract unit 10, big point value 1, contract size 1, no cap.
    void UseInstrument(int index, int32_t marginMode) {
        SetInteger(index, "MarginMode", marginMode);
        SetInteger(index, "MinMove", 1);
        SetDouble(index, "PriceScale", 0.01);
        SetDouble(index, "ContractSize", 1);
        SetInteger(index, "ContractUnit", 10);
        SetDouble(index, "BigPointValue", 1);
        SetDouble(index, "MarginRatio", 0.1);
        SetInteger(index, "MaxSingleTradeSize", 0);
        SetInteger(index, "Spread", 0);
        SetInteger(index, "BarType", 0);
        SetInteger(index, "BarInterval", 1);
    }

    void AddBar(int stream, int64_t time, double open, double high, double low, double close) {
        BarRecord bar;
        bar.time = time;
        bar.open = open;
        bar.high = high;
        bar.low = low;
        bar.close = close;
        data.DataStreams[stream].Bars.push_back(bar);
    }

    BarRecord& Bar(int index) { return data.DataStreams[0].Bars[index]; }

    void GoToNewestBar() { data.CurrentBar = static_cast<int32_t>(Bar0Count()) - 1; }
    size_t Bar0Count() const { return data.DataStreams[0].Bars.size(); }

    void AddEntry(int32_t type, int32_t bar, double lots, double price, uint32_t source = 0) {
        data.OpenEntries.push_back({type, bar, source, 0, lots, price});
    }

    static tagTradeList Trip(int32_t entryType, int32_t entryBar, int32_t exitBar, double lots,
                             double entryPrice, double exitPrice) {
        tagTradeList t;
        t.nEntryType = entryType;
        t.nExitType = entryType == 1 ? 2 : 4;
        t.nEntryBar = entryBar;
        t.nExitBar = exitBar;
        t.dLots = lots;
        t.dEntryPrice = entryPrice;
        t.dExitPrice = exitPrice;
        return t;
    }

    static std::string Key(int index, const char* name) {
        char key[64];
        std::snprintf(key, sizeof key, "Data%d.%s", index, name);
        return key;
    }

    fftest::ScopedTimeZone zone_;
    CKelBaseData data{};
    CStrategyResult result{};
    CSystemFuncs funcs{&data};
};

// Signals and round trips as text with every bit of their doubles, so that a
// mismatch shows the whole record.
inline std::string Text(const tagTradeSignal& s) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "type %d bar %d source %u index %d lots %.17g price %.17g",
                  s.nType, s.nBar, s.nSource, s.nDataIndex, s.dLots, s.dPrice);
    return buf;
}

inline std::string Text(const tagTradeList& t) {
    char buf[256];
    std::snprintf(buf, sizeof buf,
                  "entry %d exit %d bars %d-%d sources %u-%u index %d lots %.17g prices "
                  "%.17g-%.17g",
                  t.nEntryType, t.nExitType, t.nEntryBar, t.nExitBar, t.nEntrySource,
                  t.nExitSource, t.nEntryDataIndex, t.dLots, t.dEntryPrice, t.dExitPrice);
    return buf;
}

inline std::string SignalText(int32_t type, int32_t bar, uint32_t source, int32_t index,
                              double lots, double price) {
    return Text(tagTradeSignal{type, bar, source, index, lots, price});
}

inline std::string TripText(int32_t entryType, int32_t exitType, int32_t entryBar,
                            int32_t exitBar, uint32_t entrySource, uint32_t exitSource,
                            int32_t index, double lots, double entryPrice, double exitPrice) {
    tagTradeList t;
    t.nEntryType = entryType;
    t.nExitType = exitType;
    t.nEntryBar = entryBar;
    t.nExitBar = exitBar;
    t.nEntrySource = entrySource;
    t.nExitSource = exitSource;
    t.nEntryDataIndex = index;
    t.dLots = lots;
    t.dEntryPrice = entryPrice;
    t.dExitPrice = exitPrice;
    return Text(t);
}
