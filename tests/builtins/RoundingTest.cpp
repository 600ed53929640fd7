#include <cmath>
#include <limits>

#include "BuiltinsFixture.h"

namespace {

using RoundingTest = BuiltinsTest;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST_F(RoundingTest, IntPartIsTheFloor) {
    EXPECT_EQ(f.IntPart(1.5), 1);
    EXPECT_EQ(f.IntPart(-1.5), -2);
    EXPECT_EQ(f.IntPart(-2.0), -2);
    EXPECT_EQ(f.IntPart(2147483647.9), 2147483647);
    EXPECT_EQ(f.IntPart(kInvalid), kInvalidInt);
}

TEST_F(RoundingTest, IntPartOutOfRangeConvertsToTheIndefiniteInteger) {
    EXPECT_EQ(f.IntPart(3e9), INT32_MIN);
    EXPECT_EQ(f.IntPart(-2147483648.5), INT32_MIN);
    EXPECT_EQ(f.IntPart(kNaN), INT32_MIN);
}

TEST_F(RoundingTest, FracPartIsMeasuredAboveTheFloor) {
    EXPECT_EQ(f.FracPart(-1.5), 0.5);
    EXPECT_EQ(f.FracPart(2.25), 0.25);
    EXPECT_EQ(f.FracPart(3.0), 0.0);
    EXPECT_EQ(f.FracPart(-0.1), -0.1 - (-1.0));
    EXPECT_EQ(f.FracPart(kInvalid), kInvalid);
    // Beyond the 32-bit range the integer part is 0x80000000.
    EXPECT_EQ(f.FracPart(3e9), 3e9 + 2147483648.0);
}

TEST_F(RoundingTest, RoundHalvesGoAwayFromZero) {
    EXPECT_EQ(f.Round(2.5, 0), 3.0);
    EXPECT_EQ(f.Round(-2.5, 0), -3.0);
    EXPECT_EQ(f.Round(2.4, 0), 2.0);
    EXPECT_EQ(f.Round(1.2345, 2), std::floor(std::fabs(100 * 1.2345) + 0.5) / 100);
    EXPECT_EQ(f.Round(1.2345, 2), 1.23);
    EXPECT_EQ(f.Round(-1.235, 2), -std::floor(std::fabs(100 * -1.235) + 0.5) / 100);
    EXPECT_EQ(f.Round(1234.5, -2), 1200.0);
    EXPECT_EQ(f.Round(kInvalid, 2), kInvalid);
}

TEST_F(RoundingTest, RoundOfZeroTakesTheNegativeBranch) {
    const double r = f.Round(0, 2);
    EXPECT_EQ(r, 0.0);
    EXPECT_TRUE(std::signbit(r));
}

TEST_F(RoundingTest, RoundUsesTheInvalidIntegerAsAnExponent) {
    // 10^2147483647 is infinite: infinity over infinity, not the invalid numeric.
    EXPECT_TRUE(std::isnan(f.Round(1.0, kInvalidInt)));
    EXPECT_NE(f.Round(1.0, kInvalidInt), kInvalid);
}

TEST_F(RoundingTest, RoundUpKeepsTheMagnitudeOfTheCeiling) {
    EXPECT_EQ(f.RoundUp(1.23, 1), std::fabs(std::ceil(10 * 1.23)) / 10);
    EXPECT_EQ(f.RoundUp(1.23, 1), 1.3);
    EXPECT_EQ(f.RoundUp(-1.23, 1), -std::fabs(std::ceil(10 * -1.23)) / 10);
    EXPECT_EQ(f.RoundUp(-1.23, 1), -1.2);
    EXPECT_EQ(f.RoundUp(-1.23, 1), f.RoundDown(-1.23, 1));
    EXPECT_EQ(f.RoundUp(1201, -2), 1300.0);
    EXPECT_TRUE(std::signbit(f.RoundUp(0, 1)));
}

TEST_F(RoundingTest, RoundDownGoesTowardZero) {
    EXPECT_EQ(f.RoundDown(1.27, 1), std::floor(std::fabs(10 * 1.27)) / 10);
    EXPECT_EQ(f.RoundDown(1.27, 1), 1.2);
    EXPECT_EQ(f.RoundDown(-1.27, 1), -1.2);
    EXPECT_EQ(f.RoundDown(1299, -2), 1200.0);
}

TEST_F(RoundingTest, RoundUpAndDownRefuseTheInvalidInteger) {
    EXPECT_EQ(f.RoundUp(1.5, kInvalidInt), kInvalid);
    EXPECT_EQ(f.RoundDown(1.5, kInvalidInt), kInvalid);
    EXPECT_EQ(f.RoundUp(kInvalid, 1), kInvalid);
    EXPECT_EQ(f.RoundDown(kInvalid, 1), kInvalid);
}

TEST_F(RoundingTest, TruncCountsPlacesLeftOfThePoint) {
    EXPECT_EQ(f.Trunc(1234.5, 2), 1200);
    EXPECT_EQ(f.Trunc(1234.5, 0), 1234);
    EXPECT_EQ(f.Trunc(-1234.5, 1), -1230);
    EXPECT_EQ(f.Trunc(1234.5, -1), 1234);  // 12345 x 0.1 is 1234.5, truncated
    EXPECT_EQ(f.Trunc(0.7, 0), 0);
}

TEST_F(RoundingTest, TruncOutOfRange) {
    EXPECT_EQ(f.Trunc(1.5, kInvalidInt), kInvalidInt);
    EXPECT_EQ(f.Trunc(kInvalid, 0), kInvalidInt);
    EXPECT_EQ(f.Trunc(5e9, 0), INT32_MIN);
    // The negated 2^31 no longer fits either.
    EXPECT_EQ(f.Trunc(-5e9, 0), INT32_MIN);
}

TEST_F(RoundingTest, CeilingAndFloor) {
    EXPECT_EQ(f.Ceiling(2.5, 1), 3.0);
    EXPECT_EQ(f.Ceiling(2.5, 0.2), std::ceil(2.5 / 0.2) * 0.2);
    EXPECT_EQ(f.Ceiling(-2.5, -1), -3.0);
    EXPECT_EQ(f.Ceiling(0, 5), 0.0);
    EXPECT_EQ(f.Floor(7, 2), 6.0);
    EXPECT_EQ(f.Floor(-7, -2), -6.0);
    EXPECT_EQ(f.Floor(7.3, 0.5), std::floor(7.3 / 0.5) * 0.5);
}

TEST_F(RoundingTest, CeilingAndFloorRefuseMixedSignsAndZero) {
    EXPECT_EQ(f.Ceiling(-2.5, 1), kInvalid);
    EXPECT_EQ(f.Ceiling(2.5, -1), kInvalid);
    EXPECT_EQ(f.Ceiling(2.5, 0), kInvalid);
    EXPECT_EQ(f.Floor(7, 0), kInvalid);
    EXPECT_EQ(f.Floor(-7, 2), kInvalid);
    EXPECT_EQ(f.Ceiling(kInvalid, 1), kInvalid);
    EXPECT_EQ(f.Floor(1, kInvalid), kInvalid);
}

TEST_F(RoundingTest, EvenAndOdd) {
    EXPECT_EQ(f.Even(1.2), 2);
    EXPECT_EQ(f.Even(-1.2), -2);
    EXPECT_EQ(f.Even(2), 2);
    EXPECT_EQ(f.Even(3), 4);
    EXPECT_EQ(f.Even(0), 0);
    EXPECT_EQ(f.Odd(2), 3);
    EXPECT_EQ(f.Odd(1), 1);
    EXPECT_EQ(f.Odd(1.5), 3);
    EXPECT_EQ(f.Odd(-2.5), -3);
    EXPECT_EQ(f.Even(kInvalid), kInvalidInt);
    EXPECT_EQ(f.Odd(kInvalid), kInvalidInt);
}

TEST_F(RoundingTest, OddOfZeroCountsZeroAsNegative) { EXPECT_EQ(f.Odd(0), -1); }

TEST_F(RoundingTest, EvenAndOddWrapAtTheEndOfTheRange) {
    EXPECT_EQ(f.Even(2147483647), INT32_MIN);
    EXPECT_EQ(f.Even(3e9), INT32_MIN);
    EXPECT_EQ(f.Odd(-3e9), 2147483647);
}

TEST_F(RoundingTest, ModIsTheCRemainder) {
    EXPECT_EQ(f.Mod(7, 3), 1);
    EXPECT_EQ(f.Mod(-7, 3), -1);
    EXPECT_EQ(f.Mod(7, -3), 1);
    EXPECT_EQ(f.Mod(6, 3), 0);
    EXPECT_EQ(f.Mod(7, 0), kInvalidInt);
}

TEST_F(RoundingTest, ModTakesTheInvalidIntegerAsANumber) {
    EXPECT_EQ(f.Mod(2147483647, 10), 7);
    EXPECT_EQ(f.Mod(10, 2147483647), 10);
}

TEST_F(RoundingTest, ModByMinusOneNeverTraps) {
    EXPECT_EQ(f.Mod(INT32_MIN, -1), 0);
    EXPECT_EQ(f.Mod(5, -1), 0);
}

TEST_F(RoundingTest, Fact) {
    EXPECT_EQ(f.Fact(0), 1);
    EXPECT_EQ(f.Fact(1), 1);
    EXPECT_EQ(f.Fact(5), 120);
    EXPECT_EQ(f.Fact(12), 479001600);
    EXPECT_EQ(f.Fact(-1), kInvalidInt);
}

TEST_F(RoundingTest, FactWrapsInUnsigned32BitArithmetic) {
    uint32_t product = 1;
    for (int32_t n = 1; n <= 40; ++n) {
        product *= static_cast<uint32_t>(n);
        EXPECT_EQ(f.Fact(n), static_cast<int32_t>(product)) << n;
    }
    EXPECT_EQ(f.Fact(13), 1932053504);  // 6227020800 mod 2^32
    EXPECT_EQ(f.Fact(32), INT32_MIN);
    EXPECT_EQ(f.Fact(34), 0);
    EXPECT_EQ(f.Fact(2147483647), 0);  // an ordinary number here, not the invalid integer
}

TEST_F(RoundingTest, Combin) {
    EXPECT_EQ(f.Combin(5, 2), 10);
    EXPECT_EQ(f.Combin(12, 6), 924);
    EXPECT_EQ(f.Combin(0, 0), 1);
    EXPECT_EQ(f.Combin(7, 7), 1);
    EXPECT_EQ(f.Combin(2, 5), kInvalidInt);
    EXPECT_EQ(f.Combin(5, -1), kInvalidInt);
    EXPECT_EQ(f.Combin(kInvalidInt, 1), kInvalidInt);
    EXPECT_EQ(f.Combin(5, kInvalidInt), kInvalidInt);
}

TEST_F(RoundingTest, CombinDividesWrappedFactorials) {
    // 13! wrapped, divided by 6!, then by 7!: 1932053504 / 720 / 5040.
    EXPECT_EQ(f.Combin(13, 6), 1932053504 / 720 / 5040);
    EXPECT_EQ(f.Combin(13, 6), 532);
    // 34! wrapped to 0 as the dividend gives 0.
    EXPECT_EQ(f.Combin(34, 1), 0);
}

TEST_F(RoundingTest, CombinFailsOnADivisorThatWrappedToZero) {
    EXPECT_EQ(f.Combin(40, 2), kInvalidInt);  // 38! is 0
    EXPECT_EQ(f.Combin(34, 0), kInvalidInt);
    EXPECT_EQ(f.Combin(40, 35), kInvalidInt);
}

}  // namespace
