// The PGN game reader: remarks ahead of the first game, the tag section, the
// game's name, and where a game's move text ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "import/readers.h"
#include "reader_test_support.h"

namespace {

using namespace vantrel::import;
using namespace vantrel::import::testing;

class PgnReader : public ::testing::Test {
protected:
    void SetUp() override { Choose("1000000"); }
    void Choose(const std::string& mask, bool ignoreQuestion = true) {
        for (size_t i = 0; i < 7; ++i) tags.chkTag[i] = mask[i] == '1';
        tags.chkIgnoreQuestion = ignoreQuestion;
    }
    void Load(std::string text) {
        src.OpenText(std::move(text));
        st = ImportState{};
        st.ImportFile = &src;
    }
    int16_t Next() { return ReadPgnGame(st, g, tags); }

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
    EXPECT_EQ(Joined(g.GameMoves, 4), "Wch|e4|e5|Nf3|Nc6");
    EXPECT_EQ(Joined(g.GameComments, 4),
              "\r\n[Event \"Wch\"]\r\n[Site \"Moscow\"]\r\n[Result \"1-0\"]|||best|White wins");
    EXPECT_FALSE(st.ImportAtEnd);
    EXPECT_FALSE(st.ImportFirstGame);
    EXPECT_EQ(st.ImportLine, "[Event \"Open\"]");
    EXPECT_EQ(st.ImportRemarks, "");

    // The record starts empty for each game.
    EXPECT_EQ(Next(), 2);
    EXPECT_EQ(Joined(g.GameMoves, 4), "Open|d4|d5||");
    EXPECT_EQ(Joined(g.GameComments, 4), "\r\n[Event \"Open\"]\r\n[White \"Tal\"]||Result of game is unknown||");
    EXPECT_TRUE(st.ImportAtEnd);
}

TEST_F(PgnReader, TheNameIsMadeOfTheChosenTags) {
    const std::string all =
        "[Event \"E\"]\n[Site \"S\"]\n[Date \"2001.02.03\"]\n[Round \"1\"]\n"
        "[White \"W\"]\n[Black \"B\"]\n[Result \"1-0\"]";
    const std::string unknown = "[Event \"E\"]\n[Date \"1999.??.??\"]\n[Round \"?\"]";
    struct Case {
        const char* mask;  // Event Site Date Round White Black Result
        std::string section;
        const char* name;
        bool ignoreQuestion = true;
    };
    const Case cases[] = {
        {"1111111", all, "E S 2001.02.03 1 W B 1-0"},
        {"0000110", all, "W B"},
        {"0000001", all, "1-0"},
        // Tags given in another order in the file still come in the same order.
        {"1000100", "[White \"W\"]\n[Event \"E\"]", "E W"},
        // Missing or empty tags leave no gap; lacking them all gives no name.
        {"1000110", "[Event \"\"]\n[White \"W\"]\n[Black \"\"]", "W"},
        {"1000110", "[Black \"B\"]", "B"},
        {"0000100", "[Event \"E\"]", ""},
        // Tags match by the front of the line in any case: a WhiteElo line
        // behind White spoils it, EventDate counts as Event.
        {"1000100", "[event \"lower\"]\n[WHITE \"UPPER\"]", "lower UPPER"},
        {"0000100", "[White \"Tal\"]\n[WhiteElo \"2700\"]", "o \"2700"},
        {"1000000", "[Event \"Wch\"]\n[EventDate \"1960.03.15\"]", "te \"1960.03.15"},
        // Question marks go with their dots; blanks are squeezed.
        {"1011000", unknown, "E 1999"},
        {"1011000", "[Event \"E\"]\n[Date \"????.??.??\"]\n[Round \"3\"]", "E 3"},
        {"1011000", "[Event \"a.?.b\"]", "ab"},
        {"1011000", "[Event \"?x x.?y x?.y x?y\"]", "x xy xy xy"},
        {"1011000", "[Event \"  wide   open  \"]", "wide open"},
        {"1011000", unknown, "E 1999.??.?? ?", false},
        // A line that is no known tag changes no value; every line goes trimmed into the comment.
        {"1000000", "   [Event \"E\"]   \n  [Annotator \"Me\"]", "E"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.section);
        Choose(c.mask, c.ignoreQuestion);
        Load(c.section + "\n\n1. e4\n");
        EXPECT_EQ(Next(), 1);
        EXPECT_EQ(g.GameMoves[0], c.name);
    }
    EXPECT_EQ(g.GameComments[0], "\r\n[Event \"E\"]\r\n[Annotator \"Me\"]");
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

// Files read game by game: what each read returns, the slots 0..max(1, plies + 1)
// of moves and comments, and the line the reader stopped at.
TEST_F(PgnReader, WhereGamesStartAndEnd) {
    using Read = ExpectedRead;
    struct Case {
        const char* what;
        const char* text;
        std::vector<Read> reads;
        const char* remarks = nullptr;
        bool atEnd = true;
    };
    const Case cases[] = {
        {"the line right under the tags is lost", "[Event \"x\"]\n1. e4 e5\n2. Nf3 Nc6\n",
         {{2, "x|Nf3|Nc6|", nullptr}}},
        {"remarks ahead of the first game", "\n\n  Intro  \n\nmore\n%not dropped here\n[Event \"x\"]\n\n1. e4\n",
         {{1, "x|e4|", nullptr}}, "Intro\r\n\r\nmore\r\n%not dropped here\r\n"},
        {"% lines drop out of the move text, also inside a comment", "[Event \"x\"]\n\n1. e4 {a\n% 2. d4\nb} e5\n",
         {{2, "x|e4|e5|", "\r\n[Event \"x\"]|a \r\n b||"}}},
        {"a % line ends the tag section and is dropped", "[Event \"x\"]\n%junk\n[Site \"s\"]\n1. e4\n",
         {{0, "x|", "\r\n[Event \"x\"]|", "[Site \"s\"]"}}, nullptr, false},
        {"a bracket line inside a comment ends the game; the line under it is dropped",
         "[Event \"a\"]\n\n1. e4 {a comment\n[that looks like a tag] more}\n2. Nf3 Nc6\n3. Bb5\n",
         {{1, "a|e4|", "\r\n[Event \"a\"]|a comment \r\n|", "[that looks like a tag] more}"},
          {1, "|Bb5|", "\r\n[that looks like a tag] more}||"}}},
        {"a comment left open does not carry over", "[Event \"a\"]\n\n1. e4 {open\n[Event \"b\"]\n\n1. d4 }x e5\n",
         {{1, "a|e4|", "\r\n[Event \"a\"]|open \r\n|"}, {3, "b|d4|}x|e5|", nullptr}}},
        {"no tag line at all", "a\n\nb\nc", {{-1, "|", "|"}}, "a\r\n\r\nb\r\n"},
        {"the last line of the file is not looked at", "intro\n[Event \"a\"]\n", {{-1, "|", "|"}}, "intro\r\n"},
        {"a file that ends in its first tag section", "[Event \"a\"]\n[Site \"b\"]", {{-1, "|", "|"}}},
        {"a file that ends in a later tag section", "[Event \"a\"]\n\n1. e4\n[Event \"b\"]\n[Site \"c\"]\n",
         {{1, "a|e4|", nullptr}, {-1, "|", "|"}}},
        {"tag lines directly under the moves", "[Event \"a\"]\n\n1. e4 e5\n[Event \"b\"]\n\n1. d4\n",
         {{2, "a|e4|e5|", nullptr}, {1, "b|d4|", nullptr}}},
        {"games with a name and no move", "[Event \"a\"]\n\n\n[Event \"b\"]\n\n1-0\n",
         {{0, "a|", nullptr}, {0, "b|", "White wins|"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Load(c.text);
        ExpectReads([&] { return Next(); }, st, g, c.reads, c.remarks, c.atEnd);
    }
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
