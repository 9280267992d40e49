// The import file's lines (line ends, end of file, the character set and the
// conversions between UTF-8 and Windows-1252 behind it), and the game readers:
// remarks ahead of the first game, the PGN tag section and the SAN "!" lines
// that name the games, and where a game's move text ends.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "import/readers.h"
#include "library/text_codec.h"
#include "store_test_support.h"

namespace {

using namespace vantrel::import;
using namespace vantrel::text;
using vantrel::storetest::WritePacked;
using Lines = std::vector<std::string>;
using vantrel::Error;

// Reads all lines, by turns as copies and as views; past the last one Eof is
// true and a read fails with error 62.
Lines AllLines(LineSource& src) {
    Lines lines;
    while (!src.Eof()) lines.push_back(lines.size() % 2 ? std::string(src.NextLine()) : src.ReadLine());
    EXPECT_THROW(src.ReadLine(), Error);  // its text and number: see the store's tests
    return lines;
}

Lines LinesOf(const std::string& text) {
    LineSource src;
    src.OpenText(text);
    return AllLines(src);
}

TEST(LineSource, LineEndsAndCharacterSets) {
    const std::pair<const char*, Lines> cases[] = {
        // Every kind of line end; LF CR is two.
        {"a\r\nb\r\nc", {"a", "b", "c"}}, {"a\nb\nc", {"a", "b", "c"}}, {"a\rb\rc", {"a", "b", "c"}},
        {"a\r\nb\nc\rd", {"a", "b", "c", "d"}}, {"a\n\rb", {"a", "", "b"}},
        // A final line end makes no extra line, but an empty line before it stays a line.
        {"a\nb\n", {"a", "b"}}, {"a\r\nb\r\n", {"a", "b"}}, {"a\r", {"a"}}, {"a\n\n", {"a", ""}},
        {"a\r\r", {"a", ""}}, {"\n", {""}}, {"\n\r\n\r", {"", "", ""}}, {"", {}}, {"\xEF\xBB\xBF", {}},
        // A byte order mark comes off the start only, also ahead of plain ASCII.
        {"\xEF\xBB\xBF[Event \"R\xC3\xA9ti\"]\n1. e4", {"[Event \"R\xE9ti\"]", "1. e4"}},
        {"\xEF\xBB\xBF" "abc", {"abc"}},
        // UTF-8 lines become Windows-1252: "R\u00e9ti", "\u20ac 5", a CJK character that 1252 lacks.
        {"R\xC3\xA9ti\n\xE2\x82\xAC 5\nA\xE4\xB8\xAD" "B", {"R\xE9ti", "\x80 5", "A?B"}},
        // 0xE9 alone is no UTF-8, so the line is taken as 1252 as it stands; each line is judged on its own.
        {"R\xE9ti\n\x80 \xFC", {"R\xE9ti", "\x80 \xFC"}}, {"R\xE9ti\nR\xC3\xA9ti", {"R\xE9ti", "R\xE9ti"}},
        {"\xC0\x80\n\xED\xA0\x80", {"\xC0\x80", "\xED\xA0\x80"}},  // nor are overlong forms and surrogates
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(LinesOf(text), lines) << text;
}

TEST(LineSource, AFileReadAcrossManyBlocks) {
    const vantrel::storetest::TempDir dir;
    const std::string path = dir / "lines.txt";
    const auto write = [&](const std::string& bytes) { vantrel::storetest::WriteFile(path, bytes); };
    LineSource src;
    // Lines of every length and every kind of end, so that block boundaries
    // fall inside lines and between CR and LF.
    std::string text = "\xEF\xBB\xBF";
    Lines expected;
    const char* ends[] = {"\r\n", "\n", "\r"};
    for (int i = 0; i < 40000; ++i) {
        std::string line(static_cast<size_t>(i % 37), static_cast<char>('a' + i % 26));
        text += line + (i % 101 == 0 ? "\xC3\xA9" : "") + ends[i % 3];  // a UTF-8 line now and then
        expected.push_back(line + (i % 101 == 0 ? "\xE9" : ""));
    }
    write(text);
    ASSERT_TRUE(src.Open(path));
    EXPECT_EQ(AllLines(src), expected);
    // A CR LF split by a block boundary is one line end.
    for (size_t at : {size_t{65535}, size_t{65534}, size_t{65536}, size_t{131071}}) {
        write(std::string(at, 'x') + "\r\nlast");
        ASSERT_TRUE(src.Open(path));
        EXPECT_EQ(AllLines(src), (Lines{std::string(at, 'x'), "last"})) << at;
    }
    // The line table above covers UTF-8 lines read as 1252; here the way back.
    EXPECT_EQ(Cp1252ToUtf8("R\xE9ti \x80 \x93q\x94"), "R\xC3\xA9ti \xE2\x82\xAC \xE2\x80\x9Cq\xE2\x80\x9D");
    for (int b = 0; b < 256; ++b)
        EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(std::string(1, static_cast<char>(b)))), std::string(1, static_cast<char>(b)));
}

TEST(LineSource, CompressedFilesAndZipEntriesAreReadAsTheirText) {
    const vantrel::storetest::TempDir dir;
    const std::string path = dir / "games";
    struct Case { const char* how; std::vector<std::string> entries; Lines lines; };
    const Case cases[] = {
        // Each entry as a file of its own: the mark comes off, the last line ends.
        {"zip", {"\xEF\xBB\xBF" "a\nR\xC3\xA9ti", "\xEF\xBB\xBF" "c\xE9\r", "", "\rd\r\n"}, {"a", "R\xE9ti", "c\xE9", "", "d"}},
        {"zip", {}, {}}, {"zip", {"", ""}, {}}, {"gzip", {""}, {}}, {"xz", {"\xEF\xBB\xBF"}, {}},
        {"gzip", {"\xEF\xBB\xBF" "a\r\nR\xC3\xA9ti\r\n"}, {"a", "R\xE9ti"}}, {"bzip2", {"a\rb"}, {"a", "b"}},
        {"xz", {"a\n\nb\n"}, {"a", "", "b"}}, {"zstd", {"a\r\nb"}, {"a", "b"}},
        // Text that begins like a packed file's magic is text.
        {"", {"BZh9 PK\x03\x04 \x1F"}, {"BZh9 PK\x03\x04 \x1F"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.how + (" " + std::to_string(c.entries.size())));
        WritePacked(path, c.how, c.entries);
        LineSource src;
        ASSERT_TRUE(src.Open(path));
        EXPECT_EQ(AllLines(src), c.lines);
        // The packed bytes, all of them; the directory at a zip's end is not read.
        const auto size = static_cast<int64_t>(std::filesystem::file_size(path));
        EXPECT_TRUE(c.how == std::string("zip") ? src.BytesRead() <= size : src.BytesRead() == size) << src.BytesRead();
    }
    // A file of many blocks, each line across a CR LF split where it may be.
    std::string big;
    for (int i = 0; i < 30000; ++i) big += std::string(static_cast<size_t>(i % 23), 'x') + (i % 2 ? "\r\n" : "\n");
    for (const char* how : {"gzip", "zip"}) {
        WritePacked(path, how, {big});
        LineSource packed, plain;
        ASSERT_TRUE(packed.Open(path));
        plain.OpenText(big);
        EXPECT_EQ(AllLines(packed), AllLines(plain)) << how;
    }
}

// Slots 0..last of a game record, joined by "|".
template <typename Slots>
std::string Joined(const Slots& slots, int last) {
    std::string out(slots[0]);
    for (int i = 1; i <= last; ++i) {
        out += '|';
        out += slots[static_cast<size_t>(i)];
    }
    return out;
}

// One read of a game: what it returns, the slots 0..max(1, plies + 1) of
// moves and comments (nullptr: not looked at), and the line the reader stopped at.
struct Read { int16_t plies; const char *moves, *comments, *lineAfter = nullptr; };

// A file read game by game, then the remarks (unless null) and the end of the file.
struct FileCase {
    const char* what;
    const char* text;
    std::vector<Read> reads;
    const char* remarks = nullptr;
    bool atEnd = true;
    const char *start = "{", *end = "}";  // SAN comment indicators
};

void ExpectReads(const FileCase& c, const std::function<int16_t(ImportState&, GameRecord&)>& next) {
    SCOPED_TRACE(c.what);
    LineSource src;
    src.OpenText(c.text);
    ImportState st;
    st.ImportFile = &src;
    GameRecord g;
    for (const Read& r : c.reads) {
        EXPECT_EQ(next(st, g), r.plies);
        const int last = std::max<int>(1, r.plies + 1);
        EXPECT_EQ(Joined(g.GameMoves, last), r.moves);
        EXPECT_EQ(r.comments ? Joined(g.GameComments, last) : "", r.comments ? r.comments : "");
        EXPECT_EQ(r.lineAfter ? st.ImportLine : "", r.lineAfter ? r.lineAfter : "");
    }
    EXPECT_EQ(c.remarks ? st.ImportRemarks : "", c.remarks ? c.remarks : "");
    EXPECT_EQ(st.ImportAtEnd, c.atEnd);
}

PgnTagChoice Tags(const std::string& mask, bool ignoreQuestion = true) {
    PgnTagChoice tags;
    for (size_t i = 0; i < 7; ++i) tags.chkTag[i] = mask[i] == '1';
    tags.chkIgnoreQuestion = ignoreQuestion;
    return tags;
}
int16_t Pgn(ImportState& st, GameRecord& g) { return ReadPgnGame(st, g, Tags("1000000")); }

TEST(PgnReader, WhereGamesStartAndEnd) {
    const FileCase cases[] = {
        {"two games in the usual layout; the record starts empty for each",
         "[Event \"Wch\"]\n[Site \"Moscow\"]\n[Result \"1-0\"]\n\n1. e4 e5 2. Nf3 {best} Nc6 1-0\n\n"
         "[Event \"Open\"]\n[White \"Tal\"]\n\n1. d4 d5 *\n",
         {{4, "Wch|e4|e5|Nf3|Nc6|", "\r\n[Event \"Wch\"]\r\n[Site \"Moscow\"]\r\n[Result \"1-0\"]|||best|White wins|",
           "[Event \"Open\"]"},
          {2, "Open|d4|d5|", "\r\n[Event \"Open\"]\r\n[White \"Tal\"]||Result of game is unknown|"}},
         ""},
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
        {"a file that ends in a later tag section", "[Event \"a\"]\n\n1. e4\n[Event \"b\"]\n[Site \"c\"]\n",
         {{1, "a|e4|", nullptr}, {-1, "|", "|"}}},
        {"tag lines directly under the moves", "[Event \"a\"]\n\n1. e4 e5\n[Event \"b\"]\n\n1. d4\n",
         {{2, "a|e4|e5|", nullptr}, {1, "b|d4|", nullptr}}},
        {"games with a name and no move", "[Event \"a\"]\n\n\n[Event \"b\"]\n\n1-0\n",
         {{0, "a|", nullptr}, {0, "b|", "White wins|"}}},
    };
    for (const FileCase& c : cases) ExpectReads(c, Pgn);
    // An empty file fails on the first read, with the error the store shows (see its tests).
    EXPECT_THROW(ExpectReads({"empty", "", {{0, "", nullptr}}}, Pgn), Error);
    EXPECT_THROW(ExpectReads({"empty", "", {{0, "", nullptr}}},
                             [](ImportState& st, GameRecord& g) { return ReadSanGame(st, g, "{", "}"); }),
                 Error);
}

TEST(PgnReader, TheNameIsMadeOfTheChosenTags) {
    const std::string all =
        "[Event \"E\"]\n[Site \"S\"]\n[Date \"2001.02.03\"]\n[Round \"1\"]\n"
        "[White \"W\"]\n[Black \"B\"]\n[Result \"1-0\"]";
    const std::string unknown = "[Event \"E\"]\n[Date \"1999.??.??\"]\n[Round \"?\"]";
    struct Case { const char* mask; std::string section; const char* name; bool ignoreQuestion = true; };
    const Case cases[] = {  // the mask: Event Site Date Round White Black Result
        {"1111111", all, "E S 2001.02.03 1 W B 1-0"}, {"0000110", all, "W B"}, {"0000001", all, "1-0"},
        // Tags given in another order in the file still come in the same order.
        {"1000100", "[White \"W\"]\n[Event \"E\"]", "E W"},
        // Missing or empty tags leave no gap; lacking them all gives no name.
        {"1000110", "[Event \"\"]\n[White \"W\"]\n[Black \"\"]", "W"}, {"1000110", "[Black \"B\"]", "B"},
        {"0000100", "[Event \"E\"]", ""},
        // Tags match by the front of the line in any case: a WhiteElo line
        // behind White spoils it, EventDate counts as Event.
        {"1000100", "[event \"lower\"]\n[WHITE \"UPPER\"]", "lower UPPER"},
        {"0000100", "[White \"Tal\"]\n[WhiteElo \"2700\"]", "o \"2700"},
        {"1000000", "[Event \"Wch\"]\n[EventDate \"1960.03.15\"]", "te \"1960.03.15"},
        // Question marks go with their dots; blanks are squeezed.
        {"1011000", unknown, "E 1999"}, {"1011000", "[Event \"E\"]\n[Date \"????.??.??\"]\n[Round \"3\"]", "E 3"},
        {"1011000", "[Event \"a.?.b\"]", "ab"}, {"1011000", "[Event \"?x x.?y x?.y x?y\"]", "x xy xy xy"},
        {"1011000", "[Event \"  wide   open  \"]", "wide open"}, {"1011000", unknown, "E 1999.??.?? ?", false},
        // A line that is no known tag changes no value.
        {"1000000", "   [Event \"E\"]   \n  [Annotator \"Me\"]", "E"},
    };
    for (const Case& c : cases) {
        const std::string text = c.section + "\n\n1. e4\n";
        ExpectReads({c.name, text.c_str(), {{1, (c.name + std::string("|e4|")).c_str(), nullptr}}},
                    [&](ImportState& st, GameRecord& g) { return ReadPgnGame(st, g, Tags(c.mask, c.ignoreQuestion)); });
    }
    // Every line goes trimmed into the comment.
    ExpectReads({"comment", "   [Event \"E\"]   \n  [Annotator \"Me\"]\n\n1. e4\n",
                 {{1, "E|e4|", "\r\n[Event \"E\"]\r\n[Annotator \"Me\"]||"}}}, Pgn);
    // A tag value of negative length is an error.
    for (const char* line : {"[Event]", "[Site \"Moscow\"", "[Date x]", "[RESULT \"\"", "[Round"}) {
        try {
            ExpectReads({line, (std::string(line) + "\n\n1. e4\n").c_str(), {{1, "", nullptr}}}, Pgn);
            ADD_FAILURE() << line;
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 5) << line;
            EXPECT_STREQ(e.what(), "Invalid procedure call or argument");
        }
    }
    // Lines that are no known tag are never taken apart.
    for (const char* line : {"[Foo]", "[Ev", "[", "[Whit \"x\"]"})
        ExpectReads({line, (std::string(line) + "\n\n1. e4\n").c_str(), {{1, "|e4|", nullptr}}}, Pgn);
}

TEST(PgnReader, TagsChosenByNameMakeTheNameInTheirOrder) {
    const std::string eco = "[ECO \"B90\"]\n[Opening \"Sicilian\"]\n[Variation \"Najdorf, 6.Be3\"]";
    struct Case { std::vector<std::string> names; std::string section; const char* name; };
    const Case cases[] = {
        {{"ECO", "Opening", "Variation"}, eco, "B90 Sicilian Najdorf, 6.Be3"},
        {{"Variation", "ECO"}, eco, "Najdorf, 6.Be3 B90"},
        // Whole names in any case; the seven too, so WhiteElo leaves White alone.
        {{"eco"}, "[Eco \"A00\"]\n[ECOx \"no\"]\n[EC \"no\"]", "A00"},
        {{"White", "ECO"}, "[White \"Tal\"]\n[WhiteElo \"2700\"]\n[ECO \"B90\"]", "Tal B90"},
        // Missing or empty tags leave no gap; a later line replaces the value.
        {{"ECO", "Opening", "Variation"}, "[ECO \"\"]\n[Variation \" V \"]", "V"},
        {{"ECO"}, "[ECO \"A00\"]\n[ECO \"B00\"]", "B00"},
        // The value runs from the first quote to the last; without two there is none.
        {{"Annotator", "ECO"}, "[Annotator \"Mr \"X\" Y\"]\n[ECO B00]\n[ECO \"]", "Mr \"X\" Y"},
        {{"Date", "Round"}, "[Date \"1999.??.??\"]\n[Round \"?\"]", "1999"},
    };
    for (const Case& c : cases) {
        PgnTagChoice tags = Tags("1000000");
        tags.byName = c.names;
        const std::string text = c.section + "\n\n1. e4\n";
        ExpectReads({c.name, text.c_str(), {{1, (c.name + std::string("|e4|")).c_str(), nullptr}}},
                    [&](ImportState& st, GameRecord& g) { return ReadPgnGame(st, g, tags); });
    }
}

TEST(SanReader, WhereGamesStartAndEndAndWhatTheyHold) {
    const FileCase cases[] = {
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
        {"a file ending in a comment", "!G\ne4 e5 {a} Nf3 {open", {{3, "G|e4|e5|Nf3|", "||a|open \r\n|"}}},
    };
    for (const FileCase& c : cases)
        ExpectReads(c, [&](ImportState& st, GameRecord& g) { return ReadSanGame(st, g, c.start, c.end); });
}

}  // namespace
