// The performance record that each closed round trip extends: all trades and each
// side, runs, bars held, the longest pause, and the period and calendar-month
// figures with their GBK keys.
#include <cmath>
#include <cstdint>
#include <string>

#include "statistics/StatisticsFixture.h"

namespace {

// "<year>年" and "<year>年<month>月" in the GBK code page.
std::string YearKey(const char* year) { return std::string(year) + "\xC4\xEA"; }
std::string MonthKey(const char* year, const char* month) {
    return YearKey(year) + month + "\xD4\xC2";
}

class TradePerformanceTest : public StatisticsTest {
protected:
    // Closes a round trip of the given side and bars with a gross result and a
    // commission, as the engine does in performance mode 2.
    void Close(bool isLong, double gross, double commission, int32_t entryBar, int32_t exitBar) {
        const tagTradeList trip = Trip(isLong ? 1 : 3, entryBar, exitBar, 1, 100, 100);
        Access::CalcTradePerformance(funcs, isLong, gross, commission, trip);
    }
    void Close(double net, int32_t entryBar = 0, int32_t exitBar = 1) {
        Close(true, net, 0.0, entryBar, exitBar);
    }
    int32_t AddBarAt(int64_t time) {
        AddBar(time);
        return static_cast<int32_t>(data.DataStreams[0].Bars.size()) - 1;
    }
    TradePerformance& perf = result.Performance;
};

TEST_F(TradePerformanceTest, AWinnerFillsAllTradesAndItsSide) {
    Close(true, 10.0, 2.5, 2, 5);
    for (const SideFigures* side : {&perf.All, &perf.Long}) {
        EXPECT_EQ(side->nTrades, 1);
        EXPECT_EQ(Bits(side->dNetProfit), Bits(7.5));
        EXPECT_EQ(Bits(side->dCommission), Bits(2.5));
        EXPECT_EQ(Bits(side->dLargestNet), Bits(7.5));
        EXPECT_EQ(Bits(side->dSmallestNet), Bits(0.0));
        EXPECT_EQ(Bits(side->dGrossProfit), Bits(7.5));
        EXPECT_EQ(Bits(side->dGrossLoss), Bits(0.0));
        EXPECT_EQ(side->nWinners, 1);
        EXPECT_EQ(side->nLosers, 0);
        EXPECT_EQ(side->nEvenTrades, 0);
        EXPECT_EQ(side->nWinRun, 1);
        EXPECT_EQ(side->nLongestWinRun, 1);
        EXPECT_EQ(side->nBarsWinners, 4);
        EXPECT_EQ(side->nBarsAll, 4);
    }
    EXPECT_EQ(perf.Short.nTrades, 0);
    EXPECT_EQ(Bits(perf.Short.dNetProfit), Bits(0.0));
    EXPECT_EQ(perf.PrevExitTime, data.DataStreams[0].Bars[5].time);
    EXPECT_EQ(perf.nLongestGapDays, 0);
}

TEST_F(TradePerformanceTest, AShortLoserFillsTheShortSide) {
    Close(false, -4.0, 1.0, 3, 4);
    EXPECT_EQ(perf.Long.nTrades, 0);
    for (const SideFigures* side : {&perf.All, &perf.Short}) {
        EXPECT_EQ(side->nTrades, 1);
        EXPECT_EQ(Bits(side->dNetProfit), Bits(-5.0));
        EXPECT_EQ(Bits(side->dCommission), Bits(1.0));
        EXPECT_EQ(Bits(side->dLargestNet), Bits(0.0));
        EXPECT_EQ(Bits(side->dSmallestNet), Bits(-5.0));
        EXPECT_EQ(Bits(side->dGrossLoss), Bits(-5.0));
        EXPECT_EQ(side->nLosers, 1);
        EXPECT_EQ(side->nLossRun, 1);
        EXPECT_EQ(side->nLongestLossRun, 1);
        EXPECT_EQ(side->nBarsLosers, 2);
        EXPECT_EQ(side->nBarsAll, 2);
    }
}

TEST_F(TradePerformanceTest, ATradeOnOneBarHoldsOneBarHere) {
    Close(3.0, 4, 4);
    EXPECT_EQ(perf.All.nBarsWinners, 1);
    EXPECT_EQ(perf.All.nBarsAll, 1);
    data.TradeList.push_back(Trip(1, 4, 4, 1, 100, 103));
    EXPECT_EQ(funcs.TotalBarsWinTrades(), 0);
}

TEST_F(TradePerformanceTest, LargestAndSmallestStartFromZero) {
    Close(-3.0);
    Close(-5.0);
    Close(-1.0);
    EXPECT_EQ(Bits(perf.All.dLargestNet), Bits(0.0));
    EXPECT_EQ(Bits(perf.All.dSmallestNet), Bits(-5.0));
    Close(2.0);
    Close(6.0);
    Close(1.0);
    EXPECT_EQ(Bits(perf.All.dLargestNet), Bits(6.0));
    EXPECT_EQ(Bits(perf.Long.dLargestNet), Bits(6.0));
    EXPECT_EQ(Bits(perf.Long.dSmallestNet), Bits(-5.0));
    EXPECT_EQ(Bits(perf.All.dNetProfit), Bits(0.0));
}

// Nets within 0.0001 of zero, both bounds included, are even: counted with their
// bars, but they neither break a run nor add to the bars of all trades.
TEST_F(TradePerformanceTest, EvenTradesLeaveRunsAndAllBarsAlone) {
    Close(1.0, 0, 2);
    Close(0.00005, 0, 3);
    Close(0.0001, 0, 1);
    Close(-0.0001, 2, 2);
    Close(0.0, 5, 9);
    Close(1.0, 0, 0);
    EXPECT_EQ(perf.All.nEvenTrades, 4);
    EXPECT_EQ(perf.All.nBarsEven, 4 + 2 + 1 + 5);
    EXPECT_EQ(perf.All.nWinners, 2);
    EXPECT_EQ(perf.All.nWinRun, 2);
    EXPECT_EQ(perf.All.nLongestWinRun, 2);
    EXPECT_EQ(perf.All.nBarsWinners, 3 + 1);
    EXPECT_EQ(perf.All.nBarsAll, 4);
    EXPECT_EQ(Bits(perf.All.dGrossProfit), Bits(2.0));
    EXPECT_EQ(perf.All.nTrades, 6);
    EXPECT_EQ(Bits(perf.All.dNetProfit),
              Bits(0.0 + 1.0 + 0.00005 + 0.0001 + -0.0001 + 0.0 + 1.0));
    EXPECT_EQ(perf.Long.nEvenTrades, 4);

    Close(0.00011);
    EXPECT_EQ(perf.All.nWinners, 3);
}

TEST_F(TradePerformanceTest, RunsOfAllTradesAndOfEachSide) {
    Close(true, 1.0, 0.0, 0, 1);
    Close(false, 1.0, 0.0, 0, 1);
    Close(true, -1.0, 0.0, 0, 1);
    Close(true, 1.0, 0.0, 0, 1);
    Close(false, 2.0, 0.0, 0, 1);
    Close(false, 2.0, 0.0, 0, 1);
    EXPECT_EQ(perf.All.nLongestWinRun, 3);
    EXPECT_EQ(perf.All.nWinRun, 3);
    EXPECT_EQ(perf.All.nLossRun, 0);
    EXPECT_EQ(perf.All.nLongestLossRun, 1);
    EXPECT_EQ(perf.Long.nLongestWinRun, 1);
    EXPECT_EQ(perf.Long.nWinRun, 1);
    EXPECT_EQ(perf.Short.nLongestWinRun, 3);
    EXPECT_EQ(perf.Short.nLosers, 0);
    Close(false, -2.0, 0.0, 0, 1);
    Close(false, -2.0, 0.0, 0, 1);
    EXPECT_EQ(perf.Short.nLossRun, 2);
    EXPECT_EQ(perf.Short.nWinRun, 0);
    EXPECT_EQ(perf.Short.nLongestWinRun, 3);
    EXPECT_EQ(perf.All.nLongestLossRun, 2);
    EXPECT_EQ(perf.Long.nLossRun, 0);
}

TEST_F(TradePerformanceTest, TheLongestGapRunsFromAnExitToTheNextEntry) {
    Close(1.0, 0, 2);  // the first trade: no gap measured, though bar 0 is days after 1970
    EXPECT_EQ(perf.nLongestGapDays, 0);
    Close(1.0, 7, 8);  // 3 March 10:30 to 8 March 10:30
    EXPECT_EQ(perf.nLongestGapDays, 5);
    Close(1.0, 10, 11);  // two days
    EXPECT_EQ(perf.nLongestGapDays, 5);
    Close(1.0, 3, 12);  // entered before the previous exit
    EXPECT_EQ(perf.nLongestGapDays, 5);
    EXPECT_EQ(perf.PrevExitTime, data.DataStreams[0].Bars[12].time);
    // Whole days only: one second short of seven days counts six.
    data.DataStreams[0].Bars[19].time = data.DataStreams[0].Bars[12].time + 7 * 86400000LL - 1000;
    Close(1.0, 19, 19);
    EXPECT_EQ(perf.nLongestGapDays, 6);
}

TEST_F(TradePerformanceTest, AMissingBarMeasuresNoGap) {
    Close(1.0, 0, 2);
    Close(1.0, 40, 3);  // no entry bar
    EXPECT_EQ(perf.nLongestGapDays, 0);
    Close(1.0, 0, 40);  // no exit bar: no exit time is kept
    EXPECT_EQ(perf.PrevExitTime, 0);
    Close(1.0, 19, 19);
    EXPECT_EQ(perf.nLongestGapDays, 0);
    EXPECT_EQ(perf.All.nTrades, 4);
}

TEST_F(TradePerformanceTest, PeriodsFollowTheExitDateAndOnlyTheLastRecordIsCompared) {
    const int32_t january = AddBarAt(LocalMs(2011, 1, 5));
    const int32_t december = AddBarAt(LocalMs(2010, 12, 20));
    Close(8.0, 0, 2);
    Close(-2.0, 0, 3);
    Close(4.0, 3, january);
    Close(1.0, january, december);
    ASSERT_EQ(perf.Years.size(), 3u);
    EXPECT_EQ(perf.Years[0].strKey, YearKey("2010"));
    EXPECT_EQ(perf.Years[0].strKey, "2010\xC4\xEA");
    EXPECT_EQ(perf.Years[0].nTrades, 2);
    EXPECT_EQ(perf.Years[1].strKey, YearKey("2011"));
    EXPECT_EQ(perf.Years[1].nTrades, 1);
    EXPECT_EQ(perf.Years[2].strKey, YearKey("2010"));
    EXPECT_EQ(perf.Years[2].nTrades, 1);
    ASSERT_EQ(perf.Months.size(), 3u);
    EXPECT_EQ(perf.Months[0].strKey, MonthKey("2010", "3"));
    EXPECT_EQ(perf.Months[0].strKey, "2010\xC4\xEA" "3\xD4\xC2");
    EXPECT_EQ(perf.Months[1].strKey, MonthKey("2011", "1"));
    EXPECT_EQ(perf.Months[2].strKey, MonthKey("2010", "12"));
    EXPECT_EQ(Bits(perf.Months[2].dNetProfit), Bits(1.0));
}

TEST_F(TradePerformanceTest, APeriodRecordKeepsItsFigures) {
    Close(8.0, 0, 2);
    ASSERT_EQ(perf.Months.size(), 1u);
    PeriodRecord& month = perf.Months[0];
    EXPECT_EQ(Bits(month.dNetProfit), Bits(8.0));
    EXPECT_EQ(month.nTrades, 1);
    EXPECT_EQ(month.nWinners, 1);
    EXPECT_EQ(Bits(month.dWinnersGrossProfit), Bits(8.0));
    EXPECT_EQ(Bits(month.dReturnRatio), Bits(8.0 / 100000));
    EXPECT_EQ(Bits(month.dProfitFactor), Bits(1.0));  // nothing but the winner
    EXPECT_EQ(Bits(month.dPercentProfitable), Bits(1.0));

    Close(-2.0, 0, 3);
    EXPECT_EQ(Bits(month.dNetProfit), Bits(6.0));
    EXPECT_EQ(month.nTrades, 2);
    EXPECT_EQ(month.nWinners, 1);
    EXPECT_EQ(Bits(month.dReturnRatio), Bits(6.0 / 100000));
    EXPECT_EQ(Bits(month.dProfitFactor), Bits(4.0));  // |8 / (6 - 8)|
    EXPECT_EQ(Bits(month.dPercentProfitable), Bits(0.5));

    Close(0.00005, 0, 4);  // even: not a winner
    EXPECT_EQ(month.nWinners, 1);
    EXPECT_EQ(month.nTrades, 3);
    EXPECT_EQ(Bits(month.dNetProfit), Bits(6.0 + 0.00005));
    EXPECT_EQ(Bits(month.dPercentProfitable), Bits(1.0 / 3));
    EXPECT_EQ(Bits(month.dProfitFactor), Bits(std::fabs(8.0 / (6.0 + 0.00005 - 8.0))));

    Close(2.0, 0, 5);
    EXPECT_EQ(Bits(month.dWinnersGrossProfit), Bits(10.0));
    const double net = 6.0 + 0.00005 + 2.0;
    EXPECT_EQ(Bits(month.dProfitFactor), Bits(std::fabs(10.0 / (net - 10.0))));
    EXPECT_EQ(perf.Years[0].nTrades, 4);
    EXPECT_EQ(Bits(perf.Years[0].dNetProfit), Bits(net));
}

TEST_F(TradePerformanceTest, ProfitFactorIsOneWhenTheOthersNetNothing) {
    Close(5.0, 0, 2);
    Close(0.00009, 0, 2);  // others net 0.00009: within the guard
    EXPECT_EQ(Bits(perf.Months[0].dProfitFactor), Bits(1.0));
    Close(-0.0002, 0, 2);  // others now net -0.00011: outside it
    const double net = 5.0 + 0.00009 + -0.0002;
    EXPECT_EQ(Bits(perf.Months[0].dProfitFactor), Bits(std::fabs(5.0 / (net - 5.0))));
}

TEST_F(TradePerformanceTest, ANewPeriodOpenedByALoserHasNoWinners) {
    Close(-2.0, 0, 2);
    const PeriodRecord& year = perf.Years[0];
    EXPECT_EQ(year.nWinners, 0);
    EXPECT_EQ(Bits(year.dWinnersGrossProfit), Bits(0.0));
    EXPECT_EQ(Bits(year.dProfitFactor), Bits(0.0));
    EXPECT_EQ(Bits(year.dPercentProfitable), Bits(0.0));
    EXPECT_EQ(Bits(year.dReturnRatio), Bits(-2.0 / 100000));
}

TEST_F(TradePerformanceTest, WithoutInitialCapitalTheReturnRatioIsTheNet) {
    data.InitialCapital = 0;
    Close(3.5, 0, 2);
    Close(1.25, 0, 2);
    EXPECT_EQ(Bits(perf.Years[0].dReturnRatio), Bits(4.75));
    EXPECT_EQ(Bits(perf.Months[0].dReturnRatio), Bits(4.75));
}

// Only a capital of exactly zero (either sign) is replaced by 1.0; a negative one
// divides as it stands.
TEST_F(TradePerformanceTest, TheReturnRatioDividesByANegativeCapitalAsItStands) {
    data.InitialCapital = -50000;
    Close(5.0, 0, 2);
    Close(-2.5, 0, 2);
    EXPECT_EQ(Bits(perf.Years[0].dReturnRatio), Bits(2.5 / -50000.0));
    EXPECT_EQ(Bits(perf.Months[0].dReturnRatio), Bits(2.5 / -50000.0));
    data.InitialCapital = -0.0;
    Close(1.0, 0, 2);
    EXPECT_EQ(Bits(perf.Years[0].dReturnRatio), Bits(3.5));
    data.InitialCapital = 0.5;
    Close(1.0, 0, 2);
    EXPECT_EQ(Bits(perf.Months[0].dReturnRatio), Bits(4.5 / 0.5));
}

TEST_F(TradePerformanceTest, CalendarMonthsAddUpAcrossYears) {
    const int32_t nextMarch = AddBarAt(LocalMs(2011, 3, 9));
    const int32_t july = AddBarAt(LocalMs(2011, 7, 1));
    Close(5.0, 0, 2);
    Close(-1.0, 0, 3);
    Close(0.00002, 0, nextMarch);
    Close(2.0, 0, july);
    const MonthFigures& march = perf.ByMonth[2];
    EXPECT_EQ(march.nTrades, 3);
    EXPECT_EQ(Bits(march.dNetProfit), Bits(5.0 + -1.0 + 0.00002));
    EXPECT_EQ(march.nWinners, 1);
    EXPECT_EQ(Bits(march.dGrossProfit), Bits(5.0));
    EXPECT_EQ(perf.ByMonth[6].nTrades, 1);
    EXPECT_EQ(perf.ByMonth[6].nWinners, 1);
    for (int m : {0, 1, 3, 4, 5, 7, 8, 9, 10, 11}) EXPECT_EQ(perf.ByMonth[m].nTrades, 0) << m;
    EXPECT_EQ(perf.Years.size(), 2u);
    EXPECT_EQ(perf.Months.size(), 3u);
}

TEST_F(TradePerformanceTest, AnExitBarThatDoesNotExistAddsNoPeriod) {
    Close(5.0, 0, 99);
    EXPECT_TRUE(perf.Years.empty());
    EXPECT_TRUE(perf.Months.empty());
    EXPECT_EQ(perf.ByMonth[2].nTrades, 0);
    EXPECT_EQ(perf.All.nTrades, 1);
    EXPECT_EQ(perf.All.nBarsWinners, 99 - 0 + 1);
}

TEST_F(TradePerformanceTest, OutsideAStrategyNothingIsRecorded) {
    data.FormulaKind = 5;
    Close(5.0, 0, 2);
    data.FormulaKind = 7;
    data.Result = nullptr;
    Close(5.0, 0, 2);
    EXPECT_EQ(perf.All.nTrades, 0);
    EXPECT_TRUE(perf.Years.empty());
}

TEST_F(TradePerformanceTest, HeldBarsWrapAroundIn32Bits) {
    Close(5.0, 0, INT32_MAX);
    EXPECT_EQ(perf.All.nBarsWinners, INT32_MIN);
    EXPECT_EQ(perf.All.nBarsAll, INT32_MIN);
}

// The local date of the exit bar decides the period: 31 December 2010 at 20:00 UTC
// is already 2011 in Shanghai but still 2010 in New York.
class TradePerformanceZoneTest : public StatisticsTest {
protected:
    explicit TradePerformanceZoneTest(fftest::Zone zone) : StatisticsTest(zone) {}
    void CloseAtNewYearsEve() {
        AddBar(1293825600000LL);  // 2010-12-31 20:00 UTC
        const int32_t bar = static_cast<int32_t>(data.DataStreams[0].Bars.size()) - 1;
        Access::CalcTradePerformance(funcs, true, 2.0, 0.0, Trip(1, 0, bar, 1, 100, 102));
    }
};

class ShanghaiPerformanceTest : public TradePerformanceZoneTest {
protected:
    ShanghaiPerformanceTest() : TradePerformanceZoneTest(fftest::Zone::Shanghai) {}
};

class NewYorkPerformanceTest : public TradePerformanceZoneTest {
protected:
    NewYorkPerformanceTest() : TradePerformanceZoneTest(fftest::Zone::NewYork) {}
};

TEST_F(ShanghaiPerformanceTest, TheExitFallsIntoTheNewYear) {
    CloseAtNewYearsEve();
    ASSERT_EQ(result.Performance.Years.size(), 1u);
    EXPECT_EQ(result.Performance.Years[0].strKey, YearKey("2011"));
    EXPECT_EQ(result.Performance.Months[0].strKey, MonthKey("2011", "1"));
    EXPECT_EQ(result.Performance.ByMonth[0].nTrades, 1);
}

TEST_F(NewYorkPerformanceTest, TheExitStaysInTheOldYear) {
    CloseAtNewYearsEve();
    ASSERT_EQ(result.Performance.Years.size(), 1u);
    EXPECT_EQ(result.Performance.Years[0].strKey, YearKey("2010"));
    EXPECT_EQ(result.Performance.Months[0].strKey, MonthKey("2010", "12"));
    EXPECT_EQ(result.Performance.ByMonth[11].nTrades, 1);
}

// The gap counts elapsed seconds: over the spring clock change two days from 10:30
// to 10:30 are 47 hours, one whole day.
TEST_F(NewYorkPerformanceTest, TheGapCountsElapsedTimeOverAClockChange) {
    data.DataStreams[0].Bars.clear();
    AddBar(LocalMs(2010, 3, 12));
    AddBar(LocalMs(2010, 3, 13));
    AddBar(LocalMs(2010, 3, 15));
    AddBar(LocalMs(2010, 3, 18));
    Access::CalcTradePerformance(funcs, true, 1.0, 0.0, Trip(1, 0, 1, 1, 100, 101));
    Access::CalcTradePerformance(funcs, true, 1.0, 0.0, Trip(1, 2, 2, 1, 100, 101));
    EXPECT_EQ(result.Performance.nLongestGapDays, 1);
    Access::CalcTradePerformance(funcs, true, 1.0, 0.0, Trip(1, 3, 3, 1, 100, 101));
    EXPECT_EQ(result.Performance.nLongestGapDays, 3);
}

// The engine's closing code extends the record in performance mode 2 only.
class EngineRecordTest : public StatisticsTest {
protected:
    void SetUp() override {
        StatisticsTest::SetUp();
        SetDouble(0, "MarginRatio", 0.1);
        SetInteger(0, "MaxSingleTradeSize", 0);
        SetInteger(0, "Spread", 0);
        SetInteger(0, "BarType", 0);
        SetInteger(0, "BarInterval", 1);
        data.MaxOpenEntries = 5;
        data.AllowSameSourceEntries = true;
        data.MaxPositionContracts = 10;
        data.MarginRate = 0.1;
        data.TradeSizeValue = 1;
        data.CommissionValue = 0.5;
        for (size_t i = 0; i < data.DataStreams[0].Bars.size(); ++i) {
            BarRecord& bar = data.DataStreams[0].Bars[i];
            bar.open = bar.close = 100 + static_cast<double>(i);
            bar.high = bar.close + 2;
            bar.low = bar.close - 2;
        }
    }
};

TEST_F(EngineRecordTest, ExitsReversalsAndStopClosesAreRecordedInModeTwo) {
    data.PerformanceMode = 2;
    data.CurrentBar = 1;
    ASSERT_TRUE(funcs.Buy(2, 0, false));  // 2 at 101
    data.CurrentBar = 3;
    ASSERT_TRUE(funcs.Sell(1, 0, false));  // 1 at 103: +2 less 1 commission
    EXPECT_EQ(result.Performance.All.nTrades, 1);
    EXPECT_EQ(Bits(result.Performance.All.dNetProfit), Bits(1.0));
    EXPECT_EQ(result.Performance.All.nBarsWinners, 3);
    data.CurrentBar = 4;
    ASSERT_TRUE(funcs.SellShort(1, 0, false));  // reverses: 1 at 104, +3 less 1
    EXPECT_EQ(result.Performance.All.nTrades, 2);
    EXPECT_EQ(result.Performance.Long.nTrades, 2);
    EXPECT_EQ(Bits(result.Performance.Long.dNetProfit), Bits(1.0 + 2.0));
    data.CurrentBar = 6;
    const tagTradeSignal entry = data.OpenEntries.at(0);
    Access::ClosePosition(funcs, entry, 103);  // the short closed by a stop: +1 less 1
    EXPECT_EQ(result.Performance.Short.nTrades, 1);
    EXPECT_EQ(result.Performance.Short.nEvenTrades, 1);
    EXPECT_EQ(result.Performance.All.nTrades, 3);
    EXPECT_EQ(Bits(result.Performance.All.dCommission), Bits(3.0));
    EXPECT_EQ(data.TradeList.size(), 3u);
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(result.Performance.All.dGrossProfit +
                                             result.Performance.All.dGrossLoss));
}

TEST_F(EngineRecordTest, ShortsClosedByCoverAndByReversalFillTheShortSide) {
    data.PerformanceMode = 2;
    data.CurrentBar = 2;
    ASSERT_TRUE(funcs.SellShort(2, 0, false));  // 2 at 102
    data.CurrentBar = 5;
    ASSERT_TRUE(funcs.BuyToCover(1, 0, false));  // 1 at 105: -3 less 1
    EXPECT_EQ(result.Performance.Short.nTrades, 1);
    EXPECT_EQ(result.Performance.Short.nLosers, 1);
    EXPECT_EQ(Bits(result.Performance.Short.dNetProfit), Bits(-4.0));
    EXPECT_EQ(result.Performance.Short.nBarsLosers, 4);
    data.CurrentBar = 7;
    ASSERT_TRUE(funcs.Buy(1, 0, false));  // reverses the other at 107: -5 less 1
    EXPECT_EQ(result.Performance.Short.nTrades, 2);
    EXPECT_EQ(result.Performance.Short.nLossRun, 2);
    EXPECT_EQ(result.Performance.Short.nLongestLossRun, 2);
    EXPECT_EQ(Bits(result.Performance.Short.dSmallestNet), Bits(-6.0));
    EXPECT_EQ(Bits(result.Performance.Short.dGrossLoss), Bits(-4.0 + -6.0));
    EXPECT_EQ(result.Performance.Long.nTrades, 0);
    EXPECT_EQ(result.Performance.All.nTrades, 2);
    EXPECT_EQ(Bits(result.Performance.All.dCommission), Bits(2.0));
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(-10.0));
    EXPECT_EQ(funcs.MaxConsecLosers(), 2);
}

TEST_F(EngineRecordTest, OtherModesLeaveTheRecordAlone) {
    for (int32_t mode : {0, 1, 3}) {
        data.PerformanceMode = mode;
        data.CurrentBar = 1;
        ASSERT_TRUE(funcs.Buy(1, 0, false));
        data.CurrentBar = 3;
        ASSERT_TRUE(funcs.Sell(0, 0, false));
    }
    EXPECT_EQ(data.TradeList.size(), 3u);
    EXPECT_EQ(result.Performance.All.nTrades, 0);
    EXPECT_TRUE(result.Performance.Years.empty());
    EXPECT_EQ(funcs.NumWinTrades(), 3);
}

}  // namespace
