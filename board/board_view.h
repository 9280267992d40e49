// BoardView: the picture of a chess board that the board window, the
// position setup window and the move repair dialog share.
//
// The view holds the 64 squares (`Image2`) and the 16 captions (`Label1`):
//
// - Square k stands in column k mod 8 (0 is the left column) and row k div 8
//   (0 is the bottom row): 0 is bottom left, 7 bottom right, 56 top left,
//   63 top right. Squares never move; reversing the board changes what is
//   put on them.
// - Label 0..7 stand under the columns, left to right; 8..15 left of the
//   rows, bottom to top. Until the first SetLabels they read a..h and 1..8.
//
// Each square has an entry of the square table (the character the last
// DisplayBoard or ResetSquares put there) and a picture (the layout
// character it shows, '0' for empty). They differ only where DisplayBoard
// met a character that has no picture: the entry takes it, the picture
// stays.
//
// The fields are light grey (192, 192, 192) and blue (0, 0, 255) inside a
// one-pixel black frame, the bottom left field blue whichever way the board
// is turned. Everything is painted as vectors, so the board is sharp at any
// device pixel ratio; a view larger than its design size scales up.
//
// Mouse and drag and drop. A press on a square emits squarePressed; a press
// elsewhere (labels, margins) does nothing. A window that needs more, such
// as dragging pieces, may subclass the view and override the QWidget event
// handlers (mousePressEvent, mouseMoveEvent, dragEnterEvent, dragMoveEvent,
// dropEvent...), using SquareAt/SquareRect for geometry, SetSquare to put a
// piece on a square and SetHighlightedSquare to mark the square under a
// drag. Call BoardView::mousePressEvent from an override to keep the signal.
// Drops are off unless the subclass calls setAcceptDrops(true).
#pragma once

#include <QColor>
#include <QPixmap>
#include <QPoint>
#include <QRectF>
#include <QString>
#include <QWidget>
#include <array>
#include <map>
#include <string>
#include <tuple>

class BoardView : public QWidget {
    Q_OBJECT
public:
    // Design sizes, in twips: the square, and the inner area of a window that
    // holds the board, its labels and a margin.
    static constexpr int kSquareTwips = 480;
    static constexpr int kInnerWidthTwips = 4185;
    static constexpr int kInnerHeightTwips = 4275;

    // The field colours.
    static QColor LightField() { return QColor(192, 192, 192); }
    static QColor DarkField() { return QColor(0, 0, 255); }

    explicit BoardView(QWidget* parent = nullptr);

    // The design size in pixels (the inner area above).
    static QSize DesignSize();
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // Puts a layout on the 64 squares. If the layout trimmed of blanks is
    // not 64 characters long, shows "Error - couldn't draw board.  Please
    // call support" and changes nothing (returns false). Otherwise character
    // i of the untrimmed layout goes to entry i, or to entry 63 - i while
    // bReverseSides is set, and every square whose entry is one of the 13
    // layout characters shows that picture; any other entry leaves its
    // square's picture as it was.
    bool DisplayBoard(const std::string& layout);

    // The 16 captions for the present bReverseSides: a..h / h..a under the
    // columns, 1..8 / 8..1 up the rows.
    void SetLabels();

    // The start position into the square table, in layout order (entry 0 'R'
    // ... entry 63 'r'), whatever bReverseSides says; returns the 64 entries
    // joined. Draws nothing.
    std::string ResetSquares();

    // Square k's entry in the square table, and the character of the picture
    // it shows ('0': empty). k in 0..63.
    char Entry(int k) const;
    char Picture(int k) const;
    // The square table joined, entry 0 first.
    std::string Entries() const;

    // Sets entry and picture of one square at once (for drag and drop). A
    // character without a picture sets the entry only.
    void SetSquare(int k, char layoutChar);

    // Label1(i), i in 0..15.
    QString Caption(int i) const;

    // Geometry in widget coordinates: square k, the 64 squares together, and
    // label i. SquareAt gives the square under a point, or -1 for a point on
    // a label, the frame or the margin.
    QRectF SquareRect(int k) const;
    QRectF BoardRect() const;
    QRectF LabelRect(int i) const;
    int SquareAt(const QPoint& pos) const;
    int SquareAt(const QPointF& pos) const;

    // Marks one square (a drop target, say) with a frame; -1 for none.
    void SetHighlightedSquare(int k);
    int HighlightedSquare() const { return highlighted_; }

signals:
    // A mouse button went down on square k.
    void squarePressed(int k, Qt::MouseButton button, QPoint globalPos);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    struct Geometry {
        qreal square = 0;  // side of one square
        QPointF origin;    // top left corner of the 8 x 8 squares
        qreal gutter = 0;  // room for the labels
    };
    Geometry Layout() const;

    std::array<char, 64> entries_{};
    std::array<char, 64> pictures_{};
    std::array<QString, 16> captions_;
    int highlighted_ = -1;
    // Each piece as drawn at a square's size and the screen's pixel ratio.
    std::map<std::tuple<char, int, qreal>, QPixmap> pieceCache_;
};
