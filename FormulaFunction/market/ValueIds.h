// Ids of the values kept in PropertyCache: instrument properties, quotes and account
// values. The id selects the field a fetch fills in and the shortcut slot of
// CachedValueSlots; one id always goes with one key.
#pragma once

#include <cstdint>

namespace ffmarket {

// Ids of the instrument properties, as GetPropertys takes them; 18 names no value.
enum PropertyId : int32_t {
    kPropertyBarInterval = 1,
    kPropertyBarType = 2,
    kPropertyCanMarketOrder = 3,
    kPropertyCanShortTrade = 4,
    kPropertyCanStopOrder = 5,
    kPropertyCanTrade = 6,
    kPropertyContractSize = 7,
    kPropertyCurrencyName = 8,
    kPropertyCurrencySymbol = 9,
    kPropertyExchangeName = 10,
    kPropertyExpiredDate = 11,
    kPropertyInitialMargin = 12,
    kPropertyMaintenanceMargin = 13,
    kPropertyMaxSingleTradeSize = 14,
    kPropertyMinMove = 15,
    kPropertyPriceScale = 16,
    kPropertySpread = 17,
    kPropertyReserved = 18,
    kPropertySymbolName = 19,
    kPropertySymbolType = 20,
    kPropertyBigPointValue = 21,
    kPropertyBidAskSize = 22,
    kPropertyContractUnit = 23,
    kPropertyMarginRatio = 24,
    kPropertyMarginMode = 25,
};

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
