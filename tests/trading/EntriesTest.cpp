#include "trading/TradingFixture.h"

#include <ctime>

namespace {

class EntriesTest : public TradingTest {
protected:
    // A bar whose range is 11 to 12.
    void UseNarrowBar() {
        Bar(5).open = 11.5;
        Bar(5).high = 12;
        Bar(5).low = 11;
        Bar(5).close = 11.8;
    }
};

TEST_F(EntriesTest, MarketBuyWhileFlatFillsTheDefaultSizeAtTheClose) {
    data.OrderSource = 7;
    EXPECT_TRUE(funcs.Buy(0, 0, false));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(1, 5, 7, 0, 1, 106));
    ASSERT_EQ(data.SignalHistory.size(), 1u);
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(1, 5, 7, 0, 1, 106));
    EXPECT_EQ(result.Figures.Capital, 1000000.0);  // nothing is booked at entry
    EXPECT_TRUE(data.TradeList.empty());
}

TEST_F(EntriesTest, DefaultSizeFollowsTheSizingSettings) {
    data.TradeSizeValue = 3;
    EXPECT_TRUE(funcs.SellShort(0, 0, false));
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(3, 5, 0, 0, 3, 106));
    EXPECT_EQ(funcs.CurrentContracts(), -3.0);
}

TEST_F(EntriesTest, HistoryLimitPriceIsHeldInsideTheBar) {
    UseNarrowBar();
    EXPECT_TRUE(funcs.Buy(2, 10.5, false));
    EXPECT_TRUE(funcs.Buy(2, 13, false));
    EXPECT_TRUE(funcs.Buy(2, 11.234, false));
    ASSERT_EQ(data.OpenEntries.size(), 3u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 11.0);
    EXPECT_EQ(data.OpenEntries[1].dPrice, 12.0);
    EXPECT_EQ(data.OpenEntries[2].dPrice, 11.24);
}

TEST_F(EntriesTest, HistoryShortPriceIsHeldInsideTheBarAndRoundedDown) {
    UseNarrowBar();
    EXPECT_TRUE(funcs.SellShort(2, 10.5, false));
    EXPECT_TRUE(funcs.SellShort(2, 13, false));
    EXPECT_TRUE(funcs.SellShort(2, 11.236, false));
    ASSERT_EQ(data.OpenEntries.size(), 3u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 11.0);
    EXPECT_EQ(data.OpenEntries[1].dPrice, 12.0);
    EXPECT_EQ(data.OpenEntries[2].dPrice, 11.23);
}

TEST_F(EntriesTest, PriceOnABarWhoseRangeIsTheCloseOfMinuteBars) {
    UseNarrowBar();
    SetInteger(0, "BarType", 2);
    SetInteger(0, "BarInterval", 1);
    EXPECT_TRUE(funcs.Buy(1, 13, false));
    EXPECT_EQ(data.OpenEntries[0].dPrice, 11.8);
}

TEST_F(EntriesTest, NewestBarPriceIsOnlyRoundedToTheTick) {
    GoToNewestBar();  // range 107 to 111
    EXPECT_TRUE(funcs.Buy(1, 50.123, false));
    EXPECT_TRUE(funcs.Buy(1, 120.001, false));
    ASSERT_EQ(data.OpenEntries.size(), 2u);
    EXPECT_EQ(data.OpenEntries[0].dPrice, 50.13);
    EXPECT_EQ(data.OpenEntries[1].dPrice, 120.01);
    data.OpenEntries.clear();
    EXPECT_TRUE(funcs.SellShort(1, 50.127, false));
    EXPECT_EQ(data.OpenEntries[0].dPrice, 501200 * 0.0001);
}

// Without a quote source today's limits are not known and clamp nothing.
TEST_F(EntriesTest, NewestBarOfTodayWithoutKnownLimitsIsNotClamped) {
    Bar(9).time = static_cast<int64_t>(std::time(nullptr)) * 1000;
    GoToNewestBar();
    EXPECT_EQ(funcs.Date(), funcs.CurrentDate());
    EXPECT_TRUE(funcs.Buy(1, 50.123, false));
    EXPECT_EQ(data.OpenEntries[0].dPrice, 50.13);
}

TEST_F(EntriesTest, NewestBarOfTodayIsClampedToTheExchangeLimits) {
    Bar(9).time = static_cast<int64_t>(std::time(nullptr)) * 1000;
    GoToNewestBar();
    SetDouble(0, "Q_UpperLimit", 50.05);
    SetDouble(0, "Q_LowerLimit", 49.5);
    EXPECT_TRUE(funcs.Buy(1, 50.123, false));  // up to the tick 50.13, then the limit
    EXPECT_EQ(data.OpenEntries[0].dPrice, 50.05);
    data.OpenEntries.clear();
    EXPECT_TRUE(funcs.SellShort(1, 49.111, false));  // down to 49.11, then the limit
    EXPECT_EQ(data.OpenEntries[0].dPrice, 49.5);
}

TEST_F(EntriesTest, LotsAreTruncatedToWholeContracts) {
    EXPECT_TRUE(funcs.Buy(2.7, 0, false));
    EXPECT_EQ(data.OpenEntries[0].dLots, 2.0);
    data.TradeSizeValue = 4;
    EXPECT_TRUE(funcs.Buy(0.5, 0, false));  // 0 lots: the default size
    EXPECT_EQ(data.OpenEntries[1].dLots, 4.0);
}

TEST_F(EntriesTest, NegativeLotsOrPriceAreRefused) {
    EXPECT_FALSE(funcs.Buy(-1, 0, false));
    EXPECT_FALSE(funcs.Buy(1, -5, false));
    EXPECT_FALSE(funcs.Buy(1, -0.0001, false));
    EXPECT_FALSE(funcs.SellShort(-1, 0, false));
    EXPECT_FALSE(funcs.SellShort(1, -5, false));
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_TRUE(data.SignalHistory.empty());
    EXPECT_TRUE(funcs.Buy(1, -0.00005, false));  // that close to 0 means at market
    EXPECT_EQ(data.OpenEntries[0].dPrice, 106.0);
}

TEST_F(EntriesTest, TheInvalidNumberIsRefusedAsLotsOrPrice) {
    EXPECT_FALSE(funcs.Buy(kInvalid, 0, false));
    EXPECT_FALSE(funcs.Buy(1, kInvalid, false));
    EXPECT_FALSE(funcs.SellShort(kInvalid, 0, true));
    EXPECT_FALSE(funcs.SellShort(1, kInvalid, true));
    EXPECT_TRUE(data.DelayedSignals.empty());
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_F(EntriesTest, AFillOfNoValueIsRefused) {
    Bar(5).close = 0.0001;
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    Bar(5).close = 0.00011;
    result.Figures.Capital = 100;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
}

TEST_F(EntriesTest, SizesTheCapitalCannotCarryAreRefused) {
    result.Figures.Capital = 100;
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.Buy(0, 0, false));
    result.Figures.Capital = 1000000;
    data.TradeSizeValue = 0;
    EXPECT_FALSE(funcs.Buy(0, 0, false));
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_F(EntriesTest, AnInstrumentWithoutMarginCarriesNoOrder) {
    SetInteger(0, "MarginMode", 0);
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.SellShort(0, 0, false));
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_F(EntriesTest, PositionMayNotExceedItsLargestSize) {
    data.MaxPositionContracts = 4;
    EXPECT_TRUE(funcs.Buy(3, 0, false));
    EXPECT_FALSE(funcs.Buy(2, 0, false));
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    EXPECT_EQ(funcs.CurrentContracts(), 4.0);
    data.OpenEntries.clear();
    EXPECT_TRUE(funcs.SellShort(3, 0, false));
    EXPECT_FALSE(funcs.SellShort(2, 0, false));
    EXPECT_TRUE(funcs.SellShort(1, 0, false));
    EXPECT_EQ(funcs.CurrentContracts(), -4.0);
}

TEST_F(EntriesTest, PyramidingLimitCountsOpenEntries) {
    data.MaxOpenEntries = 1;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    data.MaxOpenEntries = 2;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.Buy(1, 0, false));
}

TEST_F(EntriesTest, NoPyramidingStillOpensTheFirstEntry) {
    data.MaxOpenEntries = 0;
    EXPECT_TRUE(funcs.SellShort(1, 0, false));
    EXPECT_FALSE(funcs.SellShort(1, 0, false));
    EXPECT_EQ(data.OpenEntries.size(), 1u);
}

TEST_F(EntriesTest, OneEntryPerSourceUnlessAllowed) {
    data.AllowSameSourceEntries = false;
    data.OrderSource = 7;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    data.OrderSource = 8;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    data.AllowSameSourceEntries = true;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    EXPECT_EQ(data.OpenEntries.size(), 3u);
}

TEST_F(EntriesTest, EntriesUpdateTheRunsLargestFigures) {
    EXPECT_TRUE(funcs.Buy(3, 0, false));
    EXPECT_TRUE(funcs.Buy(2, 0, false));
    EXPECT_EQ(result.Figures.MaxOpenEntriesHeld, 2);
    EXPECT_EQ(result.Figures.PositionContracts, 5.0);
    EXPECT_EQ(result.Figures.MaxContractsHeld, 5.0);
    EXPECT_EQ(result.LargestPositionHeld, 5.0);
    EXPECT_EQ(result.LargestLongPosition, 5.0);
    EXPECT_EQ(result.LargestShortPosition, 0.0);

    data.OpenEntries.clear();
    EXPECT_TRUE(funcs.SellShort(5, 0, false));
    EXPECT_EQ(result.Figures.MaxOpenEntriesHeld, 2);
    EXPECT_EQ(result.Figures.PositionContracts, -5.0);
    EXPECT_EQ(result.Figures.MaxContractsHeld, 5.0);  // an equal size does not replace it
    EXPECT_EQ(result.LargestPositionHeld, 5.0);
    EXPECT_EQ(result.LargestShortPosition, 5.0);

    EXPECT_TRUE(funcs.SellShort(1, 0, false));
    EXPECT_EQ(result.Figures.MaxContractsHeld, -6.0);
    EXPECT_EQ(result.LargestPositionHeld, 6.0);
    EXPECT_EQ(result.LargestShortPosition, 6.0);
    EXPECT_EQ(result.LargestLongPosition, 5.0);
}

TEST_F(EntriesTest, LongOfThreeThenShortOfThreeKeepsLargestSizeThree) {
    EXPECT_TRUE(funcs.Buy(3, 0, false));
    EXPECT_TRUE(funcs.SellShort(3, 0, false));
    EXPECT_EQ(funcs.CurrentContracts(), -3.0);
    EXPECT_EQ(funcs.MaxContractsHeld(), 3.0);
    EXPECT_EQ(result.LargestShortPosition, 3.0);
}

TEST_F(EntriesTest, DelayedOrdersAreParkedWithoutChecks) {
    data.OrderSource = 9;
    data.DataIndex = 0;
    EXPECT_TRUE(funcs.Buy(2.7, 10.5, true));
    EXPECT_TRUE(funcs.Buy(-1, -3, true));
    EXPECT_TRUE(funcs.SellShort(1, 0, true));
    ASSERT_EQ(data.DelayedSignals.size(), 3u);
    EXPECT_EQ(Text(data.DelayedSignals[0]), SignalText(1, 5, 9, 0, 2, 10.5));
    EXPECT_EQ(Text(data.DelayedSignals[1]), SignalText(1, 5, 9, 0, -1, -3));
    EXPECT_EQ(Text(data.DelayedSignals[2]), SignalText(3, 5, 9, 0, 1, 0));
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_TRUE(data.SignalHistory.empty());
}

TEST_F(EntriesTest, OnlyAStrategyWithAResultBlockTrades) {
    data.FormulaKind = 6;
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.SellShort(1, 0, true));
    data.FormulaKind = 7;
    data.Result = nullptr;
    EXPECT_FALSE(funcs.Buy(1, 0, false));
    EXPECT_FALSE(funcs.SellShort(1, 0, true));
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_TRUE(data.DelayedSignals.empty());
    CSystemFuncs detached(nullptr);
    EXPECT_FALSE(detached.Buy(1, 0, false));
    EXPECT_FALSE(detached.SellShort(1, 0, false));
    EXPECT_FALSE(detached.Sell(1, 0, false));
    EXPECT_FALSE(detached.BuyToCover(1, 0, false));
}

class ReversalTest : public TradingTest {
protected:
    // A short of 2 at 100 (source 7) and 3 at 102 (source 8), with marks.
    void SetUp() override {
        TradingTest::SetUp();
        data.CommissionValue = 2.5;
        data.OpenEntries.push_back({3, 1, 7, 0, 2, 100});
        data.OpenEntries.push_back({3, 3, 8, 0, 3, 102});
        result.Figures.PositionContracts = -5;
        result.Figures.MaxPositionProfitMark = 30;
        result.Figures.MaxPositionLossMark = -40;
        result.Figures.ClosedPositionsDrawDown = -10;
    }
    const double average = (2 * 100.0 + 3 * 102.0) / 5;
};

TEST_F(ReversalTest, BuyWhileShortClosesTheShortAndOpensTheLong) {
    data.OrderSource = 4;
    EXPECT_TRUE(funcs.Buy(4, 0, false));
    // One side of commission on the 5 contracts closed; the round trips are not booked.
    EXPECT_EQ(result.Figures.Capital, 1000000.0 + (10 * 1.0 * (average - 106.0) * 5 - 5 * 2.5));
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(3, 4, 1, 5, 7, 4, 0, 2, 100, 106));
    EXPECT_EQ(Text(data.TradeList[1]), TripText(3, 4, 3, 5, 8, 4, 0, 3, 102, 106));
    ASSERT_EQ(data.SignalHistory.size(), 2u);
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(4, 5, 4, 0, 5, 106));
    EXPECT_EQ(Text(data.SignalHistory[1]), SignalText(1, 5, 4, 0, 4, 106));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(1, 5, 4, 0, 4, 106));
    EXPECT_EQ(result.Figures.ClosedPositionsDrawDown, -50.0);
    EXPECT_EQ(result.Figures.MaxPositionProfitMark, 0.0);
    EXPECT_EQ(result.Figures.MaxPositionLossMark, 0.0);
    EXPECT_EQ(result.Figures.PositionContracts, 4.0);
    EXPECT_EQ(result.LargestLongPosition, 4.0);
}

TEST_F(ReversalTest, DefaultSizeIsFoundWhileTheOldPositionStillCounts) {
    data.TradeSizeMode = 1;
    data.TradeSizeValue = 10;
    EXPECT_TRUE(funcs.Buy(0, 0, false));
    // Ten percent of the capital less the short's margin and loss at the open (105)
    // carries 942 contracts at 106; the capital alone would carry 943.
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.OpenEntries[0].dLots, 942.0);
}

TEST_F(ReversalTest, ExplicitSizeIsCheckedAgainstTheBookedCapital) {
    result.Figures.Capital = 4500;
    EXPECT_TRUE(funcs.Buy(4, 0, false));
    // 4500 - 240 - 12.5 carries 4 contracts at 106 (margin 424).
    EXPECT_EQ(funcs.CurrentContracts(), 4.0);
}

TEST_F(ReversalTest, ReversalThatCannotOpenStillClosesTheOldPosition) {
    result.Figures.Capital = 500;  // 247.5 after the booking: 2 contracts at 106
    EXPECT_TRUE(funcs.Buy(4, 0, false));
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(data.TradeList.size(), 2u);
    ASSERT_EQ(data.SignalHistory.size(), 1u);
    EXPECT_EQ(data.SignalHistory[0].nType, 4);
    EXPECT_EQ(result.Figures.Capital, 500.0 + (10 * 1.0 * (average - 106.0) * 5 - 5 * 2.5));
    EXPECT_EQ(result.Figures.PositionContracts, 0.0);
    EXPECT_EQ(funcs.MarketPosition(), 0);
}

TEST_F(ReversalTest, LotsBeyondTheLargestSizeOrNegativeAreRefused) {
    data.MaxPositionContracts = 3;
    EXPECT_FALSE(funcs.Buy(4, 0, false));
    EXPECT_FALSE(funcs.Buy(-1, 0, false));
    EXPECT_FALSE(funcs.Buy(1, -5, false));
    EXPECT_EQ(data.OpenEntries.size(), 2u);
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_EQ(result.Figures.Capital, 1000000.0);
    EXPECT_TRUE(funcs.Buy(0, 0, false));  // the default size is not held to the limit
    EXPECT_EQ(funcs.CurrentContracts(), 1.0);
}

TEST_F(ReversalTest, DelayedReversalIsParkedAsABuy) {
    EXPECT_TRUE(funcs.Buy(3, 0, true));
    ASSERT_EQ(data.DelayedSignals.size(), 1u);
    EXPECT_EQ(Text(data.DelayedSignals[0]), SignalText(1, 5, 0, 0, 3, 0));
    EXPECT_EQ(data.OpenEntries.size(), 2u);
    EXPECT_TRUE(Access::CombineBuy(funcs, 2, 0, true));
    EXPECT_EQ(data.DelayedSignals.size(), 2u);
}

TEST_F(ReversalTest, SellShortWhileLongReversesTheMirrorWay) {
    for (tagTradeSignal& entry : data.OpenEntries) entry.nType = 1;
    result.Figures.PositionContracts = 5;
    EXPECT_TRUE(funcs.SellShort(4, 104.567, false));
    EXPECT_EQ(result.Figures.Capital,
              1000000.0 + (10 * 1.0 * (104.56 - average) * 5 - 5 * 2.5));
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(1, 2, 1, 5, 7, 0, 0, 2, 100, 104.56));
    EXPECT_EQ(Text(data.TradeList[1]), TripText(1, 2, 3, 5, 8, 0, 0, 3, 102, 104.56));
    ASSERT_EQ(data.SignalHistory.size(), 2u);
    EXPECT_EQ(Text(data.SignalHistory[0]), SignalText(2, 5, 0, 0, 5, 104.56));
    EXPECT_EQ(Text(data.SignalHistory[1]), SignalText(3, 5, 0, 0, 4, 104.56));
    EXPECT_EQ(funcs.CurrentContracts(), -4.0);
    EXPECT_EQ(result.Figures.MaxContractsHeld, -4.0);
    EXPECT_EQ(result.LargestPositionHeld, 4.0);
    EXPECT_EQ(result.LargestShortPosition, 4.0);
}

TEST_F(ReversalTest, PartialOldEntryIsClosedFirstInFirstOut) {
    // Lots summing to 5 but split 2.5 + 2.5: the first closes whole, the second matches.
    data.OpenEntries[0].dLots = 2.5;
    data.OpenEntries[1].dLots = 2.5;
    EXPECT_TRUE(funcs.Buy(1, 0, false));
    ASSERT_EQ(data.TradeList.size(), 2u);
    EXPECT_EQ(data.TradeList[0].dLots, 2.5);
    EXPECT_EQ(data.TradeList[1].dLots, 2.5);
    EXPECT_EQ(funcs.CurrentContracts(), 1.0);
}

class DelayedSignalTest : public TradingTest {};

TEST_F(DelayedSignalTest, ParkedBuyReversesAShortAtTheNextBar) {
    AddEntry(3, 4, 2, 100);
    EXPECT_TRUE(funcs.Buy(3, 0, true));
    data.CurrentBar = 6;
    const tagTradeSignal parked = data.DelayedSignals[0];
    Access::HandleDelaySignal(funcs, data.DelayedSignals[0]);
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(3, 4, 4, 6, 0, 0, 0, 2, 100, 107));
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(1, 6, 0, 0, 3, 107));
    EXPECT_EQ(Text(data.DelayedSignals[0]), Text(parked));  // the driver empties the list
}

TEST_F(DelayedSignalTest, OrderRunsWithTheSourceAndStreamItWasGivenBy) {
    data.DataStreams.resize(2);
    UseInstrument(1, 4);
    for (int i = 0; i < 10; ++i) AddBar(1, Bar(i).time, 50 + i, 52 + i, 48 + i, 51 + i);
    data.DataIndex = 1;
    data.OrderSource = 9;
    EXPECT_TRUE(funcs.Buy(1, 0, true));
    data.DataIndex = 0;
    data.OrderSource = 3;
    data.CurrentBar = 6;
    Access::HandleDelaySignal(funcs, data.DelayedSignals[0]);
    ASSERT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(Text(data.OpenEntries[0]), SignalText(1, 6, 9, 1, 1, 57));
    EXPECT_EQ(data.DataIndex, 0);
    EXPECT_EQ(data.OrderSource, 3u);
}

TEST_F(DelayedSignalTest, ParkedOrdersAreCheckedAgainTheNextBar) {
    EXPECT_TRUE(funcs.Buy(-1, 0, true));
    data.CurrentBar = 6;
    Access::HandleDelaySignal(funcs, data.DelayedSignals[0]);
    EXPECT_TRUE(data.OpenEntries.empty());
}

TEST_F(DelayedSignalTest, ParkedExitsAndShortsAreCarriedOut) {
    AddEntry(1, 2, 3, 100);
    EXPECT_TRUE(funcs.Sell(1, 0, true));
    EXPECT_TRUE(funcs.SellShort(2, 0, true));
    data.CurrentBar = 6;
    Access::HandleDelaySignal(funcs, data.DelayedSignals[0]);
    EXPECT_EQ(funcs.CurrentContracts(), 2.0);
    Access::HandleDelaySignal(funcs, data.DelayedSignals[1]);
    EXPECT_EQ(funcs.CurrentContracts(), -2.0);
    EXPECT_TRUE(funcs.BuyToCover(1, 0, true));
    data.CurrentBar = 7;
    Access::HandleDelaySignal(funcs, data.DelayedSignals[2]);
    EXPECT_EQ(funcs.CurrentContracts(), -1.0);
    ASSERT_EQ(data.TradeList.size(), 3u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(1, 2, 2, 6, 0, 0, 0, 1, 100, 107));
    EXPECT_EQ(Text(data.TradeList[2]), TripText(3, 4, 6, 7, 0, 0, 0, 1, 107, 108));
}

TEST_F(DelayedSignalTest, CloseAllSignalClosesAtThePreviousCloseWhenExitOnCloseIsSet) {
    AddEntry(1, 2, 2, 100);
    data.CurrentBar = 6;
    const tagTradeSignal closeAll{5, 5, 0, 0, 0, 0};
    Access::HandleDelaySignal(funcs, closeAll);
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    result.ExitOnClose = true;
    Access::HandleDelaySignal(funcs, closeAll);
    EXPECT_TRUE(data.OpenEntries.empty());
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(Text(data.TradeList[0]), TripText(1, 2, 2, 5, 0, 0, 0, 2, 100, 106));
    EXPECT_EQ(data.CurrentBar, 6);
}

TEST_F(DelayedSignalTest, CloseAllUsesTheMainStreamsClose) {
    data.DataStreams.resize(2);
    UseInstrument(1, 4);
    for (int i = 0; i < 10; ++i) AddBar(1, Bar(i).time, 104 + i, 108 + i, 100 + i, 105 + i);
    data.DataIndex = 1;
    data.OpenEntries.push_back({3, 2, 0, 1, 2, 100});
    result.ExitOnClose = true;
    data.CurrentBar = 6;
    Access::HandleDelaySignal(funcs, tagTradeSignal{5, 5, 0, 1, 0, 0});
    ASSERT_EQ(data.TradeList.size(), 1u);
    EXPECT_EQ(data.TradeList[0].dExitPrice, 106.0);
}

TEST_F(DelayedSignalTest, CloseAllOnTheFirstBarFindsNoPriceAndChangesNothing) {
    AddEntry(1, 0, 2, 100);
    result.ExitOnClose = true;
    data.CurrentBar = 0;
    Access::HandleDelaySignal(funcs, tagTradeSignal{5, 0, 0, 0, 0, 0});
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_EQ(data.CurrentBar, 0);
}

TEST_F(DelayedSignalTest, OtherTypesAndOtherFormulasDoNothing) {
    AddEntry(1, 2, 2, 100);
    Access::HandleDelaySignal(funcs, tagTradeSignal{6, 5, 0, 0, 1, 0});
    Access::HandleDelaySignal(funcs, tagTradeSignal{0, 5, 0, 0, 1, 0});
    data.Result = nullptr;
    Access::HandleDelaySignal(funcs, tagTradeSignal{1, 5, 0, 0, 1, 0});
    data.Result = &result;
    data.FormulaKind = 4;
    Access::HandleDelaySignal(funcs, tagTradeSignal{2, 5, 0, 0, 0, 0});
    EXPECT_EQ(data.OpenEntries.size(), 1u);
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_TRUE(data.SignalHistory.empty());
}

}  // namespace
