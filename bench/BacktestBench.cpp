// A whole backtest of the moving-average crossover over a million one-minute bars:
// the host loop alone on bars already in memory (and with an empty body, for the
// library's own per-bar work), the same with the bar file read first, and the
// read alone. Items are bars, bytes those of the file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/BarCsv.h"
#include "runner/HostLoop.h"
#include "runner/SyntheticBars.h"
#include "runner/ZoneClock.h"
#include "support/RebarFeed.h"

namespace {

constexpr int64_t kBars = 1'000'000;

// The bar file, written once by the synthetic generator, and its size.
struct BarFile {
    std::string path = "ff_bench_backtest_bars.csv";
    int64_t bytes = 0;

    BarFile() {
        ffrunner::SyntheticBarsSpec spec;
        spec.seed = 2510;
        spec.firstDay = 16437;  // 2015-01-02
        spec.days = 100000;
        spec.maxBars = kBars;
        std::ofstream out(path, std::ios::binary);
        ffrunner::WriteSyntheticBars(spec, out);
        bytes = static_cast<int64_t>(out.tellp());
    }
    ~BarFile() { std::remove(path.c_str()); }
};

const BarFile& File() {
    static const BarFile file;
    return file;
}

ffrunner::BarCsvData Load() {
    ffrunner::BarCsvOptions options;
    options.timeZone = "Asia/Shanghai";
    return ffrunner::ReadBarCsv(File().path, options);
}

// A backtest of ma-crossover with its default parameters, or of an empty body (what
// the library's per-bar work costs alone), set up apart from the run so that the
// host loop can be timed by itself.
class CrossoverRun {
public:
    CrossoverRun(std::vector<BarRecord>&& bars, bool emptyBody)
        : emptyBody_(emptyBody), data_(fftest::RebarStrategyData(std::move(bars), 1000000, 2)) {
        static fftest::RebarFeed feed;
        FormulaFunction_Init(0, &feed, "/nonexistent-root", "bench");
        data_.Result = &result_;
        strategy_->Reset();
    }

    // The host loop over every bar; the number of round trips it made.
    size_t Run() {
        if (emptyBody_)
            ffrunner::RunStrategyBars(data_, funcs_, [] {});
        else
            ffrunner::RunStrategyBars(data_, funcs_, [&] { strategy_->OnBar(funcs_); });
        return data_.TradeList.size();
    }

private:
    bool emptyBody_;
    CKelBaseData data_;
    CStrategyResult result_{};
    CSystemFuncs funcs_{&data_};
    std::unique_ptr<ffrunner::Strategy> strategy_ = ffexamples::MakeStrategy("ma-crossover");
};

size_t RunCrossover(std::vector<BarRecord>&& bars) { return CrossoverRun(std::move(bars), false).Run(); }

// The host loop on bars in memory; argument 1 runs an empty body instead. Setting
// up the data object and freeing it afterwards are left out of the time.
void BM_BacktestHostLoop(benchmark::State& state) {
    ffrunner::ScopedZone zone("Asia/Shanghai");
    const std::vector<BarRecord> bars = Load().bars;
    size_t trades = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<CrossoverRun>(std::vector<BarRecord>(bars), state.range(0) == 1);
        state.ResumeTiming();
        trades = run->Run();
        state.PauseTiming();
        run.reset();
        state.ResumeTiming();
    }
    state.counters["trades"] = static_cast<double>(trades);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kBars);
}
BENCHMARK(BM_BacktestHostLoop)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_BacktestWithCsvLoad(benchmark::State& state) {
    ffrunner::ScopedZone zone("Asia/Shanghai");
    File();
    for (auto _ : state) {
        benchmark::DoNotOptimize(RunCrossover(Load().bars));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kBars);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * File().bytes);
}
BENCHMARK(BM_BacktestWithCsvLoad)->Unit(benchmark::kMillisecond);

void BM_BacktestCsvLoadOnly(benchmark::State& state) {
    ffrunner::ScopedZone zone("Asia/Shanghai");
    File();
    for (auto _ : state) {
        benchmark::DoNotOptimize(Load().bars.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kBars);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * File().bytes);
}
BENCHMARK(BM_BacktestCsvLoadOnly)->Unit(benchmark::kMillisecond);

}  // namespace
