#include "chess/replay.h"

#include <array>
#include <bit>
#include <cstdint>
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

// A character's place in kColours or kPieces, or -1.
constexpr std::array<int8_t, 256> IndexIn(std::string_view letters) {
    std::array<int8_t, 256> index{};
    index.fill(-1);
    for (size_t k = 0; k < letters.size(); ++k) index[static_cast<unsigned char>(letters[k])] = static_cast<int8_t>(k);
    return index;
}
constexpr std::array<int8_t, 256> kColourIndex = IndexIn(kColours);
constexpr std::array<int8_t, 256> kPieceIndex = IndexIn(kPieces);

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
    for (int rank = 0; rank < 8; ++rank) {
        // A rank's 16 bytes lie together, two to a square: the bits that
        // differ, eight bytes at a time, lead straight to the squares that
        // changed.
        const size_t first = static_cast<size_t>((rank + 1) * 9 + 1) * 2;
        for (size_t half = 0; half < 16; half += 8) {
            uint64_t now, was;
            std::memcpy(&now, after + first + half, 8);
            std::memcpy(&was, before_ + first + half, 8);
            for (uint64_t differ = now ^ was; differ != 0;) {
                // The byte of the lowest bit that differs, as the bytes lie in
                // memory, whatever the machine's byte order.
                const size_t byte = std::endian::native == std::endian::little
                                        ? static_cast<size_t>(__builtin_ctzll(differ)) / 8
                                        : static_cast<size_t>(__builtin_clzll(differ)) / 8;
                const size_t square = (half + byte) / 2;  // 0..7 within the rank
                const size_t at = first + square * 2;
                const int colour = kColourIndex[static_cast<unsigned char>(after[at])];
                const int piece = kPieceIndex[static_cast<unsigned char>(after[at + 1])];
                if (count == kMaxChanges || colour < 0 || piece < 0) return kNoStep;
                const auto i = static_cast<Step>(rank * 8 + static_cast<int>(square));
                const Step change = i | static_cast<Step>(colour) << 6 | static_cast<Step>(piece) << 8;
                step |= change << (count * kChangeBits);
                ++count;
                // Both bytes of that square are done with.
                const size_t pair = (square * 2 - half) * 8;
                const size_t shift = std::endian::native == std::endian::little ? pair : 48 - pair;
                const uint64_t mask = uint64_t{0xFFFF} << shift;
                differ &= ~mask;
            }
        }
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
