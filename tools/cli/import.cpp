// vantrel-cli import: a file of games into a library, as the import wizard
// does, but never asking: a move that can't be resolved is reported and the
// rest of its game skipped, unless --repair finds the spelling the rules of
// chess allow.
#include <strings.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <unordered_map>

#include "chess/move_repair.h"
#include "chess/resolver.h"
#include "import/program_dir.h"
#include "import/tree_store.h"
#include "library/text_codec.h"
#include "library/tree_model.h"
#include "tools/cli/common.h"

namespace vantrel::cli {
namespace {

volatile std::sig_atomic_t gInterrupted = 0;

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
    CliHost(bool overwrite, bool repair) : overwrite_(overwrite), repair_(repair) {}

    void ShowCount(const std::string&) override {}
    bool Running() const override { return gInterrupted == 0; }

    void GameRead(int32_t number, int16_t, const import::GameRecord& game) override {
        gameNumber_ = number;
        gameName_ = game.GameMoves[0];
    }

    int16_t AskFixMove(int16_t ply, int16_t, int16_t errorCode, import::GameRecord& game,
                       const chess::ImportBoard& board) override {
        // A mended move is checked on a copy of the board, so the store takes
        // it; should it come back all the same, it is skipped.
        if (repair_ && !(gameNumber_ == lastGame_ && ply == lastPly_)) {
            const chess::MoveRepair fix = chess::RepairMove(board, game.GameMoves[ply], ply, errorCode);
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
        std::fprintf(stderr, "game %d (%s), ply %d, move %s: %s; rest of the game skipped\n", gameNumber_,
                     Out(gameName_).c_str(), ply, Out(game.GameMoves[ply]).c_str(), ReasonText(errorCode));
        return import::kFixSkip;
    }

    bool AskOverwrite(const std::string& text) override {
        if (!overwrite_) std::fprintf(stderr, "%s  Not overwritten (use --overwrite).\n", Out(text).c_str());
        return overwrite_;
    }

    void Message(const std::string& text, const std::string& title) override {
        if (title.empty())
            std::fprintf(stderr, "%s\n", Out(text).c_str());
        else
            std::fprintf(stderr, "%s: %s\n", Out(title).c_str(), Out(text).c_str());
    }

    void ShowError(const std::string& description, int number) override {
        std::fprintf(stderr, "The following Error occurred: %s (Number: %d)\n", Out(description).c_str(), number);
    }

    void Notice(const std::string& text) override { std::fprintf(stderr, "%s\n", Out(text).c_str()); }

    // Parents are written ahead of their children; a record whose parent
    // isn't in the file stands at the top.
    void RecordWritten(int32_t index, int32_t parent) override {
        const auto above = depthOf_.find(parent);
        const int depth = above == depthOf_.end() ? 1 : above->second + 1;
        depthOf_[index] = depth;
        ++atDepth_[depth];
    }

    int32_t Games() const { return gameNumber_; }
    int Unresolved() const { return unresolved_; }
    int Repaired() const { return repaired_; }
    // The number of records written at each depth of the tree, from 1.
    const std::map<int, int64_t>& AtDepth() const { return atDepth_; }

private:
    bool overwrite_;
    bool repair_;
    int repaired_ = 0;
    int32_t lastGame_ = 0;
    int16_t lastPly_ = 0;
    int32_t gameNumber_ = 0;
    std::string gameName_;
    int unresolved_ = 0;
    std::unordered_map<int32_t, int> depthOf_;
    std::map<int, int64_t> atDepth_;
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
    if (const auto status = args.Parse(argc, argv)) return *status;

    if (options.inFile == "-") return UsageError("unknown option -");
    options.pgn = !san;
    options.ignoreQuestion = !keepQuestionMarks;
    options.tags = {true, false, false, false, true, true, false};  // Event, White, Black
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
    options.databasePath = dbPath.empty() ? folders.programDir + "/Tessimo.mdb" : dbPath;

    std::signal(SIGINT, OnInterrupt);
    CliHost host(overwrite, repair);
    import::ImportSession session;
    if (!import::BuildTree(options, host, session)) {
        std::fprintf(stderr, "%s\n", gInterrupted ? "Import cancelled by user" : "Couldn't parse moves list");
        return 1;
    }
    if (!import::WriteLibrary(options, host, session)) {
        std::fprintf(stderr, "Couldn't create library '%s.vnb'\n", Out(options.bookName).c_str());
        return 1;
    }
    std::printf("%s\n%d records from %d games; unresolved moves: %d", import::LibraryPath(options).c_str(),
                session.recordCount, host.Games(), host.Unresolved());
    if (repair) std::printf("; repaired moves: %d", host.Repaired());
    std::printf("\n");
    if (options.plyLimit > 0) TellFit(host.AtDepth());
    return 0;
}

}  // namespace vantrel::cli
