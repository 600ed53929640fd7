// The per-bar driver: the first bar, a new day, excursions and the margin call, the
// equity history, the position snapshot, delayed signals, bar texts, save and restore.
#include "driver/DriverFixture.h"

namespace {

TEST_F(DriverTest, DoesNothingOutsideAStrategy) {
    data.FormulaKind = 4;
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 101));
    funcs.PrepareBar();
    EXPECT_EQ(1u, data.TradeList.size());
    EXPECT_EQ(0.0, result.Figures.Capital);
    EXPECT_TRUE(result.EquityHistory.empty());
}

TEST_F(DriverTest, NullResultOrHostDataDoNothing) {
    data.Result = nullptr;
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 101));
    funcs.PrepareBar();
    funcs.CalStatistic();
    funcs.RestoreLastBar();
    EXPECT_EQ(1u, data.TradeList.size());
    CSystemFuncs detached(nullptr);
    detached.PrepareBar();
    detached.CalStatistic();
    detached.RestoreLastBar();
}

TEST_F(DriverTest, FirstBarStartsTheRun) {
    result.Figures = {5, 6, 7, 8, 9, 10, 11};
    result.MaxDrawDown = 33;
    result.BarsInMarket = 4;
    result.NewDay = true;
    result.ExitOnClose = true;
    result.EquityHistory.resize(3);
    data.SignalHistory.resize(2);
    data.TradeList.resize(2);
    data.OpenEntries.resize(2);
    data.DelayedSignals.resize(2);
    data.BarTexts = {{"a", "b"}, {"c"}};
    funcs.PrepareBar();

    const PositionFigures& f = result.Figures;
    EXPECT_EQ(1000000.0, f.Capital);
    EXPECT_EQ(0.0, f.PositionContracts);
    EXPECT_EQ(0.0, f.MaxContractsHeld);
    EXPECT_EQ(0, f.MaxOpenEntriesHeld);
    EXPECT_EQ(0.0, f.MaxPositionProfitMark);
    EXPECT_EQ(0.0, f.MaxPositionLossMark);
    EXPECT_EQ(0.0, f.ClosedPositionsDrawDown);
    EXPECT_EQ(Bar(0).time, result.DayStartTime);
    EXPECT_FALSE(result.NewDay);
    EXPECT_FALSE(result.ExitOnClose);
    for (double v : {result.TroughEquity, result.PeakAfterTrough, result.DrawDownPeak,
                     result.DrawDownTrough, result.HighestEquity, result.LowestEquity,
                     result.dLowestBarEquity, result.dHighestBarEquity})
        EXPECT_EQ(1000000.0, v);
    EXPECT_EQ(Bar(0).time, result.PeakAfterTroughTime);
    EXPECT_EQ(Bar(0).time, result.MaxDrawDownTime);
    EXPECT_EQ(33.0, result.MaxDrawDown);
    EXPECT_EQ(4, result.BarsInMarket);
    ASSERT_EQ(1u, result.EquityHistory.size());
    const EquityRecord& r = result.EquityHistory[0];
    EXPECT_EQ(0, r.nBar);
    EXPECT_EQ(Bar(0).time, r.nTime);
    EXPECT_EQ(0.0, r.dMargin);
    EXPECT_EQ(1000000.0, r.dFreeCapital);
    EXPECT_EQ(1000000.0, r.dEquity);
    EXPECT_EQ(0.0, r.dCommission);
    EXPECT_EQ(1000000.0, r.dCapital);
    EXPECT_TRUE(data.SignalHistory.empty());
    EXPECT_TRUE(data.TradeList.empty());
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_TRUE(data.DelayedSignals.empty());
    EXPECT_TRUE(data.BarTexts[0].empty());
    EXPECT_EQ(1u, data.BarTexts[1].size());
}

TEST_F(DriverTest, FirstBarWithoutBarsStartsAtTimeZero) {
    data.DataStreams.clear();
    funcs.PrepareBar();
    EXPECT_EQ(0, result.DayStartTime);
    EXPECT_EQ(1u, result.EquityHistory.size());
}

TEST_F(DriverTest, NewDayComparesOnlyTheDayOfTheMonth) {
    Evaluate(0, nullptr);
    Evaluate(1, nullptr);
    EXPECT_TRUE(result.NewDay);
    EXPECT_EQ(Bar(1).time, result.DayStartTime);
    Bar(2).time = Bar(1).time + 3600 * 1000;  // later on the same day
    Evaluate(2, nullptr);
    EXPECT_FALSE(result.NewDay);
    EXPECT_EQ(Bar(1).time, result.DayStartTime);
}

TEST_F(DriverTest, SameDayOfAnotherMonthIsNoNewDay) {
    for (const char* zone : {"America/New_York", "Asia/Shanghai"}) {
        fftest::ScopedTimeZone tz(zone);
        CSystemFuncs fresh(&data);
        Bar(0).time = LocalMs(2010, 1, 31);
        Bar(1).time = LocalMs(2010, 3, 31);
        Bar(2).time = LocalMs(2010, 4, 1, 0, 0, 1);
        data.CurrentBar = 0;
        fresh.PrepareBar();
        data.CurrentBar = 1;
        fresh.PrepareBar();
        EXPECT_FALSE(result.NewDay) << zone;
        EXPECT_EQ(Bar(0).time, result.DayStartTime) << zone;
        data.CurrentBar = 2;
        fresh.PrepareBar();
        EXPECT_TRUE(result.NewDay) << zone;
        EXPECT_EQ(Bar(2).time, result.DayStartTime) << zone;
    }
}

// Bar 0 has no previous bar: the step that settles one must leave the records of
// the earlier bars alone and never index the snapshot list with a wrapped index.
TEST_F(DriverTest, SettlingAPreviousBarOnBarZeroOverwritesNothing) {
    Evaluate(0, nullptr);
    Evaluate(1, nullptr);
    ASSERT_EQ(1u, result.PositionSnapshots.size());
    result.PositionSnapshots[0].dCloseEquity = 123.0;
    data.CurrentBar = 0;
    Access::PrepareNormalBar(funcs);
    ASSERT_EQ(2u, result.PositionSnapshots.size());
    EXPECT_EQ(123.0, result.PositionSnapshots[0].dCloseEquity);
    EXPECT_EQ(0.0, result.PositionSnapshots[1].dCloseEquity);
}

TEST_F(DriverTest, ContractsOfATenThousandthAreFlat) {
    for (int32_t type : {1, 3}) {
        Evaluate(0, nullptr);
        AddEntry(type, 0, 0.0001, 100);
        result.Figures.MaxPositionProfitMark = 5;
        result.Figures.MaxPositionLossMark = -5;
        data.CurrentBar = 1;
        funcs.PrepareBar();
        EXPECT_EQ(0.0, result.Figures.MaxPositionProfitMark);
        EXPECT_EQ(0.0, result.Figures.MaxPositionLossMark);
        EXPECT_EQ(1u, data.OpenEntries.size());
    }
}

TEST_F(DriverTest, ExcursionMarksFollowThePreviousBar) {
    Evaluate(0, nullptr);
    AddEntry(1, 0, 2, 100);
    data.CurrentBar = 2;  // previous bar 1 ranges 99..103, closes at 102
    funcs.PrepareBar();
    EXPECT_EQ(ProfitLoss(true, 100, 103) * 2, result.Figures.MaxPositionProfitMark);
    EXPECT_EQ(ProfitLoss(true, 100, 99) * 2, result.Figures.MaxPositionLossMark);
    EXPECT_EQ(-20.0, result.Figures.MaxPositionLossMark);
}

TEST_F(DriverTest, ShortExcursionMarksUseTheMirroredPrices) {
    Evaluate(0, nullptr);
    AddEntry(3, 0, 1, 101);
    result.Figures.MaxPositionProfitMark = 1000;
    data.CurrentBar = 2;
    funcs.PrepareBar();
    EXPECT_EQ(1000.0, result.Figures.MaxPositionProfitMark);  // best 20 is below the mark
    EXPECT_EQ(ProfitLoss(false, 101, 103), result.Figures.MaxPositionLossMark);
    EXPECT_EQ(-20.0, result.Figures.MaxPositionLossMark);
}

TEST_F(DriverTest, MarginCallClosesOnThePreviousBarBeforeTheFormula) {
    Evaluate(0, nullptr);
    result.Figures.Capital = 200;
    AddEntry(1, 0, 1, 102);
    Bar(2).open = 95;
    Bar(2).high = 96;
    Bar(2).low = 88;
    Bar(2).close = 90;
    data.CurrentBar = 3;
    funcs.PrepareBar();
    // Equity at the close of bar 2 is 200 - 120 = 80, below the margin of 90; the
    // position has lost the 80 at 94.
    EXPECT_TRUE(data.OpenEntries.empty());
    ASSERT_EQ(1u, data.TradeList.size());
    EXPECT_EQ(TripText(1, 2, 0, 2, 0, 0, 0, 1, 102, 94), Text(data.TradeList[0]));
    EXPECT_EQ(120.0, result.Figures.Capital);
    EXPECT_EQ(-140.0, result.Figures.ClosedPositionsDrawDown);
    EXPECT_EQ(-80.0, result.Figures.MaxPositionLossMark);
    EXPECT_EQ(3, data.CurrentBar);
    ASSERT_EQ(1u, result.PositionSnapshots.size());  // bar 1 and 2 were skipped here
    EXPECT_EQ(0.0, result.PositionSnapshots[0].dCurrentContracts);
    EXPECT_EQ(-80.0, result.PositionSnapshots[0].dCloseEquity);
}

TEST_F(DriverTest, EquityCoveringTheMarginExactlyIsNoMarginCall) {
    Evaluate(0, nullptr);
    AddEntry(1, 0, 1, 102);
    Bar(2).close = 90;
    result.Figures.Capital = 210;  // 210 - 120 = 90 = the margin
    data.CurrentBar = 3;
    funcs.PrepareBar();
    EXPECT_EQ(1u, data.OpenEntries.size());
}

TEST_F(DriverTest, WithoutModeTwoTheEquityHistoryKeepsItsFirstRecord) {
    data.PerformanceMode = 1;
    Run(0, 4, [&](int32_t bar) {
        if (bar == 1) funcs.Buy(1, 0, false);
        if (bar == 3) funcs.Sell(0, 0, false);
    });
    EXPECT_EQ(1u, result.EquityHistory.size());
    EXPECT_EQ(0, result.BarsInMarket);
}

TEST_F(DriverTest, ModeTwoFlatBarWritesARecordOnlyWhenATradeClosed) {
    data.PerformanceMode = 2;
    data.CommissionValue = 3;  // per contract and side
    Run(0, 5, [&](int32_t bar) {
        if (bar == 1 || bar == 3) funcs.Buy(2, 0, false);
        if (bar == 2) funcs.Sell(0, 0, false);
    });
    // Bar 1 and 3: in a position; bar 2 closed and flat after; bar 4 flat without trade.
    ASSERT_EQ(5u, result.EquityHistory.size());
    const EquityRecord& flat = result.EquityHistory[2];
    EXPECT_EQ(2, flat.nBar);
    EXPECT_EQ(Bar(2).time, flat.nTime);
    EXPECT_EQ(0.0, flat.dMargin);
    EXPECT_EQ(6.0, flat.dCommission);  // the exit side only: the entry was on bar 1
    EXPECT_EQ(result.Figures.Capital, flat.dCapital);
    EXPECT_EQ(flat.dCapital, flat.dEquity);
    EXPECT_EQ(flat.dCapital, flat.dFreeCapital);
    EXPECT_EQ(3, result.EquityHistory[3].nBar);
    EXPECT_EQ(4, result.EquityHistory[4].nBar);
}

// Bar 1 buys 2 and sells 1; bar 2 holds the last contract. The record of bar 1 charges
// the entry of 2 contracts and the exit of the one closed.
TEST_F(DriverTest, ModeTwoInPositionRecordChargesTheBarsSignals) {
    data.PerformanceMode = 2;
    data.CommissionValue = 3;
    Run(0, 2, [&](int32_t bar) {
        if (bar == 1) {
            funcs.Buy(2, 0, false);
            funcs.Sell(1, 0, false);
        }
    });
    ASSERT_EQ(2u, result.EquityHistory.size());
    const EquityRecord& r = result.EquityHistory[1];
    EXPECT_EQ(1, r.nBar);
    EXPECT_EQ(Margin(1, 102), r.dMargin);
    EXPECT_EQ(102.0, r.dMargin);
    EXPECT_EQ(9.0, r.dCommission);  // the entry of 2 and the exit of 1, at 3 each
    EXPECT_EQ(result.Figures.Capital, r.dCapital);
    EXPECT_EQ(r.dCapital - 102.0 + 0.0, r.dFreeCapital);
    EXPECT_EQ(r.dFreeCapital + 102.0, r.dEquity);
    EXPECT_EQ(1, result.BarsInMarket);
}

TEST_F(DriverTest, ModeTwoCommissionFollowsSingleSideAndFreeCloseToday) {
    data.PerformanceMode = 2;
    data.CommissionValue = 3;
    data.SingleSideCommission = true;
    data.FreeCloseToday = true;
    Run(0, 2, [&](int32_t bar) {
        if (bar == 1) {
            funcs.Buy(2, 0, false);
            funcs.Sell(1, 0, false);
        }
    });
    // Only exits are charged, and this one opened and closed on one day.
    EXPECT_EQ(0.0, result.EquityHistory[1].dCommission);
    data.FreeCloseToday = false;
    Run(0, 2, [&](int32_t bar) {
        if (bar == 1) {
            funcs.Buy(2, 0, false);
            funcs.Sell(1, 0, false);
        }
    });
    EXPECT_EQ(3.0, result.EquityHistory[1].dCommission);
    // The bar's record charges what the round trip of that contract was charged.
    EXPECT_EQ(Access::GetDoubleCommission(funcs, data.TradeList[0]),
              result.EquityHistory[1].dCommission);
}

TEST_F(DriverTest, EquityTrackersFollowTheRecords) {
    data.PerformanceMode = 2;
    Evaluate(0, nullptr);
    AddEntry(1, 0, 1, 101);
    // Closes 101, 102, 103, 95 and 99 for bars 0 to 4.
    Bar(3).close = 95;
    Bar(3).low = 94;
    Bar(4).close = 99;
    for (int32_t bar = 1; bar <= 5; ++bar) {
        data.CurrentBar = bar;
        funcs.PrepareBar();
    }
    ASSERT_EQ(6u, result.EquityHistory.size());
    const double c = 1000000;
    // Equity of bar i is the capital + 10 x (close - 101).
    EXPECT_EQ(c, result.EquityHistory[1].dEquity);
    EXPECT_EQ(c + 10, result.EquityHistory[2].dEquity);
    EXPECT_EQ(c + 20, result.EquityHistory[3].dEquity);
    EXPECT_EQ(c - 60, result.EquityHistory[4].dEquity);
    EXPECT_EQ(c - 20, result.EquityHistory[5].dEquity);
    EXPECT_EQ(c - 60, result.TroughEquity);
    EXPECT_EQ(c - 20, result.PeakAfterTrough);
    EXPECT_EQ(Bar(4).time, result.PeakAfterTroughTime);
    EXPECT_EQ(c + 20, result.HighestEquity);
    EXPECT_EQ(c - 60, result.LowestEquity);
    EXPECT_EQ(c + 20, result.DrawDownPeak);
    EXPECT_EQ(c - 60, result.DrawDownTrough);
    EXPECT_EQ(80.0, result.MaxDrawDown);
    EXPECT_EQ(Bar(3).time, result.MaxDrawDownTime);
    EXPECT_EQ(5, result.BarsInMarket);
}

TEST_F(DriverTest, SnapshotOfThePreviousBarIsAppendedOrOverwritten) {
    Evaluate(0, nullptr);
    AddEntry(3, 0, 2, 104);
    data.TradeList.push_back(Trip(1, 0, 0, 1, 100, 105));
    data.CurrentBar = 1;
    funcs.PrepareBar();
    ASSERT_EQ(1u, result.PositionSnapshots.size());
    const PositionSnapshot& s = result.PositionSnapshots[0];
    EXPECT_EQ(104.0, s.dAvgEntryPrice);
    EXPECT_EQ(-2.0, s.dCurrentContracts);
    EXPECT_EQ(-1, s.nMarketPosition);
    EXPECT_EQ(50.0, s.dCloseEquity);
    EXPECT_EQ(50.0 + 2 * 10 * (104 - 101), s.dOpenEquity);
    result.PositionSnapshots.resize(4);
    data.OpenEntries.clear();
    data.CurrentBar = 2;
    funcs.PrepareBar();
    ASSERT_EQ(4u, result.PositionSnapshots.size());
    EXPECT_EQ(0.0, result.PositionSnapshots[1].dCurrentContracts);
    EXPECT_EQ(50.0, result.PositionSnapshots[1].dOpenEquity);
}

TEST_F(DriverTest, CloseAllRunsBeforeTheOtherDelayedSignals) {
    Evaluate(0, [&](int32_t) {});
    Evaluate(1, [&](int32_t) { funcs.Buy(1, 0, false); });
    Evaluate(2, [&](int32_t) {
        funcs.SellShort(1, 0, true);  // queued first
        data.DelayedSignals.push_back({5, 2, 0, 0, 0, 0});
        result.ExitOnClose = true;
    });
    data.CurrentBar = 3;
    funcs.PrepareBar();
    // The long closed at bar 2's close, booked on bar 2; then the short opened on bar 3.
    ASSERT_EQ(1u, data.TradeList.size());
    EXPECT_EQ(TripText(1, 2, 1, 2, 0, 0, 0, 1, 102, 103), Text(data.TradeList[0]));
    ASSERT_EQ(1u, data.OpenEntries.size());
    EXPECT_EQ(SignalText(3, 3, 0, 0, 1, 104), Text(data.OpenEntries[0]));
    EXPECT_TRUE(data.DelayedSignals.empty());
    EXPECT_TRUE(result.SavedOpenEntries.empty());
    ASSERT_EQ(1u, result.SavedDelayedSignals.size());
    EXPECT_EQ(3, result.SavedDelayedSignals[0].nType);
}

TEST_F(DriverTest, BarTextsOfTheCurrentBarAreEmptied) {
    data.BarTexts = {{"a"}, {"b"}, {"c"}};
    Run(0, 1, nullptr);
    EXPECT_TRUE(data.BarTexts[0].empty());
    EXPECT_TRUE(data.BarTexts[1].empty());
    EXPECT_EQ(1u, data.BarTexts[2].size());
    Run(2, 5, nullptr);  // bars without a text element
    EXPECT_EQ(3u, data.BarTexts.size());
}

TEST_F(DriverTest, NewestBarSavesItsStateFirst) {
    Run(0, 8, [&](int32_t bar) {
        if (bar == 8) funcs.Buy(1, 0, true);
    });
    AddEntry(1, 8, 1, 109);  // stands for a position opened on bar 8
    result.Figures.MaxContractsHeld = 7;
    data.CurrentBar = 9;
    funcs.PrepareBar();
    EXPECT_EQ(7.0, result.SavedFigures.MaxContractsHeld);
    EXPECT_EQ(2u, data.OpenEntries.size());
    ASSERT_EQ(1u, result.SavedOpenEntries.size());  // before the delayed buy
    ASSERT_EQ(1u, result.SavedDelayedSignals.size());
}

TEST_F(DriverTest, RestorePassesOverLaterRecordsAndStopsAtAnEarlierOne) {
    data.CurrentBar = 5;
    data.SignalHistory = {{1, 5, 0, 0, 1, 1}, {1, 4, 0, 0, 1, 1}, {1, 5, 0, 0, 1, 1},
                          {1, 6, 0, 0, 1, 1}, {1, 5, 0, 0, 1, 1}};
    data.TradeList = {Trip(1, 0, 5, 1, 1, 1), Trip(1, 0, 4, 1, 1, 1), Trip(1, 0, 7, 1, 1, 1),
                      Trip(1, 0, 5, 1, 1, 1)};
    result.SavedFigures.Capital = 42;
    result.SavedOpenEntries = {{3, 2, 0, 0, 1, 1}};
    result.SavedDelayedSignals = {{2, 5, 0, 0, 1, 1}};
    funcs.RestoreLastBar();
    // The trailing record of bar 5 goes; the bar-6 record is passed over and the next
    // bar-5 record shortens the list again (dropping the bar-6 record); bar 4 ends it.
    // The round trips lose only their last record: the exit on bar 7 is passed over.
    EXPECT_EQ(3u, data.SignalHistory.size());
    EXPECT_EQ(3u, data.TradeList.size());
    EXPECT_EQ(42.0, result.Figures.Capital);
    EXPECT_EQ(1u, data.OpenEntries.size());
    EXPECT_EQ(1u, data.DelayedSignals.size());
}

}  // namespace
