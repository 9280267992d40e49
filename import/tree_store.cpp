#include "import/tree_store.h"
// (to be written)
namespace vantrel::import {
bool BuildTree(const ImportOptions&, ImportHost&, ImportSession&) { return false; }
bool WriteLibrary(const ImportOptions&, ImportHost&, const ImportSession&) { return false; }
std::string LibraryPath(const ImportOptions& o) { return o.programDir + "/" + o.bookName + ".vnb"; }
}  // namespace vantrel::import
