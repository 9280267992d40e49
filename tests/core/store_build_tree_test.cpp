// BuildTree: games merged into the table Moves of the working database,
// which is opened and never created; the lookup in that table.
#include <gtest/gtest.h>

#include "import/moves_table.h"
#include "store_test_support.h"

namespace vantrel::storetest {
namespace {

using BuildTreeTest = StoreTest;

TEST_F(BuildTreeTest, TheLookupMindsTheParentAndTheCaseOfLetters) {
    import::WorkingDatabase db;
    db.Open(DbPath());
    import::MovesTable table(db);
    const std::string layout(64, '0');
    // Moves of more than seven bytes come from the repair dialog.
    for (const import::MoveRow& row : std::vector<import::MoveRow>{{1, 0, "e4", "B", "", false, "", layout},
                                                                    {2, 1, "Nf3", "B", "", true, "", layout},
                                                                    {3, 1, "Nf3 long", "B", "", false, "", layout},
                                                                    {4, 1, "Nf3 longer", "B", "", false, "", layout},
                                                                    {5, 1, "Nf3", "B", "", false, "", layout},
                                                                    {6, 1, "Nf3 long", "B", "", false, "", layout}})
        table.Add(row);
    std::vector<int32_t> found;
    for (auto [parent, move] : std::vector<std::pair<int32_t, std::string_view>>{
             {0, "e4"}, {1, "Nf3"}, {0, "Nf3"}, {1, "nf3"}, {1, "Nf3'"}, {1, "Nf3 long"}, {1, "Nf3 longer"},
             {1, "Nf3 lon"}, {2, "Nf3 long"}})
        found.push_back(table.Find(parent, move));
    EXPECT_EQ(found, (std::vector<int32_t>{1, 2, 0, 0, 0, 3, 4, 0, 0}));  // a pair keeps its first record
    EXPECT_THROW(table.Add({8, 1, "d5", "B", "", false, "", layout}), std::logic_error);
    // Every record reaches the table, the doubles too.
    table.Flush();
    EXPECT_EQ(Rows().size(), 6u);
}

// Three games a, b and c: e4 e5 Nf3 / e4 c5 / e4 e5.
constexpr const char* kThreeGames =
    "[Event \"a\"]\n\n1. e4 e5 2. Nf3\n\n[Event \"b\"]\n\n1. e4 c5\n\n[Event \"c\"]\n\n1. e4 e5\n";

TEST_F(BuildTreeTest, ThreeGamesGiveTheFourRecordsOfTheTree) {
    options.bookName = "  Demo  ";
    ASSERT_TRUE(Build(kThreeGames));
    EXPECT_TRUE(host.Silent());
    const auto rows = Rows();
    ASSERT_EQ(Briefs(rows), (Strings{"1<0 e4 (e4: a) *", "2<1 e5", "3<2 Nf3", "4<1 c5 (c5: b) *"}));
    const Strings lines[] = {{"e4"}, {"e4", "e5"}, {"e4", "e5", "Nf3"}, {"e4", "c5"}};
    for (size_t k = 0; k < 4; ++k) {
        EXPECT_EQ(rows[k].book, "Demo") << k;  // trimmed, in every record
        EXPECT_EQ(rows[k].layout, LayoutAfter(lines[k])) << k;
    }
    // The PGN game comment is the tag section; it comes first on the first
    // node a game adds, followed by CR LF even with no move comment.
    EXPECT_EQ(rows[0].remarks + "|" + rows[1].remarks + "|" + rows[3].remarks,
              "\r\n[Event \"a\"]\r\n||\r\n[Event \"b\"]\r\n");
    // One count, in plain digits, and one yield for each new record.
    EXPECT_EQ(host.counts, (Strings{"1", "2", "3", "4"}));
    EXPECT_EQ(host.yields, 4);
    EXPECT_EQ(session.recordCount, 4);
    EXPECT_EQ(host.games, (Strings{"1 a 3", "2 b 2", "3 c 2"}));
    // Each import starts with an empty table.
    ASSERT_TRUE(Build("[Event \"z\"]\n\nc4 c5\n"));
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 c4 (c4: z) *", "2<1 c5"}));
    EXPECT_EQ(host.counts.back(), "2");
}

TEST_F(BuildTreeTest, NamesAndCommentsOfTheFirstNewNode) {
    // PGN: the chosen tag (Event) is missing, so the name is empty.
    ASSERT_TRUE(Build("[Site \"nowhere\"]\n\n1. d4 d5\n"));
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 d4 *", "2<1 d5"}));
    // SAN: a name of blanks only.
    options.pgn = false;
    ASSERT_TRUE(Build("!   \ne4 e5\n"));
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 e4 *", "2<1 e5"}));
    options.commentStart = "{";
    options.commentEnd = "}";
    ASSERT_TRUE(Build("!g1\n{ } e4 {m1} e5\n"          // a blank game comment isn't put in front
                      "!g2\n{intro} e4 {dropped} d5\n"  // e4 is known: its comment is dropped
                      "!g3\n{lost} e4 d5\n"             // adds nothing: its game comment is lost
                      "!g4\n{  spaced  } d4\n"));       // stored untrimmed, with CR LF behind
    EXPECT_TRUE(host.Silent());
    const auto rows = Rows();
    ASSERT_EQ(Briefs(rows), (Strings{"1<0 e4 (e4: g1) *", "2<1 e5", "3<1 d5 (d5: g2) *", "4<0 d4 (d4: g4) *"}));
    Strings remarks;
    for (const auto& r : rows) remarks.push_back(r.remarks);
    EXPECT_EQ(remarks, (Strings{"m1", "", "intro\r\n", "  spaced  \r\n"}));
    // Games without moves add nothing.
    options.pgn = true;
    host = RecordingHost{};
    // A game whose move text is a result alone is passed over.
    ASSERT_TRUE(Build("\nMy openings\n\nfor the club\n[Event \"empty\"]\n\n*\n\n[Event \"b\"]\n\ne4\n"));
    EXPECT_EQ(session.ImportRemarks, "My openings\r\n\r\nfor the club\r\n");
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 e4 (e4: b) *"}));
    EXPECT_EQ(host.games, (Strings{"1 empty 0", "2 b 1"}));
    // With no move in the whole file the result is false, and nothing is told.
    EXPECT_FALSE(Build("[Event \"x\"]\n\n*\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_TRUE(Rows().empty());
    EXPECT_FALSE(Build("Just some text\nand more\nlast line\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_EQ(session.ImportRemarks, "Just some text\r\nand more\r\n");
}

TEST_F(BuildTreeTest, SkippedGameKeepsItsFirstMovesAndAnAcceptedRepairIsTheMoveStored) {
    host.answers.push_back({import::kFixSkip, ""});
    ASSERT_TRUE(Build("[Event \"a\"]\n\ne4 e5 Nf5 Nc6\n\n[Event \"b\"]\n\nd4 d5\n"));
    EXPECT_EQ(host.fixCalls, Strings{"3 4 2 Nf5"});  // no knight reaches f5
    EXPECT_EQ(host.fixBoards, Strings{LayoutAfter({"e4", "e5"})});
    // The skipped game's last record is an ordinary node.
    const auto rows = Rows();
    ASSERT_EQ(Briefs(rows), (Strings{"1<0 e4 (e4: a) *", "2<1 e5", "3<0 d4 (d4: b) *", "4<3 d5"}));
    EXPECT_EQ(rows[3].layout, LayoutAfter({"d4", "d5"}));
    EXPECT_TRUE(host.Silent());
    // Accepted: the second game's Nf9 is put right to Nf3 (after one more wrong try),
    // which is then found in the tree, so Nc6 hangs below the first game's Nf3.
    host = RecordingHost{};
    host.answers = {{import::kFixAccept, "Nf7"}, {import::kFixAccept, "Nf3"}};
    ASSERT_TRUE(Build("[Event \"a\"]\n\ne4 e5 Nf3\n\n[Event \"b\"]\n\ne4 e5 Nf9 Nc6\n"));
    // Can't parse; then well formed, but no knight gets there.
    EXPECT_EQ(host.fixCalls, (Strings{"3 4 3 Nf9", "3 4 2 Nf7"}));
    ASSERT_EQ(Rows().size(), 4u);
    EXPECT_EQ(Brief(Rows()[3]), "4<3 Nc6 (Nc6: b) *");
    EXPECT_EQ(Rows()[3].layout, LayoutAfter({"e4", "e5", "Nf3", "Nc6"}));
}

TEST_F(BuildTreeTest, CastlingIsStoredAsTheResolverWritesItAndCancelKeepsTheRecordsSoFar) {
    host.answers.push_back({import::kFixSkip, ""});
    ASSERT_TRUE(Build("[Event \"a\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 O-O\n\n"
                      "[Event \"b\"]\n\ne4 e5 Nf3 Nc6 Bc4 Bc5 0-0 Nf6\n\n"
                      "[Event \"c\"]\n\ne4 e5 O-O\n"));
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 8u);
    EXPECT_EQ(Brief(rows[6]), "7<6 o-o");
    EXPECT_EQ(Brief(rows[7]), "8<7 Nf6 (Nf6: b) *");  // "0-0" found the node of "O-O"
    EXPECT_EQ(rows[6].layout, LayoutAfter({"e4", "e5", "Nf3", "Nc6", "Bc4", "Bc5", "O-O"}));
    // A castling that can't be played: the dialog sees the move as the file
    // wrote it, not the resolver's rewritten copy.
    EXPECT_EQ(host.fixCalls, Strings{"3 3 3 O-O"});
    // Cancel in the repair dialog keeps the records so far: game c is never read.
    host = RecordingHost{};
    host.answers.push_back({import::kFixCancel, ""});
    EXPECT_FALSE(Build("[Event \"a\"]\n\ne4 e5\n\n[Event \"b\"]\n\nd4 Nf9 c4\n\n[Event \"c\"]\n\nc4\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_EQ(Briefs(Rows()), (Strings{"1<0 e4 (e4: a) *", "2<1 e5", "3<0 d4 (d4: b) *"}));
    EXPECT_EQ(host.games.size(), 2u);
    // At the yield: the counter stands one above the last record.
    host = RecordingHost{};
    host.cancelAtCount = 3;
    EXPECT_FALSE(Build("[Event \"a\"]\n\ne4 e5 Nf3 Nc6\n"));
    EXPECT_TRUE(host.Silent());
    EXPECT_EQ(Rows().size(), 2u);
    EXPECT_EQ(host.counts.back(), "3");
}

TEST_F(BuildTreeTest, ReaderFailureEndsInTheErrorDialogAndKeepsEarlierRecords) {
    // The second game has more plies than the game record holds; read ahead
    // or not, the failure comes after the game before it, in its place.
    std::string text = "[Event \"a\"]\n\ne4 e5\n\n[Event \"long\"]\n\n";
    for (int k = 0; k < 64; ++k) text += "Nf3 Nf6 Ng1 Ng8\n";
    for (const bool ahead : {true, false}) {
        options.readAhead = ahead;
        host = RecordingHost{};
        EXPECT_FALSE(Build(text + text));
        EXPECT_EQ(host.messages, Messages{});
        EXPECT_EQ(host.errors, (Errors{{"Subscript out of range", 9}}));
        EXPECT_EQ(host.failedIn, "2 long 69");  // the 251st ply stands on line 69
        EXPECT_EQ(Rows().size(), 2u);
    }
    host = RecordingHost{};
    EXPECT_FALSE(Build(""));  // an empty file: the first read fails
    EXPECT_EQ(host.messages, Messages{});
    EXPECT_EQ(host.errors, (Errors{{"Input past end of file", 62}}));
    // A missing input file is named trimmed; the table was emptied before it was looked for.
    ASSERT_TRUE(Build(kThreeGames));
    host = RecordingHost{};
    options.inFile = "  " + (dir / "nope.pgn") + "  ";
    EXPECT_FALSE(import::BuildTree(options, host, session));
    EXPECT_EQ(host.messages, (Messages{{"Couldn't open " + (dir / "nope.pgn"), ""}}));
    EXPECT_EQ(host.errors, Errors{});
    EXPECT_TRUE(Rows().empty());
    // Neither the import nor the writing of the library gets past a database
    // that is not there or not fit, and neither creates one.
    // The window says no more; the notice names the file and the cause.
    const char* causes[kSpoiledDatabases] = {"' is missing", "' is empty", "' is not a database",
                                             "' has no table Moves"};
    for (int k = 0; k < kSpoiledDatabases; ++k) {
        SpoilDatabase(k);
        for (bool write : {false, true}) {
            host = RecordingHost{};
            EXPECT_FALSE(write ? Write() : Build(kThreeGames));
            EXPECT_EQ(host.errors, Errors{});
            EXPECT_EQ(host.messages, kTrouble) << k;
            EXPECT_EQ(host.notices, Strings{"'" + DbPath() + causes[k]});
            EXPECT_FALSE(fs::exists(dir / "Demo.vnb"));
            EXPECT_EQ(fs::exists(DbPath()), k != 0);
        }
    }
}

// Games on known ground are played back, not resolved again: the boards
// behind later moves must be the resolver's all the same, an en passant
// capture after a double step played back and castling in any spelling
// among them, whether the games are read ahead on a second thread or not.
TEST_F(BuildTreeTest, MovesPlayedBackLeaveTheBoardsOfTheResolverWithOrWithoutReadingAhead) {
    std::vector<std::vector<Row>> tables;
    std::vector<Strings> gamesRead;
    for (const bool ahead : {false, true}) {
        options.readAhead = ahead;
        host = RecordingHost{};
        // Many times over, each game named apart, so that the games read
        // ahead go round the slots and come back in the file's order.
        std::string text;
        for (int k = 0; k < 200; ++k) {
            const std::string n = std::to_string(k);
            text += "[Event \"a" + n + "\"]\n\n1. e4 d5 2. e5 f5 3. Nf3 Nc6 4. Bb5 Bd7 5. O-O e6\n\n"
                    "[Event \"b" + n + "\"]\n\n1. e4 d5 2. e5 f5 3. exf6 Nxf6 4. Nf3 e6 5. Be2 Be7 6. 0-0 O-O\n\n"
                    "[Event \"c" + n + "\"]\n\n1. e4 d5 2. e5 f5 3. exf6 Nxf6 4. Nf3 e6 5. Be2 Be7 6. oo 0-0 7. d4\n\n"
                    "[Event \"d" + n + "\"]\n\n1. e4 d5 2. e5 f5 3. Nf3 Nc6 4. Bb5 Bd7 5. 0-0 e6 6. d4\n\n";
        }
        ASSERT_TRUE(Build(text));
        EXPECT_TRUE(host.fixCalls.empty() && host.Silent());
        tables.push_back(Rows());
        gamesRead.push_back(host.games);
    }
    EXPECT_EQ(gamesRead[0].size(), 800u);
    EXPECT_EQ(gamesRead[0], gamesRead[1]);
    const std::vector<Row>& rows = tables[1];
    ASSERT_EQ(rows.size(), 20u);
    EXPECT_EQ(Briefs(tables[0]), Briefs(rows));
    for (const Row& row : rows) {
        Strings line;
        for (int64_t at = row.index; at != 0; at = rows[static_cast<size_t>(at - 1)].parent)
            line.insert(line.begin(), rows[static_cast<size_t>(at - 1)].move == "o-o" ? "O-O" : rows[static_cast<size_t>(at - 1)].move);
        EXPECT_EQ(row.layout, LayoutAfter(line)) << Brief(row);
    }
}

}  // namespace
}  // namespace vantrel::storetest
