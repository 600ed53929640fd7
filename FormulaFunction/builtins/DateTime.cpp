// The date and time built-ins: the machine clock, composing, shifting, counting,
// formatting and parsing dates (YYYYMMDD), times (0.HHMMSS) and date-times
// (YYYYMMDD.HHMMSS). Every calendar conversion is in local time.
#include <cmath>
#include <cstdio>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/builtins/ScalarHelpers.h"
#include "FormulaFunction/platform/Platform.h"

using ffbuiltins::CalendarDate;
using ffbuiltins::DateValue;
using ffbuiltins::kInvalidInteger;
using ffbuiltins::kInvalidNumeric;
using ffbuiltins::kInvalidString;
using ffbuiltins::ReadDecimalField;
using ffbuiltins::TimeOfDayValue;
using ffbuiltins::TruncateToInt32;
using ffbuiltins::WrapToInt32;

namespace {

constexpr int64_t kSecondsPerDay = 86400;

// The date value to shift or count from: raised to 1970-01-02, split, and reset
// where month or day overflow. Month 0 and day 0 are left for the calendar
// conversion, which reads them as the last month or day before.
CalendarDate ShiftableDate(int32_t d) {
    CalendarDate date = ffbuiltins::SplitDateValue(ffbuiltins::RaiseToEpochDate(d));
    ffbuiltins::ResetOverflowingParts(date);
    return date;
}

// Seconds since the epoch of local midnight starting `date`, letting the system
// decide whether daylight-saving time is in force; -1 when it cannot convert.
int64_t LocalMidnight(const CalendarDate& date) {
    ffplatform::LocalTime local;
    local.year = date.year;
    local.month = date.month;
    local.day = date.day;
    local.isDst = -1;
    return ffplatform::FromLocalTime(local);
}

}  // namespace

int32_t CSystemFuncs::CurrentDate() {
    ffplatform::LocalTime now;
    if (!ffplatform::ToLocalTime(GetServerTime(), now)) return kInvalidInteger;
    return DateValue(now.year, now.month, now.day);
}

double CSystemFuncs::CurrentTime() {
    ffplatform::LocalTime now;
    if (!ffplatform::ToLocalTime(GetServerTime(), now)) return kInvalidNumeric;
    return TimeOfDayValue(now.hour, now.minute, now.second);
}

double CSystemFuncs::SystemDateTime() {
    ffplatform::LocalTime now;
    if (!ffplatform::ToLocalTime(GetServerTime(), now)) return kInvalidNumeric;
    return TimeOfDayValue(now.hour, now.minute, now.second) +
           DateValue(now.year, now.month, now.day);
}

// Each part out of range falls back to its first value. Arguments are not tested
// for the invalid integer: 2147483647 is clamped like any other number.
int32_t CSystemFuncs::MakeDate(int32_t year, int32_t month, int32_t day) {
    if (year < 1900 || year > 9999) year = 1900;
    if (month < 1 || month > 12) month = 1;
    if (day < 1 || day > 31) day = 1;
    return DateValue(year, month, day);
}

// Hour 24 and minute or second 60 are kept; negative minutes and seconds too.
double CSystemFuncs::MakeTime(int32_t hour, int32_t minute, int32_t second) {
    if (hour == kInvalidInteger || minute == kInvalidInteger || second == kInvalidInteger) {
        return kInvalidNumeric;
    }
    if (hour < 0 || hour > 24) hour = 0;
    if (minute > 60) minute = 0;
    if (second > 60) second = 0;
    return TimeOfDayValue(hour, minute, second);
}

// The minute slot of the result carries the date's month and the time's minute is
// dropped: MakeDateTime(20100325, 0.143520) is 20100325.140320. The time's parts are
// floors of the scaled value, combined in wrapping 32-bit arithmetic.
double CSystemFuncs::MakeDateTime(int32_t date, double time) {
    if (date == kInvalidInteger || time == kInvalidNumeric) return kInvalidNumeric;
    CalendarDate parts = ffbuiltins::SplitDateValue(ffbuiltins::ScaleToEightDigits(date));
    if (parts.month >= 13) parts.month = 1;
    if (parts.day >= 32) parts.day = 1;

    const uint32_t h = static_cast<uint32_t>(TruncateToInt32(std::floor(time * 100)));
    const uint32_t m = static_cast<uint32_t>(TruncateToInt32(std::floor(time * 10000))) - h * 100u;
    const uint32_t s =
        static_cast<uint32_t>(TruncateToInt32(std::floor(time * 1000000))) - h * 10000u - m * 100u;
    int32_t hour = WrapToInt32(h);
    int32_t second = WrapToInt32(s);
    if (hour > 24) hour = 0;
    if (second > 60) second = 0;

    const int32_t dateValue = DateValue(parts.year, parts.month, parts.day);
    return second * 0.000001 + hour * 0.01 + parts.month * 0.0001 + dateValue;
}

// Shifts by whole 86400-second steps from local midnight, not by calendar days, so a
// daylight-saving change inside the span moves the result by the clock's shift (an
// autumn change moving backward lands on the day before the calendar's answer).
int32_t CSystemFuncs::DateAdd(int32_t date, int32_t days) {
    if (date == kInvalidInteger || days == kInvalidInteger) return kInvalidInteger;
    const int64_t midnight = LocalMidnight(ShiftableDate(date));
    if (midnight == -1) return kInvalidInteger;
    ffplatform::LocalTime shifted;
    if (!ffplatform::ToLocalTime(midnight + days * kSecondsPerDay, shifted)) return kInvalidInteger;
    return MakeDate(shifted.year, shifted.month, shifted.day);
}

// Whole 86400-second steps from the first local midnight to the second, truncated
// toward zero: a span that contains a spring change is an hour short and loses a
// day.
int32_t CSystemFuncs::DateDiff(int32_t date1, int32_t date2) {
    if (date1 == kInvalidInteger || date2 == kInvalidInteger) return kInvalidInteger;
    const int64_t t1 = LocalMidnight(ShiftableDate(date1));
    const int64_t t2 = LocalMidnight(ShiftableDate(date2));
    if (t1 == -1 || t2 == -1) return kInvalidInteger;
    return static_cast<int32_t>((t2 - t1) / kSecondsPerDay);
}

std::string CSystemFuncs::DateToString(int32_t date) {
    if (date == kInvalidInteger) return kInvalidString;
    CalendarDate parts = ffbuiltins::SplitDateValue(ffbuiltins::ScaleToEightDigits(date));
    ffbuiltins::ResetOverflowingParts(parts);
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", parts.year, parts.month, parts.day);
    return buffer;
}

// Reads the printed value "0.HHMMSS" by character positions: hours at 2-3, minutes
// at 4-5, seconds in the last two characters. A value of 1 or more is read by the
// same positions.
std::string CSystemFuncs::TimeToString(double time) {
    if (time == kInvalidNumeric) return kInvalidString;
    char printed[512];  // the widest double with six decimals
    const int length = std::snprintf(printed, sizeof printed, "%.6f", time);
    const std::string text(printed, length > 0 ? static_cast<size_t>(length) : 0);
    int32_t hour = ReadDecimalField(text, 2, 2);
    int32_t minute = ReadDecimalField(text, 4, 2);
    int32_t second = text.size() >= 2 ? ReadDecimalField(text, text.size() - 2, 2)
                                      : ReadDecimalField(text, 0, 2);
    if (hour >= 24) {
        hour = minute = second = 0;
    } else if (minute >= 60) {
        minute = second = 0;
    } else if (second >= 60) {
        second = 0;
    }
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", hour, minute, second);
    return buffer;
}

std::string CSystemFuncs::DateTimeToString(double value) {
    if (value == kInvalidNumeric) return kInvalidString;
    return DateToString(IntPart(value)) + " " + TimeToString(FracPart(value));
}

// "YYYY?MM?DD": the separators are not looked at. A date before 1900 or a month or
// day out of range gives 1900-01-01.
int32_t CSystemFuncs::StringToDate(const std::string& text) {
    if (ffbuiltins::IsInvalidText(text)) return kInvalidInteger;
    const int32_t year = ReadDecimalField(text, 0, 4);
    const int32_t month = ReadDecimalField(text, 5, 2);
    const int32_t day = ReadDecimalField(text, 8, 2);
    if (year >= 1900 && month >= 1 && month <= 12 && day >= 1 && day <= 31) {
        return DateValue(year, month, day);
    }
    return 19000101;
}

// "HH?MM?SS": the separators are not looked at. Any part out of range gives 0.
double CSystemFuncs::StringToTime(const std::string& text) {
    if (ffbuiltins::IsInvalidText(text)) return kInvalidNumeric;
    const int32_t hour = ReadDecimalField(text, 0, 2);
    const int32_t minute = ReadDecimalField(text, 3, 2);
    const int32_t second = ReadDecimalField(text, 6, 2);
    if (hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59) {
        return TimeOfDayValue(hour, minute, second);
    }
    return 0;
}

// "YYYY-MM-DD HH:MM:SS": the date from the first ten characters, the time from the
// eight after the separator at position 10.
double CSystemFuncs::StringToDateTime(const std::string& text) {
    if (ffbuiltins::IsInvalidText(text)) return kInvalidNumeric;
    const std::string datePart = text.substr(0, 10);
    const std::string timePart = text.size() > 11 ? text.substr(11, 8) : std::string();
    return StringToDate(datePart) + StringToTime(timePart);
}
