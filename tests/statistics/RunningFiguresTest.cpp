// The statistics functions keep running figures instead of walking every round trip
// on every call. Here their answers are compared, bit for bit, with a plain walk
// written from the definitions, over randomised runs: round trips appended,
// restored away, replaced and emptied, and every input of the valuation changed
// (commission settings, instrument properties and their source, bar times).
#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "statistics/StatisticsFixture.h"
#include "support/FakeSubscribeManage.h"

namespace {

int32_t Wrap(int64_t value) {
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(value)));
}

// Every figure of a walk over the list from the first round trip to the last.
struct WalkFigures {
    int32_t trades = 0, winners = 0, losers = 0, even = 0;
    int32_t barsWinners = 0, barsLosers = 0, barsEven = 0;
    double grossProfit = 0, grossLoss = 0, largestWin = 0, largestLoss = 0;
    int32_t longestWinRun = 0, longestLossRun = 0;
    // The summary of statistics mode 1: valued classes, bars held counted inclusively.
    int32_t valuedWinners = 0, valuedLosers = 0, valuedEven = 0;
    int32_t valuedBarsWinners = 0, valuedBarsLosers = 0, valuedBarsEven = 0;
    double sumOfSquares = 0;
};

WalkFigures PlainWalk(CSystemFuncs& funcs, const std::vector<tagTradeList>& trips) {
    using Access = CSystemFuncsTestAccess;
    WalkFigures w;
    int32_t winRun = 0, lossRun = 0;
    w.trades = static_cast<int32_t>(trips.size());
    for (const tagTradeList& trip : trips) {
        const int32_t counting = Access::CalcTradeList(funcs, trip);
        double net = 0.0, commission = 0.0;
        const int32_t valued = Access::CalcTradeList(funcs, trip, net, commission);
        const int32_t bars = Wrap(static_cast<int64_t>(trip.nExitBar) - trip.nEntryBar);
        if (counting == 1) {
            ++w.winners;
            w.barsWinners = Wrap(static_cast<int64_t>(w.barsWinners) + bars);
            ++winRun;
            lossRun = 0;
        } else if (counting == 0) {
            ++w.even;
            w.barsEven = Wrap(static_cast<int64_t>(w.barsEven) + bars);
            winRun = 0;
            lossRun = 0;
        } else {
            ++w.losers;
            w.barsLosers = Wrap(static_cast<int64_t>(w.barsLosers) + bars);
            ++lossRun;
            winRun = 0;
        }
        if (winRun > w.longestWinRun) w.longestWinRun = winRun;
        if (lossRun > w.longestLossRun) w.longestLossRun = lossRun;
        const int32_t held = Wrap(static_cast<int64_t>(bars) + 1);
        if (valued == 1) {
            w.grossProfit += net;
            if (net > w.largestWin) w.largestWin = net;
            ++w.valuedWinners;
            w.valuedBarsWinners = Wrap(static_cast<int64_t>(w.valuedBarsWinners) + held);
        } else if (valued == -1) {
            w.grossLoss += net;
            if (net < w.largestLoss) w.largestLoss = net;
            ++w.valuedLosers;
            w.valuedBarsLosers = Wrap(static_cast<int64_t>(w.valuedBarsLosers) + held);
        } else {
            ++w.valuedEven;
            w.valuedBarsEven = Wrap(static_cast<int64_t>(w.valuedBarsEven) + held);
        }
        w.sumOfSquares += net * net;
    }
    return w;
}

std::string Summary(int32_t winners, int32_t losers, int32_t even, int32_t barsWinners,
                    int32_t barsLosers, int32_t barsEven, double sumOfSquares) {
    char text[160];
    std::snprintf(text, sizeof text, "valued w/l/e %d/%d/%d bars %d/%d/%d squares %016llx",
                  winners, losers, even, barsWinners, barsLosers, barsEven,
                  static_cast<unsigned long long>(Bits(sumOfSquares)));
    return text;
}

std::string FastSummary(CSystemFuncs& f) {
    const TradeListFigures t = CSystemFuncsTestAccess::TradeFigures(f);
    return Summary(t.nValuedWinners, t.nValuedLosers, t.nValuedEven, t.nValuedBarsWinners,
                   t.nValuedBarsLosers, t.nValuedBarsEven, t.dSumOfSquares);
}

std::string WalkSummary(const WalkFigures& w) {
    return Summary(w.valuedWinners, w.valuedLosers, w.valuedEven, w.valuedBarsWinners,
                   w.valuedBarsLosers, w.valuedBarsEven, w.sumOfSquares);
}

// The public answers in one line, doubles as their bits.
std::string Answers(int32_t trades, int32_t winners, int32_t losers, int32_t even,
                    double percent, int32_t barsWinners, int32_t barsLosers, int32_t barsEven,
                    int32_t avgWinners, int32_t avgLosers, int32_t avgEven, double largestWin,
                    double largestLoss, double grossProfit, double grossLoss, double net,
                    int32_t winRun, int32_t lossRun) {
    char text[512];
    std::snprintf(text, sizeof text,
                  "trades %d w/l/e %d/%d/%d percent %016llx bars %d/%d/%d avg %d/%d/%d "
                  "largest %016llx/%016llx gross %016llx/%016llx net %016llx runs %d/%d",
                  trades, winners, losers, even, static_cast<unsigned long long>(Bits(percent)),
                  barsWinners, barsLosers, barsEven, avgWinners, avgLosers, avgEven,
                  static_cast<unsigned long long>(Bits(largestWin)),
                  static_cast<unsigned long long>(Bits(largestLoss)),
                  static_cast<unsigned long long>(Bits(grossProfit)),
                  static_cast<unsigned long long>(Bits(grossLoss)),
                  static_cast<unsigned long long>(Bits(net)), winRun, lossRun);
    return text;
}

std::string FastAnswers(CSystemFuncs& f) {
    return Answers(f.TotalTrades(), f.NumWinTrades(), f.NumLosTrades(), f.NumEvenTrades(),
                   f.PercentProfit(), f.TotalBarsWinTrades(), f.TotalBarsLosTrades(),
                   f.TotalBarsEvenTrades(), f.AvgBarsWinTrade(), f.AvgBarsLosTrade(),
                   f.AvgBarsEvenTrade(), f.LargestWinTrade(), f.LargestLosTrade(),
                   f.GrossProfit(), f.GrossLoss(), f.NetProfit(), f.MaxConsecWinners(),
                   f.MaxConsecLosers());
}

std::string WalkAnswers(const WalkFigures& w) {
    const auto average = [](int32_t bars, int32_t n) { return n == 0 ? 0 : bars / n; };
    return Answers(w.trades, w.winners, w.losers, w.even,
                   w.trades == 0 ? 0.0 : static_cast<double>(w.winners / w.trades),
                   w.barsWinners, w.barsLosers, w.barsEven, average(w.barsWinners, w.winners),
                   average(w.barsLosers, w.losers), average(w.barsEven, w.even), w.largestWin,
                   w.largestLoss, w.grossProfit, w.grossLoss, w.grossProfit + w.grossLoss,
                   w.longestWinRun, w.longestLossRun);
}

std::string ZeroAnswers() { return Answers(0, 0, 0, 0, 0.0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0); }

// The rules by which the running figures are kept, one case each.
class RunningRulesTest : public StatisticsTest {
protected:
    uint64_t Restarts() { return Access::TradeFigureRestarts(funcs); }
    std::string Walk() { return WalkAnswers(PlainWalk(funcs, data.TradeList)); }
};

TEST_F(RunningRulesTest, AppendedRoundTripsAreWalkedOnce) {
    AddLong(1, 0, 1);
    AddLong(-2, 0, 2);
    AddLong(3, 1, 2);
    EXPECT_EQ(funcs.NetProfit(), 2.0);
    AddLong(-1, 2, 3);
    AddLong(1, 2, 4);
    EXPECT_EQ(funcs.NetProfit(), 2.0);
    EXPECT_EQ(funcs.MaxConsecWinners(), 1);
    EXPECT_EQ(FastAnswers(funcs), Walk());
    EXPECT_EQ(Restarts(), 0u);
}

// Restoring the live bar drops the round trips closed on it; the figures go back to
// the start of those round trips.
TEST_F(RunningRulesTest, RestoringTheLiveBarGoesBackWithoutWalkingAgain) {
    AddLong(1, 0, 1);
    AddLong(2, 0, 2);
    AddLong(4, 1, 3);
    AddLong(8, 2, 3);
    EXPECT_EQ(funcs.NetProfit(), 15.0);
    data.TradeList.pop_back();
    data.TradeList.pop_back();
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    AddLong(-16, 1, 3);
    EXPECT_EQ(funcs.NetProfit(), -13.0);
    EXPECT_EQ(funcs.MaxConsecLosers(), 1);
    EXPECT_EQ(FastAnswers(funcs), Walk());
    EXPECT_EQ(Restarts(), 0u);
    // The live bar re-evaluated again: the same one round trip, at another price.
    data.TradeList.back().dExitPrice = 100.5;
    EXPECT_EQ(funcs.NetProfit(), 3.5);
    EXPECT_EQ(Restarts(), 0u);
}

TEST_F(RunningRulesTest, DroppingMoreThanTheLastExitBarStartsAgain) {
    AddLong(1, 0, 1);
    AddLong(2, 0, 2);
    AddLong(4, 1, 3);
    EXPECT_EQ(funcs.NetProfit(), 7.0);
    data.TradeList.resize(1);
    EXPECT_EQ(funcs.NetProfit(), 1.0);
    EXPECT_EQ(Restarts(), 1u);
    data.TradeList.clear();
    EXPECT_EQ(funcs.NetProfit(), 0.0);
    EXPECT_EQ(funcs.TotalTrades(), 0);
}

TEST_F(RunningRulesTest, AReplacedLastRoundTripIsSeen) {
    AddLong(1, 0, 1);
    AddLong(2, 0, 2);
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    data.TradeList.back() = Trip(3, 0, 2, 1, 100, 102);
    EXPECT_EQ(funcs.NetProfit(), -1.0);
    EXPECT_EQ(funcs.NumLosTrades(), 1);
}

// Twelve entries closed on the live bar; evaluated again, the first four close at
// another price while the last eight are as before. All twelve are compared.
TEST_F(RunningRulesTest, ARoundTripReplacedAmongManyClosedOnTheLastBarIsSeen) {
    AddLong(1, 0, 3);
    for (int i = 0; i < 12; ++i) AddLong(1, 4, 6);
    EXPECT_EQ(funcs.NetProfit(), 13.0);
    for (int i = 1; i <= 4; ++i) data.TradeList[i].dExitPrice = 98;
    EXPECT_EQ(funcs.NetProfit(), 1.0);
    EXPECT_EQ(funcs.MaxConsecLosers(), 4);
    EXPECT_EQ(funcs.MaxConsecWinners(), 8);
    EXPECT_EQ(FastAnswers(funcs), Walk());
    EXPECT_EQ(Restarts(), 0u);
}

// The driver's restore of the live bar followed by a new evaluation that closes the
// same entries at another price, through the engine itself.
TEST_F(RunningRulesTest, TheEngineReclosingTheLiveBarIsSeen) {
    data.MaxOpenEntries = 20;
    data.AllowSameSourceEntries = true;
    data.MaxPositionContracts = 100;
    data.MarginRate = 0.1;
    data.TradeSizeValue = 1;
    data.InitialCapital = 1e9;
    SetDouble(0, "MarginRatio", 0.1);
    SetInteger(0, "MaxSingleTradeSize", 0);
    for (size_t i = 0; i < data.DataStreams[0].Bars.size(); ++i) {
        BarRecord& bar = data.DataStreams[0].Bars[i];
        bar.open = bar.high = bar.low = bar.close = 100 + static_cast<double>(i);
    }
    const int32_t live = 19;
    for (int32_t bar = 0; bar <= live; ++bar) {
        data.CurrentBar = bar;
        funcs.PrepareBar();
        if (bar >= 1 && bar <= 12) {
            ASSERT_TRUE(funcs.Buy(1, 0, false));
        }
        if (bar == live) {
            ASSERT_TRUE(funcs.Sell(0, 0, false));
        }
    }
    ASSERT_EQ(data.TradeList.size(), 12u);
    const double first = funcs.NetProfit();
    EXPECT_EQ(first, 150.0);  // 18 + 17 + ... + 7
    for (double close : {90.0, 125.0, 119.0}) {
        funcs.RestoreLastBar();
        data.DataStreams[0].Bars[live].close = close;
        ASSERT_TRUE(funcs.Sell(0, 0, false));
        EXPECT_EQ(FastAnswers(funcs), Walk()) << close;
    }
    EXPECT_EQ(funcs.NetProfit(), first);
    EXPECT_EQ(Restarts(), 0u);
}

TEST_F(RunningRulesTest, ANewRunOfTheSameLengthIsSeen) {
    for (int i = 0; i < 12; ++i) AddLong(1, i, i + 1);
    EXPECT_EQ(funcs.MaxConsecWinners(), 12);
    data.TradeList.clear();
    for (int i = 0; i < 12; ++i) AddLong(i % 3 == 0 ? -1 : 1, i, i + 1);
    EXPECT_EQ(funcs.MaxConsecWinners(), 2);
    EXPECT_EQ(FastAnswers(funcs), Walk());
}

TEST_F(RunningRulesTest, CommissionSettingsAreSeen) {
    data.TradeList.push_back(Trip(1, 2, 2, 2, 100, 102));
    EXPECT_EQ(funcs.NetProfit(), 4.0);
    data.CommissionValue = 0.5;
    EXPECT_EQ(funcs.NetProfit(), 2.0);
    data.SingleSideCommission = true;
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    data.FreeCloseToday = true;  // a same-day round trip: the exit side is free
    EXPECT_EQ(funcs.NetProfit(), 4.0);
    data.SingleSideCommission = false;
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    data.CommissionType = 2;
    EXPECT_EQ(FastAnswers(funcs), Walk());
}

TEST_F(RunningRulesTest, AChangedPropertyIsSeen) {
    AddLong(1.5);
    EXPECT_EQ(funcs.NetProfit(), 1.5);
    SetInteger(0, "ContractUnit", 2);
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    SetDouble(0, "BigPointValue", 3);
    EXPECT_EQ(funcs.NetProfit(), 9.0);
    SetInteger(0, "MarginMode", 1);  // contract size 1
    EXPECT_EQ(funcs.NetProfit(), 1.5);
    SetDouble(0, "ContractSize", 4);
    EXPECT_EQ(funcs.NetProfit(), 6.0);
    SetDouble(0, "ContractSize", 1);
    EXPECT_EQ(funcs.NetProfit(), 1.5);
    data.CommissionType = 1;
    data.CommissionValue = 1;
    SetDouble(0, "PriceScale", 0.5);
    SetInteger(0, "MinMove", 2);
    EXPECT_EQ(FastAnswers(funcs), Walk());
    SetInteger(0, "MinMove", 1);
    EXPECT_EQ(FastAnswers(funcs), Walk());
}

// A property the library could not fetch is fetched again by every valuation, so a
// fetch that works later changes the figures.
TEST_F(RunningRulesTest, APropertyThatCanBeFetchedLaterIsSeen) {
    CSubscibeManage* const previous = g_pSubscribeManage;
    FakeSubscribeManage fake;
    g_pSubscribeManage = nullptr;
    data.DataStreams.resize(2);
    data.DataStreams[1].MarketId = 2;
    data.DataStreams[1].Code = "C";
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 104, 1));
    EXPECT_EQ(funcs.NumEvenTrades(), 1);  // no margin mode: no profit
    IModuleFutureTrader::ISpecDetailValue spec;
    spec.MarginMode = 1;
    spec.ContractSize = 2;
    fake.AddSpec(2, "C", spec);
    g_pSubscribeManage = &fake;
    EXPECT_EQ(funcs.NumWinTrades(), 1);
    EXPECT_EQ(funcs.NetProfit(), 8.0);
    g_pSubscribeManage = previous;
}

TEST_F(RunningRulesTest, TheNewestBarMovingToAnotherDayIsSeen) {
    data.FreeCloseToday = true;
    data.CommissionValue = 1;
    data.TradeList.push_back(Trip(1, 3, 4, 1, 100, 105));
    data.DataStreams[0].Bars[4].time = LocalMs(2010, 3, 4, 15, 0, 0);  // bar 3's day
    EXPECT_EQ(funcs.NetProfit(), 4.0);
    const uint64_t restarts = Restarts();
    data.DataStreams[0].Bars[4].time = LocalMs(2010, 3, 5, 9, 0, 0);
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    data.DataStreams[0].Bars[4].time = LocalMs(2010, 3, 5, 11, 0, 0);  // the same day
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    EXPECT_EQ(Restarts(), restarts + 1);
}

TEST_F(RunningRulesTest, ANamedBarThatAppearsIsSeen) {
    data.FreeCloseToday = true;
    data.CommissionValue = 1;
    data.TradeList.push_back(Trip(1, 19, 21, 1, 100, 105));
    EXPECT_EQ(funcs.NetProfit(), 3.0);  // bar 21 does not exist: the exit is charged
    AddBar(LocalMs(2010, 3, 20, 11, 0, 0));
    EXPECT_EQ(funcs.NetProfit(), 3.0);
    AddBar(LocalMs(2010, 3, 20, 12, 0, 0));  // bar 21, on bar 19's day
    EXPECT_EQ(funcs.NetProfit(), 4.0);
    data.DataStreams[0].Bars.resize(20);
    EXPECT_EQ(funcs.NetProfit(), 3.0);
}

TEST_F(RunningRulesTest, TheCurrentSeriesDoesNotMatter) {
    data.DataStreams.resize(2);
    UseInstrument(1, 3, 1);
    AddLong(1);
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 101, 1));
    data.DataIndex = 1;
    EXPECT_EQ(funcs.NetProfit(), 4.0);
    data.DataIndex = 0;
    EXPECT_EQ(funcs.NetProfit(), 4.0);
    EXPECT_EQ(Restarts(), 0u);
    EXPECT_EQ(data.DataIndex, 0);
}

// Three data indexes: 0 with every property in the value cache, 1 fetched from the
// market-data library, and 5, which has no data stream: two of its properties are in
// the cache and the others can never be fetched.
class RunningFiguresTest : public StatisticsTest {
protected:
    RunningFiguresTest() : StatisticsTest(fftest::Zone::NewYork) {}

    void SetUp() override {
        StatisticsTest::SetUp();
        previous_ = g_pSubscribeManage;
        g_pSubscribeManage = &fake;
        data.DataStreams.resize(2);
        data.DataStreams[0].MarketId = 1;
        data.DataStreams[0].Code = "A";
        data.DataStreams[1].MarketId = 1;
        data.DataStreams[1].Code = "B";
        IModuleFutureTrader::ISpecDetailValue a;
        a.MarginMode = 4;
        a.ContractUnit = 10;
        a.BigPointValue = 0.5f;
        a.MinMove = 1;
        a.PriceScale = 0.01f;
        a.ContractSize = 1;
        fake.AddSpec(1, "A", a);
        IModuleFutureTrader::ISpecDetailValue b;
        b.MarginMode = 1;
        b.ContractSize = 5;
        b.MinMove = 2;
        b.PriceScale = 0.1f;
        b.ContractUnit = 3;
        b.BigPointValue = 2;
        fake.AddSpec(1, "B", b);
        UseInstrument(0, 10, 0.5);
        SetInteger(5, "MarginMode", 2);
        SetDouble(5, "ContractSize", 3);
        // Bars five hours apart from 1 March 2010, on over the spring clock change.
        data.DataStreams[0].Bars.clear();
        const int64_t start = LocalMs(2010, 3, 1, 0, 0, 0);
        for (int i = 0; i < 60; ++i) AddBar(start + i * 5 * 3600000LL);
        data.DataStreams[1].Bars = data.DataStreams[0].Bars;
    }

    void TearDown() override { g_pSubscribeManage = previous_; }

    int32_t Pick(int32_t low, int32_t high) {
        return std::uniform_int_distribution<int32_t>(low, high)(random_);
    }
    bool Chance(int32_t percent) { return Pick(0, 99) < percent; }

    int32_t BarCount() const { return static_cast<int32_t>(data.DataStreams[0].Bars.size()); }

    tagTradeList RandomTrip(int32_t exitBar) {
        tagTradeList t;
        const int32_t kind = Pick(0, 19);
        t.nEntryType = kind < 9 ? 1 : kind < 18 ? 3 : Pick(0, 5);
        t.nExitType = t.nEntryType == 1 ? 2 : 4;
        t.nExitBar = exitBar;
        t.nEntryBar = exitBar - Pick(0, 30);
        if (Chance(2)) t.nEntryBar = -1;
        if (Chance(1)) t.nExitBar = -1;
        if (Chance(2)) t.nExitBar = BarCount() + Pick(0, 5);
        t.nEntrySource = static_cast<uint32_t>(Pick(0, 3));
        t.nExitSource = static_cast<uint32_t>(Pick(0, 3));
        const int32_t series = Pick(0, 9);
        t.nEntryDataIndex = series < 6 ? 0 : series < 9 ? 1 : 5;
        t.dLots = Chance(90) ? Pick(1, 5) : 0.5 * Pick(1, 9);
        t.dEntryPrice = 3000 + Pick(-500, 500) * 0.01;
        t.dExitPrice = t.dEntryPrice + Pick(-300, 300) * 0.01;
        if (Chance(3)) t.dExitPrice = t.dEntryPrice;
        return t;
    }

    // The run goes on: now and then a new bar, and round trips closed on the newest
    // bar or just before it. True when no bar was added (a new bar may be one that a
    // round trip named before it existed).
    bool Append(int32_t count) {
        bool sameBars = true;
        for (int32_t i = 0; i < count; ++i) {
            if (Chance(40)) {
                AddNextBar();
                sameBars = false;
            }
            const int32_t newest = BarCount() - 1;
            data.TradeList.push_back(RandomTrip(Chance(85) ? newest : newest - Pick(1, 3)));
        }
        return sameBars;
    }

    void AddNextBar() { AddBar(data.DataStreams[0].Bars.back().time + 5 * 3600000LL); }

    void DropFromEnd(size_t count) {
        while (count-- > 0 && !data.TradeList.empty()) data.TradeList.pop_back();
    }

    // Restores the live bar, the newest: drops the round trips closed on it at the
    // end of the list, then closes others on it.
    void RestoreLiveBar() {
        const int32_t live = BarCount() - 1;
        while (!data.TradeList.empty() && data.TradeList.back().nExitBar == live)
            data.TradeList.pop_back();
        for (int32_t n = Pick(0, Chance(20) ? 14 : 3); n > 0; --n)
            data.TradeList.push_back(RandomTrip(live));
    }

    // One of the round trips closed on the exit bar of the last one, wherever it
    // stands among them, closes at another price, as a new evaluation of the live
    // bar may close it. Half the time the live bar first closes many round trips,
    // which the figures take in before one of them changes.
    void ReplaceInLastExitBar() {
        std::vector<tagTradeList>& trips = data.TradeList;
        if (Chance(50)) {
            const int32_t live = BarCount() - 1;
            while (!trips.empty() && trips.back().nExitBar == live) trips.pop_back();
            for (int32_t n = Pick(9, 14); n > 0; --n) {
                trips.push_back(RandomTrip(live));
                trips.back().nExitBar = live;
            }
            FastAnswers(funcs);
        }
        if (trips.empty()) return;
        size_t start = trips.size() - 1;
        while (start > 0 && trips[start - 1].nExitBar == trips.back().nExitBar) --start;
        // Half the time one before the last eight, when there is one.
        const size_t count = trips.size() - start;
        const size_t span = count > 8 && Chance(50) ? count - 8 : count;
        const size_t index = start + static_cast<size_t>(Pick(0, static_cast<int32_t>(span) - 1));
        trips[index].dExitPrice += Pick(1, 500) * 0.01;
    }

    void ChangeSetting() {
        switch (Pick(0, 3)) {
            case 0: data.CommissionType = Pick(0, 3); break;
            case 1: {
                static const double values[] = {0.0, 0.5, 1.7, 2.9, 3.0};
                data.CommissionValue = values[Pick(0, 4)];
                break;
            }
            case 2: data.SingleSideCommission = !data.SingleSideCommission; break;
            default: data.FreeCloseToday = !data.FreeCloseToday; break;
        }
    }

    void ChangeProperty() {
        static const char* const integers[] = {"MarginMode", "MinMove", "ContractUnit"};
        static const char* const doubles[] = {"ContractSize", "BigPointValue", "PriceScale"};
        const int32_t index = Pick(0, 2) == 2 ? 5 : Pick(0, 1);
        switch (Pick(0, 3)) {
            case 0: {
                const char* name = integers[Pick(0, 2)];
                SetInteger(index, name, std::string(name) == "MarginMode" ? Pick(0, 5) : Pick(1, 12));
                break;
            }
            case 1: SetDouble(index, doubles[Pick(0, 2)], 0.25 * Pick(1, 40)); break;
            case 2: {
                const char* name = Pick(0, 1) ? integers[Pick(0, 2)] : doubles[Pick(0, 2)];
                funcs.PropertyCache.erase(Key(index, name));
                break;
            }
            default: {
                // The library's answer for series 1 changes; only a fetch sees it.
                IModuleFutureTrader::ISpecDetailValue& b = fake.Specs[{1, "B"}];
                b.MarginMode = Pick(0, 1) ? 1 : 4;
                b.ContractSize = static_cast<float>(Pick(1, 8));
                funcs.PropertyCache.erase(Key(1, Pick(0, 1) ? "MarginMode" : "ContractSize"));
                break;
            }
        }
    }

    // The forming last bar moves (at times to another day), a bar is added, or the
    // last one goes.
    void ChangeBars() {
        std::vector<BarRecord>& bars = data.DataStreams[0].Bars;
        switch (Pick(0, 2)) {
            case 0: bars.back().time += Pick(-30, 30) * 3600000LL; break;
            case 1: AddNextBar(); break;
            default:
                if (bars.size() > 40) bars.pop_back();
                break;
        }
    }

    // One random step; true when it changes nothing the figures depend on, so that
    // the running figures must carry on without starting again.
    bool Step() {
        const int32_t r = Pick(0, 99);
        if (r < 50) return Append(Pick(1, 3));
        if (r < 58) {
            RestoreLiveBar();
            return true;
        }
        if (r < 61) {
            DropFromEnd(static_cast<size_t>(Pick(1, 20)));
        } else if (r < 62) {
            if (Chance(25)) data.TradeList.clear();
        } else if (r < 65) {
            if (!data.TradeList.empty()) data.TradeList.back().dExitPrice += 0.01;
        } else if (r < 67) {
            // One of the last eight round trips is replaced.
            const size_t n = std::min<size_t>(data.TradeList.size(), static_cast<size_t>(Pick(1, 8)));
            if (n > 0) data.TradeList[data.TradeList.size() - n].dExitPrice += Pick(1, 500) * 0.01;
        } else if (r < 68) {
            for (tagTradeList& trip : data.TradeList) trip = RandomTrip(trip.nExitBar);
        } else if (r < 71) {
            ReplaceInLastExitBar();
        } else if (r < 74) {
            ChangeSetting();
        } else if (r < 76) {
            ChangeProperty();
        } else if (r < 79) {
            ChangeBars();
        } else if (r < 82) {
            data.DataIndex = Pick(0, 2) == 2 ? 5 : Pick(0, 1);
            return true;
        } else if (r < 84) {
            g_pSubscribeManage = g_pSubscribeManage == nullptr ? &fake : nullptr;
        } else {
            return Append(Pick(1, 3));
        }
        return false;
    }

    void Run(uint32_t seed, int32_t steps) {
        random_.seed(seed);
        FastAnswers(funcs);  // the settings of the test are new to the figures
        size_t longest = 0;
        for (int32_t step = 0; step < steps; ++step) {
            const bool unchanged = Step();
            const uint64_t restarts = Access::TradeFigureRestarts(funcs);
            const int32_t dataIndex = data.DataIndex;
            const std::string fast = FastAnswers(funcs);
            const std::string fastSummary = FastSummary(funcs);
            const WalkFigures walk = PlainWalk(funcs, data.TradeList);
            ASSERT_EQ(fast, WalkAnswers(walk))
                << "seed " << seed << " step " << step << " trips " << data.TradeList.size();
            ASSERT_EQ(fastSummary, WalkSummary(walk)) << "seed " << seed << " step " << step;
            ASSERT_EQ(data.DataIndex, dataIndex);
            if (unchanged) {
                ASSERT_EQ(Access::TradeFigureRestarts(funcs), restarts)
                    << "seed " << seed << " step " << step;
            }
            if (step % 97 == 0) {
                data.FormulaKind = 5;
                ASSERT_EQ(FastAnswers(funcs), ZeroAnswers());
                data.FormulaKind = 7;
                data.Result = nullptr;
                ASSERT_EQ(FastAnswers(funcs), ZeroAnswers());
                data.Result = &result;
                CSystemFuncs copy(funcs);
                ASSERT_EQ(FastAnswers(copy), fast) << "seed " << seed << " step " << step;
            }
            if (data.TradeList.size() > longest) longest = data.TradeList.size();
        }
        EXPECT_GT(longest, 200u);
    }

    FakeSubscribeManage fake;
    std::mt19937 random_;

private:
    CSubscibeManage* previous_ = nullptr;
};

TEST_F(RunningFiguresTest, RandomRunsMatchAPlainWalk) {
    Run(20100301, 1500);
}

TEST_F(RunningFiguresTest, RandomRunsWithSameDayFreeClosesMatchAPlainWalk) {
    data.FreeCloseToday = true;
    data.CommissionType = 2;
    data.CommissionValue = 1.7;
    Run(7, 1500);
}

}  // namespace
