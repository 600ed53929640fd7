// Deterministic synthetic bars that look like a futures market: trading sessions
// with breaks, a random walk whose volatility clusters, overnight gaps, prices on
// the tick, intraday volume that is heavier at the open and close, and a drifting
// open interest. The same settings always give the same bars, on every system: the
// generator uses only its own integer random source, + - × ÷ and square roots.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace ffrunner {

// A trading session of the day, in minutes after midnight, [begin, end).
struct TradingSession {
    int32_t begin = 0;
    int32_t end = 0;
};

struct SyntheticBarsSpec {
    uint64_t seed = 1;
    int64_t firstDay = 0;       // day number (days since 1970-01-01) of the first day
    int32_t days = 250;         // trading days (Monday to Friday)
    int64_t maxBars = 0;        // stop after this many bars; 0 = no limit
    int32_t barMinutes = 1;     // 0 = one bar per day
    std::vector<TradingSession> sessions{{9 * 60, 10 * 60 + 15},
                                         {10 * 60 + 30, 11 * 60 + 30},
                                         {13 * 60 + 30, 15 * 60}};
    double startPrice = 3500;
    double tick = 1;
    double annualVolatility = 0.25;
    double volumePerMinute = 400;
    double openInterest = 100000;
    bool dateTimeColumn = false;  // one ISO column instead of date and time
};

// Parses "09:00-10:15,10:30-11:30"; false when the text is not sessions in order
// within one day.
bool ParseSessions(const std::string& text, std::vector<TradingSession>& sessions);

// Checks a spec; returns an empty text when it is usable, else the reason.
std::string CheckSpec(const SyntheticBarsSpec& spec);

// Writes the CSV (header and rows) and returns the number of bars written. Bars are
// stamped with the time their close was taken: a minute bar at the end of its last
// minute, a daily bar at the end of the last session. Prices carry the tick's decimals.
int64_t WriteSyntheticBars(const SyntheticBarsSpec& spec, std::ostream& out);

}  // namespace ffrunner
