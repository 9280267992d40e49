// Find and Find Next through the menu road (the register, the setup dialog,
// the walk of a library window with the node it ends on shown), and the
// setup dialog itself: its buttons, its opening, the library selector and
// the drops as the window receives them. The order of the walk and what a
// drop does to the squares are the core's.
#include "gui_test_support.h"
#include <set>
#include "board/search_window.h"

using board::DragSource;

namespace {

const std::string kEmpty(64, '0');

// The layout s with one square changed.
std::string With(std::string s, int square, char c) {
    s.replace(static_cast<std::size_t>(square), 1, 1, c);
    return s;
}
const std::string kTarget = With(With(kStart, 12, '0'), 28, 'P');

// A position of its own for node i, so that only chosen nodes match.
std::string Unique(int i) { return With(With(kStart, 16 + i % 32, 'N'), 47 - i / 32, 'n'); }

// Ten nodes in file order; nodes 6..10 hang below node 2, so the order of
// the file is not the order on the screen.
LibraryBuilder Ten(std::set<int> matches, const std::string& book = "Ten") {
    LibraryBuilder lib(book);
    for (int i = 1; i <= 10; ++i)
        lib.Add(i, i == 1 ? 0 : i <= 5 ? i - 1 : 2, "m" + std::to_string(i), "", false,
                matches.count(i) ? kTarget : Unique(i));
    return lib;
}

LibraryBuilder OneNode(const std::string& book, const std::string& layout = kStart) {
    LibraryBuilder lib(book);
    lib.Add(1, 0, "e4", "", false, layout);
    return lib;
}

// Delivers a drag of `payload` that enters `target` and is dropped at `at`;
// whether the drop was taken.
bool Drop(QWidget* target, QPointF at, const QByteArray& payload) {
    QMimeData mime;
    mime.setData(QString::fromLatin1(FrmSearchTree::kMimeType), payload);
    QDragEnterEvent enter(at.toPoint(), Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(at, Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
    return drop.isAccepted();
}

// The position the setup window keeps for the whole run starts empty in
// every test; the Find dialog searches for `search`, or cancels.
class SearchTest : public FrameTest {
protected:
    void SetUp() override {
        FrameTest::SetUp();
        FrmSearchTree::szSetupBoard.clear();
        onModal = [this](QDialog& dialog) {
            auto* form = qobject_cast<FrmSearchTree*>(&dialog);
            if (!form) return static_cast<int>(QDialog::Rejected);
            ++dialogs;
            if (chooseLibrary >= 0) form->cboLibSelect->setCurrentIndex(chooseLibrary);
            if (!cancel) {
                FrmSearchTree::szSetupBoard = search;
                form->DisplayBoard();
            }
            (cancel ? form->cmdCancel : form->cmdSearch)->click();
            return form->result();
        };
    }
    void TearDown() override {
        FrmSearchTree::szSetupBoard.clear();
        FrameTest::TearDown();
    }
    static int Selected(frmTreeView* form) { return form->Contents().tree.Selected(); }
    std::string search = kTarget;
    bool cancel = false;
    int chooseLibrary = -1, dialogs = 0;
};

}  // namespace

TEST_F(SearchTest, TheWorkedPassFindsEightThenThreeThenReportsNoMatch) {
    StartFrame();
    frame->TreeViews().Find();
    frame->TreeViews().FindNext();
    EXPECT_EQ(messages.Texts(), (QStringList{"No open libraries", "No open libraries"}));
    EXPECT_EQ(dialogs, 0);
    frmTreeView* form = Open(Ten({3, 8}));
    ASSERT_NE(form, nullptr);
    search = kStart;  // no node has it: the start node is shown again
    Click(form, 7);
    forms::Board().SetBoard(kStart);
    frame->TreeViews().Find();
    EXPECT_EQ(forms::Board().Board(), Unique(7));
    search = kTarget;
    Click(form, 5);
    messages.messages.clear();
    frame->TreeViews().Find();
    EXPECT_EQ(std::tuple(Selected(form), form->CurrentNode), std::tuple(8, 8));
    EXPECT_EQ(forms::Board().Board(), kTarget) << "the node found is shown as by a click";
    frame->TreeViews().FindNext();
    EXPECT_EQ(dialogs, 2) << "a library with a search goes on without the dialog";
    EXPECT_EQ(Selected(form), 3);
    frame->TreeViews().FindNext();
    EXPECT_EQ(Selected(form), 3) << "the pass has ended at node 5";
    ASSERT_EQ(messages.Texts(), QStringList{"No match found"});
    EXPECT_TRUE(messages.messages[0].title.isEmpty());
    EXPECT_EQ(form->iSearchStart, 5) << "the start stays fixed through Find Next";
    // Find Next in a library without a search opens the dialog.
    frmTreeView* other = Open(Ten({4}, "Other"), "other.vnb");
    ASSERT_NE(other, nullptr);
    frame->TreeViews().FindNext();
    EXPECT_EQ(dialogs, 3);
    EXPECT_EQ(Selected(other), 4);
}

TEST_F(SearchTest, EachLibraryKeepsItsOwnSearchAndTheSelectorChoosesOneAtOnce) {
    StartFrame();
    frmTreeView* a = Open(Ten({3}, "A"), "a.vnb");
    frmTreeView* b = Open(Ten({1, 9}, "B"), "b.vnb");
    ASSERT_NE(Open(OneNode("C"), "c.vnb"), nullptr);
    {
        FrmSearchTree f(frame->TreeViews());
        f.Form_Load();
        ASSERT_EQ(f.cboLibSelect->count(), 3);
        EXPECT_FALSE(f.cboLibSelect->isHidden());
        EXPECT_EQ(f.cboLibSelect->itemText(1), "B");
        EXPECT_EQ(f.cboLibSelect->currentIndex(), -1) << "no entry chosen at the start";
        f.cboLibSelect->setCurrentIndex(1);
        EXPECT_EQ(frame->TreeViews().GetActiveKey(), b->Tag) << "at once";
        f.cmdCurrent->click();
        EXPECT_EQ(FrmSearchTree::szSetupBoard, kTarget) << "the board of the library chosen";
    }
    // In the dialog the user picks the first library: it is searched.
    chooseLibrary = 0;
    frame->TreeViews().Find();
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), a->Tag);
    EXPECT_EQ(Selected(a), 3);
    // Picking the second and closing the dialog leaves the first's search intact.
    onModal = [this](QDialog& dialog) {
        ++dialogs;
        qobject_cast<FrmSearchTree*>(&dialog)->cboLibSelect->setCurrentIndex(1);
        dialog.show();
        dialog.close();
        return dialog.result();
    };
    frame->TreeViews().Find();
    EXPECT_EQ(frame->TreeViews().GetActiveKey(), b->Tag) << "Cancel does not undo the choice";
    EXPECT_FALSE(b->CurrentSearch());
    EXPECT_EQ(a->iSearchStart, 1);
    // A goes on with its own search at once.
    frame->TreeViews().SetActive(a->Tag);
    frame->TreeViews().FindNext();
    EXPECT_EQ(dialogs, 2);
    EXPECT_EQ(Selected(a), 3) << "the one match, found again at the end of the pass";
}

TEST_F(SearchTest, TheSetupWindowOpensOnTheTreeBoardOnceAndLaterOnTheKeptPosition) {
    StartFrame();
    ASSERT_NE(Open(OneNode("Lib", kTarget)), nullptr);
    {
        FrmSearchTree f(frame->TreeViews());
        for (QPushButton* button : {f.cmdReset, f.cmdCurrent, f.cmdClear, f.cmdSearch, f.cmdCancel})
            EXPECT_FALSE(button->isDefault() || button->autoDefault()) << "Enter presses none of them";
        f.Form_Load();
        EXPECT_EQ(FrmSearchTree::szSetupBoard, kTarget);
        EXPECT_TRUE(f.cboLibSelect->isHidden()) << "one library: no selector";
        EXPECT_EQ(f.Board()->Picture(28), 'P');
        f.cmdReset->click();
        f.show();
        QTest::keyClick(&f, Qt::Key_Escape);
        EXPECT_TRUE(f.isVisible()) << "none is the cancel button: Esc does nothing";
        f.cmdCancel->click();
    }
    {
        FrmSearchTree f(frame->TreeViews());
        f.Form_Load();
        EXPECT_EQ(f.Board()->Picture(12), 'P') << "the last board button stays in force after Cancel";
        f.Image2_DragDrop(20, DragSource::Palette(4));  // an edit, lost on Cancel
        f.cmdClear->click();
        f.Image2_DragDrop(20, DragSource::Palette(4));
        f.cmdCancel->click();
    }
    EXPECT_EQ(FrmSearchTree::szSetupBoard, kEmpty);
    FrmSearchTree f(frame->TreeViews());
    f.Form_Load();
    EXPECT_EQ(f.Board()->Entries(), kEmpty);
}

TEST_F(SearchTest, ReversedTheSetupBoardShowsBlackBelowAndSearchesWhatTheLabelsShow) {
    StartFrame();
    ASSERT_NE(Open(OneNode("Lib")), nullptr);
    bReverseSides = true;
    FrmSearchTree f(frame->TreeViews());
    f.Form_Load();
    EXPECT_EQ(f.Board()->Caption(0) + f.Board()->Caption(7) + f.Board()->Caption(8) + f.Board()->Caption(15), "ha81");
    EXPECT_EQ(f.Board()->Picture(0), 'r');
    // A white queen dropped on the square labelled e4 (screen square 35).
    f.Image2_DragDrop(35, DragSource::Palette(4));
    f.cmdSearch->click();
    EXPECT_EQ(f.result(), QDialog::Accepted);
    EXPECT_EQ(FrmSearchTree::szSetupBoard, With(kStart, 28, 'Q'));
}

TEST_F(SearchTest, DropEventsOnTheBoardAndTheTrashBecomeDropsThatSearchReads) {
    StartFrame();
    ASSERT_NE(Open(OneNode("Lib")), nullptr);
    FrmSearchTree f(frame->TreeViews());
    f.Form_Load();
    f.resize(f.sizeHint());
    const auto square = [&](int k) { return f.Board()->SquareRect(k).center(); };
    // A black knight from the palette onto e4, the pawn of e2 to e3, the rook
    // of a1 into the trash.
    EXPECT_TRUE(Drop(f.Board(), square(28), f.DragPayload(DragSource::Palette(8))));
    EXPECT_TRUE(Drop(f.Board(), square(20), f.DragPayload(DragSource::Square(12))));
    EXPECT_TRUE(Drop(f.imgTrash, QPointF(5, 5), f.DragPayload(DragSource::Square(0))));
    EXPECT_FALSE(Drop(f.Board(), square(37), QByteArray("garbage"))) << "a drag of anything else is not taken";
    EXPECT_EQ(FrmSearchTree::szSetupBoard, kStart) << "edits live in the tags until Search";
    f.cmdSearch->click();
    EXPECT_EQ(FrmSearchTree::szSetupBoard, With(With(With(With(kStart, 28, 'n'), 12, '0'), 20, 'P'), 0, '0'));
}
