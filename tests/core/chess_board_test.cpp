// ImportBoard: the initial position, the piece codes and the layout string.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "chess/board.h"

namespace {

using vantrel::chess::CodeToLayoutChar;
using vantrel::chess::ImportBoard;
using vantrel::chess::kInitialLayout;

void ClearBoard(ImportBoard& board) {
    for (int s = 0; s < 64; ++s) board.SetCode(s / 8 + 1, s % 8 + 1, "no");
}

TEST(ChessBoard, ResetWritesTheInitialPositionAndKeepsTheEnPassantRecord) {
    ImportBoard board;
    EXPECT_FALSE(board.EnPassant.Active);  // nothing on record at the start
    EXPECT_EQ(kInitialLayout, std::string("RNBQKBNR") + std::string(8, 'P') + std::string(32, '0') +
                                  std::string(8, 'p') + "rnbqkbnr");
    EXPECT_EQ(board.BoardToLayout(), kInitialLayout);
    ClearBoard(board);
    board.EnPassant = {true, true, 'b', 3, 5, 6};
    board.ResetImportBoard();
    std::string backRanks;
    for (int file = 1; file <= 8; ++file) backRanks += board.Code(1, file) + board.Code(2, file) + board.Code(8, file);
    EXPECT_EQ(backRanks, "wrwpbrwnwpbnwbwpbbwqwpbqwkwpbkwbwpbbwnwpbnwrwpbr");
    EXPECT_TRUE(board.EnPassant.Active && board.EnPassant.Aged);
    EXPECT_EQ(board.EnPassant.PassedRank, 6);
}

TEST(ChessBoard, EveryCodeHasItsCharacterAtItsPlaceInTheLayout) {
    const std::pair<const char*, char> table[] = {
        {"wp", 'P'}, {"wn", 'N'}, {"wb", 'B'}, {"wr", 'R'}, {"wq", 'Q'}, {"wk", 'K'}, {"bp", 'p'},
        {"bn", 'n'}, {"bb", 'b'}, {"br", 'r'}, {"bq", 'q'}, {"bk", 'k'}, {"no", '0'},
    };
    ImportBoard board;
    for (int s = 0; s < 64; ++s) {
        const auto& [code, ch] = table[s % 13];
        EXPECT_EQ(CodeToLayoutChar(code), ch) << code;
        ClearBoard(board);
        board.SetCode(s / 8 + 1, s % 8 + 1, code);  // rank-major from a1
        std::string expected(64, '0');
        expected[static_cast<size_t>(s)] = ch;
        EXPECT_EQ(board.BoardToLayout(), expected) << code << " on square " << s;
    }
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

}  // namespace
