// The checks every stop makes before it looks at the position: the formula kind, the
// result block, the mode, the amount, the percent, the look-back, a flat position and
// a missing bar. Each refusal is shown against a scenario in which every stop fires.
#include <functional>
#include <string>
#include <vector>

#include "stops/StopFixture.h"

namespace {

struct StopCall {
    std::string name;
    bool hasMode;
    std::function<bool(CSystemFuncs&, int32_t mode, double amount)> call;
};

std::vector<StopCall> AmountStops() {
    return {
        {"SetStopLoss", true,
         [](CSystemFuncs& f, int32_t m, double a) { return f.SetStopLoss(m, a, false); }},
        {"SetProfitTarget", true,
         [](CSystemFuncs& f, int32_t m, double a) { return f.SetProfitTarget(m, a, false); }},
        {"SetBreakEven", true,
         [](CSystemFuncs& f, int32_t m, double a) { return f.SetBreakEven(m, a, false); }},
        {"SetDollarTrailing", false,
         [](CSystemFuncs& f, int32_t, double a) { return f.SetDollarTrailing(a, false); }},
        {"SetPercentTrailing", false,
         [](CSystemFuncs& f, int32_t, double a) { return f.SetPercentTrailing(a, 0.5, false); }},
        {"SetPeriodTrailing", true,
         [](CSystemFuncs& f, int32_t m, double a) { return f.SetPeriodTrailing(m, a, 5, false); }},
        {"SetInactivate", true,
         [](CSystemFuncs& f, int32_t m, double a) { return f.SetInactivate(m, a, 1, false); }},
    };
}

// A long contract bought at 100 on bar 2. Bar 3 reached 110; bar 5, the bar being
// evaluated, opens at 99 and falls to 90: every stop with an amount of 30 fires.
class StopChecksTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
        SetBar(3, 100, 110, 100, 100);
        SetBar(5, 99, 104, 90, 95);
        Long(2, 1, 100);
    }

    // Calls the stop on a fresh copy of the scenario and reports whether it fired.
    bool Fires(const StopCall& stop, int32_t mode, double amount) {
        const std::vector<tagTradeSignal> entries = data.OpenEntries;
        const double capital = result.Figures.Capital;
        const bool fired = stop.call(funcs, mode, amount);
        const bool changed = data.OpenEntries.size() != entries.size();
        EXPECT_EQ(fired, changed) << stop.name;
        data.OpenEntries = entries;
        data.TradeList.clear();
        data.SignalHistory.clear();
        result.Figures.Capital = capital;
        return fired;
    }

    void ExpectNothingDone(const std::string& what) {
        EXPECT_EQ(data.OpenEntries.size(), 1u) << what;
        EXPECT_TRUE(data.TradeList.empty()) << what;
        EXPECT_TRUE(data.SignalHistory.empty()) << what;
        EXPECT_TRUE(data.DelayedSignals.empty()) << what;
        EXPECT_EQ(result.Figures.Capital, 1000000.0) << what;
        EXPECT_FALSE(result.ExitOnClose) << what;
    }
};

TEST_F(StopChecksTest, EveryStopFiresInTheScenario) {
    for (const StopCall& stop : AmountStops()) EXPECT_TRUE(Fires(stop, 0, 30)) << stop.name;
    EXPECT_TRUE(funcs.SetExitOnClose());
}

TEST_F(StopChecksTest, OtherFormulaKindsAreRefused) {
    for (int32_t kind : {0, 3, 4, 5, 6, 8}) {
        data.FormulaKind = kind;
        for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(funcs, 0, 30)) << stop.name;
        EXPECT_FALSE(funcs.SetExitOnClose());
        ExpectNothingDone("kind " + std::to_string(kind));
    }
}

TEST_F(StopChecksTest, NoResultBlockActsAsOutsideAStrategy) {
    data.Result = nullptr;
    for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(funcs, 0, 30)) << stop.name;
    EXPECT_FALSE(funcs.SetExitOnClose());
    data.Result = &result;
    ExpectNothingDone("no result block");
}

TEST_F(StopChecksTest, NoHostDataObjectIsRefused) {
    CSystemFuncs alone(nullptr);
    for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(alone, 0, 30)) << stop.name;
    EXPECT_FALSE(alone.SetExitOnClose());
}

TEST_F(StopChecksTest, AFlatPositionIsRefused) {
    data.OpenEntries.clear();
    for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(funcs, 0, 30)) << stop.name;
    EXPECT_FALSE(funcs.SetExitOnClose());
    EXPECT_TRUE(data.DelayedSignals.empty());
    EXPECT_FALSE(result.ExitOnClose);
}

TEST_F(StopChecksTest, ModesOtherThanZeroAndOneAreRefused) {
    for (const StopCall& stop : AmountStops()) {
        if (!stop.hasMode) continue;
        EXPECT_TRUE(Fires(stop, 1, 30)) << stop.name;
        for (int32_t mode : {2, -1, 7}) {
            EXPECT_FALSE(stop.call(funcs, mode, 30)) << stop.name << " mode " << mode;
            ExpectNothingDone(stop.name);
        }
    }
}

TEST_F(StopChecksTest, AnAmountMustExceedTheTolerance) {
    for (const StopCall& stop : AmountStops()) {
        for (double amount : {0.0001, 0.0, -30.0}) {
            EXPECT_FALSE(stop.call(funcs, 0, amount)) << stop.name << " amount " << amount;
            ExpectNothingDone(stop.name);
        }
    }
    // Just above the tolerance the amount is taken. The inactivity stop's levels then
    // hug the entry price (100.00 and 99.99), so its window must stay between them.
    for (const StopCall& stop : AmountStops()) {
        if (stop.name == "SetInactivate") continue;
        EXPECT_TRUE(Fires(stop, 0, 0.00011)) << stop.name;
    }
    SetBar(5, 99.995, 104, 90, 95);
    EXPECT_TRUE(funcs.SetInactivate(0, 0.00011, 1, false));
}

TEST_F(StopChecksTest, AMissingBarIsRefused) {
    data.CurrentBar = 10;
    for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(funcs, 0, 30)) << stop.name;
    data.CurrentBar = -1;
    for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(funcs, 0, 30)) << stop.name;
    data.CurrentBar = 5;
    data.DataIndex = 1;
    for (const StopCall& stop : AmountStops()) EXPECT_FALSE(stop.call(funcs, 0, 30)) << stop.name;
    data.DataIndex = 0;
    ExpectNothingDone("missing bar");
}

TEST_F(StopChecksTest, PercentMustLieAboveTheToleranceAndNotAboveOne) {
    const std::vector<tagTradeSignal> entries = data.OpenEntries;
    for (double percent : {1.01, 0.0001, 0.0, -0.5}) {
        EXPECT_FALSE(funcs.SetPercentTrailing(30, percent, false)) << percent;
        ExpectNothingDone("percent");
    }
    for (double percent : {1.0, 0.00011}) {
        EXPECT_TRUE(funcs.SetPercentTrailing(30, percent, false)) << percent;
        data.OpenEntries = entries;
    }
}

TEST_F(StopChecksTest, ANegativeLookBackIsRefused) {
    EXPECT_FALSE(funcs.SetPeriodTrailing(0, 30, -1, false));
    EXPECT_FALSE(funcs.SetInactivate(0, 30, -1, false));
    ExpectNothingDone("look-back -1");
}

// An instrument whose margin mode gives no money value (neither a profit nor a price
// for an amount) fires no stop: every gain and loss is 0, and the inactivity stop's
// levels fall on the entry price, which the bar reaches.
TEST_F(StopChecksTest, AMarginModeWithoutMoneyValueFiresNothing) {
    SetInteger(0, "MarginMode", 0);
    ForgetDerived();
    for (const StopCall& stop : AmountStops()) {
        EXPECT_FALSE(Fires(stop, 0, 30)) << stop.name;
        ExpectNothingDone(stop.name);
    }
}

}  // namespace
