// From a game file to a library and back: BuildTree, WriteLibrary and the
// loader together give the tree of the games, with the right positions.
#include <gtest/gtest.h>

#include "library/loader.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

class RoundTripTest : public StoreTest {
protected:
    // Imports the file, writes the library and loads it.
    void ImportAndLoad(library::LibraryContents& contents) {
        ASSERT_TRUE(import::BuildTree(options, host, session));
        ASSERT_TRUE(import::WriteLibrary(options, host, session));
        ASSERT_TRUE(host.Silent());
        ASSERT_TRUE(host.fixCalls.empty());
        ASSERT_EQ(library::LoadLibrary(import::LibraryPath(options), contents), library::LoadResult::Ok);
    }

    // The loaded tree holds exactly the table, node for record.
    void ExpectTreeIsTable(const library::LibraryContents& contents) {
        const auto rows = Rows();
        ASSERT_EQ(contents.tree.Count(), static_cast<int>(rows.size()));
        EXPECT_EQ(contents.header.RecCount, static_cast<int32_t>(rows.size()));
        for (size_t k = 0; k < rows.size(); ++k) {
            const int number = static_cast<int>(k) + 1;
            const auto& node = contents.tree.Node(number);
            const auto& row = rows[k];
            SCOPED_TRACE(row.description);
            EXPECT_EQ(node.index, row.index);
            EXPECT_EQ(node.parent == 0 ? 0 : contents.tree.Node(node.parent).index, row.parent);
            EXPECT_EQ(node.Text, row.description);
            EXPECT_EQ(node.Tag, row.layout);
            EXPECT_EQ(contents.NodeComments[number],
                      library::IsBlank(row.remarks) ? std::string(library::kNoComments) : row.remarks);
        }
    }

    // Walks a game's line down the loaded tree and checks the position of
    // every node on the way against the test's own move generator.
    static void ExpectLineInTree(const library::LibraryContents& contents, const std::vector<std::string>& moves,
                                 const std::vector<std::string>& layouts, const std::string& what) {
        const std::vector<int>* level = &contents.tree.TopLevel();
        for (size_t i = 0; i < moves.size(); ++i) {
            std::string move = moves[i];
            while (!move.empty() && (move.back() == '+' || move.back() == '#')) move.pop_back();
            if (move == "O-O") move = "o-o";
            if (move == "O-O-O") move = "o-o-o";
            int found = 0;
            for (int child : *level) {
                const std::string& text = contents.tree.Node(child).Text;
                if (text == move || text.rfind(move + ": ", 0) == 0) found = child;
            }
            ASSERT_NE(found, 0) << what << ": ply " << i + 1 << " " << move << " is not in the tree";
            ASSERT_EQ(contents.tree.Node(found).Tag, layouts[i]) << what << ": ply " << i + 1 << " " << move;
            level = &contents.tree.Node(found).children;
        }
    }
};

TEST_F(RoundTripTest, SampleOpeningsMakeTheTreeOfTheirGames) {
    std::string sample = VANTREL_SCHEMA;
    sample.replace(sample.rfind("schema.sql"), std::string::npos, "sample-openings.pgn");
    options.inFile = sample;
    options.bookName = "Sample Openings";
    options.tags = {true, false, false, false, true, true, false};  // Event, White, Black

    library::LibraryContents contents;
    ImportAndLoad(contents);
    ExpectTreeIsTable(contents);

    const std::string text = ReadFile(sample);
    size_t games = 0;
    for (size_t at = text.find("[Event "); at != std::string::npos; at = text.find("[Event ", at + 1)) ++games;
    ASSERT_GE(games, 25u);
    EXPECT_EQ(contents.games.size(), games);  // every game added a named branch
    EXPECT_EQ(contents.header.book, "Sample Openings");
    EXPECT_EQ(contents.header.LibRemarks.rfind("Sample Openings: ", 0), 0u);
    EXPECT_EQ(contents.games.front().name, "Ruy Lopez Closed Chigorin");

    // Every node holds the position that its line of moves leads to.
    for (int number = 1; number <= contents.tree.Count(); ++number) {
        std::vector<std::string> line;
        for (int n = number; n != 0; n = contents.tree.Node(n).parent) {
            std::string move = contents.tree.Node(n).Text;
            move = move.substr(0, move.find(": "));
            if (move == "o-o" || move == "o-o-o") move = move == "o-o" ? "O-O" : "O-O-O";
            line.insert(line.begin(), move);
        }
        EXPECT_EQ(contents.tree.Node(number).Tag, LayoutAfter(line)) << contents.tree.Node(number).Text;
    }
}

TEST_F(RoundTripTest, MadeUpGamesKeepEveryPosition) {
    // Long games with castling, promotions, en passant and disambiguated
    // moves, comments, marks and codes.
    gen::Rng rng(7);
    std::string pgn = "Made-up games.\n\n";
    std::vector<gen::Game> games;
    for (int g = 1; g <= 120; ++g) {
        games.push_back(gen::PlayGame(rng, 60 + static_cast<int>(rng.Below(60))));
        gen::AppendPgn(pgn, "Game " + std::to_string(g), "W", "B", games.back(), rng, true);
    }
    WriteFile(options.inFile, pgn);

    library::LibraryContents contents;
    ImportAndLoad(contents);
    ExpectTreeIsTable(contents);
    EXPECT_EQ(contents.header.LibRemarks, "Made-up games.\r\n\r\n");
    for (size_t g = 0; g < games.size(); ++g)
        ExpectLineInTree(contents, games[g].moves, games[g].layouts, "game " + std::to_string(g + 1));
}

}  // namespace
}  // namespace vantrel::storetest
