#include "print/move_list_text.h"

#include "library/text.h"

namespace vantrel::print {
namespace {

constexpr std::string_view kWhiteNameGap = "           :";  // 11 blanks
constexpr std::string_view kBlackNameGap = "   :";          // 3 blanks
constexpr std::string_view kBlackAfterBreak = ". .....   ";

const std::string& CommentOf(const std::vector<std::string>& nodeComments, int node) {
    static const std::string none(kNoComments);
    if (node < 0 || static_cast<std::size_t>(node) >= nodeComments.size()) return none;
    return nodeComments[static_cast<std::size_t>(node)];
}

}  // namespace

PrintPath CollectPrintPath(const library::TreeModel& tree, int currentNode) {
    if (!tree.Exists(currentNode)) throw Error("Invalid procedure call or argument", errors::kInvalidProcedureCall);
    const std::vector<int> line = tree.LineTo(currentNode);
    if (static_cast<int>(line.size()) > kMaxPathSlots) throw Error("Subscript out of range", errors::kSubscriptOutOfRange);
    PrintPath path;
    path.nodes.assign(line.rbegin(), line.rend());
    for (const int node : path.nodes) {
        if (text::SplitNodeText(tree.Node(node).Text).named) {
            path.headNode = node;
            break;
        }
    }
    return path;
}

std::string FormatMoveNumber(int number) {
    std::string digits = std::to_string(number);
    if (digits.size() < 3) digits.insert(0, 3 - digits.size(), ' ');
    return digits;
}

std::string FormatMove(std::string_view move) {
    std::string out(move);
    if (out.size() < 5) out.append(5 - out.size(), ' ');
    return out;
}

std::vector<std::string> WrapComment(std::string_view comment) {
    // Positions count from 1: i is the first character of the line being
    // set, L the length of the comment.
    std::vector<std::string> lines;
    const std::size_t L = comment.size();
    std::size_t i = 1;
    auto chars = [&](std::size_t from, std::size_t to) {  // from..to, 1-based, inclusive
        return std::string(comment.substr(from - 1, to >= from ? to - from + 1 : 0));
    };
    while (i <= L) {
        if (i + kCommentWidth >= L) {
            lines.push_back(chars(i, L));  // the last line may have 71 characters
            break;
        }
        std::size_t j = 0;
        for (std::size_t k = i + kCommentWidth - 1; k >= i; --k) {
            if (comment[k - 1] == ' ') {
                j = k;
                break;
            }
        }
        if (j != 0) {
            lines.push_back(chars(i, j - 1));  // the blank itself is not written
            i = j + 1;
        } else {
            // Our own choice for a stretch of more than 70 characters with no
            // blank in reach: break it hard after 70 characters instead of
            // stepping on one character at a time with nothing written, which
            // would lose text.
            lines.push_back(chars(i, i + kCommentWidth - 1));
            i += kCommentWidth;
        }
    }
    return lines;
}

std::vector<std::string> MovesFileLines(const library::TreeModel& tree, const std::vector<std::string>& nodeComments,
                                        const PrintPath& path) {
    std::vector<std::string> out;
    if (path.headNode != 0) {
        out.emplace_back(text::SplitNodeText(tree.Node(path.headNode).Text).rest);
        out.emplace_back();
    }

    auto writeComment = [&](int node) {
        for (std::string& line : WrapComment(CommentOf(nodeComments, node))) out.push_back(std::move(line));
    };

    std::string row;
    bool whiteToMove = true;
    bool rowBreak = false;
    bool rowPending = false;  // a white move whose row has not been written
    int number = 0;
    for (int slot = path.HighestSlot(); slot >= 0; --slot) {
        const int node = path.nodes[static_cast<std::size_t>(slot)];
        const text::NodeTextParts parts = text::SplitNodeText(tree.Node(node).Text);
        const bool hasName = parts.named;
        const std::string_view move = parts.move;
        const std::string_view name = parts.rest;
        const bool hasComment = CommentOf(nodeComments, node) != kNoComments;

        if (whiteToMove) {
            whiteToMove = false;
            ++number;
            row = FormatMoveNumber(number) + ". " + FormatMove(move);
            rowPending = true;
            if (hasName) {
                rowBreak = true;
                row += kWhiteNameGap;
                row += name;
                out.push_back(row);
                row.clear();
                rowPending = false;
            }
            if (hasComment) {
                rowBreak = true;
                if (!text::IsBlank(row)) out.push_back(row);
                rowPending = false;
                out.emplace_back();
                writeComment(node);
                out.emplace_back();
            }
        } else {
            whiteToMove = true;
            if (rowBreak) {
                rowBreak = false;
                row = FormatMoveNumber(number);
                row += kBlackAfterBreak;
                row += FormatMove(move);
            } else {
                row += " - ";
                row += FormatMove(move);
            }
            if (hasName) {
                row += kBlackNameGap;
                row += name;
            }
            out.push_back(row);
            rowPending = false;
            if (hasComment) {
                out.emplace_back();
                writeComment(node);
                out.emplace_back();
            }
        }
    }
    if (rowPending) out.push_back(row);
    return out;
}

std::string MovesFileText(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += "\r\n";
    }
    return text;
}

std::vector<std::string> ReadFileLines(std::string_view content) {
    std::vector<std::string> lines;
    std::string line;
    for (std::size_t i = 0; i < content.size(); ++i) {
        const char c = content[i];
        if (c == '\r' || c == '\n') {
            lines.push_back(std::move(line));
            line.clear();
            if (c == '\r' && i + 1 < content.size() && content[i + 1] == '\n') ++i;
        } else {
            line += c;
        }
    }
    if (!line.empty()) lines.push_back(std::move(line));
    return lines;
}

std::vector<std::string> PageHead(int pageNumber) {
    return {std::string(kPageHead) + std::to_string(pageNumber), std::string(56, '='), std::string(), std::string()};
}

std::vector<Page> Paginate(const std::vector<std::string>& fileLines) {
    std::vector<Page> pages;
    int lineCounter = 0;
    auto newPage = [&] {
        pages.push_back(PageHead(static_cast<int>(pages.size()) + 1));
        lineCounter = static_cast<int>(pages.back().size());
    };
    newPage();
    for (const std::string& line : fileLines) {
        ++lineCounter;
        pages.back().push_back(line);
        if (lineCounter >= kLinesPerPage) newPage();
    }
    return pages;
}

std::string PagesText(const std::vector<Page>& pages) {
    std::string text;
    for (const Page& page : pages) {
        if (&page != &pages.front()) text += '\f';
        for (const std::string& line : page) {
            text += line;
            text += '\n';
        }
    }
    return text;
}

std::vector<Page> MoveListPages(const library::TreeModel& tree, const std::vector<std::string>& nodeComments,
                                int currentNode) {
    const PrintPath path = CollectPrintPath(tree, currentNode);
    return Paginate(ReadFileLines(MovesFileText(MovesFileLines(tree, nodeComments, path))));
}

}  // namespace vantrel::print
