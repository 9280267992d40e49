// The board picture shared by the board window, the setup window and the
// Edit Move dialog: the square table, the captions, the geometry, the
// drawing and the pieces.
#include "gui_test_support.h"
#include "board/piece_art.h"
#include <set>

namespace {

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
    EXPECT_EQ(Pictures(view), layout);
    EXPECT_EQ(Captions(), "a b c d e f g h 1 2 3 4 5 6 7 8");
    bReverseSides = true;
    view.SetLabels();
    EXPECT_EQ(Captions(), "h g f e d c b a 8 7 6 5 4 3 2 1");
    ASSERT_TRUE(view.DisplayBoard(layout));
    const std::string turned(layout.rbegin(), layout.rend());
    EXPECT_EQ(Pictures(view), turned) << "a1 top right, h8 bottom left";
    EXPECT_EQ(view.Entries(), turned);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(BoardViewTest, AnUnknownCharacterLeavesItsSquaresOldPicture) {
    ASSERT_TRUE(view.DisplayBoard(kStart));
    std::string layout = kEmpty, shown = kEmpty;
    layout[4] = 'x', layout[20] = 'z', layout[59] = '1';  // a digit other than 0 is no picture either
    shown[4] = 'K', shown[59] = 'q';
    ASSERT_TRUE(view.DisplayBoard(layout));
    EXPECT_EQ(Pictures(view), shown);
    EXPECT_EQ(view.Entry(4), 'x') << "the square table holds what came";
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(BoardViewTest, DesignGeometryBlueAndGreyFieldsInABlackFrameAndWhiteAndBlackPieces) {
    EXPECT_EQ(BoardView::DesignSize(), QSize(348, 356)) << "4185 x 4275 twips";
    for (int k = 0; k < 64; ++k) {
        const QRectF r = view.SquareRect(k);
        EXPECT_EQ(r.size(), QSizeF(40, 40)) << "480 twips a square";
        EXPECT_EQ(view.SquareAt((r.bottomRight() - QPointF(1, 1)).toPoint()), k);
    }
    // Column k mod 8 from the left, row k div 8 from the bottom, labels off the squares.
    EXPECT_LT(view.SquareRect(0).left(), view.SquareRect(7).left());
    EXPECT_GT(view.SquareRect(0).top(), view.SquareRect(56).top());
    EXPECT_GE(view.LabelRect(0).top(), view.BoardRect().bottom());
    EXPECT_LE(view.LabelRect(8).right(), view.BoardRect().left());
    for (bool reversed : {false, true}) {
        bReverseSides = reversed;
        ASSERT_TRUE(view.DisplayBoard(kEmpty));
        const QImage image = Render();
        for (int k = 0; k < 64; ++k) {
            const QColor expected = (k % 8 + k / 8) % 2 == 0 ? kBlue : kGrey;  // bottom left blue
            EXPECT_EQ(image.pixelColor(view.SquareRect(k).topLeft().toPoint()), expected) << k;
        }
        const QRect frame = view.BoardRect().toRect().adjusted(-1, -1, 0, 0);
        EXPECT_EQ(image.pixelColor(frame.topLeft()), kBlack);
        EXPECT_EQ(image.pixelColor(frame.right() + 1, frame.bottom() + 1), kBlack);
    }
    // White pieces mostly white with a black edge, Black ones the other way.
    bReverseSides = false;
    ASSERT_TRUE(view.DisplayBoard(kStart));
    const QImage image = Render();
    for (int k : {0, 1, 2, 3, 4, 8, 56, 57, 58, 59, 60, 48, 30}) {
        const QRect r = view.SquareRect(k).toRect();
        const int white = Count(image, r, kWhite), black = Count(image, r, kBlack);
        const int body = k < 16 ? white : black, edge = k < 16 ? black : white;
        EXPECT_TRUE(k == 30 ? white + black == 0 : body > 100 && edge > 20 && body > edge) << k;
    }
    std::set<std::string> pieces;  // twelve different pieces
    for (char c : std::string("PRNBQKprnbqk")) {
        const QImage image = board::PiecePixmap(c, 32, 2.0).toImage();
        pieces.insert(std::string(reinterpret_cast<const char*>(image.constBits()), size_t(image.sizeInBytes())));
    }
    EXPECT_EQ(pieces.size(), 12u);
}
