// Ids of the quote and account values in PropertyCache. The id selects the field a
// fetch fills in and the shortcut slot of CachedValueSlots; one id always goes with
// one key. The instrument properties use their own property ids, 1 to 25.
#pragma once

#include <cstdint>

namespace ffmarket {

enum QuoteValueId : int32_t {
    kQuoteAskPrice = 32,
    kQuoteAskVol,
    kQuoteBidPrice,
    kQuoteBidVol,
    kQuoteClose,
    kQuoteHigh,
    kQuoteLastDate,
    kQuoteLastTime,
    kQuoteLastVol,
    kQuoteLow,
    kQuoteOpen,
    kQuoteOpenInt,
    kQuoteOscillation,
    kQuotePriceChg,
    kQuotePriceChgRatio,
    kQuoteTickChg,
    kQuoteTotalVol,
    kQuotePreSettlePrice,
    kQuotePreOpenInt,
    kQuoteAvgPrice,
    kQuoteTurnOver,
    kQuoteHisHigh,
    kQuoteHisLow,
    kQuoteUpperLimit,
    kQuoteLowerLimit,
    kQuoteInsideVol,
    kQuoteOutsideVol,
    kQuoteTodayEntryVol,
    kQuoteTodayExitVol,
    kQuoteLast,
    kQuoteLastFlag,
    kQuoteBidPriceFlag,
    kQuoteAskPriceFlag,
    kQuoteOpenIntFlag,
};

enum AccountValueId : int32_t {
    kAccountPreviousEquity = 72,
    kAccountProfitLoss,
    kAccountCurrentEquity,
    kAccountFreeMargin,
    kAccountBuyFreeze,
    kAccountBuyMargin,
    kAccountSellFreeze,
    kAccountSellMargin,
    kAccountTodayDeposit,
    kAccountTodayDrawing,

    kPositionBuyPosition = 88,
    kPositionBuyAvgPrice,
    kPositionBuyProfitLoss,
    kPositionTodayBuyPosition,
    kPositionSellPosition,
    kPositionSellAvgPrice,
    kPositionSellProfitLoss,
    kPositionTodaySellPosition,
    kPositionTotalPosition,
    kPositionTotalAvgPrice,
    kPositionProfitLoss,

    kOrderCount = 104,
    kOpenOrderCount,
};

}  // namespace ffmarket
