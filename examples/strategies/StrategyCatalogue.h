// The strategies built into the backtest command, by name: "ma-crossover",
// "channel-breakout" and "mean-reversion".
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "runner/Strategy.h"

namespace ffexamples {

struct CatalogueEntry {
    const char* name;
    const char* summary;  // one line for --help
    std::unique_ptr<ffrunner::Strategy> (*make)();
};

// Every built-in strategy, in the order --help lists them.
const std::vector<CatalogueEntry>& StrategyCatalogue();

// A new strategy of that name with its default parameters; null for an unknown name.
std::unique_ptr<ffrunner::Strategy> MakeStrategy(const std::string& name);

std::unique_ptr<ffrunner::Strategy> MakeMaCrossover();
std::unique_ptr<ffrunner::Strategy> MakeChannelBreakout();
std::unique_ptr<ffrunner::Strategy> MakeMeanReversion();

}  // namespace ffexamples
