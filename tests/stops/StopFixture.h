// The trading fixture with helpers to shape bars and open entries for the stops.
// The instrument is worth ContractUnit 10 x BigPointValue 1 per point, so one
// contract gains or loses 10 per point and a money amount of 30 on one contract is
// 3 points away; the tick is 0.01. The bar being evaluated is bar 5 of 10.
#pragma once

#include <gtest/gtest.h>

#include "trading/TradingFixture.h"

class StopTest : public TradingTest {
protected:
    void SetBar(int index, double open, double high, double low, double close) {
        BarRecord& bar = Bar(index);
        bar.open = open;
        bar.high = high;
        bar.low = low;
        bar.close = close;
    }

    // Every bar opens, trades and closes at `price`.
    void FlatBars(double price) {
        for (size_t i = 0; i < Bar0Count(); ++i)
            SetBar(static_cast<int>(i), price, price, price, price);
    }

    void Long(int32_t bar, double lots, double price) { AddEntry(1, bar, lots, price); }
    void Short(int32_t bar, double lots, double price) { AddEntry(3, bar, lots, price); }

    // A price given as a whole number of 0.0001 steps, the way prices on the tick are
    // formed.
    static double Steps(int64_t steps) { return static_cast<double>(steps) * 0.0001; }

    // The round trips written so far as text, for whole-record comparisons.
    std::vector<std::string> Trips() const {
        std::vector<std::string> out;
        for (const tagTradeList& trip : data.TradeList) out.push_back(Text(trip));
        return out;
    }

    // One round trip of an entry closed by a stop on the bar being evaluated.
    std::string StopTrip(int32_t entryType, int32_t entryBar, double lots, double entryPrice,
                         double exitPrice) const {
        return TripText(entryType, entryType == 1 ? 2 : 4, entryBar, data.CurrentBar, 0, 0, 0,
                        lots, entryPrice, exitPrice);
    }

    double ExitOf(size_t trip) const { return data.TradeList.at(trip).dExitPrice; }

    // The host never rewrites complete bars within a run. A test that changes a bar
    // before the one being evaluated and calls a stop again on the same bar stands for
    // new data, for which the host makes a new object; so does this, keeping the
    // cached properties and dropping what the object derived from the old bars.
    void ForgetDerived() { funcs = CSystemFuncs(funcs); }
};
