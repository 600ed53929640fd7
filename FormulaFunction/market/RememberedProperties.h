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
#include "FormulaFunction/market/ValueIds.h"

namespace ffmarket {

class RememberedProperties {
public:
    RememberedProperties(CSystemFuncs& funcs, CachedValueSlots& slots, int32_t dataIndex)
        : funcs_(funcs), slots_(slots), dataIndex_(dataIndex) {}

    int32_t BarInterval() const { return Long(kPropertyBarInterval, [this] { return funcs_.BarInterval(); }); }
    int32_t BarType() const { return Long(kPropertyBarType, [this] { return funcs_.BarType(); }); }
    double ContractSize() const { return Double(kPropertyContractSize, [this] { return funcs_.ContractSize(); }); }
    int32_t MinMove() const { return Long(kPropertyMinMove, [this] { return funcs_.MinMove(); }); }
    double PriceScale() const { return Double(kPropertyPriceScale, [this] { return funcs_.PriceScale(); }); }
    double BigPointValue() const {
        return Double(kPropertyBigPointValue, [this] { return funcs_.BigPointValue(); });
    }
    int32_t ContractUnit() const { return Long(kPropertyContractUnit, [this] { return funcs_.ContractUnit(); }); }
    double MarginRatio() const { return Double(kPropertyMarginRatio, [this] { return funcs_.MarginRatio(); }); }

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
