// Running sums of the summary that statistics mode 1 rebuilds on every bar. The
// summary is defined as a walk over all round trips; these sums hold that walk over
// the prefix of TradeList already seen, so a bar only adds the round trips closed
// since. They are added in list order, exactly as the walk adds them, so the
// figures carry the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/KelTypes.h"

struct RunningSummary {
    struct CommissionSettings {
        int32_t type = 0;
        double value = 0;
        bool singleSide = false, freeToday = false;
    };
    CommissionSettings settings;  // the settings the sums were taken with
    size_t walked = 0;        // round trips of TradeList folded in
    tagTradeList lastWalked;  // copy of the last of them, to see the list replaced
    double grossProfit = 0, grossLoss = 0, largestWinner = 0, largestLoser = 0;
    double sumOfSquares = 0;
    int32_t winners = 0, evenTrades = 0, losers = 0;
    int32_t barsWinners = 0, barsEven = 0, barsLosers = 0;

    void Reset() { *this = RunningSummary(); }
};
