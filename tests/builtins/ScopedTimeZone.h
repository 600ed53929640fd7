// Sets the process's time zone for the life of one object and restores the previous
// one afterwards. Zones are named as on Linux; on Windows the C library only knows
// the "NAMEoffsetDST" form, so the two zones the tests use are spelled that way.
#pragma once

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone) {
        const char* previous = std::getenv("TZ");
        hadPrevious_ = previous != nullptr;
        if (hadPrevious_) previous_ = previous;
        Apply(SystemSpelling(zone));
    }

    ~ScopedTimeZone() {
        if (hadPrevious_) {
            Apply(previous_.c_str());
        } else {
#if defined(_WIN32)
            _putenv_s("TZ", "");
            _tzset();
#else
            unsetenv("TZ");
            tzset();
#endif
        }
    }

    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    static const char* SystemSpelling(const char* zone) {
#if defined(_WIN32)
        if (std::strcmp(zone, "America/New_York") == 0) return "EST5EDT";
        if (std::strcmp(zone, "Asia/Shanghai") == 0) return "CST-8";
#endif
        return zone;
    }

    static void Apply(const char* value) {
#if defined(_WIN32)
        _putenv_s("TZ", value);
        _tzset();
#else
        setenv("TZ", value, 1);
        tzset();
#endif
    }

    bool hadPrevious_ = false;
    std::string previous_;
};
