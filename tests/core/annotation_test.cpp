// What a single token of game text means: move, mark, numeric code or result.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "chess/annotation.h"

namespace {

using vantrel::chess::NagText;
using vantrel::chess::ParseToken;

// A token, whether it holds a move, the bare move and the note.
struct Token {
    const char* token;
    bool isMove;
    const char* move;
    const char* note;
};

void ExpectTokens(std::initializer_list<Token> tokens) {
    for (const Token& t : tokens) {
        std::string move = "stale", note = "stale";  // emptied on entry
        EXPECT_EQ(ParseToken(t.token, move, note), t.isMove) << t.token;
        EXPECT_EQ(move, t.move) << t.token;
        EXPECT_EQ(note, t.note) << t.token;
    }
}

TEST(ParseToken, MoveNumbersAndDotsComeOff) {
    ExpectTokens({
        {"1.e4", true, "e4", ""},
        {"12...Nf6", true, "Nf6", ""},
        {"...Nf6", true, "Nf6", ""},
        {"7Nf3", true, "Nf3", ""},
        {"  e4  ", true, "e4", ""},
        {"1.", false, "", ""},
        {"12", false, "", ""},
        {"3...", false, "", ""},
        {"...", false, "", ""},
        {"", false, "", ""},
        {"   ", false, "", ""},
        // The leading digit of 1/2 goes like a move number; what is left passes on.
        {"1/2", true, "/2", ""},
    });
}

TEST(ParseToken, SuffixMarksGiveTheirNote) {
    ExpectTokens({
        {"e4!?", true, "e4", "An interesting move"},
        {"e4?!", true, "e4", "A dubious move"},
        {"e4??", true, "e4", "A blunder!"},
        {"e4!", true, "e4", "A good move"},
        {"e4?", true, "e4", "A weak move"},
        {"Qxf7#", true, "Qxf7", "Checkmate"},
        {"Qxf7++", true, "Qxf7", "Checkmate"},
        {"e8=Q+", true, "e8=Q", "Check"},
        {"e8=Q", true, "e8=Q", ""},
        {"Nf3=", true, "Nf3", "Both sides are considered equal here"},
        {"Nf3*", true, "Nf3", "Result of game is unknown"},
        {"d4+-+", true, "d4", "Draw"},
        {"d4+/=", true, "d4", "White has a slight advantage"},
        {"d4=/+", true, "d4", "Black has a slight advantage"},
        {"d4+/-", true, "d4", "White has a clear advantage"},
        {"d4-/+", true, "d4", "Black has a clear advantage"},
        // One pass only: of two marks just the last comes off.
        {"Nf3+!", true, "Nf3+", "A good move"},
        {"Nf3!!", true, "Nf3!", "A good move"},
        // Castling is protected from the number rule.
        {"O-O", true, "O-O", ""},
        {"O-O-O", true, "O-O-O", ""},
        {"0-0", true, "0-0", ""},
        {"0-0-0", true, "0-0-0", ""},
        {"00", true, "00", ""},
        {"000", true, "000", ""},
        {"0-0+", true, "0-0", "Check"},
        {"12.0-0", true, "0-0", ""},
    });
}

TEST(ParseToken, WholeTokenMarksAndResults) {
    ExpectTokens({
        {"!", false, "", "A good move"},
        {"?", false, "", "A weak move!"},
        {"+", false, "", "Check"},
        {"#", false, "", "Checkmate"},
        {"=", false, "", "Both sides are considered equal here"},
        {"*", false, "", "Result of game is unknown"},
        {"++", false, "", "Checkmate"},
        {"!?", false, "", "An interesting move"},
        {"?!", false, "", "A dubious move"},
        {"??", false, "", "A blunder!"},
        {"1-0", false, "", "White wins"},
        {"1:0", false, "", "White wins"},
        {"0-1", false, "", "Black wins"},
        {"0:1", false, "", "Black wins"},
        {"+-+", false, "", "Draw"},
        {"+/=", false, "", "White has a slight advantage"},
        {"=/+", false, "", "Black has a slight advantage"},
        {"+/-", false, "", "White has a clear advantage"},
        {"-/+", false, "", "Black has a clear advantage"},
        {".5-.5", false, "", "Draw"},
        {"1/2-1/2", false, "", "Draw"},
        {"1/2:1/2", false, "", "Draw"},
        {"23.+", false, "", "Check"},  // a move number in front of a mark comes off first
        // Single characters outside the table give nothing.
        {"a", false, "", ""},
        {")", false, "", ""},
        {"}", false, "", ""},
        {"1.a", false, "", ""},
    });
}

TEST(ParseToken, LengthMustBeTwoToSixAndCodesStandAlone) {
    ExpectTokens({
        {"exd8=Q", true, "exd8=Q", ""},
        {"exd8=Q#!", false, "", "A good move"},  // exd8=Q# is seven characters
        {"Nbd7xe5", false, "", ""},
        {"!!", false, "", "A good move"},  // the move left is "!" alone
        {"e4$1", true, "e4$1", ""},        // a code glued to a move is no mark
        {"Nf3$14", true, "Nf3$14", ""},
        {"$1", false, "", "good Move"},
        {"$3", false, "", "very good move"},
        {"$139", false, "", "Black has severe time control pressure"},
        {"$0", false, "", ""},
        {"$140", false, "", ""},
        {"$99999999999999999999", false, "", ""},
        {"$x", false, "", ""},
        {"$", false, "", ""},
        {"$1x", false, "", ""},
    });
}

TEST(NagText, KnownCodes) {
    // Capital letters stand as listed: "good Move" but "very good move".
    const std::pair<const char*, const char*> cases[] = {
        {"$1", "good Move"},
        {"$4", "very poor move"},
        {"$6", "questionable Move"},
        {"$7", "forced move (all others lose quickly)"},
        {"$9", "worst Move"},
        {"$13", "unclear position"},
        {"$14", "White has a slight advantage"},
        {"$21", "Black has a crushing advantage (White should resign)"},
        {"$35", "Black has a decisive time (development) advantage"},
        {"$46", "White has more than adequate compensation for material deficit"},
        {"$80", "White has a moderately weak pawn structure"},
        {"$114", "White has played the middlegame very poorly"},
        {"$01", "good Move"},
    };
    std::string note;
    for (const auto& [token, text] : cases) {
        note = "stale";
        NagText(token, note);
        EXPECT_EQ(note, text) << token;
    }
}

TEST(NagText, EveryCodeHasTextAndTheSidesAlternate) {
    std::string note;
    for (int n = 1; n <= 139; ++n) {
        NagText("$" + std::to_string(n), note);
        EXPECT_FALSE(note.empty()) << n;
        if (n >= 14) {
            const char* side = n % 2 == 0 ? "White " : "Black ";
            EXPECT_EQ(note.rfind(side, 0), 0u) << n << ": " << note;
        }
    }
    for (const char* token : {"$0", "$140", "$-1", "$", "", "$ 1"}) {
        note = "stale";
        NagText(token, note);
        EXPECT_EQ(note, "") << token;
    }
}

}  // namespace
