// The Move List window's lines, made from a node's full path.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "library/move_list.h"

using vantrel::library::MoveListLines;
using Lines = std::vector<std::string>;

TEST(MoveList, LinesOfAPath) {
    const std::pair<const char*, Lines> cases[] = {
        {"", {}},
        {"e4", {"  1. e4"}},  // a lone white move has no padding
        {"e4\\e5", {"  1. e4      e5"}},
        {"e4\\e5\\Nf3", {"  1. e4      e5", "  2. Nf3"}},
        {"e4\\e5\\Nf3\\Nc6", {"  1. e4      e5", "  2. Nf3     Nc6"}},
        // Game names are left out; a colon later in the name is just more of the name.
        {"e4:King's Pawn\\c5:Sicilian Defence\\Nf3", {"  1. e4      c5", "  2. Nf3"}},
        {"d4\\d5\\c4:Queen's Gambit", {"  1. d4      d5", "  2. c4"}},
        {"e4:a: b: c\\e5", {"  1. e4      e5"}},
        // The first character of a move is never a terminator, not even a colon or a backslash.
        {":x\\e5", {"  1. :x      e5"}},
        {"e4\\:Name", {"  1. e4      :Name"}},
        {"\\e4\\e5", {"  1. \\e4     e5"}},
        // A backslash in a name starts a new move and shifts every following move by one half.
        {"e4:Ruy Lopez\\Spanish\\e5\\Nf3", {"  1. e4      Spanish", "  2. e5      Nf3"}},
        {"e4\\e5:Open\\ing\\Nf3", {"  1. e4      e5", "  2. ing     Nf3"}},
        // Long white moves are not cut: seven characters and a blank, eight and none, longer still.
        {"exd8=Q+\\Kxd8", {"  1. exd8=Q+ Kxd8"}},
        {"exd8=Q+!\\Kxd8", {"  1. exd8=Q+!Kxd8"}},
        {"Nbxd8=Q+!?\\Kxd8", {"  1. Nbxd8=Q+!?Kxd8"}},
        // A trailing backslash makes an empty move: an empty black move still closes the line,
        // an empty white move adds none.
        {"e4\\", {"  1. e4      "}},
        {"e4\\e5\\", {"  1. e4      e5"}},
        // Characters of library text pass through as bytes.
        {"e4:R\xE9ti\\Nf3", {"  1. e4      Nf3"}},
        {"\xE9\xE8", {"  1. \xE9\xE8"}},
    };
    for (const auto& [path, lines] : cases) EXPECT_EQ(MoveListLines(path), lines) << path;
}

TEST(MoveList, NumberingIsRightAlignedInThreeThenGrows) {
    std::string path = "a3";
    for (int ply = 2; ply <= 2001; ++ply) path += ply % 2 ? "\\a3" : "\\h6";
    const Lines lines = MoveListLines(path);
    ASSERT_EQ(lines.size(), 1001u);
    const std::pair<size_t, const char*> rows[] = {{0, "  1. a3      h6"},   {8, "  9. a3      h6"},
                                                   {9, " 10. a3      h6"},   {98, " 99. a3      h6"},
                                                   {99, " 100. a3      h6"}, {999, " 1000. a3      h6"},
                                                   {1000, " 1001. a3"}};
    for (const auto& [row, text] : rows) EXPECT_EQ(lines[row], text);
}
