// What the paper broker needs to know about the market at one moment.
#pragma once

#include <cstdint>
#include <string>

#include "datafeed/InstrumentFile.h"
#include "datafeed/QuoteBoard.h"

namespace datafeed {

struct MarketView {
    const InstrumentCatalogue& Instruments;
    const QuoteBoard& Quotes;
    int32_t Today;  // local date YYYYMMDD
    int64_t Now;    // seconds since 1970-01-01 UTC
};

struct AccountKey {
    std::string BrokerId;
    std::string AccountId;
};

}  // namespace datafeed
