// Local-time conversion and the machine's clock through the C library.
#include <ctime>

#include "FormulaFunction/platform/Platform.h"

namespace ffplatform {

bool ToLocalTime(int64_t seconds, LocalTime& out) {
    std::time_t t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    if (localtime_r(&t, &tm) == nullptr) return false;
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
    std::tm tm{};
    tm.tm_year = local.year - 1900;
    tm.tm_mon = local.month - 1;
    tm.tm_mday = local.day;
    tm.tm_hour = local.hour;
    tm.tm_min = local.minute;
    tm.tm_sec = local.second;
    tm.tm_isdst = local.isDst;
    std::time_t t = std::mktime(&tm);
    return static_cast<int64_t>(t);
}

int64_t CurrentTimeSeconds() { return static_cast<int64_t>(std::time(nullptr)); }

}  // namespace ffplatform
