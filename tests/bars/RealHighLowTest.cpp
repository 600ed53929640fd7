#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "support/InstrumentFixture.h"
#include "support/TestAccess.h"

namespace {

constexpr double kInvalid = 1.7976931348623157e308;

// Bars of the fixture: high 3010 + i, low 2990 + i, close 3005 + i; the data source
// has bar type 1 and interval 5.
using RealHighLow = InstrumentFixture;

TEST_F(RealHighLow, OffsetCountsBarsBackFromTheCurrentOne) {
    data.CurrentBar = 3;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 0), funcs.High());
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 0), funcs.Low());
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 1), 3012.0);
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 3), 2990.0);
}

TEST_F(RealHighLow, OffsetBeyondTheCurrentBarIsInvalid) {
    data.CurrentBar = 2;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 3), kInvalid);
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 3), kInvalid);
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, INT32_MAX), kInvalid);
}

// A negative offset reaches forward, as the unsigned index arithmetic gives.
TEST_F(RealHighLow, NegativeOffsetReachesLaterBars) {
    data.CurrentBar = 2;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, -1), 3013.0);
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, -2), 2994.0);
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, -3), kInvalid);
}

TEST_F(RealHighLow, CloseStandsInOnBarTypeTwoIntervalOne) {
    data.DataStreams[0].BarType = 2;
    data.DataStreams[0].BarInterval = 1;
    data.CurrentBar = 4;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 0), funcs.Close());
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 0), 3009.0);
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 2), 3007.0);
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 5), kInvalid);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.BarType").nValue, 2);
    EXPECT_EQ(funcs.PropertyCache.at("Data0.BarInterval").nValue, 1);
}

TEST_F(RealHighLow, OnlyTypeTwoWithIntervalOneUsesTheClose) {
    const int32_t combos[][2] = {{2, 5}, {1, 1}, {0, 0}, {3, 1}};
    for (const auto& c : combos) {
        data.DataStreams[0].BarType = c[0];
        data.DataStreams[0].BarInterval = c[1];
        CSystemFuncs fresh(&data);
        data.CurrentBar = 1;
        EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(fresh, 0), 3011.0) << c[0] << "/" << c[1];
        EXPECT_EQ(CSystemFuncsTestAccess::RealLow(fresh, 0), 2991.0) << c[0] << "/" << c[1];
    }
}

// The bar type is read through the cached properties: an unknown instrument has
// no bar type, so high and low are used.
TEST_F(RealHighLow, UnknownInstrumentUsesHighAndLow) {
    data.DataStreams[0].BarType = 2;
    data.DataStreams[0].BarInterval = 1;
    data.DataStreams[0].Code = "unknown";
    data.CurrentBar = 0;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 0), 3010.0);
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 0), 2990.0);
}

TEST_F(RealHighLow, PropertiesAreFetchedOnce) {
    data.CurrentBar = 4;
    for (int i = 0; i < 5; ++i) {
        CSystemFuncsTestAccess::RealHigh(funcs, i);
        CSystemFuncsTestAccess::RealLow(funcs, i);
    }
    EXPECT_EQ(fake.calls.GetSymbolProperty, 2);  // BarType and BarInterval
}

TEST(RealHighLowNull, NullHostDataIsInvalid) {
    CSystemFuncs funcs(nullptr);
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 0), kInvalid);
    EXPECT_EQ(CSystemFuncsTestAccess::RealLow(funcs, 0), kInvalid);
}

TEST_F(RealHighLow, OtherDataStreamIsReadThroughTheDataIndex) {
    DataStream second = data.DataStreams[0];
    for (BarRecord& b : second.Bars) b.high += 100;
    data.DataStreams.push_back(second);
    data.DataIndex = 1;
    data.CurrentBar = 0;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 0), 3110.0);
    data.DataIndex = 2;
    EXPECT_EQ(CSystemFuncsTestAccess::RealHigh(funcs, 0), kInvalid);
}

}  // namespace

// Both at once give what the two functions give, before the bar type is known and
// after, for every offset and both kinds of bar.
TEST_F(RealHighLow, BothAtOnceAgreeWithEachFunction) {
    for (const int32_t type : {1, 2}) {
        data.DataStreams[0].BarType = type;
        data.DataStreams[0].BarInterval = 1;
        CSystemFuncs fresh(&data);
        for (const int32_t current : {0, 2, 5}) {
            data.CurrentBar = current;
            for (const int32_t offset : {0, 1, 3, -1, INT32_MAX, INT32_MIN}) {
                double high = 0.0, low = 0.0;
                CSystemFuncsTestAccess::RealHighLow(fresh, offset, high, low);
                EXPECT_EQ(high, CSystemFuncsTestAccess::RealHigh(fresh, offset)) << type << " " << offset;
                EXPECT_EQ(low, CSystemFuncsTestAccess::RealLow(fresh, offset)) << type << " " << offset;
            }
        }
        EXPECT_EQ(fresh.PropertyCache.at("Data0.BarType").nValue, type);
    }
}

TEST(RealHighLowWithoutData, BothAreInvalid) {
    CSystemFuncs funcs(nullptr);
    double high = 0.0, low = 0.0;
    CSystemFuncsTestAccess::RealHighLow(funcs, 0, high, low);
    EXPECT_EQ(high, kInvalid);
    EXPECT_EQ(low, kInvalid);
}
