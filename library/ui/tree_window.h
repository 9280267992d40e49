// frmTreeView: the window of one open library.
#pragma once

#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <string>

#include "library/loader.h"

class QComboBox;
class QModelIndex;
class QPoint;
class QLabel;
class QMdiSubWindow;
class QTreeView;
class QWidget;

namespace vantrel::library {
class TreeItemModel;
class GamesListModel;
}


class frmTreeView : public QWidget {
    Q_OBJECT
public:
    explicit frmTreeView(QWidget* parent = nullptr);
    ~frmTreeView() override;

    // The window's key in cTreeView ("TV00001"), also its Tag.
    QString Tag;

    void ExpandNode();
    void OpenLibrary(const QString& path);
    void ExpandTree(bool bExpanded);
    QString LibRemarks() const;
    void Find(const std::string& szBoard);
    void FindNext();
    std::string CurrentBoard() const { return m_CurrentBoard; }
    bool CurrentSearch() const { return !szSearchBoard.empty(); }

    // Navigation.
    void tvTreeView_NodeClick(int node);
    void tvTreeView_GotFocus();
    void cboListGames_Click();
    int GetSelectedIndex() const;

    // Selects a node (without a click) and gives the tree the focus.
    void SelectNode(int node);
    void FocusTree();

    // The window has come to the front of the frame: the focus goes back to
    // the control that last had it, the tree if none has, and its library
    // becomes the active one.
    void Form_Activate();

    // The caption (library name) as shown in the window's title.
    QString Caption() const;

    // The sub-window of the main frame that hosts this window.
    QMdiSubWindow* SubWindow() const;

    // What the window holds of its library.
    const vantrel::library::LibraryContents& Contents() const { return contents_; }
    QTreeView* tvTreeView = nullptr;
    QComboBox* cboListGames = nullptr;
    QLabel* Label1 = nullptr;
    QWidget* Picture1 = nullptr;

    // Members of the window.
    int16_t CurrentNode = 0;
    bool IsLoading = false;
    std::string szSearchBoard;
    int16_t iSearchStart = 0;

signals:
    // The tree got the focus: its library is the active one now.
    void focused(frmTreeView* form);
    // A library with remarks has loaded.
    void remarksWanted();
    // The right button on the tree, for the Tree menu.
    void menuRequested(QPoint globalPos);
    // The user closes the window: its library leaves the open ones.
    void unloading(frmTreeView* form);
    // The window goes without that (the end of the program): nothing may
    // name it any more.
    void gone(frmTreeView* form);

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class TreeWindowLoad;

    void ShowNode(int node);  // Selected, node click, focus: the end of Find
    bool Load(const QString& path);  // false: the load failed and was reported
    void UnloadSelf();
    bool Form_Unload();  // false: the window refuses to go
    void Form_Resize();
    void FitColumn();
    void tvTreeView_MouseDown(int button, const QPoint& globalPos);
    void EnsureVisible(int node);
    void SetExpanded(int node, bool bExpanded);
    void PublishLoaded();
    void OnCurrentChanged(const QModelIndex& current);
    void OnClicked(const QModelIndex& index);

    vantrel::library::LibraryContents contents_;
    std::unique_ptr<vantrel::library::TreeItemModel> model_;
    std::unique_ptr<vantrel::library::GamesListModel> games_;
    std::string m_CurrentBoard;
    bool syncingSelection_ = false;
    bool clickHandled_ = false;  // the press of this click already changed the node
    bool unloading_ = false;
    QPointer<QWidget> lastFocus_;  // the control of the window that last had the focus
};
