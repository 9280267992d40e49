// Printing the moves list: the temporary file, the pages on paper (as PDF),
// the failures, and the dialogs on the way. The printed lines themselves are
// the core's; here they must reach the paper with their columns.
#include "gui_test_support.h"
#include <QPrintDialog>
#include <QPrinter>
#include "print/ui/print_setup.h"
#include "print/ui/print_move_list.h"
#include "print/ui/printer_output.h"

namespace {

// What pdftotext (installed with the project's dependencies) reads from a
// PDF: with -layout the text, or with -bbox the word boxes.
QString Pdftotext(const QString& path, const char* mode) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QString::fromLatin1(mode), path, QStringLiteral("-")});
    if (!p.waitForFinished(30000) || p.exitCode() != 0) ADD_FAILURE() << "pdftotext failed on " << path.toStdString();
    return QString::fromUtf8(p.readAllStandardOutput());
}

// The pages of a PDF as lines of text: the type is fixed-pitch, so each
// word goes to the column its left edge stands on, and a column that is off
// by one blank shows. Words at one height make a line.
std::vector<QStringList> PdfPages(const QString& path) {
    static const QRegularExpression word(QStringLiteral(
        R"re(<page |<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="[\d.]+">([^<]*)</word>)re"));
    struct Word {
        double x, y, width;
        QString text;
    };
    std::vector<std::vector<Word>> words;
    for (const QRegularExpressionMatch& m : word.globalMatch(Pdftotext(path, "-bbox"))) {
        if (m.captured(1).isEmpty()) words.emplace_back();
        else if (!words.empty()) {
            QString text = m.captured(4);
            text.replace("&apos;", "'").replace("&quot;", "\"").replace("&lt;", "<").replace("&gt;", ">").replace("&amp;", "&");
            words.back().push_back({m.captured(1).toDouble(), m.captured(2).toDouble(),
                                    m.captured(3).toDouble() - m.captured(1).toDouble(), text});
        }
    }
    std::vector<QStringList> pages;
    for (const auto& page : words) {
        double left = 1e9, pitch = 0;
        qsizetype longest = 0;
        for (const Word& w : page) {
            left = std::min(left, w.x);
            if (w.text.size() > longest) longest = w.text.size(), pitch = w.width / double(w.text.size());
        }
        QMap<int, QString> lines;
        for (const Word& w : page) {
            QString& line = lines[qRound(w.y)];
            const int column = qRound((w.x - left) / pitch);
            line = (line.isEmpty() || line.size() < column ? line.leftJustified(column) : line + ' ') + w.text;
        }
        pages.push_back(lines.values());
    }
    return pages;
}

// The pages the core makes of the line to `node`, as PdfPages reads them:
// empty lines and blanks at the ends of lines leave no trace on paper.
std::vector<QStringList> Expected(const frmTreeView* form, int node) {
    std::vector<QStringList> pages;
    for (const print::Page& page : print::MoveListPages(form->Contents().tree, form->Contents().NodeComments, node)) {
        pages.emplace_back();
        for (const std::string& line : page)
            if (const QString l = QString::fromStdString(line).remove(QRegularExpression(QStringLiteral("\\s+$"))); !l.isEmpty())
                pages.back() << l;
    }
    return pages;
}

class PrintTest : public FrameTest {
protected:
    void SetUp() override {
        FrameTest::SetUp();
        StartFrame();
        pdf = dir.file(QStringLiteral("out.pdf"));
        print::SetPdfTarget(pdf);
        LibraryBuilder lib("Openings");  // e4 named, e5, Nf3 with a comment, Nc6, Bb5; c5 beside e5
        lib.Game(1, 0, "e4", "King's pawn").Add(2, 1, "e5").Add(3, 2, "Nf3", "Develops the knight.");
        lib.Add(4, 3, "Nc6").Add(5, 4, "Bb5").Add(6, 1, "c5");
        form = Open(lib);
        ASSERT_NE(form, nullptr);
    }
    void TearDown() override {
        print::SetPdfTarget(QString());
        FrameTest::TearDown();
    }
    QString Temp() const { return dir.file(QStringLiteral("_prt.tmp")); }
    QString pdf;
    frmTreeView* form = nullptr;
};

}  // namespace

TEST_F(PrintTest, ThePrintedLineOfTheClickedNodeReachesThePaperWithItsColumns) {
    {  // a temporary file left by an earlier failure is overwritten
        QFile junk(Temp());
        ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
        for (int i = 0; i < 200; ++i) junk.write("LEFTOVER LINE\r\n");
    }
    Click(form, 5);
    messages.messages.clear();
    frame->TreeViews().PrintMoveList();
    EXPECT_TRUE(messages.messages.empty()) << messages.Texts().join("|").toStdString();
    EXPECT_FALSE(QFileInfo::exists(Temp())) << "the temporary file is deleted after printing";
    EXPECT_EQ(form->CurrentNode, 5) << "printing changes neither CurrentNode nor the selection";
    EXPECT_EQ(form->Contents().tree.Selected(), 5);
    const std::vector<QStringList> pages = PdfPages(pdf);
    EXPECT_EQ(pages, Expected(form, 5));
    ASSERT_EQ(pages.size(), 1u);
    EXPECT_EQ(pages[0].value(3), "  1. e4              : King's pawn") << "the columns themselves";
}

TEST_F(PrintTest, ALongTextRunsOverPagesWithAHeadOnEach) {
    LibraryBuilder lib("Long");
    // 40 plies, each with a one-line comment: 40 rows and 120 comment lines.
    for (int i = 1; i <= 40; ++i) lib.Add(i, i - 1, "m" + std::to_string(i), "Note " + std::to_string(i));
    frmTreeView* longOne = Open(lib, "long.vnb");
    ASSERT_NE(longOne, nullptr);
    Click(longOne, 40);
    frame->TreeViews().PrintMoveList();
    const std::vector<QStringList> pages = PdfPages(pdf);
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_EQ(pages, Expected(longOne, 40));
}

TEST_F(PrintTest, ALineOfMoreThan201NodesAFileInTheWayAndAFailingPrinterAreReported) {
    frmTreeView* chain = Open(Chain(202), "chain.vnb");
    ASSERT_NE(chain, nullptr);
    Click(chain, 202);
    messages.messages.clear();
    print::PrintMoveList(chain->Contents(), chain->CurrentNode);
    EXPECT_TRUE(messages.Texts().size() == 1 && messages.Texts()[0].startsWith("The following Error occurred:\n\n"));
    EXPECT_FALSE(QFileInfo::exists(pdf));
    // A folder where the temporary file goes: nothing is printed, and it stays.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("_prt.tmp")));
    messages.messages.clear();
    print::PrintMoveList(form->Contents(), form->CurrentNode);
    EXPECT_TRUE(messages.Texts().value(0).startsWith("The following Error occurred:"));
    EXPECT_FALSE(QFileInfo::exists(pdf));
    EXPECT_TRUE(QFileInfo(Temp()).isDir());
    // A printer that fails is reported, and the temporary file still goes.
    ASSERT_TRUE(QDir(dir.path()).rmdir(QStringLiteral("_prt.tmp")));
    print::SetPdfTarget(dir.file(QStringLiteral("no/such/folder/out.pdf")));
    messages.messages.clear();
    print::PrintMoveList(form->Contents(), form->CurrentNode);
    EXPECT_TRUE(messages.Texts().value(0).contains("Printer error"));
    EXPECT_FALSE(QFileInfo::exists(Temp()));
}

TEST_F(PrintTest, PrintingGoesStraightToThePrinterOfPrintSetupWithNoDialogAndTheNextStartTakesItAgain) {
    print::SetPdfTarget(QString());
    QString title;
    QPrinter* used = nullptr;
    onModal = [&](QDialog& dialog) {
        title = dialog.windowTitle();
        if (auto* d = qobject_cast<QPrintDialog*>(&dialog)) used = d->printer();
        return static_cast<int>(QDialog::Rejected);
    };
    ShowPrintSetup(frame.get());
    EXPECT_EQ(title, "Print Setup");
    EXPECT_EQ(used, &print::SharedPrinter());
    title.clear();
    QPrinter& printer = print::SharedPrinter();
    printer.setOutputFormat(QPrinter::PdfFormat);  // no printer chosen, and none in the system
    printer.setOutputFileName(QString());
    messages.messages.clear();
    print::PrintMoveList(form->Contents(), form->CurrentNode);
    EXPECT_EQ(messages.Texts(), QStringList{"The following Error occurred:\n\nThere is no printer to print on. Choose a "
                                            "printer, or a PDF file, in File > Print Setup.\nNumber: 482"});
    EXPECT_EQ(messages.messages[0].icon, ui::Icon::Exclamation);
    EXPECT_FALSE(QFileInfo::exists(Temp()));
    const QString chosen = dir.file(QStringLiteral("chosen.pdf"));  // "Print to File (PDF)" in Print Setup
    printer.setOutputFileName(chosen);
    messages.messages.clear();
    print::PrintMoveList(form->Contents(), form->CurrentNode);
    EXPECT_TRUE(messages.messages.empty());
    EXPECT_TRUE(title.isEmpty()) << "no preview, no print dialog";
    EXPECT_EQ(PdfPages(chosen), Expected(form, 1));
    printer.setOutputFileName(QString());
    printer.setOutputFormat(QPrinter::NativeFormat);
    RememberPrinter(QStringLiteral("Office"));  // what an accepted Print Setup keeps
    StartFrame();  // the next run
    EXPECT_EQ(RememberedPrinter({"Home", "Office"}), "Office");
    EXPECT_EQ(RememberedPrinter({"Home"}), "") << "a printer that has gone is not taken";
}
