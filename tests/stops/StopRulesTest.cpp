// The fill rule and the judged price shared by every stop.
#include <gtest/gtest.h>

#include "FormulaFunction/stops/StopRules.h"

using ffstops::BarPrices;
using ffstops::InsideBar;
using ffstops::JudgedPrice;
using ffstops::StopFill;

namespace {

BarPrices MakeBar(double open, double high, double low, double close) {
    BarPrices bar;
    bar.open = open;
    bar.high = high;
    bar.low = low;
    bar.close = close;
    return bar;
}

TEST(StopRules, JudgedPriceIsTheExtremeOrTheCloseOnTheEntryBar) {
    const BarPrices bar = MakeBar(100, 104, 97, 101);
    EXPECT_EQ(JudgedPrice(bar, true, false), 104.0);
    EXPECT_EQ(JudgedPrice(bar, false, false), 97.0);
    EXPECT_EQ(JudgedPrice(bar, true, true), 101.0);
    EXPECT_EQ(JudgedPrice(bar, false, true), 101.0);
}

TEST(StopRules, InsideBarIncludesBothEnds) {
    const BarPrices bar = MakeBar(100, 104, 97, 101);
    EXPECT_TRUE(InsideBar(bar, 97.0));
    EXPECT_TRUE(InsideBar(bar, 104.0));
    EXPECT_TRUE(InsideBar(bar, 100.5));
    EXPECT_FALSE(InsideBar(bar, 96.99));
    EXPECT_FALSE(InsideBar(bar, 104.01));
}

TEST(StopRules, LongProtectiveStopTakesTheLowerOfOpenAndStop) {
    EXPECT_EQ(StopFill(MakeBar(99, 101, 94, 96), true, false, 95.0), 95.0);
    EXPECT_EQ(StopFill(MakeBar(94.5, 99, 93, 97), true, false, 95.0), 94.5);
    // Gapped through: the stop lies above the whole bar.
    EXPECT_EQ(StopFill(MakeBar(93, 94, 90, 92), true, false, 95.0), 93.0);
}

TEST(StopRules, ShortProtectiveStopTakesTheHigherOfOpenAndStop) {
    EXPECT_EQ(StopFill(MakeBar(101, 106, 99, 104), false, false, 105.0), 105.0);
    EXPECT_EQ(StopFill(MakeBar(105.5, 107, 104, 106), false, false, 105.0), 105.5);
    EXPECT_EQ(StopFill(MakeBar(107, 109, 106, 108), false, false, 105.0), 107.0);
}

TEST(StopRules, LongTargetTakesTheHigherOfOpenAndTarget) {
    EXPECT_EQ(StopFill(MakeBar(101, 106, 100, 104), true, true, 105.0), 105.0);
    EXPECT_EQ(StopFill(MakeBar(105.5, 107, 104, 106), true, true, 105.0), 105.5);
    EXPECT_EQ(StopFill(MakeBar(107, 109, 106.5, 108), true, true, 105.0), 107.0);
}

TEST(StopRules, ShortTargetTakesTheLowerOfOpenAndTarget) {
    EXPECT_EQ(StopFill(MakeBar(99, 100, 94, 96), false, true, 95.0), 95.0);
    EXPECT_EQ(StopFill(MakeBar(94.5, 96, 93, 94), false, true, 95.0), 94.5);
    EXPECT_EQ(StopFill(MakeBar(93, 94, 91, 92), false, true, 95.0), 93.0);
}

}  // namespace
