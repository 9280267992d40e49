// The program: the main frame, and the library named on the command line.
#include <QApplication>
#include <QIcon>
#include <QScreen>
#include <cstdio>
#include <cstring>

#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "shell/main_frame.h"

int main(int argc, char** argv) {
    // --version alone is answered without a window; anything else on the
    // command line is the path of a library, as it always was.
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("vantrel %s\n", VANTREL_VERSION);
        return 0;
    }
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Vantrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Vantrel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VANTREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("vantrel"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("vantrel")));

    QStringList arguments;
    for (int i = 1; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);

    // The program still starts; an import or a print will fail and say so.
    if (const QString problem = vantrel::ProgramDirProblem(); !problem.isEmpty())
        vantrel::ui::MsgBox(problem, vantrel::ui::Buttons::Ok, vantrel::ui::Icon::Exclamation);

    MDIVantrel frame;
    // The frame's design size suits a small screen; on a larger one the
    // frame starts larger, centred. A remembered position still wins.
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect start = vantrel::DefaultFrameGeometry(screen->availableGeometry(), frame.size());
        frame.resize(start.size());
        frame.move(start.topLeft());
    }
    frame.MDIForm_Load(vantrel::JoinCommandLine(arguments));
    return app.exec();
}
