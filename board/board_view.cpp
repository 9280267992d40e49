#include "board/board_view.h"

#include <QFont>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "board/piece_art.h"
#include "chess/layout.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"

namespace {

constexpr std::string_view kStartLayout = vantrel::chess::kInitialLayout;

// Proportions of the picture, in squares: the gutter that holds the labels,
// and the margin around everything.
constexpr qreal kGutter = 0.45;
constexpr qreal kMargin = 0.10;
constexpr int kSmallestSquare = 8;

bool ValidSquare(int k) { return k >= 0 && k < 64; }

}  // namespace

BoardView::BoardView(QWidget* parent) : QWidget(parent) {
    entries_.fill('0');
    pictures_.fill('0');
    // The captions as designed, which is the display from White's side.
    for (int i = 0; i < 8; ++i) captions_[static_cast<std::size_t>(i)] = QChar(u'a' + i);
    for (int i = 8; i < 16; ++i) captions_[static_cast<std::size_t>(i)] = QString::number(i - 7);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize BoardView::DesignSize() {
    return QSize(vantrel::TwipsToPixels(kInnerWidthTwips), vantrel::TwipsToPixels(kInnerHeightTwips));
}

QSize BoardView::sizeHint() const { return DesignSize(); }

QSize BoardView::minimumSizeHint() const {
    const int side = static_cast<int>(std::ceil(kSmallestSquare * (8 + kGutter + 2 * kMargin))) + 2;
    return QSize(side, side);
}

// ---------------------------------------------------------------------------
// The square table and the captions

bool BoardView::DisplayBoard(const std::string& layout) {
    const std::size_t first = layout.find_first_not_of(' ');
    const std::size_t last = layout.find_last_not_of(' ');
    const std::size_t trimmed = first == std::string::npos ? 0 : last - first + 1;
    if (trimmed != 64) {
        vantrel::ui::MsgBox(QStringLiteral("Error - couldn't draw board.  Please call support"));
        return false;
    }
    // Character i of the layout as it came, blanks and all.
    for (int i = 0; i < 64; ++i) {
        const int k = vantrel::bReverseSides ? 63 - i : i;
        entries_[static_cast<std::size_t>(k)] = layout[static_cast<std::size_t>(i)];
    }
    for (int k = 0; k < 64; ++k) {
        const char entry = entries_[static_cast<std::size_t>(k)];
        if (vantrel::board::IsLayoutChar(entry)) pictures_[static_cast<std::size_t>(k)] = entry;
    }
    update();
    return true;
}

void BoardView::SetLabels() {
    const bool reversed = vantrel::bReverseSides;
    for (int i = 0; i < 8; ++i)
        captions_[static_cast<std::size_t>(i)] = QChar(reversed ? 104 - i : 97 + i);
    for (int i = 8; i < 16; ++i)
        captions_[static_cast<std::size_t>(i)] = QString::number(reversed ? 16 - i : i - 7);
    update();
}

std::string BoardView::ResetSquares() {
    std::copy(kStartLayout.begin(), kStartLayout.end(), entries_.begin());
    return Entries();
}

char BoardView::Entry(int k) const { return ValidSquare(k) ? entries_[static_cast<std::size_t>(k)] : '\0'; }
char BoardView::Picture(int k) const { return ValidSquare(k) ? pictures_[static_cast<std::size_t>(k)] : '\0'; }

std::string BoardView::Entries() const { return std::string(entries_.begin(), entries_.end()); }

void BoardView::SetSquare(int k, char layoutChar) {
    if (!ValidSquare(k)) return;
    entries_[static_cast<std::size_t>(k)] = layoutChar;
    if (vantrel::board::IsLayoutChar(layoutChar)) {
        pictures_[static_cast<std::size_t>(k)] = layoutChar;
        update(SquareRect(k).toAlignedRect());
    }
}

QString BoardView::Caption(int i) const {
    return i >= 0 && i < 16 ? captions_[static_cast<std::size_t>(i)] : QString();
}

void BoardView::SetHighlightedSquare(int k) {
    if (!ValidSquare(k)) k = -1;
    if (k == highlighted_) return;
    highlighted_ = k;
    update();
}

// ---------------------------------------------------------------------------
// Geometry

BoardView::Geometry BoardView::Layout() const {
    // The board, its gutter and the margins, fitted to the widget; squares
    // on whole pixels so that the fields meet without seams.
    const qreal units = 8 + kGutter + 2 * kMargin;
    const qreal fit = std::min((width() - 2) / units, (height() - 2) / units);
    Geometry g;
    g.square = std::max<qreal>(kSmallestSquare, std::floor(fit));
    g.gutter = std::round(g.square * kGutter);
    const qreal blockWidth = g.gutter + 2 + 8 * g.square;
    const qreal blockHeight = 8 * g.square + 2 + g.gutter;
    const qreal left = std::floor((width() - blockWidth) / 2);
    const qreal top = std::floor((height() - blockHeight) / 2);
    g.origin = QPointF(std::max<qreal>(0, left) + g.gutter + 1, std::max<qreal>(0, top) + 1);
    return g;
}

QRectF BoardView::SquareRect(int k) const {
    if (!ValidSquare(k)) return QRectF();
    const Geometry g = Layout();
    const int column = k % 8;
    const int row = k / 8;  // from the bottom
    return QRectF(g.origin.x() + column * g.square, g.origin.y() + (7 - row) * g.square, g.square, g.square);
}

QRectF BoardView::BoardRect() const {
    const Geometry g = Layout();
    return QRectF(g.origin, QSizeF(8 * g.square, 8 * g.square));
}

QRectF BoardView::LabelRect(int i) const {
    if (i < 0 || i >= 16) return QRectF();
    const Geometry g = Layout();
    if (i < 8) {
        // Under column i, clear of the frame.
        return QRectF(g.origin.x() + i * g.square, g.origin.y() + 8 * g.square + 1, g.square, g.gutter);
    }
    const int row = i - 8;  // from the bottom
    return QRectF(g.origin.x() - 1 - g.gutter, g.origin.y() + (7 - row) * g.square, g.gutter, g.square);
}

int BoardView::SquareAt(const QPointF& pos) const {
    const Geometry g = Layout();
    const qreal x = pos.x() - g.origin.x();
    const qreal y = pos.y() - g.origin.y();
    if (x < 0 || y < 0 || x >= 8 * g.square || y >= 8 * g.square) return -1;
    const int column = static_cast<int>(x / g.square);
    const int rowFromTop = static_cast<int>(y / g.square);
    return (7 - rowFromTop) * 8 + column;
}

int BoardView::SquareAt(const QPoint& pos) const { return SquareAt(QPointF(pos) + QPointF(0.5, 0.5)); }

// ---------------------------------------------------------------------------
// Painting and the mouse

void BoardView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Geometry g = Layout();
    const QRectF board = BoardRect();

    // The frame: one black pixel around the fields.
    painter.fillRect(board.adjusted(-1, -1, 1, 1), Qt::black);

    // The fields, blue where column + row is even: bottom left is blue.
    for (int k = 0; k < 64; ++k) {
        const bool dark = (k % 8 + k / 8) % 2 == 0;
        painter.fillRect(SquareRect(k), dark ? DarkField() : LightField());
    }

    // A square under a drag: a warm inner frame that reads on both fields.
    if (highlighted_ >= 0) {
        const qreal w = std::max<qreal>(2, std::round(g.square / 16));
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing, false);
        QPen pen(QColor(255, 200, 0), w);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(SquareRect(highlighted_).adjusted(w / 2, w / 2, -w / 2, -w / 2));
        painter.restore();
    }

    // Squares stand on whole pixels, so each piece is drawn once for a size
    // and the pixel ratio of what is painted on (a picture of the board may
    // have its own), and then copied.
    const QPaintDevice* target = painter.paintEngine() ? painter.paintEngine()->paintDevice() : nullptr;
    const qreal dpr = target ? target->devicePixelRatioF() : devicePixelRatioF();
    for (int k = 0; k < 64; ++k) {
        const char piece = Picture(k);
        if (!vantrel::board::IsPieceChar(piece)) continue;
        const QRectF square = SquareRect(k);
        const int side = static_cast<int>(square.width());
        QPixmap& cached = pieceCache_[{piece, side, dpr}];
        if (cached.isNull()) cached = vantrel::board::PiecePixmap(piece, side, dpr);
        painter.drawPixmap(square.topLeft(), cached);
    }

    // The captions, centred under the columns and beside the rows.
    QFont font = this->font();
    font.setPixelSize(std::max(8, qRound(g.square * 0.34)));
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    for (int i = 0; i < 16; ++i) painter.drawText(LabelRect(i), Qt::AlignCenter, Caption(i));
}

void BoardView::mousePressEvent(QMouseEvent* event) {
    const int k = SquareAt(event->position());
    if (k >= 0) emit squarePressed(k, event->button(), event->globalPosition().toPoint());
    QWidget::mousePressEvent(event);
}
