// The calendar day that "today" means for positions and realised profit.
#pragma once

#include <cstdint>

namespace datafeed {

// The local calendar date (YYYYMMDD) of a time in seconds since 1970-01-01 UTC, in the
// process's time zone; 0 when the time cannot be broken down.
int32_t LocalDateOf(int64_t seconds);

}  // namespace datafeed
