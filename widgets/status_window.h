// frm_status: the one progress and please-wait window.
#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

class frm_status : public QWidget {
    Q_OBJECT
public:
    explicit frm_status(QWidget* parent = nullptr);
    QProgressBar* Progbar = nullptr;  // 0..100
    QLabel* lblMessage = nullptr;     // "Building tree..." when new
};
