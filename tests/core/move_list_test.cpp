#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/move_list.h"

using vantrel::library::MoveListLines;
using Lines = std::vector<std::string>;

TEST(MoveList, EmptyPathGivesNoLines) {
    EXPECT_EQ(MoveListLines(""), Lines{});
}

TEST(MoveList, OneTwoAndThreeMoves) {
    EXPECT_EQ(MoveListLines("e4"), (Lines{"  1. e4"})) << "a lone white move has no padding";
    EXPECT_EQ(MoveListLines("e4\\e5"), (Lines{"  1. e4      e5"}));
    EXPECT_EQ(MoveListLines("e4\\e5\\Nf3"), (Lines{"  1. e4      e5", "  2. Nf3"}));
    EXPECT_EQ(MoveListLines("e4\\e5\\Nf3\\Nc6"), (Lines{"  1. e4      e5", "  2. Nf3     Nc6"}));
}

TEST(MoveList, GameNamesAreLeftOut) {
    // The name after the colon belongs to the node, not to the move.
    EXPECT_EQ(MoveListLines("e4:King's Pawn\\c5:Sicilian Defence\\Nf3"),
              (Lines{"  1. e4      c5", "  2. Nf3"}));
    EXPECT_EQ(MoveListLines("d4\\d5\\c4:Queen's Gambit"), (Lines{"  1. d4      d5", "  2. c4"}));
    // A colon later in the name is just more of the name.
    EXPECT_EQ(MoveListLines("e4:a: b: c\\e5"), (Lines{"  1. e4      e5"}));
}

TEST(MoveList, FirstCharacterOfAMoveIsNeverATerminator) {
    // A move has at least one character, even if that character is a colon.
    EXPECT_EQ(MoveListLines(":x\\e5"), (Lines{"  1. :x      e5"}));
    EXPECT_EQ(MoveListLines("e4\\:Name"), (Lines{"  1. e4      :Name"}));
}

TEST(MoveList, BackslashInANameStartsANewMove) {
    // "Ruy Lopez\Spanish" puts "Spanish" in the black column and shifts
    // every following move by one half.
    EXPECT_EQ(MoveListLines("e4:Ruy Lopez\\Spanish\\e5\\Nf3"),
              (Lines{"  1. e4      Spanish", "  2. e5      Nf3"}));
    EXPECT_EQ(MoveListLines("e4\\e5:Open\\ing\\Nf3"),
              (Lines{"  1. e4      e5", "  2. ing     Nf3"}));
}

TEST(MoveList, LongWhiteMovesAreNotCut) {
    EXPECT_EQ(MoveListLines("exd8=Q+\\Kxd8"), (Lines{"  1. exd8=Q+ Kxd8"})) << "seven characters, one blank";
    EXPECT_EQ(MoveListLines("exd8=Q+!\\Kxd8"), (Lines{"  1. exd8=Q+!Kxd8"})) << "eight characters, no blank";
    EXPECT_EQ(MoveListLines("Nbxd8=Q+!?\\Kxd8"), (Lines{"  1. Nbxd8=Q+!?Kxd8"})) << "longer still, kept whole";
    EXPECT_EQ(MoveListLines("Nbxd8=Q+!?"), (Lines{"  1. Nbxd8=Q+!?"}));
}

TEST(MoveList, NumberingIsRightAlignedInThreeThenGrows) {
    std::string path;
    for (int ply = 1; ply <= 2001; ++ply) {
        if (!path.empty()) path += '\\';
        path += (ply % 2 == 1) ? "a3" : "h6";
    }
    const Lines lines = MoveListLines(path);
    ASSERT_EQ(lines.size(), 1001u);
    EXPECT_EQ(lines[0], "  1. a3      h6");
    EXPECT_EQ(lines[8], "  9. a3      h6");
    EXPECT_EQ(lines[9], " 10. a3      h6");
    EXPECT_EQ(lines[98], " 99. a3      h6");
    EXPECT_EQ(lines[99], " 100. a3      h6") << "from 100 on: a blank and the digits";
    EXPECT_EQ(lines[998], " 999. a3      h6");
    EXPECT_EQ(lines[999], " 1000. a3      h6");
    EXPECT_EQ(lines[1000], " 1001. a3") << "the odd last move stands alone";
}

TEST(MoveList, OddEdgesOfThePath) {
    // A trailing backslash makes an empty move: an empty black move still
    // closes the line, an empty white move adds none.
    EXPECT_EQ(MoveListLines("e4\\"), (Lines{"  1. e4      "}));
    EXPECT_EQ(MoveListLines("e4\\e5\\"), (Lines{"  1. e4      e5"}));
    // A leading backslash is the first character of the first move, which
    // is never tested, so it stays part of that move.
    EXPECT_EQ(MoveListLines("\\e4"), (Lines{"  1. \\e4"}));
    EXPECT_EQ(MoveListLines("\\e4\\e5"), (Lines{"  1. \\e4     e5"}));
    // Characters of library text pass through as bytes.
    EXPECT_EQ(MoveListLines("e4:R\xE9ti\\Nf3"), (Lines{"  1. e4      Nf3"}));
    EXPECT_EQ(MoveListLines("\xE9\xE8"), (Lines{"  1. \xE9\xE8"}));
}
