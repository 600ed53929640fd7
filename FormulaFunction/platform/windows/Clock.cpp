// Local-time conversion and the machine's clock through the C runtime's 64-bit
// time functions, which follow the TZ variable when it is set and the system's
// time-zone settings otherwise.
#include <time.h>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

// The runtime refuses times before 1970 and after the year 3000; so do we.
bool ToLocalTime(int64_t seconds, LocalTime& out) {
    const __time64_t t = seconds;
    struct tm tm = {};
    if (_localtime64_s(&tm, &t) != 0) return false;
    out.year = tm.tm_year + 1900;
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
    struct tm tm = {};
    tm.tm_year = local.year - 1900;
    tm.tm_mon = local.month - 1;
    tm.tm_mday = local.day;
    tm.tm_hour = local.hour;
    tm.tm_min = local.minute;
    tm.tm_sec = local.second;
    tm.tm_isdst = local.isDst;
    return static_cast<int64_t>(_mktime64(&tm));
}

int64_t CurrentTimeSeconds() { return static_cast<int64_t>(_time64(nullptr)); }

}  // namespace ffplatform
