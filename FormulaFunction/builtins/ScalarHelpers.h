// Helpers shared by the math, string, date and time built-ins: the integer
// conversions as the processor performs them, the decimal field reader of the text
// parsers, and the splitting of YYYYMMDD date values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "FormulaFunction/InvalidValues.h"

namespace ffbuiltins {

using ff::IsInvalidText;
using ff::kInvalidInteger;
using ff::kInvalidNumeric;
using ff::kInvalidString;

// Reinterprets the low 32 bits as a signed value (two's complement wrap).
inline int32_t WrapToInt32(uint32_t bits) { return static_cast<int32_t>(bits); }

// The 32-bit truncating conversion of the processor: toward zero, and 0x80000000
// for NaN and for every value whose truncation does not fit.
inline int32_t TruncateToInt32(double x) {
    if (!(x > -2147483649.0 && x < 2147483648.0)) return INT32_MIN;
    return static_cast<int32_t>(x);
}

// The 64-bit truncating conversion, with 0x8000000000000000 for NaN and values that
// do not fit.
inline int64_t TruncateToInt64(double x) {
    if (!(x >= -9223372036854775808.0 && x < 9223372036854775808.0)) return INT64_MIN;
    return static_cast<int64_t>(x);
}

// Integer value of the bytes [pos, pos + count) of `text` as the C library's atoi
// reads them: leading white space skipped, an optional sign, then digits up to the
// first other byte; 0 when no digit follows. Bytes beyond the end of the text are
// simply absent.
inline int32_t ReadDecimalField(const std::string& text, size_t pos, size_t count) {
    if (pos >= text.size()) return 0;
    const size_t end = text.size() - pos < count ? text.size() : pos + count;
    size_t i = pos;
    while (i < end && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    bool negative = false;
    if (i < end && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    int64_t value = 0;
    for (; i < end && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > 2147483648LL) value = 2147483648LL;  // saturate, as atoi does
    }
    if (negative) value = -value;
    if (value > INT32_MAX) value = INT32_MAX;
    return static_cast<int32_t>(value);
}

// The time-of-day encoding 0.HHMMSS, summed seconds first, then hours, then minutes.
inline double TimeOfDayValue(int32_t hour, int32_t minute, int32_t second) {
    return second * 0.000001 + hour * 0.01 + minute * 0.0001;
}

struct CalendarDate {
    int32_t year = 0;
    int32_t month = 0;
    int32_t day = 0;
};

// Date shifting and counting work on seconds since 1970, so any earlier date is
// raised to the first day whose local midnight is after the epoch in every zone.
inline int32_t RaiseToEpochDate(int32_t d) { return d < 19700102 ? 19700102 : d; }

// The formatter and the date-time composer read a short value as a date with digits
// missing at the end (2010325 becomes 20103250). The multiplication wraps in 32 bits
// as the processor's does; a value that wraps to 0 (or is 0) can never reach eight
// digits and is left as it is.
inline int32_t ScaleToEightDigits(int32_t d) {
    uint32_t bits = static_cast<uint32_t>(d);
    while (WrapToInt32(bits) < 10000000 && bits != 0) bits *= 10u;
    return WrapToInt32(bits);
}

// Drops surplus trailing digits and splits YYYYMMDD into its parts without any
// range check on month or day.
inline CalendarDate SplitDateValue(int32_t d) {
    while (d >= 100000000) d /= 10;
    CalendarDate date;
    date.year = d / 10000;
    date.month = d / 100 - date.year * 100;
    date.day = d - (date.year * 100 + date.month) * 100;
    return date;
}

// A month past December restarts the year at its first day; otherwise a day past 31
// restarts the month.
inline void ResetOverflowingParts(CalendarDate& date) {
    if (date.month >= 13) {
        date.month = 1;
        date.day = 1;
    } else if (date.day >= 32) {
        date.day = 1;
    }
}

inline int32_t DateValue(int32_t year, int32_t month, int32_t day) {
    return (year * 100 + month) * 100 + day;
}

}  // namespace ffbuiltins
