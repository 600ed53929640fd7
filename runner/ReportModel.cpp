#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>

#include "runner/LocalCalendar.h"
#include "runner/Report.h"
#include "runner/TradeMoney.h"

namespace ffrunner {
namespace {

constexpr double kEven = 0.0001;  // a net within ±kEven is an even trade

size_t ClampBar(int32_t bar, size_t count) {
    if (bar < 0) return 0;
    return std::min(static_cast<size_t>(bar), count - 1);
}

// Adds up the round trips (valued as the engine values them: a net within ±0.0001
// is even) and fills the trade list.
void AddTrades(const CKelBaseData& data, const std::vector<BarRecord>& bars,
               const TradeMoney& money, Report& report) {
    ReportFigures& f = report.figures;
    int32_t winRun = 0, lossRun = 0;
    int64_t barsWinners = 0, barsLosers = 0;
    for (const tagTradeList& trade : data.TradeList) {
        TradeRow row;
        row.trade = trade;
        row.isLong = trade.nEntryType != 3;
        if (trade.nEntryType == 1 || trade.nEntryType == 3) {
            row.gross = money.ProfitLoss(row.isLong, trade.dEntryPrice, trade.dExitPrice) *
                        trade.dLots;
        }
        row.commission = money.RoundTripCommission(trade);
        row.net = row.gross - row.commission;
        row.barsHeld = trade.nExitBar - trade.nEntryBar;
        if (static_cast<size_t>(trade.nEntryBar) < bars.size()) {
            row.entryTime = bars[trade.nEntryBar].time;
        }
        if (static_cast<size_t>(trade.nExitBar) < bars.size()) {
            row.exitTime = bars[trade.nExitBar].time;
        }
        ++f.trades;
        f.commission += row.commission;
        if (row.net > kEven) {
            ++f.winners;
            f.grossProfit += row.net;
            f.largestWin = std::max(f.largestWin, row.net);
            barsWinners += row.barsHeld;
            lossRun = 0;
            f.maxConsecutiveWinners = std::max(f.maxConsecutiveWinners, ++winRun);
        } else if (row.net < -kEven) {
            ++f.losers;
            f.grossLoss += row.net;
            f.largestLoss = std::min(f.largestLoss, row.net);
            barsLosers += row.barsHeld;
            winRun = 0;
            f.maxConsecutiveLosers = std::max(f.maxConsecutiveLosers, ++lossRun);
        } else {
            ++f.evenTrades;
            winRun = lossRun = 0;
        }
        report.trades.push_back(row);
    }
    f.netProfit = f.grossProfit + f.grossLoss;
    if (f.grossLoss < 0) {
        f.profitFactor = f.grossProfit / -f.grossLoss;
    } else if (f.grossProfit > 0) {
        f.profitFactor = std::numeric_limits<double>::infinity();
    }
    if (f.trades > 0) {
        f.percentProfitable = 100.0 * f.winners / f.trades;
        f.averageTrade = f.netProfit / f.trades;
    }
    if (f.winners > 0) {
        f.averageWin = f.grossProfit / f.winners;
        f.averageBarsWinners = static_cast<double>(barsWinners) / f.winners;
    }
    if (f.losers > 0) {
        f.averageLoss = f.grossLoss / f.losers;
        f.averageBarsLosers = static_cast<double>(barsLosers) / f.losers;
    }
}

// Marks every bar to its close: closed trades count from their exit bar, open
// pieces (round trips between their entry and exit bars, and the entries still open
// at the end) at the bar's close. The running sums of signed lots and of signed
// lots × entry price change only where a piece starts or ends, so the walk is
// linear in bars plus trades.
void MarkEquity(const CKelBaseData& data, const std::vector<BarRecord>& bars,
                const TradeMoney& money, Report& report) {
    const size_t n = bars.size();
    std::vector<double> realisedAt(n, 0), lotsDelta(n + 1, 0), valueDelta(n + 1, 0);
    std::vector<int32_t> piecesDelta(n + 1, 0);
    auto open = [&](size_t from, size_t to, bool isLong, double lots, double entry) {
        if (from >= to) return;
        const double signedLots = isLong ? lots : -lots;
        lotsDelta[from] += signedLots;
        lotsDelta[to] -= signedLots;
        valueDelta[from] += signedLots * entry;
        valueDelta[to] -= signedLots * entry;
        ++piecesDelta[from];
        --piecesDelta[to];
    };
    for (const TradeRow& row : report.trades) {
        const size_t exitBar = ClampBar(row.trade.nExitBar, n);
        realisedAt[exitBar] += row.net;
        if (row.trade.nEntryType == 1 || row.trade.nEntryType == 3) {
            open(ClampBar(row.trade.nEntryBar, n), exitBar, row.isLong, row.trade.dLots,
                 row.trade.dEntryPrice);
        }
    }
    for (const tagTradeSignal& entry : data.OpenEntries) {
        if (entry.nType == 1 || entry.nType == 3) {
            open(ClampBar(entry.nBar, n), n, entry.nType == 1, entry.dLots, entry.dPrice);
            report.figures.openPositionContracts += entry.nType == 1 ? entry.dLots : -entry.dLots;
        }
    }
    ReportFigures& f = report.figures;
    report.equity.resize(n);
    report.drawdown.resize(n);
    report.position.resize(n);
    double realised = 0, lots = 0, value = 0;
    int32_t pieces = 0;
    double peak = f.initialCapital;
    for (size_t t = 0; t < n; ++t) {
        realised += realisedAt[t];
        lots += lotsDelta[t];
        value += valueDelta[t];
        pieces += piecesDelta[t];
        const BarRecord& bar = bars[t];
        double equity = f.initialCapital + realised;
        double worst = equity;
        if (pieces > 0) {
            equity += money.OpenProfit(lots, value, bar.close);
            worst += money.OpenProfit(lots, value, lots > 0 ? bar.low : bar.high);
            ++f.barsInMarket;
            report.position[t] = lots;
            f.largestPosition = std::max(f.largestPosition, std::fabs(lots));
        }
        f.maxIntradayDrawdown = std::max(f.maxIntradayDrawdown, peak - worst);
        peak = std::max(peak, equity);
        report.equity[t] = equity;
        report.drawdown[t] = equity - peak;
        if (peak - equity > f.maxDrawdown) {
            f.maxDrawdown = peak - equity;
            f.maxDrawdownPercent = peak > 0 ? f.maxDrawdown / peak * 100 : 0;
            f.maxDrawdownTime = bar.time;
        }
    }
}

// Yearly and monthly rows, and the Sharpe ratio of the equity at each day's last bar.
void AddPeriods(const std::vector<BarRecord>& bars, LocalCalendar& calendar, Report& report) {
    ReportFigures& f = report.figures;
    std::map<int32_t, size_t> yearIndex, monthIndex;
    std::vector<double> dayEnds;
    int64_t currentDay = INT64_MIN;
    double before = f.initialCapital;
    for (size_t t = 0; t < bars.size(); ++t) {
        const LocalFields local = calendar.ToLocal(bars[t].time);
        const int32_t year = local.Year(), month = local.Month();
        if (local.day != currentDay) {
            currentDay = local.day;
            dayEnds.push_back(report.equity[t]);
        } else {
            dayEnds.back() = report.equity[t];
        }
        for (int pass = 0; pass < 2; ++pass) {
            std::vector<PeriodRow>& rows = pass == 0 ? report.years : report.months;
            std::map<int32_t, size_t>& index = pass == 0 ? yearIndex : monthIndex;
            const int32_t key = pass == 0 ? year : year * 100 + month;
            auto found = index.find(key);
            if (found == index.end()) {
                PeriodRow row;
                row.year = year;
                row.month = pass == 0 ? 0 : month;
                char text[16];
                std::snprintf(text, sizeof text, pass == 0 ? "%04d" : "%04d-%02d", year, month);
                row.key = text;
                row.startEquity = before;
                found = index.emplace(key, rows.size()).first;
                rows.push_back(row);
            }
            rows[found->second].endEquity = report.equity[t];
        }
        before = report.equity[t];
    }
    for (const TradeRow& row : report.trades) {
        const LocalFields local = calendar.ToLocal(bars[ClampBar(row.trade.nExitBar, bars.size())].time);
        for (int pass = 0; pass < 2; ++pass) {
            std::vector<PeriodRow>& rows = pass == 0 ? report.years : report.months;
            const auto& index = pass == 0 ? yearIndex : monthIndex;
            const int32_t key = pass == 0 ? local.Year() : local.Year() * 100 + local.Month();
            PeriodRow& period = rows[index.at(key)];
            ++period.trades;
            if (row.net > kEven) {
                ++period.winners;
                period.grossProfit += row.net;
            } else if (row.net < -kEven) {
                ++period.losers;
                period.grossLoss += row.net;
            }
            period.netProfit = period.grossProfit + period.grossLoss;
        }
    }
    for (std::vector<PeriodRow>* rows : {&report.years, &report.months}) {
        for (PeriodRow& row : *rows) {
            if (row.startEquity > 0) {
                row.returnPercent = (row.endEquity - row.startEquity) / row.startEquity * 100;
            }
        }
    }
    std::vector<double> returns;
    double previous = f.initialCapital;
    for (const double end : dayEnds) {
        if (previous <= 0) break;
        returns.push_back(end / previous - 1);
        previous = end;
    }
    if (returns.size() >= 2) {
        double mean = 0;
        for (const double r : returns) mean += r;
        mean /= static_cast<double>(returns.size());
        double squares = 0;
        for (const double r : returns) squares += (r - mean) * (r - mean);
        const double deviation = std::sqrt(squares / static_cast<double>(returns.size() - 1));
        if (deviation > 0) f.sharpeRatio = mean / deviation * std::sqrt(252.0);
    }
}

}  // namespace

Report BuildReport(const ReportInput& input) {
    Report report;
    report.strategyName = input.strategyName;
    report.instrument = input.instrument;
    report.plots = input.plots;
    if (input.data == nullptr || input.bars == nullptr) return report;
    const CKelBaseData& data = *input.data;
    const std::vector<BarRecord>& bars = *input.bars;
    ReportFigures& f = report.figures;
    f.initialCapital = data.InitialCapital;
    f.finalEquity = data.InitialCapital;
    LocalCalendar calendar;
    const TradeMoney money(data, input.spec, bars, calendar);
    AddTrades(data, bars, money, report);
    if (bars.empty()) return report;
    report.bars = bars;
    f.bars = static_cast<int32_t>(bars.size());
    f.firstTime = bars.front().time;
    f.lastTime = bars.back().time;
    MarkEquity(data, bars, money, report);
    f.finalEquity = report.equity.back();
    if (data.Result != nullptr) {
        f.largestPosition = std::max({f.largestPosition, std::fabs(data.Result->Figures.MaxContractsHeld),
                                      std::fabs(data.Result->LargestPositionHeld)});
    }
    if (f.initialCapital > 0) {
        f.returnOnCapital = f.netProfit / f.initialCapital * 100;
        const double days = static_cast<double>(f.lastTime - f.firstTime) / 86400000.0;
        if (days >= 1 && f.finalEquity > 0) {
            f.annualisedReturn =
                (std::pow(f.finalEquity / f.initialCapital, 365.25 / days) - 1) * 100;
        }
    }
    AddPeriods(bars, calendar, report);
    return report;
}

std::vector<PlotLine> PlotLinesOf(const CKelBaseData& formula, size_t barCount) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    std::vector<PlotLine> lines;
    auto fromPoints = [&](const std::string& name, const std::vector<PlotPoint>& points) {
        PlotLine line;
        line.name = name;
        line.values.assign(barCount, none);
        for (size_t t = 0; t < barCount && t < points.size(); ++t) {
            if (points[t].bNumericSet) line.values[t] = points[t].dNumeric;
            if (points[t].bColourSet && line.colour == -1) line.colour = points[t].nColour;
        }
        lines.push_back(std::move(line));
    };
    const std::string name = formula.FormulaNameText.empty() ? "plot" : formula.FormulaNameText;
    if (formula.FormulaKind == 4) {
        for (size_t i = 0; i < formula.PlotNames.size() && i < formula.PlotSeries.size(); ++i) {
            fromPoints(formula.PlotNames[i], formula.PlotSeries[i]);
        }
    } else if (formula.FormulaKind == 6) {
        fromPoints(name, formula.PlotPoints);
    } else if (formula.FormulaKind == 5) {
        for (int which = 1; which <= 2; ++which) {
            PlotLine line;
            line.name = name + (which == 1 ? " (1)" : " (2)");
            line.values.assign(barCount, none);
            for (size_t t = 0; t < barCount && t < formula.BarPlots.size(); ++t) {
                const BarPlotPoint& p = formula.BarPlots[t];
                if (p.bSet) line.values[t] = which == 1 ? p.dValue1 : p.dValue2;
                if (p.bColourSet && line.colour == -1) line.colour = p.nColour;
            }
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

}  // namespace ffrunner
