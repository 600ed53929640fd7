// Plain walks over the round trips for the figures the driver reads.
#include "FormulaFunction/FormulaFunction.h"

double CSystemFuncs::NetProfit() {
    if (!InStrategy()) return 0.0;
    double gross = 0.0, loss = 0.0;
    for (const tagTradeList& trade : m_pBaseData->TradeList) {
        double net = 0.0, commission = 0.0;
        const int32_t result = CalcTradeList(trade, net, commission);
        if (result > 0) gross += net;
        if (result < 0) loss += net;
    }
    return gross + loss;
}


int32_t CSystemFuncs::MaxConsecWinners() {
    if (!InStrategy()) return 0;
    int32_t run = 0, longest = 0;
    for (const tagTradeList& trade : m_pBaseData->TradeList) {
        run = CalcTradeList(trade) == 1 ? run + 1 : 0;
        if (run > longest) longest = run;
    }
    return longest;
}

int32_t CSystemFuncs::MaxConsecLosers() {
    if (!InStrategy()) return 0;
    int32_t run = 0, longest = 0;
    for (const tagTradeList& trade : m_pBaseData->TradeList) {
        run = CalcTradeList(trade) == -1 ? run + 1 : 0;
        if (run > longest) longest = run;
    }
    return longest;
}
