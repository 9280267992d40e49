#include "print/ui/print_setup.h"

#include <QDialogButtonBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>

#include "print/ui/printer_output.h"
#include "shell/dialogs.h"

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
        vantrel::ui::ExecModal(dialog);
    } catch (...) {
        vantrel::ui::MsgBox(QStringLiteral("Internal error opening printer dialog.") + "\n\n" +
                            "Please call Microsoft Corp.");
    }
}
