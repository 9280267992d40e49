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

std::unique_ptr<GameRecord> Game(const std::vector<std::string>& moves) {
    auto game = std::make_unique<GameRecord>();
    game->GameMoves[0] = "A - B";
    for (size_t i = 0; i < moves.size(); ++i) game->GameMoves[i + 1] = moves[i];
    return game;
}

}  // namespace

TEST(FixMoveLists, CellPadsToSevenAndKeepsLongerText) {
    EXPECT_EQ(FixMoveCell(""), "       ");
    EXPECT_EQ(FixMoveCell("e4"), "e4     ");
    EXPECT_EQ(FixMoveCell("exd8=Q+!"), "exd8=Q+!");
}

TEST(FixMoveLists, BeforeBadAndAfterForEachKindOfPly) {
    const std::vector<std::string> six = {"e4", "e5", "Nf3", "Nc6", "Bb5", "a6"};
    const std::vector<std::string> five = {"e4", "e5", "Nf3", "Nc6", "Bb5"};
    struct Case {
        const std::vector<std::string>* moves;
        int bad;
        Lines before;
        std::string badMove;
        Lines after;
    };
    const Case cases[] = {
        {&six, 1, {}, "e4", {"1.  ...    e5     ", "2. Nf3     Nc6    ", "3. Bb5     a6     "}},
        {&six, 3, {"1. e4      e5     "}, "Nf3", {"2.  ...    Nc6    ", "3. Bb5     a6     "}},
        {&six, 4, {"1. e4      e5     ", "2. Nf3     ..."}, "Nc6", {"3. Bb5     a6     "}},
        {&six, 6, {"1. e4      e5     ", "2. Nf3     Nc6    ", "3. Bb5     ..."}, "a6", {}},
        // An odd game: the black cell behind the last ply holds blanks only.
        {&five, 5, {"1. e4      e5     ", "2. Nf3     Nc6    "}, "Bb5", {"3.  ...           "}},
        {&five, 2, {"1. e4      ..."}, "e5", {"2. Nf3     Nc6    ", "3. Bb5            "}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("bad ply " + std::to_string(c.bad) + " of " + std::to_string(c.moves->size()));
        const auto game = Game(*c.moves);
        const auto lists = BuildFixMoveLists(*game, c.bad, static_cast<int>(c.moves->size()));
        EXPECT_EQ(lists.before, c.before);
        EXPECT_EQ(lists.badMove, c.badMove);
        EXPECT_EQ(lists.after, c.after);
    }
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
