// Mean reversion that pyramids: with z the distance of the close from its average
// over `length` bars in standard deviations, it buys when z falls to −entry and adds
// one more entry each time z falls another `step` below the level of the last one,
// up to `entries` entries (shorts mirror this above +entry). The whole position is
// left when the close comes back to the average, or on a stop loss for the whole
// position (money, 0 for none). The backtest's pyramiding settings must allow the
// additions: --max-entries at least `entries`, and --same-source-entries since every
// order comes from the same source.
#include <cmath>
#include <memory>
#include <string>

#include "FormulaFunction/FormulaFunction.h"
#include "examples/strategies/ParameterValues.h"
#include "examples/strategies/RunningSums.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/NumberText.h"

namespace ffexamples {
namespace {

class MeanReversion : public ffrunner::Strategy {
public:
    bool SetParameter(const std::string& name, const std::string& value,
                      std::string& error) override {
        if (name == "length") return ReadWhole(name, value, 2, 100000, length_, error);
        if (name == "entry") return ReadNumber(name, value, 0, entry_, error);
        if (name == "step") return ReadNumber(name, value, 0, step_, error);
        if (name == "entries") return ReadWhole(name, value, 1, 1000, entries_, error);
        if (name == "stop") return ReadNumber(name, value, 0, stop_, error);
        if (name == "lots") return ReadNumber(name, value, 0, lots_, error);
        error = "unknown parameter '" + name +
                "' (mean-reversion has length, entry, step, entries, stop, lots)";
        return false;
    }

    std::vector<std::pair<std::string, std::string>> Parameters() const override {
        return {{"length", std::to_string(length_)},
                {"entry", ffrunner::ShortestText(entry_)},
                {"step", ffrunner::ShortestText(step_)},
                {"entries", std::to_string(entries_)},
                {"stop", ffrunner::ShortestText(stop_)},
                {"lots", ffrunner::ShortestText(lots_)}};
    }

    void Reset() override {
        sums_.Reset(0);
        squares_.Reset(0);
    }

    void OnBar(CSystemFuncs& f) override {
        const int32_t bar = f.CurrentBar();
        if (bar == 0) {
            sums_.Reset(f.BarCount());
            squares_.Reset(f.BarCount());
        }
        const double close = f.Close();
        sums_.Set(bar, close);
        squares_.Set(bar, close * close);
        if (stop_ > 0 && f.MarketPosition() != 0) f.SetStopLoss(0, stop_, true);
        if (bar + 1 < length_) return;
        const double mean = sums_.Sum(bar, length_) / length_;
        const double variance = squares_.Sum(bar, length_) / length_ - mean * mean;
        if (!(variance > 0)) return;
        const double z = (close - mean) / std::sqrt(variance);
        const int32_t position = f.MarketPosition();
        const int32_t open = f.CurrentEntries();
        const double level = entry_ + step_ * open;
        if (position > 0 && close >= mean) {
            f.Sell(0, 0, false);
        } else if (position < 0 && close <= mean) {
            f.BuyToCover(0, 0, false);
        } else if (position >= 0 && open < entries_ && z <= -level) {
            f.Buy(lots_, 0, false);
        } else if (position <= 0 && open < entries_ && z >= level) {
            f.SellShort(lots_, 0, false);
        }
    }

private:
    int32_t length_ = 20;
    double entry_ = 2;
    double step_ = 0.5;
    int32_t entries_ = 3;
    double stop_ = 0;
    double lots_ = 0;
    RunningSums sums_, squares_;
};

}  // namespace

std::unique_ptr<ffrunner::Strategy> MakeMeanReversion() {
    return std::make_unique<MeanReversion>();
}

}  // namespace ffexamples
