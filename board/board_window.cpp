#include "board/board_window.h"

#include <QCloseEvent>
#include <QPointer>
#include <QVBoxLayout>

#include "board/board_view.h"
#include "widgets/forms.h"

namespace vantrel::forms {

frmBoard& Board() {
    static QPointer<frmBoard> form;
    if (!form) form = new frmBoard();
    return *form;
}

}  // namespace vantrel::forms

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

    // The right button on a square asks for the Board menu.
    connect(view_, &BoardView::squarePressed, this, [this](int, Qt::MouseButton button, QPoint globalPos) {
        if (button == Qt::RightButton) emit menuRequested(globalPos);
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
    emit hiddenByUser();
}
