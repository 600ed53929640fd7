// How the stops read the bars since an entry, or the last few bars: the price each
// bar contributes, the extremes of a stretch of bars and the best open gain reached.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/stops/StopRules.h"
#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

namespace {

// Widens [low, high] by a bar's high and low.
inline void Fold(double barHigh, double barLow, double& high, double& low) {
    if (barHigh > high) high = barHigh;
    if (barLow < low) low = barLow;
}

}  // namespace

// How a scan from bar `first` to the bar being evaluated sees bar `index`: the
// entry's own bar by its stored close, the only price of it known to come after the
// entry; the bar being evaluated by its stored open, its remainder being judged apart;
// every other bar by its true high or low.
double CSystemFuncs::ScanBarPrice(int32_t index, bool high, int32_t first, bool firstIsEntry) {
    const int32_t current = m_pBaseData->CurrentBar;
    if ((index == first && firstIsEntry) || index == current) {
        const BarRecord* bar = StreamBar(static_cast<uint32_t>(index));
        if (bar == nullptr) return kInvalidNumber;
        return index == first && firstIsEntry ? bar->close : bar->open;
    }
    const int32_t offset = WrappingSub(current, index);
    return high ? RealHigh(offset) : RealLow(offset);
}

// The highest and the lowest price of the scan from bar `first` (0 <= first <=
// the bar being evaluated). The bars strictly between an entry's bar and the bar
// being evaluated are complete, and their extremes are kept from call to call, so a
// stop called on every bar of a long position reads each bar once. A look-back
// window moves with every bar and is read whole; it is as long as the formula asks.
void CSystemFuncs::ScanExtremes(int32_t first, bool firstIsEntry, double& high, double& low) {
    const int32_t current = m_pBaseData->CurrentBar;
    high = ScanBarPrice(first, true, first, firstIsEntry);
    low = ScanBarPrice(first, false, first, firstIsEntry);
    if (first == current) return;
    if (first + 1 < current) {
        if (firstIsEntry) {
            double stretchHigh = 0.0, stretchLow = 0.0;
            StretchExtremes(first + 1, current - 1, stretchHigh, stretchLow);
            Fold(stretchHigh, stretchLow, high, low);
        } else {
            for (int32_t i = first + 1; i < current; ++i)
                Fold(ScanBarPrice(i, true, first, false), ScanBarPrice(i, false, first, false), high,
                     low);
        }
    }
    const double open = ScanBarPrice(current, true, first, firstIsEntry);
    Fold(open, open, high, low);
}

// The highest true high and lowest true low of the complete bars first..last of the
// traded stream, extending what earlier calls found for the same stretch.
void CSystemFuncs::StretchExtremes(int32_t first, int32_t last, double& high, double& low) {
    const int32_t stream = m_pBaseData->DataIndex;
    BarStretchCache::Source source;
    source.stream = stream;
    source.bars = &m_pBaseData->DataStreams[static_cast<uint32_t>(stream)].Bars;
    source.barType = BarType();
    source.barInterval = BarInterval();
    BarStretchCache& cache = Derived().Stretches;
    BarStretchCache::Stretch& stretch = cache.Find(source, first, last);
    const int32_t current = m_pBaseData->CurrentBar;
    for (int32_t i = stretch.last + 1; i <= last; ++i)
        Fold(RealHigh(current - i), RealLow(current - i), stretch.high, stretch.low);
    cache.Store(stretch, last);
    high = stretch.high;
    low = stretch.low;
}

// True when the open gain of `lots` contracts never falls as the price moves in the
// position's favour, in floating point as well: the margin modes whose profit is a
// non-negative factor times the price move (and the modes without value, whose
// profit is always 0). The best gain of a scan is then the gain at its best price.
// The fixed-value modes divide by the exit price and are not counted on.
bool CSystemFuncs::GainRisesWithPrice(double lots) {
    if (!(lots >= 0.0)) return false;
    const int32_t mode = MarginMode();
    if (mode == 1) return ContractSize() >= 0.0;
    if (mode == 4) return ContractUnit() * BigPointValue() >= 0.0;
    return mode != 2 && mode != 3;
}

// The largest open gain of the subject over the scan from its entry's bar, and the
// price at which it was reached; of prices giving the same gain, the one furthest in
// the position's favour.
double CSystemFuncs::PeakGain(const StopContext& stop, double& peakPrice) {
    const bool isLong = stop.isLong;
    if (GainRisesWithPrice(stop.lots)) {
        double high = 0.0, low = 0.0;
        ScanExtremes(stop.entryBar, true, high, low);
        peakPrice = isLong ? high : low;
        return stop.value.ProfitLoss(isLong, stop.price, peakPrice) * stop.lots;
    }
    double peak = 0.0;
    for (int32_t i = stop.entryBar; i <= stop.current; ++i) {
        const double price = ScanBarPrice(i, isLong, stop.entryBar, true);
        const double gain = stop.value.ProfitLoss(isLong, stop.price, price) * stop.lots;
        const bool further = isLong ? price > peakPrice : price < peakPrice;
        if (i == stop.entryBar || gain > peak || (gain == peak && further)) {
            peak = gain;
            peakPrice = price;
        }
    }
    return peak;
}
