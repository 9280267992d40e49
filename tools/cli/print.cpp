// vantrel-cli print: the text of the printed moves list of a node.
#include <cstdio>
#include <cstdlib>

#include "print/move_list_text.h"
#include "tools/cli/common.h"

namespace vantrel::cli {
namespace {

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

}  // namespace

int Print(int argc, char** argv) {
    std::string path, node, outPath;
    Arguments args(kPrintHelp);
    args.Value("LIB", path);
    args.Value("--node", node);
    args.Value("-o", outPath);
    if (const auto status = args.Parse(argc, argv)) return *status;
    if (path.empty()) return UsageError("no library given");
    char* end = nullptr;
    const long number = std::strtol(node.c_str(), &end, 10);
    if (node.empty() || *end || number < 1)
        return UsageError("--node takes a node number from 1, not '" + node + "'");
    library::LibraryContents contents;
    if (!Load(path, contents)) return 1;
    if (number > contents.tree.Count()) {
        std::fprintf(stderr, "vantrel-cli: %s has no node %ld (it has %d)\n", path.c_str(), number,
                     contents.tree.Count());
        return 1;
    }
    try {
        const auto pages = print::MoveListPages(contents.tree, contents.NodeComments, static_cast<int>(number));
        return WriteResult(Out(print::PagesText(pages)), outPath, path) ? 0 : 1;
    } catch (const Error& e) {
        std::fprintf(stderr, "The following Error occurred: %s (Number: %d)\n", e.what(), e.number());
        return 1;
    }
}

}  // namespace vantrel::cli
