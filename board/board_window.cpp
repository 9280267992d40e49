#include "board/board_window.h"

#include <QCloseEvent>
#include <QMenu>
#include <QVBoxLayout>

#include "board/board_view.h"
#include "shell/forms.h"
#include "shell/main_frame.h"

frmBoard::frmBoard(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmBoard"));
    setWindowTitle(QStringLiteral("Current Board"));

    view_ = new BoardView(this);
    view_->setObjectName(QStringLiteral("Image2"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);

    // A fixed border: the inner area is the board's design size.
    setFixedSize(BoardView::DesignSize());

    // The right button on a square offers the Board menu of the main frame.
    connect(view_, &BoardView::squarePressed, this, [](int, Qt::MouseButton button, QPoint globalPos) {
        if (button != Qt::RightButton) return;
        MDIVantrel* frame = vantrel::forms::MainFrame();
        if (frame && frame->m_board) frame->m_board->popup(globalPos);
    });
}

void frmBoard::ResetBoard() { m_Board = view_->ResetSquares(); }

void frmBoard::DisplayBoard() { view_->DisplayBoard(m_Board); }

void frmBoard::SetLabels() { view_->SetLabels(); }

void frmBoard::closeEvent(QCloseEvent* event) {
    if (vantrel::AppClosing) {
        event->accept();
        return;
    }
    // Closed by the user: the window stays loaded, out of sight, and the
    // Window menu offers it back.
    event->ignore();
    hide();
    if (MDIVantrel* frame = vantrel::forms::MainFrame(); frame && frame->mWShowBoard)
        frame->mWShowBoard->setVisible(true);
}
