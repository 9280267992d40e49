// The import wizard's run page: RunImport end to end into a scratch program
// folder, its status lines, Cancel during a run, the overwrite question
// and the repair dialog. What the readers and the store
// make of a file is the core's; the dialog's own lists are its tests'.
#include "gui_test_support.h"
#include "import/moves_table.h"

namespace {

const char* const kTwoGames =
    "[Event \"Club\"]\n[White \"Able\"]\n[Black \"Baker\"]\n[Result \"1-0\"]\n\n1. e4 e5 2. Nf3 Nc6 1-0\n\n"
    "[Event \"Club\"]\n[White \"Cole\"]\n[Black \"Dean\"]\n[Result \"0-1\"]\n\n1. e4 c5 0-1\n\n";

// A wizard whose store calls can be watched: `onCount` runs after each
// count shown, as a click would come in at the yield that follows.
class WatchedWizard : public frmImportWizard {
public:
    void ShowCount(const std::string& text) override {
        frmImportWizard::ShowCount(text);
        counts.push_back(text);
        if (onCount) onCount(text);
    }
    std::vector<std::string> counts;
    std::function<void(const std::string&)> onCount;
};

class WizardImportTest : public ::testing::Test {
protected:
    void SetUp() override {
        vantrel::NewLibraryPath.clear();
        vantrel::ImportCancelled = 0;
        std::string error;
        ASSERT_TRUE(vantrel::import::CreateDatabaseFromSchema(dir_.file("Tessimo.mdb").toStdString(),
                                                              VANTREL_SCHEMA, &error))
            << error;
        w.show();
    }
    void TearDown() override { ui::SetModalHandler({}); }
    QByteArray FileText(const QString& name) const {
        QFile f(dir_.file(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // The descriptions of the records of a library the run wrote.
    std::vector<std::string> Library(const QString& name) const {
        vantrel::library::LibraryReader reader;
        vantrel::library::LibraryHeader header;
        vantrel::library::LibraryNodeRecord r;
        std::vector<std::string> out;
        if (reader.Open(dir_.file(name).toStdString()) && reader.ReadHeader(header))
            while (reader.ReadRecord(r)) out.push_back(r.description);
        return out;
    }
    // Walks from page 0 to the summary page; PGN games are named by White
    // and Black.
    static void ToSummary(frmImportWizard& w, const QString& file, const QString& book) {
        ASSERT_EQ(w.CurrentPage, 0);
        w.cmdNext->click();
        w.chkTag[4]->setChecked(true);
        w.chkTag[5]->setChecked(true);
        w.cmdNext->click();
        w.txtInFile->setText(file);
        w.txtBookName->setText(book);
        w.cmdNext->click();
        ASSERT_EQ(w.CurrentPage, 2);
    }
    // Next on the summary page: the whole run happens inside the click.
    static void Run(frmImportWizard& w) {
        ASSERT_EQ(w.CurrentPage, 2);
        w.cmdNext->click();
    }
    static QStringList Status(const frmImportWizard& w) {
        QStringList lines;
        for (int i = 0; i < w.lstStatus->count(); ++i) lines << w.lstStatus->item(i)->text();
        return lines;
    }
    // Answers the repair dialog of `w` with `answer`, after recording what it showed.
    struct FixMoveSeen {
        QString gameName, badType, badMove;
        int16_t bad, last, code;
    };
    void AnswerFixMove(frmImportWizard& w, std::function<void(frmFixMove&)> answer) {
        ui::SetModalHandler([this, &w, answer](QDialog& d) {
            auto* fm = dynamic_cast<frmFixMove*>(&d);
            if (!fm) {
                ADD_FAILURE() << "unexpected dialog";
                return int(QDialog::Rejected);
            }
            EXPECT_EQ(fm->parentWidget(), &w);
            seen_.push_back(FixMoveSeen{fm->lblGameName->text(), fm->lblBadType->text(), fm->txtBadMove->text(),
                                        w.BadMoveIndex, w.GameMoveCount, w.MoveErrorCode});
            answer(*fm);
            EXPECT_FALSE(fm->isVisible());
            return fm->result();
        });
    }
    ScratchProgramDir dir_;
    MessageRecorder messages_;
    WatchedWizard w;
    std::vector<FixMoveSeen> seen_;
};

}  // namespace

TEST_F(WizardImportTest, ASuccessfulRunThenNextOpensTheNewLibrary) {
    const QString file = dir_.Write("games.pgn", kTwoGames);
    // A name outside Windows-1252 keeps its spelling in the file opened.
    const QString name = QStringLiteral("Партии Ωmega");
    ToSummary(w, file, " " + name + " ");
    Run(w);
    EXPECT_EQ(Status(w), (QStringList{"Reading " + file, "Parsing moves list", "Creating library '" + name + ".vnb'",
                                     "Done"}));
    EXPECT_TRUE(messages_.messages.empty()) << messages_.Texts().join("|").toStdString();
    EXPECT_EQ(w.CurrentPage, 3);
    EXPECT_EQ(std::pair(w.cmdBack->isEnabled(), w.cmdNext->isEnabled()), std::pair(false, true));
    // The tree's records, then the file's, each counted from 1.
    EXPECT_EQ(w.counts, (std::vector<std::string>{"1", "2", "3", "4", "5", " 1", " 2", " 3", " 4", " 5"}));
    EXPECT_EQ(Library(name + ".vnb").size(), 5u);
    w.cmdNext->click();
    EXPECT_TRUE(w.Panel[4]->isVisible());
    EXPECT_EQ(w.cmdCancel->text(), "Exit");
    EXPECT_FALSE(w.cmdBack->isEnabled());
    w.cmdNext->click();
    EXPECT_EQ(w.result(), QDialog::Accepted);
    EXPECT_EQ(vantrel::NewLibraryPath, vantrel::ProgramDir() + "/" + name + ".vnb");
    EXPECT_EQ(vantrel::ImportCancelled, 0);
}

TEST_F(WizardImportTest, ACancelQueuedBeforeTheRunStopsIt) {
    ToSummary(w, dir_.Write("games.pgn", kTwoGames), "Later");
    QTimer::singleShot(0, w.cmdCancel, &QPushButton::click);
    w.cmdNext->click();
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(vantrel::ImportCancelled, 1);
    EXPECT_TRUE(w.counts.empty());
    EXPECT_FALSE(QFile::exists(dir_.file("Later.vnb")));
}

TEST_F(WizardImportTest, AFailedRunStaysOnTheRunPageAndCancelAsksOnce) {
    const QString empty = dir_.Write("nomoves.pgn", "[Event \"Nothing\"]\n[Result \"*\"]\n\n*\n\n");
    ToSummary(w, empty, "Empty");
    Run(w);
    EXPECT_EQ(Status(w), (QStringList{"Reading " + empty, "Parsing moves list", "Couldn't parse moves list"}));
    EXPECT_TRUE(w.ImportRunning);
    EXPECT_EQ(w.CurrentPage, 3);
    EXPECT_EQ(std::pair(w.cmdBack->isEnabled(), w.cmdNext->isEnabled()), std::pair(true, false));
    EXPECT_FALSE(QFile::exists(dir_.file("Empty.vnb")));
    // Cancel after a failed run asks, and a second click closes.
    messages_.AnswerWith(ui::Answer::Yes);
    w.cmdCancel->click();
    ASSERT_EQ(messages_.messages.size(), 1u);
    const auto& m = messages_.messages[0];
    EXPECT_EQ(std::tuple(m.text, m.buttons, m.defaultAnswer),
              std::tuple(QString("Cancel this import?"), ui::Buttons::YesNo, ui::Answer::No));
    EXPECT_TRUE(w.isVisible() && !w.ImportRunning);
    w.cmdCancel->click();
    EXPECT_EQ(messages_.messages.size(), 1u);
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(vantrel::ImportCancelled, 1);
}

TEST_F(WizardImportTest, CancelDuringARunStopsItAtItsNextCheck) {
    // The click comes in at the yield after a count: during the reading of
    // games ("2"), or during the writing of the library (" 3").
    struct Case {
        std::string clickAt;
        ui::Answer answer;
        QString lastStatus;
        size_t libraryRecords;
    };
    const Case cases[] = {
        {"2", ui::Answer::Yes, "Import cancelled by user", 0},
        {"2", ui::Answer::No, "Done", 5},
        {" 3", ui::Answer::Yes, "Couldn't create library 'Club.vnb'", 2},  // what was written so far stays
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.lastStatus.toStdString());
        WatchedWizard w;
        w.show();
        QFile::remove(dir_.file("Club.vnb"));
        messages_.messages.clear();
        messages_.AnswerWith(c.answer);
        w.onCount = [&](const std::string& text) {
            if (text == c.clickAt) w.cmdCancel->click();
        };
        ToSummary(w, dir_.Write("games.pgn", kTwoGames), "Club");
        Run(w);
        ASSERT_EQ(messages_.Texts(), QStringList{"Cancel this import?"});
        EXPECT_EQ(Status(w).last(), c.lastStatus);
        EXPECT_FALSE(w.ImportRunning);
        EXPECT_EQ(Library("Club.vnb").size(), c.libraryRecords);
        if (c.lastStatus == "Done") continue;
        EXPECT_EQ(std::pair(w.cmdBack->isEnabled(), w.cmdNext->isEnabled()), std::pair(true, false));
        w.cmdCancel->click();  // no question now: the run is over
        EXPECT_EQ(messages_.messages.size(), 1u);
        EXPECT_FALSE(w.isVisible());
    }
}

TEST_F(WizardImportTest, AnOldLibraryIsOverwrittenOnlyOnOk) {
    dir_.Write("Club.vnb", "old library");
    ToSummary(w, dir_.Write("games.pgn", kTwoGames), "Club");
    messages_.AnswerWith(ui::Answer::Cancel);
    Run(w);
    ASSERT_EQ(messages_.messages.size(), 1u);
    const auto& m = messages_.messages[0];
    EXPECT_EQ(std::tuple(m.text, m.buttons, m.icon),
              std::tuple(QString("Club.vnb already exists.  OK to overwrite?"), ui::Buttons::OkCancel, ui::Icon::Question));
    EXPECT_EQ(Status(w).last(), "Couldn't create library 'Club.vnb'");
    EXPECT_EQ(FileText("Club.vnb"), "old library");
    w.cmdBack->click();  // and on again: the run starts over, and this time OK
    messages_.AnswerWith(ui::Answer::Ok);
    Run(w);
    EXPECT_EQ(Status(w).last(), "Done");
    EXPECT_EQ(Library("Club.vnb").size(), 5u);
}

TEST_F(WizardImportTest, TheRepairDialogComesBackWhileTheMoveIsRefusedAndStoresTheOneAccepted) {
    ToSummary(w, dir_.Write("games.pgn", "[White \"Able\"]\n[Black \"Baker\"]\n\n1. e4 e5 2. Nf4 Nc6 *\n\n"
                                     "[White \"Cole\"]\n[Black \"Dean\"]\n\n1. e4 e5 2. Nf3 d6 *\n\n"),
              "Fixed");
    // Unchanged (refused again), then a move that can't be read, then a good one.
    const QStringList answers{"Nf4", "Nf9", "Nf3"};
    AnswerFixMove(w, [&](frmFixMove& fm) {
        fm.txtBadMove->setText(answers.value(static_cast<qsizetype>(seen_.size()) - 1, "Nf3"));
        fm.cmdOK->click();
    });
    Run(w);
    ASSERT_EQ(seen_.size(), 3u);
    EXPECT_EQ(std::tuple(seen_[0].bad, seen_[0].last, seen_[0].code), std::tuple(3, 4, 2));
    EXPECT_EQ((QStringList{seen_[0].gameName, seen_[0].badType, seen_[1].badMove, seen_[1].badType, seen_[2].badMove}),
              (QStringList{"Able Baker", "This is an illegal move - Please fix:", "Nf4", seen_[0].badType, "Nf9"}));
    EXPECT_NE(seen_[2].code, 0);
    EXPECT_EQ(w.FixMoveAction, 4);
    EXPECT_EQ(Status(w).last(), "Done");
    // The corrected move is stored, and the second game walks down it.
    EXPECT_EQ(Library("Fixed.vnb"), (std::vector<std::string>{"e4: Able Baker", "e5", "Nf3", "Nc6", "d6: Cole Dean"}));
}

