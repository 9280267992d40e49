// The pictures of the chess pieces, drawn as vectors at any size.
//
// Each of the 12 piece characters of a layout (PRNBQK for White, prnbqk for
// Black) has a picture: White pieces are white with a black outline, Black
// pieces black with a white outline, on a transparent ground. '0', the
// empty square, draws nothing. No picture looks at the colour of the square
// it stands on.
#pragma once

#include <QPixmap>
#include <QRectF>

class QPainter;

namespace vantrel::board {

// One of the 12 piece characters.
bool IsPieceChar(char layoutChar);
// One of the 13 layout characters: a piece or '0'.
bool IsLayoutChar(char layoutChar);

// Draws the piece of `layoutChar` into `square`, centred, standing on a
// common base line so that a row of pieces lines up. Any other character,
// '0' included, draws nothing. The painter's state is left as it was.
void DrawPiece(QPainter& painter, const QRectF& square, char layoutChar);

// A transparent pixmap of `logicalSize` x `logicalSize` device-independent
// pixels holding the piece (empty for '0'), rendered at `devicePixelRatio`
// so that it stays sharp on high-density screens. Fit for drag icons.
QPixmap PiecePixmap(char layoutChar, int logicalSize, qreal devicePixelRatio = 1.0);

}  // namespace vantrel::board
