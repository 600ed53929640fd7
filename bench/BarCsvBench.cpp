// Reading bar files: a million one-minute bars parsed from memory, and the same
// read from a file on disk.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "runner/BarCsv.h"

namespace {

// One million rows of a plausible one-minute file, built once.
const std::string& MillionRows() {
    static const std::string text = [] {
        std::string out = "date,time,open,high,low,close,volume,openinterest\n";
        out.reserve(70'000'000);
        char line[128];
        int day = 1, month = 1, year = 2015, minute = 9 * 60;
        double price = 3500;
        for (int i = 0; i < 1'000'000; ++i) {
            const double open = price;
            price += static_cast<double>((static_cast<int64_t>(i) * 7919) % 11) - 5;
            const int n = std::snprintf(line, sizeof line,
                                        "%04d-%02d-%02d,%02d:%02d:00,%.1f,%.1f,%.1f,%.1f,%d,%d\n",
                                        year, month, day, minute / 60, minute % 60, open,
                                        (open > price ? open : price) + 2,
                                        (open < price ? open : price) - 1, price,
                                        100 + i % 97, 50000 + i % 1000);
            out.append(line, static_cast<size_t>(n));
            if (++minute == 15 * 60) {
                minute = 9 * 60;
                if (++day > 28) {
                    day = 1;
                    if (++month > 12) {
                        month = 1;
                        ++year;
                    }
                }
            }
        }
        return out;
    }();
    return text;
}

void BM_ParseBarCsvFromMemory(benchmark::State& state) {
    const std::string& text = MillionRows();
    ffrunner::BarCsvOptions options;
    options.timeZone = "Asia/Shanghai";
    for (auto _ : state) {
        const ffrunner::BarCsvData data = ffrunner::ParseBarCsv(text, "bench.csv", options);
        benchmark::DoNotOptimize(data.bars.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 1'000'000);
}
BENCHMARK(BM_ParseBarCsvFromMemory)->Unit(benchmark::kMillisecond);

void BM_ReadBarCsvFile(benchmark::State& state) {
    const std::string& text = MillionRows();
    const std::string path = "ff_bench_bars.csv";
    std::ofstream(path, std::ios::binary) << text;
    ffrunner::BarCsvOptions options;
    options.timeZone = "Asia/Shanghai";
    for (auto _ : state) {
        const ffrunner::BarCsvData data = ffrunner::ReadBarCsv(path, options);
        benchmark::DoNotOptimize(data.bars.data());
    }
    std::remove(path.c_str());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 1'000'000);
}
BENCHMARK(BM_ReadBarCsvFile)->Unit(benchmark::kMillisecond);

}  // namespace
