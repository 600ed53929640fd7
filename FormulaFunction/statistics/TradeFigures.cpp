// The statistics functions over the finished round trips. Each is defined as a walk
// from the first round trip of TradeList to the last, valuing every round trip with
// the properties of the series it was entered on. The walk is kept as running
// figures (RunningTradeFigures.h states when they are kept), so a call costs the
// same however many round trips there are, and gives the very bits a walk gives.
#include "FormulaFunction/FormulaFunction.h"

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/market/RememberedProperties.h"
#include "FormulaFunction/trading/TradingRules.h"

using namespace fftrading;

namespace {

size_t MainBarCount(const CKelBaseData& data) {
    return data.DataStreams.empty() ? 0 : data.DataStreams[0].Bars.size();
}

// How a record of valuation inputs compares with the remembered PropertyCache
// entries of its data index: the same, changed, or unknown because one of the six
// is not remembered (and reading it would fetch it).
enum class RememberedInputs { kSame, kChanged, kUnknown };

RememberedInputs CompareRemembered(const CachedValueSlots::Row* row, const ValuationInputs& inputs) {
    if (row == nullptr) return RememberedInputs::kUnknown;
    const CachedValueSlots::Row& entries = *row;
    const tagKelDataType* mode = entries[ffmarket::kPropertyMarginMode];
    const tagKelDataType* minMove = entries[ffmarket::kPropertyMinMove];
    const tagKelDataType* unit = entries[ffmarket::kPropertyContractUnit];
    const tagKelDataType* size = entries[ffmarket::kPropertyContractSize];
    const tagKelDataType* point = entries[ffmarket::kPropertyBigPointValue];
    const tagKelDataType* scale = entries[ffmarket::kPropertyPriceScale];
    if (!mode || !minMove || !unit || !size || !point || !scale) return RememberedInputs::kUnknown;
    const bool same = mode->nValue == inputs.nMarginMode && minMove->nValue == inputs.nMinMove &&
                      unit->nValue == inputs.nContractUnit &&
                      SameBits(size->dValue, inputs.dContractSize) &&
                      SameBits(point->dValue, inputs.dBigPointValue) &&
                      SameBits(scale->dValue, inputs.dPriceScale);
    return same ? RememberedInputs::kSame : RememberedInputs::kChanged;
}

// Whole-number average that truncates toward zero; 0 for no trades.
int32_t AverageBars(int32_t bars, int32_t trades) { return trades == 0 ? 0 : bars / trades; }

}  // namespace

// Appends to the running figures the instrument properties that value a round trip
// entered on `dataIndex`, read exactly as the valuation reads them: through the
// value cache, with DataIndex naming that series.
void CSystemFuncs::AppendValuationInputs(int32_t dataIndex) {
    ValuationInputs inputs;
    inputs.nDataIndex = dataIndex;
    const int32_t savedIndex = m_pBaseData->DataIndex;
    m_pBaseData->DataIndex = dataIndex;
    const ffmarket::RememberedProperties p(*this, Derived().Values, dataIndex);
    inputs.nMarginMode = p.Long(ffmarket::kPropertyMarginMode, [this] { return MarginMode(); });
    inputs.nMinMove = p.MinMove();
    inputs.nContractUnit = p.ContractUnit();
    inputs.dContractSize = p.ContractSize();
    inputs.dBigPointValue = p.BigPointValue();
    inputs.dPriceScale = p.PriceScale();
    m_pBaseData->DataIndex = savedIndex;
    Derived().TradeFigures.instruments.push_back(inputs);
}

// Rules 2 to 4 of RunningTradeFigures.h: whether everything the walked round trips
// were valued with is as it was. Rule 1, the round trips themselves, is the
// caller's.
bool CSystemFuncs::TradeFiguresHold() {
    const CKelBaseData& data = *m_pBaseData;
    RunningTradeFigures& running = Derived().TradeFigures;
    if (!running.SameSettings(data.CommissionType, data.CommissionValue,
                              data.SingleSideCommission, data.FreeCloseToday))
        return false;

    // Each recorded data index is read again: from the remembered entries when they
    // all are, or else into a record at the end of the list that is compared and
    // dropped; the list keeps its capacity, so nothing is allocated.
    CachedValueSlots& slots = Derived().Values;
    const size_t recorded = running.instruments.size();
    for (size_t i = 0; i < recorded; ++i) {
        const ValuationInputs& inputs = running.instruments[i];
        const RememberedInputs remembered =
            CompareRemembered(slots.Entries(PropertyCache, inputs.nDataIndex), inputs);
        if (remembered == RememberedInputs::kChanged) return false;
        if (remembered == RememberedInputs::kSame) continue;
        AppendValuationInputs(running.instruments[i].nDataIndex);
        const bool same = running.instruments[i].SameAs(running.instruments.back());
        running.instruments.pop_back();
        if (!same) return false;
    }

    if (running.freeCloseToday) {
        if (!running.SameBarsExist(MainBarCount(data))) return false;
        if (running.newestExistingBar >= 0) {
            int32_t date = 0;
            double time = 0.0;
            if (!BarDateTime(static_cast<int32_t>(running.newestExistingBar), date, time)) date = 0;
            if (date != running.newestBarDate) return false;
        }
    }
    return true;
}

// Brings the running figures up to the end of TradeList: from everything walked
// when that still holds, from the start of the round trips closed on the last exit
// bar when only those changed (the live bar was restored), and from the first
// round trip otherwise. False outside a trading strategy, where the statistics
// functions answer 0.
bool CSystemFuncs::UpdateTradeFigures() {
    if (!InStrategy()) return false;
    const CKelBaseData& data = *m_pBaseData;
    const std::vector<tagTradeList>& trips = data.TradeList;
    RunningTradeFigures& running = Derived().TradeFigures;
    if (!TradeFiguresHold()) {
        running.Restart(data.CommissionType, data.CommissionValue, data.SingleSideCommission,
                        data.FreeCloseToday);
    } else if (!running.Walked.Unchanged(trips)) {
        if (running.BeforeLastExitBar.Unchanged(trips))
            running.Walked = running.BeforeLastExitBar;
        else
            running.Restart(data.CommissionType, data.CommissionValue,
                            data.SingleSideCommission, data.FreeCloseToday);
    }

    WalkedPrefix& walked = running.Walked;
    if (walked.length == trips.size()) return true;
    WalkedPrefix& beforeLastBar = running.BeforeLastExitBar;
    bool newLastBar = false;
    const size_t barCount = MainBarCount(data);
    for (size_t i = walked.length; i < trips.size(); ++i) {
        const tagTradeList& trip = trips[i];
        if (i == 0 || trip.nExitBar != trips[i - 1].nExitBar) {
            beforeLastBar.length = i;
            beforeLastBar.Figures = walked.Figures;
            newLastBar = true;
        }
        if (running.FindInstrument(trip.nEntryDataIndex) == nullptr)
            AppendValuationInputs(trip.nEntryDataIndex);
        running.NoteBars(trip, barCount);
        double net = 0.0, commission = 0.0;
        const int32_t valued = CalcTradeList(trip, net, commission);
        const int32_t counting = CalcTradeList(trip);
        walked.Figures.Add(counting, valued, net, WrappingSub(trip.nExitBar, trip.nEntryBar));
    }
    walked.length = trips.size();
    walked.CopyEnds(trips, walked.length);
    if (newLastBar) beforeLastBar.CopyEnds(trips, beforeLastBar.length);
    if (running.freeCloseToday && running.newestExistingBar >= 0) {
        int32_t date = 0;
        double time = 0.0;
        if (!BarDateTime(static_cast<int32_t>(running.newestExistingBar), date, time)) date = 0;
        running.newestBarDate = date;
    }
    return true;
}

int32_t CSystemFuncs::TotalTrades() {
    if (!InStrategy()) return 0;
    return static_cast<int32_t>(m_pBaseData->TradeList.size());
}

int32_t CSystemFuncs::NumWinTrades() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nWinners : 0;
}

int32_t CSystemFuncs::NumLosTrades() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nLosers : 0;
}

int32_t CSystemFuncs::NumEvenTrades() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nEven : 0;
}

// Winners over trades in whole numbers, so only a run where every trade won gives
// anything but 0: 1.0.
double CSystemFuncs::PercentProfit() {
    const int32_t trades = TotalTrades();
    if (trades == 0) return 0.0;
    return static_cast<double>(NumWinTrades() / trades);
}

int32_t CSystemFuncs::TotalBarsWinTrades() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nBarsWinners : 0;
}

int32_t CSystemFuncs::TotalBarsLosTrades() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nBarsLosers : 0;
}

int32_t CSystemFuncs::TotalBarsEvenTrades() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nBarsEven : 0;
}

int32_t CSystemFuncs::AvgBarsWinTrade() {
    if (!UpdateTradeFigures()) return 0;
    const TradeListFigures& figures = Derived().TradeFigures.Walked.Figures;
    return AverageBars(figures.nBarsWinners, figures.nWinners);
}

int32_t CSystemFuncs::AvgBarsLosTrade() {
    if (!UpdateTradeFigures()) return 0;
    const TradeListFigures& figures = Derived().TradeFigures.Walked.Figures;
    return AverageBars(figures.nBarsLosers, figures.nLosers);
}

int32_t CSystemFuncs::AvgBarsEvenTrade() {
    if (!UpdateTradeFigures()) return 0;
    const TradeListFigures& figures = Derived().TradeFigures.Walked.Figures;
    return AverageBars(figures.nBarsEven, figures.nEven);
}

double CSystemFuncs::LargestWinTrade() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.dLargestWin : 0.0;
}

double CSystemFuncs::LargestLosTrade() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.dLargestLoss : 0.0;
}

double CSystemFuncs::GrossProfit() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.dGrossProfit : 0.0;
}

double CSystemFuncs::GrossLoss() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.dGrossLoss : 0.0;
}

// Even trades are left out: only the valued winners and losers count.
double CSystemFuncs::NetProfit() {
    if (!UpdateTradeFigures()) return 0.0;
    const TradeListFigures& figures = Derived().TradeFigures.Walked.Figures;
    return figures.dGrossProfit + figures.dGrossLoss;
}

int32_t CSystemFuncs::MaxConsecWinners() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nLongestWinRun : 0;
}

int32_t CSystemFuncs::MaxConsecLosers() {
    return UpdateTradeFigures() ? Derived().TradeFigures.Walked.Figures.nLongestLossRun : 0;
}
