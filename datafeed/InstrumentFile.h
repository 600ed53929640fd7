// The instruments and exchanges the datafeed knows, read from a JSON file whose format
// datafeed/README.md describes.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "datafeed/InstrumentKey.h"
#include "host/SubscibeManage.h"

namespace datafeed {

struct InstrumentCatalogue {
    std::vector<tagExchangeInfo> Exchanges;
    std::map<InstrumentKey, IModuleFutureTrader::ISpecDetailValue> Instruments;

    // The instrument's record, or null when it is not in the catalogue.
    const IModuleFutureTrader::ISpecDetailValue* Find(const InstrumentKey& key) const;
};

// Reads and checks the whole file; throws DatafeedError naming the file and the field
// at the first problem, so a catalogue is either complete or not loaded at all.
InstrumentCatalogue LoadInstrumentFile(const std::string& path);

// The same from text already in memory; `fileName` is used in the error messages.
InstrumentCatalogue ParseInstrumentText(const std::string& text, const std::string& fileName);

}  // namespace datafeed
