// "Game Comments" and "Moves List": what they show, closing by the user and
// the pop-up that fetches the other window while the two are stacked.
#include <QFontInfo>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>

#include "library/ui/comments_moves.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

class CommentsMovesTest : public FrameTest {
protected:
    void TearDown() override {
        CommentsMovesStacked = false;
        FrameTest::TearDown();
    }
    frmComments& comments() { return forms::Comments(); }
    frmMoves& moves() { return forms::Moves(); }

    // A right (or other) click inside a control's viewport; tells whether the
    // menu came up, and closes it again.
    static bool ClickPopsUp(QWidget* viewport, Qt::MouseButton button, QMenu* menu) {
        QTest::mousePress(viewport, button, Qt::NoModifier, QPoint(10, 10));
        const bool shown = menu->isVisible();
        menu->hide();
        QTest::mouseRelease(viewport, button, Qt::NoModifier, QPoint(10, 10));
        return shown;
    }
};

}  // namespace

TEST_F(CommentsMovesTest, CaptionsControlsAndWhatTheyShow) {
    StartFrame();
    EXPECT_EQ(comments().windowTitle(), "Game Comments");
    EXPECT_EQ(moves().windowTitle(), "Moves List");
    EXPECT_TRUE(comments().txtComments->isReadOnly());
    EXPECT_EQ(comments().txtComments->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    EXPECT_TRUE(QFontInfo(moves().lstMoves->font()).fixedPitch()) << "the columns line up";
    EXPECT_TRUE(comments().Text().isEmpty());
    EXPECT_TRUE(moves().Lines().isEmpty());

    moves().SetMovelist("e4:Sicilian Defence\\c5\\Nf3");
    EXPECT_EQ(moves().Lines(), (QStringList{"  1. e4      c5", "  2. Nf3"}));
    // Each call replaces the whole list; library text is Windows-1252.
    moves().SetMovelist("e4\\\xE9\xE8");
    EXPECT_EQ(moves().Lines(), QStringList{QString::fromUtf8("  1. e4      \xC3\xA9\xC3\xA8")});
    moves().Clear();
    EXPECT_EQ(moves().lstMoves->count(), 0);

    comments().SetText(QStringLiteral("First line\r\nSecond line"));
    EXPECT_EQ(comments().txtComments->document()->blockCount(), 2);
    EXPECT_EQ(comments().Text(), "First line\r\nSecond line");
}

TEST_F(CommentsMovesTest, EachControlFillsItsWindow) {
    StartFrame();
    const std::pair<QWidget*, QWidget*> pairs[] = {{&comments(), comments().txtComments},
                                                   {&moves(), moves().lstMoves}};
    for (const auto& [form, control] : pairs) {
        forms::OuterWindow(form)->resize(200, 120);
        QCoreApplication::processEvents();
        EXPECT_EQ(control->geometry(), form->rect()) << form->objectName().toStdString();
    }
}

TEST_F(CommentsMovesTest, ClosedByTheUserTheyHideUntilTheWindowMenuBringsThemBackButGoAtTheEnd) {
    MDIVantrel& f = StartFrame();
    f.show();
    QWidget* outerComments = forms::OuterWindow(&comments());
    QWidget* outerMoves = forms::OuterWindow(&moves());
    ASSERT_TRUE(outerComments->isVisible());
    ASSERT_TRUE(outerMoves->isVisible());

    EXPECT_FALSE(outerComments->close());
    EXPECT_FALSE(outerComments->isVisible());
    EXPECT_TRUE(f.mWShowComments->isVisible());
    EXPECT_FALSE(f.mWShowMoves->isVisible()) << "only the item of the window closed";
    EXPECT_TRUE(outerMoves->isVisible());

    EXPECT_FALSE(outerMoves->close());
    EXPECT_FALSE(outerMoves->isVisible());
    EXPECT_TRUE(f.mWShowMoves->isVisible());

    // Still updated while hidden.
    comments().SetText(QStringLiteral("hidden"));
    moves().SetMovelist("e4");

    f.mWShowComments_Click();
    EXPECT_TRUE(outerComments->isVisible());
    EXPECT_FALSE(f.mWShowComments->isVisible());
    EXPECT_EQ(comments().Text(), "hidden");
    f.mWShowMoves_Click();
    EXPECT_TRUE(outerMoves->isVisible());
    EXPECT_FALSE(f.mWShowMoves->isVisible());
    EXPECT_EQ(moves().Lines(), QStringList{"  1. e4"});

    AppClosing = true;
    EXPECT_TRUE(comments().close());
    EXPECT_TRUE(moves().close());
    EXPECT_FALSE(f.mWShowComments->isVisible());
    EXPECT_FALSE(f.mWShowMoves->isVisible());
}

TEST_F(CommentsMovesTest, StackedTheRightButtonFetchesTheOtherWindow) {
    MDIVantrel& f = StartFrame();
    f.show();
    QWidget* commentsArea = comments().txtComments->viewport();
    QWidget* movesArea = moves().lstMoves->viewport();
    forms::OuterWindow(&comments())->raise();

    CommentsMovesStacked = true;
    EXPECT_TRUE(ClickPopsUp(commentsArea, Qt::RightButton, f.mCommentsPopUpMenu));
    EXPECT_FALSE(f.MovesPopUpMenu->isVisible());
    EXPECT_TRUE(ClickPopsUp(movesArea, Qt::RightButton, f.MovesPopUpMenu));
    EXPECT_FALSE(ClickPopsUp(commentsArea, Qt::LeftButton, f.mCommentsPopUpMenu));
    EXPECT_FALSE(ClickPopsUp(movesArea, Qt::LeftButton, f.MovesPopUpMenu));
    ASSERT_EQ(f.mCommentsPopUpMenu->actions().size(), 1);
    EXPECT_EQ(f.mCommentsPopUpMenu->actions()[0]->text(), "Show Moves");
    ASSERT_EQ(f.MovesPopUpMenu->actions().size(), 1);
    EXPECT_EQ(f.MovesPopUpMenu->actions()[0]->text(), "Show Comments");

    CommentsMovesStacked = false;
    EXPECT_FALSE(ClickPopsUp(commentsArea, Qt::RightButton, f.mCommentsPopUpMenu)) << "side by side: nothing";
    EXPECT_FALSE(ClickPopsUp(movesArea, Qt::RightButton, f.MovesPopUpMenu));
    EXPECT_FALSE(f.mCommentsPopUpMenu->isVisible() || f.MovesPopUpMenu->isVisible());
}
