#include "examples/strategies/StrategyCatalogue.h"

namespace ffexamples {

const std::vector<CatalogueEntry>& StrategyCatalogue() {
    static const std::vector<CatalogueEntry> catalogue = {
        {"ma-crossover",
         "long when the fast average crosses above the slow one, short when below; "
         "stop loss and profit target per contract (fast=5 slow=20 stop=300 target=600 lots=0)",
         MakeMaCrossover},
        {"channel-breakout",
         "enters on a close beyond the channel of the last bars, leaves on a money trailing "
         "stop and, on intraday bars, at the close of the bar at flat-at "
         "(length=20 trail=1000 flat-at=1500 lots=0)",
         MakeChannelBreakout},
        {"mean-reversion",
         "buys (sells short) as the close falls (rises) further from its average, adding an "
         "entry every step; leaves at the average; needs --max-entries above 1 and "
         "--same-source-entries to pyramid (length=20 entry=2 step=0.5 entries=3 stop=0 lots=0)",
         MakeMeanReversion},
    };
    return catalogue;
}

std::unique_ptr<ffrunner::Strategy> MakeStrategy(const std::string& name) {
    for (const CatalogueEntry& entry : StrategyCatalogue()) {
        if (name == entry.name) return entry.make();
    }
    return nullptr;
}

}  // namespace ffexamples
