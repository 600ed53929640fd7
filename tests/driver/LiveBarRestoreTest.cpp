// The live last bar evaluated again and again after RestoreLastBar ends in the state
// of a single evaluation, also when a margin call or the exit on close books a
// forced exit on the bar before it, and when stops fire on it.
#include <functional>

#include "driver/DriverFixture.h"
#include "driver/SameState.h"

namespace {

class LiveBarRestoreTest : public DriverTest {
protected:
    using Formula = std::function<void(CSystemFuncs& f, int32_t bar)>;

    // Bars 0 to 8 and the live bar 9, evaluated as the host does over `target`.
    static void RunAll(CKelBaseData& target, CSystemFuncs& f, const Formula& formula,
                       int again) {
        for (int32_t bar = 0; bar <= 9; ++bar) {
            target.CurrentBar = bar;
            target.LastBarOfRun = bar == 9;
            f.PrepareBar();
            formula(f, bar);
            f.CalStatistic();
        }
        for (int i = 0; i < again; ++i) {
            f.RestoreLastBar();
            formula(f, 9);
            f.CalStatistic();
        }
    }

    // For statistics modes 0, 1 and 2: one run evaluating bar 9 once over a copy of
    // the host data, one over `data` evaluating it four times; the two must agree in
    // every field. `data` is left with the mode 2 run.
    void ExpectLiveBarLikeOneEvaluation(const Formula& formula) {
        const CKelBaseData start = data;
        const CStrategyResult startResult = result;
        for (int32_t mode : {0, 1, 2}) {
            SCOPED_TRACE(mode);
            CStrategyResult onceResult = startResult;
            CKelBaseData once = start;
            once.Result = &onceResult;
            once.PerformanceMode = mode;
            CSystemFuncs single(&once);
            single.PropertyCache = funcs.PropertyCache;
            RunAll(once, single, formula, 0);

            result = startResult;
            data = start;
            data.Result = &result;
            data.PerformanceMode = mode;
            CSystemFuncs live(&data);
            live.PropertyCache = funcs.PropertyCache;
            RunAll(data, live, formula, 3);
            ExpectSameState(data, once);
        }
    }

    void SetBar(int index, double open, double high, double low, double close) {
        Bar(index).open = open;
        Bar(index).high = high;
        Bar(index).low = low;
        Bar(index).close = close;
    }

    std::vector<std::string> Trips() const {
        std::vector<std::string> out;
        for (const tagTradeList& trip : data.TradeList) out.push_back(Text(trip));
        return out;
    }
};

// 5 contracts bought at 106 on bar 5 with a capital of 1000; bar 9 falls to 90,
// where the capital no longer carries the margin: the statistics step closes the
// position, booked on bar 8, at the price where the capital above the margin at the
// low (1000 - 450) is lost, 106 - 550 / 50 = 95, held to bar 8's range 106..110.
TEST_F(LiveBarRestoreTest, StatisticsMarginCallOnTheLiveBar) {
    data.InitialCapital = 1000;
    SetBar(9, 107, 111, 90, 100);
    ExpectLiveBarLikeOneEvaluation([](CSystemFuncs& f, int32_t bar) {
        if (bar == 5) f.Buy(5, 0, false);
    });
    EXPECT_EQ(Trips(), std::vector<std::string>{TripText(1, 2, 5, 8, 0, 0, 0, 5, 106, 106)});
    EXPECT_EQ(2u, data.SignalHistory.size());
    EXPECT_TRUE(data.OpenEntries.empty());
    EXPECT_EQ(1000.0, result.Figures.Capital);
}

// The formula sells one contract on the live bar before the margin call closes the
// rest on bar 8: the round trip of bar 9 comes before the one booked on bar 8.
TEST_F(LiveBarRestoreTest, StatisticsMarginCallAfterAnExitOnTheLiveBar) {
    data.InitialCapital = 1000;
    SetBar(9, 107, 111, 90, 100);
    ExpectLiveBarLikeOneEvaluation([](CSystemFuncs& f, int32_t bar) {
        if (bar == 5) f.Buy(5, 0, false);
        if (bar == 9) f.Sell(1, 0, false);
    });
    ASSERT_EQ(2u, data.TradeList.size());
    EXPECT_EQ(9, data.TradeList[0].nExitBar);
    EXPECT_EQ(8, data.TradeList[1].nExitBar);
    EXPECT_EQ(4.0, data.TradeList[1].dLots);
}

// An entry made on the live bar is closed with the rest by the margin call.
TEST_F(LiveBarRestoreTest, StatisticsMarginCallAfterAnEntryOnTheLiveBar) {
    data.InitialCapital = 1000;
    data.CommissionValue = 1;
    SetBar(9, 107, 111, 90, 100);
    ExpectLiveBarLikeOneEvaluation([](CSystemFuncs& f, int32_t bar) {
        if (bar == 5) f.Buy(4, 0, false);
        if (bar == 9) f.Buy(1, 0, false);
    });
    ASSERT_EQ(2u, data.TradeList.size());
    EXPECT_EQ(8, data.TradeList[0].nExitBar);
    EXPECT_EQ(9, data.TradeList[1].nEntryBar);
    EXPECT_EQ(8, data.TradeList[1].nExitBar);
}

// The driver's margin call before the live bar's formula: bar 8 closes at its low of
// 96, where 5 contracts bought at 106 leave 979.99995 - 500 against a margin of 480.
// The statistics step of bar 8 lets the shortfall of 0.00005 pass, the driver does
// not: the position is closed on bar 8 at 106 - 479.99995 / 50, rounded down to 96.40.
// The formula then buys again on the live bar.
TEST_F(LiveBarRestoreTest, DriverMarginCallBeforeTheLiveBar) {
    data.InitialCapital = 979.99995;
    SetBar(8, 97, 100, 96, 96);
    ExpectLiveBarLikeOneEvaluation([](CSystemFuncs& f, int32_t bar) {
        if (bar == 5) f.Buy(5, 0, false);
        if (bar == 9) f.Buy(1, 0, false);
    });
    // The run's end closes the new entry out on the live bar.
    ASSERT_EQ(2u, data.TradeList.size());
    EXPECT_EQ(TripText(1, 2, 5, 8, 0, 0, 0, 5, 106, 96.4), Text(data.TradeList[0]));
    EXPECT_EQ(9, data.TradeList[1].nEntryBar);
    // The figures put back are those after the forced exit.
    EXPECT_EQ(979.99995 + ProfitLoss(true, 106, 96.4) * 5, result.SavedFigures.Capital);
}

// The exit on close asked for on bar 8 closes the position at bar 8's close of 109
// when the live bar is prepared; the formula opens a short on the live bar.
TEST_F(LiveBarRestoreTest, ExitOnCloseCarriedOutOnTheLiveBar) {
    data.CommissionValue = 1;
    ExpectLiveBarLikeOneEvaluation([](CSystemFuncs& f, int32_t bar) {
        if (bar == 5) f.Buy(2, 0, false);
        if (bar == 8) f.SetExitOnClose();
        if (bar == 9) f.SellShort(1, 0, false);
    });
    ASSERT_EQ(2u, data.TradeList.size());
    EXPECT_EQ(TripText(1, 2, 5, 8, 0, 0, 0, 2, 106, 109), Text(data.TradeList[0]));
    EXPECT_EQ(9, data.TradeList[1].nEntryBar);
}

// Stops called on every bar fire on the live bar, one entry by itself and then the
// rest of the position.
TEST_F(LiveBarRestoreTest, StopsFiringOnTheLiveBar) {
    data.CommissionValue = 1;
    SetBar(9, 108, 112, 100, 101);
    ExpectLiveBarLikeOneEvaluation([](CSystemFuncs& f, int32_t bar) {
        if (bar == 5) f.Buy(1, 0, false);
        if (bar == 7) f.Buy(1, 0, false);
        f.SetStopLoss(0, 75, false);
        f.SetDollarTrailing(100, true);
    });
    // The entry at 108 loses 75 at 100.50; the one at 106 is then trailed from the
    // best price 110 (bar 8's high) and stopped at 100.
    EXPECT_EQ(Trips(), (std::vector<std::string>{TripText(1, 2, 7, 9, 0, 0, 0, 1, 108, 100.5),
                                                 TripText(1, 2, 5, 9, 0, 0, 0, 1, 106, 100)}));
}

}  // namespace
