// Price rules of the simulated trading engine: whether the bar being evaluated is
// the newest one, and the rounding of prices to the instrument's tick.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/builtins/ScalarHelpers.h"

namespace {

// The processor's truncating conversion into `out`; false when it answers with its
// out-of-range value 0x80000000 (NaN, infinity, a count beyond 32 bits).
bool TruncateFits(double d, int32_t& out) {
    out = ffbuiltins::TruncateToInt32(d);
    return out != INT32_MIN;
}

}  // namespace

// True when the bar being evaluated is the newest bar of the main chart.
bool CSystemFuncs::LastestBar() {
    if (m_pBaseData == nullptr) return false;
    return static_cast<int64_t>(m_pBaseData->CurrentBar) == static_cast<int64_t>(BarCount()) - 1;
}

// Rounds `price` in place to the instrument's tick, counting in units of 0.0001.
// Rounding up leaves a price on the tick where it is and moves any other to the
// tick above; its tick count is taken with 0.0001 of tolerance. Rounding down
// truncates to the tick below, without tolerance. The price is left unchanged when
// the integer arithmetic has no answer: a tick of 0 (MinMove or PriceScale 0), a
// tick that does not fit 32 bits (no known instrument), a price that is not finite
// or whose tick count does not fit 32 bits. Always true.
bool CSystemFuncs::GetValidPrice(bool up, double& price) {
    int32_t step = 0;
    if (!TruncateFits(PriceScale() * MinMove() * 10000 + 0.5, step) || step == 0) return true;
    int32_t ticks = 0;
    int64_t n = 0;
    if (up) {
        if (!TruncateFits(price * -10000 + 0.0001, ticks)) return true;
        n = static_cast<int64_t>(step) - ticks;
        if (n < INT32_MIN || n > INT32_MAX) return true;
    } else {
        if (!TruncateFits(price * 10000, ticks)) return true;
        n = ticks;
    }
    n = n / step * step;  // truncating division, as the 32-bit arithmetic does
    price = static_cast<double>(n) * 0.0001;
    return true;
}
