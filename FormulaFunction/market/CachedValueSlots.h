// Shortcuts into PropertyCache: for each data index and value id, the entry that a
// lookup found or inserted, so that a repeated read neither formats a key nor
// searches the map.
//
// Value ids: 1 to 25 are the instrument property ids; quote and account values
// number themselves from 32 up. One id always goes with one key format. Ids from
// kValueIds up and data indexes outside 0 to kDataIndexes - 1 are never remembered
// and always take the full lookup.
//
// A remembered entry is a pointer into a map node, which stays valid as long as the
// entry exists. The library only ever inserts into PropertyCache; the host sees the
// map and may add entries or erase them. Every lookup first compares the map's size
// with the size seen last: a smaller map means the host erased something, and all
// shortcuts are dropped. What cannot be noticed is the host erasing an entry and
// inserting another between two calls of the library, or assigning the map a new
// content; the host does neither while a formula runs (a CSystemFuncs that is
// copied or assigned starts without shortcuts).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/KelTypes.h"

class CachedValueSlots {
public:
    static constexpr int32_t kValueIds = 128;
    static constexpr int32_t kDataIndexes = 64;

    using Cache = std::map<std::string, tagKelDataType>;
    using Row = std::array<const tagKelDataType*, kValueIds>;

    // The remembered entry of (dataIndex, valueId), or null.
    const tagKelDataType* Find(const Cache& cache, int32_t dataIndex, int32_t valueId) {
        const Row* row = Entries(cache, dataIndex);
        if (row == nullptr || valueId < 0 || valueId >= kValueIds) return nullptr;
        return (*row)[static_cast<size_t>(valueId)];
    }

    // The remembered entries of a data index by value id (null where none is), or
    // null when the index has none; for several reads at once. Valid until the next
    // call of this object.
    const Row* Entries(const Cache& cache, int32_t dataIndex) {
        if (cache.size() < seenSize_) Forget();
        seenSize_ = cache.size();
        if (dataIndex < 0 || static_cast<size_t>(dataIndex) >= slots_.size()) return nullptr;
        return &slots_[static_cast<size_t>(dataIndex)];
    }

    // Remembers `entry`, an element of `cache`, for (dataIndex, valueId).
    void Remember(const Cache& cache, int32_t dataIndex, int32_t valueId, const tagKelDataType* entry) {
        seenSize_ = cache.size();
        if (dataIndex < 0 || dataIndex >= kDataIndexes || valueId < 0 || valueId >= kValueIds) return;
        if (slots_.size() <= static_cast<size_t>(dataIndex))
            slots_.resize(static_cast<size_t>(dataIndex) + 1, Row{});
        slots_[static_cast<size_t>(dataIndex)][static_cast<size_t>(valueId)] = entry;
    }

private:
    void Forget() { slots_.clear(); }

    std::vector<Row> slots_;
    size_t seenSize_ = 0;
};
