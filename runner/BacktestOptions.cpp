#include "runner/BacktestOptions.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>

#include "runner/SettingsJson.h"

namespace ffrunner {
namespace {

enum class Kind { Flag, Value, Repeated };

struct OptionSpec {
    const char* name;  // without "--"
    Kind kind;
};

constexpr OptionSpec kOptions[] = {
    {"bars", Kind::Value},          {"instrument", Kind::Value},
    {"strategy", Kind::Value},      {"param", Kind::Repeated},
    {"config", Kind::Value},        {"tz", Kind::Value},
    {"skip-bad-rows", Kind::Flag},  {"live-updates", Kind::Value},
    {"json", Kind::Value},          {"trades", Kind::Value},
    {"html", Kind::Value},          {"quiet", Kind::Flag},
    {"help", Kind::Flag},           {"capital", Kind::Value},
    {"commission-type", Kind::Value}, {"commission", Kind::Value},
    {"single-side", Kind::Flag},    {"free-close-today", Kind::Flag},
    {"margin-rate", Kind::Value},   {"size-mode", Kind::Value},
    {"size", Kind::Value},          {"max-entries", Kind::Value},
    {"same-source-entries", Kind::Flag}, {"max-contracts", Kind::Value},
    {"stats-mode", Kind::Value},    {"order-source", Kind::Value},
};

const OptionSpec* Find(const std::string& name) {
    for (const OptionSpec& spec : kOptions) {
        if (name == spec.name) return &spec;
    }
    return nullptr;
}

// Where a setting came from, for the messages: "--capital" or "settings.json: capital".
struct Setting {
    std::string name;
    std::string value;
    std::string source;
};

[[noreturn]] void Bad(const Setting& s, const std::string& expected) {
    throw UsageError("bad value for " + s.source + ": '" + s.value + "' (expected " + expected +
                     ")");
}

double Number(const Setting& s, double low, bool lowIncluded) {
    double v = 0;
    const char* end = s.value.data() + s.value.size();
    const auto r = std::from_chars(s.value.data(), end, v);
    const bool ok = r.ec == std::errc() && r.ptr == end && std::isfinite(v) &&
                    (lowIncluded ? v >= low : v > low);
    if (!ok) {
        Bad(s, std::string("a number ") + (lowIncluded ? "of at least " : "above ") +
                   (low == 0 ? "0" : std::to_string(low)));
    }
    return v;
}

int64_t Whole(const Setting& s, int64_t low, int64_t high) {
    int64_t v = 0;
    const char* end = s.value.data() + s.value.size();
    const auto r = std::from_chars(s.value.data(), end, v);
    if (r.ec != std::errc() || r.ptr != end || v < low || v > high) {
        Bad(s, "a whole number from " + std::to_string(low) + " to " + std::to_string(high));
    }
    return v;
}

int32_t Choice(const Setting& s, std::initializer_list<const char*> names) {
    int32_t index = 0;
    std::string list;
    for (const char* name : names) {
        if (s.value == name || s.value == std::to_string(index)) return index;
        list += (index == 0 ? "" : index + 1 == static_cast<int32_t>(names.size()) ? " or " : ", ");
        list += name;
        ++index;
    }
    Bad(s, list);
}

bool Flag(const Setting& s) {
    if (s.value == "true") return true;
    if (s.value == "false") return false;
    Bad(s, "true or false");
}

void Apply(const Setting& s, BacktestOptions& o) {
    BacktestSettings& b = o.settings;
    const std::string& n = s.name;
    if (n == "bars") o.barsPath = s.value;
    else if (n == "instrument") {
        const size_t colon = s.value.rfind(':');
        if (colon == std::string::npos || colon == 0 || colon + 1 == s.value.size()) {
            Bad(s, "FILE:CODE");
        }
        o.instrumentsPath = s.value.substr(0, colon);
        o.instrumentCode = s.value.substr(colon + 1);
    } else if (n == "strategy") o.strategy = s.value;
    else if (n == "param") {
        const size_t equals = s.value.find('=');
        if (equals == std::string::npos || equals == 0) Bad(s, "NAME=VALUE");
        o.params.emplace_back(s.value.substr(0, equals), s.value.substr(equals + 1));
    } else if (n == "config") o.configPath = s.value;
    else if (n == "tz") o.timeZone = s.value;
    else if (n == "skip-bad-rows") o.skipBadRows = Flag(s);
    else if (n == "live-updates") o.liveUpdates = static_cast<int32_t>(Whole(s, 0, 1000000));
    else if (n == "json") o.jsonPath = s.value;
    else if (n == "trades") o.tradesPath = s.value;
    else if (n == "html") o.htmlPath = s.value;
    else if (n == "quiet") o.quiet = Flag(s);
    else if (n == "help") o.help = Flag(s);
    else if (n == "capital") b.capital = Number(s, 0, false);
    else if (n == "commission-type") b.commissionType = Choice(s, {"money", "ticks", "rate"});
    else if (n == "commission") b.commissionValue = Number(s, 0, true);
    else if (n == "single-side") b.singleSide = Flag(s);
    else if (n == "free-close-today") b.freeCloseToday = Flag(s);
    else if (n == "margin-rate") b.marginRate = Number(s, 0, true);
    else if (n == "size-mode") b.sizeMode = Choice(s, {"contracts", "percent", "money"});
    else if (n == "size") b.sizeValue = static_cast<int32_t>(Whole(s, 0, INT32_MAX));
    else if (n == "max-entries") b.maxEntries = static_cast<int32_t>(Whole(s, 0, INT32_MAX));
    else if (n == "same-source-entries") b.sameSourceEntries = Flag(s);
    else if (n == "max-contracts") b.maxContracts = Number(s, 0, true);
    else if (n == "stats-mode") b.statsMode = static_cast<int32_t>(Whole(s, 1, 2));
    else if (n == "order-source") b.orderSource = static_cast<uint32_t>(Whole(s, 0, UINT32_MAX));
}

// The settings of a --config file, as if given on the command line before it.
std::vector<Setting> ReadConfig(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw UsageError(path + ": cannot open the settings file");
    std::ostringstream text;
    text << in.rdbuf();
    std::vector<std::pair<std::string, SettingValue>> members;
    try {
        members = ParseSettingsJson(text.str(), path);
    } catch (const SettingsError& e) {
        throw UsageError(e.what());
    }
    std::vector<Setting> settings;
    for (const auto& [name, value] : members) {
        const OptionSpec* spec = Find(name);
        if (spec == nullptr || name == "config" || name == "help") {
            throw UsageError(path + ": unknown setting '" + name + "'");
        }
        const std::string source = path + ": " + name;
        if (spec->kind == Kind::Repeated) {
            if (value.kind != SettingValue::Object) {
                throw UsageError(path + ": setting '" + name + "' must be an object of NAME: VALUE");
            }
            for (const auto& [key, item] : value.members) {
                settings.push_back({name, key + "=" + item.text, source});
            }
            continue;
        }
        if (value.kind == SettingValue::Object) {
            throw UsageError(path + ": setting '" + name + "' must not be an object");
        }
        if (spec->kind == Kind::Flag && value.kind != SettingValue::Boolean) {
            throw UsageError(path + ": setting '" + name + "' must be true or false");
        }
        settings.push_back({name, value.text, source});
    }
    return settings;
}

}  // namespace

void BacktestSettings::ApplyTo(CKelBaseData& data) const {
    data.InitialCapital = capital;
    data.CommissionType = commissionType;
    data.CommissionValue = commissionValue;
    data.SingleSideCommission = singleSide;
    data.FreeCloseToday = freeCloseToday;
    data.MarginRate = marginRate;
    data.TradeSizeMode = sizeMode;
    data.TradeSizeValue = sizeValue;
    data.MaxOpenEntries = maxEntries;
    data.AllowSameSourceEntries = sameSourceEntries;
    data.MaxPositionContracts = maxContracts;
    data.PerformanceMode = statsMode;
    data.OrderSource = orderSource;
}

BacktestOptions ParseBacktestArgs(const std::vector<std::string>& args) {
    std::vector<Setting> commandLine;
    std::string configPath;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const OptionSpec* spec = arg.rfind("--", 0) == 0 ? Find(arg.substr(2)) : nullptr;
        if (spec == nullptr) {
            throw UsageError(arg.rfind("-", 0) == 0 ? "unknown option '" + arg + "'"
                                                    : "unexpected argument '" + arg + "'");
        }
        Setting s{spec->name, "true", arg};
        if (spec->kind != Kind::Flag) {
            if (i + 1 >= args.size()) throw UsageError("missing value after " + arg);
            s.value = args[++i];
        }
        if (s.name == "help") {
            BacktestOptions help;
            help.help = true;
            return help;
        }
        if (s.name == "config") configPath = s.value;
        commandLine.push_back(std::move(s));
    }
    BacktestOptions options;
    if (!configPath.empty()) {
        for (const Setting& s : ReadConfig(configPath)) Apply(s, options);
    }
    for (const Setting& s : commandLine) Apply(s, options);
    if (options.barsPath.empty()) throw UsageError("missing --bars");
    if (options.instrumentsPath.empty()) throw UsageError("missing --instrument");
    if (options.strategy.empty()) throw UsageError("missing --strategy");
    return options;
}

std::string BacktestUsage() {
    return
        "usage: backtest --bars FILE --instrument FILE:CODE --strategy NAME|LIB [options]\n"
        "\n"
        "Runs a trading strategy over bars with the FormulaFunction library and reports\n"
        "the result on standard output.\n"
        "\n"
        "What to run:\n"
        "  --bars FILE             bars as CSV: date,time,open,high,low,close,volume,\n"
        "                          openinterest (or one datetime column first)\n"
        "  --instrument FILE:CODE  instrument file (JSON) and the code to trade in it\n"
        "  --strategy NAME|LIB     a built-in strategy (see below) or a strategy plugin\n"
        "                          (a shared library; a name with '/' or ending in .so,\n"
        "                          .dll or .dylib is taken as a file)\n"
        "  --param NAME=VALUE      a strategy parameter; repeat for more\n"
        "  --tz ZONE               time zone of the bar times and of the reports, an\n"
        "                          IANA name such as Asia/Shanghai (default: the machine's)\n"
        "  --skip-bad-rows         skip bad bar rows with a warning instead of stopping\n"
        "  --live-updates N        evaluate the last bar again at N simulated price\n"
        "                          updates, as a live chart does (default 0)\n"
        "  --config FILE           JSON object of settings named as these options without\n"
        "                          the dashes (\"capital\": 500000, \"single-side\": true,\n"
        "                          \"param\": {\"fast\": 5}); command-line options win\n"
        "\n"
        "Backtest settings:\n"
        "  --capital X             initial capital (default 1000000)\n"
        "  --commission-type T     money (per contract), ticks (per contract) or rate\n"
        "                          (ten-thousandths of the traded value); default money\n"
        "  --commission X          the commission in those units (default 0)\n"
        "  --single-side           charge only the exit side of a round trip\n"
        "  --free-close-today      the exit side is free when a round trip opens and\n"
        "                          closes on the same day\n"
        "  --margin-rate X         margin rate (default 0.1)\n"
        "  --size-mode M           default order size in contracts, percent (of the\n"
        "                          available capital) or money; default contracts\n"
        "  --size N                the default size in those units (default 1)\n"
        "  --max-entries N         most open entries in one position (default 1;\n"
        "                          0 forbids adding to a position)\n"
        "  --same-source-entries   let one order source hold several open entries\n"
        "  --max-contracts X       largest position in contracts (default 1000)\n"
        "  --stats-mode N          1 summary statistics, 2 detailed (default 2)\n"
        "  --order-source N        order source of the strategy's orders (default 0)\n"
        "\n"
        "Output:\n"
        "  --json FILE             the report as JSON, with every round trip\n"
        "  --trades FILE           the round trips as CSV\n"
        "  --html FILE             the report as one self-contained HTML page\n"
        "  --quiet                 no progress bar on standard error\n"
        "  --help                  this text\n"
        "\n"
        "Exit status: 0 done, 1 the run failed (a file could not be read or holds bad\n"
        "data), 2 the command line or settings file cannot be used.\n";
}

}  // namespace ffrunner
