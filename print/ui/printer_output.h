// Putting the pages of a moves list on paper: the program's one printer and
// PDF output.
#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "print/move_list_text.h"

class QPrinter;

namespace vantrel::print {

// The printer of the run. Print Setup changes its settings, and every later
// print starts from them.
QPrinter& SharedPrinter();

// Draws the pages on a printer that is ready to paint on: one fixed-pitch
// font for every page, 66 lines to the height of its printable area, and
// what passes the right edge cut off. False when the printer refuses to
// start (no printer, a file that cannot be written).
bool RenderPages(QPrinter& printer, const std::vector<Page>& pages);

// Writes the pages into a PDF file, with no dialog. False on failure.
bool PrintPagesToPdf(const std::vector<Page>& pages, const QString& path);

// What printing did with the pages.
enum class PrintOutcome { Printed, NoPrinter, Failed };

// Prints the pages straight away, with no dialog: on the printer chosen in
// Print Set-up (a PDF file among them), or else the system's default one.
// NoPrinter when there is neither. With a PDF target set (below) the pages
// go into that file instead.
PrintOutcome PrintPages(const std::vector<Page>& pages);

// Test seam: while a path is set, PrintPages writes a PDF there instead of
// printing. An empty path prints again.
void SetPdfTarget(const QString& path);

}  // namespace vantrel::print
