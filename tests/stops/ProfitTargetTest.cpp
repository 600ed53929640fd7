// The profit target, the mirror image of the stop loss: hit at the bar's best price,
// filled at the target or at an open beyond it.
#include "stops/StopFixture.h"

namespace {

class ProfitTargetScopes : public StopTest, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
    bool Whole() const { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(BothScopes, ProfitTargetScopes, ::testing::Bool());

TEST_P(ProfitTargetScopes, LongTargetInsideTheBarFillsAtTheTarget) {
    Long(2, 1, 100);
    SetBar(5, 101, 106, 100, 104);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 1, 100, Steps(1050000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + 50.0);
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_P(ProfitTargetScopes, LongTargetBelowTheOpenFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(5, 105.5, 107, 104, 106);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1055000));
}

TEST_P(ProfitTargetScopes, LongTargetBelowAGappedBarFillsAtTheOpen) {
    Long(2, 1, 100);
    SetBar(5, 107, 109, 106.5, 108);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(1070000));
}

TEST_P(ProfitTargetScopes, LongTargetNotReachedLeavesEverything) {
    Long(2, 1, 100);
    SetBar(5, 101, 104.99, 100, 104);
    EXPECT_FALSE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_EQ(result.Figures.Capital, 1000000.0);
}

TEST_P(ProfitTargetScopes, LongEntryOnThisBarIsJudgedAtTheClose) {
    Long(5, 1, 100);
    SetBar(5, 100, 110, 99, 101);
    EXPECT_FALSE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_TRUE(funcs.SetProfitTarget(0, 10, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 5, 1, 100, Steps(1010000))});
}

TEST_P(ProfitTargetScopes, ShortTargetInsideTheBarFillsAtTheTarget) {
    Short(2, 1, 100);
    SetBar(5, 99, 100, 94, 96);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(3, 2, 1, 100, Steps(950000))});
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + 50.0);
}

TEST_P(ProfitTargetScopes, ShortTargetAboveTheOpenFillsAtTheOpen) {
    Short(2, 1, 100);
    SetBar(5, 94.5, 96, 93, 94);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(945000));
}

TEST_P(ProfitTargetScopes, ShortTargetAboveAGappedBarFillsAtTheOpen) {
    Short(2, 1, 100);
    SetBar(5, 93, 94, 91, 92);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(930000));
}

TEST_P(ProfitTargetScopes, ShortEntryOnThisBarIsJudgedAtTheClose) {
    Short(5, 1, 100);
    SetBar(5, 100, 101, 90, 99);
    EXPECT_FALSE(funcs.SetProfitTarget(0, 50, Whole()));
    EXPECT_TRUE(funcs.SetProfitTarget(0, 10, Whole()));
    EXPECT_EQ(ExitOf(0), Steps(990000));
}

TEST_P(ProfitTargetScopes, ModeOneMultipliesTheAmountByTheContracts) {
    Long(2, 2, 100);
    SetBar(5, 101, 104, 100, 103);
    EXPECT_TRUE(funcs.SetProfitTarget(1, 25, Whole()));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 2, 2, 100, Steps(1025000))});
}

class ProfitTargetTest : public StopTest {
protected:
    void SetUp() override {
        StopTest::SetUp();
        FlatBars(100);
    }
};

TEST_F(ProfitTargetTest, PerEntryOnlyTheEntryThatGainedEnoughIsClosed) {
    Long(1, 1, 100);
    Long(2, 1, 104);
    SetBar(5, 103, 106, 102, 105);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, false));
    EXPECT_EQ(Trips(), std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1050000))});
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 104.0);
}

TEST_F(ProfitTargetTest, WholePositionTargetsTheAveragePrice) {
    Long(1, 1, 100);
    Long(2, 1, 104);
    SetBar(5, 103, 106, 102, 105);
    EXPECT_TRUE(funcs.SetProfitTarget(0, 50, true));
    EXPECT_EQ(Trips(), (std::vector<std::string>{StopTrip(1, 1, 1, 100, Steps(1045000)),
                                                 StopTrip(1, 2, 1, 104, Steps(1045000))}));
}

TEST_F(ProfitTargetTest, WholePositionNeedsTheLastEntryBetweenTheFirstAndThisBar) {
    Long(1, 1, 100);
    Long(6, 1, 100);
    SetBar(5, 107, 109, 106.5, 108);
    EXPECT_FALSE(funcs.SetProfitTarget(0, 50, true));
    EXPECT_TRUE(data.TradeList.empty());
}

}  // namespace
