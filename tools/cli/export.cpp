// vantrel-cli export: the library as PGN.
#include "library/export_pgn.h"
#include "tools/cli/common.h"

namespace vantrel::cli {
namespace {

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

}  // namespace

int Export(int argc, char** argv) {
    std::string path, outPath;
    Arguments args(kExportHelp);
    args.Value("LIB", path);
    args.Value("-o", outPath);
    if (const auto status = args.Parse(argc, argv)) return *status;
    if (path.empty()) return UsageError("no library given");
    // The games start at the records that opened a new branch, which the
    // load hands over on the way.
    library::NewBranchFlags newBranch;
    library::LibraryContents contents;
    if (!Load(path, contents, &newBranch)) return 1;
    return WriteResult(Out(library::ExportPgn(contents, newBranch.flags)), outPath, path) ? 0 : 1;
}

}  // namespace vantrel::cli
