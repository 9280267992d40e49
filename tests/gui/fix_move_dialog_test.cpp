// The Edit Move dialog: what it shows of the bad move, and what each way out
// leaves for the import.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "board/board_view.h"
#include "chess/board.h"
#include "gui_test_support.h"
#include "import/ui/fix_move_dialog.h"

using vantrel::chess::ImportBoard;
using vantrel::import::GameRecord;

namespace {

class FixMoveDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        game_ = std::make_unique<GameRecord>();
        game_->GameMoves[0] = "Kasparov, G - Karpov, A";
        const char* moves[] = {"e4", "e5", "Nf3", "Nc6", "Bb5", "a6"};
        for (int i = 0; i < 6; ++i) game_->GameMoves[static_cast<size_t>(i + 1)] = moves[i];
    }

    std::unique_ptr<frmFixMove> Make(int16_t bad, int16_t last, int16_t code) {
        return std::make_unique<frmFixMove>(bad, last, code, *game_, board_);
    }

    std::unique_ptr<GameRecord> game_;
    ImportBoard board_;
    vantrel::testing::MessageRecorder messages_;
};

}  // namespace

TEST_F(FixMoveDialogTest, ShowsTheGameTheMessageAndTheLists) {
    auto dlg = Make(4, 6, 2);
    EXPECT_EQ(dlg->windowTitle(), "Edit Move");
    EXPECT_EQ(dlg->lblGameName->text(), "Kasparov, G - Karpov, A");
    EXPECT_EQ(dlg->lblBadType->text(), "This is an illegal move - Please fix:");
    EXPECT_EQ(dlg->txtMovesBefore->toPlainText(), "1. e4      e5     \n2. Nf3     ...");
    EXPECT_EQ(dlg->txtBadMove->text(), "Nc6");
    EXPECT_EQ(dlg->txtMovesAfter->toPlainText(), "3. Bb5     a6     ");
    EXPECT_EQ(dlg->FixMoveAction, 3);

    EXPECT_TRUE(dlg->txtMovesBefore->isReadOnly());
    EXPECT_TRUE(dlg->txtMovesAfter->isReadOnly());
    EXPECT_FALSE(dlg->txtBadMove->isReadOnly());
    EXPECT_EQ(dlg->txtBadMove->font().family(), "Courier");
    EXPECT_EQ(dlg->txtMovesBefore->font().family(), "Courier");
    EXPECT_EQ(dlg->txtMovesAfter->font().family(), "Courier");
    EXPECT_EQ(dlg->txtMovesBefore->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);

    EXPECT_EQ(dlg->cmdOK->text(), "&Accept Move");
    EXPECT_EQ(dlg->cmdSkipGame->text(), "&Skip Rest of Game");
    EXPECT_EQ(dlg->cmdCancel->text(), "&Cancel Import");
    EXPECT_TRUE(dlg->cmdOK->isDefault());
    EXPECT_FALSE(dlg->cmdSkipGame->isDefault());
    // The edit box comes first and holds the focus.
    EXPECT_EQ(dlg->focusWidget(), dlg->txtBadMove);
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(FixMoveDialogTest, MessageByResolverResult) {
    EXPECT_EQ(Make(3, 6, 1)->lblBadType->text(), "This move is ambiguous - Please fix:");
    EXPECT_EQ(Make(3, 6, 2)->lblBadType->text(), "This is an illegal move - Please fix:");
    EXPECT_EQ(Make(3, 6, 3)->lblBadType->text(), "Can't parse this move - Please fix:");
    EXPECT_EQ(Make(3, 6, 7)->lblBadType->text(), "Fix move:");
}

TEST_F(FixMoveDialogTest, WindowsTextIsShownAndStoredInTheLibraryCodePage) {
    game_->GameMoves[0] = "R\xe9ti - Nimzowitsch";  // Windows-1252 e acute
    game_->GameMoves[3] = "Nf3\xbd";                 // a stray one-half sign
    auto dlg = Make(3, 6, 3);
    EXPECT_EQ(dlg->lblGameName->text(), QString::fromUtf8("R\u00e9ti - Nimzowitsch"));
    EXPECT_EQ(dlg->txtBadMove->text(), QString::fromUtf8("Nf3\u00bd"));
    dlg->txtBadMove->setText(QString::fromUtf8("N\u00e9f3"));
    dlg->cmdOK->click();
    EXPECT_EQ(game_->GameMoves[3], "N\xe9" "f3");
}

TEST_F(FixMoveDialogTest, AcceptStoresTheTextExactlyAsTyped) {
    auto dlg = Make(3, 6, 2);
    dlg->show();
    dlg->txtBadMove->setText(" Ng1-f3 ");
    dlg->cmdOK->click();
    EXPECT_EQ(dlg->FixMoveAction, 4);
    EXPECT_EQ(game_->GameMoves[3], " Ng1-f3 ");
    EXPECT_EQ(game_->GameMoves[2], "e5");
    EXPECT_EQ(game_->GameMoves[4], "Nc6");
    EXPECT_FALSE(dlg->isVisible());
}

TEST_F(FixMoveDialogTest, EnterInTheEditBoxAccepts) {
    auto dlg = Make(5, 6, 2);
    dlg->show();
    dlg->txtBadMove->setText("Bc4");
    QTest::keyClick(dlg->txtBadMove, Qt::Key_Return);
    EXPECT_EQ(dlg->FixMoveAction, 4);
    EXPECT_EQ(game_->GameMoves[5], "Bc4");
    EXPECT_FALSE(dlg->isVisible());
}

TEST_F(FixMoveDialogTest, SkipLeavesTheGameRecordAlone) {
    auto dlg = Make(3, 6, 2);
    dlg->show();
    dlg->txtBadMove->setText("Nc3");
    dlg->cmdSkipGame->click();
    EXPECT_EQ(dlg->FixMoveAction, 5);
    EXPECT_EQ(game_->GameMoves[3], "Nf3");
    EXPECT_FALSE(dlg->isVisible());
}

TEST_F(FixMoveDialogTest, CancelButtonEscAndCloseBoxAllCancelTheImport) {
    {
        auto dlg = Make(3, 6, 2);
        dlg->show();
        dlg->txtBadMove->setText("Nc3");
        dlg->cmdCancel->click();
        EXPECT_EQ(dlg->FixMoveAction, 3);
        EXPECT_FALSE(dlg->isVisible());
    }
    {
        auto dlg = Make(3, 6, 2);
        dlg->show();
        dlg->txtBadMove->setText("Nc3");
        QTest::keyClick(dlg->txtBadMove, Qt::Key_Escape);
        EXPECT_EQ(dlg->FixMoveAction, 3);
        EXPECT_FALSE(dlg->isVisible());
    }
    {
        auto dlg = Make(3, 6, 2);
        dlg->show();
        dlg->txtBadMove->setText("Nc3");
        dlg->close();
        EXPECT_EQ(dlg->FixMoveAction, 3);
        EXPECT_FALSE(dlg->isVisible());
    }
    EXPECT_EQ(game_->GameMoves[3], "Nf3");
}

TEST_F(FixMoveDialogTest, BoardShowsThePositionAheadOfTheBadMove) {
    board_.SetCode(2, 5, "no");
    board_.SetCode(4, 5, "wp");  // 1. e4 played
    const std::string layout = board_.BoardToLayout();
    auto dlg = Make(2, 6, 2);
    EXPECT_EQ(dlg->board->Entries(), layout);
    EXPECT_EQ(dlg->board->Picture(28), 'P');  // e4
    EXPECT_EQ(dlg->board->Picture(12), '0');  // e2
    EXPECT_EQ(dlg->board->Caption(0), "a");
    EXPECT_EQ(dlg->board->Caption(8), "1");
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(FixMoveDialogTest, BoardFollowsTheReversedSides) {
    board_.SetCode(2, 5, "no");
    board_.SetCode(4, 5, "wp");
    const std::string layout = board_.BoardToLayout();
    vantrel::bReverseSides = true;
    auto dlg = Make(2, 6, 2);
    vantrel::bReverseSides = false;
    EXPECT_EQ(dlg->board->Entries(), std::string(layout.rbegin(), layout.rend()));
    EXPECT_EQ(dlg->board->Picture(63 - 28), 'P');
    EXPECT_EQ(dlg->board->Caption(0), "h");
    EXPECT_EQ(dlg->board->Caption(15), "1");
}
