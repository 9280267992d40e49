// The Edit Move dialog: what it shows of the game and the bad move, and what
// each way out leaves for the import.
#include "gui_test_support.h"

using vantrel::import::GameRecord;

namespace {

std::unique_ptr<GameRecord> Game(const std::vector<std::string>& moves) {
    auto game = std::make_unique<GameRecord>();
    game->GameMoves[0] = "Kasparov, G - Karpov, A";
    for (size_t i = 0; i < moves.size(); ++i) game->GameMoves[i + 1] = moves[i];
    return game;
}

class FixMoveDialogTest : public ::testing::Test {
protected:
    void TearDown() override { vantrel::bReverseSides = false; }
    std::unique_ptr<frmFixMove> Make(int16_t bad, int16_t last, int16_t code) {
        return std::make_unique<frmFixMove>(bad, last, code, *game_, board_);
    }
    std::unique_ptr<GameRecord> game_ = Game({"e4", "e5", "Nf3", "Nc6", "Bb5", "a6"});
    vantrel::chess::ImportBoard board_;
    vantrel::testing::MessageRecorder messages_;
};

}  // namespace

TEST_F(FixMoveDialogTest, ShowsTheGameTheMessageAndTheListsInTheLibraryCodePage) {
    game_->GameMoves[0] = "R\xe9ti - Nimzowitsch";  // Windows-1252 e acute
    auto dlg = Make(4, 6, 2);
    EXPECT_EQ(dlg->lblGameName->text(), QString::fromUtf8("R\u00e9ti - Nimzowitsch"));
    EXPECT_EQ(dlg->txtMovesBefore->toPlainText(), "1. e4      e5     \n2. Nf3     ...");
    EXPECT_EQ(dlg->txtBadMove->text(), "Nc6");
    EXPECT_EQ(dlg->txtMovesAfter->toPlainText(), "3. Bb5     a6     ");
    EXPECT_TRUE(dlg->cmdOK->isDefault());
    EXPECT_EQ(dlg->focusWidget(), dlg->txtBadMove) << "the edit box comes first";
    const char* const byCode[] = {"Fix move:", "This move is ambiguous - Please fix:",
                                  "This is an illegal move - Please fix:", "Can't parse this move - Please fix:"};
    for (int16_t code : {1, 2, 3, 7}) EXPECT_EQ(Make(3, 6, code)->lblBadType->text(), byCode[code < 4 ? code : 0]);
    dlg->txtBadMove->setText(QString::fromUtf8("N\u00e9f3"));
    dlg->cmdOK->click();
    EXPECT_EQ(game_->GameMoves[4], "N\xe9" "f3");
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(FixMoveDialogTest, EachWayOutLeavesItsActionAndOnlyAcceptStoresTheTextAsTyped) {
    struct Case {
        const char* name;
        std::function<void(frmFixMove&)> leave;
        int16_t action;
        std::string stored;  // GameMoves(3) afterwards
    };
    const Case cases[] = {
        {"Accept", [](frmFixMove& d) { d.cmdOK->click(); }, 4, " Ng1-f3 "},
        {"Enter", [](frmFixMove& d) { QTest::keyClick(d.txtBadMove, Qt::Key_Return); }, 4, " Ng1-f3 "},
        {"Skip", [](frmFixMove& d) { d.cmdSkipGame->click(); }, 5, "Nf3"},
        {"Cancel", [](frmFixMove& d) { d.cmdCancel->click(); }, 3, "Nf3"},
        {"Esc", [](frmFixMove& d) { QTest::keyClick(d.txtBadMove, Qt::Key_Escape); }, 3, "Nf3"},
        {"close box", [](frmFixMove& d) { d.close(); }, 3, "Nf3"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        game_->GameMoves[3] = "Nf3";
        auto dlg = Make(3, 6, 2);
        dlg->show();
        dlg->txtBadMove->setText(" Ng1-f3 ");
        c.leave(*dlg);
        EXPECT_EQ(dlg->FixMoveAction, c.action);
        EXPECT_EQ(game_->GameMoves[3], c.stored);
        EXPECT_FALSE(dlg->isVisible());
    }
}

TEST_F(FixMoveDialogTest, TheBoardShowsThePositionAheadOfTheBadMoveFromEitherSide) {
    board_.SetCode(2, 5, "no");
    board_.SetCode(4, 5, "wp");  // 1. e4 played
    const std::string layout = board_.BoardToLayout();
    for (bool reversed : {false, true}) {
        SCOPED_TRACE(reversed ? "reversed" : "White below");
        vantrel::bReverseSides = reversed;
        auto dlg = Make(2, 6, 2);
        EXPECT_EQ(dlg->board->Entries(), reversed ? std::string(layout.rbegin(), layout.rend()) : layout);
        EXPECT_EQ(dlg->board->Picture(reversed ? 63 - 28 : 28), 'P');  // e4
        EXPECT_EQ(dlg->board->Caption(0) + dlg->board->Caption(8), reversed ? "h8" : "a1");
    }
}
