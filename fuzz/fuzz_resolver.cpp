// Any run of tokens played through the move resolver keeps the board a
// board: 64 layout characters, no piece made out of nothing, and every
// refused token leaves the squares as they were.
//
// The input is cut at blanks into tokens. Each token is played at the
// current ply; the ply moves on after a success, as in an import, and a
// failed token is followed by the next one at the same ply, as from the
// repair dialog. "--" passes the ply on, "|" starts a new game.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "chess/board.h"
#include "chess/resolver.h"

namespace {

using namespace vantrel::chess;

constexpr std::string_view kLayoutChars = "PNBRQKpnbrqk0";
constexpr int kPliesPerGame = 200;

bool IsBlank(uint8_t c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == 0; }

int Occupied(const std::string& layout) {
    int n = 0;
    for (char c : layout) n += c != '0';
    return n;
}

void CheckBoard(const ImportBoard& board, const std::string& layout) {
    if (layout.size() != 64) std::abort();
    for (char c : layout)
        if (kLayoutChars.find(c) == std::string_view::npos) std::abort();
    for (int rank = 1; rank <= 8; ++rank)
        for (int file = 1; file <= 8; ++file)
            if (CodeToLayoutChar(board.Code(rank, file)) != layout[(rank - 1) * 8 + file - 1]) std::abort();
}

// The helpers must stay inside the board whatever squares and counts they get.
void ProbeHelpers(const ImportBoard& board, const std::string& token) {
    auto at = [&](size_t i) { return i < token.size() ? static_cast<int8_t>(token[i]) : int8_t{0}; };
    std::string piece = token.substr(0, 1);
    int16_t rank = static_cast<int16_t>(at(1) % 12);
    int16_t file = static_cast<int16_t>(at(2) % 12);
    const int16_t count = FindPiece(board, piece, rank, file, at(3) & 1, static_cast<int16_t>(at(4)));
    if (count < 0 || count > 64) std::abort();
    ReachMap reach;
    MarkReach(board, reach, piece, rank, file, at(3) & 2);
    for (int r = 0; r <= 8; ++r)
        for (int f = 0; f <= 8; ++f) {
            const char c = reach.squares[r][f];
            if (c != ' ' && c != 'x') std::abort();
            if (c == 'x' && (r == 0 || f == 0)) std::abort();
        }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ImportBoard board;
    int ply = 1;
    std::string layout = board.BoardToLayout();
    CheckBoard(board, layout);

    size_t i = 0;
    while (i < size) {
        while (i < size && IsBlank(data[i])) ++i;
        const size_t start = i;
        while (i < size && !IsBlank(data[i])) ++i;
        if (i == start) break;
        const std::string token(reinterpret_cast<const char*>(data + start), i - start);

        if (token == "|" || ply > kPliesPerGame) {
            board.ResetImportBoard();
            ply = 1;
            layout = board.BoardToLayout();
            if (token == "|") continue;
        }
        if (token == "--") {
            ++ply;
            continue;
        }

        std::string move = token;
        const int16_t result = ResolveMove(board, move, static_cast<int16_t>(ply));
        if (result < 0 || result > 3) std::abort();
        const std::string after = board.BoardToLayout();
        CheckBoard(board, after);

        if (move != token && move != "o-o" && move != "o-o-o") std::abort();
        if (result != kResolved) {
            if (after != layout) std::abort();
        } else {
            // A move empties its source and never takes more than one piece.
            const int taken = Occupied(layout) - Occupied(after);
            if (after == layout || taken < 0 || taken > 1) std::abort();
            ++ply;
        }
        layout = after;
        ProbeHelpers(board, token);
    }
    return 0;
}
