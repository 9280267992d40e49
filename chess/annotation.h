// The meaning of single tokens of a game text: moves, annotation marks,
// numeric annotation codes and results.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::chess {

// Empties move and note, then decides whether the token holds a move.
// Returns true if `move` holds a bare move (2 to 6 characters).
bool ParseToken(std::string_view token, std::string& move, std::string& note);

// Sets note to the text of a numeric annotation code ("$1" -> "good Move");
// the empty string for anything outside 1..139.
void NagText(std::string_view token, std::string& note);

}  // namespace vantrel::chess
