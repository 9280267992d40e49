// The rules of chess/legal.h, and the automatic repair built on them.
#include <gtest/gtest.h>

#include <cctype>

#include "chess/legal.h"
#include "chess/move_repair.h"
#include "chess/resolver.h"

namespace vantrel::chess {
namespace {

long Perft(const Position& pos, int depth) {
    if (depth == 0) return 1;
    std::vector<Move> moves;
    pos.LegalMoves(moves);
    long count = 0;
    for (const Move& m : moves) {
        Position next = pos;
        next.Apply(m);
        count += Perft(next, depth - 1);
    }
    return count;
}

TEST(ChessLegalTest, CountsTheLegalMovesOfTheFirstFourPlies) {
    const long expected[] = {20, 400, 8902, 197281};
    for (int depth = 1; depth <= 4; ++depth) EXPECT_EQ(Perft(Position(), depth), expected[depth - 1]) << depth;
}

TEST(ChessLegalTest, ReadsTheFenPlacementOrSaysWhatIsWrong) {
    std::string layout, error;
    EXPECT_TRUE(LayoutFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", layout, error));
    EXPECT_EQ(layout, kInitialLayout);
    const std::pair<const char*, const char*> bad[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP", "fewer than 8 ranks"},
        {"8/8/8/8/8/8/8/8/8", "more than 8 ranks"},
        {"8/ppppppppp/8/8/8/8/8/8", "rank 7 doesn't hold 8 squares"},
        {"8/8/8/8/8/8/8/7", "rank 1 doesn't hold 8 squares"},
        {"8/8/8/8/8/8/8/7x", "'x' is neither a piece, a digit nor '/'"},
    };
    for (const auto& [fen, cause] : bad) {
        EXPECT_FALSE(LayoutFromFen(fen, layout, error)) << fen;
        EXPECT_EQ(error, cause) << fen;
    }
}

ImportBoard BoardOf(const std::string& fen) {
    std::string layout, error;
    EXPECT_TRUE(LayoutFromFen(fen, layout, error)) << fen;
    ImportBoard board;
    for (int s = 0; s < 64; ++s) {
        const char c = layout[static_cast<size_t>(s)];
        const char piece = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        board.SetCode(s / 8 + 1, s % 8 + 1,
                      c == '0' ? std::string("no") : std::string{std::isupper(c) ? 'w' : 'b', piece});
    }
    return board;
}

TEST(ChessLegalTest, RepairGivesTheSpellingOfTheOnlyLegalCandidate) {
    const std::string initial = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
    const std::string pinnedKnight = "4k3/8/8/8/1b6/2N5/8/4K1N1";
    // A position, the ply, the move; the spelling repaired (empty: none), or the result reported.
    struct Case { std::string fen; int16_t ply; std::string move, fix; int16_t result; } cases[] = {
        {pinnedKnight, 1, "Ne2", "Nge2", 0},
        {pinnedKnight, 1, "Ne2+", "Nge2", 0},                    // a mark as well
        {"4k1n1/8/2n5/1B6/8/8/8/4K3", 2, "Ne7", "Nge7", 0},      // Black's knight
        {"7k/8/8/r2R3K/8/8/8/3R4", 1, "Rd3", "R1d3", 0},         // the file doesn't single it out
        {"3r4/8/8/8/R2r3k/8/8/K7", 2, "Rd6", "R8d6", 0},         // Black's rooks
        {"7k/8/3n4/4P3/3nr3/4P3/8/4K3", 1, "ed", "exd6", 0},     // a pinned pawn's capture
        {"7k/8/3n4/4P3/3nr3/4P3/8/4K3", 1, "exd", "exd6", 0},
        {initial, 1, "Nf3+", "Nf3", 0},
        {initial, 2, "e5#", "e5", 0},
        {"4k3/8/8/8/8/2N5/8/4K1N1", 1, "Ne2", "", kAmbiguous},  // both knights may go
        {initial, 1, "Nf6+", "", kIllegal},                       // mended, still refused
        {initial, 1, "Zf3", "", kCantParse},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fen + " " + c.move);
        ImportBoard board = BoardOf(c.fen);
        std::string move = c.move;
        const int16_t refused = ResolveMove(board, move, c.ply);
        ASSERT_NE(refused, kResolved);
        const MoveRepair repair = RepairMove(board, c.move, c.ply, refused);
        EXPECT_EQ(repair.fixed ? repair.move : "", c.fix);
        EXPECT_EQ(repair.fixed ? c.result : repair.result, c.result);
    }
}

}  // namespace
}  // namespace vantrel::chess
