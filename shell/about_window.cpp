#include "shell/about_window.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/forms.h"

using namespace vantrel;

namespace {

// The program's emblem: a small board with a pawn on it.
QPixmap Emblem(int size, qreal ratio) {
    QPixmap pm(static_cast<int>(size * ratio), static_cast<int>(size * ratio));
    pm.setDevicePixelRatio(ratio);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal cell = size / 4.0;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            p.fillRect(QRectF(c * cell, r * cell, cell, cell),
                       (r + c) % 2 ? QColor(0x2F, 0x5F, 0xC8) : QColor(0xD6, 0xDA, 0xE2));
        }
    p.setPen(QPen(QColor(0x1E, 0x24, 0x30), 1.5));
    p.drawRect(QRectF(0.75, 0.75, size - 1.5, size - 1.5));
    // A pawn in the middle.
    const qreal u = size / 16.0;
    QPainterPath pawn;
    pawn.addEllipse(QPointF(8 * u, 5 * u), 2.2 * u, 2.2 * u);
    pawn.moveTo(6.3 * u, 7.3 * u);
    pawn.lineTo(9.7 * u, 7.3 * u);
    pawn.lineTo(8.9 * u, 8.4 * u);
    pawn.cubicTo(9.1 * u, 10 * u, 10.2 * u, 11.2 * u, 11.2 * u, 12 * u);
    pawn.lineTo(4.8 * u, 12 * u);
    pawn.cubicTo(5.8 * u, 11.2 * u, 6.9 * u, 10 * u, 7.1 * u, 8.4 * u);
    pawn.closeSubpath();
    pawn.addRoundedRect(QRectF(3.8 * u, 11.8 * u, 8.4 * u, 2.2 * u), u, u);
    pawn.setFillRule(Qt::WindingFill);
    p.setPen(QPen(QColor(0x10, 0x10, 0x10), 0.9 * u / 1.5));
    p.setBrush(QColor(0xFA, 0xFA, 0xF6));
    p.drawPath(pawn.simplified());
    return pm;
}

}  // namespace

QString frmAbout::ProductName() { return QStringLiteral("Vantrel"); }
QString frmAbout::VersionText() { return QStringLiteral(VANTREL_VERSION); }
QString frmAbout::FileDescription() {
    return QStringLiteral("Opening libraries for chess players: trees of moves with game names, "
                          "comments and positions, built from PGN and SAN game files.");
}
QString frmAbout::LegalCopyright() { return QStringLiteral("Copyright \u00A9 Vantrel Software. All rights reserved."); }
QString frmAbout::CompanyName() { return QStringLiteral("Vantrel Software"); }
QString frmAbout::SupportContact() { return QStringLiteral("support@vantrel.net"); }

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ") + ProductName());
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* emblem = new QLabel(this);
    emblem->setPixmap(Emblem(64, devicePixelRatioF()));
    emblem->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    emblem->setFixedWidth(80);

    lblTitle = new QLabel(ProductName() + QStringLiteral("  Version ") + VersionText(), this);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    QFont titleFont = lblTitle->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    lblTitle->setFont(titleFont);

    lblDescription = new QLabel(FileDescription(), this);
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->setWordWrap(true);

    lblLegal = new QLabel(LegalCopyright(), this);
    lblLegal->setObjectName(QStringLiteral("lblLegal"));
    lblLegal->setWordWrap(true);

    lblCompany = new QLabel(CompanyName(), this);
    lblCompany->setObjectName(QStringLiteral("lblCompany"));

    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    lblSupport = new QLabel(QStringLiteral("e-mail your comments and suggestions to:"), this);
    lblSupport->setObjectName(QStringLiteral("lblSupport"));
    lblEmail = new QLabel(SupportContact(), this);
    lblEmail->setObjectName(QStringLiteral("lblEmail"));
    lblEmail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont emailFont = lblEmail->font();
    emailFont.setBold(true);
    lblEmail->setFont(emailFont);

    cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdOK->setMinimumWidth(TwipsToPixels(1260));
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(6);
    texts->addWidget(lblTitle);
    texts->addSpacing(4);
    texts->addWidget(lblDescription);
    texts->addSpacing(8);
    texts->addWidget(lblCompany);
    texts->addWidget(lblLegal);
    texts->addStretch(1);

    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(emblem);
    top->addLayout(texts, 1);

    auto* bottom = new QHBoxLayout;
    auto* support = new QVBoxLayout;
    support->setSpacing(2);
    support->addWidget(lblSupport);
    support->addWidget(lblEmail);
    bottom->addLayout(support, 1);
    bottom->addWidget(cmdOK, 0, Qt::AlignBottom);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 18, 18, 18);
    layout->setSpacing(12);
    layout->addLayout(top);
    layout->addWidget(line);
    layout->addLayout(bottom);

    setFixedWidth(TwipsToPixels(6300));
    adjustSize();
    CenterForm(this);
}
