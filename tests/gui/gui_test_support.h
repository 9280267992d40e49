// Shared pieces of the window tests: a recorder that answers every message
// box, a throw-away program folder, a library written in one line, and a
// main frame whose dialogs the test answers.
#pragma once

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "board/board_view.h"
#include "board/board_window.h"
#include "chess/board.h"
#include "import/ui/fix_move_dialog.h"
#include "import/ui/import_wizard.h"
#include "library/format.h"
#include "library/ui/comments_moves.h"
#include "library/ui/remarks_window.h"
#include "library/ui/tree_item_model.h"
#include "library/ui/tree_window.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "widgets/help_window.h"
#include "shell/main_frame.h"
#include "widgets/settings.h"
#include "widgets/status_window.h"
#include "shell/tree_views.h"

namespace vantrel::testing {

const std::string kStart(chess::kInitialLayout);

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
    // Writes `bytes` to a file of the folder; its path.
    QString Write(const QString& name, const QByteArray& bytes) const {
        QFile f(file(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return f.fileName();
    }
    // The program's help file, from the data folder of the sources.
    bool InstallHelpFile() const {
        return QFile::copy(QFileInfo(QStringLiteral(VANTREL_SCHEMA)).dir().filePath("vantrel.HLP"), file("vantrel.HLP"));
    }

private:
    QTemporaryDir dir_;
};

// A library file: a header and records, written with the library's own
// encoder.
class LibraryBuilder {
public:
    explicit LibraryBuilder(std::string book = "Test Library") { header.book = std::move(book); }

    // A record; `layout` defaults to the start position.
    LibraryBuilder& Add(int32_t index, int32_t parent, std::string description, std::string remarks = "",
                        bool newBranch = false, std::string layout = std::string(chess::kInitialLayout)) {
        records.push_back({index, parent, newBranch, std::move(description), std::move(remarks), std::move(layout)});
        return *this;
    }
    // A record that opens a game: "move: name" with new_branch set.
    LibraryBuilder& Game(int32_t index, int32_t parent, const std::string& move, const std::string& name,
                         std::string remarks = "", std::string layout = std::string(chess::kInitialLayout)) {
        return Add(index, parent, move + ": " + name, std::move(remarks), true, std::move(layout));
    }
    LibraryBuilder& Remarks(std::string remarks) {
        header.LibRemarks = std::move(remarks);
        return *this;
    }

    // Writes the library to `path` and returns the path.
    QString WriteTo(const QString& path) const {
        library::LibraryHeader h = header;
        h.RecCount = static_cast<int32_t>(records.size());
        std::string bytes;
        library::EncodeHeader(h, bytes);
        for (const auto& r : records) library::EncodeRecord(r, bytes);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) file.write(bytes.data(), qint64(bytes.size()));
        return path;
    }

    library::LibraryHeader header{1, -1, "", 0, 0, 0, ""};
    std::vector<library::LibraryNodeRecord> records;
};

// A chain of `count` nodes, each the child of the one before.
inline LibraryBuilder Chain(int count, const std::string& book = "Chain") {
    LibraryBuilder lib(book);
    for (int i = 1; i <= count; ++i) lib.Add(i, i - 1, "m" + std::to_string(i));
    return lib;
}

// The settings store the frame uses.
inline QSettings SettingsStore() {
    return QSettings(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("Vantrel"),
                     QStringLiteral("Vantrel"));
}

inline void ClearSettings() {
    QSettings store = SettingsStore();
    store.clear();
    store.sync();
}

// The pictures of the 64 squares of a board in screen order, 0 first.
inline std::string Pictures(const BoardView& view) {
    std::string s;
    for (int k = 0; k < 64; ++k) s += view.Picture(k);
    return s;
}

// Runs the deletions that closed windows have asked for.
inline void FlushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

class FrameTest : public ::testing::Test {
protected:
    struct ModalSeen {
        QString title;
        QString remarks;  // the text of a frmLibRemarks
    };

    void SetUp() override {
        ClearSettings();
        ui::SetModalHandler([this](QDialog& dialog) {
            ModalSeen seen{dialog.windowTitle(), QString()};
            if (auto* remarks = qobject_cast<frmLibRemarks*>(&dialog))
                seen.remarks = remarks->txtLibRemarks->toPlainText();
            modals.push_back(seen);
            if (onModal) return onModal(dialog);
            return static_cast<int>(QDialog::Accepted);
        });
        ui::SetOpenFileHandler([this](const QString& title, const QString& dir, const QString& filter) {
            openRequests.push_back({title, dir, filter});
            return openAnswer;
        });
    }

    void TearDown() override {
        frame.reset();
        FlushDeletes();
        ui::SetModalHandler({});
        ui::SetOpenFileHandler({});
        forms::UnloadStatus();
        AppClosing = false;
        bReverseSides = false;
        ClearSettings();
    }

    // Makes and loads the frame, as the program starts, after the last one goes.
    MDIVantrel& StartFrame(const QString& commandLine = QString()) {
        frame.reset();
        FlushDeletes();
        frame = std::make_unique<MDIVantrel>();
        frame->MDIForm_Load(commandLine);
        // The platform may fit the new window to its screen.
        QCoreApplication::processEvents();
        return *frame;
    }

    // Writes a library into the scratch folder.
    QString Write(const LibraryBuilder& lib, const QString& name = QStringLiteral("test.vnb")) {
        return lib.WriteTo(dir.file(name));
    }

    // Opens a library the way the menu does; the new window, or null if the
    // load failed.
    frmTreeView* Open(const LibraryBuilder& lib, const QString& name = QStringLiteral("test.vnb")) {
        const QString path = Write(lib, name);
        cTreeView& register_ = frame->TreeViews();
        const int before = register_.Count();
        register_.OpenLib(path);
        FlushDeletes();
        if (register_.Count() == before) return nullptr;
        return register_.All().last();
    }

    // A click on a node of a library window.
    static void Click(frmTreeView* form, int node) {
        form->SelectNode(node);
        form->tvTreeView_NodeClick(node);
    }

    // Closes a library window as the user does.
    bool CloseByUser(frmTreeView* form) {
        const bool closed = forms::OuterWindow(form)->close();
        FlushDeletes();
        return closed;
    }

    MessageRecorder messages;
    ScratchProgramDir dir;
    std::unique_ptr<MDIVantrel> frame;
    std::vector<ModalSeen> modals;
    std::function<int(QDialog&)> onModal;
    struct OpenRequest {
        QString title, dir, filter;
    };
    std::vector<OpenRequest> openRequests;
    QString openAnswer;
};

}  // namespace vantrel::testing

// Failures show texts as texts.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

using namespace vantrel;
using namespace vantrel::testing;
