// What a single token of game text means: move, mark, numeric code or result.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "chess/annotation.h"

namespace {

using vantrel::chess::NagText;
using vantrel::chess::ParseToken;

TEST(ParseToken, MovesMarksCodesAndResults) {
    // A token, whether it holds a move, the bare move and the note.
    struct Token {
        const char *token;
        bool isMove;
        const char *move, *note;
    };
    const Token tokens[] = {
        // Move numbers and dots come off; the leading digit of 1/2 goes like a move number.
        {"1.e4", true, "e4", ""}, {"12...Nf6", true, "Nf6", ""}, {"...Nf6", true, "Nf6", ""}, {"7Nf3", true, "Nf3", ""},
        {"  e4  ", true, "e4", ""}, {"1.", false, "", ""}, {"12", false, "", ""}, {"3...", false, "", ""},
        {"...", false, "", ""}, {"", false, "", ""}, {"   ", false, "", ""}, {"1/2", true, "/2", ""},
        // Suffix marks give their note; one pass only: of two marks just the last comes off.
        {"e4!?", true, "e4", "An interesting move"}, {"e4?!", true, "e4", "A dubious move"},
        {"e4??", true, "e4", "A blunder!"}, {"e4!", true, "e4", "A good move"}, {"e4?", true, "e4", "A weak move"},
        {"Qxf7#", true, "Qxf7", "Checkmate"}, {"Qxf7++", true, "Qxf7", "Checkmate"}, {"e8=Q+", true, "e8=Q", "Check"},
        {"e8=Q", true, "e8=Q", ""}, {"Nf3=", true, "Nf3", "Both sides are considered equal here"},
        {"Nf3*", true, "Nf3", "Result of game is unknown"}, {"d4+-+", true, "d4", "Draw"},
        {"d4+/=", true, "d4", "White has a slight advantage"}, {"d4=/+", true, "d4", "Black has a slight advantage"},
        {"d4+/-", true, "d4", "White has a clear advantage"}, {"d4-/+", true, "d4", "Black has a clear advantage"},
        {"Nf3+!", true, "Nf3+", "A good move"}, {"Nf3!!", true, "Nf3!", "A good move"},
        // Castling is protected from the number rule.
        {"O-O", true, "O-O", ""}, {"O-O-O", true, "O-O-O", ""}, {"0-0", true, "0-0", ""}, {"0-0-0", true, "0-0-0", ""},
        {"00", true, "00", ""}, {"000", true, "000", ""}, {"0-0+", true, "0-0", "Check"}, {"12.0-0", true, "0-0", ""},
        // Whole-token marks and results; single characters outside the table give nothing.
        {"!", false, "", "A good move"}, {"?", false, "", "A weak move!"}, {"+", false, "", "Check"},
        {"#", false, "", "Checkmate"}, {"=", false, "", "Both sides are considered equal here"},
        {"*", false, "", "Result of game is unknown"}, {"++", false, "", "Checkmate"},
        {"!?", false, "", "An interesting move"}, {"?!", false, "", "A dubious move"}, {"??", false, "", "A blunder!"},
        {"1-0", false, "", "White wins"}, {"1:0", false, "", "White wins"}, {"0-1", false, "", "Black wins"},
        {"0:1", false, "", "Black wins"}, {"+-+", false, "", "Draw"},
        {"+/=", false, "", "White has a slight advantage"},
        {"=/+", false, "", "Black has a slight advantage"}, {"+/-", false, "", "White has a clear advantage"},
        {"-/+", false, "", "Black has a clear advantage"}, {".5-.5", false, "", "Draw"}, {"1/2-1/2", false, "", "Draw"},
        {"1/2:1/2", false, "", "Draw"}, {"23.+", false, "", "Check"}, {"a", false, "", ""}, {")", false, "", ""},
        {"}", false, "", ""}, {"1.a", false, "", ""},
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
}

TEST(NagText, EveryCodeHasItsTextAndTheSidesAlternate) {
    // Capital letters stand as listed: "good Move" but "very good move" (see the table above).
    std::string note;
    NagText("$01", note);
    EXPECT_EQ(note, "good Move");
    NagText("$46", note);
    EXPECT_EQ(note, "White has more than adequate compensation for material deficit");
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

}  // namespace
