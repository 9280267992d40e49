// The tree of one open library, free of any window: nodes numbered from 1 in
// order of insertion, each with its key, text, picture and 64-character
// position (its Tag). Parent lookup by key is a hash lookup, not a scan.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "library/errors.h"

namespace vantrel::library {

enum class NodeImage : uint8_t { Pawn, Board };  // image keys "pawn" and "board"

struct TreeNode {
    int32_t index = 0;  // the record's index; the node's Key is "X" + index
    int parent = 0;     // node number of the parent, 0 at the top level
    int16_t depth = 1;  // 1 at the top level
    std::string Text;
    std::string Tag;
    NodeImage Image = NodeImage::Pawn;
    bool Expanded = false;
    std::vector<int> children;  // node numbers, in order of insertion
};

class TreeModel {
public:
    static constexpr int kMaxNodes = 32767;
    // A node stands at most this many moves below the top: a game has no
    // more plies, so only a hand-made file goes deeper.
    static constexpr int kMaxDepth = 250;

    // Adds a node last among the children of the node keyed by parentIndex,
    // or last at the top level when parentIndex is 0. Returns its number.
    // Throws Error when the parent is unknown, the key is taken, the tree
    // already holds 32,767 nodes, or the node would stand deeper than
    // kMaxDepth.
    int Add(int32_t parentIndex, int32_t index, std::string text, NodeImage image, std::string tag);

    int Count() const { return static_cast<int>(nodes_.size()) - 1; }
    bool Exists(int number) const { return number >= 1 && number <= Count(); }

    // The node of a number; throws Error for a number that does not exist.
    const TreeNode& Node(int number) const;
    TreeNode& Node(int number);

    // The number of the node with key "X" + index, or 0.
    int FindByIndex(int32_t index) const;
    static std::string Key(int32_t index) { return std::string(1, 'X').append(std::to_string(index)); }

    // The numbers of the nodes from the top level down to this one.
    std::vector<int> LineTo(int number) const;

    // The Text of every node from the top level down to this one, joined by
    // single backslashes.
    std::string FullPath(int number) const;

    const std::vector<int>& TopLevel() const { return top_; }

    // Selection: 0 while no node is selected.
    int Selected() const { return selected_; }
    void Select(int number) { selected_ = Exists(number) ? number : selected_; }

private:
    std::vector<TreeNode> nodes_{1};  // slot 0 unused
    std::vector<int> top_;
    std::unordered_map<int32_t, int> byIndex_;
    int selected_ = 0;
};

}  // namespace vantrel::library
