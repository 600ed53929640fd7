#include "runner/BarCsv.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "runner/CivilTime.h"
#include "runner/LocalTimeConverter.h"
#include "runner/ZoneClock.h"

namespace ffrunner {
namespace {

constexpr int kMaxFields = 8;
constexpr const char* kPriceColumns[] = {"open", "high", "low", "close", "volume",
                                         "openinterest"};

struct LocalStamp {
    int64_t day = 0;
    int32_t secondOfDay = 0;
    int32_t millisecond = 0;
};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trim(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

bool Digits(std::string_view s, size_t at, size_t count, int32_t& value) {
    if (at + count > s.size()) return false;
    value = 0;
    for (size_t i = at; i < at + count; ++i) {
        const unsigned d = static_cast<unsigned char>(s[i]) - '0';
        if (d > 9) return false;
        value = value * 10 + static_cast<int32_t>(d);
    }
    return true;
}

// YYYY-MM-DD.
bool ParseDate(std::string_view s, int64_t& day) {
    int32_t y = 0, m = 0, d = 0;
    if (s.size() != 10 || s[4] != '-' || s[7] != '-' || !Digits(s, 0, 4, y) ||
        !Digits(s, 5, 2, m) || !Digits(s, 8, 2, d)) {
        return false;
    }
    if (m < 1 || m > 12 || d < 1 || d > DaysInMonth(y, m)) return false;
    day = DaysFromCivil(y, m, d);
    return true;
}

// HH:MM, HH:MM:SS or HH:MM:SS.f with one to three digits of fraction.
bool ParseTime(std::string_view s, int32_t& secondOfDay, int32_t& millisecond) {
    int32_t h = 0, mi = 0, sec = 0;
    if (s.size() < 5 || s[2] != ':' || !Digits(s, 0, 2, h) || !Digits(s, 3, 2, mi)) return false;
    millisecond = 0;
    if (s.size() > 5) {
        if (s.size() < 8 || s[5] != ':' || !Digits(s, 6, 2, sec)) return false;
        if (s.size() > 8) {
            const size_t digits = s.size() - 9;
            int32_t fraction = 0;
            if (s[8] != '.' || digits < 1 || digits > 3 || !Digits(s, 9, digits, fraction)) {
                return false;
            }
            millisecond = fraction * (digits == 1 ? 100 : digits == 2 ? 10 : 1);
        }
    }
    if (h > 23 || mi > 59 || sec > 59) return false;
    secondOfDay = h * 3600 + mi * 60 + sec;
    return true;
}

// A date, alone or followed by 'T' or one space and a time.
bool ParseDateTime(std::string_view s, LocalStamp& stamp) {
    if (s.size() < 10 || !ParseDate(s.substr(0, 10), stamp.day)) return false;
    stamp.secondOfDay = 0;
    stamp.millisecond = 0;
    if (s.size() == 10) return true;
    if (s[10] != 'T' && s[10] != ' ') return false;
    return ParseTime(s.substr(11), stamp.secondOfDay, stamp.millisecond);
}

bool ParseNumber(std::string_view s, double& value) {
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    if (s.empty()) return false;
    const auto result = std::from_chars(s.data(), s.data() + s.size(), value);
    return result.ec == std::errc() && result.ptr == s.data() + s.size() &&
           std::isfinite(value);
}

std::string FormatNumber(double v) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
    return std::string(buffer, result.ptr);
}

std::string FormatStamp(const LocalStamp& stamp) {
    const CivilDate date = CivilFromDays(stamp.day);
    char buffer[48];
    const int32_t s = stamp.secondOfDay;
    int n = std::snprintf(buffer, sizeof buffer, "%04lld-%02d-%02d %02d:%02d:%02d",
                          static_cast<long long>(date.year), date.month, date.day, s / 3600,
                          s / 60 % 60, s % 60);
    if (stamp.millisecond != 0 && n > 0) {
        std::snprintf(buffer + n, sizeof buffer - n, ".%03d", stamp.millisecond);
    }
    return buffer;
}

std::string Quoted(std::string_view s) { return "'" + std::string(s) + "'"; }

class Parser {
public:
    Parser(std::string_view text, const std::string& fileName, const BarCsvOptions& options)
        : text_(text), fileName_(fileName), options_(options) {}

    BarCsvData Run();

private:
    // Splits one line into trimmed fields; returns how many there were (it keeps
    // counting past kMaxFields so that the message can say how many).
    int Split(std::string_view line);
    // Checks one data row and appends its bar; returns the reason when it is bad.
    bool Row(std::string& reason);
    void Fail(int64_t line, const std::string& reason);

    std::string_view text_;
    const std::string& fileName_;
    const BarCsvOptions& options_;
    BarCsvData data_;
    LocalTimeConverter converter_;
    std::string_view fields_[kMaxFields];
    int fieldCount_ = 0;
    int expected_ = 0;
    int64_t previousTime_ = INT64_MIN;
    LocalStamp previousStamp_;
};

int Parser::Split(std::string_view line) {
    int count = 0;
    size_t start = 0;
    while (true) {
        const size_t comma = line.find(',', start);
        const std::string_view field =
            line.substr(start, comma == std::string_view::npos ? line.size() - start
                                                               : comma - start);
        if (count < kMaxFields) fields_[count] = Trim(field);
        ++count;
        if (comma == std::string_view::npos) break;
        start = comma + 1;
    }
    return count;
}

void Parser::Fail(int64_t line, const std::string& reason) {
    std::string message = fileName_ + ":" + std::to_string(line) + ": " + reason;
    if (!options_.skipBadRows) throw BarCsvError(message);
    data_.warnings.push_back(std::move(message));
}

bool Parser::Row(std::string& reason) {
    if (fieldCount_ != expected_) {
        reason = std::string(fieldCount_ < expected_ ? "too few" : "too many") +
                 " fields: expected " + std::to_string(expected_) + ", found " +
                 std::to_string(fieldCount_);
        return false;
    }
    LocalStamp stamp;
    int first = 0;
    if (expected_ == 8) {
        if (!ParseDate(fields_[0], stamp.day)) {
            reason = "bad date " + Quoted(fields_[0]);
            return false;
        }
        if (!ParseTime(fields_[1], stamp.secondOfDay, stamp.millisecond)) {
            reason = "bad time " + Quoted(fields_[1]);
            return false;
        }
        first = 2;
    } else {
        if (!ParseDateTime(fields_[0], stamp)) {
            reason = "bad datetime " + Quoted(fields_[0]);
            return false;
        }
        first = 1;
    }
    double values[6];
    for (int i = 0; i < 6; ++i) {
        if (!ParseNumber(fields_[first + i], values[i])) {
            reason = std::string("bad number in column ") + kPriceColumns[i] + ": " +
                     Quoted(fields_[first + i]);
            return false;
        }
    }
    if (values[1] < values[2]) {
        reason = "high " + FormatNumber(values[1]) + " is below low " + FormatNumber(values[2]);
        return false;
    }
    int64_t time = 0;
    if (!converter_.ToUtcMillis(stamp.day, stamp.secondOfDay, stamp.millisecond, previousTime_,
                                time)) {
        reason = "time " + FormatStamp(stamp) + " cannot be converted to UTC";
        return false;
    }
    if (time <= previousTime_) {
        reason = "time " + FormatStamp(stamp) + " is not after the previous row's " +
                 FormatStamp(previousStamp_);
        return false;
    }
    previousTime_ = time;
    previousStamp_ = stamp;
    data_.bars.push_back(BarRecord{time, values[0], values[1], values[2], values[3], values[4],
                                   values[5]});
    return true;
}

BarCsvData Parser::Run() {
    std::string_view rest = text_;
    if (rest.substr(0, 3) == "\xEF\xBB\xBF") rest.remove_prefix(3);
    int64_t lineNumber = 0;
    bool headerSeen = false;
    size_t lines = 0;
    for (const char c : rest) lines += c == '\n';
    data_.bars.reserve(lines);
    std::string reason;
    while (!rest.empty()) {
        const size_t newline = rest.find('\n');
        std::string_view line = rest.substr(0, newline);
        rest.remove_prefix(newline == std::string_view::npos ? rest.size() : newline + 1);
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (Trim(line).empty()) continue;
        fieldCount_ = Split(line);
        if (!headerSeen) {
            headerSeen = true;
            if (fieldCount_ != 7 && fieldCount_ != 8) {
                throw BarCsvError(fileName_ + ":" + std::to_string(lineNumber) +
                                  ": the header must have 7 columns (datetime,open,high,low,"
                                  "close,volume,openinterest) or 8 (date,time,open,high,low,"
                                  "close,volume,openinterest), found " +
                                  std::to_string(fieldCount_));
            }
            if (!fields_[0].empty() && fields_[0][0] >= '0' && fields_[0][0] <= '9') {
                throw BarCsvError(fileName_ + ":" + std::to_string(lineNumber) +
                                  ": the first line must be a header, found a data row");
            }
            expected_ = fieldCount_;
            continue;
        }
        if (!Row(reason)) Fail(lineNumber, reason);
    }
    if (!headerSeen) throw BarCsvError(fileName_ + ":1: empty file, expected a header line");
    return std::move(data_);
}

}  // namespace

BarCsvData ParseBarCsv(std::string_view text, const std::string& fileName,
                       const BarCsvOptions& options) {
    if (!ZoneIsKnown(options.timeZone)) {
        throw BarCsvError(fileName + ": unknown time zone '" + options.timeZone + "'");
    }
    ScopedZone zone(options.timeZone);
    Parser parser(text, fileName, options);
    return parser.Run();
}

BarCsvData ReadBarCsv(const std::string& path, const BarCsvOptions& options) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw BarCsvError(path + ": cannot open the file");
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.seekg(0, std::ios::beg);
    std::string text(size > 0 ? static_cast<size_t>(size) : 0, '\0');
    if (size > 0 && !file.read(text.data(), size)) {
        throw BarCsvError(path + ": cannot read the file");
    }
    return ParseBarCsv(text, path, options);
}

}  // namespace ffrunner
