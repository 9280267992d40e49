// The SAN game reader: "!" lines name the games, and comments stand between
// two indicators given by the user.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "import/readers.h"
#include "reader_test_support.h"

namespace {

using namespace vantrel::import;
using namespace vantrel::import::testing;

// Files read game by game: what each read returns, the slots 0..max(1, plies + 1)
// of moves and comments, and the line the reader stopped at.
TEST(SanReader, WhereGamesStartAndEndAndWhatTheyHold) {
    using Read = ExpectedRead;
    struct Case {
        const char* what;
        const char* text;
        std::vector<Read> reads;
        const char* remarks = nullptr;
        bool atEnd = true;
        const char* start = "{";
        const char* end = "}";
    };
    const Case cases[] = {
        // The first name isn't trimmed behind the "!"; later ones are.
        {"games named by ! lines", "Opening notes\n\nby me\n! First game\n1. e4 {best} e5 2. Nf3\n!  Second  \nd4 d5\n",
         {{3, " First game|e4|e5|Nf3|", "|best|||", "  Second"}, {2, "Second|d4|d5|", "|||"}},
         "Opening notes\r\n\r\nby me\r\n"},
        {"blank lines ahead of the first game are remarks", "\n\n  x  \n!G\ne4\n", {{1, "G|e4|", "||"}},
         "\r\n\r\nx\r\n"},
        {"a ! alone gives an empty name", "!\ne4 e5\n!\nd4\n", {{2, "|e4|e5|", nullptr}, {1, "|d4|", nullptr}}},
        {"a ! line ends the game inside a comment; no comment is open in the next",
         "!A\ne4 {open\n  !B\ne5 }x\n", {{1, "A|e4|", "|open \r\n|"}, {2, "B|e5|}x|", nullptr}}},
        {"two-character indicators, trimmed", "!G\ne4 //best// e5 //x\n", {{2, "G|e4|e5|", "|best|x \r\n|"}}, nullptr,
         true, " // ", "// "},
        {"three-character indicators are tokens", "!G\ne4 <<< e5 >>> Nf3\n",
         {{5, "G|e4|<<<|e5|>>>|Nf3|", "||||||"}}, nullptr, true, "<<<", ">>>"},
        {"PGN signs are plain move text", "!G\n[Event\n% e4\ne5 (d4) ;\n", {{4, "G|[Event|e4|e5|(d4)|", nullptr}}},
        {"move lines are walked untrimmed", "!G\ne4 {ab\n   cd}\n", {{1, "G|e4|", "|ab \r\n    cd|"}}},
        {"marks, codes and results", "!G\n1. e4! $3 e5? 1-0 2.Nf3\n",
         {{3, "G|e4|e5|Nf3|", "|very good move|White wins||"}}},
        {"no ! line at all; asked again the reader still finds nothing", "a\n\nb\nc\n",
         {{-1, "|", "|"}, {-1, "|", "|"}}, "a\r\n\r\nb\r\n"},
        {"a ! on the last line is not looked at", "intro\n!G", {{-1, "|", "|"}}, "intro\r\n"},
        {"a file ending in a comment", "!G\ne4 e5 {a} Nf3 {open", {{3, "G|e4|e5|Nf3|", "||a|open \r\n|"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        LineSource src;
        src.OpenText(c.text);
        ImportState st;
        st.ImportFile = &src;
        GameRecord g;
        ExpectReads([&] { return ReadSanGame(st, g, c.start, c.end); }, st, g, c.reads, c.remarks, c.atEnd);
    }
}

TEST(SanReader, EmptyFileFailsOnTheFirstRead) {
    LineSource src;
    src.OpenText("");
    ImportState st;
    st.ImportFile = &src;
    GameRecord g;
    EXPECT_THROW(ReadSanGame(st, g, "{", "}"), ImportError);
}

}  // namespace
