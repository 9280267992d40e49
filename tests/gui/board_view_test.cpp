// The board picture shared by the board window, the setup window and the
// Edit Move dialog: the square table, the captions, the geometry, the
// drawing and the pieces.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <string>

#include "board/board_view.h"
#include "board/piece_art.h"
#include "gui_test_support.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

const std::string kStart = "RNBQKBNRPPPPPPPP00000000000000000000000000000000pppppppprnbqkbnr";
const std::string kEmpty(64, '0');
const QString kDrawError = QStringLiteral("Error - couldn't draw board.  Please call support");

class BoardViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        bReverseSides = false;
        view.resize(BoardView::DesignSize());
    }
    void TearDown() override { bReverseSides = false; }

    // The pictures of the 64 squares in screen order, 0 first.
    std::string Pictures() const {
        std::string s;
        for (int k = 0; k < 64; ++k) s += view.Picture(k);
        return s;
    }

    QStringList Captions() const {
        QStringList c;
        for (int i = 0; i < 16; ++i) c << view.Caption(i);
        return c;
    }

    QImage Render(qreal dpr = 1.0) {
        QImage image((QSizeF(view.size()) * dpr).toSize(), QImage::Format_ARGB32);
        image.setDevicePixelRatio(dpr);
        image.fill(Qt::magenta);
        view.render(&image);
        return image;
    }

    MessageRecorder messages;
    BoardView view;
};

QStringList Split(const QString& s) { return s.split(QLatin1Char(' ')); }

}  // namespace

TEST_F(BoardViewTest, CaptionsAsDesignedThenFollowReverseSidesAndTwiceGiveTheFirstPicture) {
    const QStringList white = Split("a b c d e f g h 1 2 3 4 5 6 7 8");
    const QStringList black = Split("h g f e d c b a 8 7 6 5 4 3 2 1");
    ASSERT_TRUE(view.DisplayBoard(kStart));
    const QImage before = Render();
    EXPECT_EQ(Captions(), white) << "before any SetLabels";
    bReverseSides = true;
    EXPECT_EQ(Captions(), white) << "the flag alone changes nothing";
    view.SetLabels();
    EXPECT_EQ(Captions(), black);
    ASSERT_TRUE(view.DisplayBoard(kStart));
    EXPECT_NE(Render(), before);
    bReverseSides = false;
    view.SetLabels();
    ASSERT_TRUE(view.DisplayBoard(kStart));
    EXPECT_EQ(Captions(), white);
    EXPECT_EQ(Render(), before);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(BoardViewTest, EachSquareTakesItsOwnCharacterTurnedWhenReversed) {
    // Every square different enough to catch a swapped index; a1 at bottom
    // left, h8 at top right.
    const std::string pieces = "PRNBQKprnbqk0";
    std::string layout;
    for (int i = 0; i < 64; ++i) layout += pieces[static_cast<std::size_t>(i % 13)];
    ASSERT_TRUE(view.DisplayBoard(layout));
    EXPECT_EQ(Pictures(), layout);
    EXPECT_EQ(view.Entries(), layout);
    bReverseSides = true;
    ASSERT_TRUE(view.DisplayBoard(layout));
    EXPECT_EQ(Pictures(), std::string(layout.rbegin(), layout.rend())) << "a1 top right, h8 bottom left";
    EXPECT_EQ(view.Entries(), std::string(layout.rbegin(), layout.rend()));
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(BoardViewTest, AWrongLengthIsReportedAndChangesNothing) {
    ASSERT_TRUE(view.DisplayBoard(kStart));
    std::string other = kEmpty;
    other[0] = 'K';

    const std::string bad[] = {
        "",
        kStart.substr(0, 63),
        kStart + "P",
        kStart.substr(0, 60) + "    ",  // filled up to 64 with blanks, as a file field is
        std::string(64, ' '),
    };
    for (const std::string& layout : bad) {
        messages.messages.clear();
        EXPECT_FALSE(view.DisplayBoard(layout)) << '"' << layout << '"';
        ASSERT_EQ(messages.messages.size(), 1u);
        EXPECT_EQ(messages.messages[0].text, kDrawError);
        EXPECT_EQ(messages.messages[0].buttons, ui::Buttons::Ok);
        EXPECT_TRUE(messages.messages[0].title.isEmpty()) << "the program's own title";
        EXPECT_EQ(Pictures(), kStart);
        EXPECT_EQ(view.Entries(), kStart);
    }
}

TEST_F(BoardViewTest, BlanksAroundALayoutPassTheTestButShiftTheSquares) {
    ASSERT_TRUE(view.DisplayBoard(kEmpty));
    // Trimmed it is 64 long; the squares are filled from the layout as it came.
    ASSERT_TRUE(view.DisplayBoard(" " + kStart));
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_EQ(view.Entry(0), ' ');
    EXPECT_EQ(view.Picture(0), '0') << "a blank has no picture: the square keeps its own";
    EXPECT_EQ(view.Picture(1), 'R');
    EXPECT_EQ(view.Picture(63), 'n') << "the last square takes character 63 of what came";

    ASSERT_TRUE(view.DisplayBoard(kStart + "   "));
    EXPECT_EQ(Pictures(), kStart) << "blanks behind the 64 characters are never reached";
}

TEST_F(BoardViewTest, UnknownCharactersKeepTheirSquareAsItWas) {
    ASSERT_TRUE(view.DisplayBoard(kStart));
    std::string layout = kEmpty;
    layout[4] = 'x';   // where the white king stood
    layout[12] = 'K';  // e2
    layout[20] = 'z';  // an empty square
    layout[60] = 'Q';
    layout[59] = '1';
    ASSERT_TRUE(view.DisplayBoard(layout));
    EXPECT_TRUE(messages.messages.empty()) << "no message for an unknown character";
    EXPECT_EQ(view.Picture(4), 'K') << "the old picture stays";
    EXPECT_EQ(view.Entry(4), 'x') << "the square table holds what came";
    EXPECT_EQ(view.Picture(12), 'K');
    EXPECT_EQ(view.Picture(20), '0');
    EXPECT_EQ(view.Picture(59), 'q') << "a digit other than 0 is no picture either";
    EXPECT_EQ(view.Picture(60), 'Q');
    EXPECT_EQ(view.Picture(0), '0');
    EXPECT_EQ(view.Picture(63), '0');
}

TEST_F(BoardViewTest, DesignGeometryAndALargerViewScalesUp) {
    EXPECT_EQ(BoardView::DesignSize(), QSize(348, 356)) << "4185 x 4275 twips";
    for (int k = 0; k < 64; ++k) {
        const QRectF r = view.SquareRect(k);
        EXPECT_EQ(r.size(), QSizeF(40, 40)) << "480 twips a square";
        EXPECT_EQ(view.SquareAt(r.topLeft().toPoint()), k);
        EXPECT_EQ(view.SquareAt((r.bottomRight() - QPointF(1, 1)).toPoint()), k);
    }
    // Column k mod 8 from the left, row k div 8 from the bottom.
    EXPECT_LT(view.SquareRect(0).left(), view.SquareRect(7).left());
    EXPECT_GT(view.SquareRect(0).top(), view.SquareRect(56).top());
    EXPECT_EQ(view.SquareRect(56).left(), view.SquareRect(0).left());

    // Labels under the columns and left of the rows, off the squares.
    for (int i = 0; i < 8; ++i) {
        EXPECT_GE(view.LabelRect(i).top(), view.BoardRect().bottom());
        EXPECT_NEAR(view.LabelRect(i).center().x(), view.SquareRect(i).center().x(), 0.5);
        EXPECT_LE(view.LabelRect(8 + i).right(), view.BoardRect().left());
        EXPECT_NEAR(view.LabelRect(8 + i).center().y(), view.SquareRect(8 * i).center().y(), 0.5);
    }
    EXPECT_EQ(view.SquareAt(QPoint(0, 0)), -1);
    EXPECT_TRUE(QRectF(view.rect()).contains(view.BoardRect()));

    view.resize(BoardView::DesignSize() * 2);
    EXPECT_EQ(view.SquareRect(0).width(), 80);
    EXPECT_EQ(view.SquareAt(view.SquareRect(27).center().toPoint()), 27);
    EXPECT_TRUE(QRectF(view.rect()).contains(view.BoardRect()));
}

TEST_F(BoardViewTest, FieldsAreBlueAndGreyInABlackFrameBottomLeftBlue) {
    for (bool reversed : {false, true}) {
        bReverseSides = reversed;
        ASSERT_TRUE(view.DisplayBoard(kEmpty));
        const QImage image = Render();
        for (int k = 0; k < 64; ++k) {
            const bool blue = (k % 8 + k / 8) % 2 == 0;
            const QColor expected = blue ? QColor(0, 0, 255) : QColor(192, 192, 192);
            EXPECT_EQ(image.pixelColor(view.SquareRect(k).center().toPoint()), expected) << k;
            EXPECT_EQ(image.pixelColor(view.SquareRect(k).topLeft().toPoint()), expected) << k;
        }
        const QRect frame = view.BoardRect().toRect().adjusted(-1, -1, 0, 0);
        EXPECT_EQ(image.pixelColor(frame.topLeft()), QColor(Qt::black));
        EXPECT_EQ(image.pixelColor(frame.left(), frame.center().y()), QColor(Qt::black));
        EXPECT_EQ(image.pixelColor(frame.right() + 1, frame.bottom() + 1), QColor(Qt::black));
    }
}

TEST_F(BoardViewTest, PiecesAreDrawnWhiteOrBlackOnTheirSquare) {
    // White pieces are mostly white with a black edge, Black pieces the other
    // way round; the empty square shows the field alone.
    auto count = [](const QImage& image, const QRect& r, QColor c) {
        int n = 0;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x) n += image.pixelColor(x, y) == c;
        return n;
    };
    ASSERT_TRUE(view.DisplayBoard(kStart));
    const QImage image = Render();
    for (int k : {0, 1, 2, 3, 4, 8, 56, 57, 58, 59, 60, 48, 16, 17, 30, 47}) {
        const QRect r = view.SquareRect(k).toRect();
        const int white = count(image, r, Qt::white), black = count(image, r, Qt::black);
        if (k >= 16 && k < 48) {
            EXPECT_EQ(white + black, 0) << k;
            continue;
        }
        const int body = k < 16 ? white : black, edge = k < 16 ? black : white;
        EXPECT_GT(body, 100) << k;
        EXPECT_GT(edge, 20) << k << ": the outline";
        EXPECT_GT(body, edge) << k;
    }
}

TEST_F(BoardViewTest, SharpOnHighDensityScreens) {
    ASSERT_TRUE(view.DisplayBoard(kStart));
    const QImage single = Render(1.0);
    const QImage dense = Render(2.0);
    ASSERT_EQ(dense.size(), single.size() * 2);
    // The same fields at twice the pixels, the frame still one line wide.
    const QPoint corner = view.SquareRect(0).topLeft().toPoint() * 2;
    EXPECT_EQ(dense.pixelColor(corner), QColor(0, 0, 255));
    EXPECT_EQ(dense.pixelColor(corner - QPoint(1, 1)), QColor(Qt::black));
    // A piece drawn at twice the resolution, not a blown-up picture: its edge
    // has finer steps, so there are more distinct colours in the square.
    auto colours = [](const QImage& image, const QRect& r) {
        QSet<QRgb> seen;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x) seen.insert(image.pixel(x, y));
        return seen.size();
    };
    const QRect one = view.SquareRect(3).toRect();
    const QRect two(one.topLeft() * 2, one.size() * 2);
    EXPECT_GT(colours(dense, two), colours(single, one));
}

TEST_F(BoardViewTest, ASquareReportsAPressWithItsButton) {
    view.show();
    QSignalSpy spy(&view, &BoardView::squarePressed);
    QTest::mousePress(&view, Qt::RightButton, Qt::NoModifier, view.SquareRect(12).center().toPoint());
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, view.SquareRect(63).center().toPoint());
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy[0][0].toInt(), 12);
    EXPECT_EQ(spy[0][1].value<Qt::MouseButton>(), Qt::RightButton);
    EXPECT_EQ(spy[0][2].toPoint(), view.mapToGlobal(view.SquareRect(12).center().toPoint()));
    EXPECT_EQ(spy[1][0].toInt(), 63);
    EXPECT_EQ(spy[1][1].value<Qt::MouseButton>(), Qt::LeftButton);
}

TEST_F(BoardViewTest, SetSquareAndHighlightForDragAndDrop) {
    ASSERT_TRUE(view.DisplayBoard(kEmpty));
    view.SetSquare(28, 'N');
    EXPECT_EQ(view.Picture(28), 'N');
    EXPECT_EQ(view.Entry(28), 'N');
    view.SetSquare(28, '?');
    EXPECT_EQ(view.Picture(28), 'N') << "no picture for '?'";
    EXPECT_EQ(view.Entry(28), '?');
    view.SetSquare(64, 'K');
    view.SetSquare(-1, 'K');
    EXPECT_EQ(view.Picture(63), '0');

    const QImage plain = Render();
    view.SetHighlightedSquare(20);
    EXPECT_EQ(view.HighlightedSquare(), 20);
    const QImage marked = Render();
    EXPECT_NE(marked, plain);
    const QRect r = view.SquareRect(20).toRect();
    EXPECT_NE(marked.pixelColor(r.topLeft() + QPoint(1, 1)), plain.pixelColor(r.topLeft() + QPoint(1, 1)));
    EXPECT_EQ(marked.pixelColor(view.SquareRect(21).toRect().topLeft() + QPoint(1, 1)),
              plain.pixelColor(view.SquareRect(21).toRect().topLeft() + QPoint(1, 1)));
    view.SetHighlightedSquare(99);
    EXPECT_EQ(view.HighlightedSquare(), -1);
    EXPECT_EQ(Render(), plain);
}

TEST(PieceArt, PixmapsAreTransparentAroundThePiece) {
    EXPECT_TRUE(board::IsLayoutChar('0'));
    EXPECT_FALSE(board::IsPieceChar('0'));
    for (char c : std::string("PRNBQKprnbqk")) {
        EXPECT_TRUE(board::IsPieceChar(c)) << c;
        const QPixmap pixmap = board::PiecePixmap(c, 32, 2.0);
        EXPECT_EQ(pixmap.size(), QSize(64, 64)) << c;
        EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(32, 32)) << c;
        const QImage image = pixmap.toImage();
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << c;
        EXPECT_EQ(qAlpha(image.pixel(63, 0)), 0) << c;
        EXPECT_EQ(qAlpha(image.pixel(32, 50)), 255) << c << ": the body of the piece";
    }
    for (char c : std::string("0xZ ")) {
        const QImage image = board::PiecePixmap(c, 16, 1.0).toImage();
        bool clear = true;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) clear = clear && qAlpha(image.pixel(x, y)) == 0;
        EXPECT_TRUE(clear) << c;
    }
}

TEST(PieceArt, SixDifferentShapesInTwoColours) {
    QList<QImage> seen;
    for (char c : std::string("PRNBQKprnbqk")) {
        const QImage image = board::PiecePixmap(c, 40, 1.0).toImage();
        for (const QImage& other : seen) EXPECT_NE(image, other) << c;
        seen << image;
    }
    // Same shape, other colour: opaque in the same places, give or take the
    // outline.
    for (char c : std::string("PRNBQK")) {
        const QImage white = board::PiecePixmap(c, 40, 1.0).toImage();
        const QImage black = board::PiecePixmap(static_cast<char>(c - 'A' + 'a'), 40, 1.0).toImage();
        int differentShape = 0, opaque = 0;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                opaque += qAlpha(white.pixel(x, y)) == 255;
                differentShape += (qAlpha(white.pixel(x, y)) == 0) != (qAlpha(black.pixel(x, y)) == 0);
            }
        }
        EXPECT_LT(differentShape, opaque / 10) << c;
    }
}
