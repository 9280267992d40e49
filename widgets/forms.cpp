#include "widgets/forms.h"

#include <QCoreApplication>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScreen>
#include <QWidget>

#include "import/program_dir.h"
#include "library/text_codec.h"
#include "widgets/dialogs.h"
#include "widgets/status_window.h"

namespace vantrel {
namespace {

QString& programDirOverride() {
    static QString dir;
    return dir;
}

// Worked out once, on first use.
const install::ProgramFolders& folders() {
    static const install::ProgramFolders resolved = install::ResolveProgramFolders();
    return resolved;
}

}  // namespace

QString ProgramTitle() { return QStringLiteral("Vantrel"); }

QString ProgramDir() {
    if (!programDirOverride().isEmpty()) return programDirOverride();
    return QFile::decodeName(folders().programDir.c_str());
}

QString DataDir() {
    if (!programDirOverride().isEmpty()) return programDirOverride();
    return QFile::decodeName(folders().dataDir.c_str());
}

QString ProgramDirProblem() {
    if (!programDirOverride().isEmpty()) return {};
    return QString::fromStdString(folders().error);
}

void SetProgramDir(const QString& dir) { programDirOverride() = dir; }

QString FromLib(const std::string& cp1252) {
    return QString::fromStdString(text::Cp1252ToUtf8(cp1252));
}

std::string ToLib(const QString& text) { return text::Utf8ToCp1252(text.toStdString()); }

QFont FixedPitchFont(qreal pointSize) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(pointSize);
    return font;
}

namespace {

void PlaceCentred(QWidget* form) {
    QScreen* screen = form->screen() ? form->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    const QRect area = screen->geometry();
    // The window's outer size, title bar and borders included, halves cut
    // to whole twips.
    const QRect frame = form->frameGeometry();
    const int screenW = PixelsToTwips(area.width());
    const int screenH = PixelsToTwips(area.height());
    const int formW = PixelsToTwips(frame.width());
    const int formH = PixelsToTwips(frame.height());
    const int left = screenW / 2 - formW / 2;
    const int top = screenH / 2 - formH / 2;
    form->move(area.left() + TwipsToPixels(left), area.top() + TwipsToPixels(top));
}

// A window not yet shown has no title bar or borders to measure: the window
// manager adds them when it first shows the window. This places the window
// once more as soon as they are known, and goes.
class CentreWhenFramed : public QObject {
public:
    static constexpr const char* kName = "centreWhenFramed";
    explicit CentreWhenFramed(QWidget* form) : QObject(form), form_(form) {
        setObjectName(QLatin1String(kName));
        form->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto type = event->type();
        if (watched == form_ && (type == QEvent::Move || type == QEvent::Resize || type == QEvent::Show) &&
            form_->frameGeometry().size() != form_->size()) {
            form_->removeEventFilter(this);
            PlaceCentred(form_);
            deleteLater();
        }
        return false;
    }

private:
    QWidget* form_;
};

}  // namespace

void CenterForm(QWidget* form) {
    if (!form) return;
    PlaceCentred(form);
    if (form->isWindow() && form->frameGeometry().size() == form->size() &&
        !form->findChild<QObject*>(QLatin1String(CentreWhenFramed::kName), Qt::FindDirectChildrenOnly))
        new CentreWhenFramed(form);
}

void ShowError(const QString& description, int number) {
    ui::MsgBox(QStringLiteral("The following Error occurred:") + "\n\n" + description + "\n" + "Number: " +
                   QString::number(number),
               ui::Buttons::Ok, ui::Icon::Exclamation);
}

bool SetAlwaysOnTop(QWidget* form, bool bOnTop) {
    if (!form) return false;
    const bool wasOnTop = form->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    if (wasOnTop != bOnTop) form->setWindowFlag(Qt::WindowStaysOnTopHint, bOnTop);
    form->show();
    return true;
}

void DoEvents() { QCoreApplication::processEvents(); }

bool FrameDue(QElapsedTimer& shown) {
    constexpr qint64 kFrameMs = 16;
    if (shown.isValid() && shown.elapsed() < kFrameMs) return false;
    shown.start();
    return true;
}

}  // namespace vantrel

namespace vantrel::forms {
namespace {

QPointer<frm_status>& status() {
    static QPointer<frm_status> form;
    return form;
}

QPointer<QWidget>& frameWindow() {
    static QPointer<QWidget> frame;
    return frame;
}

}  // namespace

QWidget* FrameWindow() { return frameWindow().data(); }

void SetFrameWindow(QWidget* frame) { frameWindow() = frame; }

frm_status& Status() {
    if (!status()) status() = new frm_status();
    return *status();
}

void UnloadStatus() { delete status().data(); }

bool StatusLoaded() { return !status().isNull(); }

QWidget* OuterWindow(QWidget* form) {
    if (!form) return nullptr;
    if (auto* sub = qobject_cast<QMdiSubWindow*>(form->parentWidget())) return sub;
    return form;
}

}  // namespace vantrel::forms
