// The money of round trips, worked out for reports from the host's records: profit
// of a price move, commission of one side and of a round trip, by the instrument's
// margin mode and the run's commission settings, in the same terms as the engine.
#pragma once

#include <cstdint>
#include <vector>

#include "host/KelBaseData.h"
#include "host/SubscibeManage.h"

namespace ffrunner {

class LocalCalendar;

class TradeMoney {
public:
    // `bars` are the bars of the main data stream (for the same-day test).
    TradeMoney(const CKelBaseData& settings, const IModuleFutureTrader::ISpecDetailValue& spec,
               const std::vector<BarRecord>& bars, LocalCalendar& calendar);

    // Profit of one contract moved from `entry` to `price`.
    double ProfitLoss(bool isLong, double entry, double price) const;
    // Open profit, at `price`, of pieces whose signed lots add up to `lots` and whose
    // signed lots × entry price add up to `lotsTimesEntry` (the profit is linear in
    // those sums in every margin mode).
    double OpenProfit(double lots, double lotsTimesEntry, double price) const;
    // Commission of one side.
    double Commission(double lots, double price) const;
    // Whether the exit side of a round trip is free (opened and closed on one day).
    bool FreeExit(int32_t entryBar, int32_t exitBar) const;
    // Commission of a round trip.
    double RoundTripCommission(const tagTradeList& trade) const;

private:
    const CKelBaseData& settings_;
    const IModuleFutureTrader::ISpecDetailValue& spec_;
    const std::vector<BarRecord>& bars_;
    LocalCalendar& calendar_;
};

}  // namespace ffrunner
