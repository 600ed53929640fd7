#include "trading/TradingFixture.h"

namespace {

class PositionsTest : public TradingTest {};

TEST_F(PositionsTest, FlatStrategyAnswersZeroAndItsCapital) {
    EXPECT_EQ(funcs.MarketPosition(), 0);
    EXPECT_EQ(funcs.CurrentContracts(), 0.0);
    EXPECT_EQ(funcs.CurrentEntries(), 0);
    EXPECT_EQ(funcs.AvgEntryPrice(), 0.0);
    EXPECT_EQ(funcs.EntryPrice(), 0.0);
    EXPECT_EQ(funcs.LastEntryPrice(), 0.0);
    EXPECT_EQ(funcs.EntryDate(), 0);
    EXPECT_EQ(funcs.EntryTime(), 0.0);
    EXPECT_EQ(funcs.LastEntryDate(), 0);
    EXPECT_EQ(funcs.LastEntryTime(), 0.0);
    EXPECT_EQ(funcs.BarsSinceEntry(), 0);
    EXPECT_EQ(funcs.BarsSinceLastEntry(), 0);
    EXPECT_EQ(funcs.ContractProfit(), 0.0);
    EXPECT_EQ(funcs.PositionProfit(), 0.0);
    EXPECT_EQ(funcs.CurrentCapital(), 1000000.0);
    EXPECT_EQ(funcs.MaxPositionProfit(), 0.0);
    EXPECT_EQ(funcs.MaxPositionLoss(), 0.0);
    EXPECT_EQ(funcs.ExitPrice(), 0.0);
    EXPECT_EQ(funcs.ExitDate(), 0);
    EXPECT_EQ(funcs.ExitTime(), 0.0);
    EXPECT_EQ(funcs.BarsSinceExit(), 0);
}

TEST_F(PositionsTest, TwoLongEntriesMakeOnePositionWithItsAverage) {
    AddEntry(1, 1, 2, 100);
    AddEntry(1, 3, 1, 103);
    EXPECT_EQ(funcs.MarketPosition(), 1);
    EXPECT_EQ(funcs.CurrentContracts(), 3.0);
    EXPECT_EQ(funcs.CurrentEntries(), 2);
    EXPECT_EQ(Access::GetCurrentEntryPositions(funcs), 2);
    EXPECT_EQ(funcs.AvgEntryPrice(), 101.0);
    EXPECT_EQ(funcs.EntryPrice(), 100.0);
    EXPECT_EQ(funcs.LastEntryPrice(), 103.0);
    EXPECT_EQ(funcs.BarsSinceEntry(), 4);
    EXPECT_EQ(funcs.BarsSinceLastEntry(), 2);
    // Close 106: 10 x (106 - 101) per contract.
    EXPECT_EQ(funcs.ContractProfit(), 50.0);
    EXPECT_EQ(funcs.PositionProfit(), 150.0);
    // Margin of 3 contracts at 106 is 318.
    EXPECT_EQ(funcs.CurrentCapital(), 1000000.0 - 318.0 + 150.0);
}

TEST_F(PositionsTest, ShortPositionHasNegativeContracts) {
    AddEntry(3, 2, 3, 110);
    EXPECT_EQ(funcs.MarketPosition(), -1);
    EXPECT_EQ(funcs.CurrentContracts(), -3.0);
    EXPECT_EQ(funcs.AvgEntryPrice(), 110.0);
    EXPECT_EQ(funcs.ContractProfit(), 40.0);
    EXPECT_EQ(funcs.PositionProfit(), funcs.ContractProfit() * 3);
    EXPECT_EQ(funcs.PositionProfit(), 120.0);
    EXPECT_EQ(funcs.CurrentCapital(), 1000000.0 - 318.0 + 120.0);
}

TEST_F(PositionsTest, FirstEntryOfAnotherTypeGivesNoDirection) {
    AddEntry(2, 1, 2, 100);
    EXPECT_EQ(funcs.MarketPosition(), 0);
    EXPECT_EQ(funcs.CurrentContracts(), -2.0);
}

TEST_F(PositionsTest, AverageOfEntriesWithoutLotsIsZero) {
    AddEntry(1, 1, 0, 100);
    EXPECT_EQ(funcs.AvgEntryPrice(), 0.0);
}

TEST_F(PositionsTest, ContractsOfOneTenThousandthCountAsFlat) {
    AddEntry(1, 1, 0.0001, 100);
    EXPECT_EQ(funcs.MarketPosition(), 1);
    EXPECT_EQ(funcs.ContractProfit(), 0.0);
    EXPECT_EQ(funcs.CurrentCapital(), 1000000.0);
    EXPECT_EQ(funcs.MaxPositionProfit(), 0.0);
    data.OpenEntries[0].nType = 3;
    EXPECT_EQ(funcs.CurrentContracts(), -0.0001);
    EXPECT_EQ(funcs.ContractProfit(), 0.0);
    EXPECT_EQ(funcs.MaxPositionLoss(), 0.0);
    data.OpenEntries[0].dLots = 0.00011;
    EXPECT_EQ(funcs.ContractProfit(), 10 * (100.0 - 106.0));
}

TEST_F(PositionsTest, EntryDatesAndTimesComeFromTheMainStream) {
    Bar(3).time = LocalMs(2010, 3, 4, 14, 35, 20);
    AddEntry(1, 1, 2, 100);
    AddEntry(1, 3, 1, 103);
    data.DataStreams.resize(2);
    AddBar(1, LocalMs(2011, 1, 1), 1, 1, 1, 1);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.EntryDate(), 20100302);
    EXPECT_EQ(funcs.EntryTime(), 10 * 0.01 + 30 * 0.0001 + 0 * 0.000001);
    EXPECT_EQ(funcs.LastEntryDate(), 20100304);
    EXPECT_EQ(funcs.LastEntryTime(), 14 * 0.01 + 35 * 0.0001 + 20 * 0.000001);
}

TEST_F(PositionsTest, EntryDatesFollowTheLocalZone) {
    // 2010-03-14 06:30 UTC is 01:30 in New York (before the clocks go forward)
    // and 14:30 in Shanghai.
    Bar(1).time = 1268548200000LL;
    AddEntry(1, 1, 1, 100);
    // A formula object is created in the zone it runs in.
    {
        fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
        CSystemFuncs formula(&data);
        EXPECT_EQ(formula.EntryDate(), 20100314);
        EXPECT_EQ(formula.EntryTime(), 1 * 0.01 + 30 * 0.0001 + 0 * 0.000001);
    }
    {
        fftest::ScopedTimeZone zone(fftest::Zone::Shanghai);
        CSystemFuncs formula(&data);
        EXPECT_EQ(formula.EntryDate(), 20100314);
        EXPECT_EQ(formula.EntryTime(), 14 * 0.01 + 30 * 0.0001 + 0 * 0.000001);
    }
}

TEST_F(PositionsTest, EntryOnAMissingBarHasInvalidDateAndTime) {
    AddEntry(1, 50, 1, 100);
    EXPECT_EQ(funcs.EntryDate(), 2147483647);
    EXPECT_EQ(funcs.EntryTime(), kInvalid);
    EXPECT_EQ(funcs.LastEntryDate(), 2147483647);
    EXPECT_EQ(funcs.LastEntryTime(), kInvalid);
    data.OpenEntries[0].nBar = -1;
    EXPECT_EQ(funcs.EntryDate(), 2147483647);
}

TEST_F(PositionsTest, ExitQueriesDescribeTheLastRoundTripWhileFlat) {
    Bar(4).time = LocalMs(2010, 3, 5, 9, 1, 2);
    data.TradeList.push_back(Trip(1, 0, 2, 1, 100, 103.5));
    data.TradeList.push_back(Trip(1, 3, 4, 1, 100, 104.5));
    EXPECT_EQ(funcs.ExitPrice(), 104.5);
    EXPECT_EQ(funcs.ExitDate(), 20100305);
    EXPECT_EQ(funcs.ExitTime(), 9 * 0.01 + 1 * 0.0001 + 2 * 0.000001);
    EXPECT_EQ(funcs.BarsSinceExit(), 1);

    AddEntry(1, 5, 1, 105);
    EXPECT_EQ(funcs.ExitPrice(), 0.0);
    EXPECT_EQ(funcs.ExitDate(), 0);
    EXPECT_EQ(funcs.ExitTime(), 0.0);
    EXPECT_EQ(funcs.BarsSinceExit(), 0);
}

TEST_F(PositionsTest, ExitOnAMissingBarHasInvalidDateAndTime) {
    data.TradeList.push_back(Trip(1, 0, 20, 1, 100, 103.5));
    EXPECT_EQ(funcs.ExitDate(), 2147483647);
    EXPECT_EQ(funcs.ExitTime(), kInvalid);
    EXPECT_EQ(funcs.BarsSinceExit(), 5 - 20);
}

TEST_F(PositionsTest, FiguresOfTheResultBlock) {
    result.Figures.PositionContracts = -4;
    result.Figures.MaxContractsHeld = 6;
    result.Figures.MaxOpenEntriesHeld = 3;
    EXPECT_EQ(funcs.MaxContracts(), -4.0);
    EXPECT_EQ(funcs.MaxContractsHeld(), 6.0);
    EXPECT_EQ(funcs.MaxEntries(), 3);
}

TEST_F(PositionsTest, MaxPositionProfitTakesTheBetterOfMarkAndCurrentBar) {
    AddEntry(1, 1, 2, 100);
    AddEntry(1, 3, 1, 103);
    // High 107: 10 x (107 - 101) x 3.
    EXPECT_EQ(funcs.MaxPositionProfit(), 180.0);
    result.Figures.MaxPositionProfitMark = 200;
    EXPECT_EQ(funcs.MaxPositionProfit(), 200.0);
    result.Figures.MaxPositionProfitMark = 179;
    EXPECT_EQ(funcs.MaxPositionProfit(), 180.0);
}

TEST_F(PositionsTest, MaxPositionProfitOfAShortUsesTheLow) {
    AddEntry(3, 2, 3, 110);
    EXPECT_EQ(funcs.MaxPositionProfit(), 210.0);
}

TEST_F(PositionsTest, MaxPositionLossTakesTheWorseOfMarkAndCurrentBar) {
    AddEntry(1, 1, 3, 105);
    // Low 103: 10 x (103 - 105) x 3.
    EXPECT_EQ(funcs.MaxPositionLoss(), -60.0);
    result.Figures.MaxPositionLossMark = -50;
    EXPECT_EQ(funcs.MaxPositionLoss(), -60.0);
    result.Figures.MaxPositionLossMark = -70;
    EXPECT_EQ(funcs.MaxPositionLoss(), -70.0);
    result.Figures.ClosedPositionsDrawDown = -25;
    EXPECT_EQ(funcs.MaxIDDrawDown(), -95.0);
}

TEST_F(PositionsTest, MaxPositionLossOfAShortUsesTheHigh) {
    AddEntry(3, 2, 3, 110);
    // High 107 is still a gain; the mark 0 is smaller.
    EXPECT_EQ(funcs.MaxPositionLoss(), 0.0);
    data.OpenEntries[0].dPrice = 106;
    EXPECT_EQ(funcs.MaxPositionLoss(), -30.0);
}

TEST_F(PositionsTest, MaxIDDrawDownWhileFlatIsTheClosedPositionsSum) {
    result.Figures.ClosedPositionsDrawDown = -25;
    EXPECT_EQ(funcs.MaxIDDrawDown(), -25.0);
}

TEST_F(PositionsTest, OtherFormulaKindsGetZeroButTheEntryTimes) {
    AddEntry(1, 1, 2, 100);
    AddEntry(1, 3, 1, 103);
    data.TradeList.push_back(Trip(1, 0, 2, 1, 100, 103.5));
    result.Figures.PositionContracts = 3;
    result.Figures.MaxContractsHeld = 3;
    result.Figures.MaxOpenEntriesHeld = 2;
    result.Figures.ClosedPositionsDrawDown = -5;
    data.FormulaKind = 4;
    EXPECT_EQ(funcs.MarketPosition(), 0);
    EXPECT_EQ(funcs.CurrentContracts(), 0.0);
    EXPECT_EQ(funcs.CurrentEntries(), 0);
    EXPECT_EQ(funcs.AvgEntryPrice(), 0.0);
    EXPECT_EQ(funcs.EntryPrice(), 0.0);
    EXPECT_EQ(funcs.LastEntryPrice(), 0.0);
    EXPECT_EQ(funcs.EntryDate(), 0);
    EXPECT_EQ(funcs.LastEntryDate(), 0);
    EXPECT_EQ(funcs.BarsSinceEntry(), 0);
    EXPECT_EQ(funcs.BarsSinceLastEntry(), 0);
    EXPECT_EQ(funcs.ContractProfit(), 0.0);
    EXPECT_EQ(funcs.PositionProfit(), 0.0);
    EXPECT_EQ(funcs.CurrentCapital(), 0.0);
    EXPECT_EQ(funcs.MaxContracts(), 0.0);
    EXPECT_EQ(funcs.MaxContractsHeld(), 0.0);
    EXPECT_EQ(funcs.MaxEntries(), 0);
    EXPECT_EQ(funcs.MaxPositionProfit(), 0.0);
    EXPECT_EQ(funcs.MaxPositionLoss(), 0.0);
    EXPECT_EQ(funcs.MaxIDDrawDown(), 0.0);
    EXPECT_EQ(Access::GetCurrentEntryPositions(funcs), 0);
    EXPECT_EQ(funcs.EntryTime(), 10 * 0.01 + 30 * 0.0001 + 0 * 0.000001);
    EXPECT_EQ(funcs.LastEntryTime(), 10 * 0.01 + 30 * 0.0001 + 0 * 0.000001);

    data.OpenEntries.clear();
    EXPECT_EQ(funcs.ExitPrice(), 0.0);
    EXPECT_EQ(funcs.ExitDate(), 0);
    EXPECT_EQ(funcs.ExitTime(), 0.0);
    EXPECT_EQ(funcs.BarsSinceExit(), 0);
}

TEST_F(PositionsTest, WithoutAResultBlockTheStrategyLooksFlat) {
    AddEntry(1, 1, 2, 100);
    data.TradeList.push_back(Trip(1, 0, 2, 1, 100, 103.5));
    data.Result = nullptr;
    EXPECT_EQ(funcs.MarketPosition(), 0);
    EXPECT_EQ(funcs.CurrentContracts(), 0.0);
    EXPECT_EQ(funcs.CurrentCapital(), 0.0);
    EXPECT_EQ(funcs.MaxContracts(), 0.0);
    EXPECT_EQ(funcs.MaxPositionProfit(), 0.0);
    EXPECT_EQ(funcs.MaxIDDrawDown(), 0.0);
    EXPECT_EQ(funcs.EntryTime(), 10 * 0.01 + 30 * 0.0001 + 0 * 0.000001);
}

TEST(PositionsWithoutHostData, EveryQueryAnswersZero) {
    CSystemFuncs funcs(nullptr);
    EXPECT_EQ(funcs.MarketPosition(), 0);
    EXPECT_EQ(funcs.CurrentContracts(), 0.0);
    EXPECT_EQ(funcs.CurrentEntries(), 0);
    EXPECT_EQ(funcs.AvgEntryPrice(), 0.0);
    EXPECT_EQ(funcs.EntryPrice(), 0.0);
    EXPECT_EQ(funcs.LastEntryPrice(), 0.0);
    EXPECT_EQ(funcs.EntryDate(), 0);
    EXPECT_EQ(funcs.EntryTime(), 0.0);
    EXPECT_EQ(funcs.LastEntryDate(), 0);
    EXPECT_EQ(funcs.LastEntryTime(), 0.0);
    EXPECT_EQ(funcs.BarsSinceEntry(), 0);
    EXPECT_EQ(funcs.BarsSinceLastEntry(), 0);
    EXPECT_EQ(funcs.ExitPrice(), 0.0);
    EXPECT_EQ(funcs.ExitDate(), 0);
    EXPECT_EQ(funcs.ExitTime(), 0.0);
    EXPECT_EQ(funcs.BarsSinceExit(), 0);
    EXPECT_EQ(funcs.ContractProfit(), 0.0);
    EXPECT_EQ(funcs.PositionProfit(), 0.0);
    EXPECT_EQ(funcs.CurrentCapital(), 0.0);
    EXPECT_EQ(funcs.MaxContracts(), 0.0);
    EXPECT_EQ(funcs.MaxContractsHeld(), 0.0);
    EXPECT_EQ(funcs.MaxEntries(), 0);
    EXPECT_EQ(funcs.MaxPositionProfit(), 0.0);
    EXPECT_EQ(funcs.MaxPositionLoss(), 0.0);
    EXPECT_EQ(funcs.MaxIDDrawDown(), 0.0);
    EXPECT_EQ(funcs.I_AvgEntryPrice(), 0.0);
    EXPECT_EQ(funcs.I_CurrentContracts(), 0.0);
    EXPECT_EQ(funcs.I_MarketPosition(), 0);
    EXPECT_EQ(funcs.I_CloseEquity(), 0.0);
    EXPECT_EQ(funcs.I_OpenEquity(), 0.0);
}

class LinkedQueriesTest : public TradingTest {
protected:
    void SetUp() override {
        TradingTest::SetUp();
        for (int i = 0; i < 6; ++i)
            strategy.PositionSnapshots.push_back({100.5 + i, -2.0 - i, -1, 5000.25 + i, 4900.75 + i});
        data.LinkedStrategy = &strategy;
    }
    CStrategyResult strategy{};
};

TEST_F(LinkedQueriesTest, KindsFourFiveAndSixReadTheSnapshotOfTheirBar) {
    for (int32_t kind : {4, 5, 6}) {
        data.FormulaKind = kind;
        EXPECT_EQ(funcs.I_AvgEntryPrice(), 105.5);
        EXPECT_EQ(funcs.I_CurrentContracts(), -7.0);
        EXPECT_EQ(funcs.I_MarketPosition(), -1);
        EXPECT_EQ(funcs.I_CloseEquity(), 5005.25);
        EXPECT_EQ(funcs.I_OpenEquity(), 4905.75);
    }
}

TEST_F(LinkedQueriesTest, OtherKindsAMissingLinkOrBarGiveZero) {
    for (int32_t kind : {7, 3, 0}) {
        data.FormulaKind = kind;
        EXPECT_EQ(funcs.I_AvgEntryPrice(), 0.0);
        EXPECT_EQ(funcs.I_MarketPosition(), 0);
    }
    data.FormulaKind = 5;
    data.CurrentBar = 6;
    EXPECT_EQ(funcs.I_CloseEquity(), 0.0);
    data.CurrentBar = -1;
    EXPECT_EQ(funcs.I_OpenEquity(), 0.0);
    data.CurrentBar = 0;
    EXPECT_EQ(funcs.I_CurrentContracts(), -2.0);
    data.LinkedStrategy = nullptr;
    EXPECT_EQ(funcs.I_CurrentContracts(), 0.0);
}

}  // namespace
