// Where the windows go: the arithmetic of the frame's inner area, of a
// library window's controls and of the frame on its screen. Lengths in twips
// unless a function says pixels.
#pragma once

#include <vector>

namespace vantrel {

// A rectangle: its top left corner and its size.
struct Placement {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Placement&) const = default;
};

// The plan of the comments and moves windows above the board.
struct CommentMovesPlan {
    int height = 0;    // the height of each of the two windows
    int movesTop = 0;  // the Top of the moves window
    bool stacked = false;
};

// `innerHeight` is the frame's inner height, `boardHeight` the board
// window's outer height. Over 2400 twips of room above the board the two
// windows stand one over the other with half the room each; at 2400 or less
// they share the whole room, stacked. A height is never below 0.
CommentMovesPlan PlanCommentsMoves(int innerHeight, int boardHeight);

// The board goes into the bottom right corner of the inner area.
Placement PlanBoard(int innerWidth, int innerHeight, int boardWidth, int boardHeight);

// The tiles of `count` library windows from top to bottom (arranged) or all
// in one place (layered), beside a right column `columnWidth` wide.
std::vector<Placement> PlanLibraryWindows(int count, int innerWidth, int innerHeight, int columnWidth, bool layered);

// The controls of a tree window for its outer size: the strip as wide as the
// window, the list 1200 short of it, the tree 120 narrower and 825 lower
// than the window. Nothing comes out below 0.
struct TreeWindowPlan {
    int pictureWidth = 0;
    int listWidth = 0;
    int treeWidth = 0;
    int treeHeight = 0;
};
TreeWindowPlan PlanTreeWindow(int windowWidth, int windowHeight);

// In pixels: the frame's size at the start where nothing is remembered, the
// design size grown to 85% of the room on a larger screen, centred in it,
// and never past 32,767 twips a side, so that the position saved from it
// comes back.
Placement DefaultFrameGeometry(const Placement& room, int designWidth, int designHeight);

// In pixels: a window's outer rectangle, title bar and borders included,
// brought inside a screen's available area: no larger than the area, and
// moved no further than it takes to lie wholly within it.
Placement FitOnScreen(const Placement& outer, const Placement& available);

}  // namespace vantrel
