#include "chess/resolver.h"

#include <cstring>
#include <string_view>

namespace vantrel::chess {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A file letter as a number: 'a' is 1, 'h' is 8. Bytes above 127 count as
// their Windows-1252 codes, so they land far off the board, never below it.
int16_t FileOf(char c) { return static_cast<int16_t>(static_cast<unsigned char>(c) - 96); }

// A rank character as a number; anything but a digit is 0, which is on no square.
int16_t RankOf(char c) { return IsDigit(c) ? static_cast<int16_t>(c - '0') : int16_t{0}; }

bool IsCapture(char c) { return c == 'x' || c == 'X'; }

bool IsPromotionLetter(char c) { return c == 'R' || c == 'N' || c == 'B' || c == 'Q'; }

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool OnBoard(int rank, int file) { return rank >= 1 && rank <= 8 && file >= 1 && file <= 8; }

bool OutsideSubscripts(int16_t v) { return v < 0 || v > 8; }

// Walks the squares within the hints in FindPiece's order and calls `visit`
// for each that holds the code (colour, letter).
template <typename Visit>
void WalkPieces(const ImportBoard& board, char colour, char letter, int rank, int file, Visit&& visit) {
    auto test = [&](int r, int f) {
        if (board.Colour(r, f) == colour && board.Piece(r, f) == letter) visit(r, f);
    };
    if (rank == 0 && file == 0) {
        for (int f = 1; f <= 8; ++f)
            for (int r = 1; r <= 8; ++r) test(r, f);
    } else if (rank == 0) {
        for (int r = 1; r <= 8; ++r) test(r, file);
    } else if (file == 0) {
        for (int f = 1; f <= 8; ++f) test(rank, f);
    } else {
        test(rank, file);
    }
}

// Everything one call learns from its token before it looks for the source.
struct MoveTarget {
    int16_t targetRank = 0;
    int16_t targetFile = 0;
    int16_t hintRank = 0;
    int16_t hintFile = 0;
    bool deducedRank = false;
};

// Looks for the one piece that can reach the target. On success fills the
// source square and, with a deduced rank, settles the target rank.
ResolveResult FindSource(const ImportBoard& board, const std::string& piece, bool isWhite, MoveTarget& t, int16_t& sourceRank,
                   int16_t& sourceFile) {
    if (t.targetFile > 8 || t.targetRank > 8 || t.targetFile < 0 || OutsideSubscripts(t.hintRank) ||
        OutsideSubscripts(t.hintFile))
        return kCantParse;

    // The candidates in the order FindPiece counts them: one walk gives the
    // same squares as asking FindPiece for each n in turn.
    int16_t candidateRank[64], candidateFile[64];
    int candidates = 0;
    WalkPieces(board, isWhite ? 'w' : 'b', Lower(piece[0]), t.hintRank, t.hintFile, [&](int r, int f) {
        candidateRank[candidates] = static_cast<int16_t>(r);
        candidateFile[candidates] = static_cast<int16_t>(f);
        ++candidates;
    });

    ReachMap reach;
    bool found = false;
    int16_t foundTargetRank = t.targetRank;
    for (int n = 0; n < candidates; ++n) {
        const int16_t rank = candidateRank[n];
        const int16_t file = candidateFile[n];
        int16_t targetRank = t.targetRank;
        if (t.deducedRank) {
            targetRank = static_cast<int16_t>(isWhite ? rank + 1 : rank - 1);
            if (targetRank < 1 || targetRank > 8) continue;
        }
        MarkReach(board, reach, piece, rank, file, isWhite);
        if (reach.Marked(targetRank, t.targetFile)) {
            if (found) return kAmbiguous;
            found = true;
            sourceRank = rank;
            sourceFile = file;
            foundTargetRank = targetRank;
        }
    }
    if (!found) return kIllegal;
    t.targetRank = foundTargetRank;
    return kResolved;
}

void CarryOut(ImportBoard& board, char pieceLetter, bool isWhite, int16_t sourceRank, int16_t sourceFile,
              int16_t targetRank, int16_t targetFile) {
    board.SetCode(sourceRank, sourceFile, "no");
    const char code[2] = {isWhite ? 'w' : 'b', Lower(pieceLetter)};
    board.SetCode(targetRank, targetFile, std::string_view(code, 2));
}

ResolveResult Castle(ImportBoard& board, std::string& move, bool isWhite) {
    const char* text = CastlingText(move);
    if (text == nullptr) return kCantParse;
    const bool kingSide = text[3] == '\0';
    // Every spelling of one castling shares one tree node.
    move = text;

    const int r = isWhite ? 1 : 8;
    const char colour = isWhite ? 'w' : 'b';
    auto holds = [&](int file, char piece) { return board.Colour(r, file) == colour && board.Piece(r, file) == piece; };
    const char king[2] = {colour, 'k'};
    const char rook[2] = {colour, 'r'};

    if (kingSide) {
        if (!holds(5, 'k') || !board.IsEmpty(r, 6) || !board.IsEmpty(r, 7) || !holds(8, 'r')) return kCantParse;
        board.SetCode(r, 5, "no");
        board.SetCode(r, 6, std::string_view(rook, 2));
        board.SetCode(r, 7, std::string_view(king, 2));
        board.SetCode(r, 8, "no");
    } else {
        if (!holds(5, 'k') || !board.IsEmpty(r, 2) || !board.IsEmpty(r, 3) || !board.IsEmpty(r, 4) ||
            !holds(1, 'r'))
            return kCantParse;
        board.SetCode(r, 1, "no");
        board.SetCode(r, 2, "no");
        board.SetCode(r, 3, std::string_view(king, 2));
        board.SetCode(r, 4, std::string_view(rook, 2));
        board.SetCode(r, 5, "no");
    }
    return kResolved;
}

ResolveResult PieceMove(ImportBoard& board, const std::string& move, bool isWhite) {
    const size_t len = move.size();
    if (len < 3 || len > 5) return kCantParse;

    MoveTarget t;
    t.targetFile = FileOf(move[len - 2]);
    t.targetRank = RankOf(move[len - 1]);
    const char second = move[1];
    if (len == 4) {
        if (IsDigit(second))
            t.hintRank = RankOf(second);
        else if (!IsCapture(second))
            t.hintFile = FileOf(second);
    } else if (len == 5) {
        // The third character is never looked at: Ng1f3 keeps only the file.
        if (IsDigit(second))
            t.hintRank = RankOf(second);
        else
            t.hintFile = FileOf(second);
    }

    std::string piece(1, move[0]);
    int16_t sourceRank = 0, sourceFile = 0;
    const ResolveResult result = FindSource(board, piece, isWhite, t, sourceRank, sourceFile);
    if (result != kResolved) return result;
    CarryOut(board, piece[0], isWhite, sourceRank, sourceFile, t.targetRank, t.targetFile);
    return kResolved;
}

ResolveResult PawnMove(ImportBoard& board, const std::string& move, bool isWhite) {
    const size_t len = move.size();
    auto c = [&](size_t i) { return move[i - 1]; };  // c(1) .. c(len)

    const char lastRankChar = isWhite ? '8' : '1';
    const int16_t lastRank = isWhite ? 8 : 1;
    const int16_t rankBeforeLast = isWhite ? 7 : 2;
    auto behind = [&](int16_t rank) { return static_cast<int16_t>(isWhite ? rank - 1 : rank + 1); };

    // The three shapes a form can give: a named target square with the source
    // on file c1, a target rank left to each candidate, and a promotion.
    MoveTarget t;
    char promotion = 0;
    auto aim = [&](char targetFile, int16_t targetRank, int16_t hintRank) {
        t.targetFile = FileOf(targetFile);
        t.targetRank = targetRank;
        t.hintFile = FileOf(c(1));
        t.hintRank = hintRank;
    };
    auto deduce = [&](char targetFile) {
        t.targetFile = FileOf(targetFile);
        t.hintFile = FileOf(c(1));
        t.deducedRank = true;
    };
    auto promote = [&](char targetFile, char letter) {
        aim(targetFile, lastRank, rankBeforeLast);
        promotion = letter;
    };

    switch (len) {
    case 2:
        if (IsDigit(c(2)))
            aim(c(1), RankOf(c(2)), 0);  // e4
        else
            deduce(c(2));  // ed
        break;
    case 3:
        if (IsDigit(c(3)))
            aim(c(2), RankOf(c(3)), behind(RankOf(c(3))));  // ed5
        else if (IsCapture(c(2)))
            deduce(c(3));  // exd
        else if (c(2) == lastRankChar && IsPromotionLetter(c(3)))
            promote(c(1), c(3));  // e8Q
        else
            return kCantParse;
        break;
    case 4:
        if (IsDigit(c(4)) && IsDigit(c(2)))
            aim(c(3), RankOf(c(4)), RankOf(c(2)));  // e2e4, e4d5
        else if (IsDigit(c(4)) && IsCapture(c(2)))
            aim(c(3), RankOf(c(4)), behind(RankOf(c(4))));  // exd5
        else if (c(2) == lastRankChar && c(3) == '=' && IsPromotionLetter(c(4)))
            promote(c(1), c(4));  // e8=Q
        else
            return kCantParse;
        break;
    case 5:
        if (IsCapture(c(3)))
            aim(c(4), RankOf(c(5)), RankOf(c(2)));  // e4xd5
        else if (IsCapture(c(2)) && c(4) == lastRankChar && IsPromotionLetter(c(5)))
            promote(c(3), c(5));  // exd8Q
        else
            return kCantParse;
        break;
    case 6:
        // exd8=Q; the second character is not looked at.
        if (c(4) == lastRankChar && c(5) == '=' && IsPromotionLetter(c(6)))
            promote(c(3), c(6));
        else
            return kCantParse;
        break;
    default:
        return kCantParse;
    }

    std::string piece(1, 'p');
    int16_t sourceRank = 0, sourceFile = 0;
    const ResolveResult result = FindSource(board, piece, isWhite, t, sourceRank, sourceFile);
    if (result != kResolved) return result;

    EnPassantRecord& ep = board.EnPassant;
    if ((isWhite && sourceRank == 2 && t.targetRank == 4) || (!isWhite && sourceRank == 7 && t.targetRank == 5))
        ep.DoubleStep(isWhite, sourceFile);
    if (ep.Active && ep.Aged && t.targetRank == ep.PassedRank && t.targetFile == ep.PawnFile)
        board.SetCode(ep.PawnRank, ep.PawnFile, "no");  // the pawn taken en passant

    CarryOut(board, promotion != 0 ? promotion : 'p', isWhite, sourceRank, sourceFile, t.targetRank, t.targetFile);
    return kResolved;
}

}  // namespace

const char* CastlingText(std::string_view move) {
    const size_t len = move.size();
    if (len > 5) return nullptr;
    char low[5];
    for (size_t i = 0; i < len; ++i) low[i] = Lower(move[i]);
    const std::string_view spelling(low, len);
    if (spelling == "oo" || spelling == "o-o" || spelling == "00" || spelling == "0-0") return "o-o";
    if (spelling == "ooo" || spelling == "o-o-o" || spelling == "000" || spelling == "0-0-0") return "o-o-o";
    return nullptr;
}

std::string_view CastlingNodeText(std::string_view move) {
    const char* text = CastlingText(move);
    return text != nullptr ? std::string_view(text) : std::string_view();
}

ResolveResult ResolveMove(ImportBoard& board, std::string& move, int16_t ply) {
    const bool isWhite = (ply % 2) != 0;

    // Every call ages the record, a failed one and a retry of the same ply too.
    board.EnPassant.Age();

    if (move.empty()) return kCantParse;
    switch (move[0]) {
    case 'R':
    case 'N':
    case 'B':
    case 'Q':
    case 'K':
        return PieceMove(board, move, isWhite);
    case 'o':
    case 'O':
    case '0':
        return Castle(board, move, isWhite);
    default:
        if (move[0] >= 'a' && move[0] <= 'h') return PawnMove(board, move, isWhite);
        return kCantParse;
    }
}

int16_t FindPiece(const ImportBoard& board, std::string& piece, int16_t& rank, int16_t& file, bool isWhite,
                  int16_t n) {
    if (n < 1) n = 1;
    // The code is the colour plus the piece letter in lower case; anything
    // but a single letter builds a code that no square holds.
    if (piece.size() != 1) return 0;
    const char colour = isWhite ? 'w' : 'b';
    const char letter = Lower(piece[0]);

    int16_t count = 0;
    int16_t foundRank = rank, foundFile = file;
    WalkPieces(board, colour, letter, rank, file, [&](int r, int f) {
        if (++count == n) {
            foundRank = static_cast<int16_t>(r);
            foundFile = static_cast<int16_t>(f);
        }
    });

    rank = foundRank;
    file = foundFile;
    return count;
}

void MarkReach(const ImportBoard& board, ReachMap& reach, const std::string& piece, int16_t rank, int16_t file,
               bool isWhite) {
    std::memset(reach.squares, ' ', sizeof reach.squares);
    if (piece.size() != 1) return;

    const char own = isWhite ? 'w' : 'b';
    const char other = isWhite ? 'b' : 'w';
    const EnPassantRecord& ep = board.EnPassant;

    // Plain test: true while the ray stays open.
    auto plain = [&](int r, int f) {
        if (!OnBoard(r, f)) return false;
        const char colour = board.Colour(r, f);
        if (colour == 'n') {
            reach.squares[r][f] = 'x';
            return true;
        }
        if (colour != own) reach.squares[r][f] = 'x';
        return false;
    };
    auto ray = [&](int dr, int df) {
        for (int r = rank + dr, f = file + df; OnBoard(r, f); r += dr, f += df)
            if (!plain(r, f)) break;
    };
    auto diagonal = [&] {
        ray(1, 1);
        ray(1, -1);
        ray(-1, 1);
        ray(-1, -1);
    };
    auto straight = [&] {
        ray(0, 1);
        ray(0, -1);
        ray(1, 0);
        ray(-1, 0);
    };
    auto pawnCapture = [&](int r, int f) {
        if (!OnBoard(r, f)) return;
        const char colour = board.Colour(r, f);
        if (colour != 'n' && colour != own)
            reach.squares[r][f] = 'x';
        else if (ep.Active && ep.Aged && ep.Side == other && ep.PawnFile == f && ep.PassedRank == r)
            reach.squares[r][f] = 'x';
    };
    auto pawnStep = [&](int r, int f) {
        if (!OnBoard(r, f) || !board.IsEmpty(r, f)) return false;
        reach.squares[r][f] = 'x';
        return true;
    };

    switch (piece[0]) {
    case 'R':
        straight();
        break;
    case 'B':
        diagonal();
        break;
    case 'Q':
        diagonal();
        straight();
        break;
    case 'N':
        for (int dr : {-2, -1, 1, 2})
            for (int df : {-2, -1, 1, 2})
                if (dr != df && dr != -df) plain(rank + dr, file + df);
        break;
    case 'K':
        for (int dr = -1; dr <= 1; ++dr)
            for (int df = -1; df <= 1; ++df)
                if (dr != 0 || df != 0) plain(rank + dr, file + df);
        break;
    case 'p':
        if (isWhite) {
            pawnCapture(rank + 1, file + 1);
            pawnCapture(rank + 1, file - 1);
            if (pawnStep(rank + 1, file) && rank == 2) pawnStep(4, file);
        } else {
            pawnCapture(rank - 1, file + 1);
            pawnCapture(rank - 1, file - 1);
            if (pawnStep(rank - 1, file) && rank == 7) pawnStep(5, file);
        }
        break;
    default:
        break;
    }
}

}  // namespace vantrel::chess
