// The answer a patient user would give the repair dialog, worked out from the
// rules of chess: for a move the resolver refused, the spelling it takes.
#pragma once

#include <cstdint>
#include <string>

#include "chess/board.h"

namespace vantrel::chess {

struct MoveRepair {
    bool fixed = false;
    std::string move;     // the move to store, when fixed
    int16_t result = 0;   // otherwise: the resolver's result for the move as far as it could be mended
};

// `move` was refused with `result` at `ply` on `board` (the board ahead of the
// move, with the en passant record as the refusal left it). Marks the
// resolver can't take are dropped ("Rb8+!" -> "Rb8"), and an ambiguous move
// of which all candidates but one would leave their own king in check gets
// the source file, rank or (for a pawn) square that singles that one out
// ("Ne2" -> "Nge2"). A fix is given only if the resolver takes it on a copy
// of the board and moves the piece meant.
MoveRepair RepairMove(const ImportBoard& board, const std::string& move, int16_t ply, int16_t result);

}  // namespace vantrel::chess
