#include "DocumentTestSupport.h"

#include "billing/dates/ScopedFixedClock.h"
#include "store/document/TAInvoiceCacheUpdater.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAMaterial.h"
#include "store/objectstore/UndoManager.h"

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
        TAInvoice *invoice = document->database().createInvoice();
        material = document->database().createMaterial();
        material->setQuantity(dec(quantity));
        material->setPrice(dec(price));
        material->setInvoice(invoice);
        return invoice;
    }
    // Announces the event's changes and waits until the worker has finished all it was given.
    void endEventAndSettle(TADocument *document) {
        const int before = reloads;
        document->managedObjectContext()->processPendingChanges();
        ASSERT_TRUE(spinUntil([&] { return reloads > before; }));
        document->cacheUpdater().stop();
        QCoreApplication::processEvents();
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
    document->database().deleteObject(doomed);
    endEventAndSettle(document);
    EXPECT_FALSE(applied.contains(doomedID));
    EXPECT_EQ(keep->total(), dec("6"));
    EXPECT_EQ(document->managedObjectContext()->existingObjectWithID(doomedID), nullptr);
}
