#include "import/ui/import_wizard.h"

#include <unistd.h>

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QStringDecoder>
#include <QTimer>
#include <QVBoxLayout>

#include "import/ui/fix_move_dialog.h"
#include "library/files.h"
#include "import/ui/tab_chain.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "widgets/help_window.h"

using namespace vantrel;

namespace {

// Blanks off both ends, and nothing else: a tab in a name stays.
QString TrimBlanks(const QString& s) {
    qsizetype start = 0;
    qsizetype end = s.size();
    while (start < end && s.at(start) == QLatin1Char(' ')) ++start;
    while (end > start && s.at(end - 1) == QLatin1Char(' ')) --end;
    return s.mid(start, end - start);
}

// The store speaks in library text (Windows-1252), file names included.
QString StoreText(const std::string& text) { return FromLib(text); }

QLabel* WrapLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

constexpr qint64 kLargeImportFile = 65536;

}  // namespace

frmImportWizard::frmImportWizard(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("Vantrel Import Wizard"));
    setModal(true);

    Pages = new QStackedWidget(this);
    for (auto& panel : Panel) panel = new QWidget(Pages);

    // Page 0: the kind of file.
    {
        auto* page = Panel[0];
        auto* layout = new QVBoxLayout(page);
        layout->addWidget(WrapLabel(QStringLiteral("This wizard will help you import a text file to a "), page));
        auto* title = new QLabel(QStringLiteral("Vantrel Library."), page);
        QFont bold = title->font();
        bold.setBold(true);
        bold.setPointSizeF(bold.pointSizeF() * 1.5);
        title->setFont(bold);
        layout->addWidget(title);
        layout->addSpacing(12);
        auto* group = new QButtonGroup(page);
        optImportType[0] = new QRadioButton(QStringLiteral("Import file is in PGN format."), page);
        optImportType[1] = new QRadioButton(QStringLiteral("Import file is in SAN format."), page);
        group->addButton(optImportType[0], 0);
        group->addButton(optImportType[1], 1);
        optImportType[0]->setChecked(true);
        layout->addWidget(optImportType[0]);
        layout->addWidget(optImportType[1]);
        layout->addSpacing(12);
        layout->addWidget(WrapLabel(QStringLiteral("For a complete list of the recognized syntax, see Help."), page));
        layout->addWidget(WrapLabel(QStringLiteral("To begin, click Next."), page));
        layout->addStretch(1);
        connect(group, &QButtonGroup::idClicked, this, &frmImportWizard::optImportType_Click);
    }

    // Page 5: the tags that make a game's name (PGN only).
    {
        auto* page = Panel[5];
        auto* layout = new QVBoxLayout(page);
        layout->addWidget(
            WrapLabel(QStringLiteral("Select the tags that will be used to make up the name of each game:"), page));
        static const char* const kTags[7] = {"[Event ...]", "[Site ...]",  "[Date ...]",  "[Round ...]",
                                             "[White ...]", "[Black ...]", "[Result ...]"};
        for (int i = 0; i < 7; ++i) {
            chkTag[static_cast<size_t>(i)] = new QCheckBox(QString::fromLatin1(kTags[i]), page);
            layout->addWidget(chkTag[static_cast<size_t>(i)]);
        }
        layout->addSpacing(12);
        chkIgnoreQuestion = new QCheckBox(QStringLiteral("Remove question marks from game name"), page);
        chkIgnoreQuestion->setChecked(true);
        layout->addWidget(chkIgnoreQuestion);
        layout->addStretch(1);
    }

    // Page 1: the file, the library's name and the comment indicators.
    {
        auto* page = Panel[1];
        auto* layout = new QVBoxLayout(page);
        layout->addWidget(new QLabel(QStringLiteral("Enter a text file to import"), page));
        auto* fileRow = new QHBoxLayout;
        txtInFile = new QLineEdit(page);
        cmdBrowseInFile = new QPushButton(QStringLiteral("Browse..."), page);
        cmdBrowseInFile->setAutoDefault(false);
        fileRow->addWidget(txtInFile, 1);
        fileRow->addWidget(cmdBrowseInFile);
        layout->addLayout(fileRow);
        layout->addWidget(new QLabel(QStringLiteral("Enter a name for the new library"), page));
        txtBookName = new QLineEdit(page);
        layout->addWidget(txtBookName);
        layout->addSpacing(12);
        auto* grid = new QGridLayout;
        grid->addWidget(new QLabel(QStringLiteral("Comment start indicator :"), page), 0, 0);
        txtCommentStart = new QLineEdit(QStringLiteral("//"), page);
        grid->addWidget(txtCommentStart, 0, 1);
        grid->addWidget(new QLabel(QStringLiteral("Comment end indicator :"), page), 1, 0);
        txtCommentEnd = new QLineEdit(QStringLiteral("//"), page);
        grid->addWidget(txtCommentEnd, 1, 1);
        grid->setColumnStretch(2, 1);
        layout->addLayout(grid);
        layout->addStretch(1);
        txtInFile->installEventFilter(this);
        txtBookName->installEventFilter(this);
        connect(cmdBrowseInFile, &QPushButton::clicked, this, &frmImportWizard::cmdBrowseInFile_Click);
    }

    // Page 2: the summary.
    {
        auto* page = Panel[2];
        auto* layout = new QVBoxLayout(page);
        layout->addWidget(new QLabel(QStringLiteral("Click Next to create:"), page));
        lblCreateBook = new QLabel(page);
        layout->addWidget(lblCreateBook);
        layout->addSpacing(12);
        layout->addWidget(new QLabel(QStringLiteral("From:"), page));
        lblFromFile = new QLabel(page);
        lblFromFile->setWordWrap(true);
        layout->addWidget(lblFromFile);
        layout->addStretch(1);
    }

    // Page 3: the run.
    {
        auto* page = Panel[3];
        auto* layout = new QVBoxLayout(page);
        auto* row = new QHBoxLayout;
        row->addWidget(new QLabel(QStringLiteral("Record Counter:"), page));
        lblCount = new QLabel(QStringLiteral("0"), page);
        row->addWidget(lblCount);
        row->addStretch(1);
        layout->addLayout(row);
        lstStatus = new QListWidget(page);
        layout->addWidget(lstStatus, 1);
    }

    // Page 4: done.
    {
        auto* page = Panel[4];
        auto* layout = new QVBoxLayout(page);
        layout->addWidget(WrapLabel(QStringLiteral("The Vantrel library was successfully created."), page));
        layout->addSpacing(12);
        layout->addWidget(WrapLabel(QStringLiteral("Click 'Next' to open new library."), page));
        layout->addWidget(WrapLabel(QStringLiteral("Click 'Exit' to end without opening new library."), page));
        layout->addStretch(1);
    }

    for (auto* panel : Panel) Pages->addWidget(panel);

    cmdBack = new QPushButton(QStringLiteral("< &Back"), this);
    cmdNext = new QPushButton(QStringLiteral("&Next >"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdHelp = new QPushButton(QStringLiteral("&Help"), this);
    cmdNext->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdBack);
    buttons->addWidget(cmdNext);
    buttons->addSpacing(12);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdHelp);

    auto* outer = new QVBoxLayout(this);
    outer->addWidget(Pages, 1);
    outer->addLayout(buttons);

    // Next comes first in the tab order and has the focus at start.
    ui::SetTabChain({cmdNext, cmdCancel, cmdHelp, cmdBack, optImportType[0], optImportType[1], chkTag[0], chkTag[1],
                     chkTag[2], chkTag[3], chkTag[4], chkTag[5], chkTag[6], chkIgnoreQuestion, txtInFile,
                     cmdBrowseInFile, txtBookName, txtCommentStart, txtCommentEnd, lstStatus});
    cmdNext->setFocus();

    connect(cmdNext, &QPushButton::clicked, this, &frmImportWizard::cmdNext_Click);
    connect(cmdBack, &QPushButton::clicked, this, &frmImportWizard::cmdBack_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmImportWizard::cmdCancel_Click);
    connect(cmdHelp, &QPushButton::clicked, this, &frmImportWizard::cmdHelp_Click);

    resize(480, 360);
    CenterForm(this);

    CurrentPage = 0;
    ShowPage(0);
    cmdBack->setEnabled(false);
    cmdNext->setEnabled(true);
    PageHelpContext = 137;
}

frmImportWizard::~frmImportWizard() = default;

void frmImportWizard::ShowPage(int16_t page) {
    CurrentPage = page;
    Pages->setCurrentWidget(Panel[static_cast<size_t>(page)]);
}

// ---- the walk -------------------------------------------------------------

void frmImportWizard::cmdNext_Click() {
    PageHelpContext = 137;
    switch (CurrentPage) {
        case 0:
            if (optImportType[0]->isChecked()) {
                cmdBack->setEnabled(true);
                PageHelpContext = 144;
                txtCommentStart->setText(QStringLiteral("{"));
                txtCommentStart->setEnabled(false);
                txtCommentEnd->setText(QStringLiteral("}"));
                txtCommentEnd->setEnabled(false);
                ShowPage(5);
            } else {
                cmdBack->setEnabled(true);
                txtCommentStart->setText(QStringLiteral("//"));
                txtCommentStart->setEnabled(true);
                txtCommentEnd->setText(QStringLiteral("//"));
                txtCommentEnd->setEnabled(true);
                ShowPage(1);
                cmdBack->setEnabled(true);
            }
            break;
        case 5: {
            bool any = false;
            for (auto* tag : chkTag) any = any || tag->isChecked();
            if (!any) {
                ui::MsgBox(QStringLiteral("You must select at least 1 tag for a game name"), ui::Buttons::Ok,
                           ui::Icon::Exclamation);
                return;
            }
            ShowPage(1);
            cmdBack->setEnabled(true);
            break;
        }
        case 1:
            if (!ValidateFilesPage()) return;
            ShowPage(2);
            cmdBack->setEnabled(true);
            lblCreateBook->setText(TrimBlanks(txtBookName->text()) + QStringLiteral(".vnb"));
            lblFromFile->setText(txtInFile->text());
            break;
        case 2: {
            ShowPage(3);
            cmdBack->setEnabled(false);
            cmdNext->setEnabled(false);
            cmdHelp->setEnabled(false);
            DoEvents();  // let the page paint before the run
            // A Cancel that was waiting in the queue has closed the window:
            // the import never starts.
            if (unloading_) return;
            const bool ok = RunImport();
            if (ok) {
                cmdBack->setEnabled(false);
                cmdNext->setEnabled(true);
            } else {
                cmdBack->setEnabled(true);
                cmdNext->setEnabled(false);
            }
            cmdHelp->setEnabled(true);
            // The close box was used during the run: go now that it is over.
            if (closePending_) Unload(QDialog::Rejected);
            break;
        }
        case 3:
            ShowPage(4);
            cmdCancel->setText(QStringLiteral("Exit"));
            cmdBack->setEnabled(false);
            break;
        case 4:
            NewLibraryPath = QFile::decodeName(QByteArray::fromStdString(import::LibraryPath(Options())));
            Unload(QDialog::Accepted);
            break;
        default: break;
    }
}

void frmImportWizard::cmdBack_Click() {
    PageHelpContext = 137;
    cmdNext->setEnabled(true);
    switch (CurrentPage) {
        case 1:
            if (optImportType[0]->isChecked()) {
                PageHelpContext = 144;
                ShowPage(5);
            } else {
                ShowPage(0);
            }
            break;
        case 5: ShowPage(0); break;
        case 2: ShowPage(1); break;
        case 3: ShowPage(2); break;
        default: break;  // pages 0 and 4 have Back disabled
    }
    if (CurrentPage == 0) cmdBack->setEnabled(false);
}

void frmImportWizard::optImportType_Click(int index) {
    if (CurrentPage != 0) return;
    PageHelpContext = index == 0 ? 144 : 145;
}

// ---- the file page ----------------------------------------------------------

bool frmImportWizard::CanOpenInFile() const {
    // Only a plain file: the open of a FIFO would wait for a writer.
    const int fd = library::OpenPlainFile(QFile::encodeName(txtInFile->text()).toStdString());
    if (fd < 0) return false;
    ::close(fd);
    return true;
}

bool frmImportWizard::ValidateFilesPage() {
    if (TrimBlanks(txtInFile->text()).isEmpty()) {
        ui::MsgBox(QStringLiteral("Please select a file to import"), ui::Buttons::Ok, ui::Icon::Exclamation,
                   QStringLiteral("Select a file"));
        txtInFile->setFocus();
        return false;
    }
    if (!CanOpenInFile()) {
        ui::MsgBox(QStringLiteral("Couldn't open ") + txtInFile->text(), ui::Buttons::Ok, ui::Icon::Exclamation,
                   QStringLiteral("Select another file"));
        txtInFile->setFocus();
        return false;
    }
    if (TrimBlanks(txtBookName->text()).isEmpty()) {
        ui::MsgBox(QStringLiteral("Please enter a name for the new library"), ui::Buttons::Ok,
                   ui::Icon::Exclamation);
        txtBookName->setFocus();
        return false;
    }
    const std::string nameProblem =
        import::LibraryNameProblem(QFile::encodeName(TrimBlanks(txtBookName->text())).toStdString());
    if (!nameProblem.empty()) {
        ui::MsgBox(QString::fromStdString(nameProblem), ui::Buttons::Ok, ui::Icon::Exclamation);
        txtBookName->setFocus();
        return false;
    }
    if (QFileInfo(txtInFile->text()).size() > kLargeImportFile) {
        const QString text = QStringLiteral(
            "The import file is more than 64K.  This could result in a library that takes a long time to "
            "create and loads very slowly.\n\nSuggestion:\nBreak up the import file into separate files that "
            "are each less than 64K.\n\nOK to continue or Cancel this import?");
        if (ui::MsgBox(text, ui::Buttons::OkCancel, ui::Icon::Question, QString(), ui::Answer::Cancel) !=
            ui::Answer::Ok)
            return false;
    }
    return true;
}

void frmImportWizard::cmdBrowseInFile_Click() {
    const QString file = ui::GetOpenFileName(this, QStringLiteral("Select file to import"), ProgramDir(),
                                             QStringLiteral("All files (*)"));
    if (!file.isEmpty()) txtInFile->setText(file);
}

bool frmImportWizard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn && (watched == txtInFile || watched == txtBookName)) {
        // Select the whole text once the click that brought the focus is over.
        auto* edit = static_cast<QLineEdit*>(watched);
        QTimer::singleShot(0, edit, [edit] { edit->selectAll(); });
    }
    return QDialog::eventFilter(watched, event);
}

void frmImportWizard::cmdHelp_Click() { ShowHelpContext(PageHelpContext); }

int frmImportWizard::HelpContext() const { return cmdHelp->isEnabled() ? PageHelpContext : -1; }

// ---- the run ------------------------------------------------------------------

import::ImportOptions frmImportWizard::Options() const {
    import::ImportOptions o;
    o.programDir = QFile::encodeName(ProgramDir()).toStdString();
    o.inFile = QFile::encodeName(txtInFile->text()).toStdString();
    o.bookName = ToLib(txtBookName->text());
    o.libraryFile = QFile::encodeName(TrimBlanks(txtBookName->text())).toStdString();
    o.pgn = optImportType[0]->isChecked();
    o.commentStart = ToLib(txtCommentStart->text());
    o.commentEnd = ToLib(txtCommentEnd->text());
    for (size_t i = 0; i < chkTag.size(); ++i) o.tags[i] = chkTag[i]->isChecked();
    o.ignoreQuestion = chkIgnoreQuestion->isChecked();
    return o;
}

template <typename Step>
bool frmImportWizard::Guarded(Step step) {
    // A failure the store did not foresee is shown, and the step has failed.
    try {
        return step();
    } catch (const std::exception& e) {
        ShowError(e.what(), 0);
        return false;
    }
}

bool frmImportWizard::RunImport() {
    const QScopedValueRollback running(runActive_, true);
    const QString bookName = TrimBlanks(txtBookName->text());

    setCursor(Qt::BusyCursor);
    ImportRunning = true;

    lstStatus->clear();
    lstStatus->addItem(QStringLiteral("Reading ") + TrimBlanks(txtInFile->text()));
    lstStatus->addItem(QStringLiteral("Parsing moves list"));

    const import::ImportOptions options = Options();
    import::ImportSession session;

    const bool built = Guarded([&] { return import::BuildTree(options, *this, session); });
    RunPendingEvents();
    ShowPendingCount();
    if (!built) {
        lstStatus->addItem(ImportRunning ? QStringLiteral("Couldn't parse moves list")
                                         : QStringLiteral("Import cancelled by user"));
        unsetCursor();
        return false;
    }

    lstStatus->addItem(QStringLiteral("Creating library '") + bookName + QStringLiteral(".vnb'"));

    const bool written = Guarded([&] { return import::WriteLibrary(options, *this, session); });
    RunPendingEvents();
    ShowPendingCount();
    if (!written) {
        lstStatus->addItem(QStringLiteral("Couldn't create library '") + bookName + QStringLiteral(".vnb'"));
        unsetCursor();
        return false;
    }

    lstStatus->addItem(QStringLiteral("Done"));
    unsetCursor();
    ImportRunning = false;
    return true;
}

// ---- what the store asks of the window --------------------------------------

void frmImportWizard::ShowCount(const std::string& text) {
    pendingCount_ = text;
    if (FrameDue(countShown_)) ShowPendingCount();
}

void frmImportWizard::ShowPendingCount() {
    if (pendingCount_.empty()) return;
    lblCount->setText(FromLib(pendingCount_));
    pendingCount_.clear();
    countShown_.start();
}

// Pending events run at a new record once a millisecond has passed since
// they last ran, and always before a question, a message and the end of a
// step: a click on Cancel is still seen at the next record after it, and no
// event waits longer than a millisecond of work, without a pass through the
// event loop for every record.
void frmImportWizard::Yield() {
    if (yielded_.isValid() && yielded_.nsecsElapsed() < 1000000) return;
    RunPendingEvents();
}

void frmImportWizard::RunPendingEvents() {
    DoEvents();
    yielded_.start();
}

bool frmImportWizard::Running() const { return ImportRunning; }

import::FixMoveAction frmImportWizard::AskFixMove(int16_t ply, int16_t lastPly, int16_t errorCode, import::GameRecord& game,
                                    const chess::ImportBoard& board) {
    ShowPendingCount();
    RunPendingEvents();
    BadMoveIndex = ply;
    GameMoveCount = lastPly;
    MoveErrorCode = errorCode;
    // The window is on its way out: nothing more is asked.
    if (closePending_) {
        FixMoveAction = import::kFixCancel;
        return import::kFixCancel;
    }
    frmFixMove dialog(BadMoveIndex, GameMoveCount, MoveErrorCode, game, board, this);
    ui::ExecModal(dialog);
    FixMoveAction = dialog.FixMoveAction;
    return static_cast<import::FixMoveAction>(FixMoveAction);
}

bool frmImportWizard::AskOverwrite(const std::string& text) {
    ShowPendingCount();
    RunPendingEvents();
    if (closePending_) return false;
    return ui::MsgBox(StoreText(text), ui::Buttons::OkCancel, ui::Icon::Question) == ui::Answer::Ok;
}

void frmImportWizard::Message(const std::string& text, const std::string& title) {
    ShowPendingCount();
    RunPendingEvents();
    ui::MsgBox(StoreText(text), ui::Buttons::Ok, ui::Icon::None, StoreText(title));
}

void frmImportWizard::ShowError(const std::string& description, int number) {
    ShowPendingCount();
    RunPendingEvents();
    vantrel::ShowError(StoreText(description), number);
}

// ---- ways out ---------------------------------------------------------------------

void frmImportWizard::cmdCancel_Click() {
    if (ImportRunning) {
        if (ui::MsgBox(QStringLiteral("Cancel this import?"), ui::Buttons::YesNo, ui::Icon::None, QString(),
                       ui::Answer::No) == ui::Answer::Yes)
            ImportRunning = false;  // the run stops at its next check
        return;
    }
    ImportCancelled = 1;
    Unload(QDialog::Rejected);
}

bool frmImportWizard::CloseRequested() {
    ImportCancelled = 1;
    if (runActive_) {
        // As a Yes to Cancel: the run ends first, and the window goes after.
        ImportRunning = false;
        closePending_ = true;
        return false;
    }
    return true;
}

void frmImportWizard::Unload(int result) {
    unloading_ = true;
    done(result);
}

void frmImportWizard::reject() {
    if (!unloading_ && !CloseRequested()) return;
    unloading_ = true;
    QDialog::reject();
}

void frmImportWizard::closeEvent(QCloseEvent* event) {
    if (!unloading_ && !CloseRequested()) {
        event->ignore();
        return;
    }
    unloading_ = true;
    QDialog::closeEvent(event);
}

void frmImportWizard::keyPressEvent(QKeyEvent* event) {
    // Esc is the Cancel button, with its question during a run.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        cmdCancel->click();
        return;
    }
    QDialog::keyPressEvent(event);
}
