// The game record that the readers fill, one game at a time.
#pragma once

#include <array>
#include <string>

#include "library/errors.h"

namespace vantrel::import {

inline constexpr int kMaxPly = 250;

// GameMoves(0) is the game's name, GameComments(0) its own comment; slots 1
// to n hold the move and the comment of each ply. Odd plies are White's.
struct GameRecord {
    std::array<std::string, kMaxPly + 1> GameMoves;
    std::array<std::string, kMaxPly + 1> GameComments;
    // The slots past this one are empty: the readers say how far a game went.
    int16_t used = kMaxPly;

    void Clear() {
        for (int i = 0; i <= used; ++i) {
            GameMoves[static_cast<size_t>(i)].clear();
            GameComments[static_cast<size_t>(i)].clear();
        }
        used = kMaxPly;
    }
};

}  // namespace vantrel::import
