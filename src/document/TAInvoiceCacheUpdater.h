#pragma once

#include "billing/TAInvoiceCacheRequests.h"
#include "foundation/Result.h"
#include "objectstore/ObjectID.h"

#include <QList>
#include <QObject>
#include <QThreadPool>
#include <QVariantMap>

#include <atomic>
#include <memory>

class ManagedObjectContext;
class TACacheRecordInbox;
class TADocument;
struct ObjectsDidChange;

// Keeps the six cached totals of a document's invoices fresh. Requests only record invoice
// identities; when the context announces its changes, the main context is saved and the
// totals are computed on a serial background worker in a context of its own, and the values
// come back to the main thread without the worker waiting, applied one invoice at a time. Documents
// without a file, or locked ones, compute on the main thread instead. Main thread only, apart from
// the worker.
class TAInvoiceCacheUpdater : public QObject, public TAInvoiceCacheQueue {
    Q_OBJECT
public:
    explicit TAInvoiceCacheUpdater(TADocument &document);
    ~TAInvoiceCacheUpdater() override;

    bool isLockedOrInReadOnlyMode() const override;
    void invoiceForCacheUpdate(const ObjectID &invoiceID) override;

    bool cacheUpdaterEnabled() const { return m_enabled; }
    void setCacheUpdaterEnabled(bool enabled);
    bool needsUpdateCache() const { return m_needsUpdateCache; }
    void setNeedsUpdateCache(bool needs) { m_needsUpdateCache = needs; }
    const QList<ObjectID> &invoicesForCacheUpdate() const { return m_invoicesForCacheUpdate; }
    void resetCacheUpdater() { m_invoicesForCacheUpdate.clear(); }

    void doCacheUpdate();
    void updateInvoicesCache();
    void updateInvoiceCacheWithObjectId(const ObjectID &invoiceID);
    void onMainThreadUpdateInvoicesCache();
    // Every invoice's and recurring invoice's totals, at once and with undo off. Makes neither
    // preferences nor a default currency: a document without them is totalled without them.
    static void updateAllCachedValuesInContext(ManagedObjectContext *context);
    void onMainThreadUpdateInvoiceCacheWithObjectId(const ObjectID &invoiceID);
    // Applies one value record ("objectID" and the six decimals) outside undo.
    void updateInvoiceChachedValues(const QVariantMap &record);

    // Applies what the worker has sent, one record at a time, for a few milliseconds per turn
    // of the event loop so that the window stays responsive while a long list trickles in.
    void drainInbox();
    // How long one turn of the event loop may spend applying records; 0 applies one per turn.
    void setDrainBudget(qint64 nanoseconds) { m_drainBudgetNs = nanoseconds; }
    // Lets the worker finish what it was given; its records still arrive through the loop.
    void waitForDone() { m_queue.waitForDone(); }
    // True when no run is queued or running and everything the worker sent has been applied:
    // what a caller waits for before it looks at the totals.
    bool isIdle() const;
    // Drops work not yet started, asks a running operation to stop, and waits for it.
    void stop();

signals:
    void cachedValuesApplied(const ObjectID &invoiceID);
    // After each run, when the lists are redrawn.
    void cacheReloaded();

private:
    bool canRunInBackground() const;
    void makeDocumentSettings();
    Result<void> saveBeforeBackgroundRun();
    // Saves what the worker reads, then hands it the invoices.
    void enqueue(QList<ObjectID> invoiceIDs, bool allInvoices);
    void cacheReload();

    TADocument &m_document;
    QThreadPool m_queue;
    QList<ObjectID> m_invoicesForCacheUpdate;
    bool m_needsUpdateCache = false;
    bool m_enabled = false;
    QMetaObject::Connection m_observer;
    std::shared_ptr<std::atomic_bool> m_cancelled;
    std::shared_ptr<TACacheRecordInbox> m_inbox;
    // Short enough that the window answers the user between turns.
    qint64 m_drainBudgetNs = 4 * 1000 * 1000;
};
