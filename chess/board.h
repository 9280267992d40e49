// The board of the game being imported, and the 64-character layout string.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "chess/layout.h"

namespace vantrel::chess {

// The last double step of a pawn, which makes an en passant capture possible
// for exactly one later call of ResolveMove.
struct EnPassantRecord {
    bool Active = false;
    bool Aged = false;
    char Side = 0;  // 'w' or 'b', 0 while nothing was recorded
    int16_t PawnFile = 0;
    int16_t PawnRank = 0;
    int16_t PassedRank = 0;

    // What every call of the resolver does first: an active record ages,
    // and an aged one ends.
    void Age() {
        if (Active) {
            if (Aged)
                Active = false;
            else
                Aged = true;
        }
    }
    // A pawn of the side to move went from its second rank to its fourth on `file`.
    void DoubleStep(bool white, int16_t file) {
        Active = true;
        Aged = false;
        Side = white ? 'w' : 'b';
        PawnFile = file;
        PawnRank = white ? 4 : 5;
        PassedRank = white ? 3 : 6;
    }
};

// ImportBoard: squares (rank, file), both 1..8, each holding a two-letter
// piece code: "w"/"b" plus the piece letter in lower case ("wp", "bn", ...),
// or "no" for an empty square. Row 0 and column 0 exist and are never used.
class ImportBoard {
public:
    ImportBoard();

    // The code on a square; out-of-range squares read as "no".
    std::string Code(int rank, int file) const;
    void SetCode(int rank, int file, std::string_view code);

    // Colour letter ('w', 'b' or 'n' for "no") and piece letter of a square,
    // without building a string. Squares off the board read as "no".
    char Colour(int rank, int file) const { return OnBoard(rank, file) ? squares_[rank][file][0] : 'n'; }
    char Piece(int rank, int file) const { return OnBoard(rank, file) ? squares_[rank][file][1] : 'o'; }
    bool IsEmpty(int rank, int file) const { return Colour(rank, file) == 'n'; }

    // Writes the 64 squares of the initial position. The en passant record
    // is left alone: it survives from one game to the next.
    void ResetImportBoard();

    // The 64-character layout of the board.
    std::string BoardToLayout() const;
    // The same into a string the caller keeps, so that its room is reused.
    void BoardToLayout(std::string& layout) const { layout.assign(layout_, sizeof layout_); }

    EnPassantRecord EnPassant;

    // The codes of all squares, row 0 and column 0 among them: two bytes a
    // square, (rank * 9 + file) * 2 from the start.
    static constexpr size_t kRawSize = 9 * 9 * 2;
    const char* Raw() const { return &squares_[0][0][0]; }

    // Puts the code (colour, piece) on square `index` of the layout, 0..63,
    // with `shown`, its layout character, without looking at either: for a
    // move played back.
    void PutAt(int index, char colour, char piece, char shown) {
        char* square = squares_[index / 8 + 1][index % 8 + 1];
        square[0] = colour;
        square[1] = piece;
        layout_[index] = shown;
    }

private:
    explicit ImportBoard(int);  // every square "no"
    static bool OnBoard(int rank, int file) { return rank >= 1 && rank <= 8 && file >= 1 && file <= 8; }
    void Put(int rank, int file, char colour, char piece) {
        squares_[rank][file][0] = colour;
        squares_[rank][file][1] = piece;
        // As CodeToLayoutChar, without the string view and the locale.
        char c = piece;
        if (colour == 'n' && piece == 'o')
            c = '0';
        else if (colour == 'w' && piece >= 'a' && piece <= 'z')
            c = static_cast<char>(piece - 'a' + 'A');
        layout_[(rank - 1) * 8 + (file - 1)] = c;
    }

    char squares_[9][9][2];
    // The layout, kept up to date square by square: rank 1 first, file a
    // first within a rank.
    char layout_[64];
};

// The layout character of a piece code: "wq" -> 'Q', "bq" -> 'q', "no" -> '0'.
char CodeToLayoutChar(std::string_view code);

}  // namespace vantrel::chess
