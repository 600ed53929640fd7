// UTC millisecond times to local calendar fields in the process's zone, asking the
// zone about once per local day (reports walk every bar of long runs).
#pragma once

#include <cstdint>
#include <string>

namespace ffrunner {

struct LocalFields {
    int64_t day = 0;          // days since 1970-01-01, local
    int32_t secondOfDay = 0;  // 0..86399
    int32_t millisecond = 0;  // 0..999

    int32_t Year() const;
    int32_t Month() const;
    int32_t DayOfMonth() const;
    int32_t Date() const;     // YYYYMMDD
    int32_t HhMmSs() const;   // HHMMSS
};

class LocalCalendar {
public:
    // The local fields of a UTC time; a time the system cannot convert is read as UTC.
    LocalFields ToLocal(int64_t utcMillis);

private:
    int64_t validFrom_ = 1;  // UTC seconds [validFrom_, validTo_) share offset_
    int64_t validTo_ = 0;
    int64_t offset_ = 0;
};

// "2024-03-01 09:05:03" (with ".007" when the millisecond is not 0).
std::string FormatLocal(const LocalFields& fields);
// "2024-03-01".
std::string FormatLocalDate(const LocalFields& fields);

}  // namespace ffrunner
