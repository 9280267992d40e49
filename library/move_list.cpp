#include "library/move_list.h"
// (to be written)
namespace vantrel::library {
std::vector<std::string> MoveListLines(const std::string&) { return {}; }
}  // namespace vantrel::library
