// Cost of a live quote or account read on the newest bar once the value is cached,
// as a formula evaluated at every price update reads it.
#include <benchmark/benchmark.h>

#include "FormulaFunction/FormulaFunction.h"
#include "tests/support/FakeSubscribeManage.h"

namespace {

struct LiveChart {
    LiveChart() {
        DataStream s;
        s.MarketId = 3;
        s.Code = "rb2405";
        for (int i = 0; i < 1000; ++i) {
            BarRecord b;
            b.time = 1269479103000LL + i * 60000LL;
            s.Bars.push_back(b);
        }
        data.DataStreams.push_back(s);
        data.CurrentBar = 999;
        data.FormulaKind = 7;
        data.BrokerId = fake.BrokerId;
        data.AccountId = fake.AccountId;
        IModuleFutureTrader::ITickEx tick;
        tick.Last = 3036;
        tick.Open = 3004;
        fake.Quotes[{3, "rb2405"}] = tick;
        fake.Account.CurrentEquity = 1000000;
        g_pSubscribeManage = &fake;
    }
    ~LiveChart() { g_pSubscribeManage = nullptr; }
    FakeSubscribeManage fake;
    CKelBaseData data{};
};

void BM_QLastCached(benchmark::State& state) {
    LiveChart chart;
    CSystemFuncs funcs(&chart.data);
    funcs.Q_Last();
    for (auto _ : state) benchmark::DoNotOptimize(funcs.Q_Last());
}
BENCHMARK(BM_QLastCached);

// A value of the day: the last bar's local date is compared with the current bar's.
void BM_QOpenCached(benchmark::State& state) {
    LiveChart chart;
    CSystemFuncs funcs(&chart.data);
    funcs.Q_Open();
    for (auto _ : state) benchmark::DoNotOptimize(funcs.Q_Open());
}
BENCHMARK(BM_QOpenCached);

void BM_ACurrentEquityCached(benchmark::State& state) {
    LiveChart chart;
    CSystemFuncs funcs(&chart.data);
    funcs.A_CurrentEquity();
    for (auto _ : state) benchmark::DoNotOptimize(funcs.A_CurrentEquity());
}
BENCHMARK(BM_ACurrentEquityCached);

}  // namespace
