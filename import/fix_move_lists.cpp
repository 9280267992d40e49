#include "import/fix_move_lists.h"

namespace vantrel::import {
namespace {

// A slot of the game record; past the last slot the record reads as empty.
std::string_view Slot(const GameRecord& game, int i) {
    if (i < 0 || i > kMaxPly) return {};
    return game.GameMoves[static_cast<size_t>(i)];
}

}  // namespace

std::string FixMoveCell(std::string_view move) {
    std::string cell(move);
    if (cell.size() < 7) cell.append(7 - cell.size(), ' ');
    return cell;
}

FixMoveLists BuildFixMoveLists(const GameRecord& game, int badPly, int lastPly) {
    FixMoveLists lists;
    const int b = badPly;
    int n = 0;  // the move number runs on through the bad move, in both lists

    // Whole moves ahead of the bad one.
    for (int i = 1; i + 1 < b; i += 2) {
        ++n;
        lists.before.push_back(std::to_string(n) + ". " + FixMoveCell(Slot(game, i)) + " " +
                               FixMoveCell(Slot(game, i + 1)));
    }

    int next;
    if (b % 2 == 0) {
        // White's half of this move stands ahead of the bad move.
        ++n;
        lists.before.push_back(std::to_string(n) + ". " + FixMoveCell(Slot(game, b - 1)) + " ...");
        next = b + 1;
    } else {
        // Black's half stands behind it.
        ++n;
        lists.after.push_back(std::to_string(n) + ".  ...    " + FixMoveCell(Slot(game, b + 1)));
        next = b + 2;
    }

    lists.badMove = Slot(game, b);

    for (int i = next; i <= lastPly; i += 2) {
        ++n;
        lists.after.push_back(std::to_string(n) + ". " + FixMoveCell(Slot(game, i)) + " " +
                              FixMoveCell(Slot(game, i + 1)));
    }
    return lists;
}

}  // namespace vantrel::import
