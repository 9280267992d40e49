// ImportBoard and the move resolver on it: the layout, token forms, the
// source search, en passant timing, castling, promotion, and the two helpers
// behind it; the rules of chess/legal.h and the automatic repair built on them.
//
// Positions are pieces on squares, "Ng1 ne5 Pd4", upper case for White; a
// leading "start" keeps the initial position, and "-f1" empties a square.
#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <tuple>
#include <vector>

#include "chess/board.h"
#include "chess/legal.h"
#include "chess/move_repair.h"
#include "chess/replay.h"
#include "chess/resolver.h"

namespace {

using namespace vantrel::chess;

int RankOf(const std::string& square) { return square[1] - '0'; }
int FileOf(const std::string& square) { return square[0] - 'a' + 1; }

void SetUpBoard(ImportBoard& board, const std::string& pieces) {
    board.ResetImportBoard();
    if (pieces.rfind("start", 0) != 0)
        for (int s = 0; s < 64; ++s) board.SetCode(s / 8 + 1, s % 8 + 1, "no");
    std::istringstream in(pieces);
    for (std::string item; in >> item;) {
        if (item == "start") continue;
        const char p = item[0];
        const std::string square = item.substr(1);
        board.SetCode(RankOf(square), FileOf(square),
                      p == '-' ? std::string("no")
                               : std::string{std::isupper(p) ? 'w' : 'b', static_cast<char>(std::tolower(p))});
    }
}

std::string LayoutOf(const std::string& pieces) {
    ImportBoard board;
    SetUpBoard(board, pieces);
    return board.BoardToLayout();
}

// One token on a position: its result, and the position after it (for any
// result but 0 the board must stand as it was). The token comes back as it
// went in, unless `rewritten` says otherwise.
struct Case {
    const char *before, *token;
    int ply, result;
    const char *after = nullptr, *rewritten = nullptr;
};

void Check(const Case& c) {
    SCOPED_TRACE(std::string(c.token) + " at ply " + std::to_string(c.ply) + " on " + c.before);
    ImportBoard board;
    SetUpBoard(board, c.before);
    const std::string before = board.BoardToLayout();
    std::string move = c.token;
    EXPECT_EQ(ResolveMove(board, move, static_cast<int16_t>(c.ply)), c.result);
    EXPECT_EQ(board.BoardToLayout(), c.after ? LayoutOf(c.after) : before);
    EXPECT_EQ(move, c.rewritten ? c.rewritten : c.token);
}

void CheckAll(std::initializer_list<Case> cases) {
    for (const Case& c : cases) Check(c);
}
void CheckTokens(const char* before, int ply, int result, const char* after,
                 std::initializer_list<const char*> tokens) {
    for (const char* token : tokens) Check({before, token, ply, result, after});
}

// Plays a line such as "7.e4 dxe3": a number in front sets the ply, else the
// ply goes on by one. Returns the results, joined by blanks.
std::string PlayLine(ImportBoard& board, const std::string& line) {
    std::istringstream in(line);
    std::string item, results;
    int ply = 1;
    while (in >> item) {
        const size_t dot = item.find('.');
        if (dot != std::string::npos && dot > 0 && std::isdigit(static_cast<unsigned char>(item[0]))) {
            ply = std::stoi(item.substr(0, dot));
            item.erase(0, dot + 1);
        }
        if (!results.empty()) results += ' ';
        results += std::to_string(ResolveMove(board, item, static_cast<int16_t>(ply++)));
    }
    return results;
}

TEST(Resolver, PieceFormsReadTheirHints) {
    // Knights on g1 and e5 both reach f3; the one on b1 doesn't. A hint of 0 is no hint.
    const char *two = "Ng1 Ne5 Nb1 ka8", *g1 = "Nf3 Ne5 Nb1 ka8", *e5 = "Ng1 Nf3 Nb1 ka8";
    CheckTokens(two, 1, 1, nullptr, {"Nf3", "Nxf3", "NXf3", "N`f3", "N0f3"});
    CheckTokens(two, 1, 0, g1, {"N1f3", "Ngf3", "N1xf3", "Ngxf3", "Ng1f3"});
    CheckTokens(two, 1, 0, e5, {"N5f3", "Nef3", "N5xf3", "NeXf3", "Ne5f3"});
    CheckTokens(two, 1, 2, nullptr, {"N2f3", "Nbf3", "Nhf3"});
    CheckAll({
        // Five characters: the third is never looked at, so Ng1f3 names both g-knights.
        {"Ng1 Ng5", "Ng1f3", 1, 1}, {"Ng1 Ng5", "Ng7f3", 1, 1}, {"Ng1", "Ng7f3", 1, 0, "Nf3"},
        {"Ng1", "N1?f3", 1, 0, "Nf3"},
        // Only hints settle an ambiguity; a pinned knight is a candidate like any other, and moves.
        {"start -d2 -g1 Nf3", "Nd2", 1, 1}, {"start -d2 -g1 Nf3", "Nbd2", 1, 0, "start -d2 -g1 Nf3 -b1 Nd2"},
        {"Ke1 Nd2 Ng1 bb4 ke8", "Nf3", 1, 1}, {"Ke1 Nd2 Ng1 bb4 ke8", "Ngf3", 1, 0, "Ke1 Nd2 Nf3 bb4 ke8"},
        {"Ke1 Nd2 Ng1 bb4 ke8", "Ndf3", 1, 0, "Ke1 Nf3 Ng1 bb4 ke8"},
    });
    // 3 for a token that fits no form; 2 where the square read is off the board.
    CheckTokens("start", 1, 3, nullptr, {"Ng1xf3", "Nf3+", "NF3", "Nf9", "Nf", "N", "Nif3", "N9f3", "Nxxf3", "Qxf7#",
                                         "Nj3", "N\xE9" "3", "N\xE9" "f3", "", "nf3", "kf3", "Pe4", "Ie4", "1. e4",
                                         " e4", "ie4"});
    CheckTokens("start", 1, 2, nullptr, {"Nf0", "N`3", "bf3"});  // a lower-case b is the b-pawn
    Check({"start", "b3", 1, 0, "start -b2 Pb3"});
    CheckAll({
        // The side to move follows the ply alone.
        {"start", "e6", 1, 2}, {"start", "e6", 2, 0, "start -e7 pe6"}, {"start", "e6", 40, 0, "start -e7 pe6"},
        {"start", "Nf3", 41, 0, "start -g1 Nf3"}, {"start", "Nf3", 42, 2},
        {"Ke1 ng8", "Nf3", 1, 2},  // no knight of the mover's colour
        {"Ke1 ng8", "Qd4", 1, 2}, {"Ke1 ng8", "Nf6", 2, 0, "Ke1 nf6"},
        // Sliders stop at the first occupied square and never take their own; a capture needs no "x".
        {"Ra1 pa3 Pc1", "Ra4", 1, 2}, {"Ra1 pa3 Pc1", "Rd1", 1, 2}, {"Ra1 pa3 Pc1", "Rc1", 1, 2},
        {"Ra1 pa3 Pc1", "Rb1", 1, 0, "Rb1 pa3 Pc1"}, {"Ra1 pa3", "Ra3", 1, 0, "Ra3"},
        {"Bc1 Pe3 nb2", "Bf4", 1, 2}, {"Bc1 Pe3 nb2", "Ba3", 1, 2}, {"Bc1 Pe3 nb2", "Bxb2", 1, 0, "Bb2 Pe3"},
        {"qd1 Pd5 Ng4", "Qd6", 2, 2}, {"qd1 Pd5 Ng4", "Qh5", 2, 2}, {"qd1 Pd5 Ng4", "Qd5", 2, 0, "qd5 Ng4"},
        {"qd1 Pd5 Ng4", "Qxg4", 2, 0, "Pd5 qg4"}, {"qd1 Pd5 Ng4", "Qa4", 2, 0, "qa4 Pd5 Ng4"},
        {"qd1 Pd5 Ng4", "Qe3x", 2, 3}, {"qd1 Pd5 Ng4", "Qe4", 2, 2},
        // Knights jump, kings step.
        {"Na1 Pb3", "Nb3", 1, 2}, {"Na1 Pb3", "Nb2", 1, 2}, {"Na1 Pb3", "Nc2", 1, 0, "Nc2 Pb3"},
        {"nd4 Pe6 Pc6 Pf5", "Nxe6", 2, 0, "ne6 Pc6 Pf5"}, {"Ka1", "Ka3", 1, 2}, {"Ka1", "Kb2", 1, 0, "Kb2"},
        // No check test: a king steps into check and can be captured; a side without its king has no "K" move.
        {"Ke1 re8", "Ke2", 1, 0, "Ke2 re8"}, {"Ke1 Qe2 ke7", "Qxe7", 1, 0, "Ke1 Qe7"}, {"Ke1 Qe7", "Kf8", 2, 2},
        // An "x" is never checked against the board.
        {"start", "Nxf3", 1, 0, "start -g1 Nf3"}, {"start", "exe3", 1, 0, "start -e2 Pe3"},
    });
}

TEST(Resolver, EveryPawnFormResolves) {
    // The second character of a five-character capture is not looked at; "0" or a letter where a
    // hint rank stands gives no hint.
    CheckTokens("Pe2", 1, 0, "Pe4", {"e4", "e2e4", "e0e4"});
    CheckTokens("Pe4 nd5", 1, 0, "Pd5", {"ed", "ed5", "exd", "eXd", "e4d5", "exd5", "eXd5", "e4xd5", "e4Xd5", "eyxd5"});
    CheckTokens("Pe7 rd8", 1, 0, "Qd8", {"exd8Q", "exd8=Q", "e?d8=Q"});
    CheckTokens("Pe7", 1, 0, "Qe8", {"e8Q", "e8=Q"});
    CheckTokens("pd7", 2, 0, "pd5", {"d5", "d7d5"});
    CheckTokens("pd5 Ne4", 2, 0, "pe4", {"de", "de4", "dxe", "dxe4", "d5xe4"});
    CheckAll({
        {"Pe2", "e3", 1, 0, "Pe3"}, {"Pe7", "e8N", 1, 0, "Ne8"}, {"Pe7", "e8=R", 1, 0, "Re8"},
        {"Pe7 rd8", "exd8B", 1, 0, "Bd8"}, {"pd2", "d1R", 2, 0, "rd1"}, {"pd2", "d1=N", 2, 0, "nd1"},
        {"pd2 Re1", "dxe1B", 2, 0, "be1"}, {"pd2 Re1", "dxe1=Q", 2, 0, "qe1"},
        // Without a promotion piece a pawn stays a pawn on the last rank, and is then
        // passed over when a deduced rank would be off the board.
        {"Pe7", "e8", 1, 0, "Pe8"}, {"Pe8 Pe4 nd5", "ed", 3, 0, "Pe8 Pd5"},
    });
    // Tokens that fit no form or leave the board.
    CheckTokens("Pe7 Pe4 nd5 rd8", 1, 3, nullptr,
                {"e", "e8q", "e7Q", "e8K", "e8P", "e8=", "e8=q", "e8=K", "e8-Q", "e8Q+", "exd+", "ed5+", "e4-d5",
                 "e4d5+", "exd8q", "exd7Q", "exd8=", "e8=QQ", "exd8-Q", "exd8=q", "exd8=K", "exd8=Q+", "e2-e4",
                 "e1=Q", "e1Q", "e+", "ej4", "e9", "ed9", "exd5e", "e9e4"});
    CheckTokens("pd2 pd5 Ne4 Re1 pe7", 2, 3, nullptr,
                {"d8=Q", "d8Q", "dxe8Q", "dxe8=Q", "d1=q", "dxe1=K", "d5-e4", "ed8"});
    // Rank 0 and file 0 are on no square; the square behind rank 0 is off the subscripts,
    // but for Black it is rank 1.
    CheckAll({{"Pe2 pe7", "e0", 1, 2}, {"Pe2 pe7", "ed0", 1, 3}, {"Pe2 pe7", "ed0", 2, 2}, {"Pe2 pe7", "e`", 1, 2}});
    CheckAll({
        {"Pe2 Pe4", "e5", 1, 0, "Pe2 Pe5"}, {"Pe2 Pe3", "e4", 1, 0, "Pe2 Pe4"},
        // The double step needs e3 and e4 empty, and starts only from the home rank.
        {"Pe2 Ne3", "e4", 1, 2}, {"Pe2 ne3", "e4", 1, 2}, {"Pe2 pe3", "e4", 1, 2}, {"Pe2 ne4", "e4", 1, 2},
        {"Pe2 ne4", "e3", 1, 0, "Pe3 ne4"}, {"Pe3 pd6", "e5", 1, 2}, {"Pe3 pd6", "d4", 2, 2},
        // Forward only onto an empty square, diagonally only onto an enemy, never backwards or round the edge.
        {"Pe4 pe5 Pd5 pf3", "e5", 1, 2}, {"Pe4 pe5 Pd5 pf3", "exd5", 1, 2}, {"Pe4 pe5 Pd5 pf3", "exf5", 1, 2},
        {"Pe4 pe5 Pd5 pf3", "exf3", 1, 2}, {"Pe4 pe5 Pd5 pf3", "exf", 1, 2}, {"Pa4 ph5", "axh5", 1, 2},
        {"Ph4 pa5", "hxa5", 1, 2},
        // Promotion needs the source on the rank before last.
        {"Pe6", "e8Q", 1, 2}, {"Pe7 ke8", "e8=Q", 1, 2},
    });
    // A deduced rank comes from each candidate.
    const char* two = "Pe3 pd4 Pe5 nd6";  // two pawns on the file that can both capture
    CheckAll({
        {"Pe4 nd5", "ed", 1, 0, "Pd5"}, {"pe5 Bd4", "exd", 2, 0, "pd4"}, {two, "exd", 1, 1}, {two, "ed", 1, 1},
        {two, "exd4", 1, 0, "Pd4 Pe5 nd6"}, {two, "ed6", 1, 0, "Pe3 pd4 Pd6"},
        {"Pe2 Pe4 Pe6 pd5 Nd7", "ed", 1, 0, "Pe2 Pe6 Pd5 Nd7"},  // of three only the middle one can
        {"Pe4", "ed", 1, 2}, {"Pe4", "exf", 1, 2},
        {"Pe4", "ee", 1, 0, "Pe5"},  // the same file twice: the square straight ahead
    });
}

TEST(Resolver, EnPassantTiming) {
    struct Line { const char *before, *moves, *results, *after; };
    const Line lines[] = {
        {"Pe2 pd4", "7.e4 dxe3", "0 0", "pe3"}, {"Pe3 pd4", "e4 dxe3", "0 2", "Pe4 pd4"},  // a single step isn't double
        {"Pe2 pd4 ph7 Pa2", "e4 h6 a3 dxe3", "0 0 0 2", "Pe4 ph6 Pa3 pd4"},  // only at the very next ply
        // A failed try at the next ply uses up the one call that can capture.
        {"Pe2 pd4", "1.e4 2.Nf6 2.dxe3", "0 2 2", "Pe4 pd4"}, {"Pe2 pd4", "1.e4 2.?? 2.dxe3", "0 3 2", "Pe4 pd4"},
        // Only onto the passed square, only by the other side's pawn; the double-stepped pawn blocks the file.
        {"Pe2 pd4 pf4 pe5", "e4 dxc3", "0 2", "Pe4 pd4 pf4 pe5"},
        {"Pe2 pd4 pf4 pe5", "e4 e3", "0 2", "Pe4 pd4 pf4 pe5"}, {"Pe2 pd4 pf4 pe5", "e4 fxe3", "0 0", "pd4 pe3 pe5"},
        {"Pe2 Pf2 pd4", "1.e4 3.fxe3", "0 2", "Pe4 Pf2 pd4"},
        {"Pe2 ng4", "e4 Ne3", "0 0", "Pe4 ne3"},  // a piece on the passed square takes no pawn
        {"Pe5 pd7", "2.d5 exd6", "0 0", "Pd6"}, {"Pe5 pd7", "2.d5 ed", "0 0", "Pd6"},
    };
    for (const Line& l : lines) {
        ImportBoard board;
        SetUpBoard(board, l.before);
        EXPECT_EQ(PlayLine(board, l.moves), l.results) << l.moves;
        EXPECT_EQ(board.BoardToLayout(), LayoutOf(l.after)) << l.moves;
    }
}

// A run of plies played back at once leaves the en passant record that the
// plies one by one leave, whatever the record held before.
TEST(Replay, EnPassantOfARunOfPliesIsThatOfEachPlyInTurn) {
    ImportBoard board;
    StepRecorder recorder;
    std::vector<Step> steps(1);
    int16_t ply = 0;
    for (std::string move : {"e4", "e6", "d4", "d5", "Nc3", "c5", "a3", "b5", "h3", "g5", "Nf3", "Nc6"}) {
        recorder.Before(board);
        ASSERT_EQ(ResolveMove(board, move, ++ply), kResolved) << move;
        steps.push_back(recorder.After(board));
    }
    const auto fields = [](const EnPassantRecord& r) {
        return std::make_tuple(r.Active, r.Aged, r.Side, r.PawnFile, r.PawnRank, r.PassedRank);
    };
    for (int before = 0; before < 3; ++before) {
        EnPassantRecord start;
        if (before > 0) start.DoubleStep(false, 7);
        if (before > 1) start.Age();
        for (int16_t from = 0; from <= ply; ++from) {
            for (int16_t to = from; to <= ply; ++to) {
                ImportBoard each, run;
                each.EnPassant = run.EnPassant = start;
                for (int16_t k = from + 1; k <= to; ++k) ReplayEnPassant(each, steps[static_cast<size_t>(k)], k);
                ReplayEnPassant(run, steps.data(), from, to);
                EXPECT_EQ(fields(run.EnPassant), fields(each.EnPassant)) << before << " " << from << " " << to;
            }
        }
    }
}

TEST(Resolver, CastlingSpellingsAreRewrittenBeforeTheSquaresAreTested) {
    std::vector<Case> cases;
    for (const char* t : {"O-O", "o-o", "oo", "OO", "0-0", "00", "O-o", "Oo"})
        cases.push_back({"start -f1 -g1", t, 1, 0, "start -e1 -f1 -g1 -h1 Rf1 Kg1", "o-o"});
    for (const char* t : {"O-O-O", "o-o-o", "ooo", "OOO", "0-0-0", "000"})
        cases.push_back({"start -b8 -c8 -d8", t, 2, 0, "start -a8 -b8 -d8 -e8 kc8 rd8", "o-o-o"});
    // A square that doesn't fit gives 3, and the token is rewritten all the same.
    for (const char* pieces : {"start -g1", "Ke1 rh1", "ke1 Rh1", "Ke1 Qh1", "Kd1 Rh1"})
        cases.push_back({pieces, "O-O", 1, 3, nullptr, "o-o"});
    // Black to move; b1 must be empty too.
    for (const auto& [pieces, token, ply] : {std::tuple{"Ke1 Rh1", "O-O", 2}, {"start -c1 -d1", "0-0-0", 1},
                                             {"Ke1 Ra1 nb1", "O-O-O", 1}, {"ke8 ra8 qd8", "O-O-O", 2}, {"ke8 rh8 Ng8", "O-O", 2}})
        cases.push_back({pieces, token, ply, 3, nullptr, token[3] ? "o-o-o" : "o-o"});
    // In check, through check, into check: only the four squares count.
    cases.push_back({"Ke1 Rh1 re8 qf8 bg8", "O-O", 1, 0, "Rf1 Kg1 re8 qf8 bg8", "o-o"});
    // Spellings the resolver doesn't know stay as they came.
    for (const char* t : {"o", "O", "0", "o-", "O-O+", "o-o-o-o", "0-O", "O-0", "oo-o", "o-oo", "0000", "O-O-O-O",
                          "0x0", "ooo0"})
        cases.push_back({"start -b1 -c1 -d1 -f1 -g1", t, 1, 3});
    for (const Case& c : cases) Check(c);
    // Nothing remembers that king and rook have moved.
    ImportBoard board;
    SetUpBoard(board, "Ke1 Rh1 ka8");
    EXPECT_EQ(PlayLine(board, "Ke2 Kb8 Rh5 Ka8 Ke1 Kb8 Rh1 Ka8 0-0"), "0 0 0 0 0 0 0 0 0");
    EXPECT_EQ(board.BoardToLayout(), LayoutOf("Rf1 Kg1 ka8"));
}

TEST(FindPiece, CountsWithinTheHintsAndLeavesTheNth) {
    struct Find { const char *pieces, *piece; int16_t rank, file; bool white; int16_t n, count, foundRank, foundFile; };
    const Find cases[] = {
        {"start", "p", 0, 0, false, 1, 8, 7, 1}, {"start", "K", 0, 0, false, 1, 1, 8, 5},
        {"start", "n", 0, 0, true, 1, 2, 1, 2},  // the code is built in lower case
        {"start", "X", 0, 0, true, 1, 0, 0, 0}, {"start", "NN", 0, 0, true, 1, 0, 0, 0},
        // Without hints the files are the outer walk; a hint file walks its ranks, a hint rank its files.
        {"Nb1 Na8 na2", "N", 0, 0, true, 1, 2, 8, 1}, {"Nb1 Na8 na2", "N", 0, 0, true, 2, 2, 1, 2},
        {"Re7 Re2 Ra2", "R", 0, 5, true, 1, 2, 2, 5}, {"Re7 Re2 Ra2", "R", 0, 5, true, 2, 2, 7, 5},
        {"bh3 ba3 bc4", "B", 3, 0, false, 1, 2, 3, 1}, {"bh3 ba3 bc4", "B", 3, 0, false, 2, 2, 3, 8},
        // Both hints name one square.
        {"Qd4 Qd5", "Q", 4, 4, true, 1, 1, 4, 4}, {"Qd4 Qd5", "Q", 4, 5, true, 1, 0, 4, 5},
        {"Qd4 Qd5", "Q", 4, 4, false, 1, 0, 4, 4},
        // n below 1 counts as 1; with fewer than n the hints stay.
        {"Nc3 Nf6", "N", 0, 0, true, 0, 2, 3, 3}, {"Nc3 Nf6", "N", 0, 0, true, -4, 2, 3, 3},
        {"Nc3", "N", 0, 0, true, 2, 1, 0, 0}, {"Nc3", "N", 0, 3, true, 5, 1, 0, 3},
        {"Nc3", "N", 6, 0, true, 1, 0, 6, 0},
    };
    for (const Find& c : cases) {
        ImportBoard board;
        SetUpBoard(board, c.pieces);
        std::string piece = c.piece;
        int16_t rank = c.rank, file = c.file;
        const int count = FindPiece(board, piece, rank, file, c.white, c.n);
        EXPECT_EQ((std::vector<int>{count, rank, file}), (std::vector<int>{c.count, c.foundRank, c.foundFile}))
            << c.pieces << " " << c.piece << " n=" << c.n;
    }
}

// The squares MarkReach marks, as "a1 b2 ...", rank by rank; "#n" for a count.
std::string Reach(const ImportBoard& board, const char* piece, const char* square, bool white, bool count = false) {
    ReachMap reach;
    MarkReach(board, reach, piece, static_cast<int16_t>(RankOf(square)), static_cast<int16_t>(FileOf(square)),
              white);
    std::string out;
    int n = 0;
    for (int rank = 0; rank <= 8; ++rank)
        for (int file = 0; file <= 8; ++file)
            if (reach.squares[rank][file] == 'x') {
                out += (n++ ? " " : "") + std::string{static_cast<char>('a' + file - 1), static_cast<char>('0' + rank)};
            }
    return count ? "#" + std::to_string(n) : out;
}

// Rays, steps, captures and en passant are checked through the resolver above.
TEST(MarkReach, MarksWhatThePieceCanReach) {
    struct Mark { const char *pieces, *piece, *square; bool white; const char* marked; };
    const Mark cases[] = {
        // Open board; no such piece; pawns go by "p".
        {"", "R", "d4", true, "#14"}, {"", "B", "d4", true, "#13"}, {"", "Q", "d4", true, "#27"},
        {"", "N", "d4", true, "#8"}, {"", "K", "d4", true, "#8"}, {"", "B", "a1", false, "#7"},
        {"", "R", "h8", false, "#14"}, {"", "Z", "a1", true, "#0"}, {"", "P", "e2", true, "#0"},
        // Nothing off the board; a pawn stuck on the last rank reaches nothing.
        {"", "N", "a1", true, "c2 b3"}, {"", "N", "h8", true, "g6 f7"}, {"", "K", "a1", true, "b1 a2 b2"},
        {"", "K", "h8", false, "g7 h7 g8"}, {"", "p", "h7", true, "h8"}, {"", "p", "a8", true, ""},
        {"Nd4 Pe6", "N", "d4", false, "c2 e2 b3 f3 b5 f5 c6 e6"},  // the colour is the mover's
    };
    for (const Mark& c : cases) {
        ImportBoard board;
        SetUpBoard(board, c.pieces);
        EXPECT_EQ(Reach(board, c.piece, c.square, c.white, c.marked[0] == '#'), c.marked)
            << c.piece << " " << c.square << " on " << c.pieces;
    }
    // Squares off the board read empty and ignore writes.
    ImportBoard board;
    for (const auto& [rank, file] : {std::pair{0, 1}, {1, 0}, {9, 1}, {1, 9}, {-1, 4}, {4, -1}, {0, 0}}) {
        EXPECT_TRUE(board.Code(rank, file) == "no" && board.IsEmpty(rank, file)) << rank << "," << file;
        board.SetCode(rank, file, "wq");
    }
    board.SetCode(3, 3, "wqq");  // nor does a square given no code
    EXPECT_EQ(board.BoardToLayout(), kInitialLayout);
}

long Perft(const Position& pos, int depth) {
    std::vector<Move> moves;
    pos.LegalMoves(moves);
    long count = depth == 1 ? static_cast<long>(moves.size()) : 0;
    for (Position next = pos; depth > 1 && !moves.empty(); moves.pop_back(), next = pos) {
        next.Apply(moves.back());
        count += Perft(next, depth - 1);
    }
    return count;
}

TEST(ChessLegalTest, CountsTheLegalMovesOfTheFirstFourPliesAndReadsFen) {
    EXPECT_EQ((std::vector<long>{Perft({}, 1), Perft({}, 2), Perft({}, 3), Perft({}, 4)}),
              (std::vector<long>{20, 400, 8902, 197281}));
    // The FEN placement read, or what is wrong with it.
    std::string layout, error;
    EXPECT_TRUE(LayoutFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", layout, error));
    EXPECT_EQ(layout, kInitialLayout);
    const std::pair<const char*, const char*> bad[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP", "fewer than 8 ranks"},
        {"8/8/8/8/8/8/8/8/8", "more than 8 ranks"},
        {"8/ppppppppp/8/8/8/8/8/8", "rank 7 doesn't hold 8 squares"},
        {"8/8/8/8/8/8/8/7", "rank 1 doesn't hold 8 squares"},
        {"8/8/8/8/8/8/8/7x", "'x' is neither a piece, a digit nor '/'"},
    };
    for (const auto& [fen, cause] : bad) {
        EXPECT_FALSE(LayoutFromFen(fen, layout, error)) << fen;
        EXPECT_EQ(error, cause) << fen;
    }
    // A position, the ply, the move; the spelling repaired (empty: none), or the result reported.
    const char* pinnedKnight = "ke8 bb4 Nc3 Ke1 Ng1";
    struct Repair { const char* pieces; int16_t ply; std::string move, fix; int16_t result; } cases[] = {
        {pinnedKnight, 1, "Ne2", "Nge2", 0},
        {pinnedKnight, 1, "Ne2+", "Nge2", 0},                // a mark as well
        {"ke8 ng8 nc6 Bb5 Ke1", 2, "Ne7", "Nge7", 0},        // Black's knight
        {"kh8 ra5 Rd5 Kh5 Rd1", 1, "Rd3", "R1d3", 0},        // the file doesn't single it out
        {"rd8 Ra4 rd4 kh4 Ka1", 2, "Rd6", "R8d6", 0},        // Black's rooks
        {"kh8 nd6 Pe5 nd4 re4 Pe3 Ke1", 1, "ed", "exd6", 0},  // a pinned pawn's capture
        {"kh8 nd6 Pe5 nd4 re4 Pe3 Ke1", 1, "exd", "exd6", 0},
        {"start", 1, "Nf3+", "Nf3", 0}, {"start", 2, "e5#", "e5", 0},
        {"ke8 Nc3 Ke1 Ng1", 1, "Ne2", "", kAmbiguous},  // both knights may go
        {"start", 1, "Nf6+", "", kIllegal},              // mended, still refused
        {"start", 1, "Zf3", "", kCantParse},
    };
    for (const Repair& c : cases) {
        ImportBoard board;
        SetUpBoard(board, c.pieces);
        std::string move = c.move;
        const int16_t refused = ResolveMove(board, move, c.ply);
        ASSERT_NE(refused, kResolved) << c.move;
        const MoveRepair repair = RepairMove(board, c.move, c.ply, refused);
        EXPECT_EQ(repair.fixed ? repair.move : "", c.fix) << c.pieces << " " << c.move;
        EXPECT_EQ(repair.fixed ? c.result : repair.result, c.result) << c.pieces << " " << c.move;
    }
}

}  // namespace
