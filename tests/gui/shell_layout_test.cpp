// The plan of the frame's inner area: the board in the corner, comments and
// moves above it, library windows tiled or layered on the left, and the
// Show items of the Window menu.
#include <QMdiArea>
#include <QMdiSubWindow>
#include <tuple>

#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

class LayoutTest : public FrameTest {
protected:
    QWidget* BoardWindow() { return forms::OuterWindow(&forms::Board()); }
    QWidget* CommentsWindow() { return forms::OuterWindow(&forms::Comments()); }
    QWidget* MovesWindow() { return forms::OuterWindow(&forms::Moves()); }
    QWidget* Front() { return frame->MdiArea()->subWindowList(QMdiArea::StackingOrder).last(); }
    QSize Inner() { return frame->MdiArea()->viewport()->size(); }
    // Gives the frame an inner area of the size asked for.
    void SetInner(int width, int height) {
        const QSize now = Inner();
        frame->resize(frame->width() + width - now.width(), frame->height() + height - now.height());
        QCoreApplication::processEvents();
        ASSERT_EQ(Inner(), QSize(width, height));
    }
};

}  // namespace

// The twips that whole pixels cannot give: 2400 stacks, 2401 gives two
// halves cut to 1200, a frame smaller than the board gives no negative size;
// the tree window's controls as the window's size less their margins.
TEST(LayoutPlan, TheEdgesOfTheArithmetic) {
    EXPECT_TRUE(PlanCommentsMoves(4755 + 2400, 4755).stacked);
    const CommentMovesPlan over = PlanCommentsMoves(4755 + 2401, 4755);
    EXPECT_EQ(std::tuple(over.stacked, over.height, over.movesTop), std::tuple(false, 1200, 1200));
    const CommentMovesPlan none = PlanCommentsMoves(4000, 4755);
    EXPECT_EQ(std::tuple(none.stacked, none.height), std::tuple(true, 0));
    EXPECT_EQ(PlanLibraryWindows(1, 3000, 9000, 4500, false)[0].width, 0);
    const TreeWindowPlan tree = PlanTreeWindow(6000, 5000);
    EXPECT_EQ(std::tuple(tree.pictureWidth, tree.listWidth, tree.treeWidth, tree.treeHeight),
              std::tuple(6000, 4800, 5880, 4175));
}

TEST_F(LayoutTest, CommentsAndMovesStackExactlyWhenTheRoomAboveTheBoardIs2400TwipsOrLess) {
    StartFrame();
    const int boardHeight = BoardWindow()->height();
    const int left = 1000 - BoardWindow()->width(), width = BoardWindow()->width();
    SetInner(1000, boardHeight + 200);  // 2400 twips
    frame->mWArrangeWindows->trigger();
    EXPECT_TRUE(CommentsMovesStacked);
    EXPECT_EQ(CommentsWindow()->geometry(), QRect(left, 0, width, 200));
    EXPECT_EQ(MovesWindow()->geometry(), QRect(left, 0, width, 200));
    SetInner(1000, boardHeight + 201);
    frame->mWArrangeWindows->trigger();
    EXPECT_FALSE(CommentsMovesStacked);
    EXPECT_EQ(CommentsWindow()->geometry(), QRect(left, 0, width, 100));
    EXPECT_EQ(MovesWindow()->geometry(), QRect(left, 100, width, 100));
}

TEST_F(LayoutTest, TheBoardSitsInTheBottomRightCornerAndAResizeMovesItButNotCommentsAndMoves) {
    StartFrame();
    SetInner(1000, 800);
    EXPECT_EQ(BoardWindow()->geometry().bottomRight(), QPoint(999, 799));
    frame->mWLayerWindows->trigger();
    const QRect comments = CommentsWindow()->geometry();
    SetInner(1200, 900);
    EXPECT_EQ(CommentsWindow()->geometry(), comments);
    EXPECT_EQ(BoardWindow()->geometry().bottomRight(), QPoint(1199, 899));
}

TEST_F(LayoutTest, ArrangeTilesTheLibrariesAndLayerStacksThemAllRestoringMinimizedOnes) {
    StartFrame();
    SetInner(1000, 900);
    LibraryBuilder lib("L");
    lib.Add(1, 0, "e4");
    frmTreeView* a = Open(lib, "a.vnb");
    frmTreeView* b = Open(lib, "b.vnb");
    frmTreeView* c = Open(lib, "c.vnb");
    ASSERT_TRUE(a && b && c);
    a->SubWindow()->showMinimized();
    frame->mWArrangeWindows->trigger();
    const int width = 1000 - BoardWindow()->width();
    EXPECT_FALSE(a->SubWindow()->isMinimized());
    EXPECT_EQ(a->SubWindow()->geometry(), QRect(0, 0, width, 300));
    EXPECT_EQ(b->SubWindow()->geometry(), QRect(0, 300, width, 300));
    EXPECT_EQ(c->SubWindow()->geometry(), QRect(0, 600, width, 300));
    frame->mWLayerWindows->trigger();
    for (frmTreeView* form : {a, b, c}) EXPECT_EQ(form->SubWindow()->geometry(), QRect(0, 0, width, 900));
    EXPECT_EQ(Front(), c->SubWindow()) << "the one opened last ends in front";
}

TEST_F(LayoutTest, ArrangeBringsClosedWindowsUpAndTheShowItemsBringTheirWindowToTheFront) {
    StartFrame();
    frame->show();
    EXPECT_FALSE(CommentsWindow()->close());
    EXPECT_FALSE(MovesWindow()->close());
    frame->mWArrangeWindows->trigger();
    EXPECT_TRUE(CommentsWindow()->isVisible());
    EXPECT_TRUE(MovesWindow()->isVisible());
    EXPECT_TRUE(frame->mWShowComments->isVisible()) << "Arrange leaves the items as they are";
    EXPECT_TRUE(frame->mWShowMoves->isVisible());
    frame->mWShowComments->trigger();
    EXPECT_FALSE(frame->mWShowComments->isVisible());
    EXPECT_EQ(Front(), CommentsWindow());
    frame->mWShowMoves->trigger();
    EXPECT_FALSE(frame->mWShowMoves->isVisible());
    EXPECT_EQ(Front(), MovesWindow());
}

TEST_F(LayoutTest, ThePopUpItemsFetchTheWindowFromBehind) {
    StartFrame();
    SetInner(900, BoardWindow()->height() + 150);
    frame->mWArrangeWindows->trigger();
    ASSERT_TRUE(CommentsMovesStacked);
    ASSERT_EQ(Front(), MovesWindow());
    frame->mMPUShowComments->trigger();
    EXPECT_EQ(Front(), CommentsWindow());
    frame->mCPUMShowMoves->trigger();
    EXPECT_EQ(Front(), MovesWindow());
}
