// The position under edit in the setup window: drawing, reading back in both
// orientations, and every kind of drop.
#include <gtest/gtest.h>

#include <string>

#include "board/setup_board.h"

namespace vantrel::board {
namespace {

const std::string kStart(kStartLayout);
const std::string kEmpty = EmptyLayout();

// A layout with the characters at the given squares replaced: With(kStart, {{12, '0'}, {28, 'P'}}).
std::string With(std::string s, std::initializer_list<std::pair<int, char>> squares) {
    for (const auto& [square, c] : squares) s[static_cast<std::size_t>(square)] = c;
    return s;
}

SetupBoard Drawn(const std::string& layout, bool reversed = false) {
    SetupBoard b;
    EXPECT_TRUE(b.Display(layout, reversed));
    return b;
}

TEST(SetupBoard, TagsCarryTheCharacterAndTheSquareIndexInBothOrientations) {
    SetupBoard b = Drawn(kStart);
    EXPECT_EQ(b.Tag(0) + b.Tag(4) + b.Tag(17) + b.Tag(63), "R00K04017r63");
    EXPECT_EQ(b.Picture(17), '0');
    EXPECT_EQ(b.Read(false), kStart);
    SetupBoard r = Drawn(kStart, true);
    EXPECT_EQ(r.Picture(0), 'r');   // bottom left shows h8
    EXPECT_EQ(r.Tag(3), "k03");     // e8 stands on screen square 3
    EXPECT_EQ(r.Picture(63), 'R');  // top right shows a1
    EXPECT_EQ(r.Read(true), kStart);
    EXPECT_EQ(r.Read(false), std::string(kStart.rbegin(), kStart.rend()));
    // A draw undoes every edit.
    b.DropOnSquare(DragSource::Square(12), 28);
    b.DropOnTrash(DragSource::Square(0));
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_EQ(b.Read(false), kStart);
    EXPECT_EQ(b.Tag(12) + b.Tag(0), "P12R00");
}

TEST(SetupBoard, AWrongLengthOrAnUnknownCharacterLeavesSquaresAsTheyWere) {
    SetupBoard b = Drawn(kStart);
    for (const std::string& bad : {kEmpty.substr(0, 63), kEmpty + "0", kEmpty.substr(0, 60) + "    ", std::string()})
        EXPECT_FALSE(b.Display(bad, false)) << '"' << bad << '"';
    EXPECT_EQ(b.Read(false), kStart);
    EXPECT_TRUE(b.Display("  " + kEmpty + " ", false)) << "blanks around 64 characters are not counted";
    ASSERT_TRUE(b.Display(kStart, false));
    ASSERT_TRUE(b.Display(With(kEmpty, {{0, 'x'}}), false));
    EXPECT_EQ(b.Tag(0) + b.Tag(1), "R00001");
    EXPECT_EQ(b.Read(false), With(kEmpty, {{0, 'R'}}));
    // Before any draw such a square has no tag and adds nothing to the result.
    EXPECT_EQ(Drawn(With(kEmpty, {{5, 'x'}})).Read(false).size(), 63u);
}

TEST(SetupBoard, EveryPalettePieceLandsWithItsCharacterAndReplacesWhatStoodThere) {
    const std::string expected = "PRNBQKprnbqk";
    EXPECT_EQ(std::string(kPaletteNames[1]) + std::string(kPaletteNames[7]), "imgWCimgBC");
    for (int p = 0; p < kPaletteSize; ++p) {
        const char c = expected[static_cast<std::size_t>(p)];
        SetupBoard b = Drawn(kStart);
        ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(p), 20 + p));
        ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(p), 3));  // the palette never runs out
        EXPECT_EQ(b.Read(false), With(kStart, {{20 + p, c}, {3, c}})) << p;
        EXPECT_EQ(b.Picture(20 + p), c);
        EXPECT_EQ(b.Tag(3), std::string(1, c) + "03");
    }
    // Reversed, the square labelled e4 is screen square 63 - 28 = 35.
    SetupBoard r = Drawn(kEmpty, true);
    ASSERT_TRUE(r.DropOnSquare(DragSource::Palette(0), 35));
    EXPECT_EQ(r.Read(true), With(kEmpty, {{28, 'P'}}));
    EXPECT_EQ(r.Tag(35), "P35");
}

TEST(SetupBoard, MovesEmptyTheirSquareAndTheTrashEmptiesOnlySquares) {
    SetupBoard b = Drawn(kStart);
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(12), 28));  // e2-e4
    EXPECT_EQ(b.Tag(12) + b.Picture(12) + b.Tag(28), "00P28");
    // A piece dropped on another takes its place, no chess rule checked; a white pawn onto a
    // white pawn still empties the source.
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(6), 28));
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(8), 9));
    EXPECT_EQ(b.Tag(9), "P09");
    EXPECT_EQ(b.Read(false), With(kStart, {{12, '0'}, {6, '0'}, {28, 'N'}, {8, '0'}}));

    // Drops that change nothing: a piece on its own square, also one that came from elsewhere.
    b = Drawn(kStart);
    b.DropOnSquare(DragSource::Square(4), 4);
    EXPECT_EQ(b.Tag(4) + b.Picture(4), "K04K");
    b.DropOnSquare(DragSource::Square(12), 28);
    b.DropOnSquare(DragSource::Square(28), 28);
    EXPECT_EQ(b.Tag(28), "P28");
    // Empty squares carry nothing: drawn empty, emptied by a move, by the trash.
    EXPECT_TRUE(b.DropOnTrash(DragSource::Square(0)));
    EXPECT_EQ(b.Tag(0) + b.Picture(0), "00");
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(20), 4));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(12), 3));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(0), 1));
    // From elsewhere, or off the board; the palette goes to no trash.
    EXPECT_FALSE(b.DropOnSquare(DragSource{}, 20));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Palette(0), 64));
    EXPECT_FALSE(b.DropOnTrash(DragSource::Palette(5)));
    EXPECT_FALSE(b.DropOnTrash(DragSource{}));
    EXPECT_EQ(b.Read(false), With(kStart, {{12, '0'}, {28, 'P'}, {0, '0'}}));
    EXPECT_EQ(b.Tag(1), "N01");
    // A square drawn empty goes to the trash too and gets the bare tag.
    EXPECT_TRUE(b.DropOnTrash(DragSource::Square(30)));
    EXPECT_EQ(b.Tag(30), "0");
}

}  // namespace
}  // namespace vantrel::board
