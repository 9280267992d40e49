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
#include <cctype>
#include <cstdint>
#include <fstream>
#include <sstream>
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
// the few best-looking ones, so that games share openings; later moves, and
// all of them when `free`, come from every legal move.
inline void PlayOn(Rng& rng, Position pos, int from, int plies, Game& game, bool free = false) {
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
        const size_t width = free ? ranked.size() : ply <= 6 ? 2 + ply / 3 : ply <= 16 ? 6 : ranked.size();
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

// One game of a game database in PGN: one of 50 events, two of 400 players
// (few distinct names, as Scid's importer wants them), a Result tag, the
// moves, and the result token behind them.
inline void AppendDatabaseGame(std::string& out, long number, const Game& game, Rng& rng, bool extras) {
    const uint32_t roll = rng.Below(100);
    const std::string result = roll < 38 ? "1-0" : roll < 66 ? "1/2-1/2" : roll < 96 ? "0-1" : "*";
    const size_t start = out.size();
    const std::string white = "Player " + std::to_string(rng.Below(400));
    AppendPgn(out, "Event " + std::to_string(number % 50), white, "Player " + std::to_string(rng.Below(400)), game,
              rng, extras);
    // AppendPgn ends the move text with a blank line; the result goes before
    // it, and its tag after the others.
    out.resize(out.size() - 2);
    out.insert(out.find("\n\n", start) + 1, "[Result \"" + result + "\"]\n");
    out += ' ';
    out += result;
    out += "\n\n";
}

// The lines of moves of a book such as pgn-extract's eco.pgn, drawn by a
// Zipf law over the lines in a shuffled order, so that openings are shared
// as in a real database: a few lines are played by many games, most by few.
class Book {
public:
    // False if the file holds no line that can be played out.
    bool Read(const std::string& path, Rng& rng) {
        std::ifstream in(path, std::ios::binary);
        std::string moves;
        int depth = 0;  // inside braces
        for (std::string row; std::getline(in, row);) {
            for (const char c : row) depth += c == '{' ? 1 : c == '}' ? -1 : 0;
            if (depth > 0 || row.find('}') != std::string::npos) continue;
            if (row.starts_with("[")) {
                Finish(moves);
                moves.clear();
            } else {
                moves += " " + row;
            }
        }
        Finish(moves);
        for (size_t i = lines_.size(); i > 1; --i) std::swap(lines_[i - 1], lines_[rng.Below(static_cast<uint32_t>(i))]);
        double sum = 0;
        for (size_t r = 1; r <= lines_.size(); ++r) cumulative_.push_back(sum += 1.0 / static_cast<double>(r));
        return !lines_.empty();
    }

    // A game opening with a line drawn from the book and going on with
    // made-up moves up to `plies`, so that what follows the book is the
    // game's own.
    Game Play(Rng& rng, int plies) const {
        const Line& line = Draw(rng);
        Game game = line.game;
        PlayOn(rng, line.end, static_cast<int>(game.moves.size()), plies, game, true);
        return game;
    }

    // A game as a database holds them: a line drawn from the book, then a
    // few plies more of the likeliest moves, so that games share what follows
    // the book as they share the book itself, and most of a file's moves walk
    // down lines that earlier games played.
    Game PlayShared(Rng& rng) const {
        const Line& line = Draw(rng);
        Game game = line.game;
        Position pos = line.end;
        std::vector<Move> legal;
        std::vector<std::pair<int, size_t>> ranked;
        for (uint32_t left = 1 + rng.Below(6); left > 0; --left) {
            pos.LegalMoves(legal);
            if (legal.empty()) break;
            ranked.clear();
            for (size_t i = 0; i < legal.size(); ++i) ranked.push_back({-MoveScore(pos, legal[i]), i});
            std::sort(ranked.begin(), ranked.end());
            // The best-looking move most often, the next two now and then.
            const auto pool = static_cast<uint32_t>(std::min<size_t>(3, ranked.size()));
            const size_t pick = std::min(rng.Below(pool), rng.Below(pool));
            const Move chosen = legal[ranked[pick].second];
            game.moves.push_back(pos.San(chosen));
            pos.Apply(chosen);
            game.layouts.push_back(pos.Layout());
        }
        return game;
    }

private:
    struct Line {
        Game game;
        Position end;
    };

    const Line& Draw(Rng& rng) const {
        const double draw = static_cast<double>(rng.Next() % 1000000) / 1000000.0 * cumulative_.back();
        const auto pick = static_cast<size_t>(std::lower_bound(cumulative_.begin(), cumulative_.end(), draw) -
                                              cumulative_.begin());
        return lines_[std::min(pick, lines_.size() - 1)];
    }

    static std::string Plain(const std::string& s) {
        std::string out;
        for (const char c : s)
            if (c != '+' && c != '#' && c != 'x' && c != '=' && c != '!' && c != '?') out += c;
        return out;
    }
    // The move of `pos` that the token names, or false.
    static bool FindMove(const Position& pos, const std::string& token, Move& found) {
        std::vector<Move> legal;
        pos.LegalMoves(legal);
        const std::string want = Plain(token);
        int matches = 0;
        for (const Move& m : legal) {
            const std::string san = Plain(pos.San(m));
            // The writer names a source wherever the resolver wants one; the book may not.
            if (san == want || (san.size() == want.size() + 1 && san[0] == want[0] &&
                                std::isupper(static_cast<unsigned char>(san[0])) && san.substr(2) == want.substr(1))) {
                found = m;
                ++matches;
            }
        }
        return matches == 1;
    }
    void Finish(const std::string& moves) {
        std::istringstream tokens(moves);
        Line line;
        for (std::string t; tokens >> t;) {
            if (t == "*" || std::isdigit(static_cast<unsigned char>(t[0]))) continue;
            Move m;
            if (!FindMove(line.end, t, m)) return;
            line.game.moves.push_back(line.end.San(m));
            line.end.Apply(m);
            line.game.layouts.push_back(line.end.Layout());
        }
        if (!line.game.moves.empty()) lines_.push_back(std::move(line));
    }

    std::vector<Line> lines_;
    std::vector<double> cumulative_;  // Zipf weights 1/r
};

}  // namespace vantrel::gen
