#include "library/ui/comments_moves.h"

#include <QCloseEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>

#include "library/move_list.h"
#include "widgets/forms.h"

namespace vantrel::forms {
namespace {

template <typename Form>
Form& loaded() {
    static QPointer<Form> form;
    if (!form) form = new Form();
    return *form;
}

}  // namespace

frmComments& Comments() { return loaded<frmComments>(); }
frmMoves& Moves() { return loaded<frmMoves>(); }

}  // namespace vantrel::forms

namespace {

// The one control of each window fills it (Form_Resize).
void FillWith(QWidget* form, QWidget* control) {
    auto* layout = new QVBoxLayout(form);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(control);
}

// A close by the user hides the window and tells so; at the end of the
// program the close goes through.
template <typename Form>
void QueryUnload(Form* form, QCloseEvent* event) {
    if (vantrel::AppClosing) {
        event->accept();
        return;
    }
    event->ignore();
    form->hide();
    emit form->hiddenByUser();
}

// The right button, while the two windows share one place, asks for the one
// behind. Standing apart, a right click does nothing.
template <typename Form>
bool PopUpOther(Form* form, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress) return false;
    auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::RightButton) return false;
    if (vantrel::CommentsMovesStacked) emit form->otherWindowRequested(mouse->globalPosition().toPoint());
    return true;
}

}  // namespace

// --- frmComments -----------------------------------------------------------------

frmComments::frmComments(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmComments"));
    setWindowTitle(QStringLiteral("Game Comments"));

    txtComments = new QPlainTextEdit(this);
    txtComments->setObjectName(QStringLiteral("txtComments"));
    txtComments->setReadOnly(true);
    txtComments->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtComments->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtComments->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    txtComments->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    txtComments->setContextMenuPolicy(Qt::NoContextMenu);
    txtComments->viewport()->installEventFilter(this);
    FillWith(this, txtComments);
    setMinimumSize(120, 60);
}

QString frmComments::Text() const {
    // Lines of the program's text are joined by CR LF.
    return txtComments->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
}

void frmComments::SetText(const QString& text) { txtComments->setPlainText(text); }

void frmComments::closeEvent(QCloseEvent* event) { QueryUnload(this, event); }

bool frmComments::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtComments->viewport() && PopUpOther(this, event)) return true;
    return QWidget::eventFilter(watched, event);
}

// --- frmMoves --------------------------------------------------------------------

frmMoves::frmMoves(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmMoves"));
    setWindowTitle(QStringLiteral("Moves List"));

    lstMoves = new QListWidget(this);
    lstMoves->setObjectName(QStringLiteral("lstMoves"));
    // A fixed-pitch font lines up the two columns.
    lstMoves->setFont(vantrel::FixedPitchFont(10));
    lstMoves->setUniformItemSizes(true);
    lstMoves->setContextMenuPolicy(Qt::NoContextMenu);
    lstMoves->viewport()->installEventFilter(this);
    FillWith(this, lstMoves);
    setMinimumSize(120, 60);
}

void frmMoves::SetMovelist(const std::string& szFullpath) {
    lstMoves->clear();
    for (const std::string& line : vantrel::library::MoveListLines(szFullpath))
        lstMoves->addItem(vantrel::FromLib(line));
    // The list selects nothing, but its last line, the move now on the
    // board, is always in view.
    lstMoves->scrollToBottom();
}

void frmMoves::Clear() { lstMoves->clear(); }

QStringList frmMoves::Lines() const {
    QStringList lines;
    for (int i = 0; i < lstMoves->count(); ++i) lines << lstMoves->item(i)->text();
    return lines;
}

void frmMoves::closeEvent(QCloseEvent* event) { QueryUnload(this, event); }

bool frmMoves::eventFilter(QObject* watched, QEvent* event) {
    if (watched == lstMoves->viewport() && PopUpOther(this, event)) return true;
    return QWidget::eventFilter(watched, event);
}
