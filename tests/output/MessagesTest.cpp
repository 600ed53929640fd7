#include <gtest/gtest.h>

#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "OutputTestData.h"

namespace {

using outputtest::kInvalidNumeric;
using outputtest::MakeData;

CKelBaseData AlertData(int32_t kind, bool enabled) {
    CKelBaseData data = MakeData(kind, 10, 9);
    data.AlertEnabled = enabled;
    return data;
}

TEST(Alert, RaisedOnceOnTheNewestBarWhateverTheCase) {
    CKelBaseData data = AlertData(4, true);
    CSystemFuncs f(&data);
    f.Alert("Cross up");
    f.Alert("Cross up");
    f.Alert("CROSS UP");
    ASSERT_EQ(data.Alerts.size(), 1u);
    EXPECT_EQ(data.Alerts[0], "Cross up");
    f.Alert("Cross down");
    ASSERT_EQ(data.Alerts.size(), 2u);
    EXPECT_EQ(data.Alerts[1], "Cross down");
}

TEST(Alert, FullWidthTextsFoldWithTheirOwnCase) {
    CKelBaseData data = AlertData(5, true);
    CSystemFuncs f(&data);
    f.Alert("\xA3\xC2\xA3\xD5\xA3\xD9");  // full-width BUY
    f.Alert("\xA3\xE2\xA3\xF5\xA3\xF9");  // full-width buy
    EXPECT_EQ(data.Alerts.size(), 1u);
    f.Alert("BUY");
    EXPECT_EQ(data.Alerts.size(), 2u);
}

TEST(Alert, OnlyTheNewestBarRaises) {
    CKelBaseData data = AlertData(6, true);
    CSystemFuncs f(&data);
    for (int32_t bar : {0, 5, 8, 10, -1}) {
        data.CurrentBar = bar;
        f.Alert("x");
    }
    EXPECT_TRUE(data.Alerts.empty());
    data.CurrentBar = 9;
    f.Alert("x");
    EXPECT_EQ(data.Alerts.size(), 1u);
}

TEST(Alert, TheNewestBarIsTheMainStreamsLast) {
    CKelBaseData data = AlertData(4, true);
    data.DataStreams.resize(2);
    data.DataStreams[1].Bars.resize(4);
    data.DataIndex = 1;
    data.CurrentBar = 3;
    CSystemFuncs f(&data);
    f.Alert("x");
    EXPECT_TRUE(data.Alerts.empty());
    data.CurrentBar = 9;
    f.Alert("x");
    EXPECT_EQ(data.Alerts.size(), 1u);
}

TEST(Alert, NeedsAlertsAllowed) {
    CKelBaseData data = AlertData(4, false);
    CSystemFuncs f(&data);
    f.Alert("x");
    EXPECT_TRUE(data.Alerts.empty());
}

TEST(Alert, ServesKinds3To6Only) {
    for (int32_t kind : {3, 4, 5, 6}) {
        CKelBaseData data = AlertData(kind, true);
        CSystemFuncs f(&data);
        f.Alert("x");
        EXPECT_EQ(data.Alerts.size(), 1u) << kind;
    }
    for (int32_t kind : {0, 2, 7}) {
        CKelBaseData data = AlertData(kind, true);
        CSystemFuncs f(&data);
        f.Alert("x");
        EXPECT_TRUE(data.Alerts.empty()) << kind;
    }
}

TEST(Alert, TheInvalidTextAndMissingHostDataRaiseNothing) {
    CKelBaseData data = AlertData(4, true);
    CSystemFuncs f(&data);
    f.Alert("N/A");
    EXPECT_TRUE(data.Alerts.empty());
    f.Alert("");
    EXPECT_EQ(data.Alerts.size(), 1u);

    CSystemFuncs none(nullptr);
    none.Alert("x");
    EXPECT_FALSE(none.AlertEnabled());
}

TEST(AlertEnabled, ReportsTheSwitchOfKinds4To6Only) {
    for (int32_t kind : {4, 5, 6}) {
        CKelBaseData on = AlertData(kind, true);
        CKelBaseData off = AlertData(kind, false);
        EXPECT_TRUE(CSystemFuncs(&on).AlertEnabled()) << kind;
        EXPECT_FALSE(CSystemFuncs(&off).AlertEnabled()) << kind;
    }
    for (int32_t kind : {0, 3, 7}) {
        CKelBaseData on = AlertData(kind, true);
        EXPECT_FALSE(CSystemFuncs(&on).AlertEnabled()) << kind;
    }
}

TEST(AlertEnabled, Kind3IsFalseEvenWhileItsAlertsAreRecorded) {
    CKelBaseData data = AlertData(3, true);
    CSystemFuncs f(&data);
    f.Alert("x");
    EXPECT_EQ(data.Alerts.size(), 1u);
    EXPECT_FALSE(f.AlertEnabled());
}

TEST(Commentary, GrowsTheBarListsAndKeepsEveryText) {
    CKelBaseData data = MakeData(7, 10, 5);
    data.BarTexts.resize(3);
    data.BarTexts[1].push_back("kept");
    CSystemFuncs f(&data);
    f.Commentary("A");
    f.Commentary("B");
    f.Commentary("A");
    f.Commentary("N/A");
    ASSERT_EQ(data.BarTexts.size(), 6u);
    EXPECT_EQ(data.BarTexts[5], (std::vector<std::string>{"A", "B", "A", "N/A"}));
    EXPECT_EQ(data.BarTexts[1], std::vector<std::string>{"kept"});
    EXPECT_TRUE(data.BarTexts[3].empty());
    EXPECT_TRUE(data.BarTexts[4].empty());
}

TEST(Commentary, ALongerListIsLeftItsLength) {
    CKelBaseData data = MakeData(7, 10, 2);
    data.BarTexts.resize(8);
    CSystemFuncs f(&data);
    f.Commentary("x");
    EXPECT_EQ(data.BarTexts.size(), 8u);
    EXPECT_EQ(data.BarTexts[2], std::vector<std::string>{"x"});
}

TEST(Commentary, OnlyStrategiesTakeComments) {
    for (int32_t kind : {0, 3, 4, 5, 6}) {
        CKelBaseData data = MakeData(kind, 10, 5);
        CSystemFuncs f(&data);
        f.Commentary("x");
        EXPECT_TRUE(data.BarTexts.empty()) << kind;
    }
    CSystemFuncs none(nullptr);
    none.Commentary("x");
}

TEST(Commentary, ANegativeBarTakesNoComment) {
    CKelBaseData data = MakeData(7, 10, -1);
    CSystemFuncs f(&data);
    f.Commentary("x");
    EXPECT_TRUE(data.BarTexts.empty());
}

TEST(Fields, NumericIsStoredForKind3Only) {
    CKelBaseData data = MakeData(3, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.FieldNumeric("any name", 1.5, -1), 1.5);
    EXPECT_EQ(data.FieldValue.nKind, 4);
    EXPECT_TRUE(data.FieldValue.bNumericSet);
    EXPECT_EQ(data.FieldValue.dNumeric, 1.5);
    EXPECT_FALSE(data.FieldValue.bColourSet);
    EXPECT_EQ(data.FieldValue.nColour, -1);

    CKelBaseData strategy = MakeData(7, 5, 2);
    CSystemFuncs g(&strategy);
    EXPECT_EQ(g.FieldNumeric("any name", 1.5, -1), kInvalidNumeric);
    EXPECT_EQ(strategy.FieldValue.nKind, 0);
    EXPECT_FALSE(strategy.FieldValue.bNumericSet);
}

TEST(Fields, EachStoreKeepsTheOtherValues) {
    CKelBaseData data = MakeData(3, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_FALSE(f.FieldBool("a", false, 0x123));
    EXPECT_EQ(data.FieldValue.nKind, 1);
    EXPECT_TRUE(data.FieldValue.bBoolSet);
    EXPECT_FALSE(data.FieldValue.bBoolValue);
    EXPECT_TRUE(data.FieldValue.bColourSet);
    EXPECT_EQ(data.FieldValue.nColour, 0x123);

    EXPECT_EQ(f.FieldString("b", "text", -1), "text");
    EXPECT_EQ(data.FieldValue.nKind, 7);
    EXPECT_TRUE(data.FieldValue.bTextSet);
    EXPECT_EQ(data.FieldValue.strText, "text");
    EXPECT_FALSE(data.FieldValue.bColourSet);
    EXPECT_EQ(data.FieldValue.nColour, -1);
    EXPECT_TRUE(data.FieldValue.bBoolSet);

    EXPECT_TRUE(f.FieldBool("c", true, -1));
    EXPECT_EQ(data.FieldValue.nKind, 1);
    EXPECT_TRUE(data.FieldValue.bBoolValue);
    EXPECT_TRUE(data.FieldValue.bTextSet);
    EXPECT_EQ(data.FieldValue.strText, "text");
}

TEST(Fields, InvalidValuesAreStoredButNotMarkedSet) {
    CKelBaseData data = MakeData(3, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_EQ(f.FieldNumeric("x", kInvalidNumeric, 4), kInvalidNumeric);
    EXPECT_EQ(data.FieldValue.nKind, 4);
    EXPECT_FALSE(data.FieldValue.bNumericSet);
    EXPECT_EQ(data.FieldValue.dNumeric, kInvalidNumeric);
    EXPECT_TRUE(data.FieldValue.bColourSet);

    EXPECT_EQ(f.FieldString("x", "N/A", -1), "N/A");
    EXPECT_EQ(data.FieldValue.nKind, 7);
    EXPECT_FALSE(data.FieldValue.bTextSet);
    EXPECT_EQ(data.FieldValue.strText, "N/A");
}

TEST(Fields, TheInvalidNameOtherKindsAndMissingHostDataStoreNothing) {
    CKelBaseData data = MakeData(3, 5, 2);
    CSystemFuncs f(&data);
    EXPECT_FALSE(f.FieldBool("N/A", true, 1));
    EXPECT_EQ(f.FieldNumeric("N/A", 2.0, 1), kInvalidNumeric);
    EXPECT_EQ(f.FieldString("N/A", "t", 1), "N/A");
    EXPECT_EQ(data.FieldValue.nKind, 0);
    EXPECT_FALSE(data.FieldValue.bBoolSet);
    EXPECT_FALSE(data.FieldValue.bColourSet);

    for (int32_t kind : {0, 4, 5, 6, 7}) {
        CKelBaseData other = MakeData(kind, 5, 2);
        CSystemFuncs g(&other);
        EXPECT_FALSE(g.FieldBool("x", true, 1)) << kind;
        EXPECT_EQ(g.FieldString("x", "t", 1), "N/A") << kind;
        EXPECT_EQ(other.FieldValue.nKind, 0);
        EXPECT_FALSE(other.FieldValue.bBoolSet);
        EXPECT_FALSE(other.FieldValue.bTextSet);
    }

    CSystemFuncs none(nullptr);
    EXPECT_FALSE(none.FieldBool("x", true, 1));
    EXPECT_EQ(none.FieldNumeric("x", 2.0, 1), kInvalidNumeric);
    EXPECT_EQ(none.FieldString("x", "t", 1), "N/A");
}

TEST(FormulaName, Kinds3To6ReadTheirOwnName) {
    for (int32_t kind : {3, 4, 5, 6}) {
        CKelBaseData data = MakeData(kind, 1, 0);
        data.FormulaNameText = "MACD";
        data.FormulaEntries.push_back({"not this"});
        EXPECT_EQ(CSystemFuncs(&data).FormulaName(), "MACD") << kind;
    }
}

TEST(FormulaName, AStrategyReadsItsEntry) {
    CKelBaseData data = MakeData(7, 1, 0);
    data.FormulaNameText = "not this";
    data.FormulaEntries = {{"first"}, {"second"}};
    data.FormulaEntryIndex = 1;
    CSystemFuncs f(&data);
    EXPECT_EQ(f.FormulaName(), "second");
    data.FormulaEntryIndex = 2;
    EXPECT_EQ(f.FormulaName(), "N/A");
    data.FormulaEntryIndex = -1;
    EXPECT_EQ(f.FormulaName(), "N/A");
    data.FormulaEntries.clear();
    data.FormulaEntryIndex = 0;
    EXPECT_EQ(f.FormulaName(), "N/A");
}

TEST(FormulaName, OtherKindsAndMissingHostDataAreInvalid) {
    CKelBaseData data = MakeData(0, 1, 0);
    data.FormulaNameText = "x";
    data.FormulaEntries = {{"y"}};
    EXPECT_EQ(CSystemFuncs(&data).FormulaName(), "N/A");
    EXPECT_EQ(CSystemFuncs(nullptr).FormulaName(), "N/A");
}

}  // namespace
