// The one lookup path into PropertyCache, shared by the instrument properties, the
// quotes and the account values.
#include <cstdio>
#include <string>
#include <utility>

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/FormulaFunction.h"

// The cached value under the key that `keyFormat` gives for the current data index
// ("Data%d.MinMove" becomes "Data0.MinMove"; a format without %d is used as it
// stands). A key already in the cache is served without any further call.
// Otherwise `fetch` fills a cleared record; on success the record is inserted under
// the key, on failure nothing is cached and null is returned, so the next call
// tries again. A hit on a remembered entry formats no key and allocates nothing.
const tagKelDataType* CSystemFuncs::CachedValue(const char* keyFormat, int32_t valueId,
                                                ValueFetch fetch) {
    if (m_pBaseData == nullptr) return nullptr;
    const int32_t dataIndex = m_pBaseData->DataIndex;
    CachedValueSlots& slots = Derived().Values;
    if (const tagKelDataType* hit = slots.Find(PropertyCache, dataIndex, valueId)) return hit;

    char buffer[96];
    std::snprintf(buffer, sizeof buffer, keyFormat, dataIndex);
    std::string key(buffer);
    auto it = PropertyCache.find(key);
    if (it == PropertyCache.end()) {
        tagKelDataType value;
        if (!(this->*fetch)(valueId, value)) return nullptr;
        it = PropertyCache.emplace(std::move(key), std::move(value)).first;
    }
    slots.Remember(PropertyCache, dataIndex, valueId, &it->second);
    return &it->second;
}
