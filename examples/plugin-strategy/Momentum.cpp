// Momentum: long when the close is above the close `length` bars earlier, short
// when it is below, with a stop loss in money per contract. Built as a plugin that
// the backtest command loads with --strategy path/to/libmomentum.so.
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "runner/Strategy.h"

namespace {

class Momentum : public ffrunner::Strategy {
public:
    bool SetParameter(const std::string& name, const std::string& value,
                      std::string& error) override {
        char* end = nullptr;
        const double number = std::strtod(value.c_str(), &end);
        if (value.empty() || *end != '\0' || number < 0) {
            error = name + " must be a number of at least 0, not '" + value + "'";
            return false;
        }
        if (name == "length" && number >= 1 && number <= 100000) {
            length_ = static_cast<int32_t>(number);
        } else if (name == "stop") {
            stop_ = number;
        } else if (name == "length") {
            error = "length must be from 1 to 100000";
            return false;
        } else {
            error = "unknown parameter '" + name + "' (momentum has length, stop)";
            return false;
        }
        return true;
    }

    std::vector<std::pair<std::string, std::string>> Parameters() const override {
        std::ostringstream stop;
        stop << stop_;
        return {{"length", std::to_string(length_)}, {"stop", stop.str()}};
    }

    void Reset() override { closes_.clear(); }

    void OnBar(CSystemFuncs& f) override {
        const int32_t bar = f.CurrentBar();
        // Remembered by bar, so a re-evaluation of the live bar overwrites its own slot.
        if (closes_.size() <= static_cast<size_t>(bar)) closes_.resize(bar + 1);
        closes_[bar] = f.Close();
        if (stop_ > 0 && f.MarketPosition() != 0) f.SetStopLoss(1, stop_, false);
        if (bar < length_) return;
        const double change = closes_[bar] - closes_[bar - length_];
        const int32_t position = f.MarketPosition();
        if (change > 0 && position <= 0) f.Buy(0, 0, false);
        else if (change < 0 && position >= 0) f.SellShort(0, 0, false);
    }

private:
    int32_t length_ = 30;
    double stop_ = 300;
    std::vector<double> closes_;
};

}  // namespace

FF_STRATEGY_EXPORT uint32_t FormulaStrategy_AbiVersion(void) { return FF_STRATEGY_ABI_VERSION; }
FF_STRATEGY_EXPORT ffrunner::Strategy* FormulaStrategy_Create(void) { return new Momentum; }
FF_STRATEGY_EXPORT void FormulaStrategy_Destroy(ffrunner::Strategy* strategy) { delete strategy; }
