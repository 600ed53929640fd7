#include "runner/LocalCalendar.h"

#include <cstdio>

#include "runner/CivilTime.h"
#include "runner/ZoneClock.h"

namespace ffrunner {

int32_t LocalFields::Year() const { return static_cast<int32_t>(CivilFromDays(day).year); }
int32_t LocalFields::Month() const { return CivilFromDays(day).month; }
int32_t LocalFields::DayOfMonth() const { return CivilFromDays(day).day; }

int32_t LocalFields::Date() const {
    const CivilDate date = CivilFromDays(day);
    return static_cast<int32_t>(date.year * 10000 + date.month * 100 + date.day);
}

int32_t LocalFields::HhMmSs() const {
    return secondOfDay / 3600 * 10000 + secondOfDay / 60 % 60 * 100 + secondOfDay % 60;
}

// The offset found for one instant is kept for the whole local day around it when
// the zone confirms it at both ends of that day; otherwise for that second only.
LocalFields LocalCalendar::ToLocal(int64_t utcMillis) {
    const int64_t seconds = FloorDiv(utcMillis, 1000);
    if (seconds < validFrom_ || seconds >= validTo_) {
        int64_t offset = 0;
        if (!ZoneOffsetAt(seconds, offset)) offset = 0;
        const int64_t day = FloorDiv(seconds + offset, kSecondsPerDay);
        const int64_t from = day * kSecondsPerDay - offset;
        const int64_t to = from + kSecondsPerDay;
        int64_t atFrom = 0, atEnd = 0;
        if (ZoneOffsetAt(from, atFrom) && ZoneOffsetAt(to - 1, atEnd) && atFrom == offset &&
            atEnd == offset) {
            validFrom_ = from;
            validTo_ = to;
        } else {
            validFrom_ = seconds;
            validTo_ = seconds + 1;
        }
        offset_ = offset;
    }
    const int64_t local = seconds + offset_;
    LocalFields fields;
    fields.day = FloorDiv(local, kSecondsPerDay);
    fields.secondOfDay = static_cast<int32_t>(local - fields.day * kSecondsPerDay);
    fields.millisecond = static_cast<int32_t>(utcMillis - seconds * 1000);
    return fields;
}

std::string FormatLocal(const LocalFields& fields) {
    const CivilDate date = CivilFromDays(fields.day);
    const int32_t s = fields.secondOfDay;
    char buffer[48];
    int n = std::snprintf(buffer, sizeof buffer, "%04lld-%02d-%02d %02d:%02d:%02d",
                          static_cast<long long>(date.year), date.month, date.day, s / 3600,
                          s / 60 % 60, s % 60);
    if (fields.millisecond != 0 && n > 0) {
        std::snprintf(buffer + n, sizeof buffer - n, ".%03d", fields.millisecond);
    }
    return buffer;
}

std::string FormatLocalDate(const LocalFields& fields) {
    return FormatLocal(fields).substr(0, 10);
}

}  // namespace ffrunner
