#include <gtest/gtest.h>

#include "FormulaFunction/FormulaFunction.h"
#include "runner/HostLoop.h"
#include "runner/StrategyPlugin.h"

namespace {

std::string LoadError(const std::string& path) {
    try {
        ffrunner::StrategyPlugin plugin(path);
    } catch (const ffrunner::PluginError& e) {
        return e.what();
    }
    return "no error";
}

TEST(StrategyPlugin, LoadsAStrategyAndRunsIt) {
    ffrunner::StrategyPlugin plugin(FF_COUNTING_PLUGIN);
    ffrunner::Strategy& strategy = plugin.Get();
    std::string error;
    EXPECT_TRUE(strategy.SetParameter("step", "2", error));
    EXPECT_FALSE(strategy.SetParameter("speed", "2", error));
    EXPECT_EQ(error, "unknown parameter 'speed'");
    EXPECT_EQ(strategy.Parameters().at(0).second, "2");
    CKelBaseData data{};
    data.FormulaKind = 7;
    data.DataStreams.resize(1);
    data.DataStreams[0].Bars = {BarRecord{1000, 1, 1, 1, 1.5, 0, 0}, BarRecord{2000, 1, 1, 1, 2.5, 0, 0}};
    CSystemFuncs funcs(&data);
    strategy.Reset();
    ffrunner::RunFormulaBars(data, [&] { strategy.OnBar(funcs); });
    ASSERT_EQ(data.BarTexts.size(), 2u);
    EXPECT_EQ(data.BarTexts[1].at(0), "4 2.500000");
}

TEST(StrategyPlugin, NamesWhatIsWrongWithAFile) {
    EXPECT_EQ(LoadError(FF_WRONG_ABI_PLUGIN),
              std::string(FF_WRONG_ABI_PLUGIN) +
                  ": built for strategy ABI version 2, this host speaks version 1");
    EXPECT_EQ(LoadError(FF_NOT_A_PLUGIN),
              std::string(FF_NOT_A_PLUGIN) +
                  ": not a strategy plugin (it must export FormulaStrategy_AbiVersion, "
                  "FormulaStrategy_Create and FormulaStrategy_Destroy)");
    const std::string missing = "/nonexistent/strategy.so";
    const std::string error = LoadError(missing);
    EXPECT_EQ(error.substr(0, missing.size() + 2), missing + ": ");
    EXPECT_GT(error.size(), missing.size() + 2);
}

}  // namespace
