#include "runner/HostLoop.h"

#include <algorithm>

#include "runner/MemoryAdvice.h"

namespace ffrunner {

std::vector<BarRecord> LiveBarStates(const BarRecord& final, int32_t updates) {
    if (updates <= 0) return {final};
    const bool closesUp = final.close >= final.open;
    const double path[] = {final.open, closesUp ? final.low : final.high,
                           closesUp ? final.high : final.low, final.close};
    std::vector<BarRecord> states;
    BarRecord state = final;
    state.high = state.low = state.close = final.open;
    state.vol = 0;
    states.push_back(state);
    for (int32_t i = 1; i <= updates; ++i) {
        if (i == updates) {
            states.push_back(final);
            break;
        }
        const double price = path[std::min(i, 3)];
        state.close = price;
        state.high = std::max(state.high, price);
        state.low = std::min(state.low, price);
        state.vol = final.vol * i / updates;
        state.openInt = final.openInt;
        states.push_back(state);
    }
    return states;
}

namespace {

template <class Record>
void ReserveRecords(std::vector<Record>& series, size_t bars) {
    if (series.capacity() >= bars) return;
    series.reserve(bars);
    AdviseLargePages(series.data() + series.size(), (series.capacity() - series.size()) * sizeof(Record));
}

}  // namespace

void ReservePerBarRecords(CStrategyResult& result, size_t bars) {
    ReserveRecords(result.PositionSnapshots, bars);
    ReserveRecords(result.PositionSeries, bars);
    ReserveRecords(result.BarEquityList, bars);
    ReserveRecords(result.EquityHistory, bars);
}

void LiveBarStatistics::Save(const CStrategyResult& result) {
    performance = result.Performance;
    summary = result.Summary;
    positionSeries = result.PositionSeries.size();
    barEquityList = result.BarEquityList.size();
    lowestBarEquity = result.dLowestBarEquity;
    highestBarEquity = result.dHighestBarEquity;
    highestEquityDate = result.nHighestEquityDate;
    highestEquityTime = result.nHighestEquityTime;
    barsWithPosition = result.nBarsWithPosition;
    largestMargin = result.dLargestMargin;
    largestLongMargin = result.dLargestLongMargin;
    largestShortMargin = result.dLargestShortMargin;
    largestPosition = result.LargestPositionHeld;
    largestLong = result.LargestLongPosition;
    largestShort = result.LargestShortPosition;
}

void LiveBarStatistics::Restore(CStrategyResult& result) const {
    result.Performance = performance;
    result.Summary = summary;
    if (result.PositionSeries.size() > positionSeries) result.PositionSeries.resize(positionSeries);
    if (result.BarEquityList.size() > barEquityList) result.BarEquityList.resize(barEquityList);
    result.dLowestBarEquity = lowestBarEquity;
    result.dHighestBarEquity = highestBarEquity;
    result.nHighestEquityDate = highestEquityDate;
    result.nHighestEquityTime = highestEquityTime;
    result.nBarsWithPosition = barsWithPosition;
    result.dLargestMargin = largestMargin;
    result.dLargestLongMargin = largestLongMargin;
    result.dLargestShortMargin = largestShortMargin;
    result.LargestPositionHeld = largestPosition;
    result.LargestLongPosition = largestLong;
    result.LargestShortPosition = largestShort;
}

}  // namespace ffrunner
