// The import wizard's pages: the walk with Next and Back, the tests of the
// tag and file pages, Browse, and the ways out before any run.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTest>

#include "gui_test_support.h"
#include "shell/help_window.h"
#include "import/ui/import_wizard.h"

using vantrel::testing::MessageRecorder;
using vantrel::testing::ScratchProgramDir;
namespace ui = vantrel::ui;

namespace {

class WizardWalkTest : public ::testing::Test {
protected:
    void SetUp() override {
        vantrel::NewLibraryPath.clear();
        vantrel::ImportCancelled = 0;
        wizard_ = std::make_unique<frmImportWizard>();
        wizard_->show();
    }
    void TearDown() override {
        ui::SetOpenFileHandler({});
        wizard_.reset();
    }

    // A file of `size` bytes in the scratch folder.
    QString MakeFile(const QString& name, qint64 size) {
        const QString path = dir_.file(name);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(size, 'x'));
        return path;
    }

    // The one visible panel.
    int VisiblePanel() const {
        int shown = -1;
        for (int i = 0; i < 6; ++i) {
            if (wizard_->Panel[static_cast<size_t>(i)]->isVisible()) {
                EXPECT_EQ(shown, -1) << "two panels visible";
                shown = i;
            }
        }
        EXPECT_EQ(shown, wizard_->CurrentPage);
        return shown;
    }

    void Next() { wizard_->cmdNext->click(); }
    void Back() { wizard_->cmdBack->click(); }

    // From page 0 to the file page, as PGN with the Result tag or as SAN.
    void ToFilePage(bool pgn) {
        wizard_->optImportType[pgn ? 0 : 1]->click();
        Next();
        if (pgn) {
            wizard_->chkTag[6]->setChecked(true);
            Next();
        }
        ASSERT_EQ(wizard_->CurrentPage, 1);
    }

    ScratchProgramDir dir_;
    MessageRecorder messages_;
    std::unique_ptr<frmImportWizard> wizard_;
};

}  // namespace

TEST_F(WizardWalkTest, StartsOnTheFirstPageWithItsControls) {
    auto& w = *wizard_;
    EXPECT_EQ(w.windowTitle(), "Vantrel Import Wizard");
    EXPECT_TRUE(w.isModal());
    EXPECT_EQ(w.CurrentPage, 0);
    EXPECT_EQ(VisiblePanel(), 0);
    EXPECT_EQ(w.PageHelpContext, 137);
    EXPECT_FALSE(w.cmdBack->isEnabled());
    EXPECT_TRUE(w.cmdNext->isEnabled());
    EXPECT_TRUE(w.cmdCancel->isEnabled());
    EXPECT_TRUE(w.cmdHelp->isEnabled());
    EXPECT_FALSE(w.ImportRunning);

    EXPECT_EQ(w.cmdBack->text(), "< &Back");
    EXPECT_EQ(w.cmdNext->text(), "&Next >");
    EXPECT_EQ(w.cmdCancel->text(), "&Cancel");
    EXPECT_EQ(w.cmdHelp->text(), "&Help");
    EXPECT_TRUE(w.cmdNext->isDefault());
    EXPECT_EQ(w.focusWidget(), w.cmdNext);

    EXPECT_EQ(w.optImportType[0]->text(), "Import file is in PGN format.");
    EXPECT_EQ(w.optImportType[1]->text(), "Import file is in SAN format.");
    EXPECT_TRUE(w.optImportType[0]->isChecked());
    EXPECT_FALSE(w.optImportType[1]->isChecked());

    const char* tags[7] = {"[Event ...]", "[Site ...]",  "[Date ...]",  "[Round ...]",
                           "[White ...]", "[Black ...]", "[Result ...]"};
    for (size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(w.chkTag[i]->text(), tags[i]);
        EXPECT_FALSE(w.chkTag[i]->isChecked()) << i;
    }
    EXPECT_EQ(w.chkIgnoreQuestion->text(), "Remove question marks from game name");
    EXPECT_TRUE(w.chkIgnoreQuestion->isChecked());
    EXPECT_EQ(w.cmdBrowseInFile->text(), "Browse...");
    EXPECT_EQ(w.txtCommentStart->text(), "//");
    EXPECT_EQ(w.txtCommentEnd->text(), "//");
    EXPECT_EQ(w.lblCount->text(), "0");
    EXPECT_EQ(w.lstStatus->count(), 0);
}

TEST_F(WizardWalkTest, PagesCarryTheirTexts) {
    auto texts = [&](int panel) {
        QStringList out;
        for (auto* label : wizard_->Panel[static_cast<size_t>(panel)]->findChildren<QLabel*>())
            out << label->text();
        return out;
    };
    EXPECT_TRUE(texts(0).contains("This wizard will help you import a text file to a "));
    EXPECT_TRUE(texts(0).contains("Vantrel Library."));
    EXPECT_TRUE(texts(0).contains("For a complete list of the recognized syntax, see Help."));
    EXPECT_TRUE(texts(0).contains("To begin, click Next."));
    EXPECT_TRUE(texts(5).contains("Select the tags that will be used to make up the name of each game:"));
    EXPECT_TRUE(texts(1).contains("Enter a text file to import"));
    EXPECT_TRUE(texts(1).contains("Enter a name for the new library"));
    EXPECT_TRUE(texts(1).contains("Comment start indicator :"));
    EXPECT_TRUE(texts(1).contains("Comment end indicator :"));
    EXPECT_TRUE(texts(2).contains("Click Next to create:"));
    EXPECT_TRUE(texts(2).contains("From:"));
    EXPECT_TRUE(texts(3).contains("Record Counter:"));
    EXPECT_TRUE(texts(4).contains("The Vantrel library was successfully created."));
    EXPECT_TRUE(texts(4).contains("Click 'Next' to open new library."));
    EXPECT_TRUE(texts(4).contains("Click 'Exit' to end without opening new library."));
}

TEST_F(WizardWalkTest, PgnWalkGoesThroughTheTagPageAndBackAgain) {
    auto& w = *wizard_;
    const QString file = MakeFile("games.pgn", 100);

    Next();
    EXPECT_EQ(VisiblePanel(), 5);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    EXPECT_EQ(w.PageHelpContext, 144);
    EXPECT_EQ(w.txtCommentStart->text(), "{");
    EXPECT_EQ(w.txtCommentEnd->text(), "}");
    EXPECT_FALSE(w.txtCommentStart->isEnabled());
    EXPECT_FALSE(w.txtCommentEnd->isEnabled());

    w.chkTag[4]->setChecked(true);
    Next();
    EXPECT_EQ(VisiblePanel(), 1);
    EXPECT_EQ(w.PageHelpContext, 137);
    EXPECT_TRUE(w.cmdBack->isEnabled());

    w.txtInFile->setText(file);
    w.txtBookName->setText("  My Book  ");
    Next();
    EXPECT_EQ(VisiblePanel(), 2);
    EXPECT_EQ(w.lblCreateBook->text(), "My Book.vnb");
    EXPECT_EQ(w.lblFromFile->text(), file);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    EXPECT_TRUE(messages_.messages.empty());

    Back();
    EXPECT_EQ(VisiblePanel(), 1);
    EXPECT_EQ(w.PageHelpContext, 137);
    Back();
    EXPECT_EQ(VisiblePanel(), 5);
    EXPECT_EQ(w.PageHelpContext, 144);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    Back();
    EXPECT_EQ(VisiblePanel(), 0);
    EXPECT_EQ(w.PageHelpContext, 137);
    EXPECT_FALSE(w.cmdBack->isEnabled());
    // What was typed is still there.
    EXPECT_EQ(w.txtBookName->text(), "  My Book  ");
    EXPECT_TRUE(w.chkTag[4]->isChecked());
}

TEST_F(WizardWalkTest, SanWalkSkipsTheTagPage) {
    auto& w = *wizard_;
    w.optImportType[1]->click();
    EXPECT_EQ(w.PageHelpContext, 145);
    Next();
    EXPECT_EQ(VisiblePanel(), 1);
    EXPECT_EQ(w.PageHelpContext, 137);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    EXPECT_TRUE(w.txtCommentStart->isEnabled());
    EXPECT_TRUE(w.txtCommentEnd->isEnabled());
    EXPECT_EQ(w.txtCommentStart->text(), "//");
    EXPECT_EQ(w.txtCommentEnd->text(), "//");

    w.txtInFile->setText(MakeFile("games.san", 10));
    w.txtBookName->setText("San");
    Next();
    EXPECT_EQ(VisiblePanel(), 2);
    Back();
    EXPECT_EQ(VisiblePanel(), 1);
    Back();
    EXPECT_EQ(VisiblePanel(), 0);
    EXPECT_FALSE(w.cmdBack->isEnabled());
}

TEST_F(WizardWalkTest, OptionClicksSetTheHelpTopicOnThePageOfTheKind) {
    auto& w = *wizard_;
    w.optImportType[1]->click();
    EXPECT_EQ(w.PageHelpContext, 145);
    w.optImportType[0]->click();
    EXPECT_EQ(w.PageHelpContext, 144);
    Next();  // to the tag page
    Back();
    EXPECT_EQ(w.PageHelpContext, 137);
}

TEST_F(WizardWalkTest, CommentIndicatorsAreSetAnewOnEachPassOfTheFirstPage) {
    auto& w = *wizard_;
    w.optImportType[1]->click();
    Next();
    w.txtCommentStart->setText("<<");
    w.txtCommentEnd->setText(">>");
    Back();
    w.optImportType[0]->click();
    Next();
    EXPECT_EQ(w.txtCommentStart->text(), "{");
    EXPECT_EQ(w.txtCommentEnd->text(), "}");
    EXPECT_FALSE(w.txtCommentStart->isEnabled());
    Back();
    w.optImportType[1]->click();
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    EXPECT_EQ(w.txtCommentStart->text(), "//");
    EXPECT_EQ(w.txtCommentEnd->text(), "//");
    EXPECT_TRUE(w.txtCommentStart->isEnabled());
    EXPECT_TRUE(w.txtCommentEnd->isEnabled());
}

TEST_F(WizardWalkTest, TagPageNeedsOneTagAndResultAloneIsEnough) {
    auto& w = *wizard_;
    Next();
    Next();
    EXPECT_EQ(w.CurrentPage, 5);
    ASSERT_EQ(messages_.messages.size(), 1u);
    EXPECT_EQ(messages_.messages[0].text, "You must select at least 1 tag for a game name");
    EXPECT_EQ(messages_.messages[0].icon, ui::Icon::Exclamation);
    EXPECT_EQ(messages_.messages[0].buttons, ui::Buttons::Ok);
    EXPECT_TRUE(messages_.messages[0].title.isEmpty());

    w.chkIgnoreQuestion->setChecked(true);
    Next();
    EXPECT_EQ(w.CurrentPage, 5) << "the question-mark box is no tag";

    w.chkTag[6]->setChecked(true);
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    EXPECT_EQ(messages_.messages.size(), 2u);
}

TEST_F(WizardWalkTest, FilePageRefusesAMissingFileName) {
    auto& w = *wizard_;
    ToFilePage(true);
    w.txtInFile->setText("   ");
    w.txtBookName->setText("Book");
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages_.messages.size(), 1u);
    EXPECT_EQ(messages_.messages[0].text, "Please select a file to import");
    EXPECT_EQ(messages_.messages[0].title, "Select a file");
    EXPECT_EQ(messages_.messages[0].icon, ui::Icon::Exclamation);
    EXPECT_EQ(w.focusWidget(), w.txtInFile);
    EXPECT_EQ(w.txtInFile->text(), "   ");
}

TEST_F(WizardWalkTest, FilePageRefusesAFileThatWontOpen) {
    auto& w = *wizard_;
    ToFilePage(false);
    const QString missing = dir_.file("nowhere.san");
    w.txtInFile->setText(missing);
    w.txtBookName->setText("Book");
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages_.messages.size(), 1u);
    EXPECT_EQ(messages_.messages[0].text, "Couldn't open " + missing);
    EXPECT_EQ(messages_.messages[0].title, "Select another file");
    EXPECT_EQ(messages_.messages[0].icon, ui::Icon::Exclamation);
    EXPECT_EQ(w.focusWidget(), w.txtInFile);

    // A folder is no file to read.
    w.txtInFile->setText(dir_.path());
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages_.messages.size(), 2u);
    EXPECT_EQ(messages_.messages[1].text, "Couldn't open " + dir_.path());

    // The name is opened as typed: blanks around it make another name.
    const QString file = MakeFile("games.san", 10);
    w.txtInFile->setText(file + " ");
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages_.messages.size(), 3u);
    EXPECT_EQ(messages_.messages[2].text, "Couldn't open " + file + " ");
    EXPECT_FALSE(w.CanOpenInFile());
    w.txtInFile->setText(file);
    EXPECT_TRUE(w.CanOpenInFile());
}

TEST_F(WizardWalkTest, FilePageRefusesABlankLibraryName) {
    auto& w = *wizard_;
    ToFilePage(true);
    w.txtInFile->setText(MakeFile("games.pgn", 10));
    w.txtBookName->setText("    ");
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages_.messages.size(), 1u);
    EXPECT_EQ(messages_.messages[0].text, "Please enter a name for the new library");
    EXPECT_TRUE(messages_.messages[0].title.isEmpty());
    EXPECT_EQ(messages_.messages[0].icon, ui::Icon::Exclamation);
    EXPECT_EQ(w.focusWidget(), w.txtBookName);
}

TEST_F(WizardWalkTest, FilesUpTo64KPassWithoutAQuestion) {
    auto& w = *wizard_;
    ToFilePage(true);
    w.txtInFile->setText(MakeFile("exact.pgn", 65536));
    w.txtBookName->setText("Book");
    Next();
    EXPECT_EQ(w.CurrentPage, 2);
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(WizardWalkTest, LargerFilesAskAndCancelStaysOnThePage) {
    auto& w = *wizard_;
    ToFilePage(true);
    w.txtInFile->setText(MakeFile("big.pgn", 65537));
    w.txtBookName->setText("Book");
    messages_.AnswerWith(ui::Answer::Cancel);
    Next();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages_.messages.size(), 1u);
    const auto& m = messages_.messages[0];
    EXPECT_EQ(m.text,
              "The import file is more than 64K.  This could result in a library that takes a long time to "
              "create and loads very slowly.\n\nSuggestion:\nBreak up the import file into separate files "
              "that are each less than 64K.\n\nOK to continue or Cancel this import?");
    EXPECT_EQ(m.buttons, ui::Buttons::OkCancel);
    EXPECT_EQ(m.defaultAnswer, ui::Answer::Cancel);
    EXPECT_EQ(m.icon, ui::Icon::Question);
    EXPECT_TRUE(m.title.isEmpty());

    messages_.AnswerWith(ui::Answer::Ok);
    Next();
    EXPECT_EQ(w.CurrentPage, 2);
    EXPECT_EQ(messages_.messages.size(), 2u);
}

TEST_F(WizardWalkTest, TheFirstFailingTestIsTheOnlyOneTold) {
    auto& w = *wizard_;
    ToFilePage(true);
    w.txtInFile->setText(dir_.file("missing.pgn"));
    w.txtBookName->clear();
    Next();
    ASSERT_EQ(messages_.messages.size(), 1u);
    EXPECT_EQ(messages_.messages[0].title, "Select another file");
}

TEST_F(WizardWalkTest, BrowseFillsTheFileBox) {
    auto& w = *wizard_;
    QString seenTitle, seenDir, seenFilter;
    QString answer = "/somewhere/games.pgn";
    ui::SetOpenFileHandler([&](const QString& title, const QString& dir, const QString& filter) {
        seenTitle = title;
        seenDir = dir;
        seenFilter = filter;
        return answer;
    });
    ToFilePage(true);
    w.txtInFile->setText("old.pgn");
    w.cmdBrowseInFile->click();
    EXPECT_EQ(seenTitle, "Select file to import");
    EXPECT_EQ(seenDir, vantrel::ProgramDir());
    EXPECT_TRUE(seenFilter.startsWith("All files")) << seenFilter.toStdString();
    EXPECT_EQ(w.txtInFile->text(), "/somewhere/games.pgn");

    answer.clear();  // cancelled
    w.cmdBrowseInFile->click();
    EXPECT_EQ(w.txtInFile->text(), "/somewhere/games.pgn");
}

TEST_F(WizardWalkTest, FocusSelectsTheWholeTextOfTheNameBoxes) {
    auto& w = *wizard_;
    ToFilePage(false);
    for (QLineEdit* edit : {w.txtInFile, w.txtBookName}) {
        edit->setText("some text here");
        edit->setCursorPosition(3);
        ASSERT_FALSE(edit->hasSelectedText());
        QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
        QApplication::sendEvent(edit, &in);
        QApplication::processEvents();
        EXPECT_EQ(edit->selectedText(), "some text here");
    }
    // The comment boxes keep their cursor.
    w.txtCommentStart->setCursorPosition(1);
    QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
    QApplication::sendEvent(w.txtCommentStart, &in);
    QApplication::processEvents();
    EXPECT_FALSE(w.txtCommentStart->hasSelectedText());
}

TEST_F(WizardWalkTest, OptionsCarryTheControlsToTheStore) {
    auto& w = *wizard_;
    w.optImportType[1]->click();
    Next();
    w.txtInFile->setText(QString::fromUtf8("/tmp/j\u00e9u.san"));
    w.txtBookName->setText(QString::fromUtf8("  Caf\u00e9 "));
    w.txtCommentStart->setText(QString::fromUtf8("\u00ab"));
    w.txtCommentEnd->setText(QString::fromUtf8(" \u00bb"));
    w.chkTag[1]->setChecked(true);
    w.chkIgnoreQuestion->setChecked(false);
    const auto o = w.Options();
    EXPECT_EQ(o.programDir, dir_.path().toStdString());
    EXPECT_EQ(o.inFile, "/tmp/j\xc3\xa9u.san");  // a file name in UTF-8
    EXPECT_EQ(o.bookName, "  Caf\xe9 ");          // library text in Windows-1252, untrimmed
    EXPECT_FALSE(o.pgn);
    EXPECT_EQ(o.commentStart, "\xab");
    EXPECT_EQ(o.commentEnd, " \xbb");
    EXPECT_EQ(o.tags, (std::array<bool, 7>{false, true, false, false, false, false, false}));
    EXPECT_FALSE(o.ignoreQuestion);
}

TEST_F(WizardWalkTest, CancelBeforeARunClosesWithoutAsking) {
    auto& w = *wizard_;
    Next();
    w.cmdCancel->click();
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(w.result(), QDialog::Rejected);
    EXPECT_EQ(vantrel::ImportCancelled, 1);
    EXPECT_TRUE(vantrel::NewLibraryPath.isEmpty());
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(WizardWalkTest, EscIsTheCancelButton) {
    auto& w = *wizard_;
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(vantrel::ImportCancelled, 1);
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(WizardWalkTest, CloseBoxCancelsTheImport) {
    auto& w = *wizard_;
    Next();
    EXPECT_TRUE(w.close());
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(vantrel::ImportCancelled, 1);
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(WizardWalkTest, EnterPressesNext) {
    auto& w = *wizard_;
    QTest::keyClick(&w, Qt::Key_Return);
    EXPECT_EQ(w.CurrentPage, 5);
}

TEST_F(WizardWalkTest, HelpOpensTheTopicOfThePage) {
    auto& w = *wizard_;
    const QString dataDir = QFileInfo(QStringLiteral(VANTREL_SCHEMA)).absolutePath();
    ASSERT_TRUE(QFile::copy(dataDir + "/vantrel.HLP", dir_.file("vantrel.HLP")));

    w.cmdHelp->click();  // page 0: the import in general
    ASSERT_NE(HelpWindow::Instance(), nullptr);
    EXPECT_EQ(HelpWindow::Instance()->CurrentTopic(), "Importing games");

    w.optImportType[1]->click();
    w.cmdHelp->click();
    EXPECT_EQ(HelpWindow::Instance()->CurrentTopic(), "Importing a SAN file");

    w.optImportType[0]->click();
    Next();  // the tag page
    w.cmdHelp->click();
    EXPECT_EQ(HelpWindow::Instance()->CurrentTopic(), "Importing a PGN file");
    EXPECT_TRUE(messages_.messages.empty());
    delete HelpWindow::Instance();
}
