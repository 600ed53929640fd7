#include "datafeed/Database.h"

#include <sqlite3.h>

#include "datafeed/DatafeedError.h"

namespace datafeed {
namespace {

// How long a statement waits for another connection's lock before giving up.
constexpr int kBusyTimeoutMs = 10000;

}  // namespace

Database::Database(const std::string& path) : path_(path) {
    const int rc = sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                                   nullptr);
    if (rc != SQLITE_OK) {
        const std::string message = db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(rc);
        sqlite3_close(db_);
        db_ = nullptr;
        throw DatafeedError(path_ + ": cannot be opened: " + message);
    }
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_timeout(db_, kBusyTimeoutMs);
    try {
        // The first statement reads the file header; a file of other bytes fails here
        // with "file is not a database", and quick_check walks every page for damage.
        Statement check(*this, "PRAGMA quick_check(1)");
        if (!check.Step()) Fail("cannot be checked");
        std::string verdict = check.Text(0);
        if (verdict != "ok") {
            for (char& c : verdict) {
                if (c == '\n') c = ' ';
            }
            throw DatafeedError(path_ + ": damaged database: " + verdict);
        }
    } catch (...) {
        sqlite3_close(db_);
        db_ = nullptr;
        throw;
    }
}

Database::~Database() {
    sqlite3_close(db_);
}

void Database::Fail(const std::string& what) const {
    throw DatafeedError(path_ + ": " + what + ": " + sqlite3_errmsg(db_));
}

void Database::Exec(const char* sql) {
    if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail("cannot be updated");
}

int64_t Database::LastInsertId() const {
    return sqlite3_last_insert_rowid(db_);
}

int Database::Changes() const {
    return sqlite3_changes(db_);
}

Statement::Statement(Database& db, const char* sql) : db_(db) {
    if (sqlite3_prepare_v2(db.Handle(), sql, -1, &stmt_, nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt_);
        stmt_ = nullptr;
        db.Fail("cannot be read");
    }
}

Statement::~Statement() {
    sqlite3_finalize(stmt_);
}

Statement& Statement::BindInt(int index, int64_t value) {
    if (sqlite3_bind_int64(stmt_, index, value) != SQLITE_OK) db_.Fail("cannot bind a value");
    return *this;
}

Statement& Statement::BindReal(int index, double value) {
    if (sqlite3_bind_double(stmt_, index, value) != SQLITE_OK) db_.Fail("cannot bind a value");
    return *this;
}

Statement& Statement::BindText(int index, const std::string& value) {
    if (sqlite3_bind_text64(stmt_, index, value.data(), value.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8) != SQLITE_OK) {
        db_.Fail("cannot bind a value");
    }
    return *this;
}

bool Statement::Step() {
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    db_.Fail("cannot be read or written");
}

void Statement::Run() {
    while (Step()) {
    }
}

int64_t Statement::Int(int column) const {
    return sqlite3_column_int64(stmt_, column);
}

double Statement::Real(int column) const {
    return sqlite3_column_double(stmt_, column);
}

std::string Statement::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
    if (text == nullptr) return std::string();
    return std::string(text, static_cast<size_t>(sqlite3_column_bytes(stmt_, column)));
}

Transaction::Transaction(Database& db, Kind kind) : db_(db) {
    db_.Exec(kind == Write ? "BEGIN IMMEDIATE" : "BEGIN DEFERRED");
}

Transaction::~Transaction() {
    if (open_) sqlite3_exec(db_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
    db_.Exec("COMMIT");
    open_ = false;
}

}  // namespace datafeed
