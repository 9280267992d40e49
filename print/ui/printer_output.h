// Putting the pages of a moves list on paper: the program's one printer,
// the print preview with its Print button, and PDF output.
#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "print/move_list_text.h"

class QPrinter;
class QWidget;

namespace vantrel::print {

// The printer of the run. Print Setup changes its settings, and every later
// print starts from them.
QPrinter& SharedPrinter();

// Draws the pages on a printer that is ready to paint on: a fixed-pitch
// font, 66 lines to the page fitted to its printable area. False when the
// printer refuses to start (no printer, a file that cannot be written).
bool RenderPages(QPrinter& printer, const std::vector<Page>& pages);

// Writes the pages into a PDF file, with no dialog. False on failure.
bool PrintPagesToPdf(const std::vector<Page>& pages, const QString& path);

// What printing did with the pages.
enum class PrintOutcome { Printed, Cancelled, Failed };

// Prints the pages the way the user expects: a print preview whose Print
// button opens the print dialog (where "Print to File (PDF)" is offered),
// both through the program's modal seam. With a PDF target set (below) the
// pages go straight into that file instead.
PrintOutcome PrintPages(const std::vector<Page>& pages, QWidget* parent);

// Test seam: while a path is set, PrintPages writes a PDF there without any
// dialog. An empty path restores the dialogs.
void SetPdfTarget(const QString& path);
QString PdfTarget();

}  // namespace vantrel::print
