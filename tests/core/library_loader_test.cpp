#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "chess/board.h"
#include "library/format.h"
#include "library/loader.h"

using namespace vantrel::library;

namespace {

const std::string kStart(vantrel::chess::kInitialLayout);

struct Lib {
    LibraryHeader header{1, -1, "Test", 0, 0, 0, ""};
    std::vector<LibraryNodeRecord> records;
    bool fixCount = true;

    Lib& Add(int32_t index, int32_t parent, std::string description, std::string remarks = "",
             bool newBranch = false) {
        records.push_back({index, parent, newBranch, std::move(description), std::move(remarks), kStart});
        return *this;
    }
    Lib& Version(int16_t version) {
        header.version = version;
        return *this;
    }
    // RecCount as given rather than the number of records.
    Lib& RecCount(int32_t count) {
        header.RecCount = count;
        fixCount = false;
        return *this;
    }
    std::string Bytes() const {
        LibraryHeader h = header;
        if (fixCount) h.RecCount = static_cast<int32_t>(records.size());
        std::string out;
        EncodeHeader(h, out);
        for (const auto& r : records) EncodeRecord(r, out);
        return out;
    }
};

LoadResult Load(const Lib& lib, LibraryContents& out) { return LoadLibraryBytes(lib.Bytes(), out); }

}  // namespace

TEST(LibraryLoader, BuildsTreeCommentsAndGameList) {
    Lib lib;
    lib.Add(1, 0, "e4: Open games", "", true)
        .Add(2, 1, "e5", "  main line  ")
        .Add(3, 1, "c5: Sicilian", "   ", true)
        .Add(4, 0, "d4: Closed", "", true)
        .Add(5, 2, "Nf3: not a game", "", false)
        .Add(6, 4, "d5:  x", "", true);
    LibraryContents c;
    ASSERT_EQ(Load(lib, c), LoadResult::Ok);
    ASSERT_EQ(c.tree.Count(), 6);
    EXPECT_EQ(c.tree.TopLevel(), (std::vector<int>{1, 4}));
    EXPECT_EQ(c.tree.Node(1).children, (std::vector<int>{2, 3}));
    EXPECT_EQ(c.tree.FullPath(5), "e4: Open games\\e5\\Nf3: not a game");
    EXPECT_EQ(c.tree.Node(5).Image, NodeImage::Pawn) << "a colon without new_branch is no game";
    EXPECT_EQ(c.tree.Node(3).Image, NodeImage::Board);
    EXPECT_EQ(c.NodeComments[1], kNoComments);
    EXPECT_EQ(c.NodeComments[2], "  main line  ") << "remarks with text keep their blanks";
    EXPECT_EQ(c.NodeComments[3], kNoComments) << "remarks of blanks only are no comment";
    ASSERT_EQ(c.games.size(), 4u);
    EXPECT_EQ(c.games[0].name, "Open games");
    EXPECT_EQ(c.games[1].name, "Sicilian");
    EXPECT_EQ(c.games[1].node, 3);
    EXPECT_EQ(c.games[3].name, " x") << "only the one character after the colon is skipped";
    EXPECT_EQ(c.tree.Node(1).Tag, kStart);
}

TEST(LibraryLoader, NodeNumbersFollowTheFileNotTheIndex) {
    Lib lib;
    lib.Add(50, 0, "e4").Add(7, 50, "e5").Add(900, 7, "Nf3");
    LibraryContents c;
    ASSERT_EQ(Load(lib, c), LoadResult::Ok);
    EXPECT_EQ(c.tree.FindByIndex(900), 3);
    EXPECT_EQ(c.tree.Node(3).parent, 2);
    EXPECT_EQ(TreeModel::Key(900), "X900");
}

TEST(LibraryLoader, GameNameRules) {
    LibraryContents empty, negative, noBranch;
    ASSERT_EQ(Load(Lib().Add(1, 0, "e4: ", "", true), empty), LoadResult::Ok);
    ASSERT_EQ(empty.games.size(), 1u);
    EXPECT_EQ(empty.games[0].name, "") << "exactly one character after the colon";
    EXPECT_EQ(Load(Lib().Add(1, 0, "e4:", "", true), negative), LoadResult::Problem)
        << "nothing after the colon: the name's length is negative";
    EXPECT_EQ(Load(Lib().Add(1, 0, "e4:", "", false), noBranch), LoadResult::Ok)
        << "no branch: the colon is never looked at";
}

TEST(LibraryLoader, FailuresOfADamagedFile) {
    std::string remarksCut = Lib().Add(1, 0, "e4").Bytes();
    remarksCut[23] = 0x01;  // the remarks claim 256 bytes; a whole record's 80 follow
    const struct {
        const char* what;
        std::string bytes;
        LoadResult expected;
    } cases[] = {
        {"empty file", "", LoadResult::NotValid},
        {"one byte", std::string("\x01", 1), LoadResult::NotValid},
        {"version 2", Lib().Version(2).Add(1, 0, "e4").Bytes(), LoadResult::NotValid},
        {"header only", Lib().Bytes(), LoadResult::Problem},
        {"record ahead of its parent", Lib().Add(2, 1, "e5").Add(1, 0, "e4").Bytes(), LoadResult::Problem},
        {"duplicate index", Lib().Add(1, 0, "e4").Add(1, 0, "d4").Bytes(), LoadResult::Problem},
        {"more than RecCount + 1 records", Lib().RecCount(1).Add(1, 0, "e4").Add(2, 1, "e5").Add(3, 2, "Nf3").Bytes(),
         LoadResult::Problem},
        {"negative RecCount", Lib().RecCount(-5).Add(1, 0, "e4").Bytes(), LoadResult::Problem},
        {"header cut short", Lib().Add(1, 0, "e4").Bytes().substr(0, 9), LoadResult::Problem},
        {"header cut inside its remarks", remarksCut, LoadResult::Problem},
    };
    for (const auto& c : cases) {
        LibraryContents contents;
        EXPECT_EQ(LoadLibraryBytes(c.bytes, contents), c.expected) << c.what;
    }
}

TEST(LibraryLoader, ToleratesWhatReadersIgnore) {
    Lib lib;
    lib.header.flag = 1234;
    lib.header.MinIndex = -9;
    lib.header.MaxIndex = 3;
    lib.RecCount(1).Add(1, 0, "e4").Add(2, 1, "e5");  // one record more than RecCount is still fine
    LibraryContents c;
    ASSERT_EQ(Load(lib, c), LoadResult::Ok);
    EXPECT_EQ(c.tree.Count(), 2);

    // A file that ends in the middle of a record opens with one node fewer.
    std::string bytes = lib.Bytes();
    LibraryContents cut;
    ASSERT_EQ(LoadLibraryBytes(bytes.substr(0, bytes.size() - 10), cut), LoadResult::Ok);
    EXPECT_EQ(cut.tree.Count(), 1);
}

TEST(LibraryLoader, MissingFileIsAProblem) {
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
    ASSERT_EQ(LoadLibraryBytes(lib.Bytes(), c, &o), LoadResult::Ok);
    EXPECT_TRUE(o.header);
    EXPECT_EQ(o.nodes, 303);
    ASSERT_EQ(o.progress.size(), 3u);
    EXPECT_DOUBLE_EQ(o.progress[0], 101.0 / 303 * 100);
    EXPECT_DOUBLE_EQ(o.progress[2], 100.0);

    Lib small;
    for (int i = 1; i <= 100; ++i) small.Add(i, 0, "m");
    Observer none;
    LibraryContents c2;
    ASSERT_EQ(LoadLibraryBytes(small.Bytes(), c2, &none), LoadResult::Ok);
    EXPECT_TRUE(none.progress.empty()) << "with 100 records the bar never moves";

    Lib big;
    for (int i = 1; i <= TreeModel::kMaxNodes; ++i) big.Add(i, 0, "m");
    LibraryContents c3;
    EXPECT_EQ(LoadLibraryBytes(big.Bytes(), c3), LoadResult::Ok);
    big.Add(TreeModel::kMaxNodes + 1, 0, "m");
    LibraryContents c4;
    EXPECT_EQ(LoadLibraryBytes(big.Bytes(), c4), LoadResult::Problem) << "past 32,767 nodes the load fails";
}
