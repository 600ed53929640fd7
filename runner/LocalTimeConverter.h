// Converts local calendar times of one zone to UTC milliseconds, fast enough for
// millions of bars: the zone is asked once per local day, not once per bar.
#pragma once

#include <cstdint>

namespace ffrunner {

class LocalTimeConverter {
public:
    // Uses the process's current zone (wrap the conversions in a ScopedZone to read
    // another one).
    LocalTimeConverter() = default;

    // UTC milliseconds of a local time given as a day number (days since
    // 1970-01-01), second of the day and millisecond. `previous` (UTC ms, INT64_MIN
    // for none) settles a local time that happens twice: the earlier instant is
    // taken unless it is not after `previous`, then the later one, so a series that
    // runs through the hour the clocks are turned back keeps going forward. A
    // skipped local time is read with the offset in force before the change. False
    // when the system cannot convert.
    bool ToUtcMillis(int64_t day, int32_t secondOfDay, int32_t millisecond, int64_t previous,
                     int64_t& utcMillis);

    // How many days the zone was asked about (each costs a few system calls).
    int64_t DaysExamined() const { return daysExamined_; }

private:
    // Asks the zone whether `day` has one offset from midnight to midnight.
    bool ExamineDay(int64_t day);

    int64_t cachedDay_ = INT64_MIN;
    bool uniform_ = false;       // the whole day has one offset
    int64_t offset_ = 0;         // that offset, seconds east of UTC
    int64_t daysExamined_ = 0;
};

}  // namespace ffrunner
