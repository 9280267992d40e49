// frmImportWizard: "Vantrel Import Wizard", a text file of games into a new
// library.
#pragma once

#include <QDialog>

class frmImportWizard : public QDialog {
    Q_OBJECT
public:
    explicit frmImportWizard(QWidget* parent = nullptr);
    ~frmImportWizard() override;
};
