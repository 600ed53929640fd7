// The HTML report is one self-contained page that parses as XML: every element is
// closed, every attribute quoted, every text escaped. Charts are inline SVG with
// one polyline point per bar; trades carry their details in SVG titles, which a
// browser shows on hover without any script.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "runner/LocalCalendar.h"
#include "runner/NumberText.h"
#include "runner/ReportWriters.h"

namespace ffrunner {
namespace {

constexpr double kWidth = 1000;
constexpr double kLeft = 80;   // room for the value labels
constexpr double kRight = 10;
constexpr const char* kPalette[] = {"#1f77b4", "#ff7f0e", "#9467bd", "#8c564b", "#e377c2",
                                    "#17becf", "#bcbd22"};
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::string Escape(const std::string& s) {
    std::string out;
    out.reserve(s.size());
    for (const char c : s) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string Coordinate(double v) { return FixedText(v, 1); }

// 0x00BBGGRR as #RRGGBB.
std::string Colour(int32_t bgr, size_t fallback) {
    if (bgr < 0) return kPalette[fallback % (sizeof kPalette / sizeof kPalette[0])];
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", bgr & 0xFF, (bgr >> 8) & 0xFF,
                  (bgr >> 16) & 0xFF);
    return text;
}

// Maps bar indexes and values into one chart's box.
struct Frame {
    double top = 0, height = 0;
    double low = 0, high = 1;
    size_t bars = 1;

    double X(size_t bar) const {
        const double span = kWidth - kLeft - kRight;
        return bars <= 1 ? kLeft + span / 2 : kLeft + span * static_cast<double>(bar) / (bars - 1);
    }
    double Y(double v) const { return top + height - (v - low) / (high - low) * height; }

    void Fit(double lo, double hi) {
        if (!(hi > lo)) {
            lo -= 1;
            hi += 1;
        }
        const double pad = (hi - lo) * 0.05;
        low = lo - pad;
        high = hi + pad;
    }
};

void OpenSvg(std::ostream& out, const char* id, const char* label, double height) {
    out << "<svg id=\"" << id << "\" xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 "
        << kWidth << " " << height << "\" role=\"img\" aria-label=\"" << label << "\">\n";
}

void Axes(std::ostream& out, const Frame& frame, const std::string& first,
          const std::string& last, int decimals) {
    out << "<rect class=\"box\" x=\"" << kLeft << "\" y=\"" << Coordinate(frame.top)
        << "\" width=\"" << kWidth - kLeft - kRight << "\" height=\""
        << Coordinate(frame.height) << "\"/>\n";
    for (int i = 0; i <= 4; ++i) {
        const double v = frame.low + (frame.high - frame.low) * i / 4;
        const double y = frame.Y(v);
        out << "<line class=\"grid\" x1=\"" << kLeft << "\" x2=\"" << kWidth - kRight
            << "\" y1=\"" << Coordinate(y) << "\" y2=\"" << Coordinate(y) << "\"/>"
            << "<text class=\"label\" x=\"" << kLeft - 4 << "\" y=\"" << Coordinate(y + 4)
            << "\" text-anchor=\"end\">" << FixedText(v, decimals) << "</text>\n";
    }
    const double below = frame.top + frame.height + 14;
    out << "<text class=\"label\" x=\"" << kLeft << "\" y=\"" << Coordinate(below) << "\">"
        << Escape(first) << "</text><text class=\"label\" x=\"" << kWidth - kRight << "\" y=\""
        << Coordinate(below) << "\" text-anchor=\"end\">" << Escape(last) << "</text>\n";
}

// One point per bar; NaN values split the line into several polylines.
void Polyline(std::ostream& out, const Frame& frame, const std::vector<double>& values,
              const char* cssClass, const std::string& colour, const std::string& id) {
    bool open = false;
    for (size_t t = 0; t < values.size(); ++t) {
        if (std::isnan(values[t])) {
            if (open) out << "\"/>\n";
            open = false;
            continue;
        }
        if (!open) {
            out << "<polyline";
            if (!id.empty()) out << " id=\"" << id << "\"";
            out << " class=\"" << cssClass << "\"";
            if (!colour.empty()) out << " stroke=\"" << colour << "\"";
            out << " points=\"";
            open = true;
        } else {
            out << ' ';
        }
        out << Coordinate(frame.X(t)) << ',' << Coordinate(frame.Y(values[t]));
    }
    if (open) out << "\"/>\n";
}

void EquityCharts(const Report& report, const std::string& first, const std::string& last,
                  std::ostream& out) {
    const size_t n = report.equity.size();
    Frame equity;
    equity.top = 10;
    equity.height = 240;
    equity.bars = n;
    const auto [lo, hi] = std::minmax_element(report.equity.begin(), report.equity.end());
    equity.Fit(std::min(*lo, report.figures.initialCapital), std::max(*hi, report.figures.initialCapital));
    out << "<h2>Equity</h2>\n";
    OpenSvg(out, "equity-chart", "equity curve", 275);
    Axes(out, equity, first, last, 0);
    out << "<line class=\"base\" x1=\"" << kLeft << "\" x2=\"" << kWidth - kRight << "\" y1=\""
        << Coordinate(equity.Y(report.figures.initialCapital)) << "\" y2=\""
        << Coordinate(equity.Y(report.figures.initialCapital)) << "\"/>\n";
    Polyline(out, equity, report.equity, "equity", "", "equity");
    out << "</svg>\n<h2>Drawdown</h2>\n";
    Frame drawdown;
    drawdown.top = 10;
    drawdown.height = 110;
    drawdown.bars = n;
    const double deepest = *std::min_element(report.drawdown.begin(), report.drawdown.end());
    drawdown.low = deepest < 0 ? deepest * 1.05 : -1;
    drawdown.high = 0;
    OpenSvg(out, "drawdown-chart", "drawdown", 145);
    Axes(out, drawdown, first, last, 0);
    Polyline(out, drawdown, report.drawdown, "drawdown", "", "drawdown");
    out << "</svg>\n";
}

void PriceChart(const Report& report, const std::string& first, const std::string& last,
                LocalCalendar& calendar, std::ostream& out) {
    const std::vector<BarRecord>& bars = report.bars;
    std::vector<double> closes(bars.size());
    double lo = bars.front().low, hi = bars.front().high;
    for (size_t t = 0; t < bars.size(); ++t) {
        closes[t] = bars[t].close;
        lo = std::min(lo, bars[t].low);
        hi = std::max(hi, bars[t].high);
    }
    for (const PlotLine& line : report.plots) {
        for (const double v : line.values) {
            if (std::isfinite(v)) {
                lo = std::min(lo, v);
                hi = std::max(hi, v);
            }
        }
    }
    Frame frame;
    frame.top = 10;
    frame.height = 320;
    frame.bars = bars.size();
    frame.Fit(lo, hi);
    out << "<h2>Price, trades and indicators</h2>\n";
    OpenSvg(out, "price-chart", "price with entries and exits", 355);
    Axes(out, frame, first, last, 2);
    Polyline(out, frame, closes, "price", "", "price");
    for (size_t i = 0; i < report.plots.size(); ++i) {
        const PlotLine& line = report.plots[i];
        std::vector<double> values = line.values;
        values.resize(bars.size(), std::nan(""));
        Polyline(out, frame, values, "plot", Colour(line.colour, i), "");
    }
    for (const TradeRow& r : report.trades) {
        const size_t entry = static_cast<size_t>(std::max(0, r.trade.nEntryBar));
        const size_t exit = static_cast<size_t>(std::max(0, r.trade.nExitBar));
        if (entry >= bars.size() || exit >= bars.size()) continue;
        const double ex = frame.X(entry), ey = frame.Y(r.trade.dEntryPrice);
        const double dir = r.isLong ? 1 : -1;
        out << "<g class=\"trade " << (r.isLong ? "long" : "short") << "\"><title>"
            << (r.isLong ? "Long " : "Short ") << ShortestText(r.trade.dLots) << " at "
            << ShortestText(r.trade.dEntryPrice) << " ("
            << Escape(FormatLocal(calendar.ToLocal(r.entryTime))) << "), out at "
            << ShortestText(r.trade.dExitPrice) << " ("
            << Escape(FormatLocal(calendar.ToLocal(r.exitTime))) << "), net "
            << FixedText(r.net, 2) << "</title>"
            << "<polygon class=\"entry\" points=\"" << Coordinate(ex) << ','
            << Coordinate(ey + 2 * dir) << ' ' << Coordinate(ex - 5) << ','
            << Coordinate(ey + 10 * dir) << ' ' << Coordinate(ex + 5) << ','
            << Coordinate(ey + 10 * dir) << "\"/>"
            << "<line class=\"hold\" x1=\"" << Coordinate(ex) << "\" y1=\"" << Coordinate(ey)
            << "\" x2=\"" << Coordinate(frame.X(exit)) << "\" y2=\""
            << Coordinate(frame.Y(r.trade.dExitPrice)) << "\"/>"
            << "<circle class=\"exit\" cx=\"" << Coordinate(frame.X(exit)) << "\" cy=\""
            << Coordinate(frame.Y(r.trade.dExitPrice)) << "\" r=\"3.5\"/></g>\n";
    }
    out << "</svg>\n";
    if (!report.plots.empty()) {
        out << "<p class=\"legend\">";
        for (size_t i = 0; i < report.plots.size(); ++i) {
            out << "<span style=\"color:" << Colour(report.plots[i].colour, i) << "\">&#9632; "
                << Escape(report.plots[i].name) << "</span> ";
        }
        out << "</p>\n";
    }
}

// Monthly returns as a table of years by months, each cell tinted by its return.
void HeatMap(const Report& report, std::ostream& out) {
    double largest = 0;
    for (const PeriodRow& m : report.months) largest = std::max(largest, std::fabs(m.returnPercent));
    out << "<h2>Monthly returns (%)</h2>\n<table class=\"heat\"><thead><tr><th>Year</th>";
    for (const char* month : kMonths) out << "<th>" << month << "</th>";
    out << "<th>Year</th></tr></thead><tbody>\n";
    for (const PeriodRow& year : report.years) {
        out << "<tr><th>" << year.year << "</th>";
        for (int32_t month = 1; month <= 12; ++month) {
            const auto found = std::find_if(report.months.begin(), report.months.end(),
                                            [&](const PeriodRow& m) {
                                                return m.year == year.year && m.month == month;
                                            });
            if (found == report.months.end()) {
                out << "<td class=\"none\"></td>";
                continue;
            }
            const double r = found->returnPercent;
            const double alpha = largest > 0 ? 0.1 + 0.8 * std::fabs(r) / largest : 0.1;
            out << "<td style=\"background-color:rgba(" << (r < 0 ? "200,30,30," : "20,150,60,")
                << FixedText(alpha, 2) << ")\" title=\"" << found->key << ": net "
                << FixedText(found->netProfit, 2) << ", " << found->trades << " trades\">"
                << FixedText(r, 1) << "</td>";
        }
        out << "<td class=\"total\">" << FixedText(year.returnPercent, 1) << "</td></tr>\n";
    }
    out << "</tbody></table>\n";
}

void TradeTable(const Report& report, LocalCalendar& calendar, std::ostream& out) {
    out << "<h2>Trades</h2>\n<table class=\"trades\"><thead><tr><th>#</th><th>Side</th>"
           "<th>Entry</th><th>Entry price</th><th>Exit</th><th>Exit price</th><th>Lots</th>"
           "<th>Net</th><th>Commission</th><th>Bars</th></tr></thead><tbody>\n";
    int32_t number = 0;
    for (const TradeRow& r : report.trades) {
        out << "<tr class=\"" << (r.net < 0 ? "loss" : "win") << "\"><td>" << ++number
            << "</td><td>" << (r.isLong ? "long" : "short") << "</td><td>"
            << (r.entryTime != 0 ? FormatLocal(calendar.ToLocal(r.entryTime)) : "") << "</td><td>"
            << ShortestText(r.trade.dEntryPrice) << "</td><td>"
            << (r.exitTime != 0 ? FormatLocal(calendar.ToLocal(r.exitTime)) : "") << "</td><td>"
            << ShortestText(r.trade.dExitPrice) << "</td><td>" << ShortestText(r.trade.dLots)
            << "</td><td>" << FixedText(r.net, 2) << "</td><td>" << FixedText(r.commission, 2)
            << "</td><td>" << r.barsHeld << "</td></tr>\n";
    }
    out << "</tbody></table>\n";
}

const char* kStyle =
    "body{font-family:system-ui,-apple-system,'Segoe UI',sans-serif;margin:24px;color:#222;"
    "max-width:1100px}\n"
    "h1{font-size:1.5em}h2{font-size:1.15em;margin-top:1.6em}\n"
    "svg{width:100%;height:auto;display:block}\n"
    ".box{fill:#fafafa;stroke:#ccc}.grid{stroke:#e4e4e4}.base{stroke:#999;stroke-dasharray:4 3}\n"
    ".label{font-size:11px;fill:#555}\n"
    "polyline{fill:none;stroke-width:1.2;stroke-linejoin:round}\n"
    ".equity{stroke:#1a7f37}.drawdown{stroke:#c62828}.price{stroke:#444;stroke-width:1}\n"
    ".plot{stroke-width:1.1}\n"
    ".long .entry{fill:#1a7f37}.short .entry{fill:#c62828}\n"
    ".exit{fill:#fff;stroke:#333}.hold{stroke:#888;stroke-dasharray:2 2}\n"
    "table{border-collapse:collapse;font-size:13px}\n"
    "td,th{padding:3px 8px;border:1px solid #ddd;text-align:right}\n"
    ".summary td:first-child{text-align:left}.heat td{min-width:42px}\n"
    ".heat .none{background:#f4f4f4}.heat .total{font-weight:bold}\n"
    ".trades tr.loss td:nth-child(8){color:#c62828}\n"
    ".legend span{margin-right:1em}\n";

}  // namespace

void WriteHtmlReport(const Report& report, std::ostream& out) {
    LocalCalendar calendar;
    const std::string title = report.strategyName + " on " + report.instrument;
    out << "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n"
        << "<head>\n<meta charset=\"utf-8\"/>\n<title>" << Escape(title) << "</title>\n<style>\n"
        << kStyle << "</style>\n</head>\n<body>\n<h1>" << Escape(title) << "</h1>\n";
    out << "<table class=\"summary\"><tbody>\n";
    for (const auto& [label, value] : SummaryLines(report)) {
        out << "<tr><td>" << Escape(label) << "</td><td>" << Escape(value) << "</td></tr>\n";
    }
    out << "</tbody></table>\n";
    if (!report.bars.empty() && report.equity.size() == report.bars.size()) {
        const std::string first = FormatLocalDate(calendar.ToLocal(report.bars.front().time));
        const std::string last = FormatLocalDate(calendar.ToLocal(report.bars.back().time));
        EquityCharts(report, first, last, out);
        PriceChart(report, first, last, calendar, out);
        HeatMap(report, out);
    }
    TradeTable(report, calendar, out);
    out << "</body>\n</html>\n";
}

}  // namespace ffrunner
