// Cost of the stops that look at every bar since the entry, for a position held
// over a long stretch: each iteration evaluates one more bar of a 200,000-bar stream
// with one long position open since bar 0, calling the stop on that bar as a
// formula that keeps the stop in force does.
#include <benchmark/benchmark.h>

#include "FormulaFunction/FormulaFunction.h"
#include "bench/BenchInstrument.h"

namespace {

constexpr int32_t kBars = 200000;

struct HeldPosition {
    CKelBaseData data{};
    CStrategyResult result{};
    CSystemFuncs funcs{&data};

    HeldPosition() {
        data.FormulaKind = 7;
        data.Result = &result;
        result.Figures.Capital = 1000000;
        data.DataStreams.resize(1);
        const int64_t start = 1262304000000LL;
        for (int32_t i = 0; i < kBars; ++i) {
            BarRecord bar;
            bar.time = start + i * 60000LL;
            bar.open = 3000 + i % 13;
            bar.high = bar.open + 5;
            bar.low = bar.open - 5;
            bar.close = bar.open + 1;
            data.DataStreams[0].Bars.push_back(bar);
        }
        ffbench::SetTradingProperties(funcs);
        data.OpenEntries.push_back({1, 0, 0, 0, 1, 3000});
    }
};

// The stops never fire (the amounts are out of reach); the bar advances each
// iteration and starts again from bar 1 at the end of the stream.
template <typename Stop>
void HoldAndCall(benchmark::State& state, Stop stop) {
    HeldPosition held;
    int32_t bar = 1;
    for (auto _ : state) {
        held.data.CurrentBar = bar;
        benchmark::DoNotOptimize(stop(held.funcs));
        if (++bar == kBars) bar = 1;
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_DollarTrailingHeld(benchmark::State& state) {
    HoldAndCall(state, [](CSystemFuncs& f) { return f.SetDollarTrailing(1e9, true); });
}
BENCHMARK(BM_DollarTrailingHeld);

void BM_BreakEvenHeld(benchmark::State& state) {
    HoldAndCall(state, [](CSystemFuncs& f) { return f.SetBreakEven(0, 1e9, false); });
}
BENCHMARK(BM_BreakEvenHeld);

void BM_PercentTrailingHeld(benchmark::State& state) {
    HoldAndCall(state, [](CSystemFuncs& f) { return f.SetPercentTrailing(1e9, 0.5, true); });
}
BENCHMARK(BM_PercentTrailingHeld);

void BM_PeriodTrailing50Held(benchmark::State& state) {
    HoldAndCall(state, [](CSystemFuncs& f) { return f.SetPeriodTrailing(0, 1e9, 50, true); });
}
BENCHMARK(BM_PeriodTrailing50Held);

void BM_StopLossHeld(benchmark::State& state) {
    HoldAndCall(state, [](CSystemFuncs& f) { return f.SetStopLoss(0, 1e9, true); });
}
BENCHMARK(BM_StopLossHeld);

}  // namespace
