// The import file's lines: line ends, end of file, and the character set.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "import/readers.h"

namespace {

using vantrel::import::ImportError;
using vantrel::import::LineSource;

// Reads all lines, checking that Eof turns true exactly after the last one.
std::vector<std::string> AllLines(LineSource& src) {
    std::vector<std::string> lines;
    while (!src.Eof()) lines.push_back(src.ReadLine());
    return lines;
}

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text) {
    LineSource src;
    src.OpenText(text);
    return AllLines(src);
}

TEST(LineSource, LineEndsAndCharacterSets) {
    const std::pair<const char*, Lines> cases[] = {
        // Every kind of line end.
        {"a\r\nb\r\nc", {"a", "b", "c"}},
        {"a\nb\nc", {"a", "b", "c"}},
        {"a\rb\rc", {"a", "b", "c"}},
        {"a\r\nb\nc\rd", {"a", "b", "c", "d"}},
        // A final line end makes no extra line, but an empty line before it stays a line.
        {"a\nb\n", {"a", "b"}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\r", {"a"}},
        {"a\n\n", {"a", ""}},
        {"a\r\r", {"a", ""}},
        {"\n", {""}},
        {"\n\r\n\r", {"", "", ""}},
        {"a\n\rb", {"a", "", "b"}},  // LF CR is two line ends
        // A byte order mark comes off the start only, also ahead of plain ASCII.
        {"\xEF\xBB\xBF[Event \"R\xC3\xA9ti\"]\n1. e4", {"[Event \"R\xE9ti\"]", "1. e4"}},
        {"\xEF\xBB\xBF" "abc", {"abc"}},
        // UTF-8 lines become Windows-1252: "R\u00e9ti", "\u20ac 5", a CJK character that 1252 lacks.
        {"R\xC3\xA9ti\n\xE2\x82\xAC 5\nA\xE4\xB8\xAD" "B", {"R\xE9ti", "\x80 5", "A?B"}},
        // 0xE9 alone is no UTF-8, so the line is taken as 1252 as it stands;
        // each line is judged on its own.
        {"R\xE9ti\n\x80 \xFC", {"R\xE9ti", "\x80 \xFC"}},
        {"R\xE9ti\nR\xC3\xA9ti", {"R\xE9ti", "R\xE9ti"}},
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(LinesOf(text), lines) << text;
}

TEST(LineSource, EofIsTrueAsSoonAsTheLastLineIsRead) {
    LineSource src;
    src.OpenText("a\nb");
    EXPECT_FALSE(src.Eof());
    EXPECT_EQ(src.ReadLine(), "a");
    EXPECT_FALSE(src.Eof());
    EXPECT_EQ(src.ReadLine(), "b");
    EXPECT_TRUE(src.Eof());
    try {
        src.ReadLine();
        FAIL() << "read past the end";
    } catch (const ImportError& e) {
        EXPECT_EQ(e.number(), 62);
        EXPECT_STREQ(e.what(), "Input past end of file");
    }
}

TEST(LineSource, EmptyFileIsAtEndAtOnce) {
    for (const char* text : {"", "\xEF\xBB\xBF"}) {
        LineSource src;
        src.OpenText(text);
        EXPECT_TRUE(src.Eof());
        EXPECT_THROW(src.ReadLine(), ImportError);
    }
}

class LineSourceFile : public ::testing::Test {
protected:
    void SetUp() override {
        path_ = (std::filesystem::temp_directory_path() /
                 ("vantrel_lines_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt"))
                    .string();
    }
    void TearDown() override { std::filesystem::remove(path_); }
    void Write(const std::string& bytes) {
        std::ofstream out(path_, std::ios::binary);
        out << bytes;
    }
    std::string path_;
};

TEST_F(LineSourceFile, ReadsAFileAcrossManyBlocks) {
    // Lines of every length and every kind of end, so that block boundaries
    // fall inside lines and between CR and LF.
    std::string text = "\xEF\xBB\xBF";
    Lines expected;
    const char* ends[] = {"\r\n", "\n", "\r"};
    for (int i = 0; i < 40000; ++i) {
        std::string line(static_cast<size_t>(i % 37), static_cast<char>('a' + i % 26));
        if (i % 101 == 0) line += "\xC3\xA9";  // a UTF-8 line now and then
        text += line;
        text += ends[i % 3];
        if (i % 101 == 0) line.replace(line.size() - 2, 2, "\xE9");
        expected.push_back(line);
    }
    Write(text);
    LineSource src;
    ASSERT_TRUE(src.Open(path_));
    EXPECT_TRUE(src.IsOpen());
    EXPECT_EQ(AllLines(src), expected);
    // The same text from memory gives the same lines.
    EXPECT_EQ(LinesOf(text), expected);
}

TEST_F(LineSourceFile, CrLfSplitByABlockBoundaryIsOneLineEnd) {
    for (size_t at : {size_t{65535}, size_t{65534}, size_t{65536}, size_t{131071}}) {
        std::string text(at, 'x');
        text += "\r\nlast";
        Write(text);
        LineSource src;
        ASSERT_TRUE(src.Open(path_));
        EXPECT_EQ(AllLines(src), (Lines{std::string(at, 'x'), "last"})) << at;
    }
}

TEST_F(LineSourceFile, MissingAndEmptyFiles) {
    LineSource src;
    EXPECT_FALSE(src.Open(path_ + ".none"));
    EXPECT_FALSE(src.IsOpen());
    Write("");
    ASSERT_TRUE(src.Open(path_));
    EXPECT_TRUE(src.Eof());
    EXPECT_THROW(src.ReadLine(), ImportError);
    src.Close();
    EXPECT_FALSE(src.IsOpen());
}

}  // namespace
