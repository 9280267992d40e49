// The position under edit in the setup window: drawing, reading back in both
// orientations, and every kind of drop.
#include <gtest/gtest.h>

#include <string>

#include "chess/setup_board.h"

namespace vantrel::board {
namespace {

const std::string kStart(kStartLayout);
const std::string kEmpty = EmptyLayout();

// A layout with the characters at the given squares replaced: With(kStart, {{12, '0'}, {28, 'P'}}).
std::string With(std::string s, std::initializer_list<std::pair<int, char>> squares) {
    for (const auto& [square, c] : squares) s[static_cast<std::size_t>(square)] = c;
    return s;
}

// The tags and pictures of some squares, "R00/R 001/0".
std::string Squares(const SetupBoard& b, std::initializer_list<int> squares) {
    std::string out;
    for (int s : squares) out += (out.empty() ? "" : " ") + b.Tag(s) + "/" + b.Picture(s);
    return out;
}

TEST(SetupBoard, DrawingAndReadingBackInBothOrientations) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_EQ(Squares(b, {0, 4, 17, 63}), "R00/R K04/K 017/0 r63/r");
    EXPECT_EQ(b.Read(false), kStart);
    SetupBoard r;
    ASSERT_TRUE(r.Display(kStart, true));  // bottom left shows h8, e8 stands on screen square 3
    EXPECT_EQ(Squares(r, {0, 3, 63}), "r00/r k03/k R63/R");
    EXPECT_EQ(r.Read(true), kStart);
    EXPECT_EQ(r.Read(false), std::string(kStart.rbegin(), kStart.rend()));
    // A draw undoes every edit.
    b.DropOnSquare(DragSource::Square(12), 28);
    b.DropOnTrash(DragSource::Square(0));
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_EQ(b.Read(false), kStart);
    EXPECT_EQ(Squares(b, {12, 0}), "P12/P R00/R");
    // A wrong length leaves the squares as they were.
    EXPECT_FALSE(b.Display(kEmpty.substr(0, 63), false) || b.Display(kEmpty + "0", false) || b.Display("", false));
    EXPECT_EQ(b.Read(false), kStart);
    EXPECT_TRUE(b.Display(kEmpty + "  ", false));  // blanks behind are not counted
    // Every palette piece lands with its character and replaces what stood there.
    for (int p = 0; p < kPaletteSize; ++p) {
        const char c = std::string("PRNBQKprnbqk")[static_cast<std::size_t>(p)];
        SetupBoard b;
        b.Display(kStart, false);
        ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(p), 20 + p));
        ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(p), 3));  // the palette never runs out
        EXPECT_EQ(b.Read(false), With(kStart, {{20 + p, c}, {3, c}})) << p;
        EXPECT_EQ(Squares(b, {3}), std::string(1, c) + "03/" + c);
    }
    // Reversed, the square labelled e4 is screen square 63 - 28 = 35.
    r.Display(kEmpty, true);
    ASSERT_TRUE(r.DropOnSquare(DragSource::Palette(0), 35));
    EXPECT_EQ(r.Read(true), With(kEmpty, {{28, 'P'}}));
    EXPECT_EQ(r.Tag(35), "P35");
}

TEST(SetupBoard, MovesEmptyTheirSquareAndTheTrashEmptiesOnlySquares) {
    SetupBoard b;
    b.Display(kStart, false);
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(12), 28));  // e2-e4
    EXPECT_EQ(Squares(b, {12, 28}), "0/0 P28/P");
    // A piece dropped on another takes its place, no chess rule checked; a white pawn onto a
    // white pawn still empties the source.
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(6), 28));
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(8), 9));
    EXPECT_EQ(b.Read(false), With(kStart, {{12, '0'}, {6, '0'}, {28, 'N'}, {8, '0'}}));
    EXPECT_EQ(b.Tag(9), "P09");
    // Drops that change nothing: a piece on its own square, also one that came from elsewhere.
    b.Display(kStart, false);
    b.DropOnSquare(DragSource::Square(4), 4);
    b.DropOnSquare(DragSource::Square(12), 28);
    b.DropOnSquare(DragSource::Square(28), 28);
    EXPECT_EQ(Squares(b, {4, 28}), "K04/K P28/P");
    // Empty squares carry nothing: drawn empty, emptied by a move, by the trash.
    EXPECT_TRUE(b.DropOnTrash(DragSource::Square(0)));
    EXPECT_EQ(Squares(b, {0}), "0/0");
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(20), 4));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(12), 3));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(0), 1));
    // From elsewhere, or off the board; the palette goes to no trash.
    EXPECT_FALSE(b.DropOnSquare(DragSource{}, 20) || b.DropOnSquare(DragSource::Palette(0), 64));
    EXPECT_FALSE(b.DropOnTrash(DragSource::Palette(5)) || b.DropOnTrash(DragSource{}));
    EXPECT_EQ(b.Read(false), With(kStart, {{12, '0'}, {28, 'P'}, {0, '0'}}));
    // A square drawn empty goes to the trash too and gets the bare tag.
    EXPECT_TRUE(b.DropOnTrash(DragSource::Square(30)));
    EXPECT_EQ(b.Tag(30), "0");
}

}  // namespace
}  // namespace vantrel::board
