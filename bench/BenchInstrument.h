// The instrument every engine benchmark trades, put straight into a CSystemFuncs's
// property cache so that no datafeed is needed: margin mode 4 at 10%, 10 units a
// contract, a tick of 1, minute bars.
#pragma once

#include <cstdint>

#include "FormulaFunction/FormulaFunction.h"

namespace ffbench {

inline tagKelDataType Integer(int32_t v) {
    tagKelDataType t;
    t.nType = KelInteger;
    t.nValue = v;
    return t;
}

inline tagKelDataType Double(double v) {
    tagKelDataType t;
    t.nType = KelDouble;
    t.dValue = v;
    return t;
}

// The properties a round trip's money depends on.
inline void SetContractProperties(CSystemFuncs& funcs) {
    funcs.PropertyCache["Data0.MarginMode"] = Integer(4);
    funcs.PropertyCache["Data0.MinMove"] = Integer(1);
    funcs.PropertyCache["Data0.PriceScale"] = Double(1);
    funcs.PropertyCache["Data0.ContractSize"] = Double(1);
    funcs.PropertyCache["Data0.ContractUnit"] = Integer(10);
    funcs.PropertyCache["Data0.BigPointValue"] = Double(1);
}

// Those, and what placing orders and reading the bar type need besides.
inline void SetTradingProperties(CSystemFuncs& funcs) {
    SetContractProperties(funcs);
    funcs.PropertyCache["Data0.MarginRatio"] = Double(0.1);
    funcs.PropertyCache["Data0.MaxSingleTradeSize"] = Integer(0);
    funcs.PropertyCache["Data0.BarType"] = Integer(0);
    funcs.PropertyCache["Data0.BarInterval"] = Integer(1);
}

}  // namespace ffbench
