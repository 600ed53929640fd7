// The example strategies: their catalogue and parameters, hand-checked crossover
// trades, the channel breakout flat at the close of intraday bars, the
// mean-reversion strategy pyramiding only when the settings allow it, and every
// strategy giving the same result when the live last bar is re-evaluated.
#include <gtest/gtest.h>

#include <sstream>

#include "FormulaFunction/FormulaFunction.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/BarCsv.h"
#include "runner/HostLoop.h"
#include "runner/Report.h"
#include "runner/SyntheticBars.h"
#include "support/RebarFeed.h"
#include "support/RebarRunTest.h"

namespace {

class ExampleStrategies : public RebarRunTest {
protected:
    static CKelBaseData Data(const std::vector<BarRecord>& bars) {
        return fftest::RebarStrategyData(bars, 1000000, 0);
    }

    // Runs `strategy` over the bars of `data`, re-evaluating the last bar `updates` times.
    static void Run(ffrunner::Strategy& strategy, CKelBaseData& data, CStrategyResult& result,
                    int32_t updates = 0) {
        data.Result = &result;
        CSystemFuncs funcs(&data);
        ffrunner::LoopOptions options;
        options.liveUpdates = updates;
        strategy.Reset();
        ffrunner::RunStrategyBars(data, funcs, [&] { strategy.OnBar(funcs); }, options);
    }

    static std::unique_ptr<ffrunner::Strategy> Make(
        const std::string& name, const std::vector<std::pair<std::string, std::string>>& params) {
        std::unique_ptr<ffrunner::Strategy> strategy = ffexamples::MakeStrategy(name);
        std::string error;
        for (const auto& [key, value] : params) {
            EXPECT_TRUE(strategy->SetParameter(key, value, error)) << error;
        }
        return strategy;
    }

    // Synthetic minute bars of rebar over `days` days.
    static std::vector<BarRecord> MinuteBars(int32_t days, uint64_t seed) {
        ffrunner::SyntheticBarsSpec spec;
        spec.seed = seed;
        spec.firstDay = 19724;  // 2024-01-02
        spec.days = days;
        std::stringstream csv;
        ffrunner::WriteSyntheticBars(spec, csv);
        return ffrunner::ParseBarCsv(csv.str(), "bars.csv").bars;
    }
};

BarRecord Bar(int64_t minute, double o, double h, double l, double c) {
    return BarRecord{1704157200000 + minute * 60000, o, h, l, c, 10, 100};
}

BarRecord Flat(int64_t minute, double price) { return Bar(minute, price, price, price, price); }

TEST_F(ExampleStrategies, TheCatalogueMakesEachByName) {
    const auto& catalogue = ffexamples::StrategyCatalogue();
    ASSERT_EQ(catalogue.size(), 3u);
    EXPECT_STREQ(catalogue[0].name, "ma-crossover");
    EXPECT_STREQ(catalogue[1].name, "channel-breakout");
    EXPECT_STREQ(catalogue[2].name, "mean-reversion");
    for (const auto& entry : catalogue) EXPECT_NE(ffexamples::MakeStrategy(entry.name), nullptr);
    EXPECT_EQ(ffexamples::MakeStrategy("ma"), nullptr);
}

TEST_F(ExampleStrategies, ParametersAreCheckedWithTheirReasons) {
    auto strategy = ffexamples::MakeStrategy("ma-crossover");
    std::string error;
    EXPECT_TRUE(strategy->SetParameter("fast", "3", error));
    EXPECT_TRUE(strategy->SetParameter("stop", "12.5", error));
    EXPECT_FALSE(strategy->SetParameter("fast", "0", error));
    EXPECT_EQ(error, "fast must be a whole number from 1 to 100000, not '0'");
    EXPECT_FALSE(strategy->SetParameter("slow", "2x", error));
    EXPECT_EQ(error, "slow must be a whole number from 1 to 100000, not '2x'");
    EXPECT_FALSE(strategy->SetParameter("target", "-1", error));
    EXPECT_EQ(error, "target must be a number of at least 0, not '-1'");
    EXPECT_FALSE(strategy->SetParameter("speed", "1", error));
    EXPECT_EQ(error, "unknown parameter 'speed' (ma-crossover has fast, slow, stop, target, lots)");
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"fast", "3"}, {"slow", "20"}, {"stop", "12.5"}, {"target", "600"}, {"lots", "0"}};
    EXPECT_EQ(strategy->Parameters(), expected);

    auto channel = ffexamples::MakeStrategy("channel-breakout");
    EXPECT_FALSE(channel->SetParameter("flat-at", "2400", error));
    EXPECT_EQ(error, "flat-at must be a whole number from 0 to 2359, not '2400'");
    auto reversion = ffexamples::MakeStrategy("mean-reversion");
    EXPECT_FALSE(reversion->SetParameter("length", "1", error));
    EXPECT_EQ(error, "length must be a whole number from 2 to 100000, not '1'");
}

TEST_F(ExampleStrategies, TheCrossoverBuysAndReversesOnTheCrossingBars) {
    // fast 1, slow 3: the close crosses above its 3-bar average on bar 4 (12 against
    // 10.67) and below it on bar 6 (8 against 10.67); the short is closed out at the end.
    auto strategy = Make("ma-crossover", {{"fast", "1"}, {"slow", "3"}, {"stop", "0"}, {"target", "0"}});
    CKelBaseData data = Data({Flat(0, 10), Flat(1, 10), Flat(2, 10), Flat(3, 10), Flat(4, 12),
                              Flat(5, 12), Flat(6, 8), Flat(7, 8)});
    CStrategyResult result{};
    Run(*strategy, data, result);
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(data.TradeList[0].nEntryType, 1);
    EXPECT_EQ(data.TradeList[0].nEntryBar, 4);
    EXPECT_EQ(data.TradeList[0].dEntryPrice, 12);
    EXPECT_EQ(data.TradeList[0].nExitBar, 6);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 8);
    EXPECT_EQ(data.TradeList[1].nEntryType, 3);
    EXPECT_EQ(data.TradeList[1].nEntryBar, 6);
    EXPECT_EQ(data.TradeList[1].nExitBar, 7);
}

TEST_F(ExampleStrategies, TheCrossoverLeavesOnItsStopLoss) {
    // Long 1 at 12 on bar 4; a stop of 20 a contract is 2 points of rebar (10 units a
    // contract), so bar 5 reaching 9 leaves at 10.
    auto strategy = Make("ma-crossover", {{"fast", "1"}, {"slow", "3"}, {"stop", "20"}, {"target", "0"}});
    CKelBaseData data = Data({Flat(0, 10), Flat(1, 10), Flat(2, 10), Flat(3, 10), Flat(4, 12),
                              Bar(5, 12, 12, 9, 11), Flat(6, 11)});
    CStrategyResult result{};
    Run(*strategy, data, result);
    ASSERT_GE(data.TradeList.size(), 1u);
    EXPECT_EQ(data.TradeList[0].nEntryBar, 4);
    EXPECT_EQ(data.TradeList[0].nExitBar, 5);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 10);
}

TEST_F(ExampleStrategies, TheCrossoverTakesItsProfitTarget) {
    auto strategy = Make("ma-crossover", {{"fast", "1"}, {"slow", "3"}, {"stop", "0"}, {"target", "30"}});
    CKelBaseData data = Data({Flat(0, 10), Flat(1, 10), Flat(2, 10), Flat(3, 10), Flat(4, 12),
                              Bar(5, 12, 16, 12, 13), Flat(6, 13)});
    CStrategyResult result{};
    Run(*strategy, data, result);
    ASSERT_GE(data.TradeList.size(), 1u);
    EXPECT_EQ(data.TradeList[0].nExitBar, 5);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 15);
}

TEST_F(ExampleStrategies, TheChannelBreakoutIsFlatAtTheCloseOfEveryDay) {
    auto strategy = Make("channel-breakout", {{"length", "10"}, {"trail", "200"}});
    CKelBaseData data = Data(MinuteBars(5, 7));
    CStrategyResult result{};
    Run(*strategy, data, result);
    const std::vector<BarRecord>& bars = data.DataStreams[0].Bars;
    ASSERT_GT(data.TradeList.size(), 5u);
    auto day = [&](int32_t bar) { return (bars[bar].time / 1000 + 8 * 3600) / 86400; };
    for (const tagTradeList& trade : data.TradeList) {
        EXPECT_EQ(day(trade.nEntryBar), day(trade.nExitBar)) << trade.nEntryBar;
    }
}

TEST_F(ExampleStrategies, TheMeanReversionPyramidsWhenTheSettingsAllowIt) {
    const std::vector<BarRecord> bars = MinuteBars(10, 3);
    auto strategy = Make("mean-reversion", {});
    CKelBaseData single = Data(bars);
    CStrategyResult once{};
    Run(*strategy, single, once);
    EXPECT_EQ(once.Figures.MaxOpenEntriesHeld, 1);
    ASSERT_GT(single.TradeList.size(), 0u);

    CKelBaseData pyramid = Data(bars);
    pyramid.MaxOpenEntries = 3;
    pyramid.AllowSameSourceEntries = true;
    CStrategyResult more{};
    Run(*strategy, pyramid, more);
    EXPECT_EQ(more.Figures.MaxOpenEntriesHeld, 3);
    EXPECT_GT(pyramid.TradeList.size(), single.TradeList.size());
}

TEST_F(ExampleStrategies, EachGivesOneResultWhetherTheLastBarIsLiveOrNot) {
    const std::vector<BarRecord> bars = MinuteBars(3, 11);
    for (const auto& entry : ffexamples::StrategyCatalogue()) {
        auto json = [&](int32_t updates) {
            auto strategy = ffexamples::MakeStrategy(entry.name);
            CKelBaseData data = Data(bars);
            data.MaxOpenEntries = 3;
            data.AllowSameSourceEntries = true;
            CStrategyResult result{};
            Run(*strategy, data, result, updates);
            return RebarJson(data);
        };
        EXPECT_EQ(json(0), json(7)) << entry.name;
    }
}

}  // namespace
