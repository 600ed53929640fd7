// Cost of the simulated trading engine's order path: a market Buy followed by a
// market Sell of the whole position, on each bar of a 1,000-bar stream in turn.
#include <benchmark/benchmark.h>

#include "FormulaFunction/FormulaFunction.h"
#include "bench/BenchInstrument.h"

namespace {

void BM_BuyThenSell(benchmark::State& state) {
    CKelBaseData data{};
    CStrategyResult result{};
    data.FormulaKind = 7;
    data.Result = &result;
    data.InitialCapital = 1000000;
    result.Figures.Capital = 1000000;
    data.MaxOpenEntries = 1;
    data.MaxPositionContracts = 100;
    data.MarginRate = 0.1;
    data.TradeSizeValue = 1;
    data.CommissionType = 2;
    data.CommissionValue = 3;
    data.FreeCloseToday = true;
    data.DataStreams.resize(1);
    const int64_t start = 1262304000000LL;  // 2010-01-01 00:00 UTC
    for (int i = 0; i < 1000; ++i) {
        BarRecord bar;
        bar.time = start + i * 60000LL;
        bar.open = 3000 + i % 7;
        bar.high = bar.open + 5;
        bar.low = bar.open - 5;
        bar.close = bar.open + 1;
        data.DataStreams[0].Bars.push_back(bar);
    }
    CSystemFuncs funcs(&data);
    ffbench::SetTradingProperties(funcs);
    data.TradeList.reserve(1024);
    data.SignalHistory.reserve(2048);

    int32_t bar = 0;
    for (auto _ : state) {
        data.CurrentBar = bar;
        benchmark::DoNotOptimize(funcs.Buy(0, 0, false));
        benchmark::DoNotOptimize(funcs.Sell(0, 0, false));
        if (++bar == 1000) {
            bar = 0;
            data.TradeList.clear();
            data.SignalHistory.clear();
        }
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BuyThenSell);

}  // namespace
