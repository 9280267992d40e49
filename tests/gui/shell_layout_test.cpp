// The plan of the frame's inner area: the board in the corner, comments and
// moves above it, library windows tiled or layered on the left, and the
// Show items of the Window menu.
#include <QMdiArea>
#include <QMdiSubWindow>

#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

class LayoutTest : public FrameTest {
protected:
    QWidget* BoardWindow() { return forms::OuterWindow(&forms::Board()); }
    QWidget* CommentsWindow() { return forms::OuterWindow(&forms::Comments()); }
    QWidget* MovesWindow() { return forms::OuterWindow(&forms::Moves()); }
    QSize Inner() { return frame->MdiArea()->viewport()->size(); }

    // Gives the frame an inner area of the size asked for.
    void SetInner(int width, int height) {
        const QSize now = Inner();
        frame->resize(frame->width() + width - now.width(), frame->height() + height - now.height());
        QCoreApplication::processEvents();
        ASSERT_EQ(Inner(), QSize(width, height));
    }

    LibraryBuilder Small(const std::string& book) {
        LibraryBuilder lib(book);
        lib.Add(1, 0, "e4");
        return lib;
    }
};

}  // namespace

// The windows themselves are placed by the tests below; these are the twips
// that whole pixels cannot give: 2400 stacks, 2401 gives two halves cut to
// 1200, and a frame smaller than the board gives no negative size.
TEST(LayoutPlan, TheEdgesOfTheArithmetic) {
    EXPECT_TRUE(PlanCommentsMoves(4755 + 2400, 4755).stacked);
    const CommentMovesPlan over = PlanCommentsMoves(4755 + 2401, 4755);
    EXPECT_FALSE(over.stacked);
    EXPECT_EQ(over.height, 1200);
    EXPECT_EQ(over.movesTop, 1200);
    const CommentMovesPlan none = PlanCommentsMoves(4000, 4755);
    EXPECT_TRUE(none.stacked);
    EXPECT_EQ(none.height, 0);
    EXPECT_EQ(PlanLibraryWindows(1, 3000, 9000, 4500, false)[0].width, 0);
    EXPECT_TRUE(PlanLibraryWindows(0, 12000, 9000, 4500, false).isEmpty());
}

TEST_F(LayoutTest, CommentsAndMovesStackExactlyWhenTheRoomAboveTheBoardIs2400TwipsOrLess) {
    StartFrame();
    const int boardHeight = BoardWindow()->height();
    // 200 pixels are 2400 twips.
    SetInner(1000, boardHeight + 200);
    frame->mWArrangeWindows->trigger();
    EXPECT_TRUE(CommentsMovesStacked);
    EXPECT_EQ(CommentsWindow()->geometry(), MovesWindow()->geometry());
    EXPECT_EQ(CommentsWindow()->geometry(), QRect(1000 - BoardWindow()->width(), 0, BoardWindow()->width(), 200));

    SetInner(1000, boardHeight + 201);
    frame->mWArrangeWindows->trigger();
    EXPECT_FALSE(CommentsMovesStacked);
    EXPECT_EQ(CommentsWindow()->geometry(), QRect(1000 - BoardWindow()->width(), 0, BoardWindow()->width(), 100));
    EXPECT_EQ(MovesWindow()->geometry(), QRect(1000 - BoardWindow()->width(), 100, BoardWindow()->width(), 100));
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
    frmTreeView* a = Open(Small("A"), "a.vnb");
    frmTreeView* b = Open(Small("B"), "b.vnb");
    frmTreeView* c = Open(Small("C"), "c.vnb");
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
    const QList<QMdiSubWindow*> order = frame->MdiArea()->subWindowList(QMdiArea::StackingOrder);
    EXPECT_EQ(order.last(), c->SubWindow()) << "the one opened last ends in front";
}

TEST_F(LayoutTest, ArrangeWithNoLibraryOnlyPutsTheRightColumnInOrder) {
    StartFrame();
    SetInner(1000, 900);
    BoardWindow()->move(0, 0);
    CommentsWindow()->move(10, 10);
    frame->mWArrangeWindows->trigger();
    EXPECT_EQ(BoardWindow()->geometry().bottomRight(), QPoint(999, 899));
    EXPECT_EQ(CommentsWindow()->geometry().topLeft(), QPoint(1000 - BoardWindow()->width(), 0));
}

TEST_F(LayoutTest, TheShowItemsBringTheirWindowBackAndLeaveTheMenu) {
    StartFrame();
    // The board closed by the user: hidden, its item offered.
    forms::Board().hide();
    frame->mWShowBoard->setVisible(true);
    EXPECT_FALSE(BoardWindow()->isVisible()) << "the sub-window goes with its window";

    frame->mWShowBoard->trigger();
    EXPECT_TRUE(BoardWindow()->isVisible());
    EXPECT_FALSE(forms::Board().isHidden());
    EXPECT_FALSE(frame->mWShowBoard->isVisible());

    forms::Comments().hide();
    frame->mWShowComments->setVisible(true);
    forms::Moves().hide();
    frame->mWShowMoves->setVisible(true);

    // Arrange brings the windows up but leaves the items as they are.
    frame->mWArrangeWindows->trigger();
    EXPECT_TRUE(CommentsWindow()->isVisible());
    EXPECT_TRUE(MovesWindow()->isVisible());
    EXPECT_TRUE(frame->mWShowComments->isVisible());
    EXPECT_TRUE(frame->mWShowMoves->isVisible());

    frame->mWShowComments->trigger();
    EXPECT_FALSE(frame->mWShowComments->isVisible());
    EXPECT_TRUE(frame->mWShowMoves->isVisible());
    const QList<QMdiSubWindow*> order = frame->MdiArea()->subWindowList(QMdiArea::StackingOrder);
    EXPECT_EQ(order.last(), CommentsWindow()) << "comments to the front";

    frame->mWShowMoves->trigger();
    EXPECT_FALSE(frame->mWShowMoves->isVisible());
    EXPECT_EQ(frame->MdiArea()->subWindowList(QMdiArea::StackingOrder).last(), MovesWindow());
}

TEST_F(LayoutTest, ThePopUpItemsFetchTheWindowFromBehind) {
    StartFrame();
    SetInner(900, BoardWindow()->height() + 150);
    frame->mWArrangeWindows->trigger();
    ASSERT_TRUE(CommentsMovesStacked);
    ASSERT_EQ(frame->MdiArea()->subWindowList(QMdiArea::StackingOrder).last(), MovesWindow());
    frame->mMPUShowComments->trigger();
    EXPECT_EQ(frame->MdiArea()->subWindowList(QMdiArea::StackingOrder).last(), CommentsWindow());
    frame->mCPUMShowMoves->trigger();
    EXPECT_EQ(frame->MdiArea()->subWindowList(QMdiArea::StackingOrder).last(), MovesWindow());
}

TEST_F(LayoutTest, AMinimizedFrameLeavesThePlanAlone) {
    StartFrame();
    SetInner(1000, 900);
    const QRect board = BoardWindow()->geometry();
    const QRect comments = CommentsWindow()->geometry();
    frame->showMinimized();
    QCoreApplication::processEvents();
    ASSERT_TRUE(frame->isMinimized());
    BoardWindow()->move(5, 5);
    frame->ShowBoard();
    frame->ShowCommentMovesWindow();
    frame->ShowCommentWindow();
    EXPECT_EQ(BoardWindow()->pos(), QPoint(5, 5));
    EXPECT_EQ(CommentsWindow()->geometry(), comments);
    BoardWindow()->setGeometry(board);
}
