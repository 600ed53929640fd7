// The money trailing stop: the stop trails the best price since the entry by the
// amount's worth of points.
#include "stops/StopFixture.h"

namespace {

// A long contract bought at 100 on bar 2; the best price since is bar 4's high of
// 108, so an amount of 30 trails it at 105.
class DollarTrailingScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
    bool Whole() const { return GetParam(); }

    void RisingLong() {
        Long(2, 1, 100);
        SetBar(2, 100, 101, 99, 101);
        SetBar(3, 102, 106, 101, 105);
        SetBar(4, 105, 108, 105, 107);
    }

    void FallingShort() {
        Short(2, 1, 100);
        SetBar(2, 100, 101, 99, 99);
        SetBar(3, 98, 99, 94, 95);
        SetBar(4, 95, 95, 92, 93);
    }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, DollarTrailingScopes, ::testing::Bool());

TEST_P(DollarTrailingScopes, LongOpeningBelowTheStopFillsAtTheOpen) {
    RisingLong();
    SetBar(5, 104, 104.5, 102, 103);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1040000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + 40.0);
}

TEST_P(DollarTrailingScopes, LongFallingThroughTheStopFillsAtTheStop) {
    RisingLong();
    SetBar(5, 106, 107, 104, 105);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(DollarTrailingScopes, LongAboveTheStopIsLeftAlone) {
    RisingLong();
    SetBar(5, 106, 107, 105.5, 106);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(DollarTrailingScopes, LongMakingANewHighAndFallingBackFillsAtTheStopFromThatHigh) {
    RisingLong();
    // The low of 106 is only 2 points under the old best; the new high of 112 and
    // the close of 108.5 are 3.5 points apart, so the stop at 109 was crossed.
    SetBar(5, 107, 112, 106, 108.5);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1090000));
}

TEST_P(DollarTrailingScopes, LongNewHighCloseAboveTheStopIsLeftAlone) {
    RisingLong();
    SetBar(5, 107, 112, 106, 109.5);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(DollarTrailingScopes, AStopFromTheBarsOwnHighMustLieInsideTheBar) {
    RisingLong();
    // A bar whose close lies below its low: the stop of 109 under the high of 112 is
    // below the bar and is not filled.
    SetBar(5, 110, 112, 110, 105);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(DollarTrailingScopes, TheEntryBarCountsOnlyWithItsClose) {
    RisingLong();
    SetBar(2, 100, 115, 99, 101);
    // From 115 the stop would be at 112 and the bar would fill at its open of 106.
    SetBar(5, 106, 107, 104, 105);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(DollarTrailingScopes, AnEntryOnThisBarIsJudgedAtItsClose) {
    Long(5, 1, 100);
    // Judged from the close of 101 to the close, nothing was given back; the bar's
    // own high of 120 is not looked at on the entry's bar.
    SetBar(5, 100, 120, 99, 101);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(DollarTrailingScopes, ShortOpeningAboveTheStopFillsAtTheOpen) {
    FallingShort();
    SetBar(5, 96, 97, 95.5, 96.5);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 2, 1, 100, Steps(960000))});
}

TEST_P(DollarTrailingScopes, ShortRisingThroughTheStopFillsAtTheStop) {
    FallingShort();
    SetBar(5, 94, 96, 93, 95);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(950000));
}

TEST_P(DollarTrailingScopes, ShortMakingANewLowAndRisingBackFillsAtTheStopFromThatLow) {
    FallingShort();
    SetBar(5, 93, 94, 88, 91.5);
    EXPECT_TRUE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(910000));
}

TEST_P(DollarTrailingScopes, ShortBelowTheStopIsLeftAlone) {
    FallingShort();
    SetBar(5, 93, 94.5, 92.5, 93);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(DollarTrailingScopes, AShortEntryOnThisBarIsJudgedAtItsClose) {
    Short(5, 1, 100);
    SetBar(5, 100, 101, 80, 99);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

class DollarTrailingTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
};

TEST_F(DollarTrailingTest, PerEntryEachEntryTrailsFromItsOwnBar) {
    Long(2, 1, 100);
    Long(4, 1, 104);
    SetBar(3, 105, 110, 104, 108);
    SetBar(4, 108, 111, 104, 105);
    SetBar(5, 106, 107, 104.5, 105);
    // The first entry trails 111 at 108, above the bar: filled at the open. The second
    // trails the open of 106 (its bar counts with its close of 105) at 103: not hit.
    EXPECT_TRUE(funcs.SetDollarTrailing(30, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1060000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 104.0);
}

TEST_F(DollarTrailingTest, PerEntryTheNewHighStepUsesTheEntrysOwnContracts) {
    Long(2, 1, 100);
    Long(2, 2, 100);
    SetBar(5, 100, 104, 100, 102);
    // From the bar's high of 104 to its close of 102 one contract gives back 20 and
    // two give back 40: only the two-contract entry reaches 30, its stop 1.5 points
    // under the high.
    EXPECT_TRUE(funcs.SetDollarTrailing(30, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 2, 100, Steps(1025000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dLots, 1.0);
}

TEST_F(DollarTrailingTest, WholePositionTrailsFromTheLastEntrysBar) {
    Long(1, 1, 100);
    Long(4, 1, 100);
    SetBar(2, 110, 120, 110, 115);
    SetBar(4, 104, 104, 104, 104);
    SetBar(5, 104, 105, 101, 102);
    // From the last entry's close of 104, 30 on 2 contracts is 1.5 points.
    EXPECT_TRUE(funcs.SetDollarTrailing(30, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1025000)),
                                                 StopTrip(1, 4, 1, 100, Steps(1025000))}));
}

TEST_F(DollarTrailingTest, WholePositionNeedsTheLastEntryBetweenTheFirstAndThisBar) {
    Long(1, 1, 100);
    Long(9, 1, 100);
    SetBar(3, 110, 120, 110, 115);
    SetBar(5, 93, 94, 90, 92);
    EXPECT_FALSE(funcs.SetDollarTrailing(30, true));
    EXPECT_TRUE(data.TradeList.empty());
}

}  // namespace
