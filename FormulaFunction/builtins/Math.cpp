// The math built-ins. An argument equal to the invalid numeric gives the invalid
// result of the function's type, and so does an argument outside the domain.
#include <cmath>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/builtins/ScalarHelpers.h"
#include "FormulaFunction/platform/Platform.h"

using ffbuiltins::kInvalidInteger;
using ffbuiltins::kInvalidNumeric;
using ffbuiltins::TruncateToInt32;
using ffbuiltins::WrapToInt32;

namespace {

bool IsInvalid(double v) { return v == kInvalidNumeric; }

// 10 raised to `digits` (which may be negative), the scale of the rounding family,
// correctly rounded. Up to 10^22 every power of ten is exact, so a negative power is
// one correctly rounded division; this does not lean on the C library's pow, which
// is off by a unit in the last place for negative powers on some systems (mingw-w64
// gives 0.010000000000000002 for 10^-2).
double DecimalScale(int32_t digits) {
    static constexpr double kExact[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (digits >= 0 && digits <= 22) return kExact[digits];
    if (digits < 0 && digits >= -22) return 1.0 / kExact[-digits];
    return std::pow(10.0, static_cast<double>(digits));
}

// Signed 32-bit division as the processor does it, except that the one quotient that
// would trap (INT32_MIN / -1) wraps instead. The divisor is never 0 here.
int32_t DivideInt32(int32_t a, int32_t b) {
    if (b == -1) return WrapToInt32(0u - static_cast<uint32_t>(a));
    return a / b;
}

}  // namespace

double CSystemFuncs::Abs(double v) { return IsInvalid(v) ? kInvalidNumeric : std::fabs(v); }

double CSystemFuncs::Neg(double v) { return IsInvalid(v) ? kInvalidNumeric : -std::fabs(v); }

// The invalid numeric is answered with the low half of its 64-bit conversion, which
// is 0. NaN is neither above nor below 0 and also gives 0.
int32_t CSystemFuncs::Sign(double v) {
    if (IsInvalid(v)) {
        return WrapToInt32(static_cast<uint32_t>(
            static_cast<uint64_t>(ffbuiltins::TruncateToInt64(v)) & 0xFFFFFFFFu));
    }
    if (v > 0) return 1;
    if (v < 0) return -1;
    return 0;
}

double CSystemFuncs::Sqr(double v) { return IsInvalid(v) ? kInvalidNumeric : v * v; }

double CSystemFuncs::Sqrt(double v) {
    if (IsInvalid(v) || !(v >= 0)) return kInvalidNumeric;
    return std::sqrt(v);
}

double CSystemFuncs::Power(double base, double exponent) {
    if (IsInvalid(base) || IsInvalid(exponent)) return kInvalidNumeric;
    return std::pow(base, exponent);
}

double CSystemFuncs::Exp(double v) { return IsInvalid(v) ? kInvalidNumeric : std::exp(v); }

double CSystemFuncs::Ln(double v) {
    if (IsInvalid(v) || !(v > 0)) return kInvalidNumeric;
    return std::log(v);
}

double CSystemFuncs::Log(double a, double b) {
    if (IsInvalid(a) || IsInvalid(b)) return kInvalidNumeric;
    if (!(a > 0) || !(b > 0) || b == 1) return kInvalidNumeric;
    return std::log10(a) / std::log10(b);
}

// The language's constant, not the full-precision value.
double CSystemFuncs::Pi() { return 3.1415926535898; }

double CSystemFuncs::Sin(double v) { return IsInvalid(v) ? kInvalidNumeric : std::sin(v); }

double CSystemFuncs::Cos(double v) { return IsInvalid(v) ? kInvalidNumeric : std::cos(v); }

double CSystemFuncs::Tan(double v) { return IsInvalid(v) ? kInvalidNumeric : std::tan(v); }

double CSystemFuncs::Ctan(double v) {
    if (IsInvalid(v)) return kInvalidNumeric;
    const double t = std::tan(v);
    if (t == 0) return kInvalidNumeric;
    return 1 / t;
}

double CSystemFuncs::Asin(double v) {
    if (IsInvalid(v) || !(v >= -1 && v <= 1)) return kInvalidNumeric;
    return std::asin(v);
}

double CSystemFuncs::Acos(double v) {
    if (IsInvalid(v) || !(v >= -1 && v <= 1)) return kInvalidNumeric;
    return std::acos(v);
}

double CSystemFuncs::Atan(double v) { return IsInvalid(v) ? kInvalidNumeric : std::atan(v); }

// The ordinate comes first; the angle of the origin is undefined.
double CSystemFuncs::Atan2(double y, double x) {
    if (IsInvalid(y) || IsInvalid(x)) return kInvalidNumeric;
    if (y == 0 && x == 0) return kInvalidNumeric;
    return std::atan2(y, x);
}

double CSystemFuncs::Sinh(double v) { return IsInvalid(v) ? kInvalidNumeric : std::sinh(v); }

double CSystemFuncs::Cosh(double v) { return IsInvalid(v) ? kInvalidNumeric : std::cosh(v); }

double CSystemFuncs::Tanh(double v) { return IsInvalid(v) ? kInvalidNumeric : std::tanh(v); }

// The inverse hyperbolic functions are their logarithmic formulas, not the C
// library's functions, so their last bits follow the formulas.
double CSystemFuncs::Asinh(double v) {
    if (IsInvalid(v)) return kInvalidNumeric;
    return std::log(v + std::sqrt(v * v + 1));
}

double CSystemFuncs::Acosh(double v) {
    if (IsInvalid(v) || !(v >= 1)) return kInvalidNumeric;
    return std::log(v + std::sqrt(v * v - 1));
}

double CSystemFuncs::Atanh(double v) {
    if (IsInvalid(v) || !(v > -1 && v < 1)) return kInvalidNumeric;
    return 0.5 * std::log((1 + v) / (1 - v));
}

// The floor, not the truncation: IntPart(-1.5) is -2. A floor outside the 32-bit
// range converts to 0x80000000.
int32_t CSystemFuncs::IntPart(double v) {
    if (IsInvalid(v)) return kInvalidInteger;
    return TruncateToInt32(std::floor(v));
}

// What lies above the floor, so never negative for values in the 32-bit range.
double CSystemFuncs::FracPart(double v) {
    if (IsInvalid(v)) return kInvalidNumeric;
    return v - static_cast<double>(IntPart(v));
}

// Halves go away from zero; zero itself takes the negative branch (Round(0, 2) is
// -0.0). The digits argument is never tested for the invalid integer: 2147483647
// is used as an exponent like any other.
double CSystemFuncs::Round(double v, int32_t digits) {
    if (IsInvalid(v)) return kInvalidNumeric;
    const double p = DecimalScale(digits);
    const double r = std::floor(std::fabs(p * v) + 0.5);
    return v <= 0 ? -r / p : r / p;
}

// Ceils the scaled value and keeps its magnitude, so a negative value also moves
// toward zero: RoundUp(-1.23, 1) is -1.2.
double CSystemFuncs::RoundUp(double v, int32_t digits) {
    if (IsInvalid(v) || digits == kInvalidInteger) return kInvalidNumeric;
    const double p = DecimalScale(digits);
    const double r = std::fabs(std::ceil(p * v));
    return v <= 0 ? -r / p : r / p;
}

double CSystemFuncs::RoundDown(double v, int32_t digits) {
    if (IsInvalid(v) || digits == kInvalidInteger) return kInvalidNumeric;
    const double p = DecimalScale(digits);
    const double r = std::floor(std::fabs(p * v));
    return v <= 0 ? -r / p : r / p;
}

// Divides by the scale, so digits counts places left of the point:
// Trunc(1234.5, 2) is 1200.
int32_t CSystemFuncs::Trunc(double v, int32_t digits) {
    if (IsInvalid(v) || digits == kInvalidInteger) return kInvalidInteger;
    const double p = DecimalScale(digits);
    const int32_t n = TruncateToInt32(std::floor(std::fabs(v / p)));
    double result = n * p;
    if (v <= 0) result = -result;
    return TruncateToInt32(result);
}

double CSystemFuncs::Ceiling(double v, double significance) {
    if (IsInvalid(v) || IsInvalid(significance)) return kInvalidNumeric;
    if (significance == 0 || v * significance < 0) return kInvalidNumeric;
    return std::ceil(v / significance) * significance;
}

double CSystemFuncs::Floor(double v, double significance) {
    if (IsInvalid(v) || IsInvalid(significance)) return kInvalidNumeric;
    if (significance == 0 || v * significance < 0) return kInvalidNumeric;
    return std::floor(v / significance) * significance;
}

namespace {

// The magnitude rounded up to a whole number, moved up by one when its parity is
// not the wanted one, then given the sign; zero counts as negative. The sums wrap
// in 32 bits as the processor's do.
int32_t RoundToParity(double v, bool wantOdd) {
    const int32_t n = TruncateToInt32(std::ceil(std::fabs(v)));
    uint32_t bits = static_cast<uint32_t>(n);
    const bool odd = n % 2 != 0;
    if (odd != wantOdd) bits += 1u;
    if (v <= 0) bits = 0u - bits;
    return WrapToInt32(bits);
}

}  // namespace

int32_t CSystemFuncs::Even(double v) {
    if (IsInvalid(v)) return kInvalidInteger;
    return RoundToParity(v, false);
}

int32_t CSystemFuncs::Odd(double v) {
    if (IsInvalid(v)) return kInvalidInteger;
    return RoundToParity(v, true);
}

// The C remainder, with the sign of a. The integer arguments are not tested for the
// invalid integer (2147483647 is an ordinary number here). A divisor of -1 always
// leaves 0, computed without the division that would trap for INT32_MIN.
int32_t CSystemFuncs::Mod(int32_t a, int32_t b) {
    if (b == 0) return kInvalidInteger;
    if (b == -1) return 0;
    return a % b;
}

// The product 1 x 2 x ... x n in 32-bit unsigned arithmetic, wrapping above 12!.
// From 34! on the product holds 2^32 and stays 0, so the loop stops there.
int32_t CSystemFuncs::Fact(int32_t n) {
    if (n < 0) return kInvalidInteger;
    uint32_t product = 1;
    for (int32_t i = 2; i <= n; ++i) {
        product *= static_cast<uint32_t>(i);
        if (product == 0) break;
    }
    return WrapToInt32(product);
}

// Fact(n) / Fact(k) / Fact(n - k) in signed 32-bit arithmetic: exact up to n = 12.
// A divisor factorial that wrapped to 0 makes the division fail.
int32_t CSystemFuncs::Combin(int32_t n, int32_t k) {
    if (n == kInvalidInteger || k == kInvalidInteger) return kInvalidInteger;
    if (k < 0 || n < k) return kInvalidInteger;
    const int32_t byK = Fact(k);
    const int32_t byRest = Fact(n - k);
    if (byK == 0 || byRest == 0) return kInvalidInteger;
    return DivideInt32(DivideInt32(Fact(n), byK), byRest);
}

// low + r x (high - low) / 32767 with r the generator's next value, multiplied in
// that order. Invalid bounds give the invalid numeric without drawing.
double CSystemFuncs::Rand(double low, double high) {
    if (IsInvalid(low) || IsInvalid(high)) return kInvalidNumeric;
    const double r = static_cast<double>(ffplatform::NextRandom());
    return r * (high - low) * 0.0000305185094759971922 + low;
}
