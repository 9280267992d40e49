// Deterministic made-up games for the benchmarks, the tests and
// vantrel-gen-library: a small legal move generator, and moves written in the
// algebraic forms the import's resolver reads. Header-only, no dependencies.
//
// The resolver doesn't know about pins, so a move is written with a file or
// rank of its source whenever another piece of the same kind could reach the
// square by its way of moving, pinned or not. A move that would need both
// file and rank is never chosen.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

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

// Squares 0..63: a1, b1, ... h1, a2, ... h8. Pieces as in the layout string:
// upper case White, lower case Black, 0 for an empty square.
struct Move {
    int8_t from = 0;
    int8_t to = 0;
    char promo = 0;  // upper-case piece letter, or 0
    bool castle = false;
    bool enPassant = false;
};

class Position {
public:
    Position() { Reset(); }

    void Reset() {
        static constexpr char kBack[] = "RNBQKBNR";
        sq_.fill(0);
        for (int f = 0; f < 8; ++f) {
            sq_[f] = kBack[f];
            sq_[8 + f] = 'P';
            sq_[48 + f] = 'p';
            sq_[56 + f] = static_cast<char>(kBack[f] + ('a' - 'A'));
        }
        white_ = true;
        castling_ = 15;
        ep_ = -1;
    }

    bool WhiteToMove() const { return white_; }
    char At(int s) const { return sq_[s]; }

    // The 64-character layout, as the import board gives it.
    std::string Layout() const {
        std::string out(64, '0');
        for (int s = 0; s < 64; ++s)
            if (sq_[s]) out[s] = sq_[s];
        return out;
    }

    bool Attacked(int s, bool byWhite) const {
        const int r = s / 8, f = s % 8;
        auto is = [&](int rr, int ff, char white, char black) {
            if (rr < 0 || rr > 7 || ff < 0 || ff > 7) return false;
            return sq_[rr * 8 + ff] == (byWhite ? white : black);
        };
        // Pawns
        const int pr = byWhite ? r - 1 : r + 1;
        if (is(pr, f - 1, 'P', 'p') || is(pr, f + 1, 'P', 'p')) return true;
        // Knights and king
        static constexpr int kN[8][2] = {{1, 2}, {2, 1}, {-1, 2}, {-2, 1}, {1, -2}, {2, -1}, {-1, -2}, {-2, -1}};
        static constexpr int kK[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
        for (auto& d : kN)
            if (is(r + d[0], f + d[1], 'N', 'n')) return true;
        for (auto& d : kK)
            if (is(r + d[0], f + d[1], 'K', 'k')) return true;
        // Sliders
        for (int i = 0; i < 8; ++i) {
            const bool diagonal = i >= 4;
            int rr = r + kK[i][0], ff = f + kK[i][1];
            while (rr >= 0 && rr <= 7 && ff >= 0 && ff <= 7) {
                const char p = sq_[rr * 8 + ff];
                if (p) {
                    const char q = byWhite ? 'Q' : 'q';
                    const char other = diagonal ? (byWhite ? 'B' : 'b') : (byWhite ? 'R' : 'r');
                    if (p == q || p == other) return true;
                    break;
                }
                rr += kK[i][0];
                ff += kK[i][1];
            }
        }
        return false;
    }

    bool InCheck(bool white) const {
        const char k = white ? 'K' : 'k';
        for (int s = 0; s < 64; ++s)
            if (sq_[s] == k) return Attacked(s, !white);
        return false;
    }

    void Apply(const Move& m) {
        const char piece = sq_[m.from];
        const bool white = IsWhite(piece);
        sq_[m.to] = m.promo ? (white ? m.promo : static_cast<char>(m.promo + ('a' - 'A'))) : piece;
        sq_[m.from] = 0;
        if (m.enPassant) sq_[m.to + (white ? -8 : 8)] = 0;
        if (m.castle) {
            const int base = white ? 0 : 56;
            if (m.to == base + 6) {
                sq_[base + 5] = sq_[base + 7];
                sq_[base + 7] = 0;
            } else {
                sq_[base + 3] = sq_[base + 0];
                sq_[base + 0] = 0;
            }
        }
        ep_ = -1;
        if ((piece == 'P' || piece == 'p') && (m.to - m.from == 16 || m.from - m.to == 16))
            ep_ = (m.from + m.to) / 2;
        auto touch = [&](int s) {
            if (s == 4) castling_ &= ~3;
            if (s == 60) castling_ &= ~12;
            if (s == 7) castling_ &= ~1;
            if (s == 0) castling_ &= ~2;
            if (s == 63) castling_ &= ~4;
            if (s == 56) castling_ &= ~8;
        };
        touch(m.from);
        touch(m.to);
        white_ = !white_;
    }

    // Every legal move of the side to move.
    void LegalMoves(std::vector<Move>& out) const {
        out.clear();
        std::vector<Move> pseudo;
        pseudo.reserve(64);
        PseudoMoves(pseudo);
        for (const Move& m : pseudo) {
            Position next = *this;
            next.Apply(m);
            if (!next.InCheck(white_)) out.push_back(m);
        }
    }

    // The move as the resolver reads it, with "+" behind a check; empty for a
    // move that would need both the file and the rank of its source.
    std::string San(const Move& m) const {
        std::string s;
        const char piece = sq_[m.from];
        const char upper = static_cast<char>(IsWhite(piece) ? piece : piece - ('a' - 'A'));
        const bool capture = sq_[m.to] != 0 || m.enPassant;
        if (m.castle) {
            s = (m.to % 8 == 6) ? "O-O" : "O-O-O";
        } else if (upper == 'P') {
            if (capture) {
                s += static_cast<char>('a' + m.from % 8);
                s += 'x';
            }
            s += SquareName(m.to);
            if (m.promo) {
                s += '=';
                s += m.promo;
            }
        } else {
            s += upper;
            // Other pieces of this kind that reach the square by their way
            // of moving, pins or not.
            bool sameFile = false, sameRank = false, other = false;
            for (int o = 0; o < 64; ++o) {
                if (o == m.from || sq_[o] != piece || !Reaches(o, m.to)) continue;
                other = true;
                if (o % 8 == m.from % 8) sameFile = true;
                if (o / 8 == m.from / 8) sameRank = true;
            }
            if (other) {
                if (!sameFile)
                    s += static_cast<char>('a' + m.from % 8);
                else if (!sameRank)
                    s += static_cast<char>('1' + m.from / 8);
                else
                    return {};
            }
            if (capture) s += 'x';
            s += SquareName(m.to);
        }
        Position next = *this;
        next.Apply(m);
        if (next.InCheck(next.white_)) s += '+';
        return s;
    }

    static std::string SquareName(int s) {
        return std::string{static_cast<char>('a' + s % 8), static_cast<char>('1' + s / 8)};
    }

private:
    static bool IsWhite(char p) { return p >= 'A' && p <= 'Z'; }
    bool Own(char p) const { return p && IsWhite(p) == white_; }
    bool Enemy(char p) const { return p && IsWhite(p) != white_; }

    // Whether the piece on `from` reaches `to` by its way of moving (sliders
    // stop at the first piece); pawns aren't asked.
    bool Reaches(int from, int to) const {
        const char p = sq_[from];
        const char u = static_cast<char>(IsWhite(p) ? p : p - ('a' - 'A'));
        const int dr = to / 8 - from / 8, df = to % 8 - from % 8;
        const int ar = dr < 0 ? -dr : dr, af = df < 0 ? -df : df;
        if (u == 'N') return (ar == 1 && af == 2) || (ar == 2 && af == 1);
        if (u == 'K') return ar <= 1 && af <= 1 && (ar + af) > 0;
        const bool straight = dr == 0 || df == 0;
        const bool diagonal = ar == af;
        if ((u == 'R' && !straight) || (u == 'B' && !diagonal) || (u == 'Q' && !straight && !diagonal)) return false;
        if (ar == 0 && af == 0) return false;
        const int sr = dr > 0 ? 1 : dr < 0 ? -1 : 0, sf = df > 0 ? 1 : df < 0 ? -1 : 0;
        int r = from / 8 + sr, f = from % 8 + sf;
        while (r * 8 + f != to) {
            if (sq_[r * 8 + f]) return false;
            r += sr;
            f += sf;
        }
        return true;
    }

    void PseudoMoves(std::vector<Move>& out) const {
        static constexpr int kN[8][2] = {{1, 2}, {2, 1}, {-1, 2}, {-2, 1}, {1, -2}, {2, -1}, {-1, -2}, {-2, -1}};
        static constexpr int kK[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
        auto add = [&](int from, int to) {
            Move m;
            m.from = static_cast<int8_t>(from);
            m.to = static_cast<int8_t>(to);
            out.push_back(m);
        };
        for (int s = 0; s < 64; ++s) {
            const char p = sq_[s];
            if (!Own(p)) continue;
            const char u = static_cast<char>(IsWhite(p) ? p : p - ('a' - 'A'));
            const int r = s / 8, f = s % 8;
            if (u == 'P') {
                const int dir = white_ ? 1 : -1;
                const int home = white_ ? 1 : 6, last = white_ ? 7 : 0;
                auto pawnTo = [&](int to, bool ep) {
                    if (to / 8 == last) {
                        for (char q : {'Q', 'N', 'R', 'B'}) {
                            Move m;
                            m.from = static_cast<int8_t>(s);
                            m.to = static_cast<int8_t>(to);
                            m.promo = q;
                            out.push_back(m);
                        }
                    } else {
                        Move m;
                        m.from = static_cast<int8_t>(s);
                        m.to = static_cast<int8_t>(to);
                        m.enPassant = ep;
                        out.push_back(m);
                    }
                };
                const int one = s + 8 * dir;
                if (one >= 0 && one < 64 && !sq_[one]) {
                    pawnTo(one, false);
                    const int two = one + 8 * dir;
                    if (r == home && !sq_[two]) pawnTo(two, false);
                }
                for (int df : {-1, 1}) {
                    const int ff = f + df, rr = r + dir;
                    if (ff < 0 || ff > 7 || rr < 0 || rr > 7) continue;
                    const int to = rr * 8 + ff;
                    if (Enemy(sq_[to]))
                        pawnTo(to, false);
                    else if (to == ep_)
                        pawnTo(to, true);
                }
            } else if (u == 'N' || u == 'K') {
                const auto& d = u == 'N' ? kN : kK;
                for (auto& v : d) {
                    const int rr = r + v[0], ff = f + v[1];
                    if (rr < 0 || rr > 7 || ff < 0 || ff > 7) continue;
                    if (!Own(sq_[rr * 8 + ff])) add(s, rr * 8 + ff);
                }
            } else {
                const int first = u == 'B' ? 4 : 0, end = u == 'R' ? 4 : 8;
                for (int i = first; i < end; ++i) {
                    int rr = r + kK[i][0], ff = f + kK[i][1];
                    while (rr >= 0 && rr <= 7 && ff >= 0 && ff <= 7) {
                        const char q = sq_[rr * 8 + ff];
                        if (Own(q)) break;
                        add(s, rr * 8 + ff);
                        if (q) break;
                        rr += kK[i][0];
                        ff += kK[i][1];
                    }
                }
            }
        }
        // Castling: rights kept, squares between empty, the king not in,
        // through or into check.
        const int base = white_ ? 0 : 56;
        const uint8_t kingSide = white_ ? 1 : 4, queenSide = white_ ? 2 : 8;
        const char king = white_ ? 'K' : 'k', rook = white_ ? 'R' : 'r';
        if (sq_[base + 4] == king && !Attacked(base + 4, !white_)) {
            if ((castling_ & kingSide) && sq_[base + 7] == rook && !sq_[base + 5] && !sq_[base + 6] &&
                !Attacked(base + 5, !white_) && !Attacked(base + 6, !white_)) {
                Move m;
                m.from = static_cast<int8_t>(base + 4);
                m.to = static_cast<int8_t>(base + 6);
                m.castle = true;
                out.push_back(m);
            }
            if ((castling_ & queenSide) && sq_[base + 0] == rook && !sq_[base + 1] && !sq_[base + 2] &&
                !sq_[base + 3] && !Attacked(base + 3, !white_) && !Attacked(base + 2, !white_)) {
                Move m;
                m.from = static_cast<int8_t>(base + 4);
                m.to = static_cast<int8_t>(base + 2);
                m.castle = true;
                out.push_back(m);
            }
        }
    }

    std::array<char, 64> sq_{};
    bool white_ = true;
    uint8_t castling_ = 15;
    int ep_ = -1;
};

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

// Plays `plies` plies (fewer if the game ends in mate or stalemate). Early
// moves come from the few best-looking ones, so that games share openings;
// later moves are freer.
inline Game PlayGame(Rng& rng, int plies) {
    Game game;
    Position pos;
    std::vector<Move> legal;
    std::vector<std::pair<int, size_t>> ranked;
    for (int ply = 1; ply <= plies; ++ply) {
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
