// The text of a printed moves list: the line collected from the tree, the
// rows, the wrapped comments and the pages.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "print/move_list_text.h"

namespace vantrel::print {
namespace {

using library::NodeImage;
using library::TreeModel;
using Lines = std::vector<std::string>;

const std::string kTag(64, '0');

// A tree built as a chain of texts, each the child of the one before. Node
// numbers are 1..n; comments by node number ("No comments" where empty).
struct Chain {
    TreeModel tree;
    std::vector<std::string> comments{std::string(kNoComments)};

    int Add(const std::string& text, const std::string& comment = std::string(), int parent = -1) {
        const int number = tree.Count() + 1;
        if (parent < 0) parent = number - 1;
        tree.Add(parent == 0 ? 0 : tree.Node(parent).index, number, text, NodeImage::Pawn, kTag);
        comments.push_back(comment.empty() ? std::string(kNoComments) : comment);
        return number;
    }
    Lines FileLines(int current) const {
        return ReadFileLines(MovesFileText(MovesFileLines(tree, comments, CollectPrintPath(tree, current))));
    }
};

TEST(PrintPictures, NumbersAreRightAlignedAndMovesLeftAligned) {
    EXPECT_EQ(FormatMoveNumber(1), "  1");
    EXPECT_EQ(FormatMoveNumber(42), " 42");
    EXPECT_EQ(FormatMoveNumber(100), "100");
    EXPECT_EQ(FormatMoveNumber(1000), "1000");
    EXPECT_EQ(FormatMove("e4"), "e4   ");
    EXPECT_EQ(FormatMove("O-O-O"), "O-O-O");
    EXPECT_EQ(FormatMove("Nxe5+"), "Nxe5+");
    EXPECT_EQ(FormatMove("exd8=Q+"), "exd8=Q+");  // longer moves are kept whole
    EXPECT_EQ(FormatMove(""), "     ");
}

TEST(PrintPath, CollectsFromTheClickedNodeUpToTheTopHeadedByTheNearestName) {
    Chain c;
    c.Add("e4: Upper");   // 1
    c.Add("e5");          // 2
    c.Add("Nf3: Lower");  // 3
    c.Add("Nc6");         // 4
    c.Add("d4", "", 2);   // 5, a sibling of 3
    c.Add("c4", "", 0);   // 6, on top with no name
    PrintPath p = CollectPrintPath(c.tree, 4);
    EXPECT_EQ(p.nodes, (std::vector<int>{4, 3, 2, 1}));
    EXPECT_EQ(p.HighestSlot(), 3);
    EXPECT_EQ(p.headNode, 3);
    EXPECT_EQ(CollectPrintPath(c.tree, 5).nodes, (std::vector<int>{5, 2, 1}));
    EXPECT_EQ(CollectPrintPath(c.tree, 5).headNode, 1);
    EXPECT_EQ(CollectPrintPath(c.tree, 3).headNode, 3);
    EXPECT_EQ(CollectPrintPath(c.tree, 6).headNode, 0);
    // Both names show in the rows; only the lower one heads the text.
    EXPECT_EQ(c.FileLines(4), (Lines{" Lower", "", "  1. e4              : Upper", "  1. .....   e5   ",
                                     "  2. Nf3             : Lower", "  2. .....   Nc6  "}));
}

TEST(PrintPath, TwoHundredAndOneNodesFitOneMoreFails) {
    Chain c;
    for (int i = 1; i <= 202; ++i) c.Add("m" + std::to_string(i));
    PrintPath p = CollectPrintPath(c.tree, 201);
    EXPECT_EQ(p.nodes.size(), 201u);
    EXPECT_EQ(p.nodes.back(), 1);
    try {
        CollectPrintPath(c.tree, 202);
        FAIL() << "a line of 202 nodes must fail";
    } catch (const PrintError& e) {
        EXPECT_EQ(e.number(), 9);
    }
    EXPECT_THROW(CollectPrintPath(c.tree, 0), PrintError);  // no node clicked yet
    EXPECT_THROW(CollectPrintPath(c.tree, 203), PrintError);
}

TEST(PrintRows, RowsNamesAndCommentsOfALine) {
    struct Node {
        std::string text, comment;
    };
    struct Case {
        const char* what;
        std::vector<Node> line;  // a chain; the last node is the one clicked
        Lines file;
    };
    const Case cases[] = {
        {"the worked example",
         {{"e4: a", ""}, {"e5", ""}, {"Nf3", "Develops the knight."}, {"Nc6", ""}, {"Bb5", ""}},
         {" a", "", "  1. e4              : a", "  1. .....   e5   ", "  2. Nf3  ", "", "Develops the knight.", "",
          "  2. .....   Nc6  ", "  3. Bb5  "}},
        {"a node at depth 1", {{"d4", ""}}, {"  1. d4   "}},
        {"white and black share a row", {{"e4", ""}, {"c5", ""}}, {"  1. e4    - c5   "}},
        {"the last white move is printed", {{"e4", ""}, {"c5", ""}, {"Nf3", ""}}, {"  1. e4    - c5   ", "  2. Nf3  "}},
        {"a comment on white breaks the row",
         {{"e4", "Best by test"}, {"e5", ""}},
         {"  1. e4   ", "", "Best by test", "", "  1. .....   e5   "}},
        {"name and comment on white write the row once",
         {{"e4: King's pawn", "Best by test"}, {"e5", ""}},
         {" King's pawn", "", "  1. e4              : King's pawn", "", "Best by test", "", "  1. .....   e5   "}},
        {"a comment on black does not break the next row",
         {{"e4", ""}, {"e5", "Symmetry"}, {"Nf3", ""}, {"Nc6", ""}},
         {"  1. e4    - e5   ", "", "Symmetry", "", "  2. Nf3   - Nc6  "}},
        {"a name on black follows the row", {{"e4", ""}, {"c5: Sicilian", ""}},
         {" Sicilian", "", "  1. e4    - c5      : Sicilian"}},
        {"a name on black follows the dots", {{"e4: Open", ""}, {"c5: Sicilian", ""}},
         {" Sicilian", "", "  1. e4              : Open", "  1. .....   c5      : Sicilian"}},
        {"the name is all behind the first colon", {{"e4: Game: 2nd round", ""}},
         {" Game: 2nd round", "", "  1. e4              : Game: 2nd round"}},
        {"line breaks in a comment become lines", {{"e4", "First line\r\nSecond line"}},
         {"  1. e4   ", "", "First line", "Second line", ""}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Chain chain;
        for (const Node& n : c.line) chain.Add(n.text, n.comment);
        EXPECT_EQ(chain.FileLines(chain.tree.Count()), c.file);
    }
}

TEST(PrintWrap, ShortCommentsStayWholeAndTheLastLineMayHave71Characters) {
    EXPECT_EQ(WrapComment("short"), (Lines{"short"}));
    EXPECT_EQ(WrapComment(""), Lines{});
    const std::string c71 = std::string(35, 'a') + " " + std::string(35, 'b');
    ASSERT_EQ(c71.size(), 71u);
    EXPECT_EQ(WrapComment(c71), (Lines{c71}));
    const std::string c72 = std::string(36, 'a') + " " + std::string(35, 'b');
    ASSERT_EQ(c72.size(), 72u);
    EXPECT_EQ(WrapComment(c72), (Lines{std::string(36, 'a'), std::string(35, 'b')}));
}

TEST(PrintWrap, BreaksAtTheLastBlankWithinSeventyCharacters) {
    // A blank at position 70 is the farthest one looked at: 69 characters.
    const std::string atSeventy = std::string(69, 'x') + " " + std::string(10, 'y');
    EXPECT_EQ(WrapComment(atSeventy), (Lines{std::string(69, 'x'), std::string(10, 'y')}));
    // A blank at position 71 is out of reach; the one at 10 is taken.
    const std::string beyond = std::string(9, 'a') + " " + std::string(60, 'b') + " " + std::string(20, 'c');
    EXPECT_EQ(WrapComment(beyond), (Lines{std::string(9, 'a'), std::string(60, 'b'), std::string(20, 'c')}));
    // Words: every line at most 69 characters, nothing lost but the breaking blanks.
    std::string words;
    for (int i = 0; i < 40; ++i) words += "word" + std::to_string(i) + " ";
    words += "end";
    const Lines wrapped = WrapComment(words);
    std::string joined;
    for (std::size_t i = 0; i < wrapped.size(); ++i) {
        if (i + 1 < wrapped.size()) {
            EXPECT_LE(wrapped[i].size(), 69u);
        }
        joined += (i ? " " : "") + wrapped[i];
    }
    EXPECT_EQ(joined, words);
}

TEST(PrintWrap, ALongStretchWithoutBlanksIsBrokenHardAndKeepsEveryCharacter) {
    std::string stretch;
    for (int i = 0; i < 150; ++i) stretch += static_cast<char>('a' + i % 26);
    const Lines wrapped = WrapComment(stretch);
    ASSERT_EQ(wrapped.size(), 3u);
    EXPECT_EQ(wrapped[0], stretch.substr(0, 70));
    EXPECT_EQ(wrapped[1], stretch.substr(70, 70));
    EXPECT_EQ(wrapped[2], stretch.substr(140));
    // A blank at the very start of a line makes an empty line, as the walk
    // from position i + 69 down to i finds it there.
    const std::string lead = "x " + std::string(80, 'z');
    EXPECT_EQ(WrapComment(lead), (Lines{"x", std::string(70, 'z'), std::string(10, 'z')}));
}

TEST(PrintPages, SixtyTwoLinesFillAPageAndOpenAnEmptySecondOne) {
    EXPECT_EQ(PageHead(1), (Lines{"Vantrel - Print Moves List           Page 1", std::string(56, '='), "", ""}));
    EXPECT_EQ(PageHead(12)[0], "Vantrel - Print Moves List           Page 12");
    // Lines of text, the pages they fill, the lines on the last page.
    const std::tuple<int, size_t, size_t> cases[] = {{61, 1, 65}, {62, 2, 4}, {63, 2, 5}, {124, 3, 4}};
    for (const auto& [count, pageCount, lastSize] : cases) {
        SCOPED_TRACE(count);
        Lines text;
        for (int i = 1; i <= count; ++i) text.push_back("l" + std::to_string(i));
        const std::vector<Page> pages = Paginate(text);
        ASSERT_EQ(pages.size(), pageCount);
        EXPECT_EQ(pages.back().size(), lastSize);
        for (size_t p = 0; p < pages.size(); ++p) {
            ASSERT_GE(pages[p].size(), 4u);
            EXPECT_EQ(Lines(pages[p].begin(), pages[p].begin() + 4), PageHead(static_cast<int>(p) + 1));
            for (size_t k = 4; k < pages[p].size(); ++k) EXPECT_EQ(pages[p][k], "l" + std::to_string(p * 62 + k - 3));
        }
    }
}

TEST(PrintFile, LinesGoOutWithCrLfAndComeBackTheSame) {
    const Lines lines{" a", "", "  1. e4   ", ""};
    EXPECT_EQ(MovesFileText(lines), " a\r\n\r\n  1. e4   \r\n\r\n");
    EXPECT_EQ(ReadFileLines(MovesFileText(lines)), lines);
    EXPECT_EQ(ReadFileLines("a\nb\rc"), (Lines{"a", "b", "c"}));
    EXPECT_EQ(ReadFileLines(""), Lines{});
}

TEST(PrintPages, TheWholeRoadFromTheClickedNode) {
    Chain c;
    c.Add("e4: a");
    c.Add("e5");
    const std::vector<Page> pages = MoveListPages(c.tree, c.comments, 2);
    ASSERT_EQ(pages.size(), 1u);
    EXPECT_EQ(pages[0], (Lines{"Vantrel - Print Moves List           Page 1", std::string(56, '='), "", "", " a", "",
                               "  1. e4              : a", "  1. .....   e5   "}));
}

}  // namespace
}  // namespace vantrel::print
