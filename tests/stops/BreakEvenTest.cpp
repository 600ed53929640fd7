// The break-even stop: armed once the gain reached the amount on a bar since the
// entry, it closes when the price comes back to the entry price.
#include "stops/StopFixture.h"

namespace {

// A long contract bought at 100 on bar 2 with an amount of 30 is armed at 103.
class BreakEvenScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
    bool Whole() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, BreakEvenScopes, ::testing::Bool());

TEST_P(BreakEvenScopes, ArmedEarlierAndOpeningBelowTheEntryFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(3, 100, 104, 100, 102);
    SetBar(5, 99, 101, 98, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(990000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 - 10.0);
}

TEST_P(BreakEvenScopes, ArmedEarlierAndOpeningAtTheEntryFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(3, 100, 104, 100, 102);
    SetBar(5, 100, 101, 100, 100.5);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1000000));
}

TEST_P(BreakEvenScopes, ArmedEarlierAndTouchingTheEntryFillsAtTheEntry) {
    Long(2, 1, 100);
    SetBar(3, 100, 104, 100, 102);
    SetBar(5, 101, 102, 99.5, 101);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1000000));
}

TEST_P(BreakEvenScopes, ArmedEarlierButStayingAboveTheEntryLeavesThePosition) {
    Long(2, 1, 100);
    SetBar(3, 100, 104, 100, 102);
    SetBar(5, 101, 102, 100.5, 101);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(BreakEvenScopes, TheEntryBarCountsOnlyWithItsClose) {
    Long(2, 1, 100);
    SetBar(2, 100, 110, 100, 100);
    SetBar(5, 99, 101, 98, 100);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    SetBar(2, 100, 110, 100, 103);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(990000));
}

TEST_P(BreakEvenScopes, TheBarBeingEvaluatedArmsWithItsOpen) {
    Long(2, 1, 100);
    // The open of 103 arms the stop; the bar then trades back to the entry price.
    SetBar(5, 103, 103.5, 99.5, 101);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1000000));
}

TEST_P(BreakEvenScopes, ArmedOnlyByThisBarsHighNeedsACloseBackAtTheEntry) {
    Long(2, 1, 100);
    SetBar(5, 102.5, 103.5, 99.5, 101);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    SetBar(5, 101, 104, 99, 100.5);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    SetBar(5, 101, 102.9, 99, 99.5);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
    SetBar(5, 101, 104, 99, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1000000))});
}

TEST_P(BreakEvenScopes, ArmedEarlierAndGappingBelowTheEntryFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(3, 100, 104, 100, 102);
    SetBar(5, 97, 98, 96, 97);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(970000));
}

TEST_P(BreakEvenScopes, AnEntryOnThisBarCountsWithItsCloseThenWithTheBarsHigh) {
    Long(5, 1, 100);
    SetBar(5, 100, 104, 99, 100.5);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    SetBar(5, 100, 104, 99, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 5, 1, 100, Steps(1000000))});
}

TEST_P(BreakEvenScopes, ShortArmedEarlierAndOpeningAboveTheEntryFillsAtTheOpen) {
    Short(2, 1, 100);
    SetBar(3, 100, 100, 96, 98);
    SetBar(5, 101, 102, 99, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 2, 1, 100, Steps(1010000))});
}

TEST_P(BreakEvenScopes, ShortArmedEarlierAndTouchingTheEntryFillsAtTheEntry) {
    Short(2, 1, 100);
    SetBar(3, 100, 100, 96, 98);
    SetBar(5, 99, 100.5, 98, 99);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1000000));
}

TEST_P(BreakEvenScopes, ShortArmedEarlierButStayingBelowTheEntryLeavesThePosition) {
    Short(2, 1, 100);
    SetBar(3, 100, 100, 96, 98);
    SetBar(5, 99, 99.5, 98, 99);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_P(BreakEvenScopes, ShortArmedOnlyByThisBarsLowNeedsACloseBackAtTheEntry) {
    Short(2, 1, 100);
    SetBar(5, 99, 100.5, 96, 99.5);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    SetBar(5, 99, 100.5, 96, 100.5);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1000000));
}

TEST_P(BreakEvenScopes, ShortArmedEarlierAndGappingAboveTheEntryFillsAtTheOpen) {
    Short(2, 1, 100);
    SetBar(3, 100, 100, 96, 98);
    SetBar(5, 103, 104, 102, 103);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1030000));
}

TEST_P(BreakEvenScopes, ShortEntryOnThisBarCountsWithItsCloseThenWithTheBarsLow) {
    Short(5, 1, 100);
    SetBar(5, 100, 101, 96, 99.5);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, Whole()));
    SetBar(5, 100, 101, 96, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 5, 1, 100, Steps(1000000))});
}

TEST_P(BreakEvenScopes, ModeOneMultipliesTheAmountByTheContracts) {
    Long(2, 2, 100);
    SetBar(3, 100, 101.5, 100, 101);
    SetBar(5, 99, 101, 98, 100);
    // 20 per contract on 2 contracts needs 102; 20 for both needs 101.
    EXPECT_FALSE(funcs.SetBreakEven(1, 20, Whole()));
    EXPECT_TRUE(funcs.SetBreakEven(0, 20, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 2, 100, Steps(990000))});
}

TEST_P(BreakEvenScopes, FixedValueContractsArmOnTheGainOfEachBar) {
    UseInstrument(0, 2);
    SetDouble(0, "ContractSize", 1000);
    Long(2, 1, 100);
    // The gain of a move is converted at the price it ended at: 5 points at 105 are
    // worth 47.6, 5.3 points at 105.3 are worth 50.3.
    SetBar(3, 100, 105, 100, 101);
    SetBar(5, 99, 101, 98, 100);
    EXPECT_FALSE(funcs.SetBreakEven(0, 50, Whole()));
    SetBar(4, 100, 105.3, 100, 101);
    EXPECT_TRUE(funcs.SetBreakEven(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(990000));
}

class BreakEvenTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
};

TEST_F(BreakEvenTest, PerEntryEachEntryIsArmedFromItsOwnBar) {
    Long(1, 1, 100);
    Long(3, 1, 104);
    SetBar(2, 100, 106, 100, 103);
    SetBar(3, 103, 105, 103, 104);
    SetBar(4, 104, 105, 103, 104);
    SetBar(5, 101, 102, 99.5, 101);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1000000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 104.0);
}

TEST_F(BreakEvenTest, WholePositionLooksOnlyAtTheBarsFromTheLastEntry) {
    Long(1, 1, 100);
    Long(3, 1, 104);
    // Average 102 on 2 contracts is armed at 103.5. Bar 2 reached 106 before the last
    // entry and does not count.
    SetBar(2, 100, 106, 100, 103);
    SetBar(3, 103, 105, 103, 103);
    SetBar(4, 103, 103, 102, 103);
    SetBar(5, 101, 102, 100.5, 101);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, true));
    EXPECT_TRUE(data.TradeList.empty());
    SetBar(4, 103, 104, 102, 103);
    ForgetDerived();
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1010000)),
                                                 StopTrip(1, 3, 1, 104, Steps(1010000))}));
}

TEST_F(BreakEvenTest, WholePositionNeedsTheLastEntryBetweenTheFirstAndThisBar) {
    Long(1, 1, 100);
    Long(8, 1, 100);
    SetBar(3, 100, 110, 100, 100);
    SetBar(5, 99, 101, 98, 100);
    EXPECT_FALSE(funcs.SetBreakEven(0, 30, true));
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_F(BreakEvenTest, PerEntryAnEntryAfterThisBarIsLeftAlone) {
    Long(1, 1, 100);
    Long(8, 1, 100);
    SetBar(3, 100, 110, 100, 100);
    SetBar(5, 99, 101, 98, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(990000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].nBar, 8);
}

// A list that mixes directions cannot arise from the order functions; it shows that
// per entry each entry is judged by its own kind, while the exit side follows the
// position as it stands: short while the short entry leads the list, long after.
TEST_F(BreakEvenTest, PerEntryTheSenseIsTheEntrysOwn) {
    Short(1, 1, 100);
    Long(1, 1, 100);
    SetBar(3, 100, 104, 96, 100);
    SetBar(5, 99, 101, 98, 100);
    EXPECT_TRUE(funcs.SetBreakEven(0, 30, false));
    EXPECT_EQ(Trips(), (std::vector<std::string>{
                           TripText(3, 4, 1, 5, 0, 0, 0, 1, 100, Steps(1000000)),
                           TripText(1, 2, 1, 5, 0, 0, 0, 1, 100, Steps(990000))}));
}

}  // namespace
