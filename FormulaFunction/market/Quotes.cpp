// The live quote of the current data source's instrument. Quotes belong to the
// present: most values are answered only on the newest bar, and the five values that
// stay fixed for a trading day (open, previous settlement and open interest, the
// limits) also on the earlier bars of the last bar's day. A value is fetched once per
// data index and then served from PropertyCache for the life of the object, so a
// later change of the live quote is not seen; a failed fetch caches nothing.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/market/CachedResults.h"
#include "FormulaFunction/market/ValueIds.h"
#include "FormulaFunction/platform/Platform.h"

using namespace ffmarket;

namespace {

constexpr double kPriceTolerance = 0.0001;

// The price the change functions measure from: the previous settlement, or when
// that is missing the second reference price; false when both are missing.
bool ReferencePrice(const IModuleFutureTrader::ITickEx& tick, double& reference) {
    if (tick.PreSettlePrice > kPriceTolerance) {
        reference = tick.PreSettlePrice;
        return true;
    }
    if (tick.PreClosePrice > kPriceTolerance) {
        reference = tick.PreClosePrice;
        return true;
    }
    return false;
}

// The direction coded in the two flag bits at `shift`: 1 rose, 2 fell, 0 and 3 mean
// unchanged.
int32_t Direction(uint8_t flags, int shift) {
    switch ((flags >> shift) & 0x3) {
        case 1: return 1;
        case 2: return -1;
        default: return 0;
    }
}

// The quote's time stamp in local calendar time, by whole seconds.
bool QuoteLocalTime(const IModuleFutureTrader::ITickEx& tick, ffplatform::LocalTime& local) {
    return ffplatform::ToLocalTime(tick.Time / 1000, local);
}

void SetDouble(tagKelDataType& v, double d) {
    v.nType = KelDouble;
    v.dValue = d;
}

void SetLong(tagKelDataType& v, int32_t n) {
    v.nType = KelInteger;
    v.nValue = n;
}

}  // namespace

// True when the current bar falls on the local date of the current data source's
// last bar (the bar at BarCount - 1, the main chart's count).
bool CSystemFuncs::OnLastTradingDay() {
    if (m_pBaseData == nullptr) return false;
    const BarRecord* last = StreamBar(static_cast<uint32_t>(BarCount()) - 1u);
    if (last == nullptr) return false;
    ffplatform::LocalTime local;
    if (!Derived().LocalDays.ToLocal(last->time / 1000, local)) return false;
    return MakeDate(local.year, local.month, local.day) == Date();
}

// A quote value that is answered on the newest bar only.
const tagKelDataType* CSystemFuncs::LatestQuote(const char* keyFormat, int32_t valueId) {
    if (!LastestBar()) return nullptr;
    if (static_cast<uint32_t>(m_pBaseData->DataIndex) >= m_pBaseData->DataStreams.size())
        return nullptr;
    return CachedValue(keyFormat, valueId, &CSystemFuncs::GetQuoteValue);
}

// A quote value that stays the same all day, answered on every bar of the last
// bar's day.
const tagKelDataType* CSystemFuncs::SameDayQuote(const char* keyFormat, int32_t valueId) {
    if (!OnLastTradingDay()) return nullptr;
    return CachedValue(keyFormat, valueId, &CSystemFuncs::GetQuoteValue);
}

// Fills `value` with quote value `valueId` from a fresh quote of the current
// instrument. False when there is no quote, or its time stamp has no local time.
bool CSystemFuncs::GetQuoteValue(int32_t valueId, tagKelDataType& value) {
    tagSymbol symbol;
    if (!CurrentSymbol(symbol) || g_pSubscribeManage == nullptr) return false;
    IModuleFutureTrader::ITickEx tick;
    if (g_pSubscribeManage->GetMarketQuote(symbol, tick) == 0) return false;

    double reference = 0;
    const bool referenced = ReferencePrice(tick, reference);
    ffplatform::LocalTime local;
    switch (valueId) {
        case kQuoteAskPrice: SetDouble(value, tick.AskPrice); break;
        case kQuoteAskVol: SetDouble(value, tick.AskVol); break;
        case kQuoteBidPrice: SetDouble(value, tick.BidPrice); break;
        case kQuoteBidVol: SetDouble(value, tick.BidVol); break;
        case kQuoteClose: SetDouble(value, tick.Close); break;
        case kQuoteHigh: SetDouble(value, tick.High); break;
        case kQuoteLastDate:
            if (!QuoteLocalTime(tick, local)) return false;
            SetLong(value, MakeDate(local.year, local.month, local.day));
            break;
        case kQuoteLastTime:
            if (!QuoteLocalTime(tick, local)) return false;
            SetDouble(value, MakeTime(local.hour, local.minute, local.second));
            break;
        case kQuoteLastVol: SetDouble(value, tick.LastVol); break;
        case kQuoteLow: SetDouble(value, tick.Low); break;
        case kQuoteOpen: SetDouble(value, tick.Open); break;
        case kQuoteOpenInt: SetDouble(value, tick.OpenInt); break;
        case kQuoteOscillation:
            SetDouble(value, referenced ? (tick.High - tick.Low) / reference : 0.0);
            break;
        case kQuotePriceChg: SetDouble(value, referenced ? tick.Last - reference : 0.0); break;
        case kQuotePriceChgRatio:
            SetDouble(value, referenced ? (tick.Last - reference) / reference : 0.0);
            break;
        case kQuoteTickChg: SetDouble(value, tick.TickChg); break;
        case kQuoteTotalVol: SetDouble(value, tick.TotalVol); break;
        case kQuotePreSettlePrice: SetDouble(value, tick.PreSettlePrice); break;
        case kQuotePreOpenInt: SetDouble(value, tick.PreOpenInt); break;
        case kQuoteAvgPrice: SetDouble(value, tick.AvgPrice); break;
        case kQuoteTurnOver: SetDouble(value, tick.TurnOver); break;
        case kQuoteHisHigh: SetDouble(value, tick.HisHigh); break;
        case kQuoteHisLow: SetDouble(value, tick.HisLow); break;
        case kQuoteUpperLimit: SetDouble(value, tick.UpperLimit); break;
        case kQuoteLowerLimit: SetDouble(value, tick.LowerLimit); break;
        case kQuoteInsideVol: SetDouble(value, tick.InsideVol); break;
        case kQuoteOutsideVol: SetDouble(value, tick.OutsideVol); break;
        case kQuoteTodayEntryVol: SetDouble(value, tick.TodayEntryVol); break;
        case kQuoteTodayExitVol: SetDouble(value, tick.TodayExitVol); break;
        case kQuoteLast: SetDouble(value, tick.Last); break;
        case kQuoteLastFlag: SetLong(value, Direction(tick.Flags, 0)); break;
        case kQuoteBidPriceFlag: SetLong(value, Direction(tick.Flags, 2)); break;
        case kQuoteAskPriceFlag: SetLong(value, Direction(tick.Flags, 4)); break;
        case kQuoteOpenIntFlag: SetLong(value, Direction(tick.Flags, 6)); break;
        default: return false;
    }
    return true;
}

// Asks for a quote every time; nothing is cached.
bool CSystemFuncs::QuoteDataExist() {
    if (!LastestBar()) return false;
    tagSymbol symbol;
    if (!CurrentSymbol(symbol) || g_pSubscribeManage == nullptr) return false;
    IModuleFutureTrader::ITickEx tick;
    return g_pSubscribeManage->GetMarketQuote(symbol, tick) != 0;
}

// The depth argument is accepted and ignored: every depth answers the best level,
// and all depths share one cache entry.
double CSystemFuncs::Q_AskPrice(int32_t) {
    return DoubleOf(LatestQuote("Data%d.Q_AskPrice", kQuoteAskPrice));
}

double CSystemFuncs::Q_AskVol(int32_t) {
    return DoubleOf(LatestQuote("Data%d.Q_AskVol", kQuoteAskVol));
}

double CSystemFuncs::Q_BidPrice(int32_t) {
    return DoubleOf(LatestQuote("Data%d.Q_BidPrice", kQuoteBidPrice));
}

double CSystemFuncs::Q_BidVol(int32_t) {
    return DoubleOf(LatestQuote("Data%d.Q_BidVol", kQuoteBidVol));
}

double CSystemFuncs::Q_Close() {
    return DoubleOf(LatestQuote("Data%d.Q_Close", kQuoteClose));
}

double CSystemFuncs::Q_High() {
    return DoubleOf(LatestQuote("Data%d.Q_High", kQuoteHigh));
}

int32_t CSystemFuncs::Q_LastDate() {
    return LongOf(LatestQuote("Data%d.Q_LastDate", kQuoteLastDate));
}

double CSystemFuncs::Q_LastTime() {
    return DoubleOf(LatestQuote("Data%d.Q_LastTime", kQuoteLastTime));
}

double CSystemFuncs::Q_LastVol() {
    return DoubleOf(LatestQuote("Data%d.Q_LastVol", kQuoteLastVol));
}

double CSystemFuncs::Q_Low() {
    return DoubleOf(LatestQuote("Data%d.Q_Low", kQuoteLow));
}

double CSystemFuncs::Q_OpenInt() {
    return DoubleOf(LatestQuote("Data%d.Q_OpenInt", kQuoteOpenInt));
}

double CSystemFuncs::Q_Oscillation() {
    return DoubleOf(LatestQuote("Data%d.Q_Oscillation", kQuoteOscillation));
}

double CSystemFuncs::Q_PriceChg() {
    return DoubleOf(LatestQuote("Data%d.Q_PriceChg", kQuotePriceChg));
}

double CSystemFuncs::Q_PriceChgRatio() {
    return DoubleOf(LatestQuote("Data%d.Q_PriceChgRatio", kQuotePriceChgRatio));
}

double CSystemFuncs::Q_TickChg() {
    return DoubleOf(LatestQuote("Data%d.Q_TickChg", kQuoteTickChg));
}

double CSystemFuncs::Q_TotalVol() {
    return DoubleOf(LatestQuote("Data%d.Q_TotalVol", kQuoteTotalVol));
}

double CSystemFuncs::Q_AvgPrice() {
    return DoubleOf(LatestQuote("Data%d.Q_AvgPrice", kQuoteAvgPrice));
}

double CSystemFuncs::Q_TurnOver() {
    return DoubleOf(LatestQuote("Data%d.Q_TurnOver", kQuoteTurnOver));
}

double CSystemFuncs::Q_HisHigh() {
    return DoubleOf(LatestQuote("Data%d.Q_HisHigh", kQuoteHisHigh));
}

double CSystemFuncs::Q_HisLow() {
    return DoubleOf(LatestQuote("Data%d.Q_HisLow", kQuoteHisLow));
}

double CSystemFuncs::Q_InsideVol() {
    return DoubleOf(LatestQuote("Data%d.Q_InsideVol", kQuoteInsideVol));
}

double CSystemFuncs::Q_OutsideVol() {
    return DoubleOf(LatestQuote("Data%d.Q_OutsideVol", kQuoteOutsideVol));
}

double CSystemFuncs::Q_TodayEntryVol() {
    return DoubleOf(LatestQuote("Data%d.Q_TodayEntryVol", kQuoteTodayEntryVol));
}

double CSystemFuncs::Q_TodayExitVol() {
    return DoubleOf(LatestQuote("Data%d.Q_TodayExitVol", kQuoteTodayExitVol));
}

double CSystemFuncs::Q_Last() {
    return DoubleOf(LatestQuote("Data%d.Q_Last", kQuoteLast));
}

int32_t CSystemFuncs::Q_LastFlag() {
    return LongOf(LatestQuote("Data%d.Q_LastFlag", kQuoteLastFlag));
}

int32_t CSystemFuncs::Q_BidPriceFlag() {
    return LongOf(LatestQuote("Data%d.Q_BidPriceFlag", kQuoteBidPriceFlag));
}

int32_t CSystemFuncs::Q_AskPriceFlag() {
    return LongOf(LatestQuote("Data%d.Q_AskPriceFlag", kQuoteAskPriceFlag));
}

int32_t CSystemFuncs::Q_OpenIntFlag() {
    return LongOf(LatestQuote("Data%d.Q_OpenIntFlag", kQuoteOpenIntFlag));
}

double CSystemFuncs::Q_Open() {
    return DoubleOf(SameDayQuote("Data%d.Q_Open", kQuoteOpen));
}

double CSystemFuncs::Q_PreSettlePrice() {
    return DoubleOf(SameDayQuote("Data%d.Q_PreSettlePrice", kQuotePreSettlePrice));
}

double CSystemFuncs::Q_PreOpenInt() {
    return DoubleOf(SameDayQuote("Data%d.Q_PreOpenInt", kQuotePreOpenInt));
}

double CSystemFuncs::Q_UpperLimit() {
    return DoubleOf(SameDayQuote("Data%d.Q_UpperLimit", kQuoteUpperLimit));
}

double CSystemFuncs::Q_LowerLimit() {
    return DoubleOf(SameDayQuote("Data%d.Q_LowerLimit", kQuoteLowerLimit));
}
