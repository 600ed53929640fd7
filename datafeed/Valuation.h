// The paper broker's money arithmetic: what a point is worth, what a position ties up
// as margin, which price marks a position and at which price an order fills.
#pragma once

#include "host/SubscibeManage.h"

namespace datafeed {

// Lots and prices within this distance of zero count as zero.
constexpr double kTolerance = 0.0001;

// Money per point per lot: ContractUnit x BigPointValue, as the library values a live
// position.
double PointValue(const IModuleFutureTrader::ISpecDetailValue& spec);

// Margin of `lots` at `price` under the instrument's margin mode, with its MarginRatio:
// mode 1 ContractSize x ratio x lots x price; modes 2 and 3 ContractSize x ratio x lots
// (a fixed amount per lot); mode 4 ContractUnit x ratio x BigPointValue x lots x price;
// any other mode none.
double MarginOf(const IModuleFutureTrader::ISpecDetailValue& spec, double lots, double price);

// The price that values a long position (bid) or a short one (ask), falling back to the
// last price when that side is empty; 0 when there is no usable price.
double MarkPrice(const IModuleFutureTrader::ITickEx* quote, bool longSide);

// Whether an order at `limit` is marketable against the quote, and its fill price. A buy
// fills at the ask when the limit is at or above it; a sell at the bid when the limit is
// at or below it. When that side of the quote is empty, the last price stands in.
bool FillPrice(const IModuleFutureTrader::ITickEx* quote, bool buy, double limit,
               double& fillPrice);

}  // namespace datafeed
