#include "board/search_window.h"

#include <QApplication>
#include <QComboBox>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "board/board_view.h"
#include "board/piece_art.h"
#include "widgets/forms.h"

using vantrel::board::DragSource;

namespace {

constexpr int kPieceTwips = 480;  // a palette piece is as large as a square

int PiecePixels() { return vantrel::TwipsToPixels(kPieceTwips); }

// Starts a drag of a piece from this dialog; the pointer shows the piece.
void StartDrag(FrmSearchTree* form, QWidget* from, DragSource source) {
    const char picture = form->Squares().SourcePicture(source);
    if (!vantrel::board::IsPieceChar(picture)) return;  // an empty square carries nothing
    auto* mime = new QMimeData;
    mime->setData(QString::fromLatin1(FrmSearchTree::kMimeType), form->DragPayload(source));
    auto* drag = new QDrag(from);
    drag->setMimeData(mime);
    const QPixmap pixmap = form->DragPixmap(picture);
    drag->setPixmap(pixmap);
    drag->setHotSpot(QPoint(static_cast<int>(pixmap.width() / pixmap.devicePixelRatio() / 2),
                            static_cast<int>(pixmap.height() / pixmap.devicePixelRatio() / 2)));
    drag->exec(Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
}

// Whether an event carries a piece of this dialog; its source if so.
bool SourceOf(const FrmSearchTree* form, const QMimeData* mime, DragSource& source) {
    const QString type = QString::fromLatin1(FrmSearchTree::kMimeType);
    return mime && mime->hasFormat(type) && form->ReadPayload(mime->data(type), source);
}

// Remembers where a press went down, and tells when the mouse has moved far
// enough from it to count as a drag.
class DragStart {
public:
    void Press(const QPoint& pos) { pos_ = pos, armed_ = true; }
    void Release() { armed_ = false; }
    bool Moved(const QMouseEvent* event) {
        if (!armed_ || !(event->buttons() & Qt::LeftButton)) return false;
        if ((event->position().toPoint() - pos_).manhattanLength() < QApplication::startDragDistance()) return false;
        armed_ = false;
        return true;
    }
    const QPoint& pos() const { return pos_; }

private:
    QPoint pos_;
    bool armed_ = false;
};

// A piece of the palette: never changes, can be dragged any number of times.
class PalettePiece : public QLabel {
public:
    PalettePiece(FrmSearchTree* form, int index, QWidget* parent) : QLabel(parent), form_(form), index_(index) {
        setObjectName(QString::fromLatin1(vantrel::board::kPaletteNames[static_cast<std::size_t>(index)].data(),
                                          static_cast<int>(vantrel::board::kPaletteNames[static_cast<std::size_t>(index)].size())));
        setFixedSize(PiecePixels(), PiecePixels());
        setAlignment(Qt::AlignCenter);
        setCursor(Qt::OpenHandCursor);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton) start_.Press(event->position().toPoint());
        QLabel::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        start_.Release();
        QLabel::mouseReleaseEvent(event);
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (start_.Moved(event)) StartDrag(form_, this, DragSource::Palette(index_));
        QLabel::mouseMoveEvent(event);
    }

private:
    FrmSearchTree* form_;
    int index_;
    DragStart start_;
};

// The waste bin: a drop target that cannot be dragged.
class TrashBin : public QLabel {
public:
    TrashBin(FrmSearchTree* form, QWidget* parent) : QLabel(parent), form_(form) {
        setObjectName(QStringLiteral("imgTrash"));
        setFixedSize(PiecePixels(), PiecePixels());
        setAlignment(Qt::AlignCenter);
        setAcceptDrops(true);
        setToolTip(QStringLiteral("Drop a piece here to take it off the board"));
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override {
        DragSource source;
        if (SourceOf(form_, event->mimeData(), source)) event->acceptProposedAction();
    }
    void dropEvent(QDropEvent* event) override {
        DragSource source;
        if (!SourceOf(form_, event->mimeData(), source)) return;
        form_->imgTrash_DragDrop(source);
        event->acceptProposedAction();
    }

private:
    FrmSearchTree* form_;
};

// The board of the dialog: the shared board picture, with its squares as
// drag sources and drop targets.
class SetupBoardView : public BoardView {
public:
    SetupBoardView(FrmSearchTree* form, QWidget* parent) : BoardView(parent), form_(form) {
        setObjectName(QStringLiteral("Image2"));
        setAcceptDrops(true);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        pressed_ = SquareAt(event->position());
        if (event->button() == Qt::LeftButton && pressed_ >= 0) start_.Press(event->position().toPoint());
        BoardView::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        start_.Release();
        BoardView::mouseReleaseEvent(event);
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (start_.Moved(event) && pressed_ >= 0) StartDrag(form_, this, DragSource::Square(pressed_));
        BoardView::mouseMoveEvent(event);
    }
    void dragEnterEvent(QDragEnterEvent* event) override {
        DragSource source;
        if (!SourceOf(form_, event->mimeData(), source)) return;
        event->acceptProposedAction();
        SetHighlightedSquare(SquareAt(event->position()));
    }
    void dragMoveEvent(QDragMoveEvent* event) override {
        DragSource source;
        const int k = SquareAt(event->position());
        if (!SourceOf(form_, event->mimeData(), source) || k < 0) {
            SetHighlightedSquare(-1);
            event->ignore();
            return;
        }
        SetHighlightedSquare(k);
        event->acceptProposedAction();
    }
    void dragLeaveEvent(QDragLeaveEvent* event) override {
        SetHighlightedSquare(-1);
        BoardView::dragLeaveEvent(event);
    }
    void dropEvent(QDropEvent* event) override {
        SetHighlightedSquare(-1);
        DragSource source;
        const int k = SquareAt(event->position());
        if (!SourceOf(form_, event->mimeData(), source) || k < 0) return;
        form_->Image2_DragDrop(k, source);
        event->acceptProposedAction();
    }

private:
    FrmSearchTree* form_;
    DragStart start_;
    int pressed_ = -1;
};

}  // namespace

namespace vantrel::board {

QPixmap TrashPixmap(int logicalSize, qreal devicePixelRatio) {
    const int side = std::max(1, static_cast<int>(std::lround(logicalSize * devicePixelRatio)));
    QPixmap pixmap(side, side);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = logicalSize;
    const QPen outline(QColor(40, 40, 40), std::max<qreal>(1.0, s / 24));
    p.setPen(outline);
    // The body: a bucket a little narrower at the foot.
    QPainterPath body;
    body.moveTo(s * 0.22, s * 0.30);
    body.lineTo(s * 0.78, s * 0.30);
    body.lineTo(s * 0.71, s * 0.92);
    body.lineTo(s * 0.29, s * 0.92);
    body.closeSubpath();
    p.setBrush(QColor(176, 176, 176));
    p.drawPath(body);
    // Its ribs.
    for (qreal x : {0.38, 0.50, 0.62}) p.drawLine(QPointF(s * x, s * 0.38), QPointF(s * (0.5 + (x - 0.5) * 0.85), s * 0.84));
    // The lid and its handle.
    p.setBrush(QColor(144, 144, 144));
    p.drawRoundedRect(QRectF(s * 0.14, s * 0.20, s * 0.72, s * 0.09), s * 0.03, s * 0.03);
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(s * 0.40, s * 0.11, s * 0.20, s * 0.09), s * 0.03, s * 0.03);
    return pixmap;
}

}  // namespace vantrel::board

FrmSearchTree::FrmSearchTree(vantrel::board::SearchLibraries& libraries, QWidget* parent)
    : QDialog(parent), libraries_(libraries) {
    setObjectName(QStringLiteral("FrmSearchTree"));
    setWindowTitle(QStringLiteral("Vantrel - Setup board position to search...."));
    setModal(true);

    lblLibSelect = new QLabel(QStringLiteral("Select library to use :"), this);
    lblLibSelect->setObjectName(QStringLiteral("lblLibSelect"));
    cboLibSelect = new QComboBox(this);
    cboLibSelect->setObjectName(QStringLiteral("cboLibSelect"));
    cboLibSelect->setEditable(false);
    cboLibSelect->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    lblLibSelect->setBuddy(cboLibSelect);
    lblLibSelect->setVisible(false);
    cboLibSelect->setVisible(false);
    connect(cboLibSelect, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index >= 0) cboLibSelect_Click();
    });

    auto* palette = new QGridLayout;
    palette->setSpacing(4);
    for (int i = 0; i < vantrel::board::kPaletteSize; ++i) {
        auto* piece = new PalettePiece(this, i, this);
        Palette[static_cast<std::size_t>(i)] = piece;
        palette->addWidget(piece, i % 6, i / 6);  // White left, Black right
    }
    imgTrash = new TrashBin(this, this);
    palette->addWidget(imgTrash, 6, 1);  // under the black column
    palette->setRowMinimumHeight(6, PiecePixels() + vantrel::TwipsToPixels(240));
    palette->setRowStretch(7, 1);

    board_ = new SetupBoardView(this, this);

    const auto makeButton = [this](const char* name, const char* caption) {
        auto* button = new QPushButton(QString::fromLatin1(caption), this);
        button->setObjectName(QString::fromLatin1(name));
        button->setAutoDefault(false);
        button->setDefault(false);
        return button;
    };
    cmdReset = makeButton("cmdReset", "&Reset Board");
    cmdCurrent = makeButton("cmdCurrent", "Cu&rrent Board");
    cmdClear = makeButton("cmdClear", "C&lear Board");
    cmdSearch = makeButton("cmdSearch", "&Search");
    cmdCancel = makeButton("cmdCancel", "&Cancel");
    connect(cmdReset, &QPushButton::clicked, this, &FrmSearchTree::cmdReset_Click);
    connect(cmdCurrent, &QPushButton::clicked, this, &FrmSearchTree::cmdCurrent_Click);
    connect(cmdClear, &QPushButton::clicked, this, &FrmSearchTree::cmdClear_Click);
    connect(cmdSearch, &QPushButton::clicked, this, &FrmSearchTree::cmdSearch_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmSearchTree::cmdCancel_Click);

    auto* top = new QHBoxLayout;
    top->addWidget(lblLibSelect);
    top->addWidget(cboLibSelect, 1);
    top->addStretch();

    auto* middle = new QHBoxLayout;
    middle->addLayout(palette);
    middle->addSpacing(vantrel::TwipsToPixels(120));
    middle->addWidget(board_, 1);

    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {cmdReset, cmdCurrent, cmdClear, cmdSearch, cmdCancel}) buttons->addWidget(b);

    auto* main = new QVBoxLayout(this);
    main->addLayout(top);
    main->addLayout(middle, 1);
    main->addLayout(buttons);
}

FrmSearchTree::~FrmSearchTree() = default;

// ---------------------------------------------------------------------------
// Opening

void FrmSearchTree::Form_Load() {
    Initialize();
    SetLabels();
    const std::string current = libraries_.CurrentBoard();
    if (szSetupBoard.empty()) szSetupBoard = current;
    DisplayBoard();
}

void FrmSearchTree::Initialize() {
    const qreal ratio = devicePixelRatioF();
    for (int i = 0; i < vantrel::board::kPaletteSize; ++i) {
        Palette[static_cast<std::size_t>(i)]->setPixmap(
            vantrel::board::PiecePixmap(vantrel::board::PaletteChar(i), PiecePixels(), ratio));
    }
    imgTrash->setPixmap(vantrel::board::TrashPixmap(PiecePixels(), ratio));
    LoadLibraryList();
}

void FrmSearchTree::LoadLibraryList() {
    QStringList captions;
    QStringList keys;
    const int count = libraries_.GetAllLibraries(captions, keys);
    if (count < 2) return;
    {
        // No entry is chosen when the dialog opens.
        const QSignalBlocker block(cboLibSelect);
        cboLibSelect->clear();
        for (int i = 0; i < captions.size() && i < keys.size(); ++i)
            cboLibSelect->addItem(captions[i], keys[i].right(5).toInt());
        cboLibSelect->setCurrentIndex(-1);
    }
    lblLibSelect->setVisible(true);
    cboLibSelect->setVisible(true);
}

void FrmSearchTree::SetLabels() { board_->SetLabels(); }

void FrmSearchTree::DisplayBoard() {
    // The view reports a layout of the wrong length and keeps its squares;
    // the tags then stay as they are too.
    if (!board_->DisplayBoard(szSetupBoard)) return;
    squares_.Display(szSetupBoard, vantrel::bReverseSides);
}

void FrmSearchTree::ResetBoard() { szSetupBoard = std::string(vantrel::board::kStartLayout); }

void FrmSearchTree::ClearBoard() { szSetupBoard = vantrel::board::EmptyLayout(); }

void FrmSearchTree::ReadBoard() { szSetupBoard = squares_.Read(vantrel::bReverseSides); }

// ---------------------------------------------------------------------------
// Buttons and the library selector

void FrmSearchTree::cmdCurrent_Click() {
    szSetupBoard = libraries_.CurrentBoard();
    DisplayBoard();
}

void FrmSearchTree::cmdReset_Click() {
    ResetBoard();
    DisplayBoard();
}

void FrmSearchTree::cmdClear_Click() {
    ClearBoard();
    DisplayBoard();
}

void FrmSearchTree::cmdSearch_Click() {
    ReadBoard();
    libraries_.SetSearchBoard(szSetupBoard);
    QDialog::accept();
}

void FrmSearchTree::cmdCancel_Click() {
    libraries_.SetSearchCancelled(true);
    QDialog::reject();
}

void FrmSearchTree::reject() {
    libraries_.SetSearchCancelled(true);
    QDialog::reject();
}

void FrmSearchTree::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void FrmSearchTree::cboLibSelect_Click() {
    const int index = cboLibSelect->currentIndex();
    if (index < 0) return;
    const int number = cboLibSelect->itemData(index).toInt();
    // Takes effect at once: Current Board now reads that library, and
    // Cancel does not undo it.
    libraries_.SetActive(vantrel::forms::WindowKey(number));
}

// ---------------------------------------------------------------------------
// Drops

void FrmSearchTree::Image2_DragDrop(int Index, DragSource Source) {
    if (squares_.DropOnSquare(Source, Index)) SyncSquares();
}

void FrmSearchTree::imgTrash_DragDrop(DragSource Source) {
    if (squares_.DropOnTrash(Source)) SyncSquares();
}

void FrmSearchTree::SyncSquares() {
    for (int k = 0; k < 64; ++k) {
        const char picture = squares_.Picture(k);
        if (picture != '\0' && board_->Picture(k) != picture) board_->SetSquare(k, picture);
    }
}

QByteArray FrmSearchTree::DragPayload(DragSource source) const {
    const char kind = source.kind == DragSource::Kind::Palette ? 'p' : source.kind == DragSource::Kind::Square ? 's' : 'o';
    return QByteArray::number(reinterpret_cast<quintptr>(this)) + ':' + kind + ':' + QByteArray::number(source.index);
}

bool FrmSearchTree::ReadPayload(const QByteArray& payload, DragSource& source) const {
    const QList<QByteArray> parts = payload.split(':');
    if (parts.size() != 3) return false;
    bool ok = false;
    if (parts[0].toULongLong(&ok) != reinterpret_cast<quintptr>(this) || !ok) return false;
    const int index = parts[2].toInt(&ok);
    if (!ok) return false;
    if (parts[1] == "p" && index >= 0 && index < vantrel::board::kPaletteSize) {
        source = DragSource::Palette(index);
        return true;
    }
    if (parts[1] == "s" && index >= 0 && index < 64) {
        source = DragSource::Square(index);
        return true;
    }
    return false;
}

QPixmap FrmSearchTree::DragPixmap(char layoutChar) const {
    const int side = std::max(PiecePixels(), static_cast<int>(board_->SquareRect(0).width()));
    return vantrel::board::PiecePixmap(layoutChar, side, devicePixelRatioF());
}
