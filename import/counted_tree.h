// An opening tree counted from a game database: every node knows how many
// games of the file reached it and how they scored, moves that too few games
// played are left out, and the children of a node come most-played first.
//
// The games are read once. Each game's line of moves goes, as one sortable
// key, into runs of bounded size that are sorted and, past the first, kept
// in anonymous temporary files; a merge of the runs then meets every line in
// order, so that the count of a node is the length of a run of keys that
// share its line. Memory thus grows with the nodes kept, not with the games.
// The names and comments of the games wait in a temporary file of their own,
// from which those of the games that first reached a kept node are read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "import/tree_store.h"

namespace vantrel::import {

struct CountingOptions {
    int32_t minGames = 1;  // a node stays where at least this many games reach it
    bool fit = false;      // raise minGames until the tree has at most maxNodes nodes
    int64_t maxNodes = 32767;  // what a window shows
    bool counts = false;   // node texts "move: N games, S%"
    // Bytes of keys held in memory before a run is sorted and set aside.
    size_t runBytes = size_t{8} << 20;
};

struct CountingReport {
    int32_t minGames = 0;  // the minGames taken (with fit, the one found)
    int64_t nodes = 0;     // nodes written
    int32_t games = 0;     // games read
};

// Reads options.inFile and writes the counted library to LibraryPath(options),
// asking the host before it replaces a library. True when the library was
// written; failures are told through the host as the import tells them.
bool BuildCountedLibrary(const ImportOptions& options, const CountingOptions& counting, ImportHost& host,
                         CountingReport& report);

// White's score of games won, drawn and lost, in whole percent rounded half
// up; -1 when no game has a result.
int ScorePercent(int64_t wins, int64_t draws, int64_t losses);

}  // namespace vantrel::import
