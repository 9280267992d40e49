#include "print/ui/printer_output.h"

#include <QAction>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrintDialog>
#include <QPageSetupDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <algorithm>

#include "shell/dialogs.h"
#include "shell/forms.h"

namespace vantrel::print {
namespace {

QString& pdfTarget() {
    static QString path;
    return path;
}

// The font for a page: fixed pitch, so that the columns of the rows line up,
// and as large as lets 66 lines fit the height and the widest line fit the
// width.
QFont PageFont(const QRectF& area, int columns, QPaintDevice* device) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    const qreal lineHeight = area.height() / kLinesPerPage;
    qreal pixelSize = std::max<qreal>(1.0, lineHeight * 0.82);
    font.setPixelSize(std::max(1, static_cast<int>(pixelSize)));
    const qreal advance = QFontMetricsF(font, device).horizontalAdvance(QLatin1Char('M'));
    if (advance > 0 && advance * columns > area.width()) {
        pixelSize = pixelSize * area.width() / (advance * columns);
        font.setPixelSize(std::max(1, static_cast<int>(pixelSize)));
    }
    return font;
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

    int columns = 72;  // a wrapped comment line and its margin
    for (const Page& p : pages)
        for (const std::string& line : p) columns = std::max(columns, static_cast<int>(FromLib(line).size()));
    const QFont font = PageFont(page, columns, &printer);
    painter.setFont(font);
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

PrintOutcome PrintPages(const std::vector<Page>& pages, QWidget* parent) {
    if (!pdfTarget().isEmpty()) return PrintPagesToPdf(pages, pdfTarget()) ? PrintOutcome::Printed : PrintOutcome::Failed;

    QPrinter& printer = SharedPrinter();
    printer.setDocName(QStringLiteral("Vantrel - Print Moves List"));
    QPrintPreviewDialog preview(&printer, parent);
    preview.setWindowTitle(QStringLiteral("Vantrel - Print Moves List"));
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&pages](QPrinter* target) { RenderPages(*target, pages); });

    // The preview's own Print and Page setup buttons would open dialogs of
    // their own; ours go through the program's modal seam.
    PrintOutcome outcome = PrintOutcome::Cancelled;
    const QString printText = QCoreApplication::translate("QPrintPreviewDialog", "Print");
    const QString setupText = QCoreApplication::translate("QPrintPreviewDialog", "Page setup");
    for (QAction* action : preview.findChildren<QAction*>()) {
        if (action->text() == printText) {
            QObject::disconnect(action, nullptr, &preview, nullptr);
            QObject::connect(action, &QAction::triggered, &preview, [&] {
                QPrintDialog dialog(&printer, &preview);
                if (ui::ExecModal(dialog) != QDialog::Accepted) return;
                outcome = RenderPages(printer, pages) ? PrintOutcome::Printed : PrintOutcome::Failed;
                preview.accept();
            });
        } else if (action->text() == setupText) {
            QObject::disconnect(action, nullptr, &preview, nullptr);
            QObject::connect(action, &QAction::triggered, &preview, [&] {
                QPageSetupDialog dialog(&printer, &preview);
                if (ui::ExecModal(dialog) != QDialog::Accepted) return;
                if (auto* widget = preview.findChild<QPrintPreviewWidget*>()) widget->updatePreview();
            });
        }
    }
    ui::ExecModal(preview);
    return outcome;
}

void SetPdfTarget(const QString& path) { pdfTarget() = path; }
QString PdfTarget() { return pdfTarget(); }

}  // namespace vantrel::print
