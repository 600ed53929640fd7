#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "FormulaFunction/FormulaFunction.h"
#include "support/InstrumentFixture.h"
#include "support/TestAccess.h"

namespace {

class ValidPrice : public InstrumentFixture {
protected:
    void SetTick(int32_t minMove, float priceScale) {
        IModuleFutureTrader::ISpecDetailValue spec = Spec();
        spec.MinMove = minMove;
        spec.PriceScale = priceScale;
        fake.AddSpec(kMarket, "rb2405", spec);
    }
    double Up(double price) {
        CSystemFuncsTestAccess::GetValidPrice(funcs, true, price);
        return price;
    }
    double Down(double price) {
        CSystemFuncsTestAccess::GetValidPrice(funcs, false, price);
        return price;
    }
};

// Tick 0.01 (MinMove 1, PriceScale 0.01): 100 units of 0.0001.
TEST_F(ValidPrice, UpMovesToTheNextTickAndKeepsAPriceOnTheTick) {
    SetTick(1, 0.01f);
    EXPECT_EQ(Up(100.251), 1002600 * 0.0001);
    EXPECT_DOUBLE_EQ(Up(100.251), 100.26);
    EXPECT_EQ(Up(100.25), 1002500 * 0.0001);
    EXPECT_DOUBLE_EQ(Up(100.25), 100.25);
    EXPECT_EQ(Up(100.2501), 1002600 * 0.0001);
}

TEST_F(ValidPrice, DownTruncatesToTheTickBelow) {
    SetTick(1, 0.01f);
    EXPECT_EQ(Down(100.259), 1002500 * 0.0001);
    EXPECT_DOUBLE_EQ(Down(100.259), 100.25);
    EXPECT_EQ(Down(100.25), 1002500 * 0.0001);
}

// Up has 0.0001 of tolerance, down none: a price a hair below the tick.
TEST_F(ValidPrice, ToleranceOnlyWhenRoundingUp) {
    SetTick(1, 0.01f);
    EXPECT_EQ(Up(100.25 + 1e-9), 1002500 * 0.0001);    // within the tolerance: stays
    EXPECT_EQ(Up(100.25 + 0.0002), 1002600 * 0.0001);  // beyond it: next tick
    EXPECT_EQ(Down(100.25 - 1e-9), 1002400 * 0.0001);  // no tolerance: a whole tick down
}

TEST_F(ValidPrice, CoarseTick) {
    SetTick(2, 0.1f);  // 0.2 = 2000 units
    EXPECT_EQ(Up(100.05), 1002000 * 0.0001);
    EXPECT_EQ(Down(100.39), 1002000 * 0.0001);
    EXPECT_EQ(Up(100.2), 1002000 * 0.0001);
    SetTick(5, 1.0f);  // 5.0 = 50000 units
    CSystemFuncs fresh(&data);
    double p = 3002;
    CSystemFuncsTestAccess::GetValidPrice(fresh, true, p);
    EXPECT_EQ(p, 30050000 * 0.0001);
    p = 3004.9;
    CSystemFuncsTestAccess::GetValidPrice(fresh, false, p);
    EXPECT_EQ(p, 30000000 * 0.0001);
}

// Integer division truncates toward zero, so negative prices move toward zero.
TEST_F(ValidPrice, NegativePricesFollowTheTruncatingDivision) {
    SetTick(1, 0.01f);
    // Down: trunc(-10049.99...) = -10049, -10049 / 100 * 100 = -10000.
    EXPECT_EQ(Down(-1.005), -10000 * 0.0001);
    // Up: 100 - 10050 = -9950, -9950 / 100 * 100 = -9900.
    EXPECT_EQ(Up(-1.005), -9900 * 0.0001);
}

TEST_F(ValidPrice, TickZeroLeavesThePriceUnchanged) {
    SetTick(0, 0.01f);
    EXPECT_EQ(Up(100.251), 100.251);
    EXPECT_EQ(Down(100.259), 100.259);
    SetTick(1, 0.0f);
    CSystemFuncs fresh(&data);
    double p = 7.77;
    CSystemFuncsTestAccess::GetValidPrice(fresh, true, p);
    EXPECT_EQ(p, 7.77);
    // A tick below half a unit rounds to 0 units.
    SetTick(1, 0.00004f);
    CSystemFuncs tiny(&data);
    p = 7.77;
    CSystemFuncsTestAccess::GetValidPrice(tiny, false, p);
    EXPECT_EQ(p, 7.77);
}

TEST_F(ValidPrice, UnknownInstrumentLeavesThePriceUnchanged) {
    data.DataStreams[0].Code = "unknown";
    EXPECT_EQ(Up(100.251), 100.251);
    EXPECT_EQ(Down(100.259), 100.259);
}

TEST_F(ValidPrice, NonFinitePriceIsLeftUnchanged) {
    SetTick(1, 0.01f);
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Up(inf), inf);
    EXPECT_EQ(Down(-inf), -inf);
    EXPECT_TRUE(std::isnan(Up(std::nan(""))));
    EXPECT_TRUE(std::isnan(Down(std::nan(""))));
}

TEST_F(ValidPrice, PriceWhoseTickCountOverflowsIsLeftUnchanged) {
    SetTick(1, 0.01f);
    EXPECT_EQ(Down(214748.25), 2147482500 * 0.0001);  // the last prices that fit
    EXPECT_EQ(Down(-214748.25), -2147482500 * 0.0001);
    EXPECT_EQ(Down(214748.3648), 214748.3648);
    EXPECT_EQ(Up(-214748.3648), -214748.3648);
    EXPECT_EQ(Down(-214748.3649), -214748.3649);
    EXPECT_EQ(Down(1e12), 1e12);
    EXPECT_EQ(Up(-1e12), -1e12);
    EXPECT_EQ(Down(1.7976931348623157e308), 1.7976931348623157e308);
}

// Up adds the tick before dividing: near the top of the range the sum no longer
// fits 32 bits.
TEST_F(ValidPrice, UpWhoseSumOverflowsIsLeftUnchanged) {
    SetTick(1, 1.0f);  // 10000 units
    // 10000 + 2147470999 still fits: 2147480999 / 10000 * 10000 = 2147480000.
    EXPECT_EQ(Up(214747.1), 2147480000 * 0.0001);
    // 10000 + 2147480999 does not.
    EXPECT_EQ(Up(214748.1), 214748.1);
}

TEST_F(ValidPrice, PropertiesAreReadFromTheCache) {
    SetTick(1, 0.01f);
    for (int i = 0; i < 10; ++i) Up(100.251 + i);
    EXPECT_EQ(fake.calls.GetSymbolProperty, 2);  // MinMove and PriceScale, once each
}

TEST_F(ValidPrice, AlwaysTrue) {
    double p = 1.0;
    EXPECT_TRUE(CSystemFuncsTestAccess::GetValidPrice(funcs, true, p));
    data.DataStreams.clear();
    EXPECT_TRUE(CSystemFuncsTestAccess::GetValidPrice(funcs, false, p));
    CSystemFuncs none(nullptr);
    EXPECT_TRUE(CSystemFuncsTestAccess::GetValidPrice(none, true, p));
    EXPECT_EQ(p, 1.0);
}

}  // namespace
