// The highest true high and lowest true low of stretches of bars that begin just
// after an entry's bar, remembered so that a stop called on every bar of a long
// position reads each bar once instead of re-reading all bars since the entry.
//
// A stretch covers bars first..last of one data stream; the stops ask for it with
// `last` one before the bar being evaluated, so it only ever holds bars that are
// complete. A remembered stretch is handed out again only when it was read from
// the same stream (same index, same storage, same bar type and interval, which
// decide what the true high and low are), its first and last bars still carry the
// time stamps they had, and it does not reach past the bar asked for; the caller
// then extends it. Anything else starts a fresh stretch in the least recently used
// place. A stop call on an earlier bar than the one before means the run started
// again, and everything is forgotten.
//
// What cannot be noticed is the host rewriting the prices of complete bars in
// place while keeping their time stamps; it never does so within a run, and a new
// run is noticed by its first stop call on an earlier bar.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "host/KelTypes.h"

class BarStretchCache {
public:
    struct Source {
        int32_t stream = 0;
        const std::vector<BarRecord>* bars = nullptr;
        int32_t barType = 0;
        int32_t barInterval = 0;
    };

    struct Stretch {
        int32_t first = 0;
        int32_t last = -1;  // first - 1 while empty
        double high = std::numeric_limits<double>::lowest();
        double low = std::numeric_limits<double>::max();
    };

    // The stretch of `source` that begins at `first` (first <= last < bar count):
    // a remembered one that reaches no further than `last`, or a fresh empty one.
    // The caller folds in the bars after its `last` and then calls Store.
    Stretch& Find(const Source& source, int32_t first, int32_t last);

    // Records that `stretch`, returned by the last Find, now reaches bar `last`.
    void Store(Stretch& stretch, int32_t last);

    // Told the bar being evaluated by every stop call.
    void SeeBar(int32_t current);

private:
    static constexpr int kPlaces = 8;

    struct Place {
        bool used = false;
        Source source;
        const BarRecord* storage = nullptr;
        int64_t firstTime = 0;
        int64_t lastTime = 0;
        uint64_t lastUse = 0;
        Stretch stretch;
    };

    bool StillValid(const Place& place, const Source& source, int32_t first, int32_t last) const;
    void Forget();

    Place places_[kPlaces];
    Place* found_ = nullptr;
    uint64_t clock_ = 0;
    int32_t seenBar_ = std::numeric_limits<int32_t>::min();
};
