// The process's time zone through the C library: the zone is chosen with the TZ
// variable, and local time is read back with localtime_r (localtime_s on Windows).
// UTC-to-local is the only direction asked of the system; the way back is worked out
// from it, so that gaps and overlaps follow one documented rule on every system.
#include "runner/ZoneClock.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>

#include "runner/CivilTime.h"

namespace ffrunner {
namespace {

#if defined(_WIN32)
// The Windows C library reads only POSIX-style rules from TZ, so the zone names the
// tools are most often given are spelled that way there.
const char* SystemSpelling(const char* zone) {
    static const char* const kRules[][2] = {
        {"Asia/Shanghai", "CST-8"},       {"Asia/Hong_Kong", "HKT-8"},
        {"Asia/Singapore", "SGT-8"},      {"Asia/Tokyo", "JST-9"},
        {"America/New_York", "EST5EDT"},  {"America/Chicago", "CST6CDT"},
        {"Europe/London", "GMT0BST"},     {"UTC", "UTC0"},
    };
    for (const auto& rule : kRules) {
        if (std::strcmp(zone, rule[0]) == 0) return rule[1];
    }
    return zone;
}
#endif

void ApplyZone(const char* value) {
#if defined(_WIN32)
    _putenv_s("TZ", SystemSpelling(value));
    _tzset();
#else
    setenv("TZ", value, 1);
    tzset();
#endif
}

void ClearZone() {
#if defined(_WIN32)
    _putenv_s("TZ", "");
    _tzset();
#else
    unsetenv("TZ");
    tzset();
#endif
}

// A POSIX rule starts with a name of at least three letters (or <...>) followed by
// an offset, such as "CST-8" or "EST5EDT".
bool LooksLikePosixRule(const std::string& zone) {
    size_t i = 0;
    if (!zone.empty() && zone[0] == '<') {
        i = zone.find('>');
        if (i == std::string::npos) return false;
        ++i;
    } else {
        while (i < zone.size() && std::isalpha(static_cast<unsigned char>(zone[i]))) ++i;
        if (i < 3) return false;
    }
    if (i < zone.size() && (zone[i] == '+' || zone[i] == '-')) ++i;
    return i < zone.size() && std::isdigit(static_cast<unsigned char>(zone[i]));
}

}  // namespace

bool ZoneIsKnown(const std::string& zone) {
    if (zone.empty()) return true;
    if (LooksLikePosixRule(zone)) return true;
#if defined(_WIN32)
    return std::strcmp(SystemSpelling(zone.c_str()), zone.c_str()) != 0;
#else
    if (zone.find("..") != std::string::npos) return false;
    const char* dir = std::getenv("TZDIR");
    const std::string base = dir && *dir ? dir : "/usr/share/zoneinfo";
    const std::string path = zone[0] == '/' ? zone : base + "/" + zone;
    std::ifstream file(path, std::ios::binary);
    char magic[4] = {};
    file.read(magic, 4);
    return file && magic[0] == 'T' && magic[1] == 'Z' && magic[2] == 'i' && magic[3] == 'f';
#endif
}

ScopedZone::ScopedZone(const std::string& zone) {
    if (zone.empty()) return;
    const char* previous = std::getenv("TZ");
    hadPrevious_ = previous != nullptr;
    if (hadPrevious_) previous_ = previous;
    active_ = true;
    ApplyZone(zone.c_str());
}

ScopedZone::~ScopedZone() {
    if (!active_) return;
    if (hadPrevious_) {
        ApplyZone(previous_.c_str());
    } else {
        ClearZone();
    }
}

void SetProcessZone(const std::string& zone) {
    if (!zone.empty()) ApplyZone(zone.c_str());
}

bool ZoneOffsetAt(int64_t utcSeconds, int64_t& offset) {
    const std::time_t t = static_cast<std::time_t>(utcSeconds);
    if (static_cast<int64_t>(t) != utcSeconds) return false;
    std::tm tm{};
#if defined(_WIN32)
    if (localtime_s(&tm, &t) != 0) return false;
#else
    if (localtime_r(&t, &tm) == nullptr) return false;
#endif
    const int64_t local =
        DaysFromCivil(static_cast<int64_t>(tm.tm_year) + 1900, tm.tm_mon + 1, tm.tm_mday) *
            kSecondsPerDay +
        tm.tm_hour * 3600 + tm.tm_min * 60 + tm.tm_sec;
    offset = local - utcSeconds;
    return true;
}

// The offsets in force a day before and a day after bracket any change of the
// clocks near the local time (zones change at most once within two days), so the
// local time maps through one of them, both (an overlap) or neither (a gap).
bool LocalSecondsToUtc(int64_t localSeconds, LocalMapping& out) {
    int64_t before = 0, after = 0;
    if (!ZoneOffsetAt(localSeconds - kSecondsPerDay, before) ||
        !ZoneOffsetAt(localSeconds + kSecondsPerDay, after)) {
        return false;
    }
    const int64_t first = localSeconds - before;
    const int64_t second = localSeconds - after;
    int64_t check = 0;
    const bool firstFits = ZoneOffsetAt(first, check) && check == before;
    const bool secondFits = first != second && ZoneOffsetAt(second, check) && check == after;
    out = LocalMapping{};
    if (firstFits && secondFits) {
        out.utc = first < second ? first : second;
        out.laterUtc = first < second ? second : first;
        out.ambiguous = true;
    } else if (firstFits || secondFits) {
        out.utc = out.laterUtc = firstFits ? first : second;
    } else {
        out.utc = out.laterUtc = first;
        out.skipped = true;
    }
    return true;
}

}  // namespace ffrunner
