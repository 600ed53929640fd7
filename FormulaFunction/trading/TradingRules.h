// Small rules shared by the position queries, the money arithmetic and the order
// functions of the simulated trading engine.
#pragma once

#include <cstdint>

#include "FormulaFunction/InvalidValues.h"
#include "FormulaFunction/builtins/ScalarHelpers.h"

namespace fftrading {

// The value an order function refuses as a size or price, and the answers of a query
// that has no data.
constexpr double kInvalidNumber = ff::kInvalidNumeric;
constexpr int32_t kInvalidInteger = ff::kInvalidInteger;

using ffbuiltins::TruncateToInt32;

// Sizes and prices closer to zero than this count as zero.
constexpr double kTolerance = 0.0001;

// Two lots that differ by less than this close an open entry as a whole.
constexpr double kWholeEntryTolerance = 0.01;

// Signal and round-trip type codes.
constexpr int32_t kBuy = 1;
constexpr int32_t kSell = 2;
constexpr int32_t kSellShort = 3;
constexpr int32_t kBuyToCover = 4;
constexpr int32_t kCloseAll = 5;

// Signed contracts are long above the tolerance, short below its negative, and flat
// in between, the two bounds included.
inline bool IsLongContracts(double contracts) { return contracts > kTolerance; }
inline bool IsShortContracts(double contracts) { return contracts < -kTolerance; }
inline bool IsFlatContracts(double contracts) {
    return !IsLongContracts(contracts) && !IsShortContracts(contracts);
}

// Strictly between the negative and the positive tolerance: the "use the default"
// value of a size or price argument.
inline bool IsNearZero(double value) { return value > -kTolerance && value < kTolerance; }

// Bar indexes and counts subtract with 32-bit wrap-around, never with overflow.
inline int32_t WrappingSub(int32_t a, int32_t b) {
    return ffbuiltins::WrapToInt32(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

}  // namespace fftrading
