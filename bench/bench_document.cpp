// A document of a busy decade (20,000 invoices, 200,000 items) opened the way the window opens
// it: how long until every invoice total is fresh, and how long the main thread is ever busy
// in one stretch while the totals are computed in the background. The document itself is
// made by bench_store, which this benchmark runs first when the file is missing.
#include "document/TADocument.h"
#include "document/TADocumentController.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "invoicelayout/LMBuiltInTemplates.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

const QString kPath = QDir::tempPath() + QStringLiteral("/billfold-bench-decade.tadb");
const QString kCopy = QDir::tempPath() + QStringLiteral("/billfold-bench-document.tadb");

bool ensureDecadeDocument() {
    if (QFileInfo::exists(kPath))
        return true;
    const QString generator =
        QCoreApplication::applicationDirPath() + QStringLiteral("/bench_store");
    QProcess::execute(generator, {QStringLiteral("--benchmark_filter=BM_FirstLoadOfAllItems")});
    return QFileInfo::exists(kPath);
}

// A fresh copy per run: opening marks the file changed and the cache run saves into it.
bool freshCopy() {
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(kCopy + QLatin1String(suffix));
    return QFile::copy(kPath, kCopy);
}

// Spins the event loop until the updater has reloaded its lists `count` times.
void waitForReloads(TAInvoiceCacheUpdater &updater, int count) {
    int reloads = 0;
    QEventLoop loop;
    auto connection = QObject::connect(&updater, &TAInvoiceCacheUpdater::cacheReloaded, &loop, [&] {
        if (++reloads >= count)
            loop.quit();
    });
    loop.exec();
    QObject::disconnect(connection);
}

void BM_OpenToFreshTotals(benchmark::State &state) {
    if (!ensureDecadeDocument())
        return state.SkipWithError("no benchmark document");
    TADocumentController &controller = TADocumentController::sharedDocumentController();
    int applied = 0;
    double stepsMs = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (!freshCopy())
            return state.SkipWithError("could not copy the document");
        state.ResumeTiming();
        // Opening runs the first full update; the document is ready when its values are in.
        QElapsedTimer steps;
        steps.start();
        auto opened = controller.openDocumentWithContentsOfURL(kCopy);
        stepsMs = double(steps.nsecsElapsed()) / 1e6;
        if (!opened)
            return state.SkipWithError("the document did not open");
        TADocument *document = *opened;
        applied = 0;
        QObject::connect(&document->cacheUpdater(), &TAInvoiceCacheUpdater::cachedValuesApplied,
                         [&applied] { ++applied; });
        waitForReloads(document->cacheUpdater(), 1);
        state.PauseTiming();
        controller.closeDocument(document);
        state.ResumeTiming();
    }
    state.counters["recordsApplied"] = applied;
    state.counters["openingStepsMs"] = stepsMs; // the part before the worker takes over
}
BENCHMARK(BM_OpenToFreshTotals)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

// Measures the gaps between turns of a 0-ms timer while a full update runs: the longest gap is
// the longest time the main thread could not answer the user.
void BM_LongestMainThreadStretchDuringFullUpdate(benchmark::State &state) {
    if (!ensureDecadeDocument() || !freshCopy())
        return state.SkipWithError("no benchmark document");
    TADocumentController &controller = TADocumentController::sharedDocumentController();
    TADocument *document = *controller.openDocumentWithContentsOfURL(kCopy);
    waitForReloads(document->cacheUpdater(), 1);
    (void)document->save(); // the first update's values, so the run below starts clean
    qint64 longest = 0, saveBefore = 0;
    for (auto _ : state) {
        QElapsedTimer clock;
        qint64 last = 0;
        QTimer ticker;
        ticker.setInterval(0);
        QObject::connect(&ticker, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed();
            longest = std::max(longest, now - last);
            last = now;
        });
        clock.start();
        ticker.start();
        QTimer::singleShot(0, [&] {
            QElapsedTimer save;
            save.start();
            document->updateInvoicesCache();
            saveBefore = save.nsecsElapsed();
        });
        waitForReloads(document->cacheUpdater(), 1);
        ticker.stop();
    }
    state.counters["longestStretchMs"] = double(longest) / 1e6;
    state.counters["requestOnMainMs"] = double(saveBefore) / 1e6;
    controller.closeDocument(document);
}
BENCHMARK(BM_LongestMainThreadStretchDuringFullUpdate)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    LMBuiltInTemplates::install(); // a document opens with its designs, as in the program
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(kCopy + QLatin1String(suffix));
    return 0;
}
