// The help window over vantrel.HLP: topics from the headings, context
// topics, and a missing help file.
#include "gui_test_support.h"

namespace {

class HelpTest : public ::testing::Test {
protected:
    void SetUp() override { delete HelpWindow::Instance(); }
    void TearDown() override { delete HelpWindow::Instance(); }
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

TEST_F(HelpTest, TheMenuAndF1OpenTheContentsFromTheHeadingsAndContextNumbersTheirTopics) {
    ASSERT_TRUE(dir.InstallHelpFile());
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
    // F1: the wizard's page topic, as its Help button gives it; elsewhere the
    // contents; nothing while an import runs.
    frmImportWizard wizard(&frame);
    QTest::keyClick(wizard.txtInFile, Qt::Key_F1);
    EXPECT_EQ(help->CurrentTopic(), "Importing games");
    QTest::keyClick(frame.MdiArea(), Qt::Key_F1);
    EXPECT_EQ(help->CurrentTopic(), titles.first());
    ShowHelpContext(144);
    wizard.cmdHelp->setEnabled(false);
    QTest::keyClick(wizard.txtInFile, Qt::Key_F1);
    EXPECT_EQ(help->CurrentTopic(), "Importing a PGN file");
    EXPECT_TRUE(messages.messages.empty());
}
