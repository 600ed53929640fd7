// Time and close of a bar of the main data stream (stream 0, whatever stream the
// formula reads), for the per-bar driver and the statistics step; 0 and the invalid
// number for a bar that does not exist. Inline: the driver asks for several per bar.
#pragma once

#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/trading/TradingRules.h"

inline int64_t CSystemFuncs::MainBarTime(int32_t bar) {
    if (m_pBaseData == nullptr || m_pBaseData->DataStreams.empty()) return 0;
    const std::vector<BarRecord>& bars = m_pBaseData->DataStreams[0].Bars;
    if (static_cast<uint32_t>(bar) >= bars.size()) return 0;
    return bars[static_cast<uint32_t>(bar)].time;
}

inline double CSystemFuncs::MainBarClose(int32_t bar) {
    if (m_pBaseData == nullptr || m_pBaseData->DataStreams.empty()) return fftrading::kInvalidNumber;
    const std::vector<BarRecord>& bars = m_pBaseData->DataStreams[0].Bars;
    if (static_cast<uint32_t>(bar) >= bars.size()) return fftrading::kInvalidNumber;
    return bars[static_cast<uint32_t>(bar)].close;
}
