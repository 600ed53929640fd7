// Runs a test in a chosen time zone, on Linux and on Windows (also under Wine).
//
// The two systems spell zones differently: the C library on Linux reads tz database
// names ("America/New_York"), the Windows C runtime reads only the POSIX-like
// "EST5EDT" / "CST-8" form, with the US daylight-saving rules for a zone that has a
// daylight name. Tests name a zone either way below, and the helper picks the
// spelling of the system they run on:
//
//     fftest::ScopedTimeZone zone(fftest::Zone::NewYork);
//     fftest::ScopedTimeZone zone("Asia/Shanghai");  // the same, by tz name
//     ... local-time conversions see that zone ...
//     // the previous TZ (or its absence) is back when `zone` goes out of scope
//
// Only New York, Shanghai and UTC can be spelled on Windows; a test of another
// zone asks TimeZoneExpressible() first and skips itself where it is false.
//
// Both spellings agree on every instant from 2007 on (second Sunday of March to
// first Sunday of November) and on the 1987-2006 rules, which is all the New York
// cases need. Two things differ between the systems and belong only in tests
// guarded for one of them: the Windows runtime refuses times before 1970 (and local
// times that fall before it) and after the year 3000, and a local time inside the
// spring-forward gap is resolved differently.
#pragma once

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#if defined(_WIN32)
#include <stdlib.h>
#include <time.h>
#endif

namespace fftest {

enum class Zone {
    NewYork,   // UTC-5, daylight saving UTC-4
    Shanghai,  // UTC+8 all year
    Utc,
};

// The TZ value that makes this system's C library use `zone`.
inline const char* TimeZoneSetting(Zone zone) {
#if defined(_WIN32)
    switch (zone) {
        case Zone::NewYork: return "EST5EDT";
        case Zone::Shanghai: return "CST-8";
        case Zone::Utc: return "UTC0";
    }
    return "UTC0";
#else
    switch (zone) {
        case Zone::NewYork: return "America/New_York";
        case Zone::Shanghai: return "Asia/Shanghai";
        case Zone::Utc: return "UTC";
    }
    return "UTC";
#endif
}

// The zone a tz database name stands for, when it is one of the zones above.
inline bool ZoneByName(const char* name, Zone& zone) {
    if (std::strcmp(name, "America/New_York") == 0) {
        zone = Zone::NewYork;
    } else if (std::strcmp(name, "Asia/Shanghai") == 0) {
        zone = Zone::Shanghai;
    } else if (std::strcmp(name, "UTC") == 0 || std::strcmp(name, "Etc/UTC") == 0) {
        zone = Zone::Utc;
    } else {
        return false;
    }
    return true;
}

// Whether this system's C library can be set to the zone of a tz database name.
inline bool TimeZoneExpressible(const char* name) {
#if defined(_WIN32)
    Zone zone;
    return ZoneByName(name, zone);
#else
    (void)name;
    return true;
#endif
}

// The TZ value for a tz database name on this system; other names pass unchanged.
inline const char* TimeZoneSetting(const char* name) {
#if defined(_WIN32)
    Zone zone;
    if (ZoneByName(name, zone)) return TimeZoneSetting(zone);
#endif
    return name;
}

// Sets TZ (an empty value removes it) and makes the C library read it again.
inline void SetTimeZoneVariable(const char* value) {
#if defined(_WIN32)
    _putenv_s("TZ", value);
    _tzset();
    // A TZ value carries no daylight-saving bias, so the runtime should use one
    // hour; Wine's runtime instead keeps whatever bias the system zone had when it
    // was last read (none for a zone without daylight saving), which shifts every
    // daylight-saving change. Setting it explicitly is right on both.
    if (*value != '\0') _dstbias = -3600;
#else
    if (*value != '\0')
        setenv("TZ", value, 1);
    else
        unsetenv("TZ");
    tzset();
#endif
}

// Switches the process to a time zone for the lifetime of the object and puts the
// previous setting back afterwards.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(Zone zone) : ScopedTimeZone(TimeZoneSetting(zone)) {}

    // A tz database name, spelled for this system; any other text is set as it is.
    explicit ScopedTimeZone(const char* name) {
        const char* previous = std::getenv("TZ");
        hadPrevious_ = previous != nullptr;
        if (hadPrevious_) previous_ = previous;
        SetTimeZoneVariable(TimeZoneSetting(name));
    }

    ~ScopedTimeZone() { SetTimeZoneVariable(hadPrevious_ ? previous_.c_str() : ""); }

    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    bool hadPrevious_ = false;
    std::string previous_;
};

}  // namespace fftest
