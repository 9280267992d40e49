#include "print/ui/print_move_list.h"

#include <QDir>
#include <QFile>

#include "print/move_list_text.h"
#include "print/ui/printer_output.h"
#include "widgets/forms.h"

using namespace vantrel;

namespace {

QString TempFilePath() { return QDir(ProgramDir()).filePath(QStringLiteral("_prt.tmp")); }

// WriteMovesFile: false, with the failure shown, when the file could not be
// written. The file is left where it is then.
bool WriteMovesFile(const library::LibraryContents& contents, const print::PrintPath& path) {
    QFile file(TempFilePath());
    try {
        const std::string text = print::MovesFileText(print::MovesFileLines(contents.tree, contents.NodeComments, path));
        // Opening for output empties a file left by an earlier failure.
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            ShowError(QStringLiteral("Path/File access error"), 75);
            return false;
        }
        if (file.write(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size()) ||
            !file.flush()) {
            file.close();
            ShowError(QStringLiteral("Device I/O error"), 57);
            return false;
        }
        file.close();
        return true;
    } catch (const std::exception& e) {
        file.close();
        ShowError(QString::fromStdString(e.what()), 5);
        return false;
    }
}

// PrintMovesFile: prints the file and deletes it, on every way out.
void PrintMovesFile() {
    QFile file(TempFilePath());
    if (!file.open(QIODevice::ReadOnly)) {
        ShowError(QStringLiteral("File not found"), 53);
        file.remove();
        return;
    }
    const QByteArray bytes = file.readAll();
    file.close();
    const std::vector<print::Page> pages =
        print::Paginate(print::ReadFileLines(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
    const print::PrintOutcome outcome = print::PrintPages(pages);
    if (outcome == print::PrintOutcome::NoPrinter)
        ShowError(QStringLiteral("There is no printer to print on. Choose a printer, or a PDF file, in File > "
                                 "Print Setup."),
                  errors::kPrinterError);
    if (outcome == print::PrintOutcome::Failed) ShowError(QStringLiteral("Printer error"), errors::kPrinterError);
    file.remove();
}

}  // namespace

namespace vantrel::print {

void PrintMoveList(const library::LibraryContents& contents, int node) {
    // Collect the line: from the node last clicked up to the top, at most
    // 201 nodes, and the game whose name heads the text.
    print::PrintPath path;
    try {
        path = print::CollectPrintPath(contents.tree, node);
    } catch (const Error& e) {
        ShowError(QString::fromStdString(e.what()), e.number());
        return;
    }
    if (!WriteMovesFile(contents, path)) return;
    PrintMovesFile();
}

}  // namespace vantrel::print
