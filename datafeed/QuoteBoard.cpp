#include "datafeed/QuoteBoard.h"

namespace datafeed {

void QuoteBoard::Set(const InstrumentKey& key, const IModuleFutureTrader::ITickEx& tick) {
    quotes_[key] = tick;
}

const IModuleFutureTrader::ITickEx* QuoteBoard::Find(const InstrumentKey& key) const {
    const auto it = quotes_.find(key);
    return it == quotes_.end() ? nullptr : &it->second;
}

IModuleFutureTrader::ITickEx QuoteFromBar(const BarRecord& bar) {
    IModuleFutureTrader::ITickEx tick;
    tick.Time = bar.time;
    tick.Open = bar.open;
    tick.High = bar.high;
    tick.Low = bar.low;
    tick.Last = bar.close;
    tick.Close = bar.close;
    tick.BidPrice = bar.close;
    tick.AskPrice = bar.close;
    tick.TotalVol = bar.vol;
    tick.OpenInt = bar.openInt;
    return tick;
}

}  // namespace datafeed
