// Remembered extremes of the stretches of bars since an entry.
#include "FormulaFunction/stops/BarStretchCache.h"

namespace {

bool SameSource(const BarStretchCache::Source& a, const BarStretchCache::Source& b) {
    return a.stream == b.stream && a.bars == b.bars && a.barType == b.barType &&
           a.barInterval == b.barInterval;
}

}  // namespace

bool BarStretchCache::StillValid(const Place& place, const Source& source, int32_t first,
                                 int32_t last) const {
    if (!place.used || !SameSource(place.source, source)) return false;
    if (place.stretch.first != first || place.stretch.last > last) return false;
    const std::vector<BarRecord>& bars = *source.bars;
    if (place.storage != bars.data()) return false;
    if (place.stretch.last < first) return true;  // empty: nothing read yet
    const size_t lastIndex = static_cast<size_t>(place.stretch.last);
    return lastIndex < bars.size() && bars[static_cast<size_t>(first)].time == place.firstTime &&
           bars[lastIndex].time == place.lastTime;
}

BarStretchCache::Stretch& BarStretchCache::Find(const Source& source, int32_t first,
                                                int32_t last) {
    ++clock_;
    Place* oldest = &places_[0];
    for (Place& place : places_) {
        if (StillValid(place, source, first, last)) {
            place.lastUse = clock_;
            found_ = &place;
            return place.stretch;
        }
        if (!place.used || (oldest->used && place.lastUse < oldest->lastUse)) oldest = &place;
    }
    Place& fresh = *oldest;
    fresh = Place();
    fresh.used = true;
    fresh.source = source;
    fresh.storage = source.bars->data();
    fresh.lastUse = clock_;
    fresh.stretch.first = first;
    fresh.stretch.last = first - 1;
    found_ = &fresh;
    return fresh.stretch;
}

void BarStretchCache::Store(Stretch& stretch, int32_t last) {
    if (found_ == nullptr || &found_->stretch != &stretch) return;
    const std::vector<BarRecord>& bars = *found_->source.bars;
    stretch.last = last;
    if (last < stretch.first) return;
    found_->firstTime = bars[static_cast<size_t>(stretch.first)].time;
    found_->lastTime = bars[static_cast<size_t>(last)].time;
}

void BarStretchCache::SeeBar(int32_t current) {
    if (current < seenBar_) Forget();
    seenBar_ = current;
}

void BarStretchCache::Forget() {
    for (Place& place : places_) place = Place();
    found_ = nullptr;
}
