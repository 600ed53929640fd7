// What every automatic stop shares: the checks made before a stop looks at
// anything, and the walk that applies a stop to the whole position or to each open
// entry by itself and closes what it hits.
#include "FormulaFunction/FormulaFunction.h"

#include <cmath>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/stops/StopRules.h"
#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

// A stop only works in a trading strategy, with a mode of 0 or 1, an amount above
// the tolerance and a position that is not flat. Its sense is that of the position:
// long above the tolerance, short otherwise. A stop also needs the bar being
// evaluated; without it there is nothing to judge and nothing is closed. Fills the
// parts of `stop` that belong to the whole call.
bool CSystemFuncs::PrepareStop(int32_t mode, double amount, StopContext& stop) {
    if (!InStrategy()) return false;
    const int32_t current = m_pBaseData->CurrentBar;
    Derived().Stretches.SeeBar(current);
    if (mode != 0 && mode != 1) return false;
    if (!(amount > kTolerance)) return false;
    const double contracts = SignedContracts(m_pBaseData->OpenEntries);
    if (contracts > -kTolerance && contracts < kTolerance) return false;
    const BarRecord* bar = CurrentStreamBar();
    if (bar == nullptr) return false;
    stop.isLong = contracts > kTolerance;
    stop.lots = std::fabs(contracts);
    stop.current = current;
    stop.mode = mode;
    stop.amount = amount;
    stop.bar.open = bar->open;
    stop.bar.close = bar->close;
    stop.value.Read(*this);
    const fftrading::RememberedInstrument& instrument = stop.value.Instrument();
    if (instrument.closeOnlyKnown) {
        stop.bar.high = instrument.closeOnly ? bar->close : bar->high;
        stop.bar.low = instrument.closeOnly ? bar->close : bar->low;
    } else {
        stop.bar.high = RealHigh(0);
        stop.bar.low = RealLow(0);
    }
    return true;
}

// Position scope: the position is judged against its average entry price, its
// absolute size and the bar of its last entry, which must lie between the first bar
// and the bar being evaluated, and is closed whole. Entry scope: each open entry is
// judged by itself, oldest first, and closed alone; a closed entry leaves the list,
// so the walk stays where it is and goes on with the entry that moved into its place.
// With `senseOfEntry` an entry's own kind gives its sense instead of the position's.
// True when this call closed something.
bool CSystemFuncs::ApplyStop(bool wholePosition, bool senseOfEntry, StopContext& stop,
                             StopDecision decide) {
    std::vector<tagTradeSignal>& entries = m_pBaseData->OpenEntries;
    double fill = 0.0;
    if (wholePosition) {
        stop.entryBar = entries.back().nBar;
        if (!stop.EntryBarInRange()) return false;
        stop.price = AvgEntryPrice();
        if (!(this->*decide)(stop, fill)) return false;
        const size_t before = entries.size();
        ClosePosition(fill);
        return entries.size() < before;
    }
    bool closed = false;
    for (size_t i = 0; i < entries.size();) {
        const tagTradeSignal& entry = entries[i];
        stop.price = entry.dPrice;
        stop.lots = entry.dLots;
        stop.entryBar = entry.nBar;
        if (senseOfEntry) stop.isLong = entry.nType == kBuy;
        const size_t before = entries.size();
        // The decisions only read; ClosePosition copies the entry before it changes the list.
        if ((this->*decide)(stop, fill)) ClosePosition(entry, fill);
        if (entries.size() < before)
            closed = true;
        else
            ++i;
    }
    return closed;
}
