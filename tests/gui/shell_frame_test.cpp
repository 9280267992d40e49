// The main frame: its menu, start-up with a command line, the commands of
// the File and Board menus, the About box and the end of the program.
#include <QLabel>
#include <QMdiArea>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

#include "chess/board.h"
#include "import/ui/import_wizard.h"
#include "shell/about_window.h"
#include "shell/status_window.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

const std::string kStart(chess::kInitialLayout);

class FrameCommandsTest : public FrameTest {};

QStringList Captions(const QMenu* menu) {
    QStringList out;
    for (QAction* a : menu->actions()) {
        if (a->objectName().isEmpty() && !a->isSeparator()) continue;  // the window list
        out << (a->isSeparator() ? QStringLiteral("-") : a->text());
    }
    return out;
}

LibraryBuilder Small(const std::string& book = "Small") {
    LibraryBuilder lib(book);
    lib.Add(1, 0, "e4", "", false, std::string(63, '0') + "K").Add(2, 1, "e5");
    return lib;
}

}  // namespace

TEST_F(FrameCommandsTest, TheMenuBarHoldsTheFiveMenusInOrderWithTheirItemsAndTheOpenWindows) {
    StartFrame();
    EXPECT_EQ(frame->windowTitle(), "Vantrel ");
    QStringList bar;
    for (QAction* a : frame->menuBar()->actions()) bar << a->text();
    EXPECT_EQ(bar, (QStringList{"&File", "&Tree", "&Board", "&Window", "&Help"}))
        << "the pop-up menus are never in the bar";

    EXPECT_EQ(Captions(frame->m_file), (QStringList{"&Open", "&Import", "Library &Remarks", "-", "Print Set&up", "-", "E&xit"}));
    EXPECT_EQ(Captions(frame->m_tree),
              (QStringList{"&Find", "Find &Next", "-", "E&xpand All", "&Collapse All", "Expand to Next &Game"}));
    EXPECT_EQ(Captions(frame->m_board), (QStringList{"&Reverse Sides", "Re&set", "-", "&Print Moves List"}));
    EXPECT_EQ(Captions(frame->mWindow),
              (QStringList{"&Arrange Windows", "&Layer Windows", "&Remember Vantrel Position", "Show &Board",
                           "Show Commen&ts", "Show &Moves List", "-"}));
    EXPECT_EQ(Captions(frame->m_help), (QStringList{"&Contents", "&Search For Help On...", "-", "&About Vantrel"}));
    EXPECT_EQ(Captions(frame->MovesPopUpMenu), QStringList{"Show Comments"});
    EXPECT_EQ(Captions(frame->mCommentsPopUpMenu), QStringList{"Show Moves"});

    EXPECT_EQ(frame->m_open->shortcut(), QKeySequence("Ctrl+O"));
    EXPECT_EQ(frame->m_exit->shortcut(), QKeySequence("Ctrl+X"));
    EXPECT_EQ(frame->mTSearch->shortcut(), QKeySequence("Ctrl+F"));
    EXPECT_EQ(frame->mTFindNext->shortcut(), QKeySequence("Ctrl+N"));
    EXPECT_EQ(frame->mBPrintMoveList->shortcut(), QKeySequence("Ctrl+P"));

    EXPECT_FALSE(frame->mWShowBoard->isVisible());
    EXPECT_FALSE(frame->mWShowComments->isVisible());
    EXPECT_FALSE(frame->mWShowMoves->isVisible());
    EXPECT_FALSE(frame->m_reverse_sides->isChecked());
    EXPECT_FALSE(frame->mWRememberPositions->isChecked());
    for (QMenu* menu : {frame->m_file, frame->m_tree, frame->m_board, frame->mWindow, frame->m_help})
        for (QAction* a : menu->actions()) {
            if (a->isVisible()) {
                EXPECT_TRUE(a->isEnabled()) << a->objectName().toStdString();
            }
        }

    // The Window menu lists the open child windows.
    ASSERT_NE(Open(Small("Listed")), nullptr);
    emit frame->mWindow->aboutToShow();
    QStringList listed;
    for (QAction* a : frame->mWindow->actions())
        if (a->objectName().isEmpty() && !a->isSeparator()) listed << a->text();
    EXPECT_EQ(listed.filter("Listed").size(), 1) << listed.join('|').toStdString();
    EXPECT_EQ(listed.filter("Current Board").size(), 1) << listed.join('|').toStdString();
}

TEST_F(FrameCommandsTest, StartUpShowsTheSharedWindowsAndTheStartPosition) {
    StartFrame();
    EXPECT_TRUE(frame->isVisible());
    EXPECT_TRUE(forms::OuterWindow(&forms::Board())->isVisible());
    EXPECT_TRUE(forms::OuterWindow(&forms::Comments())->isVisible());
    EXPECT_TRUE(forms::OuterWindow(&forms::Moves())->isVisible());
    EXPECT_EQ(forms::Board().Board(), kStart);
    EXPECT_EQ(forms::TreeViews().Count(), 0);
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_EQ(forms::MainFrame(), frame.get());
}

TEST_F(FrameCommandsTest, ACommandLinePathOpensAtTheStartABlankOneNothingAndAMissingOrQuotedOneFails) {
    const QString path = Write(Small("From the command line"));
    StartFrame(path);
    ASSERT_EQ(forms::TreeViews().Count(), 1);
    EXPECT_EQ(forms::TreeViews().Active()->Caption(), "From the command line");
    EXPECT_EQ(frame->CommandLine(), path);
    frame.reset();
    FlushDeletes();

    StartFrame("   ");
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_EQ(forms::TreeViews().WindowCounter(), 0);
    frame.reset();
    FlushDeletes();

    const QString missing = dir.file("nowhere.vnb");
    StartFrame(missing);
    ASSERT_EQ(messages.Texts(), QStringList{"Problem loading library " + missing});
    EXPECT_TRUE(frame->isVisible());
    EXPECT_EQ(forms::Board().Board(), kStart);
    EXPECT_EQ(forms::TreeViews().Count(), 0);
    frame.reset();
    FlushDeletes();

    // Quotes are not taken off.
    messages.messages.clear();
    const QString quoted = "\"" + path + "\"";
    StartFrame(quoted);
    EXPECT_EQ(messages.Texts(), QStringList{"Problem loading library " + quoted});
    EXPECT_EQ(forms::TreeViews().Count(), 0);
}

TEST(CommandLine, TheArgumentsAreJoinedByBlanks) {
    EXPECT_EQ(JoinCommandLine({}), "");
    EXPECT_EQ(JoinCommandLine({"C:\\My", "Libraries\\open.vnb"}), "C:\\My Libraries\\open.vnb");
    EXPECT_EQ(JoinCommandLine({"\"a b.vnb\""}), "\"a b.vnb\"");
}

TEST_F(FrameCommandsTest, OpenAsksForAFileInTheProgramsFolderAndOpensIt) {
    StartFrame();
    openAnswer = Write(Small("Chosen"));
    frame->m_open->trigger();
    ASSERT_EQ(openRequests.size(), 1u);
    EXPECT_EQ(openRequests[0].title, "Browse File");
    EXPECT_EQ(openRequests[0].dir, dir.path());
    EXPECT_EQ(openRequests[0].filter, "Vantrel Libraries (*.vnb)");
    ASSERT_EQ(forms::TreeViews().Count(), 1);
    EXPECT_EQ(forms::TreeViews().Active()->Caption(), "Chosen");

    // Opening it again gives a second, independent window, with the same caption.
    frame->m_open->trigger();
    ASSERT_EQ(forms::TreeViews().Count(), 2);
    EXPECT_EQ(forms::TreeViews().All()[1]->Caption(), "Chosen");
    EXPECT_NE(forms::TreeViews().All()[0]->Tag, forms::TreeViews().All()[1]->Tag);

    // A cancelled or blank answer opens nothing.
    for (const QString& answer : {QString(), QStringLiteral("   ")}) {
        openAnswer = answer;
        frame->m_open->trigger();
    }
    EXPECT_EQ(openRequests.size(), 4u);
    EXPECT_EQ(forms::TreeViews().WindowCounter(), 2);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(FrameCommandsTest, ImportOpensTheNewLibraryUnlessTheWizardWasCancelled) {
    StartFrame();
    const QString made = Write(Small("Imported"), "imported.vnb");
    NewLibraryPath = "stale";
    ImportCancelled = 1;
    QString pathSeen = "unset";
    int cancelledSeen = -1;
    onModal = [&](QDialog& dialog) {
        pathSeen = NewLibraryPath;
        cancelledSeen = ImportCancelled;
        EXPECT_NE(qobject_cast<frmImportWizard*>(&dialog), nullptr);
        NewLibraryPath = made;
        return static_cast<int>(QDialog::Accepted);
    };
    frame->m_import->trigger();
    EXPECT_EQ(pathSeen, "") << "cleared before the wizard runs";
    EXPECT_EQ(cancelledSeen, 0);
    ASSERT_EQ(forms::TreeViews().Count(), 1);
    EXPECT_EQ(forms::TreeViews().Active()->Caption(), "Imported");

    onModal = [&](QDialog&) {
        ImportCancelled = 1;
        return static_cast<int>(QDialog::Rejected);
    };
    frame->m_import->trigger();
    EXPECT_EQ(forms::TreeViews().Count(), 1);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(FrameCommandsTest, LibraryRemarksShowsTheActiveLibrarysRemarks) {
    StartFrame();
    frame->mFLibRemarks->trigger();
    ASSERT_EQ(modals.size(), 1u);
    EXPECT_EQ(modals[0].title, "Library Remarks");
    EXPECT_EQ(modals[0].remarks, "No open libraries");

    LibraryBuilder a = Small("A");
    LibraryBuilder b = Small("B");
    b.Remarks("About B\r\nSecond line");
    frmTreeView* fa = Open(a, "a.vnb");
    frmTreeView* fb = Open(b, "b.vnb");
    ASSERT_TRUE(fa && fb);
    modals.clear();
    fa->tvTreeView_GotFocus();
    frame->mFLibRemarks->trigger();
    ASSERT_EQ(modals.size(), 1u);
    EXPECT_EQ(modals[0].remarks, "") << "empty remarks open the window with nothing in it";
    fb->tvTreeView_GotFocus();
    frame->mFLibRemarks->trigger();
    ASSERT_EQ(modals.size(), 2u);
    EXPECT_TRUE(modals[1].remarks.startsWith("About B"));
    EXPECT_TRUE(modals[1].remarks.contains("Second line"));
}

TEST_F(FrameCommandsTest, TheRemarksWindowIsReadOnlyCourierWithItsOkButton) {
    StartFrame();
    frmLibRemarks remarks(frame.get());
    EXPECT_EQ(remarks.windowTitle(), "Library Remarks");
    EXPECT_TRUE(remarks.txtLibRemarks->isReadOnly());
    EXPECT_TRUE(remarks.txtLibRemarks->font().fixedPitch());
    EXPECT_EQ(remarks.txtLibRemarks->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
    EXPECT_EQ(remarks.Command1->text(), "OK");
    remarks.resize(600, 400);
    remarks.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(remarks.txtLibRemarks->height(), remarks.height() - TwipsToPixels(585));
    EXPECT_EQ(remarks.txtLibRemarks->width(), remarks.width());
    EXPECT_GT(remarks.Command1->geometry().top(), remarks.txtLibRemarks->geometry().bottom());
    EXPECT_LE(remarks.Command1->geometry().right(), remarks.width());
    remarks.Command1->click();
    EXPECT_FALSE(remarks.isVisible());
    EXPECT_EQ(remarks.result(), QDialog::Accepted);
}

TEST_F(FrameCommandsTest, ReverseSidesTogglesTheFlagAndItsCheckMark) {
    StartFrame();
    frame->m_reverse_sides->trigger();
    EXPECT_TRUE(bReverseSides);
    EXPECT_TRUE(frame->m_reverse_sides->isChecked());
    frame->m_reverse_sides->trigger();
    EXPECT_FALSE(bReverseSides);
    EXPECT_FALSE(frame->m_reverse_sides->isChecked());
    frame->m_reverse_sides->trigger();
    frame.reset();
    FlushDeletes();
    StartFrame();
    EXPECT_FALSE(bReverseSides) << "not kept across a start";
}

TEST_F(FrameCommandsTest, ResetChangesTheBoardOnly) {
    StartFrame();
    frmTreeView* form = Open(Small());
    ASSERT_NE(form, nullptr);
    form->SelectNode(2);
    form->tvTreeView_NodeClick(2);
    const QStringList moves = forms::Moves().Lines();
    const QString comments = forms::Comments().Text();
    frame->m_reset_board->trigger();
    EXPECT_EQ(forms::Board().Board(), kStart);
    EXPECT_EQ(form->GetSelectedIndex(), 2);
    EXPECT_EQ(forms::Moves().Lines(), moves);
    EXPECT_EQ(forms::Comments().Text(), comments);
}

TEST_F(FrameCommandsTest, TheAboutBoxNamesTheProductVersionAndContact) {
    StartFrame();
    bool seen = false;
    onModal = [&](QDialog& dialog) {
        auto* about = qobject_cast<frmAbout*>(&dialog);
        if (!about) return 0;
        seen = true;
        EXPECT_EQ(about->windowTitle(), "About Vantrel");
        EXPECT_EQ(about->lblTitle->text(), "Vantrel  Version " VANTREL_VERSION);
        EXPECT_EQ(about->lblSupport->text(), "e-mail your comments and suggestions to:");
        EXPECT_EQ(about->cmdOK->text(), "&OK");
        for (QLabel* label : {about->lblDescription, about->lblLegal, about->lblCompany})
            EXPECT_FALSE(label->text().isEmpty());
        EXPECT_TRUE(about->lblEmail->text().contains('@'));
        about->cmdOK->click();
        return dialog.result();
    };
    frame->m_about->trigger();
    EXPECT_TRUE(seen);
}

TEST_F(FrameCommandsTest, ClosingTheFrameLetsTheLibrariesGoWithoutTheirCleanUp) {
    StartFrame();
    ASSERT_NE(Open(Small("One"), "1.vnb"), nullptr);
    ASSERT_NE(Open(Small("Two"), "2.vnb"), nullptr);
    const QString comments = forms::Comments().Text();
    QString statusText;
    bool barHidden = false;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            if (forms::StatusLoaded()) {
                statusText = forms::Status().lblMessage->text();
                barHidden = forms::Status().Progbar->isHidden();
            }
        },
        Qt::QueuedConnection);
    EXPECT_TRUE(frame->close());
    FlushDeletes();
    EXPECT_EQ(statusText, "Please wait while Vantrel unloads...");
    EXPECT_TRUE(barHidden);
    EXPECT_TRUE(AppClosing);
    EXPECT_FALSE(forms::StatusLoaded());
    EXPECT_EQ(forms::Comments().Text(), comments) << "no library ran its clean-up";
    EXPECT_EQ(forms::TreeViews().Count(), 0) << "the windows are gone from the register";
    EXPECT_EQ(frame->MdiArea()->subWindowList().size(), 3) << "only the shared windows are left";
}

TEST_F(FrameCommandsTest, ClosingTheFrameWhileALibraryLoadsIsCalledOff) {
    StartFrame();
    frmTreeView* bystander = Open(Small("Open already"), "open.vnb");
    ASSERT_NE(bystander, nullptr);
    bool accepted = true;
    bool tried = false;
    QString textAfter;
    bool barAfter = false;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            tried = true;
            accepted = frame->close();
            if (forms::StatusLoaded()) {
                textAfter = forms::Status().lblMessage->text();
                barAfter = !forms::Status().Progbar->isHidden();
            }
        },
        Qt::QueuedConnection);
    frmTreeView* form = Open(Chain(300, "Loading"));
    ASSERT_TRUE(tried);
    EXPECT_FALSE(accepted);
    EXPECT_EQ(textAfter, "Building tree...") << "the load's bar comes back as it was";
    EXPECT_TRUE(barAfter);
    EXPECT_FALSE(AppClosing) << "the close is called off";
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->Contents().tree.Count(), 300);
    EXPECT_TRUE(frame->isVisible());
    EXPECT_TRUE(forms::OuterWindow(&forms::Board())->isVisible());
    EXPECT_EQ(forms::TreeViews().All(), (QList<frmTreeView*>{bystander, form})) << "no library went";
    EXPECT_TRUE(forms::OuterWindow(bystander)->isVisible());

    // Once the load is over, the library goes through its own unload.
    EXPECT_TRUE(CloseByUser(form));
    EXPECT_EQ(forms::TreeViews().Count(), 1);
}

TEST(Forms, TheSharedHelpersBehaveAsTheProgramExpects) {
    EXPECT_EQ(ProgramTitle(), "Vantrel");

    MessageRecorder messages;
    ShowError("Disk full", 61);
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_EQ(messages.messages[0].text, "The following Error occurred:\n\nDisk full\nNumber: 61");
    EXPECT_EQ(messages.messages[0].icon, ui::Icon::Exclamation);
    EXPECT_EQ(messages.messages[0].buttons, ui::Buttons::Ok);

    QWidget w;
    EXPECT_TRUE(SetAlwaysOnTop(&w));
    EXPECT_TRUE(w.isVisible());
    EXPECT_TRUE(w.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(SetAlwaysOnTop(&w, false));
    EXPECT_FALSE(w.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(w.isVisible());

    ScratchProgramDir scratch;
    EXPECT_EQ(ProgramDir(), scratch.path());
}

TEST(Forms, TheStatusWindowStartsFreshAfterEachUnload) {
    frm_status& status = forms::Status();
    EXPECT_EQ(status.windowTitle(), "Vantrel");
    EXPECT_EQ(status.lblMessage->text(), "Building tree...");
    EXPECT_EQ(status.Progbar->minimum(), 0);
    EXPECT_EQ(status.Progbar->maximum(), 100);
    status.Progbar->setValue(40);
    status.Progbar->hide();
    status.lblMessage->setText("Please wait while Vantrel unloads...");
    forms::UnloadStatus();
    EXPECT_FALSE(forms::StatusLoaded());
    frm_status& fresh = forms::Status();
    EXPECT_EQ(fresh.Progbar->value(), 0);
    EXPECT_FALSE(fresh.Progbar->isHidden());
    EXPECT_EQ(fresh.lblMessage->text(), "Building tree...");
    forms::UnloadStatus();
}
