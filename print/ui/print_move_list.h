// Print Move List: the line of play to a node of a library, printed on the
// printer of Print Setup.
#pragma once

#include "library/loader.h"

namespace vantrel::print {

// Sets the line that ends at `node` (the node last clicked) into the
// temporary file _prt.tmp in the program's folder, reads it back and prints
// it page by page. A failure on the way is shown and ends the print.
void PrintMoveList(const library::LibraryContents& contents, int node);

}  // namespace vantrel::print
