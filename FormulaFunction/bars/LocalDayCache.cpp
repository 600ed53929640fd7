#include "FormulaFunction/bars/LocalDayCache.h"

namespace {

constexpr int64_t kSecondsPerDay = 86400;

bool SameDate(const ffplatform::LocalTime& a, const ffplatform::LocalTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

bool AtClock(const ffplatform::LocalTime& t, int32_t hour, int32_t minute, int32_t second) {
    return t.hour == hour && t.minute == minute && t.second == second;
}

// The local time `offset` seconds (0 to 86399) after the midnight of a uniform day.
void FromMidnight(const ffplatform::LocalTime& midnight, int64_t offset,
                  ffplatform::LocalTime& out) {
    out = midnight;
    const int32_t s = static_cast<int32_t>(offset);
    out.hour = s / 3600;
    out.minute = s / 60 % 60;
    out.second = s % 60;
}

}  // namespace

bool LocalDayCache::ToLocal(int64_t seconds, ffplatform::LocalTime& out) {
    for (int32_t i = 0; i < 2; ++i) {
        const Day& day = days_[i];
        // Unsigned, so that a time before the start also falls outside.
        const uint64_t offset = static_cast<uint64_t>(seconds) - static_cast<uint64_t>(day.start);
        if (day.valid && offset < static_cast<uint64_t>(kSecondsPerDay)) {
            FromMidnight(day.midnight, static_cast<int64_t>(offset), out);
            lastUsed_ = i;
            return true;
        }
    }
    if (!ffplatform::ToLocalTime(seconds, out)) return false;
    Remember(seconds, out);
    return true;
}

bool LocalDayCache::InOneKnownDay(int64_t a, int64_t b) const {
    for (const Day& day : days_) {
        const uint64_t first = static_cast<uint64_t>(a) - static_cast<uint64_t>(day.start);
        const uint64_t second = static_cast<uint64_t>(b) - static_cast<uint64_t>(day.start);
        if (day.valid && first < static_cast<uint64_t>(kSecondsPerDay) &&
            second < static_cast<uint64_t>(kSecondsPerDay))
            return true;
    }
    return false;
}

// Keeps the local day of `seconds` (whose system conversion is `local`) when the
// whole day is uniform; answers whether it did. The day replaces the one used less
// recently, so two alternating days both stay.
bool LocalDayCache::Remember(int64_t seconds, const ffplatform::LocalTime& local) {
    if (local.second > 59) return false;  // a leap second: leave such days alone
    const int64_t sinceMidnight = local.hour * 3600 + local.minute * 60 + local.second;
    if (seconds < INT64_MIN + sinceMidnight) return false;
    const int64_t start = seconds - sinceMidnight;
    if (start > INT64_MAX - kSecondsPerDay) return false;

    ffplatform::LocalTime first, last;
    if (!ffplatform::ToLocalTime(start, first) || !ffplatform::ToLocalTime(start + kSecondsPerDay - 1, last))
        return false;
    if (!SameDate(first, local) || !AtClock(first, 0, 0, 0) || first.isDst != local.isDst)
        return false;
    if (!SameDate(last, local) || !AtClock(last, 23, 59, 59) || last.isDst != local.isDst)
        return false;

    const int32_t slot = 1 - lastUsed_;
    days_[slot].valid = true;
    days_[slot].start = start;
    days_[slot].midnight = first;
    lastUsed_ = slot;
    return true;
}
