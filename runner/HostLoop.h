// The host's main loop over one formula, as the trading application runs it:
//
//   for each bar t = 0 .. n−1 of data stream 0 (CurrentBar = t,
//   LastBarOfRun = t is the last bar):
//       PrepareBar(); the formula body; CalStatistic();
//
// and then, for a live last bar, again at every price update of that bar:
//
//       RestoreLastBar(); the formula body; CalStatistic();
//
// The loop is written over any object with those three members so that it can be
// checked against a recording stand-in as well as run with CSystemFuncs.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "host/KelBaseData.h"

namespace ffrunner {

// The states a live bar passes through before it reaches `final`: it opens at its
// open, touches the extreme it reaches first (the low when the bar closes up), then
// the other, then closes; volume and open interest grow towards the final values.
// `updates` states follow the first one; the last state equals `final` exactly.
// Returns 1 + updates states (just `final` when updates is 0).
std::vector<BarRecord> LiveBarStates(const BarRecord& final, int32_t updates);

// Statistics a re-evaluation of the live bar must not count twice: the round-trip
// figures, the summary, the per-bar series and the entry statistics. RestoreLastBar
// puts back the position; the host puts these back from a copy it takes after
// PrepareBar of the live bar.
struct LiveBarStatistics {
    TradePerformance performance;
    SummaryFigures summary;
    size_t positionSeries = 0;
    size_t barEquityList = 0;
    double lowestBarEquity = 0, highestBarEquity = 0;
    int32_t highestEquityDate = 0, highestEquityTime = 0, barsWithPosition = 0;
    double largestMargin = 0, largestLongMargin = 0, largestShortMargin = 0;
    double largestPosition = 0, largestLong = 0, largestShort = 0;

    void Save(const CStrategyResult& result);
    void Restore(CStrategyResult& result) const;
};

// Makes room in the result block's series that get one record per bar, so that a
// long run does not grow them (and copy them) step by step.
void ReservePerBarRecords(CStrategyResult& result, size_t bars);

struct LoopOptions {
    // Price updates at which the last bar is evaluated again (0: evaluated once).
    int32_t liveUpdates = 0;
    // Called about every 65536 bars and at the end with (bars done, bar count).
    std::function<void(size_t, size_t)> progress;
};

// Runs a trading strategy (FormulaKind 7) over all bars of data stream 0.
template <class Funcs, class Body>
void RunStrategyBars(CKelBaseData& data, Funcs& funcs, Body&& body,
                     const LoopOptions& options = {}) {
    if (data.DataStreams.empty()) return;
    std::vector<BarRecord>& bars = data.DataStreams[0].Bars;
    const size_t n = bars.size();
    if (n == 0) return;
    const BarRecord final = bars.back();
    const std::vector<BarRecord> live = LiveBarStates(final, options.liveUpdates);
    LiveBarStatistics statistics;
    if (data.Result != nullptr) ReservePerBarRecords(*data.Result, n);
    for (size_t t = 0; t < n; ++t) {
        data.CurrentBar = static_cast<int32_t>(t);
        data.LastBarOfRun = t + 1 == n;
        if (t + 1 == n) bars.back() = live.front();
        funcs.PrepareBar();
        if (t + 1 == n && data.Result != nullptr) statistics.Save(*data.Result);
        body();
        funcs.CalStatistic();
        if ((t & 0xFFFF) == 0xFFFF && options.progress) options.progress(t + 1, n);
    }
    for (size_t i = 1; i < live.size(); ++i) {
        bars.back() = live[i];
        funcs.RestoreLastBar();
        if (data.Result != nullptr) statistics.Restore(*data.Result);
        body();
        funcs.CalStatistic();
    }
    if (options.progress) options.progress(n, n);
}

// Runs a formula of another kind (3, 4, 5, 6) over all bars: the body alone.
template <class Body>
void RunFormulaBars(CKelBaseData& data, Body&& body) {
    if (data.DataStreams.empty()) return;
    const size_t n = data.DataStreams[0].Bars.size();
    for (size_t t = 0; t < n; ++t) {
        data.CurrentBar = static_cast<int32_t>(t);
        data.LastBarOfRun = t + 1 == n;
        body();
    }
}

}  // namespace ffrunner
