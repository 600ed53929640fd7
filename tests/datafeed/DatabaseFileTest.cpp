#include <gtest/gtest.h>

#include <sqlite3.h>

#include <filesystem>
#include <random>

#include "DatafeedTestSupport.h"
#include "datafeed/DatafeedError.h"
#include "datafeed/LocalDataFeed.h"

using datafeed::CLocalDataFeed;
using datafeed::DatafeedError;
using datafeed_test::ReadBytes;
using datafeed_test::TempDir;
using datafeed_test::WriteBytes;

namespace {

// The message of the DatafeedError that opening the file throws, or "" when none.
std::string OpenRefusal(const std::string& path) {
    try {
        CLocalDataFeed feed(path);
    } catch (const DatafeedError& e) {
        return e.what();
    }
    return "";
}

void RunSql(const std::string& path, const char* sql) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
}

std::string QueryText(const std::string& path, const char* sql) {
    sqlite3* db = nullptr;
    std::string result;
    if (sqlite3_open(path.c_str(), &db) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW) {
            result = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        }
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return result;
}

}  // namespace

TEST(DatabaseFile, RandomBytesAreRefusedAndLeftAlone) {
    TempDir dir;
    const std::string path = dir.File("noise.db");
    std::mt19937 generator(20240301);
    std::string noise(64 * 1024, '\0');
    for (char& c : noise) c = static_cast<char>(generator() & 0xFF);
    WriteBytes(path, noise);

    const std::string message = OpenRefusal(path);
    EXPECT_EQ(message.rfind(path + ": ", 0), 0u) << message;
    EXPECT_NE(message.find("not a database"), std::string::npos) << message;
    EXPECT_EQ(ReadBytes(path), noise);
    EXPECT_FALSE(std::filesystem::exists(path + "-wal"));
}

TEST(DatabaseFile, ATextFileIsRefusedAndLeftAlone) {
    TempDir dir;
    const std::string path = dir.File("notes.db");
    const std::string text = "[Strategy]\nLots=3\n";
    WriteBytes(path, text);
    EXPECT_EQ(OpenRefusal(path).rfind(path + ": ", 0), 0u);
    EXPECT_EQ(ReadBytes(path), text);
}

TEST(DatabaseFile, AnotherProgramsDatabaseIsRefusedAndLeftAlone) {
    TempDir dir;
    const std::string path = dir.File("other.db");
    RunSql(path, "CREATE TABLE notes (text TEXT); INSERT INTO notes VALUES ('keep me');");
    const std::string before = ReadBytes(path);
    EXPECT_EQ(OpenRefusal(path), path + ": not a datafeed database");
    EXPECT_EQ(ReadBytes(path), before);
}

TEST(DatabaseFile, ANewerLayoutIsRefused) {
    TempDir dir;
    const std::string path = dir.File("feed.db");
    { CLocalDataFeed feed(path); }
    RunSql(path, "PRAGMA user_version=2");
    EXPECT_EQ(OpenRefusal(path), path + ": written by a newer version of the datafeed");
}

TEST(DatabaseFile, ADamagedDatabaseIsRefusedNamingTheFile) {
    TempDir dir;
    const std::string path = dir.File("feed.db");
    {
        CLocalDataFeed feed(path);
        for (int i = 0; i < 200; ++i) {
            feed.SetConfigFileProperty("tblprofile", "S", "K" + std::to_string(i),
                                       std::string(500, 'x'));
        }
    }
    std::string bytes = ReadBytes(path);
    ASSERT_GT(bytes.size(), 3 * 4096u);
    // Overwrite the second page, an interior page of the table, with garbage.
    for (size_t i = 4096; i < 2 * 4096; ++i) bytes[i] = static_cast<char>(0xA5);
    WriteBytes(path, bytes);
    const std::string message = OpenRefusal(path);
    EXPECT_EQ(message.rfind(path + ": damaged database: ", 0), 0u) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    EXPECT_EQ(ReadBytes(path), bytes);
}

TEST(DatabaseFile, ATruncatedDatabaseIsRefusedNamingTheFile) {
    TempDir dir;
    const std::string path = dir.File("feed.db");
    {
        CLocalDataFeed feed(path);
        for (int i = 0; i < 200; ++i) {
            feed.SetConfigFileProperty("tblprofile", "S", "K" + std::to_string(i),
                                       std::string(500, 'x'));
        }
    }
    std::string bytes = ReadBytes(path);
    bytes.resize(bytes.size() / 2 + 100);
    WriteBytes(path, bytes);
    const std::string message = OpenRefusal(path);
    EXPECT_EQ(message.rfind(path + ": ", 0), 0u) << message;
    EXPECT_EQ(ReadBytes(path), bytes);
}

TEST(DatabaseFile, AMissingFolderIsReportedWithTheFileName) {
    TempDir dir;
    const std::string path = dir.File("no/such/folder/feed.db");
    EXPECT_EQ(OpenRefusal(path).rfind(path + ": cannot be opened", 0), 0u);
}

TEST(DatabaseFile, AnEmptyFileBecomesADatabaseInWriteAheadMode) {
    TempDir dir;
    const std::string path = dir.File("feed.db");
    WriteBytes(path, "");
    EXPECT_EQ(OpenRefusal(path), "");
    EXPECT_EQ(QueryText(path, "PRAGMA journal_mode"), "wal");
    EXPECT_EQ(QueryText(path, "PRAGMA application_id"), "1179010118");
    EXPECT_EQ(OpenRefusal(path), "");
}
