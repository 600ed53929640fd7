// Counts and bar sums of the statistics are 32-bit figures that wrap around as the
// processor's additions do, never overflow.
#pragma once

#include <cstdint>

#include "FormulaFunction/builtins/ScalarHelpers.h"

namespace ffstatistics {

inline void AddWrapping(int32_t& figure, int32_t amount) {
    figure = ffbuiltins::WrapToInt32(static_cast<uint32_t>(figure) + static_cast<uint32_t>(amount));
}

}  // namespace ffstatistics
