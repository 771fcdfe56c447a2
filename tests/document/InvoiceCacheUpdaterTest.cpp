#include "DocumentTestSupport.h"

#include "document/TACacheRecordInbox.h"
#include "document/TAInvoiceCacheUpdater.h"
#include "foundation/dates/ScopedFixedClock.h"
#include "objectstore/UndoManager.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"

#include <QThread>

namespace {

class InvoiceCache : public ::testing::Test {
protected:
    void SetUp() override { ensureApplication(); }
    void TearDown() override {
        for (TADocument *document : controller().documents())
            controller().closeDocument(document);
    }
    // A document with a file, so that totals are computed in the background.
    TADocument *savedDocument() {
        TADocument *document = *controller().openUntitledDocument();
        EXPECT_TRUE(document->saveAs(dir.filePath(QStringLiteral("cache.tadb"))).ok());
        watch(document);
        return document;
    }
    void watch(TADocument *document) {
        TAInvoiceCacheUpdater *updater = &document->cacheUpdater();
        QObject::connect(updater, &TAInvoiceCacheUpdater::cachedValuesApplied, updater,
                         [this](const ObjectID &id) {
                             applied.append(id);
                             offMainThread |= QThread::currentThread() != qApp->thread();
                         });
        QObject::connect(updater, &TAInvoiceCacheUpdater::cacheReloaded, updater,
                         [this] { ++reloads; });
    }
    TAInvoice *invoiceWithMaterial(TADocument *document, const char *quantity, const char *price) {
        TAInvoice *invoice =
            TAContextDatabase::createInvoiceInContext(document->database().context());
        material = TAContextDatabase::createMaterialInContext(document->database().context());
        material->setQuantity(dec(quantity));
        material->setPrice(dec(price));
        material->setInvoice(invoice);
        return invoice;
    }
    // Announces the event's changes and waits until the worker has finished every run it was
    // given and all their values are applied: the first run's end may come before a second's.
    void endEventAndSettle(TADocument *document) {
        endEventAndSettleAfter(
            [document] { document->managedObjectContext()->processPendingChanges(); }, document);
    }
    void endEventAndSettleAfter(const std::function<void()> &start, TADocument *document) {
        const int before = reloads;
        start();
        ASSERT_TRUE(waitForCacheWorker(document));
        ASSERT_GT(reloads, before) << "no run reached its end";
    }

    QTemporaryDir dir;
    ScopedFixedClock clock{QDateTime(QDate(2026, 6, 1), QTime(8, 0))};
    TAMaterial *material = nullptr;
    QList<ObjectID> applied;
    int reloads = 0;
    bool offMainThread = false;
};

} // namespace

TEST_F(InvoiceCache, UnsavedDocumentTotalsAtOnce) {
    TADocument *document = *controller().openUntitledDocument();
    watch(document);
    TAInvoice *invoice = invoiceWithMaterial(document, "3", "10");
    document->managedObjectContext()->processPendingChanges();
    EXPECT_EQ(invoice->total(), dec("30"));
    EXPECT_TRUE(document->cacheUpdater().invoicesForCacheUpdate().isEmpty());
    EXPECT_TRUE(applied.isEmpty()); // nothing went through the worker
}

TEST_F(InvoiceCache, TotalsArriveOnTheMainThreadAndAreNoUndoStep) {
    TADocument *document = savedDocument();
    UndoManager *undo = document->managedObjectContext()->undoManager();
    document->database().beginUndoGroupingWithName(QStringLiteral("New Invoice"));
    TAInvoice *invoice = invoiceWithMaterial(document, "3", "10");
    document->database().endUndoGrouping();
    ASSERT_EQ(undo->undoCount(), 1);
    endEventAndSettle(document);

    EXPECT_EQ(invoice->total(), dec("30"));
    EXPECT_EQ(invoice->subTotal(), dec("30"));
    EXPECT_TRUE(applied.contains(invoice->objectID()));
    EXPECT_FALSE(offMainThread);
    EXPECT_EQ(undo->undoCount(), 1);
    EXPECT_EQ(undo->undoActionName(), QStringLiteral("New Invoice"));
    // The save before the run was no regular save: no warning of an outside change follows.
    EXPECT_TRUE(document->fileModificationDate().isNull());
    EXPECT_FALSE(document->fileWasChangedByAnotherProgram());
    EXPECT_TRUE(document->isDocumentEdited());
}

TEST_F(InvoiceCache, TwoChangesInOneEventMakeOneRequestAndOneRun) {
    TADocument *document = savedDocument();
    TAInvoice *invoice = invoiceWithMaterial(document, "1", "1");
    endEventAndSettle(document);
    applied.clear();
    reloads = 0;

    material->setPrice(dec("5"));
    material->setQuantity(dec("4"));
    EXPECT_EQ(document->cacheUpdater().invoicesForCacheUpdate(),
              QList<ObjectID>{invoice->objectID()});
    endEventAndSettle(document);
    EXPECT_EQ(applied, QList<ObjectID>{invoice->objectID()});
    EXPECT_EQ(reloads, 1);
    EXPECT_EQ(invoice->total(), dec("20"));

    // Switched off, as around a multi-object delete, the updater takes no requests.
    document->cacheUpdater().setCacheUpdaterEnabled(false);
    material->setPrice(dec("6"));
    EXPECT_TRUE(document->cacheUpdater().invoicesForCacheUpdate().isEmpty());
}

TEST_F(InvoiceCache, InvoiceDeletedBeforeTheRunIsSkipped) {
    TADocument *document = savedDocument();
    TAInvoice *keep = invoiceWithMaterial(document, "2", "2");
    TAInvoice *doomed = invoiceWithMaterial(document, "1", "1");
    endEventAndSettle(document);
    applied.clear();

    const ObjectID doomedID = doomed->objectID();
    material->setPrice(dec("9")); // the doomed invoice's item
    keep->items().value(0)->setPrice(dec("3"));
    TAContextDatabase::deleteObject(doomed, document->database().context());
    endEventAndSettle(document);
    EXPECT_FALSE(applied.contains(doomedID));
    EXPECT_EQ(keep->total(), dec("6"));
    EXPECT_EQ(document->managedObjectContext()->existingObjectWithID(doomedID), nullptr);
}

// A long list arrives over many turns of the event loop, and the end of the run is heard only
// after its last record.
TEST_F(InvoiceCache, LongRunEndsAfterItsLastRecord) {
    TADocument *document = savedDocument();
    QList<TAInvoice *> invoices;
    // Made with the updater off: a run for each new invoice is not what this is about.
    document->cacheUpdater().setCacheUpdaterEnabled(false);
    for (int i = 0; i < 300; ++i)
        invoices.append(invoiceWithMaterial(document, "1", "2"));
    document->managedObjectContext()->processPendingChanges();
    document->cacheUpdater().setCacheUpdaterEnabled(true);
    for (TAInvoice *invoice : invoices) // stale values, as from an older program
        invoice->setPrimitiveValueForKey(QVariant::fromValue(dec("0")), QStringLiteral("total"));
    applied.clear();
    qsizetype appliedAtEnd = -1;
    QObject::connect(&document->cacheUpdater(), &TAInvoiceCacheUpdater::cacheReloaded,
                     &document->cacheUpdater(), [&] { appliedAtEnd = applied.size(); });
    document->cacheUpdater().setDrainBudget(0);
    endEventAndSettleAfter(
        [&] {
            document->updateInvoicesCache();
            document->cacheUpdater().waitForDone(); // everything is sent before any arrives
        },
        document);
    EXPECT_EQ(appliedAtEnd, 300);
    for (TAInvoice *invoice : invoices)
        ASSERT_EQ(invoice->total(), dec("2"));
}

TEST(CacheRecordInbox, AsksForADrainOnlyWhenNonePending) {
    TACacheRecordInbox inbox;
    EXPECT_TRUE(inbox.put({{QStringLiteral("n"), 1}}));
    EXPECT_FALSE(inbox.put({{QStringLiteral("n"), 2}}));
    QVariantMap record;
    ASSERT_TRUE(inbox.take(&record));
    EXPECT_EQ(record.value(QStringLiteral("n")), 1);
    // A put while the drain is still running needs no second drain.
    EXPECT_FALSE(inbox.put({{QStringLiteral("n"), 3}}));
    ASSERT_TRUE(inbox.take(&record));
    ASSERT_TRUE(inbox.take(&record));
    EXPECT_EQ(record.value(QStringLiteral("n")), 3);
    EXPECT_FALSE(inbox.take(&record));
    // Once the drain found it empty, the next record must ask again or it would be lost.
    EXPECT_TRUE(inbox.put({}));
}
