// The library file: its bytes written and read back, and opening it: the
// tree, the comments, the game list, and the files that can't be opened.
// The walk of Find and Find Next (which nodes each call tries, in which
// order, where a pass through the tree ends), and the Move List's lines.
#include <gtest/gtest.h>

#include <set>

#include "chess/board.h"
#include "library/find.h"
#include "library/format.h"
#include "library/loader.h"
#include "library/move_list.h"

using namespace vantrel::library;

namespace {

const std::string kStart(vantrel::chess::kInitialLayout);

// A library in one line: Lib().Add(1, 0, "e4").Add(2, 1, "e5").Bytes().
// RecCount is the number of records unless set.
struct Lib {
    LibraryHeader header{1, -1, "Test", -99, 0, 0, ""};
    std::vector<LibraryNodeRecord> records;

    Lib& Add(int32_t index, int32_t parent, std::string text, std::string remarks = "", bool newBranch = false,
             std::string layout = kStart) {
        records.push_back({index, parent, newBranch, std::move(text), std::move(remarks), std::move(layout)});
        return *this;
    }
    Lib& Set(int16_t version, int32_t recCount) { header.version = version, header.RecCount = recCount; return *this; }
    std::string Bytes() const {
        LibraryHeader h = header;
        if (h.RecCount == -99) h.RecCount = static_cast<int32_t>(records.size());
        std::string out;
        EncodeHeader(h, out);
        for (const auto& r : records) EncodeRecord(r, out);
        return out;
    }
    LoadResult Load(LibraryContents& out, LoadObserver* observer = nullptr) const {
        return LoadLibraryBytes(Bytes(), out, observer);
    }
};

std::string Hex(std::string_view bytes) {
    static const char* d = "0123456789ABCDEF";
    std::string s;
    for (unsigned char c : bytes) s += std::string(s.empty() ? "" : " ") + d[c >> 4] + d[c & 15];
    return s;
}

// A small library: Demo, remarks Hi, 1.e4 from "Test game" and 1...e5 with
// the comment "Open game".
std::string DemoBytes() {
    Lib demo{{1, -1, "Demo", 2, 1, 2, "Hi"}, {}};
    return demo.Add(1, 0, "e4: Test game", "", true, std::string(64, 'A'))
        .Add(2, 1, "e5", "Open game", false, std::string(64, 'B'))
        .Bytes();
}

TEST(LibraryFormat, WorkedExampleIsByteExact) {
    const std::string bytes = DemoBytes();
    ASSERT_EQ(bytes.size(), 206u);
    EXPECT_EQ(Hex(bytes.substr(0, 26)),
              "01 00 FF FF 04 00 44 65 6D 6F 02 00 00 00 01 00 00 00 02 00 00 00 02 00 48 69");
    EXPECT_EQ(Hex(bytes.substr(26, 27)),
              "01 00 00 00 00 00 00 00 FF FF 0D 00 65 34 3A 20 54 65 73 74 20 67 61 6D 65 00 00");
    EXPECT_EQ(bytes.substr(53, 64), std::string(64, 'A'));
    EXPECT_EQ(Hex(bytes.substr(117, 25)), "02 00 00 00 01 00 00 00 00 00 02 00 65 35 09 00 4F 70 65 6E 20 67 61 6D 65");
    EXPECT_EQ(bytes.substr(142, 64), std::string(64, 'B'));
}

TEST(LibraryLoader, BuildsTreeCommentsAndGameList) {
    LibraryContents c;
    ASSERT_EQ(Lib().Add(1, 0, "e4: Open games", "", true)
                  .Add(2, 1, "e5", "  main line  ")
                  .Add(3, 1, "c5: Sicilian", "   ", true)
                  .Add(4, 0, "d4: Closed", "", true)
                  .Add(5, 2, "Nf3: not a game", "", false)
                  .Add(6, 4, "d5:  x", "", true)
                  .Add(7, 6, "c4: ", "", true)
                  .Load(c),
              LoadResult::Ok);
    ASSERT_EQ(c.tree.Count(), 7);
    EXPECT_EQ(c.tree.TopLevel(), (std::vector<int>{1, 4}));
    EXPECT_EQ(c.tree.Node(1).children, (std::vector<int>{2, 3}));
    EXPECT_EQ(c.tree.FullPath(5), "e4: Open games\\e5\\Nf3: not a game");
    EXPECT_EQ(c.tree.Node(5).Image, NodeImage::Pawn) << "a colon without new_branch is no game";
    EXPECT_EQ(c.tree.Node(3).Image, NodeImage::Board);
    EXPECT_EQ(c.tree.Node(1).Tag, kStart);
    // Remarks with text keep their blanks; remarks of blanks only are no comment.
    EXPECT_EQ(c.NodeComments[1] + "|" + c.NodeComments[2] + "|" + c.NodeComments[3],
              std::string(kNoComments) + "|  main line  |" + kNoComments);
    // Only the one character after the colon is skipped.
    std::string games;
    for (const auto& g : c.games) games += std::to_string(g.node) + "=" + g.name + "|";
    EXPECT_EQ(games, "1=Open games|3=Sicilian|4=Closed|6= x|7=|");
    // Flags are 16-bit, 0 false and every other value true: a library written
    // elsewhere may hold 1 for true.
    std::string head;
    EncodeHeader(Lib().header, head);
    for (const int flag : {1, 0x100}) {
        std::string bytes = Lib().Add(1, 0, "e4: Elsewhere").Bytes();
        bytes[head.size() + 8] = static_cast<char>(flag & 0xFF);  // behind the index and the parent
        bytes[head.size() + 9] = static_cast<char>(flag >> 8);
        LibraryContents e;
        ASSERT_EQ(LoadLibraryBytes(bytes, e), LoadResult::Ok) << flag;
        EXPECT_EQ(e.tree.Node(1).Image, NodeImage::Board) << flag;
    }
    // Node numbers follow the file, not the index.
    LibraryContents d;
    ASSERT_EQ(Lib().Add(50, 0, "e4").Add(7, 50, "e5").Add(900, 7, "Nf3").Load(d), LoadResult::Ok);
    EXPECT_EQ(d.tree.FindByIndex(900), 3);
    EXPECT_EQ(d.tree.Node(3).parent, 2);
    EXPECT_EQ(TreeModel::Key(900), "X900");
}

TEST(LibraryLoader, WhatOpensAndWhatFails) {
    std::string remarksCut = Lib().Add(1, 0, "e4").Bytes();
    remarksCut[23] = 0x01;  // the remarks claim 256 bytes; a whole record's 80 follow
    Lib tolerated = Lib().Set(1, 1).Add(1, 0, "e4").Add(2, 1, "e5");  // one record more than RecCount is fine
    tolerated.header.flag = 1234;
    tolerated.header.MinIndex = -9;
    tolerated.header.MaxIndex = 3;
    const std::string twoRecords = tolerated.Bytes();
    const struct {
        const char* what;
        std::string bytes;
        LoadResult expected;
        int nodes;
    } cases[] = {
        {"empty file", "", LoadResult::NotValid, 0}, {"one byte", std::string("\x01", 1), LoadResult::NotValid, 0},
        {"version 2", Lib().Set(2, 1).Add(1, 0, "e4").Bytes(), LoadResult::NotValid, 0},
        {"header only", Lib().Bytes(), LoadResult::Problem, 0},
        {"record ahead of its parent", Lib().Add(2, 1, "e5").Add(1, 0, "e4").Bytes(), LoadResult::Problem, 0},
        {"duplicate index", Lib().Add(1, 0, "e4").Add(1, 0, "d4").Bytes(), LoadResult::Problem, 0},
        {"more than RecCount + 1 records", Lib().Set(1, 1).Add(1, 0, "e4").Add(2, 1, "e5").Add(3, 2, "Nf3").Bytes(),
         LoadResult::Problem, 0},
        {"negative RecCount", Lib().Set(1, -5).Add(1, 0, "e4").Bytes(), LoadResult::Problem, 0},
        {"header cut short", Lib().Add(1, 0, "e4").Bytes().substr(0, 9), LoadResult::Problem, 0},
        {"header cut inside its remarks", remarksCut, LoadResult::Problem, 0},
        // A game name's length is negative with nothing after the colon; without a branch it is never looked at.
        {"nothing after the colon", Lib().Add(1, 0, "e4:", "", true).Bytes(), LoadResult::Problem, 0},
        {"no branch", Lib().Add(1, 0, "e4:", "", false).Bytes(), LoadResult::Ok, 1},
        // What readers ignore: flag, MinIndex, MaxIndex, a file that ends in the middle of a record.
        {"fields readers ignore", twoRecords, LoadResult::Ok, 2},
        {"the last record a byte short", twoRecords.substr(0, twoRecords.size() - 1), LoadResult::Ok, 1},
    };
    for (const auto& c : cases) {
        LibraryContents contents;
        EXPECT_EQ(LoadLibraryBytes(c.bytes, contents), c.expected) << c.what;
        EXPECT_EQ(c.expected == LoadResult::Ok ? contents.tree.Count() : 0, c.nodes) << c.what;
    }
    LibraryContents c;
    EXPECT_EQ(LoadLibrary("/nonexistent/dir/none.vnb", c), LoadResult::Problem);
    // Progress every 101 records, and the node limit.
    struct Observer : LoadObserver {
        std::vector<double> progress;
        void OnProgress(double p) override { progress.push_back(p); }
    };
    Lib lib;
    for (int i = 1; i <= 303; ++i) lib.Add(i, i == 251 ? 0 : i - 1, "m" + std::to_string(i));
    Observer o;
    LibraryContents c1, c2, c3;
    ASSERT_EQ(lib.Load(c1, &o), LoadResult::Ok);
    EXPECT_EQ(o.progress, (std::vector<double>{101.0 / 303 * 100, 202.0 / 303 * 100, 100.0}));
    // Past 32,767 nodes the load fails.
    Lib big;
    for (int i = 1; i <= TreeModel::kMaxNodes; ++i) big.Add(i, 0, "m");
    EXPECT_EQ(big.Load(c2), LoadResult::Ok);
    big.Add(TreeModel::kMaxNodes + 1, 0, "m");
    EXPECT_EQ(big.Load(c3), LoadResult::Problem);
    // c1 goes 250 moves deep, as deep as a game; one more fails the load.
    Lib deep;
    for (int i = 1; i <= TreeModel::kMaxDepth + 1; ++i) deep.Add(i, i - 1, "m");
    LibraryContents c4;
    EXPECT_EQ(deep.Load(c4), LoadResult::Problem);
}

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

TEST(FindInRange, ComparesTheWholeString) {
    const std::string lowerKing = "RNBQkBNR" + kTarget.substr(8);
    TreeModel tree;
    for (const std::string& tag : {lowerKing, kTarget + " ", kTarget.substr(0, 63), kTarget})
        tree.Add(0, tree.Count() + 1, "m", NodeImage::Pawn, tag);
    std::vector<int> found;
    for (const std::string& wanted : {kTarget, lowerKing, std::string(64, '0')})
        found.push_back(FindInRange(tree, wanted, 1, 4));
    EXPECT_EQ(found, (std::vector<int>{4, 1, 0}));
}

// A walk on a tree of n nodes with matches at the given nodes: the selection
// C (Find Next; 0 for Find), where the search began S, and the node found.
struct Walk {
    int n;
    std::set<int> matches;
    int current, start, result;
};

// Find begins behind the selection, wraps and tries it last; Find Next takes its
// first range by the selection and wraps only at the end.
TEST(FindFromStart, AndFindNextWalkTheTreeInTheirOrder) {
    const Walk walks[] = {
        {10, {3, 8}, 0, 5, 8}, {10, {3, 8}, 0, 8, 3}, {10, {3, 8}, 0, 2, 3}, {10, {3, 8}, 0, 9, 3},
        {10, {4, 10}, 0, 10, 4}, {10, {10}, 0, 10, 10},  // the last node selected: 1..N
        {10, {6}, 0, 6, 6}, {10, {6}, 0, 1, 6}, {10, {}, 0, 6, 0}, {1, {1}, 0, 1, 1}, {1, {}, 0, 1, 0},
        // Find Next, C = 1: 2..S, wrapping to 1..N only when 2..S ends at N.
        {10, {1, 4, 7}, 1, 5, 4}, {10, {1, 4, 7}, 1, 3, 0}, {10, {1, 4, 7}, 1, 1, 0}, {10, {1}, 1, 10, 1},
        {1, {1}, 1, 1, 1}, {1, {}, 1, 1, 0},
        // C = N: 1..S.
        {10, {2, 7}, 10, 5, 2}, {10, {2, 7}, 10, 1, 0}, {10, {10}, 10, 10, 10}, {10, {10}, 10, 5, 0},
        // 1 < C < S: C + 1..S, no wrap; the selection itself is not compared.
        {10, {1, 8}, 2, 5, 0}, {10, {1, 4, 8}, 2, 5, 4}, {10, {3}, 3, 5, 0}, {10, {1}, 2, 9, 0},
        // S <= C < N: C + 1..N, then 1..S; a match on S > 1 keeps the pass going.
        {10, {2, 9}, 5, 5, 9}, {10, {2, 9}, 9, 5, 2}, {10, {2, 9}, 7, 5, 9}, {10, {6}, 7, 5, 0}, {10, {5}, 5, 5, 5},
    };
    for (const Walk& w : walks) {
        const TreeModel tree = MakeTree(w.n, w.matches);
        EXPECT_EQ(w.current ? FindNextFrom(tree, kTarget, w.current, w.start) : FindFromStart(tree, kTarget, w.start),
                  w.result) << w.n << " C " << w.current << " S " << w.start;
    }
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
    };
    for (const auto& [path, lines] : cases) EXPECT_EQ(MoveListLines(path), lines) << path;
    // Numbering is right-aligned in three, then grows.
    std::string path = "a3";
    for (int ply = 2; ply <= 2001; ++ply) path += ply % 2 ? "\\a3" : "\\h6";
    const Lines lines = MoveListLines(path);
    ASSERT_EQ(lines.size(), 1001u);
    EXPECT_EQ(lines[0] + "|" + lines[8] + "|" + lines[9] + "|" + lines[98] + "|" + lines[99] + "|" + lines[999] + "|" +
                  lines[1000], "  1. a3      h6|  9. a3      h6| 10. a3      h6| 99. a3      h6| 100. a3      h6|"
                               " 1000. a3      h6| 1001. a3");
}

}  // namespace
