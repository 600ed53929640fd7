#include "datafeed/Valuation.h"

namespace datafeed {

double PointValue(const IModuleFutureTrader::ISpecDetailValue& spec) {
    return static_cast<double>(spec.ContractUnit) * static_cast<double>(spec.BigPointValue);
}

double MarginOf(const IModuleFutureTrader::ISpecDetailValue& spec, double lots, double price) {
    const double ratio = spec.MarginRatio;
    switch (spec.MarginMode) {
        case 1:
            return static_cast<double>(spec.ContractSize) * ratio * lots * price;
        case 2:
        case 3:
            return static_cast<double>(spec.ContractSize) * ratio * lots;
        case 4:
            return static_cast<double>(spec.ContractUnit) * ratio *
                   static_cast<double>(spec.BigPointValue) * lots * price;
        default:
            return 0.0;
    }
}

double MarkPrice(const IModuleFutureTrader::ITickEx* quote, bool longSide) {
    if (quote == nullptr) return 0.0;
    const double side = longSide ? quote->BidPrice : quote->AskPrice;
    if (side > kTolerance) return side;
    return quote->Last > kTolerance ? quote->Last : 0.0;
}

bool FillPrice(const IModuleFutureTrader::ITickEx* quote, bool buy, double limit,
               double& fillPrice) {
    if (quote == nullptr) return false;
    double reference = buy ? quote->AskPrice : quote->BidPrice;
    if (!(reference > kTolerance)) reference = quote->Last;
    if (!(reference > kTolerance)) return false;
    if (buy ? limit < reference : limit > reference) return false;
    fillPrice = reference;
    return true;
}

}  // namespace datafeed
