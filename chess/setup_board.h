// The position under edit in the setup window, free of any widget: the 64
// square pictures and tags, the palette of 12 pieces, the trash, and what
// each drop does. The window only turns drag-and-drop events into calls here.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "chess/layout.h"

namespace vantrel::board {

// The 13 pictures a square can show, by layout character; '0' is the empty
// square (transparent picture).
inline constexpr std::string_view kPictureChars = chess::kLayoutChars;
inline bool IsPictureChar(char c) { return c != '\0' && kPictureChars.find(c) != std::string_view::npos; }

// The palette: White in the left column, Black in the right, each from top to
// bottom pawn, rook, knight, bishop, queen, king. Index 0..11.
inline constexpr int kPaletteSize = 12;
inline constexpr std::array<std::string_view, kPaletteSize> kPaletteNames = {
    "imgWP", "imgWC", "imgWN", "imgWB", "imgWQ", "imgWK",
    "imgBP", "imgBC", "imgBN", "imgBB", "imgBQ", "imgBK"};
inline constexpr std::string_view kPaletteChars = chess::kPieceLetters;
inline char PaletteChar(int palette) { return kPaletteChars[static_cast<std::size_t>(palette)]; }

// Start and empty positions, in layout order.
inline constexpr std::string_view kStartLayout = chess::kInitialLayout;
inline std::string EmptyLayout() { return std::string(64, '0'); }

// A square's tag: its layout character and its own index in two digits.
inline std::string SquareTag(char c, int square) {
    std::string tag(1, c);
    tag += static_cast<char>('0' + square / 10);
    tag += static_cast<char>('0' + square % 10);
    return tag;
}

// Where a drag started.
struct DragSource {
    enum class Kind { Palette, Square, Other };
    Kind kind = Kind::Other;
    int index = 0;  // palette 0..11 or square 0..63

    static DragSource Palette(int i) { return {Kind::Palette, i}; }
    static DragSource Square(int k) { return {Kind::Square, k}; }
};

class SetupBoard {
public:
    // Square k stands in screen order: column k mod 8 from the left, row
    // k div 8 from the bottom.
    struct Square {
        char picture = '\0';  // one of kPictureChars, or '\0' for no picture yet
        std::string tag;      // empty until the first draw
    };

    const Square& At(int k) const { return squares_[static_cast<std::size_t>(k)]; }
    char Picture(int k) const { return At(k).picture; }
    const std::string& Tag(int k) const { return At(k).tag; }

    // Draws a layout on the squares. False, with nothing changed, when the
    // layout trimmed of blanks is not 64 characters long. Layout character i
    // goes to square i, or to square 63 - i when the board is reversed. Each
    // square that gets one of the 13 characters takes its picture and the tag
    // of that character and its own index; any other character leaves the
    // square as it was, tag included.
    bool Display(std::string_view layout, bool reversed) {
        const std::size_t first = layout.find_first_not_of(' ');
        const std::size_t last = layout.find_last_not_of(' ');
        const std::size_t trimmed = first == std::string_view::npos ? 0 : last - first + 1;
        if (trimmed != 64) return false;
        for (int i = 0; i < 64; ++i) {
            const int k = reversed ? 63 - i : i;
            const char c = layout[static_cast<std::size_t>(i)];
            if (!IsPictureChar(c)) continue;
            Square& sq = squares_[static_cast<std::size_t>(k)];
            sq.picture = c;
            sq.tag = SquareTag(c, k);
        }
        return true;
    }

    // The position in layout order: the first character of the tag of the
    // square that shows each layout position.
    std::string Read(bool reversed) const {
        std::string out;
        out.reserve(64);
        for (int i = 0; i < 64; ++i) {
            const std::string& tag = Tag(reversed ? 63 - i : i);
            if (!tag.empty()) out += tag[0];
        }
        return out;
    }

    // The picture a drag from this source carries: '0' for an emptied
    // square, '\0' for none.
    char SourcePicture(DragSource src) const {
        switch (src.kind) {
            case DragSource::Kind::Palette:
                return src.index >= 0 && src.index < kPaletteSize ? PaletteChar(src.index) : '\0';
            case DragSource::Kind::Square:
                return ValidSquare(src.index) ? Picture(src.index) : '\0';
            case DragSource::Kind::Other: break;
        }
        return '\0';
    }

    // A drop on square `target`. A palette piece replaces what stood there;
    // a piece from another square moves there and leaves its square empty; a
    // piece dropped on its own square and an empty square dropped anywhere
    // change nothing. True when the drop was taken.
    bool DropOnSquare(DragSource src, int target) {
        if (!ValidSquare(target)) return false;
        const char picture = SourcePicture(src);
        if (picture == '\0' || picture == '0') return false;
        Square& to = squares_[static_cast<std::size_t>(target)];
        if (src.kind == DragSource::Kind::Square) {
            Square& from = squares_[static_cast<std::size_t>(src.index)];
            to.picture = picture;
            if (from.tag != to.tag) {
                const char c = from.tag.empty() ? picture : from.tag[0];
                from.picture = '0';
                to.tag = SquareTag(c, target);
                from.tag = "0";
            } else {
                // The square of origin: this writes the tag it already has.
                to.tag = SquareTag(from.tag.empty() ? picture : from.tag[0], target);
            }
            return true;
        }
        if (src.kind == DragSource::Kind::Palette) {
            to.picture = picture;
            to.tag = SquareTag(PaletteChar(src.index), target);
            return true;
        }
        return false;
    }

    // A drop on the trash: a square is emptied, anything else is ignored.
    bool DropOnTrash(DragSource src) {
        if (src.kind != DragSource::Kind::Square || !ValidSquare(src.index)) return false;
        Square& from = squares_[static_cast<std::size_t>(src.index)];
        from.picture = '0';
        from.tag = "0";
        return true;
    }

private:
    static bool ValidSquare(int k) { return k >= 0 && k < 64; }
    std::array<Square, 64> squares_{};
};

}  // namespace vantrel::board
