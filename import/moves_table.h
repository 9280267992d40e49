// The working database Tessimo.mdb over SQLite: opening it (never creating
// it), prepared statements with bound values, and the table Moves as the
// tree store and the library writer use it.
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

// The table Moves: emptying, the lookup by (parent, move) and adding.
//
// The table is only written. The lookup goes to a tree in memory of the
// records added since Clear, so it sees a record the moment it is added and
// the database is never searched; moves compare byte for byte. Added records
// reach the table in batches of kBatch, each one INSERT ... SELECT over the
// batch, which costs SQLite a quarter less than a statement a record. Flush
// writes what is held back; whoever ends the transaction calls it first.
class MovesTable {
public:
    static constexpr size_t kBatch = 2048;

    explicit MovesTable(WorkingDatabase& db);
    ~MovesTable();
    MovesTable(const MovesTable&) = delete;
    MovesTable& operator=(const MovesTable&) = delete;

    // Empties the table and the tree; the one way an import starts.
    void Clear();
    // The index of the child of `parent` whose move is `move`; 0 for none.
    int32_t Find(int32_t parent, std::string_view move) const;
    // Records come with the indexes 1, 2, 3, ... in the order they are added,
    // as the tree store numbers them. A pair (parent, move) keeps its first
    // record.
    void Add(const MoveRow& row);
    // Writes the records held back. Throws DatabaseError; the batch is
    // dropped either way.
    void Flush();

    // The batch as the database reads it; a row's texts lie in `texts`.
    struct PendingRow {
        int32_t index;
        int32_t parent;
        int32_t newBranch;  // -1 / 0
        uint32_t start[6];  // text k is texts[start[k], start[k + 1]): move, book, description, remarks, layout
    };
    struct Pending {
        std::vector<PendingRow> rows;
        std::string texts;
    };

private:
    // One node of the tree in memory. A move of up to seven bytes, the usual
    // case, is held in `move` itself with its length in the top byte; a
    // longer one (a move as the user typed it in the repair dialog) stands in
    // longMoves_, and `move` holds kLongMove plus its place there.
    struct Node {
        uint64_t move = 0;
        int32_t firstChild = 0;   // index of the first child; 0 for none
        int32_t nextSibling = 0;  // index of the next child of the same parent
    };
    static constexpr uint64_t kLongMove = uint64_t{0xFF} << 56;

    bool Matches(const Node& node, uint64_t word, std::string_view move) const;
    int32_t FirstChild(int32_t parent) const;

    WorkingDatabase& db_;
    Pending pending_;
    Statement add_;
    std::vector<Node> nodes_;  // record i at nodes_[i - 1]
    int32_t firstRoot_ = 0;
    std::vector<std::string> longMoves_;
};

// Makes a fresh database file from the SQL script at schemaPath, replacing a
// file of that name. False, with the reason in *error, on failure.
bool CreateDatabaseFromSchema(const std::string& dbPath, const std::string& schemaPath,
                              std::string* error = nullptr);

}  // namespace vantrel::import
