// The 64-character layout string of a position, as libraries store it: one
// character a square, a1..h1, a2..h2, ... a8..h8; a piece's letter, capital
// for White, or '0' for an empty square.
#pragma once

#include <string_view>

namespace vantrel::chess {

// The characters a layout may hold: White's pawn, rook, knight, bishop,
// queen and king, the same for Black, and '0'. The order is the setup
// palette's.
inline constexpr std::string_view kLayoutChars = "PRNBQKprnbqk0";
inline constexpr std::string_view kPieceLetters = kLayoutChars.substr(0, 12);

inline bool IsPieceLetter(char c) { return c != '\0' && kPieceLetters.find(c) != std::string_view::npos; }

// The layout of the initial position.
inline constexpr std::string_view kInitialLayout =
    "RNBQKBNRPPPPPPPP00000000000000000000000000000000pppppppprnbqkbnr";

}  // namespace vantrel::chess
