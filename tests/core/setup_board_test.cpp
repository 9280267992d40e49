// The position under edit in the setup window: drawing, reading back in both
// orientations, and every kind of drop.
#include <gtest/gtest.h>

#include <string>

#include "board/setup_board.h"

namespace vantrel::board {
namespace {

const std::string kStart(kStartLayout);

std::string Layout(std::string s, int square, char c) {
    s.replace(static_cast<std::size_t>(square), 1, 1, c);
    return s;
}

TEST(SetupBoardDisplay, TagsCarryTheCharacterAndTheSquareIndex) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_EQ(b.Tag(0), "R00");
    EXPECT_EQ(b.Tag(4), "K04");
    EXPECT_EQ(b.Tag(17), "017");
    EXPECT_EQ(b.Tag(63), "r63");
    EXPECT_EQ(b.Picture(0), 'R');
    EXPECT_EQ(b.Picture(17), '0');
    EXPECT_EQ(b.Read(false), kStart);
}

TEST(SetupBoardDisplay, ReversedPutsBlackAtTheBottomAndReadsBackInLayoutOrder) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, true));
    EXPECT_EQ(b.Picture(0), 'r');   // bottom left shows h8
    EXPECT_EQ(b.Tag(3), "k03");     // e8 stands on screen square 3
    EXPECT_EQ(b.Picture(63), 'R');  // top right shows a1
    EXPECT_EQ(b.Read(true), kStart);
    // Read without the reversal gives the board turned round.
    EXPECT_EQ(b.Read(false), std::string(kStart.rbegin(), kStart.rend()));
}

TEST(SetupBoardDisplay, AWrongLengthChangesNothing) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_FALSE(b.Display(EmptyLayout().substr(0, 63), false));
    EXPECT_FALSE(b.Display(EmptyLayout() + "0", false));
    EXPECT_FALSE(b.Display(EmptyLayout().substr(0, 60) + "    ", false));  // padded to 64
    EXPECT_FALSE(b.Display("", false));
    EXPECT_EQ(b.Read(false), kStart);
    // Blanks around 64 characters are not counted.
    EXPECT_TRUE(b.Display("  " + EmptyLayout() + " ", false));
}

TEST(SetupBoardDisplay, AnUnknownCharacterLeavesThatSquareAsItWas) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    ASSERT_TRUE(b.Display(Layout(EmptyLayout(), 0, 'x'), false));
    EXPECT_EQ(b.Tag(0), "R00");
    EXPECT_EQ(b.Picture(0), 'R');
    EXPECT_EQ(b.Tag(1), "001");
    EXPECT_EQ(b.Read(false), Layout(EmptyLayout(), 0, 'R'));
    // Before any draw such a square has no tag and adds nothing to the result.
    SetupBoard fresh;
    ASSERT_TRUE(fresh.Display(Layout(EmptyLayout(), 5, 'x'), false));
    EXPECT_EQ(fresh.Read(false).size(), 63u);
}

TEST(SetupBoardDisplay, ADrawUndoesEveryEdit) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    b.DropOnSquare(DragSource::Square(12), 28);
    b.DropOnTrash(DragSource::Square(0));
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_EQ(b.Read(false), kStart);
    EXPECT_EQ(b.Tag(12), "P12");
    EXPECT_EQ(b.Tag(0), "R00");
}

TEST(SetupBoardDrops, EveryPalettePieceLandsWithItsCharacter) {
    const std::string expected = "PRNBQKprnbqk";
    for (int p = 0; p < kPaletteSize; ++p) {
        SCOPED_TRACE(std::string(kPaletteNames[static_cast<std::size_t>(p)]));
        SetupBoard b;
        ASSERT_TRUE(b.Display(EmptyLayout(), false));
        const int target = 20 + p;
        ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(p), target));
        EXPECT_EQ(b.Read(false), Layout(EmptyLayout(), target, expected[static_cast<std::size_t>(p)]));
        EXPECT_EQ(b.Picture(target), expected[static_cast<std::size_t>(p)]);
        // The palette never runs out.
        ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(p), 0));
        EXPECT_EQ(b.Read(false)[0], expected[static_cast<std::size_t>(p)]);
    }
    EXPECT_EQ(kPaletteNames[1], "imgWC");
    EXPECT_EQ(kPaletteNames[7], "imgBC");
}

TEST(SetupBoardDrops, APalettePieceReplacesWhatStoodThere) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(10), 3));  // black queen on d1
    EXPECT_EQ(b.Read(false), Layout(kStart, 3, 'q'));
    EXPECT_EQ(b.Tag(3), "q03");
}

TEST(SetupBoardDrops, ReversedBoardDropOnTheSquareLabelledE4GivesE4) {
    // Reversed, the square labelled e4 is screen square 63 - 28 = 35.
    SetupBoard b;
    ASSERT_TRUE(b.Display(EmptyLayout(), true));
    ASSERT_TRUE(b.DropOnSquare(DragSource::Palette(0), 35));
    EXPECT_EQ(b.Read(true), Layout(EmptyLayout(), 28, 'P'));
    EXPECT_EQ(b.Tag(35), "P35");
}

TEST(SetupBoardDrops, MovingAPieceEmptiesItsSquare) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(12), 28));  // e2-e4
    EXPECT_EQ(b.Read(false), Layout(Layout(kStart, 12, '0'), 28, 'P'));
    EXPECT_EQ(b.Tag(12), "0");
    EXPECT_EQ(b.Picture(12), '0');
    EXPECT_EQ(b.Tag(28), "P28");
    // A piece dropped on another takes its place; no chess rule is checked.
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(6), 28));
    EXPECT_EQ(b.Read(false), Layout(Layout(Layout(kStart, 12, '0'), 6, '0'), 28, 'N'));
}

TEST(SetupBoardDrops, MovingOntoTheSamePieceStillEmptiesTheSource) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    ASSERT_TRUE(b.DropOnSquare(DragSource::Square(8), 9));  // white pawn on a white pawn
    EXPECT_EQ(b.Read(false), Layout(kStart, 8, '0'));
    EXPECT_EQ(b.Tag(9), "P09");
    EXPECT_EQ(b.Tag(8), "0");
}

TEST(SetupBoardDrops, DroppingAPieceOnItsOwnSquareChangesNothing) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    b.DropOnSquare(DragSource::Square(4), 4);
    EXPECT_EQ(b.Read(false), kStart);
    EXPECT_EQ(b.Tag(4), "K04");
    EXPECT_EQ(b.Picture(4), 'K');
    // Also for a piece that came from elsewhere and took that square's index.
    b.DropOnSquare(DragSource::Square(12), 28);
    b.DropOnSquare(DragSource::Square(28), 28);
    EXPECT_EQ(b.Tag(28), "P28");
    EXPECT_EQ(b.Read(false), Layout(Layout(kStart, 12, '0'), 28, 'P'));
}

TEST(SetupBoardDrops, AnEmptySquareDroppedAnywhereChangesNothing) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(20), 4));  // drawn empty
    b.DropOnSquare(DragSource::Square(12), 28);
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(12), 3));  // emptied by a move
    b.DropOnTrash(DragSource::Square(0));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Square(0), 1));  // emptied by the trash
    EXPECT_EQ(b.Read(false), Layout(Layout(Layout(kStart, 12, '0'), 28, 'P'), 0, '0'));
    EXPECT_EQ(b.Tag(4), "K04");
    EXPECT_EQ(b.Tag(1), "N01");
}

TEST(SetupBoardDrops, TheTrashEmptiesSquaresAndIgnoresThePalette) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_TRUE(b.DropOnTrash(DragSource::Square(60)));
    EXPECT_EQ(b.Tag(60), "0");
    EXPECT_EQ(b.Picture(60), '0');
    EXPECT_EQ(b.Read(false), Layout(kStart, 60, '0'));
    EXPECT_FALSE(b.DropOnTrash(DragSource::Palette(5)));
    EXPECT_FALSE(b.DropOnTrash(DragSource{}));
    EXPECT_EQ(b.Read(false), Layout(kStart, 60, '0'));
    // A square drawn empty goes to the trash too and gets the bare tag.
    EXPECT_TRUE(b.DropOnTrash(DragSource::Square(30)));
    EXPECT_EQ(b.Tag(30), "0");
}

TEST(SetupBoardDrops, ADropFromElsewhereChangesNothing) {
    SetupBoard b;
    ASSERT_TRUE(b.Display(kStart, false));
    EXPECT_FALSE(b.DropOnSquare(DragSource{}, 20));
    EXPECT_FALSE(b.DropOnSquare(DragSource::Palette(0), 64));
    EXPECT_EQ(b.Read(false), kStart);
}

}  // namespace
}  // namespace vantrel::board
