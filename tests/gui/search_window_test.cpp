// The position setup dialog: its controls, its opening, the library
// selector, the buttons and the drops as the window receives them. What a
// drop does to the squares is the core's.
#include <QComboBox>
#include <QMimeData>
#include <QPushButton>
#include <QTest>

#include "board/board_view.h"
#include "search_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;
using board::DragSource;

namespace {

const std::string& kStart = kStartLayout;
const std::string kEmpty(64, '0');
const std::string kE4 = With(With(kStartLayout, 12, '0'), 28, 'P');

LibraryBuilder OneNode(const std::string& book, const std::string& layout = kStartLayout) {
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
    if (!enter.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(target, &leave);
        return false;
    }
    QDropEvent drop(at, Qt::MoveAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &drop);
    return drop.isAccepted();
}

}  // namespace

TEST_F(SearchTest, TheSetupWindowsControlsAndCaptions) {
    StartFrame();
    FrmSearchTree f;
    EXPECT_EQ(f.windowTitle(), "Vantrel - Setup board position to search....");
    const QStringList names{"imgWP", "imgWC", "imgWN", "imgWB", "imgWQ", "imgWK",
                            "imgBP", "imgBC", "imgBN", "imgBB", "imgBQ", "imgBK"};
    for (int i = 0; i < 12; ++i) EXPECT_EQ(f.Palette[static_cast<std::size_t>(i)]->objectName(), names[i]);
    EXPECT_EQ(f.lblLibSelect->text(), "Select library to use :");
    const std::vector<QPushButton*> buttons{f.cmdReset, f.cmdCurrent, f.cmdClear, f.cmdSearch, f.cmdCancel};
    const QStringList captions{"&Reset Board", "Cu&rrent Board", "C&lear Board", "&Search", "&Cancel"};
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        EXPECT_EQ(buttons[i]->text(), captions[static_cast<qsizetype>(i)]);
        EXPECT_FALSE(buttons[i]->isDefault() || buttons[i]->autoDefault()) << "Enter presses none of them";
    }
    f.show();
    QTest::keyClick(&f, Qt::Key_Escape);
    EXPECT_TRUE(f.isVisible()) << "none is the cancel button: Esc does nothing";
}

TEST_F(SearchTest, OpeningDrawsTheTreeBoardOnceAndLaterTheKeptPositionThatTheButtonsSet) {
    StartFrame();
    ASSERT_NE(Open(OneNode("Lib", kE4)), nullptr);
    {
        FrmSearchTree f;
        f.Form_Load();
        EXPECT_EQ(FrmSearchTree::szSetupBoard, kE4);
        EXPECT_TRUE(f.lblLibSelect->isHidden() && f.cboLibSelect->isHidden()) << "one library: no selector";
        EXPECT_EQ(f.Board()->Picture(28), 'P');
        EXPECT_FALSE(f.Palette[0]->pixmap().isNull());
        f.cmdReset->click();
        EXPECT_EQ(FrmSearchTree::szSetupBoard, kStart);
        f.cmdCancel->click();
    }
    {
        FrmSearchTree f;
        f.Form_Load();
        EXPECT_EQ(f.Board()->Picture(12), 'P') << "the last board button stays in force after Cancel";
        f.cmdCurrent->click();
        EXPECT_EQ(FrmSearchTree::szSetupBoard, kE4);
        f.Image2_DragDrop(20, DragSource::Palette(4));  // an edit, lost on Cancel
        f.cmdClear->click();
        f.Image2_DragDrop(20, DragSource::Palette(4));
        f.cmdCancel->click();
    }
    EXPECT_EQ(FrmSearchTree::szSetupBoard, kEmpty);
    FrmSearchTree f;
    f.Form_Load();
    EXPECT_EQ(f.Board()->Entries(), kEmpty);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(SearchTest, ReversedTheBoardShowsBlackBelowAndSearchesWhatTheLabelsShow) {
    StartFrame();
    ASSERT_NE(Open(OneNode("Lib")), nullptr);
    bReverseSides = true;
    {
        FrmSearchTree f;
        f.Form_Load();
        EXPECT_EQ(f.Board()->Caption(0) + f.Board()->Caption(7) + f.Board()->Caption(8) + f.Board()->Caption(15), "ha81");
        EXPECT_EQ(f.Board()->Picture(0), 'r');
        // A white queen dropped on the square labelled e4 (screen square 35).
        f.Image2_DragDrop(35, DragSource::Palette(4));
        f.cmdSearch->click();
        EXPECT_EQ(f.result(), QDialog::Accepted);
        EXPECT_EQ(FrmSearchTree::szSetupBoard, With(kStart, 28, 'Q'));
    }
    // Search at once hands over the kept position in both orientations.
    const std::string odd = With(With(kEmpty, 0, 'k'), 63, 'K');
    for (bool reversed : {false, true}) {
        bReverseSides = reversed;
        FrmSearchTree::szSetupBoard = odd;
        FrmSearchTree f;
        f.Form_Load();
        f.cmdSearch->click();
        EXPECT_EQ(FrmSearchTree::szSetupBoard, odd) << reversed;
    }
}

TEST_F(SearchTest, ThreeLibrariesShowTheSelectorAndAChoiceTakesEffectAtOnce) {
    StartFrame();
    const std::string second = With(kStart, 27, 'N');
    ASSERT_NE(Open(OneNode("First"), "1.vnb"), nullptr);
    ASSERT_NE(Open(OneNode("Second", second), "2.vnb"), nullptr);
    ASSERT_NE(Open(OneNode("Third"), "3.vnb"), nullptr);
    FrmSearchTree f;
    f.Form_Load();
    EXPECT_FALSE(f.lblLibSelect->isHidden() || f.cboLibSelect->isHidden());
    ASSERT_EQ(f.cboLibSelect->count(), 3);
    EXPECT_EQ(f.cboLibSelect->itemText(1), "Second");
    EXPECT_EQ(f.cboLibSelect->currentIndex(), -1) << "no entry chosen at the start";
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), "TV00003");
    f.cboLibSelect->setCurrentIndex(1);
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), "TV00002");
    f.cmdCurrent->click();
    EXPECT_EQ(FrmSearchTree::szSetupBoard, second);
    f.cmdCancel->click();
    EXPECT_EQ(forms::TreeViews().GetActiveKey(), "TV00002") << "Cancel does not undo the choice";
}

TEST_F(SearchTest, DropEventsOnTheBoardAndTheTrashBecomeDropsThatSearchReads) {
    StartFrame();
    ASSERT_NE(Open(OneNode("Lib")), nullptr);
    FrmSearchTree f;
    f.Form_Load();
    f.resize(f.sizeHint());
    const auto square = [&](int k) { return f.Board()->SquareRect(k).center(); };
    // A black knight from the palette onto e4, the pawn of e2 to e3, the rook
    // of a1 into the trash.
    EXPECT_TRUE(Drop(f.Board(), square(28), f.DragPayload(DragSource::Palette(8))));
    EXPECT_TRUE(Drop(f.Board(), square(20), f.DragPayload(DragSource::Square(12))));
    EXPECT_TRUE(Drop(f.imgTrash, QPointF(5, 5), f.DragPayload(DragSource::Square(0))));
    // A drag from another dialog, or of anything else, is not taken.
    FrmSearchTree other;
    EXPECT_FALSE(Drop(f.Board(), square(36), other.DragPayload(DragSource::Palette(5))));
    EXPECT_FALSE(Drop(f.Board(), square(37), QByteArray("garbage")));
    EXPECT_FALSE(Drop(f.imgTrash, QPointF(5, 5), f.DragPayload(DragSource{})));
    EXPECT_EQ(FrmSearchTree::szSetupBoard, kStart) << "edits live in the tags until Search";
    f.cmdSearch->click();
    EXPECT_EQ(FrmSearchTree::szSetupBoard, With(With(With(With(kStart, 28, 'n'), 12, '0'), 20, 'P'), 0, '0'));
}
