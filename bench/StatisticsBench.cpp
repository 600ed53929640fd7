// Cost of one call of a statistics function once the round trips are in the list,
// as the per-bar steps make it on every bar: NetProfit and MaxConsecWinners over
// 100 and over 100,000 round trips, with and without the same-day free close (which
// adds the check of the newest bar's date); and NetProfit after the live bar was
// evaluated again, its round trip closed at another price. The costs should not
// grow with the number of round trips.
#include <benchmark/benchmark.h>

#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "bench/BenchInstrument.h"

namespace {

// A strategy whose list holds `trips` round trips over a stream of one bar a minute,
// with a commission rate and both sides charged.
struct Strategy {
    CKelBaseData data{};
    CStrategyResult result{};
    CSystemFuncs funcs{&data};

    Strategy(int64_t trips, bool freeCloseToday) {
        data.FormulaKind = 7;
        data.Result = &result;
        data.InitialCapital = 1000000;
        data.CommissionType = 2;
        data.CommissionValue = 3;
        data.FreeCloseToday = freeCloseToday;
        data.DataStreams.resize(1);
        const int64_t start = 1262304000000LL;  // 2010-01-01 00:00 UTC
        const int64_t bars = trips + 10;
        for (int64_t i = 0; i < bars; ++i) {
            BarRecord bar;
            bar.time = start + i * 60000LL;
            bar.open = bar.high = bar.low = bar.close = 3000 + static_cast<double>(i % 7);
            data.DataStreams[0].Bars.push_back(bar);
        }
        ffbench::SetContractProperties(funcs);
        for (int64_t i = 0; i < trips; ++i) {
            tagTradeList trip;
            trip.nEntryType = i % 3 == 0 ? 3 : 1;
            trip.nExitType = trip.nEntryType == 1 ? 2 : 4;
            trip.nEntryBar = static_cast<int32_t>(i);
            trip.nExitBar = static_cast<int32_t>(i + 1 + i % 5);
            trip.dLots = 1 + static_cast<double>(i % 4);
            trip.dEntryPrice = 3000 + static_cast<double>(i % 11);
            trip.dExitPrice = 3000 + static_cast<double>(i % 13);
            data.TradeList.push_back(trip);
        }
        data.CurrentBar = static_cast<int32_t>(bars - 1);
        benchmark::DoNotOptimize(funcs.NetProfit());  // the one walk over the list
    }
};

void BM_NetProfit(benchmark::State& state) {
    Strategy strategy(state.range(0), state.range(1) != 0);
    for (auto _ : state) benchmark::DoNotOptimize(strategy.funcs.NetProfit());
}
BENCHMARK(BM_NetProfit)->ArgsProduct({{100, 100000}, {0, 1}});

void BM_MaxConsecWinners(benchmark::State& state) {
    Strategy strategy(state.range(0), state.range(1) != 0);
    for (auto _ : state) benchmark::DoNotOptimize(strategy.funcs.MaxConsecWinners());
}
BENCHMARK(BM_MaxConsecWinners)->ArgsProduct({{100, 100000}, {0, 1}});

void BM_NetProfitAfterLiveBarRestore(benchmark::State& state) {
    Strategy strategy(state.range(0), false);
    std::vector<tagTradeList>& trips = strategy.data.TradeList;
    trips.back().nExitBar = strategy.data.CurrentBar;
    benchmark::DoNotOptimize(strategy.funcs.NetProfit());
    double price = trips.back().dExitPrice;
    for (auto _ : state) {
        tagTradeList trip = trips.back();
        trips.pop_back();
        price = price == 3001 ? 3002 : 3001;
        trip.dExitPrice = price;
        trips.push_back(trip);
        benchmark::DoNotOptimize(strategy.funcs.NetProfit());
    }
}
BENCHMARK(BM_NetProfitAfterLiveBarRestore)->Arg(100)->Arg(100000);

}  // namespace
