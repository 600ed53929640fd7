// Sets the process's time zone for one test and puts the previous one back.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include <time.h>

namespace fftest {

class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* zone) {
        if (const char* old = std::getenv("TZ")) previous_ = std::string(old);
        Apply(zone);
    }
    ~ScopedTimeZone() { Apply(previous_ ? previous_->c_str() : nullptr); }
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    static void Apply(const char* zone) {
#if defined(_WIN32)
        _putenv_s("TZ", zone != nullptr ? zone : "");
        _tzset();
#else
        if (zone != nullptr)
            setenv("TZ", zone, 1);
        else
            unsetenv("TZ");
        tzset();
#endif
    }
    std::optional<std::string> previous_;
};

}  // namespace fftest
