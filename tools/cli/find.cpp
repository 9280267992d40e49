// vantrel-cli find: the nodes that hold a position.
#include <cstdio>

#include "chess/legal.h"
#include "library/export_pgn.h"
#include "tools/cli/common.h"

namespace vantrel::cli {
namespace {

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

}  // namespace

int Find(int argc, char** argv) {
    std::string path, fen, layout;
    Arguments args(kFindHelp);
    args.Value("LIB", path);
    const CLI::Option* fenGiven = args.Value("--fen", fen);
    const CLI::Option* layoutGiven = args.Value("--layout", layout);
    if (const auto status = args.Parse(argc, argv)) return *status;
    if (path.empty()) return UsageError("no library given");
    if ((fenGiven->count() > 0) == (layoutGiven->count() > 0)) return UsageError("give either --fen or --layout");
    if (fenGiven->count() > 0) {
        std::string error;
        if (!chess::LayoutFromFen(fen, layout, error)) return UsageError("not a FEN position: " + error);
    } else {
        chess::Position check;
        if (!check.SetLayout(layout, true))
            return UsageError("a layout is 64 characters of PNBRQK, pnbrqk and 0, a1 to h8");
    }
    library::LibraryContents contents;
    if (!Load(path, contents)) return 1;
    const std::vector<int> found = library::FindAll(contents.tree, layout);
    if (found.empty()) {
        std::fprintf(stderr, "No match found\n");
        return 1;
    }
    // Line by line, as each is made: the lines of a large tree together
    // could be more than memory holds.
    for (const int n : found)
        if (!WriteResult(std::to_string(n) + " " + Out(library::LineOfMoves(contents.tree, n)) + "\n", "")) return 1;
    return 0;
}

}  // namespace vantrel::cli
