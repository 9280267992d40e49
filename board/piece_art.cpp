#include "board/piece_art.h"

#include <QFont>
#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QRawFont>
#include <QTransform>
#include <array>
#include <cstring>

#include "chess/layout.h"

namespace vantrel::board {
namespace {

// The six kinds of piece, in the order of the chess symbols of Unicode:
// king, queen, rook, bishop, knight, pawn.
enum Kind { King, Queen, Rook, Bishop, Knight, Pawn, KindCount };

int KindOf(char c) {
    switch (c) {
        case 'K': case 'k': return King;
        case 'Q': case 'q': return Queen;
        case 'R': case 'r': return Rook;
        case 'B': case 'b': return Bishop;
        case 'N': case 'n': return Knight;
        case 'P': case 'p': return Pawn;
        default: return -1;
    }
}

// The art of one kind of piece in a unit square (0..1 both ways, y down):
// its silhouette, and the inner lines drawn on it (in the outline's colour).
struct PieceShape {
    QPainterPath outline;  // the whole shape, filled, no holes
    QPainterPath lines;    // the inner lines, as areas
};

// A shape with every hole filled: the union of its contours, each taken as
// a filled area of its own.
QPainterPath Filled(const QPainterPath& path) {
    QPainterPath result;
    for (const QPolygonF& contour : path.toSubpathPolygons()) {
        QPainterPath one;
        one.addPolygon(contour);
        one.closeSubpath();
        result = result.united(one);
    }
    result.setFillRule(Qt::WindingFill);
    return result;
}

// Where the pieces stand in the unit square: the tallest piece fills this
// much of the height, and every piece stands on the same base line.
constexpr qreal kTallest = 0.80;
constexpr qreal kBaseLine = 0.90;

// The solid chess symbols of DejaVu Sans: the silhouette of each, and the
// cut-outs of the symbol as its inner lines. One drawing serves both
// colours, so a white piece is the exact negative of a black one. All six
// are scaled together so that a pawn stays smaller than a king.
bool ShapesFromFont(std::array<PieceShape, KindCount>& shapes) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(256);
    font.setStyleStrategy(QFont::NoFontMerging);
    QRawFont raw = QRawFont::fromFont(font);
    if (!raw.isValid() || !raw.familyName().contains(QStringLiteral("DejaVu"), Qt::CaseInsensitive)) return false;

    std::array<QPainterPath, KindCount> glyphs;
    for (int kind = 0; kind < KindCount; ++kind) {
        const char32_t solid = U'\u265A' + static_cast<char32_t>(kind);
        if (!raw.supportsCharacter(solid)) return false;
        const QList<quint32> index = raw.glyphIndexesForString(QString::fromUcs4(&solid, 1));
        if (index.size() != 1 || index[0] == 0) return false;
        glyphs[kind] = raw.pathForGlyph(index[0]);
        if (glyphs[kind].isEmpty()) return false;
    }

    qreal tallest = 0;
    for (const QPainterPath& glyph : glyphs) tallest = std::max(tallest, glyph.boundingRect().height());
    if (tallest <= 0) return false;
    const qreal scale = kTallest / tallest;
    for (int kind = 0; kind < KindCount; ++kind) {
        const QRectF box = glyphs[kind].boundingRect();
        QTransform t;
        t.translate(0.5, kBaseLine);
        t.scale(scale, scale);
        t.translate(-box.center().x(), -box.bottom());
        const QPainterPath glyph = t.map(glyphs[kind]);
        PieceShape& shape = shapes[kind];
        shape.outline = Filled(glyph);
        shape.lines = shape.outline.subtracted(glyph);
    }
    return true;
}

// Simple pieces of plain shapes, for a system without the symbol font.
// Drawn on a grid of 100 and brought to the unit square at the end, so the
// boolean operations keep their curves smooth.
void ShapesOfOurOwn(std::array<PieceShape, KindCount>& shapes) {
    auto finish = [](PieceShape& shape, QPainterPath body, QPainterPath lines) {
        body.setFillRule(Qt::WindingFill);
        const QPainterPath outline = body.simplified();
        lines.setFillRule(Qt::WindingFill);
        const QTransform down = QTransform::fromScale(0.01, 0.01);
        shape.outline = down.map(outline);
        shape.lines = down.map(lines.simplified().intersected(outline));
    };
    auto base = [](QPainterPath& p) { p.addRoundedRect(QRectF(24, 80, 52, 10), 3, 3); };
    auto band = [](QPainterPath& p, qreal x0, qreal x1, qreal y) { p.addRect(QRectF(x0, y, x1 - x0, 2.5)); };

    {  // pawn: a head on a collar and a flared body
        QPainterPath p, l;
        p.addEllipse(QPointF(50, 33), 10, 10);
        p.addRoundedRect(QRectF(38, 43, 24, 6), 3, 3);
        p.moveTo(43, 48);
        p.cubicTo(43, 62, 34, 70, 31, 81);
        p.lineTo(69, 81);
        p.cubicTo(66, 70, 57, 62, 57, 48);
        p.closeSubpath();
        base(p);
        band(l, 20, 80, 79);
        finish(shapes[Pawn], p, l);
    }
    {  // rook: a tower with three merlons
        QPainterPath p, l;
        p.moveTo(26, 18);
        p.lineTo(34, 18); p.lineTo(34, 25); p.lineTo(45, 25); p.lineTo(45, 18);
        p.lineTo(55, 18); p.lineTo(55, 25); p.lineTo(66, 25); p.lineTo(66, 18);
        p.lineTo(74, 18); p.lineTo(74, 34); p.lineTo(67, 38); p.lineTo(67, 72);
        p.lineTo(72, 80); p.lineTo(28, 80); p.lineTo(33, 72); p.lineTo(33, 38);
        p.lineTo(26, 34);
        p.closeSubpath();
        base(p);
        band(l, 20, 80, 36);
        band(l, 20, 80, 71);
        band(l, 20, 80, 79);
        finish(shapes[Rook], p, l);
    }
    {  // bishop: a mitre with a slit, a ball on top
        QPainterPath p, l;
        p.addEllipse(QPointF(50, 15), 5, 5);
        p.moveTo(50, 19);
        p.cubicTo(70, 30, 68, 52, 60, 62);
        p.lineTo(40, 62);
        p.cubicTo(32, 52, 30, 30, 50, 19);
        p.closeSubpath();
        p.addRoundedRect(QRectF(37, 61, 26, 6), 3, 3);
        p.moveTo(42, 66);
        p.lineTo(58, 66);
        p.lineTo(64, 81);
        p.lineTo(36, 81);
        p.closeSubpath();
        base(p);
        QPolygonF slit;
        slit << QPointF(50, 44) << QPointF(60, 33) << QPointF(62.5, 35.5) << QPointF(52.5, 46.5);
        l.addPolygon(slit);
        band(l, 20, 80, 64);
        band(l, 20, 80, 79);
        finish(shapes[Bishop], p, l);
    }
    {  // knight: a horse's head with its mane
        QPainterPath p, l;
        p.moveTo(30, 81);
        p.cubicTo(30, 68, 38, 62, 44, 56);
        p.cubicTo(40, 52, 32, 56, 26, 58);
        p.cubicTo(20, 60, 16, 54, 20, 48);
        p.cubicTo(28, 38, 34, 30, 40, 24);
        p.lineTo(40, 14);
        p.lineTo(47, 20);
        p.lineTo(52, 13);
        p.lineTo(55, 21);
        p.cubicTo(72, 26, 80, 48, 74, 81);
        p.closeSubpath();
        base(p);
        l.addEllipse(QPointF(42, 33), 2.6, 2.6);
        l.addEllipse(QPointF(23, 52), 1.6, 1.6);
        band(l, 20, 80, 79);
        finish(shapes[Knight], p, l);
    }
    {  // queen: a crown of five points, each with a ball
        QPainterPath p, l;
        p.moveTo(30, 70);
        p.lineTo(20, 30); p.lineTo(36, 50); p.lineTo(38, 23); p.lineTo(50, 48);
        p.lineTo(62, 23); p.lineTo(64, 50); p.lineTo(80, 30); p.lineTo(70, 70);
        p.closeSubpath();
        for (const QPointF& c : {QPointF(20, 28), QPointF(38, 21), QPointF(50, 18), QPointF(62, 21), QPointF(80, 28)})
            p.addEllipse(c, 4.5, 4.5);
        p.moveTo(50, 22); p.lineTo(54, 48); p.lineTo(46, 48); p.closeSubpath();
        p.addRect(QRectF(30, 68, 40, 13));
        base(p);
        band(l, 20, 80, 68);
        band(l, 20, 80, 79);
        finish(shapes[Queen], p, l);
    }
    {  // king: a rounded crown under a cross
        QPainterPath p, l;
        p.addRect(QRectF(47, 8, 6, 18));
        p.addRect(QRectF(42, 12, 16, 6));
        p.moveTo(50, 30);
        p.cubicTo(58, 20, 80, 24, 76, 44);
        p.cubicTo(74, 54, 68, 60, 68, 66);
        p.lineTo(32, 66);
        p.cubicTo(32, 60, 26, 54, 24, 44);
        p.cubicTo(20, 24, 42, 20, 50, 30);
        p.closeSubpath();
        p.addRect(QRectF(31, 64, 38, 17));
        base(p);
        band(l, 20, 80, 64);
        band(l, 20, 80, 79);
        l.addRect(QRectF(48.8, 30, 2.4, 34));
        finish(shapes[King], p, l);
    }
}

const std::array<PieceShape, KindCount>& Shapes() {
    static const std::array<PieceShape, KindCount> shapes = [] {
        std::array<PieceShape, KindCount> s;
        if (!ShapesFromFont(s)) {
            s = {};
            ShapesOfOurOwn(s);
        }
        return s;
    }();
    return shapes;
}

}  // namespace

bool IsPieceChar(char c) { return vantrel::chess::IsPieceLetter(c); }
bool IsLayoutChar(char c) { return c == '0' || IsPieceChar(c); }

void DrawPiece(QPainter& painter, const QRectF& square, char layoutChar) {
    const int kind = KindOf(layoutChar);
    if (kind < 0 || square.isEmpty()) return;
    const PieceShape& shape = Shapes()[static_cast<std::size_t>(kind)];
    const bool white = layoutChar >= 'A' && layoutChar <= 'Z';

    // The unit square onto the target, kept square and centred.
    const qreal side = std::min(square.width(), square.height());
    QTransform t;
    t.translate(square.center().x() - side / 2, square.center().y() - side / 2);
    t.scale(side, side);
    const QPainterPath outline = t.map(shape.outline);
    const QPainterPath lines = t.map(shape.lines);
    // Outline strength, in pixels of the target: never thinner than a pixel.
    const qreal edge = std::max<qreal>(1.0, side * 0.032);
    const QColor ink = white ? Qt::black : Qt::white;
    const QColor body = white ? Qt::white : Qt::black;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    // The outline lies outside the silhouette, so the piece keeps its full
    // shape and a black piece stays clear on the blue fields: a pen of twice
    // the width centred on the contour, its inner half covered by the body.
    painter.strokePath(outline, QPen(ink, 2 * edge, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(outline, body);
    painter.fillPath(lines, ink);
    painter.restore();
}

QPixmap PiecePixmap(char layoutChar, int logicalSize, qreal devicePixelRatio) {
    const qreal dpr = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const int device = std::max(1, qRound(logicalSize * dpr));
    QPixmap pixmap(device, device);
    pixmap.setDevicePixelRatio(dpr);
    pixmap.fill(Qt::transparent);
    if (IsPieceChar(layoutChar)) {
        QPainter painter(&pixmap);
        DrawPiece(painter, QRectF(0, 0, logicalSize, logicalSize), layoutChar);
    }
    return pixmap;
}

}  // namespace vantrel::board
