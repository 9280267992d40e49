#include "import/ui/fix_move_dialog.h"

#include <QFont>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStringList>
#include <QVBoxLayout>

#include "board/board_view.h"
#include "import/fix_move_lists.h"
#include "import/ui/tab_chain.h"
#include "widgets/forms.h"

using vantrel::FromLib;
using vantrel::ToLib;

namespace {

// The fixed-pitch font at the size of the dialog's own text.
QFont ColumnFont(const QWidget* control) { return vantrel::FixedPitchFont(control->font().pointSizeF()); }

QPlainTextEdit* MakeMovesBox(QWidget* parent) {
    auto* box = new QPlainTextEdit(parent);
    box->setReadOnly(true);
    box->setFont(ColumnFont(box));
    box->setLineWrapMode(QPlainTextEdit::NoWrap);
    box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    box->setTabChangesFocus(true);
    return box;
}

QString JoinLines(const std::vector<std::string>& lines) {
    QStringList out;
    for (const auto& line : lines) out << FromLib(line);
    return out.join(QLatin1Char('\n'));
}

}  // namespace

frmFixMove::frmFixMove(int16_t badMoveIndex, int16_t gameMoveCount, int16_t moveErrorCode,
                       vantrel::import::GameRecord& game, const vantrel::chess::ImportBoard& importBoard,
                       QWidget* parent)
    : QDialog(parent), game_(game), badMoveIndex_(badMoveIndex) {
    setWindowTitle(QStringLiteral("Edit Move"));
    setModal(true);

    lblGameName = new QLabel(this);
    lblBadType = new QLabel(QStringLiteral("Fix move:"), this);
    txtMovesBefore = MakeMovesBox(this);
    txtBadMove = new QLineEdit(this);
    txtBadMove->setFont(ColumnFont(txtBadMove));
    txtMovesAfter = MakeMovesBox(this);
    board = new BoardView(this);

    cmdOK = new QPushButton(QStringLiteral("&Accept Move"), this);
    cmdSkipGame = new QPushButton(QStringLiteral("&Skip Rest of Game"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel Import"), this);
    cmdOK->setDefault(true);

    auto* left = new QVBoxLayout;
    left->addWidget(lblGameName);
    left->addWidget(txtMovesBefore, 1);
    left->addWidget(lblBadType);
    left->addWidget(txtBadMove);
    left->addWidget(txtMovesAfter, 1);

    auto* top = new QHBoxLayout;
    top->addLayout(left, 1);
    top->addWidget(board, 0, Qt::AlignTop);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdSkipGame);
    buttons->addWidget(cmdCancel);

    auto* outer = new QVBoxLayout(this);
    outer->addLayout(top, 1);
    outer->addLayout(buttons);

    // The edit box comes first in the tab order and has the focus.
    vantrel::ui::SetTabChain({txtBadMove, cmdOK, cmdSkipGame, cmdCancel, txtMovesBefore, txtMovesAfter});
    txtBadMove->setFocus();

    connect(cmdOK, &QPushButton::clicked, this, &frmFixMove::cmdOK_Click);
    connect(cmdSkipGame, &QPushButton::clicked, this, &frmFixMove::cmdSkipGame_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFixMove::cmdCancel_Click);

    // The board ahead of the bad move, from the side the main board shows.
    board->SetLabels();
    board->DisplayBoard(importBoard.BoardToLayout());

    FixMoveAction = vantrel::import::kFixCancel;

    switch (moveErrorCode) {
        case 1: lblBadType->setText(QStringLiteral("This move is ambiguous - Please fix:")); break;
        case 2: lblBadType->setText(QStringLiteral("This is an illegal move - Please fix:")); break;
        case 3: lblBadType->setText(QStringLiteral("Can't parse this move - Please fix:")); break;
        default: break;
    }

    lblGameName->setText(FromLib(game.GameMoves[0].str()));

    const auto lists = vantrel::import::BuildFixMoveLists(game, badMoveIndex, gameMoveCount);
    txtMovesBefore->setPlainText(JoinLines(lists.before));
    // The moves just ahead of the bad one are the ones to see: the box opens
    // on its last line.
    txtMovesBefore->moveCursor(QTextCursor::End);
    txtBadMove->setText(FromLib(lists.badMove));
    txtMovesAfter->setPlainText(JoinLines(lists.after));
}

void frmFixMove::cmdOK_Click() {
    FixMoveAction = vantrel::import::kFixAccept;
    // Stored exactly as typed: the resolver sees it as it stands.
    if (badMoveIndex_ >= 1 && badMoveIndex_ <= vantrel::import::kMaxPly)
        game_.GameMoves[static_cast<size_t>(badMoveIndex_)] = ToLib(txtBadMove->text());
    done(QDialog::Accepted);
}

void frmFixMove::cmdSkipGame_Click() {
    FixMoveAction = vantrel::import::kFixSkip;
    done(QDialog::Accepted);
}

void frmFixMove::cmdCancel_Click() {
    FixMoveAction = vantrel::import::kFixCancel;
    done(QDialog::Rejected);
}

void frmFixMove::keyPressEvent(QKeyEvent* event) {
    // Esc is the Cancel Import button: it ends the whole import.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        cmdCancel->click();
        return;
    }
    QDialog::keyPressEvent(event);
}
