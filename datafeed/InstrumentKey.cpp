#include "datafeed/InstrumentKey.h"

#include <algorithm>
#include <cstring>

namespace datafeed {

InstrumentKey KeyOf(const tagSymbol& symbol) {
    const char* begin = symbol.Code;
    const char* end = std::find(begin, begin + sizeof(symbol.Code), '\0');
    return InstrumentKey{symbol.MarketId, std::string(begin, end)};
}

tagSymbol MakeSymbol(const InstrumentKey& key) {
    tagSymbol symbol;
    symbol.MarketId = key.MarketId;
    const size_t length = std::min(key.Code.size(), sizeof(symbol.Code) - 1);
    std::memcpy(symbol.Code, key.Code.data(), length);
    symbol.Code[length] = '\0';
    return symbol;
}

}  // namespace datafeed
