// The moves list of a node: a numbered two-column score built from the
// node's FullPath.
#pragma once

#include <string>
#include <vector>

namespace vantrel::library {

// The lines of the moves list for a FullPath (library text): numbering,
// padding and the walk over the backslashes.
std::vector<std::string> MoveListLines(const std::string& szFullpath);

}  // namespace vantrel::library
