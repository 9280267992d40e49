// The plan of the frame's inner area (the board in the corner, comments and
// moves above it, library windows tiled or layered on the left) and the
// register of open libraries: keys, the active library, and what the shared
// windows show as libraries come and go.
#include "gui_test_support.h"

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
};

}  // namespace

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
    EXPECT_EQ(frame->MdiArea()->subWindowList(QMdiArea::StackingOrder).last(), c->SubWindow())
        << "the one opened last ends in front";
}

namespace {

// A layout that differs from the start position on e4.
std::string Layout(char c) {
    std::string s = kStart;
    s[28] = c;
    return s;
}

LibraryBuilder Named(const std::string& book, char piece) {
    LibraryBuilder lib(book);
    lib.Add(1, 0, "e4", book + " comment", false, Layout(piece)).Add(2, 1, "e5", "", false, Layout(piece));
    return lib;
}

class RegisterTest : public FrameTest {};

}  // namespace

TEST_F(RegisterTest, KeysCountUpAreNotReusedInOneRunAndStopAtTheLastOne) {
    StartFrame();
    frmTreeView* first = Open(Named("One", 'P'));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->Tag, "TV00001");
    ASSERT_TRUE(CloseByUser(first));
    frmTreeView* second = Open(Named("Two", 'P'));
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->Tag, "TV00002");
    EXPECT_EQ(frame->TreeViews().Item("TV00002"), second);
    EXPECT_EQ(frame->TreeViews().Item("TV00001"), nullptr);
    ASSERT_TRUE(CloseByUser(second));
    // An exhausted counter refuses a new window instead of wrapping.
    frame->TreeViews().SetWindowCounter(32766);
    ASSERT_NE(Open(Named("Last", 'P')), nullptr);
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), "TV32767");
    EXPECT_EQ(Open(Named("Beyond", 'P'), "beyond.vnb"), nullptr);
    EXPECT_EQ(frame->TreeViews().Count(), 1);
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), "TV32767");
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_TRUE(messages.messages[0].text.contains("cannot open any more library windows"));
}

TEST_F(RegisterTest, ClosingALibraryMovesTheActiveKeyOnlyIfItWasActiveAndTheLastOneClearsTheSharedWindows) {
    StartFrame();
    frmTreeView* a = Open(Named("A", 'P'), "a.vnb");
    frmTreeView* b = Open(Named("B", 'N'), "b.vnb");
    frmTreeView* c = Open(Named("C", 'R'), "c.vnb");
    frmTreeView* d = Open(Named("D", 'B'), "d.vnb");
    ASSERT_TRUE(a && b && c && d);
    a->tvTreeView_GotFocus();
    d->tvTreeView_GotFocus();
    ASSERT_EQ(forms::Board().Board(), Layout('B'));
    ASSERT_TRUE(CloseByUser(c));
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), d->Tag) << "not the active one: nothing moves";
    ASSERT_TRUE(CloseByUser(d));
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), b->Tag) << "the most recently opened of those left";
    EXPECT_EQ(forms::Board().Board(), Layout('B')) << "the closed library's node stays until a tree gets the focus";
    EXPECT_EQ(forms::Comments().Text(), "D comment");
    QFocusEvent focusIn(QEvent::FocusIn, Qt::MouseFocusReason);  // the tree's own focus road
    QCoreApplication::sendEvent(a->tvTreeView, &focusIn);
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), a->Tag);
    EXPECT_EQ(forms::Board().Board(), Layout('P'));
    EXPECT_EQ(forms::Comments().Text(), "A comment");
    ASSERT_TRUE(CloseByUser(b));
    ASSERT_TRUE(CloseByUser(a));
    EXPECT_TRUE(frame->TreeViews().GetActiveKey().isEmpty());
    EXPECT_EQ(forms::Comments().Text(), "") << "empty, not \"No comments\"";
    EXPECT_TRUE(forms::Moves().Lines().isEmpty());
    EXPECT_EQ(forms::Board().Board(), kStart);
    EXPECT_FALSE(forms::StatusLoaded()) << "the please-wait window goes with the library";
}

TEST_F(RegisterTest, ANewLibraryTakesTheLeftOfTheFrameBesideTheBoard) {
    StartFrame();
    frmTreeView* form = Open(Named("Left", 'P'));
    ASSERT_NE(form, nullptr);
    const QSize inner = frame->MdiArea()->viewport()->size();
    const int boardWidth = forms::OuterWindow(&forms::Board())->width();
    EXPECT_EQ(forms::OuterWindow(form)->geometry(), QRect(0, 0, inner.width() - boardWidth, inner.height()));
}

TEST_F(RegisterTest, TheLibraryBroughtToTheFrontIsTheActiveOneWithTheFocusGivenBackWhereItWas) {
    StartFrame();
    frame->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    frmTreeView* a = Open(Named("A", 'P'), "a.vnb");
    frmTreeView* b = Open(Named("B", 'N'), "b.vnb");
    ASSERT_TRUE(a && b);
    QMdiArea* area = frame->MdiArea();
    const auto front = [&] { return std::tuple(QApplication::focusWidget(), frame->TreeViews().Active(), forms::Board().Board()); };
    area->setActiveSubWindow(a->SubWindow());  // the Window menu, a click on the frame
    EXPECT_EQ(front(), std::tuple(static_cast<QWidget*>(a->tvTreeView), a, Layout('P')));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(area->activeSubWindow(), b->SubWindow());
    b->cboListGames->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    ASSERT_EQ(area->activeSubWindow(), a->SubWindow());
    EXPECT_EQ(front(), std::tuple(static_cast<QWidget*>(a->tvTreeView), a, Layout('P')));
    area->setActiveSubWindow(b->SubWindow());
    EXPECT_EQ(front(), std::tuple(static_cast<QWidget*>(b->cboListGames), b, Layout('N')))
        << "the control that last had the focus, and the library in front is the active one";
}
