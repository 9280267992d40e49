// The import file's lines: line ends, end of file, and the character set;
// the conversions between UTF-8 and Windows-1252 behind it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "import/readers.h"
#include "library/text_codec.h"

namespace {

using vantrel::import::ImportError;
using vantrel::import::LineSource;
using Lines = std::vector<std::string>;
using namespace vantrel::text;

// Reads all lines; past the last one Eof is true and a read fails with error 62.
Lines AllLines(LineSource& src) {
    Lines lines;
    while (!src.Eof()) lines.push_back(src.ReadLine());
    try {
        src.ReadLine();
        ADD_FAILURE() << "read past the end";
    } catch (const ImportError& e) {
        EXPECT_EQ(e.number(), 62);
        EXPECT_STREQ(e.what(), "Input past end of file");
    }
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
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(LinesOf(text), lines) << text;
}

TEST(LineSource, AFileReadAcrossManyBlocks) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("vantrel_lines_" + std::to_string(::getpid()) + ".txt")).string();
    const auto write = [&](const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; };
    LineSource src;
    EXPECT_FALSE(src.Open(path + ".none"));
    EXPECT_FALSE(src.IsOpen());

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
    EXPECT_TRUE(src.IsOpen());
    EXPECT_EQ(AllLines(src), expected);
    // A CR LF split by a block boundary is one line end.
    for (size_t at : {size_t{65535}, size_t{65534}, size_t{65536}, size_t{131071}}) {
        write(std::string(at, 'x') + "\r\nlast");
        ASSERT_TRUE(src.Open(path));
        EXPECT_EQ(AllLines(src), (Lines{std::string(at, 'x'), "last"})) << at;
    }
    write("");
    ASSERT_TRUE(src.Open(path));
    EXPECT_EQ(AllLines(src), Lines{});
    src.Close();
    EXPECT_FALSE(src.IsOpen());
    std::filesystem::remove(path);
}

TEST(TextCodec, BetweenUtf8And1252) {
    // The line table above covers UTF-8 lines read as 1252; here the way back, and what counts as UTF-8.
    EXPECT_EQ(Cp1252ToUtf8("R\xE9ti \x80 \x93q\x94"), "R\xC3\xA9ti \xE2\x82\xAC \xE2\x80\x9Cq\xE2\x80\x9D");
    for (int b = 0; b < 256; ++b) {
        std::string one(1, static_cast<char>(b));
        EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(one)), one) << "byte " << b << " survives the round trip";
    }
    // Plain ASCII, a lone 1252 byte, overlong forms and surrogates are no UTF-8.
    for (const char* text : {"plain ascii", "R\xE9ti", "\xC0\x80", "\xED\xA0\x80"})
        EXPECT_FALSE(LooksLikeUtf8(text)) << text;
    EXPECT_EQ(AnyToCp1252("R\xE9ti") + AnyToCp1252("R\xC3\xA9ti"), "R\xE9tiR\xE9ti");
}

}  // namespace
