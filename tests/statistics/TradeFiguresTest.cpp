// The statistics functions over the finished round trips, each against hand-worked
// values.
#include <cmath>
#include <limits>
#include <string>

#include "statistics/StatisticsFixture.h"

namespace {

class TradeFiguresTest : public StatisticsTest {};

TEST_F(TradeFiguresTest, NoTradesGiveZeroEverywhere) {
    EXPECT_EQ(funcs.TotalTrades(), 0);
    EXPECT_EQ(funcs.NumWinTrades(), 0);
    EXPECT_EQ(funcs.NumLosTrades(), 0);
    EXPECT_EQ(funcs.NumEvenTrades(), 0);
    EXPECT_EQ(Bits(funcs.PercentProfit()), Bits(0.0));
    EXPECT_EQ(funcs.TotalBarsWinTrades(), 0);
    EXPECT_EQ(funcs.TotalBarsLosTrades(), 0);
    EXPECT_EQ(funcs.TotalBarsEvenTrades(), 0);
    EXPECT_EQ(funcs.AvgBarsWinTrade(), 0);
    EXPECT_EQ(funcs.AvgBarsLosTrade(), 0);
    EXPECT_EQ(funcs.AvgBarsEvenTrade(), 0);
    EXPECT_EQ(Bits(funcs.LargestWinTrade()), Bits(0.0));
    EXPECT_EQ(Bits(funcs.LargestLosTrade()), Bits(0.0));
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(0.0));
    EXPECT_EQ(Bits(funcs.GrossLoss()), Bits(0.0));
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(0.0));
    EXPECT_EQ(funcs.MaxConsecWinners(), 0);
    EXPECT_EQ(funcs.MaxConsecLosers(), 0);
}

// Every statistics function answers 0 for this object, whatever its list holds.
void ExpectAllZero(CSystemFuncs& f, const char* what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(f.TotalTrades(), 0);
    EXPECT_EQ(f.NumWinTrades(), 0);
    EXPECT_EQ(f.NumLosTrades(), 0);
    EXPECT_EQ(f.NumEvenTrades(), 0);
    EXPECT_EQ(Bits(f.PercentProfit()), Bits(0.0));
    EXPECT_EQ(f.TotalBarsWinTrades(), 0);
    EXPECT_EQ(f.TotalBarsLosTrades(), 0);
    EXPECT_EQ(f.TotalBarsEvenTrades(), 0);
    EXPECT_EQ(f.AvgBarsWinTrade(), 0);
    EXPECT_EQ(f.AvgBarsLosTrade(), 0);
    EXPECT_EQ(f.AvgBarsEvenTrade(), 0);
    EXPECT_EQ(Bits(f.LargestWinTrade()), Bits(0.0));
    EXPECT_EQ(Bits(f.LargestLosTrade()), Bits(0.0));
    EXPECT_EQ(Bits(f.GrossProfit()), Bits(0.0));
    EXPECT_EQ(Bits(f.GrossLoss()), Bits(0.0));
    EXPECT_EQ(Bits(f.NetProfit()), Bits(0.0));
    EXPECT_EQ(f.MaxConsecWinners(), 0);
    EXPECT_EQ(f.MaxConsecLosers(), 0);
}

TEST_F(TradeFiguresTest, OnlyATradingStrategyWithAResultBlockGetsFigures) {
    AddLong(5, 0, 2);
    AddLong(-3, 1, 4);
    AddLong(0, 2, 7);
    ASSERT_EQ(funcs.NetProfit(), 2.0);
    for (int32_t kind : {0, 3, 4, 5, 6, 8, -7}) {
        data.FormulaKind = kind;
        ExpectAllZero(funcs, std::to_string(kind).c_str());
    }
    data.FormulaKind = 7;
    data.Result = nullptr;
    ExpectAllZero(funcs, "no result block");
    data.Result = &result;
    EXPECT_EQ(funcs.TotalTrades(), 3);
    EXPECT_EQ(funcs.NetProfit(), 2.0);
    EXPECT_EQ(funcs.TotalBarsEvenTrades(), 5);
}

TEST_F(TradeFiguresTest, AnObjectWithoutHostDataAnswersZero) {
    CSystemFuncs detached(nullptr);
    ExpectAllZero(detached, "no host data");
}

TEST_F(TradeFiguresTest, PercentProfitDividesWholeNumbers) {
    AddLong(1);
    AddLong(2);
    AddLong(3);
    AddLong(-1);
    EXPECT_EQ(funcs.NumWinTrades(), 3);
    EXPECT_EQ(funcs.TotalTrades(), 4);
    EXPECT_EQ(Bits(funcs.PercentProfit()), Bits(0.0));
    data.TradeList[3] = Trip(1, 0, 1, 1, 100, 104);
    EXPECT_EQ(funcs.NumWinTrades(), 4);
    EXPECT_EQ(Bits(funcs.PercentProfit()), Bits(1.0));
}

TEST_F(TradeFiguresTest, ANetOfExactlyZeroIsEven) {
    AddLong(0);
    EXPECT_EQ(funcs.NumEvenTrades(), 1);
    EXPECT_EQ(funcs.NumWinTrades(), 0);
    EXPECT_EQ(funcs.NumLosTrades(), 0);
    EXPECT_EQ(funcs.NetProfit(), 0.0);
}

// The counting classification looks at the sign alone, the valued one leaves out
// nets within 0.0001 of zero.
TEST_F(TradeFiguresTest, ATinyNetCountsAsAWinButAddsNoMoney) {
    data.TradeList.push_back(Trip(1, 0, 2, 1, 100, 100.00005));
    AddLong(2);
    EXPECT_EQ(funcs.NumWinTrades(), 2);
    EXPECT_EQ(funcs.NumEvenTrades(), 0);
    EXPECT_EQ(funcs.TotalBarsWinTrades(), 3);
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(2.0));
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(2.0));
    EXPECT_EQ(Bits(funcs.LargestWinTrade()), Bits(2.0));
    EXPECT_EQ(funcs.MaxConsecWinners(), 2);

    data.TradeList.push_back(Trip(1, 0, 2, 1, 100, 99.99995));
    EXPECT_EQ(funcs.NumLosTrades(), 1);
    EXPECT_EQ(funcs.MaxConsecLosers(), 1);
    EXPECT_EQ(Bits(funcs.GrossLoss()), Bits(0.0));
    EXPECT_EQ(Bits(funcs.LargestLosTrade()), Bits(0.0));
}

TEST_F(TradeFiguresTest, AverageBarsTruncate) {
    AddLong(1, 2, 5);
    AddLong(1, 5, 9);
    EXPECT_EQ(funcs.TotalBarsWinTrades(), 7);
    EXPECT_EQ(funcs.AvgBarsWinTrade(), 3);
    AddLong(-1, 0, 4);
    AddLong(-1, 1, 3);
    AddLong(-1, 1, 3);
    EXPECT_EQ(funcs.TotalBarsLosTrades(), 8);
    EXPECT_EQ(funcs.AvgBarsLosTrade(), 2);
    AddLong(0, 3, 8);
    AddLong(0, 3, 3);
    EXPECT_EQ(funcs.TotalBarsEvenTrades(), 5);
    EXPECT_EQ(funcs.AvgBarsEvenTrade(), 2);
}

TEST_F(TradeFiguresTest, AverageOfNegativeBarsTruncatesTowardZero) {
    AddLong(1, 5, 2);
    AddLong(1, 5, 5);
    EXPECT_EQ(funcs.TotalBarsWinTrades(), -3);
    EXPECT_EQ(funcs.AvgBarsWinTrade(), -1);
}

TEST_F(TradeFiguresTest, ARoundTripOnOneBarHoldsNoBars) {
    AddLong(4, 3, 3);
    EXPECT_EQ(funcs.NumWinTrades(), 1);
    EXPECT_EQ(funcs.TotalBarsWinTrades(), 0);
    EXPECT_EQ(funcs.AvgBarsWinTrade(), 0);
}

TEST_F(TradeFiguresTest, BarSumsWrapAroundIn32Bits) {
    AddLong(1, INT32_MIN, INT32_MAX);  // INT32_MAX - INT32_MIN wraps to -1
    AddLong(1, 0, INT32_MAX);
    EXPECT_EQ(funcs.TotalBarsWinTrades(), INT32_MAX - 1);
    AddLong(1, -2, 0);
    EXPECT_EQ(funcs.TotalBarsWinTrades(), INT32_MIN);
    EXPECT_EQ(funcs.AvgBarsWinTrade(), INT32_MIN / 3);
}

TEST_F(TradeFiguresTest, LargestLoserIsTheLowestNet) {
    AddLong(3);
    EXPECT_EQ(Bits(funcs.LargestLosTrade()), Bits(0.0));
    AddLong(-5);
    AddLong(-8);
    AddLong(-2);
    EXPECT_EQ(Bits(funcs.LargestLosTrade()), Bits(-8.0));
    EXPECT_EQ(Bits(funcs.LargestWinTrade()), Bits(3.0));
}

TEST_F(TradeFiguresTest, MoneyFiguresAddNetsInListOrder) {
    AddLong(5);
    AddLong(-3);
    AddLong(0);
    data.TradeList.push_back(Trip(3, 1, 4, 2, 100, 101.5));  // a short losing 3
    data.TradeList.push_back(Trip(3, 1, 4, 1, 100, 96));     // a short gaining 4
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(9.0));
    EXPECT_EQ(Bits(funcs.GrossLoss()), Bits(-6.0));
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(3.0));
    EXPECT_EQ(funcs.NumWinTrades(), 2);
    EXPECT_EQ(funcs.NumLosTrades(), 2);
    EXPECT_EQ(funcs.NumEvenTrades(), 1);

    // 0.1 + 0.2 + 0.3 is not 0.3 + 0.2 + 0.1 in binary: the order is the list's.
    data.TradeList.clear();
    AddLong(0.1);
    AddLong(0.2);
    AddLong(0.3);
    double sum = 0.0;
    for (double move : {0.1, 0.2, 0.3}) sum += (100 + move) - 100;
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(sum));
}

TEST_F(TradeFiguresTest, NetProfitLeavesEvenTradesOut) {
    AddLong(5);
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 100.00005));
    const double tiny = (100.00005 - 100.0);
    ASSERT_GT(tiny, 0.0);
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(5.0));
}

TEST_F(TradeFiguresTest, RoundTripsOfAnotherKindNetMinusTheirCommission) {
    data.CommissionValue = 2;  // money per contract, both sides
    data.TradeList.push_back(Trip(2, 0, 1, 1, 100, 120));
    EXPECT_EQ(funcs.NumLosTrades(), 1);
    EXPECT_EQ(Bits(funcs.GrossLoss()), Bits(-4.0));
}

TEST_F(TradeFiguresTest, RunsFollowTheListAndEvenTradesEndThem) {
    for (double move : {1.0, 2.0, -1.0, 1.0, 1.0, 1.0, 0.0, 1.0, -1.0, -2.0, 0.0, -1.0})
        AddLong(move);
    EXPECT_EQ(funcs.MaxConsecWinners(), 3);
    EXPECT_EQ(funcs.MaxConsecLosers(), 2);
    AddLong(-1);
    AddLong(-1);
    EXPECT_EQ(funcs.MaxConsecLosers(), 3);
    EXPECT_EQ(funcs.MaxConsecWinners(), 3);
}

TEST_F(TradeFiguresTest, RunsUseTheExactClassification) {
    AddLong(1);
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 100.00005));  // valued even, counted a win
    AddLong(1);
    EXPECT_EQ(funcs.MaxConsecWinners(), 3);
    EXPECT_EQ(funcs.MaxConsecLosers(), 0);
}

// Each round trip is valued with its own series' properties; the current series is
// switched only for the valuation.
TEST_F(TradeFiguresTest, EachRoundTripIsValuedOnItsOwnSeries) {
    data.DataStreams.resize(2);
    UseInstrument(1, 10, 2);
    data.DataIndex = 0;
    AddLong(1);
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, 101, 1));
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(21.0));
    EXPECT_EQ(Bits(funcs.LargestWinTrade()), Bits(20.0));
    EXPECT_EQ(data.DataIndex, 0);
}

TEST_F(TradeFiguresTest, CommissionSettingsEnterTheNets) {
    data.CommissionValue = 0.5;  // money per contract
    data.TradeList.push_back(Trip(1, 0, 1, 2, 100, 101));
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(2.0 - 2.0));
    EXPECT_EQ(funcs.NumEvenTrades(), 1);
    data.SingleSideCommission = true;
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(1.0));
    data.SingleSideCommission = false;
    data.FreeCloseToday = true;
    data.TradeList.push_back(Trip(1, 3, 3, 2, 100, 101));  // a same-day round trip
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(1.0));
    EXPECT_EQ(funcs.NumWinTrades(), 1);
    data.CommissionType = 2;  // ten-thousandths of the traded value
    const double entrySide = 1 * 1.0 * (0.5 * 0.0001) * 2 * 100;
    const double exitSide = 1 * 1.0 * (0.5 * 0.0001) * 2 * 101;
    const double first = 2.0 - (entrySide + exitSide);
    const double second = 2.0 - entrySide;
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(0.0 + first + second + 0.0));
}

TEST_F(TradeFiguresTest, AnUnknownMarginModeNetsMinusTheCommission) {
    SetInteger(0, "MarginMode", 9);
    data.CommissionValue = 1;
    AddLong(5);
    EXPECT_EQ(funcs.NumLosTrades(), 1);
    EXPECT_EQ(Bits(funcs.NetProfit()), Bits(-2.0));
}

TEST_F(TradeFiguresTest, ANanPriceMakesALoser) {
    AddLong(2);
    data.TradeList.push_back(Trip(1, 0, 1, 1, 100, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(funcs.NumLosTrades(), 1);
    EXPECT_EQ(funcs.NumWinTrades(), 1);
    EXPECT_TRUE(std::isnan(funcs.GrossLoss()));
    EXPECT_EQ(Bits(funcs.GrossProfit()), Bits(2.0));
    EXPECT_EQ(Bits(funcs.LargestLosTrade()), Bits(0.0));
}

// The same walk carries what the summary of statistics mode 1 is made of: the
// valued classes with bars held counted inclusively, and the sum of squared nets.
TEST_F(TradeFiguresTest, TheWalkAlsoHoldsTheSummaryFigures) {
    AddLong(2, 1, 3);
    data.TradeList.push_back(Trip(1, 2, 2, 1, 100, 100.00005));
    AddLong(-3, 0, 4);
    AddLong(0, 6, 6);
    const TradeListFigures figures = Access::TradeFigures(funcs);
    EXPECT_EQ(figures.nValuedWinners, 1);
    EXPECT_EQ(figures.nValuedLosers, 1);
    EXPECT_EQ(figures.nValuedEven, 2);
    EXPECT_EQ(figures.nValuedBarsWinners, 3);
    EXPECT_EQ(figures.nValuedBarsLosers, 5);
    EXPECT_EQ(figures.nValuedBarsEven, 2);
    const double tiny = 100.00005 - 100;
    EXPECT_EQ(Bits(figures.dSumOfSquares), Bits(0.0 + 2.0 * 2.0 + tiny * tiny + 9.0 + 0.0));
    EXPECT_EQ(figures.nWinners, 2);
    EXPECT_EQ(figures.nEven, 1);
}

}  // namespace
