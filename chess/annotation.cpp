#include "chess/annotation.h"
// (to be written)
namespace vantrel::chess {
bool ParseToken(std::string_view, std::string& move, std::string& note) { move.clear(); note.clear(); return false; }
void NagText(std::string_view, std::string& note) { note.clear(); }
}  // namespace vantrel::chess
