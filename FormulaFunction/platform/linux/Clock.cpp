// Local-time conversion and the machine's clock through the C library. Years and
// months travel through the C library's int fields with an offset, so values
// that would not fit are refused here rather than overflowing.
#include <climits>
#include <ctime>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

bool ToLocalTime(int64_t seconds, LocalTime& out) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    if (static_cast<int64_t>(t) != seconds) return false;
    std::tm tm{};
    if (localtime_r(&t, &tm) == nullptr) return false;
    const int64_t year = static_cast<int64_t>(tm.tm_year) + 1900;
    if (year > INT32_MAX) return false;
    out.year = static_cast<int32_t>(year);
    out.month = tm.tm_mon + 1;
    out.day = tm.tm_mday;
    out.hour = tm.tm_hour;
    out.minute = tm.tm_min;
    out.second = tm.tm_sec;
    out.weekday = tm.tm_wday;
    out.yearDay = tm.tm_yday;
    out.isDst = tm.tm_isdst;
    return true;
}

int64_t FromLocalTime(const LocalTime& local) {
    const int64_t year = static_cast<int64_t>(local.year) - 1900;
    const int64_t month = static_cast<int64_t>(local.month) - 1;
    if (year < INT_MIN || year > INT_MAX || month < INT_MIN) return -1;
    std::tm tm{};
    tm.tm_year = static_cast<int>(year);
    tm.tm_mon = static_cast<int>(month);
    tm.tm_mday = local.day;
    tm.tm_hour = local.hour;
    tm.tm_min = local.minute;
    tm.tm_sec = local.second;
    tm.tm_isdst = local.isDst;
    const std::time_t t = std::mktime(&tm);
    return static_cast<int64_t>(t);
}

int64_t CurrentTimeSeconds() { return static_cast<int64_t>(std::time(nullptr)); }

}  // namespace ffplatform
