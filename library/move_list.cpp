#include "library/move_list.h"

namespace vantrel::library {
namespace {

// The line number as the list shows it: a blank for the sign, then the digits,
// right-aligned in three places ("  1", " 10", " 100", " 1000").
std::string LineNumber(int count) {
    std::string text = " " + std::to_string(count);
    if (text.size() < 3) text.insert(0, 3 - text.size(), ' ');
    return text;
}

// White's move left-aligned in eight places; a longer move is kept whole.
std::string WhiteCell(const std::string& move) {
    std::string cell = move;
    if (cell.size() < 8) cell.append(8 - cell.size(), ' ');
    return cell;
}

}  // namespace

std::vector<std::string> MoveListLines(const std::string& szFullpath) {
    // With one backslash in front, every move follows a backslash.
    const std::string path = "\\" + szFullpath;
    std::vector<std::string> lines;
    std::string white;
    bool whiteToMove = true;
    int count = 0;

    std::size_t i = 0;
    while (i < path.size()) {
        if (path[i] != '\\') {
            ++i;
            continue;
        }
        // The move starts after the backslash. Its first character is never a
        // terminator, so the search for the next backslash or colon starts one
        // further on; a game's name after a colon is not part of the move.
        const std::size_t start = i + 1;
        std::size_t end = path.size();
        if (start + 1 < path.size()) {
            const std::size_t stop = path.find_first_of("\\:", start + 1);
            if (stop != std::string::npos) end = stop;
        }
        const std::string move = start < path.size() ? path.substr(start, end - start) : std::string();

        if (whiteToMove) {
            white = move;
        } else {
            ++count;
            lines.push_back(LineNumber(count) + ". " + WhiteCell(white) + move);
            white.clear();
        }
        whiteToMove = !whiteToMove;
        i = end;
    }

    if (!white.empty()) {
        ++count;
        lines.push_back(LineNumber(count) + ". " + white);
    }
    return lines;
}

}  // namespace vantrel::library
