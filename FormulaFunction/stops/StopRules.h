// What every automatic stop shares: the subject it judges (one open entry or the
// whole position), the current bar as the stops see it, and the one rule that says
// where a stop fills on that bar.
#pragma once

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/trading/Valuation.h"

namespace ffstops {

// The current bar of the traded stream: its open and close as stored, and its true
// high and low.
struct BarPrices {
    double open = 0.0;
    double high = 0.0;
    double low = 0.0;
    double close = 0.0;
};

// The price a stop examines on the current bar: the high or the low, except on the
// bar the entry was made, where only the close is known to lie after the entry.
inline double JudgedPrice(const BarPrices& bar, bool high, bool entryOnThisBar) {
    if (entryOnThisBar) return bar.close;
    return high ? bar.high : bar.low;
}

inline bool InsideBar(const BarPrices& bar, double price) {
    return bar.low <= price && price <= bar.high;
}

// Where a stop at `stop` fills on the current bar. A protective stop waits for the
// price to come against the position, a target (`inFavour`) for it to go the
// position's way. When the bar trades through the level, the fill is the level,
// unless the bar opened beyond it already: then the open is the first price at which
// the order could be done. So a long's stop and a short's target take the lower of
// the open and the level, a short's stop and a long's target the higher. A level
// outside the bar was gapped over, and the open is taken.
inline double StopFill(const BarPrices& bar, bool isLong, bool inFavour, double stop) {
    if (!InsideBar(bar, stop)) return bar.open;
    const bool takeLower = isLong != inFavour;
    if (takeLower) return bar.open < stop ? bar.open : stop;
    return bar.open > stop ? bar.open : stop;
}

// The lowest low of the period trailing stop's scan starts from this ceiling, so a
// short whose prices all lie above it trails from the ceiling instead.
constexpr double kPeriodLowCeiling = 999999.99;

}  // namespace ffstops

// One call of a stop applied to one subject: an open entry (its price, lots and bar)
// or the whole position (average entry price, absolute contracts, the last entry's
// bar), with the call's arguments and the current bar.
struct CSystemFuncs::StopContext {
    bool isLong = true;
    double price = 0.0;   // entry price, or the average entry price of the position
    double lots = 0.0;    // contracts, positive
    int32_t entryBar = 0;
    int32_t current = 0;  // the bar being evaluated
    ffstops::BarPrices bar;
    CSystemFuncs::Valuation value;  // the instrument's terms for the call

    int32_t mode = 0;      // 0: the amount is for the whole subject; 1: per contract
    double amount = 0.0;
    double percent = 0.0;  // share of the peak gain the percent trailing stop gives back
    int32_t bars = 0;      // look-back of the period and inactivity stops; 0: since entry
    double windowHigh = 0.0;  // inactivity stop: extremes of its look-back window
    double windowLow = 0.0;

    double SignedLots() const { return isLong ? lots : -lots; }
    double Threshold() const { return mode == 1 ? amount * lots : amount; }
    bool EnteredOnThisBar() const { return entryBar == current; }
    // A scan from the entry's bar needs that bar to lie between the first bar and the
    // bar being evaluated.
    bool EntryBarInRange() const { return entryBar >= 0 && entryBar <= current; }
};
