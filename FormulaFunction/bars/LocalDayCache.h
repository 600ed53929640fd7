// Local calendar time of bar time stamps without a system conversion per bar.
//
// Bars of one day share their local date and UTC offset, so the cache keeps the
// last two local days it has seen, each as an interval [start, start + 86400) of
// seconds that begins at local midnight. Inside such an interval the local time is
// the day's midnight plus the seconds since start. A day is only kept after both
// of its ends were converted by the system and found to be 00:00:00 and 23:59:59
// of the same date with the same daylight-saving flag: a day with a clock change
// has 23 or 25 hours (or does not start at midnight) and fails that test, so
// every second of it is converted by the system. The one case the test cannot see,
// a zone shifting its clock and shifting it back within one local day, does not
// occur in the time-zone database.
//
// The cache belongs to one CSystemFuncs object and starts empty with it, so a new
// object always sees the machine's current time zone. A change of time zone
// during the life of one object is not seen; the host never changes zone in the
// middle of a run.
#pragma once

#include <cstdint>

#include "FormulaFunction/platform/Platform.h"

class LocalDayCache {
public:
    // The same answer as ffplatform::ToLocalTime(seconds, out).
    bool ToLocal(int64_t seconds, ffplatform::LocalTime& out);

    // True when one remembered day holds both times: their local dates are then the
    // same. False says nothing.
    bool InOneKnownDay(int64_t a, int64_t b) const;

private:
    struct Day {
        bool valid = false;
        int64_t start = 0;             // local midnight, seconds since the epoch
        ffplatform::LocalTime midnight;  // the local time at start
    };

    bool Remember(int64_t seconds, const ffplatform::LocalTime& local);

    Day days_[2];
    int32_t lastUsed_ = 0;
};
