// The rules of chess as far as legality goes: which squares a side attacks,
// and which moves leave the mover's own king safe. The move resolver doesn't
// use them (it has no notion of check); the command line's automatic repair,
// the FEN reader and the made-up-game generator do.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::chess {

// Squares 0..63: a1, b1, ... h1, a2, ... h8, as in the layout string.
struct Move {
    int8_t from = 0;
    int8_t to = 0;
    char promo = 0;  // upper-case piece letter, or 0
    bool castle = false;
    bool enPassant = false;
};

// A position with the side to move, castling rights and the square passed by
// a double step. Pieces are the layout's letters: upper case White, lower
// case Black; an empty square reads as 0.
class Position {
public:
    Position() { Reset(); }

    // The initial position, White to move, all castling rights.
    void Reset();

    // The position of a 64-character layout ('0' for an empty square) with
    // the side to move given. A layout keeps no castling rights and no en
    // passant square, so there are none. False for a layout that isn't one.
    bool SetLayout(std::string_view layout, bool whiteToMove);

    bool WhiteToMove() const { return white_; }
    char At(int s) const { return sq_[static_cast<size_t>(s)]; }

    // The 64-character layout, as the import board gives it.
    std::string Layout() const;

    // Whether a piece of that side attacks square s.
    bool Attacked(int s, bool byWhite) const;
    // Whether that side's king stands attacked; false with no king.
    bool InCheck(bool white) const;

    // Carries a move out, legal or not, and hands the move to the other side.
    void Apply(const Move& m);

    // Every legal move of the side to move.
    void LegalMoves(std::vector<Move>& out) const;

    // Whether the piece on `from` reaches `to` by its way of moving, sliders
    // stopping at the first piece; pawns aren't asked.
    bool Reaches(int from, int to) const;

    // The move in algebraic notation, with "+" behind a check. The source's
    // file (or rank) is written whenever another piece of the same kind
    // reaches the square by its way of moving, pinned or not, as the resolver
    // needs it; empty for a move that would need both.
    std::string San(const Move& m) const;

    static std::string SquareName(int s);

private:
    static bool IsWhite(char p) { return p >= 'A' && p <= 'Z'; }
    bool Own(char p) const { return p && IsWhite(p) == white_; }
    bool Enemy(char p) const { return p && IsWhite(p) != white_; }
    void PseudoMoves(std::vector<Move>& out) const;

    std::array<char, 64> sq_{};
    bool white_ = true;
    uint8_t castling_ = 15;  // 1 White king side, 2 White queen side, 4 and 8 Black
    int ep_ = -1;
};

// The piece placement of a FEN (its first field; the other fields, if any,
// are not looked at) as a 64-character layout. On a placement that isn't
// one, false with the cause in `error`.
bool LayoutFromFen(std::string_view fen, std::string& layout, std::string& error);

}  // namespace vantrel::chess
