// Cost per call of the bar functions over a stream of 1,000,000 one-minute bars.
#include <benchmark/benchmark.h>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/platform/Platform.h"
#include "tests/support/TimeZone.h"

namespace {

constexpr int32_t kBars = 1000000;

// One-minute bars from 2010-01-04 01:00 UTC (09:00 in Shanghai) on.
CKelBaseData& MinuteBars() {
    static CKelBaseData* data = [] {
        fftest::SetTimeZoneVariable(fftest::TimeZoneSetting(fftest::Zone::Shanghai));
        auto* d = new CKelBaseData{};
        d->DataStreams.emplace_back();
        d->DataStreams[0].Bars.resize(kBars);
        for (int32_t i = 0; i < kBars; ++i) {
            BarRecord& b = d->DataStreams[0].Bars[i];
            b.time = (1262566800LL + i * 60LL) * 1000 + 500;
            b.open = b.high = b.low = b.close = 3000 + i % 100;
        }
        return d;
    }();
    return *data;
}

void BM_Close(benchmark::State& state) {
    CKelBaseData& data = MinuteBars();
    CSystemFuncs funcs(&data);
    int32_t bar = 0;
    for (auto _ : state) {
        data.CurrentBar = bar;
        benchmark::DoNotOptimize(funcs.Close());
        if (++bar == kBars) bar = 0;
    }
}
BENCHMARK(BM_Close);

void BM_Date(benchmark::State& state) {
    CKelBaseData& data = MinuteBars();
    CSystemFuncs funcs(&data);
    int32_t bar = 0;
    for (auto _ : state) {
        data.CurrentBar = bar;
        benchmark::DoNotOptimize(funcs.Date());
        if (++bar == kBars) bar = 0;
    }
}
BENCHMARK(BM_Date);

void BM_Time(benchmark::State& state) {
    CKelBaseData& data = MinuteBars();
    CSystemFuncs funcs(&data);
    int32_t bar = 0;
    for (auto _ : state) {
        data.CurrentBar = bar;
        benchmark::DoNotOptimize(funcs.Time());
        if (++bar == kBars) bar = 0;
    }
}
BENCHMARK(BM_Time);

// What every Date or Time call would cost without the day cache: one system
// conversion per bar.
void BM_SystemLocalTimePerBar(benchmark::State& state) {
    CKelBaseData& data = MinuteBars();
    int32_t bar = 0;
    ffplatform::LocalTime t;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ffplatform::ToLocalTime(data.DataStreams[0].Bars[bar].time / 1000, t));
        if (++bar == kBars) bar = 0;
    }
}
BENCHMARK(BM_SystemLocalTimePerBar);

}  // namespace
