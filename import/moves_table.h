// The table Moves of the working database as the tree store and the library
// writer use it: emptying, the lookup by (parent, move) and adding.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "import/working_database.h"

namespace vantrel::import {

struct PendingBatch;  // the records held back, as the database reads them

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
    // Kept with the record in memory only, and handed back by Lookup.
    uint64_t tag = 0;
};

// The table is only written. The lookup goes to a tree in memory of the
// records added since Clear, so it sees a record the moment it is added and
// the database is never searched; moves compare byte for byte. Added records
// reach the table in batches of kBatch, each one INSERT ... SELECT over the
// batch, which costs SQLite a quarter less than a statement a record. Flush
// writes what is held back; whoever ends the transaction calls it first.
class MovesTable {
public:
    static constexpr size_t kBatch = 8192;

    explicit MovesTable(WorkingDatabase& db);
    ~MovesTable();
    MovesTable(const MovesTable&) = delete;
    MovesTable& operator=(const MovesTable&) = delete;

    // Empties the table and the tree; the one way an import starts.
    void Clear();
    // The index of the child of `parent` whose move is `move`; 0 for none.
    int32_t Find(int32_t parent, std::string_view move) const;

    // A walk down known moves, one lookup a ply, costs a trip to memory for
    // each: the lookup is spread over far more than the caches hold. Its
    // slots are therefore placed by a key of the node's whole line of moves,
    // which a caller can work out from the move texts alone, before it
    // knows the nodes, and so have every slot of a line fetched at once:
    // Key(0) is the root's key, ChildKey that of a move from a node.
    // Words and keys of moves of more than seven bytes are valid but find
    // nothing in Lookup.
    // These run for every ply of every game: they stand here, to be inlined.
    static uint64_t Word(std::string_view move) {
        // A move of up to seven bytes as one word: its bytes, and its length
        // in the top byte.
        if (move.size() > kShortMove) return kLongMove;
        uint64_t word = static_cast<uint64_t>(move.size()) << 56;
        for (size_t i = 0; i < move.size(); ++i)
            word |= static_cast<uint64_t>(static_cast<unsigned char>(move[i])) << (8 * i);
        return word;
    }
    static uint64_t ChildKey(uint64_t parentKey, uint64_t word) {
        uint64_t h = (parentKey ^ word) * 0x9E3779B97F4A7C15ull;
        h ^= h >> 29;
        h *= 0xBF58476D1CE4E5B9ull;
        return h ^ (h >> 32);
    }
    uint64_t Key(int32_t index) const {
        if (index <= 0 || static_cast<size_t>(index) > nodes_.size()) return rootKey_;
        return nodes_[static_cast<size_t>(index) - 1].key;
    }
    // Asks for the slot of `key` to be fetched; it doesn't wait.
    void Prefetch(uint64_t key) const { __builtin_prefetch(lookup_.data() + Slot(key)); }
    struct Found {
        int32_t child = 0;  // 0: none
        uint64_t tag = 0;
    };
    // The child of `parent` by `word`, whose key is `key`, with its tag.
    Found Lookup(uint64_t key, int32_t parent, uint64_t word) const {
        if (word == kLongMove) return {};
        const Pair* pairs = lookup_.data();
        for (size_t at = Slot(key);; at = (at + 1) & lookupMask_) {
            const Pair& pair = pairs[at];
            if (pair.child == 0) return {};
            if (pair.word == word && pair.parent == parent) return {pair.child, pair.tag};
        }
    }
    // Records come with the indexes 1, 2, 3, ... in the order they are added,
    // as the tree store numbers them. A pair (parent, move) keeps its first
    // record.
    void Add(const MoveRow& row);
    // Writes the records held back, and waits for a batch being written
    // behind. Throws DatabaseError; the batches are dropped either way.
    void Flush();

    // From now on a full batch is written on a thread of its own while the
    // next one fills (the command line; the window keeps to one thread).
    // The connection is then the writer's while it writes: the caller
    // touches it only after Flush. A write that fails is thrown by the
    // Add that hands over the next batch, or by Flush; Failed tells
    // whether that happened, and WrittenUpTo how far the table got.
    void WriteBehind();
    // How many batches have gone to the writer (the first is 1), and which
    // of them failed there once that failure has been thrown; 0 till then.
    size_t HandedOver() const { return handedOver_; }
    size_t FailedBatch() const { return writerFailed_ ? failedBatch_ : 0; }
    // Batches that may wait for the writer before Add waits for it.
    static constexpr size_t kQueued = 4;


private:
    // One node of the tree in memory. A move of up to seven bytes, the usual
    // case, is held in `move` itself with its length in the top byte; a
    // longer one (a move as the user typed it in the repair dialog) stands in
    // longMoves_, and `move` holds kLongMove plus its place there.
    struct Node {
        uint64_t move = 0;
        uint64_t key = 0;
        int32_t firstChild = 0;   // index of the first child; 0 for none
        int32_t nextSibling = 0;  // index of the next child of the same parent
    };
    static constexpr uint64_t kLongMove = uint64_t{0xFF} << 56;
    static constexpr size_t kShortMove = 7;

    bool Matches(const Node& node, uint64_t word, std::string_view move) const;
    int32_t FirstChild(int32_t parent) const;

    // The lookup of a short move: (parent, move) to the child, placed by the
    // child's key, with open addressing. A long move is looked for among the
    // parent's children.
    struct Pair {
        uint64_t word = 0;
        uint64_t tag = 0;
        int32_t parent = 0;
        int32_t child = 0;  // 0: the slot is free
    };
    static constexpr size_t kFirstLookup = 1024;
    size_t Slot(uint64_t key) const { return static_cast<size_t>(key) & lookupMask_; }
    void Place(const Pair& pair, uint64_t key);
    uint64_t rootKey_ = 0;
    // Megabytes reached at random: on huge pages where the system has them,
    // so that a fetch doesn't wait for a walk of the page tables as well.
    template <class T>
    struct HugePages {
        using value_type = T;
        HugePages() = default;
        template <class U>
        HugePages(const HugePages<U>&) {}
        T* allocate(size_t n);
        void deallocate(T* p, size_t) { std::free(p); }
        bool operator==(const HugePages&) const { return true; }
    };
    using PairSlots = std::vector<Pair, HugePages<Pair>>;
    PairSlots lookup_ = PairSlots(kFirstLookup);
    size_t lookupMask_ = kFirstLookup - 1;  // the lookup's size, a power of two, less one
    size_t pairs_ = 0;

    WorkingDatabase& db_;
    // Records are added to pending_; the database reads writing_, which
    // takes pending_'s rows when they are written.
    std::unique_ptr<PendingBatch> pending_;
    std::unique_ptr<PendingBatch> writing_;
    void HandOver();
    void Write();  // writing_ into the table
    void Queue();
    void WaitForWriter();
    void ThrowWriterFailure(std::unique_lock<std::mutex>& hold);
    void WriterLoop();
    std::thread writer_;
    std::mutex writerLock_;
    std::condition_variable writerWake_;
    std::deque<std::unique_ptr<PendingBatch>> queued_;  // oldest first
    std::vector<std::unique_ptr<PendingBatch>> spare_;  // written, for their room
    bool writerBusy_ = false;  // a batch is being written
    bool writerStop_ = false;
    std::exception_ptr writerFailure_;  // not yet thrown
    size_t handedOver_ = 0;
    size_t failedBatch_ = 0;
    bool writerFailed_ = false;  // thrown
    Statement add_;
    std::vector<Node> nodes_;  // record i at nodes_[i - 1]
    int32_t firstRoot_ = 0;
    std::vector<std::string> longMoves_;
};

}  // namespace vantrel::import
