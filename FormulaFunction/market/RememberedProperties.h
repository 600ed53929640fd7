// Instrument property reads for the paths that value a position many times per
// bar. A read that a remembered PropertyCache entry answers costs a few compares
// and no call; any other read is the property's own accessor, passed in as
// `lookup`, so the answer, and whatever the lookup fetches and inserts, are exactly
// those of the accessor. The remembered entry is checked on every read the way
// CachedValue checks it, so an entry the host changes is read as it now stands.
#pragma once

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/market/CachedValueSlots.h"

namespace ffmarket {

// Property ids of the instrument properties these reads serve.
enum PropertyId : int32_t {
    kBarInterval = 1,
    kBarType = 2,
    kContractSize = 7,
    kMinMove = 15,
    kPriceScale = 16,
    kBigPointValue = 21,
    kContractUnit = 23,
    kMarginRatio = 24,
    kMarginMode = 25,
};

class RememberedProperties {
public:
    RememberedProperties(CSystemFuncs& funcs, CachedValueSlots& slots, int32_t dataIndex)
        : funcs_(funcs), slots_(slots), dataIndex_(dataIndex) {}

    int32_t BarInterval() const { return Long(kBarInterval, [this] { return funcs_.BarInterval(); }); }
    int32_t BarType() const { return Long(kBarType, [this] { return funcs_.BarType(); }); }
    double ContractSize() const { return Double(kContractSize, [this] { return funcs_.ContractSize(); }); }
    int32_t MinMove() const { return Long(kMinMove, [this] { return funcs_.MinMove(); }); }
    double PriceScale() const { return Double(kPriceScale, [this] { return funcs_.PriceScale(); }); }
    double BigPointValue() const {
        return Double(kBigPointValue, [this] { return funcs_.BigPointValue(); });
    }
    int32_t ContractUnit() const { return Long(kContractUnit, [this] { return funcs_.ContractUnit(); }); }
    double MarginRatio() const { return Double(kMarginRatio, [this] { return funcs_.MarginRatio(); }); }

    template <class Lookup>
    int32_t Long(int32_t id, Lookup lookup) const {
        const tagKelDataType* entry = slots_.Find(funcs_.PropertyCache, dataIndex_, id);
        return entry != nullptr ? entry->nValue : lookup();
    }

    template <class Lookup>
    double Double(int32_t id, Lookup lookup) const {
        const tagKelDataType* entry = slots_.Find(funcs_.PropertyCache, dataIndex_, id);
        return entry != nullptr ? entry->dValue : lookup();
    }

private:
    CSystemFuncs& funcs_;
    CachedValueSlots& slots_;
    int32_t dataIndex_;
};

}  // namespace ffmarket
