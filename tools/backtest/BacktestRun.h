// One run of the backtest command: load the instrument, the bars and the strategy,
// run the strategy over the bars as the host does, and write the reports.
#pragma once

#include <ostream>
#include <stdexcept>

#include "runner/BacktestOptions.h"

namespace backtest {

// The run cannot go on: a file that cannot be read or holds bad data. what() is the
// whole message ("FILE:LINE: reason"); the command exits with 1.
class RunError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Runs the backtest and writes the text report to `out`, warnings to `err`.
// Throws RunError, or ffrunner::UsageError for a strategy name or parameter the
// command line got wrong.
void RunBacktest(const ffrunner::BacktestOptions& options, std::ostream& out, std::ostream& err);

// The built-in strategies and their parameters, for --help.
std::string StrategyListText();

}  // namespace backtest
