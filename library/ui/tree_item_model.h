// TreeItemModel: a library's TreeModel as seen by a QTreeView. An item's
// internal id is its node number. Nodes are published to the view in number
// order as the load goes on, so a tree that is still loading can be walked.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <vector>

#include "library/loader.h"
#include "library/tree_model.h"

namespace vantrel::library {

class TreeItemModel : public QAbstractItemModel {
    Q_OBJECT
public:
    static constexpr int NodeNumberRole = Qt::UserRole + 1;
    static constexpr int ImageKeyRole = Qt::UserRole + 2;  // "board" or "pawn"

    explicit TreeItemModel(const TreeModel& tree, QObject* parent = nullptr);

    // Shows the nodes the tree has gained since the last call, as rows
    // inserted under their parents.
    void Publish();
    int Published() const { return published_; }
    // Shows nothing any more; the tree may then be emptied.
    void Forget();

    QModelIndex IndexOf(int node) const;
    static int NodeOf(const QModelIndex& index);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;

    // The two node pictures, drawn for the screen's pixel ratio.
    static QIcon BoardIcon();
    static QIcon PawnIcon();

private:
    const std::vector<int>& ChildrenOf(int node) const;
    int PublishedChildren(int node) const;

    const TreeModel& tree_;
    int published_ = 0;
    std::vector<int> rows_{0};  // row of each published node among its siblings
};

// The entries of "Go To Game:": each game's name with its node number,
// sorted by name as a sorted list box sorts: by the user's locale, letters
// before case ("Réti" before "Ruy", "a" beside "A"). A name that equals one
// already there, case aside, goes after it.
class GamesListModel : public QAbstractListModel {
    Q_OBJECT
public:
    static constexpr int NodeNumberRole = Qt::UserRole;  // the entry's item data

    explicit GamesListModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    // Takes in the games from `games[Taken()]` on.
    void TakeFrom(const std::vector<GameEntry>& games);
    size_t Taken() const { return taken_; }
    void Clear();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    struct Entry {
        QString name;
        int node = 0;
    };
    std::vector<Entry> entries_;
    size_t taken_ = 0;
};

}  // namespace vantrel::library
