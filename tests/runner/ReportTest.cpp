#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "XmlCheck.h"
#include "runner/CivilTime.h"
#include "runner/LocalCalendar.h"
#include "runner/Report.h"
#include "runner/ReportWriters.h"
#include "runner/TradeMoney.h"
#include "runner/ZoneClock.h"
#include "support/RebarFeed.h"

namespace {

using ffrunner::Report;
using ffrunner::ReportInput;

int64_t Beijing(int32_t y, int32_t m, int32_t d, int32_t hour) {
    return (ffrunner::DaysFromCivil(y, m, d) * 86400 + (hour - 8) * 3600) * 1000;
}

BarRecord Bar(int64_t time, double o, double h, double l, double c) {
    return BarRecord{time, o, h, l, c, 100, 1000};
}

IModuleFutureTrader::ISpecDetailValue Rebar() { return fftest::RebarFeed::Spec(); }

tagTradeList Trade(int32_t type, int32_t entryBar, double entry, int32_t exitBar, double exit,
                   double lots) {
    tagTradeList t;
    t.nEntryType = type;
    t.nExitType = type == 1 ? 2 : 4;
    t.nEntryBar = entryBar;
    t.nExitBar = exitBar;
    t.dEntryPrice = entry;
    t.dExitPrice = exit;
    t.dLots = lots;
    return t;
}

// Six bars over three days in two months, and three round trips worked out by hand:
// long 2 from 100 to 110 (+200 − 10 commission), short 1 from 102 to 98 (+40 − 5),
// long 1 from 98 to 95 (−30 − 5).
class ReportFixture : public testing::Test {
protected:
    ReportFixture() : zone_("Asia/Shanghai") {
        bars_ = {Bar(Beijing(2024, 1, 2, 10), 100, 105, 95, 100),
                 Bar(Beijing(2024, 1, 2, 15), 100, 110, 98, 108),
                 Bar(Beijing(2024, 1, 3, 10), 108, 112, 104, 110),
                 Bar(Beijing(2024, 1, 3, 15), 110, 111, 100, 102),
                 Bar(Beijing(2024, 2, 1, 10), 102, 106, 96, 98),
                 Bar(Beijing(2024, 2, 1, 15), 98, 99, 90, 95)};
        data_.FormulaKind = 7;
        data_.InitialCapital = 100000;
        data_.CommissionType = 0;
        data_.CommissionValue = 2.5;
        data_.TradeList = {Trade(1, 0, 100, 2, 110, 2), Trade(3, 3, 102, 4, 98, 1),
                           Trade(1, 4, 98, 5, 95, 1)};
        data_.Result = &result_;
        result_.Figures.MaxContractsHeld = 2;
    }

    Report Build() {
        ReportInput input;
        input.data = &data_;
        input.bars = &bars_;
        input.spec = Rebar();
        input.strategyName = "hand";
        input.instrument = "rb2510";
        return ffrunner::BuildReport(input);
    }

    ffrunner::ScopedZone zone_;
    std::vector<BarRecord> bars_;
    CKelBaseData data_{};
    CStrategyResult result_{};
};

TEST_F(ReportFixture, AddsUpTheRoundTrips) {
    const Report r = Build();
    const ffrunner::ReportFigures& f = r.figures;
    ASSERT_EQ(r.trades.size(), 3u);
    EXPECT_EQ(r.trades[0].gross, 200);
    EXPECT_EQ(r.trades[0].commission, 10);
    EXPECT_EQ(r.trades[0].net, 190);
    EXPECT_EQ(r.trades[1].net, 35);
    EXPECT_FALSE(r.trades[1].isLong);
    EXPECT_EQ(r.trades[2].net, -35);
    EXPECT_EQ(r.trades[2].entryTime, bars_[4].time);
    EXPECT_EQ(r.trades[2].exitTime, bars_[5].time);
    EXPECT_EQ(f.trades, 3);
    EXPECT_EQ(f.winners, 2);
    EXPECT_EQ(f.losers, 1);
    EXPECT_EQ(f.evenTrades, 0);
    EXPECT_EQ(f.grossProfit, 225);
    EXPECT_EQ(f.grossLoss, -35);
    EXPECT_EQ(f.netProfit, 190);
    EXPECT_EQ(f.profitFactor, 225.0 / 35.0);
    EXPECT_EQ(f.percentProfitable, 200.0 / 3);
    EXPECT_EQ(f.averageTrade, 190.0 / 3);
    EXPECT_EQ(f.averageWin, 112.5);
    EXPECT_EQ(f.averageLoss, -35);
    EXPECT_EQ(f.largestWin, 190);
    EXPECT_EQ(f.largestLoss, -35);
    EXPECT_EQ(f.maxConsecutiveWinners, 2);
    EXPECT_EQ(f.maxConsecutiveLosers, 1);
    EXPECT_EQ(f.averageBarsWinners, 1.5);
    EXPECT_EQ(f.averageBarsLosers, 1);
    EXPECT_EQ(f.commission, 20);
    EXPECT_EQ(f.returnOnCapital, 0.19);
}

TEST_F(ReportFixture, MarksEveryBarToItsClose) {
    const Report r = Build();
    EXPECT_EQ(r.equity, (std::vector<double>{100000, 100160, 100190, 100190, 100225, 100190}));
    EXPECT_EQ(r.drawdown, (std::vector<double>{0, 0, 0, 0, 0, -35}));
    EXPECT_EQ(r.position, (std::vector<double>{2, 2, 0, -1, 1, 0}));
    const ffrunner::ReportFigures& f = r.figures;
    EXPECT_EQ(f.finalEquity, 100190);
    EXPECT_EQ(f.maxDrawdown, 35);
    EXPECT_EQ(f.maxDrawdownPercent, 35 / 100225.0 * 100);
    EXPECT_EQ(f.maxDrawdownTime, bars_[5].time);
    // Bar 0: long 2 from 100 valued at the low 95 is 100 below the starting capital.
    EXPECT_EQ(f.maxIntradayDrawdown, 100);
    EXPECT_EQ(f.barsInMarket, 4);
    EXPECT_EQ(f.largestPosition, 2);
    EXPECT_EQ(f.bars, 6);
    EXPECT_EQ(f.openPositionContracts, 0);
}

TEST_F(ReportFixture, TablesYearsAndMonthsByTheExitBar) {
    const Report r = Build();
    ASSERT_EQ(r.years.size(), 1u);
    EXPECT_EQ(r.years[0].key, "2024");
    EXPECT_EQ(r.years[0].trades, 3);
    EXPECT_EQ(r.years[0].netProfit, 190);
    EXPECT_EQ(r.years[0].startEquity, 100000);
    EXPECT_EQ(r.years[0].endEquity, 100190);
    EXPECT_EQ(r.years[0].returnPercent, 190 / 100000.0 * 100);
    ASSERT_EQ(r.months.size(), 2u);
    EXPECT_EQ(r.months[0].key, "2024-01");
    EXPECT_EQ(r.months[0].trades, 1);
    EXPECT_EQ(r.months[0].netProfit, 190);
    EXPECT_EQ(r.months[1].key, "2024-02");
    EXPECT_EQ(r.months[1].trades, 2);
    EXPECT_EQ(r.months[1].winners, 1);
    EXPECT_EQ(r.months[1].losers, 1);
    EXPECT_EQ(r.months[1].netProfit, 0);
    EXPECT_EQ(r.months[1].startEquity, 100190);
    EXPECT_EQ(r.months[1].returnPercent, 0);
}

TEST_F(ReportFixture, AnnualisesAndRatesDailyEquity) {
    const Report r = Build();
    const double days = (bars_[5].time - bars_[0].time) / 86400000.0;
    EXPECT_DOUBLE_EQ(r.figures.annualisedReturn, (std::pow(1.0019, 365.25 / days) - 1) * 100);
    // Day ends 100160, 100190, 100190 after a start of 100000.
    const double returns[] = {100160 / 100000.0 - 1, 100190 / 100160.0 - 1, 0};
    const double mean = (returns[0] + returns[1] + returns[2]) / 3;
    double squares = 0;
    for (const double x : returns) squares += (x - mean) * (x - mean);
    EXPECT_DOUBLE_EQ(r.figures.sharpeRatio, mean / std::sqrt(squares / 2) * std::sqrt(252.0));
}

TEST_F(ReportFixture, MarksEntriesStillOpenAtTheEnd) {
    data_.TradeList.resize(1);
    tagTradeSignal entry;
    entry.nType = 3;
    entry.nBar = 4;
    entry.dLots = 3;
    entry.dPrice = 100;
    data_.OpenEntries = {entry};
    const Report r = Build();
    EXPECT_EQ(r.equity[4], 100190 + 10 * (100 - 98) * 3);
    EXPECT_EQ(r.equity[5], 100190 + 10 * (100 - 95) * 3);
    EXPECT_EQ(r.position[5], -3);
    EXPECT_EQ(r.figures.openPositionContracts, -3);
    EXPECT_EQ(r.figures.largestPosition, 3);
    EXPECT_EQ(r.figures.netProfit, 190);
    EXPECT_EQ(r.figures.finalEquity, 100340);
}

TEST_F(ReportFixture, ClassifiesNearZeroNetsAsEvenAndBreaksRuns) {
    data_.CommissionValue = 0;
    data_.TradeList = {Trade(1, 0, 100, 1, 101, 1), Trade(1, 1, 100, 2, 100, 1),
                       Trade(1, 2, 100, 3, 101, 1), Trade(1, 3, 100, 4, 99, 1),
                       Trade(1, 4, 100, 5, 99, 1)};
    const Report r = Build();
    EXPECT_EQ(r.figures.winners, 2);
    EXPECT_EQ(r.figures.evenTrades, 1);
    EXPECT_EQ(r.figures.losers, 2);
    EXPECT_EQ(r.figures.maxConsecutiveWinners, 1);
    EXPECT_EQ(r.figures.maxConsecutiveLosers, 2);
    EXPECT_EQ(r.figures.percentProfitable, 40);
}

TEST_F(ReportFixture, NoLossGivesAnInfiniteProfitFactorAndNoTradesGiveZeros) {
    data_.TradeList.resize(1);
    EXPECT_TRUE(std::isinf(Build().figures.profitFactor));
    data_.TradeList.clear();
    const Report r = Build();
    EXPECT_EQ(r.figures.profitFactor, 0);
    EXPECT_EQ(r.figures.percentProfitable, 0);
    EXPECT_EQ(r.figures.averageTrade, 0);
    EXPECT_EQ(r.equity, std::vector<double>(6, 100000));
    EXPECT_EQ(r.figures.sharpeRatio, 0);
}

TEST_F(ReportFixture, MissingInputsGiveAnEmptyReport) {
    ReportInput input;
    const Report r = ffrunner::BuildReport(input);
    EXPECT_EQ(r.figures.trades, 0);
    EXPECT_TRUE(r.equity.empty());
    std::vector<BarRecord> none;
    input.data = &data_;
    input.bars = &none;
    input.spec = Rebar();
    const Report noBars = ffrunner::BuildReport(input);
    EXPECT_EQ(noBars.figures.trades, 3);
    EXPECT_TRUE(noBars.equity.empty());
    std::ostringstream html;
    ffrunner::WriteHtmlReport(noBars, html);
    EXPECT_EQ(XmlProblem(html.str()), "");
}

TEST_F(ReportFixture, ToleratesRoundTripsOutsideTheBars) {
    data_.TradeList = {Trade(1, -3, 100, 99, 110, 1)};
    const Report r = Build();
    EXPECT_EQ(r.trades[0].entryTime, 0);
    EXPECT_EQ(r.trades[0].exitTime, 0);
    EXPECT_EQ(r.equity.back(), 100000 + 100 - 5);
    std::ostringstream html;
    ffrunner::WriteHtmlReport(r, html);
    EXPECT_EQ(XmlProblem(html.str()), "");
}

TEST(TradeMoney, FollowsTheMarginModeAndCommissionSettings) {
    ffrunner::ScopedZone zone("Asia/Shanghai");
    CKelBaseData data{};
    std::vector<BarRecord> bars = {Bar(Beijing(2024, 1, 2, 10), 1, 1, 1, 1),
                                   Bar(Beijing(2024, 1, 2, 15), 1, 1, 1, 1),
                                   Bar(Beijing(2024, 1, 3, 10), 1, 1, 1, 1)};
    IModuleFutureTrader::ISpecDetailValue spec = Rebar();
    ffrunner::LocalCalendar calendar;
    const ffrunner::TradeMoney money(data, spec, bars, calendar);
    EXPECT_EQ(money.ProfitLoss(true, 100, 103), 30);
    EXPECT_EQ(money.ProfitLoss(false, 100, 103), -30);
    data.CommissionType = 1;
    data.CommissionValue = 2.9;  // two ticks
    EXPECT_EQ(money.Commission(3, 3500), 2 * 1 * 10 * 1 * 1 * 3);
    data.CommissionType = 2;
    data.CommissionValue = 1;  // one ten-thousandth of the value
    EXPECT_EQ(money.Commission(2, 3500), 10 * 1 * (1 * 0.0001) * 2 * 3500);
    data.CommissionType = 0;
    data.CommissionValue = 4;
    tagTradeList sameDay = Trade(1, 0, 100, 1, 101, 2);
    EXPECT_EQ(money.RoundTripCommission(sameDay), 16);
    data.FreeCloseToday = true;
    EXPECT_EQ(money.RoundTripCommission(sameDay), 8);
    EXPECT_EQ(money.RoundTripCommission(Trade(1, 0, 100, 2, 101, 2)), 16);
    data.SingleSideCommission = true;
    EXPECT_EQ(money.RoundTripCommission(sameDay), 0);
    EXPECT_EQ(money.RoundTripCommission(Trade(1, 0, 100, 2, 101, 2)), 8);
    EXPECT_EQ(money.RoundTripCommission(Trade(1, -1, 100, -1, 101, 2)), 0);
    EXPECT_EQ(money.RoundTripCommission(Trade(1, 0, 100, 7, 101, 2)), 8);
}

TEST(TradeMoney, ValuesOtherMarginModes) {
    CKelBaseData data{};
    std::vector<BarRecord> bars;
    IModuleFutureTrader::ISpecDetailValue spec;
    spec.ContractSize = 300;
    spec.MarginMode = 1;
    ffrunner::LocalCalendar calendar;
    const ffrunner::TradeMoney money(data, spec, bars, calendar);
    EXPECT_EQ(money.ProfitLoss(true, 3900, 3900.4f), 300 * (static_cast<double>(3900.4f) - 3900));
    EXPECT_EQ(money.OpenProfit(-2, -7800, 3890), 300 * (3890 * -2.0 + 7800));
    spec.MarginMode = 2;
    spec.ContractSize = 10;
    EXPECT_EQ(money.ProfitLoss(true, 50000, 40000), 10 * -10000.0 / 40000);
    EXPECT_EQ(money.OpenProfit(1, 50000, 40000), 10 * (1 - 50000.0 / 40000));
    spec.MarginMode = 9;
    EXPECT_EQ(money.ProfitLoss(true, 1, 2), 0);
    data.CommissionType = 1;
    data.CommissionValue = 1;
    EXPECT_EQ(money.Commission(1, 2), 0);
}

TEST(PlotLines, ReadsEachFormulaKind) {
    CKelBaseData kind4{};
    kind4.FormulaKind = 4;
    kind4.PlotNames = {"fast", "slow"};
    kind4.PlotSeries.resize(2, std::vector<PlotPoint>(3));
    kind4.PlotSeries[0][1].bNumericSet = true;
    kind4.PlotSeries[0][1].dNumeric = 5;
    kind4.PlotSeries[0][1].bColourSet = true;
    kind4.PlotSeries[0][1].nColour = 255;
    std::vector<ffrunner::PlotLine> lines = ffrunner::PlotLinesOf(kind4, 4);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].name, "fast");
    ASSERT_EQ(lines[0].values.size(), 4u);
    EXPECT_TRUE(std::isnan(lines[0].values[0]));
    EXPECT_EQ(lines[0].values[1], 5);
    EXPECT_TRUE(std::isnan(lines[0].values[3]));
    EXPECT_EQ(lines[0].colour, 255);
    EXPECT_EQ(lines[1].colour, -1);
    CKelBaseData kind5{};
    kind5.FormulaKind = 5;
    kind5.FormulaNameText = "band";
    kind5.BarPlots.resize(2);
    kind5.BarPlots[1] = BarPlotPoint{true, 7, 3, false, -1};
    lines = ffrunner::PlotLinesOf(kind5, 2);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].name, "band (1)");
    EXPECT_EQ(lines[1].values[1], 3);
    CKelBaseData kind6{};
    kind6.FormulaKind = 6;
    kind6.PlotPoints.resize(1);
    kind6.PlotPoints[0].bNumericSet = true;
    kind6.PlotPoints[0].dNumeric = 1.5;
    lines = ffrunner::PlotLinesOf(kind6, 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].name, "plot");
    EXPECT_EQ(lines[0].values[0], 1.5);
    CKelBaseData kind7{};
    kind7.FormulaKind = 7;
    EXPECT_TRUE(ffrunner::PlotLinesOf(kind7, 1).empty());
}

}  // namespace

namespace {

class WriterFixture : public ReportFixture {
protected:
    std::string Text() {
        std::ostringstream out;
        ffrunner::WriteTextReport(Build(), out);
        return out.str();
    }
    std::string Json() {
        std::ostringstream out;
        ffrunner::WriteJsonReport(Build(), out);
        return out.str();
    }
    std::string Csv() {
        std::ostringstream out;
        ffrunner::WriteTradesCsv(Build(), out);
        return out.str();
    }
    std::string Html(const Report& report) {
        std::ostringstream out;
        ffrunner::WriteHtmlReport(report, out);
        return out.str();
    }
};

// The points of the polyline with the given id.
size_t PolylinePoints(const std::string& html, const std::string& id) {
    const size_t at = html.find("<polyline id=\"" + id + "\"");
    if (at == std::string::npos) return 0;
    const size_t begin = html.find("points=\"", at) + 8;
    const size_t end = html.find('"', begin);
    size_t count = 0;
    for (size_t i = begin; i < end; ++i) count += html[i] == ',';
    return count;
}

TEST_F(WriterFixture, TextReport) {
    const std::string text = Text();
    EXPECT_NE(text.find("Net profit                  190.00\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Profit factor               6.43\n"), std::string::npos);
    EXPECT_NE(text.find("Percent profitable          66.67%\n"), std::string::npos);
    EXPECT_NE(text.find("First bar                   2024-01-02 10:00:00\n"), std::string::npos);
    EXPECT_NE(text.find("Max drawdown                35.00 (0.03%)\n"), std::string::npos);
    EXPECT_NE(text.find("2024-02               0.00       2        1      50.00%     0.00%\n"),
              std::string::npos);
}

TEST_F(WriterFixture, TradesCsv) {
    EXPECT_EQ(Csv(),
              "number,side,entry_bar,entry_time,entry_price,exit_bar,exit_time,exit_price,lots,"
              "gross,commission,net,bars_held\n"
              "1,long,0,2024-01-02 10:00:00,100,2,2024-01-03 10:00:00,110,2,200,10,190,2\n"
              "2,short,3,2024-01-03 15:00:00,102,4,2024-02-01 10:00:00,98,1,40,5,35,1\n"
              "3,long,4,2024-02-01 10:00:00,98,5,2024-02-01 15:00:00,95,1,-30,5,-35,1\n");
}

TEST_F(WriterFixture, JsonCarriesFiguresPeriodsAndRoundTrips) {
    const std::string json = Json();
    const std::string start = "{\n  \"strategy\": \"hand\",\n  \"instrument\": \"rb2510\",\n  \"figures\": {\n";
    EXPECT_EQ(json.substr(0, start.size()), start);
    EXPECT_NE(json.find("    \"netProfit\": 190,\n"), std::string::npos);
    EXPECT_NE(json.find("    \"initialCapital\": 100000,\n"), std::string::npos);
    EXPECT_NE(json.find("    \"profitFactor\": 6.428571428571429,\n"), std::string::npos);
    EXPECT_NE(json.find("    {\"period\": \"2024-02\", \"netProfit\": 0, \"grossProfit\": 35, "
                        "\"grossLoss\": -35, \"trades\": 2, \"winners\": 1, \"losers\": 1, "
                        "\"startEquity\": 100190, \"endEquity\": 100190, \"returnPercent\": 0}"),
              std::string::npos)
        << json;
    EXPECT_NE(json.find("    {\"side\": \"short\", \"entryBar\": 3, \"entryTime\": \"2024-01-03 "
                        "15:00:00\", \"entryPrice\": 102, \"exitBar\": 4, \"exitTime\": "
                        "\"2024-02-01 10:00:00\", \"exitPrice\": 98, \"lots\": 1, \"gross\": 40, "
                        "\"commission\": 5, \"net\": 35, \"barsHeld\": 1, \"entrySource\": 0, "
                        "\"exitSource\": 0}"),
              std::string::npos);
    EXPECT_EQ(json.substr(json.size() - 8), "}\n  ]\n}\n");
}

TEST_F(WriterFixture, JsonWritesAnInfiniteFactorAsNullAndEscapesText) {
    data_.TradeList.resize(1);
    ReportInput input;
    input.data = &data_;
    input.bars = &bars_;
    input.spec = Rebar();
    input.strategyName = "a \"quoted\"\\name\n";
    std::ostringstream out;
    ffrunner::WriteJsonReport(ffrunner::BuildReport(input), out);
    EXPECT_NE(out.str().find("\"profitFactor\": null,"), std::string::npos);
    EXPECT_NE(out.str().find("\"strategy\": \"a \\\"quoted\\\"\\\\name\\u000a\""), std::string::npos);
}

TEST_F(WriterFixture, HtmlIsWellFormedWithOnePointPerBar) {
    Report report = Build();
    ffrunner::PlotLine line;
    line.name = "avg <fast> & \"slow\"";
    line.values = {std::nan(""), 101, 104, std::nan(""), 100, 99};
    report.plots.push_back(line);
    const std::string html = Html(report);
    EXPECT_EQ(XmlProblem(html), "");
    EXPECT_EQ(PolylinePoints(html, "equity"), 6u);
    EXPECT_EQ(PolylinePoints(html, "drawdown"), 6u);
    EXPECT_EQ(PolylinePoints(html, "price"), 6u);
    EXPECT_NE(html.find("avg &lt;fast&gt; &amp; &quot;slow&quot;"), std::string::npos);
    EXPECT_EQ(html.find("<script"), std::string::npos);
    for (const char* fetching : {"src=", "href=", "url(", "<link", "<img", "@import"}) {
        EXPECT_EQ(html.find(fetching), std::string::npos) << fetching;
    }
    EXPECT_NE(html.find("<td style=\"background-color:rgba(20,150,60,0.90)\""), std::string::npos);
    size_t entries = 0;
    for (size_t at = html.find("class=\"entry\""); at != std::string::npos;
         at = html.find("class=\"entry\"", at + 1)) {
        ++entries;
    }
    EXPECT_EQ(entries, 3u);
}

TEST(XmlCheck, CatchesWhatIsNotWellFormed) {
    EXPECT_EQ(XmlProblem("<a><b/></a>"), "");
    EXPECT_NE(XmlProblem("<a><b></a>"), "");
    EXPECT_NE(XmlProblem("<a x=1></a>"), "");
    EXPECT_NE(XmlProblem("<a>&nbsp;</a>"), "");
    EXPECT_NE(XmlProblem("<a></a><b></b>"), "");
    EXPECT_NE(XmlProblem("<a x=\"1\" x=\"2\"></a>"), "");
    EXPECT_NE(XmlProblem("<a>"), "");
}

}  // namespace
