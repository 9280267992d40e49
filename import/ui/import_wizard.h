// frmImportWizard: "Vantrel Import Wizard", a text file of games into a new
// library.
#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <array>
#include <cstdint>

#include "import/tree_store.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QStackedWidget;

// The pages, by their Panel number. The walk is 0, 5, 1, 2, 3, 4 for a PGN
// file and 0, 1, 2, 3, 4 for a SAN file.
class frmImportWizard : public QDialog, public vantrel::import::ImportHost {
    Q_OBJECT
public:
    explicit frmImportWizard(QWidget* parent = nullptr);
    ~frmImportWizard() override;

    // Index of the page shown (the Panel number).
    int16_t CurrentPage = 0;
    // The help topic of the Help button.
    int16_t PageHelpContext = 137;
    // F1's topic: the page's, as the Help button gives it; none while the
    // button is disabled.
    Q_INVOKABLE int HelpContext() const;
    // Set while an import runs; cleared by a Yes to "Cancel this import?" and
    // by a successful run. A failed run leaves it set.
    bool ImportRunning = false;

    // What the repair dialog was asked about last, and what it answered.
    int16_t BadMoveIndex = 0;
    int16_t GameMoveCount = 0;
    int16_t MoveErrorCode = 0;
    int16_t FixMoveAction = vantrel::import::kFixCancel;

    // Pages and controls.
    QStackedWidget* Pages = nullptr;
    std::array<QWidget*, 6> Panel{};
    std::array<QRadioButton*, 2> optImportType{};
    std::array<QCheckBox*, 7> chkTag{};
    QCheckBox* chkIgnoreQuestion = nullptr;
    QLineEdit* txtInFile = nullptr;
    QPushButton* cmdBrowseInFile = nullptr;
    QLineEdit* txtBookName = nullptr;
    QLineEdit* txtCommentStart = nullptr;
    QLineEdit* txtCommentEnd = nullptr;
    QLabel* lblCreateBook = nullptr;
    QLabel* lblFromFile = nullptr;
    QLabel* lblCount = nullptr;
    QListWidget* lstStatus = nullptr;
    QPushButton* cmdBack = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdHelp = nullptr;

    // Runs the import: BuildTree, then WriteLibrary, with status lines.
    // True if the library stands.
    bool RunImport();
    // The file named by txtInFile (untrimmed) can be opened for reading.
    bool CanOpenInFile() const;
    // The tests of the file page; false keeps the user on it.
    bool ValidateFilesPage();
    // The import's parameters as the controls hold them now.
    vantrel::import::ImportOptions Options() const;
    // True while RunImport is on the stack.
    bool RunInProgress() const { return runActive_; }

    // ImportHost
    void ShowCount(const std::string& text) override;
    void Yield() override;
    void RunPendingEvents();
    bool Running() const override;
    vantrel::import::FixMoveAction AskFixMove(int16_t ply, int16_t lastPly, int16_t errorCode, vantrel::import::GameRecord& game,
                       const vantrel::chess::ImportBoard& board) override;
    bool AskOverwrite(const std::string& text) override;
    void Message(const std::string& text, const std::string& title) override;
    void ShowError(const std::string& description, int number) override;

public slots:
    void cmdNext_Click();
    void cmdBack_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();
    void cmdBrowseInFile_Click();
    void optImportType_Click(int index);
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowPage(int16_t page);
    // A close other than by the buttons: true if the window may go now.
    bool CloseRequested();
    // Runs one step of the import; an unexpected failure in it is shown and
    // counts as a failed step.
    template <typename Step>
    bool Guarded(Step step);
    void Unload(int result);
    // Puts the newest count into lblCount.
    void ShowPendingCount();

    bool runActive_ = false;
    // The store counts faster than a screen shows: lblCount takes the count
    // at most once a frame, and always before the user is asked or told.
    std::string pendingCount_;
    QElapsedTimer countShown_;
    QElapsedTimer yielded_;  // since the last time pending events ran
    bool closePending_ = false;
    bool unloading_ = false;
};
