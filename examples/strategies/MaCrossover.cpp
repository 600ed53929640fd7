// Moving-average crossover: long when the fast average of the closes crosses above
// the slow one, short when it crosses below (the new order reverses the old
// position). While a position is open a stop loss and a profit target, both in
// money per contract, protect each entry.
#include <memory>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "examples/strategies/ParameterValues.h"
#include "examples/strategies/RunningSums.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/NumberText.h"

namespace ffexamples {
namespace {

class MaCrossover : public ffrunner::Strategy {
public:
    bool SetParameter(const std::string& name, const std::string& value,
                      std::string& error) override {
        if (name == "fast") return ReadWhole(name, value, 1, 100000, fast_, error);
        if (name == "slow") return ReadWhole(name, value, 1, 100000, slow_, error);
        if (name == "stop") return ReadNumber(name, value, 0, stop_, error);
        if (name == "target") return ReadNumber(name, value, 0, target_, error);
        if (name == "lots") return ReadNumber(name, value, 0, lots_, error);
        error = "unknown parameter '" + name + "' (ma-crossover has fast, slow, stop, target, lots)";
        return false;
    }

    std::vector<std::pair<std::string, std::string>> Parameters() const override {
        return {{"fast", std::to_string(fast_)},
                {"slow", std::to_string(slow_)},
                {"stop", ffrunner::ShortestText(stop_)},
                {"target", ffrunner::ShortestText(target_)},
                {"lots", ffrunner::ShortestText(lots_)}};
    }

    void Reset() override { closes_.Reset(0); }

    void OnBar(CSystemFuncs& f) override {
        const int32_t bar = f.CurrentBar();
        if (bar == 0) closes_.Reset(f.BarCount());
        const double close = f.Close();
        closes_.Set(bar, close);
        if (f.MarketPosition() != 0) {
            // Mode 1: the amounts are per contract of each entry.
            if (stop_ > 0) f.SetStopLoss(1, stop_, false);
            if (target_ > 0) f.SetProfitTarget(1, target_, false);
        }
        const int32_t longest = fast_ > slow_ ? fast_ : slow_;
        if (bar < longest) return;
        // Compare sums scaled to a common length instead of dividing twice per bar.
        const double fastNow = closes_.Sum(bar, fast_) * slow_;
        const double slowNow = closes_.Sum(bar, slow_) * fast_;
        const double fastBefore = closes_.Sum(bar - 1, fast_) * slow_;
        const double slowBefore = closes_.Sum(bar - 1, slow_) * fast_;
        const int32_t position = f.MarketPosition();
        if (fastBefore <= slowBefore && fastNow > slowNow && position <= 0) {
            f.Buy(lots_, 0, false);
        } else if (fastBefore >= slowBefore && fastNow < slowNow && position >= 0) {
            f.SellShort(lots_, 0, false);
        }
    }

private:
    int32_t fast_ = 5;
    int32_t slow_ = 20;
    double stop_ = 300;
    double target_ = 600;
    double lots_ = 0;  // 0: the default size of the backtest settings
    RunningSums closes_;
};

}  // namespace

std::unique_ptr<ffrunner::Strategy> MakeMaCrossover() {
    return std::make_unique<MaCrossover>();
}

}  // namespace ffexamples
