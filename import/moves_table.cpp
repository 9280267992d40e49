#include "import/moves_table.h"

#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <utility>

namespace vantrel::import {

namespace {

[[noreturn]] void ThrowEngine(sqlite3* db, int rc) {
    const char* msg = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    const int code = db ? sqlite3_extended_errcode(db) : rc;
    throw DatabaseError(DatabaseError::Kind::Engine, msg ? msg : "database error", code);
}

}  // namespace

// --- Statement ---------------------------------------------------------------

Statement::Statement(sqlite3* db, const char* sql) : db_(db) {
    const int rc = sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(stmt_);
        stmt_ = nullptr;
        ThrowEngine(db, rc);
    }
}

Statement::Statement(Statement&& other) noexcept
    : db_(std::exchange(other.db_, nullptr)), stmt_(std::exchange(other.stmt_, nullptr)) {}

Statement& Statement::operator=(Statement&& other) noexcept {
    if (this != &other) {
        sqlite3_finalize(stmt_);
        db_ = std::exchange(other.db_, nullptr);
        stmt_ = std::exchange(other.stmt_, nullptr);
    }
    return *this;
}

Statement::~Statement() { sqlite3_finalize(stmt_); }

void Statement::Fail(int rc) const { ThrowEngine(db_, rc); }

void Statement::Bind(int param, int64_t value) {
    const int rc = sqlite3_bind_int64(stmt_, param, value);
    if (rc != SQLITE_OK) Fail(rc);
}

void Statement::Bind(int param, std::string_view text) {
    // An empty view may carry a null pointer, which SQLite would take as NULL.
    const char* data = text.data() ? text.data() : "";
    const int rc = sqlite3_bind_text(stmt_, param, data, static_cast<int>(text.size()), SQLITE_STATIC);
    if (rc != SQLITE_OK) Fail(rc);
}

void Statement::BindNull(int param) {
    const int rc = sqlite3_bind_null(stmt_, param);
    if (rc != SQLITE_OK) Fail(rc);
}

bool Statement::Step() {
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    Fail(rc);
}

void Statement::Reset() { sqlite3_reset(stmt_); }

bool Statement::IsNull(int column) const { return sqlite3_column_type(stmt_, column) == SQLITE_NULL; }

int64_t Statement::Int(int column) const { return sqlite3_column_int64(stmt_, column); }

std::string_view Statement::TextView(int column) const {
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
    if (!p) return {};
    return std::string_view(p, static_cast<size_t>(sqlite3_column_bytes(stmt_, column)));
}

// --- WorkingDatabase -----------------------------------------------------------

void WorkingDatabase::Open(const std::string& path) {
    Close();
    sqlite3* db = nullptr;
    // No SQLITE_OPEN_CREATE: a missing file is a failure, never a new database.
    int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close_v2(db);
        throw DatabaseError(DatabaseError::Kind::MissingDatabase, "Couldn't find file '" + path + "'",
                            DatabaseError::kNoDatabaseNumber);
    }
    db_ = db;
    sqlite3_busy_timeout(db_, 2000);

    // Table names are matched without regard to case, as the engine does.
    sqlite3_stmt* check = nullptr;
    rc = sqlite3_prepare_v2(db_,
                            "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'Moves' COLLATE NOCASE",
                            -1, &check, nullptr);
    if (rc == SQLITE_OK) rc = sqlite3_step(check);
    sqlite3_finalize(check);
    if (rc == SQLITE_DONE) {
        Close();
        throw DatabaseError(DatabaseError::Kind::MissingTable, "Couldn't find table 'Moves'",
                            DatabaseError::kNoTableNumber);
    }
    if (rc != SQLITE_ROW) {
        // Not a database at all (or one the engine can't read).
        Close();
        throw DatabaseError(DatabaseError::Kind::MissingDatabase, "Unrecognized database format '" + path + "'",
                            DatabaseError::kNoDatabaseNumber);
    }

    // The table is scratch space, rebuilt by every import, so the disk syncs
    // are skipped. The rollback journal stays a file: it costs little, keeps
    // the memory flat however big an import grows, and a program that dies
    // in the middle of an import still leaves a sound database behind.
    sqlite3_exec(db_, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
}

void WorkingDatabase::Close() noexcept {
    if (!db_) return;
    // Statements still running would keep the transaction from ending.
    for (sqlite3_stmt* s = sqlite3_next_stmt(db_, nullptr); s; s = sqlite3_next_stmt(db_, s)) sqlite3_reset(s);
    if (!sqlite3_get_autocommit(db_)) {
        if (sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK)
            sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    // close_v2 waits for statements that are still to be finalized.
    sqlite3_close_v2(db_);
    db_ = nullptr;
}

void WorkingDatabase::Execute(const char* sql) {
    const int rc = sqlite3_exec(db_, sql, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) ThrowEngine(db_, rc);
}

Statement WorkingDatabase::Prepare(const char* sql) { return Statement(db_, sql); }

void WorkingDatabase::Begin() { Execute("BEGIN"); }

void WorkingDatabase::Commit() { Execute("COMMIT"); }

// --- MovesTable ----------------------------------------------------------------

MovesTable::MovesTable(WorkingDatabase& db)
    : db_(db),
      find_(db.Prepare(R"(SELECT "index" FROM Moves WHERE "parent" = ?1 AND "move" = ?2 ORDER BY "index" LIMIT 1)")),
      add_(db.Prepare(R"(INSERT INTO Moves ("index", "parent", "move", "book", "description", "new_branch", )"
                      R"("remarks", "BoardLayout") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8))")) {}

void MovesTable::Clear() { db_.Execute("DELETE FROM Moves"); }

int32_t MovesTable::Find(int32_t parent, std::string_view move) {
    find_.Bind(1, parent);
    find_.Bind(2, move);
    int32_t found = 0;
    try {
        if (find_.Step()) found = static_cast<int32_t>(find_.Int(0));
    } catch (...) {
        find_.Reset();
        throw;
    }
    find_.Reset();
    return found;
}

void MovesTable::Add(const MoveRow& row) {
    add_.Bind(1, row.index);
    add_.Bind(2, row.parent);
    add_.Bind(3, row.move);
    add_.Bind(4, row.book);
    add_.Bind(5, row.description);
    add_.Bind(6, row.newBranch ? -1 : 0);
    add_.Bind(7, row.remarks);
    add_.Bind(8, row.layout);
    try {
        add_.Step();
    } catch (...) {
        add_.Reset();
        throw;
    }
    add_.Reset();
}

// --- Making a database ------------------------------------------------------------

bool CreateDatabaseFromSchema(const std::string& dbPath, const std::string& schemaPath, std::string* error) {
    auto fail = [&](const std::string& why) {
        if (error) *error = why;
        return false;
    };
    std::ifstream in(schemaPath, std::ios::binary);
    if (!in) return fail("can't read " + schemaPath);
    std::ostringstream script;
    script << in.rdbuf();

    std::remove(dbPath.c_str());
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(dbPath.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
        std::string why = "can't create " + dbPath + ": " + (db ? sqlite3_errmsg(db) : "out of memory");
        sqlite3_close_v2(db);
        return fail(why);
    }
    // A new file has nothing to protect: no syncs while it is being made.
    sqlite3_exec(db, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    char* msg = nullptr;
    if (sqlite3_exec(db, script.str().c_str(), nullptr, nullptr, &msg) != SQLITE_OK) {
        std::string why = "schema " + schemaPath + ": " + (msg ? msg : "error");
        sqlite3_free(msg);
        sqlite3_close_v2(db);
        std::remove(dbPath.c_str());
        return fail(why);
    }
    if (sqlite3_close_v2(db) != SQLITE_OK) return fail("can't close " + dbPath);
    return true;
}

}  // namespace vantrel::import
