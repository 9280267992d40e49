#include "library/ui/tree_item_model.h"

#include <QCollator>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>

#include "widgets/forms.h"

namespace vantrel::library {
namespace {

// Icons are drawn on a 16-unit grid and rendered at several pixel sizes, so
// that they stay crisp on any screen.
template <typename Draw>
QIcon DrawIcon(Draw draw) {
    QIcon icon;
    for (int px : {16, 20, 24, 32, 48, 64}) {
        QPixmap pm(px, px);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing, true);
        p.scale(px / 16.0, px / 16.0);
        draw(p);
        p.end();
        icon.addPixmap(pm);
    }
    return icon;
}

void DrawBoard(QPainter& p) {
    // A 4 x 4 board in the colours of the big one, bottom left dark.
    const QColor light(0xD6, 0xDA, 0xE2);
    const QColor dark(0x2F, 0x5F, 0xC8);
    const QRectF frame(1.5, 1.5, 13, 13);
    p.setPen(Qt::NoPen);
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            const bool isDark = (r + c) % 2 == 1;
            p.setBrush(isDark ? dark : light);
            p.drawRect(QRectF(1.5 + c * 3.25, 1.5 + r * 3.25, 3.25, 3.25));
        }
    }
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(0x1E, 0x24, 0x30), 1.0));
    p.drawRect(frame);
}

void DrawPawn(QPainter& p) {
    QPainterPath pawn;
    pawn.addEllipse(QPointF(8, 4.6), 2.5, 2.5);         // head
    pawn.moveTo(6.1, 7.2);                              // collar
    pawn.lineTo(9.9, 7.2);
    pawn.lineTo(9.0, 8.4);
    pawn.cubicTo(9.2, 10.2, 10.4, 11.4, 11.4, 12.2);   // body
    pawn.lineTo(4.6, 12.2);
    pawn.cubicTo(5.6, 11.4, 6.8, 10.2, 7.0, 8.4);
    pawn.closeSubpath();
    pawn.addRoundedRect(QRectF(3.4, 12.0, 9.2, 2.6), 0.9, 0.9);  // foot
    pawn.setFillRule(Qt::WindingFill);
    p.setPen(QPen(QColor(0x3A, 0x2A, 0x18), 0.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QLinearGradient fill(4, 2, 12, 15);
    fill.setColorAt(0, QColor(0xF4, 0xD9, 0x9C));
    fill.setColorAt(1, QColor(0xC8, 0x94, 0x4A));
    p.setBrush(fill);
    p.drawPath(pawn.simplified());
}

}  // namespace

TreeItemModel::TreeItemModel(const TreeModel& tree, QObject* parent) : QAbstractItemModel(parent), tree_(tree) {}

QIcon TreeItemModel::BoardIcon() {
    static const QIcon icon = DrawIcon(DrawBoard);
    return icon;
}

QIcon TreeItemModel::PawnIcon() {
    static const QIcon icon = DrawIcon(DrawPawn);
    return icon;
}

const std::vector<int>& TreeItemModel::ChildrenOf(int node) const {
    return node == 0 ? tree_.TopLevel() : tree_.Node(node).children;
}

int TreeItemModel::PublishedChildren(int node) const {
    // Children stand in number order, so the published ones are a prefix.
    const std::vector<int>& children = ChildrenOf(node);
    if (children.empty() || children.back() <= published_) return static_cast<int>(children.size());
    return static_cast<int>(std::upper_bound(children.begin(), children.end(), published_) - children.begin());
}

void TreeItemModel::Publish() {
    const int count = tree_.Count();
    rows_.resize(static_cast<size_t>(count) + 1, 0);
    // The new nodes are appended: each run of them under one parent is one
    // insertion of rows at the end of that parent's rows. The view keeps
    // its open nodes, its selection and its scroll position.
    while (published_ < count) {
        const int first = published_ + 1;
        const int parentNode = tree_.Node(first).parent;
        // Its row is the number of its siblings published before it; the
        // nodes after it that share its parent take the rows after it.
        const int firstRow = PublishedChildren(parentNode);
        int last = first;
        while (last < count && tree_.Node(last + 1).parent == parentNode) ++last;
        beginInsertRows(IndexOf(parentNode), firstRow, firstRow + (last - first));
        for (int n = first; n <= last; ++n) rows_[n] = firstRow + (n - first);
        published_ = last;
        endInsertRows();
    }
}

void TreeItemModel::Forget() {
    beginResetModel();
    published_ = 0;
    rows_.assign(1, 0);
    endResetModel();
}

QModelIndex TreeItemModel::IndexOf(int node) const {
    if (node < 1 || node > published_) return QModelIndex();
    return createIndex(rows_[node], 0, static_cast<quintptr>(node));
}

int TreeItemModel::NodeOf(const QModelIndex& index) {
    return index.isValid() ? static_cast<int>(index.internalId()) : 0;
}

QModelIndex TreeItemModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0) return QModelIndex();
    const int parentNode = NodeOf(parent);
    if (parentNode > published_) return QModelIndex();
    const std::vector<int>& children = ChildrenOf(parentNode);
    if (row >= static_cast<int>(children.size()) || children[row] > published_) return QModelIndex();
    return createIndex(row, 0, static_cast<quintptr>(children[row]));
}

QModelIndex TreeItemModel::parent(const QModelIndex& child) const {
    const int node = NodeOf(child);
    if (node < 1 || node > published_) return QModelIndex();
    return IndexOf(tree_.Node(node).parent);
}

int TreeItemModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid() && parent.column() != 0) return 0;
    const int node = NodeOf(parent);
    if (node > published_) return 0;
    return PublishedChildren(node);
}

int TreeItemModel::columnCount(const QModelIndex&) const { return 1; }

bool TreeItemModel::hasChildren(const QModelIndex& parent) const { return rowCount(parent) > 0; }

QVariant TreeItemModel::data(const QModelIndex& index, int role) const {
    const int node = NodeOf(index);
    if (node < 1 || node > published_) return QVariant();
    const TreeNode& n = tree_.Node(node);
    switch (role) {
        case Qt::DisplayRole: return FromLib(n.Text);
        case Qt::DecorationRole: return n.Image == NodeImage::Board ? BoardIcon() : PawnIcon();
        case NodeNumberRole: return node;
        case ImageKeyRole: return n.Image == NodeImage::Board ? QStringLiteral("board") : QStringLiteral("pawn");
        default: return QVariant();
    }
}

void GamesListModel::TakeFrom(const std::vector<GameEntry>& games) {
    if (games.size() <= taken_) return;
    std::vector<Entry> added;
    added.reserve(games.size() - taken_);
    for (size_t i = taken_; i < games.size(); ++i) added.push_back({FromLib(games[i].name), games[i].node});
    taken_ = games.size();
    // By the user's locale, without regard to case; the C locale, which
    // orders by code point, gives way to the common order of letters.
    QLocale locale;
    if (locale.language() == QLocale::C) locale = QLocale(QLocale::English);
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    const auto less = [&collator](const Entry& a, const Entry& b) { return collator.compare(a.name, b.name) < 0; };
    std::stable_sort(added.begin(), added.end(), less);
    beginResetModel();
    // Those already in the list come first among equals.
    const auto middle = static_cast<std::ptrdiff_t>(entries_.size());
    entries_.insert(entries_.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
    std::inplace_merge(entries_.begin(), entries_.begin() + middle, entries_.end(), less);
    endResetModel();
}

void GamesListModel::Clear() {
    beginResetModel();
    entries_.clear();
    taken_ = 0;
    endResetModel();
}

int GamesListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant GamesListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= static_cast<int>(entries_.size())) return QVariant();
    const Entry& e = entries_[static_cast<size_t>(index.row())];
    if (role == Qt::DisplayRole) return e.name;
    if (role == NodeNumberRole) return e.node;
    return QVariant();
}

}  // namespace vantrel::library
