#include "print/ui/print_setup.h"

#include <QDialogButtonBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>

#include "print/ui/printer_output.h"
#include "widgets/dialogs.h"
#include "widgets/settings.h"

namespace {
const QString kSection = QStringLiteral("Forms");
const QString kPrinter = QStringLiteral("Printer");
}  // namespace

void ShowPrintSetup(QWidget* parent) {
    // The printer, its paper and its layout are chosen here for every later
    // print of the run; nothing is printed.
    try {
        QPrintDialog dialog(&vantrel::print::SharedPrinter(), parent);
        dialog.setWindowTitle(QStringLiteral("Print Setup"));
        dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
        // The dialog confirms a choice here; it does not print.
        for (QDialogButtonBox* box : dialog.findChildren<QDialogButtonBox*>()) {
            if (QPushButton* ok = box->button(QDialogButtonBox::Ok)) ok->setText(QStringLiteral("OK"));
        }
        // A PDF file is chosen for one print at a time; a printer for good.
        const QPrinter& chosen = *dialog.printer();
        if (vantrel::ui::ExecModal(dialog) == QDialog::Accepted && chosen.outputFormat() == QPrinter::NativeFormat)
            RememberPrinter(chosen.printerName());
    } catch (...) {
        vantrel::ui::MsgBox(QStringLiteral("Internal error opening printer dialog.") + "\n\n" +
                            "Please call Microsoft Corp.");
    }
}

void RememberPrinter(const QString& name) {
    if (!name.isEmpty()) vantrel::SaveSettingText(kSection, kPrinter, name);
}

QString RememberedPrinter(const QStringList& available) {
    const QString name = vantrel::GetSettingText(kSection, kPrinter);
    return !name.isEmpty() && available.contains(name) ? name : QString();
}

void TakeRememberedPrinter() {
    // The system is asked for its printers only when one is remembered.
    if (vantrel::GetSettingText(kSection, kPrinter).isEmpty()) return;
    const QString name = RememberedPrinter(QPrinterInfo::availablePrinterNames());
    if (!name.isEmpty()) vantrel::print::SharedPrinter().setPrinterName(name);
}
