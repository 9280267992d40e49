// vantrel-cli: the import without windows, and a look into a library.
//
//   vantrel-cli import FILE --name NAME [options]   a game file into a library
//   vantrel-cli info LIB [--nodes]                  what a library holds
//   vantrel-cli export LIB [-o FILE.pgn]            the library as PGN
//   vantrel-cli find LIB (--fen FEN | --layout L)   the nodes of a position
//   vantrel-cli print LIB --node N [-o FILE.txt]    the printed moves list
//
// Results go to stdout, messages to stderr; the exit status is 0 on success,
// 1 on failure and 2 on a usage error. Nothing ever waits for an answer: a
// move that can't be resolved is reported and the rest of its game skipped,
// unless --repair finds the spelling the rules of chess allow.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "chess/legal.h"
#include "chess/move_repair.h"
#include "chess/resolver.h"
#include "import/program_dir.h"
#include "import/tree_store.h"
#include "library/export_pgn.h"
#include "library/format.h"
#include "library/loader.h"
#include "library/text_codec.h"
#include "print/move_list_text.h"

namespace {

using namespace vantrel;
namespace fs = std::filesystem;

volatile std::sig_atomic_t gInterrupted = 0;

void OnInterrupt(int) { gInterrupted = 1; }

// Library text is Windows-1252; the terminal wants UTF-8.
std::string Out(const std::string& cp1252) { return text::Cp1252ToUtf8(cp1252); }

constexpr const char* kImportHelp =
    "usage: vantrel-cli import FILE --name NAME [options]\n"
    "\n"
    "Imports a file of games into the library NAME.vnb, as the import wizard does.\n"
    "\n"
    "  --name NAME          the library's name (required); the file is NAME.vnb\n"
    "  --san                the file is plain SAN: a line \"!name\" starts each game\n"
    "  --start S, --end E   SAN only: the comment indicators (default // and //)\n"
    "  --tags LIST          PGN only: the tags that make a game's name, from Event,\n"
    "                       Site, Date, Round, White, Black, Result (default\n"
    "                       Event,White,Black)\n"
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

constexpr const char* kInfoHelp =
    "usage: vantrel-cli info LIB [--nodes]\n"
    "\n"
    "Without --nodes: the header of the library, its counts, whether it opens in\n"
    "Vantrel, and its first nodes.\n"
    "\n"
    "  --nodes   every node in load order, one line each, through the loader of the\n"
    "            window, tab-separated: node number, parent's node number (0 at the\n"
    "            top), picture (board or pawn), text, 64-character layout, comment.\n"
    "            In text and comment a line break is written \\n, a lone CR \\r, a tab\n"
    "            \\t and a backslash \\\\; a node without a comment has an empty field.\n"
    "\n"
    "Exit status: 0 on success; 1 for a file that isn't a library and, with\n"
    "--nodes, for a library the window can't show (with the window's message);\n"
    "2 on a usage error.\n";

constexpr const char* kExportHelp =
    "usage: vantrel-cli export LIB [-o FILE.pgn]\n"
    "\n"
    "Writes the library as PGN (UTF-8) to stdout or to FILE.pgn: one game for each\n"
    "game that built the library, from the node where it branched off down the\n"
    "nodes it added, with the line from the top of the tree in front. The game's\n"
    "name is its [Event] tag, the other tags are unknown, castling is O-O and\n"
    "O-O-O, and the comments of the nodes the game added stand in braces. The\n"
    "library's remarks come first as \"%\" lines. Importing the export with\n"
    "--tags Event (and --keep-question-marks if the names hold a \"?\") builds the\n"
    "same nodes in the same order. Comments come back with the tag lines of the new\n"
    "import; a comment's line breaks become blanks and a \"}\" in it becomes \")\",\n"
    "and the result \"*\" at the end of each game is read back as the comment of\n"
    "its last move.\n"
    "\n"
    "  -o FILE   write to FILE instead of stdout\n"
    "\n"
    "Exit status: 0 on success; 1 for a library the window can't show or a file\n"
    "that can't be written; 2 on a usage error.\n";

constexpr const char* kFindHelp =
    "usage: vantrel-cli find LIB (--fen FEN | --layout LAYOUT)\n"
    "\n"
    "Every node whose position is the one given, one line each: the node number and\n"
    "the moves from the top of the tree, separated by blanks. A library keeps no\n"
    "side to move, so only the FEN's piece placement counts. Exit status 1 with\n"
    "\"No match found\" when there is none.\n"
    "\n"
    "  --fen FEN        a position in FEN (the placement field is enough)\n"
    "  --layout LAYOUT  a position as 64 characters a1..h8: PNBRQK for White,\n"
    "                   pnbrqk for Black, 0 for an empty square\n"
    "\n"
    "Exit status: 0 when a node was found; 1 with \"No match found\", or for a\n"
    "library the window can't show; 2 on a usage error, a FEN that isn't one\n"
    "among them.\n";

constexpr const char* kPrintHelp =
    "usage: vantrel-cli print LIB --node N [-o FILE.txt]\n"
    "\n"
    "The text of the printed pages of Print Moves List for node N: the line of\n"
    "moves from the top of the tree to the node, with game names and comments,\n"
    "each page with its head and rule, pages separated by form feeds.\n"
    "\n"
    "  --node N  the node, by its number in load order (see info --nodes)\n"
    "  -o FILE   write to FILE instead of stdout\n"
    "\n"
    "Exit status: 0 on success; 1 for a library the window can't show, a node it\n"
    "hasn't, a line too long to print or a file that can't be written; 2 on a\n"
    "usage error.\n";

int Usage() {
    std::fprintf(stderr,
                 "usage:\n"
                 "  vantrel-cli import FILE --name NAME [--san [--start S] [--end E]]\n"
                 "              [--tags Event,Site,Date,Round,White,Black,Result]\n"
                 "              [--keep-question-marks] [--out-dir DIR] [--db PATH] [--overwrite]\n"
                 "              [--repair] [--plies N]\n"
                 "  vantrel-cli info LIB [--nodes]\n"
                 "  vantrel-cli export LIB [-o FILE.pgn]\n"
                 "  vantrel-cli find LIB (--fen FEN | --layout LAYOUT)\n"
                 "  vantrel-cli print LIB --node N [-o FILE.txt]\n"
                 "Each command tells more with --help.\n");
    return 2;
}

// A usage error with its cause.
int UsageError(const std::string& cause) {
    std::fprintf(stderr, "vantrel-cli: %s\n", cause.c_str());
    return Usage();
}

bool WantsHelp(const std::vector<std::string>& args) {
    for (const auto& a : args)
        if (a == "--help" || a == "-h") return true;
    return false;
}

int Help(const char* text) {
    std::fputs(text, stdout);
    return 0;
}

// Writes a result to stdout, or to the file named. False, with the cause
// told, if it couldn't be written.
bool WriteResult(const std::string& text, const std::string& outPath) {
    if (outPath.empty()) {
        if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return true;
        std::fprintf(stderr, "vantrel-cli: couldn't write the result to stdout\n");
        return false;
    }
    std::ofstream out(outPath, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    if (out) return true;
    std::fprintf(stderr, "vantrel-cli: couldn't write %s\n", outPath.c_str());
    return false;
}

// Loads a library through the window's loader; false, with the window's
// message on stderr, if the window couldn't show it.
bool Load(const std::string& path, library::LibraryContents& contents) {
    switch (library::LoadLibrary(path, contents)) {
        case library::LoadResult::Ok:
            return true;
        case library::LoadResult::NotValid:
            std::fprintf(stderr, "Not a valid Vantrel library\n");
            return false;
        case library::LoadResult::Problem:
            break;
    }
    std::fprintf(stderr, "Problem loading library %s\n", path.c_str());
    return false;
}

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

    int32_t Games() const { return gameNumber_; }
    int Unresolved() const { return unresolved_; }
    int Repaired() const { return repaired_; }

private:
    bool overwrite_;
    bool repair_;
    int repaired_ = 0;
    int32_t lastGame_ = 0;
    int16_t lastPly_ = 0;
    int32_t gameNumber_ = 0;
    std::string gameName_;
    int unresolved_ = 0;
};

bool ParseTags(const std::string& list, std::array<bool, 7>& tags) {
    static constexpr const char* kNames[7] = {"event", "site", "date", "round", "white", "black", "result"};
    tags.fill(false);
    size_t start = 0;
    while (start <= list.size()) {
        size_t comma = list.find(',', start);
        if (comma == std::string::npos) comma = list.size();
        std::string name = list.substr(start, comma - start);
        for (auto& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        bool known = false;
        for (int i = 0; i < 7; ++i)
            if (name == kNames[i]) tags[i] = known = true;
        if (!known) {
            std::fprintf(stderr, "vantrel-cli: unknown tag '%s'\n", name.c_str());
            return false;
        }
        start = comma + 1;
    }
    return true;
}

// Whether a library fits a window, and if not, the largest number of plies
// a game may keep for it to fit: the nodes of the tree cut at N plies are
// those at depth N or less, so the count at each depth tells.
void TellFit(const std::string& path) {
    library::LibraryReader reader;
    library::LibraryHeader header;
    if (!reader.Open(path)) return;
    reader.ReadHeader(header);
    std::unordered_map<int32_t, int> depthOf;
    std::map<int, int64_t> atDepth;
    int64_t total = 0;
    library::LibraryNodeRecord record;
    while (reader.ReadRecord(record)) {
        const auto parent = depthOf.find(record.parent);
        const int depth = parent == depthOf.end() ? 1 : parent->second + 1;
        depthOf[record.index] = depth;
        ++atDepth[depth];
        ++total;
    }
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

int Import(const std::vector<std::string>& args) {
    if (WantsHelp(args)) return Help(kImportHelp);
    import::ImportOptions options;
    options.tags = {true, false, false, false, true, true, false};  // Event, White, Black
    bool overwrite = false, repair = false;
    std::string outDir, dbPath;
    bool haveName = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= args.size()) return false;
            into = args[++i];
            return true;
        };
        if (a == "--name") {
            if (!value(options.bookName)) return Usage();
            haveName = true;
        } else if (a == "--san") {
            options.pgn = false;
        } else if (a == "--start") {
            if (!value(options.commentStart)) return Usage();
        } else if (a == "--end") {
            if (!value(options.commentEnd)) return Usage();
        } else if (a == "--tags") {
            std::string list;
            if (!value(list) || !ParseTags(list, options.tags)) return Usage();
        } else if (a == "--keep-question-marks") {
            options.ignoreQuestion = false;
        } else if (a == "--out-dir") {
            if (!value(outDir)) return Usage();
        } else if (a == "--db") {
            if (!value(dbPath)) return Usage();
        } else if (a == "--overwrite") {
            overwrite = true;
        } else if (a == "--repair") {
            repair = true;
        } else if (a == "--plies") {
            std::string n;
            if (!value(n)) return Usage();
            char* end = nullptr;
            const long plies = std::strtol(n.c_str(), &end, 10);
            if (n.empty() || *end || plies < 1 || plies > import::kMaxPly)
                return UsageError("--plies takes a number from 1 to 250, not '" + n + "'");
            options.plyLimit = static_cast<int16_t>(plies);
        } else if (!a.empty() && a[0] == '-') {
            std::fprintf(stderr, "vantrel-cli: unknown option %s\n", a.c_str());
            return Usage();
        } else if (options.inFile.empty()) {
            options.inFile = a;
        } else {
            return Usage();
        }
    }
    if (options.inFile.empty() || !haveName) return Usage();
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
        std::string name = options.bookName;
        std::fprintf(stderr, "Couldn't create library '%s.vnb'\n", Out(name).c_str());
        return 1;
    }
    std::printf("%s\n%d records from %d games; unresolved moves: %d", import::LibraryPath(options).c_str(),
                session.recordCount, host.Games(), host.Unresolved());
    if (repair) std::printf("; repaired moves: %d", host.Repaired());
    std::printf("\n");
    if (options.plyLimit > 0) TellFit(import::LibraryPath(options));
    return 0;
}

std::string FirstLine(const std::string& s) {
    const size_t cut = s.find_first_of("\r\n");
    return cut == std::string::npos ? s : s.substr(0, cut) + " ...";
}

int Info(const std::vector<std::string>& args) {
    if (WantsHelp(args)) return Help(kInfoHelp);
    std::string path;
    bool listNodes = false;
    for (const auto& a : args) {
        if (a == "--nodes")
            listNodes = true;
        else if (!a.empty() && a[0] == '-')
            return UsageError("unknown option " + a);
        else if (path.empty())
            path = a;
        else
            return Usage();
    }
    if (path.empty()) return Usage();
    if (listNodes) {
        library::LibraryContents contents;
        if (!Load(path, contents)) return 1;
        std::string text;
        for (int n = 1; n <= contents.tree.Count(); ++n) text += library::NodeListingLine(contents, n) + "\n";
        return WriteResult(Out(text), "") ? 0 : 1;
    }
    library::LibraryReader reader;
    if (!reader.Open(path)) {
        std::fprintf(stderr, "Problem loading library %s\n", path.c_str());
        return 1;
    }
    library::LibraryHeader header;
    reader.ReadHeader(header);
    if (header.version != 1) {
        std::fprintf(stderr, "Not a valid Vantrel library\n");
        return 1;
    }
    std::printf("Library:    %s\n", Out(header.book).c_str());
    std::printf("Version:    %d\n", header.version);
    std::printf("RecCount:   %d\n", header.RecCount);
    std::printf("MinIndex:   %d\n", header.MinIndex);
    std::printf("MaxIndex:   %d\n", header.MaxIndex);
    std::printf("Remarks:    %s\n", Out(FirstLine(header.LibRemarks)).c_str());

    constexpr int kShown = 12;
    int64_t nodes = 0, games = 0, topLevel = 0;
    std::vector<library::LibraryNodeRecord> first;
    library::LibraryNodeRecord record;
    while (reader.ReadRecord(record)) {
        ++nodes;
        if (library::ChooseImage(record) == library::NodeImage::Board) ++games;
        if (record.parent == 0) ++topLevel;
        if (first.size() < kShown) first.push_back(record);
    }
    std::printf("Nodes:      %lld\n", static_cast<long long>(nodes));
    std::printf("Games:      %lld\n", static_cast<long long>(games));
    std::printf("First moves: %lld\n", static_cast<long long>(topLevel));

    library::LibraryContents contents;
    const library::LoadResult loaded = library::LoadLibrary(path, contents);
    std::printf("Opens in Vantrel: %s\n", loaded == library::LoadResult::Ok ? "yes" : "no");

    std::printf("First nodes:\n");
    for (const auto& r : first) {
        std::printf("  %6d  parent %6d  %s  %-28s %s\n", r.index, r.parent, r.BoardLayout.c_str(),
                    Out(r.description).c_str(), Out(FirstLine(r.remarks)).c_str());
    }
    return 0;
}

// The library and the options of export, find and print: every option
// named in `valued` takes the next argument as its value.
struct LibraryArgs {
    std::string path;
    std::map<std::string, std::string> values;
};

bool ParseLibraryArgs(const std::vector<std::string>& args, const std::vector<std::string>& valued,
                      LibraryArgs& out, int& status) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (!a.empty() && a[0] == '-' && a.size() > 1) {
            if (std::find(valued.begin(), valued.end(), a) == valued.end()) {
                status = UsageError("unknown option " + a);
                return false;
            }
            if (i + 1 >= args.size()) {
                status = UsageError(a + " needs a value");
                return false;
            }
            out.values[a] = args[++i];
        } else if (out.path.empty()) {
            out.path = a;
        } else {
            status = Usage();
            return false;
        }
    }
    if (out.path.empty()) {
        status = UsageError("no library given");
        return false;
    }
    return true;
}

int Export(const std::vector<std::string>& args) {
    if (WantsHelp(args)) return Help(kExportHelp);
    LibraryArgs a;
    int status = 0;
    if (!ParseLibraryArgs(args, {"-o"}, a, status)) return status;
    library::LibraryContents contents;
    if (!Load(a.path, contents)) return 1;
    const std::string pgn = library::ExportPgn(contents, library::ReadNewBranchFlags(a.path));
    return WriteResult(Out(pgn), a.values["-o"]) ? 0 : 1;
}

int Find(const std::vector<std::string>& args) {
    if (WantsHelp(args)) return Help(kFindHelp);
    LibraryArgs a;
    int status = 0;
    if (!ParseLibraryArgs(args, {"--fen", "--layout"}, a, status)) return status;
    if (a.values.size() != 1) return UsageError("give either --fen or --layout");
    std::string layout, error;
    if (a.values.count("--fen")) {
        if (!chess::LayoutFromFen(a.values["--fen"], layout, error))
            return UsageError("not a FEN position: " + error);
    } else {
        layout = a.values["--layout"];
        chess::Position check;
        if (!check.SetLayout(layout, true))
            return UsageError("a layout is 64 characters of PNBRQK, pnbrqk and 0, a1 to h8");
    }
    library::LibraryContents contents;
    if (!Load(a.path, contents)) return 1;
    const std::vector<int> found = library::FindAll(contents.tree, layout);
    if (found.empty()) {
        std::fprintf(stderr, "No match found\n");
        return 1;
    }
    std::string text;
    for (const int n : found) text += std::to_string(n) + " " + library::LineOfMoves(contents.tree, n) + "\n";
    return WriteResult(Out(text), "") ? 0 : 1;
}

int Print(const std::vector<std::string>& args) {
    if (WantsHelp(args)) return Help(kPrintHelp);
    LibraryArgs a;
    int status = 0;
    if (!ParseLibraryArgs(args, {"--node", "-o"}, a, status)) return status;
    const std::string& n = a.values["--node"];
    char* end = nullptr;
    const long node = std::strtol(n.c_str(), &end, 10);
    if (n.empty() || *end || node < 1) return UsageError("--node takes a node number from 1, not '" + n + "'");
    library::LibraryContents contents;
    if (!Load(a.path, contents)) return 1;
    if (node > contents.tree.Count()) {
        std::fprintf(stderr, "vantrel-cli: %s has no node %ld (it has %d)\n", a.path.c_str(), node,
                     contents.tree.Count());
        return 1;
    }
    try {
        const auto pages = print::MoveListPages(contents.tree, contents.NodeComments, static_cast<int>(node));
        return WriteResult(Out(print::PagesText(pages)), a.values["-o"]) ? 0 : 1;
    } catch (const print::PrintError& e) {
        std::fprintf(stderr, "The following Error occurred: %s (Number: %d)\n", e.what(), e.number());
        return 1;
    }
}

constexpr const char* kHelp =
    "usage: vantrel-cli COMMAND ...\n"
    "\n"
    "  import FILE --name NAME [options]    import a PGN or SAN game file into a library\n"
    "  info LIB [--nodes]                   describe a library, or list every node\n"
    "  export LIB [-o FILE.pgn]             the library as PGN\n"
    "  find LIB (--fen FEN | --layout L)    the nodes that hold a position\n"
    "  print LIB --node N [-o FILE.txt]     the printed moves list of a node\n"
    "\n"
    "vantrel-cli COMMAND --help tells more. Results go to stdout, messages to stderr;\n"
    "the exit status is 0 on success, 1 on failure, 2 on a usage error.\n";

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return Usage();
    const std::string command = argv[1];
    std::vector<std::string> args(argv + 2, argv + argc);
    if (command == "--help" || command == "-h" || command == "help") return Help(kHelp);
    if (command == "import") return Import(args);
    if (command == "info") return Info(args);
    if (command == "export") return Export(args);
    if (command == "find") return Find(args);
    if (command == "print") return Print(args);
    return UsageError("unknown command '" + command + "'");
}
