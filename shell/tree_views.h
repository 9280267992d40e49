// cTreeView: the register of the open libraries and the active one, kept
// by the main frame.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>

#include "board/search_window.h"

class MDIVantrel;
class frmTreeView;

class cTreeView : public vantrel::board::SearchLibraries {
public:
    explicit cTreeView(MDIVantrel& frame) : frame_(frame) {}

    void ExpandNode();
    void CollapseAll();
    void ExpandAll();
    void PrintMoveList();
    void FindNext();
    void Find();
    int16_t Count() const { return static_cast<int16_t>(Libraries.size()); }
    int16_t GetAllLibraries(QStringList& szLibArray, QStringList& szTagArray) const override;
    std::string CurrentBoard() const override;
    void OpenLib(const QString& szLibPath);
    void ArrangeWindows();
    void LayerWindows();
    void Remove(frmTreeView* fTreeView);
    void SetAsActive(frmTreeView* fTreeView);
    void SetActive(const QString& szKey) override { ActiveKey = szKey; }
    QString LibRemarks() const;
    void SetSearchCancelled(bool bCancelled) override { m_SearchCancelled = bCancelled; }
    void SetSearchBoard(const std::string& szBoard) override { m_SearchBoard = szBoard; }

    // The window of a key, or null; the active one, or null.
    frmTreeView* Item(const QString& key) const;
    frmTreeView* Active() const { return Item(ActiveKey); }
    const QString& GetActiveKey() const { return ActiveKey; }
    const QList<frmTreeView*>& All() const { return Libraries; }

    // For tests: the window counter (keys are never reused in one run).
    int16_t WindowCounter() const { return m_WindowCounter; }
    void SetWindowCounter(int16_t counter) { m_WindowCounter = counter; }

    // Drops a window that is going away without Remove (the end of the
    // program), so that no entry outlives its window.
    void Forget(frmTreeView* fTreeView);

private:
    QString NewTreeView();
    void ShowTreeView(const QString& key);
    // Tiles the library windows from top to bottom, or lays them all in one place.
    void PlaceAll(bool layered);

    MDIVantrel& frame_;
    QString ActiveKey;
    QList<frmTreeView*> Libraries;  // in order of opening; the key is each window's Tag
    bool m_SearchCancelled = false;
    std::string m_SearchBoard;
    int16_t m_WindowCounter = 0;
};
