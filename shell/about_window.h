// frmAbout: "About Vantrel".
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);

    QLabel* lblTitle = nullptr;        // "Vantrel  Version 1.2.0"
    QLabel* lblDescription = nullptr;
    QLabel* lblLegal = nullptr;
    QLabel* lblCompany = nullptr;
    QLabel* lblSupport = nullptr;      // "e-mail your comments and suggestions to:"
    QLabel* lblEmail = nullptr;
    QPushButton* cmdOK = nullptr;      // "&OK"

    // The texts of the version resource.
    static QString ProductName();
    static QString VersionText();  // "1.2.0"
    static QString FileDescription();
    static QString LegalCopyright();
    static QString CompanyName();
    static QString SupportContact();
};
