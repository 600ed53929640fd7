// A whole backtest of the moving-average crossover over a million one-minute bars:
// the host loop alone on bars already in memory (and with an empty body, for the
// library's own per-bar work), the same with the bar file read first, and the
// read alone. Items are bars, bytes those of the file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/BarCsv.h"
#include "runner/HostLoop.h"
#include "runner/SyntheticBars.h"
#include "runner/ZoneClock.h"

namespace {

constexpr int64_t kBars = 1'000'000;

// Every instrument is rebar-like: margin mode 4, 10 units a contract, tick 1.
class BenchFeed : public CSubscibeManage {
public:
    int GetSymbolProperty(const tagSymbol&, IModuleFutureTrader::ISpecDetailValue& spec) override {
        spec = IModuleFutureTrader::ISpecDetailValue{};
        spec.CanTrade = 1;
        spec.PriceScale = 1;
        spec.MinMove = 1;
        spec.BigPointValue = 1;
        spec.ContractUnit = 10;
        spec.MarginMode = 4;
        spec.ContractSize = 10;
        return 1;
    }
    int GetAllExchanges(std::vector<tagExchangeInfo>&) override { return 1; }
    int GetMarketQuote(const tagSymbol&, IModuleFutureTrader::ITickEx&) override { return 0; }
    int GetAccountSummary(tagAccountSummary&, const std::string&, const std::string&) override {
        return 0;
    }
    int GetPosition(tagOpenedPosition&, const std::string&, const std::string&,
                    const tagSymbol&) override {
        return 0;
    }
    int GetOrders(std::vector<tagBrokerOrder>&, const std::string&, const std::string&,
                  const tagSymbol&) override {
        return 0;
    }
    int GetOpenOrders(std::vector<tagBrokerOrder>&, const std::string&, const std::string&,
                      const tagSymbol&) override {
        return 0;
    }
    int SendOrder(tagBrokerOrder&) override { return 0; }
    int DeleteOrder(const std::string&, const std::string&, const std::string&) override {
        return 0;
    }
    bool GetConfigFileProperty(const std::string&, const std::string&, const std::string&,
                               std::string&) override {
        return false;
    }
    void SetConfigFileProperty(const std::string&, const std::string&, const std::string&,
                               const std::string&) override {}
};

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

// One run over `bars` of ma-crossover with its default parameters, or of an empty
// body (what the library's per-bar work costs alone).
size_t RunCrossover(std::vector<BarRecord>&& bars, bool emptyBody = false) {
    static BenchFeed feed;
    FormulaFunction_Init(0, &feed, "/nonexistent-root", "bench");
    CKelBaseData data{};
    data.FormulaKind = 7;
    data.InitialCapital = 1000000;
    data.MaxOpenEntries = 1;
    data.MaxPositionContracts = 1000;
    data.TradeSizeValue = 1;
    data.MarginRate = 0.1;
    data.CommissionValue = 2;
    data.PerformanceMode = 2;
    data.DataStreams.resize(1);
    data.DataStreams[0].MarketId = 1;
    data.DataStreams[0].Code = "rb2510";
    data.DataStreams[0].Bars = std::move(bars);
    CStrategyResult result{};
    data.Result = &result;
    CSystemFuncs funcs(&data);
    auto strategy = ffexamples::MakeStrategy("ma-crossover");
    strategy->Reset();
    if (emptyBody) ffrunner::RunStrategyBars(data, funcs, [] {});
    else ffrunner::RunStrategyBars(data, funcs, [&] { strategy->OnBar(funcs); });
    return data.TradeList.size();
}

// The host loop on bars in memory; argument 1 runs an empty body instead.
void BM_BacktestHostLoop(benchmark::State& state) {
    ffrunner::ScopedZone zone("Asia/Shanghai");
    const std::vector<BarRecord> bars = Load().bars;
    size_t trades = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<BarRecord> copy = bars;
        state.ResumeTiming();
        trades = RunCrossover(std::move(copy), state.range(0) == 1);
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
