// The move resolver: which single piece of the side to move can reach the
// named square, and carrying the move out on the ImportBoard.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "chess/board.h"

namespace vantrel::chess {

enum ResolveResult : int16_t {
    kResolved = 0,
    kAmbiguous = 1,
    kIllegal = 2,
    kCantParse = 3,
};

// What the piece last given to MarkReach can reach: ' ' or 'x' on each
// square (rank, file), 1..8. Row and column 0 are never marked, so a target
// of 0 is reached by nothing. The map says nothing once the next piece is marked.
struct ReachMap {
    char squares[9][9];
    bool Marked(int rank, int file) const {
        return rank >= 0 && rank <= 8 && file >= 0 && file <= 8 && squares[rank][file] == 'x';
    }
};

// Resolves one move of the side given by ply (odd: White) and carries it out.
// `move` is rewritten only for castling ("o-o" / "o-o-o"), as soon as the
// spelling is recognised. Every call ages board.EnPassant first, failed calls
// too. Any result but kResolved leaves the squares unchanged.
ResolveResult ResolveMove(ImportBoard& board, std::string& move, int16_t ply);

// "o-o" or "o-o-o" for any spelling of a castling that ResolveMove takes
// ("O-O", "0-0", "oo", ...), nullptr for anything else.
const char* CastlingText(std::string_view move);

// The text under which a resolved move stands in the tree: the move itself,
// or a castling's one spelling. Empty for a text that can only fail.
std::string_view CastlingNodeText(std::string_view move);
inline std::string_view NodeText(std::string_view move) {
    if (move.empty() || (move[0] != 'o' && move[0] != 'O' && move[0] != '0')) return move;
    return CastlingNodeText(move);
}

// Counts the pieces of that kind and colour within the hints (0 = no hint).
// Leaves the square of the n-th of them in rank and file (n below 1 counts
// as 1); with fewer than n pieces, rank and file stay as they came. The walk
// without hints runs file a..h outside, rank 1..8 inside.
int16_t FindPiece(const ImportBoard& board, std::string& piece, int16_t& rank, int16_t& file, bool isWhite,
                  int16_t n);

// Clears the map and marks what the piece on (rank, file) can reach. `piece`
// is "R", "N", "B", "Q", "K" or "p"; a pawn can also reach the square passed
// by the double step that board.EnPassant holds, once it is aged.
void MarkReach(const ImportBoard& board, ReachMap& reach, const std::string& piece, int16_t rank, int16_t file,
               bool isWhite);

}  // namespace vantrel::chess
