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

class HelpTest : public ::testing::Test {
protected:
    void SetUp() override { delete HelpWindow::Instance(); }
    void TearDown() override { delete HelpWindow::Instance(); }
    // The help file of the program, from the data folder of the sources.
    void InstallHelpFile() {
        const QString shipped = QFileInfo(QStringLiteral(VANTREL_SCHEMA)).dir().filePath("vantrel.HLP");
        ASSERT_TRUE(QFile::copy(shipped, dir.file("vantrel.HLP")));
    }
    MessageRecorder messages;
    ScratchProgramDir dir;
};

}  // namespace

TEST_F(HelpTest, AMissingHelpFileIsReported) {
    ShowHelpContents();
    ShowHelpContext(144);
    const QString expected = "The help file " + QDir::toNativeSeparators(dir.file("vantrel.HLP")) + " could not be found.";
    EXPECT_EQ(messages.Texts(), (QStringList{expected, expected}));
    EXPECT_EQ(HelpWindow::Instance(), nullptr);
}

TEST_F(HelpTest, TheMenuOpensTheContentsFromTheHeadingsAndContextNumbersTheirTopics) {
    InstallHelpFile();
    MDIVantrel frame;
    frame.m_help_contents->trigger();
    HelpWindow* help = HelpWindow::Instance();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible() && !help->isModal());
    EXPECT_EQ(help->tabs->currentIndex(), 0);
    const QStringList titles = help->TopicTitles();
    EXPECT_EQ(help->CurrentTopic(), titles.first());
    EXPECT_TRUE(titles.contains("The tree window and Go To Game") && titles.contains("Keyboard shortcuts"));
    const auto imports = help->contents->findItems("Importing games", Qt::MatchExactly);  // sections under their topic
    ASSERT_EQ(imports.size(), 1);
    EXPECT_EQ(imports[0]->child(1)->text(0), "Importing a SAN file");
    const std::pair<int, const char*> contexts[] = {
        {144, "Importing a PGN file"}, {145, "Importing a SAN file"}, {137, "Importing games"}};
    for (const auto& [number, topic] : contexts) {
        ShowHelpContext(number);
        EXPECT_EQ(help->CurrentTopic(), topic);
        EXPECT_EQ(help->contents->currentItem()->text(0), topic);
        EXPECT_TRUE(help->browser->textCursor().block().text().contains(QString(topic).section(' ', -2, -2)))
            << "the text stands at the topic";
    }
    ShowHelpContext(9999);
    EXPECT_EQ(help->CurrentTopic(), titles.first()) << "an unknown number shows the contents";
    frame.m_search_help->trigger();
    EXPECT_EQ(help->tabs->currentIndex(), 1);
    EXPECT_EQ(HelpWindow::Instance(), help) << "one help window";
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(HelpTest, KeywordSearchListsTheTopicsThatHoldEveryWordAndShowsTheOneChosen) {
    InstallHelpFile();
    ShowHelpSearch();
    HelpWindow* help = HelpWindow::Instance();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->Search("reverse sides").contains("The Board window"));
    EXPECT_EQ(help->Search("ZUGZWANG").value(0), "Numeric annotation codes") << "in any case";
    EXPECT_EQ(help->Search("Edit Move").value(0), "The Edit Move dialog") << "a title hit comes first";
    EXPECT_TRUE(help->Search("castling zugzwang").isEmpty()) << "every word must be in one topic";
    help->keyword->setText("Comment start indicator");  // typing lists the topics
    ASSERT_GT(help->results->count(), 0);
    help->results->setCurrentRow(0);
    EXPECT_EQ(help->CurrentTopic(), help->results->item(0)->text());
    EXPECT_EQ(help->browser->textCursor().selectedText().toLower(), "comment") << "the word is marked";
}
