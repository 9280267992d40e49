#include "library/find.h"

#include <algorithm>

namespace vantrel::library {

int FindInRange(const TreeModel& tree, const std::string& szBoard, int iFrom, int iTo) {
    // Numbers outside the tree are never asked for by the window; should one
    // come, only the nodes that exist are read.
    const int from = std::max(iFrom, 1);
    const int to = std::min(iTo, tree.Count());
    for (int i = from; i <= to; ++i) {
        if (tree.Node(i).Tag == szBoard) return i;
    }
    return 0;
}

int FindFromStart(const TreeModel& tree, const std::string& szBoard, int iSearchStart) {
    const int n = tree.Count();
    int result = 0;
    if (iSearchStart < n) result = FindInRange(tree, szBoard, iSearchStart + 1, n);
    if (result == 0) result = FindInRange(tree, szBoard, 1, iSearchStart);
    return result;
}

int FindNextFrom(const TreeModel& tree, const std::string& szBoard, int iCurrent, int iSearchStart) {
    const int n = tree.Count();
    const int c = iCurrent;
    const int s = iSearchStart;
    // The first range: the first of these rows that fits.
    int from = 0;
    int to = 0;
    if (c == 1) {
        from = 2, to = s;
    } else if (c == n) {
        from = 1, to = s;
    } else if (c < s) {
        from = c + 1, to = s;
    } else {  // s <= c < n
        from = c + 1, to = n;
    }
    int result = FindInRange(tree, szBoard, from, to);
    // Only a range that ran to the end wraps; one that stopped at the start
    // node has finished the pass.
    if (result == 0 && to == n) result = FindInRange(tree, szBoard, 1, s);
    return result;
}

}  // namespace vantrel::library
