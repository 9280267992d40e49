// ImportBoard: the initial position, the piece codes and the layout string.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "chess/board.h"
#include "chess/resolver.h"

namespace {

using vantrel::chess::CodeToLayoutChar;
using vantrel::chess::ImportBoard;
using vantrel::chess::kInitialLayout;

void ClearBoard(ImportBoard& board) {
    for (int rank = 1; rank <= 8; ++rank)
        for (int file = 1; file <= 8; ++file) board.SetCode(rank, file, "no");
}

TEST(ChessBoard, ResetWritesTheInitialPositionAndKeepsTheEnPassantRecord) {
    ImportBoard board;
    EXPECT_FALSE(board.EnPassant.Active);  // nothing on record at the start
    const std::string expected = std::string("RNBQKBNR") + std::string(8, 'P') + std::string(32, '0') +
                                 std::string(8, 'p') + "rnbqkbnr";
    EXPECT_EQ(expected, kInitialLayout);
    EXPECT_EQ(board.BoardToLayout(), expected);

    ClearBoard(board);
    board.EnPassant = {true, true, 'b', 3, 5, 6};
    board.ResetImportBoard();
    EXPECT_EQ(board.BoardToLayout(), expected);
    std::string backRanks;
    for (int file = 1; file <= 8; ++file) backRanks += board.Code(1, file) + board.Code(2, file) + board.Code(8, file);
    EXPECT_EQ(backRanks, "wrwpbrwnwpbnwbwpbbwqwpbqwkwpbkwbwpbbwnwpbnwrwpbr");
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_TRUE(board.EnPassant.Aged);
    EXPECT_EQ(board.EnPassant.Side, 'b');
    EXPECT_EQ(board.EnPassant.PassedRank, 6);
}

TEST(ChessBoard, EveryCodeHasItsLayoutCharacter) {
    const std::pair<const char*, char> table[] = {
        {"wp", 'P'}, {"wn", 'N'}, {"wb", 'B'}, {"wr", 'R'}, {"wq", 'Q'}, {"wk", 'K'}, {"bp", 'p'},
        {"bn", 'n'}, {"bb", 'b'}, {"br", 'r'}, {"bq", 'q'}, {"bk", 'k'}, {"no", '0'},
    };
    for (const auto& [code, ch] : table) {
        EXPECT_EQ(CodeToLayoutChar(code), ch) << code;
        ImportBoard board;
        ClearBoard(board);
        board.SetCode(1, 1, code);
        EXPECT_EQ(board.BoardToLayout()[0], ch) << code;
    }
}

TEST(ChessBoard, LayoutPositionIsRankMajorFromA1) {
    ImportBoard board;
    for (int rank = 1; rank <= 8; ++rank) {
        for (int file = 1; file <= 8; ++file) {
            ClearBoard(board);
            board.SetCode(rank, file, "bq");
            const std::string layout = board.BoardToLayout();
            ASSERT_EQ(layout.size(), 64u);
            EXPECT_EQ(layout.find('q'), static_cast<size_t>((rank - 1) * 8 + (file - 1))) << rank << "," << file;
            EXPECT_EQ(std::count(layout.begin(), layout.end(), '0'), 63);
        }
    }
    // A pawn on the last rank stays a pawn in the layout.
    ClearBoard(board);
    board.SetCode(8, 5, "wp");
    board.SetCode(1, 2, "bp");
    EXPECT_EQ(board.BoardToLayout(), "0p" + std::string(58, '0') + "P000");
}

TEST(ChessBoard, SquaresOffTheBoardReadEmptyAndIgnoreWrites) {
    ImportBoard board;
    const int off[][2] = {{0, 1}, {1, 0}, {9, 1}, {1, 9}, {-1, 4}, {4, -1}, {0, 0}};
    for (const auto& sq : off) {
        EXPECT_EQ(board.Code(sq[0], sq[1]), "no");
        EXPECT_TRUE(board.IsEmpty(sq[0], sq[1]));
        board.SetCode(sq[0], sq[1], "wq");
    }
    EXPECT_EQ(board.BoardToLayout(), kInitialLayout);
    board.SetCode(3, 3, "wqq");  // not a code: ignored
    EXPECT_EQ(board.Code(3, 3), "no");
}

TEST(ChessBoard, AfterE4ExactlyTwoCharactersChange) {
    ImportBoard board;
    std::string move = "e4";
    ASSERT_EQ(vantrel::chess::ResolveMove(board, move, 1), 0);
    std::string expected(kInitialLayout);
    expected[12] = '0';
    expected[28] = 'P';
    EXPECT_EQ(board.BoardToLayout(), expected);
}

}  // namespace
