// The walk over the move text of one game: cuts each line into tokens and
// comments and fills the game record, ply by ply. Both game readers share it;
// they differ only in what opens and closes a comment and in whether
// parentheses and line comments count.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "import/game_record.h"
#include "import/readers.h"
#include "library/text.h"

namespace vantrel::import {

using text::IsBlank;
using text::TrimBlanks;
using text::TrimBlanksInPlace;

// The first call of an import: reads lines, trimmed, into ImportRemarks up
// to the first that begins with `head`, and leaves the line last read in
// ImportLine. The last line of the file is never looked at: reaching it sets
// ImportAtEnd and gives false. With skipLeadingBlanks, blank lines at the top
// of the file stay out of the remarks.
bool ReadRemarks(ImportState& state, char head, bool skipLeadingBlanks);

class MoveWalker {
public:
    // A walker keeps its room from game to game: Start begins each one.
    MoveWalker() { SetStops(); }
    explicit MoveWalker(GameRecord& game) {
        SetStops();
        Start(game);
    }
    // Begins a game: everything of the last one is forgotten, the PGN rules
    // hold, and no ply limit.
    void Start(GameRecord& game);

    // PGN: "{" and "}" around comments, parentheses hold variations, and a
    // ";" makes the rest of the line a comment.
    void UsePgnRules();
    // SAN: the two indicators, already trimmed. An indicator of one character
    // matches one character; one of two characters matches a pair; any other
    // length never matches.
    void UseSanRules(std::string_view commentStart, std::string_view commentEnd);

    // The slot the last move went into: -1 until the game's name is stored.
    int16_t Ply() const { return ply_; }
    void SetPly(int16_t ply) { ply_ = ply; }

    // Keeps only the first `limit` plies (1..250) of the game: later moves,
    // with their marks and comments, are read and dropped, so a longer game
    // raises no error. 0, the default, keeps every ply up to the 250 a game
    // record holds.
    void SetPlyLimit(int16_t limit) { plyLimit_ = limit; }

    // Walks one line of move text (without its line end).
    void WalkLine(std::string_view line);

    // Ends the game: a comment or variation left open becomes the comment of
    // the last ply, and an open token is dropped. Returns the last ply.
    int16_t EndGame();

private:
    size_t Matches(const std::string& mark, size_t i) const;
    bool MayStop(char c) const { return stops_[static_cast<unsigned char>(c)]; }
    void SetStops();
    // The usual line while nothing is pending and no limit is set: plain
    // moves go to their slots, move numbers and results are taken at once.
    // Returns where the first token that needs more begins, or the line's
    // length.
    size_t WalkPlain(std::string_view text);
    void EndToken();
    void EndToken(std::string_view token);
    void Attach(std::string_view text);
    bool Parse(std::string_view token);

    GameRecord* game_ = nullptr;
    bool pgn_ = true;
    std::string open_ = "{";
    std::string close_ = "}";
    bool braces_ = true;  // the PGN rules: plain move text is cut where it stands
    // The characters that may end a token: a blank, the first of the
    // comment's opening mark, and with PGN "(" and ";".
    std::array<bool, 256> stops_ = {};

    int16_t ply_ = -1;
    int16_t plyLimit_ = 0;
    bool cut_ = false;  // the game has gone past plyLimit_
    std::string line_;
    std::string token_;
    std::string pending_;
    std::string move_;
    std::string note_;
    // ParseToken's answers for the last tokens that it found no move in:
    // results and marks come back game after game.
    struct Parsed {
        std::string token, note;
    };
    std::array<Parsed, 4> parsed_;
    size_t nextParsed_ = 0;
    bool inComment_ = false;
    bool inVariation_ = false;
    int depth_ = 0;
};

}  // namespace vantrel::import
