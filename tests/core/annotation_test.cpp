// What a single token of game text means: move, mark, numeric code or result.
#include <gtest/gtest.h>

#include <string>

#include "chess/annotation.h"

namespace {

using vantrel::chess::NagText;
using vantrel::chess::ParseToken;

struct Parsed {
    bool isMove;
    std::string move;
    std::string note;
};

Parsed Parse(const std::string& token) {
    Parsed p{false, "stale", "stale"};
    p.isMove = ParseToken(token, p.move, p.note);
    return p;
}

void ExpectMove(const std::string& token, const std::string& move, const std::string& note) {
    Parsed p = Parse(token);
    EXPECT_TRUE(p.isMove) << token;
    EXPECT_EQ(p.move, move) << token;
    EXPECT_EQ(p.note, note) << token;
}

void ExpectNoMove(const std::string& token, const std::string& note) {
    Parsed p = Parse(token);
    EXPECT_FALSE(p.isMove) << token;
    EXPECT_EQ(p.move, "") << token;
    EXPECT_EQ(p.note, note) << token;
}

TEST(ParseToken, MoveNumbersAndDotsComeOff) {
    ExpectMove("1.e4", "e4", "");
    ExpectMove("12...Nf6", "Nf6", "");
    ExpectMove("...Nf6", "Nf6", "");
    ExpectMove("7Nf3", "Nf3", "");
    ExpectMove("  e4  ", "e4", "");
    ExpectNoMove("1.", "");
    ExpectNoMove("12", "");
    ExpectNoMove("3...", "");
    ExpectNoMove("...", "");
    ExpectNoMove("", "");
    ExpectNoMove("   ", "");
}

TEST(ParseToken, SuffixMarksGiveTheirNote) {
    ExpectMove("e4!?", "e4", "An interesting move");
    ExpectMove("e4?!", "e4", "A dubious move");
    ExpectMove("e4??", "e4", "A blunder!");
    ExpectMove("e4!", "e4", "A good move");
    ExpectMove("e4?", "e4", "A weak move");
    ExpectMove("Qxf7#", "Qxf7", "Checkmate");
    ExpectMove("Qxf7++", "Qxf7", "Checkmate");
    ExpectMove("e8=Q+", "e8=Q", "Check");
    ExpectMove("e8=Q", "e8=Q", "");
    ExpectMove("Nf3=", "Nf3", "Both sides are considered equal here");
    ExpectMove("Nf3*", "Nf3", "Result of game is unknown");
    ExpectMove("d4+-+", "d4", "Draw");
    ExpectMove("d4+/=", "d4", "White has a slight advantage");
    ExpectMove("d4=/+", "d4", "Black has a slight advantage");
    ExpectMove("d4+/-", "d4", "White has a clear advantage");
    ExpectMove("d4-/+", "d4", "Black has a clear advantage");
}

TEST(ParseToken, OnlyTheLastOfTwoMarksComesOff) {
    ExpectMove("Nf3+!", "Nf3+", "A good move");
    ExpectMove("Nf3!!", "Nf3!", "A good move");
    // The longer mark is tried first: "+-+" and not "+".
    ExpectMove("Rd1+-+", "Rd1", "Draw");
}

TEST(ParseToken, CastlingIsProtectedFromTheNumberRule) {
    ExpectMove("O-O", "O-O", "");
    ExpectMove("O-O-O", "O-O-O", "");
    ExpectMove("0-0", "0-0", "");
    ExpectMove("0-0-0", "0-0-0", "");
    ExpectMove("00", "00", "");
    ExpectMove("000", "000", "");
    ExpectMove("0-0+", "0-0", "Check");
    ExpectMove("12.0-0", "0-0", "");
}

TEST(ParseToken, WholeTokenMarksAndResults) {
    ExpectNoMove("!", "A good move");
    ExpectNoMove("?", "A weak move!");
    ExpectNoMove("+", "Check");
    ExpectNoMove("#", "Checkmate");
    ExpectNoMove("=", "Both sides are considered equal here");
    ExpectNoMove("*", "Result of game is unknown");
    ExpectNoMove("++", "Checkmate");
    ExpectNoMove("!?", "An interesting move");
    ExpectNoMove("?!", "A dubious move");
    ExpectNoMove("??", "A blunder!");
    ExpectNoMove("1-0", "White wins");
    ExpectNoMove("1:0", "White wins");
    ExpectNoMove("0-1", "Black wins");
    ExpectNoMove("0:1", "Black wins");
    ExpectNoMove("+-+", "Draw");
    ExpectNoMove("+/=", "White has a slight advantage");
    ExpectNoMove("=/+", "Black has a slight advantage");
    ExpectNoMove("+/-", "White has a clear advantage");
    ExpectNoMove("-/+", "Black has a clear advantage");
    ExpectNoMove(".5-.5", "Draw");
    ExpectNoMove("1/2-1/2", "Draw");
    ExpectNoMove("1/2:1/2", "Draw");
    // A move number in front of a mark comes off first.
    ExpectNoMove("23.+", "Check");
}

TEST(ParseToken, HalfAloneIsNoResult) {
    // The leading digit goes like a move number; what is left passes on.
    ExpectMove("1/2", "/2", "");
}

TEST(ParseToken, SingleCharactersOutsideTheTableGiveNothing) {
    ExpectNoMove("a", "");
    ExpectNoMove(")", "");
    ExpectNoMove("}", "");
    ExpectNoMove("1.a", "");
}

TEST(ParseToken, LengthMustBeTwoToSix) {
    ExpectMove("exd8=Q", "exd8=Q", "");
    ExpectNoMove("exd8=Q#!", "A good move");  // exd8=Q# is seven characters
    ExpectNoMove("Nbd7xe5", "");
    ExpectNoMove("!!", "A good move");  // the move left is "!" alone
    ExpectMove("e4$1", "e4$1", "");     // a code glued to a move is no mark
    ExpectMove("Nf3$14", "Nf3$14", "");
}

TEST(ParseToken, OutputsAreEmptiedOnEntry) {
    std::string move = "old", note = "old";
    EXPECT_FALSE(ParseToken("5.", move, note));
    EXPECT_EQ(move, "");
    EXPECT_EQ(note, "");
}

TEST(ParseToken, DollarCodes) {
    ExpectNoMove("$1", "good Move");
    ExpectNoMove("$3", "very good move");
    ExpectNoMove("$139", "Black has severe time control pressure");
    ExpectNoMove("$0", "");
    ExpectNoMove("$140", "");
    ExpectNoMove("$99999999999999999999", "");
    ExpectNoMove("$x", "");
    ExpectNoMove("$", "");
    ExpectNoMove("$1x", "");
}

TEST(NagText, KnownCodes) {
    std::string note;
    const std::pair<const char*, const char*> cases[] = {
        {"$1", "good Move"},
        {"$2", "poor Move"},
        {"$4", "very poor move"},
        {"$5", "speculative Move"},
        {"$6", "questionable Move"},
        {"$7", "forced move (all others lose quickly)"},
        {"$8", "singular move (no reasonable alternatives)"},
        {"$9", "worst Move"},
        {"$10", "drawish position"},
        {"$11", "equal chances, quiet position"},
        {"$12", "equal chances, active position"},
        {"$13", "unclear position"},
        {"$14", "White has a slight advantage"},
        {"$19", "Black has a decisive advantage"},
        {"$20", "White has a crushing advantage (Black should resign)"},
        {"$21", "Black has a crushing advantage (White should resign)"},
        {"$22", "White is in zugzwang"},
        {"$35", "Black has a decisive time (development) advantage"},
        {"$46", "White has more than adequate compensation for material deficit"},
        {"$66", "White has a vulnerable first rank"},
        {"$69", "Black has a well protected first rank"},
        {"$80", "White has a moderately weak pawn structure"},
        {"$105", "Black has good piece coordination"},
        {"$114", "White has played the middlegame very poorly"},
        {"$130", "White has slight counterplay"},
        {"$136", "White has moderate time control pressure"},
        {"$01", "good Move"},
    };
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
