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

    void Clear() {
        for (auto& s : GameMoves) s.clear();
        for (auto& s : GameComments) s.clear();
    }
};

}  // namespace vantrel::import
