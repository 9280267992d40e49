#include "shell/main_frame.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProgressBar>
#include <QScreen>
#include <QSettings>
#include <QGuiApplication>
#include <algorithm>

#include "board/board_window.h"
#include "import/ui/import_wizard.h"
#include "library/ui/comments_moves.h"
#include "library/ui/remarks_window.h"
#include "library/ui/tree_item_model.h"
#include "library/ui/tree_window.h"
#include "print/ui/print_setup.h"
#include "shell/about_window.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "widgets/help_window.h"
#include "widgets/settings.h"
#include "widgets/status_window.h"

namespace vantrel {

namespace {

Placement FromQt(const QRect& r) { return Placement{r.left(), r.top(), r.width(), r.height()}; }
QRect ToQt(const Placement& p) { return QRect(p.left, p.top, p.width, p.height); }

}  // namespace

QRect DefaultFrameGeometry(const QRect& room, const QSize& design) {
    return ToQt(DefaultFrameGeometry(FromQt(room), design.width(), design.height()));
}

QRect FitOnScreen(const QRect& outer, const QRect& available) {
    return ToQt(FitOnScreen(FromQt(outer), FromQt(available)));
}

QString JoinCommandLine(const QStringList& arguments) { return arguments.join(QLatin1Char(' ')); }

}  // namespace vantrel

using namespace vantrel;

namespace {

constexpr const char* kForms = "Forms";
const QString kFormName = QStringLiteral("MDIVantrel");

// A position or size as the store keeps it: whole twips within 16 bits.
int Twips16(int pixels) { return std::clamp(PixelsToTwips(pixels), int{INT16_MIN}, int{INT16_MAX}); }


// Shows a child window and its sub-window, in front of the others.
void ShowInFront(QWidget* form) {
    form->show();
    QWidget* outer = forms::OuterWindow(form);
    outer->show();
    outer->raise();
}

void SetGeometryTwips(QWidget* w, int left, int top, int width, int height) {
    w->setGeometry(TwipsToPixels(left), TwipsToPixels(top), std::max(1, TwipsToPixels(width)),
                   std::max(1, TwipsToPixels(height)));
}

}  // namespace

MDIVantrel::MDIVantrel(QWidget* parent) : QMainWindow(parent) {
    setObjectName(kFormName);
    setWindowTitle(QStringLiteral("Vantrel "));
    setWindowIcon(library::TreeItemModel::BoardIcon());

    // A new frame is a new run.
    AppClosing = false;
    bReverseSides = false;
    CommentsMovesStacked = false;
    forms::SetFrameWindow(this);

    mdiArea_ = new QMdiArea(this);
    mdiArea_->setObjectName(QStringLiteral("MDIClient"));
    mdiArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    mdiArea_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    mdiArea_->setBackground(QColor(0x8A, 0x93, 0xA3));
    setCentralWidget(mdiArea_);
    mdiArea_->viewport()->installEventFilter(this);
    // Whichever way a library window comes to the front (Ctrl+Tab, Ctrl+F6,
    // a click, the Window menu), its library becomes the active one. The
    // frame's own return to the front after a dialog changes nothing.
    connect(mdiArea_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* sub) {
        if (!sub || sub == frontWindow_) return;
        frontWindow_ = sub;
        if (auto* form = qobject_cast<frmTreeView*>(sub->widget()); form && !AppClosing) form->Form_Activate();
    });
    // Ctrl+F6 and Ctrl+Shift+F6 go round the child windows, as Ctrl+Tab does.
    auto* nextWindow = new QAction(this);
    nextWindow->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F6));
    connect(nextWindow, &QAction::triggered, mdiArea_, &QMdiArea::activateNextSubWindow);
    auto* previousWindow = new QAction(this);
    previousWindow->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F6));
    connect(previousWindow, &QAction::triggered, mdiArea_, &QMdiArea::activatePreviousSubWindow);
    addActions({nextWindow, previousWindow});
    InstallHelpKey(this);

    BuildMenus();

    // The shared windows live in the frame from the start, not yet shown.
    AdoptSharedWindow(&forms::Comments());
    AdoptSharedWindow(&forms::Moves());
    AdoptSharedWindow(&forms::Board());
    // What the shared windows ask of the frame: their menus, and their
    // items in the Window menu once the user has closed them.
    connect(&forms::Board(), &frmBoard::menuRequested, this, [this](QPoint at) { m_board->popup(at); });
    connect(&forms::Board(), &frmBoard::hiddenByUser, this, [this] { mWShowBoard->setVisible(true); });
    connect(&forms::Comments(), &frmComments::otherWindowRequested, this,
            [this](QPoint at) { mCommentsPopUpMenu->popup(at); });
    connect(&forms::Comments(), &frmComments::hiddenByUser, this, [this] { mWShowComments->setVisible(true); });
    connect(&forms::Moves(), &frmMoves::otherWindowRequested, this, [this](QPoint at) { MovesPopUpMenu->popup(at); });
    connect(&forms::Moves(), &frmMoves::hiddenByUser, this, [this] { mWShowMoves->setVisible(true); });

    // The design size: 12000 x 9000 twips.
    resize(TwipsToPixels(12000), TwipsToPixels(9000));
}

MDIVantrel::~MDIVantrel() {
    // The register of libraries goes with the frame, before the windows it
    // names, which are children of the frame and go with it too: they tell
    // it nothing more.
    mdiArea_->viewport()->removeEventFilter(this);
    for (frmTreeView* form : findChildren<frmTreeView*>()) form->disconnect(this);
    forms::UnloadStatus();
    if (forms::FrameWindow() == this) forms::SetFrameWindow(nullptr);
}

void MDIVantrel::AdoptLibraryWindow(frmTreeView* form) {
    AddChild(form);
    connect(form, &frmTreeView::focused, this, [this](frmTreeView* f) { treeViews_.SetAsActive(f); });
    connect(form, &frmTreeView::unloading, this, [this](frmTreeView* f) { treeViews_.Remove(f); });
    connect(form, &frmTreeView::gone, this, [this](frmTreeView* f) { treeViews_.Forget(f); });
    connect(form, &frmTreeView::remarksWanted, this, &MDIVantrel::mFLibRemarks_Click);
    connect(form, &frmTreeView::menuRequested, this, [this](QPoint at) { m_tree->popup(at); });
}

void MDIVantrel::AdoptSharedWindow(QWidget* form) {
    QMdiSubWindow* sub = AddChild(form);
    // The shared windows are never deleted by a close of their own.
    sub->setAttribute(Qt::WA_DeleteOnClose, false);
    sub->setWindowFlags(Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                        Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    sub->adjustSize();
    form->installEventFilter(this);
    sub->hide();
}

QMdiSubWindow* MDIVantrel::AddChild(QWidget* form) {
    QMdiSubWindow* sub = mdiArea_->addSubWindow(form);
    sub->setWindowIcon(form->windowIcon().isNull() ? windowIcon() : form->windowIcon());
    return sub;
}

int MDIVantrel::ScaleWidth() const { return PixelsToTwips(mdiArea_->viewport()->width()); }
int MDIVantrel::ScaleHeight() const { return PixelsToTwips(mdiArea_->viewport()->height()); }

// --- Menus -----------------------------------------------------------------

void MDIVantrel::BuildMenus() {
    QMenuBar* bar = menuBar();
    auto item = [this](QMenu* menu, const char* name, const QString& caption, void (MDIVantrel::*slot)(),
                       const QKeySequence& key = QKeySequence()) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(QString::fromLatin1(name));
        if (!key.isEmpty()) action->setShortcut(key);
        connect(action, &QAction::triggered, this, [this, slot] { (this->*slot)(); });
        return action;
    };
    auto separator = [](QMenu* menu, const char* name) {
        QAction* action = menu->addSeparator();
        action->setObjectName(QString::fromLatin1(name));
        return action;
    };

    m_file = bar->addMenu(QStringLiteral("&File"));
    m_file->setObjectName(QStringLiteral("m_file"));
    m_open = item(m_file, "m_open", QStringLiteral("&Open"), &MDIVantrel::m_open_Click, QKeySequence(Qt::CTRL | Qt::Key_O));
    m_import = item(m_file, "m_import", QStringLiteral("&Import"), &MDIVantrel::m_import_Click);
    mFLibRemarks = item(m_file, "mFLibRemarks", QStringLiteral("Library &Remarks"), &MDIVantrel::mFLibRemarks_Click);
    m_sep1 = separator(m_file, "m_sep1");
    mFPrintSetup = item(m_file, "mFPrintSetup", QStringLiteral("Print Set&up"), &MDIVantrel::mFPrintSetup_Click);
    msep2 = separator(m_file, "msep2");
    m_exit = item(m_file, "m_exit", QStringLiteral("E&xit"), &MDIVantrel::m_exit_Click, QKeySequence(Qt::CTRL | Qt::Key_X));

    m_tree = bar->addMenu(QStringLiteral("&Tree"));
    m_tree->setObjectName(QStringLiteral("m_tree"));
    mTSearch = item(m_tree, "mTSearch", QStringLiteral("&Find"), &MDIVantrel::mTSearch_Click, QKeySequence(Qt::CTRL | Qt::Key_F));
    mTFindNext = item(m_tree, "mTFindNext", QStringLiteral("Find &Next"), &MDIVantrel::mTFindNext_Click,
                      QKeySequence(Qt::CTRL | Qt::Key_N));
    mTsep = separator(m_tree, "mTsep");
    m_expand_tree = item(m_tree, "m_expand_tree", QStringLiteral("E&xpand All"), &MDIVantrel::m_expand_tree_Click);
    m_collapse_tree = item(m_tree, "m_collapse_tree", QStringLiteral("&Collapse All"), &MDIVantrel::m_collapse_tree_Click);
    mTExpandGame = item(m_tree, "mTExpandGame", QStringLiteral("Expand to Next &Game"), &MDIVantrel::mTExpandGame_Click);

    m_board = bar->addMenu(QStringLiteral("&Board"));
    m_board->setObjectName(QStringLiteral("m_board"));
    m_reverse_sides = item(m_board, "m_reverse_sides", QStringLiteral("&Reverse Sides"), &MDIVantrel::m_reverse_sides_Click);
    m_reverse_sides->setCheckable(true);
    m_reset_board = item(m_board, "m_reset_board", QStringLiteral("Re&set"), &MDIVantrel::m_reset_board_Click);
    m_tsep = separator(m_board, "m_tsep");
    mBPrintMoveList = item(m_board, "mBPrintMoveList", QStringLiteral("&Print Moves List"), &MDIVantrel::mBPrintMoveList_Click,
                           QKeySequence(Qt::CTRL | Qt::Key_P));

    mWindow = bar->addMenu(QStringLiteral("&Window"));
    mWindow->setObjectName(QStringLiteral("mWindow"));
    mWArrangeWindows = item(mWindow, "mWArrangeWindows", QStringLiteral("&Arrange Windows"), &MDIVantrel::mWArrangeWindows_Click);
    mWLayerWindows = item(mWindow, "mWLayerWindows", QStringLiteral("&Layer Windows"), &MDIVantrel::mWLayerWindows_Click);
    mWRememberPositions = item(mWindow, "mWRememberPositions", QStringLiteral("&Remember Vantrel Position"),
                               &MDIVantrel::mWRememberPositions_Click);
    mWRememberPositions->setCheckable(true);
    mWShowBoard = item(mWindow, "mWShowBoard", QStringLiteral("Show &Board"), &MDIVantrel::mWShowBoard_Click);
    mWShowComments = item(mWindow, "mWShowComments", QStringLiteral("Show Commen&ts"), &MDIVantrel::mWShowComments_Click);
    mWShowMoves = item(mWindow, "mWShowMoves", QStringLiteral("Show &Moves List"), &MDIVantrel::mWShowMoves_Click);
    mWShowBoard->setVisible(false);
    mWShowComments->setVisible(false);
    mWShowMoves->setVisible(false);
    // The open child windows follow, as the platform lists them.
    windowListSeparator_ = mWindow->addSeparator();
    connect(mWindow, &QMenu::aboutToShow, this, &MDIVantrel::RefreshWindowList);

    m_help = bar->addMenu(QStringLiteral("&Help"));
    m_help->setObjectName(QStringLiteral("m_help"));
    m_help_contents = item(m_help, "m_help_contents", QStringLiteral("&Contents"), &MDIVantrel::m_help_contents_Click);
    m_search_help = item(m_help, "m_search_help", QStringLiteral("&Search For Help On..."), &MDIVantrel::m_search_help_Click);
    m_hsep = separator(m_help, "m_hsep");
    m_about = item(m_help, "m_about", QStringLiteral("&About Vantrel"), &MDIVantrel::m_about_Click);

    // Pop-up menus only: never in the menu bar.
    MovesPopUpMenu = new QMenu(QStringLiteral("MovesPopUpMenu"), this);
    MovesPopUpMenu->setObjectName(QStringLiteral("MovesPopUpMenu"));
    MovesPopUpMenu->menuAction()->setVisible(false);
    mMPUShowComments = item(MovesPopUpMenu, "mMPUShowComments", QStringLiteral("Show Comments"), &MDIVantrel::ShowCommentWindow);
    mCommentsPopUpMenu = new QMenu(QStringLiteral("CommentsPopUpMenu"), this);
    mCommentsPopUpMenu->setObjectName(QStringLiteral("mCommentsPopUpMenu"));
    mCommentsPopUpMenu->menuAction()->setVisible(false);
    mCPUMShowMoves = item(mCommentsPopUpMenu, "mCPUMShowMoves", QStringLiteral("Show Moves"), &MDIVantrel::ShowMovesWindow);
}

void MDIVantrel::RefreshWindowList() {
    for (QAction* action : windowListActions_) {
        mWindow->removeAction(action);
        action->deleteLater();
    }
    windowListActions_.clear();
    int number = 0;
    QMdiSubWindow* active = mdiArea_->activeSubWindow();
    for (QMdiSubWindow* sub : mdiArea_->subWindowList(QMdiArea::CreationOrder)) {
        if (!sub->isVisible()) continue;
        ++number;
        const QString title = sub->windowTitle();
        QString caption = number < 10 ? QStringLiteral("&%1 %2").arg(number).arg(title)
                                      : QStringLiteral("%1 %2").arg(number).arg(title);
        auto* action = new QAction(caption, mWindow);
        action->setCheckable(true);
        action->setChecked(sub == active);
        QPointer<QMdiSubWindow> target(sub);
        connect(action, &QAction::triggered, this, [this, target] {
            if (target) mdiArea_->setActiveSubWindow(target);
        });
        mWindow->addAction(action);
        windowListActions_.append(action);
    }
    windowListSeparator_->setVisible(!windowListActions_.isEmpty());
}

// --- Start and end ------------------------------------------------------------

void MDIVantrel::MDIForm_Load(const QString& commandLine) {
    commandLine_ = commandLine;
    Initialize();
    TakeRememberedPrinter();
    // The size in twips follows the font's DPI: a remembered frame, or the
    // design size, may not fit this screen.
    KeepOnScreen();
    show();
    ShowBoard();
    ShowCommentMovesWindow();
    m_reset_board_Click();
    // One path is all the command line can hold; it goes on as it came.
    QString withoutBlanks = commandLine_;
    withoutBlanks.remove(QLatin1Char(' '));
    if (!withoutBlanks.isEmpty()) treeViews_.OpenLib(commandLine_);
}

void MDIVantrel::Initialize() {
    SmartForms = GetSettingText(QString::fromLatin1(kForms), QStringLiteral("SmartForms")) == QStringLiteral("T");
    mWRememberPositions->setChecked(SmartForms);
    if (!SmartForms) return;
    const auto number = [](const QString& suffix) {
        return static_cast<int16_t>(GetSettingNumber(QString::fromLatin1(kForms), kFormName + suffix));
    };
    const int16_t state = number(QStringLiteral("WinState"));
    if (state == 1) {
        setWindowState(Qt::WindowMinimized);
        return;
    }
    if (state == 2) {
        setWindowState(Qt::WindowMaximized);
        return;
    }
    if (state != 0) return;
    const int left = number(QStringLiteral("Left"));
    const int top = number(QStringLiteral("Top"));
    const int width = number(QStringLiteral("Width"));
    const int height = number(QStringLiteral("Height"));
    setWindowState(Qt::WindowNoState);
    move(TwipsToPixels(left), TwipsToPixels(top));
    resize(std::max(1, TwipsToPixels(width)), std::max(1, TwipsToPixels(height)));
}

void MDIVantrel::SavePosition() {
    if (!SmartForms) return;
    const QString section = QString::fromLatin1(kForms);
    SaveSettingText(section, QStringLiteral("SmartForms"), QStringLiteral("T"));
    const int state = isMinimized() ? 1 : isMaximized() ? 2 : 0;
    SaveSettingNumber(section, kFormName + QStringLiteral("WinState"), state);
    SaveSettingNumber(section, kFormName + QStringLiteral("Left"), Twips16(x()));
    SaveSettingNumber(section, kFormName + QStringLiteral("Top"), Twips16(y()));
    SaveSettingNumber(section, kFormName + QStringLiteral("Width"), Twips16(width()));
    SaveSettingNumber(section, kFormName + QStringLiteral("Height"), Twips16(height()));
}

void MDIVantrel::changeEvent(QEvent* event) {
    // A restore from minimized is a resize of the frame, even when the inner
    // area comes back at the size it had: the board is placed.
    if (event->type() == QEvent::WindowStateChange &&
        static_cast<QWindowStateChangeEvent*>(event)->oldState().testFlag(Qt::WindowMinimized) && !isMinimized())
        ShowBoard();
    QMainWindow::changeEvent(event);
}

bool MDIVantrel::KeepOnScreen() {
    if (windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)) return false;
    const QScreen* on = QGuiApplication::screenAt(frameGeometry().center());
    if (!on) on = screen();
    if (!on) return false;
    // Until the window manager has framed the window, its outer size is its
    // inner size.
    const QSize frame = frameGeometry().size() - size();
    const QRect fitted = FitOnScreen(frameGeometry(), on->availableGeometry());
    if (fitted == frameGeometry()) return false;
    resize(fitted.size() - frame);
    move(fitted.topLeft());
    return true;
}

// The first time the window manager's title bar and borders are known, the
// frame is brought inside the screen once more, and the shared windows are
// planned again in the inner area the frame really has.
void MDIVantrel::FitWhenFramed() {
    if (framed_ || !isVisible() || frameGeometry().size() == size()) return;
    framed_ = true;
    const QSize inner = mdiArea_->viewport()->size();
    replan_ = KeepOnScreen();
    if (replan_ && mdiArea_->viewport()->size() != inner) {
        replan_ = false;
        ShowBoard();
        ShowCommentMovesWindow();
    }
}

void MDIVantrel::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    FitWhenFramed();
}

void MDIVantrel::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    FitWhenFramed();
}

void MDIVantrel::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    FitWhenFramed();
}

void MDIVantrel::closeEvent(QCloseEvent* event) {
    if (!MDIForm_QueryUnload()) {
        event->ignore();
        return;
    }
    MDIForm_Unload();
    event->accept();
}

bool MDIVantrel::MDIForm_QueryUnload() {
    // A load that is under way may have the window up already; a close that
    // is called off gives it back as it was.
    const bool statusWasUp = forms::StatusLoaded();
    frm_status& status = forms::Status();
    const QString statusText = status.lblMessage->text();
    const bool barWasHidden = status.Progbar->isHidden();
    status.show();
    status.Progbar->hide();
    status.lblMessage->setText(QStringLiteral("Please wait while Vantrel unloads..."));
    DoEvents();
    AppClosing = true;

    // The library windows go first. One that is still loading refuses, and
    // then the close is called off as a whole, before any library has gone.
    const QList<frmTreeView*> libraries = treeViews_.All();
    bool refused = std::any_of(libraries.begin(), libraries.end(), [](frmTreeView* form) { return form->IsLoading; });
    for (frmTreeView* form : libraries) {
        if (refused) break;
        if (!forms::OuterWindow(form)->close()) refused = true;
    }
    if (refused) {
        AppClosing = false;
        if (statusWasUp && forms::StatusLoaded()) {
            forms::Status().lblMessage->setText(statusText);
            forms::Status().Progbar->setVisible(!barWasHidden);
        } else {
            forms::UnloadStatus();
        }
        return false;
    }
    // The shared windows let themselves go when the program ends.
    for (QWidget* form : {static_cast<QWidget*>(&forms::Board()), static_cast<QWidget*>(&forms::Comments()),
                          static_cast<QWidget*>(&forms::Moves())}) {
        forms::OuterWindow(form)->close();
    }
    return true;
}

void MDIVantrel::MDIForm_Unload() {
    SavePosition();
    forms::UnloadStatus();
}

bool MDIVantrel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mdiArea_->viewport() && event->type() == QEvent::Resize) {
        // MDIForm_Resize: the board keeps to the bottom right corner.
        if (isVisible()) ShowBoard();
        if (isVisible() && replan_) {
            replan_ = false;
            ShowCommentMovesWindow();
        }
    } else if (event->type() == QEvent::Hide) {
        // A shared window that hides itself takes its sub-window along.
        auto* form = qobject_cast<QWidget*>(watched);
        if (form && form->isHidden()) {
            QWidget* outer = forms::OuterWindow(form);
            if (outer != form) outer->hide();
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

// --- The plan ------------------------------------------------------------------

void MDIVantrel::ShowBoard() {
    if (isMinimized()) return;
    frmBoard& board = forms::Board();
    QWidget* outer = forms::OuterWindow(&board);
    if (outer->isMinimized()) outer->showNormal();
    const Placement p = PlanBoard(ScaleWidth(), ScaleHeight(), PixelsToTwips(outer->width()),
                                  PixelsToTwips(outer->height()));
    outer->move(TwipsToPixels(p.left), TwipsToPixels(p.top));
    board.show();
    outer->show();
}

void MDIVantrel::ShowCommentMovesWindow() {
    if (isMinimized()) return;
    QWidget* comments = forms::OuterWindow(&forms::Comments());
    QWidget* moves = forms::OuterWindow(&forms::Moves());
    if (comments->isMinimized()) comments->showNormal();
    if (moves->isMinimized()) moves->showNormal();
    QWidget* board = forms::OuterWindow(&forms::Board());
    const int boardW = PixelsToTwips(board->width());
    const int boardH = PixelsToTwips(board->height());
    const CommentMovesPlan plan = PlanCommentsMoves(ScaleHeight(), boardH);
    CommentsMovesStacked = plan.stacked;
    const int left = std::max(0, ScaleWidth() - boardW);
    SetGeometryTwips(comments, left, 0, boardW, plan.height);
    SetGeometryTwips(moves, left, plan.movesTop, boardW, plan.height);
    ShowInFront(&forms::Comments());
    ShowInFront(&forms::Moves());
}

// Each brings its window to the front where it stands, neither moved nor sized.
void MDIVantrel::ShowCommentWindow() {
    if (!isMinimized()) ShowInFront(&forms::Comments());
}

void MDIVantrel::ShowMovesWindow() {
    if (!isMinimized()) ShowInFront(&forms::Moves());
}

// --- Commands ------------------------------------------------------------------

QString MDIVantrel::BrowseLibrary() {
    // "Vantrel Libraries(*.vnb) | *.vnb", in the dialog's own form.
    return ui::GetOpenFileName(this, QStringLiteral("Browse File"), ProgramDir(),
                               QStringLiteral("Vantrel Libraries (*.vnb)"));
}

void MDIVantrel::m_open_Click() {
    const QString path = BrowseLibrary();
    QString withoutBlanks = path;
    withoutBlanks.remove(QLatin1Char(' '));
    if (!withoutBlanks.isEmpty()) treeViews_.OpenLib(path);
}

void MDIVantrel::m_import_Click() {
    NewLibraryPath.clear();
    ImportCancelled = 0;
    {
        frmImportWizard wizard(this);
        ui::ExecModal(wizard);
    }
    if (ImportCancelled == 0) treeViews_.OpenLib(NewLibraryPath);
}

void MDIVantrel::mFLibRemarks_Click() {
    frmLibRemarks remarks(treeViews_.LibRemarks(), this);
    ui::ExecModal(remarks);
}

void MDIVantrel::mFPrintSetup_Click() { ShowPrintSetup(this); }

void MDIVantrel::m_exit_Click() { close(); }

void MDIVantrel::mTSearch_Click() { treeViews_.Find(); }
void MDIVantrel::mTFindNext_Click() { treeViews_.FindNext(); }
void MDIVantrel::m_expand_tree_Click() { treeViews_.ExpandAll(); }
void MDIVantrel::m_collapse_tree_Click() { treeViews_.CollapseAll(); }
void MDIVantrel::mTExpandGame_Click() { treeViews_.ExpandNode(); }

void MDIVantrel::m_reverse_sides_Click() {
    bReverseSides = !bReverseSides;
    m_reverse_sides->setChecked(bReverseSides);
    forms::Board().SetLabels();
    forms::Board().DisplayBoard();
}

void MDIVantrel::m_reset_board_Click() {
    forms::Board().ResetBoard();
    forms::Board().DisplayBoard();
}

void MDIVantrel::mBPrintMoveList_Click() { treeViews_.PrintMoveList(); }

void MDIVantrel::mWArrangeWindows_Click() {
    ShowBoard();
    ShowCommentMovesWindow();
    treeViews_.ArrangeWindows();
}

void MDIVantrel::mWLayerWindows_Click() {
    ShowBoard();
    ShowCommentMovesWindow();
    treeViews_.LayerWindows();
}

void MDIVantrel::mWRememberPositions_Click() {
    // The action has turned its check mark already.
    SmartForms = mWRememberPositions->isChecked();
}

void MDIVantrel::mWShowBoard_Click() {
    ShowBoard();
    forms::OuterWindow(&forms::Board())->raise();
    mWShowBoard->setVisible(false);
}

void MDIVantrel::mWShowComments_Click() {
    ShowCommentWindow();
    mWShowComments->setVisible(false);
}

void MDIVantrel::mWShowMoves_Click() {
    ShowMovesWindow();
    mWShowMoves->setVisible(false);
}

void MDIVantrel::m_help_contents_Click() { ShowHelpContents(); }
void MDIVantrel::m_search_help_Click() { ShowHelpSearch(); }

void MDIVantrel::m_about_Click() {
    frmAbout about(this);
    ui::ExecModal(about);
}
