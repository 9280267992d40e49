// The walk over move text: tokens, comments, variations, line comments and
// the limits of the game record.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "import/game_record.h"
#include "import/walk.h"

namespace {

using vantrel::import::GameRecord;
using vantrel::import::ImportError;
using vantrel::import::MoveWalker;

struct Walked {
    GameRecord g;
    int16_t last = -1;
};

// Walks the lines as PGN move text of a game whose name is stored (ply 0).
Walked WalkPgn(std::initializer_list<const char*> lines) {
    Walked w;
    MoveWalker walker(w.g);
    walker.UsePgnRules();
    walker.SetPly(0);
    for (const char* line : lines) walker.WalkLine(line);
    w.last = walker.EndGame();
    return w;
}

Walked WalkSan(const char* start, const char* end, std::initializer_list<const char*> lines) {
    Walked w;
    MoveWalker walker(w.g);
    walker.UseSanRules(start, end);
    walker.SetPly(0);
    for (const char* line : lines) walker.WalkLine(line);
    w.last = walker.EndGame();
    return w;
}

TEST(Walk, MoveNumbersDropOut) {
    for (const char* text : {"1. e4 e5 2. Nf3", "1.e4 e5 2.Nf3", "1. e4 1... e5 2.Nf3"}) {
        Walked w = WalkPgn({text});
        EXPECT_EQ(w.last, 3) << text;
        EXPECT_EQ(w.g.GameMoves[1], "e4");
        EXPECT_EQ(w.g.GameMoves[2], "e5");
        EXPECT_EQ(w.g.GameMoves[3], "Nf3");
        for (int i = 0; i <= 3; ++i) EXPECT_EQ(w.g.GameComments[i], "") << text;
    }
}

TEST(Walk, CommentBelongsToThePlyBeforeIt) {
    Walked w = WalkPgn({"e4 {best} e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "best");
    EXPECT_EQ(w.g.GameComments[2], "");

    w = WalkPgn({"{Opening words} e4"});
    EXPECT_EQ(w.g.GameComments[0], "Opening words");
    EXPECT_EQ(w.g.GameComments[1], "");
}

TEST(Walk, TwoCommentsAreJoinedByCrLf) {
    Walked w = WalkPgn({"e4 {a} {b}"});
    EXPECT_EQ(w.g.GameComments[1], "a\r\nb");
}

TEST(Walk, NoteOfAMarkAndLaterComments) {
    Walked w = WalkPgn({"e4! {a}"});
    EXPECT_EQ(w.g.GameComments[1], "A good move\r\na");
    // A note replaces what the ply's comment held.
    w = WalkPgn({"e4 {a} $1"});
    EXPECT_EQ(w.g.GameComments[1], "good Move");
    // A mark standing alone goes to the last move.
    w = WalkPgn({"e4 e5 ?"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[2], "A weak move!");
}

TEST(Walk, CommentClosingInsideAnOpenTokenGoesToThePlyBefore) {
    Walked w = WalkPgn({"d4 e4{a} e5"});
    EXPECT_EQ(w.last, 3);
    EXPECT_EQ(w.g.GameComments[1], "a");
    EXPECT_EQ(w.g.GameMoves[2], "e4");
    EXPECT_EQ(w.g.GameComments[2], "");

    w = WalkPgn({"e4{a}e5"});
    EXPECT_EQ(w.last, 1);
    EXPECT_EQ(w.g.GameMoves[1], "e4e5");
    EXPECT_EQ(w.g.GameComments[0], "a");
}

TEST(Walk, CommentOverTwoLines) {
    Walked w = WalkPgn({"e4 {ab", "cd} e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "ab \r\n cd");
    // A token stays open while a comment runs over the line end.
    w = WalkPgn({"e4{ab", "cd}e5"});
    EXPECT_EQ(w.last, 1);
    EXPECT_EQ(w.g.GameMoves[1], "e4e5");
    EXPECT_EQ(w.g.GameComments[0], "ab \r\n cd");
}

TEST(Walk, CommentOpenedAtTheEndOfALine) {
    // The opening line adds only its closing blank and CR LF, which isn't
    // blank, so the next line gets a blank in front.
    Walked w = WalkPgn({"e4 {", "x}"});
    EXPECT_EQ(w.g.GameComments[1], " \r\n x");
}

TEST(Walk, VariationsBecomeComments) {
    Walked w = WalkPgn({"e4 (1. d4 d5) e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameMoves[1], "e4");
    EXPECT_EQ(w.g.GameComments[1], "(1. d4 d5)");
    EXPECT_EQ(w.g.GameMoves[2], "e5");

    w = WalkPgn({"e4 (a (b) c) e5"});
    EXPECT_EQ(w.g.GameComments[1], "(a (b) c)");
    EXPECT_EQ(w.g.GameMoves[2], "e5");

    w = WalkPgn({"e4 (1. d4", "d5) e5"});
    EXPECT_EQ(w.g.GameComments[1], "(1. d4 \r\n d5)");
    EXPECT_EQ(w.g.GameMoves[2], "e5");
}

TEST(Walk, ParenthesesAreCountedInsideBracesOfAVariation) {
    // Inside a variation "{" and ";" are text, and the ")" between the braces
    // closes it; what follows is read as tokens again.
    Walked w = WalkPgn({"e4 (a {b) c} ; d) e5"});
    EXPECT_EQ(w.g.GameComments[1], "(a {b)");
    EXPECT_EQ(w.g.GameMoves[2], "c}");
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[2], " d) e5 ");
}

TEST(Walk, NothingNestsInsideAComment) {
    Walked w = WalkPgn({"e4 {a (b; {c} e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "a (b; {c");
}

TEST(Walk, LineComment) {
    Walked w = WalkPgn({"e4 ; a fine move", "e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], " a fine move ");
    // The token in front of the ";" stays open into the next line.
    w = WalkPgn({"d4 e4;x", "e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "x ");
    EXPECT_EQ(w.g.GameMoves[2], "e4e5");
    // A line comment is added behind a comment.
    w = WalkPgn({"e4 {a} ;b"});
    EXPECT_EQ(w.g.GameComments[1], "a\r\nb ");
}

TEST(Walk, ClosersOutsideAreTokenCharacters) {
    Walked w = WalkPgn({"e4 ) } e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameMoves[2], "e5");
    w = WalkPgn({"e4 e5) Nf3}"});
    EXPECT_EQ(w.g.GameMoves[2], "e5)");
    EXPECT_EQ(w.g.GameMoves[3], "Nf3}");
}

TEST(Walk, OnlyABlankSeparatesTokens) {
    Walked w = WalkPgn({"e4\te5  Nf3"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameMoves[1], "e4\te5");
    EXPECT_EQ(w.g.GameMoves[2], "Nf3");
}

TEST(Walk, ResultTokenDoesNotEndTheGame) {
    Walked w = WalkPgn({"e4 1-0 e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "White wins");
    EXPECT_EQ(w.g.GameMoves[2], "e5");
}

TEST(Walk, ResultAloneReplacesTheGameComment) {
    Walked w;
    MoveWalker walker(w.g);
    walker.UsePgnRules();
    walker.SetPly(0);
    w.g.GameComments[0] = "\r\n[Event \"x\"]";
    walker.WalkLine("1/2-1/2");
    EXPECT_EQ(walker.EndGame(), 0);
    EXPECT_EQ(w.g.GameComments[0], "Draw");
}

TEST(Walk, UnclosedCommentOrVariationEndsAsTheLastComment) {
    Walked w = WalkPgn({"e4! {open", "still"});
    EXPECT_EQ(w.last, 1);
    EXPECT_EQ(w.g.GameComments[1], "open \r\n still \r\n");
    w = WalkPgn({"e4 {a} (d4 d5"});
    EXPECT_EQ(w.g.GameComments[1], "(d4 d5 \r\n");
    // An open token is dropped.
    w = WalkPgn({"e4 e5{x"});
    EXPECT_EQ(w.last, 1);
    EXPECT_EQ(w.g.GameComments[1], "x \r\n");
}

std::string Plies(int n) {
    std::string text;
    for (int i = 0; i < n; ++i) text += i % 2 == 0 ? "Nf3 " : "Nf6 ";
    return text;
}

TEST(Walk, TwoHundredFiftyPliesFit) {
    Walked w = WalkPgn({Plies(250).c_str(), "$1 {last words}"});
    EXPECT_EQ(w.last, 250);
    EXPECT_EQ(w.g.GameMoves[250], "Nf6");
    EXPECT_EQ(w.g.GameComments[250], "good Move\r\nlast words");
}

TEST(Walk, PlyTwoHundredFiftyOneIsASubscriptError) {
    try {
        WalkPgn({Plies(251).c_str()});
        FAIL() << "251 plies were taken";
    } catch (const ImportError& e) {
        EXPECT_EQ(e.number(), 9);
        EXPECT_STREQ(e.what(), "Subscript out of range");
    }
}

TEST(Walk, SanIndicators) {
    Walked w = WalkSan("{", "}", {"e4 {best} e5"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "best");

    w = WalkSan("//", "//", {"e4 //best// e5 //x/y//"});
    EXPECT_EQ(w.last, 2);
    EXPECT_EQ(w.g.GameComments[1], "best");
    EXPECT_EQ(w.g.GameComments[2], "x/y");

    w = WalkSan("(*", "*)", {"e4 (*a (b) *) e5"});
    EXPECT_EQ(w.g.GameComments[1], "a (b) ");
    EXPECT_EQ(w.g.GameMoves[2], "e5");

    // One character of a pair alone does nothing.
    w = WalkSan("<<", ">>", {"e4 <a> e5"});
    EXPECT_EQ(w.last, 3);
    EXPECT_EQ(w.g.GameMoves[2], "<a>");
}

TEST(Walk, SanHasNoVariationsOrLineComments) {
    Walked w = WalkSan("{", "}", {"e4 (d4) e5;x"});
    EXPECT_EQ(w.last, 3);
    EXPECT_EQ(w.g.GameMoves[2], "(d4)");
    EXPECT_EQ(w.g.GameMoves[3], "e5;x");
    EXPECT_EQ(w.g.GameComments[1], "");
}

TEST(Walk, SanIndicatorsOfOtherLengthsNeverMatch) {
    Walked w = WalkSan("{{{", "}}}", {"e4 {{{x}}} e5"});
    EXPECT_EQ(w.last, 2);  // "{{{x}}}" is seven characters: dropped
    EXPECT_EQ(w.g.GameMoves[2], "e5");
    EXPECT_EQ(w.g.GameComments[1], "");

    w = WalkSan("", "", {"e4 {x} e5"});
    EXPECT_EQ(w.last, 3);
    EXPECT_EQ(w.g.GameMoves[2], "{x}");
}

TEST(Walk, SanIndicatorCaseIsMinded) {
    Walked w = WalkSan("C", "c", {"Nc3 CabCdc e5 C"});
    EXPECT_EQ(w.g.GameMoves[1], "Nc3");
    EXPECT_EQ(w.g.GameComments[1], "abCd");
    EXPECT_EQ(w.g.GameMoves[2], "e5");
    EXPECT_EQ(w.g.GameComments[2], " \r\n");
}

TEST(Walk, SanCommentRunsOverLines) {
    Walked w = WalkSan("//", "//", {"e4 //ab", "cd// e5"});
    EXPECT_EQ(w.g.GameComments[1], "ab \r\n cd");
    EXPECT_EQ(w.g.GameMoves[2], "e5");
}

}  // namespace
