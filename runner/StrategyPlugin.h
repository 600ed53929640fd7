// Loads a strategy from a shared library through the entry points of Strategy.h.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "runner/Strategy.h"

namespace ffrunner {

class SharedLibrary;

class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Owns the library and the strategy made from it; the strategy is destroyed
// through the plugin's own entry point before the library is unloaded.
class StrategyPlugin {
public:
    // Throws PluginError naming the file: it cannot be loaded, lacks an entry point,
    // was built for another ABI version, or made no strategy.
    explicit StrategyPlugin(const std::string& path);
    ~StrategyPlugin();
    StrategyPlugin(const StrategyPlugin&) = delete;
    StrategyPlugin& operator=(const StrategyPlugin&) = delete;

    Strategy& Get() { return *strategy_; }

private:
    std::unique_ptr<SharedLibrary> library_;
    FormulaStrategyDestroyFn destroy_ = nullptr;
    Strategy* strategy_ = nullptr;
};

}  // namespace ffrunner
