// Channel breakout: long on a close above the highest high of the last `length` bars
// before this one, short on a close below their lowest low. An open position is
// left on a money trailing stop (the amount is for the whole position) and, on
// intraday bars, at the close of the first bar at or after `flat-at` (HHMM), after
// which no entry is made that day.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "FormulaFunction/FormulaFunction.h"
#include "examples/strategies/ParameterValues.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/NumberText.h"

namespace ffexamples {
namespace {

class ChannelBreakout : public ffrunner::Strategy {
public:
    bool SetParameter(const std::string& name, const std::string& value,
                      std::string& error) override {
        if (name == "length") return ReadWhole(name, value, 1, 100000, length_, error);
        if (name == "trail") return ReadNumber(name, value, 0, trail_, error);
        if (name == "flat-at") return ReadWhole(name, value, 0, 2359, flatAt_, error);
        if (name == "lots") return ReadNumber(name, value, 0, lots_, error);
        error = "unknown parameter '" + name +
                "' (channel-breakout has length, trail, flat-at, lots)";
        return false;
    }

    std::vector<std::pair<std::string, std::string>> Parameters() const override {
        return {{"length", std::to_string(length_)},
                {"trail", ffrunner::ShortestText(trail_)},
                {"flat-at", std::to_string(flatAt_)},
                {"lots", ffrunner::ShortestText(lots_)}};
    }

    void Reset() override {
        highs_.clear();
        lows_.clear();
        dates_.clear();
    }

    void OnBar(CSystemFuncs& f) override {
        const int32_t bar = f.CurrentBar();
        const size_t at = static_cast<size_t>(bar);
        if (highs_.size() <= at) {
            const size_t size = std::max(at + 1, static_cast<size_t>(std::max(f.BarCount(), 0)));
            highs_.resize(size);
            lows_.resize(size);
            dates_.resize(size);
        }
        highs_[at] = f.High();
        lows_[at] = f.Low();
        dates_[at] = f.Date();
        // Intraday bars share their date with the bar before; daily bars never do.
        const bool closing = flatAt_ > 0 && bar > 0 && dates_[at - 1] == dates_[at] &&
                             f.Hour() * 100 + f.Minute() >= flatAt_;
        if (f.MarketPosition() != 0) {
            if (trail_ > 0) f.SetDollarTrailing(trail_, true);
            if (closing) f.SetExitOnClose();
        }
        if (bar < length_ || closing) return;
        const double highest = *std::max_element(highs_.begin() + (bar - length_), highs_.begin() + bar);
        const double lowest = *std::min_element(lows_.begin() + (bar - length_), lows_.begin() + bar);
        const double close = f.Close();
        const int32_t position = f.MarketPosition();
        if (close > highest && position <= 0) {
            f.Buy(lots_, 0, false);
        } else if (close < lowest && position >= 0) {
            f.SellShort(lots_, 0, false);
        }
    }

private:
    int32_t length_ = 20;
    double trail_ = 1000;
    int32_t flatAt_ = 1500;
    double lots_ = 0;
    std::vector<double> highs_, lows_;
    std::vector<int32_t> dates_;
};

}  // namespace

std::unique_ptr<ffrunner::Strategy> MakeChannelBreakout() {
    return std::make_unique<ChannelBreakout>();
}

}  // namespace ffexamples
