// The backtest command's options: what to run, the backtest settings of the host
// data object, and where to write the reports. Options come from the command line
// and from a JSON settings file (--config); the command line wins.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/KelBaseData.h"

namespace ffrunner {

// The backtest settings of the host data object, with the command's defaults.
struct BacktestSettings {
    double capital = 1000000;
    int32_t commissionType = 0;  // 0 money per contract, 1 ticks per contract, 2 rate
    double commissionValue = 0;
    bool singleSide = false;
    bool freeCloseToday = false;
    double marginRate = 0.1;
    int32_t sizeMode = 0;  // 0 contracts, 1 percent of available capital, 2 money
    int32_t sizeValue = 1;
    int32_t maxEntries = 1;
    bool sameSourceEntries = false;
    double maxContracts = 1000;
    int32_t statsMode = 2;
    uint32_t orderSource = 0;

    // Copies the settings into the host data object of a strategy.
    void ApplyTo(CKelBaseData& data) const;
};

struct BacktestOptions {
    std::string barsPath;
    std::string instrumentsPath;
    std::string instrumentCode;
    std::string strategy;
    std::vector<std::pair<std::string, std::string>> params;  // in order, later ones win
    std::string configPath;
    std::string timeZone;
    bool skipBadRows = false;
    int32_t liveUpdates = 0;
    std::string jsonPath, tradesPath, htmlPath;
    bool quiet = false;
    bool help = false;
    BacktestSettings settings;
};

// A command line or settings file that cannot be used; the command exits with 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Parses the arguments after the program name (reading --config when given).
// Throws UsageError with the message the command prints.
BacktestOptions ParseBacktestArgs(const std::vector<std::string>& args);

// The --help text.
std::string BacktestUsage();

}  // namespace ffrunner
