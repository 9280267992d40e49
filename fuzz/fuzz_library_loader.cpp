// Any bytes given to the library loader end in one of its three results,
// and a tree that loads keeps its promises.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "library/loader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vantrel::library;
    LibraryContents contents;
    LoadResult r = LoadLibraryBytes(std::string(reinterpret_cast<const char*>(data), size), contents);
    if (r != LoadResult::Ok) return 0;
    const TreeModel& tree = contents.tree;
    if (tree.Count() < 1 || tree.Count() > TreeModel::kMaxNodes) std::abort();
    if (contents.NodeComments.size() != static_cast<size_t>(tree.Count()) + 1) std::abort();
    for (int n = 1; n <= tree.Count(); ++n) {
        const TreeNode& node = tree.Node(n);
        if (node.parent >= n) std::abort();  // parents always come first
        if (node.Tag.size() != kLayoutBytes) std::abort();
        (void)tree.FullPath(n);
    }
    for (const GameEntry& g : contents.games)
        if (g.node < 1 || g.node > tree.Count() || tree.Node(g.node).Image != NodeImage::Board) std::abort();
    return 0;
}
