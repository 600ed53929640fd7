#include "runner/StrategyPlugin.h"

#include "runner/SharedLibrary.h"

namespace ffrunner {

StrategyPlugin::StrategyPlugin(const std::string& path)
    : library_(std::make_unique<SharedLibrary>(path)) {
    if (!library_->Loaded()) throw PluginError(path + ": " + library_->Error());
    auto version = reinterpret_cast<FormulaStrategyAbiVersionFn>(
        library_->Symbol("FormulaStrategy_AbiVersion"));
    auto create =
        reinterpret_cast<FormulaStrategyCreateFn>(library_->Symbol("FormulaStrategy_Create"));
    destroy_ =
        reinterpret_cast<FormulaStrategyDestroyFn>(library_->Symbol("FormulaStrategy_Destroy"));
    if (version == nullptr || create == nullptr || destroy_ == nullptr) {
        throw PluginError(path +
                          ": not a strategy plugin (it must export FormulaStrategy_AbiVersion, "
                          "FormulaStrategy_Create and FormulaStrategy_Destroy)");
    }
    const uint32_t abi = version();
    if (abi != FF_STRATEGY_ABI_VERSION) {
        throw PluginError(path + ": built for strategy ABI version " + std::to_string(abi) +
                          ", this host speaks version " +
                          std::to_string(FF_STRATEGY_ABI_VERSION));
    }
    strategy_ = create();
    if (strategy_ == nullptr) throw PluginError(path + ": FormulaStrategy_Create made no strategy");
}

StrategyPlugin::~StrategyPlugin() {
    if (strategy_ != nullptr) destroy_(strategy_);
}

}  // namespace ffrunner
