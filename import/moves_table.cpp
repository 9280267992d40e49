#include "import/moves_table.h"

#include <sqlite3.h>
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>

#include <new>
#include <stdexcept>
#include <utility>

namespace vantrel::import {

// The records added and not yet written, as the database reads them; a
// row's texts lie in `texts`.
struct PendingRow {
    int32_t index;
    int32_t parent;
    int32_t newBranch;  // -1 / 0
    uint32_t start[6];  // text k is texts[start[k], start[k + 1]): move, book, description, remarks, layout
};
struct PendingBatch {
    std::vector<PendingRow> rows;
    std::string texts;
};

namespace {

// --- The batch as a table ------------------------------------------------------
//
// A read-only table over PendingBatch, known to the connection by
// name only (it has no xCreate, so it needs no CREATE VIRTUAL TABLE and
// leaves nothing in the database).

constexpr const char* kBatchModule = "vantrel_batch";

struct BatchTable {
    sqlite3_vtab base{};
    const PendingBatch* pending = nullptr;
};

struct BatchCursor {
    sqlite3_vtab_cursor base{};
    size_t row = 0;
};

const PendingBatch& PendingOf(sqlite3_vtab_cursor* cursor) {
    return *reinterpret_cast<BatchTable*>(cursor->pVtab)->pending;
}

int BatchConnect(sqlite3* db, void* aux, int, const char* const*, sqlite3_vtab** out, char**) {
    const int rc = sqlite3_declare_vtab(
        db, "CREATE TABLE x(\"index\", parent, move, book, description, new_branch, remarks, BoardLayout)");
    if (rc != SQLITE_OK) return rc;
    auto* table = new (std::nothrow) BatchTable;
    if (!table) return SQLITE_NOMEM;
    table->pending = static_cast<const PendingBatch*>(aux);
    *out = &table->base;
    return SQLITE_OK;
}

int BatchDisconnect(sqlite3_vtab* table) {
    delete reinterpret_cast<BatchTable*>(table);
    return SQLITE_OK;
}

int BatchBestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
    info->estimatedCost = 1;
    return SQLITE_OK;
}

int BatchOpen(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
    auto* cursor = new (std::nothrow) BatchCursor;
    if (!cursor) return SQLITE_NOMEM;
    *out = &cursor->base;
    return SQLITE_OK;
}

int BatchClose(sqlite3_vtab_cursor* cursor) {
    delete reinterpret_cast<BatchCursor*>(cursor);
    return SQLITE_OK;
}

int BatchFilter(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value**) {
    reinterpret_cast<BatchCursor*>(cursor)->row = 0;
    return SQLITE_OK;
}

int BatchNext(sqlite3_vtab_cursor* cursor) {
    ++reinterpret_cast<BatchCursor*>(cursor)->row;
    return SQLITE_OK;
}

int BatchEof(sqlite3_vtab_cursor* cursor) {
    return reinterpret_cast<BatchCursor*>(cursor)->row >= PendingOf(cursor).rows.size();
}

int BatchColumn(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column) {
    const PendingBatch& pending = PendingOf(cursor);
    const PendingRow& row = pending.rows[reinterpret_cast<BatchCursor*>(cursor)->row];
    auto text = [&](int k) {
        const uint32_t from = row.start[k];
        // The texts stay put until the statement has run.
        sqlite3_result_text(context, pending.texts.data() + from, static_cast<int>(row.start[k + 1] - from),
                            SQLITE_STATIC);
    };
    switch (column) {
        case 0: sqlite3_result_int(context, row.index); break;
        case 1: sqlite3_result_int(context, row.parent); break;
        case 2: text(0); break;
        case 3: text(1); break;
        case 4: text(2); break;
        case 5: sqlite3_result_int(context, row.newBranch); break;
        case 6: text(3); break;
        case 7: text(4); break;
        default: break;
    }
    return SQLITE_OK;
}

int BatchRowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* rowid) {
    *rowid = static_cast<sqlite3_int64>(reinterpret_cast<BatchCursor*>(cursor)->row);
    return SQLITE_OK;
}

const sqlite3_module kBatchTable = [] {
    sqlite3_module m{};
    m.xConnect = BatchConnect;
    m.xBestIndex = BatchBestIndex;
    m.xDisconnect = BatchDisconnect;
    m.xOpen = BatchOpen;
    m.xClose = BatchClose;
    m.xFilter = BatchFilter;
    m.xNext = BatchNext;
    m.xEof = BatchEof;
    m.xColumn = BatchColumn;
    m.xRowid = BatchRowid;
    return m;
}();

void RegisterBatch(sqlite3* db, PendingBatch* pending) {
    const int rc = sqlite3_create_module(db, kBatchModule, pending ? &kBatchTable : nullptr, pending);
    if (rc != SQLITE_OK && pending) ThrowEngine(db, rc);
}

}  // namespace

// --- MovesTable ----------------------------------------------------------------

template <class T>
T* MovesTable::HugePages<T>::allocate(size_t n) {
    constexpr size_t kHuge = size_t{2} << 20;
    const size_t bytes = n * sizeof(T);
    if (bytes < kHuge) {
        if (void* p = std::malloc(bytes)) return static_cast<T*>(p);
        throw std::bad_alloc();
    }
    void* p = std::aligned_alloc(kHuge, (bytes + kHuge - 1) / kHuge * kHuge);
    if (!p) throw std::bad_alloc();
    ::madvise(p, bytes, MADV_HUGEPAGE);  // a hint: without it the pages are small
    return static_cast<T*>(p);
}

MovesTable::MovesTable(WorkingDatabase& db)
    : db_(db), pending_(std::make_unique<PendingBatch>()), writing_(std::make_unique<PendingBatch>()) {
    RegisterBatch(db_.Handle(), writing_.get());
    try {
        add_ = db_.Prepare(R"(INSERT INTO Moves ("index", "parent", "move", "book", "description", "new_branch", )"
                           R"("remarks", "BoardLayout") SELECT * FROM vantrel_batch)");
    } catch (...) {
        RegisterBatch(db_.Handle(), nullptr);
        throw;
    }
    pending_->rows.reserve(kBatch);
}

MovesTable::~MovesTable() {
    if (writer_.joinable()) {
        {
            std::unique_lock<std::mutex> hold(writerLock_);
            queued_.clear();  // left by a failure: never written
            writerStop_ = true;
        }
        writerWake_.notify_all();
        writer_.join();
    }
    add_ = Statement();
    // The connection may outlive this table: it must forget the batch.
    if (db_.IsOpen()) RegisterBatch(db_.Handle(), nullptr);
}

void MovesTable::Clear() {
    WaitForWriter();
    pending_->rows.clear();
    pending_->texts.clear();
    db_.Execute("DELETE FROM Moves");
    nodes_.clear();
    firstRoot_ = 0;
    longMoves_.clear();
    lookup_.assign(kFirstLookup, Pair{});
    lookupMask_ = kFirstLookup - 1;
    pairs_ = 0;
}

bool MovesTable::Matches(const Node& node, uint64_t word, std::string_view move) const {
    if (word != kLongMove) return node.move == word;
    return (node.move & kLongMove) == kLongMove && longMoves_[node.move & ~kLongMove] == move;
}

int32_t MovesTable::FirstChild(int32_t parent) const {
    if (parent == 0) return firstRoot_;
    if (parent < 0 || static_cast<size_t>(parent) > nodes_.size()) return 0;
    return nodes_[static_cast<size_t>(parent) - 1].firstChild;
}

int32_t MovesTable::Find(int32_t parent, std::string_view move) const {
    const uint64_t word = Word(move);
    if (word != kLongMove) return Lookup(ChildKey(Key(parent), word), parent, word).child;
    for (int32_t child = FirstChild(parent); child != 0; child = nodes_[static_cast<size_t>(child) - 1].nextSibling)
        if (Matches(nodes_[static_cast<size_t>(child) - 1], word, move)) return child;
    return 0;
}

void MovesTable::Add(const MoveRow& row) {
    if (static_cast<size_t>(row.index) != nodes_.size() + 1)
        throw std::logic_error("record " + std::to_string(row.index) + " added out of order");
    if (pending_->rows.size() >= kBatch) {
        if (writer_.joinable())
            Queue();
        else
            Flush();
    }

    // Into the batch: the texts one behind the other.
    PendingRow pending{row.index, row.parent, row.newBranch ? -1 : 0, {}};
    const std::string_view texts[] = {row.move, row.book, row.description, row.remarks, row.layout};
    for (size_t k = 0; k < 5; ++k) {
        pending.start[k] = static_cast<uint32_t>(pending_->texts.size());
        pending_->texts.append(texts[k]);
    }
    pending.start[5] = static_cast<uint32_t>(pending_->texts.size());
    pending_->rows.push_back(pending);

    // Into the tree, as the last child of its parent, unless the parent has
    // a child with this move already.
    Node node;
    const uint64_t word = Word(row.move);
    node.key = ChildKey(Key(row.parent), word);
    if (word == kLongMove) {
        node.move = kLongMove | longMoves_.size();
        longMoves_.emplace_back(row.move);
    } else {
        node.move = word;
    }
    nodes_.push_back(node);
    int32_t* link = row.parent == 0 ? &firstRoot_
                    : (row.parent > 0 && row.parent < row.index) ? &nodes_[static_cast<size_t>(row.parent) - 1].firstChild
                                                                 : nullptr;
    while (link && *link != 0) {
        const Node& sibling = nodes_[static_cast<size_t>(*link) - 1];
        if (Matches(sibling, word, row.move)) return;
        link = &nodes_[static_cast<size_t>(*link) - 1].nextSibling;
    }
    if (!link) return;
    *link = row.index;
    if (word == kLongMove) return;
    // Into the lookup, which grows to keep at least a quarter of it free.
    if ((pairs_ + 1) * 4 > lookup_.size() * 3) {
        PairSlots old(lookup_.size() * 2);
        old.swap(lookup_);
        lookupMask_ = lookup_.size() - 1;
        for (const Pair& pair : old)
            if (pair.child != 0) Place(pair, Key(pair.child));
    }
    Place({word, row.tag, row.parent, row.index}, node.key);
    ++pairs_;
}

void MovesTable::Place(const Pair& pair, uint64_t key) {
    size_t at = Slot(key);
    while (lookup_[at].child != 0) at = (at + 1) & lookupMask_;
    lookup_[at] = pair;
}

void MovesTable::Flush() {
    WaitForWriter();
    if (pending_->rows.empty()) return;
    HandOver();
    Write();
}

// The rows added go to the batch that the database reads, whose room the
// batch being filled takes over.
void MovesTable::HandOver() {
    pending_->rows.swap(writing_->rows);
    pending_->texts.swap(writing_->texts);
}

void MovesTable::Write() {
    struct Drop {
        PendingBatch& batch;
        ~Drop() {
            batch.rows.clear();
            batch.texts.clear();
        }
    } drop{*writing_};
    try {
        add_.Step();
    } catch (...) {
        add_.Reset();
        throw;
    }
    add_.Reset();
}

void MovesTable::WriteBehind() {
    if (!writer_.joinable()) writer_ = std::thread([this] { WriterLoop(); });
}

// Hands the full batch to the writer, waiting only while kQueued batches
// are still to be written, and goes on with an empty one.
void MovesTable::Queue() {
    std::unique_lock<std::mutex> hold(writerLock_);
    writerWake_.wait(hold, [&] { return queued_.size() < kQueued || writerFailure_; });
    ThrowWriterFailure(hold);
    queued_.push_back(std::move(pending_));
    ++handedOver_;
    if (!spare_.empty()) {
        pending_ = std::move(spare_.back());
        spare_.pop_back();
    } else {
        pending_ = std::make_unique<PendingBatch>();
        pending_->rows.reserve(kBatch);
    }
    hold.unlock();
    writerWake_.notify_all();
}

void MovesTable::WaitForWriter() {
    if (!writer_.joinable()) return;
    std::unique_lock<std::mutex> hold(writerLock_);
    writerWake_.wait(hold, [&] { return (queued_.empty() && !writerBusy_) || writerFailure_; });
    ThrowWriterFailure(hold);
}

void MovesTable::ThrowWriterFailure(std::unique_lock<std::mutex>& hold) {
    if (!writerFailure_) return;
    // The batches behind the one that failed are dropped: the import ends.
    writerWake_.wait(hold, [&] { return !writerBusy_; });
    queued_.clear();
    writerFailed_ = true;
    const std::exception_ptr failure = std::exchange(writerFailure_, nullptr);
    hold.unlock();
    std::rethrow_exception(failure);
}

void MovesTable::WriterLoop() {
    // The writer takes only a core that the reader and the player leave
    // idle, so that it doesn't slow them, while it keeps up. Once it falls
    // behind by two batches more than the one in hand it takes its turn
    // like them: else the player soon waits for it, the reader for the
    // player, and a core stands idle.
    bool urgent = true;
    const auto keepPace = [&urgent](size_t behind) {
        const bool now = behind >= 2;
        if (now == urgent) return;
        urgent = now;
#ifdef __linux__
        const sched_param none{};
        pthread_setschedparam(pthread_self(), urgent ? SCHED_OTHER : SCHED_IDLE, &none);
#endif
    };
    keepPace(0);
    size_t taken = 0;  // batches taken from the queue
    std::unique_lock<std::mutex> hold(writerLock_);
    for (;;) {
        writerWake_.wait(hold, [&] { return !queued_.empty() || writerStop_; });
        if (queued_.empty()) return;
        std::unique_ptr<PendingBatch> batch = std::move(queued_.front());
        queued_.pop_front();
        ++taken;
        keepPace(queued_.size());
        writerBusy_ = true;
        const bool failedBefore = writerFailed_ || writerFailure_;
        hold.unlock();
        // The database reads writing_: the batch's rows go there, and the
        // batch takes writing_'s emptied room back.
        writing_->rows.swap(batch->rows);
        writing_->texts.swap(batch->texts);
        std::exception_ptr failure;
        try {
            if (!failedBefore) Write();
        } catch (...) {
            failure = std::current_exception();
        }
        writing_->rows.clear();
        writing_->texts.clear();
        writing_->rows.swap(batch->rows);
        writing_->texts.swap(batch->texts);
        hold.lock();
        if (failure && !writerFailure_) {
            writerFailure_ = failure;
            failedBatch_ = taken;
        }
        spare_.push_back(std::move(batch));
        writerBusy_ = false;
        writerWake_.notify_all();
    }
}

}  // namespace vantrel::import
