#include "library/ui/remarks_window.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <algorithm>

#include "widgets/forms.h"

using namespace vantrel;

frmLibRemarks::frmLibRemarks(const QString& remarks, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmLibRemarks"));
    setWindowTitle(QStringLiteral("Library Remarks"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    txtLibRemarks = new QPlainTextEdit(this);
    txtLibRemarks->setObjectName(QStringLiteral("txtLibRemarks"));
    txtLibRemarks->setReadOnly(true);
    txtLibRemarks->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    txtLibRemarks->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    txtLibRemarks->setFont(FixedPitchFont(10));
    txtLibRemarks->document()->setDocumentMargin(6);

    Command1 = new QPushButton(QStringLiteral("OK"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setDefault(true);
    Command1->setAutoDefault(true);
    connect(Command1, &QPushButton::clicked, this, &QDialog::accept);

    // 6600 x 4800 twips.
    resize(TwipsToPixels(6600), TwipsToPixels(4800));
    setMinimumSize(TwipsToPixels(2400), TwipsToPixels(1800));

    // Form_Load
    CenterForm(this);
    txtLibRemarks->setPlainText(remarks);
}

void frmLibRemarks::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    Form_Resize();
}

void frmLibRemarks::Form_Resize() {
    // The text takes the inner area less 585 twips at the bottom; the button
    // stands 840 twips above the window's bottom edge and 1365 in from its
    // right edge, the window's frame included.
    // A thin frame never lets the button ride up over the text.
    const QRect outer = frameGeometry();
    const QRect inner = geometry();
    const int insetX = inner.x() - outer.x();
    const int insetY = inner.y() - outer.y();
    const int textHeight = std::max(0, height() - TwipsToPixels(585));
    txtLibRemarks->setGeometry(0, 0, width(), textHeight);
    const int left = std::max(0, outer.width() - TwipsToPixels(1365) - insetX);
    const int top = std::max(textHeight + 4, outer.height() - TwipsToPixels(840) - insetY);
    Command1->setGeometry(left, top, TwipsToPixels(1215), TwipsToPixels(375));
}
