// The import wizard's pages: the walk with Next and Back, the tests of the
// tag and file pages, Browse, and the ways out before any run.
#include <gtest/gtest.h>

#include <QAbstractButton>
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
#include <functional>

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
    EXPECT_EQ(VisiblePanel(), 0);
    EXPECT_EQ(w.PageHelpContext, 137);
    EXPECT_FALSE(w.cmdBack->isEnabled());
    EXPECT_TRUE(w.cmdNext->isEnabled());
    EXPECT_FALSE(w.ImportRunning);
    EXPECT_EQ(QStringList({w.cmdBack->text(), w.cmdNext->text(), w.cmdCancel->text(), w.cmdHelp->text()}),
              QStringList({"< &Back", "&Next >", "&Cancel", "&Help"}));
    EXPECT_EQ(w.focusWidget(), w.cmdNext);

    EXPECT_TRUE(w.optImportType[0]->isChecked());
    const char* tags[7] = {"[Event ...]", "[Site ...]",  "[Date ...]",  "[Round ...]",
                           "[White ...]", "[Black ...]", "[Result ...]"};
    for (size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(w.chkTag[i]->text(), tags[i]);
        EXPECT_FALSE(w.chkTag[i]->isChecked()) << i;
    }
    EXPECT_TRUE(w.chkIgnoreQuestion->isChecked());
    EXPECT_EQ(w.txtCommentStart->text(), "//");
    EXPECT_EQ(w.txtCommentEnd->text(), "//");
    EXPECT_EQ(w.lblCount->text(), "0");

    // The captions of each page, labels and buttons alike.
    const std::pair<int, QStringList> pages[] = {
        {0, {"This wizard will help you import a text file to a ", "Vantrel Library.",
             "Import file is in PGN format.", "Import file is in SAN format.",
             "For a complete list of the recognized syntax, see Help.", "To begin, click Next."}},
        {5, {"Select the tags that will be used to make up the name of each game:",
             "Remove question marks from game name"}},
        {1, {"Enter a text file to import", "Browse...", "Enter a name for the new library",
             "Comment start indicator :", "Comment end indicator :"}},
        {2, {"Click Next to create:", "From:"}},
        {3, {"Record Counter:"}},
        {4, {"The Vantrel library was successfully created.", "Click 'Next' to open new library.",
             "Click 'Exit' to end without opening new library."}},
    };
    for (const auto& [panel, wanted] : pages) {
        QStringList texts;
        for (auto* label : w.Panel[static_cast<size_t>(panel)]->findChildren<QLabel*>()) texts << label->text();
        for (auto* button : w.Panel[static_cast<size_t>(panel)]->findChildren<QAbstractButton*>()) texts << button->text();
        for (const QString& text : wanted) EXPECT_TRUE(texts.contains(text)) << panel << ": " << text.toStdString();
    }
}

TEST_F(WizardWalkTest, PgnWalkGoesThroughTheTagPageAndBackAgain) {
    auto& w = *wizard_;
    const QString file = MakeFile("games.pgn", 100);

    QTest::keyClick(&w, Qt::Key_Return);  // Enter presses Next
    EXPECT_EQ(VisiblePanel(), 5);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    EXPECT_EQ(w.PageHelpContext, 144);

    w.chkTag[4]->setChecked(true);
    Next();
    EXPECT_EQ(VisiblePanel(), 1);
    EXPECT_EQ(w.PageHelpContext, 137);

    w.txtInFile->setText(file);
    w.txtBookName->setText("  My Book  ");
    Next();
    EXPECT_EQ(VisiblePanel(), 2);
    EXPECT_EQ(w.lblCreateBook->text(), "My Book.vnb");
    EXPECT_EQ(w.lblFromFile->text(), file);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    EXPECT_TRUE(messages_.messages.empty());

    const std::pair<int, int> back[] = {{1, 137}, {5, 144}, {0, 137}};
    for (const auto& [panel, help] : back) {
        Back();
        EXPECT_EQ(VisiblePanel(), panel);
        EXPECT_EQ(w.PageHelpContext, help);
        EXPECT_EQ(w.cmdBack->isEnabled(), panel != 0);
    }
    // What was typed is still there.
    EXPECT_EQ(w.txtBookName->text(), "  My Book  ");
    EXPECT_TRUE(w.chkTag[4]->isChecked());
}

TEST_F(WizardWalkTest, SanWalkSkipsTheTagPageAndTheIndicatorsAreSetAnewOnEachPass) {
    auto& w = *wizard_;
    // Option clicks on the first page choose the help topic of the kind.
    w.optImportType[1]->click();
    EXPECT_EQ(w.PageHelpContext, 145);
    w.optImportType[0]->click();
    EXPECT_EQ(w.PageHelpContext, 144);
    w.optImportType[1]->click();
    Next();
    EXPECT_EQ(VisiblePanel(), 1);
    EXPECT_EQ(w.PageHelpContext, 137);
    EXPECT_TRUE(w.cmdBack->isEnabled());
    w.txtInFile->setText(MakeFile("games.san", 10));
    w.txtBookName->setText("San");
    Next();
    EXPECT_EQ(VisiblePanel(), 2);
    Back();

    // PGN sets its own indicators, locked; SAN after it sets "//" again.
    w.txtCommentStart->setText("<<");
    w.txtCommentEnd->setText(">>");
    Back();
    EXPECT_EQ(VisiblePanel(), 0);
    w.optImportType[0]->click();
    Next();
    EXPECT_EQ(w.txtCommentStart->text(), "{");
    EXPECT_EQ(w.txtCommentEnd->text(), "}");
    EXPECT_FALSE(w.txtCommentStart->isEnabled());
    EXPECT_FALSE(w.txtCommentEnd->isEnabled());
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

TEST_F(WizardWalkTest, FilePageToldOnlyTheFirstTestThatFails) {
    auto& w = *wizard_;
    ToFilePage(true);
    const QString file = MakeFile("games.pgn", 10);
    const QString missing = dir_.file("nowhere.pgn");
    struct Case {
        QString inFile, bookName, text, title;
        QLineEdit* focus;
    };
    const Case cases[] = {
        {"   ", "Book", "Please select a file to import", "Select a file", w.txtInFile},
        {missing, "", "Couldn't open " + missing, "Select another file", w.txtInFile},
        {dir_.path(), "Book", "Couldn't open " + dir_.path(), "Select another file", w.txtInFile},  // a folder
        // The name is opened as typed: a blank behind it makes another name.
        {file + " ", "Book", "Couldn't open " + file + " ", "Select another file", w.txtInFile},
        {file, "    ", "Please enter a name for the new library", "", w.txtBookName},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        messages_.messages.clear();
        w.txtInFile->setText(c.inFile);
        w.txtBookName->setText(c.bookName);
        w.cmdNext->setFocus();
        Next();
        EXPECT_EQ(w.CurrentPage, 1);
        ASSERT_EQ(messages_.messages.size(), 1u);
        EXPECT_EQ(messages_.messages[0].text, c.text);
        EXPECT_EQ(messages_.messages[0].title, c.title);
        EXPECT_EQ(messages_.messages[0].icon, ui::Icon::Exclamation);
        EXPECT_EQ(w.focusWidget(), c.focus);
        EXPECT_EQ(w.txtInFile->text(), c.inFile) << "what was typed stays";
    }
}

TEST_F(WizardWalkTest, FilesUpTo64KPassAndLargerOnesAsk) {
    auto& w = *wizard_;
    ToFilePage(true);
    w.txtInFile->setText(MakeFile("exact.pgn", 65536));
    w.txtBookName->setText("Book");
    Next();
    EXPECT_EQ(w.CurrentPage, 2);
    EXPECT_TRUE(messages_.messages.empty());

    Back();
    w.txtInFile->setText(MakeFile("big.pgn", 65537));
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
}

TEST_F(WizardWalkTest, BrowseFillsTheFileBox) {
    auto& w = *wizard_;
    QStringList seen;  // title, folder, filter
    QString answer = "/somewhere/games.pgn";
    ui::SetOpenFileHandler([&](const QString& title, const QString& dir, const QString& filter) {
        seen = {title, dir, filter};
        return answer;
    });
    ToFilePage(true);
    w.txtInFile->setText("old.pgn");
    w.cmdBrowseInFile->click();
    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen.mid(0, 2), (QStringList{"Select file to import", vantrel::ProgramDir()}));
    EXPECT_TRUE(seen[2].startsWith("All files")) << seen[2].toStdString();
    EXPECT_EQ(w.txtInFile->text(), "/somewhere/games.pgn");

    answer.clear();  // cancelled
    w.cmdBrowseInFile->click();
    EXPECT_EQ(w.txtInFile->text(), "/somewhere/games.pgn");
}

TEST_F(WizardWalkTest, FocusSelectsTheWholeTextOfTheNameBoxesOnly) {
    auto& w = *wizard_;
    ToFilePage(false);
    for (QLineEdit* edit : {w.txtInFile, w.txtBookName, w.txtCommentStart}) {
        edit->setText("some text here");
        edit->setCursorPosition(3);
        QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
        QApplication::sendEvent(edit, &in);
        QApplication::processEvents();
        EXPECT_EQ(edit->selectedText(), edit == w.txtCommentStart ? "" : "some text here");
    }
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

TEST_F(WizardWalkTest, CancelEscAndTheCloseBoxCloseWithoutAskingBeforeARun) {
    const std::function<void(frmImportWizard&)> ways[] = {
        [](frmImportWizard& w) { w.cmdCancel->click(); },
        [](frmImportWizard& w) { QTest::keyClick(&w, Qt::Key_Escape); },
        [](frmImportWizard& w) { EXPECT_TRUE(w.close()); },
    };
    for (const auto& leave : ways) {
        vantrel::ImportCancelled = 0;
        frmImportWizard w;
        w.show();
        w.cmdNext->click();
        leave(w);
        EXPECT_FALSE(w.isVisible());
        EXPECT_EQ(w.result(), QDialog::Rejected);
        EXPECT_EQ(vantrel::ImportCancelled, 1);
    }
    EXPECT_TRUE(vantrel::NewLibraryPath.isEmpty());
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(WizardWalkTest, HelpOpensTheTopicOfThePage) {
    const QString dataDir = QFileInfo(QStringLiteral(VANTREL_SCHEMA)).absolutePath();
    ASSERT_TRUE(QFile::copy(dataDir + "/vantrel.HLP", dir_.file("vantrel.HLP")));
    wizard_->optImportType[1]->click();
    wizard_->cmdHelp->click();
    ASSERT_NE(HelpWindow::Instance(), nullptr);
    EXPECT_EQ(HelpWindow::Instance()->CurrentTopic(), "Importing a SAN file");
    EXPECT_TRUE(messages_.messages.empty());
    delete HelpWindow::Instance();
}
