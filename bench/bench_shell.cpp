// The desktop program on a document of a busy decade (20,000 invoices, 200,000 items, made by
// bench_store when missing): how long from starting the program to a painted window with its
// sidebar filled, how long a switch between sections takes, and how long the undo of a
// one-object change takes with the whole-window reload that follows it.
#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "objectstore/ManagedObjectContext.h"
#include "shell/application/TAApplicationDelegate.h"
#include "shell/application/TAMainMenu.h"
#include "shell/sidebar/TAGroupsController.h"
#include "shell/sidebar/TAGroupsModel.h"
#include "shell/undo/TAUndoMenuActions.h"
#include "shell/window/TAMainWindow.h"
#include "store/TAEntityCreation.h"
#include "store/entities/TAProject.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

const QString kPath = QDir::tempPath() + QStringLiteral("/billfold-bench-decade.tadb");
const QString kCopy = QDir::tempPath() + QStringLiteral("/billfold-bench-shell.tadb");

bool freshCopy() {
    if (!QFileInfo::exists(kPath))
        QProcess::execute(QCoreApplication::applicationDirPath() + QStringLiteral("/bench_store"),
                          {QStringLiteral("--benchmark_filter=BM_FirstLoadOfAllItems")});
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(kCopy + QLatin1String(suffix));
    return QFile::copy(kPath, kCopy);
}

// The real program, started as a person starts it, until its window is painted.
void startProgram(benchmark::State &state, const QString &document) {
    QTemporaryDir settings;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), settings.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QStringList arguments = {QStringLiteral("--quit-after-start")};
    arguments +=
        document.isEmpty() ? QStringList{QStringLiteral("--sample")} : QStringList{document};
    for (auto _ : state) {
        QProcess program;
        program.setProcessEnvironment(environment);
        const qint64 started = QDateTime::currentMSecsSinceEpoch();
        program.start(QStringLiteral(BILLFOLD_APP), arguments);
        if (!program.waitForFinished(120000) || program.exitCode() != 0)
            return state.SkipWithError("the program did not start and quit");
        // The program says when it painted; its quitting is no part of its start.
        const QByteArray said = program.readAllStandardOutput();
        const qsizetype at = said.indexOf("painted at ");
        if (at < 0)
            return state.SkipWithError("the program did not report its paint");
        const qint64 painted = said.mid(at + 11).split(' ').constFirst().toLongLong();
        state.SetIterationTime(double(painted - started) / 1e3);
    }
}

void BM_StartToPaintedWindowOnTheDecade(benchmark::State &state) {
    if (!freshCopy())
        return state.SkipWithError("no benchmark document");
    startProgram(state, kCopy);
}
BENCHMARK(BM_StartToPaintedWindowOnTheDecade)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseManualTime();

void BM_StartToPaintedWindowOnTheSample(benchmark::State &state) {
    startProgram(state, QString());
}
BENCHMARK(BM_StartToPaintedWindowOnTheSample)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseManualTime();

// One window on the decade, shared by the in-process measures.
struct OpenWindow {
    TAApplicationDelegate delegate;
    TADocument *document = nullptr;
    TAMainWindow *window = nullptr;

    bool open() {
        if (!freshCopy())
            return false;
        auto opened = delegate.openDocumentAtPath(kCopy);
        if (!opened)
            return false;
        document = *opened;
        window = TAMainWindow::forDocument(document);
        return window != nullptr;
    }
    ~OpenWindow() {
        if (document)
            TADocumentController::sharedDocumentController().closeDocument(document);
    }
};

void BM_SwitchSection(benchmark::State &state) {
    OpenWindow open;
    if (!open.open())
        return state.SkipWithError("the document did not open");
    TAGroupsController &groups = *open.window->groupsController();
    bool reports = false;
    for (auto _ : state) {
        reports = !reports;
        reports ? groups.selectReports() : groups.selectInvoices();
        benchmark::DoNotOptimize(open.window->grab()); // the whole window painted
    }
}
BENCHMARK(BM_SwitchSection)->Unit(benchmark::kMillisecond)->Iterations(50);

void BM_UndoOneChangeWithWindowReload(benchmark::State &state) {
    OpenWindow open;
    if (!open.open())
        return state.SkipWithError("the document did not open");
    ManagedObjectContext *context = open.document->managedObjectContext();
    TAProject *project = TAEntityCreation::createProjectInContext(context);
    project->setName(QStringLiteral("Benchmark"));
    context->processPendingChanges();
    QAction *undo = open.window->findChild<TAMainMenu *>()->undoActions()->undoAction();
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        open.document->database().beginUndoGroupingWithName(QStringLiteral("Rename"));
        project->setName(QStringLiteral("Benchmark %1").arg(++round));
        open.document->database().endUndoGrouping();
        context->processPendingChanges();
        state.ResumeTiming();
        undo->trigger();
        benchmark::DoNotOptimize(open.window->grab());
    }
}
BENCHMARK(BM_UndoOneChangeWithWindowReload)->Unit(benchmark::kMillisecond)->Iterations(50);

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
