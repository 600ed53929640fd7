// The stop loss: where it is hit, where it fills (inside the bar, through a gap, on
// the entry's own bar), long and short, per entry and for the whole position.
#include "stops/StopFixture.h"

namespace {

// Single-entry cases give the same answer in both scopes; the parameter is
// bWholePosition.
class StopLossScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
    bool Whole() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, StopLossScopes, ::testing::Bool());

TEST_P(StopLossScopes, LongStopInsideTheBarFillsAtTheStopPrice) {
    Long(2, 1, 100);
    SetBar(5, 99, 101, 94, 96);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(950000))});
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(Text(data.SignalHistory.back()), SignalText(2, 5, 0, 0, 1, Steps(950000)));
    EXPECT_EQ(result.Figures.Capital, 1000000.0 - 50.0);
}

TEST_P(StopLossScopes, LongStopInsideTheBarBelowTheOpenFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(5, 94.5, 99, 93, 97);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(945000))});
}

TEST_P(StopLossScopes, LongStopAboveAGappedBarFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(5, 93, 94, 90, 92);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(930000))});
}

TEST_P(StopLossScopes, LongStopIsHitWhenTheLossEqualsTheAmount) {
    Long(2, 1, 100);
    SetBar(5, 99, 101, 95, 96);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(950000));
}

TEST_P(StopLossScopes, LongStopNotReachedLeavesEverything) {
    Long(2, 1, 100);
    SetBar(5, 99, 101, 95.01, 96);
    EXPECT_FALSE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_TRUE(data.SignalHistory.empty());
    EXPECT_EQ(result.Figures.Capital, 1000000.0);
}

TEST_P(StopLossScopes, LongEntryOnThisBarIsJudgedAtTheClose) {
    Long(5, 1, 100);
    SetBar(5, 100, 101, 90, 99);
    // The low would be a loss of 100; the close is a loss of 10 only.
    EXPECT_FALSE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_TRUE(funcs.SetStopLoss(0, 10, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 5, 1, 100, Steps(990000))});
}

TEST_P(StopLossScopes, ShortStopInsideTheBarFillsAtTheStopPrice) {
    Short(2, 1, 100);
    SetBar(5, 101, 106, 99, 104);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 2, 1, 100, Steps(1050000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 - 50.0);
}

TEST_P(StopLossScopes, ShortStopInsideTheBarAboveTheOpenFillsAtTheOpen) {
    Short(2, 1, 100);
    SetBar(5, 105.5, 107, 104, 106);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1055000));
}

TEST_P(StopLossScopes, ShortStopBelowAGappedBarFillsAtTheOpen) {
    Short(2, 1, 100);
    SetBar(5, 107, 109, 106, 108);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1070000));
}

TEST_P(StopLossScopes, ShortEntryOnThisBarIsJudgedAtTheClose) {
    Short(5, 1, 100);
    SetBar(5, 100, 110, 99, 101);
    EXPECT_FALSE(funcs.SetStopLoss(0, 50, Whole()));
    EXPECT_TRUE(funcs.SetStopLoss(0, 10, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1010000));
}

TEST_P(StopLossScopes, ModeOneMultipliesTheAmountByTheContracts) {
    Long(2, 2, 100);
    SetBar(5, 99, 101, 97, 98);
    // 25 per contract on 2 contracts is 50, 2.5 points away.
    EXPECT_TRUE(funcs.SetStopLoss(1, 25, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 2, 100, Steps(975000))});
}

TEST_P(StopLossScopes, ModeZeroSpreadsTheAmountOverTheContracts) {
    Long(2, 2, 100);
    SetBar(5, 99, 101, 97, 98);
    // 25 on 2 contracts is 1.25 points away.
    EXPECT_TRUE(funcs.SetStopLoss(0, 25, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(987500));
}

class StopLossTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
};

TEST_F(StopLossTest, EntriesAreStoppedOnTheirOwnBars) {
    Long(1, 1, 104);
    Long(2, 1, 100);
    SetBar(5, 103, 104, 98.5, 99);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 104, Steps(990000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 100.0);

    data.CurrentBar = 6;
    SetBar(6, 97, 98, 94, 95);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(Text(data.TradeList.back()), StopTrip(1, 2, 1, 100, Steps(950000)));
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_F(StopLossTest, TheEntryMovingIntoAClosedOnesPlaceIsTestedInTheSameCall) {
    Long(1, 1, 104);
    Long(2, 1, 103);
    Long(3, 1, 100);
    SetBar(5, 102, 103, 97, 98);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 1, 1, 104, Steps(990000)),
                                                 StopTrip(1, 2, 1, 103, Steps(980000))}));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].nBar, 3);
}

TEST_F(StopLossTest, AnEntryNotHitIsPassedOver) {
    Long(1, 1, 100);
    Long(2, 1, 104);
    SetBar(5, 101, 102, 98.5, 99);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 104, Steps(990000))});
    EXPECT_EQ(data.OpenEntries[0].dPrice, 100.0);
}

TEST_F(StopLossTest, WholePositionUsesTheAveragePriceAndClosesEveryEntry) {
    Long(1, 1, 100);
    Long(3, 1, 104);
    SetBar(5, 101, 102, 99, 100);
    // Average 102 on 2 contracts: 50 is 2.5 points away.
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(995000)),
                                                 StopTrip(1, 3, 1, 104, Steps(995000))}));
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_F(StopLossTest, PerEntryTheSameBarStopsOnlyTheEntryThatLostEnough) {
    Long(1, 1, 100);
    Long(3, 1, 104);
    SetBar(5, 101, 102, 99, 100);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 3, 1, 104, Steps(990000))});
}

TEST_F(StopLossTest, WholePositionWithItsLastEntryOnThisBarIsJudgedAtTheClose) {
    Long(1, 1, 100);
    Long(5, 1, 100);
    SetBar(5, 100, 101, 90, 99);
    EXPECT_FALSE(funcs.SetStopLoss(0, 50, true));
    EXPECT_TRUE(data.TradeList.empty());
    // Per entry the older one is judged at the low.
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(950000))});
}

TEST_F(StopLossTest, WholePositionNeedsTheLastEntryBetweenTheFirstAndThisBar) {
    SetBar(5, 93, 94, 90, 92);
    Long(1, 1, 100);
    Long(7, 1, 100);
    EXPECT_FALSE(funcs.SetStopLoss(0, 50, true));
    data.OpenEntries.clear();
    Long(-1, 1, 100);
    EXPECT_FALSE(funcs.SetStopLoss(0, 50, true));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_F(StopLossTest, WholeShortPositionClosesAtTheStopRoundedUp) {
    Short(1, 1, 100);
    Short(2, 2, 101);
    SetBar(5, 101, 104, 100, 103);
    // Average 302 / 3 on 3 contracts; 60 is 2 points above it.
    EXPECT_TRUE(funcs.SetStopLoss(0, 60, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(3, 1, 1, 100, Steps(1026700)),
                                                 StopTrip(3, 2, 2, 101, Steps(1026700))}));
}

// A stop that leaves the strategy flat ends the position's bookkeeping: its worst
// open result joins the sum of such results and its marks and size are cleared. A
// stop that leaves an entry open changes none of them.
TEST_F(StopLossTest, ClosingTheLastEntryEndsThePositionsBookkeeping) {
    Long(1, 1, 100);
    Long(3, 1, 104);
    result.Figures.PositionContracts = 2;
    result.Figures.MaxPositionProfitMark = 40;
    result.Figures.MaxPositionLossMark = -30;
    result.Figures.ClosedPositionsDrawDown = -5;
    SetBar(5, 101, 102, 99, 100);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_EQ(2.0, result.Figures.PositionContracts);
    EXPECT_EQ(40.0, result.Figures.MaxPositionProfitMark);
    EXPECT_EQ(-30.0, result.Figures.MaxPositionLossMark);
    EXPECT_EQ(-5.0, result.Figures.ClosedPositionsDrawDown);

    SetBar(5, 101, 102, 94, 100);
    EXPECT_TRUE(funcs.SetStopLoss(0, 50, false));
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(0.0, result.Figures.PositionContracts);
    EXPECT_EQ(0.0, result.Figures.MaxPositionProfitMark);
    EXPECT_EQ(0.0, result.Figures.MaxPositionLossMark);
    EXPECT_EQ(-35.0, result.Figures.ClosedPositionsDrawDown);
}

}  // namespace
