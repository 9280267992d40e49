#include "print/ui/printer_output.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPrinter>
#include <algorithm>

#include "widgets/forms.h"

namespace vantrel::print {
namespace {

QString& pdfTarget() {
    static QString path;
    return path;
}

// The font of every page: fixed pitch, so that the columns of the rows line
// up, and as large as lets 66 lines fit the height of the page. A line longer
// than the width is cut off at the edge, as on a printer.
QFont PageFont(const QRectF& area) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    const qreal lineHeight = area.height() / kLinesPerPage;
    font.setPixelSize(std::max(1, static_cast<int>(lineHeight * 0.82)));
    return font;
}

// A printer to print on: a PDF file chosen in Print Set-up, or a printer of
// the system (the one chosen there, or its default).
bool HasTarget(const QPrinter& printer) {
    return printer.outputFormat() == QPrinter::PdfFormat ? !printer.outputFileName().isEmpty()
                                                          : !printer.printerName().isEmpty();
}

}  // namespace

QPrinter& SharedPrinter() {
    static QPrinter printer(QPrinter::HighResolution);
    return printer;
}

bool RenderPages(QPrinter& printer, const std::vector<Page>& pages) {
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const QRectF area = printer.pageLayout().paintRectPixels(printer.resolution());
    // Coordinates start at the corner of the printable area.
    const QRectF page(0, 0, area.width(), area.height());

    const QFont font = PageFont(page);
    painter.setFont(font);
    painter.setClipRect(page);
    painter.setPen(Qt::black);
    const qreal lineHeight = page.height() / kLinesPerPage;
    const qreal ascent = QFontMetricsF(font, &printer).ascent();

    bool first = true;
    for (const Page& p : pages) {
        if (!first && !printer.newPage()) {
            painter.end();
            return false;
        }
        first = false;
        for (std::size_t i = 0; i < p.size(); ++i) {
            const qreal baseline = page.top() + lineHeight * static_cast<qreal>(i) + ascent;
            painter.drawText(QPointF(page.left(), baseline), FromLib(p[i]));
        }
    }
    return painter.end();
}

bool PrintPagesToPdf(const std::vector<Page>& pages, const QString& path) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setPageLayout(SharedPrinter().pageLayout());
    printer.setDocName(QStringLiteral("Vantrel - Print Moves List"));
    return RenderPages(printer, pages);
}

PrintOutcome PrintPages(const std::vector<Page>& pages) {
    if (!pdfTarget().isEmpty()) return PrintPagesToPdf(pages, pdfTarget()) ? PrintOutcome::Printed : PrintOutcome::Failed;
    QPrinter& printer = SharedPrinter();
    if (!HasTarget(printer)) return PrintOutcome::NoPrinter;
    printer.setDocName(QStringLiteral("Vantrel - Print Moves List"));
    return RenderPages(printer, pages) ? PrintOutcome::Printed : PrintOutcome::Failed;
}

void SetPdfTarget(const QString& path) { pdfTarget() = path; }

}  // namespace vantrel::print
