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
TreeModel MakeTree(int n, std::set<int> matches) {
    TreeModel tree;
    for (int i = 1; i <= n; ++i) {
        tree.Add(0, i, "m" + std::to_string(i), NodeImage::Pawn, matches.count(i) ? kTarget : kOther);
    }
    return tree;
}

TEST(FindInRange, ReturnsTheFirstMatchInsideTheRangeOnly) {
    TreeModel tree = MakeTree(10, {3, 6, 8});
    EXPECT_EQ(FindInRange(tree, kTarget, 1, 10), 3);
    EXPECT_EQ(FindInRange(tree, kTarget, 4, 10), 6);
    EXPECT_EQ(FindInRange(tree, kTarget, 7, 8), 8);
    EXPECT_EQ(FindInRange(tree, kTarget, 4, 5), 0);
    EXPECT_EQ(FindInRange(tree, kTarget, 9, 10), 0);
    EXPECT_EQ(FindInRange(tree, kTarget, 3, 3), 3);
}

TEST(FindInRange, AnEmptyRangeReadsNothing) {
    TreeModel tree = MakeTree(10, {3, 6, 8});
    EXPECT_EQ(FindInRange(tree, kTarget, 4, 3), 0);
    EXPECT_EQ(FindInRange(tree, kTarget, 11, 10), 0);
    EXPECT_EQ(FindInRange(tree, kTarget, 9, 1), 0);
    TreeModel empty;
    EXPECT_EQ(FindInRange(empty, kTarget, 1, 0), 0);
}

TEST(FindInRange, ComparesTheWholeStringCaseSensitively) {
    TreeModel tree;
    std::string lowerKing = kTarget;
    lowerKing[4] = 'k';
    tree.Add(0, 1, "a", NodeImage::Pawn, lowerKing);
    tree.Add(0, 2, "b", NodeImage::Pawn, kTarget + " ");    // padded tag
    tree.Add(0, 3, "c", NodeImage::Pawn, kTarget.substr(0, 63));
    tree.Add(0, 4, "d", NodeImage::Pawn, kTarget);
    EXPECT_EQ(FindInRange(tree, kTarget, 1, 4), 4);
    EXPECT_EQ(FindInRange(tree, lowerKing, 1, 4), 1);
    // An all-empty search board matches only an all-empty node.
    EXPECT_EQ(FindInRange(tree, std::string(64, '0'), 1, 4), 0);
}

TEST(FindFromStart, BeginsBehindTheSelectionAndWrapsToIt) {
    TreeModel tree = MakeTree(10, {3, 8});
    EXPECT_EQ(FindFromStart(tree, kTarget, 5), 8);
    EXPECT_EQ(FindFromStart(tree, kTarget, 8), 3);  // 9..10 then 1..8
    EXPECT_EQ(FindFromStart(tree, kTarget, 2), 3);
    EXPECT_EQ(FindFromStart(tree, kTarget, 9), 3);
}

TEST(FindFromStart, LastNodeSelectedWalksFromTheFirstAndTriesItLast) {
    TreeModel tree = MakeTree(10, {4, 10});
    EXPECT_EQ(FindFromStart(tree, kTarget, 10), 4);
    TreeModel onlyLast = MakeTree(10, {10});
    EXPECT_EQ(FindFromStart(onlyLast, kTarget, 10), 10);
}

TEST(FindFromStart, TheSelectedNodeAsOnlyMatchIsFoundLast) {
    TreeModel tree = MakeTree(10, {6});
    EXPECT_EQ(FindFromStart(tree, kTarget, 6), 6);
    EXPECT_EQ(FindFromStart(tree, kTarget, 1), 6);
    TreeModel none = MakeTree(10, {});
    EXPECT_EQ(FindFromStart(none, kTarget, 6), 0);
}

TEST(FindFromStart, OneNodeTreeComparesThatNode) {
    EXPECT_EQ(FindFromStart(MakeTree(1, {1}), kTarget, 1), 1);
    EXPECT_EQ(FindFromStart(MakeTree(1, {}), kTarget, 1), 0);
}

TEST(FindNextFrom, TheWorkedPassOfTenNodes) {
    // N = 10, search begun at 5, matches at 3 and 8.
    TreeModel tree = MakeTree(10, {3, 8});
    const int first = FindFromStart(tree, kTarget, 5);
    ASSERT_EQ(first, 8);
    const int second = FindNextFrom(tree, kTarget, first, 5);  // 9..10, then 1..5
    ASSERT_EQ(second, 3);
    EXPECT_EQ(FindNextFrom(tree, kTarget, second, 5), 0);  // 4..5, no wrap
    EXPECT_EQ(FindNextFrom(tree, kTarget, second, 5), 0);  // and again
}

TEST(FindNextFrom, FirstNodeSelectedRunsFromTheSecondToTheStart) {
    TreeModel tree = MakeTree(10, {1, 4, 7});
    EXPECT_EQ(FindNextFrom(tree, kTarget, 1, 5), 4);
    EXPECT_EQ(FindNextFrom(tree, kTarget, 1, 3), 0);  // 2..3: no wrap, 7 is not reached
    // Started at 1: the range 2..1 is empty and nothing is compared.
    EXPECT_EQ(FindNextFrom(tree, kTarget, 1, 1), 0);
    // Started at the last node: 2..N ends at N, so the pass wraps to 1..N.
    TreeModel onlyFirst = MakeTree(10, {1});
    EXPECT_EQ(FindNextFrom(onlyFirst, kTarget, 1, 10), 1);
}

TEST(FindNextFrom, OneNodeTreeComparesItThroughTheSecondRange) {
    EXPECT_EQ(FindNextFrom(MakeTree(1, {1}), kTarget, 1, 1), 1);
    EXPECT_EQ(FindNextFrom(MakeTree(1, {}), kTarget, 1, 1), 0);
}

TEST(FindNextFrom, LastNodeSelectedRunsFromTheFirstToTheStart) {
    TreeModel tree = MakeTree(10, {2, 7});
    EXPECT_EQ(FindNextFrom(tree, kTarget, 10, 5), 2);
    EXPECT_EQ(FindNextFrom(tree, kTarget, 10, 1), 0);  // 1..1 only, 7 never reached
    TreeModel onlyLast = MakeTree(10, {10});
    // Started at N: 1..N, then (ended at N) 1..N again; node 10 is found.
    EXPECT_EQ(FindNextFrom(onlyLast, kTarget, 10, 10), 10);
    EXPECT_EQ(FindNextFrom(onlyLast, kTarget, 10, 5), 0);
}

TEST(FindNextFrom, SelectionMovedBeforeTheStartEndsAtTheStartWithoutWrapping) {
    TreeModel tree = MakeTree(10, {1, 8});
    EXPECT_EQ(FindNextFrom(tree, kTarget, 2, 5), 0);  // 3..5 only
    TreeModel inRange = MakeTree(10, {1, 4, 8});
    EXPECT_EQ(FindNextFrom(inRange, kTarget, 2, 5), 4);
    // The selected node itself is not compared again.
    TreeModel onSelection = MakeTree(10, {3});
    EXPECT_EQ(FindNextFrom(onSelection, kTarget, 3, 5), 0);
}

TEST(FindNextFrom, SelectionAtOrBehindTheStartRunsToTheEndAndWraps) {
    TreeModel tree = MakeTree(10, {2, 9});
    EXPECT_EQ(FindNextFrom(tree, kTarget, 5, 5), 9);
    EXPECT_EQ(FindNextFrom(tree, kTarget, 9, 5), 2);
    EXPECT_EQ(FindNextFrom(tree, kTarget, 7, 5), 9);
    TreeModel behindOnly = MakeTree(10, {6});
    EXPECT_EQ(FindNextFrom(behindOnly, kTarget, 7, 5), 0);  // 8..10, 1..5
}

TEST(FindNextFrom, AMatchOnTheStartNodeKeepsThePassGoing) {
    // S a match and S > 1: reaching S puts C on S, and the next call starts
    // a new pass behind it.
    TreeModel tree = MakeTree(10, {5});
    EXPECT_EQ(FindFromStart(tree, kTarget, 5), 5);
    EXPECT_EQ(FindNextFrom(tree, kTarget, 5, 5), 5);
    EXPECT_EQ(FindNextFrom(tree, kTarget, 5, 5), 5);
}

}  // namespace
}  // namespace vantrel::library
