// From a game file to a library and back: BuildTree, WriteLibrary and the
// loader together give the tree of the games, with the right positions.
#include <gtest/gtest.h>

#include "library/loader.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

class RoundTripTest : public StoreTest {
protected:
    // Imports the file, writes the library, loads it, and expects the loaded
    // tree to hold exactly the table, node for record.
    void ImportAndLoad(library::LibraryContents& contents) {
        ASSERT_TRUE(import::BuildTree(options, host, session));
        ASSERT_TRUE(Write());
        ASSERT_TRUE(host.Silent());
        ASSERT_TRUE(host.fixCalls.empty());
        ASSERT_EQ(library::LoadLibrary(import::LibraryPath(options), contents), library::LoadResult::Ok);
        const auto rows = Rows();
        ASSERT_EQ(contents.tree.Count(), static_cast<int>(rows.size()));
        EXPECT_EQ(contents.header.RecCount, static_cast<int32_t>(rows.size()));
        for (size_t k = 0; k < rows.size(); ++k) {
            const auto& node = contents.tree.Node(static_cast<int>(k) + 1);
            const auto& row = rows[k];
            EXPECT_EQ(node.index, row.index);
            EXPECT_EQ(node.parent == 0 ? 0 : contents.tree.Node(node.parent).index, row.parent);
            EXPECT_EQ(node.Text, row.description);
            EXPECT_EQ(node.Tag, row.layout) << row.description;
            EXPECT_EQ(contents.NodeComments[k + 1],
                      library::IsBlank(row.remarks) ? std::string(library::kNoComments) : row.remarks);
        }
    }
};

TEST_F(RoundTripTest, SampleOpeningsMakeTheTreeOfTheirGames) {
    std::string sample = VANTREL_SCHEMA;
    options.inFile = sample.replace(sample.rfind("schema.sql"), std::string::npos, "sample-openings.pgn");
    options.bookName = "Sample Openings";
    options.tags = {true, false, false, false, true, true, false};  // Event, White, Black
    library::LibraryContents contents;
    ImportAndLoad(contents);

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
        Strings line;
        for (int n = number; n != 0; n = contents.tree.Node(n).parent) {
            std::string move = contents.tree.Node(n).Text;
            move = move.substr(0, move.find(": "));
            line.insert(line.begin(), move == "o-o" ? "O-O" : move == "o-o-o" ? "O-O-O" : move);
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
    EXPECT_EQ(contents.header.LibRemarks, "Made-up games.\r\n\r\n");
    // Each game's line runs down the tree, every node with the generator's position.
    for (size_t g = 0; g < games.size(); ++g) {
        const std::vector<int>* level = &contents.tree.TopLevel();
        for (size_t i = 0; i < games[g].moves.size(); ++i) {
            std::string move = games[g].moves[i];
            while (!move.empty() && (move.back() == '+' || move.back() == '#')) move.pop_back();
            if (move == "O-O" || move == "O-O-O") move = move == "O-O" ? "o-o" : "o-o-o";
            const auto found = std::find_if(level->begin(), level->end(), [&](int child) {
                const std::string& text = contents.tree.Node(child).Text;
                return text == move || text.rfind(move + ": ", 0) == 0;
            });
            ASSERT_NE(found, level->end()) << "game " << g + 1 << ": ply " << i + 1 << " " << move;
            ASSERT_EQ(contents.tree.Node(*found).Tag, games[g].layouts[i]) << "game " << g + 1 << ": ply " << i + 1;
            level = &contents.tree.Node(*found).children;
        }
    }
}

}  // namespace
}  // namespace vantrel::storetest
