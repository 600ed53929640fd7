#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "runner/BacktestOptions.h"

namespace {

using ffrunner::BacktestOptions;
using ffrunner::ParseBacktestArgs;

std::vector<std::string> Base() {
    return {"--bars", "b.csv", "--instrument", "inst.json:rb2510", "--strategy", "ma_cross"};
}

std::vector<std::string> With(std::vector<std::string> extra) {
    std::vector<std::string> args = Base();
    args.insert(args.end(), extra.begin(), extra.end());
    return args;
}

std::string ErrorOf(const std::vector<std::string>& args) {
    try {
        ParseBacktestArgs(args);
    } catch (const ffrunner::UsageError& e) {
        return e.what();
    }
    return "no error";
}

std::string WriteConfig(const std::string& text) {
    const std::string path = testing::TempDir() + "runner_backtest_config.json";
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

TEST(BacktestOptions, DefaultsAndTheRequiredOptions) {
    const BacktestOptions o = ParseBacktestArgs(Base());
    EXPECT_EQ(o.barsPath, "b.csv");
    EXPECT_EQ(o.instrumentsPath, "inst.json");
    EXPECT_EQ(o.instrumentCode, "rb2510");
    EXPECT_EQ(o.strategy, "ma_cross");
    EXPECT_EQ(o.settings.capital, 1000000);
    EXPECT_EQ(o.settings.statsMode, 2);
    EXPECT_EQ(o.settings.maxEntries, 1);
    EXPECT_FALSE(o.help);
    EXPECT_EQ(ErrorOf({"--bars", "b.csv", "--strategy", "x"}), "missing --instrument");
    EXPECT_EQ(ErrorOf({"--instrument", "i:c", "--strategy", "x"}), "missing --bars");
    EXPECT_EQ(ErrorOf({"--bars", "b", "--instrument", "i:c"}), "missing --strategy");
}

TEST(BacktestOptions, ReadsEveryOption) {
    const BacktestOptions o = ParseBacktestArgs(With(
        {"--param", "fast=5", "--param", "slow=20", "--tz", "Asia/Shanghai", "--skip-bad-rows",
         "--live-updates", "4", "--json", "r.json", "--trades", "t.csv", "--html", "r.html",
         "--quiet", "--capital", "500000", "--commission-type", "rate", "--commission", "1.5",
         "--single-side", "--free-close-today", "--margin-rate", "0.12", "--size-mode", "percent",
         "--size", "20", "--max-entries", "3", "--same-source-entries", "--max-contracts", "50",
         "--stats-mode", "1", "--order-source", "7"}));
    EXPECT_EQ(o.params, (std::vector<std::pair<std::string, std::string>>{{"fast", "5"}, {"slow", "20"}}));
    EXPECT_EQ(o.timeZone, "Asia/Shanghai");
    EXPECT_TRUE(o.skipBadRows);
    EXPECT_EQ(o.liveUpdates, 4);
    EXPECT_EQ(o.jsonPath, "r.json");
    EXPECT_EQ(o.tradesPath, "t.csv");
    EXPECT_EQ(o.htmlPath, "r.html");
    EXPECT_TRUE(o.quiet);
    CKelBaseData data{};
    o.settings.ApplyTo(data);
    EXPECT_EQ(data.InitialCapital, 500000);
    EXPECT_EQ(data.CommissionType, 2);
    EXPECT_EQ(data.CommissionValue, 1.5);
    EXPECT_TRUE(data.SingleSideCommission);
    EXPECT_TRUE(data.FreeCloseToday);
    EXPECT_EQ(data.MarginRate, 0.12);
    EXPECT_EQ(data.TradeSizeMode, 1);
    EXPECT_EQ(data.TradeSizeValue, 20);
    EXPECT_EQ(data.MaxOpenEntries, 3);
    EXPECT_TRUE(data.AllowSameSourceEntries);
    EXPECT_EQ(data.MaxPositionContracts, 50);
    EXPECT_EQ(data.PerformanceMode, 1);
    EXPECT_EQ(data.OrderSource, 7u);
}

TEST(BacktestOptions, TakesChoicesByNameOrNumberAndSplitsTheInstrumentAtTheLastColon) {
    EXPECT_EQ(ParseBacktestArgs(With({"--commission-type", "1"})).settings.commissionType, 1);
    EXPECT_EQ(ParseBacktestArgs(With({"--size-mode", "money"})).settings.sizeMode, 2);
    const BacktestOptions o = ParseBacktestArgs(With({"--instrument", "C:\\data\\i.json:IF2509"}));
    EXPECT_EQ(o.instrumentsPath, "C:\\data\\i.json");
    EXPECT_EQ(o.instrumentCode, "IF2509");
}

TEST(BacktestOptions, HelpWinsOverMissingOptions) {
    EXPECT_TRUE(ParseBacktestArgs({"--help"}).help);
    EXPECT_TRUE(ParseBacktestArgs({"--bars", "x", "--help"}).help);
    const std::string usage = ffrunner::BacktestUsage();
    for (const char* option :
         {"--bars", "--instrument", "--strategy", "--param", "--tz", "--skip-bad-rows",
          "--live-updates", "--config", "--capital", "--commission-type", "--commission ",
          "--single-side", "--free-close-today", "--margin-rate", "--size-mode", "--size ",
          "--max-entries", "--same-source-entries", "--max-contracts", "--stats-mode",
          "--order-source", "--json", "--trades", "--html", "--quiet", "--help"}) {
        EXPECT_NE(usage.find(option), std::string::npos) << option;
    }
}

TEST(BacktestOptions, NamesEachBadOptionExactly) {
    EXPECT_EQ(ErrorOf(With({"--fast"})), "unknown option '--fast'");
    EXPECT_EQ(ErrorOf(With({"-x"})), "unknown option '-x'");
    EXPECT_EQ(ErrorOf(With({"extra"})), "unexpected argument 'extra'");
    EXPECT_EQ(ErrorOf(With({"--capital"})), "missing value after --capital");
    EXPECT_EQ(ErrorOf(With({"--capital", "abc"})),
              "bad value for --capital: 'abc' (expected a number above 0)");
    EXPECT_EQ(ErrorOf(With({"--capital", "0"})),
              "bad value for --capital: '0' (expected a number above 0)");
    EXPECT_EQ(ErrorOf(With({"--commission", "-1"})),
              "bad value for --commission: '-1' (expected a number of at least 0)");
    EXPECT_EQ(ErrorOf(With({"--margin-rate", "nan"})),
              "bad value for --margin-rate: 'nan' (expected a number of at least 0)");
    EXPECT_EQ(ErrorOf(With({"--commission-type", "percent"})),
              "bad value for --commission-type: 'percent' (expected money, ticks or rate)");
    EXPECT_EQ(ErrorOf(With({"--size-mode", "lots"})),
              "bad value for --size-mode: 'lots' (expected contracts, percent or money)");
    EXPECT_EQ(ErrorOf(With({"--size", "1.5"})),
              "bad value for --size: '1.5' (expected a whole number from 0 to 2147483647)");
    EXPECT_EQ(ErrorOf(With({"--max-entries", "-1"})),
              "bad value for --max-entries: '-1' (expected a whole number from 0 to 2147483647)");
    EXPECT_EQ(ErrorOf(With({"--stats-mode", "3"})),
              "bad value for --stats-mode: '3' (expected a whole number from 1 to 2)");
    EXPECT_EQ(ErrorOf(With({"--order-source", "4294967296"})),
              "bad value for --order-source: '4294967296' (expected a whole number from 0 to "
              "4294967295)");
    EXPECT_EQ(ErrorOf(With({"--live-updates", "x"})),
              "bad value for --live-updates: 'x' (expected a whole number from 0 to 1000000)");
    EXPECT_EQ(ErrorOf(With({"--param", "fast"})),
              "bad value for --param: 'fast' (expected NAME=VALUE)");
    EXPECT_EQ(ErrorOf(With({"--param", "=5"})), "bad value for --param: '=5' (expected NAME=VALUE)");
    EXPECT_EQ(ErrorOf(With({"--instrument", "inst.json"})),
              "bad value for --instrument: 'inst.json' (expected FILE:CODE)");
    EXPECT_EQ(ErrorOf(With({"--instrument", "inst.json:"})),
              "bad value for --instrument: 'inst.json:' (expected FILE:CODE)");
}

TEST(BacktestOptions, ReadsASettingsFileAndLetsTheCommandLineWin) {
    const std::string path = WriteConfig(
        "{\n  \"capital\": 250000,\n  \"commission-type\": \"ticks\",\n  \"commission\": 2,\n"
        "  \"single-side\": true,\n  \"param\": {\"fast\": 3, \"mode\": \"close\"},\n"
        "  \"html\": \"out.html\"\n}\n");
    const BacktestOptions o =
        ParseBacktestArgs(With({"--config", path, "--capital", "300000", "--param", "fast=8"}));
    EXPECT_EQ(o.settings.capital, 300000);
    EXPECT_EQ(o.settings.commissionType, 1);
    EXPECT_EQ(o.settings.commissionValue, 2);
    EXPECT_TRUE(o.settings.singleSide);
    EXPECT_EQ(o.htmlPath, "out.html");
    EXPECT_EQ(o.params, (std::vector<std::pair<std::string, std::string>>{
                            {"fast", "3"}, {"mode", "close"}, {"fast", "8"}}));
    std::remove(path.c_str());
}

TEST(BacktestOptions, NamesEachBadSettingsFileExactly) {
    const std::string missing = testing::TempDir() + "runner_no_such_config.json";
    EXPECT_EQ(ErrorOf(With({"--config", missing})), missing + ": cannot open the settings file");
    auto errorFor = [](const std::string& text) {
        const std::string path = WriteConfig(text);
        std::string error = ErrorOf(With({"--config", path}));
        std::remove(path.c_str());
        const size_t at = error.find(path);
        if (at != std::string::npos) error.replace(at, path.size(), "FILE");
        return error;
    };
    EXPECT_EQ(errorFor("{\"capitol\": 5}"), "FILE: unknown setting 'capitol'");
    EXPECT_EQ(errorFor("{\"config\": \"x\"}"), "FILE: unknown setting 'config'");
    EXPECT_EQ(errorFor("{\"capital\": \"lots\"}"),
              "bad value for FILE: capital: 'lots' (expected a number above 0)");
    EXPECT_EQ(errorFor("{\"single-side\": 1}"), "FILE: setting 'single-side' must be true or false");
    EXPECT_EQ(errorFor("{\"param\": 5}"), "FILE: setting 'param' must be an object of NAME: VALUE");
    EXPECT_EQ(errorFor("{\"capital\": {}}"), "FILE: setting 'capital' must not be an object");
    EXPECT_EQ(errorFor("{\"param\": {\"a\": {}}}"), "FILE:1: objects nest only one level deep");
    EXPECT_EQ(errorFor("{\n\"capital\": 5,\n}"), "FILE:3: expected a text in double quotes");
    EXPECT_EQ(errorFor("[1]"), "FILE:1: expected a value");
    EXPECT_EQ(errorFor("5"), "FILE:1: the settings must be one JSON object");
    EXPECT_EQ(errorFor("{} x"), "FILE:1: unexpected text after the object");
    EXPECT_EQ(errorFor("{\"a\" 1}"), "FILE:1: expected ':' after \"a\"");
    EXPECT_EQ(errorFor("{\"a\": \"b}"), "FILE:1: unterminated text");
    EXPECT_EQ(errorFor(""), "FILE:1: unexpected end of the file");
    EXPECT_EQ(errorFor("{\"a\": {\"b\": {\"c\": 1}}}"), "FILE:1: objects nest only one level deep");
}

}  // namespace
