// An instrument is known by its market identifier and its code.
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "host/SubscibeManage.h"

namespace datafeed {

struct InstrumentKey {
    uint16_t MarketId = 0;
    std::string Code;

    bool operator<(const InstrumentKey& other) const {
        return std::tie(MarketId, Code) < std::tie(other.MarketId, other.Code);
    }
    bool operator==(const InstrumentKey& other) const {
        return MarketId == other.MarketId && Code == other.Code;
    }
};

// The key of a symbol record. The code ends at its first zero byte or at the end of
// the array, whichever comes first, so a code without a terminator is still read safely.
InstrumentKey KeyOf(const tagSymbol& symbol);

// A symbol record for the key; a code of 32 characters or more is cut to 31.
tagSymbol MakeSymbol(const InstrumentKey& key);

}  // namespace datafeed
