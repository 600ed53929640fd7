// Builds against the installed datafeed headers and library only.
#include <cstdio>
#include <filesystem>

#include "FormulaFunction/FormulaFunction.h"
#include "datafeed/LocalDataFeed.h"

int main() {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "ff-consumer-datafeed.db";
    std::filesystem::remove(path);
    bool ok = false;
    {
        datafeed::CLocalDataFeed feed(path.string());
        CSubscibeManage& manager = feed;
        manager.SetConfigFileProperty("tblprofile", "Consumer", "Key", "value");
        std::string value;
        ok = manager.GetConfigFileProperty("tblprofile", "Consumer", "Key", value) &&
             value == "value";
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path.string() + "-wal");
    std::filesystem::remove(path.string() + "-shm");
    std::printf("consumer_datafeed: %s\n", ok ? "ok" : "failed");
    return ok ? 0 : 1;
}
