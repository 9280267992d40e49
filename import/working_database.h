// The working database Tessimo.mdb over SQLite: opening it (never creating
// it), prepared statements with bound values, the hold of an import, the
// emptying, and the making of a fresh database from the schema.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/errors.h"

struct sqlite3;
struct sqlite3_stmt;

namespace vantrel::import {

// A failure of the working database. MissingDatabase and MissingTable are
// the two the user is told about in words of their own; Engine is anything
// else the database reports, with its own message and result code.
class DatabaseError : public Error {
public:
    enum class Kind { MissingDatabase, MissingTable, Engine };

    DatabaseError(Kind kind, const std::string& what, int number) : Error(what, number), kind_(kind) {}
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

// One prepared statement. Text bound with Bind must stay alive until the
// statement has been stepped and reset.
class Statement {
public:
    Statement() = default;
    Statement(sqlite3* db, const char* sql);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    void Bind(int param, int64_t value);
    void Bind(int param, std::string_view text);
    void BindNull(int param);

    // True with a row to read, false when the statement is done.
    bool Step();
    // Makes the statement ready to run again; bindings stay.
    void Reset();

    bool IsNull(int column) const;
    int64_t Int(int column) const;
    // "" for NULL. Valid until the next Step, Reset or read of the column.
    std::string_view TextView(int column) const;

private:
    [[noreturn]] void Fail(int rc) const;

    sqlite3* db_ = nullptr;
    sqlite3_stmt* stmt_ = nullptr;
};

// The open working database. The file must already exist and hold the table
// Moves: Open never creates anything.
class WorkingDatabase {
public:
    WorkingDatabase() = default;
    WorkingDatabase(const WorkingDatabase&) = delete;
    WorkingDatabase& operator=(const WorkingDatabase&) = delete;
    ~WorkingDatabase() { Close(); }

    // Throws DatabaseError: MissingDatabase if the file isn't there or isn't
    // a database, MissingTable if it has no table Moves, Engine (with the
    // engine's "database is locked") while another program holds it.
    void Open(const std::string& path);
    // Commits a transaction that is still open, then closes. Failures on the
    // way are ignored: an operation that must know its work was kept calls
    // Commit itself.
    void Close() noexcept;
    bool IsOpen() const { return db_ != nullptr; }

    void Execute(const char* sql);
    Statement Prepare(const char* sql);
    sqlite3* Handle() const { return db_; }
    void Begin();
    // Throws DatabaseError when the work can't be kept (a reader holds the
    // file, the disk is full, the file is read-only); nothing is kept then.
    void Commit();

private:
    sqlite3* db_ = nullptr;
};

// An import's hold on the working database, from the emptying of the table
// to the last record the library writer reads, so that a library is only
// ever written from its own import's records. A second import meanwhile is
// refused as busy; the hold goes with the process, however it ends.
class ImportLock {
public:
    ImportLock() = default;
    ImportLock(const ImportLock&) = delete;
    ImportLock& operator=(const ImportLock&) = delete;
    ~ImportLock() { Release(); }

    // Takes the hold on the database at `path`. Throws DatabaseError:
    // MissingDatabase if there is no such file, Engine "database is locked"
    // while another import holds it.
    void Acquire(const std::string& path);
    void Release() noexcept;
    bool Held() const { return fd_ >= 0; }

private:
    friend void EmptyWorkingDatabase(WorkingDatabase& db, const std::string& path, ImportLock& lock);
    int fd_ = -1;
};

// Leaves the database at `path`, open in `db` and held by `lock`, with the
// table Moves empty and the file no larger than what stays in it. An empty
// copy of the database (its schema and its other tables) is made beside it
// and takes its place, so that the emptying needs room only for what stays,
// and a process killed at any moment leaves either the old file or the new
// one, each of them sound. `db` is open on the new file afterwards.
void EmptyWorkingDatabase(WorkingDatabase& db, const std::string& path, ImportLock& lock);

// Makes a fresh database file from the SQL script at schemaPath, replacing a
// file of that name. False, with the reason in *error, on failure.
bool CreateDatabaseFromSchema(const std::string& dbPath, const std::string& schemaPath,
                              std::string* error = nullptr);

// The DatabaseError of an engine failure: the result code `rc` and, with a
// connection, its message. A database that can't grow is "Disk full".
[[noreturn]] void ThrowEngine(sqlite3* db, int rc);

}  // namespace vantrel::import
