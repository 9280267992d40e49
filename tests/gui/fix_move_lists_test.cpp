// The move lists of the Edit Move dialog: columns of 7, numbers that run on
// through the bad move, White's or Black's half beside it.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "import/ui/fix_move_lists.h"

using vantrel::import::BuildFixMoveLists;
using vantrel::import::FixMoveCell;
using vantrel::import::GameRecord;
using Lines = std::vector<std::string>;

namespace {

std::unique_ptr<GameRecord> Game(const std::vector<std::string>& moves, const std::string& name = "A - B") {
    auto game = std::make_unique<GameRecord>();
    game->GameMoves[0] = name;
    for (size_t i = 0; i < moves.size(); ++i) game->GameMoves[i + 1] = moves[i];
    return game;
}

const std::vector<std::string> kRuyLopez = {"e4", "e5", "Nf3", "Nc6", "Bb5", "a6"};

}  // namespace

TEST(FixMoveLists, CellPadsToSevenAndKeepsLongerText) {
    EXPECT_EQ(FixMoveCell(""), "       ");
    EXPECT_EQ(FixMoveCell("e4"), "e4     ");
    EXPECT_EQ(FixMoveCell("Nbxd7+!"), "Nbxd7+!");
    EXPECT_EQ(FixMoveCell("exd8=Q+!"), "exd8=Q+!");
}

TEST(FixMoveLists, BadFirstPly) {
    const auto game = Game(kRuyLopez);
    const auto lists = BuildFixMoveLists(*game, 1, 6);
    EXPECT_EQ(lists.before, Lines{});
    EXPECT_EQ(lists.badMove, "e4");
    EXPECT_EQ(lists.after, (Lines{"1.  ...    e5     ", "2. Nf3     Nc6    ", "3. Bb5     a6     "}));
}

TEST(FixMoveLists, BadWhitePlyInTheMiddle) {
    const auto game = Game(kRuyLopez);
    const auto lists = BuildFixMoveLists(*game, 3, 6);
    EXPECT_EQ(lists.before, Lines{"1. e4      e5     "});
    EXPECT_EQ(lists.badMove, "Nf3");
    EXPECT_EQ(lists.after, (Lines{"2.  ...    Nc6    ", "3. Bb5     a6     "}));
}

TEST(FixMoveLists, BadBlackPlyInTheMiddle) {
    const auto game = Game(kRuyLopez);
    const auto lists = BuildFixMoveLists(*game, 4, 6);
    EXPECT_EQ(lists.before, (Lines{"1. e4      e5     ", "2. Nf3     ..."}));
    EXPECT_EQ(lists.badMove, "Nc6");
    EXPECT_EQ(lists.after, Lines{"3. Bb5     a6     "});
}

TEST(FixMoveLists, BadLastPlyOfAnEvenGame) {
    const auto game = Game(kRuyLopez);
    const auto lists = BuildFixMoveLists(*game, 6, 6);
    EXPECT_EQ(lists.before, (Lines{"1. e4      e5     ", "2. Nf3     Nc6    ", "3. Bb5     ..."}));
    EXPECT_EQ(lists.badMove, "a6");
    EXPECT_EQ(lists.after, Lines{});
}

TEST(FixMoveLists, BadLastPlyOfAnOddGameLeavesABlankBlackCell) {
    const auto game = Game({"e4", "e5", "Nf3", "Nc6", "Bb5"});
    const auto lists = BuildFixMoveLists(*game, 5, 5);
    EXPECT_EQ(lists.before, (Lines{"1. e4      e5     ", "2. Nf3     Nc6    "}));
    EXPECT_EQ(lists.badMove, "Bb5");
    EXPECT_EQ(lists.after, Lines{"3.  ...           "});
}

TEST(FixMoveLists, OddGameEndsWithABlankBlackCellBehindTheBadMove) {
    const auto game = Game({"e4", "e5", "Nf3", "Nc6", "Bb5"});
    const auto lists = BuildFixMoveLists(*game, 2, 5);
    EXPECT_EQ(lists.before, Lines{"1. e4      ..."});
    EXPECT_EQ(lists.after, (Lines{"2. Nf3     Nc6    ", "3. Bb5            "}));
}

TEST(FixMoveLists, NumbersPastNineAndAFullRecord) {
    std::vector<std::string> moves;
    for (int i = 1; i <= vantrel::import::kMaxPly; ++i) moves.push_back("m" + std::to_string(i));
    const auto game = Game(moves);
    const auto lists = BuildFixMoveLists(*game, 23, 250);
    ASSERT_EQ(lists.before.size(), 11u);
    EXPECT_EQ(lists.before.back(), "11. m21     m22    ");
    ASSERT_FALSE(lists.after.empty());
    EXPECT_EQ(lists.after.front(), "12.  ...    m24    ");
    // The last line holds plies 249 and 250, the end of the record.
    EXPECT_EQ(lists.after.back(), "125. m249    m250   ");
}
