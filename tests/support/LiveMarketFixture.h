// A trading strategy on the newest bar of a chart on one known instrument, with a
// live quote for that instrument and a bound broker account, all served by the test
// double of the market-data library.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "support/FakeSubscribeManage.h"
#include "support/InstrumentFixture.h"

class LiveMarketFixture : public InstrumentFixture {
protected:
    static constexpr double kInvalid = 1.7976931348623157e308;
    static constexpr int32_t kInvalidInt = 2147483647;
    static constexpr int32_t kLastBar = 4;

    void SetUp() override {
        InstrumentFixture::SetUp();
        data.CurrentBar = kLastBar;
        data.FormulaKind = 7;
        data.BrokerId = fake.BrokerId;
        data.AccountId = fake.AccountId;
        fake.Quotes[{kMarket, "rb2405"}] = Tick();
    }

    // A quote whose every field holds a value of its own.
    static IModuleFutureTrader::ITickEx Tick() {
        IModuleFutureTrader::ITickEx t;
        t.Time = 1269479103250LL;  // 2010-03-25 01:05:03.250 UTC
        t.PreSettlePrice = 3000;
        t.PreClosePrice = 2990;
        t.Open = 3004;
        t.Last = 3036;
        t.BidPrice = 3035;
        t.BidVol = 12;
        t.AskPrice = 3037;
        t.AskVol = 7;
        t.High = 3045;
        t.Low = 2998;
        t.TotalVol = 123456;
        t.PreOpenInt = 800000;
        t.OpenInt = 801234;
        t.AvgPrice = 3021.5;
        t.LastVol = 4;
        t.TurnOver = 3.7e9;
        t.Close = 3033;
        t.HisHigh = 5100;
        t.HisLow = 1800;
        t.UpperLimit = 3150;
        t.LowerLimit = 2850;
        t.InsideVol = 61000;
        t.OutsideVol = 62456;
        t.TodayExitVol = 9000;
        t.TodayEntryVol = 9500;
        t.TickChg = 1;
        t.Flags = 0x00;
        return t;
    }

    // The live quote of the chart's instrument, as the library will next see it.
    IModuleFutureTrader::ITickEx& LiveTick() { return fake.Quotes[{kMarket, "rb2405"}]; }

    // Gives the bars of data source 0 these time stamps (milliseconds).
    void StampBars(const std::vector<int64_t>& times) {
        std::vector<BarRecord>& bars = data.DataStreams[0].Bars;
        bars.resize(times.size());
        for (size_t i = 0; i < times.size(); ++i) bars[i].time = times[i];
        data.CurrentBar = static_cast<int32_t>(times.size()) - 1;
    }

    // Stamps every bar with today's clock so that the newest bar lies on today's date.
    void StampBarsToday() {
        const int64_t now = static_cast<int64_t>(std::time(nullptr)) * 1000;
        StampBars({now, now, now, now, now});
    }

    // A second data source on another instrument, with bars at the same times.
    void AddSecondSource(const std::string& code) {
        DataStream s = data.DataStreams[0];
        s.Code = code;
        data.DataStreams.push_back(s);
        fake.AddSpec(kMarket, code, Spec());
    }
};
