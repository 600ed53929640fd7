#include <cmath>
#include <cstdio>

#include "runner/LocalCalendar.h"
#include "runner/NumberText.h"
#include "runner/ReportWriters.h"

namespace ffrunner {
namespace {

std::string Number(double v) { return std::isfinite(v) ? ShortestText(v) : "null"; }

std::string Text(const std::string& s) {
    std::string out = "\"";
    for (const char c : s) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (u < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", u);
            out += escape;
        } else {
            out += c;
        }
    }
    return out + "\"";
}

// Writes `"name": value` members, one per line after `indent`, or all on one line
// when the indent is empty.
class Members {
public:
    Members(std::ostream& out, const char* indent) : out_(out), indent_(indent) {}
    void Add(const char* name, const std::string& value) {
        if (!first_) out_ << (*indent_ != 0 ? ",\n" : ", ");
        out_ << indent_ << "\"" << name << "\": " << value;
        first_ = false;
    }

private:
    std::ostream& out_;
    const char* indent_;
    bool first_ = true;
};

void Periods(const std::vector<PeriodRow>& rows, std::ostream& out) {
    out << "[";
    for (size_t i = 0; i < rows.size(); ++i) {
        const PeriodRow& r = rows[i];
        out << (i == 0 ? "\n" : ",\n") << "    {";
        Members m(out, "");
        m.Add("period", Text(r.key));
        m.Add("netProfit", Number(r.netProfit));
        m.Add("grossProfit", Number(r.grossProfit));
        m.Add("grossLoss", Number(r.grossLoss));
        m.Add("trades", std::to_string(r.trades));
        m.Add("winners", std::to_string(r.winners));
        m.Add("losers", std::to_string(r.losers));
        m.Add("startEquity", Number(r.startEquity));
        m.Add("endEquity", Number(r.endEquity));
        m.Add("returnPercent", Number(r.returnPercent));
        out << "}";
    }
    out << (rows.empty() ? "]" : "\n  ]");
}

}  // namespace

void WriteJsonReport(const Report& report, std::ostream& out) {
    const ReportFigures& f = report.figures;
    LocalCalendar calendar;
    auto time = [&](int64_t ms) { return Text(FormatLocal(calendar.ToLocal(ms))); };
    out << "{\n";
    Members top(out, "  ");
    top.Add("strategy", Text(report.strategyName));
    top.Add("instrument", Text(report.instrument));
    out << ",\n  \"figures\": {\n";
    Members m(out, "    ");
    m.Add("bars", std::to_string(f.bars));
    m.Add("firstBar", f.bars > 0 ? time(f.firstTime) : "null");
    m.Add("lastBar", f.bars > 0 ? time(f.lastTime) : "null");
    m.Add("initialCapital", Number(f.initialCapital));
    m.Add("finalEquity", Number(f.finalEquity));
    m.Add("netProfit", Number(f.netProfit));
    m.Add("grossProfit", Number(f.grossProfit));
    m.Add("grossLoss", Number(f.grossLoss));
    m.Add("profitFactor", Number(f.profitFactor));
    m.Add("trades", std::to_string(f.trades));
    m.Add("percentProfitable", Number(f.percentProfitable));
    m.Add("winners", std::to_string(f.winners));
    m.Add("losers", std::to_string(f.losers));
    m.Add("evenTrades", std::to_string(f.evenTrades));
    m.Add("averageTrade", Number(f.averageTrade));
    m.Add("averageWin", Number(f.averageWin));
    m.Add("averageLoss", Number(f.averageLoss));
    m.Add("largestWin", Number(f.largestWin));
    m.Add("largestLoss", Number(f.largestLoss));
    m.Add("maxConsecutiveWinners", std::to_string(f.maxConsecutiveWinners));
    m.Add("maxConsecutiveLosers", std::to_string(f.maxConsecutiveLosers));
    m.Add("averageBarsWinners", Number(f.averageBarsWinners));
    m.Add("averageBarsLosers", Number(f.averageBarsLosers));
    m.Add("maxDrawdown", Number(f.maxDrawdown));
    m.Add("maxDrawdownPercent", Number(f.maxDrawdownPercent));
    m.Add("maxIntradayDrawdown", Number(f.maxIntradayDrawdown));
    m.Add("commission", Number(f.commission));
    m.Add("returnOnCapitalPercent", Number(f.returnOnCapital));
    m.Add("annualisedReturnPercent", Number(f.annualisedReturn));
    m.Add("sharpeRatio", Number(f.sharpeRatio));
    m.Add("largestPosition", Number(f.largestPosition));
    m.Add("barsInMarket", std::to_string(f.barsInMarket));
    m.Add("openPositionContracts", Number(f.openPositionContracts));
    out << "\n  },\n  \"years\": ";
    Periods(report.years, out);
    out << ",\n  \"months\": ";
    Periods(report.months, out);
    out << ",\n  \"trades\": [";
    for (size_t i = 0; i < report.trades.size(); ++i) {
        const TradeRow& r = report.trades[i];
        out << (i == 0 ? "\n" : ",\n") << "    {";
        Members t(out, "");
        t.Add("side", r.isLong ? "\"long\"" : "\"short\"");
        t.Add("entryBar", std::to_string(r.trade.nEntryBar));
        t.Add("entryTime", r.entryTime != 0 ? time(r.entryTime) : "null");
        t.Add("entryPrice", Number(r.trade.dEntryPrice));
        t.Add("exitBar", std::to_string(r.trade.nExitBar));
        t.Add("exitTime", r.exitTime != 0 ? time(r.exitTime) : "null");
        t.Add("exitPrice", Number(r.trade.dExitPrice));
        t.Add("lots", Number(r.trade.dLots));
        t.Add("gross", Number(r.gross));
        t.Add("commission", Number(r.commission));
        t.Add("net", Number(r.net));
        t.Add("barsHeld", std::to_string(r.barsHeld));
        t.Add("entrySource", std::to_string(r.trade.nEntrySource));
        t.Add("exitSource", std::to_string(r.trade.nExitSource));
        out << "}";
    }
    out << (report.trades.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

void WriteTradesCsv(const Report& report, std::ostream& out) {
    LocalCalendar calendar;
    out << "number,side,entry_bar,entry_time,entry_price,exit_bar,exit_time,exit_price,lots,"
           "gross,commission,net,bars_held\n";
    int32_t number = 0;
    for (const TradeRow& r : report.trades) {
        out << ++number << ',' << (r.isLong ? "long" : "short") << ',' << r.trade.nEntryBar << ','
            << (r.entryTime != 0 ? FormatLocal(calendar.ToLocal(r.entryTime)) : "") << ','
            << ShortestText(r.trade.dEntryPrice) << ',' << r.trade.nExitBar << ','
            << (r.exitTime != 0 ? FormatLocal(calendar.ToLocal(r.exitTime)) : "") << ','
            << ShortestText(r.trade.dExitPrice) << ',' << ShortestText(r.trade.dLots) << ','
            << ShortestText(r.gross) << ',' << ShortestText(r.commission) << ','
            << ShortestText(r.net) << ',' << r.barsHeld << '\n';
    }
}

}  // namespace ffrunner
