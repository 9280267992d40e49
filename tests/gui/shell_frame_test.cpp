// The main frame: its menu, start-up with a command line, the commands of
// the File and Board menus, the About box, the end of the program, and the
// settings store with the memory of the frame's position.
#include "gui_test_support.h"

namespace {

class FrameCommandsTest : public FrameTest {};

// The open windows the Window menu lists.
QStringList Listed(const QMenu* menu) {
    QStringList out;
    for (QAction* a : menu->actions())
        if (a->objectName().isEmpty() && !a->isSeparator()) out << a->text();
    return out;
}

LibraryBuilder Small(const std::string& book = "Small") {
    LibraryBuilder lib(book);
    lib.Add(1, 0, "e4", "", false, std::string(63, '0') + "K").Add(2, 1, "e5");
    return lib;
}

}  // namespace

TEST_F(FrameCommandsTest, TheMenusHaveTheirKeysHideTheShowItemsAndListTheOpenWindows) {
    StartFrame();
    EXPECT_FALSE(frame->MovesPopUpMenu->menuAction()->isVisible() || frame->mCommentsPopUpMenu->menuAction()->isVisible());
    const std::pair<QAction*, const char*> keys[] = {{frame->m_open, "Ctrl+O"}, {frame->m_exit, "Ctrl+X"},
                                                     {frame->mTSearch, "Ctrl+F"}, {frame->mTFindNext, "Ctrl+N"},
                                                     {frame->mBPrintMoveList, "Ctrl+P"}};
    for (const auto& [action, key] : keys) EXPECT_EQ(action->shortcut(), QKeySequence(key)) << key;
    for (QAction* hidden : {frame->mWShowBoard, frame->mWShowComments, frame->mWShowMoves})
        EXPECT_FALSE(hidden->isVisible());
    EXPECT_FALSE(frame->m_reverse_sides->isChecked() || frame->mWRememberPositions->isChecked());
    ASSERT_NE(Open(Small("Listed")), nullptr);
    emit frame->mWindow->aboutToShow();
    const QStringList listed = Listed(frame->mWindow);
    EXPECT_EQ(listed.filter("Listed").size(), 1) << listed.join('|').toStdString();
    EXPECT_EQ(listed.filter("Current Board").size(), 1) << listed.join('|').toStdString();
}

TEST_F(FrameCommandsTest, StartUpShowsTheSharedWindowsAndOpensTheCommandLineAsItStands) {
    const QString path = Write(Small("From the command line"));
    StartFrame(path);
    EXPECT_TRUE(forms::OuterWindow(&forms::Board())->isVisible() && forms::OuterWindow(&forms::Moves())->isVisible());
    ASSERT_EQ(frame->TreeViews().Count(), 1);
    EXPECT_EQ(frame->TreeViews().Active()->Caption(), "From the command line");
    StartFrame("   ");
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_EQ(frame->TreeViews().WindowCounter(), 0);
    EXPECT_EQ(forms::Board().Board(), kStart);
    // A missing file, or a quoted name (quotes are not taken off), fails.
    const QString missing = dir.file("nowhere.vnb");
    StartFrame(missing);
    StartFrame("\"" + path + "\"");
    EXPECT_EQ(messages.Texts(),
              (QStringList{"Problem loading library " + missing, "Problem loading library \"" + path + "\""}));
    EXPECT_TRUE(frame->isVisible());
    EXPECT_EQ(frame->TreeViews().Count(), 0);
}

TEST_F(FrameCommandsTest, OpenAsksForAFileInTheProgramsFolderAndOpensIt) {
    StartFrame();
    openAnswer = Write(Small("Chosen"));
    frame->m_open->trigger();
    ASSERT_EQ(openRequests.size(), 1u);
    EXPECT_EQ((QStringList{openRequests[0].title, openRequests[0].dir, openRequests[0].filter}),
              (QStringList{"Browse File", dir.path(), "Vantrel Libraries (*.vnb)"}));
    // Opening it again gives a second, independent window, with the same caption.
    frame->m_open->trigger();
    ASSERT_EQ(frame->TreeViews().Count(), 2);
    EXPECT_EQ(frame->TreeViews().All()[0]->Caption() + frame->TreeViews().All()[1]->Caption(), "ChosenChosen");
    // A cancelled or blank answer opens nothing.
    for (const QString& answer : {QString(), QStringLiteral("   ")}) {
        openAnswer = answer;
        frame->m_open->trigger();
    }
    EXPECT_EQ(frame->TreeViews().WindowCounter(), 2);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(FrameCommandsTest, ImportOpensTheNewLibraryUnlessTheWizardWasCancelled) {
    StartFrame();
    const QString made = Write(Small("Imported"), "imported.vnb");
    NewLibraryPath = "stale";
    ImportCancelled = 1;
    onModal = [&](QDialog& dialog) {
        EXPECT_TRUE(NewLibraryPath.isEmpty() && ImportCancelled == 0) << "cleared before the wizard runs";
        EXPECT_NE(qobject_cast<frmImportWizard*>(&dialog), nullptr);
        NewLibraryPath = made;
        return static_cast<int>(QDialog::Accepted);
    };
    frame->m_import->trigger();
    ASSERT_EQ(frame->TreeViews().Count(), 1);
    EXPECT_EQ(frame->TreeViews().Active()->Caption(), "Imported");
    onModal = [&](QDialog&) {
        ImportCancelled = 1;
        return static_cast<int>(QDialog::Rejected);
    };
    frame->m_import->trigger();
    EXPECT_EQ(frame->TreeViews().Count(), 1);
}

TEST_F(FrameCommandsTest, LibraryRemarksShowsTheActiveLibrarysRemarksInAFixedPitchWindow) {
    StartFrame();
    frame->mBPrintMoveList->trigger();  // with no library these do nothing
    frame->m_expand_tree->trigger();
    frame->mFLibRemarks->trigger();
    EXPECT_TRUE(messages.messages.empty());
    frmTreeView* fa = Open(Small("A"), "a.vnb");
    frmTreeView* fb = Open(Small("B").Remarks("About B\r\nSecond line"), "b.vnb");
    ASSERT_TRUE(fa && fb);
    fa->tvTreeView_GotFocus();
    frame->mFLibRemarks->trigger();
    fb->tvTreeView_GotFocus();
    frame->mFLibRemarks->trigger();
    ASSERT_EQ(modals.size(), 4u) << "B's remarks came up at its load too";
    EXPECT_EQ(modals[0].title, "Library Remarks");
    EXPECT_EQ(modals[0].remarks, "No open libraries");
    EXPECT_EQ(modals[2].remarks, "") << "empty remarks open the window with nothing in it";
    EXPECT_TRUE(modals[3].remarks.startsWith("About B") && modals[3].remarks.contains("Second line"));
    frmLibRemarks remarks(frame->TreeViews().LibRemarks(), frame.get());
    EXPECT_TRUE(remarks.txtLibRemarks->isReadOnly());
    EXPECT_TRUE(QFontInfo(remarks.txtLibRemarks->font()).fixedPitch()) << "the font really drawn";
    EXPECT_EQ(remarks.Command1->text(), "OK");
    remarks.resize(600, 400);
    remarks.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(remarks.txtLibRemarks->size(), QSize(remarks.width(), remarks.height() - TwipsToPixels(585)));
    EXPECT_GT(remarks.Command1->geometry().top(), remarks.txtLibRemarks->geometry().bottom());
}

TEST_F(FrameCommandsTest, ClosingTheFrameLetsTheLibrariesGoWithoutTheirCleanUp) {
    StartFrame();
    ASSERT_NE(Open(Small("One"), "1.vnb"), nullptr);
    const QString comments = forms::Comments().Text();
    QString statusText;
    QMetaObject::invokeMethod(qApp, [&] { statusText = forms::Status().lblMessage->text(); }, Qt::QueuedConnection);
    EXPECT_TRUE(frame->close());
    FlushDeletes();
    EXPECT_EQ(statusText, "Please wait while Vantrel unloads...");
    EXPECT_TRUE(AppClosing && !forms::StatusLoaded());
    EXPECT_EQ(forms::Comments().Text(), comments) << "no library ran its clean-up";
    EXPECT_EQ(frame->MdiArea()->subWindowList().size(), 3) << "only the shared windows are left";
}

namespace {

class SettingsTest : public FrameTest {
protected:
    // What an earlier run that remembered the frame left: "T" and the numbers.
    static void Remembered(std::initializer_list<std::pair<const char*, int>> numbers) {
        SaveSettingText("Forms", "SmartForms", "T");
        for (const auto& [key, value] : numbers) SaveSettingNumber("Forms", key, value);
    }
    void CloseFrame() {
        ASSERT_TRUE(frame->close());
        frame.reset();
        FlushDeletes();
        AppClosing = false;
    }
};

}  // namespace

TEST_F(SettingsTest, OnlyTRemembersAndUncheckingSavesNothingSoTheOldPositionStays) {
    SaveSettingText("Forms", "SmartForms", "t");
    SaveSettingNumber("Forms", "MDIVantrelLeft", 1200);
    StartFrame();
    EXPECT_FALSE(frame->mWRememberPositions->isChecked());
    CloseFrame();
    EXPECT_EQ(SettingsStore().allKeys().size(), 2) << "nothing saved at exit";
    Remembered({{"MDIVantrelWinState", 0}, {"MDIVantrelLeft", 1200}, {"MDIVantrelTop", 600},
                {"MDIVantrelWidth", 7200}, {"MDIVantrelHeight", 5400}});
    StartFrame();
    ASSERT_TRUE(frame->mWRememberPositions->isChecked());
    EXPECT_EQ(QRect(frame->pos(), frame->size()), QRect(100, 50, 600, 450));
    frame->mWRememberPositions->trigger();
    EXPECT_FALSE(SmartForms);
    frame->move(300, 300);
    CloseFrame();
    EXPECT_EQ(GetSettingText("Forms", "SmartForms"), "T");
    EXPECT_EQ(GetSettingNumber("Forms", "MDIVantrelLeft"), 1200);
}

TEST_F(SettingsTest, ACheckedItemSavesThePositionInTwipsWithinSixteenBitsAndTheNextStartRestoresIt) {
    StartFrame();
    frame->mWRememberPositions->trigger();
    EXPECT_TRUE(frame->mWRememberPositions->isChecked());
    frame->setGeometry(40, 50, 700, 500);
    QCoreApplication::processEvents();
    const QRect at(frame->pos(), frame->size());
    CloseFrame();
    EXPECT_EQ(GetSettingText("Forms", "SmartForms"), "T");
    QList<int> saved;
    for (const char* key : {"MDIVantrelWinState", "MDIVantrelLeft", "MDIVantrelTop", "MDIVantrelWidth", "MDIVantrelHeight"})
        saved << GetSettingNumber("Forms", key);
    EXPECT_EQ(saved, (QList<int>{0, PixelsToTwips(at.x()), PixelsToTwips(at.y()), PixelsToTwips(at.width()), PixelsToTwips(at.height())}));
    SmartForms = false;
    StartFrame();
    EXPECT_TRUE(frame->mWRememberPositions->isChecked());
    EXPECT_EQ(QRect(frame->pos(), frame->size()), at);
    frame->setGeometry(10, 10, 3500, 700);
    CloseFrame();
    EXPECT_EQ(GetSettingNumber("Forms", "MDIVantrelWidth"), 32767);
}

TEST_F(SettingsTest, AFrameClosedMinimizedComesBackSo) {
    Remembered({{"MDIVantrelWinState", 1}});
    StartFrame();
    EXPECT_TRUE(frame->isMinimized());
    EXPECT_FALSE(forms::OuterWindow(&forms::Comments())->isVisible()) << "the placing at the start did nothing";
    EXPECT_EQ(forms::Board().Board(), kStart) << "Reset still ran";
    frame->showNormal();
    EXPECT_TRUE(forms::OuterWindow(&forms::Board())->isVisible()) << "a restore places the board";
}

TEST(MessageBoxTest, AShortBoxShowsItsWholeTitleWithOnlyACloseButton) {
    const auto box = ui::MakeMessageBox({"x", "Select another file", ui::Buttons::Ok, ui::Icon::Exclamation});
    box->show();
    const Qt::WindowFlags flags = box->windowHandle()->flags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint) && flags.testFlag(Qt::CustomizeWindowHint));
    EXPECT_FALSE(flags & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    // A title bar draws its title in bold beside the window's icon and the
    // close button, each a square as high as the bar.
    QFont bold = box->font();
    bold.setBold(true);
    const int bar = QFontMetrics(bold).height() + 8;
    EXPECT_GE(box->width(), QFontMetrics(bold).horizontalAdvance(box->windowTitle()) + 2 * bar);
}

// Twips follow the font's DPI: a frame remembered, or designed, on a screen
// of fewer pixels to the inch is larger than this screen.
TEST_F(SettingsTest, TheFrameAndItsWindowsKeepInsideTheScreensAvailableAreaRememberedOrNot) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const auto inside = [&] {
        EXPECT_TRUE(screen.contains(frame->frameGeometry())) << "frame";
        for (QWidget* w : {static_cast<QWidget*>(&forms::Board()), static_cast<QWidget*>(&forms::Comments()), static_cast<QWidget*>(&forms::Moves())})
            EXPECT_TRUE(frame->MdiArea()->viewport()->rect().contains(forms::OuterWindow(w)->geometry())) << w->windowTitle().toStdString();
    };
    StartFrame();
    inside();
    Remembered({{"MDIVantrelWinState", 0}, {"MDIVantrelLeft", PixelsToTwips(screen.width() / 2)}, {"MDIVantrelTop", 480},
                {"MDIVantrelWidth", PixelsToTwips(screen.width() * 7 / 4)}, {"MDIVantrelHeight", PixelsToTwips(screen.height() * 7 / 4)}});
    StartFrame();
    inside();
}
