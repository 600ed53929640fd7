// The result a built-in function returns for a value found in PropertyCache, or the
// invalid value of its type when the lookup had no answer (null).
#pragma once

#include <cstdint>
#include <string>

#include "FormulaFunction/InvalidValues.h"
#include "host/KelTypes.h"

namespace ffmarket {

inline int32_t LongOf(const tagKelDataType* v) { return v ? v->nValue : ff::kInvalidInteger; }
inline double DoubleOf(const tagKelDataType* v) { return v ? v->dValue : ff::kInvalidNumeric; }
inline bool BoolOf(const tagKelDataType* v) { return v ? v->bValue : false; }
inline std::string TextOf(const tagKelDataType* v) { return v ? v->strValue : std::string(); }

}  // namespace ffmarket
