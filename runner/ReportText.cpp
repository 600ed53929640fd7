#include <cmath>
#include <cstdio>

#include "runner/LocalCalendar.h"
#include "runner/NumberText.h"
#include "runner/ReportWriters.h"

namespace ffrunner {
namespace {

std::string Money(double v) { return FixedText(v, 2); }
std::string Percent(double v) { return FixedText(v, 2) + "%"; }
std::string Count(int64_t v) { return std::to_string(v); }

std::string Ratio(double v) {
    if (std::isinf(v)) return "inf";
    return FixedText(v, 2);
}

std::string Pad(const std::string& text, size_t width, bool right) {
    if (text.size() >= width) return text;
    const std::string fill(width - text.size(), ' ');
    return right ? fill + text : text + fill;
}

void PeriodTable(const char* title, const std::vector<PeriodRow>& rows, std::ostream& out) {
    out << "\n" << title << "\n";
    out << Pad("Period", 10, false) << Pad("Net profit", 16, true) << Pad("Trades", 8, true)
        << Pad("Winners", 9, true) << Pad("Profitable", 12, true) << Pad("Return", 10, true)
        << "\n";
    for (const PeriodRow& row : rows) {
        const double profitable = row.trades > 0 ? 100.0 * row.winners / row.trades : 0;
        out << Pad(row.key, 10, false) << Pad(Money(row.netProfit), 16, true)
            << Pad(Count(row.trades), 8, true) << Pad(Count(row.winners), 9, true)
            << Pad(Percent(profitable), 12, true) << Pad(Percent(row.returnPercent), 10, true)
            << "\n";
    }
}

}  // namespace

std::vector<std::pair<std::string, std::string>> SummaryLines(const Report& report) {
    const ReportFigures& f = report.figures;
    LocalCalendar calendar;
    std::vector<std::pair<std::string, std::string>> lines;
    lines.emplace_back("Strategy", report.strategyName);
    lines.emplace_back("Instrument", report.instrument);
    if (f.bars > 0) {
        lines.emplace_back("First bar", FormatLocal(calendar.ToLocal(f.firstTime)));
        lines.emplace_back("Last bar", FormatLocal(calendar.ToLocal(f.lastTime)));
    }
    lines.emplace_back("Bars", Count(f.bars));
    lines.emplace_back("Initial capital", Money(f.initialCapital));
    lines.emplace_back("Final equity", Money(f.finalEquity));
    lines.emplace_back("Net profit", Money(f.netProfit));
    lines.emplace_back("Gross profit", Money(f.grossProfit));
    lines.emplace_back("Gross loss", Money(f.grossLoss));
    lines.emplace_back("Profit factor", Ratio(f.profitFactor));
    lines.emplace_back("Total trades", Count(f.trades));
    lines.emplace_back("Percent profitable", Percent(f.percentProfitable));
    lines.emplace_back("Winning trades", Count(f.winners));
    lines.emplace_back("Losing trades", Count(f.losers));
    lines.emplace_back("Even trades", Count(f.evenTrades));
    lines.emplace_back("Average trade", Money(f.averageTrade));
    lines.emplace_back("Average win", Money(f.averageWin));
    lines.emplace_back("Average loss", Money(f.averageLoss));
    lines.emplace_back("Largest win", Money(f.largestWin));
    lines.emplace_back("Largest loss", Money(f.largestLoss));
    lines.emplace_back("Max consecutive winners", Count(f.maxConsecutiveWinners));
    lines.emplace_back("Max consecutive losers", Count(f.maxConsecutiveLosers));
    lines.emplace_back("Average bars in winners", FixedText(f.averageBarsWinners, 1));
    lines.emplace_back("Average bars in losers", FixedText(f.averageBarsLosers, 1));
    lines.emplace_back("Max drawdown", Money(f.maxDrawdown) + " (" + Percent(f.maxDrawdownPercent) + ")");
    lines.emplace_back("Max intraday drawdown", Money(f.maxIntradayDrawdown));
    lines.emplace_back("Commission paid", Money(f.commission));
    lines.emplace_back("Return on initial capital", Percent(f.returnOnCapital));
    lines.emplace_back("Annualised return", Percent(f.annualisedReturn));
    lines.emplace_back("Sharpe ratio (daily)", FixedText(f.sharpeRatio, 2));
    lines.emplace_back("Largest position", ShortestText(f.largestPosition));
    lines.emplace_back("Bars in market", Count(f.barsInMarket));
    if (f.openPositionContracts != 0) {
        lines.emplace_back("Open position at the end", ShortestText(f.openPositionContracts));
    }
    return lines;
}

void WriteTextReport(const Report& report, std::ostream& out) {
    for (const auto& [label, value] : SummaryLines(report)) {
        out << Pad(label, 28, false) << value << "\n";
    }
    PeriodTable("Years", report.years, out);
    PeriodTable("Months", report.months, out);
}

}  // namespace ffrunner
