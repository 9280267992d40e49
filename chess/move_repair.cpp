#include "chess/move_repair.h"

#include <vector>

#include "chess/legal.h"
#include "chess/resolver.h"

namespace vantrel::chess {
namespace {

bool IsMark(char c) { return c == '+' || c == '#' || c == '!' || c == '?'; }
bool IsFileChar(char c) { return c >= 'a' && c <= 'h'; }
bool IsRankChar(char c) { return c >= '1' && c <= '8'; }
int Square(int rank, int file) { return (rank - 1) * 8 + file - 1; }  // ranks and files 1..8

// The resolver's answer for a spelling on a copy of the board; with `from`
// and `to` given, a success counts only if it moved the piece from there.
int16_t TryOnCopy(const ImportBoard& board, std::string move, int16_t ply, int from = -1, int to = -1) {
    ImportBoard copy = board;
    const ResolveResult rc = ResolveMove(copy, move, ply);
    if (rc != kResolved || from < 0) return rc;
    const bool moved = copy.IsEmpty(from / 8 + 1, from % 8 + 1) && !copy.IsEmpty(to / 8 + 1, to % 8 + 1);
    return moved ? kResolved : kIllegal;
}

// A candidate of an ambiguous move: a piece that reaches the target by its way
// of moving, within the hints the move gives.
struct Candidate {
    int from;
    int to;
};

// The one candidate that doesn't leave its own king in check, and a spelling
// the resolver takes for it; empty if there is no such single candidate.
std::string Disambiguate(const ImportBoard& board, const std::string& move, int16_t ply) {
    const bool white = ply % 2 == 1;
    const size_t n = move.size();
    if (n < 2) return {};
    std::string piece;
    int targetFile = 0, targetRank = 0, hintFile = 0, hintRank = 0;
    bool deducedRank = false, capture = false;
    if (std::string("RNBQK").find(move[0]) != std::string::npos) {
        if (n < 3 || n > 5 || !IsFileChar(move[n - 2]) || !IsRankChar(move[n - 1])) return {};
        piece = std::string(1, move[0]);
        targetFile = move[n - 2] - 'a' + 1;
        targetRank = move[n - 1] - '0';
        capture = move.find_first_of("xX") != std::string::npos;
        if (n >= 4 && move[1] != 'x' && move[1] != 'X') {
            if (IsRankChar(move[1]))
                hintRank = move[1] - '0';
            else if (IsFileChar(move[1]))
                hintFile = move[1] - 'a' + 1;
            else
                return {};
        }
    } else if (IsFileChar(move[0]) && (n == 2 || (n == 3 && (move[1] == 'x' || move[1] == 'X'))) &&
               IsFileChar(move[n - 1])) {
        // "ed" and "exd": the target's rank follows from each pawn.
        piece = "p";
        hintFile = move[0] - 'a' + 1;
        targetFile = move[n - 1] - 'a' + 1;
        deducedRank = capture = true;
    } else {
        return {};
    }

    Position position;
    if (!position.SetLayout(board.BoardToLayout(), white)) return {};
    const char code[2] = {white ? 'w' : 'b', static_cast<char>(piece == "p" ? 'p' : piece[0] - 'A' + 'a')};
    std::vector<Candidate> legal;
    ReachMap reach{};
    for (int rank = 1; rank <= 8; ++rank) {
        for (int file = 1; file <= 8; ++file) {
            if (board.Colour(rank, file) != code[0] || board.Piece(rank, file) != code[1]) continue;
            if ((hintFile && file != hintFile) || (hintRank && rank != hintRank)) continue;
            const int tr = deducedRank ? rank + (white ? 1 : -1) : targetRank;
            if (tr < 1 || tr > 8) continue;
            MarkReach(board, reach, piece, static_cast<int16_t>(rank), static_cast<int16_t>(file), white);
            if (!reach.Marked(tr, targetFile)) continue;
            Position after = position;
            Move m;
            m.from = static_cast<int8_t>(Square(rank, file));
            m.to = static_cast<int8_t>(Square(tr, targetFile));
            after.Apply(m);
            if (!after.InCheck(white)) legal.push_back({m.from, m.to});
        }
    }
    if (legal.size() != 1) return {};

    const Candidate c = legal.front();
    const std::string target = Position::SquareName(c.to);
    const std::string x = capture ? "x" : "";
    std::vector<std::string> spellings;
    if (piece == "p") {
        spellings.push_back(std::string(1, move[0]) + "x" + target);
    } else {
        spellings.push_back(piece + static_cast<char>('a' + c.from % 8) + x + target);
        spellings.push_back(piece + static_cast<char>('1' + c.from / 8) + x + target);
    }
    for (const std::string& s : spellings)
        if (TryOnCopy(board, s, ply, c.from, c.to) == kResolved) return s;
    return {};
}

}  // namespace

MoveRepair RepairMove(const ImportBoard& board, const std::string& move, int16_t ply, int16_t result) {
    MoveRepair out;
    out.result = result;
    std::string mended = move;
    while (!mended.empty() && IsMark(mended.back())) mended.pop_back();
    if (mended != move) {
        out.result = TryOnCopy(board, mended, ply);
        if (out.result == kResolved) {
            out.fixed = true;
            out.move = mended;
            return out;
        }
    }
    if (out.result == kAmbiguous) {
        out.move = Disambiguate(board, mended, ply);
        out.fixed = !out.move.empty();
    }
    return out;
}

}  // namespace vantrel::chess
