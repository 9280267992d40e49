#include "widgets/dialogs.h"

#include <QDialog>
#include <QFileDialog>
#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QSpacerItem>
#include <memory>

#include "widgets/forms.h"

namespace vantrel::ui {
namespace {

MessageHandler& messageHandler() {
    static MessageHandler handler;
    return handler;
}
ModalHandler& modalHandler() {
    static ModalHandler handler;
    return handler;
}
OpenFileHandler& openFileHandler() {
    static OpenFileHandler handler;
    return handler;
}

QMessageBox::StandardButton ToStandard(Answer a) {
    switch (a) {
        case Answer::Ok: return QMessageBox::Ok;
        case Answer::Cancel: return QMessageBox::Cancel;
        case Answer::Yes: return QMessageBox::Yes;
        case Answer::No: return QMessageBox::No;
    }
    return QMessageBox::Ok;
}

}  // namespace

std::unique_ptr<QMessageBox> MakeMessageBox(const MessageRequest& request) {
    auto box = std::make_unique<QMessageBox>(QApplication::activeWindow());
    QMessageBox& b = *box;
    b.setWindowTitle(request.title.isEmpty() ? ProgramTitle() : request.title);
    // A message box is moved and closed, never minimized or maximized.
    b.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                     Qt::WindowCloseButtonHint);
    b.setText(request.text);
    switch (request.icon) {
        case Icon::None: b.setIcon(QMessageBox::NoIcon); break;
        case Icon::Information: b.setIcon(QMessageBox::Information); break;
        case Icon::Exclamation: b.setIcon(QMessageBox::Warning); break;
        case Icon::Question: b.setIcon(QMessageBox::Question); break;
        case Icon::Critical: b.setIcon(QMessageBox::Critical); break;
    }
    switch (request.buttons) {
        case Buttons::Ok: b.setStandardButtons(QMessageBox::Ok); break;
        case Buttons::OkCancel: b.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
        case Buttons::YesNo: b.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    }
    b.setDefaultButton(ToStandard(request.defaultAnswer));
    if (request.buttons == Buttons::YesNo) b.setEscapeButton(QMessageBox::No);
    // A short text makes a narrow box, whose title bar would cut the title:
    // the box is made as wide as the title, in a bold face as title bars
    // draw it, with room for the window's icon and its buttons. Some window
    // managers draw minimize and maximize whatever the box asks for, so the
    // room is for three.
    if (auto* grid = qobject_cast<QGridLayout*>(b.layout())) {
        QFont titleFont = b.font();
        titleFont.setBold(true);
        const int titleBarHeight = QFontMetrics(titleFont).height() + 12;
        const int needed = QFontMetrics(titleFont).horizontalAdvance(b.windowTitle()) + 5 * titleBarHeight;
        grid->addItem(new QSpacerItem(needed, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0, 1,
                      grid->columnCount());
    }
    return box;
}

Answer MsgBox(const MessageRequest& request) {
    if (messageHandler()) return messageHandler()(request);

    const std::unique_ptr<QMessageBox> made = MakeMessageBox(request);
    QMessageBox& box = *made;
    const int pressed = box.exec();
    switch (pressed) {
        case QMessageBox::Ok: return Answer::Ok;
        case QMessageBox::Yes: return Answer::Yes;
        case QMessageBox::No: return Answer::No;
        default: return request.buttons == Buttons::YesNo ? Answer::No
                        : request.buttons == Buttons::Ok  ? Answer::Ok
                                                          : Answer::Cancel;
    }
}

Answer MsgBox(const QString& text, Buttons buttons, Icon icon, const QString& title, Answer defaultAnswer) {
    return MsgBox(MessageRequest{text, title, buttons, icon, defaultAnswer});
}

int ExecModal(QDialog& dialog) {
    if (modalHandler()) return modalHandler()(dialog);
    return dialog.exec();
}

QString GetOpenFileName(QWidget* parent, const QString& title, const QString& dir, const QString& filter) {
    if (openFileHandler()) return openFileHandler()(title, dir, filter);
    return QFileDialog::getOpenFileName(parent, title, dir, filter);
}

void SetMessageHandler(MessageHandler handler) { messageHandler() = std::move(handler); }
void SetModalHandler(ModalHandler handler) { modalHandler() = std::move(handler); }
void SetOpenFileHandler(OpenFileHandler handler) { openFileHandler() = std::move(handler); }

}  // namespace vantrel::ui
