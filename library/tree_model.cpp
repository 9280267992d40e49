#include "library/tree_model.h"

#include <algorithm>

namespace vantrel::library {

int TreeModel::Add(int32_t parentIndex, int32_t index, std::string text, NodeImage image, std::string tag) {
    if (Count() >= kMaxNodes) throw Error("too many nodes", errors::kInvalidProcedureCall);
    int parent = 0;
    if (parentIndex != 0) {
        parent = FindByIndex(parentIndex);
        if (parent == 0) throw Error("element not found: " + Key(parentIndex), errors::kInvalidProcedureCall);
        if (nodes_[parent].depth >= kMaxDepth) throw Error("deeper than any game", errors::kInvalidProcedureCall);
    }
    if (!byIndex_.emplace(index, static_cast<int>(nodes_.size())).second)
        throw Error("key is not unique: " + Key(index), errors::kInvalidProcedureCall);
    int number = static_cast<int>(nodes_.size());
    TreeNode& node = nodes_.emplace_back();
    node.index = index;
    node.parent = parent;
    node.depth = parent ? static_cast<int16_t>(nodes_[parent].depth + 1) : int16_t{1};
    node.Text = std::move(text);
    node.Tag = std::move(tag);
    node.Image = image;
    (parent ? nodes_[parent].children : top_).push_back(number);
    return number;
}

const TreeNode& TreeModel::Node(int number) const {
    if (!Exists(number)) throw Error("index out of bounds", errors::kInvalidProcedureCall);
    return nodes_[number];
}

TreeNode& TreeModel::Node(int number) {
    if (!Exists(number)) throw Error("index out of bounds", errors::kInvalidProcedureCall);
    return nodes_[number];
}

int TreeModel::FindByIndex(int32_t index) const {
    auto it = byIndex_.find(index);
    return it == byIndex_.end() ? 0 : it->second;
}

std::vector<int> TreeModel::LineTo(int number) const {
    std::vector<int> line;
    for (int n = number; n != 0; n = Node(n).parent) line.push_back(n);
    std::reverse(line.begin(), line.end());
    return line;
}

std::string TreeModel::FullPath(int number) const {
    const std::vector<int> line = LineTo(number);
    std::string path;
    for (auto it = line.begin(); it != line.end(); ++it) {
        if (it != line.begin()) path.push_back('\\');
        path += nodes_[*it].Text;
    }
    return path;
}

}  // namespace vantrel::library
