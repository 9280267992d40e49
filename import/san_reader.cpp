// The SAN game reader: a line that begins with "!" names a game, everything
// else is move text, and comments stand between the two indicators that the
// user gives.
#include "import/readers.h"
#include "import/walk.h"

namespace vantrel::import {

int16_t ReadSanGame(ImportState& state, GameRecord& game, const std::string& commentStart,
                    const std::string& commentEnd) {
    game.Clear();
    // The walker and the line keep their room from game to game.
    static thread_local MoveWalker walk;
    walk.Start(game);
    walk.UseSanRules(TrimBlanks(commentStart), TrimBlanks(commentEnd));
    walk.SetPlyLimit(state.PlyLimit);
    TrimBlanksInPlace(state.ImportLine);
    LineSource& in = *state.ImportFile;
    static thread_local std::string line;

    // Everything ahead of the first "!" line, blank lines too, is the
    // library's remarks.
    if (state.ImportFirstGame && ReadRemarks(state, '!', false)) state.ImportLine.erase(0, 1);
    if (state.ImportAtEnd) return -1;

    walk.SetPly(0);
    game.GameMoves[0] = state.ImportLine;

    while (!state.ImportAtEnd) {
        in.ReadLine(line);
        if (in.Eof()) state.ImportAtEnd = true;
        std::string_view trimmed = TrimBlanks(line);
        if (trimmed.starts_with('!')) {
            state.ImportLine.assign(trimmed.substr(1));
            break;
        }
        walk.WalkLine(line);
    }
    return walk.EndGame();
}

}  // namespace vantrel::import
