// Sets the process's time zone for the life of the object and restores the
// previous setting afterwards.
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone) {
        const char* old = std::getenv("TZ");
        hadOld_ = old != nullptr;
        if (hadOld_) old_ = old;
        Set(zone);
    }
    ~ScopedTimeZone() {
        if (hadOld_) {
            Set(old_.c_str());
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
    static void Set(const char* zone) {
#if defined(_WIN32)
        _putenv_s("TZ", zone);
        _tzset();
#else
        setenv("TZ", zone, 1);
        tzset();
#endif
    }

    bool hadOld_ = false;
    std::string old_;
};
