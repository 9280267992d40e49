// What the reader tests share: a game record's slots in one line, and the
// check of a file read game by game.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "import/readers.h"

namespace vantrel::import::testing {

// Slots 0..last of a game record, joined by "|".
template <typename Slots>
std::string Joined(const Slots& slots, int last) {
    std::string out = slots[0];
    for (int i = 1; i <= last; ++i) out += "|" + slots[static_cast<size_t>(i)];
    return out;
}

// One read of a game: what it returns, the slots 0..max(1, plies + 1) of
// moves and comments, and the line the reader stopped at.
struct ExpectedRead {
    int16_t plies;
    const char* moves;
    const char* comments;  // nullptr: not looked at
    const char* lineAfter = nullptr;
};

// Reads game after game with `next` and checks each against `reads`, then
// the remarks (unless null) and the end of the file.
inline void ExpectReads(const std::function<int16_t()>& next, const ImportState& st, const GameRecord& g,
                        const std::vector<ExpectedRead>& reads, const char* remarks, bool atEnd) {
    for (const ExpectedRead& r : reads) {
        EXPECT_EQ(next(), r.plies);
        const int last = std::max<int>(1, r.plies + 1);
        EXPECT_EQ(Joined(g.GameMoves, last), r.moves);
        if (r.comments) {
            EXPECT_EQ(Joined(g.GameComments, last), r.comments);
        }
        if (r.lineAfter) {
            EXPECT_EQ(st.ImportLine, r.lineAfter);
        }
    }
    if (remarks) {
        EXPECT_EQ(st.ImportRemarks, remarks);
    }
    EXPECT_EQ(st.ImportAtEnd, atEnd);
}

}  // namespace vantrel::import::testing
