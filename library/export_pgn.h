// A library back out as PGN, one game for each game that built it, and the
// small listings of the command line: every node, the line of moves to a
// node, and the nodes that hold a position.
#pragma once

#include <string>
#include <vector>

#include "library/loader.h"

namespace vantrel::library {

// The new_branch flag of every node record, in load order, gathered while
// the library loads: LibraryContents keeps only what the window shows.
class NewBranchFlags : public LoadObserver {
public:
    void OnRecord(const LibraryNodeRecord& record) override { flags.push_back(record.new_branch); }
    std::vector<bool> flags;
};

// One game of an export: its line of node numbers from the top of the tree
// down, and the place in it of the first node the game itself added (the
// comments of the line are written from there on).
struct ExportGame {
    std::vector<int> line;
    size_t firstOwn = 0;
};

// A game starts at every node whose new_branch is set and runs on through
// the nodes that follow it in load order for as long as each is the child of
// the one before and opens no game itself. A node that no such run reaches
// starts a run of its own, so that every node is in some game. The games
// come in the order of their first nodes, so that importing them in that
// order builds the same nodes in the same order.
std::vector<ExportGame> ExportGames(const TreeModel& tree, const std::vector<bool>& newBranch);

// The move of a node: its text ahead of the first colon.
std::string NodeMove(const TreeModel& tree, int node);

// The moves from the top of the tree down to a node, separated by blanks.
std::string LineOfMoves(const TreeModel& tree, int node);

// The whole library as PGN, in library text (Windows-1252), lines ending in
// "\n": the remarks as "%" lines, then each game with its name in [Event],
// the other six tags of the roster unknown, its moves (castling as O-O and
// O-O-O) and the comments of the nodes it added in braces.
std::string ExportPgn(const LibraryContents& contents, const std::vector<bool>& newBranch);

// One line of `info --nodes`: number, parent's number, picture, text, layout
// and comment, tab-separated, with the text and the comment escaped (see
// EscapeField) and "No comments" as empty.
std::string NodeListingLine(const LibraryContents& contents, int node);

// A backslash as "\\", CR LF or a lone LF as "\n", a lone CR as "\r", a tab
// as "\t"; everything else unchanged.
std::string EscapeField(const std::string& text);

// The numbers of every node whose position is `layout`, in load order,
// through the walk of Find.
std::vector<int> FindAll(const TreeModel& tree, const std::string& layout);

}  // namespace vantrel::library
