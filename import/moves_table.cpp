#include "import/moves_table.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <utility>

namespace vantrel::import {

namespace {

[[noreturn]] void ThrowEngine(sqlite3* db, int rc) {
    const int code = db ? sqlite3_extended_errcode(db) : rc;
    // A database that can't grow is a full disk, whatever filled it.
    if ((code & 0xFF) == SQLITE_FULL)
        throw DatabaseError(DatabaseError::Kind::Engine, "Disk full", DatabaseError::kDiskFullNumber);
    const char* msg = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    throw DatabaseError(DatabaseError::Kind::Engine, msg ? msg : "database error", code);
}

// A move of up to seven bytes as one word: its bytes, and its length in the
// top byte.
constexpr size_t kShortMove = 7;

uint64_t MoveWord(std::string_view move) {
    uint64_t word = 0;
    if (!move.empty()) std::memcpy(&word, move.data(), move.size());
    return word | (static_cast<uint64_t>(move.size()) << 56);
}

size_t SlotHash(int32_t parent, uint64_t move) {
    uint64_t h = (move ^ (static_cast<uint64_t>(static_cast<uint32_t>(parent)) << 17)) * 0x9E3779B97F4A7C15ull;
    return static_cast<size_t>(h ^ (h >> 29));
}

void LongKey(std::string& key, int32_t parent, std::string_view move) {
    key.assign(reinterpret_cast<const char*>(&parent), sizeof parent);
    key.append(move);
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
    // One thread uses a connection: SQLite needs no locks of its own.
    int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
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

    // The table is scratch space, rebuilt by every import: no syncs to disk,
    // and a page cache of 32 MB, so that most pages of an import are
    // written once. The rollback journal stays a file, so that a program
    // that dies in the middle of an import leaves a sound database behind;
    // it costs next to nothing, as an import starts from an emptied and
    // shrunk file and the pages it adds need no journal.
    sqlite3_exec(db_, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    sqlite3_exec(db_, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
    sqlite3_exec(db_, "PRAGMA cache_size = -32768", nullptr, nullptr, nullptr);
}

void WorkingDatabase::Close() noexcept {
    if (!db_) return;
    // Statements still running would keep the transaction from ending.
    for (sqlite3_stmt* s = sqlite3_next_stmt(db_, nullptr); s; s = sqlite3_next_stmt(db_, s)) sqlite3_reset(s);
    // What a failed operation wrote so far stands, as far as it can: an
    // operation that must know its work was kept commits for itself.
    if (!sqlite3_get_autocommit(db_)) {
        sqlite3_busy_timeout(db_, 0);  // a close doesn't wait for other programs
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

void WorkingDatabase::Reclaim() { Execute("VACUUM"); }

// --- MovesTable ----------------------------------------------------------------

MovesTable::MovesTable(WorkingDatabase& db)
    : db_(db),
      add_(db.Prepare(R"(INSERT INTO Moves ("index", "parent", "move", "book", "description", "new_branch", )"
                      R"("remarks", "BoardLayout") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8))")) {}

void MovesTable::Clear() {
    db_.Execute("DELETE FROM Moves");
    slots_.assign(kFirstSlots, Slot{});
    used_ = 0;
    longMoves_.clear();
}

MovesTable::Slot* MovesTable::Lookup(int32_t parent, uint64_t move) {
    const size_t mask = slots_.size() - 1;
    for (size_t i = SlotHash(parent, move) & mask;; i = (i + 1) & mask) {
        Slot& slot = slots_[i];
        if (slot.index == 0 || (slot.move == move && slot.parent == parent)) return &slot;
    }
}

void MovesTable::Grow() {
    // At three quarters full every key goes to its place in a table twice the size.
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& slot : old)
        if (slot.index != 0) *Lookup(slot.parent, slot.move) = slot;
}

int32_t MovesTable::Find(int32_t parent, std::string_view move) {
    if (move.size() > kShortMove) {
        LongKey(longKey_, parent, move);
        const auto it = longMoves_.find(longKey_);
        return it == longMoves_.end() ? 0 : it->second;
    }
    if (slots_.empty()) slots_.assign(kFirstSlots, Slot{});
    return Lookup(parent, MoveWord(move))->index;
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

    // A pair keeps its first record.
    if (row.move.size() > kShortMove) {
        LongKey(longKey_, row.parent, row.move);
        longMoves_.emplace(longKey_, row.index);
        return;
    }
    if (slots_.empty()) slots_.assign(kFirstSlots, Slot{});
    if ((used_ + 1) * 4 > slots_.size() * 3) Grow();
    Slot* slot = Lookup(row.parent, MoveWord(row.move));
    if (slot->index != 0) return;
    *slot = Slot{MoveWord(row.move), row.parent, row.index};
    ++used_;
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
