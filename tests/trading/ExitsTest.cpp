#include "trading/TradingFixture.h"

#include <ctime>

namespace {

class ExitsTest : public TradingTest {
protected:
    // A long of 2 at 100 (bar 1, source 7) and 3 at 102 (bar 3, source 8), with marks.
    void SetUp() override {
        TradingTest::SetUp();
        data.CommissionValue = 2.5;
        data.OpenEntries.push_back({1, 1, 7, 0, 2, 100});
        data.OpenEntries.push_back({1, 3, 8, 0, 3, 102});
        result.Figures.PositionContracts = 5;
        result.Figures.MaxPositionProfitMark = 30;
        result.Figures.MaxPositionLossMark = -40;
        result.Figures.ClosedPositionsDrawDown = -10;
    }
    void MakeShort() {
        for (tagTradeSignal& entry : data.OpenEntries) entry.nType = 3;
        result.Figures.PositionContracts = -5;
    }
};

TEST_F(ExitsTest, MarketSellClosesTheWholeLongAtTheClose) {
    data.OrderSource = 4;
    EXPECT_TRUE(funcs.Sell(0, 0, false));
    EXPECT_TRUE(data.OpenEntries.empty());
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(1, 2, 1, 5, 7, 4, 0, 2, 100, 106));
    EXPECT_EQ(Text(data.TradeList[1]), TripText(1, 2, 3, 5, 8, 4, 0, 3, 102, 106));
    ASSERT_EQ(data.SignalHistory.size(), 1u);
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(2, 5, 4, 0, 5, 106));
    // Both sides of both round trips: (2 + 2) x 2.5 + (3 + 3) x 2.5.
    const double average = (2 * 100.0 + 3 * 102.0) / 5;
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (106.0 - average) * 5 - 25.0));
    // The position ended: its worst mark joins the sum and the marks are cleared.
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -50.0);
    EXPECT_EQ(result.Figures.MaxPositionProfitMark, 0.0);
    EXPECT_EQ(result.Figures.MaxPositionLossMark, 0.0);
    EXPECT_EQ(result.Figures.PositionContracts, 0.0);
    EXPECT_EQ(funcs.ExitPrice(), 106.0);
}

TEST_F(ExitsTest, PartialSellClosesTheOldestEntriesFirst) {
    EXPECT_TRUE(funcs.Sell(3, 0, false));
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(1, 2, 1, 5, 7, 0, 0, 2, 100, 106));
    EXPECT_EQ(Text(data.TradeList[1]), TripText(1, 2, 3, 5, 8, 0, 0, 1, 102, 106));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(1, 3, 8, 0, 2, 102));
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(2, 5, 0, 0, 3, 106));
    const double average = (2 * 100.0 + 1 * 102.0) / 3;
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (106.0 - average) * 3 - 15.0));
    // Still in a position: the marks stay.
    EXPECT_EQ(result.Figures.MaxPositionLossMark, -40.0);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -10.0);
    EXPECT_EQ(result.Figures.PositionContracts, 5.0);
}

TEST_F(ExitsTest, SellingPartOfTheFirstEntryKeepsTheRestOpen) {
    EXPECT_TRUE(funcs.Sell(1, 0, false));
    ASSERT_EQ(data.OpenEntries.size(), 2u);
    EXPECT_EQ(data.OpenEntries[0].dLots, 1.0);
    EXPECT_EQ(data.OpenEntries[1].dLots, 3.0);
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(data.TradeList[0].dLots, 1.0);
}

TEST_F(ExitsTest, AnEntryWithinOneHundredthOfTheRestClosesWhole) {
    data.OpenEntries[0].dLots = 1.995;
    EXPECT_TRUE(funcs.Sell(2, 0, false));
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(data.TradeList[0].dLots, 1.995);
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dLots, 3.0);
    // Booked at the lots x price closed divided by the quantity ordered.
    EXPECT_EQ(result.Figures.Capital,
              1000000.0 + (10 * 1.0 * (106.0 - 1.995 * 100.0 / 2) * 2 - 1.995 * 2.5 * 2));
}

TEST_F(ExitsTest, SellingMoreThanIsHeldIsRefused) {
    EXPECT_FALSE(funcs.Sell(6, 0, false));
    EXPECT_FALSE(funcs.Sell(-1, 0, false));
    EXPECT_FALSE(funcs.Sell(1, -5, false));
    EXPECT_FALSE(funcs.Sell(kInvalid, 0, false));
    EXPECT_FALSE(funcs.Sell(1, kInvalid, false));
    EXPECT_FALSE(funcs.BuyToCover(1, 0, false));
    EXPECT_EQ(data.OpenEntries.size(), 2u);
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_TRUE(data.SignalHistory.empty());
    EXPECT_EQ(result.Figures.Capital, 1000000.0);
}

TEST_F(ExitsTest, FractionalLotsMeanTheWholePosition) {
    EXPECT_TRUE(funcs.Sell(0.5, 0, false));
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(data.SignalHistory[0].dLots, 5.0);
}

TEST_F(ExitsTest, SellWhileShortOrFlatIsRefused) {
    MakeShort();
    EXPECT_FALSE(funcs.Sell(0, 0, false));
    EXPECT_FALSE(funcs.Sell(0, 0, true));
    data.OpenEntries.clear();
    EXPECT_FALSE(funcs.Sell(0, 0, false));
    EXPECT_FALSE(funcs.BuyToCover(0, 0, false));
    EXPECT_TRUE(data.DelayedSignals.empty());
}

TEST_F(ExitsTest, CoverOnTheNewestBarIsRoundedUpToTheTick) {
    data.OpenEntries = {{3, 1, 0, 0, 2, 60}};
    GoToNewestBar();
    EXPECT_TRUE(funcs.BuyToCover(1, 50.123, false));
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(3, 4, 1, 9, 0, 0, 0, 1, 60, 50.13));
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(4, 9, 0, 0, 1, 50.13));
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (60.0 - 50.13) * 1 - 5.0));
    EXPECT_EQ(funcs.CurrentContracts(), -1.0);
}

// Without a quote source today's limits are not known and clamp nothing.
TEST_F(ExitsTest, SellOnTheNewestBarOfTodayIsRoundedDown) {
    Bar(9).time = static_cast<int64_t>(std::time(nullptr)) * 1000;
    GoToNewestBar();
    EXPECT_TRUE(funcs.Sell(1, 150.129, false));
    EXPECT_EQ(data.TradeList[0].dExitPrice, 1501200 * 0.0001);
}

TEST_F(ExitsTest, HistoryExitPriceIsHeldInsideTheBar) {
    EXPECT_TRUE(funcs.Sell(1, 200, false));
    EXPECT_TRUE(funcs.Sell(1, 50, false));
    EXPECT_TRUE(funcs.Sell(1, 103.456, false));
    ASSERT_EQ(data.TradeList.size(), 3u);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 107.0);
    EXPECT_EQ(data.TradeList[1].dExitPrice, 103.0);
    EXPECT_EQ(data.TradeList[2].dExitPrice, 103.45);
    data.OpenEntries = {{3, 1, 0, 0, 2, 60}};
    EXPECT_TRUE(funcs.BuyToCover(1, 103.451, false));
    EXPECT_EQ(data.TradeList[3].dExitPrice, 1034600 * 0.0001);
}

TEST_F(ExitsTest, CoverClosesTheWholeShortFirstInFirstOut) {
    MakeShort();
    EXPECT_TRUE(funcs.BuyToCover(4, 0, false));
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(3, 4, 1, 5, 7, 0, 0, 2, 100, 106));
    EXPECT_EQ(Text(data.TradeList[1]), TripText(3, 4, 3, 5, 8, 0, 0, 2, 102, 106));
    EXPECT_EQ(funcs.CurrentContracts(), -1.0);
    EXPECT_FALSE(funcs.BuyToCover(2, 0, false));
    EXPECT_TRUE(funcs.BuyToCover(0, 0, false));
    EXPECT_EQ(funcs.MarketPosition(), 0);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -50.0);
}

TEST_F(ExitsTest, SameDayRoundTripWithFreeCloseTodayPaysOnlyItsEntrySide) {
    data.FreeCloseToday = true;
    data.OpenEntries.clear();
    EXPECT_TRUE(funcs.Buy(2, 0, false));  // bar 5 at 106
    result.Figures.Capital = 1000;
    Bar(5).close = 110;
    EXPECT_TRUE(funcs.Sell(0, 0, false));
    EXPECT_EQ(result.Figures.Capital, 1000.0 + (10 * 1.0 * (110.0 - 106.0) * 2 - 5.0));
    data.SingleSideCommission = true;
    EXPECT_TRUE(funcs.Buy(2, 0, false));
    EXPECT_TRUE(funcs.Sell(0, 0, false));
    EXPECT_EQ(result.Figures.Capital, 1075.0 + (10 * 1.0 * (110.0 - 110.0) * 2 - 0.0));
}

TEST_F(ExitsTest, RoundTripOverTwoDaysPaysBothSidesEvenWithFreeCloseToday) {
    data.FreeCloseToday = true;
    data.OpenEntries = {{1, 4, 0, 0, 2, 106}};
    EXPECT_TRUE(funcs.Sell(0, 0, false));
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (106.0 - 106.0) * 2 - 10.0));
}

TEST_F(ExitsTest, DelayedExitsAreParked) {
    data.OrderSource = 5;
    EXPECT_TRUE(funcs.Sell(2.9, 104.5, true));
    EXPECT_TRUE(funcs.Sell(-3, 0, true));
    MakeShort();
    EXPECT_TRUE(funcs.BuyToCover(1, 0, true));
    ASSERT_EQ(data.DelayedSignals.size(), 3u);
    EXPECT_EQ(Text(data.DelayedSignals[0]), SignalText(2, 5, 5, 0, 2, 104.5));
    EXPECT_EQ(Text(data.DelayedSignals[1]), SignalText(2, 5, 5, 0, -3, 0));
    EXPECT_EQ(Text(data.DelayedSignals[2]), SignalText(4, 5, 5, 0, 1, 0));
    EXPECT_EQ(data.OpenEntries.size(), 2u);
}

TEST_F(ExitsTest, ClosePositionClosesWhateverIsOpen) {
    Access::ClosePosition(funcs, 104.567);
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(data.TradeList.back().dExitPrice, 104.56);
    EXPECT_EQ(data.TradeList.back().nExitType, 2);

    data.OpenEntries = {{3, 1, 0, 0, 2, 60}};
    Access::ClosePosition(funcs, 104.561);
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(data.TradeList.back().dExitPrice, 1045700 * 0.0001);
    EXPECT_EQ(data.TradeList.back().nExitType, 4);

    const size_t trips = data.TradeList.size();
    Access::ClosePosition(funcs, 104.561);
    EXPECT_EQ(data.TradeList.size(), trips);
}

TEST_F(ExitsTest, ClosingOneEntryIgnoresTheBarsRange) {
    data.OrderSource = 6;
    Access::ClosePosition(funcs, data.OpenEntries[1], 120.567);
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(1, 1, 7, 0, 2, 100));
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(1, 2, 3, 5, 8, 6, 0, 3, 102, 120.56));
    ASSERT_EQ(data.SignalHistory.size(), 1u);
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(2, 5, 6, 0, 3, 120.56));
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (120.56 - 102.0) * 3 - 15.0));
    EXPECT_EQ(result.Figures.MaxPositionLossMark, -40.0);
}

TEST_F(ExitsTest, ClosingAnEntryTwiceClosesItOnce) {
    const tagTradeSignal entry = data.OpenEntries[0];
    Access::ClosePosition(funcs, entry, 99);
    Access::ClosePosition(funcs, entry, 99);
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(data.SignalHistory.size(), 1u);
}

TEST_F(ExitsTest, EntriesAreMatchedWithoutTheirDataIndex) {
    tagTradeSignal entry = data.OpenEntries[0];
    entry.nDataIndex = 3;
    entry.dLots = 2.5;
    Access::ClosePosition(funcs, entry, 99);
    EXPECT_EQ(data.OpenEntries.size(), 2u);
    entry.dLots = 2;
    entry.nSource = 1;
    Access::ClosePosition(funcs, entry, 99);
    EXPECT_EQ(data.OpenEntries.size(), 2u);
    entry.nSource = 7;
    Access::ClosePosition(funcs, entry, 99);
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.TradeList[0].nEntryDataIndex, 0);
}

TEST_F(ExitsTest, ClosingTheLastShortEntryEndsThePosition) {
    MakeShort();
    Access::ClosePosition(funcs, data.OpenEntries[0], 90.001);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 90.01);
    EXPECT_EQ(data.TradeList[0].nExitType, 4);
    EXPECT_EQ(data.SignalHistory[0].nType, 4);
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (100.0 - 90.01) * 2 - 10.0));
    EXPECT_EQ(result.Figures.MaxPositionLossMark, -40.0);
    Access::ClosePosition(funcs, data.OpenEntries[0], 90);
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(result.Figures.MaxPositionLossMark, 0.0);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -50.0);
}

TEST_F(ExitsTest, ClosingAnEntryOutsideAStrategyDoesNothing) {
    data.Result = nullptr;
    Access::ClosePosition(funcs, data.OpenEntries[0], 99);
    Access::ClosePosition(funcs, 99);
    EXPECT_EQ(data.OpenEntries.size(), 2u);
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_F(ExitsTest, WalkingPastTheNewestEntryClosesEverything) {
    double commission = 0, lotsTimesPrice = 0;
    Access::CloseEntriesFifo(funcs, true, 10, 106, commission, lotsTimesPrice);
    EXPECT_TRUE(data.OpenEntries.empty());
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(commission, 25.0);
    EXPECT_EQ(lotsTimesPrice, 2 * 100.0 + 3 * 102.0);
}

class StopBookkeepingTest : public ExitsTest {};

TEST_F(StopBookkeepingTest, WhileAPositionIsOpenNothingChanges) {
    Access::CalcStopMaxInfo(funcs);
    EXPECT_EQ(result.Figures.MaxPositionProfitMark, 30.0);
    EXPECT_EQ(result.Figures.MaxPositionLossMark, -40.0);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -10.0);
    EXPECT_EQ(result.Figures.PositionContracts, 5.0);
}

TEST_F(StopBookkeepingTest, WhenFlatTheWorstMarkJoinsTheSumAndTheMarksClear) {
    data.OpenEntries.clear();
    Access::CalcStopMaxInfo(funcs);
    EXPECT_EQ(result.Figures.MaxPositionProfitMark, 0.0);
    EXPECT_EQ(result.Figures.MaxPositionLossMark, 0.0);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -50.0);
    EXPECT_EQ(result.Figures.PositionContracts, 0.0);
    Access::CalcStopMaxInfo(funcs);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -50.0);
}

TEST_F(StopBookkeepingTest, OutsideAStrategyNothingChanges) {
    data.OpenEntries.clear();
    data.FormulaKind = 5;
    Access::CalcStopMaxInfo(funcs);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -10.0);
    data.FormulaKind = 7;
    data.Result = nullptr;
    Access::CalcStopMaxInfo(funcs);
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -10.0);
}

}  // namespace
