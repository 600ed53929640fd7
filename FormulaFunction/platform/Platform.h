// The operating-system services the library uses, behind one small interface.
// Windows builds call the real API; other systems reproduce its behaviour.
// Nothing outside this folder includes a system header for these services.
#pragma once

#include <cstdint>
#include <string>

namespace ffplatform {

// Private-profile (INI) files, with the Windows rules for matching section and key
// names, trimming, quotes and defaults. Paths here and in RemoveFile may be given
// as the library builds them, with backslashes: each implementation makes them
// native just before it opens the file.

// The integer value of a key, or `defaultValue` when the file, section or key is
// missing. The digits read are returned as an unsigned 32-bit value ("-3" reads as
// 4294967293).
uint32_t ProfileGetInt(const std::string& section, const std::string& key,
                       int32_t defaultValue, const std::string& path);

// The text of a key, or `defaultValue` when the file, section or key is missing,
// cut to the 259 characters that a 260-character buffer holds.
std::string ProfileGetString(const std::string& section, const std::string& key,
                             const std::string& defaultValue, const std::string& path);

// Writes or replaces a key, creating the file and section when needed.
bool ProfileWriteString(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& path);

// Deletes a file; false when it could not be deleted.
bool RemoveFile(const std::string& path);

// A calendar time broken down in the machine's time zone.
struct LocalTime {
    int32_t year = 0;    // e.g. 2010
    int32_t month = 0;   // 1-12
    int32_t day = 0;     // 1-31
    int32_t hour = 0;    // 0-23
    int32_t minute = 0;  // 0-59
    int32_t second = 0;  // 0-60
    int32_t weekday = 0; // 0 Sunday - 6 Saturday
    int32_t yearDay = 0; // 0-365
    int32_t isDst = -1;  // >0 daylight-saving time, 0 standard time, <0 unknown
};

// Converts seconds since the epoch to local calendar time; false when the system's
// conversion refuses the value.
bool ToLocalTime(int64_t seconds, LocalTime& out);

// Converts a local calendar time to seconds since the epoch, normalising fields out
// of range as the C library's mktime does (day 0 is the last day of the previous
// month); isDst < 0 (the default) lets the system decide, while 0 or >0 takes the
// fields as standard or daylight-saving time even when the other is in force then.
// Returns -1 when it cannot convert.
int64_t FromLocalTime(const LocalTime& local);

// The machine's clock in whole seconds since the epoch.
int64_t CurrentTimeSeconds();

// The host's C library pseudo-random generator: one process-wide linear
// congruential generator, values 0..32767.
void SeedRandom(uint32_t seed);
int32_t NextRandom();
constexpr int32_t kRandomMax = 32767;

// Case-insensitive comparison of two texts in the GBK code page: <0, 0 or >0.
int CompareNoCaseGbk(const std::string& a, const std::string& b);

// Turns a path built with backslashes into one the system opens.
std::string NativePath(const std::string& builtPath);

}  // namespace ffplatform
