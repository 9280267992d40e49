// The one road by which the program puts a question to the user: message
// boxes, modal dialogs and the file dialog. Tests replace the handlers so
// that no test ever waits on a modal window.
#pragma once

#include <QString>
#include <functional>
#include <memory>

class QDialog;
class QMessageBox;
class QWidget;

namespace vantrel::ui {

enum class Buttons { Ok, OkCancel, YesNo };
enum class Icon { None, Information, Exclamation, Question, Critical };
enum class Answer { Ok, Cancel, Yes, No };

struct MessageRequest {
    QString text;
    QString title;  // empty: the program's name
    Buttons buttons = Buttons::Ok;
    Icon icon = Icon::None;
    Answer defaultAnswer = Answer::Ok;
};

// Shows a message box (or hands it to the installed handler) and returns the
// button pressed. A box closed by Esc or its close box answers Cancel/No.
Answer MsgBox(const MessageRequest& request);
Answer MsgBox(const QString& text, Buttons buttons = Buttons::Ok, Icon icon = Icon::None,
              const QString& title = QString(), Answer defaultAnswer = Answer::Ok);

// The message box that MsgBox shows: the whole title in view, and only a
// close button on its title bar.
std::unique_ptr<QMessageBox> MakeMessageBox(const MessageRequest& request);

// Runs a dialog modally (or hands it to the installed handler, which may
// drive it and must close it or return a result). Returns QDialog::exec's
// result.
int ExecModal(QDialog& dialog);

// The open-file dialog. Returns the chosen path, empty when cancelled.
QString GetOpenFileName(QWidget* parent, const QString& title, const QString& dir, const QString& filter);

using MessageHandler = std::function<Answer(const MessageRequest&)>;
using ModalHandler = std::function<int(QDialog&)>;
using OpenFileHandler = std::function<QString(const QString& title, const QString& dir, const QString& filter)>;

// Installs a handler; an empty function restores the real windows.
void SetMessageHandler(MessageHandler handler);
void SetModalHandler(ModalHandler handler);
void SetOpenFileHandler(OpenFileHandler handler);

}  // namespace vantrel::ui
