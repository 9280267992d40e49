#include "chess/resolver.h"
// (to be written)
namespace vantrel::chess {
int16_t ResolveMove(ImportBoard&, std::string&, int16_t) { return kCantParse; }
int16_t FindPiece(const ImportBoard&, std::string&, int16_t&, int16_t&, bool, int16_t) { return 0; }
void MarkReach(const ImportBoard&, ReachMap& reach, const std::string&, int16_t, int16_t, bool) {
    for (auto& row : reach.squares) for (auto& c : row) c = ' ';
}
}  // namespace vantrel::chess
