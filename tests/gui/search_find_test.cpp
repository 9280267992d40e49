// Find and Find Next through the menu road: the register, the setup dialog
// and the walk of a library window, with the node it ends on shown. The
// order of the walk itself is the core's.
#include <QComboBox>
#include <QPushButton>
#include <set>

#include "search_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

const std::string kTarget = With(With(kStartLayout, 12, '0'), 28, 'P');

// A position of its own for node i, so that only chosen nodes match.
std::string Unique(int i) { return With(With(kStartLayout, 16 + i % 32, 'N'), 47 - i / 32, 'n'); }

// Ten nodes in file order; nodes 6..10 hang below node 2, so the order of
// the file is not the order on the screen.
LibraryBuilder Ten(std::set<int> matches, const std::string& book = "Ten") {
    LibraryBuilder lib(book);
    for (int i = 1; i <= 10; ++i)
        lib.Add(i, i == 1 ? 0 : i <= 5 ? i - 1 : 2, "m" + std::to_string(i), "", false,
                matches.count(i) ? kTarget : Unique(i));
    return lib;
}

class FindTest : public SearchTest {
protected:
    void SetUp() override {
        SearchTest::SetUp();
        // The dialog searches for whatever `search` holds, or cancels.
        onModal = [this](QDialog& dialog) {
            auto* form = qobject_cast<FrmSearchTree*>(&dialog);
            if (!form) return static_cast<int>(QDialog::Rejected);
            ++dialogs;
            if (chooseLibrary >= 0) form->cboLibSelect->setCurrentIndex(chooseLibrary);
            if (cancel) {
                form->cmdCancel->click();
                return form->result();
            }
            FrmSearchTree::szSetupBoard = search;
            form->DisplayBoard();
            form->cmdSearch->click();
            return form->result();
        };
    }
    static void Select(frmTreeView* form, int node) {
        form->SelectNode(node);
        form->tvTreeView_NodeClick(node);
    }
    static int Selected(frmTreeView* form) { return form->Contents().tree.Selected(); }

    std::string search = kTarget;
    bool cancel = false;
    int chooseLibrary = -1;
    int dialogs = 0;
};

TEST_F(FindTest, TheWorkedPassFindsEightThenThreeThenReportsNoMatchAndKeepsTheStart) {
    StartFrame();
    forms::TreeViews().Find();
    forms::TreeViews().FindNext();
    EXPECT_EQ(messages.Texts(), (QStringList{"No open libraries", "No open libraries"}));
    EXPECT_EQ(dialogs, 0);
    frmTreeView* form = Open(Ten({3, 8}));
    ASSERT_NE(form, nullptr);
    Select(form, 5);
    messages.messages.clear();

    forms::TreeViews().Find();
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(Selected(form), 8);
    EXPECT_EQ(form->CurrentNode, 8);
    EXPECT_EQ(forms::Board().Board(), kTarget) << "the node found is shown as by a click";
    forms::TreeViews().FindNext();
    EXPECT_EQ(dialogs, 1) << "a library with a search goes on without the dialog";
    EXPECT_EQ(Selected(form), 3);
    forms::Board().SetBoard(kStartLayout);
    forms::TreeViews().FindNext();
    EXPECT_EQ(Selected(form), 3) << "the pass has ended at node 5";
    EXPECT_EQ(forms::Board().Board(), kTarget) << "the node stays shown";
    ASSERT_EQ(messages.Texts(), QStringList{"No match found"});
    EXPECT_TRUE(messages.messages[0].title.isEmpty());
    EXPECT_EQ(form->iSearchStart, 5) << "the start stays fixed through Find Next";
    EXPECT_TRUE(form->CurrentSearch()) << "the search stays in force";

    // Find Next in a library without a search opens the dialog.
    frmTreeView* other = Open(Ten({4}, "Other"), "other.vnb");
    ASSERT_NE(other, nullptr);
    forms::TreeViews().FindNext();
    EXPECT_EQ(dialogs, 2);
    EXPECT_EQ(Selected(other), 4);
}

TEST_F(FindTest, CancelAndTheCloseBoxLeaveTheWindowAndItsSearchAlone) {
    StartFrame();
    frmTreeView* form = Open(Ten({3, 8}));
    ASSERT_NE(form, nullptr);
    // A Find without a match shows its start node again.
    search = kStartLayout;
    Select(form, 7);
    forms::Board().SetBoard(kStartLayout);
    forms::TreeViews().Find();
    EXPECT_EQ(messages.Texts(), QStringList{"No match found"});
    EXPECT_EQ(Selected(form), 7);
    EXPECT_EQ(forms::Board().Board(), Unique(7));
    messages.messages.clear();

    search = kTarget;
    Select(form, 5);
    forms::TreeViews().Find();
    ASSERT_EQ(Selected(form), 8);
    Select(form, 2);
    cancel = true;
    forms::TreeViews().Find();
    onModal = [this](QDialog& dialog) {  // the close box counts as Cancel
        ++dialogs;
        dialog.show();
        dialog.close();
        return dialog.result();
    };
    forms::TreeViews().Find();
    EXPECT_EQ(dialogs, 4);
    EXPECT_EQ(Selected(form), 2);
    EXPECT_EQ(form->szSearchBoard, kTarget);
    EXPECT_EQ(form->iSearchStart, 5);
    EXPECT_TRUE(messages.messages.empty());
    forms::TreeViews().FindNext();  // 3..5: the search goes on where it stood
    EXPECT_EQ(Selected(form), 3);
}

TEST_F(FindTest, EachLibraryKeepsItsOwnSearch) {
    StartFrame();
    frmTreeView* a = Open(Ten({3}, "A"), "a.vnb");
    frmTreeView* b = Open(Ten({9}, "B"), "b.vnb");
    ASSERT_TRUE(a && b);
    // In the dialog the user picks the first library: it is searched.
    chooseLibrary = 0;
    forms::TreeViews().Find();
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), a->Tag);
    EXPECT_EQ(Selected(a), 3);
    EXPECT_FALSE(b->CurrentSearch());
    // Picking the second and cancelling leaves the first's search intact.
    chooseLibrary = 1;
    cancel = true;
    forms::TreeViews().Find();
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), b->Tag);
    EXPECT_EQ(a->szSearchBoard, kTarget);
    EXPECT_FALSE(b->CurrentSearch());
    // Another position searched in B; A goes on with its own at once.
    cancel = false;
    chooseLibrary = -1;
    search = Unique(5);
    forms::TreeViews().Find();
    EXPECT_EQ(Selected(b), 5);
    const int before = dialogs;
    forms::TreeViews().SetActive(a->Tag);
    forms::TreeViews().FindNext();
    EXPECT_EQ(dialogs, before);
    EXPECT_EQ(Selected(a), 3) << "the one match, found again at the end of the pass";
}

}  // namespace
