// The walk of Find and Find Next over the nodes of a library.
#pragma once

#include <string>

#include "library/tree_model.h"

namespace vantrel::library {

// The first node number from iFrom up to iTo whose Tag equals szBoard
// exactly; 0 if none (also when iFrom > iTo).
int FindInRange(const TreeModel& tree, const std::string& szBoard, int iFrom, int iTo);

// The walk of a new Find that starts at node iSearchStart: the nodes after
// it up to the last, then from the first up to iSearchStart itself, which is
// tried last. The match, or 0.
int FindFromStart(const TreeModel& tree, const std::string& szBoard, int iSearchStart);

// The walk of Find Next with the selection at node iCurrent and the search
// begun at node iSearchStart: it goes on behind iCurrent and ends at
// iSearchStart, wrapping past the last node only if it has not yet gone by
// iSearchStart. The match, or 0.
int FindNextFrom(const TreeModel& tree, const std::string& szBoard, int iCurrent, int iSearchStart);

}  // namespace vantrel::library
