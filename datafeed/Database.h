// A thin owner of one SQLite connection, its prepared statements and its transactions.
// Every failure throws DatafeedError with the database file's name in front.
#pragma once

#include <cstdint>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace datafeed {

class Database {
public:
    // Opens the file, creating it when it does not exist, and reads it through once so
    // that a file that is not a database, or a damaged one, is refused here, before
    // anything is written to it.
    explicit Database(const std::string& path);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    const std::string& Path() const { return path_; }
    sqlite3* Handle() const { return db_; }

    void Exec(const char* sql);
    int64_t LastInsertId() const;
    int Changes() const;

    // Throws "<file>: <what>: <SQLite's message>".
    [[noreturn]] void Fail(const std::string& what) const;

private:
    sqlite3* db_ = nullptr;
    std::string path_;
};

class Statement {
public:
    Statement(Database& db, const char* sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& BindInt(int index, int64_t value);
    Statement& BindReal(int index, double value);
    Statement& BindText(int index, const std::string& value);

    // Advances to the next row; false when there is none left.
    bool Step();
    // Runs a statement that returns no rows.
    void Run();

    int64_t Int(int column) const;
    double Real(int column) const;
    std::string Text(int column) const;

private:
    Database& db_;
    sqlite3_stmt* stmt_ = nullptr;
};

// One transaction, rolled back unless committed. A write transaction takes the write
// lock at its start (waiting up to the busy timeout for another writer), so it never
// fails half-way because a second process wrote in between; a read transaction sees
// one consistent state of the file.
class Transaction {
public:
    enum Kind { Read, Write };
    Transaction(Database& db, Kind kind);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit();

private:
    Database& db_;
    bool open_ = true;
};

}  // namespace datafeed
