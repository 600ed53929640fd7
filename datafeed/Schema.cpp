#include "datafeed/Schema.h"

#include <sqlite3.h>

#include <chrono>
#include <string>
#include <thread>

#include "datafeed/Database.h"
#include "datafeed/DatafeedError.h"

namespace datafeed {
namespace {

// Marks the file as a datafeed database ("FFDF") and numbers its layout.
constexpr int64_t kApplicationId = 0x46464446;
constexpr int64_t kSchemaVersion = 1;

// Configuration values compare table, section and key names without regard to ASCII
// case, as profile files do; a key keeps the spelling it was first written with.
// Contract numbers are the decimal order ids; AUTOINCREMENT never hands one out twice.
// A position row keeps the lots opened before its day apart from those opened on it.
constexpr const char* kCreateTables = R"sql(
CREATE TABLE config (
    tbl TEXT NOT NULL COLLATE NOCASE,
    section TEXT NOT NULL COLLATE NOCASE,
    key TEXT NOT NULL COLLATE NOCASE,
    value TEXT NOT NULL,
    PRIMARY KEY (tbl, section, key)
) WITHOUT ROWID;
CREATE TABLE accounts (
    broker_id TEXT NOT NULL,
    account_id TEXT NOT NULL,
    starting_balance REAL NOT NULL,
    realised_before REAL NOT NULL,
    realised_today REAL NOT NULL,
    day INTEGER NOT NULL,
    PRIMARY KEY (broker_id, account_id)
) WITHOUT ROWID;
CREATE TABLE orders (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    broker_id TEXT NOT NULL,
    account_id TEXT NOT NULL,
    market_id INTEGER NOT NULL,
    code TEXT NOT NULL,
    status INTEGER NOT NULL,
    buy_or_sell INTEGER NOT NULL,
    order_time INTEGER NOT NULL,
    lots REAL NOT NULL,
    price REAL NOT NULL,
    filled_lots REAL NOT NULL,
    filled_price REAL NOT NULL,
    entry_or_exit INTEGER NOT NULL,
    reserved INTEGER NOT NULL,
    tag TEXT NOT NULL
);
CREATE INDEX orders_by_account ON orders (broker_id, account_id, market_id, code);
CREATE INDEX orders_by_instrument ON orders (market_id, code, status);
CREATE TABLE positions (
    broker_id TEXT NOT NULL,
    account_id TEXT NOT NULL,
    market_id INTEGER NOT NULL,
    code TEXT NOT NULL,
    buy_before REAL NOT NULL,
    buy_today REAL NOT NULL,
    buy_avg REAL NOT NULL,
    sell_before REAL NOT NULL,
    sell_today REAL NOT NULL,
    sell_avg REAL NOT NULL,
    day INTEGER NOT NULL,
    PRIMARY KEY (broker_id, account_id, market_id, code)
) WITHOUT ROWID;
)sql";

int64_t PragmaValue(Database& db, const char* sql) {
    Statement pragma(db, sql);
    return pragma.Step() ? pragma.Int(0) : 0;
}

int64_t TableCount(Database& db) {
    Statement count(db, "SELECT count(*) FROM sqlite_master");
    return count.Step() ? count.Int(0) : 0;
}

// True when the file still has to be given its tables; throws for a foreign file.
bool NeedsTables(Database& db) {
    const int64_t applicationId = PragmaValue(db, "PRAGMA application_id");
    if (applicationId == kApplicationId) {
        if (PragmaValue(db, "PRAGMA user_version") > kSchemaVersion) {
            throw DatafeedError(db.Path() + ": written by a newer version of the datafeed");
        }
        return false;
    }
    if (applicationId == 0 && TableCount(db) == 0) return true;
    throw DatafeedError(db.Path() + ": not a datafeed database");
}

// Switches the file to write-ahead logging and returns the journal mode it has now.
// Two processes opening a new file at once both ask for the switch, which needs the
// file to itself; SQLite answers the one that would wait on the other "locked" at
// once rather than through the busy timeout, so the switch is tried again, for about
// as long as the busy timeout.
std::string SwitchToWriteAheadLog(Database& db) {
    for (int attempt = 0;; ++attempt) {
        try {
            Statement journal(db, "PRAGMA journal_mode=WAL");
            return journal.Step() ? journal.Text(0) : std::string();
        } catch (const DatafeedError&) {
            if ((sqlite3_errcode(db.Handle()) & 0xff) != SQLITE_BUSY || attempt >= 1000) throw;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

}  // namespace

void PrepareSchema(Database& db) {
    // The id and the table count are read in one snapshot: read one by one, another
    // process creating the tables in between made a new file look foreign.
    bool empty = false;
    {
        Transaction snapshot(db, Transaction::Read);
        empty = NeedsTables(db);
        snapshot.Commit();
    }
    if (SwitchToWriteAheadLog(db) != "wal") {
        throw DatafeedError(db.Path() + ": cannot use write-ahead logging");
    }
    // In write-ahead mode NORMAL keeps every commit whole; only the last commits before a
    // power loss may be missing afterwards.
    db.Exec("PRAGMA synchronous=NORMAL");
    if (!empty) return;

    // Another process may be creating the tables at the same moment; the write lock
    // makes one of them go first and the other one find the work done.
    Transaction transaction(db, Transaction::Write);
    if (!NeedsTables(db)) return;
    db.Exec(kCreateTables);
    db.Exec(("PRAGMA application_id=" + std::to_string(kApplicationId)).c_str());
    db.Exec(("PRAGMA user_version=" + std::to_string(kSchemaVersion)).c_str());
    transaction.Commit();
}

}  // namespace datafeed
