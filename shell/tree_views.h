// cTreeView: the register of the open libraries and the active one.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>

class frmTreeView;

class cTreeView {
public:
    void ExpandNode();
    void CollapseAll();
    void ExpandAll();
    void PrintMoveList();
    void FindNext();
    void Find();
    int16_t Count() const { return static_cast<int16_t>(Libraries.size()); }
    int16_t GetAllLibraries(QStringList& szLibArray, QStringList& szTagArray) const;
    std::string CurrentBoard() const;
    void OpenLib(const QString& szLibPath);
    void ArrangeWindows();
    void LayerWindows();
    void Remove(frmTreeView* fTreeView);
    void SetAsActive(frmTreeView* fTreeView);
    void SetActive(const QString& szKey) { ActiveKey = szKey; }
    QString LibRemarks() const;
    void SetSearchCancelled(bool bCancelled) { m_SearchCancelled = bCancelled; }
    void SetSearchBoard(const std::string& szBoard) { m_SearchBoard = szBoard; }

    // The window of a key, or null; the active one, or null.
    frmTreeView* Item(const QString& key) const;
    // The key of window number n: "TV" and the number in five digits.
    static QString KeyOf(int n) { return QStringLiteral("TV%1").arg(n, 5, 10, QLatin1Char('0')); }
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

    QString ActiveKey;
    QList<frmTreeView*> Libraries;  // in order of opening; the key is each window's Tag
    bool m_SearchCancelled = false;
    std::string m_SearchBoard;
    int16_t m_WindowCounter = 0;
};
