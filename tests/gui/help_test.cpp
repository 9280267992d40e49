// The help window over vantrel.HLP: topics from the headings, the keyword
// search, context topics, and a missing help file.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>

#include "gui_test_support.h"
#include "shell/help_window.h"
#include "shell/main_frame.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

// The help file of the program, from the data folder of the sources.
QString ShippedHelpFile() { return QFileInfo(QStringLiteral(VANTREL_SCHEMA)).dir().filePath("vantrel.HLP"); }

class HelpTest : public ::testing::Test {
protected:
    void SetUp() override { DropWindow(); }
    void TearDown() override { DropWindow(); }
    static void DropWindow() { delete HelpWindow::Instance(); }

    void InstallHelpFile() { ASSERT_TRUE(QFile::copy(ShippedHelpFile(), dir.file("vantrel.HLP"))); }

    MessageRecorder messages;
    ScratchProgramDir dir;
};

}  // namespace

TEST_F(HelpTest, AMissingHelpFileIsReported) {
    ShowHelpContents();
    ShowHelpSearch();
    ShowHelpContext(144);
    ASSERT_EQ(messages.messages.size(), 3u);
    const QString expected = "The help file " + QDir::toNativeSeparators(dir.file("vantrel.HLP")) + " could not be found.";
    for (const auto& m : messages.messages) EXPECT_EQ(m.text, expected);
    EXPECT_EQ(HelpWindow::Instance(), nullptr);
}

TEST_F(HelpTest, TopicsComeFromTheHeadings) {
    InstallHelpFile();
    ShowHelpContents();
    HelpWindow* help = HelpWindow::Instance();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_TRUE(help->isVisible());
    EXPECT_FALSE(help->isModal());

    const QStringList titles = help->TopicTitles();
    for (const char* title : {"Getting started", "Opening a library", "The tree window and Go To Game",
                              "The Board window", "The Comments and Moves windows", "Importing games",
                              "Importing a PGN file", "Importing a SAN file", "Recognised PGN and SAN syntax",
                              "Annotation marks and $ codes", "The Edit Move dialog", "Find and Find Next",
                              "Printing", "The Window menu", "Keyboard shortcuts"})
        EXPECT_TRUE(titles.contains(QString::fromUtf8(title))) << title;

    // The contents tree holds every topic once, sections under their topic.
    int items = 0;
    for (QTreeWidgetItemIterator it(help->contents); *it; ++it) ++items;
    EXPECT_EQ(items, titles.size());
    const auto imports = help->contents->findItems("Importing games", Qt::MatchExactly);
    ASSERT_EQ(imports.size(), 1);
    QStringList children;
    for (int i = 0; i < imports[0]->childCount(); ++i) children << imports[0]->child(i)->text(0);
    EXPECT_EQ(children, (QStringList{"Importing a PGN file", "Importing a SAN file"}));

    EXPECT_EQ(help->tabs->currentIndex(), 0);
    EXPECT_EQ(help->CurrentTopic(), titles.first());
}

TEST_F(HelpTest, ContextNumbersOpenTheirTopics) {
    InstallHelpFile();
    ShowHelpContext(144);
    HelpWindow* help = HelpWindow::Instance();
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->CurrentTopic(), "Importing a PGN file");
    EXPECT_EQ(help->contents->currentItem()->text(0), "Importing a PGN file");
    EXPECT_TRUE(help->browser->textCursor().block().text().contains("PGN")) << "the text stands at the topic";

    ShowHelpContext(145);
    EXPECT_EQ(help->CurrentTopic(), "Importing a SAN file");
    ShowHelpContext(137);
    EXPECT_EQ(help->CurrentTopic(), "Importing games");
    EXPECT_EQ(HelpWindow::Instance(), help) << "one help window";

    ShowHelpContext(9999);
    EXPECT_EQ(help->CurrentTopic(), help->TopicTitles().first()) << "an unknown number shows the contents";
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(HelpTest, KeywordSearchListsTheTopicsThatHoldTheWords) {
    InstallHelpFile();
    ShowHelpSearch();
    HelpWindow* help = HelpWindow::Instance();
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->tabs->currentIndex(), 1);

    help->keyword->setText("reverse sides");
    const QStringList found = help->Search("reverse sides");
    EXPECT_TRUE(found.contains("The Board window"));
    EXPECT_FALSE(found.contains("Printing"));
    EXPECT_EQ(help->results->count(), found.size()) << "typing lists the topics too";

    EXPECT_EQ(help->Search("ZUGZWANG").value(0), "Numeric annotation codes") << "in any case";
    EXPECT_EQ(help->Search("Edit Move").value(0), "The Edit Move dialog") << "a title hit comes first";
    EXPECT_TRUE(help->Search("xyzzy").isEmpty());
    EXPECT_TRUE(help->Search("   ").isEmpty());
    EXPECT_TRUE(help->Search("castling zugzwang").isEmpty()) << "every word must be in one topic";

    // Choosing a result shows it.
    help->keyword->setText("Comment start indicator");
    ASSERT_GT(help->results->count(), 0);
    const QString first = help->results->item(0)->text();
    help->results->setCurrentRow(0);
    EXPECT_EQ(help->CurrentTopic(), first);
    EXPECT_EQ(help->browser->textCursor().selectedText().toLower(), "comment") << "the word is marked";
}

TEST_F(HelpTest, TheHelpMenuOpensTheWindow) {
    InstallHelpFile();
    MDIVantrel frame;
    frame.m_help_contents->trigger();
    HelpWindow* help = HelpWindow::Instance();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    EXPECT_EQ(help->tabs->currentIndex(), 0);
    frame.m_search_help->trigger();
    EXPECT_EQ(help->tabs->currentIndex(), 1);
    EXPECT_EQ(HelpWindow::Instance(), help);
}
