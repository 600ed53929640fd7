// The period trailing stop: like the money trailing stop, but trailing the best price
// of the last few bars only.
#include "stops/StopFixture.h"

namespace {

// A long contract bought at 100 on bar 1. Bar 2 reached 115, bars 3 and 4 only 109
// and 107; bar 5 opens at 105 and falls to 103.5.
class PeriodTrailingScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
        Long(1, 1, 100);
        SetBar(1, 100, 101, 99, 100);
        SetBar(2, 105, 115, 104, 110);
        SetBar(3, 108, 109, 106, 107);
        SetBar(4, 106, 107, 105, 106);
        SetBar(5, 105, 106, 103.5, 104);
    }
    bool Whole() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, PeriodTrailingScopes, ::testing::Bool());

TEST_P(PeriodTrailingScopes, TrailsTheBestPriceOfTheLastBars) {
    // Over the last 2 bars the best price is bar 4's high of 107: the stop is at 104.
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 30, 2, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1040000))});
}

TEST_P(PeriodTrailingScopes, TheMoneyTrailingStopTrailsTheBestPriceSinceTheEntry) {
    // From bar 2's 115 the stop is at 112, above the bar: filled at the open.
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(PeriodTrailingScopes, ALookBackReachingTheEntryTrailsFromTheEntry) {
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 30, 10, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(PeriodTrailingScopes, ALookBackOfZeroBarsIsOneBar) {
    // One bar sees only this bar's open of 105: 20 under it is 103, not reached by
    // the low; the bar's own high of 106 and its close of 104 give the stop at 104.
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 20, 0, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1040000));
}

TEST_P(PeriodTrailingScopes, ALookBackOfOneBar) {
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 20, 1, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1040000));
}

TEST_P(PeriodTrailingScopes, ALookBackOfTwoBarsWithTheSameAmount) {
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 20, 2, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(PeriodTrailingScopes, ModeOneMultipliesTheAmountByTheContracts) {
    data.OpenEntries.clear();
    Long(1, 2, 100);
    // 25 per contract on 2 contracts is 2.5 points under 107.
    EXPECT_TRUE(funcs.SetPeriodTrailing(1, 25, 2, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 2, 100, Steps(1045000))});
}

TEST_P(PeriodTrailingScopes, ModeZeroSpreadsTheAmountOverTheContracts) {
    data.OpenEntries.clear();
    Long(1, 2, 100);
    // 25 on 2 contracts is 1.25 points under 107: 105.75, above the open.
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 25, 2, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(PeriodTrailingScopes, AShortTrailsTheLowestLowOfTheLastBars) {
    data.OpenEntries.clear();
    Short(1, 1, 100);
    SetBar(1, 100, 101, 99, 100);
    SetBar(2, 95, 96, 85, 90);
    SetBar(3, 92, 94, 91, 93);
    SetBar(4, 94, 95, 93, 94);
    SetBar(5, 95, 96.5, 94, 96);
    // Over the last 2 bars the lowest low is 93: the stop is at 96.
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 30, 2, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 1, 1, 100, Steps(960000))});
}

TEST_P(PeriodTrailingScopes, AShortOpeningAboveTheStopFillsAtTheOpen) {
    data.OpenEntries.clear();
    Short(1, 1, 100);
    SetBar(2, 95, 96, 85, 90);
    SetBar(3, 92, 94, 91, 93);
    SetBar(4, 94, 95, 93, 94);
    SetBar(5, 97, 98, 96.5, 97);
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 30, 2, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(970000));
}

TEST_P(PeriodTrailingScopes, AShortEntryOnThisBarIsJudgedAtItsClose) {
    data.OpenEntries.clear();
    Short(5, 1, 100);
    SetBar(5, 100, 101, 80, 99);
    EXPECT_FALSE(funcs.SetPeriodTrailing(0, 30, 3, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

class PeriodTrailingTest : public StopTest {};

TEST_F(PeriodTrailingTest, TheShortSideTrailsFromAFixedCeilingAtMost) {
    FlatBars(1000100);
    Short(1, 1, 1000100);
    SetBar(5, 1000100, 1000101, 1000099, 1000100);
    // Every low lies above 999999.99, so the stop trails the ceiling and the bar lies
    // wholly above the stop: filled at the open. The money trailing stop has no such
    // ceiling and sees nothing given back.
    EXPECT_FALSE(funcs.SetDollarTrailing(30, false));
    EXPECT_TRUE(funcs.SetPeriodTrailing(0, 30, 3, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 1, 1, 1000100, 1000100)});
}

TEST_F(PeriodTrailingTest, AnEntryOnThisBarIsJudgedAtItsClose) {
    FlatBars(100);
    Long(5, 1, 100);
    SetBar(5, 100, 120, 99, 101);
    EXPECT_FALSE(funcs.SetPeriodTrailing(0, 30, 3, false));
    EXPECT_FALSE(funcs.SetPeriodTrailing(0, 30, 3, true));
    EXPECT_TRUE(data.TradeList.empty());
}

}  // namespace
