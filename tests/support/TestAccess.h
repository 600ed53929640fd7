// The one route by which tests reach private members of CSystemFuncs. Each helper
// forwards to the member of the same name.
#pragma once

#include "FormulaFunction/DerivedCaches.h"
#include "FormulaFunction/FormulaFunction.h"
#include "FormulaFunction/trading/Valuation.h"

struct CSystemFuncsTestAccess {
    // Bar access.
    static double RealHigh(CSystemFuncs& f, int32_t offset) { return f.RealHigh(offset); }
    static double RealLow(CSystemFuncs& f, int32_t offset) { return f.RealLow(offset); }
    static void RealHighLow(CSystemFuncs& f, int32_t offset, double& high, double& low) {
        f.RealHighLow(offset, CSystemFuncs::Valuation(f), high, low);
    }

    // Per-bar driver.
    static void PrepareNormalBar(CSystemFuncs& f) { f.PrepareNormalBar(); }

    // Properties.
    static bool GetPropertys(CSystemFuncs& f, int32_t id, tagKelDataType& value) {
        return f.GetPropertys(id, value);
    }
    static bool CurrentSymbol(CSystemFuncs& f, tagSymbol& symbol) { return f.CurrentSymbol(symbol); }
    static int32_t MarginMode(CSystemFuncs& f) { return f.MarginMode(); }

    // Prices.
    static bool LastestBar(CSystemFuncs& f) { return f.LastestBar(); }
    static bool GetValidPrice(CSystemFuncs& f, bool up, double& price) {
        return f.GetValidPrice(up, price);
    }

    // Positions, money, entries and exits.
    static double GetProfitLoss(CSystemFuncs& f, bool isLong, double entry, double price) {
        return f.GetProfitLoss(isLong, entry, price);
    }
    static double GetRequiredMargin(CSystemFuncs& f, double lots, double price) {
        return f.GetRequiredMargin(lots, price);
    }
    // A valuation read for one call, as the per-bar driver and the stops read it.
    static double ValuedProfitLoss(CSystemFuncs& f, bool isLong, double entry, double price) {
        return CSystemFuncs::Valuation(f).ProfitLoss(isLong, entry, price);
    }
    static double ValuedMargin(CSystemFuncs& f, double lots, double price) {
        return CSystemFuncs::Valuation(f).RequiredMargin(lots, price);
    }
    static bool RememberedMoneyTerms(CSystemFuncs& f) {
        fftrading::RememberedInstrument instrument;
        f.ReadRememberedInstrument(instrument);
        return instrument.termsKnown;
    }
    static fftrading::OpenPosition ReadOpenPosition(CSystemFuncs& f) { return f.ReadOpenPosition(); }
    static double GetMarginCallPrice(CSystemFuncs& f, double amount, double entry, double lots) {
        return f.GetMarginCallPrice(amount, entry, lots);
    }
    static double GetCommission(CSystemFuncs& f, double lots, double price) {
        return f.GetCommission(lots, price);
    }
    static double GetDoubleCommission(CSystemFuncs& f, const tagTradeList& trade) {
        return f.GetDoubleCommission(trade);
    }
    static bool SingleCommission(CSystemFuncs& f) { return f.SingleCommission(); }
    static bool FreeCommission(CSystemFuncs& f, int32_t entryBar, int32_t exitBar) {
        return f.FreeCommission(entryBar, exitBar);
    }
    static double AvailableCapital(CSystemFuncs& f) { return f.AvailableCapital(); }
    static double GetMaxTradeSize(CSystemFuncs& f, double money, double price) {
        return f.GetMaxTradeSize(money, price);
    }
    static double GetTradeSize(CSystemFuncs& f, double lots, double price) {
        return f.GetTradeSize(lots, price);
    }
    static double GetDefaultTradeSize(CSystemFuncs& f, double price) {
        return f.GetDefaultTradeSize(price);
    }
    static double GetSpread(CSystemFuncs& f) { return f.GetSpread(); }
    static int32_t CalcTradeList(CSystemFuncs& f, const tagTradeList& trade) {
        return f.CalcTradeList(trade);
    }
    static int32_t CalcTradeList(CSystemFuncs& f, const tagTradeList& trade, double& net,
                                 double& commission) {
        return f.CalcTradeList(trade, net, commission);
    }
    static int32_t GetCurrentEntryPositions(CSystemFuncs& f) { return f.GetCurrentEntryPositions(); }
    static bool CombineBuy(CSystemFuncs& f, double lots, double price, bool delay) {
        return f.CombineBuy(lots, price, delay);
    }
    static void HandleDelaySignal(CSystemFuncs& f, const tagTradeSignal& signal) {
        f.HandleDelaySignal(signal);
    }
    static void ClosePosition(CSystemFuncs& f, double price) { f.ClosePosition(price); }
    static void ClosePosition(CSystemFuncs& f, const tagTradeSignal& entry, double price) {
        f.ClosePosition(entry, price);
    }
    static void CloseEntriesFifo(CSystemFuncs& f, bool isLong, double quantity, double price,
                                 double& commission, double& lotsTimesPrice) {
        f.CloseEntriesFifo(isLong, quantity, price, commission, lotsTimesPrice);
    }
    static void CalcStopMaxInfo(CSystemFuncs& f) { f.CalcStopMaxInfo(); }

    // Statistics.
    static void CalcTradePerformance(CSystemFuncs& f, bool isLong, double gross,
                                     double commission, const tagTradeList& trade) {
        f.CalcTradePerformance(isLong, gross, commission, trade);
    }
    static uint64_t TradeFigureRestarts(CSystemFuncs& f) { return f.Derived().TradeFigures.restarts; }
    static TradeListFigures TradeFigures(CSystemFuncs& f) {
        f.UpdateTradeFigures();
        return f.Derived().TradeFigures.Walked.Figures;
    }
};
