// Shared pieces of the window tests: a throw-away program folder and a
// recorder that answers every message box.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <vector>

#include "shell/dialogs.h"
#include "shell/forms.h"

namespace vantrel::testing {

// Records every message box and answers it with `answer` (OK by default).
class MessageRecorder {
public:
    explicit MessageRecorder(ui::Answer answer = ui::Answer::Ok) : answer_(answer) {
        ui::SetMessageHandler([this](const ui::MessageRequest& r) {
            messages.push_back(r);
            return next_ ? next_(r) : answer_;
        });
    }
    ~MessageRecorder() { ui::SetMessageHandler({}); }
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;

    void AnswerWith(ui::Answer a) { answer_ = a; }
    void AnswerBy(std::function<ui::Answer(const ui::MessageRequest&)> f) { next_ = std::move(f); }
    QStringList Texts() const {
        QStringList t;
        for (const auto& m : messages) t << m.text;
        return t;
    }

    std::vector<ui::MessageRequest> messages;

private:
    ui::Answer answer_;
    std::function<ui::Answer(const ui::MessageRequest&)> next_;
};

// Points the program folder at a fresh temporary folder for one test.
class ScratchProgramDir {
public:
    ScratchProgramDir() { SetProgramDir(dir_.path()); }
    ~ScratchProgramDir() { SetProgramDir(QString()); }
    QString path() const { return dir_.path(); }
    QString file(const QString& name) const { return dir_.filePath(name); }

private:
    QTemporaryDir dir_;
};

}  // namespace vantrel::testing

// Failures show texts as texts.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
