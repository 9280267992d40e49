#include "library/find.h"
// (to be written)
namespace vantrel::library {
int FindInRange(const TreeModel&, const std::string&, int, int) { return 0; }
}  // namespace vantrel::library
