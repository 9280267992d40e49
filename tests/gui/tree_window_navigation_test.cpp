// Walking a loaded tree: clicks, the focus, the game list, expanding, and
// the window's controls.
#include "gui_test_support.h"

namespace {

// A layout of its own for each node: a pawn on the square of its number.
std::string Layout(int node) {
    std::string s(64, '0');
    s[static_cast<size_t>(node % 64)] = 'P';
    return s;
}

// Two games and their moves, in the order an import writes them:
//  1 e4: Open (2 e5, 3 Nf3, 4 Nc6), 5 c5: Sicilian under 1 (6 Nf3, 7 d6),
//  8 d4: Closed on the top level (9 d5).
LibraryBuilder Games() {
    LibraryBuilder lib("Games");
    const int parents[] = {0, 1, 2, 3, 1, 5, 6, 0, 8};
    const char* moves[] = {"e4: Open", "e5", "Nf3", "Nc6", "c5: Sicilian", "Nf3", "d6", "d4: Closed", "d5"};
    const char* remarks[] = {"first", "", "knight out", "", "", "   ", "", "", "last"};
    for (int i = 1; i <= 9; ++i)
        lib.Add(i, parents[i - 1], moves[i - 1], remarks[i - 1], i == 1 || i == 5 || i == 8, Layout(i));
    return lib;
}

class NavigationTest : public FrameTest {
protected:
    frmTreeView* StartWithGames() {
        StartFrame();
        return Open(Games(), "games.vnb");
    }
    static QModelIndex IndexOf(frmTreeView* form, int node) {
        return static_cast<library::TreeItemModel*>(form->tvTreeView->model())->IndexOf(node);
    }
    static std::vector<int> ExpandedNodes(frmTreeView* form) {
        std::vector<int> out;
        for (int n = 1; n <= form->Contents().tree.Count(); ++n) {
            const bool expanded = form->Contents().tree.Node(n).Expanded;
            EXPECT_EQ(expanded, form->tvTreeView->isExpanded(IndexOf(form, n))) << "the view follows node " << n;
            if (expanded) out.push_back(n);
        }
        return out;
    }
};

}  // namespace

TEST_F(NavigationTest, ANodeClickShowsTheNodeInTheSharedWindowsAndOpensItsBranch) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    Click(form, 7);
    EXPECT_EQ(form->CurrentNode, 7);
    EXPECT_EQ(forms::Board().Board(), Layout(7));
    EXPECT_EQ(forms::Moves().Lines(), (QStringList{"  1. e4      c5", "  2. Nf3     d6"}));
    EXPECT_EQ(forms::Comments().Text(), "No comments");
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 5, 6})) << "the ancestors open, not the node itself";
    form->tvTreeView_NodeClick(6);
    EXPECT_EQ(forms::Comments().Text(), "No comments") << "a comment of blanks is none";
    form->tvTreeView_NodeClick(3);
    EXPECT_EQ(forms::Comments().Text(), "knight out");
}

TEST_F(NavigationTest, AMouseClickAndTheArrowKeysCountAsNodeClicksTheRightButtonDoesNot) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    form->ExpandTree(true);
    QCoreApplication::processEvents();
    QWidget* area = form->tvTreeView->viewport();
    const QPoint three = form->tvTreeView->visualRect(IndexOf(form, 3)).center();
    QTest::mouseClick(area, Qt::LeftButton, Qt::NoModifier, three);
    EXPECT_EQ(form->GetSelectedIndex(), 3);
    EXPECT_EQ(forms::Board().Board(), Layout(3));
    forms::Board().SetBoard(kStart);
    QTest::mouseClick(area, Qt::LeftButton, Qt::NoModifier, three);
    EXPECT_EQ(forms::Board().Board(), Layout(3)) << "a click on the node shown shows it again";
    QTest::keyClick(form->tvTreeView, Qt::Key_Down);
    EXPECT_EQ(form->CurrentNode, 4);
    EXPECT_EQ(forms::Moves().Lines(), (QStringList{"  1. e4      e5", "  2. Nf3     Nc6"}));
    // The right button pops up the tree menu and selects nothing.
    QTest::mouseClick(area, Qt::RightButton, Qt::NoModifier, three);
    EXPECT_TRUE(frame->m_tree->isVisible());
    frame->m_tree->hide();
    EXPECT_EQ(std::tuple(form->GetSelectedIndex(), form->CurrentNode), std::tuple(4, 4));
    // A press released on another node leaves nothing that swallows the next
    // click on the node it selected.
    const QPoint two = form->tvTreeView->visualRect(IndexOf(form, 2)).center();
    QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, two);
    QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, three);
    forms::Board().SetBoard(kStart);
    QTest::mouseClick(area, Qt::LeftButton, Qt::NoModifier, two);
    EXPECT_EQ(forms::Board().Board(), Layout(2));
}

TEST_F(NavigationTest, ANodeDeeperThanTheViewIsWideComesIntoViewSideways) {
    StartFrame();
    frmTreeView* form = Open(Chain(80));
    ASSERT_NE(form, nullptr);
    QTreeView* tree = form->tvTreeView;
    const auto inView = [&](int node) {
        QCoreApplication::processEvents();
        const int left = tree->visualRect(IndexOf(form, node)).left();
        return left >= 0 && left + 20 < tree->viewport()->width();
    };
    for (const int node : {80, 40, 79, 3}) {
        Click(form, node);
        EXPECT_TRUE(inView(node)) << node;
    }
    Click(form, 80);
    QTest::keyClick(tree, Qt::Key_Up);
    EXPECT_EQ(form->CurrentNode, 79);
    EXPECT_TRUE(inView(79)) << "an arrow key too";
}

TEST_F(NavigationTest, ExpandAllCollapseAllAndExpandToNextGame) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    Click(form, 4);
    frame->m_expand_tree->trigger();
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9})) << "leaves too";
    frame->m_collapse_tree->trigger();
    EXPECT_TRUE(ExpandedNodes(form).empty());
    EXPECT_EQ(form->GetSelectedIndex(), 4) << "the selection stays, hidden";
    EXPECT_EQ(forms::Board().Board(), Layout(4));
    form->SelectNode(2);  // reveals node 1
    frame->mTExpandGame->trigger();
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 2, 3, 4})) << "node 5 opens the next game";
    EXPECT_EQ(form->GetSelectedIndex(), 2) << "the selection does not move";
    form->ExpandTree(false);
    form->SelectNode(5);
    frame->mTExpandGame->trigger();
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 5, 6, 7})) << "a board node itself opens";
}

TEST_F(NavigationTest, ChoosingAGameOpensItsBranchSelectsItShowsItAndFocusesTheTree) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    frame->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    form->cboListGames->setFocus();
    form->cboListGames->setCurrentIndex(form->cboListGames->findText("Sicilian"));
    form->cboListGames_Click();
    EXPECT_EQ(std::tuple(form->GetSelectedIndex(), form->CurrentNode), std::tuple(5, 5));
    EXPECT_EQ(form->tvTreeView->currentIndex(), IndexOf(form, 5));
    EXPECT_TRUE(form->Contents().tree.Node(1).Expanded);
    EXPECT_EQ(forms::Board().Board(), Layout(5));
    EXPECT_TRUE(form->tvTreeView->hasFocus());
}

TEST_F(NavigationTest, TheControlsKeepInsideTheWindowAndAMaximizedWindowTakesTheInnerArea) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    QMdiSubWindow* sub = form->SubWindow();
    sub->resize(600, 500);
    QCoreApplication::processEvents();
    for (QWidget* control : {static_cast<QWidget*>(form->tvTreeView), static_cast<QWidget*>(form->cboListGames)})
        EXPECT_TRUE(form->rect().contains(control->geometry())) << control->objectName().toStdString();
    EXPECT_GT(form->tvTreeView->height(), form->height() / 2) << "the tree takes the window below the strip";
    sub->move(30, 40);
    sub->showMaximized();
    QCoreApplication::processEvents();
    EXPECT_FALSE(sub->isMaximized());
    EXPECT_EQ(sub->geometry(), QRect(QPoint(30, 0), frame->MdiArea()->viewport()->size()));
}
