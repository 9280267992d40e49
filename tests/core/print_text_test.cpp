// The text of a printed moves list: the line collected from the tree, the
// rows, the wrapped comments and the pages.
#include <gtest/gtest.h>

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

TEST(PrintPath, CollectsFromTheClickedNodeUpToTheTopHeadedByTheNearestName) {
    // Nodes 1 to 4, then d4 as a sibling of Nf3 and c4 on top with no name.
    Chain c;
    for (const char* text : {"e4: Upper", "e5", "Nf3: Lower", "Nc6"}) c.Add(text);
    c.Add("d4", "", 2);
    c.Add("c4", "", 0);
    EXPECT_EQ(CollectPrintPath(c.tree, 4).nodes, (std::vector<int>{4, 3, 2, 1}));
    EXPECT_EQ(CollectPrintPath(c.tree, 5).nodes, (std::vector<int>{5, 2, 1}));
    std::vector<int> heads;
    for (int clicked : {4, 5, 3, 6}) heads.push_back(CollectPrintPath(c.tree, clicked).headNode);
    EXPECT_EQ(heads, (std::vector<int>{3, 1, 3, 0}));
    // Both names show in the rows; only the lower one heads the text.
    EXPECT_EQ(c.FileLines(4), (Lines{" Lower", "", "  1. e4              : Upper", "  1. .....   e5   ",
                                     "  2. Nf3             : Lower", "  2. .....   Nc6  "}));
    // Two hundred and one nodes fit; one more fails.
    Chain l;
    for (int i = 1; i <= 202; ++i) l.Add("m" + std::to_string(i));
    EXPECT_EQ(CollectPrintPath(l.tree, 201).HighestSlot(), 200);
    // Too long; no node clicked yet; no such node.
    for (const auto& [clicked, number] : {std::pair{202, 9}, std::pair{0, 5}, std::pair{203, 5}}) {
        try {
            CollectPrintPath(l.tree, clicked);
            ADD_FAILURE() << clicked;
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), number) << clicked;
        }
    }
}

TEST(PrintRows, RowsNamesAndCommentsOfALine) {
    struct Node { std::string text, comment; };
    struct Case { const char* what; std::vector<Node> line; Lines file; };  // the last node of the line is clicked
    const Case cases[] = {
        {"a named line with a comment",
         {{"e4: a", ""}, {"e5", ""}, {"Nf3", "Develops the knight."}, {"Nc6", ""}, {"Bb5", ""}},
         {" a", "", "  1. e4              : a", "  1. .....   e5   ", "  2. Nf3  ", "", "Develops the knight.", "",
          "  2. .....   Nc6  ", "  3. Bb5  "}},
        {"a node at depth 1", {{"d4", ""}}, {"  1. d4   "}},
        {"white and black share a row", {{"e4", ""}, {"c5", ""}}, {"  1. e4    - c5   "}},
        {"the last white move is printed", {{"e4", ""}, {"c5", ""}, {"Nf3", ""}}, {"  1. e4    - c5   ", "  2. Nf3  "}},
        {"a comment on white breaks the row", {{"e4", "Best by test"}, {"e5", ""}},
         {"  1. e4   ", "", "Best by test", "", "  1. .....   e5   "}},
        {"name and comment on white write the row once", {{"e4: King's pawn", "Best by test"}, {"e5", ""}},
         {" King's pawn", "", "  1. e4              : King's pawn", "", "Best by test", "", "  1. .....   e5   "}},
        {"a comment on black does not break the next row", {{"e4", ""}, {"e5", "Symmetry"}, {"Nf3", ""}, {"Nc6", ""}},
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
    // Numbers are right-aligned in three; longer numbers and moves are kept whole.
    EXPECT_EQ(FormatMoveNumber(42) + "|" + FormatMoveNumber(1000) + "|" + FormatMove("exd8=Q+"), " 42|1000|exd8=Q+");
}

TEST(PrintWrap, BreaksAtTheLastBlankWithinSeventyCharactersOrHardAfterSeventy) {
    const std::string a35(35, 'a'), b35(35, 'b'), a36(36, 'a');
    std::string stretch;
    for (int i = 0; i < 150; ++i) stretch += static_cast<char>('a' + i % 26);
    const std::pair<std::string, Lines> cases[] = {
        {"short", {"short"}}, {"", {}},
        {a35 + " " + b35, {a35 + " " + b35}},  // the last line may have 71 characters
        {a36 + " " + b35, {a36, b35}},         // 72 do not fit
        // A blank at position 70 is the farthest one looked at: 69 characters.
        {std::string(69, 'x') + " " + std::string(10, 'y'), {std::string(69, 'x'), std::string(10, 'y')}},
        // A blank at position 71 is out of reach; the one at 10 is taken.
        {std::string(9, 'a') + " " + std::string(60, 'b') + " " + std::string(20, 'c'),
         {std::string(9, 'a'), std::string(60, 'b'), std::string(20, 'c')}},
        // A long stretch without blanks is broken hard and keeps every character.
        {stretch, {stretch.substr(0, 70), stretch.substr(70, 70), stretch.substr(140)}},
        {"x " + std::string(80, 'z'), {"x", std::string(70, 'z'), std::string(10, 'z')}},
        // A blank at the very start of a line makes an empty line: the walk
        // from position i + 69 down to i finds it there.
        {" " + std::string(80, 'z'), {"", std::string(70, 'z'), std::string(10, 'z')}},
    };
    for (const auto& [comment, lines] : cases) EXPECT_EQ(WrapComment(comment), lines) << comment;
}

TEST(PrintPages, SixtyTwoLinesFillAPageAndOpenAnEmptySecondOne) {
    EXPECT_EQ(PageHead(12)[0], "Vantrel - Print Moves List           Page 12");  // the whole head: the printed pages
    // Lines of text, the pages they fill, the lines on the last page.
    const std::tuple<int, size_t, size_t> cases[] = {{61, 1, 65}, {62, 2, 4}, {63, 2, 5}, {124, 3, 4}};
    for (const auto& [count, pageCount, lastSize] : cases) {
        Lines text;
        for (int i = 1; i <= count; ++i) text.push_back("l" + std::to_string(i));
        const std::vector<Page> pages = Paginate(text);
        ASSERT_EQ(pages.size(), pageCount) << count;
        EXPECT_EQ(pages.back().size(), lastSize) << count;
        for (size_t p = 0; p < pages.size(); ++p) {
            ASSERT_GE(pages[p].size(), 4u);
            EXPECT_EQ(Lines(pages[p].begin(), pages[p].begin() + 4), PageHead(static_cast<int>(p) + 1));
            for (size_t k = 4; k < pages[p].size(); ++k) EXPECT_EQ(pages[p][k], "l" + std::to_string(p * 62 + k - 3));
        }
    }
    // The file: lines go out with CR LF and come back the same.
    const Lines lines{" a", "", "  1. e4   ", ""};
    EXPECT_EQ(MovesFileText(lines), " a\r\n\r\n  1. e4   \r\n\r\n");
    EXPECT_EQ(ReadFileLines(MovesFileText(lines)), lines);
    EXPECT_EQ(ReadFileLines("a\nb\rc"), (Lines{"a", "b", "c"}));
    EXPECT_EQ(ReadFileLines(""), Lines{});
}

}  // namespace
}  // namespace vantrel::print
