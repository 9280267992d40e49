// The import wizard's pages: the walk with Next and Back, the tests of the
// tag and file pages, Browse, and the ways out before any run.
#include "gui_test_support.h"

namespace {

class WizardWalkTest : public ::testing::Test {
protected:
    void SetUp() override {
        vantrel::NewLibraryPath.clear();
        vantrel::ImportCancelled = 0;
        w.show();
    }
    void TearDown() override { ui::SetOpenFileHandler({}); }
    // A file of `size` bytes in the scratch folder.
    // The one visible panel, and the help topic and Back with it.
    std::tuple<int, int, bool> Page() {
        int shown = -1;
        for (int i = 0; i < 6; ++i)
            if (w.Panel[static_cast<size_t>(i)]->isVisible()) shown = shown == -1 ? i : 99;
        EXPECT_EQ(shown, w.CurrentPage);
        return {shown, w.PageHelpContext, w.cmdBack->isEnabled()};
    }
    // From page 0 to the file page, as PGN with the Result tag or as SAN.
    void ToFilePage(bool pgn) {
        w.optImportType[pgn ? 0 : 1]->click();
        w.cmdNext->click();
        if (pgn) {
            w.chkTag[6]->setChecked(true);
            w.cmdNext->click();
        }
        ASSERT_EQ(w.CurrentPage, 1);
    }
    ScratchProgramDir dir;
    MessageRecorder messages;
    frmImportWizard w;
};

}  // namespace

TEST_F(WizardWalkTest, PgnGoesThroughTheTagPageSanSkipsItAndBackRetracesTheWay) {
    const QString file = dir.Write("games.pgn", QByteArray(100, 'x'));
    QTest::keyClick(&w, Qt::Key_Return);  // Enter presses Next
    EXPECT_EQ(Page(), std::tuple(5, 144, true));
    w.chkTag[4]->setChecked(true);
    w.cmdNext->click();
    EXPECT_EQ(Page(), std::tuple(1, 137, true));
    EXPECT_EQ(w.txtCommentStart->text() + w.txtCommentEnd->text(), "{}") << "PGN sets its own, locked";
    EXPECT_FALSE(w.txtCommentStart->isEnabled() || w.txtCommentEnd->isEnabled());
    w.txtInFile->setText(file);
    w.txtBookName->setText("  My Book  ");
    w.cmdNext->click();
    EXPECT_EQ(Page(), std::tuple(2, 137, true));
    EXPECT_EQ(w.lblCreateBook->text(), "My Book.vnb");
    EXPECT_EQ(w.lblFromFile->text(), file);
    for (const auto& back : {std::tuple(1, 137, true), std::tuple(5, 144, true), std::tuple(0, 137, false)}) {
        w.cmdBack->click();
        EXPECT_EQ(Page(), back);
    }
    EXPECT_EQ(w.txtBookName->text(), "  My Book  ") << "what was typed is still there";
    // The options choose the help topic of the kind; SAN goes straight to
    // the file page and sets "//" again.
    w.optImportType[1]->click();
    EXPECT_EQ(w.PageHelpContext, 145);
    w.cmdNext->click();
    EXPECT_EQ(Page(), std::tuple(1, 137, true));
    EXPECT_EQ(w.txtCommentStart->text() + w.txtCommentEnd->text(), "////");
    EXPECT_TRUE(w.txtCommentStart->isEnabled() && w.txtCommentEnd->isEnabled());
    w.cmdNext->click();
    EXPECT_EQ(Page(), std::tuple(2, 137, true));
    w.cmdBack->click();
    w.cmdBack->click();
    EXPECT_EQ(Page(), std::tuple(0, 137, false));
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(WizardWalkTest, TheTagPageNeedsOneTagAndTheFilePageTellsOnlyTheFirstTestThatFails) {
    w.cmdNext->click();
    w.chkIgnoreQuestion->setChecked(true);
    w.cmdNext->click();
    EXPECT_EQ(w.CurrentPage, 5) << "the question-mark box is no tag";
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_EQ(std::tuple(messages.messages[0].text, messages.messages[0].icon),
              std::tuple(QString("You must select at least 1 tag for a game name"), ui::Icon::Exclamation));
    w.chkTag[6]->setChecked(true);
    w.cmdNext->click();
    ASSERT_EQ(w.CurrentPage, 1) << "Result alone is enough";
    const QString file = dir.Write("games.pgn", QByteArray(10, 'x'));
    const QString missing = dir.file("nowhere.pgn");
    struct Case {
        QString inFile, bookName, text, title;
        QLineEdit* focus;
    };
    const Case cases[] = {
        {"   ", "Book", "Please select a file to import", "Select a file", w.txtInFile},
        {missing, "", "Couldn't open " + missing, "Select another file", w.txtInFile},
        {dir.path(), "Book", "Couldn't open " + dir.path(), "Select another file", w.txtInFile},  // a folder
        // The name is opened as typed: a blank behind it makes another name.
        {file + " ", "Book", "Couldn't open " + file + " ", "Select another file", w.txtInFile},
        {file, "    ", "Please enter a name for the new library", "", w.txtBookName},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        messages.messages.clear();
        w.txtInFile->setText(c.inFile);
        w.txtBookName->setText(c.bookName);
        w.cmdNext->setFocus();
        w.cmdNext->click();
        EXPECT_EQ(w.CurrentPage, 1);
        ASSERT_EQ(messages.messages.size(), 1u);
        EXPECT_EQ(std::tuple(messages.messages[0].text, messages.messages[0].title), std::tuple(c.text, c.title));
        EXPECT_EQ(w.focusWidget(), c.focus);
        EXPECT_EQ(w.txtInFile->text(), c.inFile) << "what was typed stays";
    }
}

TEST_F(WizardWalkTest, FilesUpTo64KPassAndLargerOnesAsk) {
    ToFilePage(true);
    w.txtInFile->setText(dir.Write("exact.pgn", QByteArray(65536, 'x')));
    w.txtBookName->setText("Book");
    w.cmdNext->click();
    EXPECT_EQ(w.CurrentPage, 2);
    EXPECT_TRUE(messages.messages.empty());
    w.cmdBack->click();
    w.txtInFile->setText(dir.Write("big.pgn", QByteArray(65537, 'x')));
    messages.AnswerWith(ui::Answer::Cancel);
    w.cmdNext->click();
    EXPECT_EQ(w.CurrentPage, 1);
    ASSERT_EQ(messages.messages.size(), 1u);
    const auto& m = messages.messages[0];
    EXPECT_EQ(std::tuple(m.text, m.buttons, m.defaultAnswer, m.icon),
              std::tuple(QString("The import file is more than 64K.  This could result in a library that takes a long time to "
                                 "create and loads very slowly.\n\nSuggestion:\nBreak up the import file into separate files "
                                 "that are each less than 64K.\n\nOK to continue or Cancel this import?"),
                         ui::Buttons::OkCancel, ui::Answer::Cancel, ui::Icon::Question));
    messages.AnswerWith(ui::Answer::Ok);
    w.cmdNext->click();
    EXPECT_EQ(w.CurrentPage, 2);
}

TEST_F(WizardWalkTest, BrowseFillsTheFileBoxAndFocusSelectsTheWholeNameOfTheNameBoxes) {
    ui::SetOpenFileHandler([](const QString&, const QString&, const QString&) { return QStringLiteral("/somewhere/games.pgn"); });
    ToFilePage(false);
    w.cmdBrowseInFile->click();
    EXPECT_EQ(w.txtInFile->text(), "/somewhere/games.pgn");
    for (QLineEdit* edit : {w.txtInFile, w.txtBookName, w.txtCommentStart}) {
        edit->setText("some text here");
        edit->setCursorPosition(3);
        QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
        QApplication::sendEvent(edit, &in);
        QApplication::processEvents();
        EXPECT_EQ(edit->selectedText(), edit == w.txtCommentStart ? "" : "some text here");
    }
}

TEST_F(WizardWalkTest, CancelEscAndTheCloseBoxCloseWithoutAskingBeforeARunAndHelpShowsThePagesTopic) {
    const std::function<void(frmImportWizard&)> ways[] = {
        [](frmImportWizard& v) { v.cmdCancel->click(); },
        [](frmImportWizard& v) { QTest::keyClick(&v, Qt::Key_Escape); },
        [](frmImportWizard& v) { EXPECT_TRUE(v.close()); },
    };
    for (const auto& leave : ways) {
        vantrel::ImportCancelled = 0;
        frmImportWizard v;
        v.show();
        v.cmdNext->click();
        leave(v);
        EXPECT_FALSE(v.isVisible());
        EXPECT_EQ(v.result(), QDialog::Rejected);
        EXPECT_EQ(vantrel::ImportCancelled, 1);
    }
    EXPECT_TRUE(messages.messages.empty());
    ASSERT_TRUE(dir.InstallHelpFile());
    w.optImportType[1]->click();
    w.cmdHelp->click();
    ASSERT_NE(HelpWindow::Instance(), nullptr);
    EXPECT_EQ(HelpWindow::Instance()->CurrentTopic(), "Importing a SAN file");
    delete HelpWindow::Instance();
}
