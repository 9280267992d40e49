// Walking a loaded tree: clicks, the focus, the game list, expanding.
#include <QComboBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>
#include <QTreeView>
#include <tuple>

#include "chess/board.h"
#include "library/ui/tree_item_model.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

const std::string kStart(chess::kInitialLayout);

std::string Layout(int node) {
    // A layout of its own for each node: a pawn on a square of its number.
    std::string s(64, '0');
    s[static_cast<size_t>(node % 64)] = 'P';
    return s;
}

// Two games and their moves, in the order an import writes them:
//  1 e4: Open          (board)
//  2   e5
//  3     Nf3
//  4       Nc6
//  5   c5: Sicilian    (board)
//  6     Nf3
//  7       d6
//  8 d4: Closed        (board, top level)
//  9   d5
LibraryBuilder Games() {
    LibraryBuilder lib("Games");
    lib.Add(1, 0, "e4: Open", "first", true, Layout(1))
        .Add(2, 1, "e5", "", false, Layout(2))
        .Add(3, 2, "Nf3", "knight out", false, Layout(3))
        .Add(4, 3, "Nc6", "", false, Layout(4))
        .Add(5, 1, "c5: Sicilian", "", true, Layout(5))
        .Add(6, 5, "Nf3", "   ", false, Layout(6))
        .Add(7, 6, "d6", "", false, Layout(7))
        .Add(8, 0, "d4: Closed", "", true, Layout(8))
        .Add(9, 8, "d5", "last", false, Layout(9));
    return lib;
}

class NavigationTest : public FrameTest {
protected:
    frmTreeView* OpenGames(const QString& name = QStringLiteral("games.vnb")) {
        frmTreeView* form = Open(Games(), name);
        EXPECT_NE(form, nullptr);
        return form;
    }
    // Starts the program with the games open.
    frmTreeView* StartWithGames() {
        StartFrame();
        return OpenGames();
    }
    // Selects and clicks a node, as the user does.
    static void Click(frmTreeView* form, int node) {
        form->SelectNode(node);
        form->tvTreeView_NodeClick(node);
    }
    static QModelIndex IndexOf(frmTreeView* form, int node) {
        return static_cast<library::TreeItemModel*>(form->tvTreeView->model())->IndexOf(node);
    }
    static bool Expanded(frmTreeView* form, int node) { return form->Contents().tree.Node(node).Expanded; }
    static bool ViewExpanded(frmTreeView* form, int node) { return form->tvTreeView->isExpanded(IndexOf(form, node)); }
    static std::vector<int> ExpandedNodes(frmTreeView* form) {
        std::vector<int> out;
        for (int n = 1; n <= form->Contents().tree.Count(); ++n) {
            EXPECT_EQ(Expanded(form, n), ViewExpanded(form, n)) << "the view follows node " << n;
            if (Expanded(form, n)) out.push_back(n);
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
    EXPECT_EQ(form->CurrentBoard(), Layout(7));
    EXPECT_EQ(forms::Board().Board(), Layout(7));
    EXPECT_EQ(forms::Moves().Lines(), (QStringList{"  1. e4      c5", "  2. Nf3     d6"}))
        << "the game's name is in the tree, not in the moves list";
    EXPECT_EQ(forms::Comments().Text(), "No comments");
    EXPECT_TRUE(Expanded(form, 1));
    EXPECT_TRUE(Expanded(form, 5));
    EXPECT_TRUE(Expanded(form, 6)) << "the ancestors open";
    EXPECT_FALSE(Expanded(form, 7)) << "not the node itself";
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 5, 6}));

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
    QTreeView* tree = form->tvTreeView;

    const QRect rect = tree->visualRect(IndexOf(form, 3));
    ASSERT_TRUE(rect.isValid());
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    EXPECT_EQ(form->GetSelectedIndex(), 3);
    EXPECT_EQ(form->CurrentNode, 3);
    EXPECT_EQ(forms::Board().Board(), Layout(3));

    // A click on the node already shown shows it again.
    forms::Board().SetBoard(kStart);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    EXPECT_EQ(forms::Board().Board(), Layout(3));

    QTest::keyClick(tree, Qt::Key_Down);
    EXPECT_EQ(form->GetSelectedIndex(), 4);
    EXPECT_EQ(form->CurrentNode, 4);
    EXPECT_EQ(forms::Board().Board(), Layout(4));
    EXPECT_EQ(forms::Moves().Lines(), (QStringList{"  1. e4      e5", "  2. Nf3     Nc6"}));

    // The right button pops up the tree menu and selects nothing.
    QTest::mouseClick(tree->viewport(), Qt::RightButton, Qt::NoModifier, rect.center());
    EXPECT_TRUE(frame->m_tree->isVisible());
    EXPECT_EQ(form->GetSelectedIndex(), 4);
    EXPECT_EQ(form->CurrentNode, 4);
    frame->m_tree->hide();

    // A press released on another node gives no click, and leaves nothing
    // that swallows the next click on the node it selected.
    const QRect two = tree->visualRect(IndexOf(form, 2));
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier, two.center());
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    EXPECT_EQ(form->CurrentNode, 2);
    forms::Board().SetBoard(kStart);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, two.center());
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

TEST_F(NavigationTest, TheFocusBringsEachLibrarysOwnNodeBack) {
    StartFrame();
    frmTreeView* a = OpenGames("a.vnb");
    LibraryBuilder other("Other");
    other.Add(1, 0, "c4", "english", false, Layout(40)).Add(2, 1, "e5", "reversed", false, Layout(41));
    frmTreeView* b = Open(other, "b.vnb");
    ASSERT_TRUE(a && b);

    Click(a, 9);
    Click(b, 2);
    ASSERT_EQ(forms::Comments().Text(), "reversed");

    a->tvTreeView_GotFocus();
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), a->Tag);
    EXPECT_EQ(forms::Board().Board(), Layout(9));
    EXPECT_EQ(forms::Comments().Text(), "last");
    EXPECT_EQ(forms::Moves().Lines(), (QStringList{"  1. d4      d5"}));

    b->tvTreeView_GotFocus();
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), b->Tag);
    EXPECT_EQ(forms::Board().Board(), Layout(41));
    EXPECT_EQ(forms::Comments().Text(), "reversed");

    // The real focus road: the tree's focus-in runs the same routine.
    QFocusEvent focusIn(QEvent::FocusIn, Qt::MouseFocusReason);
    QCoreApplication::sendEvent(a->tvTreeView, &focusIn);
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), a->Tag);
    EXPECT_EQ(forms::Comments().Text(), "last");
}

TEST_F(NavigationTest, ExpandAllAndCollapseAllTouchEveryNodeAndKeepTheSelection) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    Click(form, 4);

    frame->m_expand_tree->trigger();
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9})) << "leaves too";
    EXPECT_EQ(form->GetSelectedIndex(), 4);

    frame->m_collapse_tree->trigger();
    EXPECT_TRUE(ExpandedNodes(form).empty());
    EXPECT_EQ(form->GetSelectedIndex(), 4) << "the selection stays, hidden";
    EXPECT_EQ(forms::Board().Board(), Layout(4)) << "the board still shows it";
}

TEST_F(NavigationTest, ExpandToNextGameOpensTheRestOfTheGameAndStopsBeforeTheNextBoardNode) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    form->SelectNode(2);
    frame->mTExpandGame->trigger();
    // Node 1 is open because selecting node 2 revealed it.
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 2, 3, 4})) << "node 5 opens the next game";
    EXPECT_EQ(form->GetSelectedIndex(), 2) << "the selection does not move";

    form->ExpandTree(false);
    form->SelectNode(5);
    frame->mTExpandGame->trigger();
    EXPECT_EQ(ExpandedNodes(form), (std::vector<int>{1, 5, 6, 7})) << "a board node itself opens";

    // On the last node the command does nothing, not even to that node.
    Click(form, 9);  // opens node 8 to show 9
    const std::vector<int> before = ExpandedNodes(form);
    frame->mTExpandGame->trigger();
    EXPECT_EQ(ExpandedNodes(form), before);
    EXPECT_FALSE(Expanded(form, 9));
}

TEST_F(NavigationTest, ChoosingAGameOpensItsBranchSelectsItAndShowsIt) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    ASSERT_EQ(form->cboListGames->count(), 3);
    frame->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    form->cboListGames->setFocus();
    ASSERT_FALSE(form->tvTreeView->hasFocus());
    const int entry = form->cboListGames->findText("Sicilian");
    ASSERT_GE(entry, 0);
    form->cboListGames->setCurrentIndex(entry);
    form->cboListGames_Click();
    EXPECT_EQ(form->GetSelectedIndex(), 5);
    EXPECT_EQ(form->CurrentNode, 5);
    EXPECT_TRUE(Expanded(form, 1));
    EXPECT_EQ(form->tvTreeView->currentIndex(), IndexOf(form, 5));
    EXPECT_EQ(forms::Board().Board(), Layout(5));
    EXPECT_EQ(forms::Moves().Lines(), (QStringList{"  1. e4      c5"}));
    EXPECT_TRUE(form->tvTreeView->hasFocus()) << "the focus goes to the tree";

    // Nothing chosen: nothing happens.
    form->cboListGames->setCurrentIndex(-1);
    form->cboListGames_Click();
    EXPECT_EQ(form->GetSelectedIndex(), 5);
}

TEST_F(NavigationTest, GetSelectedIndexIsOneWhenNothingIsSelected) {
    frmTreeView form;
    EXPECT_EQ(form.GetSelectedIndex(), 1);
    form.ExpandNode();  // an empty tree: nothing to do, nothing fails
    form.tvTreeView_GotFocus();
    EXPECT_EQ(form.CurrentNode, 0);
    forms::ResetTreeViews();
}

TEST(TreeWindowPlan, ControlsFollowTheWindowAndNeverGoBelowZero) {
    const TreeWindowPlan plan = PlanTreeWindow(6000, 5000);
    EXPECT_EQ(std::tuple(plan.pictureWidth, plan.listWidth, plan.treeWidth, plan.treeHeight),
              std::tuple(6000, 4800, 5880, 4175));
    const TreeWindowPlan tiny = PlanTreeWindow(1000, 800);
    EXPECT_EQ(tiny.listWidth, 0);
    EXPECT_EQ(tiny.treeHeight, 0);
    EXPECT_EQ(PlanTreeWindow(-5, -5).treeWidth, 0);
}

TEST_F(NavigationTest, AMaximizedLibraryWindowBecomesANormalOneOverTheInnerArea) {
    frmTreeView* form = StartWithGames();
    ASSERT_NE(form, nullptr);
    QMdiSubWindow* sub = form->SubWindow();
    sub->move(30, 40);
    sub->showMaximized();
    QCoreApplication::processEvents();
    EXPECT_FALSE(sub->isMaximized());
    EXPECT_EQ(sub->geometry(), QRect(QPoint(30, 0), frame->MdiArea()->viewport()->size()));

    // The controls stay inside the window at any size.
    sub->resize(40, 30);
    QCoreApplication::processEvents();
    EXPECT_GE(form->tvTreeView->height(), 0);
    EXPECT_GE(form->cboListGames->width(), 0);
    EXPECT_LE(form->tvTreeView->geometry().right(), form->width());
}
