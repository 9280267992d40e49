// The repair dialog's move lists: columns of 7, numbers run on through the bad move.
#include <gtest/gtest.h>

#include <memory>

#include "import/fix_move_lists.h"

using vantrel::import::GameRecord;
using Lines = std::vector<std::string>;

namespace {

std::unique_ptr<GameRecord> Game(const std::vector<std::string>& moves) {
    auto game = std::make_unique<GameRecord>();
    for (size_t i = 0; i < moves.size(); ++i) game->GameMoves[i + 1] = moves[i];
    return game;
}

}  // namespace

TEST(FixMoveLists, BeforeBadAndAfterForEachKindOfPly) {
    EXPECT_EQ(vantrel::import::FixMoveCell("exd8=Q+!"), "exd8=Q+!") << "longer text is kept";
    const std::vector<std::string> six = {"e4", "e5", "Nf3", "Nc6", "Bb5", "a6"};
    const std::vector<std::string> five(six.begin(), six.end() - 1);
    std::vector<std::string> full;
    for (int i = 1; i <= vantrel::import::kMaxPly; ++i) full.push_back("m" + std::to_string(i));
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
        {&six, 6, {"1. e4      e5     ", "2. Nf3     Nc6    ", "3. Bb5     ..."}, "a6", {}},
        // An odd game: the black cell behind the last ply holds blanks only.
        {&five, 5, {"1. e4      e5     ", "2. Nf3     Nc6    "}, "Bb5", {"3.  ...           "}},
        {&five, 2, {"1. e4      ..."}, "e5", {"2. Nf3     Nc6    ", "3. Bb5            "}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("bad ply " + std::to_string(c.bad) + " of " + std::to_string(c.moves->size()));
        const auto lists = vantrel::import::BuildFixMoveLists(*Game(*c.moves), c.bad, static_cast<int>(c.moves->size()));
        EXPECT_EQ(lists.before, c.before);
        EXPECT_EQ(lists.badMove, c.badMove);
        EXPECT_EQ(lists.after, c.after);
    }
    // Numbers past nine, and the last line of a full record.
    const auto lists = vantrel::import::BuildFixMoveLists(*Game(full), 23, 250);
    EXPECT_EQ(lists.before.back(), "11. m21     m22    ");
    EXPECT_EQ(lists.after.front(), "12.  ...    m24    ");
    EXPECT_EQ(lists.after.back(), "125. m249    m250   ");
}
