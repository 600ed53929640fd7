#include "datafeed/TradingDay.h"

#include <ctime>
#include <mutex>

namespace datafeed {

int32_t LocalDateOf(int64_t seconds) {
    // std::localtime shares one result buffer across the process; the lock keeps two
    // feeds in different threads from reading each other's result.
    static std::mutex lock;
    const std::time_t time = static_cast<std::time_t>(seconds);
    std::lock_guard<std::mutex> guard(lock);
    const std::tm* local = std::localtime(&time);
    if (local == nullptr) return 0;
    return (local->tm_year + 1900) * 10000 + (local->tm_mon + 1) * 100 + local->tm_mday;
}

}  // namespace datafeed
