// The PGN game reader: remarks ahead of the first game, the tag section, the
// game's name, and where a game's move text ends.
#include <gtest/gtest.h>

#include <string>

#include "import/readers.h"

namespace {

using namespace vantrel::import;

class PgnReader : public ::testing::Test {
protected:
    void SetUp() override {
        tags.chkTag = {true, false, false, false, false, false, false};
        tags.chkIgnoreQuestion = true;
    }
    void Load(std::string text) {
        src.OpenText(std::move(text));
        st = ImportState{};
        st.ImportFile = &src;
    }
    int16_t Next() { return ReadPgnGame(st, g, tags); }
    // The name a single tag section gives with the tags chosen now.
    std::string NameOf(const std::string& tagLines) {
        Load(tagLines + "\n\n1. e4\n");
        EXPECT_EQ(Next(), 1);
        return g.GameMoves[0];
    }

    LineSource src;
    ImportState st;
    GameRecord g;
    PgnTagChoice tags;
};

TEST_F(PgnReader, TwoGamesInTheUsualLayout) {
    Load("[Event \"Wch\"]\n[Site \"Moscow\"]\n[Result \"1-0\"]\n\n"
         "1. e4 e5 2. Nf3 {best} Nc6 1-0\n\n"
         "[Event \"Open\"]\n[White \"Tal\"]\n\n1. d4 d5 *\n");
    EXPECT_EQ(Next(), 4);
    EXPECT_EQ(g.GameMoves[0], "Wch");
    EXPECT_EQ(g.GameComments[0], "\r\n[Event \"Wch\"]\r\n[Site \"Moscow\"]\r\n[Result \"1-0\"]");
    EXPECT_EQ(g.GameMoves[1], "e4");
    EXPECT_EQ(g.GameMoves[4], "Nc6");
    EXPECT_EQ(g.GameComments[3], "best");
    EXPECT_EQ(g.GameComments[4], "White wins");
    EXPECT_FALSE(st.ImportAtEnd);
    EXPECT_FALSE(st.ImportFirstGame);
    EXPECT_EQ(st.ImportLine, "[Event \"Open\"]");
    EXPECT_EQ(st.ImportRemarks, "");

    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(g.GameMoves[0], "Open");
    EXPECT_EQ(g.GameComments[0], "\r\n[Event \"Open\"]\r\n[White \"Tal\"]");
    EXPECT_EQ(g.GameMoves[1], "d4");
    EXPECT_EQ(g.GameMoves[3], "");  // the record starts empty for each game
    EXPECT_EQ(g.GameComments[3], "");
    EXPECT_EQ(g.GameComments[2], "Result of game is unknown");
    EXPECT_TRUE(st.ImportAtEnd);
}

TEST_F(PgnReader, NameIsMadeOfTheChosenTagsInOrder) {
    const std::string section =
        "[Event \"E\"]\n[Site \"S\"]\n[Date \"2001.02.03\"]\n[Round \"1\"]\n"
        "[White \"W\"]\n[Black \"B\"]\n[Result \"1-0\"]";
    tags.chkTag = {true, true, true, true, true, true, true};
    EXPECT_EQ(NameOf(section), "E S 2001.02.03 1 W B 1-0");
    tags.chkTag = {false, false, false, false, true, true, false};
    EXPECT_EQ(NameOf(section), "W B");
    tags.chkTag = {false, false, false, false, false, false, true};
    EXPECT_EQ(NameOf(section), "1-0");
    // Tags given in another order in the file still come in the same order.
    tags.chkTag = {true, false, false, false, true, false, false};
    EXPECT_EQ(NameOf("[White \"W\"]\n[Event \"E\"]"), "E W");
}

TEST_F(PgnReader, MissingOrEmptyTagsLeaveNoGap) {
    tags.chkTag = {true, false, false, false, true, true, false};
    EXPECT_EQ(NameOf("[Event \"\"]\n[White \"W\"]\n[Black \"\"]"), "W");
    EXPECT_EQ(NameOf("[Black \"B\"]"), "B");
    // A game that lacks all the chosen tags has an empty name.
    tags.chkTag = {false, false, false, false, true, false, false};
    EXPECT_EQ(NameOf("[Event \"E\"]"), "");
}

TEST_F(PgnReader, TagsMatchByTheFrontOfTheLineInAnyCase) {
    tags.chkTag = {true, false, false, false, true, false, false};
    EXPECT_EQ(NameOf("[event \"lower\"]\n[WHITE \"UPPER\"]"), "lower UPPER");
    // A WhiteElo line behind the White line is taken as White and spoils it.
    tags.chkTag = {false, false, false, false, true, false, false};
    EXPECT_EQ(NameOf("[White \"Tal\"]\n[WhiteElo \"2700\"]"), "o \"2700");
    // EventDate counts as Event; its value starts inside the longer name.
    tags.chkTag = {true, false, false, false, false, false, false};
    EXPECT_EQ(NameOf("[Event \"Wch\"]\n[EventDate \"1960.03.15\"]"), "te \"1960.03.15");
}

TEST_F(PgnReader, QuestionMarksAreTakenOutWithTheirDots) {
    tags.chkTag = {true, false, true, true, false, false, false};
    EXPECT_EQ(NameOf("[Event \"E\"]\n[Date \"1999.??.??\"]\n[Round \"?\"]"), "E 1999");
    EXPECT_EQ(NameOf("[Event \"E\"]\n[Date \"????.??.??\"]\n[Round \"3\"]"), "E 3");
    EXPECT_EQ(NameOf("[Event \"a.?.b\"]"), "ab");
    EXPECT_EQ(NameOf("[Event \"?x x.?y x?.y x?y\"]"), "x xy xy xy");
    EXPECT_EQ(NameOf("[Event \"  wide   open  \"]"), "wide open");

    tags.chkIgnoreQuestion = false;
    EXPECT_EQ(NameOf("[Event \"E\"]\n[Date \"1999.??.??\"]\n[Round \"?\"]"), "E 1999.??.?? ?");
}

TEST_F(PgnReader, TagValueWithNegativeLengthIsAnError) {
    for (const char* line : {"[Event]", "[Site \"Moscow\"", "[Date x]", "[RESULT \"\"", "[Round"}) {
        Load(std::string(line) + "\n\n1. e4\n");
        try {
            Next();
            ADD_FAILURE() << line;
        } catch (const ImportError& e) {
            EXPECT_EQ(e.number(), 5) << line;
            EXPECT_STREQ(e.what(), "Invalid procedure call or argument");
        }
    }
    // Lines that are no known tag are never taken apart.
    for (const char* line : {"[Foo]", "[Ev", "[", "[Whit \"x\"]"}) {
        Load(std::string(line) + "\n\n1. e4\n");
        EXPECT_EQ(Next(), 1) << line;
    }
}

TEST_F(PgnReader, EveryTagLineGoesTrimmedIntoTheComment) {
    // A line that is no known tag changes no value.
    Load("   [Event \"E\"]   \n  [Annotator \"Me\"]\n\n1. e4\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameMoves[0], "E");
    EXPECT_EQ(g.GameComments[0], "\r\n[Event \"E\"]\r\n[Annotator \"Me\"]");
}

TEST_F(PgnReader, LineRightUnderTheTagsIsLost) {
    Load("[Event \"x\"]\n1. e4 e5\n2. Nf3 Nc6\n");
    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(g.GameMoves[1], "Nf3");
    EXPECT_EQ(g.GameMoves[2], "Nc6");
}

TEST_F(PgnReader, RemarksAheadOfTheFirstGame) {
    Load("\n\n  Intro  \n\nmore\n%not dropped here\n[Event \"x\"]\n\n1. e4\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(st.ImportRemarks, "Intro\r\n\r\nmore\r\n%not dropped here\r\n");
    EXPECT_EQ(g.GameMoves[0], "x");
}

TEST_F(PgnReader, PercentLines) {
    // Dropped in the move text, also in the middle of a comment.
    Load("[Event \"x\"]\n\n1. e4 {a\n% 2. d4\nb} e5\n");
    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(g.GameMoves[2], "e5");
    EXPECT_EQ(g.GameComments[1], "a \r\n b");
    // In the tag section such a line ends the section and is dropped.
    Load("[Event \"x\"]\n%junk\n[Site \"s\"]\n1. e4\n");
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(g.GameComments[0], "\r\n[Event \"x\"]");
    EXPECT_EQ(st.ImportLine, "[Site \"s\"]");
}

TEST_F(PgnReader, BracketLineInsideACommentEndsTheGame) {
    Load("[Event \"a\"]\n\n1. e4 {a comment\n[that looks like a tag] more}\n2. Nf3 Nc6\n3. Bb5\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameComments[1], "a comment \r\n");
    EXPECT_EQ(st.ImportLine, "[that looks like a tag] more}");
    EXPECT_FALSE(st.ImportAtEnd);

    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameMoves[0], "");
    EXPECT_EQ(g.GameComments[0], "\r\n[that looks like a tag] more}");
    EXPECT_EQ(g.GameMoves[1], "Bb5");  // the line under the "tags" was dropped
    EXPECT_TRUE(st.ImportAtEnd);
}

TEST_F(PgnReader, CommentLeftOpenDoesNotCarryOver) {
    Load("[Event \"a\"]\n\n1. e4 {open\n[Event \"b\"]\n\n1. d4 }x e5\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameComments[1], "open \r\n");
    EXPECT_EQ(Next(), 3);
    EXPECT_EQ(g.GameMoves[2], "}x");
}

TEST_F(PgnReader, FileWithoutATagLine) {
    Load("a\n\nb\nc");
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(st.ImportRemarks, "a\r\n\r\nb\r\n");
    EXPECT_TRUE(st.ImportAtEnd);
}

TEST_F(PgnReader, FileEndingInATagSection) {
    // The last line of the file is not looked at.
    Load("intro\n[Event \"a\"]\n");
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(st.ImportRemarks, "intro\r\n");
    EXPECT_TRUE(st.ImportAtEnd);

    Load("[Event \"a\"]\n[Site \"b\"]");
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(g.GameMoves[0], "");
    EXPECT_EQ(g.GameComments[0], "");
    EXPECT_TRUE(st.ImportAtEnd);

    Load("[Event \"a\"]\n\n1. e4\n[Event \"b\"]\n[Site \"c\"]\n");
    EXPECT_EQ(Next(), 1);
    EXPECT_FALSE(st.ImportAtEnd);
    EXPECT_EQ(Next(), -1);
    EXPECT_EQ(g.GameMoves[0], "");
    EXPECT_EQ(g.GameMoves[1], "");
    EXPECT_TRUE(st.ImportAtEnd);
}

TEST_F(PgnReader, TagLinesDirectlyUnderTheMoves) {
    Load("[Event \"a\"]\n\n1. e4 e5\n[Event \"b\"]\n\n1. d4\n");
    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(Next(), 1);
    EXPECT_EQ(g.GameMoves[0], "b");
    EXPECT_EQ(g.GameMoves[1], "d4");
}

TEST_F(PgnReader, GameWithANameAndNoMove) {
    Load("[Event \"a\"]\n\n\n[Event \"b\"]\n\n1-0\n");
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(g.GameMoves[0], "a");
    EXPECT_EQ(Next(), 0);
    EXPECT_EQ(g.GameComments[0], "White wins");
}

TEST_F(PgnReader, EmptyFileFailsOnTheFirstRead) {
    Load("");
    try {
        Next();
        FAIL() << "an empty file gave a result";
    } catch (const ImportError& e) {
        EXPECT_EQ(e.number(), 62);
    }
}

}  // namespace
