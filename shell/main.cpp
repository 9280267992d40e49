// The program: the main frame, and the library named on the command line.
#include <QApplication>
#include <QIcon>

#include "shell/main_frame.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Vantrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Vantrel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VANTREL_VERSION));

    QStringList arguments;
    for (int i = 1; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);

    MDIVantrel frame;
    frame.MDIForm_Load(vantrel::JoinCommandLine(arguments));
    return app.exec();
}
