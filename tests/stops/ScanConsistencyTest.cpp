// The stops keep the extremes of the bars since an entry from call to call. These
// tests run the same strategy twice over the same pseudo-random bars, once with one
// object for the whole run and once with the derived state dropped before every
// stop call, and require every answer and every round trip to be the same: over a
// plain run, over runs started again on the same object (also after the bars were
// replaced), over repeated evaluations of the last bar, and for the instrument kinds
// whose best gain is read bar by bar.
#include <cstdint>
#include <string>
#include <vector>

#include "stops/StopFixture.h"

namespace {

class Lcg {
public:
    explicit Lcg(uint32_t seed) : state_(seed) {}
    uint32_t Next() {
        state_ = state_ * 1103515245u + 12345u;
        return (state_ >> 8) & 0xFFFFFFu;
    }
    uint32_t Below(uint32_t n) { return Next() % n; }

private:
    uint32_t state_;
};

struct World {
    CKelBaseData data{};
    CStrategyResult result{};
    CSystemFuncs funcs{&data};
    bool dropDerived = false;

    void DropIfAsked() {
        if (dropDerived) funcs = CSystemFuncs(funcs);
    }
};

// The answers of one run, as text.
class ScanConsistencyTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        Fill(plain, false);
        Fill(dropping, true);
    }

    void Fill(World& world, bool drop) {
        world.data = data;
        world.data.Result = &world.result;
        world.result.Figures.Capital = 1000000;
        world.funcs.PropertyCache = funcs.PropertyCache;
        world.dropDerived = drop;
    }

    // Bars wandering around 3000 by whole ticks, with a few gaps.
    static std::vector<BarRecord> Walk(uint32_t seed, size_t count) {
        Lcg rng(seed);
        std::vector<BarRecord> bars;
        double price = 3000;
        for (size_t i = 0; i < count; ++i) {
            BarRecord bar{};
            bar.time = 1267410600000LL + static_cast<int64_t>(i) * 60000LL;
            const double gap = rng.Below(10) == 0 ? (static_cast<double>(rng.Below(41)) - 20) : 0;
            bar.open = price + gap;
            bar.high = bar.open + static_cast<double>(rng.Below(12));
            bar.low = bar.open - static_cast<double>(rng.Below(12));
            bar.close = bar.low + static_cast<double>(rng.Below(static_cast<uint32_t>(bar.high - bar.low) + 1));
            price = bar.close;
            bars.push_back(bar);
        }
        return bars;
    }

    static void Reset(World& world) {
        world.data.OpenEntries.clear();
        world.data.TradeList.clear();
        world.data.SignalHistory.clear();
        world.data.DelayedSignals.clear();
        world.result.Figures.Capital = 1000000;
    }

    // One evaluation of bar `bar`: maybe an entry, then every stop with arguments
    // drawn from `rng`; the answers are appended to `log`.
    static void Evaluate(World& world, int32_t bar, Lcg& rng, std::string& log) {
        CSystemFuncs& f = world.funcs;
        world.data.CurrentBar = bar;
        const uint32_t entry = rng.Below(60);
        if (entry == 0) f.Buy(1 + rng.Below(2), 0, false);
        if (entry == 1) f.SellShort(1 + rng.Below(2), 0, false);
        const bool whole = rng.Below(2) == 0;
        const int32_t mode = static_cast<int32_t>(rng.Below(2));
        const double amount = 100.0 * (1 + rng.Below(20));
        const int32_t bars = static_cast<int32_t>(rng.Below(40));
        const double percent = 0.1 * (1 + rng.Below(10));
        bool answers[7];
        world.DropIfAsked();
        answers[0] = f.SetBreakEven(mode, amount * 2, whole);
        world.DropIfAsked();
        answers[1] = f.SetDollarTrailing(amount * 3, whole);
        world.DropIfAsked();
        answers[2] = f.SetPercentTrailing(amount * 2, percent, whole);
        world.DropIfAsked();
        answers[3] = f.SetPeriodTrailing(mode, amount * 2, bars + 30, whole);
        world.DropIfAsked();
        answers[4] = f.SetPeriodTrailing(mode, amount * 4, bars, whole);
        world.DropIfAsked();
        answers[5] = f.SetInactivate(mode, amount / 2, bars % 20 + 10, whole);
        world.DropIfAsked();
        answers[6] = f.SetStopLoss(mode, amount / 2, whole);
        for (bool a : answers) log += a ? '1' : '0';
        log += ' ';
    }

    static std::string Run(World& world, uint32_t seed, int32_t from = 0) {
        Lcg rng(seed);
        std::string log;
        const int32_t count = static_cast<int32_t>(world.data.DataStreams[0].Bars.size());
        for (int32_t bar = from; bar < count; ++bar) Evaluate(world, bar, rng, log);
        for (const tagTradeList& trip : world.data.TradeList) log += Text(trip) + "\n";
        return log;
    }

    void UseBars(uint32_t seed, size_t count) {
        const std::vector<BarRecord> bars = Walk(seed, count);
        plain.data.DataStreams[0].Bars = bars;
        dropping.data.DataStreams[0].Bars = bars;
    }

    World plain;
    World dropping;
};

TEST_F(ScanConsistencyTest, APlainRunGivesTheSameAnswers) {
    UseBars(7, 1500);
    const std::string a = Run(plain, 11);
    EXPECT_EQ(a, Run(dropping, 11));
    // The run must hold positions long enough for the remembered extremes to matter,
    // and every stop must have fired at some time.
    const std::vector<tagTradeList>& trips = plain.data.TradeList;
    ASSERT_GT(trips.size(), 20u);
    int64_t held = 0;
    for (const tagTradeList& trip : trips) held += trip.nExitBar - trip.nEntryBar;
    EXPECT_GT(held / static_cast<int64_t>(trips.size()), 5);
    for (size_t stop = 0; stop < 7; ++stop) {
        bool fired = false;
        for (size_t i = stop; i < a.size() && a[i] != '\n'; i += 8) fired = fired || a[i] == '1';
        EXPECT_TRUE(fired) << "stop " << stop;
    }
}

TEST_F(ScanConsistencyTest, RunsStartedAgainGiveTheSameAnswers) {
    UseBars(7, 800);
    EXPECT_EQ(Run(plain, 11), Run(dropping, 11));
    Reset(plain);
    Reset(dropping);
    EXPECT_EQ(Run(plain, 12), Run(dropping, 12));
    // New prices written over the old ones in place, with the same time stamps.
    const std::vector<BarRecord> fresh = Walk(8, 800);
    for (World* w : {&plain, &dropping}) {
        std::vector<BarRecord>& bars = w->data.DataStreams[0].Bars;
        for (size_t i = 0; i < bars.size(); ++i) {
            const int64_t time = bars[i].time;
            bars[i] = fresh[i];
            bars[i].time = time;
        }
        Reset(*w);
    }
    EXPECT_EQ(Run(plain, 13), Run(dropping, 13));
}

TEST_F(ScanConsistencyTest, RepeatedEvaluationsOfTheLastBarGiveTheSameAnswers) {
    UseBars(9, 600);
    Lcg plainRng(21), droppingRng(21);
    std::string plainLog, droppingLog;
    for (int32_t bar = 0; bar < 600; ++bar) {
        const std::vector<tagTradeSignal> plainEntries = plain.data.OpenEntries;
        const std::vector<tagTradeSignal> droppingEntries = dropping.data.OpenEntries;
        for (int repeat = 0; repeat < 3; ++repeat) {
            plain.data.OpenEntries = plainEntries;
            dropping.data.OpenEntries = droppingEntries;
            Evaluate(plain, bar, plainRng, plainLog);
            Evaluate(dropping, bar, droppingRng, droppingLog);
        }
    }
    EXPECT_EQ(plainLog, droppingLog);
}

TEST_F(ScanConsistencyTest, FixedValueContractsGiveTheSameAnswers) {
    for (World* w : {&plain, &dropping}) {
        w->funcs.PropertyCache[Key(0, "MarginMode")].nValue = 2;
        w->funcs.PropertyCache[Key(0, "ContractSize")].dValue = 3000;
    }
    UseBars(5, 800);
    EXPECT_EQ(Run(plain, 31), Run(dropping, 31));
}

TEST_F(ScanConsistencyTest, CloseOnlyBarsGiveTheSameAnswers) {
    for (World* w : {&plain, &dropping}) {
        w->funcs.PropertyCache[Key(0, "BarType")].nValue = 2;
        w->funcs.PropertyCache[Key(0, "BarInterval")].nValue = 1;
    }
    UseBars(6, 800);
    EXPECT_EQ(Run(plain, 41), Run(dropping, 41));
}

// A stop call on an earlier bar than the call before means a new run: bars that
// were complete before may hold new prices under the same time stamps.
TEST_F(StopTest, AStopCallOnAnEarlierBarForgetsTheBarsSeenBefore) {
    FlatBars(100);
    Long(2, 1, 100);
    data.CurrentBar = 4;
    SetBar(4, 100, 101, 99, 100);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, false));
    SetBar(3, 100, 110, 100, 100);
    data.CurrentBar = 1;
    EXPECT_FALSE(funcs.SetDollarTrailing(30, false));
    data.CurrentBar = 4;
    // Bar 3's new high of 110 puts the stop at 107, above the bar: filled at the open.
    EXPECT_TRUE(funcs.SetDollarTrailing(30, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{TripText(1, 2, 2, 4, 0, 0, 0, 1, 100, 100)});
}

}  // namespace
