// The walk of Find and Find Next: which nodes each call tries, in which
// order, and where a pass through the tree ends.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "library/find.h"

namespace vantrel::library {
namespace {

const std::string kTarget = "RNBQKBNRPPPP0PPP000000000000P0000000000000000000pppppppprnbqkbnr";
const std::string kOther = "RNBQKBNRPPPPPPPP00000000000000000000000000000000pppppppprnbqkbnr";

// A flat tree of n nodes; the nodes in `matches` hold the target position.
TreeModel MakeTree(int n, const std::set<int>& matches) {
    TreeModel tree;
    for (int i = 1; i <= n; ++i)
        tree.Add(0, i, "m" + std::to_string(i), NodeImage::Pawn, matches.count(i) ? kTarget : kOther);
    return tree;
}

TEST(FindInRange, FirstMatchInsideTheRangeComparingTheWholeString) {
    TreeModel tree = MakeTree(10, {3, 6, 8});
    // {from, to, result}; an empty range reads nothing.
    const int cases[][3] = {{1, 10, 3}, {4, 10, 6}, {7, 8, 8}, {4, 5, 0}, {9, 10, 0}, {3, 3, 3},
                            {4, 3, 0},  {11, 10, 0}};
    for (const auto& c : cases) EXPECT_EQ(FindInRange(tree, kTarget, c[0], c[1]), c[2]) << c[0] << ".." << c[1];
    EXPECT_EQ(FindInRange(TreeModel(), kTarget, 1, 0), 0);

    TreeModel padded;
    std::string lowerKing = kTarget;
    lowerKing[4] = 'k';
    padded.Add(0, 1, "a", NodeImage::Pawn, lowerKing);
    padded.Add(0, 2, "b", NodeImage::Pawn, kTarget + " ");
    padded.Add(0, 3, "c", NodeImage::Pawn, kTarget.substr(0, 63));
    padded.Add(0, 4, "d", NodeImage::Pawn, kTarget);
    EXPECT_EQ(FindInRange(padded, kTarget, 1, 4), 4);
    EXPECT_EQ(FindInRange(padded, lowerKing, 1, 4), 1);
    EXPECT_EQ(FindInRange(padded, std::string(64, '0'), 1, 4), 0);
}

// A walk on a tree of n nodes with matches at the given nodes: the selection
// C (Find Next only), where the search began S, and the node found.
struct Walk {
    int n;
    std::set<int> matches;
    int current, start, result;
};

TEST(FindFromStart, BeginsBehindTheSelectionWrapsAndTriesItLast) {
    const Walk walks[] = {
        {10, {3, 8}, 0, 5, 8}, {10, {3, 8}, 0, 8, 3}, {10, {3, 8}, 0, 2, 3}, {10, {3, 8}, 0, 9, 3},
        {10, {4, 10}, 0, 10, 4}, {10, {10}, 0, 10, 10},  // the last node selected: 1..N
        {10, {6}, 0, 6, 6}, {10, {6}, 0, 1, 6}, {10, {}, 0, 6, 0}, {1, {1}, 0, 1, 1}, {1, {}, 0, 1, 0},
    };
    for (const Walk& w : walks)
        EXPECT_EQ(FindFromStart(MakeTree(w.n, w.matches), kTarget, w.start), w.result) << w.n << " S " << w.start;
}

TEST(FindNextFrom, TheFirstRangeByTheSelectionAndTheWrapOnlyAtTheEnd) {
    const Walk walks[] = {
        // C = 1: 2..S, wrapping to 1..N only when 2..S ends at N.
        {10, {1, 4, 7}, 1, 5, 4}, {10, {1, 4, 7}, 1, 3, 0}, {10, {1, 4, 7}, 1, 1, 0}, {10, {1}, 1, 10, 1},
        {1, {1}, 1, 1, 1}, {1, {}, 1, 1, 0},
        // C = N: 1..S.
        {10, {2, 7}, 10, 5, 2}, {10, {2, 7}, 10, 1, 0}, {10, {10}, 10, 10, 10}, {10, {10}, 10, 5, 0},
        // 1 < C < S: C + 1..S, no wrap; the selection itself is not compared.
        {10, {1, 8}, 2, 5, 0}, {10, {1, 4, 8}, 2, 5, 4}, {10, {3}, 3, 5, 0},
        // S <= C < N: C + 1..N, then 1..S; a match on S > 1 keeps the pass going.
        {10, {2, 9}, 5, 5, 9}, {10, {2, 9}, 9, 5, 2}, {10, {2, 9}, 7, 5, 9}, {10, {6}, 7, 5, 0}, {10, {5}, 5, 5, 5},
    };
    for (const Walk& w : walks)
        EXPECT_EQ(FindNextFrom(MakeTree(w.n, w.matches), kTarget, w.current, w.start), w.result)
            << w.n << " C " << w.current << " S " << w.start;
}

}  // namespace
}  // namespace vantrel::library
