// The current quote of each instrument, as the host last set it, and the ways a host
// makes quotes: from its newest bar or from a JSON quote file.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "datafeed/InstrumentKey.h"
#include "host/KelTypes.h"
#include "host/SubscibeManage.h"

namespace datafeed {

class QuoteBoard {
public:
    void Set(const InstrumentKey& key, const IModuleFutureTrader::ITickEx& tick);
    // The quote of the instrument, or null when none was set.
    const IModuleFutureTrader::ITickEx* Find(const InstrumentKey& key) const;

private:
    std::map<InstrumentKey, IModuleFutureTrader::ITickEx> quotes_;
};

// A quote that stands for the newest bar: its time, its open, high and low as the
// day's, its close as the last, close, bid and ask price, its volume as the total
// volume and its open interest. Everything else is zero.
IModuleFutureTrader::ITickEx QuoteFromBar(const BarRecord& bar);

struct QuoteEntry {
    InstrumentKey Key;
    IModuleFutureTrader::ITickEx Tick;
};

// Reads and checks a whole quote file (format in datafeed/README.md); throws
// DatafeedError naming the file and the field at the first problem.
std::vector<QuoteEntry> LoadQuoteFile(const std::string& path);
std::vector<QuoteEntry> ParseQuoteText(const std::string& text, const std::string& fileName);

}  // namespace datafeed
