// The move resolver on ImportBoard: token forms, the source search, en
// passant timing, castling, promotion, and the two helpers behind it.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "chess/board.h"
#include "chess/resolver.h"

namespace {

using vantrel::chess::FindPiece;
using vantrel::chess::ImportBoard;
using vantrel::chess::kInitialLayout;
using vantrel::chess::MarkReach;
using vantrel::chess::ReachMap;
using vantrel::chess::ResolveMove;

using Placement = std::vector<std::pair<const char*, const char*>>;  // {"e4", "wp"}, ...

int RankOf(const char* square) { return square[1] - '0'; }
int FileOf(const char* square) { return square[0] - 'a' + 1; }

class Resolver : public ::testing::Test {
protected:
    ImportBoard board;

    void Empty() {
        for (int rank = 1; rank <= 8; ++rank)
            for (int file = 1; file <= 8; ++file) board.SetCode(rank, file, "no");
    }
    void Put(const char* square, const char* code) { board.SetCode(RankOf(square), FileOf(square), code); }
    void Setup(const Placement& pieces) {
        Empty();
        for (const auto& [square, code] : pieces) Put(square, code);
    }
    std::string At(const char* square) const { return board.Code(RankOf(square), FileOf(square)); }

    int Play(const std::string& token, int ply) {
        std::string move = token;
        return ResolveMove(board, move, static_cast<int16_t>(ply));
    }

    // The token resolves to 0.
    ::testing::AssertionResult Moves(const std::string& token, int ply) {
        const int result = Play(token, ply);
        if (result == 0) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << token << " at ply " << ply << " gave " << result;
    }

    // The token gives `expected` and leaves every square as it was.
    ::testing::AssertionResult Refused(const std::string& token, int ply, int expected) {
        const std::string before = board.BoardToLayout();
        const int result = Play(token, ply);
        if (result != expected)
            return ::testing::AssertionFailure()
                   << token << " at ply " << ply << " gave " << result << ", expected " << expected;
        if (board.BoardToLayout() != before) return ::testing::AssertionFailure() << token << " changed the board";
        return ::testing::AssertionSuccess();
    }
};

// The layout of an otherwise empty board holding these pieces.
std::string LayoutOf(const Placement& pieces) {
    ImportBoard b;
    for (int rank = 1; rank <= 8; ++rank)
        for (int file = 1; file <= 8; ++file) b.SetCode(rank, file, "no");
    for (const auto& [square, code] : pieces) b.SetCode(RankOf(square), FileOf(square), code);
    return b.BoardToLayout();
}

// ---------------------------------------------------------------------------
// Side to move

TEST_F(Resolver, SideFollowsThePlyAlone) {
    EXPECT_TRUE(Refused("e6", 1, 2));  // White's e-pawn can't reach e6
    EXPECT_TRUE(Moves("e6", 2));
    EXPECT_EQ(At("e7"), "no");
    EXPECT_EQ(At("e6"), "bp");
    EXPECT_EQ(At("e2"), "wp");

    board.ResetImportBoard();
    EXPECT_TRUE(Moves("e6", 40));
    EXPECT_EQ(At("e6"), "bp");
    EXPECT_TRUE(Moves("Nf3", 41));
    EXPECT_EQ(At("f3"), "wn");
    EXPECT_TRUE(Refused("Nf3", 42, 2));  // no black knight reaches f3
}

// ---------------------------------------------------------------------------
// Piece moves: the forms by length

TEST_F(Resolver, PieceFormsReadTheirHints) {
    // Knights on g1 and e5 both reach f3; the one on b1 doesn't.
    const Placement twoKnights = {{"g1", "wn"}, {"e5", "wn"}, {"b1", "wn"}, {"a8", "bk"}};
    const std::string g1Moved = LayoutOf({{"f3", "wn"}, {"e5", "wn"}, {"b1", "wn"}, {"a8", "bk"}});
    const std::string e5Moved = LayoutOf({{"g1", "wn"}, {"f3", "wn"}, {"b1", "wn"}, {"a8", "bk"}});
    struct Case {
        const char* token;
        int result;
        const std::string* after;
    };
    const Case cases[] = {
        {"Nf3", 1, nullptr},     {"Nxf3", 1, nullptr},    {"NXf3", 1, nullptr},    {"N1f3", 0, &g1Moved},
        {"N5f3", 0, &e5Moved},   {"Ngf3", 0, &g1Moved},   {"Nef3", 0, &e5Moved},   {"N1xf3", 0, &g1Moved},
        {"N5xf3", 0, &e5Moved},  {"Ngxf3", 0, &g1Moved},  {"NeXf3", 0, &e5Moved},  {"Ng1f3", 0, &g1Moved},
        {"Ne5f3", 0, &e5Moved},  {"N2f3", 2, nullptr},    {"Nbf3", 2, nullptr},    {"Nhf3", 2, nullptr},
        {"N`f3", 1, nullptr},    {"N0f3", 1, nullptr},  // a hint of 0 is no hint
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.token);
        Setup(twoKnights);
        if (c.result == 0) {
            ASSERT_TRUE(Moves(c.token, 1));
            EXPECT_EQ(board.BoardToLayout(), *c.after);
        } else {
            EXPECT_TRUE(Refused(c.token, 1, c.result));
        }
    }
}

TEST_F(Resolver, FiveCharacterFormsNeverLookAtTheThirdCharacter) {
    // Only the file of the source square counts: Ng1f3 names both g-knights.
    Setup({{"g1", "wn"}, {"g5", "wn"}});
    EXPECT_TRUE(Refused("Ng1f3", 1, 1));
    EXPECT_TRUE(Refused("Ng7f3", 1, 1));
    Setup({{"g1", "wn"}});
    EXPECT_TRUE(Moves("Ng7f3", 1));
    EXPECT_EQ(At("f3"), "wn");
    Setup({{"g1", "wn"}});
    EXPECT_TRUE(Moves("N1?f3", 1));
    EXPECT_EQ(At("f3"), "wn");
}

TEST_F(Resolver, MalformedPieceTokens) {
    board.ResetImportBoard();
    EXPECT_TRUE(Refused("Ng1xf3", 1, 3));  // six characters
    EXPECT_TRUE(Refused("Nf3+", 1, 3));    // the "3" stands where the file is read
    EXPECT_TRUE(Refused("NF3", 1, 3));     // upper-case file
    EXPECT_TRUE(Refused("Nf9", 1, 3));
    EXPECT_TRUE(Refused("Nf0", 1, 2));     // rank 0: on no square
    EXPECT_TRUE(Refused("Nf", 1, 3));      // too short
    EXPECT_TRUE(Refused("N", 1, 3));
    EXPECT_TRUE(Refused("Nif3", 1, 3));    // hint file 9
    EXPECT_TRUE(Refused("N9f3", 1, 3));    // hint rank 9
    EXPECT_TRUE(Refused("Nxxf3", 1, 3));   // hint file from "x" in a five-character form
    EXPECT_TRUE(Refused("Qxf7#", 1, 3));
    EXPECT_TRUE(Refused("N`3", 1, 2));     // file 0: on no square
    EXPECT_TRUE(Refused("Nj3", 1, 3));
    EXPECT_TRUE(Refused(std::string("N\xE9") + "3", 1, 3));  // a byte above 127 is no file
    EXPECT_TRUE(Refused(std::string("N\xE9") + "f3", 1, 3));
}

TEST_F(Resolver, FirstCharacterChoosesTheForm) {
    EXPECT_TRUE(Refused("", 1, 3));
    EXPECT_TRUE(Refused("nf3", 1, 3));   // piece letters are upper case only
    EXPECT_TRUE(Refused("kf3", 1, 3));
    EXPECT_TRUE(Refused("Pe4", 1, 3));
    EXPECT_TRUE(Refused("Ie4", 1, 3));
    EXPECT_TRUE(Refused("1. e4", 1, 3));
    EXPECT_TRUE(Refused(" e4", 1, 3));
    EXPECT_TRUE(Refused("ie4", 1, 3));
    EXPECT_TRUE(Refused("bf3", 1, 2));  // a lower-case b is the b-pawn, which can't reach f3
    EXPECT_TRUE(Moves("b3", 1));
}

TEST_F(Resolver, NoPieceOfThatKindGivesIllegal) {
    Setup({{"e1", "wk"}, {"g8", "bn"}});
    EXPECT_TRUE(Refused("Nf3", 1, 2));
    EXPECT_TRUE(Refused("Qd4", 1, 2));
    EXPECT_TRUE(Moves("Nf6", 2));
}

TEST_F(Resolver, AmbiguityIsResolvedOnlyByHints) {
    board.ResetImportBoard();
    Put("d2", "no");
    Put("g1", "no");
    Put("f3", "wn");
    EXPECT_TRUE(Refused("Nd2", 1, 1));
    EXPECT_TRUE(Moves("Nbd2", 1));
    EXPECT_EQ(At("d2"), "wn");
    EXPECT_EQ(At("b1"), "no");
    EXPECT_EQ(At("f3"), "wn");
}

TEST_F(Resolver, PinnedPieceStillCountsAsCandidate) {
    // The d2 knight is pinned by the bishop on b4, yet both knights reach f3.
    const Placement pin = {{"e1", "wk"}, {"d2", "wn"}, {"g1", "wn"}, {"b4", "bb"}, {"e8", "bk"}};
    Setup(pin);
    EXPECT_TRUE(Refused("Nf3", 1, 1));
    EXPECT_TRUE(Moves("Ngf3", 1));
    EXPECT_EQ(At("g1"), "no");
    EXPECT_EQ(At("d2"), "wn");
    Setup(pin);
    EXPECT_TRUE(Moves("N1f3", 1));
    EXPECT_EQ(At("g1"), "no");
    Setup(pin);
    EXPECT_TRUE(Moves("Ndf3", 1));  // no check test: the pinned knight moves
    EXPECT_EQ(At("d2"), "no");
    EXPECT_EQ(At("f3"), "wn");
}

TEST_F(Resolver, SlidersStopAtTheFirstOccupiedSquare) {
    Setup({{"a1", "wr"}, {"a3", "bp"}, {"c1", "wp"}});
    EXPECT_TRUE(Refused("Ra4", 1, 2));  // beyond the black pawn
    EXPECT_TRUE(Refused("Rd1", 1, 2));  // beyond the own pawn
    EXPECT_TRUE(Refused("Rc1", 1, 2));  // own piece on the target
    EXPECT_TRUE(Moves("Rb1", 1));
    Setup({{"a1", "wr"}, {"a3", "bp"}});
    EXPECT_TRUE(Moves("Ra3", 1));  // the capture needs no "x"
    EXPECT_EQ(At("a3"), "wr");

    Setup({{"c1", "wb"}, {"e3", "wp"}, {"b2", "bn"}});
    EXPECT_TRUE(Refused("Bf4", 1, 2));
    EXPECT_TRUE(Refused("Ba3", 1, 2));
    EXPECT_TRUE(Moves("Bxb2", 1));
    EXPECT_EQ(At("b2"), "wb");

    Setup({{"d1", "bq"}, {"d5", "wp"}, {"g4", "wn"}});
    EXPECT_TRUE(Refused("Qd6", 2, 2));
    EXPECT_TRUE(Refused("Qh5", 2, 2));
    EXPECT_TRUE(Moves("Qd5", 2));
    Setup({{"d1", "bq"}, {"d5", "wp"}, {"g4", "wn"}});
    EXPECT_TRUE(Moves("Qxg4", 2));
    Setup({{"d1", "bq"}, {"d5", "wp"}, {"g4", "wn"}});
    EXPECT_TRUE(Moves("Qa4", 2));
    Setup({{"d1", "bq"}, {"d5", "wp"}, {"g4", "wn"}});
    EXPECT_TRUE(Refused("Qe3x", 2, 3));
    EXPECT_TRUE(Refused("Qe4", 2, 2));  // neither straight nor diagonal
}

TEST_F(Resolver, KnightAndKingJumps) {
    Setup({{"a1", "wn"}, {"b3", "wp"}});
    EXPECT_TRUE(Refused("Nb3", 1, 2));
    EXPECT_TRUE(Refused("Nb2", 1, 2));
    EXPECT_TRUE(Moves("Nc2", 1));
    Setup({{"d4", "bn"}, {"e6", "wp"}, {"c6", "wp"}, {"f5", "wp"}});
    EXPECT_TRUE(Moves("Nxe6", 2));  // jumps over the pawns around it
    EXPECT_EQ(At("e6"), "bn");
    Setup({{"a1", "wk"}});
    EXPECT_TRUE(Refused("Ka3", 1, 2));
    EXPECT_TRUE(Moves("Kb2", 1));
}

TEST_F(Resolver, CaptureMarkIsNotChecked) {
    board.ResetImportBoard();
    EXPECT_TRUE(Moves("Nxf3", 1));  // lands on an empty square
    EXPECT_EQ(At("f3"), "wn");
    board.ResetImportBoard();
    EXPECT_TRUE(Moves("exe3", 1));  // a straight step spelled as a capture
    EXPECT_EQ(At("e3"), "wp");
    Setup({{"a1", "wr"}, {"a5", "bq"}});
    EXPECT_TRUE(Moves("Ra5", 1));
    EXPECT_EQ(At("a5"), "wr");
}

TEST_F(Resolver, KingMayStepIntoCheck) {
    Setup({{"e1", "wk"}, {"e8", "br"}});
    EXPECT_TRUE(Moves("Ke2", 1));
    EXPECT_EQ(At("e2"), "wk");
    EXPECT_EQ(At("e1"), "no");
}

TEST_F(Resolver, KingCanBeCaptured) {
    Setup({{"e1", "wk"}, {"d1", "wq"}, {"e8", "bk"}, {"d8", "br"}});
    EXPECT_TRUE(Moves("Qd7", 1));
    EXPECT_TRUE(Moves("Ke7", 2));
    EXPECT_TRUE(Moves("Qxe7", 3));
    EXPECT_EQ(At("e7"), "wq");
    EXPECT_TRUE(Refused("Ke8", 4, 2));
    EXPECT_TRUE(Refused("Kf8", 4, 2));
    EXPECT_TRUE(Moves("Rd1", 4));
    EXPECT_TRUE(Moves("Rxe1", 4 + 2));
    EXPECT_TRUE(Refused("Kd1", 7, 2));
}

TEST_F(Resolver, StepEightOverwritesTheTarget) {
    board.ResetImportBoard();
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Moves("d5", 2));
    EXPECT_TRUE(Moves("exd5", 3));
    EXPECT_TRUE(Moves("Qxd5", 4));
    const std::string layout = board.BoardToLayout();
    EXPECT_EQ(layout, "RNBQKBNRPPPP0PPP" + std::string(16, '0') + "000q0000" + std::string(8, '0') +
                          "ppp0pppprnb0kbnr");
}

// ---------------------------------------------------------------------------
// Pawn moves: every form, for both sides

TEST_F(Resolver, EveryPawnFormResolves) {
    struct Case {
        const char* token;
        int ply;
        Placement before;
        Placement after;
    };
    const Placement wCapture = {{"e4", "wp"}, {"d5", "bn"}};
    const Placement wCaptured = {{"d5", "wp"}};
    const Placement wPromote = {{"e7", "wp"}, {"d8", "br"}};
    const Placement bCapture = {{"d5", "bp"}, {"e4", "wn"}};
    const Placement bCaptured = {{"e4", "bp"}};
    const Placement bPromote = {{"d2", "bp"}, {"e1", "wr"}};
    const Case cases[] = {
        {"e4", 1, {{"e2", "wp"}}, {{"e4", "wp"}}},
        {"e3", 1, {{"e2", "wp"}}, {{"e3", "wp"}}},
        {"ed", 1, wCapture, wCaptured},
        {"ed5", 1, wCapture, wCaptured},
        {"exd", 1, wCapture, wCaptured},
        {"eXd", 1, wCapture, wCaptured},
        {"e8Q", 1, {{"e7", "wp"}}, {{"e8", "wq"}}},
        {"e8N", 1, {{"e7", "wp"}}, {{"e8", "wn"}}},
        {"e2e4", 1, {{"e2", "wp"}}, {{"e4", "wp"}}},
        {"e4d5", 1, wCapture, wCaptured},
        {"exd5", 1, wCapture, wCaptured},
        {"eXd5", 1, wCapture, wCaptured},
        {"e8=Q", 1, {{"e7", "wp"}}, {{"e8", "wq"}}},
        {"e8=R", 1, {{"e7", "wp"}}, {{"e8", "wr"}}},
        {"e4xd5", 1, wCapture, wCaptured},
        {"e4Xd5", 1, wCapture, wCaptured},
        {"exd8Q", 1, wPromote, {{"d8", "wq"}}},
        {"exd8B", 1, wPromote, {{"d8", "wb"}}},
        {"exd8=Q", 1, wPromote, {{"d8", "wq"}}},
        {"e?d8=Q", 1, wPromote, {{"d8", "wq"}}},  // the second character is not looked at
        {"d5", 2, {{"d7", "bp"}}, {{"d5", "bp"}}},
        {"de", 2, bCapture, bCaptured},
        {"de4", 2, bCapture, bCaptured},
        {"dxe", 2, bCapture, bCaptured},
        {"d1R", 2, {{"d2", "bp"}}, {{"d1", "br"}}},
        {"d7d5", 2, {{"d7", "bp"}}, {{"d5", "bp"}}},
        {"dxe4", 2, bCapture, bCaptured},
        {"d1=N", 2, {{"d2", "bp"}}, {{"d1", "bn"}}},
        {"d5xe4", 2, bCapture, bCaptured},
        {"dxe1B", 2, bPromote, {{"e1", "bb"}}},
        {"dxe1=Q", 2, bPromote, {{"e1", "bq"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.token);
        Setup(c.before);
        ASSERT_TRUE(Moves(c.token, c.ply));
        EXPECT_EQ(board.BoardToLayout(), LayoutOf(c.after));
    }
}

TEST_F(Resolver, PawnTokensThatFitNoFormCantBeParsed) {
    const Placement white = {{"e7", "wp"}, {"e4", "wp"}, {"d5", "bn"}, {"d8", "br"}};
    for (const char* token : {"e", "e8q", "e7Q", "e8K", "e8P", "e8=", "e8=q", "e8=K", "e8-Q", "e8Q+", "exd+",
                              "ed5+", "e4-d5", "e4d5+", "exd8q", "exd7Q", "exd8=", "e8=QQ", "exd8-Q", "exd8=q",
                              "exd8=K", "exd8=Q+", "e2-e4", "e1=Q", "e1Q", "e+", "ej4", "e9", "ed9", "exd5e"}) {
        SCOPED_TRACE(token);
        Setup(white);
        EXPECT_TRUE(Refused(token, 1, 3));
    }
    const Placement black = {{"d2", "bp"}, {"d5", "bp"}, {"e4", "wn"}, {"e1", "wr"}};
    for (const char* token : {"d8=Q", "d8Q", "dxe8Q", "dxe8=Q", "d1=q", "dxe1=K", "d5-e4"}) {
        SCOPED_TRACE(token);
        Setup(black);
        EXPECT_TRUE(Refused(token, 2, 3));
    }
}

TEST_F(Resolver, PawnTargetAndHintRanges) {
    Setup({{"e2", "wp"}, {"e7", "bp"}});
    EXPECT_TRUE(Refused("e0", 1, 2));    // rank 0 is on no square
    EXPECT_TRUE(Refused("ed0", 1, 3));   // the square behind rank 0 is off the subscripts
    EXPECT_TRUE(Refused("ed0", 2, 2));   // for Black it is rank 1
    EXPECT_TRUE(Refused("ed8", 2, 3));   // behind rank 8 for Black is rank 9
    EXPECT_TRUE(Refused("e`", 1, 2));    // file 0 is on no square
    EXPECT_TRUE(Refused("e9e4", 1, 3));  // hint rank 9
}

TEST_F(Resolver, ZeroHintRankMeansAnyRank) {
    Setup({{"e2", "wp"}});
    EXPECT_TRUE(Moves("e0e4", 1));  // "0" gives no hint
    EXPECT_EQ(At("e4"), "wp");
    Setup({{"e4", "wp"}, {"d5", "bp"}});
    EXPECT_TRUE(Moves("eyxd5", 1));  // a letter where the rank stands is no hint either
    EXPECT_EQ(At("d5"), "wp");
}

TEST_F(Resolver, PawnStepsAndCaptures) {
    // e5 with pawns on e2 and e4 moves the e4 pawn.
    Setup({{"e2", "wp"}, {"e4", "wp"}});
    EXPECT_TRUE(Moves("e5", 1));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"e2", "wp"}, {"e5", "wp"}}));

    // e4 with pawns on e2 and e3 moves the e3 pawn.
    Setup({{"e2", "wp"}, {"e3", "wp"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"e2", "wp"}, {"e4", "wp"}}));
    EXPECT_FALSE(board.EnPassant.Active);  // a step from rank 3 is no double step

    // The double step needs e3 empty, whatever stands there.
    for (const char* blocker : {"wn", "bn", "bp"}) {
        SCOPED_TRACE(blocker);
        Setup({{"e2", "wp"}, {"e3", blocker}});
        EXPECT_TRUE(Refused("e4", 1, 2));
    }
    // ... and e4 empty.
    Setup({{"e2", "wp"}, {"e4", "bn"}});
    EXPECT_TRUE(Refused("e4", 1, 2));
    EXPECT_TRUE(Moves("e3", 1));

    // Double steps only from the home rank.
    Setup({{"e3", "wp"}, {"d6", "bp"}});
    EXPECT_TRUE(Refused("e5", 1, 2));
    EXPECT_TRUE(Refused("d4", 2, 2));
    Setup({{"d7", "bp"}});
    EXPECT_TRUE(Moves("d5", 2));
    EXPECT_TRUE(board.EnPassant.Active);

    // Forward only onto an empty square, diagonally only onto an enemy.
    Setup({{"e4", "wp"}, {"e5", "bp"}, {"d5", "wp"}, {"f3", "bp"}});
    EXPECT_TRUE(Refused("e5", 1, 2));
    EXPECT_TRUE(Refused("exd5", 1, 2));
    EXPECT_TRUE(Refused("exf5", 1, 2));
    EXPECT_TRUE(Refused("exf3", 1, 2));  // a white pawn doesn't capture backwards
    EXPECT_TRUE(Refused("exf", 1, 2));

    // No wrap around the edge of the board.
    Setup({{"a4", "wp"}, {"h5", "bp"}});
    EXPECT_TRUE(Refused("axh5", 1, 2));
    Setup({{"h4", "wp"}, {"a5", "bp"}});
    EXPECT_TRUE(Refused("hxa5", 1, 2));
}

TEST_F(Resolver, PawnWithoutPromotionStaysAPawnOnTheLastRank) {
    Setup({{"e7", "wp"}});
    EXPECT_TRUE(Moves("e8", 1));
    EXPECT_EQ(At("e8"), "wp");
    EXPECT_EQ(board.BoardToLayout()[60], 'P');
    // It is stuck there, and with a deduced rank it is passed over as a
    // candidate whose square ahead is off the board.
    Put("e4", "wp");
    Put("d5", "bn");
    EXPECT_TRUE(Moves("ed", 3));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"d5", "wp"}, {"e8", "wp"}}));
}

TEST_F(Resolver, PromotionSpellings) {
    for (const char* token : {"e8=Q", "e8Q"}) {
        SCOPED_TRACE(token);
        Setup({{"e7", "wp"}});
        EXPECT_TRUE(Moves(token, 1));
        EXPECT_EQ(At("e8"), "wq");
        EXPECT_EQ(At("e7"), "no");
    }
    for (const char* token : {"exd8=Q", "exd8Q"}) {
        SCOPED_TRACE(token);
        Setup({{"e7", "wp"}, {"d8", "bn"}});
        EXPECT_TRUE(Moves(token, 1));
        EXPECT_EQ(At("d8"), "wq");
        EXPECT_EQ(At("e7"), "no");
    }
    for (const char* token : {"e8=q", "e8=K", "e8="}) {
        SCOPED_TRACE(token);
        Setup({{"e7", "wp"}});
        EXPECT_TRUE(Refused(token, 1, 3));
    }
    // The source must stand on the rank before last.
    Setup({{"e6", "wp"}});
    EXPECT_TRUE(Refused("e8Q", 1, 2));
    Setup({{"e7", "wp"}, {"e8", "bk"}});
    EXPECT_TRUE(Refused("e8=Q", 1, 2));
}

// ---------------------------------------------------------------------------
// Deduced rank: the target rank comes from each candidate

TEST_F(Resolver, DeducedRankFollowsTheOnePawnThatCaptures) {
    Setup({{"e4", "wp"}, {"d5", "bn"}});
    EXPECT_TRUE(Moves("ed", 1));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"d5", "wp"}}));

    Setup({{"e5", "bp"}, {"d4", "wb"}});
    EXPECT_TRUE(Moves("exd", 2));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"d4", "bp"}}));
}

TEST_F(Resolver, DeducedRankWithTwoCapturingPawnsIsAmbiguous) {
    const Placement two = {{"e3", "wp"}, {"d4", "bp"}, {"e5", "wp"}, {"d6", "bn"}};
    Setup(two);
    EXPECT_TRUE(Refused("exd", 1, 1));
    EXPECT_TRUE(Refused("ed", 1, 1));
    EXPECT_TRUE(Moves("exd4", 1));
    EXPECT_EQ(At("d4"), "wp");
    Setup(two);
    EXPECT_TRUE(Moves("ed6", 1));
    EXPECT_EQ(At("d6"), "wp");
}

TEST_F(Resolver, DeducedRankLandsAheadOfTheMiddlePawn) {
    Setup({{"e2", "wp"}, {"e4", "wp"}, {"e6", "wp"}, {"d5", "bp"}, {"d7", "wn"}});
    EXPECT_TRUE(Moves("ed", 1));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"e2", "wp"}, {"e6", "wp"}, {"d5", "wp"}, {"d7", "wn"}}));
}

TEST_F(Resolver, DeducedRankOnlyForAPawnThatReaches) {
    Setup({{"e4", "wp"}});
    EXPECT_TRUE(Refused("ed", 1, 2));
    EXPECT_TRUE(Refused("exf", 1, 2));
    // With the same file twice the deduced square is the one straight ahead.
    EXPECT_TRUE(Moves("ee", 1));
    EXPECT_EQ(At("e5"), "wp");
}

// ---------------------------------------------------------------------------
// En passant

TEST_F(Resolver, EnPassantCaptureOnTheNextCall) {
    Setup({{"e2", "wp"}, {"d4", "bp"}});
    EXPECT_TRUE(Moves("e4", 7));
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_FALSE(board.EnPassant.Aged);
    EXPECT_EQ(board.EnPassant.Side, 'w');
    EXPECT_EQ(board.EnPassant.PawnFile, 5);
    EXPECT_EQ(board.EnPassant.PawnRank, 4);
    EXPECT_EQ(board.EnPassant.PassedRank, 3);

    EXPECT_TRUE(Moves("dxe3", 8));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"e3", "bp"}}));
}

TEST_F(Resolver, EnPassantByBlackDoubleStepEveryCaptureForm) {
    for (const char* token : {"exd6", "ed6", "exd", "ed", "e5d6", "e5xd6"}) {
        SCOPED_TRACE(token);
        Setup({{"e5", "wp"}, {"d7", "bp"}});
        ASSERT_TRUE(Moves("d5", 2));
        EXPECT_EQ(board.EnPassant.Side, 'b');
        EXPECT_EQ(board.EnPassant.PawnRank, 5);
        EXPECT_EQ(board.EnPassant.PassedRank, 6);
        EXPECT_TRUE(Moves(token, 3));
        EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"d6", "wp"}}));
    }
}

TEST_F(Resolver, EnPassantIsGoneTwoCallsLater) {
    Setup({{"e2", "wp"}, {"d4", "bp"}, {"h7", "bp"}, {"a2", "wp"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Moves("h6", 2));
    EXPECT_TRUE(Moves("a3", 3));
    EXPECT_FALSE(board.EnPassant.Active);
    EXPECT_TRUE(Refused("dxe3", 4, 2));
}

TEST_F(Resolver, AFailedTryUsesUpTheEnPassantCall) {
    Setup({{"e2", "wp"}, {"d4", "bp"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Refused("Nf6", 2, 2));
    EXPECT_TRUE(Refused("dxe3", 2, 2));

    // A token that can't even be parsed ages the record too.
    Setup({{"e2", "wp"}, {"d4", "bp"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Refused("??", 2, 3));
    EXPECT_TRUE(Refused("dxe3", 2, 2));
}

TEST_F(Resolver, RecordAgesOnceEveryCall) {
    Setup({{"e2", "wp"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_FALSE(board.EnPassant.Aged);
    Play("", 2);
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_TRUE(board.EnPassant.Aged);
    Play("", 2);
    EXPECT_FALSE(board.EnPassant.Active);
    Play("", 2);
    EXPECT_FALSE(board.EnPassant.Active);
}

TEST_F(Resolver, EnPassantNeedsThePawnOfTheOtherSide) {
    // White's own double step opens nothing for White's pawns.
    Setup({{"e2", "wp"}, {"f2", "wp"}, {"d4", "bp"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Refused("fxe3", 3, 2));
}

TEST_F(Resolver, EnPassantOnlyOntoThePassedSquare) {
    const Placement start = {{"e2", "wp"}, {"d4", "bp"}, {"f4", "bp"}, {"e5", "bp"}};
    Setup(start);
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Refused("dxc3", 2, 2));
    // The double-stepped pawn blocks the file: no black step lands on e3.
    Setup(start);
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Refused("e3", 2, 2));
    Setup(start);
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Moves("fxe3", 2));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"d4", "bp"}, {"e3", "bp"}, {"e5", "bp"}}));
}

TEST_F(Resolver, APieceOnThePassedSquareTakesNoPawn) {
    Setup({{"e2", "wp"}, {"g4", "bn"}});
    EXPECT_TRUE(Moves("e4", 1));
    EXPECT_TRUE(Moves("Ne3", 2));
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"e4", "wp"}, {"e3", "bn"}}));
}

TEST_F(Resolver, RecordOutlivesAReset) {
    Setup({{"e2", "wp"}});
    EXPECT_TRUE(Moves("e4", 1));
    board.ResetImportBoard();
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_FALSE(board.EnPassant.Aged);
    // The next game's first call finds it aged; it touches nothing of the new game.
    EXPECT_TRUE(Moves("d4", 1));
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_EQ(board.EnPassant.PawnFile, 4);
    std::string expected(kInitialLayout);
    expected[11] = '0';
    expected[27] = 'P';
    EXPECT_EQ(board.BoardToLayout(), expected);
}

// ---------------------------------------------------------------------------
// Castling

TEST_F(Resolver, KingSideSpellingsAllBecomeOO) {
    for (const char* token : {"O-O", "o-o", "oo", "OO", "0-0", "00", "O-o", "Oo"}) {
        SCOPED_TRACE(token);
        board.ResetImportBoard();
        Put("f1", "no");
        Put("g1", "no");
        std::string move = token;
        EXPECT_EQ(ResolveMove(board, move, 1), 0);
        EXPECT_EQ(move, "o-o");
        EXPECT_EQ(board.BoardToLayout().substr(0, 8), "RNBQ0RK0");
    }
}

TEST_F(Resolver, QueenSideSpellingsAllBecomeOOO) {
    for (const char* token : {"O-O-O", "o-o-o", "ooo", "OOO", "0-0-0", "000"}) {
        SCOPED_TRACE(token);
        board.ResetImportBoard();
        Put("b8", "no");
        Put("c8", "no");
        Put("d8", "no");
        std::string move = token;
        EXPECT_EQ(ResolveMove(board, move, 2), 0);
        EXPECT_EQ(move, "o-o-o");
        EXPECT_EQ(board.BoardToLayout().substr(56, 8), "00kr0bnr");
    }
}

TEST_F(Resolver, BlockedCastlingIsUnparsableButStillRewritten) {
    board.ResetImportBoard();
    Put("g1", "no");  // the f1 bishop is still there
    const std::string before = board.BoardToLayout();
    std::string move = "O-O";
    EXPECT_EQ(ResolveMove(board, move, 1), 3);
    EXPECT_EQ(move, "o-o");
    EXPECT_EQ(board.BoardToLayout(), before);

    // The b-square must be empty too.
    board.ResetImportBoard();
    Put("c1", "no");
    Put("d1", "no");
    move = "0-0-0";
    EXPECT_EQ(ResolveMove(board, move, 1), 3);
    EXPECT_EQ(move, "o-o-o");
    EXPECT_EQ(board.BoardToLayout().substr(0, 8), "RN00KBNR");
}

TEST_F(Resolver, CastlingNeedsOwnKingAndRookOnTheirSquares) {
    const struct {
        Placement pieces;
        const char* token;
        int ply;
    } cases[] = {
        {{{"e1", "wk"}, {"h1", "br"}}, "O-O", 1},
        {{{"e1", "bk"}, {"h1", "wr"}}, "O-O", 1},
        {{{"e1", "wk"}, {"h1", "wq"}}, "O-O", 1},
        {{{"d1", "wk"}, {"h1", "wr"}}, "O-O", 1},
        {{{"e1", "wk"}, {"h1", "wr"}}, "O-O", 2},  // Black to move
        {{{"e1", "wk"}, {"a1", "wr"}, {"b1", "bn"}}, "O-O-O", 1},
        {{{"e8", "bk"}, {"a8", "br"}, {"d8", "bq"}}, "O-O-O", 2},
        {{{"e8", "bk"}, {"h8", "br"}, {"g8", "wn"}}, "O-O", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.token);
        Setup(c.pieces);
        EXPECT_TRUE(Refused(c.token, c.ply, 3));
    }
}

TEST_F(Resolver, CastlingIgnoresCheckAndHistory) {
    Setup({{"e1", "wk"}, {"h1", "wr"}, {"e8", "br"}, {"f8", "bq"}, {"g8", "bb"}});
    EXPECT_TRUE(Moves("O-O", 1));  // in check, through check, into check
    EXPECT_EQ(board.BoardToLayout(), LayoutOf({{"f1", "wr"}, {"g1", "wk"}, {"e8", "br"}, {"f8", "bq"}, {"g8", "bb"}}));

    Setup({{"e1", "wk"}, {"h1", "wr"}, {"a8", "bk"}});
    EXPECT_TRUE(Moves("Ke2", 1));
    EXPECT_TRUE(Moves("Kb8", 2));
    EXPECT_TRUE(Moves("Rh5", 3));
    EXPECT_TRUE(Moves("Ka8", 4));
    EXPECT_TRUE(Moves("Ke1", 5));
    EXPECT_TRUE(Moves("Kb8", 6));
    EXPECT_TRUE(Moves("Rh1", 7));
    EXPECT_TRUE(Moves("Ka8", 8));
    EXPECT_TRUE(Moves("0-0", 9));
    EXPECT_EQ(At("g1"), "wk");
    EXPECT_EQ(At("f1"), "wr");
}

TEST_F(Resolver, UnknownCastlingSpellingsStayAsTheyCame) {
    for (const char* token : {"o", "O", "0", "o-", "O-O+", "o-o-o-o", "0-O", "O-0", "oo-o", "o-oo", "0000",
                              "O-O-O-O", "0x0", "ooo0"}) {
        SCOPED_TRACE(token);
        board.ResetImportBoard();
        Put("f1", "no");
        Put("g1", "no");
        Put("b1", "no");
        Put("c1", "no");
        Put("d1", "no");
        const std::string before = board.BoardToLayout();
        std::string move = token;
        EXPECT_EQ(ResolveMove(board, move, 1), 3);
        EXPECT_EQ(move, token);
        EXPECT_EQ(board.BoardToLayout(), before);
    }
}

TEST_F(Resolver, OnlyCastlingRewritesTheToken) {
    board.ResetImportBoard();
    std::string move = "Ng1f3";
    EXPECT_EQ(ResolveMove(board, move, 1), 0);
    EXPECT_EQ(move, "Ng1f3");
    move = "exd8=Q";
    EXPECT_EQ(ResolveMove(board, move, 2), 3);
    EXPECT_EQ(move, "exd8=Q");
}

// ---------------------------------------------------------------------------
// A whole game

TEST_F(Resolver, RuyLopezExchangeVariation) {
    board.ResetImportBoard();
    const char* moves[] = {"e4",  "e5",   "Nf3", "Nc6",  "Bb5", "a6",  "Bxc6",  "dxc6", "O-O", "f6",
                           "d4",  "exd4", "Nxd4", "c5",  "Nb3", "Qxd1", "Rxd1", "Bg4",  "f3",  "Be6",
                           "Nc3", "Bd6",  "Be3", "b6",   "a4",  "O-O-O", "a5",  "Kb7",  "e5",  "fxe5"};
    int ply = 1;
    for (const char* token : moves) {
        std::string move = token;
        ASSERT_EQ(ResolveMove(board, move, static_cast<int16_t>(ply)), 0) << token << " at ply " << ply;
        ++ply;
    }
    EXPECT_EQ(board.BoardToLayout(), std::string("R00R00K0") + "0PP000PP" + "0NN0BP00" + "00000000" + "P0p0p000" +
                                         "pp0bb000" + "0kp000pp" + "000r00nr");
}

TEST_F(Resolver, GameWithEnPassantAndPromotion) {
    board.ResetImportBoard();
    const char* moves[] = {"e4", "Nf6", "e5", "d5", "exd6", "e6", "dxc7", "Qe7", "cxb8=Q", "Rxb8"};
    int ply = 1;
    for (const char* token : moves) {
        std::string move = token;
        ASSERT_EQ(ResolveMove(board, move, static_cast<int16_t>(ply)), 0) << token << " at ply " << ply;
        ++ply;
    }
    EXPECT_EQ(board.BoardToLayout(), std::string("RNBQKBNR") + "PPPP0PPP" + std::string(16, '0') +
                                         std::string(8, '0') + "0000pn00" + "pp00qppp" + "0rb0kb0r");
}

// ---------------------------------------------------------------------------
// FindPiece

class FindPieceTest : public Resolver {
protected:
    int16_t Find(const char* piece, int16_t& rank, int16_t& file, bool isWhite, int16_t n) {
        std::string p = piece;
        return FindPiece(board, p, rank, file, isWhite, n);
    }
};

TEST_F(FindPieceTest, CountsOnTheInitialPosition) {
    int16_t rank = 0, file = 0;
    EXPECT_EQ(Find("p", rank, file, true, 1), 8);
    EXPECT_EQ(Find("p", rank = 0, file = 0, false, 1), 8);
    EXPECT_EQ(Find("N", rank = 0, file = 0, true, 1), 2);
    EXPECT_EQ(Find("K", rank = 0, file = 0, false, 1), 1);
    EXPECT_EQ(rank, 8);
    EXPECT_EQ(file, 5);
    EXPECT_EQ(Find("n", rank = 0, file = 0, true, 1), 2);  // the code is built in lower case
    EXPECT_EQ(Find("X", rank = 0, file = 0, true, 1), 0);
    EXPECT_EQ(Find("", rank = 0, file = 0, true, 1), 0);
    EXPECT_EQ(Find("NN", rank = 0, file = 0, true, 1), 0);
}

TEST_F(FindPieceTest, WalkWithoutHintsRunsFilesOutside) {
    Setup({{"b1", "wn"}, {"a8", "wn"}, {"a2", "bn"}});
    int16_t rank = 0, file = 0;
    EXPECT_EQ(Find("N", rank, file, true, 1), 2);
    EXPECT_EQ(rank, 8);
    EXPECT_EQ(file, 1);
    rank = 0, file = 0;
    EXPECT_EQ(Find("N", rank, file, true, 2), 2);
    EXPECT_EQ(rank, 1);
    EXPECT_EQ(file, 2);
}

TEST_F(FindPieceTest, HintFileWalksItsRanks) {
    Setup({{"e7", "wr"}, {"e2", "wr"}, {"a2", "wr"}});
    int16_t rank = 0, file = 5;
    EXPECT_EQ(Find("R", rank, file, true, 2), 2);
    EXPECT_EQ(rank, 7);
    EXPECT_EQ(file, 5);
    rank = 0, file = 5;
    EXPECT_EQ(Find("R", rank, file, true, 1), 2);
    EXPECT_EQ(rank, 2);
}

TEST_F(FindPieceTest, HintRankWalksItsFiles) {
    Setup({{"h3", "bb"}, {"a3", "bb"}, {"c4", "bb"}});
    int16_t rank = 3, file = 0;
    EXPECT_EQ(Find("B", rank, file, false, 1), 2);
    EXPECT_EQ(rank, 3);
    EXPECT_EQ(file, 1);
    rank = 3, file = 0;
    EXPECT_EQ(Find("B", rank, file, false, 2), 2);
    EXPECT_EQ(file, 8);
}

TEST_F(FindPieceTest, BothHintsNameOneSquare) {
    Setup({{"d4", "wq"}, {"d5", "wq"}});
    int16_t rank = 4, file = 4;
    EXPECT_EQ(Find("Q", rank, file, true, 1), 1);
    rank = 4, file = 5;
    EXPECT_EQ(Find("Q", rank, file, true, 1), 0);
    EXPECT_EQ(Find("Q", rank = 4, file = 4, false, 1), 0);
}

TEST_F(FindPieceTest, NBelowOneCountsAsOne) {
    Setup({{"c3", "wn"}, {"f6", "wn"}});
    for (int16_t n : {int16_t{0}, int16_t{-4}}) {
        int16_t rank = 0, file = 0;
        EXPECT_EQ(Find("N", rank, file, true, n), 2);
        EXPECT_EQ(rank, 3);
        EXPECT_EQ(file, 3);
    }
}

TEST_F(FindPieceTest, FewerThanNLeavesTheHints) {
    Setup({{"c3", "wn"}});
    int16_t rank = 0, file = 0;
    EXPECT_EQ(Find("N", rank, file, true, 2), 1);
    EXPECT_EQ(rank, 0);
    EXPECT_EQ(file, 0);
    rank = 0, file = 3;
    EXPECT_EQ(Find("N", rank, file, true, 5), 1);
    EXPECT_EQ(rank, 0);
    EXPECT_EQ(file, 3);
    rank = 6, file = 0;
    EXPECT_EQ(Find("N", rank, file, true, 1), 0);
    EXPECT_EQ(rank, 6);
    EXPECT_EQ(file, 0);
}

// ---------------------------------------------------------------------------
// MarkReach

class MarkReachTest : public Resolver {
protected:
    ReachMap reach;

    void Mark(const char* piece, const char* square, bool isWhite) {
        MarkReach(board, reach, piece, static_cast<int16_t>(RankOf(square)), static_cast<int16_t>(FileOf(square)),
                  isWhite);
    }
    // The marked squares as "a1 b2 ...", walked rank by rank.
    std::string Marked() const {
        std::string out;
        for (int rank = 1; rank <= 8; ++rank)
            for (int file = 1; file <= 8; ++file)
                if (reach.Marked(rank, file)) {
                    if (!out.empty()) out += ' ';
                    out += static_cast<char>('a' + file - 1);
                    out += static_cast<char>('0' + rank);
                }
        return out;
    }
    int Count() const {
        int n = 0;
        for (int rank = 0; rank <= 8; ++rank)
            for (int file = 0; file <= 8; ++file) n += reach.squares[rank][file] == 'x';
        return n;
    }
};

TEST_F(MarkReachTest, OpenBoardCounts) {
    Empty();
    Mark("R", "d4", true);
    EXPECT_EQ(Count(), 14);
    Mark("B", "d4", true);
    EXPECT_EQ(Count(), 13);
    Mark("Q", "d4", true);
    EXPECT_EQ(Count(), 27);
    Mark("N", "d4", true);
    EXPECT_EQ(Count(), 8);
    Mark("K", "d4", true);
    EXPECT_EQ(Count(), 8);
    Mark("B", "a1", false);
    EXPECT_EQ(Count(), 7);
    Mark("R", "h8", false);
    EXPECT_EQ(Count(), 14);
}

TEST_F(MarkReachTest, NothingOffTheBoard) {
    Empty();
    Mark("N", "a1", true);
    EXPECT_EQ(Marked(), "c2 b3");
    Mark("N", "h8", true);
    EXPECT_EQ(Marked(), "g6 f7");
    Mark("K", "a1", true);
    EXPECT_EQ(Marked(), "b1 a2 b2");
    Mark("K", "h8", false);
    EXPECT_EQ(Marked(), "g7 h7 g8");
    Mark("p", "h7", true);
    EXPECT_EQ(Marked(), "h8");
    Mark("p", "a8", true);  // a pawn stuck on the last rank reaches nothing
    EXPECT_EQ(Marked(), "");
}

TEST_F(MarkReachTest, RaysStopAfterTheFirstPiece) {
    Setup({{"d4", "wr"}, {"d6", "bp"}, {"f4", "wn"}, {"d2", "bk"}});
    Mark("R", "d4", true);
    EXPECT_EQ(Marked(), "d2 d3 a4 b4 c4 e4 d5 d6");

    Setup({{"c1", "bb"}, {"e3", "bp"}, {"a3", "wp"}});
    Mark("B", "c1", false);
    EXPECT_EQ(Marked(), "b2 d2 a3");

    Setup({{"d1", "wq"}, {"d3", "wp"}, {"f3", "bp"}, {"a4", "bp"}, {"e1", "wk"}});
    Mark("Q", "d1", true);
    EXPECT_EQ(Marked(), "a1 b1 c1 c2 d2 e2 b3 f3 a4");
}

TEST_F(MarkReachTest, JumpersMarkEnemiesNotFriends) {
    Setup({{"d4", "wn"}, {"e6", "wp"}, {"c6", "bp"}, {"d5", "bq"}});
    Mark("N", "d4", true);
    EXPECT_EQ(Marked(), "c2 e2 b3 f3 b5 f5 c6");

    Setup({{"e1", "bk"}, {"d1", "bq"}, {"f2", "wp"}});
    Mark("K", "e1", false);
    EXPECT_EQ(Marked(), "f1 d2 e2 f2");
}

TEST_F(MarkReachTest, ColourComesFromTheMoverArgument) {
    Setup({{"d4", "wn"}, {"e6", "wp"}});
    Mark("N", "d4", false);  // as a black knight it may take the white pawn
    EXPECT_TRUE(reach.Marked(6, 5));
}

TEST_F(MarkReachTest, PawnSteps) {
    Empty();
    Mark("p", "e2", true);
    EXPECT_EQ(Marked(), "e3 e4");
    Mark("p", "e3", true);
    EXPECT_EQ(Marked(), "e4");
    Mark("p", "e7", false);
    EXPECT_EQ(Marked(), "e5 e6");
    Mark("p", "e6", false);
    EXPECT_EQ(Marked(), "e5");

    Setup({{"e2", "wp"}, {"e4", "bp"}});
    Mark("p", "e2", true);
    EXPECT_EQ(Marked(), "e3");
    Setup({{"e2", "wp"}, {"e3", "wp"}});
    Mark("p", "e2", true);
    EXPECT_EQ(Marked(), "");
}

TEST_F(MarkReachTest, PawnCaptures) {
    Setup({{"e4", "wp"}, {"d5", "bp"}, {"f5", "wn"}, {"e5", "bn"}});
    Mark("p", "e4", true);
    EXPECT_EQ(Marked(), "d5");
    Setup({{"e5", "bp"}, {"d4", "wp"}, {"f4", "bn"}});
    Mark("p", "e5", false);
    EXPECT_EQ(Marked(), "d4 e4");
}

TEST_F(MarkReachTest, PawnCaptureOntoThePassedSquare) {
    Setup({{"d4", "bp"}, {"e4", "wp"}});
    auto& ep = board.EnPassant;
    ep = {};
    ep.Active = true;
    ep.Aged = true;
    ep.Side = 'w';
    ep.PawnFile = 5;
    ep.PawnRank = 4;
    ep.PassedRank = 3;
    Mark("p", "d4", false);
    EXPECT_EQ(Marked(), "d3 e3");

    ep.Aged = false;
    Mark("p", "d4", false);
    EXPECT_EQ(Marked(), "d3");
    ep.Aged = true;
    ep.Active = false;
    Mark("p", "d4", false);
    EXPECT_EQ(Marked(), "d3");
    ep.Active = true;
    ep.Side = 'b';
    Mark("p", "d4", false);
    EXPECT_EQ(Marked(), "d3");
    ep.Side = 'w';
    ep.PawnFile = 3;
    Mark("p", "d4", false);
    EXPECT_EQ(Marked(), "c3 d3");
}

TEST_F(MarkReachTest, EachCallStartsFromAClearMap) {
    Empty();
    Mark("Q", "d4", true);
    ASSERT_EQ(Count(), 27);
    Mark("N", "a1", true);
    EXPECT_EQ(Count(), 2);
    Mark("Z", "a1", true);  // no such piece: nothing marked
    EXPECT_EQ(Count(), 0);
    Mark("P", "e2", true);  // pawns go by "p"
    EXPECT_EQ(Count(), 0);
}

}  // namespace
