// What both reader fuzz targets check: any text read game by game ends in
// games, a clean end of the file or an Error, every call makes
// progress, and each game record holds exactly its plies.
#pragma once

#include <cstdlib>
#include <string>

#include "import/readers.h"

namespace vantrel::fuzz {

inline void CheckGame(int16_t last, const import::GameRecord& g) {
    using import::kMaxPly;
    if (last < -1 || last > kMaxPly) std::abort();
    for (int i = 1; i <= kMaxPly; ++i) {
        const std::string_view move = g.GameMoves[static_cast<size_t>(i)];
        if (i <= last ? (move.size() < 2 || move.size() > 6) : !move.empty()) std::abort();
        if (i > last && last >= 0 && !g.GameComments[static_cast<size_t>(i)].empty()) std::abort();
    }
}

// Calls read(state, game) until the file is used up.
template <typename Read>
void ReadAllGames(const std::string& text, Read&& read) {
    import::LineSource src;
    src.OpenText(text);
    import::ImportState state;
    state.ImportFile = &src;
    import::GameRecord game;
    // Each call reads at least one line, so the file's line count bounds the calls.
    size_t bound = 2;
    for (char c : text) bound += (c == '\n' || c == '\r');
    try {
        for (size_t calls = 0; !state.ImportAtEnd; ++calls) {
            if (calls > bound) std::abort();
            const int16_t last = read(state, game);
            CheckGame(last, game);
            if (last == -1 && !state.ImportAtEnd) std::abort();
        }
    } catch (const Error&) {
    }
}

}  // namespace vantrel::fuzz
