// ffbars: writes deterministic synthetic bars in the CSV format the backtest reads.
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "runner/CivilTime.h"
#include "runner/SyntheticBars.h"

namespace {

const char* kUsage =
    "usage: ffbars [options]\n"
    "Writes synthetic bars (date,time,open,high,low,close,volume,openinterest) to\n"
    "standard output or --out FILE. The same options always give the same file.\n"
    "\n"
    "  --seed N             random seed (default 1)\n"
    "  --start YYYY-MM-DD   first day (default 2024-01-02); weekends are skipped\n"
    "  --days N             trading days (default 250)\n"
    "  --bars N             stop after N bars instead (days are added as needed)\n"
    "  --minutes N          bar length in minutes (default 1)\n"
    "  --daily              one bar per day, stamped at the end of the last session\n"
    "  --sessions LIST      trading sessions, e.g. 09:30-11:30,13:00-15:00\n"
    "                       (default 09:00-10:15,10:30-11:30,13:30-15:00)\n"
    "  --price P            starting price (default 3500)\n"
    "  --tick T             price step (default 1)\n"
    "  --volatility V       annual volatility as a fraction (default 0.25)\n"
    "  --volume V           average volume per minute (default 400)\n"
    "  --open-interest N    starting open interest (default 100000)\n"
    "  --datetime           one ISO datetime column instead of date and time\n"
    "  --out FILE           write to FILE instead of standard output\n"
    "  --help               this text\n";

int Usage(const std::string& message) {
    std::cerr << "ffbars: " << message << "\n" << kUsage;
    return 2;
}

template <typename T>
bool ParseValue(const std::string& text, T& value) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

bool ParseDay(const std::string& text, int64_t& day) {
    int32_t y = 0, m = 0, d = 0;
    if (text.size() != 10 || text[4] != '-' || text[7] != '-' ||
        !ParseValue(text.substr(0, 4), y) || !ParseValue(text.substr(5, 2), m) ||
        !ParseValue(text.substr(8, 2), d) || m < 1 || m > 12 || d < 1 ||
        d > ffrunner::DaysInMonth(y, m)) {
        return false;
    }
    day = ffrunner::DaysFromCivil(y, m, d);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    ffrunner::SyntheticBarsSpec spec;
    spec.firstDay = ffrunner::DaysFromCivil(2024, 1, 2);
    std::string outPath;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--help" || option == "-h") {
            std::cout << kUsage;
            return 0;
        }
        if (option == "--daily") {
            spec.barMinutes = 0;
            continue;
        }
        if (option == "--datetime") {
            spec.dateTimeColumn = true;
            continue;
        }
        if (i + 1 >= argc) return Usage("missing value after " + option);
        const std::string value = argv[++i];
        bool ok = true;
        if (option == "--seed") ok = ParseValue(value, spec.seed);
        else if (option == "--start") ok = ParseDay(value, spec.firstDay);
        else if (option == "--days") ok = ParseValue(value, spec.days) && spec.days > 0;
        else if (option == "--bars") ok = ParseValue(value, spec.maxBars) && spec.maxBars > 0;
        else if (option == "--minutes") ok = ParseValue(value, spec.barMinutes) && spec.barMinutes > 0;
        else if (option == "--sessions") ok = ffrunner::ParseSessions(value, spec.sessions);
        else if (option == "--price") ok = ParseValue(value, spec.startPrice);
        else if (option == "--tick") ok = ParseValue(value, spec.tick);
        else if (option == "--volatility") ok = ParseValue(value, spec.annualVolatility);
        else if (option == "--volume") ok = ParseValue(value, spec.volumePerMinute);
        else if (option == "--open-interest") ok = ParseValue(value, spec.openInterest);
        else if (option == "--out") outPath = value;
        else return Usage("unknown option " + option);
        if (!ok) return Usage("bad value for " + option + ": '" + value + "'");
    }
    const std::string problem = ffrunner::CheckSpec(spec);
    if (!problem.empty()) return Usage(problem);
    if (outPath.empty()) {
        ffrunner::WriteSyntheticBars(spec, std::cout);
        std::cout.flush();
        return std::cout ? 0 : 1;
    }
    std::ofstream out(outPath, std::ios::binary);
    if (!out) {
        std::cerr << "ffbars: cannot write " << outPath << "\n";
        return 1;
    }
    ffrunner::WriteSyntheticBars(spec, out);
    out.close();
    if (!out) {
        std::cerr << "ffbars: cannot write " << outPath << "\n";
        return 1;
    }
    return 0;
}
