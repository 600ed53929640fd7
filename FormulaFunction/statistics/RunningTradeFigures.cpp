// The running figures over round trips and the checks that keep them.

#include "FormulaFunction/statistics/RunningTradeFigures.h"

#include "FormulaFunction/statistics/WrappingCounts.h"

using ffstatistics::AddWrapping;

// A round trip that is neither a win nor a loss by the exact classification ends
// both runs.
void TradeListFigures::Add(int32_t counting, int32_t valued, double net, int32_t bars) {
    if (counting == 1) {
        AddWrapping(nWinners, 1);
        AddWrapping(nBarsWinners, bars);
        AddWrapping(nWinRun, 1);
        if (nWinRun > nLongestWinRun) nLongestWinRun = nWinRun;
        nLossRun = 0;
    } else if (counting == 0) {
        AddWrapping(nEven, 1);
        AddWrapping(nBarsEven, bars);
        nWinRun = 0;
        nLossRun = 0;
    } else {
        AddWrapping(nLosers, 1);
        AddWrapping(nBarsLosers, bars);
        AddWrapping(nLossRun, 1);
        if (nLossRun > nLongestLossRun) nLongestLossRun = nLossRun;
        nWinRun = 0;
    }
    const int32_t barsHeld = ffbuiltins::WrapToInt32(static_cast<uint32_t>(bars) + 1u);
    if (valued == 1) {
        dGrossProfit += net;
        if (net > dLargestWin) dLargestWin = net;
        AddWrapping(nValuedWinners, 1);
        AddWrapping(nValuedBarsWinners, barsHeld);
    } else if (valued == -1) {
        dGrossLoss += net;
        if (net < dLargestLoss) dLargestLoss = net;
        AddWrapping(nValuedLosers, 1);
        AddWrapping(nValuedBarsLosers, barsHeld);
    } else {
        AddWrapping(nValuedEven, 1);
        AddWrapping(nValuedBarsEven, barsHeld);
    }
    dSumOfSquares += net * net;
}

void WalkedPrefix::Clear() {
    length = 0;
    Figures = TradeListFigures();
    tail.clear();
}

void WalkedPrefix::CopyEnds(const std::vector<tagTradeList>& trips, size_t end) {
    tail.clear();
    if (end == 0) return;
    first = trips.front();
    size_t start = end < kTail ? 0 : end - kTail;
    const int32_t lastExitBar = trips[end - 1].nExitBar;
    while (start > 0 && end - start < kLastExitBarLimit && trips[start - 1].nExitBar == lastExitBar)
        --start;
    tail.assign(trips.begin() + static_cast<std::ptrdiff_t>(start),
                trips.begin() + static_cast<std::ptrdiff_t>(end));
}

void RunningTradeFigures::Restart(int32_t type, double value, bool single, bool freeToday) {
    Walked.Clear();
    BeforeLastExitBar.Clear();
    ++restarts;
    instruments.clear();
    newestExistingBar = -1;
    oldestMissingBar = kNoBar;
    newestBarDate = 0;
    commissionType = type;
    commissionValue = value;
    singleSide = single;
    freeCloseToday = freeToday;
}

const ValuationInputs* RunningTradeFigures::FindInstrument(int32_t dataIndex) const {
    for (const ValuationInputs& inputs : instruments)
        if (inputs.nDataIndex == dataIndex) return &inputs;
    return nullptr;
}

// Bar indexes are unsigned here, as in every index test: a negative one never exists.
void RunningTradeFigures::NoteBars(const tagTradeList& trip, size_t barCount) {
    for (const int32_t bar : {trip.nEntryBar, trip.nExitBar}) {
        const int64_t index = static_cast<int64_t>(static_cast<uint32_t>(bar));
        if (static_cast<uint64_t>(index) < barCount) {
            if (index > newestExistingBar) newestExistingBar = index;
        } else if (index < oldestMissingBar) {
            oldestMissingBar = index;
        }
    }
}

bool RunningTradeFigures::SameBarsExist(size_t barCount) const {
    const uint64_t count = barCount;
    if (newestExistingBar >= 0 && count <= static_cast<uint64_t>(newestExistingBar)) return false;
    return oldestMissingBar == kNoBar || count <= static_cast<uint64_t>(oldestMissingBar);
}
