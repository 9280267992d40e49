// A main frame for one test, with every message box, modal dialog and file
// dialog answered by the test, and libraries written to a scratch folder.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QSettings>
#include <functional>
#include <memory>

#include "board/board_window.h"
#include "gui_test_support.h"
#include "library/ui/comments_moves.h"
#include "library/ui/remarks_window.h"
#include "library/ui/tree_window.h"
#include "library_builder.h"
#include "shell/main_frame.h"
#include "shell/tree_views.h"

namespace vantrel::testing {

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

    // Makes and loads the frame, as the program starts.
    MDIVantrel& StartFrame(const QString& commandLine = QString()) {
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
        cTreeView& register_ = forms::TreeViews();
        const int before = register_.Count();
        register_.OpenLib(path);
        FlushDeletes();
        if (register_.Count() == before) return nullptr;
        return register_.All().last();
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
