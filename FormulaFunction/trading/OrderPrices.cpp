// Fill prices of orders: at market, or a limit price placed on the instrument's tick
// and kept inside what the bar (on history) or the exchange (today) allows.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

// The exchange's price limit as the live quote gives it, 0 when it is not known: a
// quote that cannot be had answers the invalid number, which must not clamp.
static double KnownLimit(double limit) { return limit == kInvalidNumber ? 0.0 : limit; }

// On a bar of today's date a price outside the exchange's limits is moved onto the
// nearer limit; a limit that is not known (0) is not applied.
void CSystemFuncs::ClampToTodayLimits(double& price) {
    if (Date() != CurrentDate()) return;
    const double upper = KnownLimit(Q_UpperLimit());
    const double lower = KnownLimit(Q_LowerLimit());
    if (upper > kTolerance && price > upper) price = upper;
    if (lower > kTolerance && price < lower) price = lower;
}

// The fill price of an order: 0 means the bar's close as it stands. A limit price on
// the newest bar is put on the tick first and then held to today's limits; on a
// history bar it is first held inside the bar's range, which is known, and then put on
// the tick. Buying rounds up and selling rounds down, so a fill is never better than
// the price asked. False refuses the order: a negative price, or a fill of no value.
bool CSystemFuncs::OrderFillPrice(bool roundUp, double price, double& fill) {
    if (IsNearZero(price)) {
        fill = Close();
    } else if (price <= -kTolerance) {
        return false;
    } else {
        fill = price;
        if (LastestBar()) {
            GetValidPrice(roundUp, fill);
            ClampToTodayLimits(fill);
        } else {
            const double low = RealLow(0);
            const double high = RealHigh(0);
            if (fill < low) fill = low;
            if (fill > high) fill = high;
            GetValidPrice(roundUp, fill);
        }
    }
    return fill > kTolerance;
}
