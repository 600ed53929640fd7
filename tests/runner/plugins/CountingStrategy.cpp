// A strategy plugin for the loader's tests: it counts its bars and remembers the
// closes it saw, through the entry points a plugin exports.
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "runner/Strategy.h"

namespace {

class CountingStrategy : public ffrunner::Strategy {
public:
    bool SetParameter(const std::string& name, const std::string& value,
                      std::string& error) override {
        if (name != "step") {
            error = "unknown parameter '" + name + "'";
            return false;
        }
        step_ = std::stoi(value);
        return true;
    }
    std::vector<std::pair<std::string, std::string>> Parameters() const override {
        return {{"step", std::to_string(step_)}};
    }
    void Reset() override { bars_ = 0; }
    void OnBar(CSystemFuncs& funcs) override {
        bars_ += step_;
        funcs.Commentary(std::to_string(bars_) + " " + std::to_string(funcs.Close()));
    }

private:
    int step_ = 1;
    int bars_ = 0;
};

}  // namespace

FF_STRATEGY_EXPORT uint32_t FormulaStrategy_AbiVersion(void) {
#ifdef FF_TEST_WRONG_ABI
    return FF_STRATEGY_ABI_VERSION + 1;
#else
    return FF_STRATEGY_ABI_VERSION;
#endif
}

FF_STRATEGY_EXPORT ffrunner::Strategy* FormulaStrategy_Create(void) {
    return new CountingStrategy;
}

FF_STRATEGY_EXPORT void FormulaStrategy_Destroy(ffrunner::Strategy* strategy) {
    delete strategy;
}
