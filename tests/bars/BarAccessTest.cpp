#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "support/TestAccess.h"

namespace {

constexpr double kInvalid = 1.7976931348623157e308;
constexpr int32_t kInvalidInt = 2147483647;

// Bar i has open 100 + i, high 200 + i, low 50 + i, close 150 + i, volume 1000 + i,
// open interest 5000 + i, one minute apart.
DataStream MakeStream(int count, double shift = 0) {
    DataStream s;
    s.Code = "rb2405";
    for (int i = 0; i < count; ++i) {
        BarRecord b;
        b.time = 1269479103007LL + i * 60000LL;
        b.open = 100 + i + shift;
        b.high = 200 + i + shift;
        b.low = 50 + i + shift;
        b.close = 150 + i + shift;
        b.vol = 1000 + i + shift;
        b.openInt = 5000 + i + shift;
        s.Bars.push_back(b);
    }
    return s;
}

class BarAccess : public ::testing::Test {
protected:
    void SetUp() override { data.DataStreams.push_back(MakeStream(5)); }
    CKelBaseData data{};
    CSystemFuncs funcs{&data};
};

TEST_F(BarAccess, FieldsOfTheCurrentBar) {
    data.CurrentBar = 2;
    EXPECT_EQ(funcs.Open(), 102.0);
    EXPECT_EQ(funcs.High(), 202.0);
    EXPECT_EQ(funcs.Low(), 52.0);
    EXPECT_EQ(funcs.Close(), 152.0);
    EXPECT_EQ(funcs.Vol(), 1002.0);
    EXPECT_EQ(funcs.OpenInt(), 5002.0);
}

TEST_F(BarAccess, OneLetterFormsMatchTheLongNames) {
    data.CurrentBar = 3;
    EXPECT_EQ(funcs.O(), 103.0);
    EXPECT_EQ(funcs.H(), 203.0);
    EXPECT_EQ(funcs.L(), 53.0);
    EXPECT_EQ(funcs.C(), 153.0);
    EXPECT_EQ(funcs.V(), 1003.0);
    EXPECT_EQ(funcs.D(), funcs.Date());
    EXPECT_EQ(funcs.T(), funcs.Time());
    data.CurrentBar = 9;
    EXPECT_EQ(funcs.O(), kInvalid);
    EXPECT_EQ(funcs.D(), kInvalidInt);
    EXPECT_EQ(funcs.T(), kInvalid);
}

TEST_F(BarAccess, NextFieldsReadTheFollowingBar) {
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.NextOpen(), 102.0);
    EXPECT_EQ(funcs.NextHigh(), 202.0);
    EXPECT_EQ(funcs.NextLow(), 52.0);
    EXPECT_EQ(funcs.NextClose(), 152.0);
    EXPECT_EQ(funcs.NextVol(), 1002.0);
    EXPECT_EQ(funcs.NextOpenInt(), 5002.0);
}

TEST_F(BarAccess, NextFieldsOnTheLastBarAreInvalid) {
    data.CurrentBar = 4;
    EXPECT_EQ(funcs.Close(), 154.0);
    EXPECT_EQ(funcs.NextOpen(), kInvalid);
    EXPECT_EQ(funcs.NextHigh(), kInvalid);
    EXPECT_EQ(funcs.NextLow(), kInvalid);
    EXPECT_EQ(funcs.NextClose(), kInvalid);
    EXPECT_EQ(funcs.NextVol(), kInvalid);
    EXPECT_EQ(funcs.NextOpenInt(), kInvalid);
}

// The next index wraps like 32-bit arithmetic: before bar 0 the next bar is bar 0.
TEST_F(BarAccess, NextIndexWrapsFromMinusOneToTheFirstBar) {
    data.CurrentBar = -1;
    EXPECT_EQ(funcs.Open(), kInvalid);
    EXPECT_EQ(funcs.NextOpen(), 100.0);
    data.CurrentBar = INT32_MAX;
    EXPECT_EQ(funcs.NextClose(), kInvalid);
}

TEST_F(BarAccess, BarIndexOutOfRangeGivesInvalidValues) {
    for (int32_t bar : {5, 6, -1, INT32_MIN, INT32_MAX}) {
        data.CurrentBar = bar;
        EXPECT_EQ(funcs.Open(), kInvalid) << bar;
        EXPECT_EQ(funcs.High(), kInvalid) << bar;
        EXPECT_EQ(funcs.Low(), kInvalid) << bar;
        EXPECT_EQ(funcs.Close(), kInvalid) << bar;
        EXPECT_EQ(funcs.Vol(), kInvalid) << bar;
        EXPECT_EQ(funcs.OpenInt(), kInvalid) << bar;
        EXPECT_EQ(funcs.Date(), kInvalidInt) << bar;
        EXPECT_EQ(funcs.Time(), kInvalid) << bar;
        EXPECT_FALSE(funcs.HistoryDataExist()) << bar;
    }
}

TEST_F(BarAccess, DataIndexOutOfRangeGivesInvalidValues) {
    for (int32_t stream : {1, -1, INT32_MIN}) {
        data.DataIndex = stream;
        data.CurrentBar = 1;
        EXPECT_EQ(funcs.Open(), kInvalid) << stream;
        EXPECT_EQ(funcs.Close(), kInvalid) << stream;
        EXPECT_EQ(funcs.NextClose(), kInvalid) << stream;
        EXPECT_EQ(funcs.Date(), kInvalidInt) << stream;
        EXPECT_EQ(funcs.Time(), kInvalid) << stream;
        EXPECT_EQ(funcs.BarStatus(), kInvalidInt) << stream;
        EXPECT_FALSE(funcs.HistoryDataExist()) << stream;
    }
}

TEST_F(BarAccess, SecondStreamIsReadThroughTheDataIndex) {
    data.DataStreams.push_back(MakeStream(3, 0.5));
    data.DataIndex = 1;
    data.CurrentBar = 2;
    EXPECT_EQ(funcs.Close(), 152.5);
    EXPECT_EQ(funcs.BarStatus(), 2);
    EXPECT_EQ(funcs.NextClose(), kInvalid);
    data.CurrentBar = 3;
    EXPECT_EQ(funcs.Close(), kInvalid);
    EXPECT_FALSE(funcs.HistoryDataExist());
    data.DataIndex = 0;
    EXPECT_EQ(funcs.Close(), 153.0);
    EXPECT_TRUE(funcs.HistoryDataExist());
}

TEST(BarCount, CountsTheMainStreamWhateverTheDataIndex) {
    CKelBaseData data{};
    data.DataStreams.push_back(MakeStream(100));
    data.DataStreams.push_back(MakeStream(50));
    CSystemFuncs funcs(&data);
    data.DataIndex = 1;
    EXPECT_EQ(funcs.BarCount(), 100);
    data.DataIndex = 7;
    EXPECT_EQ(funcs.BarCount(), 100);
}

TEST(BarCount, ChartWithoutStreamsHasNoBars) {
    CKelBaseData data{};
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.BarCount(), 0);
}

TEST_F(BarAccess, BarStatusFirstInnerLast) {
    data.CurrentBar = 0;
    EXPECT_EQ(funcs.BarStatus(), 0);
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.BarStatus(), 1);
    data.CurrentBar = 3;
    EXPECT_EQ(funcs.BarStatus(), 1);
    data.CurrentBar = 4;
    EXPECT_EQ(funcs.BarStatus(), 2);
    data.CurrentBar = 5;
    EXPECT_EQ(funcs.BarStatus(), kInvalidInt);
    data.CurrentBar = -1;
    EXPECT_EQ(funcs.BarStatus(), kInvalidInt);
}

TEST(BarStatus, OneBarChartReportsTheFirstBar) {
    CKelBaseData data{};
    data.DataStreams.push_back(MakeStream(1));
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.BarStatus(), 0);
}

TEST(BarStatus, BarZeroIsFirstEvenWithoutTheStream) {
    CKelBaseData data{};
    CSystemFuncs funcs(&data);
    EXPECT_EQ(funcs.BarStatus(), 0);
    data.DataIndex = 3;
    EXPECT_EQ(funcs.BarStatus(), 0);
    data.CurrentBar = 1;
    EXPECT_EQ(funcs.BarStatus(), kInvalidInt);
}

TEST_F(BarAccess, CurrentBarIsReturnedUnchecked) {
    for (int32_t bar : {0, 4, 99, -7, INT32_MIN}) {
        data.CurrentBar = bar;
        EXPECT_EQ(funcs.CurrentBar(), bar);
    }
    data.DataIndex = 5;
    EXPECT_EQ(funcs.CurrentBar(), INT32_MIN);
}

TEST_F(BarAccess, HistoryDataExistFollowsTheCurrentStream) {
    data.CurrentBar = 0;
    EXPECT_TRUE(funcs.HistoryDataExist());
    data.CurrentBar = 4;
    EXPECT_TRUE(funcs.HistoryDataExist());
    data.CurrentBar = 5;
    EXPECT_FALSE(funcs.HistoryDataExist());
}

TEST_F(BarAccess, LastestBarIsTheNewestBarOfTheMainChart) {
    data.CurrentBar = 4;
    EXPECT_TRUE(CSystemFuncsTestAccess::LastestBar(funcs));
    data.CurrentBar = 3;
    EXPECT_FALSE(CSystemFuncsTestAccess::LastestBar(funcs));
    data.CurrentBar = 5;
    EXPECT_FALSE(CSystemFuncsTestAccess::LastestBar(funcs));
    // The main chart decides, even when the formula reads a shorter stream.
    data.DataStreams.push_back(MakeStream(2));
    data.DataIndex = 1;
    data.CurrentBar = 1;
    EXPECT_FALSE(CSystemFuncsTestAccess::LastestBar(funcs));
    data.CurrentBar = 4;
    EXPECT_TRUE(CSystemFuncsTestAccess::LastestBar(funcs));
}

TEST(BarAccessNull, NullHostDataGivesInvalidValues) {
    CSystemFuncs funcs(nullptr);
    EXPECT_EQ(funcs.BarCount(), kInvalidInt);
    EXPECT_EQ(funcs.Open(), kInvalid);
    EXPECT_EQ(funcs.High(), kInvalid);
    EXPECT_EQ(funcs.Low(), kInvalid);
    EXPECT_EQ(funcs.Close(), kInvalid);
    EXPECT_EQ(funcs.Vol(), kInvalid);
    EXPECT_EQ(funcs.OpenInt(), kInvalid);
    EXPECT_EQ(funcs.NextOpen(), kInvalid);
    EXPECT_EQ(funcs.NextHigh(), kInvalid);
    EXPECT_EQ(funcs.NextLow(), kInvalid);
    EXPECT_EQ(funcs.NextClose(), kInvalid);
    EXPECT_EQ(funcs.NextVol(), kInvalid);
    EXPECT_EQ(funcs.NextOpenInt(), kInvalid);
    EXPECT_EQ(funcs.Date(), kInvalidInt);
    EXPECT_EQ(funcs.Time(), kInvalid);
    EXPECT_EQ(funcs.BarStatus(), kInvalidInt);
    EXPECT_EQ(funcs.CurrentBar(), kInvalidInt);
    EXPECT_FALSE(funcs.HistoryDataExist());
    EXPECT_EQ(funcs.Year(), kInvalidInt);
    EXPECT_EQ(funcs.Weekday(), kInvalidInt);
    EXPECT_FALSE(CSystemFuncsTestAccess::LastestBar(funcs));
}

}  // namespace
