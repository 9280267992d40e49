// What a single token of game text means (move, mark, numeric code or
// result), and the walk over move text: tokens, comments, variations, line
// comments and the limits of the game record.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "chess/annotation.h"
#include "import/game_record.h"
#include "import/walk.h"

namespace {

using vantrel::chess::NagText;
using vantrel::chess::ParseToken;

TEST(ParseToken, MovesMarksCodesAndResults) {
    // A token, whether it holds a move, the bare move and the note.
    struct Token { const char* token; bool isMove; const char *move, *note; };
    const Token tokens[] = {
        // Move numbers and dots come off; the leading digit of 1/2 goes like a move number.
        {"1.e4", true, "e4", ""}, {"12...Nf6", true, "Nf6", ""}, {"...Nf6", true, "Nf6", ""}, {"7Nf3", true, "Nf3", ""},
        {"  e4  ", true, "e4", ""}, {"1.", false, "", ""}, {"12", false, "", ""}, {"3...", false, "", ""},
        {"...", false, "", ""}, {"", false, "", ""}, {"   ", false, "", ""}, {"1/2", true, "/2", ""},
        // Suffix marks give their note; one pass only: of two marks just the last comes off.
        {"e4!?", true, "e4", "An interesting move"}, {"e4?!", true, "e4", "A dubious move"},
        {"e4?", true, "e4", "A weak move"}, {"Qxf7++", true, "Qxf7", "Checkmate"}, {"e8=Q+", true, "e8=Q", "Check"},
        {"e8=Q", true, "e8=Q", ""}, {"d4+-+", true, "d4", "Draw"}, {"d4+/=", true, "d4", "White has a slight advantage"},
        {"Nf3+!", true, "Nf3+", "A good move"}, {"Nf3!!", true, "Nf3!", "A good move"},
        // Castling is protected from the number rule.
        {"O-O", true, "O-O", ""}, {"O-O-O", true, "O-O-O", ""}, {"0-0", true, "0-0", ""}, {"0-0-0", true, "0-0-0", ""},
        {"00", true, "00", ""}, {"000", true, "000", ""}, {"0-0+", true, "0-0", "Check"}, {"12.0-0", true, "0-0", ""},
        // Whole-token marks and results (a whole "?" is no suffix "?"); single characters outside the table give nothing.
        {"!", false, "", "A good move"}, {"?", false, "", "A weak move!"}, {"??", false, "", "A blunder!"},
        {"1:0", false, "", "White wins"}, {"0-1", false, "", "Black wins"}, {"-/+", false, "", "Black has a clear advantage"},
        {".5-.5", false, "", "Draw"}, {"1/2-1/2", false, "", "Draw"}, {"1/2:1/2", false, "", "Draw"},
        {"23.+", false, "", "Check"}, {"a", false, "", ""}, {")", false, "", ""}, {"}", false, "", ""}, {"1.a", false, "", ""},
        // The length must be two to six; codes stand alone.
        {"exd8=Q", true, "exd8=Q", ""}, {"exd8=Q#!", false, "", "A good move"}, {"Nbd7xe5", false, "", ""},
        {"!!", false, "", "A good move"}, {"e4$1", true, "e4$1", ""}, {"Nf3$14", true, "Nf3$14", ""},
        {"$1", false, "", "good Move"}, {"$3", false, "", "very good move"},
        {"$139", false, "", "Black has severe time control pressure"}, {"$0", false, "", ""}, {"$140", false, "", ""},
        {"$99999999999999999999", false, "", ""}, {"$x", false, "", ""}, {"$", false, "", ""}, {"$1x", false, "", ""},
    };
    for (const Token& t : tokens) {
        std::string move = "stale", note = "stale";  // emptied on entry
        EXPECT_EQ(ParseToken(t.token, move, note), t.isMove) << t.token;
        EXPECT_EQ(move, t.move) << t.token;
        EXPECT_EQ(note, t.note) << t.token;
    }
    // Capital letters stand as listed: "good Move" but "very good move" (see the table above).
    std::string note;
    NagText("$01", note);
    EXPECT_EQ(note, "good Move");
    // Every code has a text, each pinned by a checksum over all of them, and from 14 on White and Black alternate.
    uint64_t checksum = 14695981039346656037u;  // FNV-1a
    for (int n = 1; n <= 139; ++n) {
        NagText("$" + std::to_string(n), note);
        EXPECT_FALSE(note.empty()) << n;
        for (unsigned char c : note + "\n") checksum = (checksum ^ c) * 1099511628211u;
        EXPECT_TRUE(n < 14 || note.rfind(n % 2 == 0 ? "White " : "Black ", 0) == 0) << n << ": " << note;
    }
    EXPECT_EQ(checksum, 8304935261104875216u);
    for (const char* token : {"$0", "$140", "$-1", "$", "", "$ 1"}) {
        note = "stale";
        NagText(token, note);
        EXPECT_EQ(note, "") << token;
    }
}

using vantrel::import::GameRecord;
using vantrel::Error;
using vantrel::import::MoveWalker;

struct Walked { GameRecord g; int16_t last = -1; };

// Walks the lines as the move text of a game whose name is stored (ply 0):
// PGN rules, or SAN rules with the two indicators.
Walked WalkLines(const std::vector<const char*>& lines, const char* start = nullptr, const char* end = nullptr) {
    Walked w;
    MoveWalker walker(w.g);
    start ? walker.UseSanRules(start, end) : walker.UsePgnRules();
    walker.SetPly(0);
    for (const char* line : lines) walker.WalkLine(line);
    w.last = walker.EndGame();
    return w;
}

// Lines of move text, the moves they give, and the comments of the slots
// that have one; every other slot's comment must be empty.
struct WalkCase {
    std::vector<const char*> lines, moves;
    std::map<int, const char*> comments;
    const char *start = nullptr, *end = nullptr;  // SAN indicators; PGN without them
};

void CheckWalks(std::initializer_list<WalkCase> cases) {
    for (const WalkCase& c : cases) {
        std::string text;
        for (const char* line : c.lines) text += std::string(line) + "|";
        SCOPED_TRACE(text);
        Walked w = WalkLines(c.lines, c.start, c.end);
        ASSERT_EQ(w.last, static_cast<int16_t>(c.moves.size()));
        for (size_t i = 0; i < c.moves.size(); ++i) EXPECT_EQ(w.g.GameMoves[i + 1], c.moves[i]) << i + 1;
        for (int slot = 0; slot <= w.last; ++slot)
            EXPECT_EQ(w.g.GameComments[static_cast<size_t>(slot)], c.comments.count(slot) ? c.comments.at(slot) : "")
                << "slot " << slot;
    }
}

TEST(Walk, TokensMarksCommentsVariationsAndLineComments) {
    CheckWalks({
        // Move numbers drop out, with or without a blank behind them.
        {{"1. e4 e5 2. Nf3"}, {"e4", "e5", "Nf3"}, {}}, {{"1. e4 1... e5 2.Nf3"}, {"e4", "e5", "Nf3"}, {}},
        // A comment belongs to the ply before it; two are joined by CR LF.
        {{"e4 {best} e5"}, {"e4", "e5"}, {{1, "best"}}}, {{"{Opening words} e4"}, {"e4"}, {{0, "Opening words"}}},
        {{"e4 {a} {b}"}, {"e4"}, {{1, "a\r\nb"}}},
        // A note replaces what the ply's comment held; a comment is added behind it.
        {{"e4! {a}"}, {"e4"}, {{1, "A good move\r\na"}}}, {{"e4 {a} $1"}, {"e4"}, {{1, "good Move"}}},
        {{"e4 e5 ?"}, {"e4", "e5"}, {{2, "A weak move!"}}},
        {{"e4 1-0 e5"}, {"e4", "e5"}, {{1, "White wins"}}},  // a result doesn't end the game
        // A comment that closes inside an open token goes to the ply before it.
        {{"d4 e4{a} e5"}, {"d4", "e4", "e5"}, {{1, "a"}}}, {{"e4{a}e5"}, {"e4e5"}, {{0, "a"}}},
        {{"e4 {ab", "cd} e5"}, {"e4", "e5"}, {{1, "ab \r\n cd"}}}, {{"e4{ab", "cd}e5"}, {"e4e5"}, {{0, "ab \r\n cd"}}},
        // The opening line adds only its closing blank and CR LF, which isn't
        // blank, so the next line gets a blank in front.
        {{"e4 {", "x}"}, {"e4"}, {{1, " \r\n x"}}},
        // Nothing nests inside a comment.
        {{"e4 {a (b; {c} e5"}, {"e4", "e5"}, {{1, "a (b; {c"}}},
        // Closers outside a comment are token characters; only a blank separates tokens.
        {{"e4 ) } e5"}, {"e4", "e5"}, {}}, {{"e4 e5) Nf3}"}, {"e4", "e5)", "Nf3}"}, {}},
        {{"e4\te5  Nf3"}, {"e4\te5", "Nf3"}, {}},
        // A comment or variation left open is the last ply's comment; an open token is dropped.
        {{"e4! {open", "still"}, {"e4"}, {{1, "open \r\n still \r\n"}}},
        {{"e4 {a} (d4 d5"}, {"e4"}, {{1, "(d4 d5 \r\n"}}}, {{"e4 e5{x"}, {"e4"}, {{1, "x \r\n"}}},
        // Variations nest; they and line comments go to the ply before them.
        {{"e4 (1. d4 d5) e5"}, {"e4", "e5"}, {{1, "(1. d4 d5)"}}},
        {{"e4 (a (b) c) e5"}, {"e4", "e5"}, {{1, "(a (b) c)"}}},
        {{"e4 (1. d4", "d5) e5"}, {"e4", "e5"}, {{1, "(1. d4 \r\n d5)"}}},
        // Inside a variation "{" and ";" are text, and the ")" between the
        // braces closes it; what follows is read as tokens again.
        {{"e4 (a {b) c} ; d) e5"}, {"e4", "c}"}, {{1, "(a {b)"}, {2, " d) e5 "}}},
        {{"e4 ; a fine move", "e5"}, {"e4", "e5"}, {{1, " a fine move "}}},
        // The token in front of the ";" stays open into the next line.
        {{"d4 e4;x", "e5"}, {"d4", "e4e5"}, {{1, "x "}}}, {{"e4 {a} ;b"}, {"e4"}, {{1, "a\r\nb "}}},
        // SAN comment indicators.
        {{"e4 {best} e5"}, {"e4", "e5"}, {{1, "best"}}, "{", "}"},
        {{"e4 //best// e5 //x/y//"}, {"e4", "e5"}, {{1, "best"}, {2, "x/y"}}, "//", "//"},
        {{"e4 //ab", "cd// e5"}, {"e4", "e5"}, {{1, "ab \r\n cd"}}, "//", "//"},
        {{"e4 (*a (b) *) e5"}, {"e4", "e5"}, {{1, "a (b) "}}, "(*", "*)"},
        {{"e4 <a> e5"}, {"e4", "<a>", "e5"}, {}, "<<", ">>"},  // one character of a pair does nothing
        {{"Nc3 CabCdc e5 C"}, {"Nc3", "e5"}, {{1, "abCd"}, {2, " \r\n"}}, "C", "c"},  // case is minded
        // No variations or line comments.
        {{"e4 (d4) e5;x"}, {"e4", "(d4)", "e5;x"}, {}, "{", "}"},
        // Indicators of other lengths never match: "{{{x}}}" is seven characters, dropped.
        {{"e4 {{{x}}} e5"}, {"e4", "e5"}, {}, "{{{", "}}}"}, {{"e4 {x} e5"}, {"e4", "{x}", "e5"}, {}, "", ""},
    });
}

TEST(Walk, TwoHundredFiftyPliesFitAndTheNextIsASubscriptError) {
    std::string plies;
    for (int i = 0; i < 125; ++i) plies += "Nf3 Nf6 ";
    Walked w = WalkLines({plies.c_str(), "$1 {last words}"});
    EXPECT_EQ(w.last, 250);
    EXPECT_EQ(w.g.GameMoves[250].str() + " " + w.g.GameComments[250], "Nf6 good Move\r\nlast words");
    EXPECT_THROW(WalkLines({(plies + "Nf3").c_str()}), Error);  // its text and number: see the store's tests
}

}  // namespace

// A slot keeps short texts in place and long ones aside: every length either
// way, and a short text after a long one, reads back whole; the word of a
// short text has nothing of what the slot held before.
TEST(SlotText, EveryLengthReadsBackAndAShortTextHidesWhatStoodBefore) {
    using vantrel::import::SlotText;
    SlotText slot;
    const std::string letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    for (size_t size = 0; size <= letters.size(); ++size) {
        slot = std::string(40, 'x');  // a long text first
        slot = letters.substr(0, size);
        EXPECT_EQ(slot, letters.substr(0, size)) << size;
        SlotText copy = slot;
        EXPECT_EQ(copy.view(), letters.substr(0, size)) << size;
        if (size >= 2 && size <= 8) {
            slot = "zzzzzzzzzzzzzzzzzzzz";
            slot.AssignShort(letters.data(), size);
            EXPECT_EQ(slot, letters.substr(0, size)) << size;
        }
        uint64_t word = 0;
        if (size >= 1 && size <= 7) std::memcpy(&word, letters.data(), size);
        EXPECT_EQ(slot.ShortBytes(), word) << size;
    }
}
