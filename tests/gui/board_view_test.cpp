// The board picture shared by the board window, the setup window and the
// Edit Move dialog: the square table, the captions, the geometry, the
// drawing and the pieces.
#include <gtest/gtest.h>

#include <QImage>
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
const QColor kBlue(0, 0, 255), kGrey(192, 192, 192), kBlack(Qt::black), kWhite(Qt::white);

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
    QString Captions() const {
        QStringList c;
        for (int i = 0; i < 16; ++i) c << view.Caption(i);
        return c.join(' ');
    }
    QImage Render(qreal dpr = 1.0) {
        QImage image((QSizeF(view.size()) * dpr).toSize(), QImage::Format_ARGB32);
        image.setDevicePixelRatio(dpr);
        image.fill(Qt::magenta);
        view.render(&image);
        return image;
    }
    static int Count(const QImage& image, const QRect& r, QColor c) {
        int n = 0;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x) n += image.pixelColor(x, y) == c;
        return n;
    }

    MessageRecorder messages;
    BoardView view;
};

}  // namespace

TEST_F(BoardViewTest, EachSquareTakesItsOwnCharacterAndTheCaptionsFollowReverseSidesOnSetLabels) {
    // Every square different enough to catch a swapped index.
    const std::string pieces = "PRNBQKprnbqk0";
    std::string layout;
    for (int i = 0; i < 64; ++i) layout += pieces[static_cast<std::size_t>(i % 13)];
    ASSERT_TRUE(view.DisplayBoard(layout));
    EXPECT_EQ(Pictures(), layout);
    EXPECT_EQ(Captions(), "a b c d e f g h 1 2 3 4 5 6 7 8");
    bReverseSides = true;
    EXPECT_EQ(Captions(), "a b c d e f g h 1 2 3 4 5 6 7 8") << "the flag alone changes nothing";
    view.SetLabels();
    EXPECT_EQ(Captions(), "h g f e d c b a 8 7 6 5 4 3 2 1");
    ASSERT_TRUE(view.DisplayBoard(layout));
    const std::string turned(layout.rbegin(), layout.rend());
    EXPECT_EQ(Pictures(), turned) << "a1 top right, h8 bottom left";
    EXPECT_EQ(view.Entries(), turned);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(BoardViewTest, AWrongLengthIsReportedAndUnknownCharactersKeepTheirSquare) {
    ASSERT_TRUE(view.DisplayBoard(kStart));
    // Filled up to 64 with blanks, as a file field is, counts as short.
    for (const std::string& bad : {std::string(), kStart + "P", kStart.substr(0, 60) + "    "}) {
        messages.messages.clear();
        EXPECT_FALSE(view.DisplayBoard(bad)) << '"' << bad << '"';
        ASSERT_EQ(messages.Texts(), QStringList{"Error - couldn't draw board.  Please call support"});
        EXPECT_TRUE(messages.messages[0].title.isEmpty()) << "the program's own title";
        EXPECT_EQ(Pictures(), kStart);
    }
    messages.messages.clear();
    std::string layout = kEmpty;
    layout[4] = 'x';   // where the white king stood
    layout[20] = 'z';  // an empty square
    layout[59] = '1';  // a digit other than 0 is no picture either
    ASSERT_TRUE(view.DisplayBoard(layout));
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_EQ(view.Picture(4), 'K') << "the old picture stays";
    EXPECT_EQ(view.Entry(4), 'x') << "the square table holds what came";
    EXPECT_EQ(view.Picture(20), '0');
    EXPECT_EQ(view.Picture(59), 'q');
    EXPECT_EQ(view.Picture(0), '0');

    // Blanks around a layout pass the length test but shift the squares.
    ASSERT_TRUE(view.DisplayBoard(" " + kStart));
    EXPECT_EQ(view.Picture(0), '0') << "a blank has no picture";
    EXPECT_EQ(view.Picture(1), 'R');
    EXPECT_EQ(view.Picture(63), 'n');
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
    // Labels under the columns and left of the rows, off the squares.
    for (int i = 0; i < 8; ++i) {
        EXPECT_GE(view.LabelRect(i).top(), view.BoardRect().bottom());
        EXPECT_NEAR(view.LabelRect(i).center().x(), view.SquareRect(i).center().x(), 0.5);
        EXPECT_LE(view.LabelRect(8 + i).right(), view.BoardRect().left());
        EXPECT_NEAR(view.LabelRect(8 + i).center().y(), view.SquareRect(8 * i).center().y(), 0.5);
    }
    EXPECT_EQ(view.SquareAt(QPoint(0, 0)), -1);
    view.resize(BoardView::DesignSize() * 2);
    EXPECT_EQ(view.SquareRect(0).width(), 80);
    EXPECT_EQ(view.SquareAt(view.SquareRect(27).center().toPoint()), 27);
    EXPECT_TRUE(QRectF(view.rect()).contains(view.BoardRect()));
}

TEST_F(BoardViewTest, BlueAndGreyFieldsInABlackFrameWithWhiteAndBlackPiecesSharpOnDenseScreens) {
    for (bool reversed : {false, true}) {
        bReverseSides = reversed;
        ASSERT_TRUE(view.DisplayBoard(kEmpty));
        const QImage image = Render();
        for (int k = 0; k < 64; ++k) {
            const QColor expected = (k % 8 + k / 8) % 2 == 0 ? kBlue : kGrey;  // bottom left blue
            EXPECT_EQ(image.pixelColor(view.SquareRect(k).center().toPoint()), expected) << k;
            EXPECT_EQ(image.pixelColor(view.SquareRect(k).topLeft().toPoint()), expected) << k;
        }
        const QRect frame = view.BoardRect().toRect().adjusted(-1, -1, 0, 0);
        EXPECT_EQ(image.pixelColor(frame.topLeft()), kBlack);
        EXPECT_EQ(image.pixelColor(frame.right() + 1, frame.bottom() + 1), kBlack);
    }
    bReverseSides = false;
    // White pieces mostly white with a black edge, Black ones the other way.
    ASSERT_TRUE(view.DisplayBoard(kStart));
    const QImage image = Render();
    for (int k : {0, 1, 2, 3, 4, 8, 56, 57, 58, 59, 60, 48, 30}) {
        const QRect r = view.SquareRect(k).toRect();
        const int white = Count(image, r, kWhite), black = Count(image, r, kBlack);
        const int body = k < 16 ? white : black, edge = k < 16 ? black : white;
        if (k == 30) EXPECT_EQ(white + black, 0) << "an empty square";
        else EXPECT_TRUE(body > 100 && edge > 20 && body > edge) << k << ": " << body << "/" << edge;
    }
    // At twice the pixels the frame is still one line, and a piece has finer
    // steps: more distinct colours than the picture blown up would have.
    const QImage dense = Render(2.0);
    const QPoint corner = view.SquareRect(0).topLeft().toPoint() * 2;
    EXPECT_EQ(dense.pixelColor(corner), kBlue);
    EXPECT_EQ(dense.pixelColor(corner - QPoint(1, 1)), kBlack);
    auto colours = [](const QImage& im, const QRect& r) {
        QSet<QRgb> seen;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x) seen.insert(im.pixel(x, y));
        return seen.size();
    };
    const QRect one = view.SquareRect(3).toRect();
    EXPECT_GT(colours(dense, QRect(one.topLeft() * 2, one.size() * 2)), colours(image, one));
}

TEST_F(BoardViewTest, APressReportsItsSquareAndButtonAndSetSquareAndHighlightServeTheDrags) {
    view.show();
    QSignalSpy spy(&view, &BoardView::squarePressed);
    QTest::mousePress(&view, Qt::RightButton, Qt::NoModifier, view.SquareRect(12).center().toPoint());
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, view.SquareRect(63).center().toPoint());
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy[0][0].toInt(), 12);
    EXPECT_EQ(spy[0][1].value<Qt::MouseButton>(), Qt::RightButton);
    EXPECT_EQ(spy[0][2].toPoint(), view.mapToGlobal(view.SquareRect(12).center().toPoint()));
    EXPECT_EQ(spy[1][0].toInt(), 63);

    ASSERT_TRUE(view.DisplayBoard(kEmpty));
    view.SetSquare(28, 'N');
    view.SetSquare(28, '?');
    EXPECT_EQ(view.Picture(28), 'N') << "no picture for '?'";
    EXPECT_EQ(view.Entry(28), '?');
    view.SetSquare(64, 'K');
    EXPECT_EQ(view.Picture(63), '0');
    const QImage plain = Render();
    view.SetHighlightedSquare(20);
    const QImage marked = Render();
    const QPoint in20 = view.SquareRect(20).toRect().topLeft() + QPoint(1, 1);
    const QPoint in21 = view.SquareRect(21).toRect().topLeft() + QPoint(1, 1);
    EXPECT_NE(marked.pixelColor(in20), plain.pixelColor(in20));
    EXPECT_EQ(marked.pixelColor(in21), plain.pixelColor(in21));
    view.SetHighlightedSquare(99);
    EXPECT_EQ(view.HighlightedSquare(), -1);
    EXPECT_EQ(Render(), plain);
}

TEST(PieceArt, TwelveDifferentPiecesTransparentAroundAndSixShapesInTwoColours) {
    QList<QImage> seen;
    for (char c : std::string("PRNBQKprnbqk")) {
        const QPixmap pixmap = board::PiecePixmap(c, 32, 2.0);
        EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(32, 32)) << c;
        const QImage image = pixmap.toImage();
        EXPECT_EQ(image.size(), QSize(64, 64)) << c;
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << c;
        EXPECT_EQ(qAlpha(image.pixel(32, 50)), 255) << c << ": the body of the piece";
        for (const QImage& other : seen) EXPECT_NE(image, other) << c;
        seen << image;
    }
    for (int i = 0; i < 6; ++i) {  // the same shape, give or take the outline
        const QImage white = seen[i], black = seen[i + 6];
        int differentShape = 0, opaque = 0;
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) {
                opaque += qAlpha(white.pixel(x, y)) == 255;
                differentShape += (qAlpha(white.pixel(x, y)) == 0) != (qAlpha(black.pixel(x, y)) == 0);
            }
        EXPECT_LT(differentShape, opaque / 10) << i;
    }
    const QImage none = board::PiecePixmap('x', 16, 1.0).toImage();
    bool clear = true;
    for (int y = 0; y < none.height(); ++y)
        for (int x = 0; x < none.width(); ++x) clear = clear && qAlpha(none.pixel(x, y)) == 0;
    EXPECT_TRUE(clear) << "no piece, nothing drawn";
}
