#include "chess/legal.h"

#include "chess/layout.h"

namespace vantrel::chess {
namespace {

constexpr int kKnight[8][2] = {{1, 2}, {2, 1}, {-1, 2}, {-2, 1}, {1, -2}, {2, -1}, {-1, -2}, {-2, -1}};
// The first four are straight, the last four diagonal.
constexpr int kKing[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};

bool OnBoard(int rank, int file) { return rank >= 0 && rank <= 7 && file >= 0 && file <= 7; }
char Upper(char p) { return p >= 'a' && p <= 'z' ? static_cast<char>(p - ('a' - 'A')) : p; }

}  // namespace

void Position::Reset() {
    for (size_t s = 0; s < 64; ++s) sq_[s] = kInitialLayout[s] == '0' ? 0 : kInitialLayout[s];
    white_ = true;
    castling_ = 15;
    ep_ = -1;
}

bool Position::SetLayout(std::string_view layout, bool whiteToMove) {
    if (layout.size() != 64) return false;
    for (size_t s = 0; s < 64; ++s) {
        const char c = layout[s];
        if (c != '0' && !IsPieceLetter(c)) return false;
        sq_[s] = c == '0' ? 0 : c;
    }
    white_ = whiteToMove;
    castling_ = 0;
    ep_ = -1;
    return true;
}

std::string Position::Layout() const {
    std::string out(64, '0');
    for (size_t s = 0; s < 64; ++s)
        if (sq_[s]) out[s] = sq_[s];
    return out;
}

bool Position::Attacked(int s, bool byWhite) const {
    const int r = s / 8, f = s % 8;
    auto is = [&](int rr, int ff, char white) {
        if (!OnBoard(rr, ff)) return false;
        const char p = sq_[static_cast<size_t>(rr * 8 + ff)];
        return p == (byWhite ? white : static_cast<char>(white + ('a' - 'A')));
    };
    const int pr = byWhite ? r - 1 : r + 1;
    if (is(pr, f - 1, 'P') || is(pr, f + 1, 'P')) return true;
    for (const auto& d : kKnight)
        if (is(r + d[0], f + d[1], 'N')) return true;
    for (const auto& d : kKing)
        if (is(r + d[0], f + d[1], 'K')) return true;
    for (int i = 0; i < 8; ++i) {
        const char slider = i >= 4 ? 'B' : 'R';
        for (int rr = r + kKing[i][0], ff = f + kKing[i][1]; OnBoard(rr, ff); rr += kKing[i][0], ff += kKing[i][1]) {
            if (!sq_[static_cast<size_t>(rr * 8 + ff)]) continue;
            if (is(rr, ff, 'Q') || is(rr, ff, slider)) return true;
            break;
        }
    }
    return false;
}

bool Position::InCheck(bool white) const {
    const char k = white ? 'K' : 'k';
    for (int s = 0; s < 64; ++s)
        if (sq_[static_cast<size_t>(s)] == k) return Attacked(s, !white);
    return false;
}

void Position::Apply(const Move& m) {
    const char piece = sq_[static_cast<size_t>(m.from)];
    const bool white = IsWhite(piece);
    sq_[static_cast<size_t>(m.to)] =
        m.promo ? (white ? m.promo : static_cast<char>(m.promo + ('a' - 'A'))) : piece;
    sq_[static_cast<size_t>(m.from)] = 0;
    if (m.enPassant) sq_[static_cast<size_t>(m.to + (white ? -8 : 8))] = 0;
    if (m.castle) {
        const int base = white ? 0 : 56;
        const bool kingSide = m.to == base + 6;
        const int rookFrom = kingSide ? base + 7 : base, rookTo = kingSide ? base + 5 : base + 3;
        sq_[static_cast<size_t>(rookTo)] = sq_[static_cast<size_t>(rookFrom)];
        sq_[static_cast<size_t>(rookFrom)] = 0;
    }
    ep_ = -1;
    if (Upper(piece) == 'P' && (m.to - m.from == 16 || m.from - m.to == 16)) ep_ = (m.from + m.to) / 2;
    for (const int s : {static_cast<int>(m.from), static_cast<int>(m.to)}) {
        if (s == 4) castling_ &= ~3;
        if (s == 60) castling_ &= ~12;
        if (s == 7) castling_ &= ~1;
        if (s == 0) castling_ &= ~2;
        if (s == 63) castling_ &= ~4;
        if (s == 56) castling_ &= ~8;
    }
    white_ = !white_;
}

void Position::LegalMoves(std::vector<Move>& out) const {
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

bool Position::Reaches(int from, int to) const {
    const char u = Upper(sq_[static_cast<size_t>(from)]);
    const int dr = to / 8 - from / 8, df = to % 8 - from % 8;
    const int ar = dr < 0 ? -dr : dr, af = df < 0 ? -df : df;
    if (ar == 0 && af == 0) return false;
    if (u == 'N') return (ar == 1 && af == 2) || (ar == 2 && af == 1);
    if (u == 'K') return ar <= 1 && af <= 1;
    const bool straight = dr == 0 || df == 0;
    const bool diagonal = ar == af;
    if ((u == 'R' && !straight) || (u == 'B' && !diagonal) || (u == 'Q' && !straight && !diagonal)) return false;
    if (u != 'R' && u != 'B' && u != 'Q') return false;
    const int sr = dr > 0 ? 1 : dr < 0 ? -1 : 0, sf = df > 0 ? 1 : df < 0 ? -1 : 0;
    for (int r = from / 8 + sr, f = from % 8 + sf; r * 8 + f != to; r += sr, f += sf)
        if (sq_[static_cast<size_t>(r * 8 + f)]) return false;
    return true;
}

std::string Position::San(const Move& m) const {
    std::string s;
    const char piece = sq_[static_cast<size_t>(m.from)];
    const char upper = Upper(piece);
    const bool capture = sq_[static_cast<size_t>(m.to)] != 0 || m.enPassant;
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
        bool sameFile = false, sameRank = false, other = false;
        for (int o = 0; o < 64; ++o) {
            if (o == m.from || sq_[static_cast<size_t>(o)] != piece || !Reaches(o, m.to)) continue;
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

std::string Position::SquareName(int s) {
    return std::string{static_cast<char>('a' + s % 8), static_cast<char>('1' + s / 8)};
}

void Position::PseudoMoves(std::vector<Move>& out) const {
    auto add = [&](int from, int to, char promo = 0, bool ep = false) {
        Move m;
        m.from = static_cast<int8_t>(from);
        m.to = static_cast<int8_t>(to);
        m.promo = promo;
        m.enPassant = ep;
        out.push_back(m);
    };
    for (int s = 0; s < 64; ++s) {
        const char p = sq_[static_cast<size_t>(s)];
        if (!Own(p)) continue;
        const char u = Upper(p);
        const int r = s / 8, f = s % 8;
        if (u == 'P') {
            const int dir = white_ ? 1 : -1;
            const int home = white_ ? 1 : 6, last = white_ ? 7 : 0;
            auto pawnTo = [&](int to, bool ep) {
                if (to / 8 == last) {
                    for (char q : {'Q', 'N', 'R', 'B'}) add(s, to, q);
                } else {
                    add(s, to, 0, ep);
                }
            };
            const int one = s + 8 * dir;
            if (one >= 0 && one < 64 && !sq_[static_cast<size_t>(one)]) {
                pawnTo(one, false);
                const int two = one + 8 * dir;
                if (r == home && !sq_[static_cast<size_t>(two)]) pawnTo(two, false);
            }
            for (int df : {-1, 1}) {
                const int ff = f + df, rr = r + dir;
                if (!OnBoard(rr, ff)) continue;
                const int to = rr * 8 + ff;
                if (Enemy(sq_[static_cast<size_t>(to)]))
                    pawnTo(to, false);
                else if (to == ep_)
                    pawnTo(to, true);
            }
        } else if (u == 'N' || u == 'K') {
            for (const auto& v : u == 'N' ? kKnight : kKing) {
                const int rr = r + v[0], ff = f + v[1];
                if (OnBoard(rr, ff) && !Own(sq_[static_cast<size_t>(rr * 8 + ff)])) add(s, rr * 8 + ff);
            }
        } else {
            const int first = u == 'B' ? 4 : 0, end = u == 'R' ? 4 : 8;
            for (int i = first; i < end; ++i) {
                for (int rr = r + kKing[i][0], ff = f + kKing[i][1]; OnBoard(rr, ff);
                     rr += kKing[i][0], ff += kKing[i][1]) {
                    const char q = sq_[static_cast<size_t>(rr * 8 + ff)];
                    if (Own(q)) break;
                    add(s, rr * 8 + ff);
                    if (q) break;
                }
            }
        }
    }
    // Castling: rights kept, squares between empty, the king not in, through
    // or into check.
    const int base = white_ ? 0 : 56;
    const uint8_t kingSide = white_ ? 1 : 4, queenSide = white_ ? 2 : 8;
    const char king = white_ ? 'K' : 'k', rook = white_ ? 'R' : 'r';
    auto empty = [&](int s) { return !sq_[static_cast<size_t>(s)]; };
    auto safe = [&](int s) { return !Attacked(s, !white_); };
    if (At(base + 4) != king || !safe(base + 4)) return;
    if ((castling_ & kingSide) && At(base + 7) == rook && empty(base + 5) && empty(base + 6) && safe(base + 5) &&
        safe(base + 6)) {
        add(base + 4, base + 6);
        out.back().castle = true;
    }
    if ((castling_ & queenSide) && At(base) == rook && empty(base + 1) && empty(base + 2) && empty(base + 3) &&
        safe(base + 3) && safe(base + 2)) {
        add(base + 4, base + 2);
        out.back().castle = true;
    }
}

bool LayoutFromFen(std::string_view fen, std::string& layout, std::string& error) {
    const size_t blank = fen.find_first_of(" \t");
    const std::string_view placement = fen.substr(0, blank);
    layout.assign(64, '0');
    int rank = 7, file = 0;
    for (const char c : placement) {
        if (c == '/') {
            if (file != 8) break;
            if (--rank < 0) {
                error = "more than 8 ranks";
                return false;
            }
            file = 0;
        } else if (c >= '1' && c <= '8') {
            file += c - '0';
        } else if (IsPieceLetter(c)) {
            if (file < 8) layout[static_cast<size_t>(rank * 8 + file)] = c;
            ++file;
        } else {
            error = std::string("'") + c + "' is neither a piece, a digit nor '/'";
            return false;
        }
        if (file > 8) break;
    }
    if (file != 8) {
        error = "rank " + std::to_string(rank + 1) + " doesn't hold 8 squares";
        return false;
    }
    if (rank != 0) {
        error = "fewer than 8 ranks";
        return false;
    }
    return true;
}

}  // namespace vantrel::chess
