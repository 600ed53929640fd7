// Cost per bar of a whole strategy run: PrepareBar, a formula body that trades and
// calls two stops, and CalStatistic, over 1,000,000 synthetic bars in statistics modes
// 1 and 2. The body opens a position every `spacing` bars and closes it half-way, so
// the runs end with 100 or 10,000 round trips; the cost per bar should not depend on
// that number. The stops are judged on every bar of a position (the trailing stop
// reads the bars since the entry) but are set too far away to fire, so that the
// number of round trips stays as chosen.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "bench/BenchInstrument.h"

namespace {

constexpr int32_t kBars = 1000000;

void BM_StrategyRun(benchmark::State& state) {
    const int32_t mode = static_cast<int32_t>(state.range(0));
    const int32_t trades = static_cast<int32_t>(state.range(1));
    const int32_t spacing = kBars / trades;
    CKelBaseData data{};
    CStrategyResult result{};
    data.FormulaKind = 7;
    data.Result = &result;
    data.InitialCapital = 100000000;
    data.MaxOpenEntries = 1;
    data.MaxPositionContracts = 100;
    data.MarginRate = 0.1;
    data.TradeSizeValue = 1;
    data.CommissionValue = 2;
    data.PerformanceMode = mode;
    data.DataStreams.resize(1);
    const int64_t start = 1262304000000LL;  // 2010-01-01 00:00 UTC
    uint32_t seed = 12345;
    double price = 3000;
    for (int32_t i = 0; i < kBars; ++i) {
        seed = seed * 1103515245u + 12345u;
        price += static_cast<double>((seed >> 16) % 11) - 5.0;
        if (price < 100) price = 100;
        BarRecord bar;
        bar.time = start + i * 60000LL;
        bar.open = price;
        bar.high = price + 4;
        bar.low = price - 4;
        bar.close = price + 1;
        data.DataStreams[0].Bars.push_back(bar);
    }
    CSystemFuncs funcs(&data);
    ffbench::SetTradingProperties(funcs);

    for (auto _ : state) {
        for (int32_t bar = 0; bar < kBars; ++bar) {
            data.CurrentBar = bar;
            data.LastBarOfRun = bar == kBars - 1;
            funcs.PrepareBar();
            const int32_t phase = bar % spacing;
            if (phase == 1) funcs.Buy(1, 0, false);
            if (phase == spacing / 2) funcs.Sell(0, 0, false);
            funcs.SetStopLoss(0, 1e9, true);
            funcs.SetDollarTrailing(1e9, false);
            funcs.CalStatistic();
        }
        benchmark::DoNotOptimize(result.Figures.Capital);
    }
    state.counters["trades"] = static_cast<double>(data.TradeList.size());
    state.counters["bars/s"] = benchmark::Counter(static_cast<double>(kBars) * state.iterations(),
                                                  benchmark::Counter::kIsRate);
}

BENCHMARK(BM_StrategyRun)
    ->Args({1, 100})
    ->Args({1, 10000})
    ->Args({2, 100})
    ->Args({2, 10000})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace
