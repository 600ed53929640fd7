#include "runner/LocalTimeConverter.h"

#include "runner/CivilTime.h"
#include "runner/ZoneClock.h"

namespace ffrunner {

// A day is uniform when its midnight and the next midnight both map to one instant
// with the same offset, and noon in UTC terms has that offset too. Days on which
// the clocks change (or that begin in a gap) are converted bar by bar instead.
bool LocalTimeConverter::ExamineDay(int64_t day) {
    ++daysExamined_;
    cachedDay_ = day;
    uniform_ = false;
    const int64_t midnight = day * kSecondsPerDay;
    LocalMapping start, end;
    if (!LocalSecondsToUtc(midnight, start) ||
        !LocalSecondsToUtc(midnight + kSecondsPerDay, end)) {
        cachedDay_ = INT64_MIN;
        return false;
    }
    if (start.ambiguous || start.skipped || end.ambiguous || end.skipped) return true;
    const int64_t offset = midnight - start.utc;
    if (midnight + kSecondsPerDay - end.utc != offset) return true;
    int64_t noon = 0;
    if (!ZoneOffsetAt(start.utc + kSecondsPerDay / 2, noon) || noon != offset) return true;
    uniform_ = true;
    offset_ = offset;
    return true;
}

bool LocalTimeConverter::ToUtcMillis(int64_t day, int32_t secondOfDay, int32_t millisecond,
                                     int64_t previous, int64_t& utcMillis) {
    if (day != cachedDay_ && !ExamineDay(day)) return false;
    const int64_t local = day * kSecondsPerDay + secondOfDay;
    if (uniform_) {
        utcMillis = (local - offset_) * 1000 + millisecond;
        return true;
    }
    LocalMapping mapping;
    if (!LocalSecondsToUtc(local, mapping)) return false;
    utcMillis = mapping.utc * 1000 + millisecond;
    if (mapping.ambiguous && utcMillis <= previous) {
        utcMillis = mapping.laterUtc * 1000 + millisecond;
    }
    return true;
}

}  // namespace ffrunner
