// Cost of an instrument property read: served from the cache, and fetched.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "FormulaFunction/FormulaFunction.h"
#include "tests/support/FakeSubscribeManage.h"

namespace {

struct Instrument {
    Instrument() {
        DataStream s;
        s.MarketId = 3;
        s.Code = "rb2405";
        data.DataStreams.push_back(s);
        IModuleFutureTrader::ISpecDetailValue spec;
        spec.SymbolName = "Rebar 2405";
        spec.CurrencyName = "Renminbi";
        spec.MinMove = 1;
        spec.PriceScale = 0.01f;
        fake.AddSpec(3, "rb2405", spec);
        g_pSubscribeManage = &fake;
    }
    ~Instrument() { g_pSubscribeManage = nullptr; }
    FakeSubscribeManage fake;
    CKelBaseData data{};
};

void BM_MinMoveCached(benchmark::State& state) {
    Instrument instrument;
    CSystemFuncs funcs(&instrument.data);
    funcs.MinMove();
    for (auto _ : state) benchmark::DoNotOptimize(funcs.MinMove());
}
BENCHMARK(BM_MinMoveCached);

// The first read: key formatting, map search, the library call and the insert.
// Emptying the map each round makes every read a first read again.
void BM_MinMoveFirstRead(benchmark::State& state) {
    Instrument instrument;
    CSystemFuncs funcs(&instrument.data);
    for (auto _ : state) {
        benchmark::DoNotOptimize(funcs.MinMove());
        funcs.PropertyCache.clear();
    }
}
BENCHMARK(BM_MinMoveFirstRead);

// A hit found by key, as a lookup without remembered entries would do it.
void BM_MinMoveKeyLookup(benchmark::State& state) {
    Instrument instrument;
    CSystemFuncs funcs(&instrument.data);
    funcs.MinMove();
    for (auto _ : state) {
        char key[32];
        std::snprintf(key, sizeof key, "Data%d.MinMove", instrument.data.DataIndex);
        benchmark::DoNotOptimize(funcs.PropertyCache.find(key)->second.nValue);
    }
}
BENCHMARK(BM_MinMoveKeyLookup);

}  // namespace
