// Speed of a document of a busy decade: 2,000 clients, 5,000 projects, 20,000 invoices,
// 200,000 items, 20,000 payments and 200,000 timer intervals. The document is generated once
// into the temporary folder and reused by later runs.
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "objectstore/Predicate.h"
#include "objectstore/SortDescriptor.h"
#include "store/TADocModel.h"
#include "store/entities/TAInvoice.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTimeZone>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

#include <sys/resource.h>

namespace {

const QString kPath = QDir::tempPath() + QStringLiteral("/billfold-bench-decade.tadb");

ManagedObject *make(ManagedObjectContext &ctx, const char *entity) {
    return ctx.insertNewObject(QLatin1String(entity));
}

void generate() {
    if (QFileInfo::exists(kPath))
        return;
    const ManagedObjectModel &model = TADocModel::model();
    auto store = PersistentStore::createInMemory(model);
    ManagedObjectContext ctx(*store);
    ctx.setUndoManager(nullptr);
    QRandomGenerator random(2026);
    const QDateTime start = QDateTime(QDate(2016, 1, 1), QTime(9, 0), QTimeZone::utc());
    auto day = [&](int d) { return start.addDays(d); };
    auto money = [&](int cents) { return QVariant::fromValue(Decimal::fromParts(cents, -2)); };
    const QStringList words{QStringLiteral("Design"),          QStringLiteral("Consulting"),
                            QStringLiteral("Zürich workshop"), QStringLiteral("Hosting"),
                            QStringLiteral("Support"),         QStringLiteral("Café rebrand"),
                            QStringLiteral("Audit"),           QStringLiteral("Translation")};

    QList<ManagedObject *> clients, projects, invoices;
    for (int i = 0; i < 2000; ++i) {
        auto *c = make(ctx, "Client");
        c->setValueForKey(QStringLiteral("Client %1").arg(i), QStringLiteral("fullName"));
        c->setValueForKey(QStringLiteral("Company %1 GmbH").arg(i), QStringLiteral("company"));
        c->setValueForKey(QStringLiteral("client%1@example.org").arg(i), QStringLiteral("email"));
        clients.append(c);
    }
    for (int i = 0; i < 5000; ++i) {
        auto *p = make(ctx, "Project");
        p->setValueForKey(QStringLiteral("%1 %2").arg(words[i % words.size()]).arg(i),
                          QStringLiteral("name"));
        p->setObjectForKey(clients[i % clients.size()], QStringLiteral("client"));
        projects.append(p);
    }
    for (int i = 0; i < 20000; ++i) {
        auto *inv = make(ctx, "Invoice");
        inv->setValueForKey(QStringLiteral("INV-%1").arg(i + 1, 5, 10, QLatin1Char('0')),
                            QStringLiteral("identification"));
        inv->setValueForKey(day(i / 6), QStringLiteral("date"));
        inv->setValueForKey(day(i / 6 + 30), QStringLiteral("dueDate"));
        inv->setValueForKey(qint64(1 + i % 3), QStringLiteral("status"));
        ManagedObject *project = projects[i % projects.size()];
        inv->setObjectForKey(project, QStringLiteral("project"));
        inv->setObjectForKey(project->objectForKey(QStringLiteral("client")),
                             QStringLiteral("client"));
        inv->setValueForKey(money(100000 + i), QStringLiteral("total"));
        invoices.append(inv);
        auto *pay = make(ctx, "Payment");
        pay->setValueForKey(money(50000 + i), QStringLiteral("amount"));
        pay->setValueForKey(QStringLiteral("EUR"), QStringLiteral("currencyCode"));
        pay->setValueForKey(day(i / 6 + 10), QStringLiteral("date"));
        pay->setObjectForKey(inv, QStringLiteral("invoice"));
    }
    for (int i = 0; i < 200000; ++i) {
        const bool timer = i % 2 == 0;
        auto *item = make(ctx, timer ? "Timer" : "Material");
        item->setValueForKey(
            QStringLiteral("%1 item %2").arg(words[random.bounded(int(words.size()))]).arg(i),
            QStringLiteral("name"));
        item->setValueForKey(QStringLiteral("SKU-%1").arg(i), QStringLiteral("sku"));
        item->setValueForKey(money(1000 + int(random.bounded(100000))), QStringLiteral("price"));
        item->setValueForKey(QVariant::fromValue(Decimal::fromParts(2, -1)), QStringLiteral("tax"));
        item->setValueForKey(day(i / 60), QStringLiteral("added"));
        item->setValueForKey(qint64(i % 10), QStringLiteral("invoiceSortIndex"));
        item->setObjectForKey(invoices[i / 10], QStringLiteral("invoice"));
        item->setObjectForKey(invoices[i / 10]->objectForKey(QStringLiteral("project")),
                              QStringLiteral("project"));
        if (timer) {
            item->setValueForKey(qint64(3600 + i % 7200), QStringLiteral("seconds"));
            for (int k = 0; k < 2; ++k) {
                auto *interval = make(ctx, "TimerInterval");
                interval->setValueForKey(day(i / 60).addSecs(k * 7200), QStringLiteral("start"));
                interval->setValueForKey(day(i / 60).addSecs(k * 7200 + 3600),
                                         QStringLiteral("end"));
                interval->setObjectForKey(item, QStringLiteral("timer"));
            }
        } else {
            item->setValueForKey(QVariant::fromValue(Decimal(1 + i % 5)),
                                 QStringLiteral("quantity"));
        }
    }
    if (!ctx.save() || !(*store)->saveAs(kPath))
        qFatal("could not write the benchmark document");
}

struct Opened {
    std::shared_ptr<PersistentStore> store;
    std::unique_ptr<ManagedObjectContext> context;
    QList<ManagedObject *> invoices;
};

Opened openAndReachInvoices() {
    Opened o;
    auto store = PersistentStore::open(kPath, TADocModel::model());
    if (!store)
        qFatal("%s", qPrintable(store.error().message));
    o.store = *store;
    o.context = std::make_unique<ManagedObjectContext>(o.store);
    FetchRequest request(QStringLiteral("Invoice"));
    request.includesSubentities = false;
    o.invoices = *o.context->executeFetchRequest(request);
    return o;
}

void BM_OpenAndReachAllInvoices(benchmark::State &state) {
    generate();
    for (auto _ : state) {
        Opened o = openAndReachInvoices();
        qint64 chars = 0;
        for (ManagedObject *invoice : o.invoices)
            chars += invoice->stringForKey(QStringLiteral("identification")).size();
        benchmark::DoNotOptimize(chars);
        if (o.invoices.size() != 20000)
            state.SkipWithError("wrong invoice count");
    }
}
BENCHMARK(BM_OpenAndReachAllInvoices)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_SaveTenChangedObjects(benchmark::State &state) {
    generate();
    Opened o = openAndReachInvoices();
    const qint64 sizeBefore = QFileInfo(kPath).size();
    qint64 round = QDateTime::currentMSecsSinceEpoch();
    for (auto _ : state) {
        ++round;
        for (int i = 0; i < 10; ++i)
            o.invoices[(round * 37 + i * 1999) % o.invoices.size()]->setValueForKey(
                QStringLiteral("note %1-%2").arg(round).arg(i), QStringLiteral("notes"));
        if (!o.context->save())
            state.SkipWithError("save failed");
    }
    state.counters["mainFileGrowthBytes"] = double(QFileInfo(kPath).size() - sizeBefore);
}
BENCHMARK(BM_SaveTenChangedObjects)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

void BM_ContainsPredicateOverAllItems(benchmark::State &state) {
    generate();
    Opened o = openAndReachInvoices();
    if (!o.context->loadEntity(QStringLiteral("Item")))
        state.SkipWithError("items did not load");
    FetchRequest request(QStringLiteral("Item"));
    request.predicate = std::make_shared<const Predicate>(
        *Predicate::parse(QStringLiteral("name CONTAINS[cd] %@"), {QStringLiteral("zurich")}));
    qsizetype found = 0;
    for (auto _ : state) {
        found = o.context->executeFetchRequest(request)->size();
        benchmark::DoNotOptimize(found);
    }
    state.counters["matches"] = double(found);
}
BENCHMARK(BM_ContainsPredicateOverAllItems)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// Natural-order sorting of every invoice by its identification, as a sorted list does, from a
// shuffled order so that the sort has real work to do.
void BM_NaturalSortOfAllInvoices(benchmark::State &state) {
    generate();
    Opened o = openAndReachInvoices();
    std::mt19937 random(11);
    std::shuffle(o.invoices.begin(), o.invoices.end(), random);
    const SortDescriptor natural(QStringLiteral("identification"), true,
                                 SortDescriptor::Comparison::LocalizedStandard);
    for (auto _ : state) {
        QList<ManagedObject *> sorted = o.invoices;
        SortDescriptor::sort(sorted, {natural});
        benchmark::DoNotOptimize(sorted.data());
    }
    state.counters["objects"] = double(o.invoices.size());
}
BENCHMARK(BM_NaturalSortOfAllInvoices)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

void BM_FirstLoadOfAllItems(benchmark::State &state) {
    generate();
    for (auto _ : state) {
        Opened o = openAndReachInvoices();
        if (!o.context->loadEntity(QStringLiteral("Item")))
            state.SkipWithError("items did not load");
    }
}
BENCHMARK(BM_FirstLoadOfAllItems)->Unit(benchmark::kMillisecond)->Iterations(3);

// Recomputes the six cached totals of every invoice in one pass, on a context that has
// everything the rules read already in memory (items, currencies, preferences).
void BM_RecomputeAllInvoiceTotals(benchmark::State &state) {
    generate();
    Opened o = openAndReachInvoices();
    for (const char *entity : {"Item", "Currency", "Preferences", "Client", "Project"})
        (void)o.context->loadEntity(QLatin1String(entity));
    o.context->setUndoManager(nullptr);
    QList<TAInvoice *> invoices;
    for (ManagedObject *object : o.invoices)
        invoices.append(static_cast<TAInvoice *>(object));
    invoices.first()->updateCachedValues(); // warm the currency behaviour cache
    for (auto _ : state) {
        // As the cache updater does: the document's settings once per pass.
        const auto settings = TAInvoice::totalsSettingsInContext(o.context.get());
        for (TAInvoice *invoice : invoices)
            invoice->updateCachedValuesWithSettings(settings);
    }
    state.counters["invoices"] = double(invoices.size());
}
BENCHMARK(BM_RecomputeAllInvoiceTotals)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

void BM_PeakMemoryEverythingLoaded(benchmark::State &state) {
    generate();
    for (auto _ : state) {
        Opened o = openAndReachInvoices();
        for (const char *entity : {"Client", "Project", "Item", "Payment", "TimerInterval"})
            (void)o.context->loadEntity(QLatin1String(entity));
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peakRssMB"] = double(usage.ru_maxrss) / 1024.0;
}
BENCHMARK(BM_PeakMemoryEverythingLoaded)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
