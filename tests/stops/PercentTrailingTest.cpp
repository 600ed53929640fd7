// The percent trailing stop: once the gain reached the amount, leave when the given
// share of the best gain has been given back.
#include "stops/StopFixture.h"

namespace {

// A long contract bought at 100 on bar 2 with an amount of 30 is armed at 103. Bar 3
// reached 110, a peak gain of 100; giving back half of it leaves the stop at 105.
class PercentTrailingScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
    bool Whole() const { return GetParam(); }

    void PeakedLong() {
        Long(2, 1, 100);
        SetBar(3, 101, 110, 101, 108);
        SetBar(4, 108, 109, 106, 107);
    }

    void PeakedShort() {
        Short(2, 1, 100);
        SetBar(3, 99, 99, 90, 92);
        SetBar(4, 92, 94, 91, 93);
    }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, PercentTrailingScopes, ::testing::Bool());

TEST_P(PercentTrailingScopes, LongFallingThroughTheStopFillsAtTheStop) {
    PeakedLong();
    SetBar(5, 107, 108, 104, 105);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1050000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + 50.0);
}

TEST_P(PercentTrailingScopes, LongOpeningBelowTheStopFillsAtTheOpen) {
    PeakedLong();
    SetBar(5, 104, 104.5, 103, 104);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1040000));
}

TEST_P(PercentTrailingScopes, LongAboveTheStopIsLeftAlone) {
    PeakedLong();
    SetBar(5, 107, 108, 105.5, 106);
    EXPECT_FALSE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(PercentTrailingScopes, GivingBackTheWholeGainStopsAtTheEntryPrice) {
    PeakedLong();
    SetBar(5, 101, 102, 99.5, 100);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 1.0, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1000000));
}

TEST_P(PercentTrailingScopes, NeverArmedIsLeftAlone) {
    Long(2, 1, 100);
    SetBar(3, 101, 102.9, 101, 102);
    SetBar(5, 101, 102, 99, 100);
    EXPECT_FALSE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(PercentTrailingScopes, ArmedOnlyByThisBarsHighNeedsACloseAtOrBelowTheStop) {
    Long(2, 1, 100);
    // The high of 106 is a gain of 60; half of it given back is 103.
    SetBar(5, 101, 106, 100.5, 103.5);
    EXPECT_FALSE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
    SetBar(5, 101, 106, 100.5, 103);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1030000));
}

TEST_P(PercentTrailingScopes, TheEntryBarCountsOnlyWithItsClose) {
    PeakedLong();
    // Counted with its high, bar 2 would put the peak at 120 and the stop at 110.
    SetBar(2, 100, 120, 99, 100);
    SetBar(5, 107, 108, 104, 105);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1050000));
}

TEST_P(PercentTrailingScopes, AnEntryOnThisBarIsJudgedAtItsClose) {
    Long(5, 1, 100);
    SetBar(5, 100, 120, 99, 101);
    EXPECT_FALSE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(PercentTrailingScopes, ShortRisingThroughTheStopFillsAtTheStop) {
    PeakedShort();
    SetBar(5, 93, 96, 92.5, 95);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 2, 1, 100, Steps(950000))});
}

TEST_P(PercentTrailingScopes, ShortOpeningAboveTheStopFillsAtTheOpen) {
    PeakedShort();
    SetBar(5, 96, 97, 95.5, 96);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(960000));
}

TEST_P(PercentTrailingScopes, ShortArmedOnlyByThisBarsLowNeedsACloseAtOrAboveTheStop) {
    Short(2, 1, 100);
    SetBar(5, 99, 99.5, 94, 96.5);
    EXPECT_FALSE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    SetBar(5, 99, 99.5, 94, 97);
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(970000));
}

TEST_P(PercentTrailingScopes, AShortEntryOnThisBarIsJudgedAtItsClose) {
    Short(5, 1, 100);
    SetBar(5, 100, 101, 80, 99);
    EXPECT_FALSE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(PercentTrailingScopes, FixedValueContractsTakeThePeakOfEachBarsGain) {
    UseInstrument(0, 2);
    SetDouble(0, "ContractSize", 1000);
    PeakedLong();
    SetBar(5, 107, 108, 104, 105);
    // The peak gain is 1000 x 10 / 110; half of it given back from 110 is 105.21.
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1052100));
}

class PercentTrailingTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
};

TEST_F(PercentTrailingTest, PerEntryEachEntryPeaksFromItsOwnBar) {
    Long(2, 1, 100);
    Long(4, 1, 106);
    SetBar(3, 101, 110, 101, 108);
    SetBar(4, 108, 109, 106, 106);
    SetBar(5, 107, 108, 104, 105);
    // The second entry's gain never reached 30 (its best is this bar's open of 107).
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1050000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 106.0);
}

TEST_F(PercentTrailingTest, WholePositionPeaksFromTheLastEntrysBar) {
    Long(2, 1, 100);
    Long(4, 1, 104);
    SetBar(3, 101, 120, 101, 108);
    SetBar(4, 104, 108, 104, 104);
    SetBar(5, 106, 107, 104, 105);
    // Average 102 on 2 contracts; from bar 4 the open of 106 is the peak, a gain of
    // 80, and half of it given back is 104.
    EXPECT_TRUE(funcs.SetPercentTrailing(30, 0.5, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1040000)),
                                                 StopTrip(1, 4, 1, 104, Steps(1040000))}));
}

}  // namespace
