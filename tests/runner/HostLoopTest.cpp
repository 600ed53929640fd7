#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "runner/HostLoop.h"

namespace {

using ffrunner::LoopOptions;

// Records the host's calls with the bar they were made on.
struct RecordingFuncs {
    CKelBaseData* data = nullptr;
    std::vector<std::string> calls;

    std::string Where() const {
        const BarRecord& last = data->DataStreams[0].Bars.back();
        return "@" + std::to_string(data->CurrentBar) + (data->LastBarOfRun ? " last" : "") +
               " close " + std::to_string(static_cast<int>(last.close));
    }
    void PrepareBar() { calls.push_back("PrepareBar" + Where()); }
    void CalStatistic() { calls.push_back("CalStatistic" + Where()); }
    void RestoreLastBar() { calls.push_back("RestoreLastBar" + Where()); }
};

CKelBaseData ThreeBars() {
    CKelBaseData data{};
    data.FormulaKind = 7;
    data.DataStreams.resize(1);
    data.DataStreams[0].Bars = {BarRecord{1000, 10, 12, 9, 11, 5, 1},
                                BarRecord{2000, 11, 13, 10, 12, 5, 1},
                                BarRecord{3000, 12, 15, 8, 14, 40, 7}};
    return data;
}

TEST(HostLoop, PreparesEvaluatesAndRatesEveryBarInOrder) {
    CKelBaseData data = ThreeBars();
    RecordingFuncs funcs{&data, {}};
    ffrunner::RunStrategyBars(data, funcs, [&] { funcs.calls.push_back("body" + funcs.Where()); });
    EXPECT_EQ(funcs.calls, (std::vector<std::string>{
                               "PrepareBar@0 close 14", "body@0 close 14", "CalStatistic@0 close 14",
                               "PrepareBar@1 close 14", "body@1 close 14", "CalStatistic@1 close 14",
                               "PrepareBar@2 last close 14", "body@2 last close 14",
                               "CalStatistic@2 last close 14"}));
    EXPECT_EQ(data.DataStreams[0].Bars.back().close, 14);
}

TEST(HostLoop, ReevaluatesTheLiveBarAfterRestoringIt) {
    CKelBaseData data = ThreeBars();
    RecordingFuncs funcs{&data, {}};
    LoopOptions options;
    options.liveUpdates = 3;
    std::vector<std::string> progress;
    options.progress = [&](size_t done, size_t total) {
        progress.push_back(std::to_string(done) + "/" + std::to_string(total));
    };
    ffrunner::RunStrategyBars(data, funcs, [&] { funcs.calls.push_back("body" + funcs.Where()); },
                              options);
    const std::vector<std::string> tail(funcs.calls.begin() + 6, funcs.calls.end());
    EXPECT_EQ(tail, (std::vector<std::string>{
                        "PrepareBar@2 last close 12", "body@2 last close 12",
                        "CalStatistic@2 last close 12", "RestoreLastBar@2 last close 8",
                        "body@2 last close 8", "CalStatistic@2 last close 8",
                        "RestoreLastBar@2 last close 15", "body@2 last close 15",
                        "CalStatistic@2 last close 15", "RestoreLastBar@2 last close 14",
                        "body@2 last close 14", "CalStatistic@2 last close 14"}));
    EXPECT_EQ(progress, std::vector<std::string>{"3/3"});
    const BarRecord& last = data.DataStreams[0].Bars.back();
    EXPECT_EQ(last.high, 15);
    EXPECT_EQ(last.low, 8);
    EXPECT_EQ(last.vol, 40);
}

TEST(HostLoop, DoesNothingWithoutBars) {
    CKelBaseData data{};
    RecordingFuncs funcs{&data, {}};
    ffrunner::RunStrategyBars(data, funcs, [] {});
    data.DataStreams.resize(1);
    ffrunner::RunStrategyBars(data, funcs, [] {});
    EXPECT_TRUE(funcs.calls.empty());
}

TEST(HostLoop, PutsTheLiveBarsStatisticsBackBeforeEachReevaluation) {
    CKelBaseData data = ThreeBars();
    CStrategyResult result{};
    data.Result = &result;
    struct Funcs {
        CKelBaseData* data;
        void PrepareBar() {}
        void RestoreLastBar() {}
        // Stands in for a statistics step that appends per bar.
        void CalStatistic() {
            data->Result->BarEquityList.push_back(BarEquity{});
            data->Result->PositionSeries.push_back(BarPosition{});
        }
    } funcs{&data};
    LoopOptions options;
    options.liveUpdates = 5;
    ffrunner::RunStrategyBars(data, funcs, [&] {
        ++result.Performance.All.nTrades;
        result.LargestPositionHeld += 1;
    }, options);
    EXPECT_EQ(result.BarEquityList.size(), 3u);
    EXPECT_EQ(result.PositionSeries.size(), 3u);
    EXPECT_EQ(result.Performance.All.nTrades, 3);
    EXPECT_EQ(result.LargestPositionHeld, 3);
}

TEST(HostLoop, LiveBarStatesEndAtTheFinalBar) {
    const BarRecord down{5000, 20, 24, 17, 18, 100, 9};
    const std::vector<BarRecord> states = ffrunner::LiveBarStates(down, 4);
    ASSERT_EQ(states.size(), 5u);
    EXPECT_EQ(states[0].close, 20);
    EXPECT_EQ(states[0].high, 20);
    EXPECT_EQ(states[0].vol, 0);
    EXPECT_EQ(states[1].close, 24);  // a bar that closes down touches its high first
    EXPECT_EQ(states[2].close, 17);
    EXPECT_EQ(states[2].high, 24);
    EXPECT_EQ(states[3].close, 18);
    EXPECT_EQ(states[3].vol, 75);
    EXPECT_EQ(states[4].close, down.close);
    EXPECT_EQ(states[4].vol, down.vol);
    EXPECT_EQ(states[4].time, down.time);
    EXPECT_EQ(ffrunner::LiveBarStates(down, 0).size(), 1u);
    EXPECT_EQ(ffrunner::LiveBarStates(down, 0)[0].low, 17);
}

TEST(HostLoop, RunsOtherKindsBodyOnly) {
    CKelBaseData data = ThreeBars();
    data.FormulaKind = 4;
    std::vector<int32_t> bars;
    ffrunner::RunFormulaBars(data, [&] { bars.push_back(data.CurrentBar * (data.LastBarOfRun ? -1 : 1)); });
    EXPECT_EQ(bars, (std::vector<int32_t>{0, 1, -2}));
}

}  // namespace
