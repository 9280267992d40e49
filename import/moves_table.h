// The working database Tessimo.mdb over SQLite: opening it (never creating
// it), prepared statements with bound values, and the table Moves as the
// tree store and the library writer use it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

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
    // The database could not grow: "Disk full".
    static constexpr int kDiskFullNumber = 61;

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
    // way are ignored: an operation that must know its work was kept calls
    // Commit itself.
    void Close() noexcept;
    bool IsOpen() const { return db_ != nullptr; }

    void Execute(const char* sql);
    Statement Prepare(const char* sql);
    void Begin();
    // Throws DatabaseError when the work can't be kept (a reader holds the
    // file, the disk is full, the file is read-only); nothing is kept then.
    void Commit();
    // Gives the room of deleted records back to the file system. Outside a
    // transaction only.
    void Reclaim();

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
// table is only written: the lookup goes to an index in memory of the
// records added since Clear, so it sees a record the moment it is added, and
// the database is never searched. Moves compare byte for byte.
class MovesTable {
public:
    explicit MovesTable(WorkingDatabase& db);

    // Empties the table and the index; the one way an import starts.
    void Clear();
    // The index of the child of `parent` whose move is `move`; 0 for none.
    int32_t Find(int32_t parent, std::string_view move);
    void Add(const MoveRow& row);

private:
    // A move of up to seven bytes, the usual case, is kept in the slot
    // itself, so that a lookup touches one cache line; a longer one (a move
    // as the user typed it in the repair dialog) stands in longMoves_.
    struct Slot {
        uint64_t move = 0;
        int32_t parent = 0;
        int32_t index = 0;  // 0: a free slot (records count from 1)
    };
    static constexpr size_t kFirstSlots = 1024;  // a power of two, as every size after it

    Slot* Lookup(int32_t parent, uint64_t move);
    void Grow();

    WorkingDatabase& db_;
    Statement add_;
    std::vector<Slot> slots_;
    size_t used_ = 0;
    std::unordered_map<std::string, int32_t> longMoves_;  // parent's 4 bytes + move
    std::string longKey_;
};

// Makes a fresh database file from the SQL script at schemaPath, replacing a
// file of that name. False, with the reason in *error, on failure.
bool CreateDatabaseFromSchema(const std::string& dbPath, const std::string& schemaPath,
                              std::string* error = nullptr);

}  // namespace vantrel::import
