// vantrel-cli import: a file of games into a library, as the import wizard
// does, but never asking: a move that can't be resolved is reported and the
// rest of its game skipped, unless --repair finds the spelling the rules of
// chess allow.
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cctype>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <unordered_map>
#include <vector>

#include "chess/move_repair.h"
#include "chess/resolver.h"
#include "import/counted_tree.h"
#include "import/program_dir.h"
#include "library/files.h"
#include "import/tree_store.h"
#include "library/text_codec.h"
#include "library/tree_model.h"
#include "tools/cli/common.h"

namespace vantrel::cli {
namespace {

volatile std::sig_atomic_t gInterrupted = 0;

// Error numbers of the import that the command line explains.
constexpr int kBrokenTag = errors::kInvalidProcedureCall;
constexpr int kTooManyPlies = errors::kSubscriptOutOfRange;
constexpr int kPastEnd = errors::kInputPastEnd;
constexpr int kNothingStored = errors::kInvalidUseOfNull;

void OnInterrupt(int) { gInterrupted = 1; }

constexpr const char* kImportHelp =
    "usage: vantrel-cli import FILE --name NAME [options]\n"
    "\n"
    "Imports a file of games into the library NAME.vnb, as the import wizard does.\n"
    "\n"
    "  --name NAME          the library's name (required); the file is NAME.vnb\n"
    "  --san                the file is plain SAN: a line \"!name\" starts each game\n"
    "  --start S, --end E   SAN only: the comment indicators (default // and //)\n"
    "  --tags LIST          PGN only: the tags that make a game's name, separated by\n"
    "                       commas (default Event,White,Black). Event, Site, Date,\n"
    "                       Round, White, Black and Result come in that order, as in\n"
    "                       the wizard; a list with any other tag (ECO, Opening,\n"
    "                       ...) makes the name of its tags in the list's order\n"
    "  --keep-question-marks  keep the \"?\" of unknown tag values in names\n"
    "  --out-dir DIR        where the library is written (default: beside the program)\n"
    "  --db PATH            the working database (default: Tessimo.mdb beside the program)\n"
    "  --overwrite          replace a library of that name (without it such a\n"
    "                       library is kept and the import fails)\n"
    "  --repair             answer a refused move by the rules of chess: marks the\n"
    "                       resolver can't take are dropped (Rb8+! -> Rb8), and an\n"
    "                       ambiguous move of which only one candidate doesn't leave\n"
    "                       its own king in check gets its source file, rank or\n"
    "                       square (Ne2 -> Nge2); the edited move is stored\n"
    "  --plies N            only the first N plies (1 to 250) of each game go into\n"
    "                       the tree; the rest is read and dropped, so no game is too\n"
    "                       long. Afterwards a line tells whether the library fits\n"
    "                       a window (at most 32767 nodes) and, if not, the largest\n"
    "                       N that would fit\n"
    "  --min-games K        counting mode: a move stays in the tree only where at\n"
    "                       least K games of the file reach it (K from 1); the\n"
    "                       children of a node come most-played first\n"
    "  --fit                counting mode: the smallest K for which the tree opens\n"
    "                       in a window (at most 32767 nodes); stderr tells the K\n"
    "  --progress           a status line on stderr while the games are read (the\n"
    "                       default on a terminal): bytes read of the file's\n"
    "                       size, games, games a second and the time left\n"
    "  --counts             counting mode: every node reads \"move: N games, S%\",\n"
    "                       S being White's score in the games with a result\n"
    "\n"
    "Counting mode reads the games once, keeps no working database and writes the\n"
    "library at once; a branch names the first game that reached it (without\n"
    "--counts) and every node keeps that game's comment.\n"
    "\n"
    "A move that can't be resolved (or, with --repair, mended) is reported on stderr\n"
    "with the game, the ply, the move and the reason, and the rest of that game is\n"
    "skipped. On success stdout gets the library's path and a count of records,\n"
    "games and unresolved (and, with --repair, repaired) moves.\n"
    "\n"
    "Exit status: 0 when the library was written, 1 when the import failed or\n"
    "was interrupted, 2 on a usage error.\n";

const char* ReasonText(int16_t code) {
    switch (code) {
        case chess::kAmbiguous: return "ambiguous";
        case chess::kIllegal: return "illegal";
        default: return "can't parse";
    }
}

class CliHost : public import::ImportHost {
public:
    CliHost(bool overwrite, bool repair, std::string file, bool progress)
        : overwrite_(overwrite), repair_(repair), file_(std::move(file)), progress_(progress), size_(FileSize()) {}

    // One status line on stderr, drawn again at most ten times a second:
    // bytes read of the file's size, games, games a second, time left.
    void ReadProgress(int64_t bytes) override {
        if (!progress_) return;
        const auto now = std::chrono::steady_clock::now();
        if (shown_ && now - drawn_ < std::chrono::milliseconds(100)) return;
        drawn_ = now;
        const double seconds = std::chrono::duration<double>(now - start_).count();
        const double share = size_ > 0 ? std::min(1.0, static_cast<double>(bytes) / static_cast<double>(size_)) : 0;
        std::string left = "-";
        if (share > 0.001 && seconds > 0.5) {
            const auto s = static_cast<long>(seconds * (1 - share) / share + 0.5);
            left = s >= 3600 ? std::to_string(s / 3600) + " h " + std::to_string(s / 60 % 60) + " min"
                   : s >= 60 ? std::to_string(s / 60) + " min " + std::to_string(s % 60) + " s"
                             : std::to_string(s) + " s";
        }
        std::fprintf(stderr, "\r%.1f of %.1f MB (%d%%), %d games, %.0f games/s, %s left\033[K",
                     static_cast<double>(bytes) / 1e6, static_cast<double>(size_) / 1e6, static_cast<int>(share * 100),
                     gameNumber_, seconds > 0 ? gameNumber_ / seconds : 0.0, left.c_str());
        std::fflush(stderr);
        shown_ = true;
    }
    // Takes the status line away before anything else is said.
    void ClearStatus() {
        if (shown_) std::fputs("\r\033[K", stderr);
        shown_ = false;
    }

    void ShowCount(const std::string&) override {}
    bool ShowsCount() const override { return false; }
    bool Running() const override { return gInterrupted == 0; }
    // An interrupt is no Cancel button: the library that stood there stays.
    bool KeepCancelledLibrary() const override { return false; }
    void FailedInGame(int32_t number, int64_t line, const import::GameRecord& game) override {
        where_ = "game " + std::to_string(number);
        if (!game.GameMoves[0].empty()) where_ += " (" + Out(game.GameMoves[0].str()) + ")";
        where_ += ", line " + std::to_string(line) + " of " + file_;
    }

    void GameRead(int32_t number, int16_t, const import::GameRecord&) override {
        gameNumber_ = number;
    }

    import::FixMoveAction AskFixMove(int16_t ply, int16_t, int16_t errorCode, import::GameRecord& game,
                       const chess::ImportBoard& board) override {
        // A mended move is checked on a copy of the board, so the store takes
        // it; should it come back all the same, it is skipped.
        if (repair_ && !(gameNumber_ == lastGame_ && ply == lastPly_)) {
            const chess::MoveRepair fix = chess::RepairMove(board, game.GameMoves[ply].str(), ply, errorCode);
            if (fix.fixed) {
                lastGame_ = gameNumber_;
                lastPly_ = ply;
                game.GameMoves[ply] = fix.move;
                ++repaired_;
                return import::kFixAccept;
            }
            errorCode = fix.result;
        }
        ++unresolved_;
        ClearStatus();
        std::fprintf(stderr, "game %d (%s), ply %d, move %s: %s; rest of the game skipped\n", gameNumber_,
                     Out(game.GameMoves[0].str()).c_str(), ply, Out(game.GameMoves[ply].str()).c_str(),
                     ReasonText(errorCode));
        return import::kFixSkip;
    }

    bool AskOverwrite(const std::string& text) override {
        ClearStatus();
        if (!overwrite_) std::fprintf(stderr, "%s  Not overwritten (use --overwrite).\n", Out(text).c_str());
        return overwrite_;
    }

    void Message(const std::string& text, const std::string& title) override {
        ClearStatus();
        if (title.empty())
            std::fprintf(stderr, "%s\n", Out(text).c_str());
        else
            std::fprintf(stderr, "%s: %s\n", Out(title).c_str(), Out(text).c_str());
    }

    void ShowError(const std::string& description, int number) override {
        ClearStatus();
        std::fprintf(stderr, "The following Error occurred: %s (Number: %d)\n", Out(description).c_str(), number);
        // What the window leaves at that, the command line explains.
        std::string why;
        if (number == kPastEnd && gameNumber_ == 0)
            why = file_ + " holds no games" + (FileSize() == 0 ? ": it is empty" : "");
        else if (number == kTooManyPlies)
            why = where_ + ": a game of more than 250 plies; --plies N keeps the first N plies of each game";
        else if (number == kBrokenTag && description == "Invalid procedure call or argument")
            why = where_ + ": a tag line without its closing quote and bracket";
        else if (number == kNothingStored)
            why = "none of the " + std::to_string(gameNumber_) + " games of " + file_ +
                  " gave a move to store: each was skipped at its first move, or had none";
        else if (number == errors::kBusy && description == "database is locked")
            why = "the working database is in use by another import; try again once it is done";
        else if (!where_.empty())
            why = where_;
        if (!why.empty()) std::fprintf(stderr, "vantrel-cli: %s\n", why.c_str());
    }

    int64_t FileSize() const {
        struct stat st{};
        return ::stat(file_.c_str(), &st) == 0 ? static_cast<int64_t>(st.st_size) : -1;
    }

    void Notice(const std::string& text) override {
        ClearStatus();
        std::fprintf(stderr, "%s\n", Out(text).c_str());
    }

    // Parents are written ahead of their children; a record whose parent
    // isn't in the file stands at the top.
    void RecordWritten(int32_t index, int32_t parent) override {
        const int depth = DepthOf(parent) + 1;
        // The store numbers records 1, 2, 3, ...: their depths lie in a
        // vector, and only an index far out of that line in a map.
        if (index > 0 && static_cast<size_t>(index) < depthOf_.size() + kNearIndex) {
            if (static_cast<size_t>(index) >= depthOf_.size())
                depthOf_.resize(std::max(depthOf_.size() * 2, static_cast<size_t>(index) + 1));
            depthOf_[static_cast<size_t>(index)] = depth;
        } else {
            farDepthOf_[index] = depth;
        }
        if (static_cast<size_t>(depth) >= atDepth_.size()) atDepth_.resize(static_cast<size_t>(depth) + 1);
        ++atDepth_[static_cast<size_t>(depth)];
    }

    int32_t Games() const { return gameNumber_; }
    int Unresolved() const { return unresolved_; }
    int Repaired() const { return repaired_; }
    // The number of records written at each depth of the tree, from 1.
    std::map<int, int64_t> AtDepth() const {
        std::map<int, int64_t> counts;
        for (size_t depth = 1; depth < atDepth_.size(); ++depth)
            if (atDepth_[depth] > 0) counts[static_cast<int>(depth)] = atDepth_[depth];
        return counts;
    }

private:
    bool overwrite_;
    bool repair_;
    std::string file_;
    bool progress_;
    int64_t size_;
    bool shown_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now(), drawn_;
    std::string where_;  // the game and the line an import failed in
    int repaired_ = 0;
    int32_t lastGame_ = 0;
    int16_t lastPly_ = 0;
    int32_t gameNumber_ = 0;
    int unresolved_ = 0;
    // The depth of a record written, 0 for one that wasn't.
    int DepthOf(int32_t index) const {
        if (index > 0 && static_cast<size_t>(index) < depthOf_.size() && depthOf_[static_cast<size_t>(index)] != 0)
            return depthOf_[static_cast<size_t>(index)];
        if (farDepthOf_.empty()) return 0;
        const auto far = farDepthOf_.find(index);
        return far == farDepthOf_.end() ? 0 : far->second;
    }
    static constexpr size_t kNearIndex = size_t{1} << 20;
    std::vector<int> depthOf_;
    std::unordered_map<int32_t, int> farDepthOf_;
    std::vector<int64_t> atDepth_;  // by depth
};

// The tags of --tags. A list of the wizard's seven chooses them as its check
// boxes do, and they keep their fixed order; a list with any other tag makes
// the name of all its tags in the list's order.
bool ParseTags(const std::string& list, import::ImportOptions& options) {
    static constexpr const char* kSeven[7] = {"event", "site", "date", "round", "white", "black", "result"};
    std::array<bool, 7> seven{};
    std::vector<std::string> names;
    bool others = false;
    for (size_t start = 0; start <= list.size();) {
        size_t comma = list.find(',', start);
        if (comma == std::string::npos) comma = list.size();
        const std::string name = list.substr(start, comma - start);
        start = comma + 1;
        const bool tagName = !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) {
            return std::isalnum(c) || c == '_';
        });
        if (!tagName) {
            std::fprintf(stderr, "vantrel-cli: not a tag name: '%s'\n", name.c_str());
            return false;
        }
        std::string lower = name;
        for (auto& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const auto known = std::find(std::begin(kSeven), std::end(kSeven), lower);
        if (known != std::end(kSeven))
            seven[static_cast<size_t>(known - std::begin(kSeven))] = true;
        else
            others = true;
        const auto same = [&](const std::string& n) { return strcasecmp(n.c_str(), name.c_str()) == 0; };
        if (std::none_of(names.begin(), names.end(), same)) names.push_back(name);
    }
    options.tags = seven;
    if (others) options.tagNames = std::move(names);
    return true;
}

// Whether the library written fits a window, and if not, the largest number
// of plies a game may keep for it to fit: the nodes of the tree cut at N
// plies are those at depth N or less, so the count at each depth tells.
void TellFit(const std::map<int, int64_t>& atDepth) {
    int64_t total = 0;
    for (const auto& [depth, count] : atDepth) total += count;
    constexpr int64_t kMost = library::TreeModel::kMaxNodes;
    if (total <= kMost) {
        std::printf("Fits a window: %lld nodes (at most %lld)\n", static_cast<long long>(total),
                    static_cast<long long>(kMost));
        return;
    }
    int plies = 0;
    int64_t upTo = 0;
    for (const auto& [depth, count] : atDepth) {
        if (upTo + count > kMost) break;
        upTo += count;
        plies = depth;
    }
    std::printf("Too large for a window: %lld nodes (at most %lld); ", static_cast<long long>(total),
                static_cast<long long>(kMost));
    if (plies > 0)
        std::printf("--plies %d fits (%lld nodes)\n", plies, static_cast<long long>(upTo));
    else
        std::printf("even --plies 1 gives %lld nodes\n", static_cast<long long>(atDepth.begin()->second));
}

}  // namespace

int Import(int argc, char** argv) {
    import::ImportOptions options;
    bool san = false, keepQuestionMarks = false, overwrite = false, repair = false;
    std::string tags, plies, outDir, dbPath;
    Arguments args(kImportHelp);
    args.Value("FILE", options.inFile);
    const CLI::Option* name = args.Value("--name", options.bookName);
    args.Flag("--san", san);
    args.Value("--start", options.commentStart);
    args.Value("--end", options.commentEnd);
    const CLI::Option* tagsGiven = args.Value("--tags", tags);
    args.Flag("--keep-question-marks", keepQuestionMarks);
    args.Value("--out-dir", outDir);
    args.Value("--db", dbPath);
    args.Flag("--overwrite", overwrite);
    args.Flag("--repair", repair);
    const CLI::Option* pliesGiven = args.Value("--plies", plies);
    std::string minGames;
    import::CountingOptions counting;
    const CLI::Option* minGamesGiven = args.Value("--min-games", minGames);
    args.Flag("--fit", counting.fit);
    args.Flag("--counts", counting.counts);
    bool progress = false;
    args.Flag("--progress", progress);
    if (const auto status = args.Parse(argc, argv)) return *status;
    const bool countingMode = minGamesGiven->count() > 0 || counting.fit || counting.counts;
    if (minGamesGiven->count() > 0) {
        char* end = nullptr;
        const long k = std::strtol(minGames.c_str(), &end, 10);
        if (minGames.empty() || *end || k < 1 || k > INT32_MAX)
            return UsageError("--min-games takes a number from 1, not '" + minGames + "'");
        counting.minGames = static_cast<int32_t>(k);
    }

    if (options.inFile == "-") return UsageError("unknown option -");
    options.pgn = !san;
    options.ignoreQuestion = !keepQuestionMarks;
    options.tags = {true, false, false, false, true, true, false};  // Event, White, Black
    options.readAhead = true;  // games are read on a second thread
    options.spoolRecords = true;
    options.writeBehind = true;  // and the table written on a third
    if (tagsGiven->count() > 0 && !ParseTags(tags, options)) return Usage();
    if (pliesGiven->count() > 0) {
        char* end = nullptr;
        const long n = std::strtol(plies.c_str(), &end, 10);
        if (plies.empty() || *end || n < 1 || n > import::kMaxPly)
            return UsageError("--plies takes a number from 1 to 250, not '" + plies + "'");
        options.plyLimit = static_cast<int16_t>(n);
    }
    if (options.inFile.empty() || name->count() == 0) return Usage();
    // A library needs a name: blanks alone would make a hidden ".vnb".
    if (options.bookName.find_first_not_of(' ') == std::string::npos) return UsageError("--name needs a name");
    if (options.pgn && options.commentStart == "//" && options.commentEnd == "//") {
        options.commentStart = "{";
        options.commentEnd = "}";
    }

    // Names on the command line come as UTF-8: the file keeps the name as
    // given, the library its 1252 form.
    options.libraryFile = options.bookName;
    options.bookName = text::AnyToCp1252(options.bookName);
    // The program's folder: beside the executable, or the user's own when installed.
    const install::ProgramFolders folders = install::ResolveProgramFolders();
    if (!folders.error.empty() && (outDir.empty() || dbPath.empty())) {
        std::fprintf(stderr, "vantrel-cli: %s\n", folders.error.c_str());
        return 1;
    }
    options.programDir = outDir.empty() ? folders.programDir : outDir;
    options.databasePath = dbPath.empty() ? folders.programDir + "/" + install::kDatabaseFile : dbPath;

    // What can be known before the games are read is checked first: the
    // name, the file, and the library that a run would replace.
    const std::string problem = import::LibraryNameProblem(options.libraryFile);
    if (!problem.empty()) return UsageError(problem);
    const std::string library = import::LibraryPath(options);
    if (const int fd = library::OpenPlainFile(options.inFile); fd >= 0) {
        ::close(fd);
    } else {
        std::fprintf(stderr, "Couldn't open %s: %s\n", options.inFile.c_str(),
                     errno == EINVAL ? "not a plain file" : std::strerror(errno));
        return 1;
    }
    struct stat st{};
    if (::stat(library.c_str(), &st) == 0 && S_ISREG(st.st_mode) && st.st_size > 0 && !overwrite) {
        std::fprintf(stderr, "%s.vnb already exists.  Not overwritten (use --overwrite).\n",
                     options.libraryFile.c_str());
        return 1;
    }
    if (const int refused = library::CanReplace(library)) {
        std::fprintf(stderr, "Couldn't create library '%s': %s\n", library.c_str(), std::strerror(refused));
        return 1;
    }

    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, OnInterrupt);
    CliHost host(overwrite, repair, options.inFile, progress || ::isatty(STDERR_FILENO));
    const int64_t sizeBefore = host.FileSize();
    const auto warnIfCut = [&] {
        const int64_t sizeAfter = host.FileSize();
        if (sizeAfter < sizeBefore)
            std::fprintf(stderr, "vantrel-cli: warning: %s was cut from %lld to %lld bytes while it was read\n",
                         options.inFile.c_str(), static_cast<long long>(sizeBefore),
                         static_cast<long long>(sizeAfter));
    };
    if (countingMode) {
        import::CountingReport report;
        const bool built = import::BuildCountedLibrary(options, counting, host, report);
        host.ClearStatus();
        warnIfCut();
        if (!built) {
            std::fprintf(stderr, "%s\n", gInterrupted ? "Import cancelled by user" : "Couldn't create library");
            return 1;
        }
        if (counting.fit)
            std::fprintf(stderr, "--fit took --min-games %d: %lld nodes\n", report.minGames,
                         static_cast<long long>(report.nodes));
        std::printf("%s\n%lld nodes from %d games, each reached by at least %d; unresolved moves: %d", library.c_str(),
                    static_cast<long long>(report.nodes), report.games, report.minGames, host.Unresolved());
        if (repair) std::printf("; repaired moves: %d", host.Repaired());
        std::printf("\n");
        return 0;
    }
    import::ImportSession session;
    const bool built = import::BuildTree(options, host, session);
    host.ClearStatus();
    if (!built) {
        warnIfCut();
        std::fprintf(stderr, "%s\n", gInterrupted ? "Import cancelled by user" : "Couldn't parse moves list");
        return 1;
    }
    warnIfCut();
    if (!import::WriteLibrary(options, host, session)) {
        if (gInterrupted)
            std::fprintf(stderr, "Import cancelled by user; %s was left as it was\n", library.c_str());
        else
            std::fprintf(stderr, "Couldn't create library '%s.vnb'\n", Out(options.bookName).c_str());
        return 1;
    }
    std::printf("%s\n%d records from %d games; unresolved moves: %d", import::LibraryPath(options).c_str(),
                session.recordCount, host.Games(), host.Unresolved());
    if (repair) std::printf("; repaired moves: %d", host.Repaired());
    std::printf("\n");
    // Whether it fits a window, told with --plies and whenever it doesn't.
    int64_t total = 0;
    for (const auto& [depth, count] : host.AtDepth()) total += count;
    if (options.plyLimit > 0 || total > library::TreeModel::kMaxNodes) TellFit(host.AtDepth());
    return 0;
}

}  // namespace vantrel::cli
