// Counting mode: every node's count and score against a count made here from
// the games' own moves, the order of children and their branch flags, the
// count a tree must reach to fit, and runs set aside on disk giving the same
// library as one run in memory.
#include <map>

#include "import/counted_tree.h"
#include "library/export_pgn.h"
#include "library/loader.h"
#include "library/text.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

std::string MoveOf(const library::TreeNode& node) { return std::string(text::SplitNodeText(node.Text).move); }

struct Tally {
    int64_t games = 0, wins = 0, draws = 0, losses = 0;
    int first = 0;
};

class CountedTreeTest : public StoreTest {
protected:
    // Games that share their first plies, as a database's do, with results.
    void MakeGames(int count) {
        gen::Rng rng(3);
        std::vector<gen::Game> openings;
        for (int k = 0; k < 5; ++k) openings.push_back(gen::PlayGame(rng, 2 + k % 3));
        static constexpr const char* kResults[] = {"1-0", "1/2-1/2", "0-1", "*"};
        std::string text = "Remarks ahead of the games.\n\n";
        for (int g = 1; g <= count; ++g) {
            gen::Game game = openings[rng.Below(rng.Chance(60) ? 2 : 5)];
            chess::Position pos;
            pos.SetLayout(game.layouts.back(), game.moves.size() % 2 == 0);
            gen::PlayOn(rng, pos, static_cast<int>(game.moves.size()), 4 + static_cast<int>(rng.Below(5)), game);
            const char* result = kResults[rng.Below(4)];
            gen::AppendPgn(text, "G" + std::to_string(g), "W", "B", game, rng, false);
            text.insert(text.rfind("[Black"), std::string("[Result \"") + result + "\"]\n");
            std::string line;
            for (std::string move : game.moves) {
                // As the walk and the resolver leave a move: no check mark, castling in small letters.
                if (move.back() == '+') move.pop_back();
                if (move.starts_with("O-O")) move = move.starts_with("O-O-O") ? "o-o-o" : "o-o";
                line += (line.empty() ? "" : " ") + move;
                Tally& t = tally[line];
                if (t.games++ == 0) t.first = g;
                t.wins += result[0] == '1' && result[1] == '-';
                t.draws += result[1] == '/';
                t.losses += result[0] == '0';
            }
        }
        WriteFile(options.inFile, text);
    }
    library::LibraryContents Count(const import::CountingOptions& counting) {
        host = RecordingHost{};
        import::CountingReport report;
        EXPECT_TRUE(import::BuildCountedLibrary(options, counting, host, report));
        taken = report.minGames;
        library::LibraryContents contents;
        branch = library::NewBranchFlags{};
        EXPECT_EQ(library::LoadLibrary(import::LibraryPath(options), contents, &branch), library::LoadResult::Ok);
        return contents;
    }
    int64_t NodesFrom(int64_t minGames) const {
        int64_t n = 0;
        for (const auto& [line, t] : tally) n += t.games >= minGames;
        return n;
    }
    std::map<std::string, Tally> tally;  // by line of moves, blank-separated
    int32_t taken = 0;
    library::NewBranchFlags branch;
};

TEST_F(CountedTreeTest, CountsScoresOrderAndBranchesMatchAnIndependentCount) {
    MakeGames(400);
    const library::LibraryContents contents = Count({.minGames = 3, .counts = true});
    const library::TreeModel& tree = contents.tree;
    ASSERT_EQ(tree.Count(), NodesFrom(3));
    EXPECT_EQ(contents.header.LibRemarks, "Remarks ahead of the games.\r\n\r\n");
    for (int n = 1; n <= tree.Count(); ++n) {
        std::string line;
        for (const int at : tree.LineTo(n)) line += (line.empty() ? "" : " ") + MoveOf(tree.Node(at));
        ASSERT_TRUE(tally.count(line)) << line;
        const Tally& t = tally[line];
        const int score = import::ScorePercent(t.wins, t.draws, t.losses);
        const std::string move = line.substr(line.rfind(' ') + 1);
        EXPECT_EQ(tree.Node(n).Text, move + ": " + std::to_string(t.games) + " games" +
                                         (score < 0 ? "" : ", " + std::to_string(score) + "%"));
        // Children most-played first, ties in the order the file reached them.
        const library::TreeNode& node = tree.Node(n);
        const std::vector<int>& siblings = node.parent ? tree.Node(node.parent).children : tree.TopLevel();
        const size_t place = std::find(siblings.begin(), siblings.end(), n) - siblings.begin();
        EXPECT_EQ(branch.flags[static_cast<size_t>(n - 1)], node.parent == 0 || place > 0) << line;
        if (place == 0) continue;
        const Tally& e = tally[line.substr(0, line.size() - move.size()) + MoveOf(tree.Node(siblings[place - 1]))];
        EXPECT_TRUE(e.games > t.games || (e.games == t.games && e.first < t.first)) << line;
    }
    EXPECT_EQ(import::ScorePercent(2, 1, 0), 83);  // 83.3
    EXPECT_EQ(import::ScorePercent(1, 0, 7), 13);  // 12.5, half up
    EXPECT_EQ(import::ScorePercent(0, 0, 0), -1);
}

TEST_F(CountedTreeTest, FitTakesTheSmallestCountThatFitsAndRunsOnDiskChangeNothing) {
    MakeGames(300);
    import::CountingOptions fit{.fit = true, .maxNodes = 60};
    const library::LibraryContents fitted = Count(fit);
    EXPECT_LE(fitted.tree.Count(), 60);
    EXPECT_GT(NodesFrom(taken - 1), 60);
    EXPECT_EQ(fitted.tree.Count(), NodesFrom(taken));
    // Without counts a branch names the first game that reached it.
    EXPECT_EQ(fitted.tree.Node(1).Text, MoveOf(fitted.tree.Node(1)) + ": G" + std::to_string(tally[MoveOf(fitted.tree.Node(1))].first));
    const std::string inMemory = ReadFile(import::LibraryPath(options));
    fit.runBytes = 300;  // a run of a few games each
    Count(fit);
    EXPECT_EQ(ReadFile(import::LibraryPath(options)), inMemory);
}

}  // namespace
}  // namespace vantrel::storetest
