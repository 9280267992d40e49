// The SAN game reader: "!" lines name the games, and comments stand between
// two indicators given by the user.
#include <gtest/gtest.h>

#include <string>

#include "import/readers.h"

namespace {

using namespace vantrel::import;

class SanReader : public ::testing::Test {
protected:
    void Load(std::string text) {
        src.OpenText(std::move(text));
        st = ImportState{};
        st.ImportFile = &src;
    }
    int16_t Next(const std::string& start = "{", const std::string& end = "}") {
        return ReadSanGame(st, g, start, end);
    }

    LineSource src;
    ImportState st;
    GameRecord g;
};

TEST_F(SanReader, GamesNamedByBangLines) {
    Load("Opening notes\n\nby me\n! First game\n1. e4 {best} e5 2. Nf3\n!  Second  \nd4 d5\n");
    EXPECT_EQ(Next(), 3);
    EXPECT_EQ(st.ImportRemarks, "Opening notes\r\n\r\nby me\r\n");
    // The first name isn't trimmed behind the "!"; later ones are.
    EXPECT_EQ(g.GameMoves[0], " First game");
    EXPECT_EQ(g.GameComments[0], "");
    EXPECT_EQ(g.GameMoves[1], "e4");
    EXPECT_EQ(g.GameComments[1], "best");
    EXPECT_EQ(g.GameMoves[3], "Nf3");
    EXPECT_EQ(st.ImportLine, "  Second");
    EXPECT_FALSE(st.ImportAtEnd);

    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(g.GameMoves[0], "Second");
    EXPECT_EQ(g.GameMoves[2], "d5");
    EXPECT_EQ(g.GameMoves[3], "");
    EXPECT_EQ(g.GameComments[1], "");
    EXPECT_TRUE(st.ImportAtEnd);
}

TEST_F(SanReader, BlankLinesAheadOfTheFirstGameAreRemarks) {
    Load("\n\n  x  \n!G\ne4\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(st.ImportRemarks, "\r\n\r\nx\r\n");
}

TEST_F(SanReader, BangAloneGivesAnEmptyName) {
    Load("!\ne4 e5\n!\nd4\n");
    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(g.GameMoves[0], "");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameMoves[0], "");
}

TEST_F(SanReader, BangLineEndsTheGameInsideAComment) {
    Load("!A\ne4 {open\n  !B\ne5 }x\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameComments[1], "open \r\n");
    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(g.GameMoves[0], "B");
    EXPECT_EQ(g.GameMoves[1], "e5");
    EXPECT_EQ(g.GameMoves[2], "}x");  // no comment is open in the new game
}

TEST_F(SanReader, TwoCharacterIndicatorsAndTrimming) {
    Load("!G\ne4 //best// e5 //x\n");
    EXPECT_EQ(Next(" // ", "// "), 2);
    EXPECT_EQ(g.GameComments[1], "best");
    EXPECT_EQ(g.GameComments[2], "x \r\n");
}

TEST_F(SanReader, ThreeCharacterIndicatorsAreTokens) {
    Load("!G\ne4 <<< e5 >>> Nf3\n");
    EXPECT_EQ(Next("<<<", ">>>"), 5);
    EXPECT_EQ(g.GameMoves[2], "<<<");
    EXPECT_EQ(g.GameMoves[3], "e5");
    EXPECT_EQ(g.GameMoves[4], ">>>");
    EXPECT_EQ(g.GameComments[1], "");
}

TEST_F(SanReader, PgnSignsArePlainMoveText) {
    Load("!G\n[Event\n% e4\ne5 (d4) ;\n");
    EXPECT_EQ(Next(), 4);
    EXPECT_EQ(g.GameMoves[1], "[Event");
    EXPECT_EQ(g.GameMoves[2], "e4");
    EXPECT_EQ(g.GameMoves[3], "e5");
    EXPECT_EQ(g.GameMoves[4], "(d4)");
}

TEST_F(SanReader, MoveLinesAreWalkedUntrimmed) {
    Load("!G\ne4 {ab\n   cd}\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameComments[1], "ab \r\n    cd");
}

TEST_F(SanReader, MarksCodesAndResults) {
    Load("!G\n1. e4! $3 e5? 1-0 2.Nf3\n");
    EXPECT_EQ(Next(), 3);
    EXPECT_EQ(g.GameComments[1], "very good move");
    EXPECT_EQ(g.GameComments[2], "White wins");
    EXPECT_EQ(g.GameMoves[3], "Nf3");
}

TEST_F(SanReader, FileWithoutABangLine) {
    Load("a\n\nb\nc\n");
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(st.ImportRemarks, "a\r\n\r\nb\r\n");
    EXPECT_TRUE(st.ImportAtEnd);
    // The tree store stops here; asked again the reader still finds nothing.
    EXPECT_EQ(Next(), -1);
}

TEST_F(SanReader, BangOnTheLastLineIsNotLookedAt) {
    Load("intro\n!G");
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(st.ImportRemarks, "intro\r\n");
    EXPECT_EQ(g.GameMoves[0], "");
}

TEST_F(SanReader, FileEndingInAComment) {
    Load("!G\ne4 e5 {a} Nf3 {open");
    EXPECT_EQ(Next(), 3);
    EXPECT_EQ(g.GameComments[2], "a");
    EXPECT_EQ(g.GameComments[3], "open \r\n");
}

TEST_F(SanReader, EmptyFileFailsOnTheFirstRead) {
    Load("");
    EXPECT_THROW(Next(), ImportError);
}

}  // namespace
