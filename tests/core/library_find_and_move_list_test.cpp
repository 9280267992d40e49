// The walk of Find and Find Next (which nodes each call tries, in which
// order, where a pass through the tree ends), and the Move List's lines.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "library/find.h"
#include "library/move_list.h"

namespace vantrel::library {
namespace {

using Lines = std::vector<std::string>;

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

TEST(MoveList, LinesOfAPath) {
    const std::pair<const char*, Lines> cases[] = {
        {"", {}},
        {"e4", {"  1. e4"}},  // a lone white move has no padding
        {"e4\\e5", {"  1. e4      e5"}}, {"e4\\e5\\Nf3", {"  1. e4      e5", "  2. Nf3"}},
        {"e4\\e5\\Nf3\\Nc6", {"  1. e4      e5", "  2. Nf3     Nc6"}},
        // Game names are left out; a colon later in the name is just more of the name.
        {"e4:King's Pawn\\c5:Sicilian Defence\\Nf3", {"  1. e4      c5", "  2. Nf3"}},
        {"d4\\d5\\c4:Queen's Gambit", {"  1. d4      d5", "  2. c4"}}, {"e4:a: b: c\\e5", {"  1. e4      e5"}},
        // The first character of a move is never a terminator, not even a colon or a backslash.
        {":x\\e5", {"  1. :x      e5"}}, {"e4\\:Name", {"  1. e4      :Name"}}, {"\\e4\\e5", {"  1. \\e4     e5"}},
        // A backslash in a name starts a new move and shifts every following move by one half.
        {"e4:Ruy Lopez\\Spanish\\e5\\Nf3", {"  1. e4      Spanish", "  2. e5      Nf3"}},
        {"e4\\e5:Open\\ing\\Nf3", {"  1. e4      e5", "  2. ing     Nf3"}},
        // Long white moves are not cut: seven characters and a blank, eight and none, longer still.
        {"exd8=Q+\\Kxd8", {"  1. exd8=Q+ Kxd8"}}, {"exd8=Q+!\\Kxd8", {"  1. exd8=Q+!Kxd8"}},
        {"Nbxd8=Q+!?\\Kxd8", {"  1. Nbxd8=Q+!?Kxd8"}},
        // A trailing backslash makes an empty move: an empty black move still closes the line,
        // an empty white move adds none.
        {"e4\\", {"  1. e4      "}}, {"e4\\e5\\", {"  1. e4      e5"}},
        // Characters of library text pass through as bytes.
        {"e4:R\xE9ti\\Nf3", {"  1. e4      Nf3"}}, {"\xE9\xE8", {"  1. \xE9\xE8"}},
    };
    for (const auto& [path, lines] : cases) EXPECT_EQ(MoveListLines(path), lines) << path;
}

TEST(MoveList, NumberingIsRightAlignedInThreeThenGrows) {
    std::string path = "a3";
    for (int ply = 2; ply <= 2001; ++ply) path += ply % 2 ? "\\a3" : "\\h6";
    const Lines lines = MoveListLines(path);
    ASSERT_EQ(lines.size(), 1001u);
    const std::pair<size_t, const char*> rows[] = {{0, "  1. a3      h6"},   {8, "  9. a3      h6"},
                                                   {9, " 10. a3      h6"},   {98, " 99. a3      h6"},
                                                   {99, " 100. a3      h6"}, {999, " 1000. a3      h6"},
                                                   {1000, " 1001. a3"}};
    for (const auto& [row, text] : rows) EXPECT_EQ(lines[row], text);
}

}  // namespace
}  // namespace vantrel::library
