#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "OutputTestData.h"

namespace {

using outputtest::kInvalidNumeric;
using outputtest::MakeData;

// Full-width Latin capital and small A in GBK, and a pair whose trail byte happens
// to be an ASCII letter.
const std::string kWideUpperA = "\xA3\xC1";
const std::string kWideLowerA = "\xA3\xE1";

void ExpectDefault(const PlotPoint& p) {
    EXPECT_FALSE(p.bBoolSet);
    EXPECT_FALSE(p.bBoolValue);
    EXPECT_FALSE(p.bNumericSet);
    EXPECT_EQ(p.dNumeric, 0.0);
    EXPECT_FALSE(p.bTextSet);
    EXPECT_EQ(p.strText, "");
    EXPECT_FALSE(p.bColourSet);
    EXPECT_EQ(p.nColour, -1);
}

TEST(PlotKind6, NumericGoesToTheCurrentBarOfTheOneSeries) {
    CKelBaseData data = MakeData(6, 10, 3);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("whatever", 10.5, -1, 0), 10.5);
    ASSERT_EQ(data.PlotPoints.size(), 10u);
    EXPECT_TRUE(data.PlotPoints[3].bNumericSet);
    EXPECT_EQ(data.PlotPoints[3].dNumeric, 10.5);
    EXPECT_FALSE(data.PlotPoints[3].bColourSet);
    EXPECT_EQ(data.PlotPoints[3].nColour, -1);
    for (size_t i = 0; i < 10; ++i)
        if (i != 3) ExpectDefault(data.PlotPoints[i]);
    EXPECT_TRUE(data.PlotNames.empty());
    EXPECT_TRUE(data.PlotSeries.empty());
}

TEST(PlotKind6, BarsAgoAddressesAnEarlierBarAndTheNameIsIgnored) {
    CKelBaseData data = MakeData(6, 10, 3);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("a", 1.0, 255, 2), 1.0);
    EXPECT_EQ(f.PlotNumeric("b", 2.0, -1, 3), 2.0);
    EXPECT_EQ(data.PlotPoints[1].dNumeric, 1.0);
    EXPECT_TRUE(data.PlotPoints[1].bColourSet);
    EXPECT_EQ(data.PlotPoints[1].nColour, 255);
    EXPECT_EQ(data.PlotPoints[0].dNumeric, 2.0);
    EXPECT_TRUE(data.PlotPoints[0].bNumericSet);
}

TEST(PlotKind6, NegativeBarsAgoReachesALaterBarInsideTheSeries) {
    CKelBaseData data = MakeData(6, 10, 3);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("", 7.0, -1, -1), 7.0);
    EXPECT_EQ(data.PlotPoints[4].dNumeric, 7.0);
    EXPECT_TRUE(data.PlotPoints[4].bNumericSet);
}

TEST(PlotKind6, BarsOutsideTheMainStreamStoreNothing) {
    CKelBaseData data = MakeData(6, 10, 3);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, 4), kInvalidNumeric);
    EXPECT_FALSE(f.PlotBool("x", true, -1, 4));
    EXPECT_EQ(f.PlotString("x", "t", -1, 4), "N/A");
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, std::numeric_limits<int32_t>::min()), kInvalidNumeric);
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, std::numeric_limits<int32_t>::max()), kInvalidNumeric);
    EXPECT_TRUE(data.PlotPoints.empty());

    data.CurrentBar = 9;  // the last bar: nothing lies after it
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, -1), kInvalidNumeric);
    EXPECT_TRUE(data.PlotPoints.empty());
}

TEST(PlotKind6, InvalidValuesAreStoredButNotMarkedSet) {
    CKelBaseData data = MakeData(6, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("x", kInvalidNumeric, -1, 0), kInvalidNumeric);
    EXPECT_FALSE(data.PlotPoints[2].bNumericSet);
    EXPECT_EQ(data.PlotPoints[2].dNumeric, kInvalidNumeric);

    EXPECT_EQ(f.PlotString("x", "N/A", 12, 0), "N/A");
    EXPECT_FALSE(data.PlotPoints[2].bTextSet);
    EXPECT_EQ(data.PlotPoints[2].strText, "N/A");
    EXPECT_TRUE(data.PlotPoints[2].bColourSet);
    EXPECT_EQ(data.PlotPoints[2].nColour, 12);
}

TEST(PlotKind6, OneBarCarriesNumberBooleanAndTextTogether) {
    CKelBaseData data = MakeData(6, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("x", 3.25, 100, 0), 3.25);
    EXPECT_FALSE(f.PlotBool("x", false, 200, 0));
    EXPECT_EQ(f.PlotString("x", "up", -1, 0), "up");
    const PlotPoint& p = data.PlotPoints[2];
    EXPECT_TRUE(p.bNumericSet);
    EXPECT_EQ(p.dNumeric, 3.25);
    EXPECT_TRUE(p.bBoolSet);
    EXPECT_FALSE(p.bBoolValue);
    EXPECT_TRUE(p.bTextSet);
    EXPECT_EQ(p.strText, "up");
    EXPECT_FALSE(p.bColourSet);  // the last call's colour wins
    EXPECT_EQ(p.nColour, -1);

    EXPECT_TRUE(f.PlotBool("x", true, 5, 0));
    EXPECT_TRUE(p.bBoolValue);
    EXPECT_TRUE(p.bColourSet);
    EXPECT_EQ(p.nColour, 5);
}

TEST(PlotKind6, TheSeriesGrowsWithTheChartAndIsNeverShortened) {
    CKelBaseData data = MakeData(6, 5, 4);
    CSystemFuncs f(&data);
    f.PlotNumeric("x", 1.0, -1, 0);
    ASSERT_EQ(data.PlotPoints.size(), 5u);
    data.DataStreams[0].Bars.resize(7);
    data.CurrentBar = 6;
    f.PlotNumeric("x", 2.0, -1, 0);
    ASSERT_EQ(data.PlotPoints.size(), 7u);
    EXPECT_EQ(data.PlotPoints[4].dNumeric, 1.0);
    EXPECT_EQ(data.PlotPoints[6].dNumeric, 2.0);

    data.PlotPoints.resize(12);
    f.PlotNumeric("x", 3.0, -1, 0);
    EXPECT_EQ(data.PlotPoints.size(), 12u);
}

TEST(PlotKind6, TheMainStreamSizesTheSeriesWhateverStreamIsCurrent) {
    CKelBaseData data = MakeData(6, 10, 7);
    data.DataStreams.resize(2);
    data.DataStreams[1].Bars.resize(5);
    data.DataIndex = 1;
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, 0), 1.0);
    ASSERT_EQ(data.PlotPoints.size(), 10u);
    EXPECT_EQ(data.PlotPoints[7].dNumeric, 1.0);
}

TEST(PlotKind4, ANewNameCreatesASeriesAndOtherCaseFindsIt) {
    CKelBaseData data = MakeData(4, 10, 3);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("Ma5", 10.5, -1, 0), 10.5);
    ASSERT_EQ(data.PlotNames.size(), 1u);
    EXPECT_EQ(data.PlotNames[0], "Ma5");
    ASSERT_EQ(data.PlotSeries.size(), 1u);
    ASSERT_EQ(data.PlotSeries[0].size(), 10u);
    EXPECT_TRUE(data.PlotSeries[0][3].bNumericSet);
    EXPECT_EQ(data.PlotSeries[0][3].dNumeric, 10.5);
    EXPECT_FALSE(data.PlotSeries[0][3].bColourSet);
    EXPECT_TRUE(data.PlotPoints.empty());

    data.CurrentBar = 4;
    EXPECT_EQ(f.PlotNumeric("mA5", 11.0, 255, 0), 11.0);
    ASSERT_EQ(data.PlotNames.size(), 1u);
    EXPECT_EQ(data.PlotNames[0], "Ma5");
    EXPECT_EQ(data.PlotSeries[0][4].dNumeric, 11.0);
    EXPECT_TRUE(data.PlotSeries[0][4].bColourSet);
    EXPECT_EQ(data.PlotSeries[0][4].nColour, 255);
    EXPECT_EQ(data.PlotSeries[0][3].dNumeric, 10.5);
}

TEST(PlotKind4, EachNameHasItsOwnSeriesInOrderOfFirstUse) {
    CKelBaseData data = MakeData(4, 6, 5);
    CSystemFuncs f(&data);
    f.PlotNumeric("fast", 1.0, -1, 0);
    f.PlotBool("slow", true, -1, 1);
    f.PlotString("", "empty name", -1, 2);
    f.PlotNumeric("FAST", 2.0, -1, 1);
    ASSERT_EQ(data.PlotNames.size(), 3u);
    EXPECT_EQ(data.PlotNames[0], "fast");
    EXPECT_EQ(data.PlotNames[1], "slow");
    EXPECT_EQ(data.PlotNames[2], "");
    ASSERT_EQ(data.PlotSeries.size(), 3u);
    EXPECT_EQ(data.PlotSeries[0][5].dNumeric, 1.0);
    EXPECT_EQ(data.PlotSeries[0][4].dNumeric, 2.0);
    EXPECT_TRUE(data.PlotSeries[1][4].bBoolSet);
    EXPECT_FALSE(data.PlotSeries[1][5].bBoolSet);
    EXPECT_EQ(data.PlotSeries[2][3].strText, "empty name");
    EXPECT_TRUE(data.PlotSeries[2][3].bTextSet);
}

TEST(PlotKind4, FullWidthLettersFoldWithTheirOwnCaseOnly) {
    CKelBaseData data = MakeData(4, 4, 1);
    CSystemFuncs f(&data);
    f.PlotNumeric(kWideUpperA + "1", 1.0, -1, 0);
    f.PlotNumeric(kWideLowerA + "1", 2.0, -1, 0);
    ASSERT_EQ(data.PlotNames.size(), 1u);
    EXPECT_EQ(data.PlotSeries[0][1].dNumeric, 2.0);

    // A full-width letter is not its ASCII counterpart.
    f.PlotNumeric("A1", 3.0, -1, 0);
    ASSERT_EQ(data.PlotNames.size(), 2u);
    EXPECT_EQ(data.PlotSeries[0][1].dNumeric, 2.0);
    EXPECT_EQ(data.PlotSeries[1][1].dNumeric, 3.0);
}

TEST(PlotKind4, ADoubleByteCharacterIsNotFoldedThroughItsTrailByte) {
    CKelBaseData data = MakeData(4, 4, 1);
    CSystemFuncs f(&data);
    f.PlotNumeric("\x81\x41", 1.0, -1, 0);
    f.PlotNumeric("\x81\x61", 2.0, -1, 0);
    ASSERT_EQ(data.PlotNames.size(), 2u);
    EXPECT_EQ(data.PlotSeries[0][1].dNumeric, 1.0);
    EXPECT_EQ(data.PlotSeries[1][1].dNumeric, 2.0);
}

TEST(PlotKind4, AKnownSeriesShorterThanTheChartIsGrown) {
    CKelBaseData data = MakeData(4, 5, 4);
    CSystemFuncs f(&data);
    f.PlotNumeric("x", 1.0, -1, 0);
    data.DataStreams[0].Bars.resize(8);
    data.CurrentBar = 7;
    EXPECT_EQ(f.PlotNumeric("X", 2.0, -1, 0), 2.0);
    ASSERT_EQ(data.PlotSeries[0].size(), 8u);
    EXPECT_EQ(data.PlotSeries[0][7].dNumeric, 2.0);
    EXPECT_EQ(data.PlotSeries[0][4].dNumeric, 1.0);
}

TEST(PlotKind4, ANameTheHostListsWithoutASeriesGetsOne) {
    CKelBaseData data = MakeData(4, 3, 2);
    data.PlotNames.push_back("orphan");
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("ORPHAN", 4.0, -1, 0), 4.0);
    ASSERT_EQ(data.PlotNames.size(), 1u);
    ASSERT_EQ(data.PlotSeries.size(), 1u);
    ASSERT_EQ(data.PlotSeries[0].size(), 3u);
    EXPECT_EQ(data.PlotSeries[0][2].dNumeric, 4.0);
}

TEST(PlotKinds, OtherKindsStoreNothing) {
    for (int32_t kind : {0, 3, 5, 7}) {
        CKelBaseData data = MakeData(kind, 5, 2);
        CSystemFuncs f(&data);
        EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, 0), kInvalidNumeric) << kind;
        EXPECT_FALSE(f.PlotBool("x", true, -1, 0)) << kind;
        EXPECT_EQ(f.PlotString("x", "t", -1, 0), "N/A") << kind;
        EXPECT_TRUE(data.PlotPoints.empty());
        EXPECT_TRUE(data.PlotNames.empty());
        EXPECT_TRUE(data.PlotSeries.empty());
    }
}

TEST(PlotKinds, TheInvalidNameStoresNothing) {
    for (int32_t kind : {4, 5, 6}) {
        CKelBaseData data = MakeData(kind, 5, 2);
        CSystemFuncs f(&data);
        EXPECT_EQ(f.PlotNumeric("N/A", 1.0, -1, 0), kInvalidNumeric);
        EXPECT_FALSE(f.PlotBool("N/A", true, -1, 0));
        EXPECT_EQ(f.PlotString("N/A", "t", -1, 0), "N/A");
        f.PlotBar("N/A", 1.0, 2.0, -1, 0);
        EXPECT_FALSE(f.Unplot("N/A", 0));
        EXPECT_TRUE(data.PlotPoints.empty());
        EXPECT_TRUE(data.PlotNames.empty());
        EXPECT_TRUE(data.PlotSeries.empty());
        EXPECT_TRUE(data.BarPlots.empty());
    }
    // Only the exact invalid text is refused.
    CKelBaseData data = MakeData(4, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("n/a", 1.0, -1, 0), 1.0);
    ASSERT_EQ(data.PlotNames.size(), 1u);
}

TEST(PlotKinds, WithoutHostDataNothingHappens) {
    CSystemFuncs f(nullptr);
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, 0), kInvalidNumeric);
    EXPECT_FALSE(f.PlotBool("x", true, -1, 0));
    EXPECT_EQ(f.PlotString("x", "t", -1, 0), "N/A");
    f.PlotBar("x", 1.0, 2.0, -1, 0);
    EXPECT_FALSE(f.Unplot("x", 0));
}

TEST(PlotKinds, AChartWithoutBarsTakesNoPlot) {
    CKelBaseData data{};
    data.FormulaKind = 6;
    CSystemFuncs f(&data);
    EXPECT_EQ(f.PlotNumeric("x", 1.0, -1, 0), kInvalidNumeric);
    EXPECT_TRUE(data.PlotPoints.empty());
}

TEST(PlotBarKind5, StoresBothValuesAndTheColour) {
    CKelBaseData data = MakeData(5, 6, 4);
    CSystemFuncs f(&data);
    f.PlotBar("bars", 12.5, 10.25, 0xFF00, 1);
    ASSERT_EQ(data.BarPlots.size(), 6u);
    const BarPlotPoint& b = data.BarPlots[3];
    EXPECT_TRUE(b.bSet);
    EXPECT_EQ(b.dValue1, 12.5);
    EXPECT_EQ(b.dValue2, 10.25);
    EXPECT_TRUE(b.bColourSet);
    EXPECT_EQ(b.nColour, 0xFF00);
    EXPECT_FALSE(data.BarPlots[4].bSet);
    EXPECT_EQ(data.BarPlots[4].nColour, -1);
}

TEST(PlotBarKind5, AnInvalidValueLeavesTheBarUnset) {
    CKelBaseData data = MakeData(5, 6, 4);
    CSystemFuncs f(&data);
    f.PlotBar("", kInvalidNumeric, 1.0, -1, 0);
    EXPECT_FALSE(data.BarPlots[4].bSet);
    EXPECT_EQ(data.BarPlots[4].dValue1, kInvalidNumeric);
    EXPECT_EQ(data.BarPlots[4].dValue2, 1.0);
    EXPECT_FALSE(data.BarPlots[4].bColourSet);
    f.PlotBar("", 1.0, kInvalidNumeric, -1, 0);
    EXPECT_FALSE(data.BarPlots[4].bSet);
    f.PlotBar("", 1.0, 2.0, -1, 0);
    EXPECT_TRUE(data.BarPlots[4].bSet);
}

TEST(PlotBarKind5, BarsOutsideTheChartAndOtherKindsStoreNothing) {
    CKelBaseData data = MakeData(5, 6, 5);
    CSystemFuncs f(&data);
    f.PlotBar("x", 1.0, 2.0, -1, 6);
    f.PlotBar("x", 1.0, 2.0, -1, -1);
    EXPECT_TRUE(data.BarPlots.empty());

    for (int32_t kind : {4, 6, 7}) {
        CKelBaseData other = MakeData(kind, 6, 5);
        CSystemFuncs g(&other);
        g.PlotBar("x", 1.0, 2.0, -1, 0);
        EXPECT_TRUE(other.BarPlots.empty());
        EXPECT_TRUE(other.PlotPoints.empty());
        EXPECT_TRUE(other.PlotSeries.empty());
    }
}

TEST(Unplot, Kind6ClearsTheFlagsOfTheBarWhateverTheName) {
    CKelBaseData data = MakeData(6, 5, 3);
    CSystemFuncs f(&data);
    f.PlotNumeric("x", 1.5, 9, 0);
    f.PlotBool("x", true, 9, 0);
    f.PlotString("x", "t", 9, 0);
    EXPECT_TRUE(f.Unplot("never plotted", 0));
    const PlotPoint& p = data.PlotPoints[3];
    EXPECT_FALSE(p.bNumericSet);
    EXPECT_FALSE(p.bBoolSet);
    EXPECT_FALSE(p.bTextSet);
    EXPECT_FALSE(p.bColourSet);
    EXPECT_EQ(p.dNumeric, 1.5);
    EXPECT_TRUE(p.bBoolValue);
    EXPECT_EQ(p.strText, "t");
    EXPECT_EQ(p.nColour, 9);
}

TEST(Unplot, Kind6OnABarNeverPlottedIsTrueAndAddsNothing) {
    CKelBaseData data = MakeData(6, 5, 3);
    CSystemFuncs f(&data);
    EXPECT_TRUE(f.Unplot("x", 1));
    EXPECT_TRUE(data.PlotPoints.empty());
}

TEST(Unplot, Kind5ClearsTheBarPlot) {
    CKelBaseData data = MakeData(5, 5, 3);
    CSystemFuncs f(&data);
    f.PlotBar("x", 2.0, 1.0, 7, 1);
    EXPECT_TRUE(f.Unplot("y", 1));
    const BarPlotPoint& b = data.BarPlots[2];
    EXPECT_FALSE(b.bSet);
    EXPECT_FALSE(b.bColourSet);
    EXPECT_EQ(b.dValue1, 2.0);
    EXPECT_EQ(b.dValue2, 1.0);
    EXPECT_EQ(b.nColour, 7);
}

TEST(Unplot, Kind4NeedsAKnownNameInAnyCase) {
    CKelBaseData data = MakeData(4, 5, 3);
    CSystemFuncs f(&data);
    EXPECT_FALSE(f.Unplot("ma", 0));
    f.PlotNumeric("MA", 1.0, 3, 0);
    f.PlotNumeric("other", 2.0, 3, 0);
    EXPECT_TRUE(f.Unplot("ma", 0));
    EXPECT_FALSE(data.PlotSeries[0][3].bNumericSet);
    EXPECT_FALSE(data.PlotSeries[0][3].bColourSet);
    EXPECT_EQ(data.PlotSeries[0][3].dNumeric, 1.0);
    EXPECT_TRUE(data.PlotSeries[1][3].bNumericSet);
    EXPECT_EQ(data.PlotNames.size(), 2u);
}

TEST(Unplot, OutOfRangeBarsAndOtherKindsAreFalse) {
    CKelBaseData data = MakeData(6, 5, 4);
    CSystemFuncs f(&data);
    f.PlotNumeric("x", 1.0, -1, 0);
    EXPECT_FALSE(f.Unplot("x", 5));
    EXPECT_FALSE(f.Unplot("x", -1));
    EXPECT_TRUE(data.PlotPoints[4].bNumericSet);

    for (int32_t kind : {0, 3, 7}) {
        CKelBaseData other = MakeData(kind, 5, 4);
        CSystemFuncs g(&other);
        EXPECT_FALSE(g.Unplot("x", 0)) << kind;
    }
}

}  // namespace
