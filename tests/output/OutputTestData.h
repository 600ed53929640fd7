// Host data objects for the output tests: a formula of a given kind on a given bar
// of a main stream with a given number of bars.
#pragma once

#include <cstdint>
#include <limits>

#include "FormulaFunction/FormulaFunction.h"

namespace outputtest {

constexpr double kInvalidNumeric = std::numeric_limits<double>::max();

inline CKelBaseData MakeData(int32_t kind, int32_t barCount, int32_t currentBar) {
    CKelBaseData data{};
    data.FormulaKind = kind;
    data.DataStreams.resize(1);
    data.DataStreams[0].Bars.resize(static_cast<size_t>(barCount));
    for (int32_t i = 0; i < barCount; ++i) {
        BarRecord& bar = data.DataStreams[0].Bars[static_cast<size_t>(i)];
        bar.time = 1269479103000LL + i * 60000LL;
        bar.open = bar.high = bar.low = bar.close = 100.0 + i;
    }
    data.CurrentBar = currentBar;
    return data;
}

}  // namespace outputtest
