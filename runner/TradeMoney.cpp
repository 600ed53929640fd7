#include "runner/TradeMoney.h"

#include <cmath>

#include "runner/LocalCalendar.h"

namespace ffrunner {

TradeMoney::TradeMoney(const CKelBaseData& settings,
                       const IModuleFutureTrader::ISpecDetailValue& spec,
                       const std::vector<BarRecord>& bars, LocalCalendar& calendar)
    : settings_(settings), spec_(spec), bars_(bars), calendar_(calendar) {}

double TradeMoney::ProfitLoss(bool isLong, double entry, double price) const {
    const double d = isLong ? price - entry : entry - price;
    const double contractSize = spec_.ContractSize;
    switch (spec_.MarginMode) {
    case 1:
        return contractSize * d;
    case 2:
    case 3:
        return price == 0 ? 0 : contractSize * d / price;
    case 4:
        return spec_.ContractUnit * static_cast<double>(spec_.BigPointValue) * d;
    default:
        return 0;
    }
}

double TradeMoney::OpenProfit(double lots, double lotsTimesEntry, double price) const {
    switch (spec_.MarginMode) {
    case 1:
        return static_cast<double>(spec_.ContractSize) * (price * lots - lotsTimesEntry);
    case 2:
    case 3:
        return price == 0 ? 0
                          : static_cast<double>(spec_.ContractSize) * (lots - lotsTimesEntry / price);
    case 4:
        return spec_.ContractUnit * static_cast<double>(spec_.BigPointValue) *
               (price * lots - lotsTimesEntry);
    default:
        return 0;
    }
}

double TradeMoney::Commission(double lots, double price) const {
    const double minMove = spec_.MinMove;
    const double priceScale = spec_.PriceScale;
    const double contractSize = spec_.ContractSize;
    const double contractUnit = spec_.ContractUnit;
    const double bigPointValue = spec_.BigPointValue;
    if (settings_.CommissionType == 1) {
        const double ticks = std::trunc(settings_.CommissionValue);
        switch (spec_.MarginMode) {
        case 1:
            return ticks * minMove * priceScale * contractSize * lots * price;
        case 2:
        case 3:
            return ticks * minMove * priceScale * contractSize * lots;
        case 4:
            return ticks * minMove * contractUnit * priceScale * bigPointValue * lots;
        default:
            return 0;
        }
    }
    if (settings_.CommissionType == 2) {
        return contractUnit * bigPointValue * (settings_.CommissionValue * 0.0001) * lots * price;
    }
    return lots * settings_.CommissionValue;
}

bool TradeMoney::FreeExit(int32_t entryBar, int32_t exitBar) const {
    if (!settings_.FreeCloseToday) return false;
    if (entryBar == -1 && exitBar == -1) return true;
    const size_t count = bars_.size();
    if (static_cast<size_t>(entryBar) >= count || static_cast<size_t>(exitBar) >= count) {
        return false;
    }
    return calendar_.ToLocal(bars_[entryBar].time).day == calendar_.ToLocal(bars_[exitBar].time).day;
}

double TradeMoney::RoundTripCommission(const tagTradeList& trade) const {
    const double entrySide =
        settings_.SingleSideCommission ? 0 : Commission(trade.dLots, trade.dEntryPrice);
    if (FreeExit(trade.nEntryBar, trade.nExitBar)) return entrySide;
    return entrySide + Commission(trade.dLots, trade.dExitPrice);
}

}  // namespace ffrunner
