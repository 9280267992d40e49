// frmLibRemarks: "Library Remarks", the remarks of the active library (or
// what stands in for them when none is open).
#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

class frmLibRemarks : public QDialog {
    Q_OBJECT
public:
    explicit frmLibRemarks(const QString& remarks, QWidget* parent = nullptr);

    QPlainTextEdit* txtLibRemarks = nullptr;
    QPushButton* Command1 = nullptr;  // "OK"

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Form_Resize();
};
