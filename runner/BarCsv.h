// Bars from CSV files: one header line, then one bar per line, either
//   date,time,open,high,low,close,volume,openinterest   (2010-03-25,09:05:03.007,...)
// or
//   datetime,open,high,low,close,volume,openinterest    (2010-03-25T09:05:03.007,...)
// The column names of the header are free; its number of columns picks the layout.
// Times are local calendar times of one zone and become UTC milliseconds.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/KelTypes.h"

namespace ffrunner {

struct BarCsvOptions {
    // IANA zone name ("Asia/Shanghai") or POSIX rule the times are read in; empty
    // for the machine's zone.
    std::string timeZone;
    // Skip a bad row with a warning instead of stopping at it.
    bool skipBadRows = false;
};

struct BarCsvData {
    std::vector<BarRecord> bars;
    // One "FILE:LINE: reason" per skipped row (only with skipBadRows).
    std::vector<std::string> warnings;
};

// A file that cannot be read, or a bad row without skipBadRows. what() is
// "FILE:LINE: reason", or "FILE: reason" when no line is concerned.
class BarCsvError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads a whole file. Throws BarCsvError.
BarCsvData ReadBarCsv(const std::string& path, const BarCsvOptions& options = {});

// Reads text already in memory; `fileName` starts the messages. Throws BarCsvError.
BarCsvData ParseBarCsv(std::string_view text, const std::string& fileName,
                       const BarCsvOptions& options = {});

}  // namespace ffrunner
