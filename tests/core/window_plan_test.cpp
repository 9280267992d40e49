// Where the windows go: the edges that whole twips and small frames reach.
#include <gtest/gtest.h>

#include <tuple>

#include "layout/window_plan.h"

using namespace vantrel;

TEST(WindowPlan, TheInnerAreaAndTheTreeWindowAtTheirEdgesAndNeverBelowZero) {
    const auto moves = [](int inner) {
        const CommentMovesPlan p = PlanCommentsMoves(inner, 4755);
        return std::tuple(p.stacked, p.height, p.movesTop);
    };
    EXPECT_EQ(moves(4755 + 2400), std::tuple(true, 2400, 0)) << "2400 twips of room or less: stacked";
    EXPECT_EQ(moves(4755 + 2401), std::tuple(false, 1200, 1200)) << "halves cut to whole twips";
    EXPECT_EQ(moves(4000), std::tuple(true, 0, 0));
    EXPECT_EQ(PlanBoard(12000, 9000, 4500, 4755), (Placement{7500, 4245, 4500, 4755}));
    EXPECT_EQ(PlanBoard(3000, 4000, 4500, 4755), (Placement{0, 0, 4500, 4755})) << "the top left stays in view";
    EXPECT_EQ(PlanLibraryWindows(3, 12000, 9001, 4500, false),
              (std::vector<Placement>{{0, 0, 7500, 3000}, {0, 3000, 7500, 3000}, {0, 6000, 7500, 3000}}));
    EXPECT_EQ(PlanLibraryWindows(2, 12000, 9000, 4500, true), (std::vector<Placement>(2, {0, 0, 7500, 9000})));
    EXPECT_EQ(PlanLibraryWindows(1, 3000, 9000, 4500, false)[0].width, 0);
    const TreeWindowPlan tree = PlanTreeWindow(6000, 5000), tiny = PlanTreeWindow(100, 100);
    EXPECT_EQ(std::tuple(tree.pictureWidth, tree.listWidth, tree.treeWidth, tree.treeHeight),
              std::tuple(6000, 4800, 5880, 4175));
    EXPECT_EQ(std::tuple(tiny.listWidth, tiny.treeWidth, tiny.treeHeight), std::tuple(0, 0, 0));
}

TEST(WindowPlan, TheFrameStartsAt85PercentCentredWithin32767TwipsAndKeepsInsideTheScreen) {
    EXPECT_EQ(DefaultFrameGeometry({0, 0, 1366, 768}, 1000, 600), (Placement{102, 57, 1161, 653})) << "to the nearest pixel";
    EXPECT_EQ(DefaultFrameGeometry({0, 0, 801, 601}, 1000, 750), (Placement{0, 0, 801, 601})) << "no larger than the room";
    EXPECT_EQ(DefaultFrameGeometry({0, 0, 3840, 2160}, 1000, 750).width, 32767 / 12);
    EXPECT_EQ(FitOnScreen({-50, 900, 400, 300}, {0, 20, 1000, 700}), (Placement{0, 420, 400, 300}));
    EXPECT_EQ(FitOnScreen({100, 100, 2000, 300}, {0, 20, 1000, 700}), (Placement{0, 100, 1000, 300}));
    EXPECT_EQ(FitOnScreen({10, 30, 400, 300}, {0, 20, 1000, 700}), (Placement{10, 30, 400, 300}));
}
