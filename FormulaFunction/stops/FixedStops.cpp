// Fixed stops: leave the position, or an entry, when a money loss or gain is reached,
// when a gain once reached has been given back down to the entry price, or at the
// close of the bar. Each call judges the bar being evaluated and closes at once;
// nothing is remembered between calls.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/stops/StopRules.h"
#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;
using ffstops::InsideBar;
using ffstops::JudgedPrice;
using ffstops::StopFill;

bool CSystemFuncs::SetStopLoss(int32_t nMode, double dAmount, bool bWholePosition) {
    StopContext stop;
    if (!PrepareStop(nMode, dAmount, stop)) return false;
    return ApplyStop(bWholePosition, false, stop, &CSystemFuncs::LossStopHit);
}

bool CSystemFuncs::SetProfitTarget(int32_t nMode, double dAmount, bool bWholePosition) {
    StopContext stop;
    if (!PrepareStop(nMode, dAmount, stop)) return false;
    return ApplyStop(bWholePosition, false, stop, &CSystemFuncs::ProfitTargetHit);
}

// In entry scope each entry is long or short by its own kind.
bool CSystemFuncs::SetBreakEven(int32_t nMode, double dAmount, bool bWholePosition) {
    StopContext stop;
    if (!PrepareStop(nMode, dAmount, stop)) return false;
    return ApplyStop(bWholePosition, true, stop, &CSystemFuncs::BreakEvenHit);
}

// Queues the close of the whole position at this bar's close, carried out before
// anything else on the next bar; the flag tells that step the exit was asked for.
bool CSystemFuncs::SetExitOnClose() {
    if (!InStrategy()) return false;
    if (MarketPosition() == 0) return false;
    ParkSignal(kCloseAll, 0.0, 0.0);
    m_pBaseData->Result->ExitOnClose = true;
    return true;
}

// The loss is measured at the bar's worst price for the position. The stop price is
// where the loss reaches the threshold.
bool CSystemFuncs::LossStopHit(const StopContext& stop, double& fill) {
    const double worst = JudgedPrice(stop.bar, !stop.isLong, stop.EnteredOnThisBar());
    const double threshold = stop.Threshold();
    if (!(stop.value.ProfitLoss(stop.isLong, stop.price, worst) * stop.lots <= -threshold)) return false;
    const double level = GetMarginCallPrice(threshold, stop.price, stop.SignedLots());
    fill = StopFill(stop.bar, stop.isLong, false, level);
    return true;
}

// The mirror of the stop loss: the gain at the bar's best price, a target on the
// gaining side, and an open beyond the target fills at the open.
bool CSystemFuncs::ProfitTargetHit(const StopContext& stop, double& fill) {
    const double best = JudgedPrice(stop.bar, stop.isLong, stop.EnteredOnThisBar());
    const double threshold = stop.Threshold();
    if (!(stop.value.ProfitLoss(stop.isLong, stop.price, best) * stop.lots >= threshold)) return false;
    const double level = GetMarginCallPrice(-threshold, stop.price, stop.SignedLots());
    fill = StopFill(stop.bar, stop.isLong, true, level);
    return true;
}

// Armed once the gain reached the threshold on some bar since the entry (re-read from
// the bars on every call); an armed stop fires when this bar opens at or beyond the
// entry price, or trades back to it. A stop that only this bar's own extreme arms
// fires when the bar also closes back at or beyond the entry price.
bool CSystemFuncs::BreakEvenHit(const StopContext& stop, double& fill) {
    if (!stop.EntryBarInRange()) return false;
    const double threshold = stop.Threshold();
    const double entry = stop.price;
    const ffstops::BarPrices& bar = stop.bar;
    double peakPrice = 0.0;
    if (PeakGain(stop, peakPrice) >= threshold) {
        const bool openedBeyond = stop.isLong ? bar.open <= entry : bar.open >= entry;
        if (!openedBeyond && !InsideBar(bar, entry)) return false;
        fill = StopFill(bar, stop.isLong, false, entry);
        return true;
    }
    const double extreme = stop.isLong ? bar.high : bar.low;
    if (!(stop.value.ProfitLoss(stop.isLong, entry, extreme) * stop.lots >= threshold)) return false;
    const bool closedBack = stop.isLong ? bar.close <= entry : bar.close >= entry;
    if (!closedBack) return false;
    fill = entry;
    return true;
}
