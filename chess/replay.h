// A resolved move done again without the resolver. From a given tree node a
// move text always does the same to the board: the squares it changes and
// the en passant record it leaves, as the node's line of moves decides the
// board. A Step keeps that much of one resolution, so that a later game
// walking the same line can play it back at the cost of a few stores.
#pragma once

#include <cstdint>

#include "chess/board.h"

namespace vantrel::chess {

using Step = uint64_t;
// A move whose change doesn't fit a Step: it is resolved every time.
inline constexpr Step kNoStep = 0;

// Watches one resolution: Before takes the squares, After (once ResolveMove
// has given kResolved) tells what changed.
class StepRecorder {
public:
    void Before(const ImportBoard& board);
    Step After(const ImportBoard& board) const;

private:
    char before_[ImportBoard::kRawSize];
};

// Does on the board what the resolution of `ply` did, ageing the en passant
// record as every call of ResolveMove does.
void Replay(ImportBoard& board, Step step, int16_t ply);
// Only what Replay does to the en passant record: for a move whose squares
// no one will look at, as the next game puts the pieces back anyway.
void ReplayEnPassant(ImportBoard& board, Step step, int16_t ply);
// The en passant record as ReplayEnPassant, ply by ply, leaves it after
// plies `from` + 1 to `to`, whose steps are steps[from + 1] to steps[to]:
// the last double step among them, aged by the plies behind it.
void ReplayEnPassant(ImportBoard& board, const Step* steps, int16_t from, int16_t to);

}  // namespace vantrel::chess
