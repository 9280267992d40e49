#include "widgets/status_window.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "widgets/forms.h"

frm_status::frm_status(QWidget* parent) : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    setObjectName(QStringLiteral("frm_status"));
    setWindowTitle(QStringLiteral("Vantrel"));
    setAttribute(Qt::WA_ShowWithoutActivating);

    lblMessage = new QLabel(QStringLiteral("Building tree..."), this);
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setAlignment(Qt::AlignCenter);
    lblMessage->setWordWrap(true);

    Progbar = new QProgressBar(this);
    Progbar->setObjectName(QStringLiteral("Progbar"));
    Progbar->setRange(0, 100);
    Progbar->setValue(0);
    Progbar->setTextVisible(true);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->setSpacing(10);
    layout->addWidget(lblMessage);
    layout->addWidget(Progbar);

    // 4800 x 1200 twips: room for the longest of the messages.
    resize(vantrel::TwipsToPixels(4800), vantrel::TwipsToPixels(1200));
    vantrel::CenterForm(this);
}
