#include "library/export_pgn.h"

#include "library/find.h"
#include "library/text.h"

namespace vantrel::library {
namespace {

constexpr size_t kLineWidth = 79;

// Lines of move text no longer than kLineWidth, but for long comments. A line
// begins with a move number, a move or a comment's "{", never with the "[" or
// "%" that the import reads as a tag line or an escape.
class MoveText {
public:
    explicit MoveText(std::string& out) : out_(out) {}
    void Word(const std::string& word) {
        if (column_ > 0 && column_ + 1 + word.size() > kLineWidth) {
            out_ += '\n';
            column_ = 0;
        }
        if (column_ > 0) {
            out_ += ' ';
            ++column_;
        }
        out_ += word;
        column_ += word.size();
    }
    // A comment in braces, kept on one line so that it reads back as it
    // stands: its line breaks become blanks.
    void Comment(const std::string& text) {
        std::string word;
        for (size_t i = 0; i < text.size(); ++i) {
            const char c = text[i];
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
            word += c == '\r' || c == '\n' || c == '\t' ? ' ' : c == '}' ? ')' : c;  // a comment can't hold its closer
        }
        const size_t first = word.find_first_not_of(" "), last = word.find_last_not_of(" ");
        Word("{" + (first == std::string::npos ? std::string() : word.substr(first, last - first + 1)) + "}");
    }
    void End() {
        out_ += "\n\n";
        column_ = 0;
    }

private:
    std::string& out_;
    size_t column_ = 0;
};

}  // namespace

std::vector<ExportGame> ExportGames(const TreeModel& tree, const std::vector<bool>& newBranch) {
    const int n = tree.Count();
    auto opens = [&](int node) { return static_cast<size_t>(node - 1) < newBranch.size() && newBranch[node - 1]; };
    std::vector<ExportGame> games;
    for (int start = 1; start <= n;) {
        int end = start;
        while (end < n && tree.Node(end + 1).parent == end && !opens(end + 1)) ++end;
        ExportGame game;
        game.line = tree.LineTo(end);
        game.firstOwn = game.line.size() - static_cast<size_t>(end - start + 1);
        games.push_back(std::move(game));
        start = end + 1;  // the next node is either a new game's or reached by no run
    }
    return games;
}

std::string NodeMove(const TreeModel& tree, int node) {
    return std::string(text::SplitNodeText(tree.Node(node).Text).move);
}

std::string LineOfMoves(const TreeModel& tree, int node) {
    std::string out;
    for (const int at : tree.LineTo(node)) {
        if (!out.empty()) out += ' ';
        out += NodeMove(tree, at);
    }
    return out;
}

std::string ExportPgn(const LibraryContents& contents, const std::vector<bool>& newBranch) {
    const TreeModel& tree = contents.tree;
    std::string out;
    std::string remarks = contents.header.LibRemarks;
    while (!remarks.empty() && (remarks.back() == '\n' || remarks.back() == '\r' || remarks.back() == ' '))
        remarks.pop_back();
    if (!remarks.empty()) {
        std::string line;
        for (const char c : remarks + "\n") {
            if (c == '\r') continue;
            if (c != '\n') {
                line += c;
                continue;
            }
            out += "%" + line + "\n";
            line.clear();
        }
        out += "\n";
    }
    for (const ExportGame& game : ExportGames(tree, newBranch)) {
        const TreeNode& first = tree.Node(game.line[game.firstOwn]);
        const std::string name =
            first.Image == NodeImage::Board ? std::string(text::SplitNodeText(first.Text).name()) : "?";
        out += "[Event \"" + name + "\"]\n[Site \"?\"]\n[Date \"????.??.??\"]\n[Round \"?\"]\n";
        out += "[White \"?\"]\n[Black \"?\"]\n[Result \"*\"]\n\n";
        MoveText moves(out);
        bool numberDue = true;
        for (size_t ply = 0; ply < game.line.size(); ++ply) {
            const int node = game.line[ply];
            std::string move = NodeMove(tree, node);
            if (move == "o-o" || move == "o-o-o")
                for (char& c : move) c = c == 'o' ? 'O' : c;
            const std::string number = std::to_string(ply / 2 + 1);
            if (ply % 2 == 0)
                moves.Word(number + ". " + move);
            else
                moves.Word(numberDue ? number + "... " + move : move);
            numberDue = false;
            const std::string& comment = contents.NodeComments[static_cast<size_t>(node)];
            if (ply >= game.firstOwn && comment != kNoComments) {
                moves.Comment(comment);
                numberDue = true;
            }
        }
        moves.Word("*");
        moves.End();
    }
    return out;
}

std::string EscapeField(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\\') {
            out += "\\\\";
        } else if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            out += "\\n";
            ++i;
        } else if (c == '\n' || c == '\r' || c == '\t') {
            out += c == '\n' ? "\\n" : c == '\r' ? "\\r" : "\\t";
        } else {
            out += c;
        }
    }
    return out;
}

std::string NodeListingLine(const LibraryContents& contents, int node) {
    const TreeNode& n = contents.tree.Node(node);
    const std::string& comment = contents.NodeComments[static_cast<size_t>(node)];
    return std::to_string(node) + '\t' + std::to_string(n.parent) + '\t' +
           (n.Image == NodeImage::Board ? "board" : "pawn") + '\t' + EscapeField(n.Text) + '\t' + n.Tag + '\t' +
           (comment == kNoComments ? std::string() : EscapeField(comment));
}

std::vector<int> FindAll(const TreeModel& tree, const std::string& layout) {
    std::vector<int> found;
    for (int at = FindInRange(tree, layout, 1, tree.Count()); at != 0;
         at = FindInRange(tree, layout, at + 1, tree.Count()))
        found.push_back(at);
    return found;
}

}  // namespace vantrel::library
