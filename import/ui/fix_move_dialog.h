// frmFixMove: "Edit Move", the question put to the user when a move of an
// imported game can't be resolved.
#pragma once

#include <QDialog>
#include <cstdint>

#include "chess/board.h"
#include "import/game_record.h"
#include "import/tree_store.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class BoardView;

class frmFixMove : public QDialog {
    Q_OBJECT
public:
    // The bad ply, the game's last ply, the resolver's result, the game
    // (the accepted move is written back into it) and the board ahead of the
    // bad move.
    frmFixMove(int16_t badMoveIndex, int16_t gameMoveCount, int16_t moveErrorCode,
               vantrel::import::GameRecord& game, const vantrel::chess::ImportBoard& board,
               QWidget* parent = nullptr);

    // 3 cancel the import, 4 accept the move, 5 skip the rest of the game.
    // Any way out other than the buttons leaves 3.
    int16_t FixMoveAction = vantrel::import::kFixCancel;

    QLabel* lblGameName = nullptr;
    QLabel* lblBadType = nullptr;
    QPlainTextEdit* txtMovesBefore = nullptr;
    QLineEdit* txtBadMove = nullptr;
    QPlainTextEdit* txtMovesAfter = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdSkipGame = nullptr;
    QPushButton* cmdCancel = nullptr;
    BoardView* board = nullptr;

public slots:
    void cmdOK_Click();
    void cmdSkipGame_Click();
    void cmdCancel_Click();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    vantrel::import::GameRecord& game_;
    int16_t badMoveIndex_;
};
