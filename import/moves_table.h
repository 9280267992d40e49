// The working database Tessimo.mdb over SQLite: opening it (never creating
// it), prepared statements with bound values, and the table Moves as the
// tree store and the library writer use it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace vantrel::import {

// A failure of the working database. MissingDatabase and MissingTable are
// the two the user is told about in words of their own; Engine is anything
// else the database reports, with its own message and result code.
class DatabaseError : public std::runtime_error {
public:
    enum class Kind { MissingDatabase, MissingTable, Engine };

    // The numbers the old Jet engine gave these causes.
    static constexpr int kNoDatabaseNumber = 3024;
    static constexpr int kNoTableNumber = 3078;

    DatabaseError(Kind kind, const std::string& what, int number)
        : std::runtime_error(what), kind_(kind), number_(number) {}
    Kind kind() const { return kind_; }
    int number() const { return number_; }

private:
    Kind kind_;
    int number_;
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
    // a database, MissingTable if it has no table Moves.
    void Open(const std::string& path);
    // Commits a transaction that is still open, then closes. Failures on the
    // way are ignored: what was written stands as far as it can.
    void Close() noexcept;
    bool IsOpen() const { return db_ != nullptr; }

    void Execute(const char* sql);
    Statement Prepare(const char* sql);
    void Begin();
    void Commit();

private:
    sqlite3* db_ = nullptr;
};

// One record of Moves as the tree store adds it.
struct MoveRow {
    int32_t index = 0;
    int32_t parent = 0;
    std::string_view move;
    std::string_view book;
    std::string_view description;
    bool newBranch = false;  // stored as -1 / 0
    std::string_view remarks;
    std::string_view layout;
};

// The table Moves: emptying, the lookup by (parent, move) and adding. The
// lookup runs on the same connection as the adding, so it sees records that
// were added a moment ago in the same transaction.
class MovesTable {
public:
    explicit MovesTable(WorkingDatabase& db);

    void Clear();
    // The index of the child of `parent` whose move is `move`; 0 for none.
    int32_t Find(int32_t parent, std::string_view move);
    void Add(const MoveRow& row);

private:
    WorkingDatabase& db_;
    Statement find_;
    Statement add_;
};

// Makes a fresh database file from the SQL script at schemaPath, replacing a
// file of that name. False, with the reason in *error, on failure.
bool CreateDatabaseFromSchema(const std::string& dbPath, const std::string& schemaPath,
                              std::string* error = nullptr);

}  // namespace vantrel::import
