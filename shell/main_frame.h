// MDIVantrel: the program's one top-level window. Its inner area holds the
// library windows on the left, the board bottom right, and the comments and
// moves windows above the board. It owns the whole menu.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QStringList>

#include "layout/window_plan.h"
#include "shell/tree_views.h"

class QAction;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class frmTreeView;

namespace vantrel {

// The frame's start size and its fit on a screen (layout/window_plan.h)
// for Qt's rectangles.
QRect DefaultFrameGeometry(const QRect& room, const QSize& design);
QRect FitOnScreen(const QRect& outer, const QRect& available);

// The command line as the program keeps it: the arguments after the
// program's name joined by single blanks.
QString JoinCommandLine(const QStringList& arguments);

}  // namespace vantrel

class MDIVantrel : public QMainWindow {
    Q_OBJECT
public:
    explicit MDIVantrel(QWidget* parent = nullptr);
    ~MDIVantrel() override;

    // Start-up: restores the position, shows the frame, places the shared
    // windows, resets the board and opens the library on the command line.
    void MDIForm_Load(const QString& commandLine = QString());

    void Initialize();
    void ShowBoard();
    void ShowCommentMovesWindow();
    void ShowCommentWindow();
    void ShowMovesWindow();
    void m_reset_board_Click();
    void mFLibRemarks_Click();

    // The inner area, in twips.
    int ScaleWidth() const;
    int ScaleHeight() const;

    QMdiArea* MdiArea() const { return mdiArea_; }
    // Adds a window as a child of the frame, in its own sub-window.
    QMdiSubWindow* AddChild(QWidget* form);
    // Adds a library window, and takes what it tells.
    void AdoptLibraryWindow(frmTreeView* form);

    // The register of the open libraries.
    cTreeView& TreeViews() { return treeViews_; }
    const cTreeView& TreeViews() const { return treeViews_; }

    // The commands, by name (tests and other windows drive them).
    void m_open_Click();
    void m_import_Click();
    void mFPrintSetup_Click();
    void m_exit_Click();
    void mTSearch_Click();
    void mTFindNext_Click();
    void m_expand_tree_Click();
    void m_collapse_tree_Click();
    void mTExpandGame_Click();
    void m_reverse_sides_Click();
    void mBPrintMoveList_Click();
    void mWArrangeWindows_Click();
    void mWLayerWindows_Click();
    void mWRememberPositions_Click();
    void mWShowBoard_Click();
    void mWShowComments_Click();
    void mWShowMoves_Click();
    void m_help_contents_Click();
    void m_search_help_Click();
    void m_about_Click();

    // The menus and their items.
    QMenu* m_file = nullptr;
    QAction* m_open = nullptr;
    QAction* m_import = nullptr;
    QAction* mFLibRemarks = nullptr;
    QAction* m_sep1 = nullptr;
    QAction* mFPrintSetup = nullptr;
    QAction* msep2 = nullptr;
    QAction* m_exit = nullptr;
    QMenu* m_tree = nullptr;
    QAction* mTSearch = nullptr;
    QAction* mTFindNext = nullptr;
    QAction* mTsep = nullptr;
    QAction* m_expand_tree = nullptr;
    QAction* m_collapse_tree = nullptr;
    QAction* mTExpandGame = nullptr;
    QMenu* m_board = nullptr;
    QAction* m_reverse_sides = nullptr;
    QAction* m_reset_board = nullptr;
    QAction* m_tsep = nullptr;
    QAction* mBPrintMoveList = nullptr;
    QMenu* mWindow = nullptr;
    QAction* mWArrangeWindows = nullptr;
    QAction* mWLayerWindows = nullptr;
    QAction* mWRememberPositions = nullptr;
    QAction* mWShowBoard = nullptr;
    QAction* mWShowComments = nullptr;
    QAction* mWShowMoves = nullptr;
    QMenu* m_help = nullptr;
    QAction* m_help_contents = nullptr;
    QAction* m_search_help = nullptr;
    QAction* m_hsep = nullptr;
    QAction* m_about = nullptr;
    // Pop-up menus only, never in the menu bar.
    QMenu* MovesPopUpMenu = nullptr;
    QAction* mMPUShowComments = nullptr;
    QMenu* mCommentsPopUpMenu = nullptr;
    QAction* mCPUMShowMoves = nullptr;

    // The command line kept by MDIForm_Load.
    QString CommandLine() const { return commandLine_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BuildMenus();
    // Keeps the whole frame, title bar and borders included, inside the
    // available area of its screen, unless it is minimized or maximized.
    // True when it had to move or size the frame.
    bool KeepOnScreen();
    // Once the window manager's frame is known: KeepOnScreen, and a new plan
    // of the shared windows if the inner area changed.
    void FitWhenFramed();
    void AdoptSharedWindow(QWidget* form);
    void RefreshWindowList();
    QString BrowseLibrary();
    void SavePosition();
    bool MDIForm_QueryUnload();
    void MDIForm_Unload();

    cTreeView treeViews_{*this};
    QMdiArea* mdiArea_ = nullptr;
    QAction* windowListSeparator_ = nullptr;
    QList<QAction*> windowListActions_;
    QString commandLine_;
    bool framed_ = false;  // the window manager's frame has been measured once
    bool replan_ = false;  // the start's plan waits for the inner area's new size
    QPointer<QMdiSubWindow> frontWindow_;  // the child window last brought to the front
};
