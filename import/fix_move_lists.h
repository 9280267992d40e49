// The two move lists of the repair dialog: the moves ahead of the bad one and
// the moves behind it, one full move a line, numbered through the bad move.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/game_record.h"

namespace vantrel::import {

struct FixMoveLists {
    std::vector<std::string> before;  // txtMovesBefore, one entry a line
    std::string badMove;              // txtBadMove
    std::vector<std::string> after;   // txtMovesAfter, one entry a line
};

// A move in its column: the text filled up with blanks on the right to 7
// characters (longer text stays whole).
std::string FixMoveCell(std::string_view move);

// The lists for the bad ply `badPly` of a game whose last ply is `lastPly`.
FixMoveLists BuildFixMoveLists(const GameRecord& game, int badPly, int lastPly);

}  // namespace vantrel::import
