// A trading strategy over one data stream of twenty daily bars, on an instrument
// whose contract is worth ContractUnit x BigPointValue x price (margin mode 4, unit
// 1, big point value 1, so a one-lot round trip nets its price move) with a tick of
// 0.01 and no commission, plus helpers that write round trips straight into
// TradeList.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/platform/Platform.h"
#include "support/TestAccess.h"
#include "support/TimeZone.h"

class StatisticsTest : public ::testing::Test {
protected:
    using Access = CSystemFuncsTestAccess;

    explicit StatisticsTest(fftest::Zone zone = fftest::Zone::Shanghai) : zone_(zone) {}

    void SetUp() override {
        data.FormulaKind = 7;
        data.Result = &result;
        data.InitialCapital = 100000;
        result.Figures.Capital = 100000;
        data.DataStreams.resize(1);
        UseInstrument(0, 1, 1);
        // Bar i is on the (i + 1)th of March 2010 at 10:30 local time.
        for (int i = 0; i < 20; ++i) AddBar(LocalMs(2010, 3, 1 + i));
    }

    // Milliseconds of a local calendar time in the zone in force.
    static int64_t LocalMs(int32_t year, int32_t month, int32_t day, int32_t hour = 10,
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

    void SetInteger(int index, const char* name, int32_t value) {
        tagKelDataType v;
        v.nType = KelInteger;
        v.nValue = value;
        funcs.PropertyCache[Key(index, name)] = v;
    }

    void SetDouble(int index, const char* name, double value) {
        tagKelDataType v;
        v.nType = KelDouble;
        v.dValue = value;
        funcs.PropertyCache[Key(index, name)] = v;
    }

    // Margin mode 4 with a tick of 0.01 and contract size 1.
    void UseInstrument(int index, int32_t contractUnit, double bigPointValue) {
        SetInteger(index, "MarginMode", 4);
        SetInteger(index, "MinMove", 1);
        SetDouble(index, "PriceScale", 0.01);
        SetDouble(index, "ContractSize", 1);
        SetInteger(index, "ContractUnit", contractUnit);
        SetDouble(index, "BigPointValue", bigPointValue);
    }

    void AddBar(int64_t time) {
        BarRecord bar;
        bar.time = time;
        bar.open = bar.high = bar.low = bar.close = 100;
        data.DataStreams[0].Bars.push_back(bar);
    }

    static tagTradeList Trip(int32_t entryType, int32_t entryBar, int32_t exitBar, double lots,
                             double entryPrice, double exitPrice, int32_t dataIndex = 0) {
        tagTradeList t;
        t.nEntryType = entryType;
        t.nExitType = entryType == 1 ? 2 : 4;
        t.nEntryBar = entryBar;
        t.nExitBar = exitBar;
        t.nEntryDataIndex = dataIndex;
        t.dLots = lots;
        t.dEntryPrice = entryPrice;
        t.dExitPrice = exitPrice;
        return t;
    }

    // A long round trip of one lot from 100 to 100 + move.
    void AddLong(double move, int32_t entryBar = 0, int32_t exitBar = 1) {
        data.TradeList.push_back(Trip(1, entryBar, exitBar, 1, 100, 100 + move));
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

// The bits of a double, so that two results can be compared exactly, NaN included.
inline uint64_t Bits(double v) {
    uint64_t bits = 0;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}
