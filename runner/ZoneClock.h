// The time zone that local calendar times are read in. Everything that touches the
// operating system's zone database lives in platform/ZoneClock.cpp.
#pragma once

#include <cstdint>
#include <string>

namespace ffrunner {

// Whether the zone name can be used: an IANA name found in the system's zone
// database ("Asia/Shanghai") or a POSIX rule ("CST-8", "EST5EDT,M3.2.0,M11.1.0").
// The empty name stands for the machine's zone and is always known.
bool ZoneIsKnown(const std::string& zone);

// Makes `zone` the process's local time zone for the life of the object and puts
// the previous setting back afterwards. The empty name leaves the zone alone. The
// process has one zone, so only one thread may hold a ScopedZone at a time.
class ScopedZone {
public:
    explicit ScopedZone(const std::string& zone);
    ~ScopedZone();
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;

private:
    bool active_ = false;
    bool hadPrevious_ = false;
    std::string previous_;
};

// Makes `zone` the process's local time zone for good (the backtest does this so
// that the library's dates agree with the bar files). The empty name does nothing.
void SetProcessZone(const std::string& zone);

// The offset of local time from UTC, in seconds, at a UTC instant, in the process's
// current zone; false when the system cannot convert the instant.
bool ZoneOffsetAt(int64_t utcSeconds, int64_t& offset);

// How one local time maps to UTC.
struct LocalMapping {
    int64_t utc = 0;        // the chosen instant (see LocalSecondsToUtc)
    int64_t laterUtc = 0;   // in an overlap, the second instant; otherwise = utc
    bool ambiguous = false; // the local time happens twice (clocks turned back)
    bool skipped = false;   // the local time never happens (clocks turned forward)
};

// Maps local seconds (day number × 86400 + second of the day) to UTC seconds in the
// process's zone. A local time that happens twice maps to the earlier instant (and
// reports the later one); a local time that the clocks skip is read with the offset
// in force before the change, so it lands as far after the change as it lies after
// the last time before the gap. False when the system cannot convert.
bool LocalSecondsToUtc(int64_t localSeconds, LocalMapping& out);

}  // namespace ffrunner
