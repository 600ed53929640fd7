// Running figures over the round trips of TradeList, so that the statistics
// functions, each defined as a walk over every round trip, cost the same per call
// however long the list has grown.
//
// The figures are those of a walk over a prefix of the list: the same
// classifications, and the sums added in list order starting from zero, so they
// carry the very bits that a walk from the first round trip gives. A call first
// checks that the walked prefix, and everything its valuation read, is as it was;
// then it walks only the round trips appended since. Two prefixes are kept: all
// that was walked, and the part of it before the round trips closed on the exit
// bar of the last one walked. Restoring the live bar drops just those round trips,
// so the call goes back to the shorter prefix instead of walking everything again.
// When neither prefix holds, the walk starts again from the first round trip.
//
// The check, precisely. A prefix of length n is kept when all of these hold:
//  1. TradeList holds at least n round trips; its first round trip is, field for
//     field and bit for bit, the one walked first; and its last round trips before
//     position n hold, bit for bit, the round trips walked there: the last kTail
//     (fewer when n is smaller) and, beyond those, every one closed on the exit bar
//     of round trip n-1, up to kLastExitBarLimit in all.
//  2. CommissionType, CommissionValue (its bits), SingleSideCommission and
//     FreeCloseToday are as they were.
//  3. For every entry data index among the walked round trips, MarginMode,
//     ContractSize, ContractUnit, BigPointValue, MinMove and PriceScale, read now
//     the way the valuation reads them (from PropertyCache, fetching what is
//     missing there), give the same bits. These are all the instrument properties
//     that the profit and the commission of a round trip read.
//  4. When FreeCloseToday is set: every bar of the main stream that a walked round
//     trip names (entry or exit bar) and that existed still exists, none of those
//     that did not exist has appeared, and the newest of the existing ones still
//     falls on the same local date.
// Rules 2 to 4 are checked over everything walked since the walk last started
// again, which covers the shorter prefix too. FormulaKind and Result only decide
// whether the functions answer at all; the figures do not depend on them.
//
// What the check does not see: a round trip replaced in the middle of a prefix,
// before the compared tail, while the first one and the list's length allow it,
// and a change to the time of a bar older than the newest one named. The library
// never does either: it appends round trips, drops them from the end when the live
// bar is restored (only those closed on that bar, which the compared tail holds
// whenever the exit bars do not decrease along the list), and empties the list when
// a run starts again; the host appends bars and only the forming last bar changes.
// The time zone is taken as fixed for the life of the object, as the local-day
// cache takes it.
//
// Checking costs a bounded number of comparisons (those of the round trips closed
// on the last exit bar, at most kLastExitBarLimit) plus six cached property reads
// per data index traded, whatever the number of round trips.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "host/KelTypes.h"

// What a walk over round trips adds up: what the statistics functions answer, and
// what the summary of statistics mode 1 is made of.
struct TradeListFigures {
    // By the counting classification (the sign of the net), with bars held as the
    // exit bar less the entry bar; the runs in list order.
    int32_t nWinners = 0, nLosers = 0, nEven = 0;
    int32_t nBarsWinners = 0, nBarsLosers = 0, nBarsEven = 0;
    int32_t nWinRun = 0, nLossRun = 0, nLongestWinRun = 0, nLongestLossRun = 0;

    // By the valued classification (a net within the tolerance is even), with bars
    // held counting the entry bar too.
    double dGrossProfit = 0, dGrossLoss = 0, dLargestWin = 0, dLargestLoss = 0;
    int32_t nValuedWinners = 0, nValuedLosers = 0, nValuedEven = 0;
    int32_t nValuedBarsWinners = 0, nValuedBarsLosers = 0, nValuedBarsEven = 0;

    // Of every round trip: the sum of the squares of the nets.
    double dSumOfSquares = 0;

    // Adds the next round trip: `counting` and `valued` are its two classifications
    // (1 win, 0 even, -1 loss), `bars` its exit bar less its entry bar.
    void Add(int32_t counting, int32_t valued, double net, int32_t bars);
};

// The first `length` round trips as they were walked, with the figures of the walk.
struct WalkedPrefix {
    static constexpr size_t kTail = 8;
    static constexpr size_t kLastExitBarLimit = 1024;

    size_t length = 0;
    TradeListFigures Figures;
    tagTradeList first{};
    std::vector<tagTradeList> tail;  // the round trips just before `length`

    // Back to no round trips walked, keeping the room of the copies.
    void Clear();

    // Rule 1 against a list of round trips.
    bool Unchanged(const std::vector<tagTradeList>& trips) const;

    // Takes copies of the first round trip and of the last ones before `end`: at
    // least kTail, and all those closed on the exit bar of the one before `end`.
    // The copies reuse the room of earlier ones.
    void CopyEnds(const std::vector<tagTradeList>& trips, size_t end);
};

// The instrument properties that valued the round trips of one data index.
struct ValuationInputs {
    int32_t nDataIndex = 0;
    int32_t nMarginMode = 0, nMinMove = 0, nContractUnit = 0;
    double dContractSize = 0, dBigPointValue = 0, dPriceScale = 0;

    bool SameAs(const ValuationInputs& other) const;
};

struct RunningTradeFigures {
    WalkedPrefix Walked;             // everything walked
    WalkedPrefix BeforeLastExitBar;  // up to the round trips closed on the last exit bar

    // How many times the walk started again from the first round trip; never reset.
    uint64_t restarts = 0;

    // Rule 2: the settings.
    int32_t commissionType = 0;
    double commissionValue = 0;
    bool singleSide = false;
    bool freeCloseToday = false;

    // Rule 3: one record per data index traded, in the order first seen.
    std::vector<ValuationInputs> instruments;

    // Rule 4: the highest named bar that existed (-1: none), the lowest named bar
    // that did not (kNoBar: none), and the local date of the former (0 when its
    // time could not be converted).
    static constexpr int64_t kNoBar = INT64_MAX;
    int64_t newestExistingBar = -1;
    int64_t oldestMissingBar = kNoBar;
    int32_t newestBarDate = 0;

    // Drops every figure and remembers the settings the next walk works with.
    void Restart(int32_t type, double value, bool single, bool freeToday);

    bool SameSettings(int32_t type, double value, bool single, bool freeToday) const;

    // The recorded inputs of a data index, or null when none of its round trips
    // has been walked.
    const ValuationInputs* FindInstrument(int32_t dataIndex) const;

    // Notes the bars a round trip names, in a main stream of `barCount` bars.
    void NoteBars(const tagTradeList& trip, size_t barCount);

    // The first half of rule 4: the existence of the named bars.
    bool SameBarsExist(size_t barCount) const;
};

inline bool SameBits(double a, double b) {
    uint64_t x = 0, y = 0;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return x == y;
}

// A round trip is eight 32-bit fields and three doubles with no padding between
// them, so comparing the bytes of runs of round trips compares every field, the
// doubles by their bits.
static_assert(std::is_trivially_copyable<tagTradeList>::value &&
                  sizeof(tagTradeList) == 8 * sizeof(int32_t) + 3 * sizeof(double),
              "round trips are compared byte for byte");

inline bool SameTrips(const tagTradeList* a, const tagTradeList* b, size_t count) {
    return count == 0 || std::memcmp(a, b, count * sizeof(tagTradeList)) == 0;
}

inline bool SameTrip(const tagTradeList& a, const tagTradeList& b) { return SameTrips(&a, &b, 1); }

// The checks run on every call of a statistics function, kept inline.

inline bool WalkedPrefix::Unchanged(const std::vector<tagTradeList>& trips) const {
    if (trips.size() < length) return false;
    if (length == 0) return true;
    if (!SameTrip(trips.front(), first)) return false;
    return SameTrips(trips.data() + (length - tail.size()), tail.data(), tail.size());
}

inline bool ValuationInputs::SameAs(const ValuationInputs& other) const {
    return nDataIndex == other.nDataIndex && nMarginMode == other.nMarginMode &&
           nMinMove == other.nMinMove && nContractUnit == other.nContractUnit &&
           SameBits(dContractSize, other.dContractSize) &&
           SameBits(dBigPointValue, other.dBigPointValue) && SameBits(dPriceScale, other.dPriceScale);
}

inline bool RunningTradeFigures::SameSettings(int32_t type, double value, bool single,
                                              bool freeToday) const {
    return commissionType == type && SameBits(commissionValue, value) && singleSide == single &&
           freeCloseToday == freeToday;
}
