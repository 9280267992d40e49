#include "import/counted_tree.h"

#include <sys/stat.h>

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
#include "import/readers.h"
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

bool IsBlankText(std::string_view s) { return s.find_first_not_of(' ') == std::string_view::npos; }

// The moves of a line end each in this byte, which sorts ahead of any other:
// the lines that share a start of moves stand together once sorted.
constexpr char kEndOfMove = '\0';

// One game as the merge meets it: its line of moves, its number, its result.
struct LineRecord {
    std::string_view line;
    uint32_t game = 0;
    uint8_t result = kNone;
};

bool Before(const LineRecord& a, const LineRecord& b) {
    const int order = a.line.compare(b.line);
    return order != 0 ? order < 0 : a.game < b.game;
}

// A sorted run set aside in an anonymous temporary file, which goes with the
// process however it ends. On disk a record is its line's length (2 bytes),
// the line, the game (4 bytes) and the result (1 byte).
class RunFile {
public:
    RunFile() : file_(std::tmpfile()) {
        if (!file_) throw ImportError("Couldn't make a temporary file: " + std::string(std::strerror(errno)), 75);
        std::setvbuf(file_, nullptr, _IOFBF, 1 << 16);
    }
    ~RunFile() { std::fclose(file_); }
    RunFile(const RunFile&) = delete;
    RunFile& operator=(const RunFile&) = delete;

    void Put(const LineRecord& r) {
        const auto length = static_cast<uint16_t>(r.line.size());
        bool ok = std::fwrite(&length, 2, 1, file_) == 1;
        ok = ok && std::fwrite(r.line.data(), 1, r.line.size(), file_) == r.line.size();
        ok = ok && std::fwrite(&r.game, 4, 1, file_) == 1 && std::fwrite(&r.result, 1, 1, file_) == 1;
        if (!ok) Failed();
    }
    void Rewind() {
        if (std::fflush(file_) != 0) Failed();
        std::rewind(file_);
    }
    // The next record, valid until the next call; false at the end.
    bool Next(LineRecord& r) {
        uint16_t length = 0;
        if (std::fread(&length, 2, 1, file_) != 1) return false;
        line_.resize(length);
        if (std::fread(line_.data(), 1, length, file_) != length || std::fread(&r.game, 4, 1, file_) != 1 ||
            std::fread(&r.result, 1, 1, file_) != 1)
            Failed();
        r.line = line_;
        return true;
    }

private:
    [[noreturn]] void Failed() {
        if (errno == ENOSPC) throw ImportError("Disk full", 61);
        throw ImportError("Couldn't use a temporary file: " + std::string(std::strerror(errno)), 75);
    }
    std::FILE* file_;
    std::string line_;
};

// The lines of all games, in runs of bounded size.
class LineRuns {
public:
    explicit LineRuns(size_t runBytes) : runBytes_(runBytes) {}

    void Add(std::string_view line, uint32_t game, uint8_t result) {
        held_.push_back({static_cast<uint32_t>(arena_.size()), static_cast<uint32_t>(line.size()), game, result});
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
    };
    LineRecord Record(const Held& h) const {
        return {std::string_view(arena_).substr(h.start, h.length), h.game, h.result};
    }
    void SortHeld() {
        std::sort(held_.begin(), held_.end(), [&](const Held& a, const Held& b) { return Before(Record(a), Record(b)); });
    }
    void SetAside() {
        SortHeld();
        auto file = std::make_unique<RunFile>();
        for (const Held& h : held_) file->Put(Record(h));
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
    int64_t games = 0, wins = 0, draws = 0, losses = 0;
    uint32_t firstGame = 0;
    int16_t depth = 0;
    std::vector<int32_t> children;  // places in the kept list
};

// Walks the merged lines and keeps every node at least `minGames` games
// reached; or, with `histogram`, only counts how many nodes each count has.
class NodeCounter {
public:
    NodeCounter(int64_t minGames, std::map<int64_t, int64_t>* histogram)
        : minGames_(minGames), histogram_(histogram) {}

    void Take(const LineRecord& r) {
        // How many moves this line shares with the one before.
        size_t shared = 0, at = 0;
        while (shared < open_.size()) {
            const size_t end = open_[shared].end;
            if (end > r.line.size() || r.line.compare(0, end, previous_, 0, end) != 0) break;
            at = end;
            ++shared;
        }
        while (open_.size() > shared) Close();
        for (size_t end; at < r.line.size(); at = end + 1) {
            end = r.line.find(kEndOfMove, at);
            Open frame;
            frame.start = at;
            frame.end = end + 1;
            frame.node.firstGame = r.game;
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
            n.firstGame = std::min(n.firstGame, r.game);
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
            o.node.children = std::move(o.children);
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

// What a kept node shows of the first game that reached it.
struct FirstGame {
    std::string name;
    std::string comment;                // the game's own: its tag lines
    std::vector<std::string> comments;  // of plies 1, 2, ... as far as needed
};

class CountedImport {
public:
    CountedImport(const ImportOptions& options, const CountingOptions& counting, ImportHost& host)
        : options_(options), counting_(counting), host_(host), runs_(counting.runBytes) {
        tags_.chkTag = options.tags;
        tags_.chkIgnoreQuestion = options.ignoreQuestion;
        tags_.byName = options.tagNames;
    }

    bool Run(CountingReport& report) {
        if (!ReadLines()) return false;
        report.games = static_cast<int32_t>(games_);
        int64_t minGames = std::max<int64_t>(counting_.minGames, 1);
        if (counting_.fit) minGames = std::max(minGames, FittingMinimum());
        NodeCounter counter(minGames, nullptr);
        runs_.Merge([&](const LineRecord& r) { counter.Take(r); });
        counter.Finish();
        if (counter.kept.empty()) throw ImportError("Invalid use of Null", 94);  // no record to write
        kept_ = std::move(counter.kept);
        roots_ = std::move(counter.roots);
        Order(roots_);
        for (KeptNode& n : kept_) Order(n.children);
        if (!ReadFirstGames()) return false;
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

    // Opens the file and reads it game by game, `play` taking each one.
    template <typename Play>
    bool ForEachGame(Play&& play) {
        LineSource file;
        ImportState state;
        if (!file.Open(inFile_)) throw FileNotOpened{};
        state.ImportFile = &file;
        state.PlyLimit = options_.plyLimit;
        uint32_t number = 0;
        try {
            while (!state.ImportAtEnd) {
                if (!host_.Running()) return false;
                const int16_t n = options_.pgn ? ReadPgnGame(state, game_, tags_)
                                               : ReadSanGame(state, game_, options_.commentStart, options_.commentEnd);
                if (n < 0) continue;
                if (!play(++number, n)) return false;
            }
        } catch (...) {
            host_.FailedInGame(static_cast<int32_t>(number + 1), file.LineNumber(), game_);
            throw;
        }
        remarks_ = state.ImportRemarks;
        return true;
    }

    // Plays every game and sets its line aside.
    bool ReadLines() {
        std::string line, move;
        return ForEachGame([&](uint32_t number, int16_t n) {
            host_.GameRead(static_cast<int32_t>(number), n, game_);
            ++games_;
            board_.ResetImportBoard();
            line.clear();
            for (int16_t i = 1; i <= n; ++i) {
                move = game_.GameMoves[i];
                int16_t rc = chess::ResolveMove(board_, move, i);
                while (rc != chess::kResolved) {
                    const int16_t action = host_.AskFixMove(i, n, rc, game_, board_);
                    if (action == kFixAccept) {
                        move = game_.GameMoves[i];
                        rc = chess::ResolveMove(board_, move, i);
                    } else if (action == kFixSkip) {
                        break;
                    } else {
                        return false;
                    }
                }
                if (rc != chess::kResolved) break;  // the game counts up to its last resolved move
                line += move;
                line += kEndOfMove;
            }
            if (!line.empty()) runs_.Add(line, number, ResultOf(game_.GameComments[0]));
            return true;
        });
    }

    // Reads the file again, without playing it, for the names and comments
    // of the games that first reached a kept node.
    bool ReadFirstGames() {
        std::unordered_map<uint32_t, int16_t> deepest;  // game -> deepest ply it is wanted for
        for (const KeptNode& n : kept_) {
            int16_t& d = deepest[n.firstGame];
            d = std::max(d, n.depth);
        }
        return ForEachGame([&](uint32_t number, int16_t n) {
            const auto wanted = deepest.find(number);
            if (wanted == deepest.end()) return true;
            FirstGame& g = first_[number];
            g.name = game_.GameMoves[0];
            g.comment = game_.GameComments[0];
            const int16_t plies = std::min(wanted->second, n);
            for (int16_t i = 1; i <= plies; ++i) g.comments.push_back(game_.GameComments[i]);
            return true;
        });
    }

    std::string Description(const KeptNode& n, bool newBranch) const {
        std::string text = n.move;
        if (counting_.counts) {
            text += ": " + std::to_string(n.games) + " games";
            const int score = ScorePercent(n.wins, n.draws, n.losses);
            if (score >= 0) text += ", " + std::to_string(score) + "%";
        } else if (newBranch) {
            const std::string& name = first_.at(n.firstGame).name;
            if (!IsBlankText(name)) text += ": " + name;
        }
        return text;
    }

    std::string Remarks(const KeptNode& n, bool newBranch) const {
        const FirstGame& g = first_.at(n.firstGame);
        const size_t ply = static_cast<size_t>(n.depth);
        const std::string moveComment = ply <= g.comments.size() ? g.comments[ply - 1] : std::string();
        if (!newBranch || IsBlankText(g.comment)) return moveComment;
        return g.comment + "\r\n" + moveComment;
    }

    bool Write() {
        const std::string path = LibraryPath(options_);
        const std::string name = bookName_;
        const std::string fileName = name + ".vnb";
        const std::string problem = LibraryNameProblem(
            options_.libraryFile.empty() ? text::Cp1252ToUtf8(name) : TrimBlanks(options_.libraryFile));
        if (!problem.empty()) {
            host_.Message(problem, "");
            return false;
        }
        struct stat st{};
        if (::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0 &&
            !host_.AskOverwrite(fileName + " already exists.  OK to overwrite?"))
            return false;

        library::LibraryWriter writer;
        if (!writer.Open(path)) ThrowWrite(writer, fileName);
        library::LibraryHeader header;
        header.version = 1;
        header.book = name;
        header.RecCount = static_cast<int32_t>(kept_.size());
        header.MinIndex = 1;
        header.MaxIndex = header.RecCount;
        header.LibRemarks = remarks_;
        if (!writer.WriteHeader(header)) ThrowWrite(writer, fileName);

        // Depth first, each node after its parent and its elder siblings,
        // with the board of every depth kept on the way down.
        std::vector<chess::ImportBoard> boards(1);
        boards[0].ResetImportBoard();
        boards[0].EnPassant = {};
        int32_t counter = 0;
        library::LibraryNodeRecord record;
        std::string move;
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
                record.description = Description(n, newBranch);
                record.remarks = Remarks(n, newBranch);
                boards[depth + 1].BoardToLayout(record.BoardLayout);
                if (!writer.WriteRecord(record)) ThrowWrite(writer, fileName);
                self(self, n.children, record.index, depth + 1);
            }
        };
        visit(visit, roots_, 0, 0);
        if (!host_.Running()) return false;  // interrupted: the library that stood there stays
        if (!writer.Close()) ThrowWrite(writer, fileName);
        return true;
    }

    [[noreturn]] static void ThrowWrite(const library::LibraryWriter& writer, const std::string& fileName) {
        const int error = writer.Error();
        if (error == ENOSPC || error == EDQUOT) throw ImportError("Disk full", 61);
        throw ImportError("Couldn't write " + fileName + ": " + std::strerror(error), 75);
    }

    static std::string TrimBlanks(std::string s) {
        const size_t first = s.find_first_not_of(' ');
        if (first == std::string::npos) return {};
        return s.substr(first, s.find_last_not_of(' ') - first + 1);
    }

    const ImportOptions& options_;
    const CountingOptions& counting_;
    ImportHost& host_;
    const std::string inFile_ = TrimBlanks(options_.inFile);
    const std::string bookName_ = TrimBlanks(options_.bookName);
    PgnTagChoice tags_;
    chess::ImportBoard board_;
    GameRecord game_;
    LineRuns runs_;
    int64_t games_ = 0;
    std::string remarks_;
    std::vector<KeptNode> kept_;
    std::vector<int32_t> roots_;
    std::unordered_map<uint32_t, FirstGame> first_;
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
