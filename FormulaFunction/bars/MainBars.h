// Bars of the main data stream (stream 0), whatever stream the formula reads: the
// driver, the statistics step and the trade records date and value by it. Inline:
// the driver asks for several per bar.
#pragma once

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/trading/TradingRules.h"

namespace ffbars {

// The bar of the main stream, or null when the data object, the stream or the bar
// does not exist. A negative index wraps to a huge one and is out of range.
inline const BarRecord* MainStreamBar(const CKelBaseData* data, int32_t bar) {
    if (data == nullptr || data->DataStreams.empty()) return nullptr;
    const std::vector<BarRecord>& bars = data->DataStreams[0].Bars;
    return static_cast<uint32_t>(bar) < bars.size() ? &bars[static_cast<uint32_t>(bar)] : nullptr;
}

// One field of a main-stream bar, or `missing`. The same lookup as MainStreamBar,
// answering the field directly: the per-bar driver reads several a bar, and going
// through the pointer costs a second test of it on each.
template <typename Value>
inline Value MainStreamField(const CKelBaseData* data, int32_t bar, Value BarRecord::*field,
                             Value missing) {
    if (data == nullptr || data->DataStreams.empty()) return missing;
    const std::vector<BarRecord>& bars = data->DataStreams[0].Bars;
    return static_cast<uint32_t>(bar) < bars.size() ? bars[static_cast<uint32_t>(bar)].*field
                                                    : missing;
}

}  // namespace ffbars

// Time and close of a main-stream bar; 0 and the invalid number when it does not exist.
inline int64_t CSystemFuncs::MainBarTime(int32_t bar) {
    return ffbars::MainStreamField(m_pBaseData, bar, &BarRecord::time, int64_t{0});
}

inline double CSystemFuncs::MainBarClose(int32_t bar) {
    return ffbars::MainStreamField(m_pBaseData, bar, &BarRecord::close, fftrading::kInvalidNumber);
}
