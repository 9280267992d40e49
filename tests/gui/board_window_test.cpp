// The shared windows inside the main frame: "Current Board" (reset, reverse,
// the drawing of Board, the right-button menu), "Game Comments" and "Moves
// List" (what they show, the pop-up while stacked), and closing by the user.
#include "gui_test_support.h"

namespace {

// The start position after 1. e4 c5.
std::string Sicilian() {
    std::string s = kStart;
    s[12] = s[50] = '0';
    s[28] = 'P';
    s[34] = 'p';
    return s;
}

class SharedWindowsTest : public FrameTest {
protected:
    void TearDown() override {
        CommentsMovesStacked = false;
        FrameTest::TearDown();
    }
    frmBoard& board() { return forms::Board(); }
    BoardView& view() { return *forms::Board().View(); }
    // A press inside `target`; whether `menu` came up. Closes it again.
    static bool PopsUp(QWidget* target, Qt::MouseButton button, QPoint at, QMenu* menu) {
        QTest::mousePress(target, button, Qt::NoModifier, at);
        const bool shown = menu->isVisible();
        menu->hide();
        QTest::mouseRelease(target, button, Qt::NoModifier, at);
        return shown;
    }
};

}  // namespace

TEST_F(SharedWindowsTest, ACurrentBoardOfFixedSizeThatReverseSidesTurnsAndThatDrawsOnlyOnDisplayBoard) {
    MDIVantrel& f = StartFrame();
    EXPECT_EQ(board().minimumSize(), board().maximumSize()) << "a fixed border";
    EXPECT_EQ(board().size(), QSize(TwipsToPixels(4185), TwipsToPixels(4275)));
    EXPECT_EQ(Pictures(view()), kStart) << "the start-up resets and draws";
    f.m_reverse_sides->trigger();
    EXPECT_TRUE(bReverseSides && f.m_reverse_sides->isChecked());
    EXPECT_EQ(view().Caption(0) + view().Caption(8), "h8");
    EXPECT_EQ(Pictures(view()), std::string(kStart.rbegin(), kStart.rend())) << "Black at the bottom";
    EXPECT_EQ(board().Board(), kStart) << "Board stays in layout order";
    const std::string sicilian = Sicilian();
    board().SetBoard(sicilian);
    EXPECT_EQ(view().Picture(63), 'R') << "nothing drawn before DisplayBoard";
    board().DisplayBoard();
    EXPECT_EQ(Pictures(view()), std::string(sicilian.rbegin(), sicilian.rend()));
    f.m_reverse_sides->trigger();
    EXPECT_FALSE(bReverseSides || f.m_reverse_sides->isChecked());
    EXPECT_EQ(view().Caption(0) + view().Caption(8), "a1");
    EXPECT_EQ(Pictures(view()), Sicilian());
    board().ResetBoard();
    EXPECT_EQ(board().Board(), kStart);
    EXPECT_EQ(Pictures(view()), Sicilian()) << "ResetBoard draws nothing";
    const std::string padded = kStart.substr(0, 60) + "    ";
    board().SetBoard(padded);
    board().DisplayBoard();
    EXPECT_EQ(messages.Texts(), QStringList{"Error - couldn't draw board.  Please call support"});
    EXPECT_EQ(board().Board(), padded) << "Board keeps the bad value";
    EXPECT_EQ(Pictures(view()), Sicilian());
}

TEST_F(SharedWindowsTest, CommentsAndMovesShowLibraryTextInControlsThatFillTheirWindows) {
    StartFrame();
    frmComments& comments = forms::Comments();
    frmMoves& moves = forms::Moves();
    EXPECT_TRUE(QFontInfo(moves.lstMoves->font()).fixedPitch()) << "the columns line up";
    moves.SetMovelist("e4\\\xE9\xE8");  // library text is Windows-1252
    EXPECT_EQ(moves.Lines(), QStringList{QString::fromUtf8("  1. e4      \xC3\xA9\xC3\xA8")});
    forms::OuterWindow(&moves)->resize(200, 120);
    forms::OuterWindow(&comments)->resize(200, 120);
    QCoreApplication::processEvents();
    EXPECT_EQ(moves.lstMoves->geometry(), moves.rect());
    EXPECT_EQ(comments.txtComments->geometry(), comments.rect());
    std::string deep = "e4";
    for (int i = 0; i < 40; ++i) deep += "\\Nf3";
    moves.SetMovelist(deep);
    const QRect last = moves.lstMoves->visualItemRect(moves.lstMoves->item(moves.lstMoves->count() - 1));
    EXPECT_TRUE(moves.lstMoves->viewport()->rect().contains(last)) << "the end of a deep line is in view";
    EXPECT_TRUE(moves.lstMoves->selectedItems().isEmpty());
}

TEST_F(SharedWindowsTest, TheRightButtonOffersTheBoardMenuOnASquareAndTheOtherWindowWhileStacked) {
    MDIVantrel& f = StartFrame();
    f.show();
    const auto square = [&](int k) { return view().SquareRect(k).center().toPoint(); };
    EXPECT_TRUE(PopsUp(&view(), Qt::RightButton, square(0), f.m_board));
    EXPECT_TRUE(PopsUp(&view(), Qt::RightButton, square(45), f.m_board));
    EXPECT_FALSE(PopsUp(&view(), Qt::LeftButton, square(45), f.m_board));
    for (int i = 0; i < 16; ++i)
        EXPECT_FALSE(PopsUp(&view(), Qt::RightButton, view().LabelRect(i).center().toPoint(), f.m_board)) << i;
    EXPECT_FALSE(PopsUp(&view(), Qt::RightButton, QPoint(1, 1), f.m_board)) << "beside the board";
    QWidget* commentsArea = forms::Comments().txtComments->viewport();
    QWidget* movesArea = forms::Moves().lstMoves->viewport();
    const QPoint at(10, 10);
    CommentsMovesStacked = true;
    EXPECT_TRUE(PopsUp(commentsArea, Qt::RightButton, at, f.mCommentsPopUpMenu));
    EXPECT_TRUE(PopsUp(movesArea, Qt::RightButton, at, f.MovesPopUpMenu));
    CommentsMovesStacked = false;
    EXPECT_FALSE(PopsUp(commentsArea, Qt::RightButton, at, f.mCommentsPopUpMenu)) << "side by side: nothing";
    EXPECT_FALSE(PopsUp(movesArea, Qt::RightButton, at, f.MovesPopUpMenu));
}

TEST_F(SharedWindowsTest, ClosedByTheUserTheyHideUntilTheWindowMenuBringsThemBackButGoAtTheEnd) {
    MDIVantrel& f = StartFrame();
    f.show();
    struct Shared {
        QWidget* form;
        QAction* item;
        void (MDIVantrel::*show)();
    };
    const Shared shared[] = {{&board(), f.mWShowBoard, &MDIVantrel::mWShowBoard_Click},
                             {&forms::Comments(), f.mWShowComments, &MDIVantrel::mWShowComments_Click},
                             {&forms::Moves(), f.mWShowMoves, &MDIVantrel::mWShowMoves_Click}};
    for (const Shared& s : shared) {
        QWidget* outer = forms::OuterWindow(s.form);
        // The frame's close box and the window's own close go the same way.
        for (QWidget* closing : {outer, s.form}) {
            EXPECT_FALSE(closing->close()) << "the close is refused";
            EXPECT_FALSE(outer->isVisible());
            EXPECT_EQ(f.mWShowBoard->isVisible() + f.mWShowComments->isVisible() + f.mWShowMoves->isVisible(), 1)
                << "only the item of the window closed";
            EXPECT_TRUE(s.item->isVisible());
            (f.*s.show)();
            EXPECT_TRUE(outer->isVisible());
            EXPECT_FALSE(s.item->isVisible());
        }
    }
    AppClosing = true;
    for (const Shared& s : shared) {
        EXPECT_TRUE(s.form->close());
        EXPECT_FALSE(s.item->isVisible()) << "no menu item for a window that goes with the program";
    }
}
