#include "runner/SyntheticBars.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "runner/CivilTime.h"

namespace ffrunner {
namespace {

// xoshiro256** seeded through splitmix64: fixed integer arithmetic, so the stream
// is the same with every compiler and library.
class Random {
public:
    explicit Random(uint64_t seed) {
        for (uint64_t& s : state_) {
            seed += 0x9E3779B97F4A7C15ull;
            uint64_t z = seed;
            z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
            z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
            s = z ^ (z >> 31);
        }
    }

    uint64_t Next() {
        const uint64_t result = Rotl(state_[1] * 5, 7) * 9;
        const uint64_t t = state_[1] << 17;
        state_[2] ^= state_[0];
        state_[3] ^= state_[1];
        state_[1] ^= state_[2];
        state_[0] ^= state_[3];
        state_[2] ^= t;
        state_[3] = Rotl(state_[3], 45);
        return result;
    }

    // Uniform in [0, 1).
    double Uniform() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }

    // Close to a standard normal: the sum of twelve uniforms less six.
    double Normal() {
        double sum = 0;
        for (int i = 0; i < 12; ++i) sum += Uniform();
        return sum - 6;
    }

private:
    static uint64_t Rotl(uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
    uint64_t state_[4];
};

struct Bar {
    int64_t day = 0;
    int32_t closeMinute = 0;
    int64_t open = 0, high = 0, low = 0, close = 0;  // in ticks
    double volume = 0;
    double openInterest = 0;
    bool started = false;
};

int TickDecimals(double tick) {
    for (int d = 0; d < 8; ++d) {
        const double scaled = tick * std::pow(10.0, d);
        if (std::fabs(scaled - std::round(scaled)) < 1e-9 * std::max(1.0, scaled)) return d;
    }
    return 8;
}

class Writer {
public:
    Writer(const SyntheticBarsSpec& spec, std::ostream& out)
        : spec_(spec), out_(out), decimals_(TickDecimals(spec.tick)) {
        buffer_.reserve(1 << 20);
    }
    ~Writer() { Flush(); }

    void Header() {
        buffer_ += spec_.dateTimeColumn ? "datetime,open,high,low,close,volume,openinterest\n"
                                        : "date,time,open,high,low,close,volume,openinterest\n";
    }

    void Row(const Bar& bar) {
        const CivilDate date = CivilFromDays(bar.day);
        char line[160];
        int n = std::snprintf(line, sizeof line, "%04lld-%02d-%02d%c%02d:%02d:00",
                              static_cast<long long>(date.year), date.month, date.day,
                              spec_.dateTimeColumn ? ' ' : ',', bar.closeMinute / 60,
                              bar.closeMinute % 60);
        for (const int64_t ticks : {bar.open, bar.high, bar.low, bar.close}) {
            line[n++] = ',';
            n += Price(ticks, line + n, sizeof line - n);
        }
        n += std::snprintf(line + n, sizeof line - n, ",%lld,%lld\n",
                           static_cast<long long>(bar.volume),
                           static_cast<long long>(bar.openInterest));
        buffer_.append(line, static_cast<size_t>(n));
        if (buffer_.size() > (1 << 20) - 256) Flush();
    }

private:
    int Price(int64_t ticks, char* at, size_t room) const {
        const double price = static_cast<double>(ticks) * spec_.tick;
        const auto result = std::to_chars(at, at + room, price, std::chars_format::fixed, decimals_);
        return static_cast<int>(result.ptr - at);
    }

    void Flush() {
        out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
        buffer_.clear();
    }

    const SyntheticBarsSpec& spec_;
    std::ostream& out_;
    int decimals_;
    std::string buffer_;
};

}  // namespace

bool ParseSessions(const std::string& text, std::vector<TradingSession>& sessions) {
    std::vector<TradingSession> parsed;
    size_t at = 0;
    auto number = [&](int32_t& value, char after) {
        const char* begin = text.data() + at;
        const auto result = std::from_chars(begin, text.data() + text.size(), value);
        if (result.ec != std::errc() || result.ptr == begin) return false;
        at = static_cast<size_t>(result.ptr - text.data());
        if (after != 0) {
            if (at >= text.size() || text[at] != after) return false;
            ++at;
        }
        return true;
    };
    while (at < text.size()) {
        int32_t h1 = 0, m1 = 0, h2 = 0, m2 = 0;
        if (!number(h1, ':') || !number(m1, '-') || !number(h2, ':') || !number(m2, 0)) {
            return false;
        }
        if (h1 > 24 || h2 > 24 || m1 > 59 || m2 > 59) return false;
        const TradingSession s{h1 * 60 + m1, h2 * 60 + m2};
        if (s.begin >= s.end || s.end > 24 * 60) return false;
        if (!parsed.empty() && parsed.back().end > s.begin) return false;
        parsed.push_back(s);
        if (at < text.size()) {
            if (text[at] != ',' || at + 1 == text.size()) return false;
            ++at;
        }
    }
    if (parsed.empty()) return false;
    sessions = parsed;
    return true;
}

std::string CheckSpec(const SyntheticBarsSpec& spec) {
    if (spec.sessions.empty()) return "no trading session";
    if (!(spec.tick > 0)) return "the tick must be above 0";
    if (!(spec.startPrice >= spec.tick * 10)) return "the start price must be at least ten ticks";
    if (spec.days < 1 && spec.maxBars < 1) return "no days and no bar count";
    if (spec.barMinutes < 0) return "the bar length must be 0 (daily) or a number of minutes";
    if (!(spec.annualVolatility >= 0 && spec.annualVolatility < 5)) {
        return "the volatility must lie between 0 and 5";
    }
    if (!(spec.volumePerMinute >= 0) || !(spec.openInterest >= 0)) {
        return "volume and open interest must not be negative";
    }
    return {};
}

// The price moves once per quarter minute by a return drawn from a GARCH(1,1)
// variance, so quiet and busy stretches alternate; each morning opens with a gap of
// a few minutes' worth of moves.
int64_t WriteSyntheticBars(const SyntheticBarsSpec& spec, std::ostream& out) {
    Random random(spec.seed);
    Writer writer(spec, out);
    writer.Header();
    int32_t minutesPerDay = 0;
    for (const TradingSession& s : spec.sessions) minutesPerDay += s.end - s.begin;
    const double stepsPerYear = 252.0 * minutesPerDay * 4;
    const double baseVariance = spec.annualVolatility * spec.annualVolatility / stepsPerYear;
    constexpr double kShock = 0.06, kPersistence = 0.92;
    double variance = baseVariance;
    double price = spec.startPrice;
    const double floorPrice = spec.tick * 10;
    double openInterest = spec.openInterest;
    int64_t written = 0;
    const int64_t dayLimit = spec.maxBars > 0 ? INT64_MAX : spec.days;
    int64_t tradingDays = 0;
    auto step = [&](double scale) {
        const double r = std::sqrt(variance) * random.Normal() * scale;
        variance = baseVariance * (1 - kShock - kPersistence) + kShock * r * r / (scale * scale) +
                   kPersistence * variance;
        price = std::max(floorPrice, price * (1 + r));
        return r;
    };
    for (int64_t day = spec.firstDay; tradingDays < dayLimit; ++day) {
        const int32_t weekday = WeekdayFromDays(day);
        if (weekday == 0 || weekday == 6) continue;
        ++tradingDays;
        step(3);  // overnight gap
        Bar daily;
        Bar bar;
        int32_t elapsed = 0;
        for (const TradingSession& session : spec.sessions) {
            for (int32_t minute = session.begin; minute < session.end; ++minute) {
                const int64_t first = std::llround(price / spec.tick);
                int64_t high = first, low = first, last = first;
                double moved = 0;
                for (int k = 0; k < 4; ++k) {
                    moved += std::fabs(step(1));
                    last = std::llround(price / spec.tick);
                    high = std::max(high, last);
                    low = std::min(low, last);
                }
                const double x = (elapsed + 0.5) / minutesPerDay;
                const double shape = 1 + 0.8 * (2 * x - 1) * (2 * x - 1);
                const double activity = 0.5 + moved / (4 * std::sqrt(baseVariance));
                const double volume = std::floor(spec.volumePerMinute * shape * activity *
                                                 (0.7 + 0.6 * random.Uniform()));
                openInterest = std::max(0.0, openInterest + std::floor((random.Uniform() - 0.5) *
                                                                      volume * 0.2));
                ++elapsed;
                for (Bar* b : {&bar, &daily}) {
                    if (!b->started) {
                        *b = Bar{};
                        b->started = true;
                        b->day = day;
                        b->open = first;
                        b->high = high;
                        b->low = low;
                    }
                    b->high = std::max(b->high, high);
                    b->low = std::min(b->low, low);
                    b->close = last;
                    b->volume += volume;
                    b->openInterest = openInterest;
                    b->closeMinute = minute + 1;
                }
                const bool barEnds =
                    spec.barMinutes > 0 &&
                    ((minute + 1 - session.begin) % spec.barMinutes == 0 || minute + 1 == session.end);
                if (barEnds) {
                    writer.Row(bar);
                    bar.started = false;
                    if (++written == spec.maxBars) return written;
                }
            }
        }
        if (spec.barMinutes == 0) {
            writer.Row(daily);
            if (++written == spec.maxBars) return written;
        }
        daily.started = false;
    }
    return written;
}

}  // namespace ffrunner
