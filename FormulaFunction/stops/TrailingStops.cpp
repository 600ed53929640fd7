// Trailing stops: leave when the price has fallen back a money amount from the best
// price since the entry (or of the last few bars), or when a share of the best gain
// has been given back. The best price is re-derived from the bars on every call.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/stops/StopRules.h"

using ffstops::InsideBar;
using ffstops::JudgedPrice;
using ffstops::StopFill;

// The amount is always for the whole entry or position.
bool CSystemFuncs::SetDollarTrailing(double dAmount, bool bWholePosition) {
    StopContext stop;
    if (!PrepareStop(0, dAmount, stop)) return false;
    return ApplyStop(bWholePosition, false, stop, &CSystemFuncs::TrailingStopHit);
}

bool CSystemFuncs::SetPercentTrailing(double dAmount, double dPercent, bool bWholePosition) {
    if (!(dPercent > 0.0001 && dPercent <= 1.0)) return false;
    StopContext stop;
    if (!PrepareStop(0, dAmount, stop)) return false;
    stop.percent = dPercent;
    return ApplyStop(bWholePosition, false, stop, &CSystemFuncs::PercentTrailingHit);
}

// A look-back of 0 bars is taken as 1.
bool CSystemFuncs::SetPeriodTrailing(int32_t nMode, double dAmount, int32_t nBars,
                                     bool bWholePosition) {
    if (nBars < 0) return false;
    StopContext stop;
    if (!PrepareStop(nMode, dAmount, stop)) return false;
    stop.bars = nBars == 0 ? 1 : nBars;
    return ApplyStop(bWholePosition, false, stop, &CSystemFuncs::TrailingStopHit);
}

// The money trailing stop (no look-back) and the period trailing stop (the best price
// of the last `bars` bars only, the lowest low starting from a fixed ceiling). The
// stop lies the threshold's worth of loss away from the best price. When the bar's
// worst price did not reach it, the bar may still have made a new best price and
// fallen back from it within itself: then the close tells, and the stop must lie
// inside the bar. In entry scope both steps use the entry's own contracts.
bool CSystemFuncs::TrailingStopHit(const StopContext& stop, double& fill) {
    if (!stop.EntryBarInRange()) return false;
    int32_t first = stop.entryBar;
    if (stop.bars > 0) {
        const int64_t windowStart = static_cast<int64_t>(stop.current) - stop.bars + 1;
        if (windowStart > first) first = static_cast<int32_t>(windowStart);
    }
    double high = 0.0, low = 0.0;
    ScanExtremes(first, first == stop.entryBar, high, low);
    double best = stop.isLong ? high : low;
    if (stop.bars > 0 && !stop.isLong && !(best < ffstops::kPeriodLowCeiling))
        best = ffstops::kPeriodLowCeiling;

    const double threshold = stop.Threshold();
    const double worst = JudgedPrice(stop.bar, !stop.isLong, stop.EnteredOnThisBar());
    if (-stop.value.ProfitLoss(stop.isLong, best, worst) * stop.lots >= threshold) {
        const double level = GetMarginCallPrice(threshold, best, stop.SignedLots());
        fill = StopFill(stop.bar, stop.isLong, false, level);
        return true;
    }
    if (stop.EnteredOnThisBar()) return false;
    const double extended = stop.isLong ? (stop.bar.high > best ? stop.bar.high : best)
                                        : (stop.bar.low < best ? stop.bar.low : best);
    if (!(-stop.value.ProfitLoss(stop.isLong, extended, stop.bar.close) * stop.lots >= threshold))
        return false;
    const double level = GetMarginCallPrice(threshold, extended, stop.SignedLots());
    if (!InsideBar(stop.bar, level)) return false;
    fill = level;
    return true;
}

// Armed once the gain reached the amount on a bar since the entry; the stop then
// lies where the given share of the peak gain, measured from the peak price, has been
// given back. A stop armed only by this bar's own extreme fires when the bar also
// closes at or beyond the stop, inside the bar.
bool CSystemFuncs::PercentTrailingHit(const StopContext& stop, double& fill) {
    if (!stop.EntryBarInRange()) return false;
    double peakPrice = 0.0;
    const double peak = PeakGain(stop, peakPrice);
    if (peak >= stop.amount) {
        const double level = GetMarginCallPrice(peak * stop.percent, peakPrice, stop.SignedLots());
        const double worst = JudgedPrice(stop.bar, !stop.isLong, stop.EnteredOnThisBar());
        if (!(stop.isLong ? worst <= level : worst >= level)) return false;
        fill = StopFill(stop.bar, stop.isLong, false, level);
        return true;
    }
    if (stop.EnteredOnThisBar()) return false;
    const double extreme = stop.isLong ? stop.bar.high : stop.bar.low;
    const double gain = stop.value.ProfitLoss(stop.isLong, stop.price, extreme) * stop.lots;
    if (!(gain >= stop.amount)) return false;
    const double level = GetMarginCallPrice(gain * stop.percent, extreme, stop.SignedLots());
    const bool closedBeyond = stop.isLong ? stop.bar.close <= level : stop.bar.close >= level;
    if (!closedBeyond || !InsideBar(stop.bar, level)) return false;
    fill = level;
    return true;
}
