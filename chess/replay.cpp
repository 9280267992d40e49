#include "chess/replay.h"

#include <array>
#include <cstring>
#include <string_view>

namespace vantrel::chess {

namespace {

// Up to four squares change: castling moves two pieces, an en passant
// capture takes a third square. Each change is 11 bits: the square (6), the
// colour (2) and the piece (3); then the count (3 bits) and the file of a
// pawn's double step (4 bits, 0 for none). The top bit tells a Step from
// kNoStep.
constexpr int kMaxChanges = 4;
constexpr int kChangeBits = 11;
constexpr int kCountShift = kMaxChanges * kChangeBits;
constexpr int kFileShift = kCountShift + 3;
constexpr Step kValid = Step{1} << 63;

constexpr std::string_view kColours = "wbn";
constexpr std::string_view kPieces = "pnbrqko";

// A change's code as the board keeps it: colour, piece and layout character,
// by the change's colour (2 bits) and piece (3 bits).
struct Code {
    char colour, piece, shown;
};
constexpr std::array<Code, 32> kCodes = [] {
    std::array<Code, 32> codes{};
    for (size_t c = 0; c < kColours.size(); ++c)
        for (size_t p = 0; p < kPieces.size(); ++p) {
            const char colour = kColours[c], piece = kPieces[p];
            const char shown = colour == 'n' && piece == 'o' ? '0'
                               : colour == 'w'               ? static_cast<char>(piece - 'a' + 'A')
                                                             : piece;
            codes[c | p << 2] = {colour, piece, shown};
        }
    return codes;
}();

}  // namespace

void StepRecorder::Before(const ImportBoard& board) { std::memcpy(before_, board.Raw(), sizeof before_); }

Step StepRecorder::After(const ImportBoard& board) const {
    Step step = kValid;
    int count = 0;
    const char* after = board.Raw();
    for (int i = 0; i < 64; ++i) {
        const size_t at = static_cast<size_t>((i / 8 + 1) * 9 + i % 8 + 1) * 2;
        // A rank's 16 bytes lie together: one that didn't change is passed
        // over whole.
        if (i % 8 == 0 && std::memcmp(after + at, before_ + at, 16) == 0) {
            i += 7;
            continue;
        }
        if (after[at] == before_[at] && after[at + 1] == before_[at + 1]) continue;
        const size_t c = kColours.find(after[at]);
        const size_t p = kPieces.find(after[at + 1]);
        if (count == kMaxChanges || c == std::string_view::npos || p == std::string_view::npos) return kNoStep;
        const Step change = static_cast<Step>(i) | static_cast<Step>(c) << 6 | static_cast<Step>(p) << 8;
        step |= change << (count * kChangeBits);
        ++count;
    }
    step |= static_cast<Step>(count) << kCountShift;
    // A record that is active and not yet aged after the call was made by it.
    const EnPassantRecord& ep = board.EnPassant;
    if (ep.Active && !ep.Aged) {
        if (ep.PawnFile < 1 || ep.PawnFile > 8) return kNoStep;
        step |= static_cast<Step>(ep.PawnFile) << kFileShift;
    }
    return step;
}

void Replay(ImportBoard& board, Step step, int16_t ply) {
    const int count = static_cast<int>(step >> kCountShift & 7);
    for (int k = 0; k < count; ++k) {
        const Step change = step >> (k * kChangeBits);
        const Code& code = kCodes[change >> 6 & 31];
        board.PutAt(static_cast<int>(change & 63), code.colour, code.piece, code.shown);
    }
    ReplayEnPassant(board, step, ply);
}

void ReplayEnPassant(ImportBoard& board, Step step, int16_t ply) {
    board.EnPassant.Age();
    const auto file = static_cast<int16_t>(step >> kFileShift & 15);
    if (file != 0) board.EnPassant.DoubleStep((ply % 2) != 0, file);
}

void ReplayEnPassant(ImportBoard& board, const Step* steps, int16_t from, int16_t to) {
    int16_t last = to;
    while (last > from && (steps[last] >> kFileShift & 15) == 0) --last;
    int ages = to - from;
    if (last > from) {
        // Its own ageing comes before the double step, which sets every field.
        board.EnPassant.DoubleStep((last % 2) != 0, static_cast<int16_t>(steps[last] >> kFileShift & 15));
        ages = to - last;
    }
    // Two ageings end any record; more change nothing.
    for (int k = 0; k < ages && k < 2; ++k) board.EnPassant.Age();
}

}  // namespace vantrel::chess
