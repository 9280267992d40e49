#include "shell/dialogs.h"

#include <QDialog>
#include <QFileDialog>
#include <QApplication>
#include <QMessageBox>

#include "shell/forms.h"

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

Answer MsgBox(const MessageRequest& request) {
    if (messageHandler()) return messageHandler()(request);

    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(request.title.isEmpty() ? ProgramTitle() : request.title);
    box.setText(request.text);
    switch (request.icon) {
        case Icon::None: box.setIcon(QMessageBox::NoIcon); break;
        case Icon::Information: box.setIcon(QMessageBox::Information); break;
        case Icon::Exclamation: box.setIcon(QMessageBox::Warning); break;
        case Icon::Question: box.setIcon(QMessageBox::Question); break;
        case Icon::Critical: box.setIcon(QMessageBox::Critical); break;
    }
    switch (request.buttons) {
        case Buttons::Ok: box.setStandardButtons(QMessageBox::Ok); break;
        case Buttons::OkCancel: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
        case Buttons::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    }
    box.setDefaultButton(ToStandard(request.defaultAnswer));
    if (request.buttons == Buttons::YesNo) box.setEscapeButton(QMessageBox::No);
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
