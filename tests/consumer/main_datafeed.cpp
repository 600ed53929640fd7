// Builds against the installed datafeed headers and library only.
#include <cstdio>
#include <filesystem>

#include "FormulaFunction/FormulaFunction.h"
#include "datafeed/LocalDataFeed.h"

int main() {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / "ff-consumer-datafeed.db";
    std::filesystem::remove(path);
    int failures = 0;
    {
        datafeed::CLocalDataFeed feed(path.string());
        if (FormulaFunction_Init(0, &feed, "/nonexistent-root", "nobody") != 1) ++failures;
        feed.SetConfigFileProperty("tblprofile", "Consumer", "Key", "value");
        std::string value;
        if (!feed.GetConfigFileProperty("tblprofile", "Consumer", "Key", value) || value != "value") {
            ++failures;
        }
        FormulaFunction_Init(0, nullptr, "/nonexistent-root", "nobody");
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path.string() + "-wal");
    std::filesystem::remove(path.string() + "-shm");
    std::printf("consumer_datafeed: %s\n", failures == 0 ? "ok" : "failed");
    return failures == 0 ? 0 : 1;
}
