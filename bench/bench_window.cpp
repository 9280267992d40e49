// The windows against the core they show, offscreen:
//   BM_OpenInWindow  a 32,767-node library made by vantrel-gen-library,
//                    opened into a tree window of the real frame, with the
//                    remarks window answered;
//   BM_WizardImport  the 10,000 made-up games of bench_import through the
//                    import wizard's run page, repairs answered by skip.
// Compare with bench_load and bench_import.
//
//   bench_window --benchmark_counters_tabular=true
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdlib>
#include <memory>

#include "import/moves_table.h"
#include "import/ui/fix_move_dialog.h"
#include "import/ui/import_wizard.h"
#include "library/ui/tree_window.h"
#include "widgets/dialogs.h"
#include "widgets/forms.h"
#include "shell/main_frame.h"
#include "shell/tree_views.h"

namespace {

using namespace vantrel;

QTemporaryDir& Scratch() {
    static QTemporaryDir dir;
    return dir;
}

// Runs the deletions that closed windows have asked for.
void FlushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

double PeakRssMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void Run(const QString& command) {
    if (std::system(command.toLocal8Bit().constData()) != 0) {
        std::fprintf(stderr, "bench_window: %s failed\n", qPrintable(command));
        std::abort();
    }
}

// Message boxes and modal dialogs answered: OK to everything, skip for a repair.
void AnswerEverything() {
    ui::SetMessageHandler([](const ui::MessageRequest&) { return ui::Answer::Ok; });
    ui::SetModalHandler([](QDialog& dialog) {
        if (auto* fix = qobject_cast<frmFixMove*>(&dialog)) fix->cmdSkipGame->click();
        dialog.done(QDialog::Accepted);
        return static_cast<int>(QDialog::Accepted);
    });
}

// The frame lives until main ends, before the application object goes.
std::unique_ptr<MDIVantrel>& FrameHolder() {
    static std::unique_ptr<MDIVantrel> frame;
    return frame;
}

MDIVantrel& Frame() {
    std::unique_ptr<MDIVantrel>& frame = FrameHolder();
    if (!frame) {
        frame = std::make_unique<MDIVantrel>();
        frame->MDIForm_Load(QString());
        QCoreApplication::processEvents();
    }
    return *frame;
}

void BM_OpenInWindow(benchmark::State& state) {
    const QString library = Scratch().filePath(QStringLiteral("big.vnb"));
    Run(QStringLiteral("'%1' '%2' 32767").arg(QStringLiteral(VANTREL_GEN_LIBRARY), library));
    Frame();
    cTreeView& views = Frame().TreeViews();
    int nodes = 0;
    for (auto _ : state) {
        views.OpenLib(library);
        state.PauseTiming();
        frmTreeView* form = views.All().isEmpty() ? nullptr : views.All().last();
        if (!form) {
            state.SkipWithError("the library did not open");
            return;
        }
        nodes = form->Contents().tree.Count();
        forms::OuterWindow(form)->close();
        FlushDeletes();
        state.ResumeTiming();
    }
    state.counters["nodes"] = nodes;
    state.counters["peak_MB"] = PeakRssMegabytes();
}
BENCHMARK(BM_OpenInWindow)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_WizardImport(benchmark::State& state) {
    const QString dir = Scratch().path();
    const QString games = Scratch().filePath(QStringLiteral("games.pgn"));
    Run(QStringLiteral("'%1' '%2' 10000").arg(QStringLiteral(VANTREL_GEN_GAMES), games));
    std::string error;
    if (!import::CreateDatabaseFromSchema((dir + QStringLiteral("/Tessimo.mdb")).toStdString(), VANTREL_SCHEMA,
                                          &error)) {
        state.SkipWithError(error.c_str());
        return;
    }
    SetProgramDir(dir);
    for (auto _ : state) {
        state.PauseTiming();
        frmImportWizard wizard;
        wizard.show();
        wizard.cmdNext->click();  // PGN
        for (int tag : {0, 4, 5}) wizard.chkTag[static_cast<size_t>(tag)]->setChecked(true);  // as bench_import
        wizard.cmdNext->click();
        wizard.txtInFile->setText(games);
        wizard.txtBookName->setText(QStringLiteral("Bench"));
        wizard.cmdNext->click();  // the summary
        state.ResumeTiming();
        wizard.cmdNext->click();  // the run
        state.PauseTiming();
        if (wizard.CurrentPage != 3 || !wizard.cmdNext->isEnabled()) {
            state.SkipWithError("the import failed");
            return;
        }
        state.ResumeTiming();
    }
    SetProgramDir(QString());
    state.counters["peak_MB"] = PeakRssMegabytes();
}
BENCHMARK(BM_WizardImport)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Settings of the run stay in the scratch folder.
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, Scratch().path());
    AnswerEverything();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    AppClosing = true;
    FrameHolder().reset();
    FlushDeletes();
    return 0;
}
