// Printing the moves list: the temporary file, the pages on paper (as PDF),
// the failures, and the dialogs on the way.
#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include "print/ui/print_setup.h"
#include "print/ui/printer_output.h"
#include "shell_fixture.h"

using namespace vantrel;
using namespace vantrel::testing;

namespace {

// The text of a PDF, if pdftotext is there; a null string otherwise. Runs
// of blanks come back as one blank: the tool guesses the spacing of a line
// from the positions of its words.
QString PdfText(const QString& path) {
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
    if (tool.isEmpty()) return QString();
    QProcess p;
    p.start(tool, {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!p.waitForFinished(30000)) return QString();
    QString text = QString::fromUtf8(p.readAllStandardOutput());
    text.replace(QRegularExpression(QStringLiteral("[ \\t]+")), QStringLiteral(" "));
    return text;
}

// The worked line: e4 named, e5, Nf3 with a comment, Nc6, Bb5.
LibraryBuilder Ruy() {
    LibraryBuilder lib("Openings");
    lib.Game(1, 0, "e4", "King's pawn");
    lib.Add(2, 1, "e5");
    lib.Add(3, 2, "Nf3", "Develops the knight.");
    lib.Add(4, 3, "Nc6");
    lib.Add(5, 4, "Bb5");
    lib.Add(6, 1, "c5");
    return lib;
}

class PrintTest : public FrameTest {
protected:
    void SetUp() override {
        FrameTest::SetUp();
        pdf = dir.file(QStringLiteral("out.pdf"));
        print::SetPdfTarget(pdf);
    }
    void TearDown() override {
        print::SetPdfTarget(QString());
        FrameTest::TearDown();
    }
    QString Temp() const { return dir.file(QStringLiteral("_prt.tmp")); }
    static void Click(frmTreeView* form, int node) {
        form->SelectNode(node);
        form->tvTreeView_NodeClick(node);
    }

    QString pdf;
};

TEST_F(PrintTest, ThePrintedLineOfTheClickedNode) {
    StartFrame();
    frmTreeView* form = Open(Ruy());
    ASSERT_NE(form, nullptr);
    {
        // A temporary file left by an earlier failure is overwritten.
        QFile junk(Temp());
        ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
        for (int i = 0; i < 200; ++i) junk.write("LEFTOVER LINE\r\n");
    }
    Click(form, 5);
    messages.messages.clear();
    forms::TreeViews().PrintMoveList();
    EXPECT_TRUE(messages.messages.empty()) << messages.Texts().join("|").toStdString();
    ASSERT_TRUE(QFileInfo::exists(pdf));
    EXPECT_FALSE(QFileInfo::exists(Temp())) << "the temporary file is deleted after printing";
    EXPECT_EQ(form->CurrentNode, 5) << "printing changes neither CurrentNode nor the selection";
    EXPECT_EQ(form->Contents().tree.Selected(), 5);
    const QString text = PdfText(pdf);
    if (text.isNull()) GTEST_SKIP() << "pdftotext is not installed";
    const QStringList wanted{"Vantrel - Print Moves List Page 1", QString(56, '='), "King's pawn", "1. e4 : King's pawn", "1. ..... e5", "2. Nf3",
                             "Develops the knight.", "2. ..... Nc6", "3. Bb5"};
    qsizetype at = 0;
    for (const QString& w : wanted) {
        const qsizetype found = text.indexOf(w, at);
        EXPECT_GE(found, 0) << w.toStdString() << " in order, in:\n" << text.toStdString();
        if (found >= 0) at = found + w.size();
    }
    EXPECT_FALSE(text.contains("c5")) << "only the line to the clicked node";
    EXPECT_FALSE(text.contains("LEFTOVER"));
}

TEST_F(PrintTest, ALongTextRunsOverPagesWithAHeadOnEach) {
    StartFrame();
    LibraryBuilder lib("Long");
    // 40 plies, each with a one-line comment: 40 rows and 120 comment lines.
    for (int i = 1; i <= 40; ++i) lib.Add(i, i - 1, "m" + std::to_string(i), "Note " + std::to_string(i));
    frmTreeView* form = Open(lib);
    ASSERT_NE(form, nullptr);
    Click(form, 40);
    forms::TreeViews().PrintMoveList();
    ASSERT_TRUE(QFileInfo::exists(pdf));
    const QString text = PdfText(pdf);
    if (text.isNull()) GTEST_SKIP() << "pdftotext is not installed";
    EXPECT_EQ(text.count(QChar('\f')), 3) << "three pages";
    EXPECT_EQ(text.count("Vantrel - Print Moves List Page "), 3) << "a head on each";
    EXPECT_TRUE(text.contains("Page 3"));
    EXPECT_TRUE(text.contains("Note 40"));
}

TEST_F(PrintTest, ALineOfMoreThan201NodesIsAnErrorAndPrintsNothing) {
    StartFrame();
    frmTreeView* form = Open(Chain(202));
    ASSERT_NE(form, nullptr);
    Click(form, 202);
    messages.messages.clear();
    form->PrintMoveList();
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_TRUE(messages.messages[0].text.startsWith("The following Error occurred:\n\n"));
    EXPECT_FALSE(QFileInfo::exists(pdf));
    EXPECT_FALSE(QFileInfo::exists(Temp()));

    Click(form, 201);
    messages.messages.clear();
    form->PrintMoveList();
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_TRUE(QFileInfo::exists(pdf));
}

TEST_F(PrintTest, AFileInTheWayOrAFailingPrinterIsReported) {
    StartFrame();
    frmTreeView* form = Open(Ruy());
    ASSERT_NE(form, nullptr);
    // A folder where the temporary file goes: nothing is printed, and what
    // stands there stays.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("_prt.tmp")));
    messages.messages.clear();
    form->PrintMoveList();
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_TRUE(messages.messages[0].text.startsWith("The following Error occurred:"));
    EXPECT_FALSE(QFileInfo::exists(pdf));
    EXPECT_TRUE(QFileInfo(Temp()).isDir());

    // A printer that fails is reported, and the temporary file still goes.
    ASSERT_TRUE(QDir(dir.path()).rmdir(QStringLiteral("_prt.tmp")));
    print::SetPdfTarget(dir.file(QStringLiteral("no/such/folder/out.pdf")));
    messages.messages.clear();
    form->PrintMoveList();
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_TRUE(messages.messages[0].text.contains("Printer error"));
    EXPECT_FALSE(QFileInfo::exists(Temp()));
}

TEST_F(PrintTest, PrintingGoesStraightToThePrinterOfPrintSetupWithNoDialog) {
    StartFrame();
    frmTreeView* form = Open(Ruy());
    ASSERT_NE(form, nullptr);
    print::SetPdfTarget(QString());
    onModal = [this](QDialog& dialog) {
        modals.push_back({dialog.metaObject()->className(), {}});
        return static_cast<int>(QDialog::Rejected);
    };
    QPrinter& printer = print::SharedPrinter();
    printer.setOutputFormat(QPrinter::PdfFormat);  // no printer chosen, and none in the system
    printer.setOutputFileName(QString());
    messages.messages.clear();
    form->PrintMoveList();
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_EQ(messages.messages[0].text, "The following Error occurred:\n\nThere is no printer to print on. Choose a "
                                         "printer, or a PDF file, in File > Print Setup.\nNumber: 482");
    EXPECT_FALSE(QFileInfo::exists(Temp()));

    const QString chosen = dir.file(QStringLiteral("chosen.pdf"));  // "Print to File (PDF)" in Print Setup
    printer.setOutputFileName(chosen);
    messages.messages.clear();
    form->PrintMoveList();
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_TRUE(modals.empty()) << "no preview, no print dialog";
    EXPECT_GT(QFileInfo(chosen).size(), 0);
    EXPECT_FALSE(QFileInfo::exists(Temp()));
    printer.setOutputFileName(QString());
    printer.setOutputFormat(QPrinter::NativeFormat);
}

TEST_F(PrintTest, EveryPrintHasOneTypeSizeHoweverLongItsLines) {
    // The height of the page head's first word, from the PDF's word boxes.
    const auto headHeight = [](const QString& path) {
        QProcess p;
        p.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), path, QStringLiteral("-")});
        p.waitForFinished(30000);
        const QRegularExpression word(QStringLiteral("yMin=\"([\\d.]+)\" xMax=\"[\\d.]+\" yMax=\"([\\d.]+)\">Vantrel<"));
        const QRegularExpressionMatch m = word.match(QString::fromUtf8(p.readAllStandardOutput()));
        return m.hasMatch() ? m.captured(2).toDouble() - m.captured(1).toDouble() : -1.0;
    };
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty()) GTEST_SKIP() << "no pdftotext";
    const std::vector<print::Page> shortLines = print::Paginate({"  1. e4"});
    const std::vector<print::Page> longLine = print::Paginate({"  1. e4           : " + std::string(150, 'x')});
    const QString a = dir.file(QStringLiteral("a.pdf")), b = dir.file(QStringLiteral("b.pdf"));
    ASSERT_TRUE(print::PrintPagesToPdf(shortLines, a) && print::PrintPagesToPdf(longLine, b));
    EXPECT_GT(headHeight(a), 0);
    EXPECT_EQ(headHeight(a), headHeight(b));
}

TEST_F(PrintTest, PrintSetupShowsTheDialogOnTheSharedPrinter) {
    StartFrame();
    QPrinter* used = nullptr;
    QString title;
    onModal = [&](QDialog& dialog) {
        title = dialog.windowTitle();
        if (auto* d = qobject_cast<QPrintDialog*>(&dialog)) used = d->printer();
        return static_cast<int>(QDialog::Rejected);
    };
    ShowPrintSetup(frame.get());
    EXPECT_EQ(title, "Print Setup");
    EXPECT_EQ(used, &print::SharedPrinter());
    EXPECT_TRUE(messages.messages.empty());
}

}  // namespace
