// Deterministic made-up games for the benchmarks, the tests and
// vantrel-gen-library: legal games played on the rules of chess/legal.h, with
// moves written in the algebraic forms the import's resolver reads.
//
// The resolver doesn't know about pins, so a move is written with a file or
// rank of its source whenever another piece of the same kind could reach the
// square by its way of moving, pinned or not. A move that would need both
// file and rank is never chosen.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "chess/legal.h"

namespace vantrel::gen {

// A small, fast, reproducible random source.
class Rng {
public:
    explicit Rng(uint64_t seed) : state_(seed) {}
    uint64_t Next() {
        uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // 0 .. n-1
    uint32_t Below(uint32_t n) { return n == 0 ? 0 : static_cast<uint32_t>(Next() % n); }
    bool Chance(uint32_t percent) { return Below(100) < percent; }

private:
    uint64_t state_;
};

using chess::Move;
using chess::Position;

// A rough sense of what a player would play, so that made-up games share
// openings and look like chess: development and the centre first, captures
// of big pieces, no early king walks.
inline int MoveScore(const Position& pos, const Move& m) {
    auto value = [](char piece) {
        switch (piece | 0x20) {
            case 'p': return 1;
            case 'n':
            case 'b': return 3;
            case 'r': return 5;
            case 'q': return 9;
            default: return 0;
        }
    };
    const int r = m.to / 8, f = m.to % 8;
    const int centre = 6 - ((r < 4 ? 3 - r : r - 4) + (f < 4 ? 3 - f : f - 4));
    int score = centre * 2;
    const char target = pos.At(m.to);
    if (target) score += value(target) * 6;
    const char p = pos.At(m.from);
    if (p == 'K' || p == 'k') score -= m.castle ? -8 : 10;
    if (p == 'Q' || p == 'q') score -= 3;
    if (m.promo == 'Q') score += 40;
    return score;
}

// One made-up game: its moves as written, and the layout after each.
struct Game {
    std::vector<std::string> moves;
    std::vector<std::string> layouts;
};

// Plays on from `pos`, at ply `from` + 1, up to ply `plies` (fewer if the
// game ends in mate or stalemate), adding to `game`. Early moves come from
// the few best-looking ones, so that games share openings; later moves are
// freer.
inline void PlayOn(Rng& rng, Position pos, int from, int plies, Game& game) {
    std::vector<Move> legal;
    std::vector<std::pair<int, size_t>> ranked;
    for (int ply = from + 1; ply <= plies; ++ply) {
        pos.LegalMoves(legal);
        ranked.clear();
        for (size_t i = 0; i < legal.size(); ++i) ranked.push_back({-MoveScore(pos, legal[i]), i});
        // A stable order: score, then generation order.
        std::sort(ranked.begin(), ranked.end());
        std::string san;
        Move chosen;
        const size_t width = ply <= 6 ? 2 + ply / 3 : ply <= 16 ? 6 : ranked.size();
        for (int attempt = 0; attempt < 8 && san.empty() && !ranked.empty(); ++attempt) {
            const size_t pool = std::min(width, ranked.size());
            // Lean towards the front of the pool.
            size_t pick = rng.Below(static_cast<uint32_t>(pool));
            if (rng.Chance(50)) pick = std::min(pick, static_cast<size_t>(rng.Below(static_cast<uint32_t>(pool))));
            chosen = legal[ranked[pick].second];
            san = pos.San(chosen);
        }
        if (san.empty()) break;
        game.moves.push_back(san);
        pos.Apply(chosen);
        game.layouts.push_back(pos.Layout());
    }
}

inline Game PlayGame(Rng& rng, int plies) {
    Game game;
    PlayOn(rng, Position(), 0, plies, game);
    return game;
}

// Appends one game in PGN: tags, a blank line, the move text in lines of
// about 80 characters, and a blank line. With `extras`, some moves get a
// comment, a mark or a numeric annotation code behind them.
inline void AppendPgn(std::string& out, const std::string& event, const std::string& white, const std::string& black,
                      const Game& game, Rng& rng, bool extras) {
    out += "[Event \"" + event + "\"]\n";
    out += "[Site \"Made up\"]\n";
    out += "[White \"" + white + "\"]\n";
    out += "[Black \"" + black + "\"]\n\n";
    static constexpr const char* kComments[] = {"{The usual move.}", "{Safer was to castle first.}",
                                                "{Both sides have chances.}", "{A new idea.}"};
    size_t lineStart = out.size();
    for (size_t i = 0; i < game.moves.size(); ++i) {
        std::string token;
        if (i % 2 == 0) token = std::to_string(i / 2 + 1) + ". ";
        token += game.moves[i];
        if (extras) {
            const bool check = game.moves[i].back() == '+';
            const uint32_t roll = rng.Below(100);
            if (roll < 6)
                token += std::string(" ") + kComments[rng.Below(4)];
            else if (roll < 9 && !check)
                token += "!";
            else if (roll < 11)
                token += " $" + std::to_string(1 + rng.Below(19));
        }
        if (out.size() - lineStart + token.size() + 1 > 80) {
            out += '\n';
            lineStart = out.size();
        } else if (out.size() > lineStart) {
            out += ' ';
        }
        out += token;
    }
    out += "\n\n";
}

}  // namespace vantrel::gen
