// A trading strategy for the reference host: a C++ class whose OnBar runs once per
// evaluation of a bar and calls the built-in functions of the CSystemFuncs it is
// handed (Close(), Buy(...), SetStopLoss(...), ...), as a compiled formula would.
//
// Strategies are built into the host (see examples/strategies/StrategyCatalogue.h)
// or loaded at run time from a shared library that exports the C entry points
// declared at the end of this file.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class CSystemFuncs;

namespace ffrunner {

class Strategy {
public:
    virtual ~Strategy() = default;

    // Sets a parameter from its text ("--param fast=5"); returns false, with a reason
    // in `error`, for a name the strategy does not have or a value it cannot use.
    virtual bool SetParameter(const std::string& name, const std::string& value,
                              std::string& error) = 0;

    // The parameters and their current values, for reports and --help.
    virtual std::vector<std::pair<std::string, std::string>> Parameters() const = 0;

    // Called before bar 0 of every run, so one object can run several times.
    virtual void Reset() {}

    // The formula body: runs for the bar `funcs` is positioned on, and again at each
    // re-evaluation of the live last bar. Anything the strategy remembers between
    // bars must be indexed by bar (funcs.CurrentBar()) or recomputed, because a
    // re-evaluation repeats the same bar.
    virtual void OnBar(CSystemFuncs& funcs) = 0;
};

}  // namespace ffrunner

// Version of the plugin entry points; a plugin built against another version is
// refused.
#define FF_STRATEGY_ABI_VERSION 1

#if defined(_WIN32)
#define FF_STRATEGY_EXPORT extern "C" __declspec(dllexport)
#else
#define FF_STRATEGY_EXPORT extern "C" __attribute__((visibility("default")))
#endif

// The entry points a strategy plugin exports (declare them with FF_STRATEGY_EXPORT):
//
//   uint32_t FormulaStrategy_AbiVersion(void);
//       returns FF_STRATEGY_ABI_VERSION as the plugin was built;
//   ffrunner::Strategy* FormulaStrategy_Create(void);
//       returns a new strategy (null on failure);
//   void FormulaStrategy_Destroy(ffrunner::Strategy* strategy);
//       deletes a strategy made by FormulaStrategy_Create.
//
// The strategy object crosses the boundary as a C++ object, so the plugin must be
// built with the same compiler and standard library as the host (both link the
// installed FormulaFunction package).
extern "C" {
typedef uint32_t (*FormulaStrategyAbiVersionFn)(void);
typedef ffrunner::Strategy* (*FormulaStrategyCreateFn)(void);
typedef void (*FormulaStrategyDestroyFn)(ffrunner::Strategy*);
}
