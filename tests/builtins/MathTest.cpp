#include <cmath>
#include <limits>

#include "BuiltinsFixture.h"

namespace {

using MathTest = BuiltinsTest;

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST_F(MathTest, InvalidNumericPassesThroughDoubleFunctions) {
    EXPECT_EQ(f.Abs(kInvalid), kInvalid);
    EXPECT_EQ(f.Neg(kInvalid), kInvalid);
    EXPECT_EQ(f.Sqr(kInvalid), kInvalid);
    EXPECT_EQ(f.Sqrt(kInvalid), kInvalid);
    EXPECT_EQ(f.Power(kInvalid, 2), kInvalid);
    EXPECT_EQ(f.Power(2, kInvalid), kInvalid);
    EXPECT_EQ(f.Exp(kInvalid), kInvalid);
    EXPECT_EQ(f.Ln(kInvalid), kInvalid);
    EXPECT_EQ(f.Log(kInvalid, 2), kInvalid);
    EXPECT_EQ(f.Log(8, kInvalid), kInvalid);
    EXPECT_EQ(f.Sin(kInvalid), kInvalid);
    EXPECT_EQ(f.Cos(kInvalid), kInvalid);
    EXPECT_EQ(f.Tan(kInvalid), kInvalid);
    EXPECT_EQ(f.Ctan(kInvalid), kInvalid);
    EXPECT_EQ(f.Asin(kInvalid), kInvalid);
    EXPECT_EQ(f.Acos(kInvalid), kInvalid);
    EXPECT_EQ(f.Atan(kInvalid), kInvalid);
    EXPECT_EQ(f.Atan2(kInvalid, 1), kInvalid);
    EXPECT_EQ(f.Atan2(1, kInvalid), kInvalid);
    EXPECT_EQ(f.Sinh(kInvalid), kInvalid);
    EXPECT_EQ(f.Cosh(kInvalid), kInvalid);
    EXPECT_EQ(f.Tanh(kInvalid), kInvalid);
    EXPECT_EQ(f.Asinh(kInvalid), kInvalid);
    EXPECT_EQ(f.Acosh(kInvalid), kInvalid);
    EXPECT_EQ(f.Atanh(kInvalid), kInvalid);
}

TEST_F(MathTest, TheNegativeLargestDoubleIsAnOrdinaryNumber) {
    EXPECT_EQ(f.Abs(-kInvalid), kInvalid);
    EXPECT_EQ(f.Sign(-kInvalid), -1);
    EXPECT_EQ(f.Neg(-kInvalid), -kInvalid);
}

TEST_F(MathTest, AbsAndNeg) {
    EXPECT_EQ(f.Abs(-2.5), 2.5);
    EXPECT_EQ(f.Abs(2.5), 2.5);
    EXPECT_EQ(f.Neg(2.5), -2.5);
    EXPECT_EQ(f.Neg(-2.5), -2.5);
    EXPECT_EQ(f.Neg(0.0), 0.0);
    EXPECT_TRUE(std::signbit(f.Neg(0.0)));
}

TEST_F(MathTest, Sign) {
    EXPECT_EQ(f.Sign(3.2), 1);
    EXPECT_EQ(f.Sign(-0.1), -1);
    EXPECT_EQ(f.Sign(0.0), 0);
    EXPECT_EQ(f.Sign(-0.0), 0);
    EXPECT_EQ(f.Sign(kNaN), 0);
}

TEST_F(MathTest, SignOfTheInvalidNumericIsTheLowHalfOfItsIntegerConversion) {
    EXPECT_EQ(f.Sign(kInvalid), 0);
    EXPECT_NE(f.Sign(kInvalid), kInvalidInt);
}

TEST_F(MathTest, SqrAndSqrt) {
    EXPECT_EQ(f.Sqr(3), 9.0);
    EXPECT_EQ(f.Sqr(-1.5), 2.25);
    EXPECT_EQ(f.Sqrt(9), 3.0);
    EXPECT_EQ(f.Sqrt(2), std::sqrt(Opaque(2.0)));
    EXPECT_EQ(f.Sqrt(0), 0.0);
    EXPECT_EQ(f.Sqrt(-1), kInvalid);
    EXPECT_EQ(f.Sqrt(kNaN), kInvalid);
}

TEST_F(MathTest, Power) {
    EXPECT_EQ(f.Power(2, 10), 1024.0);
    EXPECT_EQ(f.Power(2, -1), 0.5);
    EXPECT_EQ(f.Power(1.1, 3.3), std::pow(Opaque(1.1), Opaque(3.3)));
    // The C library's answer stands, even where it is not a number.
    EXPECT_TRUE(std::isnan(f.Power(-8, 1.0 / 3)));
}

TEST_F(MathTest, ExpAndLn) {
    EXPECT_EQ(f.Exp(0), 1.0);
    EXPECT_EQ(f.Exp(1), std::exp(Opaque(1.0)));
    EXPECT_EQ(f.Ln(1), 0.0);
    EXPECT_EQ(f.Ln(10), std::log(Opaque(10.0)));
    EXPECT_EQ(f.Ln(0), kInvalid);
    EXPECT_EQ(f.Ln(-1), kInvalid);
}

TEST_F(MathTest, LogIsTheRatioOfCommonLogarithms) {
    EXPECT_EQ(f.Log(8, 2), std::log10(Opaque(8.0)) / std::log10(Opaque(2.0)));
    EXPECT_EQ(f.Log(8, 2), 3.0);
    EXPECT_EQ(f.Log(100, 10), 2.0);
    EXPECT_EQ(f.Log(5, 3), std::log10(Opaque(5.0)) / std::log10(Opaque(3.0)));
}

TEST_F(MathTest, LogOutsideItsDomain) {
    EXPECT_EQ(f.Log(8, 1), kInvalid);
    EXPECT_EQ(f.Log(0, 2), kInvalid);
    EXPECT_EQ(f.Log(-8, 2), kInvalid);
    EXPECT_EQ(f.Log(8, 0), kInvalid);
    EXPECT_EQ(f.Log(8, -2), kInvalid);
}

TEST_F(MathTest, PiIsTheShortDecimalConstant) {
    EXPECT_EQ(f.Pi(), 3.1415926535898);
    EXPECT_NE(f.Pi(), std::acos(Opaque(-1.0)));
}

TEST_F(MathTest, Trigonometry) {
    EXPECT_EQ(f.Sin(0.5), std::sin(Opaque(0.5)));
    EXPECT_EQ(f.Cos(0.5), std::cos(Opaque(0.5)));
    EXPECT_EQ(f.Tan(0.5), std::tan(Opaque(0.5)));
    EXPECT_EQ(f.Atan(2), std::atan(Opaque(2.0)));
    EXPECT_EQ(f.Sin(0), 0.0);
    EXPECT_EQ(f.Cos(0), 1.0);
}

TEST_F(MathTest, Ctan) {
    EXPECT_EQ(f.Ctan(1), 1 / std::tan(Opaque(1.0)));
    EXPECT_EQ(f.Ctan(-0.3), 1 / std::tan(Opaque(-0.3)));
    EXPECT_EQ(f.Ctan(0), kInvalid);
}

TEST_F(MathTest, AsinAndAcosDomain) {
    EXPECT_EQ(f.Asin(1), std::asin(Opaque(1.0)));
    EXPECT_EQ(f.Asin(-1), std::asin(Opaque(-1.0)));
    EXPECT_EQ(f.Asin(0.3), std::asin(Opaque(0.3)));
    EXPECT_EQ(f.Asin(1.0000001), kInvalid);
    EXPECT_EQ(f.Asin(-1.5), kInvalid);
    EXPECT_EQ(f.Acos(-1), std::acos(Opaque(-1.0)));
    EXPECT_EQ(f.Acos(0.3), std::acos(Opaque(0.3)));
    EXPECT_EQ(f.Acos(-1.5), kInvalid);
    EXPECT_EQ(f.Acos(2), kInvalid);
}

TEST_F(MathTest, Atan2TakesTheOrdinateFirst) {
    EXPECT_EQ(f.Atan2(1, 0), std::atan2(Opaque(1.0), Opaque(0.0)));
    EXPECT_EQ(f.Atan2(0, 1), 0.0);
    EXPECT_EQ(f.Atan2(0, -1), std::atan2(Opaque(0.0), Opaque(-1.0)));
    EXPECT_EQ(f.Atan2(-2, 3), std::atan2(Opaque(-2.0), Opaque(3.0)));
    EXPECT_EQ(f.Atan2(0, 0), kInvalid);
}

TEST_F(MathTest, Hyperbolic) {
    EXPECT_EQ(f.Sinh(0.7), std::sinh(Opaque(0.7)));
    EXPECT_EQ(f.Cosh(0.7), std::cosh(Opaque(0.7)));
    EXPECT_EQ(f.Tanh(0.7), std::tanh(Opaque(0.7)));
}

TEST_F(MathTest, InverseHyperbolicFollowTheirFormulas) {
    const double two = Opaque(2), minusHalf = Opaque(-0.5), three = Opaque(3), half = Opaque(0.5);
    EXPECT_EQ(f.Asinh(2), std::log(two + std::sqrt(two * two + 1)));
    EXPECT_EQ(f.Asinh(0), 0.0);
    EXPECT_EQ(f.Asinh(-0.5), std::log(minusHalf + std::sqrt(minusHalf * minusHalf + 1)));
    EXPECT_EQ(f.Acosh(1), 0.0);
    EXPECT_EQ(f.Acosh(3), std::log(three + std::sqrt(three * three - 1)));
    EXPECT_EQ(f.Acosh(0.5), kInvalid);
    EXPECT_EQ(f.Atanh(0.5), 0.5 * std::log((1 + half) / (1 - half)));
    EXPECT_EQ(f.Atanh(0), 0.0);
    EXPECT_EQ(f.Atanh(1), kInvalid);
    EXPECT_EQ(f.Atanh(-1), kInvalid);
    EXPECT_EQ(f.Atanh(2), kInvalid);
}

TEST_F(MathTest, WorksWithoutAHostDataObject) {
    CSystemFuncs bare(nullptr);
    EXPECT_EQ(bare.Abs(-1), 1.0);
    EXPECT_EQ(bare.Round(2.5, 0), 3.0);
    EXPECT_EQ(bare.Fact(5), 120);
    EXPECT_EQ(bare.Text(3.5), "3.5000");
    EXPECT_EQ(bare.MakeDate(2010, 3, 25), 20100325);
    EXPECT_EQ(bare.DateToString(20100325), "2010-03-25");
    EXPECT_EQ(bare.Rgb(1, 2, 3), 0x030201);
    EXPECT_EQ(bare.InvalidString(), "N/A");
}

}  // namespace
