// BuildTree: games merged into the table Moves.
#include <gtest/gtest.h>

#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

using BuildTreeTest = StoreTest;

// Three games a, b and c: e4 e5 Nf3 / e4 c5 / e4 e5.
constexpr const char* kThreeGames =
    "[Event \"a\"]\n\n1. e4 e5 2. Nf3\n\n"
    "[Event \"b\"]\n\n1. e4 c5\n\n"
    "[Event \"c\"]\n\n1. e4 e5\n";

TEST_F(BuildTreeTest, ThreeGamesGiveTheFourRecordsOfTheTree) {
    options.bookName = "  Demo  ";
    ASSERT_TRUE(Build(kThreeGames));
    EXPECT_TRUE(host.Silent());

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 4u);
    struct Expected {
        int64_t index, parent;
        const char* move;
        const char* description;
        int64_t newBranch;
    };
    const Expected want[] = {
        {1, 0, "e4", "e4: a", -1},
        {2, 1, "e5", "e5", 0},
        {3, 2, "Nf3", "Nf3", 0},
        {4, 1, "c5", "c5: b", -1},
    };
    for (size_t k = 0; k < 4; ++k) {
        SCOPED_TRACE(k);
        EXPECT_EQ(rows[k].index, want[k].index);
        EXPECT_EQ(rows[k].parent, want[k].parent);
        EXPECT_EQ(rows[k].move, want[k].move);
        EXPECT_EQ(rows[k].description, want[k].description);
        EXPECT_EQ(rows[k].newBranch, want[k].newBranch);
        EXPECT_EQ(rows[k].book, "Demo");  // trimmed, in every record
    }
    EXPECT_EQ(rows[0].layout, LayoutAfter({"e4"}));
    EXPECT_EQ(rows[1].layout, LayoutAfter({"e4", "e5"}));
    EXPECT_EQ(rows[2].layout, LayoutAfter({"e4", "e5", "Nf3"}));
    EXPECT_EQ(rows[3].layout, LayoutAfter({"e4", "c5"}));

    // The PGN game comment is the tag section; it comes first on the first
    // node a game adds, followed by CR LF even with no move comment.
    EXPECT_EQ(rows[0].remarks, "\r\n[Event \"a\"]\r\n");
    EXPECT_EQ(rows[1].remarks, "");
    EXPECT_EQ(rows[3].remarks, "\r\n[Event \"b\"]\r\n");

    // One count, in plain digits, and one yield for each new record.
    EXPECT_EQ(host.counts, (std::vector<std::string>{"1", "2", "3", "4"}));
    EXPECT_EQ(host.yields, 4);
    EXPECT_EQ(session.recordCount, 4);

    ASSERT_EQ(host.games.size(), 3u);
    EXPECT_EQ(host.games[2].number, 3);
    EXPECT_EQ(host.games[2].name, "c");
    EXPECT_EQ(host.games[2].lastPly, 2);
}

TEST_F(BuildTreeTest, GameWithoutNameBranchesWithTheBareMove) {
    // PGN: the chosen tag (Event) is missing, so the name is empty.
    ASSERT_TRUE(Build("[Site \"nowhere\"]\n\n1. d4 d5\n"));
    auto rows = Rows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].description, "d4");
    EXPECT_EQ(rows[0].newBranch, -1);

    // SAN: a name of blanks only.
    options.pgn = false;
    ASSERT_TRUE(Build("!   \ne4 e5\n"));
    rows = Rows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].description, "e4");
    EXPECT_EQ(rows[0].newBranch, -1);
    EXPECT_EQ(rows[1].newBranch, 0);
}

TEST_F(BuildTreeTest, CommentsFollowTheFirstNewNodeRules) {
    options.pgn = false;
    options.commentStart = "{";
    options.commentEnd = "}";
    ASSERT_TRUE(Build(
        "!g1\n{ } e4 {m1} e5\n"          // a blank game comment isn't put in front
        "!g2\n{intro} e4 {dropped} d5\n"  // e4 is known: its comment is dropped
        "!g3\n{lost} e4 d5\n"             // adds nothing: its game comment is lost
        "!g4\n{  spaced  } d4\n"));       // stored untrimmed, with CR LF behind
    EXPECT_TRUE(host.Silent());

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].description, "e4: g1");
    EXPECT_EQ(rows[0].remarks, "m1");
    EXPECT_EQ(rows[1].description, "e5");
    EXPECT_EQ(rows[1].remarks, "");
    EXPECT_EQ(rows[2].description, "d5: g2");
    EXPECT_EQ(rows[2].parent, 1);
    EXPECT_EQ(rows[2].remarks, "intro\r\n");
    EXPECT_EQ(rows[3].description, "d4: g4");
    EXPECT_EQ(rows[3].parent, 0);
    EXPECT_EQ(rows[3].remarks, "  spaced  \r\n");
    for (const auto& r : rows) {
        EXPECT_EQ(r.remarks.find("dropped"), std::string::npos);
        EXPECT_EQ(r.remarks.find("lost"), std::string::npos);
    }
}

TEST_F(BuildTreeTest, GamesWithoutMovesAddNothing) {
    // A game whose move text is a result alone is passed over.
    ASSERT_TRUE(Build("\nMy openings\n\nfor the club\n[Event \"empty\"]\n\n*\n\n[Event \"b\"]\n\ne4\n"));
    EXPECT_EQ(session.ImportRemarks, "My openings\r\n\r\nfor the club\r\n");
    auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].description, "e4: b");
    ASSERT_EQ(host.games.size(), 2u);
    EXPECT_EQ(host.games[0].lastPly, 0);

    // With no move in the whole file the result is false, and nothing is told.
    EXPECT_FALSE(Build("[Event \"x\"]\n\n*\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_TRUE(Rows().empty());
    EXPECT_FALSE(Build("Just some text\nand more\nlast line\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_EQ(session.ImportRemarks, "Just some text\r\nand more\r\n");
}

TEST_F(BuildTreeTest, SkippedGameKeepsItsFirstMovesAndTheNextStartsAfresh) {
    host.answers.push_back({import::kFixSkip, ""});
    ASSERT_TRUE(Build("[Event \"a\"]\n\ne4 e5 Nf5 Nc6\n\n[Event \"b\"]\n\nd4 d5\n"));

    ASSERT_EQ(host.fixCalls.size(), 1u);
    EXPECT_EQ(host.fixCalls[0].ply, 3);
    EXPECT_EQ(host.fixCalls[0].lastPly, 4);
    EXPECT_EQ(host.fixCalls[0].code, 2);  // no knight reaches f5
    EXPECT_EQ(host.fixCalls[0].move, "Nf5");
    EXPECT_EQ(host.fixCalls[0].layout, LayoutAfter({"e4", "e5"}));

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[1].move, "e5");  // the skipped game's last record is an ordinary node
    EXPECT_EQ(rows[1].newBranch, 0);
    EXPECT_EQ(rows[2].move, "d4");
    EXPECT_EQ(rows[2].parent, 0);
    EXPECT_EQ(rows[2].layout, LayoutAfter({"d4"}));
    EXPECT_EQ(rows[3].layout, LayoutAfter({"d4", "d5"}));
    EXPECT_TRUE(host.Silent());
}

TEST_F(BuildTreeTest, AcceptedRepairIsTheMoveSearchedAndStored) {
    // The second game's Nf9 is put right to Nf3 (after one more wrong try),
    // which is then found in the tree, so Nc6 hangs below the first game's Nf3.
    host.answers.push_back({import::kFixAccept, "Nf7"});
    host.answers.push_back({import::kFixAccept, "Nf3"});
    ASSERT_TRUE(Build("[Event \"a\"]\n\ne4 e5 Nf3\n\n[Event \"b\"]\n\ne4 e5 Nf9 Nc6\n"));

    ASSERT_EQ(host.fixCalls.size(), 2u);
    EXPECT_EQ(host.fixCalls[0].code, 3);  // can't parse
    EXPECT_EQ(host.fixCalls[0].move, "Nf9");
    EXPECT_EQ(host.fixCalls[1].code, 2);  // well formed, but no knight gets there
    EXPECT_EQ(host.fixCalls[1].move, "Nf7");

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[3].move, "Nc6");
    EXPECT_EQ(rows[3].parent, 3);
    EXPECT_EQ(rows[3].description, "Nc6: b");
    EXPECT_EQ(rows[3].layout, LayoutAfter({"e4", "e5", "Nf3", "Nc6"}));
}

TEST_F(BuildTreeTest, CastlingIsStoredAsTheResolverWritesIt) {
    host.answers.push_back({import::kFixSkip, ""});
    ASSERT_TRUE(Build(
        "[Event \"a\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 O-O\n\n"
        "[Event \"b\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 0-0 Nf6\n\n"
        "[Event \"c\"]\n\ne4 e5 O-O\n"));

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 8u);
    EXPECT_EQ(rows[6].move, "o-o");
    EXPECT_EQ(rows[6].description, "o-o");
    EXPECT_EQ(rows[7].move, "Nf6");  // "0-0" found the node of "O-O"
    EXPECT_EQ(rows[7].parent, 7);
    EXPECT_EQ(rows[6].layout, LayoutAfter({"e4", "e5", "Nf3", "Nc6", "Bc4", "Bc5", "O-O"}));

    // A castling that can't be played: the dialog sees the move as the file
    // wrote it, not the resolver's rewritten copy.
    ASSERT_EQ(host.fixCalls.size(), 1u);
    EXPECT_EQ(host.fixCalls[0].code, 3);
    EXPECT_EQ(host.fixCalls[0].move, "O-O");
}

TEST_F(BuildTreeTest, CancelInRepairDialogKeepsTheRecordsSoFar) {
    host.answers.push_back({import::kFixCancel, ""});
    EXPECT_FALSE(Build("[Event \"a\"]\n\ne4 e5\n\n[Event \"b\"]\n\nd4 Nf9 c4\n\n[Event \"c\"]\n\nc4\n"));
    EXPECT_TRUE(host.Silent());
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2].move, "d4");
    EXPECT_EQ(host.games.size(), 2u);  // game c was never read
}

TEST_F(BuildTreeTest, StopAtTheYieldLeavesTheCounterOneAboveTheLastRecord) {
    host.cancelAtCount = 3;
    EXPECT_FALSE(Build("[Event \"a\"]\n\ne4 e5 Nf3 Nc6\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_EQ(Rows().size(), 2u);
    EXPECT_EQ(host.counts.back(), "3");
}

TEST_F(BuildTreeTest, EachImportStartsWithAnEmptyTable) {
    ASSERT_TRUE(Build(kThreeGames));
    ASSERT_TRUE(Build("[Event \"z\"]\n\nc4 c5\n"));
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].index, 1);
    EXPECT_EQ(rows[0].description, "c4: z");
    EXPECT_EQ(host.counts.back(), "2");
}

TEST_F(BuildTreeTest, ReaderFailureEndsInTheErrorDialogAndKeepsEarlierRecords) {
    // The second game has more plies than the game record holds.
    std::string text = "[Event \"a\"]\n\ne4 e5\n\n[Event \"long\"]\n\n";
    for (int k = 0; k < 64; ++k) text += "Nf3 Nf6 Ng1 Ng8\n";
    EXPECT_FALSE(Build(text));
    EXPECT_TRUE(host.messages.empty());
    ASSERT_EQ(host.errors.size(), 1u);
    EXPECT_EQ(host.errors[0].second, 9);
    EXPECT_EQ(Rows().size(), 2u);

    host = RecordingHost{};
    EXPECT_FALSE(Build(""));  // an empty file: the first read fails
    EXPECT_TRUE(host.messages.empty());
    ASSERT_EQ(host.errors.size(), 1u);
    EXPECT_EQ(host.errors[0].second, 62);
}

TEST_F(BuildTreeTest, MissingInputFileIsNamedTrimmed) {
    ASSERT_TRUE(Build(kThreeGames));
    host = RecordingHost{};
    const std::string missing = dir / "nope.pgn";
    options.inFile = "  " + missing + "  ";
    EXPECT_FALSE(import::BuildTree(options, host, session));
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].first, "Couldn't open " + missing);
    EXPECT_EQ(host.messages[0].second, "");
    EXPECT_TRUE(host.errors.empty());
    // The table was emptied before the file was looked for.
    EXPECT_TRUE(Rows().empty());
}

TEST_F(BuildTreeTest, MissingDatabaseOrTableIsTroubleAndNothingIsCreated) {
    for (int k = 0; k < kSpoiledDatabases; ++k) {
        SCOPED_TRACE(k);
        SpoilDatabase(k);
        host = RecordingHost{};
        EXPECT_FALSE(Build(kThreeGames));
        EXPECT_TRUE(host.errors.empty());
        ASSERT_EQ(host.messages.size(), 1u);
        EXPECT_EQ(host.messages[0], std::make_pair(std::string(kTrouble), std::string(kTroubleTitle)));
        if (k == 0) {
            EXPECT_FALSE(fs::exists(DbPath()));
        }
    }
}

TEST_F(BuildTreeTest, DatabaseMayLiveApartFromTheProgramDirectory) {
    const std::string elsewhere = dir / "work.db";
    fs::rename(DbPath(), elsewhere);
    options.databasePath = elsewhere;
    EXPECT_EQ(import::DatabasePath(options), elsewhere);
    ASSERT_TRUE(Build(kThreeGames));
    EXPECT_EQ(Db(elsewhere).Rows().size(), 4u);

    options.databasePath.clear();
    EXPECT_EQ(import::DatabasePath(options), dir / "Tessimo.mdb");
}

}  // namespace
}  // namespace vantrel::storetest
