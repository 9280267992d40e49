#include "library/ui/tree_window.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QProgressBar>
#include <QScrollBar>
#include <QTreeView>
#include <algorithm>

#include "board/board_window.h"
#include "library/ui/comments_moves.h"
#include "layout/window_plan.h"
#include "library/ui/tree_item_model.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "widgets/status_window.h"

using namespace vantrel;
using vantrel::library::GamesListModel;
using vantrel::library::NodeImage;
using vantrel::library::TreeItemModel;


namespace {

// The strip that carries "Go To Game:" is this high.
constexpr int kStripHeightTwips = 420;

// The tree control, with its measure of a column open to the window. A node
// that is brought into view comes into view sideways too: deep in the tree
// its picture and text lie far right of the column's left edge, where the
// control alone would scroll to.
class LibraryTreeView : public QTreeView {
public:
    using QTreeView::QTreeView;
    using QTreeView::sizeHintForColumn;

    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override {
        QScrollBar* bar = horizontalScrollBar();
        const int before = bar->value();
        QTreeView::scrollTo(index, hint);
        if (!index.isValid()) return;
        updateGeometries();  // the column may have grown with the rows now in view
        bar->setValue(before);
        const QRect item = visualRect(index);
        const int room = viewport()->width();
        const int text = std::min(sizeHintForIndex(index).width(), room - indentation());
        if (item.left() < 0 || item.left() + text > room) bar->setValue(bar->value() + item.left() - indentation());
    }
};

}  // namespace

// Drives the window through a load: the caption and the board when the
// header is in, the bar every 101 records, the tree as it grows.
class TreeWindowLoad : public library::LoadObserver {
public:
    explicit TreeWindowLoad(frmTreeView& form) : form_(form) {}

    void OnHeader(const library::LibraryHeader& header) override {
        form_.games_->Clear();
        form_.setWindowTitle(FromLib(header.book));
        frm_status& status = forms::Status();
        SetAlwaysOnTop(&status, true);
        forms::Board().ResetBoard();
        forms::Board().DisplayBoard();
    }

    ~TreeWindowLoad() override {
        if (forms::StatusLoaded()) forms::Status().Progbar->setUpdatesEnabled(true);
    }

    void OnProgress(double percent) override {
        // The bar and the tree take what has been read at every step, and
        // are painted as often as a screen can show it; the events run at
        // every step.
        const bool frame = FrameDue(shown_);
        // Another load may have ended meanwhile and unloaded the shared
        // window; a bar that is not up is not brought back.
        if (forms::StatusLoaded()) {
            QProgressBar* bar = forms::Status().Progbar;
            if (bar->updatesEnabled() != frame) bar->setUpdatesEnabled(frame);
            bar->setValue(static_cast<int>(std::clamp(percent, 0.0, 100.0)));
        }
        if (frame) form_.PublishLoaded();
        DoEvents();
    }

private:
    frmTreeView& form_;
    QElapsedTimer shown_;
};

frmTreeView::frmTreeView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmTreeView"));
    setWindowTitle(QStringLiteral("Tree View"));
    setWindowIcon(TreeItemModel::BoardIcon());

    Picture1 = new QWidget(this);
    Picture1->setObjectName(QStringLiteral("Picture1"));
    Label1 = new QLabel(QStringLiteral("Go To Game:"), Picture1);
    Label1->setObjectName(QStringLiteral("Label1"));
    cboListGames = new QComboBox(Picture1);
    cboListGames->setObjectName(QStringLiteral("cboListGames"));
    cboListGames->setEditable(false);
    cboListGames->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboListGames->setMinimumContentsLength(1);
    cboListGames->setMaxVisibleItems(24);
    Label1->setBuddy(cboListGames);

    model_ = std::make_unique<TreeItemModel>(contents_.tree);
    games_ = std::make_unique<GamesListModel>();
    cboListGames->setModel(games_.get());
    cboListGames->setCurrentIndex(-1);

    tvTreeView = new LibraryTreeView(this);
    tvTreeView->setObjectName(QStringLiteral("tvTreeView"));
    tvTreeView->setHeaderHidden(true);
    tvTreeView->setUniformRowHeights(true);
    tvTreeView->setSelectionMode(QAbstractItemView::SingleSelection);
    tvTreeView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tvTreeView->setExpandsOnDoubleClick(true);
    tvTreeView->setAnimated(false);
    tvTreeView->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    tvTreeView->header()->setSectionResizeMode(QHeaderView::Interactive);
    tvTreeView->header()->setStretchLastSection(false);
    // The column is measured on the rows in view, not on all 32,767.
    tvTreeView->header()->setResizeContentsPrecision(0);
    tvTreeView->setIconSize(QSize(16, 16));
    tvTreeView->setModel(model_.get());
    tvTreeView->installEventFilter(this);
    tvTreeView->viewport()->installEventFilter(this);

    connect(tvTreeView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current, const QModelIndex&) { OnCurrentChanged(current); });
    connect(tvTreeView, &QTreeView::clicked, this, [this](const QModelIndex& index) { OnClicked(index); });
    connect(tvTreeView, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        const int node = TreeItemModel::NodeOf(index);
        if (contents_.tree.Exists(node)) contents_.tree.Node(node).Expanded = true;
    });
    connect(tvTreeView, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        const int node = TreeItemModel::NodeOf(index);
        if (contents_.tree.Exists(node)) contents_.tree.Node(node).Expanded = false;
    });
    connect(tvTreeView, &QTreeView::expanded, this, &frmTreeView::FitColumn, Qt::QueuedConnection);
    connect(tvTreeView, &QTreeView::collapsed, this, &frmTreeView::FitColumn, Qt::QueuedConnection);
    connect(tvTreeView->verticalScrollBar(), &QScrollBar::valueChanged, this, &frmTreeView::FitColumn);
    connect(model_.get(), &QAbstractItemModel::modelReset, this, &frmTreeView::FitColumn, Qt::QueuedConnection);
    connect(cboListGames, &QComboBox::activated, this, [this](int) { cboListGames_Click(); });
    cboListGames->installEventFilter(this);

    // 4800 x 6000 twips until the frame places the window.
    resize(TwipsToPixels(4800), TwipsToPixels(6000));
}

frmTreeView::~frmTreeView() {
    // The views go before the models they show.
    cboListGames->removeEventFilter(this);
    delete tvTreeView;
    tvTreeView = nullptr;
    delete Picture1;
    Picture1 = nullptr;
    cboListGames = nullptr;
    Label1 = nullptr;
    emit gone(this);
}

namespace {

// IsLoading holds for as long as a load runs, the messages of a failure
// included; a window that went meanwhile is left alone.
class LoadingFlag {
public:
    explicit LoadingFlag(frmTreeView& form) : form_(&form) { form.IsLoading = true; }
    ~LoadingFlag() {
        if (form_) form_->IsLoading = false;
    }
    LoadingFlag(const LoadingFlag&) = delete;
    LoadingFlag& operator=(const LoadingFlag&) = delete;

private:
    QPointer<frmTreeView> form_;
};

}  // namespace

void frmTreeView::OpenLibrary(const QString& path) {
    QPointer<frmTreeView> self(this);
    bool loaded = false;
    {
        const LoadingFlag loading(*this);
        loaded = Load(path);
    }
    // A window whose load failed goes, once it no longer counts as loading.
    if (self && !loaded) UnloadSelf();
}

bool frmTreeView::Load(const QString& path) {
    QPointer<frmTreeView> self(this);
    TreeWindowLoad watch(*this);
    const library::LoadResult result =
        library::LoadLibrary(QFile::encodeName(path).toStdString(), contents_, &watch);
    if (!self) return true;

    if (result == library::LoadResult::NotValid) {
        // The bar was never shown and the board never reset.
        ui::MsgBox(QString::fromStdString(library::LoadFailureMessage(result, {})));
        return false;
    }
    if (result == library::LoadResult::Problem) {
        forms::UnloadStatus();
        // All or nothing: the half-built tree goes before the message.
        model_->Forget();
        games_->Clear();
        contents_ = library::LibraryContents{};
        ui::MsgBox(QFile::decodeName(library::LoadFailureMessage(result, QFile::encodeName(path).toStdString()).c_str()));
        return false;
    }

    PublishLoaded();
    forms::UnloadStatus();

    // The first node, shown as by a click; the focus brings it up once more.
    SelectNode(1);
    tvTreeView_NodeClick(1);
    FocusTree();

    if (!library::IsBlank(contents_.header.LibRemarks)) emit remarksWanted();
    return true;
}

void frmTreeView::PublishLoaded() {
    if (model_->Published() < contents_.tree.Count()) {
        model_->Publish();
        // The column is measured once for the whole batch.
        QMetaObject::invokeMethod(this, &frmTreeView::FitColumn, Qt::QueuedConnection);
    }
    const bool wasEmpty = games_->rowCount() == 0;
    const int chosen = cboListGames->currentIndex();
    const QVariant chosenNode = chosen >= 0 ? cboListGames->itemData(chosen) : QVariant();
    games_->TakeFrom(contents_.games);
    // The list keeps the user's choice across the growth of a load, and
    // otherwise stays empty until a game is chosen.
    QSignalBlocker block(cboListGames);
    int restore = -1;
    if (!wasEmpty && chosenNode.isValid()) restore = cboListGames->findData(chosenNode);
    cboListGames->setCurrentIndex(restore);
}

QString frmTreeView::LibRemarks() const { return FromLib(contents_.header.LibRemarks); }

QString frmTreeView::Caption() const { return windowTitle(); }

QMdiSubWindow* frmTreeView::SubWindow() const { return qobject_cast<QMdiSubWindow*>(parentWidget()); }

// --- Navigation -----------------------------------------------------------

void frmTreeView::tvTreeView_NodeClick(int node) {
    const library::TreeNode& n = contents_.tree.Node(node);
    CurrentNode = static_cast<int16_t>(node);
    EnsureVisible(node);
    frmBoard& board = forms::Board();
    board.SetBoard(n.Tag);
    m_CurrentBoard = n.Tag;
    board.DisplayBoard();
    forms::Moves().SetMovelist(contents_.tree.FullPath(node));
    const std::string comment =
        static_cast<size_t>(node) < contents_.NodeComments.size() ? contents_.NodeComments[node] : std::string();
    forms::Comments().SetText(library::IsBlank(comment) ? QString::fromLatin1(library::kNoComments)
                                                        : FromLib(comment));
}

void frmTreeView::tvTreeView_GotFocus() {
    emit focused(this);
    // A tree still empty has no node to show.
    const int node = GetSelectedIndex();
    if (!contents_.tree.Exists(node)) return;
    try {
        tvTreeView_NodeClick(node);
    } catch (const Error& e) {
        ShowError(QString::fromStdString(e.what()), e.number());
    }
}

void frmTreeView::tvTreeView_MouseDown(int button, const QPoint& globalPos) {
    if (button != 2) return;
    emit menuRequested(globalPos);
}

void frmTreeView::cboListGames_Click() {
    const int listIndex = cboListGames->currentIndex();
    if (listIndex < 0) return;
    const int node = cboListGames->itemData(listIndex, GamesListModel::NodeNumberRole).toInt();
    if (!contents_.tree.Exists(node)) return;
    SelectNode(node);
    tvTreeView_NodeClick(node);
    FocusTree();
}

void frmTreeView::ExpandTree(bool bExpanded) {
    const int count = contents_.tree.Count();
    for (int i = 1; i <= count; ++i) contents_.tree.Node(i).Expanded = bExpanded;
    QSignalBlocker block(tvTreeView);
    if (bExpanded)
        tvTreeView->expandAll();
    else
        tvTreeView->collapseAll();
    FitColumn();
}

void frmTreeView::ExpandNode() {
    const int n = GetSelectedIndex();
    const int c = contents_.tree.Count();
    // On the last node the command has no effect, not even on that node.
    if (n >= c) return;
    SetExpanded(n, true);
    for (int i = n + 1; i <= c; ++i) {
        if (contents_.tree.Node(i).Image != NodeImage::Pawn) break;
        SetExpanded(i, true);
    }
}

int frmTreeView::GetSelectedIndex() const {
    const int selected = contents_.tree.Selected();
    return selected == 0 ? 1 : selected;
}

void frmTreeView::SelectNode(int node) {
    if (!contents_.tree.Exists(node)) return;
    contents_.tree.Select(node);
    const QModelIndex index = model_->IndexOf(node);
    if (!index.isValid()) return;
    syncingSelection_ = true;
    tvTreeView->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    syncingSelection_ = false;
}

void frmTreeView::FocusTree() { tvTreeView->setFocus(Qt::OtherFocusReason); }

void frmTreeView::Form_Activate() {
    QWidget* control = lastFocus_ && lastFocus_->isVisibleTo(this) ? lastFocus_.data() : tvTreeView;
    const bool treeGetsFocus = control == tvTreeView && !tvTreeView->hasFocus();
    control->setFocus(Qt::ActiveWindowFocusReason);
    // The tree's focus makes its library the active one; with the focus
    // elsewhere the window in front still decides which library that is.
    if (!treeGetsFocus || !tvTreeView->hasFocus()) tvTreeView_GotFocus();
}

void frmTreeView::EnsureVisible(int node) {
    // Open the ancestors, top down, then bring the node into view.
    std::vector<int> line = contents_.tree.LineTo(node);
    line.pop_back();
    for (const int ancestor : line) SetExpanded(ancestor, true);
    const QModelIndex index = model_->IndexOf(node);
    if (index.isValid()) tvTreeView->scrollTo(index, QAbstractItemView::EnsureVisible);
}

void frmTreeView::SetExpanded(int node, bool bExpanded) {
    contents_.tree.Node(node).Expanded = bExpanded;
    const QModelIndex index = model_->IndexOf(node);
    if (index.isValid() && tvTreeView->isExpanded(index) != bExpanded) tvTreeView->setExpanded(index, bExpanded);
}

void frmTreeView::OnCurrentChanged(const QModelIndex& current) {
    if (syncingSelection_) return;
    const int node = TreeItemModel::NodeOf(current);
    if (!contents_.tree.Exists(node)) return;
    // A click or a key that moves the selection shows the node.
    contents_.tree.Select(node);
    clickHandled_ = QGuiApplication::mouseButtons() != Qt::NoButton;
    tvTreeView_NodeClick(node);
}

void frmTreeView::OnClicked(const QModelIndex& index) {
    if (clickHandled_) {
        clickHandled_ = false;
        return;
    }
    const int node = TreeItemModel::NodeOf(index);
    if (!contents_.tree.Exists(node)) return;
    contents_.tree.Select(node);
    tvTreeView_NodeClick(node);
}

// --- Size and the way out -------------------------------------------------

void frmTreeView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Form_Resize();
}

void frmTreeView::Form_Resize() {
    QWidget* outer = forms::OuterWindow(this);
    if (outer->isMinimized()) return;
    if (QMdiSubWindow* sub = SubWindow(); sub && sub->isMaximized()) {
        // A library window is never maximized: it takes the inner area as
        // a normal window instead, keeping its Left.
        sub->showNormal();
        const int left = sub->x();
        if (QMdiArea* area = sub->mdiArea()) {
            const QSize inner = area->viewport()->size();
            sub->setGeometry(left, 0, inner.width(), inner.height());
        }
        return;
    }
    const TreeWindowPlan plan = PlanTreeWindow(PixelsToTwips(outer->width()), PixelsToTwips(outer->height()));
    // The controls keep inside the window's own area, whatever its frame.
    const int innerW = width();
    const int innerH = height();
    const int stripH = TwipsToPixels(kStripHeightTwips);
    Picture1->setGeometry(0, 0, std::min(innerW, TwipsToPixels(plan.pictureWidth)), stripH);
    const int labelW = Label1->sizeHint().width();
    Label1->setGeometry(6, 0, labelW, stripH);
    const int listX = 6 + labelW + 6;
    const int listW = std::max(0, std::min(TwipsToPixels(plan.listWidth), innerW - listX - 6));
    const int listH = cboListGames->sizeHint().height();
    cboListGames->setGeometry(listX, std::max(0, (stripH - listH) / 2), listW, listH);
    const int treeW = std::min(TwipsToPixels(plan.treeWidth), innerW);
    const int treeH = std::max(0, std::min(TwipsToPixels(plan.treeHeight), innerH - stripH));
    tvTreeView->setGeometry(0, stripH, treeW, treeH);
    FitColumn();
}

void frmTreeView::FitColumn() {
    // The one column takes the width of the rows in view, and never less
    // than the tree, so that a selected row is marked across the tree.
    const int width = std::max(tvTreeView->viewport()->width(), static_cast<LibraryTreeView*>(tvTreeView)->sizeHintForColumn(0));
    if (tvTreeView->columnWidth(0) != width) tvTreeView->setColumnWidth(0, width);
}

void frmTreeView::closeEvent(QCloseEvent* event) {
    if (!Form_Unload()) {
        event->ignore();
        return;
    }
    // A window outside the frame goes by itself; a sub-window takes its
    // window with it.
    if (!SubWindow()) setAttribute(Qt::WA_DeleteOnClose);
    event->accept();
}

bool frmTreeView::Form_Unload() {
    if (IsLoading) return false;
    if (unloading_) return true;
    if (AppClosing) return true;  // the program goes: no clean-up at all
    unloading_ = true;
    frm_status& status = forms::Status();
    status.move(forms::OuterWindow(&forms::Board())->mapToGlobal(QPoint(0, 0)).x(), status.y());
    status.show();
    status.Progbar->hide();
    status.lblMessage->setText(QStringLiteral("Please wait while Vantrel unloads this library..."));
    SetAlwaysOnTop(&status, true);
    DoEvents();
    emit unloading(this);
    forms::UnloadStatus();
    return true;
}

void frmTreeView::UnloadSelf() {
    QWidget* outer = forms::OuterWindow(this);
    outer->close();
}

bool frmTreeView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn && (watched == tvTreeView || watched == cboListGames))
        lastFocus_ = static_cast<QWidget*>(watched);
    if (watched == tvTreeView && event->type() == QEvent::FocusIn) {
        tvTreeView_GotFocus();
    } else if (watched == tvTreeView->viewport() && event->type() == QEvent::MouseButtonPress) {
        // A press released elsewhere gives no click: nothing of it is left
        // for the next one.
        clickHandled_ = false;
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton) {
            // The pop-up selects nothing.
            tvTreeView_MouseDown(2, mouse->globalPosition().toPoint());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
