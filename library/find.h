// The walk of Find and Find Next over the nodes of a library.
#pragma once

#include <string>

#include "library/tree_model.h"

namespace vantrel::library {

// The first node number from iFrom up to iTo whose Tag equals szBoard
// exactly; 0 if none (also when iFrom > iTo).
int FindInRange(const TreeModel& tree, const std::string& szBoard, int iFrom, int iTo);

}  // namespace vantrel::library
