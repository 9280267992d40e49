#include "import/tree_store.h"

#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "chess/replay.h"
#include "chess/resolver.h"
#include "import/game_feed.h"
#include "import/moves_table.h"
#include "import/program_dir.h"
#include "import/readers.h"
#include "import/record_spool.h"
#include "library/format.h"
#include "library/text.h"
#include "library/text_codec.h"

namespace vantrel::import {

namespace {

std::string Trim(std::string_view s) { return std::string(text::TrimBlanks(s)); }

// A write cancelled that leaves no library behind.
struct Cancelled {};

constexpr const char* kTroubleText = "Trouble with 'Tessimo.Mdb'";
constexpr const char* kTroubleTitle = "Couldn't parse book";

// The bytes of the header of a library with this name and these remarks.
uint64_t HeaderBytes(std::string_view book, std::string_view remarks) {
    library::LibraryHeader header;
    header.book = book;
    header.LibRemarks = remarks;
    std::string bytes;
    library::EncodeHeader(header, bytes);
    return bytes.size();
}

}  // namespace

void Report(ImportHost& host, const std::string& fileText) {
    try {
        throw;
    } catch (const FileNotOpened&) {
        host.Message(fileText, "");
    } catch (const DatabaseError& e) {
        if (e.kind() == DatabaseError::Kind::Engine) {
            host.ShowError(e.what(), e.number());
        } else {
            host.Notice(e.what());  // which file, and what is wrong with it
            host.Message(kTroubleText, kTroubleTitle);
        }
    } catch (const Error& e) {
        host.ShowError(e.what(), e.number());
    } catch (const std::bad_alloc&) {
        host.ShowError("Out of memory", errors::kOutOfMemory);
    } catch (const std::exception& e) {
        host.ShowError(e.what(), errors::kInternalError);
    }
}

namespace {

// A move's word, as MovesTable::Word(chess::NodeText(move)) gives it: for
// a short move that can't be castling, straight from the slot's bytes.
uint64_t WordOf(const SlotText& move) {
    if constexpr (std::endian::native == std::endian::little) {
        const uint64_t bytes = move.ShortBytes();
        const auto first = static_cast<char>(bytes);
        if (bytes != 0 && first != 'o' && first != 'O' && first != '0')
            return bytes | static_cast<uint64_t>(move.size()) << 56;
    }
    return MovesTable::Word(chess::NodeText(move));
}

// One run of BuildTree, with the state that lives from game to game.
class TreeBuilder {
public:
    TreeBuilder(const ImportOptions& options, ImportHost& host) : options_(options), host_(host) {}

    // The whole import. Returns the result; throws on failure.
    bool Run(WorkingDatabase& db, ImportLock& hold, LineSource& file, ImportState& state) {
        const std::string path = DatabasePath(options_);
        hold.Acquire(path);
        db.Open(path);
        // The emptied table gives its room back before the import grows it
        // again, so the file holds no more than the last import needs.
        EmptyWorkingDatabase(db, path, hold);
        MovesTable table(db);
        table.Clear();
        if (options_.writeBehind) table.WriteBehind();
        if (options_.spoolRecords) {
            spool_ = std::make_shared<RecordSpool>();
            if (!spool_->Open(library::FolderOf(LibraryPath(options_)))) spool_.reset();
        }
        // One transaction for the whole import. Its commit is the import's
        // last step, on a cancel too: an import whose records didn't reach
        // the file has failed.
        db.Begin();

        state.ImportAtEnd = false;
        if (!file.Open(inFile_)) throw FileNotOpened{};
        state.ImportFile = &file;
        state.ImportFirstGame = true;
        state.ImportRemarks.clear();
        state.PlyLimit = options_.plyLimit;
        GameFeed feed(file, state, GameReader(options_), options_.readAhead);

        bool result = false;
        int32_t gameNumber = 0;
        int32_t current = 0;  // the game being read or played
        // A batch written behind fails after its game has been played: the
        // failure is told in the game that handed it over. The games of the
        // batches that may still be waiting are kept, batch n in slot n
        // modulo their number.
        struct Handed {
            size_t batch = 0;
            int32_t number = 0;
            int64_t line = 0;
            GameRecord game;
        };
        std::vector<Handed> handed(options_.writeBehind ? MovesTable::kQueued + 2 : 0);
        size_t lastHanded = 0;
        const auto failedInHanded = [&] {
            const size_t failed = table.FailedBatch();
            if (handed.empty() || failed == 0) return;
            const Handed& h = handed[failed % handed.size()];
            if (h.batch == failed) host_.FailedInGame(h.number, h.line, h.game);
        };
        try {
            for (;;) {
                current = gameNumber + 1;
                GameFeed::Game* read = feed.Next();
                if (read == nullptr) break;
                game_ = &read->record;
                if (spool_ && gameNumber == 0) {
                    // The remarks stand before the first game, so the
                    // header's size is known now: its room goes ahead of
                    // the records. (The reader is done with them.)
                    spool_->Reserve(HeaderBytes(bookName_, state.ImportRemarks));
                }
                board_.ResetImportBoard();
                const int16_t n = read->lastPly;
                if (n > 0) result = true;
                if (n >= 0) host_.GameRead(++gameNumber, n, *game_);
                host_.ReadProgress(read->bytes);

                const GameEnd end = PlayGame(table, n);
                if (table.HandedOver() != lastHanded) {
                    lastHanded = table.HandedOver();
                    handed[lastHanded % handed.size()] = {lastHanded, current, read->line, *game_};
                }
                if (end == GameEnd::Cancelled) {
                    result = false;
                    break;
                }
            }
        } catch (...) {
            static const GameRecord kNoGame;
            const GameFeed::Game* failed = feed.Current();
            if (table.FailedBatch() != 0)
                failedInHanded();
            else
                host_.FailedInGame(current, failed != nullptr ? failed->line : file.LineNumber(),
                                   failed != nullptr ? failed->record : kNoGame);
            // The records so far go to the table all the same, as far as it
            // takes them.
            try {
                table.Flush();
            } catch (...) {
            }
            throw;
        }
        feed.Stop();
        // The library's records go to the disk while the table's last
        // batches are written.
        if (spool_) spool_->SyncAhead();
        try {
            table.Flush();
        } catch (...) {
            if (table.FailedBatch() != 0) failedInHanded();
            throw;
        }
        db.Commit();
        return result;
    }

    int32_t RecordCount() const { return counter_; }
    // The records encoded on the way, if they all were.
    std::shared_ptr<RecordSpool> Spool() {
        if (spool_ && spool_->Finish() && spool_->Count() == counter_) return spool_;
        return nullptr;
    }

private:
    enum class GameEnd { Done, Skipped, Cancelled };

    GameEnd PlayGame(MovesTable& table, int16_t n) {
        GameRecord& game = *game_;
        const std::string_view gameName = game.GameMoves[0];
        const std::string& gameComment = game.GameComments[0];
        int32_t parent = 0;
        bool branched = false;
        bool addRecord = false;

        // The keys of the plies ahead are worked out, and their slots
        // fetched, a few plies before the walk needs them.
        keys_[0] = table.Key(0);
        int16_t keyed = 0;
        // Moves on known ground are put on the board only when a move comes
        // that needs the board: most games end on known ground, and then
        // only their en passant record, which the next game inherits, is
        // brought up to date.
        int16_t played = 0;
        const auto catchUp = [&](int16_t upTo) {
            for (; played < upTo; ++played) chess::Replay(board_, steps_[played + 1], static_cast<int16_t>(played + 1));
        };
        for (int16_t i = 1; i <= n; ++i) {
            if (!branched) {
                for (const int16_t last = std::min<int16_t>(n, static_cast<int16_t>(i + kAhead)); keyed < last;) {
                    ++keyed;
                    words_[keyed] = WordOf(game.GameMoves[keyed]);
                    keys_[keyed] = MovesTable::ChildKey(keys_[keyed - 1], words_[keyed]);
                    table.Prefetch(keys_[keyed]);
                }
                // On known ground a move that an earlier game played from
                // this node is played back as it was resolved then.
                const MovesTable::Found known = table.Lookup(keys_[i], parent, words_[i]);
                if (known.child != 0 && known.tag != chess::kNoStep) {
                    steps_[i] = known.tag;
                    parent = known.child;
                    continue;
                }
            }
            catchUp(static_cast<int16_t>(i - 1));
            played = i;  // the resolver plays this one
            // The resolver rewrites castling in its own copy; GameMoves keeps
            // what the file said.
            move_ = game.GameMoves[i];
            recorder_.Before(board_);
            chess::ResolveResult rc = chess::ResolveMove(board_, move_, i);
            while (rc != chess::kResolved) {
                const FixMoveAction action = host_.AskFixMove(i, n, rc, game, board_);
                if (action == kFixAccept) {
                    move_ = game.GameMoves[i];
                    rc = chess::ResolveMove(board_, move_, i);
                } else if (action == kFixSkip) {
                    return GameEnd::Skipped;
                } else {
                    return GameEnd::Cancelled;
                }
            }

            if (!branched) {
                const int32_t found = table.Find(parent, move_);
                if (found == 0) {
                    branched = true;
                    addRecord = true;
                    firstNew_ = true;
                } else {
                    parent = found;
                    // The keys ahead go on from the node as it stands.
                    keys_[i] = table.Key(found);
                    keyed = i;
                }
            } else {
                addRecord = true;
            }

            if (addRecord) {
                ++counter_;
                if (host_.ShowsCount()) host_.ShowCount(std::to_string(counter_));
                host_.Yield();
                if (!host_.Running()) return GameEnd::Cancelled;

                MoveRow row;
                row.index = counter_;
                row.parent = parent;
                row.move = move_;
                row.book = bookName_;
                if (firstNew_) {
                    description_ = move_;
                    if (!text::IsBlank(gameName)) {
                        description_ += text::kNameSeparator;
                        description_ += gameName;
                    }
                    row.newBranch = true;
                    if (text::IsBlank(gameComment)) {
                        remarks_ = game.GameComments[i];
                    } else {
                        remarks_ = gameComment;
                        remarks_ += "\r\n";
                        remarks_ += game.GameComments[i];
                    }
                    row.description = description_;
                    row.remarks = remarks_;
                    firstNew_ = false;
                } else {
                    row.description = move_;
                    row.newBranch = false;
                    row.remarks = game.GameComments[i];
                }
                board_.BoardToLayout(layout_);
                row.layout = layout_;
                row.tag = recorder_.After(board_);
                table.Add(row);
                if (spool_) spool_->Add(row.index, row.parent, row.newBranch, row.description, row.remarks, row.layout);
                parent = counter_;
            }
        }
        if (played < n) chess::ReplayEnPassant(board_, steps_.data(), played, n);
        return GameEnd::Done;
    }

    const ImportOptions& options_;
    ImportHost& host_;
    const std::string inFile_ = Trim(options_.inFile);
    const std::string bookName_ = Trim(options_.bookName);

    // One board for the whole import: its en passant record carries over
    // from one game to the next, as ResetImportBoard leaves it alone.
    chess::ImportBoard board_;
    // What the move of a record did to the board is its tag in the table.
    chess::StepRecorder recorder_;
    std::shared_ptr<RecordSpool> spool_;
    // The walk over known ground: how many plies ahead a slot is fetched,
    // and each ply's step (until it is put on the board), move word and key.
    static constexpr int16_t kAhead = 8;
    std::array<chess::Step, kMaxPly + 1> steps_{};
    std::array<uint64_t, kMaxPly + 1> words_{};
    std::array<uint64_t, kMaxPly + 1> keys_{};
    GameRecord* game_ = nullptr;  // the game being played, as the feed holds it
    int32_t counter_ = 0;
    bool firstNew_ = false;

    // Buffers reused from record to record.
    std::string move_;
    std::string description_;
    std::string remarks_;
    std::string layout_;
};

}  // namespace

std::string LibraryPath(const ImportOptions& options) {
    const std::string dir = options.programDir.empty() ? std::string(".") : options.programDir;
    // The name is library text (1252); the file system wants UTF-8.
    const std::string name =
        options.libraryFile.empty() ? text::Cp1252ToUtf8(Trim(options.bookName)) : Trim(options.libraryFile);
    return dir + "/" + name + ".vnb";
}

GameFeed::Reader GameReader(const ImportOptions& options) {
    if (!options.pgn)
        return [start = options.commentStart, end = options.commentEnd](ImportState& state, GameRecord& game) {
            return ReadSanGame(state, game, start, end);
        };
    PgnTagChoice tags;
    tags.chkTag = options.tags;
    tags.chkIgnoreQuestion = options.ignoreQuestion;
    tags.byName = options.tagNames;
    return [tags = std::move(tags)](ImportState& state, GameRecord& game) { return ReadPgnGame(state, game, tags); };
}

std::string DatabasePath(const ImportOptions& options) {
    if (!options.databasePath.empty()) return options.databasePath;
    const std::string dir = options.programDir.empty() ? std::string(".") : options.programDir;
    return dir + "/" + install::kDatabaseFile;
}

bool BuildTree(const ImportOptions& options, ImportHost& host, ImportSession& session) {
    session.ImportRemarks.clear();
    session.recordCount = 0;
    session.hold.reset();  // a new import of the same session
    session.spool.reset();

    WorkingDatabase db;
    LineSource file;
    ImportState state;
    // The builder holds a whole board and the steps of every record; keep
    // it off the stack.
    auto builder = std::make_unique<TreeBuilder>(options, host);
    auto hold = std::make_shared<ImportLock>();
    bool result = false;
    try {
        result = builder->Run(db, *hold, file, state);
    } catch (...) {
        result = false;
        // Texts for the host are library text, like the names in them.
        Report(host, "Couldn't open " + text::AnyToCp1252(Trim(options.inFile)));
    }
    // After a failure, the records so far stand in the table as far as the
    // close can keep them; nothing reads them.
    file.Close();
    db.Close();
    // The records stay this import's until its library is written.
    if (result) {
        session.hold = std::move(hold);
        session.spool = builder->Spool();
    }

    session.ImportRemarks = state.ImportRemarks;
    session.recordCount = builder->RecordCount();
    session.book = Trim(options.bookName);
    return result;
}

// What the writer's errno says, as the user is told it.
[[noreturn]] void ThrowWriteError(int error, const std::string& fileName) {
    if (error == ENOSPC || error == EDQUOT) throw Error("Disk full", errors::kDiskFull);
    throw Error("Couldn't write " + fileName + ": " + std::strerror(error), errors::kPathFileAccessError);
}

// A text longer than a library can hold is cut by the writer; the host may
// want to say so. `what` names it, and record 0 is the header.
void NoteCutBytes(ImportHost& host, size_t bytes, const char* what, int32_t record) {
    if (bytes <= library::kMaxStringBytes) return;
    std::string note = what;
    if (record > 0) note += " of record " + std::to_string(record);
    note += " has " + std::to_string(bytes) + " bytes: cut to the " + std::to_string(library::kMaxStringBytes) +
            " that a library can hold";
    host.Notice(note);
}

void NoteCut(ImportHost& host, const std::string& text, const char* what, int32_t record) {
    NoteCutBytes(host, text.size(), what, record);
}

std::string LibraryNameProblem(const std::string& name) {
    if (name.find('/') != std::string::npos) return "A library name can't contain '/'";
    if (name.find_first_not_of('.') == std::string::npos) return "A library name can't be made of dots alone";
    if (name.size() + 4 > NAME_MAX) return "A library name can't be longer than " + std::to_string(NAME_MAX - 4) + " bytes";
    return {};
}

bool MayWriteLibrary(const ImportOptions& options, ImportHost& host) {
    const std::string name = Trim(options.bookName);
    const std::string problem =
        LibraryNameProblem(options.libraryFile.empty() ? text::Cp1252ToUtf8(name) : Trim(options.libraryFile));
    if (!problem.empty()) {
        host.Message(problem, "");
        return false;
    }
    // An existing library is replaced only if the user agrees; an empty file
    // of that name is simply written over. Either way the old file stays
    // until the new one is whole.
    struct stat st{};
    const std::string path = LibraryPath(options);
    if (::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0)
        return host.AskOverwrite(name + ".vnb already exists.  OK to overwrite?");
    return true;
}

bool WriteLibrary(const ImportOptions& options, ImportHost& host, ImportSession& session) {
    const std::string name = Trim(options.bookName);
    const std::string path = LibraryPath(options);
    const std::string fileName = name + ".vnb";
    // Whatever happens here, the working database is free afterwards.
    struct EndHold {
        ImportSession& session;
        ~EndHold() {
            session.hold.reset();
            session.spool.reset();
        }
    } endHold{session};

    if (!MayWriteLibrary(options, host)) return false;

    bool result = true;
    WorkingDatabase db;
    library::LibraryWriter writer;
    try {
        // A write of its own, with no import before it in the session,
        // holds the database for itself.
        const bool importHeld = session.hold != nullptr;
        if (!importHeld) {
            session.hold = std::make_shared<ImportLock>();
            session.hold->Acquire(DatabasePath(options));
        }
        db.Open(DatabasePath(options));

        library::LibraryHeader header;
        header.version = 1;
        header.flag = -1;
        header.book = name;
        header.LibRemarks = session.ImportRemarks;
        NoteCut(host, header.LibRemarks, "The library's remarks", 0);

        Statement min = db.Prepare(R"(SELECT MIN("index") AS MinIndex FROM Moves)");
        min.Step();
        // An empty table has no smallest index.
        if (min.IsNull(0)) throw Error("Invalid use of Null", errors::kInvalidUseOfNull);
        header.MinIndex = static_cast<int32_t>(min.Int(0));

        Statement max = db.Prepare(R"(SELECT MAX("index") AS MaxIndex FROM Moves)");
        max.Step();
        if (max.IsNull(0)) throw Error("Invalid use of Null", errors::kInvalidUseOfNull);
        header.MaxIndex = static_cast<int32_t>(max.Int(0));

        if (importHeld && session.book == name) {
            // Every record of the import that emptied the table carries the name.
            header.RecCount = session.recordCount;
        } else {
            Statement count = db.Prepare(R"(SELECT COUNT(*) AS RecCount FROM Moves WHERE "book" = ?1)");
            count.Bind(1, name);
            count.Step();
            header.RecCount = static_cast<int32_t>(count.Int(0));
        }

        // The records that the import encoded on its way come from there,
        // the same bytes as the table holds; else one forward pass over the
        // table in the order the records were added, which puts every parent
        // ahead of its children.
        const RecordSpool* spool =
            importHeld && session.spool && session.book == name && session.spool->Count() == header.RecCount
                ? session.spool.get()
                : nullptr;
        Statement rows;
        bool more = false;
        if (!spool) {
            rows = db.Prepare(
                R"(SELECT "index", "parent", "new_branch", "description", "BoardLayout", "remarks" )"
                R"(FROM Moves WHERE "book" = ?1 ORDER BY "index")");
            rows.Bind(1, name);
            more = rows.Step();
        }

        // Records encoded on the way behind room of the header's size
        // become the library itself where the file can take its name.
        const bool inPlace = spool && spool->HeaderRoom() == HeaderBytes(header.book, header.LibRemarks);
        if (!(inPlace ? writer.Open(path, spool->Fd()) : writer.Open(path))) {
            if (writer.Error() == ENOENT) throw FileNotOpened{};
            ThrowWriteError(writer.Error(), fileName);
        }
        if (!writer.WriteHeader(header)) ThrowWriteError(writer.Error(), fileName);

        int32_t counter = 0;
        std::string shown;
        // Each record as it is written: the count, and a look for Cancel;
        // false once the user has cancelled.
        const auto next = [&]() {
            ++counter;
            if (host.ShowsCount()) {
                shown.assign(" ");
                shown += std::to_string(counter);
                host.ShowCount(shown);
            }
            host.Yield();
            if (host.Running()) return true;
            result = false;
            if (!host.KeepCancelledLibrary()) throw Cancelled{};
            return false;
        };
        if (spool) {
            size_t cut = 0;
            const auto& cuts = spool->Cuts();
            while (counter < spool->Count()) {
                if (!next()) break;
                for (; cut < cuts.size() && cuts[cut].index == counter; ++cut)
                    NoteCutBytes(host, cuts[cut].bytes, cuts[cut].remarks ? "The comment" : "The move text", counter);
                host.RecordWritten(counter, spool->ParentOf(counter));
            }
            const int32_t whole = result ? counter : counter - 1;
            const bool written = writer.Adopted()
                                     ? writer.Truncate(spool->HeaderRoom() + spool->BytesUpTo(whole))
                                     : writer.WriteEncoded(spool->Fd(), spool->HeaderRoom(), spool->BytesUpTo(whole));
            if (!written) ThrowWriteError(writer.Error(), fileName);
        }
        library::LibraryNodeRecord record;
        while (more) {
            if (!next()) break;
            record.index = static_cast<int32_t>(rows.Int(0));
            record.parent = static_cast<int32_t>(rows.Int(1));
            record.new_branch = !rows.IsNull(2) && rows.Int(2) == -1;
            record.description.assign(rows.TextView(3));
            record.BoardLayout.assign(rows.TextView(4));
            record.remarks.assign(rows.TextView(5));  // NULL reads as ""
            NoteCut(host, record.description, "The move text", record.index);
            NoteCut(host, record.remarks, "The comment", record.index);
            if (!writer.WriteRecord(record)) ThrowWriteError(writer.Error(), fileName);
            host.RecordWritten(record.index, record.parent);
            more = rows.Step();
        }
        rows.Reset();
        db.Close();
        // The records reach the disk; an interrupt that comes while they do
        // still leaves the library that stood there.
        if (!writer.Sync()) ThrowWriteError(writer.Error(), fileName);
        if (!host.KeepCancelledLibrary() && !host.Running()) throw Cancelled{};
        // A cancelled write still puts in place what it has: a library of
        // the records so far, which loads.
        if (!writer.Close()) ThrowWriteError(writer.Error(), fileName);
    } catch (const Cancelled&) {
        result = false;
    } catch (...) {
        result = false;
        Report(host, "Couldn't open " + fileName);
    }
    db.Close();
    writer.Abandon();
    return result;
}

}  // namespace vantrel::import
