// The current bar's date, time of day and calendar parts in local time.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/InvalidValues.h"

namespace {

// Whole seconds of a bar time stamp, truncated toward zero.
inline int64_t WholeSeconds(int64_t millis) { return millis / 1000; }

// YYYYMMDD in 32-bit arithmetic that wraps like the machine's for years far beyond
// any chart.
inline int32_t DateNumber(const ffplatform::LocalTime& t) {
    const uint32_t n = static_cast<uint32_t>(t.year) * 10000u + static_cast<uint32_t>(t.month) * 100u +
                       static_cast<uint32_t>(t.day);
    return static_cast<int32_t>(n);
}

// Local calendar time of `bar`; false when there is no bar or the system cannot
// convert its time.
inline bool BarLocalTime(const BarRecord* bar, LocalDayCache& days, ffplatform::LocalTime& out) {
    return bar != nullptr && days.ToLocal(WholeSeconds(bar->time), out);
}

}  // namespace

int32_t CSystemFuncs::Date() {
    ffplatform::LocalTime t;
    if (!BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t)) return ff::kInvalidInteger;
    return DateNumber(t);
}

int32_t CSystemFuncs::D() { return Date(); }

// 0.HHMMSSmmm. The terms are added in this order in extended precision and the sum
// is rounded to double once, which fixes the last bit of the result.
double CSystemFuncs::Time() {
    const BarRecord* bar = CurrentStreamBar();
    ffplatform::LocalTime t;
    if (!BarLocalTime(bar, Derived().LocalDays, t)) return ff::kInvalidNumeric;
    const int64_t millis = bar->time - WholeSeconds(bar->time) * 1000;
    long double sum = static_cast<long double>(t.second) * static_cast<long double>(0.000001);
    sum += static_cast<long double>(t.hour) * static_cast<long double>(0.01);
    sum += static_cast<long double>(millis) * static_cast<long double>(0.000000001);
    sum += static_cast<long double>(t.minute) * static_cast<long double>(0.0001);
    return static_cast<double>(sum);
}

double CSystemFuncs::T() { return Time(); }

int32_t CSystemFuncs::Year() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.year : ff::kInvalidInteger;
}

int32_t CSystemFuncs::Month() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.month : ff::kInvalidInteger;
}

int32_t CSystemFuncs::Day() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.day : ff::kInvalidInteger;
}

int32_t CSystemFuncs::Hour() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.hour : ff::kInvalidInteger;
}

int32_t CSystemFuncs::Minute() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.minute : ff::kInvalidInteger;
}

int32_t CSystemFuncs::Second() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.second : ff::kInvalidInteger;
}

int32_t CSystemFuncs::Weekday() {
    ffplatform::LocalTime t;
    return BarLocalTime(CurrentStreamBar(), Derived().LocalDays, t) ? t.weekday
                                                                     : ff::kInvalidInteger;
}
