// Speed of invoice output: one invoice to PDF, a three-page invoice to PDF, one page to a
// picture, and a batch export over many invoices on all cores. The document is generated once
// into the temporary folder with the built-in designs and reused by later runs.
#include "invoicelayout/LMBuiltInTemplates.h"
#include "invoicelayout/render/LMInvoiceOutput.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"
#include "store/TADocumentHooks.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPreferences.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>
#include <thread>

namespace {

const QString kPath = QDir::tempPath() + QStringLiteral("/billfold-bench-render.tadb");
constexpr int kInvoices = 400;
const QString kLongNumber = QStringLiteral("LONG-1");

Decimal dec(int cents) {
    return Decimal::fromParts(cents, -2);
}

void fillInvoice(TADatabase &db, TAInvoice *invoice, int items, int seed) {
    for (int i = 0; i < items; ++i) {
        TAMaterial *item = TAContextDatabase::createMaterialInContext(db.context());
        item->setName(QStringLiteral("Design work, part %1").arg(i + 1));
        item->setSku(QStringLiteral("DW-%1").arg(i + 1, 3, 10, QLatin1Char('0')));
        item->setQuantity(dec(100 * (1 + (i + seed) % 5)));
        item->setPrice(dec(2000 + 137 * i));
        item->setTax(i % 3 ? dec(8) : dec(20)); // 0.08 and 0.20
        item->setTaxName(i % 3 ? QStringLiteral("Sales Tax") : QStringLiteral("City Tax"));
        item->setSortIndex(i);
        item->setInvoice(invoice);
    }
}

void generate() {
    if (QFileInfo::exists(kPath))
        return;
    auto store = PersistentStore::create(kPath, TADocModel::model());
    ManagedObjectContext context(store.value());
    context.setUndoManager(nullptr);
    TADocumentHooks hooks;
    TADatabase db;
    db.setDocument(&hooks);
    db.setContext(&context);
    LMBuiltInTemplates::seedBuiltInTemplates(&context);
    TACurrency *usd = TAContextDatabase::createCurrencyInContext(db.context());
    usd->setCode(QStringLiteral("USD"));
    usd->setIsDefault(true);
    TAPreferences *prefs = TAContextDatabase::getPreferencesInContext(db.context());
    prefs->setTaxesEnabled(true);
    prefs->setInfoCompany(QStringLiteral("Northwind Atelier"));
    prefs->setInfoEmail(QStringLiteral("ada@northwind.example"));
    TAClient *client = TAContextDatabase::createClientInContext(db.context());
    client->setFullNameValue(QStringLiteral("Jonas Harbor"));
    client->setCompanyValue(QStringLiteral("Harbor & Finch Ltd"));
    client->setAddressValue(QStringLiteral("1 Quay Street\nPortland, OR 97209"));
    const QList<LMInvoiceTemplateClass *> templates =
        TAContextDatabase::getTemplatesInContext(db.context());
    for (int n = 0; n <= kInvoices; ++n) {
        TAInvoice *invoice = TAContextDatabase::createInvoiceInContext(db.context());
        invoice->setClient(client);
        invoice->setIdentification(n == kInvoices ? kLongNumber : QString::number(1000 + n));
        invoice->setDate(QDateTime(QDate(2026, 1, 1).addDays(n % 300), QTime(10, 0)));
        invoice->setDueDate(invoice->date().addDays(30));
        invoice->setInvoiceTemplate(n == kInvoices ? templates.first()
                                                   : templates.at(n % templates.size()));
        fillInvoice(db, invoice, n == kInvoices ? 45 : 3 + n % 6, n);
    }
    if (!context.save())
        qFatal("cannot save the benchmark document");
}

// One context per thread on its own store connection: contexts belong to one thread.
struct OpenDocument {
    std::shared_ptr<PersistentStore> store;
    std::unique_ptr<ManagedObjectContext> context;
    TADocumentHooks hooks;
    TADatabase db;

    OpenDocument() {
        PersistentStore::Options options;
        options.readOnly = true;
        store = PersistentStore::open(kPath, TADocModel::model(), options).value();
        context = std::make_unique<ManagedObjectContext>(store);
        context->setUndoManager(nullptr);
        db.setDocument(&hooks);
        db.setContext(context.get());
    }
    TAInvoice *invoice(const QString &number) {
        for (TAInvoice *invoice : TAContextDatabase::getInvoicesInContext(db.context()))
            if (invoice->identification() == number)
                return invoice;
        return nullptr;
    }
};

OpenDocument &mainDocument() {
    static OpenDocument document;
    return document;
}

void pdfOf(benchmark::State &state, const QString &number) {
    TAInvoice *invoice = mainDocument().invoice(number);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("out.pdf"));
    int pages = 0;
    for (auto _ : state) {
        auto written = LMInvoiceOutput::writePdf(invoice, path);
        pages = written ? *written : 0;
    }
    state.counters["pages"] = pages;
    state.counters["bytes"] = QFileInfo(path).size();
}

void BM_SampleInvoiceToPdf(benchmark::State &state) {
    pdfOf(state, QStringLiteral("1004"));
}
BENCHMARK(BM_SampleInvoiceToPdf)->Unit(benchmark::kMillisecond);

void BM_ThreePageInvoiceToPdf(benchmark::State &state) {
    pdfOf(state, kLongNumber);
}
BENCHMARK(BM_ThreePageInvoiceToPdf)->Unit(benchmark::kMillisecond);

void BM_PageToImage(benchmark::State &state) {
    TAInvoice *invoice = mainDocument().invoice(QStringLiteral("1004"));
    for (auto _ : state)
        benchmark::DoNotOptimize(LMInvoiceOutput::renderPage(invoice, 1, 1.0));
}
BENCHMARK(BM_PageToImage)->Unit(benchmark::kMillisecond);

// Every invoice of the document to its own PDF file, the invoices shared among the threads.
void BM_BatchExport(benchmark::State &state) {
    const int threads = int(state.range(0));
    QTemporaryDir dir;
    for (auto _ : state) {
        std::atomic<int> written = 0;
        std::vector<std::thread> workers;
        for (int t = 0; t < threads; ++t) {
            workers.emplace_back([&, t] {
                OpenDocument document;
                const QList<TAInvoice *> invoices =
                    TAContextDatabase::getInvoicesInContext(document.db.context());
                for (qsizetype i = t; i < invoices.size(); i += threads) {
                    const QString path = dir.filePath(QStringLiteral("%1.pdf").arg(i));
                    if (LMInvoiceOutput::writePdf(invoices[i], path).ok())
                        ++written;
                }
            });
        }
        for (std::thread &worker : workers)
            worker.join();
        state.SetItemsProcessed(state.items_processed() + written);
    }
}
BENCHMARK(BM_BatchExport)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    generate();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
