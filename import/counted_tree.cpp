#include "import/counted_tree.h"


#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <queue>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "chess/resolver.h"
#include "import/game_feed.h"
#include "import/readers.h"
#include "import/walk.h"
#include "library/format.h"
#include "library/text_codec.h"

namespace vantrel::import {

int ScorePercent(int64_t wins, int64_t draws, int64_t losses) {
    const int64_t total = wins + draws + losses;
    if (total == 0) return -1;
    return static_cast<int>((200 * wins + 100 * draws + total) / (2 * total));
}

namespace {

// A game's result as its Result tag gives it.
enum Result : uint8_t { kNone = 0, kWhiteWins = 1, kDraw = 2, kBlackWins = 3 };

// The tag section stands in the game's own comment, a tag a line.
Result ResultOf(std::string_view tags) {
    for (size_t at = 0; at < tags.size();) {
        size_t end = tags.find('\n', at);
        if (end == std::string_view::npos) end = tags.size();
        std::string_view line = tags.substr(at, end - at);
        at = end + 1;
        while (!line.empty() && (line.front() == ' ' || line.front() == '\r')) line.remove_prefix(1);
        if (line.size() < 8 || line[0] != '[') continue;
        std::string_view name = line.substr(1, 6);
        if (!std::equal(name.begin(), name.end(), "Result", [](char a, char b) {
                return (a | 0x20) == (b | 0x20);
            }))
            continue;
        const size_t open = line.find('"');
        if (open == std::string_view::npos) return kNone;
        const std::string_view value = line.substr(open + 1, line.find('"', open + 1) - open - 1);
        if (value == "1-0") return kWhiteWins;
        if (value == "1/2-1/2") return kDraw;
        if (value == "0-1") return kBlackWins;
        return kNone;
    }
    return kNone;
}

// The moves of a line end each in this byte, which sorts ahead of any other:
// the lines that share a start of moves stand together once sorted.
constexpr char kEndOfMove = '\0';

// One game as the merge meets it: its line of moves, its number, its
// result, and where its name and comments stand in the side file.
struct LineRecord {
    std::string_view line;
    uint32_t game = 0;
    uint8_t result = kNone;
    uint64_t side = 0;
};

bool Before(const LineRecord& a, const LineRecord& b) {
    const int order = a.line.compare(b.line);
    return order != 0 ? order < 0 : a.game < b.game;
}

// An anonymous temporary file, which goes with the process however it ends.
class TemporaryFile {
public:
    TemporaryFile() : file_(std::tmpfile()) {
        if (!file_) throw Error("Couldn't make a temporary file: " + std::string(std::strerror(errno)), errors::kPathFileAccessError);
        std::setvbuf(file_, nullptr, _IOFBF, 1 << 16);
    }
    ~TemporaryFile() { std::fclose(file_); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

protected:
    void Put(const void* bytes, size_t n) {
        if (n > 0 && std::fwrite(bytes, 1, n, file_) != n) Failed();
        written_ += n;
    }
    void Get(void* bytes, size_t n) {
        if (n > 0 && std::fread(bytes, 1, n, file_) != n) Failed();
    }
    void Seek(uint64_t at) {
        if (std::fflush(file_) != 0 || std::fseek(file_, static_cast<long>(at), SEEK_SET) != 0) Failed();
    }
    [[noreturn]] static void Failed() {
        if (errno == ENOSPC) throw Error("Disk full", errors::kDiskFull);
        throw Error("Couldn't use a temporary file: " + std::string(std::strerror(errno)), errors::kPathFileAccessError);
    }
    std::FILE* file_;
    uint64_t written_ = 0;
};

// A sorted run set aside. On disk a record is its line's length (2 bytes),
// the line, the game (4 bytes), the result (1 byte) and the place of the
// game's side record (8 bytes).
class RunFile : public TemporaryFile {
public:
    void Add(const LineRecord& r) {
        const auto length = static_cast<uint16_t>(r.line.size());
        record_.assign(reinterpret_cast<const char*>(&length), 2);
        record_.append(r.line);
        record_.append(reinterpret_cast<const char*>(&r.game), 4);
        record_.append(reinterpret_cast<const char*>(&r.result), 1);
        record_.append(reinterpret_cast<const char*>(&r.side), 8);
        Put(record_.data(), record_.size());
    }
    void Rewind() { Seek(0); }
    // The next record, valid until the next call; false at the end.
    bool Next(LineRecord& r) {
        uint16_t length = 0;
        if (std::fread(&length, 2, 1, file_) != 1) {
            if (std::ferror(file_)) Failed();
            return false;
        }
        line_.resize(length);
        Get(line_.data(), length);
        Get(&r.game, 4);
        Get(&r.result, 1);
        Get(&r.side, 8);
        r.line = line_;
        return true;
    }

private:
    std::string line_, record_;
};

// The names and comments of all games, each read back only if its game
// is the first to reach a kept node. A text is its length (4 bytes) and its
// bytes; a record is the name, the number of plies (2 bytes) and a comment
// for each.
class SideFile : public TemporaryFile {
public:
    uint64_t Add(const GameRecord& game, int16_t plies) {
        const uint64_t at = written_;
        record_.clear();
        Text(game.GameMoves[0]);
        record_.append(reinterpret_cast<const char*>(&plies), 2);
        for (int16_t i = 1; i <= plies; ++i) Text(game.GameComments[i]);
        Put(record_.data(), record_.size());
        return at;
    }
    // The name of the game at `at`, and its comment of ply `ply`.
    void Read(uint64_t at, int16_t ply, std::string& name, std::string& comment) {
        Seek(at);
        name = Text();
        int16_t plies = 0;
        Get(&plies, 2);
        comment.clear();
        for (int16_t i = 1; i <= std::min(ply, plies); ++i) comment = Text();
        if (ply > plies) comment.clear();
        std::fseek(file_, 0, SEEK_END);
    }

private:
    void Text(std::string_view s) {
        const auto n = static_cast<uint32_t>(s.size());
        record_.append(reinterpret_cast<const char*>(&n), 4);
        record_.append(s);
    }
    std::string Text() {
        uint32_t n = 0;
        Get(&n, 4);
        std::string s(n, '\0');
        Get(s.data(), n);
        return s;
    }
    std::string record_;
};

// The lines of all games, in runs of bounded size.
class LineRuns {
public:
    explicit LineRuns(size_t runBytes) : runBytes_(runBytes) {}

    void Add(std::string_view line, uint32_t game, uint8_t result, uint64_t side) {
        held_.push_back({static_cast<uint32_t>(arena_.size()), static_cast<uint32_t>(line.size()), game, result, side});
        arena_.append(line);
        if (arena_.size() >= runBytes_) SetAside();
    }

    // Calls `take` with every record, in order. May be called again.
    template <typename Take>
    void Merge(Take&& take) {
        SortHeld();
        if (files_.empty()) {
            for (const Held& h : held_) take(Record(h));
            return;
        }
        // The records held in memory count as one more run.
        struct Cursor {
            LineRecord record;
            size_t source;  // files_.size() for the records in memory
        };
        auto later = [](const Cursor& a, const Cursor& b) { return Before(b.record, a.record); };
        std::priority_queue<Cursor, std::vector<Cursor>, decltype(later)> queue(later);
        size_t inMemory = 0;
        auto advance = [&](size_t source) {
            Cursor c{{}, source};
            if (source < files_.size()) {
                if (!files_[source]->Next(c.record)) return;
            } else {
                if (inMemory >= held_.size()) return;
                c.record = Record(held_[inMemory++]);
            }
            queue.push(c);
        };
        for (auto& f : files_) f->Rewind();
        for (size_t s = 0; s <= files_.size(); ++s) advance(s);
        while (!queue.empty()) {
            const Cursor top = queue.top();
            queue.pop();
            take(top.record);
            advance(top.source);
        }
    }

private:
    struct Held {
        uint32_t start, length, game;
        uint8_t result;
        uint64_t side;
    };
    LineRecord Record(const Held& h) const {
        return {std::string_view(arena_).substr(h.start, h.length), h.game, h.result, h.side};
    }
    void SortHeld() {
        std::sort(held_.begin(), held_.end(), [&](const Held& a, const Held& b) { return Before(Record(a), Record(b)); });
    }
    void SetAside() {
        SortHeld();
        auto file = std::make_unique<RunFile>();
        for (const Held& h : held_) file->Add(Record(h));
        files_.push_back(std::move(file));
        held_.clear();
        arena_.clear();
    }

    size_t runBytes_;
    std::string arena_;
    std::vector<Held> held_;
    std::vector<std::unique_ptr<RunFile>> files_;
};

// A node that stays in the tree.
struct KeptNode {
    std::string move;
    int32_t games = 0, wins = 0, draws = 0, losses = 0;
    uint32_t firstGame = 0;
    uint64_t firstSide = 0;  // the first game's side record
    int16_t depth = 0;
    // Places in the kept list of the first child and of the next sibling,
    // in the order the lines were met; -1 for none.
    int32_t firstChild = -1, nextSibling = -1;
};

// Walks the merged lines and keeps every node at least `minGames` games
// reached; or, with `histogram`, only counts how many nodes each count has.
class NodeCounter {
public:
    NodeCounter(int64_t minGames, std::map<int64_t, int64_t>* histogram)
        : minGames_(minGames), histogram_(histogram) {}

    void Take(const LineRecord& r) {
        // How many moves this line shares with the one before: those that end
        // before the first byte in which the two differ.
        const size_t common = static_cast<size_t>(
            std::mismatch(r.line.begin(), r.line.begin() + static_cast<long>(std::min(r.line.size(), previous_.size())),
                          previous_.begin())
                .first -
            r.line.begin());
        size_t shared = 0, at = 0;
        while (shared < open_.size() && open_[shared].end <= common) at = open_[shared++].end;
        while (open_.size() > shared) Close();
        for (size_t end; at < r.line.size(); at = end + 1) {
            end = r.line.find(kEndOfMove, at);
            Open frame;
            frame.start = at;
            frame.end = end + 1;
            frame.node.firstGame = r.game;
            frame.node.firstSide = r.side;
            frame.node.depth = static_cast<int16_t>(open_.size() + 1);
            open_.push_back(std::move(frame));
        }
        previous_.assign(r.line);
        for (Open& o : open_) {
            KeptNode& n = o.node;
            ++n.games;
            n.wins += r.result == kWhiteWins;
            n.draws += r.result == kDraw;
            n.losses += r.result == kBlackWins;
            if (r.game < n.firstGame) {
                n.firstGame = r.game;
                n.firstSide = r.side;
            }
        }
    }
    void Finish() {
        while (!open_.empty()) Close();
    }

    std::vector<KeptNode> kept;
    std::vector<int32_t> roots;

private:
    struct Open {
        size_t start = 0, end = 0;  // the move in the line, and the place after its end mark
        KeptNode node;
        std::vector<int32_t> children;
    };

    void Close() {
        Open& o = open_.back();
        if (histogram_) {
            ++(*histogram_)[o.node.games];
        } else if (o.node.games >= minGames_) {
            o.node.move.assign(previous_, o.start, o.end - 1 - o.start);
            for (size_t k = 0; k < o.children.size(); ++k) {
                if (k == 0) o.node.firstChild = o.children[0];
                if (k + 1 < o.children.size()) kept[static_cast<size_t>(o.children[k])].nextSibling = o.children[k + 1];
            }
            const auto place = static_cast<int32_t>(kept.size());
            kept.push_back(std::move(o.node));
            (open_.size() > 1 ? open_[open_.size() - 2].children : roots).push_back(place);
        }
        open_.pop_back();
    }

    int64_t minGames_;
    std::map<int64_t, int64_t>* histogram_;
    std::vector<Open> open_;
    std::string previous_;
};

class CountedImport {
public:
    CountedImport(const ImportOptions& options, const CountingOptions& counting, ImportHost& host)
        : options_(options), counting_(counting), host_(host), runs_(counting.runBytes) {}

    bool Run(CountingReport& report) {
        if (!ReadLines()) return false;
        report.games = static_cast<int32_t>(games_);
        int64_t minGames = std::max<int64_t>(counting_.minGames, 1);
        if (counting_.fit) minGames = std::max(minGames, FittingMinimum());
        NodeCounter counter(minGames, nullptr);
        runs_.Merge([&](const LineRecord& r) { counter.Take(r); });
        counter.Finish();
        if (counter.kept.empty()) throw Error("Invalid use of Null", errors::kInvalidUseOfNull);  // no record to write
        kept_ = std::move(counter.kept);
        roots_ = std::move(counter.roots);
        Order(roots_);
        report.minGames = static_cast<int32_t>(minGames);
        report.nodes = static_cast<int64_t>(kept_.size());
        return Write();
    }

private:
    // Most-played first; of two played as often, the one the file reached first.
    void Order(std::vector<int32_t>& places) const {
        std::sort(places.begin(), places.end(), [&](int32_t a, int32_t b) {
            const KeptNode &x = kept_[static_cast<size_t>(a)], &y = kept_[static_cast<size_t>(b)];
            return x.games != y.games ? x.games > y.games : x.firstGame < y.firstGame;
        });
    }

    // The smallest count of games that leaves no more nodes than a window shows.
    int64_t FittingMinimum() {
        std::map<int64_t, int64_t> histogram;
        NodeCounter counter(1, &histogram);
        runs_.Merge([&](const LineRecord& r) { counter.Take(r); });
        counter.Finish();
        int64_t nodes = 0, minimum = 1;
        for (auto it = histogram.rbegin(); it != histogram.rend(); ++it) {
            if (nodes + it->second > counting_.maxNodes) {
                minimum = it->first + 1;
                break;
            }
            nodes += it->second;
        }
        return minimum;
    }

    // Opens the file and reads it game by game, `play` taking each one. The
    // games are read on a second thread and handed over in the order of the
    // file, so that reading and playing overlap; the host hears everything
    // on this thread, in the same order as from one thread.
    template <typename Play>
    bool ForEachGame(Play&& play) {
        LineSource file;
        ImportState state;
        if (!file.Open(inFile_)) throw FileNotOpened{};
        state.ImportFile = &file;
        state.PlyLimit = options_.plyLimit;
        GameFeed feed(file, state, GameReader(options_), true);

        uint32_t number = 0;
        for (;;) {
            GameFeed::Game* read = nullptr;
            try {
                read = feed.Next();
            } catch (...) {
                host_.FailedInGame(static_cast<int32_t>(number + 1), feed.Current()->line, feed.Current()->record);
                throw;
            }
            if (read == nullptr) break;
            bool go = false;
            try {
                host_.ReadProgress(read->bytes);
                go = host_.Running() && (read->lastPly < 0 || play(++number, read->lastPly, read->record));
            } catch (...) {
                feed.Stop();
                host_.FailedInGame(static_cast<int32_t>(number), read->line, read->record);
                throw;
            }
            if (!go) return false;
        }
        feed.Stop();
        remarks_ = state.ImportRemarks;
        return true;
    }

    // Plays every game and sets its line aside.
    bool ReadLines() {
        std::string line, move;
        return ForEachGame([&](uint32_t number, int16_t n, GameRecord& game) {
            host_.GameRead(static_cast<int32_t>(number), n, game);
            ++games_;
            board_.ResetImportBoard();
            line.clear();
            uint64_t hash = kHashStart;
            bool known = true;  // the line so far was found among those played
            for (int16_t i = 1; i <= n; ++i) {
                // A line played before is not resolved again. Lines are kept
                // only as far as games share them, so past the first move
                // not found there is nothing more to look for.
                PlayedLine* played = nullptr;
                if (known) {
                    hash = HashOn(hash, game.GameMoves[i]);
                    played = &played_[hash & (kPlayedLines - 1)];
                }
                if (played && played->hash == hash) {
                    board_ = played->board;
                    line += played->move;
                    line += kEndOfMove;
                    continue;
                }
                move = game.GameMoves[i];
                bool asked = false;
                chess::ResolveResult rc = chess::ResolveMove(board_, move, i);
                while (rc != chess::kResolved) {
                    asked = true;
                    const FixMoveAction action = host_.AskFixMove(i, n, rc, game, board_);
                    if (action == kFixAccept) {
                        move = game.GameMoves[i];
                        rc = chess::ResolveMove(board_, move, i);
                    } else if (action == kFixSkip) {
                        break;
                    } else {
                        return false;
                    }
                }
                if (rc != chess::kResolved) break;  // the game counts up to its last resolved move
                // A line is kept one move past the known part, so that lines
                // many games share grow deep and a game's own moves don't
                // push them out. A move that needed the repair dialog is
                // asked about each time.
                if (played && !asked) {
                    played->hash = hash;
                    played->board = board_;
                    played->move = move;
                }
                known = false;
                line += move;
                line += kEndOfMove;
            }
            if (!line.empty()) {
                const auto plies = static_cast<int16_t>(std::count(line.begin(), line.end(), kEndOfMove));
                runs_.Add(line, number, ResultOf(game.GameComments[0]), side_.Add(game, plies));
            }
            return true;
        });
    }

    // The hash of a line of moves as the file spells them, move by move.
    static constexpr uint64_t kHashStart = 0xcbf29ce484222325ull;
    static uint64_t HashOn(uint64_t hash, std::string_view move) {
        for (const char c : move) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3ull;
        return (hash ^ 0x100) * 0x100000001b3ull;  // the end of the move
    }
    // The boards after lines of moves played lately, by the line's hash.
    struct PlayedLine {
        uint64_t hash = 0;
        chess::ImportBoard board;
        std::string move;  // as the resolver left it
    };
    static constexpr size_t kPlayedLines = size_t{1} << 15;
    std::vector<PlayedLine> played_ = std::vector<PlayedLine>(kPlayedLines);

    // The text of a node: its move, and its count and score or the name of
    // the first game that reached it.
    std::string Description(const KeptNode& n, bool newBranch, const std::string& name) const {
        std::string text = n.move;
        if (counting_.counts) {
            text += ": " + std::to_string(n.games) + " games";
            const int score = ScorePercent(n.wins, n.draws, n.losses);
            if (score >= 0) text += ", " + std::to_string(score) + "%";
        } else if (newBranch && !IsBlank(name)) {
            text += ": " + name;
        }
        return text;
    }

    bool Write() {
        if (!MayWriteLibrary(options_, host_)) return false;
        const std::string path = LibraryPath(options_);
        const std::string& name = bookName_;
        const std::string fileName = name + ".vnb";

        library::LibraryWriter writer;
        if (!writer.Open(path)) ThrowWriteError(writer.Error(), fileName);
        library::LibraryHeader header;
        header.version = 1;
        header.book = name;
        header.RecCount = static_cast<int32_t>(kept_.size());
        header.MinIndex = 1;
        header.MaxIndex = header.RecCount;
        header.LibRemarks = remarks_;
        if (!writer.WriteHeader(header)) ThrowWriteError(writer.Error(), fileName);

        // Depth first, each node after its parent and its elder siblings,
        // with the board of every depth kept on the way down.
        std::vector<chess::ImportBoard> boards(1);
        boards[0].ResetImportBoard();
        boards[0].EnPassant = {};
        int32_t counter = 0;
        library::LibraryNodeRecord record;
        std::string move, gameName;
        auto visit = [&](auto&& self, const std::vector<int32_t>& places, int32_t parent, size_t depth) -> void {
            if (boards.size() <= depth + 1) boards.resize(depth + 2);
            for (size_t k = 0; k < places.size(); ++k) {
                const KeptNode& n = kept_[static_cast<size_t>(places[k])];
                const bool newBranch = depth == 0 || k > 0;
                boards[depth + 1] = boards[depth];
                move = n.move;
                chess::ResolveMove(boards[depth + 1], move, static_cast<int16_t>(depth + 1));
                record.index = ++counter;
                record.parent = parent;
                record.new_branch = newBranch;
                // The first game that reached the node: its name, and its comment there.
                side_.Read(n.firstSide, n.depth, gameName, record.remarks);
                record.description = Description(n, newBranch, gameName);
                boards[depth + 1].BoardToLayout(record.BoardLayout);
                if (!writer.WriteRecord(record)) ThrowWriteError(writer.Error(), fileName);
                std::vector<int32_t> children;
                for (int32_t c = n.firstChild; c >= 0; c = kept_[static_cast<size_t>(c)].nextSibling)
                    children.push_back(c);
                Order(children);
                self(self, children, record.index, depth + 1);
            }
        };
        visit(visit, roots_, 0, 0);
        if (!host_.Running()) return false;  // interrupted: the library that stood there stays
        if (!writer.Close()) ThrowWriteError(writer.Error(), fileName);
        return true;
    }

    const ImportOptions& options_;
    const CountingOptions& counting_;
    ImportHost& host_;
    const std::string inFile_ = std::string(TrimBlanks(options_.inFile));
    const std::string bookName_ = std::string(TrimBlanks(options_.bookName));
    chess::ImportBoard board_;
    LineRuns runs_;
    SideFile side_;
    int64_t games_ = 0;
    std::string remarks_;
    std::vector<KeptNode> kept_;
    std::vector<int32_t> roots_;
};

}  // namespace

bool BuildCountedLibrary(const ImportOptions& options, const CountingOptions& counting, ImportHost& host,
                         CountingReport& report) {
    report = CountingReport{};
    // The import holds a whole game record; keep it off the stack.
    auto run = std::make_unique<CountedImport>(options, counting, host);
    try {
        return run->Run(report);
    } catch (...) {
        Report(host, "Couldn't open " + text::AnyToCp1252(options.inFile));
        return false;
    }
}

}  // namespace vantrel::import
