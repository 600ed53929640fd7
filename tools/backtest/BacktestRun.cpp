#include "BacktestRun.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

#include "FormulaFunction/FormulaFunction.h"
#include "datafeed/DatafeedError.h"
#include "datafeed/InstrumentFile.h"
#include "datafeed/LocalDataFeed.h"
#include "examples/strategies/StrategyCatalogue.h"
#include "runner/BarCsv.h"
#include "runner/HostLoop.h"
#include "runner/ProgressBar.h"
#include "runner/Report.h"
#include "runner/ReportWriters.h"
#include "runner/StrategyPlugin.h"
#include "runner/ZoneClock.h"

namespace backtest {
namespace {

// A strategy name that names a file: it holds a path separator or ends like a
// shared library.
bool NamesAFile(const std::string& name) {
    auto endsWith = [&](const char* suffix) {
        const std::string s(suffix);
        return name.size() > s.size() && name.compare(name.size() - s.size(), s.size(), s) == 0;
    };
    return name.find('/') != std::string::npos || name.find('\\') != std::string::npos ||
           endsWith(".so") || endsWith(".dll") || endsWith(".dylib");
}

// The strategy to run, built in or from a plugin, kept with its library.
struct LoadedStrategy {
    std::unique_ptr<ffrunner::StrategyPlugin> plugin;
    std::unique_ptr<ffrunner::Strategy> builtIn;
    ffrunner::Strategy* strategy = nullptr;
};

LoadedStrategy LoadStrategy(const std::string& name) {
    LoadedStrategy loaded;
    if (NamesAFile(name)) {
        try {
            loaded.plugin = std::make_unique<ffrunner::StrategyPlugin>(name);
        } catch (const ffrunner::PluginError& e) {
            throw RunError(e.what());
        }
        loaded.strategy = &loaded.plugin->Get();
        return loaded;
    }
    loaded.builtIn = ffexamples::MakeStrategy(name);
    if (!loaded.builtIn) {
        std::string names;
        for (const auto& entry : ffexamples::StrategyCatalogue()) {
            names += names.empty() ? "" : ", ";
            names += entry.name;
        }
        throw ffrunner::UsageError("unknown strategy '" + name + "' (built in: " + names +
                                   "; a plugin is named by its path)");
    }
    loaded.strategy = loaded.builtIn.get();
    return loaded;
}

// The strategy's name as the reports show it: "ma-crossover (fast=5, slow=20)"; a
// plugin goes by its file name, so that a report does not depend on where it lies.
std::string DisplayName(const std::string& name, const ffrunner::Strategy& strategy) {
    std::string text = NamesAFile(name) ? std::filesystem::path(name).filename().string() : name;
    const auto parameters = strategy.Parameters();
    for (size_t i = 0; i < parameters.size(); ++i) {
        text += i == 0 ? " (" : ", ";
        text += parameters[i].first + "=" + parameters[i].second;
    }
    return parameters.empty() ? text : text + ")";
}

// The catalogue and the key of the instrument with that code.
struct Instrument {
    datafeed::InstrumentCatalogue catalogue;
    datafeed::InstrumentKey key;
    IModuleFutureTrader::ISpecDetailValue spec;
};

Instrument LoadInstrument(const std::string& path, const std::string& code) {
    Instrument instrument;
    try {
        instrument.catalogue = datafeed::LoadInstrumentFile(path);
    } catch (const datafeed::DatafeedError& e) {
        throw RunError(e.what());
    }
    for (const auto& [key, spec] : instrument.catalogue.Instruments) {
        if (key.Code == code) {
            instrument.key = key;
            instrument.spec = spec;
            return instrument;
        }
    }
    throw RunError(path + ": no instrument with code '" + code + "'");
}

// Opens an output file, or fails the run naming it.
std::ofstream OpenOutput(const std::string& path) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) throw RunError(path + ": cannot write the file");
    return file;
}

void CloseOutput(std::ofstream& file, const std::string& path) {
    file.close();
    if (!file) throw RunError(path + ": cannot write the file");
}

// A database file for the datafeed's paper broker and settings table, private to
// the run and removed with the files the database keeps beside it.
class TempDatabase {
public:
    TempDatabase() {
        std::error_code error;
        std::filesystem::path folder = std::filesystem::temp_directory_path(error);
        if (error) folder = ".";
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        const auto self = reinterpret_cast<uintptr_t>(this);
        path_ = (folder / ("backtest-" + std::to_string(stamp) + "-" + std::to_string(self) +
                           ".db")).string();
    }
    ~TempDatabase() {
        std::error_code ignored;
        for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
            std::filesystem::remove(path_ + suffix, ignored);
        }
    }
    TempDatabase(const TempDatabase&) = delete;
    TempDatabase& operator=(const TempDatabase&) = delete;

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

}  // namespace

void RunBacktest(const ffrunner::BacktestOptions& options, std::ostream& out, std::ostream& err) {
    if (!ffrunner::ZoneIsKnown(options.timeZone)) {
        throw ffrunner::UsageError("unknown time zone '" + options.timeZone + "'");
    }
    LoadedStrategy loaded = LoadStrategy(options.strategy);
    ffrunner::Strategy& strategy = *loaded.strategy;
    for (const auto& [name, value] : options.params) {
        std::string error;
        if (!strategy.SetParameter(name, value, error)) {
            throw ffrunner::UsageError("bad --param " + name + "=" + value + ": " + error);
        }
    }

    // Bar times, the library's dates and the reports all use the one zone.
    ffrunner::SetProcessZone(options.timeZone);
    Instrument instrument = LoadInstrument(options.instrumentsPath, options.instrumentCode);
    ffrunner::BarCsvOptions csvOptions;
    csvOptions.skipBadRows = options.skipBadRows;
    ffrunner::BarCsvData csv;
    try {
        csv = ffrunner::ReadBarCsv(options.barsPath, csvOptions);
    } catch (const ffrunner::BarCsvError& e) {
        throw RunError(e.what());
    }
    for (const std::string& warning : csv.warnings) err << "warning: " << warning << "\n";
    if (csv.bars.empty()) throw RunError(options.barsPath + ": no bars");

    // The datafeed answers the library's questions about the instrument; its paper
    // broker and settings table live in a database of the run's own.
    TempDatabase database;
    std::unique_ptr<datafeed::CLocalDataFeed> feed;
    try {
        feed = std::make_unique<datafeed::CLocalDataFeed>(database.Path());
    } catch (const datafeed::DatafeedError& e) {
        throw RunError(e.what());
    }
    feed->SetInstruments(instrument.catalogue);
    FormulaFunction_Init(0, feed.get(), ".", "backtest");

    CKelBaseData data{};
    data.FormulaKind = 7;
    options.settings.ApplyTo(data);
    data.DataStreams.resize(1);
    data.DataStreams[0].MarketId = instrument.key.MarketId;
    data.DataStreams[0].Code = instrument.key.Code;
    data.DataStreams[0].Bars = std::move(csv.bars);
    CStrategyResult result{};
    data.Result = &result;
    CSystemFuncs funcs(&data);

    ffrunner::ProgressBar progress("backtest", !options.quiet);
    ffrunner::LoopOptions loop;
    loop.liveUpdates = options.liveUpdates;
    loop.progress = [&](size_t done, size_t total) { progress.Update(done, total); };
    strategy.Reset();
    ffrunner::RunStrategyBars(data, funcs, [&] { strategy.OnBar(funcs); }, loop);
    progress.Finish();

    ffrunner::ReportInput input;
    input.data = &data;
    input.bars = &data.DataStreams[0].Bars;
    input.spec = instrument.spec;
    input.strategyName = DisplayName(options.strategy, strategy);
    input.instrument = instrument.key.Code;
    const ffrunner::Report report = ffrunner::BuildReport(input);
    FormulaFunction_Init(0, nullptr, ".", "backtest");

    ffrunner::WriteTextReport(report, out);
    struct Output {
        const std::string& path;
        void (*write)(const ffrunner::Report&, std::ostream&);
    };
    const Output outputs[] = {{options.jsonPath, ffrunner::WriteJsonReport},
                              {options.tradesPath, ffrunner::WriteTradesCsv},
                              {options.htmlPath, ffrunner::WriteHtmlReport}};
    for (const Output& output : outputs) {
        if (output.path.empty()) continue;
        std::ofstream file = OpenOutput(output.path);
        output.write(report, file);
        CloseOutput(file, output.path);
    }
}

std::string StrategyListText() {
    std::string text = "Built-in strategies, with their parameters and defaults:\n";
    for (const auto& entry : ffexamples::StrategyCatalogue()) {
        text += "  " + std::string(entry.name) + "\n";
        // The summary, word-wrapped to 78 columns under the name.
        const std::string summary = entry.summary;
        std::string line = "     ";
        size_t start = 0;
        while (start < summary.size()) {
            size_t end = summary.find(' ', start);
            if (end == std::string::npos) end = summary.size();
            const std::string word = summary.substr(start, end - start);
            if (line.size() + 1 + word.size() > 78) {
                text += line + "\n";
                line = "     ";
            }
            line += " " + word;
            start = end + 1;
        }
        text += line + "\n";
    }
    return text;
}

}  // namespace backtest
