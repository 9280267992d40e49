// The board window "Current Board" inside the main frame: reset, reverse,
// the drawing of Board, the right-button menu and closing by the user.
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>

#include "board/board_view.h"
#include "board/board_window.h"
#include "chess/board.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

const std::string kStart(chess::kInitialLayout);
const QString kDrawError = QStringLiteral("Error - couldn't draw board.  Please call support");

std::string Pictures(const BoardView& view) {
    std::string s;
    for (int k = 0; k < 64; ++k) s += view.Picture(k);
    return s;
}

QStringList Captions(const BoardView& view) {
    QStringList c;
    for (int i = 0; i < 16; ++i) c << view.Caption(i);
    return c;
}

// The start position after 1. e4 c5.
std::string Sicilian() {
    std::string s = kStart;
    s[12] = '0';
    s[28] = 'P';
    s[50] = '0';
    s[34] = 'p';
    return s;
}

class BoardWindowTest : public FrameTest {
protected:
    frmBoard& board() { return forms::Board(); }
    BoardView& view() { return *forms::Board().View(); }
    QWidget* outer() { return forms::OuterWindow(&forms::Board()); }

    // Presses a mouse button on the board and tells whether the Board menu
    // came up; closes it again.
    bool PressPopsUpBoardMenu(Qt::MouseButton button, QPoint at) {
        QTest::mousePress(&view(), button, Qt::NoModifier, at);
        const bool shown = frame->m_board->isVisible();
        frame->m_board->hide();
        QTest::mouseRelease(&view(), button, Qt::NoModifier, at);
        return shown;
    }
};

}  // namespace

TEST_F(BoardWindowTest, ACurrentBoardOfFixedSizeWithTheStartPositionThatReverseSidesTurns) {
    MDIVantrel& f = StartFrame();
    EXPECT_EQ(board().windowTitle(), "Current Board");
    EXPECT_EQ(board().minimumSize(), board().maximumSize()) << "a fixed border";
    EXPECT_EQ(board().size(), QSize(TwipsToPixels(4185), TwipsToPixels(4275)));
    EXPECT_FALSE(outer()->windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_TRUE(outer()->isVisible());
    EXPECT_EQ(board().Board(), kStart);
    EXPECT_EQ(Pictures(view()), kStart) << "the start-up resets and draws";
    const QStringList captions = Captions(view());
    EXPECT_EQ(captions, QString("a b c d e f g h 1 2 3 4 5 6 7 8").split(' '));

    f.m_reverse_sides_Click();
    EXPECT_TRUE(bReverseSides);
    EXPECT_TRUE(f.m_reverse_sides->isChecked());
    EXPECT_EQ(Captions(view()), QString("h g f e d c b a 8 7 6 5 4 3 2 1").split(' '));
    EXPECT_EQ(Pictures(view()), std::string(kStart.rbegin(), kStart.rend())) << "Black at the bottom, a1 top right";
    EXPECT_EQ(board().Board(), kStart) << "Board stays in layout order";

    f.m_reverse_sides_Click();
    EXPECT_FALSE(bReverseSides);
    EXPECT_FALSE(f.m_reverse_sides->isChecked());
    EXPECT_EQ(Pictures(view()), kStart);
    EXPECT_EQ(Captions(view()), captions);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(BoardWindowTest, SettingBoardAndResetBoardDrawOnlyOnDisplayBoard) {
    StartFrame();
    board().SetBoard(Sicilian());
    EXPECT_EQ(board().Board(), Sicilian());
    EXPECT_EQ(Pictures(view()), kStart);
    board().DisplayBoard();
    ASSERT_EQ(Pictures(view()), Sicilian());

    bReverseSides = true;
    board().ResetBoard();
    EXPECT_EQ(board().Board(), kStart);
    EXPECT_EQ(view().Entries(), kStart) << "the table in layout order, whatever the orientation";
    EXPECT_EQ(Pictures(view()), Sicilian()) << "ResetBoard draws nothing";
    board().DisplayBoard();
    EXPECT_EQ(view().Picture(63), 'R') << "the following DisplayBoard turns it for the screen";
}

TEST_F(BoardWindowTest, ABadLayoutIsReportedAndTheBoardStays) {
    StartFrame();
    board().SetBoard(Sicilian());
    board().DisplayBoard();
    const std::string padded = kStart.substr(0, 60) + "    ";
    board().SetBoard(padded);
    board().DisplayBoard();
    ASSERT_EQ(messages.Texts(), QStringList{kDrawError});
    EXPECT_TRUE(messages.messages[0].title.isEmpty());
    EXPECT_EQ(board().Board(), padded) << "Board keeps the bad value";
    EXPECT_EQ(Pictures(view()), Sicilian());
}

TEST_F(BoardWindowTest, TheRightButtonOnASquareOffersTheBoardMenu) {
    StartFrame();
    frame->show();
    ASSERT_TRUE(view().isVisible());
    EXPECT_TRUE(PressPopsUpBoardMenu(Qt::RightButton, view().SquareRect(0).center().toPoint()));
    EXPECT_TRUE(PressPopsUpBoardMenu(Qt::RightButton, view().SquareRect(45).center().toPoint()));
    EXPECT_FALSE(PressPopsUpBoardMenu(Qt::LeftButton, view().SquareRect(45).center().toPoint()));
    EXPECT_FALSE(PressPopsUpBoardMenu(Qt::MiddleButton, view().SquareRect(45).center().toPoint()));
    for (int i = 0; i < 16; ++i)
        EXPECT_FALSE(PressPopsUpBoardMenu(Qt::RightButton, view().LabelRect(i).center().toPoint())) << "label " << i;
    EXPECT_FALSE(PressPopsUpBoardMenu(Qt::RightButton, QPoint(1, 1))) << "beside the board";
    EXPECT_FALSE(PressPopsUpBoardMenu(Qt::RightButton, QPoint(view().width() - 2, view().height() - 2)));
}

TEST_F(BoardWindowTest, ClosedByTheUserItHidesUntilTheWindowMenuBringsItBackButGoesAtTheEnd) {
    MDIVantrel& f = StartFrame();
    f.show();
    ASSERT_FALSE(f.mWShowBoard->isVisible());
    // The frame's close box and the window's own close go the same way.
    for (QWidget* closing : {outer(), static_cast<QWidget*>(&board())}) {
        EXPECT_FALSE(closing->close()) << "the close is refused";
        EXPECT_FALSE(outer()->isVisible());
        EXPECT_TRUE(f.mWShowBoard->isVisible());
        EXPECT_EQ(forms::OuterWindow(&forms::Board()), outer()) << "the window stays loaded";

        // It goes on being updated while hidden.
        board().SetBoard(Sicilian());
        board().DisplayBoard();
        f.mWShowBoard_Click();
        EXPECT_TRUE(outer()->isVisible());
        EXPECT_TRUE(board().isVisible());
        EXPECT_FALSE(f.mWShowBoard->isVisible());
        EXPECT_EQ(Pictures(view()), Sicilian());
        board().ResetBoard();
        board().DisplayBoard();
    }

    AppClosing = true;
    EXPECT_TRUE(board().close());
    EXPECT_FALSE(f.mWShowBoard->isVisible()) << "no menu item for a window that goes with the program";
}
