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

TEST(ChessBoard, InitialLayoutCharacterForCharacter) {
    ImportBoard board;
    const std::string expected = std::string("RNBQKBNR") + std::string(8, 'P') + std::string(32, '0') +
                                 std::string(8, 'p') + "rnbqkbnr";
    EXPECT_EQ(expected, kInitialLayout);
    EXPECT_EQ(board.BoardToLayout(), expected);

    // After moves and a reset the same string comes back.
    board.SetCode(4, 5, "wp");
    board.SetCode(2, 5, "no");
    board.SetCode(8, 4, "no");
    board.ResetImportBoard();
    EXPECT_EQ(board.BoardToLayout(), expected);
}

TEST(ChessBoard, ResetWritesTheCodesOfTheInitialPosition) {
    ImportBoard board;
    ClearBoard(board);
    board.ResetImportBoard();
    const char* back[] = {"r", "n", "b", "q", "k", "b", "n", "r"};
    for (int file = 1; file <= 8; ++file) {
        EXPECT_EQ(board.Code(1, file), std::string("w") + back[file - 1]) << file;
        EXPECT_EQ(board.Code(2, file), "wp") << file;
        for (int rank = 3; rank <= 6; ++rank) EXPECT_EQ(board.Code(rank, file), "no") << rank << "," << file;
        EXPECT_EQ(board.Code(7, file), "bp") << file;
        EXPECT_EQ(board.Code(8, file), std::string("b") + back[file - 1]) << file;
    }
    EXPECT_EQ(board.Code(1, 4), "wq");
    EXPECT_EQ(board.Code(8, 5), "bk");
}

TEST(ChessBoard, ResetLeavesTheEnPassantRecordAlone) {
    ImportBoard board;
    board.EnPassant.Active = true;
    board.EnPassant.Aged = true;
    board.EnPassant.Side = 'b';
    board.EnPassant.PawnFile = 3;
    board.EnPassant.PawnRank = 5;
    board.EnPassant.PassedRank = 6;
    board.ResetImportBoard();
    EXPECT_TRUE(board.EnPassant.Active);
    EXPECT_TRUE(board.EnPassant.Aged);
    EXPECT_EQ(board.EnPassant.Side, 'b');
    EXPECT_EQ(board.EnPassant.PawnFile, 3);
    EXPECT_EQ(board.EnPassant.PawnRank, 5);
    EXPECT_EQ(board.EnPassant.PassedRank, 6);
}

TEST(ChessBoard, TheRecordStartsEmpty) {
    ImportBoard board;
    EXPECT_FALSE(board.EnPassant.Active);
    EXPECT_FALSE(board.EnPassant.Aged);
    EXPECT_EQ(board.EnPassant.PawnFile, 0);
    EXPECT_EQ(board.EnPassant.PawnRank, 0);
    EXPECT_EQ(board.EnPassant.PassedRank, 0);
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
            const size_t k = static_cast<size_t>((rank - 1) * 8 + (file - 1));
            EXPECT_EQ(layout.find('q'), k) << rank << "," << file;
            EXPECT_EQ(std::count(layout.begin(), layout.end(), '0'), 63);
        }
    }
}

TEST(ChessBoard, SquaresOffTheBoardReadEmptyAndIgnoreWrites) {
    ImportBoard board;
    const int off[][2] = {{0, 1}, {1, 0}, {9, 1}, {1, 9}, {-1, 4}, {4, -1}, {0, 0}};
    for (const auto& sq : off) {
        EXPECT_EQ(board.Code(sq[0], sq[1]), "no");
        EXPECT_EQ(board.Colour(sq[0], sq[1]), 'n');
        EXPECT_EQ(board.Piece(sq[0], sq[1]), 'o');
        EXPECT_TRUE(board.IsEmpty(sq[0], sq[1]));
        board.SetCode(sq[0], sq[1], "wq");
    }
    EXPECT_EQ(board.BoardToLayout(), kInitialLayout);
    board.SetCode(3, 3, "wqq");  // not a code: ignored
    EXPECT_EQ(board.Code(3, 3), "no");
}

TEST(ChessBoard, ColourAndPieceSplitTheCode) {
    ImportBoard board;
    EXPECT_EQ(board.Colour(1, 2), 'w');
    EXPECT_EQ(board.Piece(1, 2), 'n');
    EXPECT_EQ(board.Colour(7, 3), 'b');
    EXPECT_EQ(board.Piece(7, 3), 'p');
    EXPECT_TRUE(board.IsEmpty(4, 4));
    EXPECT_FALSE(board.IsEmpty(8, 8));
}

TEST(ChessBoard, PawnOnTheLastRankStaysAPawnInTheLayout) {
    ImportBoard board;
    ClearBoard(board);
    board.SetCode(8, 5, "wp");
    board.SetCode(1, 2, "bp");
    const std::string layout = board.BoardToLayout();
    EXPECT_EQ(layout[60], 'P');
    EXPECT_EQ(layout[1], 'p');
}

TEST(ChessBoard, PromotedPieceIsShownAsThatPiece) {
    ImportBoard board;
    ClearBoard(board);
    board.SetCode(7, 1, "wp");
    std::string move = "a8=Q";
    ASSERT_EQ(vantrel::chess::ResolveMove(board, move, 1), 0);
    EXPECT_EQ(board.Code(8, 1), "wq");
    EXPECT_EQ(board.BoardToLayout(), std::string(56, '0') + "Q" + std::string(7, '0'));
}

TEST(ChessBoard, AfterE4ExactlyTwoCharactersChange) {
    ImportBoard board;
    std::string move = "e4";
    ASSERT_EQ(vantrel::chess::ResolveMove(board, move, 1), 0);
    const std::string layout = board.BoardToLayout();
    ASSERT_EQ(layout.size(), 64u);
    int differences = 0;
    for (size_t k = 0; k < 64; ++k)
        if (layout[k] != kInitialLayout[k]) ++differences;
    EXPECT_EQ(differences, 2);
    EXPECT_EQ(layout[12], '0');
    EXPECT_EQ(layout[28], 'P');
}

}  // namespace
