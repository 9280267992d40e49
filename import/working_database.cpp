#include "import/working_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <sstream>
#include <utility>

#include "library/files.h"

namespace vantrel::import {

[[noreturn]] void ThrowEngine(sqlite3* db, int rc) {
    const int code = db ? sqlite3_extended_errcode(db) : rc;
    // A database that can't grow is a full disk, whatever filled it.
    if ((code & 0xFF) == SQLITE_FULL)
        throw DatabaseError(DatabaseError::Kind::Engine, "Disk full", errors::kDiskFull);
    const char* msg = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    throw DatabaseError(DatabaseError::Kind::Engine, msg ? msg : "database error", code);
}

namespace {

// SQLite keeps no memory statistics, so that its allocations take no lock.
// The setting holds only before SQLite's first use in the process; later it
// is refused, which does no harm.
void ConfigureEngine() {
    static const bool configured = [] {
        sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
        return true;
    }();
    (void)configured;
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
    ConfigureEngine();
    sqlite3* db = nullptr;
    // No SQLITE_OPEN_CREATE: a missing file is a failure, never a new database.
    // One thread at a time uses a connection: SQLite needs no locks of its own.
    int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        struct stat st{};
        const std::string why = ::stat(path.c_str(), &st) != 0 ? "' is missing"
                                : S_ISDIR(st.st_mode)         ? "' is a folder"
                                                              : "' can't be opened: " + std::string(sqlite3_errmsg(db));
        sqlite3_close_v2(db);
        throw DatabaseError(DatabaseError::Kind::MissingDatabase, "'" + path + why, errors::kNoDatabase);
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
    if (rc == SQLITE_BUSY || rc == SQLITE_LOCKED) {
        // Another program holds the file: not the same as a broken one.
        const std::string why = sqlite3_errmsg(db_);
        Close();
        throw DatabaseError(DatabaseError::Kind::Engine, why, errors::kBusy);
    }
    if (rc == SQLITE_DONE) {
        Close();
        struct stat st{};
        const bool empty = ::stat(path.c_str(), &st) == 0 && st.st_size == 0;
        throw DatabaseError(DatabaseError::Kind::MissingTable,
                            "'" + path + (empty ? "' is empty" : "' has no table Moves"),
                            errors::kNoTable);
    }
    if (rc != SQLITE_ROW) {
        // Not a database at all (or one the engine can't read).
        Close();
        throw DatabaseError(DatabaseError::Kind::MissingDatabase, "'" + path + "' is not a database",
                            errors::kNoDatabase);
    }

    // The table is scratch space, rebuilt by every import: no syncs to disk,
    // and a page cache of 8 MB. That holds the index pages that an import
    // of real games keeps coming back to; a bigger cache saves only some
    // rewrites of pages of made-up games, and takes cache room that the
    // walk over known moves needs. The rollback journal stays a file, so
    // that a program that dies in the middle of an import leaves a sound
    // database behind; it costs next to nothing, as an import starts from
    // an emptied and shrunk file and the pages it adds need no journal.
    sqlite3_exec(db_, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    sqlite3_exec(db_, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
    sqlite3_exec(db_, "PRAGMA cache_size = -8192", nullptr, nullptr, nullptr);
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

// --- The hold of an import ------------------------------------------------------
//
// An advisory lock (flock) on the database file. It is apart from SQLite's
// own locks, which last a transaction at most; this one lasts from the
// emptying to the end of the library's write.

namespace {

[[noreturn]] void ThrowBusy() {
    throw DatabaseError(DatabaseError::Kind::Engine, "database is locked", errors::kBusy);
}

bool SameFile(int fd, const std::string& path) {
    struct stat held{}, named{};
    return ::fstat(fd, &held) == 0 && ::stat(path.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
           held.st_ino == named.st_ino;
}

}  // namespace

void ImportLock::Acquire(const std::string& path) {
    Release();
    // The file may be replaced by an import that empties it between our open
    // and our lock; then the lock is taken again, on the file now there.
    for (int attempt = 0; attempt < 8; ++attempt) {
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (fd < 0)
            throw DatabaseError(DatabaseError::Kind::MissingDatabase, "'" + path + "' is missing",
                                errors::kNoDatabase);
        if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
            ::close(fd);
            ThrowBusy();
        }
        if (SameFile(fd, path)) {
            fd_ = fd;
            return;
        }
        ::close(fd);
    }
    ThrowBusy();
}

void ImportLock::Release() noexcept {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
}

// --- Emptying --------------------------------------------------------------------

namespace {

// A statement run on a connection of its own; throws as the others do.
void Run(sqlite3* db, const std::string& sql) {
    const int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) ThrowEngine(db, rc);
}

std::string QuotedName(std::string_view name) {
    std::string out = "\"";
    for (const char c : name) {
        out += c;
        if (c == '"') out += '"';
    }
    return out + '"';
}

void SyncFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return;
    const int rc = ::fsync(fd);
    const int error = errno;
    ::close(fd);
    if (rc != 0 && error == ENOSPC)
        throw DatabaseError(DatabaseError::Kind::Engine, "Disk full", errors::kDiskFull);
}

}  // namespace

void EmptyWorkingDatabase(WorkingDatabase& db, const std::string& path, ImportLock& lock) {
    // Nothing to give back: no records, no free pages.
    {
        Statement used = db.Prepare(
            "SELECT (SELECT COUNT(*) FROM (SELECT 1 FROM Moves LIMIT 1)) + (SELECT freelist_count FROM "
            "pragma_freelist_count)");
        used.Step();
        if (used.Int(0) == 0) return;
    }
    // What the copy takes over: the file's settings, the schema in the order
    // it was made, and the tables other than Moves.
    Statement settings = db.Prepare(
        "SELECT (SELECT page_size FROM pragma_page_size), (SELECT auto_vacuum FROM pragma_auto_vacuum), "
        "(SELECT user_version FROM pragma_user_version)");
    settings.Step();
    const std::string pragmas = "PRAGMA page_size = " + std::to_string(settings.Int(0)) +
                                "; PRAGMA auto_vacuum = " + std::to_string(settings.Int(1)) +
                                "; PRAGMA user_version = " + std::to_string(settings.Int(2)) + ";";
    settings.Reset();
    std::vector<std::string> schema, kept;
    {
        Statement objects = db.Prepare(
            "SELECT type, name, sql FROM sqlite_master WHERE sql IS NOT NULL AND name NOT LIKE 'sqlite\\_%' "
            "ESCAPE '\\' ORDER BY rowid");
        while (objects.Step()) {
            schema.emplace_back(objects.TextView(2));
            const std::string_view name = objects.TextView(1);
            if (objects.TextView(0) == "table" && sqlite3_stricmp(std::string(name).c_str(), "Moves") != 0)
                kept.emplace_back(name);
        }
    }

    const std::string fresh = path + ".new";
    ::unlink(fresh.c_str());
    ::unlink((fresh + "-journal").c_str());
    sqlite3* copy = nullptr;
    int rc = sqlite3_open_v2(fresh.c_str(), &copy, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    struct CloseCopy {
        sqlite3*& db;
        ~CloseCopy() { sqlite3_close_v2(db); }
    } closeCopy{copy};
    try {
        if (rc != SQLITE_OK) ThrowEngine(copy, rc);
        // A new file has nothing to protect until it takes the old one's place.
        Run(copy, "PRAGMA synchronous = OFF; PRAGMA journal_mode = OFF; " + pragmas);
        Run(copy, "BEGIN");
        for (const std::string& sql : schema) Run(copy, sql);
        if (!kept.empty()) {
            {
                Statement attach(copy, "ATTACH DATABASE ?1 AS old");
                attach.Bind(1, path);
                attach.Step();
            }
            for (const std::string& table : kept)
                Run(copy, "INSERT INTO main." + QuotedName(table) + " SELECT * FROM old." + QuotedName(table));
        }
        Run(copy, "COMMIT");
        if (!kept.empty()) Run(copy, "DETACH DATABASE old");
        rc = sqlite3_close_v2(copy);
        copy = nullptr;
        if (rc != SQLITE_OK) ThrowEngine(nullptr, rc);
        SyncFile(fresh);

        // The hold moves to the new file before it takes the name, so that
        // no other import can come in between.
        const int held = ::open(fresh.c_str(), O_RDONLY | O_CLOEXEC);
        if (held < 0 || ::flock(held, LOCK_EX | LOCK_NB) != 0) {
            if (held >= 0) ::close(held);
            ThrowBusy();
        }
        db.Close();
        if (::rename(fresh.c_str(), path.c_str()) != 0) {
            const int error = errno;
            ::close(held);
            db.Open(path);
            throw DatabaseError(DatabaseError::Kind::Engine, "Couldn't replace '" + path + "': " + std::strerror(error),
                                errors::kBusy);
        }
        lock.Release();
        lock.fd_ = held;
        SyncFile(library::FolderOf(path));
    } catch (...) {
        ::unlink(fresh.c_str());
        throw;
    }
    db.Open(path);
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
    ConfigureEngine();
    sqlite3* raw = nullptr;
    const int opened = sqlite3_open_v2(dbPath.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    // Closed on every way out; the close at the end is checked.
    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> db(raw, sqlite3_close_v2);
    if (opened != SQLITE_OK)
        return fail("can't create " + dbPath + ": " + (raw ? sqlite3_errmsg(raw) : "out of memory"));
    // A new file has nothing to protect: no syncs while it is being made.
    sqlite3_exec(db.get(), "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    char* msg = nullptr;
    if (sqlite3_exec(db.get(), script.str().c_str(), nullptr, nullptr, &msg) != SQLITE_OK) {
        std::string why = "schema " + schemaPath + ": " + (msg ? msg : "error");
        sqlite3_free(msg);
        db.reset();
        std::remove(dbPath.c_str());
        return fail(why);
    }
    if (sqlite3_close_v2(db.release()) != SQLITE_OK) return fail("can't close " + dbPath);
    return true;
}

}  // namespace vantrel::import
