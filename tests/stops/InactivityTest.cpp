// The inactivity stop: leave at the close when, within the last few bars, the price
// reached neither the gain level nor the loss level around the entry price.
#include "stops/StopFixture.h"

namespace {

// An amount of 30 on one contract bought at 100 puts the gain level at 103 and the
// loss level at 97. Bar 5 closes at 101.5.
class InactivityScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
        SetBar(5, 101, 101.5, 100.5, 101.5);
    }
    bool Whole() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, InactivityScopes, ::testing::Bool());

TEST_P(InactivityScopes, AnIdleLongIsClosedAtTheClose) {
    Long(1, 1, 100);
    SetBar(3, 100, 102.5, 97.5, 101);
    SetBar(4, 101, 102.9, 97.1, 102);
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1015000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + 15.0);
}

TEST_P(InactivityScopes, ALongReachingTheGainLevelIsActive) {
    Long(1, 1, 100);
    SetBar(4, 101, 103, 100, 102);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(InactivityScopes, ALongReachingTheLossLevelIsActive) {
    Long(1, 1, 100);
    SetBar(3, 100, 101, 97, 99);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(InactivityScopes, BarsBeforeTheWindowDoNotCount) {
    Long(1, 1, 100);
    SetBar(2, 100, 110, 90, 100);
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1015000));
}

TEST_P(InactivityScopes, ThisBarCountsOnlyWithItsOpen) {
    Long(1, 1, 100);
    SetBar(5, 101, 110, 90, 101.5);
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1015000));
    data.OpenEntries.clear();
    data.TradeList.clear();
    Long(1, 1, 100);
    SetBar(5, 103, 104, 102, 103.5);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
}

TEST_P(InactivityScopes, AnEntryYoungerThanTheLookBackIsLeftAlone) {
    Long(1, 1, 100);
    // Bar 1 is 4 bars before bar 5: a look-back of 5 bars leaves it alone whatever
    // the prices, one of 4 bars judges it.
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 5, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 4, Whole()));
}

TEST_P(InactivityScopes, ALookBackBeforeTheFirstBarJudgesNothing) {
    Long(0, 1, 100);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 7, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(InactivityScopes, ALookBackOfZeroBarsIsOneBar) {
    Long(4, 1, 100);
    // One bar back is this bar's open only; the entry on bar 4 is old enough.
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 0, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1015000));
    data.OpenEntries.clear();
    Long(5, 1, 100);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 0, Whole()));
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 1, Whole()));
}

TEST_P(InactivityScopes, ModeZeroSpreadsTheAmountOverTheContracts) {
    Long(1, 3, 100);
    // 30 on 3 contracts: levels at 101 and 99; bar 4 reached 101.
    SetBar(4, 100, 101, 100, 100);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(InactivityScopes, ModeOneIsPerContract) {
    Long(1, 3, 100);
    // 30 per contract: levels at 103 and 97 whatever the size.
    SetBar(4, 100, 101, 100, 100);
    EXPECT_TRUE(funcs.SetInactivate(1, 30, 3, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 3, 100, Steps(1015000))});
}

// The short side mirrors the long one: its gain level of 97 lies below the entry and
// is reached by a low, its loss level of 103 above it and is reached by a high.
TEST_P(InactivityScopes, AnIdleShortIsClosedAtTheClose) {
    Short(1, 1, 100);
    SetBar(3, 100, 102.5, 97.5, 101);
    SetBar(4, 101, 102.9, 97.1, 102);
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 1, 1, 100, Steps(1015000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 - 15.0);
}

TEST_P(InactivityScopes, AShortReachingTheGainLevelIsActive) {
    Short(1, 1, 100);
    SetBar(3, 100, 101, 97, 99);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(InactivityScopes, AShortReachingTheLossLevelIsActive) {
    Short(1, 1, 100);
    SetBar(4, 101, 103, 100, 102);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(InactivityScopes, ShortModeOneIsPerContract) {
    Short(1, 2, 100);
    SetBar(3, 100, 101.6, 98.4, 100);
    // Per contract the levels are 97 and 103; for both contracts 98.5 and 101.5.
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, Whole()));
    EXPECT_TRUE(funcs.SetInactivate(1, 30, 3, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 1, 2, 100, Steps(1015000))});
}

class InactivityTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
        SetBar(5, 101, 101.5, 100.5, 101.5);
    }
};

TEST_F(InactivityTest, PerEntryEveryIdleEntryIsClosedAndYoungOnesAreLeft) {
    Long(0, 1, 100);
    Long(1, 1, 100.5);
    Long(4, 1, 100);
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, false));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 0, 1, 100, Steps(1015000)),
                                                 StopTrip(1, 1, 1, 100.5, Steps(1015000))}));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].nBar, 4);
}

TEST_F(InactivityTest, PerEntryEachEntryHasItsOwnLevels) {
    Long(1, 1, 100);
    Long(2, 1, 102);
    SetBar(3, 100, 101, 99, 100);
    SetBar(4, 100, 102.5, 100, 101);
    // The entry at 100 (levels 103 and 97) was idle; the one at 102 (levels 105 and
    // 99) was not: bar 3 fell to 99.
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1015000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 102.0);
}

TEST_F(InactivityTest, WholePositionIsAsOldAsItsLastEntry) {
    Long(0, 1, 100);
    Long(4, 1, 100);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, true));
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 1, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 0, 1, 100, Steps(1015000)),
                                                 StopTrip(1, 4, 1, 100, Steps(1015000))}));
}

TEST_F(InactivityTest, AnEntryAfterThisBarIsLeftAlone) {
    Long(1, 1, 100);
    Long(8, 1, 100);
    EXPECT_FALSE(funcs.SetInactivate(0, 30, 3, true));
    EXPECT_TRUE(funcs.SetInactivate(0, 30, 3, false));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].nBar, 8);
}

}  // namespace
