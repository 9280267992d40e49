// The text of a printed moves list, and its pages.
//
// Printing runs in two passes: the line of play is set line by line into a
// temporary file, and that file is read back and printed in pages of 66
// lines, each with a head. Everything here is text in the library's own
// single-byte code (Windows-1252); the window side draws it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "library/loader.h"
#include "library/tree_model.h"

namespace vantrel::print {

inline constexpr int kMaxPathSlots = 201;      // a line has room for 201 nodes
inline constexpr int kCommentWidth = 70;       // width of a wrapped comment line
inline constexpr int kLinesPerPage = 66;       // head lines included
using library::kNoComments;
inline constexpr std::string_view kPageHead = "Vantrel - Print Moves List           Page ";

// The line to print: node numbers from the node last clicked (slot 0) up to
// the top-level node, and the node whose game name heads the text (the
// nearest at or above the clicked node whose text holds a colon; 0 if none).
struct PrintPath {
    std::vector<int> nodes;
    int headNode = 0;
    int HighestSlot() const { return static_cast<int>(nodes.size()) - 1; }
};

// Walks up from currentNode through the parents. Throws Error when the
// node does not exist or the line has more than 201 nodes.
PrintPath CollectPrintPath(const library::TreeModel& tree, int currentNode);

// The move number as the picture "##0" then "@@@" gives it: decimal digits
// with blanks in front to a width of 3.
std::string FormatMoveNumber(int number);

// The move as the picture "!@@@@@" gives it: blanks behind it to a width of
// 5. A longer move is kept whole.
std::string FormatMove(std::string_view move);

// The lines that WriteWrappedComment writes for one comment.
std::vector<std::string> WrapComment(std::string_view comment);

// The lines of the temporary file, in the order they are written. A comment
// that holds line breaks puts them into its lines unchanged; reading the file
// back splits them (see ReadFileLines).
std::vector<std::string> MovesFileLines(const library::TreeModel& tree, const std::vector<std::string>& nodeComments,
                                        const PrintPath& path);

// The bytes of the temporary file: every line followed by CR LF.
std::string MovesFileText(const std::vector<std::string>& lines);

// The file read back line by line: CR LF, a lone CR or a lone LF ends a
// line; a last line without an ending counts too.
std::vector<std::string> ReadFileLines(std::string_view content);

// The head of a page: the title with the page number, a rule of 56 "=", and
// two empty lines.
std::vector<std::string> PageHead(int pageNumber);

using Page = std::vector<std::string>;

// The printed pages of the file's lines: every page begins with its head and
// holds at most 66 lines; after line 66 a new page begins with its head, even
// when no text follows.
std::vector<Page> Paginate(const std::vector<std::string>& fileLines);

// The pages as one text: every line followed by "\n", and a form feed
// between one page and the next.
std::string PagesText(const std::vector<Page>& pages);

// The whole road from the node last clicked to the pages.
std::vector<Page> MoveListPages(const library::TreeModel& tree, const std::vector<std::string>& nodeComments,
                                int currentNode);

}  // namespace vantrel::print
