// Calendar arithmetic on the proleptic Gregorian calendar, without the C library:
// day numbers count days since 1970-01-01, so a local calendar time becomes
// "local seconds" that differ from UTC seconds only by the zone's offset.
#pragma once

#include <cstdint>

namespace ffrunner {

constexpr int64_t kSecondsPerDay = 86400;

// Days since 1970-01-01 of a calendar date (month 1-12, day 1-31).
constexpr int64_t DaysFromCivil(int64_t year, int32_t month, int32_t day) {
    year -= month <= 2 ? 1 : 0;
    const int64_t era = (year >= 0 ? year : year - 399) / 400;
    const int64_t yearOfEra = year - era * 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

struct CivilDate {
    int64_t year = 1970;
    int32_t month = 1;
    int32_t day = 1;
};

// The calendar date of a day number.
constexpr CivilDate CivilFromDays(int64_t days) {
    days += 719468;
    const int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const int64_t dayOfEra = days - era * 146097;
    const int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t mp = (5 * dayOfYear + 2) / 153;
    CivilDate date;
    date.day = static_cast<int32_t>(dayOfYear - (153 * mp + 2) / 5 + 1);
    date.month = static_cast<int32_t>(mp < 10 ? mp + 3 : mp - 9);
    date.year = yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0);
    return date;
}

constexpr bool IsLeapYear(int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int32_t DaysInMonth(int64_t year, int32_t month) {
    constexpr int32_t kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// 0 Sunday to 6 Saturday.
constexpr int32_t WeekdayFromDays(int64_t days) {
    return static_cast<int32_t>(days >= -4 ? (days + 4) % 7 : (days + 5) % 7 + 6);
}

// Floor division of seconds into days, for negative times too.
constexpr int64_t FloorDiv(int64_t a, int64_t b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)) ? 1 : 0);
}

}  // namespace ffrunner
