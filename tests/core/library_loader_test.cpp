// Opening a library: the tree, the comments, the game list, and the files
// that can't be opened.
#include <gtest/gtest.h>

#include "chess/board.h"
#include "library/format.h"
#include "library/loader.h"

using namespace vantrel::library;

namespace {

const std::string kStart(vantrel::chess::kInitialLayout);

// A library in one line: Lib().Add(1, 0, "e4").Add(2, 1, "e5").Bytes().
// RecCount is the number of records unless set.
struct Lib {
    LibraryHeader header{1, -1, "Test", -99, 0, 0, ""};
    std::vector<LibraryNodeRecord> records;

    Lib& Add(int32_t index, int32_t parent, std::string text, std::string remarks = "", bool newBranch = false) {
        records.push_back({index, parent, newBranch, std::move(text), std::move(remarks), kStart});
        return *this;
    }
    Lib& Set(int16_t version, int32_t recCount) {
        header.version = version;
        header.RecCount = recCount;
        return *this;
    }
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

}  // namespace

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
        {"empty file", "", LoadResult::NotValid, 0},
        {"one byte", std::string("\x01", 1), LoadResult::NotValid, 0},
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
        {"the last record cut", twoRecords.substr(0, twoRecords.size() - 10), LoadResult::Ok, 1},
    };
    for (const auto& c : cases) {
        LibraryContents contents;
        EXPECT_EQ(LoadLibraryBytes(c.bytes, contents), c.expected) << c.what;
        EXPECT_EQ(c.expected == LoadResult::Ok ? contents.tree.Count() : 0, c.nodes) << c.what;
    }
    LibraryContents c;
    EXPECT_EQ(LoadLibrary("/nonexistent/dir/none.vnb", c), LoadResult::Problem);
}

TEST(LibraryLoader, ProgressEvery101RecordsAndTheNodeLimit) {
    struct Observer : LoadObserver {
        std::vector<double> progress;
        int nodes = 0;
        bool header = false;
        void OnHeader(const LibraryHeader&) override { header = true; }
        void OnProgress(double p) override { progress.push_back(p); }
        void OnNode(int) override { ++nodes; }
    };
    Lib lib;
    for (int i = 1; i <= 303; ++i) lib.Add(i, i - 1, "m" + std::to_string(i));
    Observer o;
    LibraryContents c;
    ASSERT_EQ(lib.Load(c, &o), LoadResult::Ok);
    EXPECT_TRUE(o.header);
    EXPECT_EQ(o.nodes, 303);
    ASSERT_EQ(o.progress.size(), 3u);
    EXPECT_DOUBLE_EQ(o.progress[0], 101.0 / 303 * 100);
    EXPECT_DOUBLE_EQ(o.progress[2], 100.0);

    Lib small;
    for (int i = 1; i <= 100; ++i) small.Add(i, 0, "m");
    Observer none;
    LibraryContents c2, c3, c4;
    ASSERT_EQ(small.Load(c2, &none), LoadResult::Ok);
    EXPECT_TRUE(none.progress.empty()) << "with 100 records the bar never moves";

    Lib big;
    for (int i = 1; i <= TreeModel::kMaxNodes; ++i) big.Add(i, 0, "m");
    EXPECT_EQ(big.Load(c3), LoadResult::Ok);
    big.Add(TreeModel::kMaxNodes + 1, 0, "m");
    EXPECT_EQ(big.Load(c4), LoadResult::Problem) << "past 32,767 nodes the load fails";
}
