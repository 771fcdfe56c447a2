#include "document/TAInvoiceCacheUpdater.h"

#include "document/TACacheRecordInbox.h"
#include "document/TADocument.h"
#include "document/TADocumentWindow.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TARecurringInvoice.h"

#include <QElapsedTimer>
#include <QPointer>

namespace {

const QString kObjectID = QStringLiteral("objectID");

const QStringList &cachedKeys() {
    static const QStringList keys{TAKey::subTotal,  TAKey::itemTaxes, TAKey::totalDiscount,
                                  TAKey::totalTax2, TAKey::total,     TAKey::totalTaxes};
    return keys;
}

QVariantMap valueRecord(const TAInvoice *invoice) {
    QVariantMap record{{kObjectID, QVariant::fromValue(invoice->objectID())}};
    for (const QString &key : cachedKeys())
        record.insert(key, invoice->valueForKey(key));
    return record;
}

QList<TAInvoice *> allInvoices(ManagedObjectContext *context) {
    // What the totals read, loaded table by table rather than link by link.
    // A table that fails to load here is loaded link by link as the totals read it.
    for (const QString &entity : {TAEntity::Item, TAEntity::Currency, TAEntity::Preferences})
        if (auto loaded = context->loadEntity(entity); !loaded)
            qWarning("Could not load %s ahead of the totals: %s", qUtf8Printable(entity),
                     qUtf8Printable(loaded.error().message));
    QList<TAInvoice *> invoices = TAContextDatabase::getInvoicesInContext(context);
    for (TARecurringInvoice *recurring : TAContextDatabase::getRecurringInvoicesInContext(context))
        invoices.append(recurring);
    return invoices;
}

QList<TAInvoice *> invoicesWithIDs(const QList<ObjectID> &ids, ManagedObjectContext *context) {
    QList<TAInvoice *> invoices;
    for (const ObjectID &id : ids) // one deleted since the request is simply not found
        if (auto *invoice = dynamic_cast<TAInvoice *>(context->existingObjectWithID(id)))
            invoices.append(invoice);
    return invoices;
}

// Runs on the worker. Reads only: the private context is never saved. The end of the run is
// announced before the context is torn down, which on a large file takes a while.
void computeTotals(const std::shared_ptr<PersistentStore> &store, const QList<ObjectID> &ids,
                   bool everything, QPointer<TAInvoiceCacheUpdater> receiver,
                   const std::shared_ptr<std::atomic_bool> &cancelled,
                   const std::shared_ptr<TACacheRecordInbox> &inbox) {
    auto send = [&](QVariantMap record) {
        if (inbox->put(std::move(record)))
            QMetaObject::invokeMethod(
                receiver.data(),
                [receiver] {
                    if (receiver)
                        receiver->drainInbox();
                },
                Qt::QueuedConnection);
    };
    ManagedObjectContext context(store);
    context.setUndoManager(nullptr);
    const QList<TAInvoice *> invoices =
        everything ? allInvoices(&context) : invoicesWithIDs(ids, &context);
    const TAInvoice::TotalsSettings settings = TAInvoice::totalsSettingsInContext(&context);
    for (TAInvoice *invoice : invoices) {
        if (cancelled->load())
            return;
        invoice->updateCachedValuesWithSettings(settings);
        send(valueRecord(invoice));
    }
    send({}); // the run is over
}

} // namespace

TAInvoiceCacheUpdater::TAInvoiceCacheUpdater(TADocument &document)
    : m_document(document)
    , m_cancelled(std::make_shared<std::atomic_bool>(false))
    , m_inbox(std::make_shared<TACacheRecordInbox>()) {
    m_queue.setMaxThreadCount(1);
    m_queue.setExpiryTimeout(-1);
}

TAInvoiceCacheUpdater::~TAInvoiceCacheUpdater() {
    stop();
}

bool TAInvoiceCacheUpdater::isLockedOrInReadOnlyMode() const {
    return m_document.isLockedOrInReadOnlyMode();
}

void TAInvoiceCacheUpdater::invoiceForCacheUpdate(const ObjectID &invoiceID) {
    if (!m_enabled || !invoiceID.isValid() || m_invoicesForCacheUpdate.contains(invoiceID))
        return;
    m_invoicesForCacheUpdate.append(invoiceID);
    m_needsUpdateCache = true;
}

void TAInvoiceCacheUpdater::setCacheUpdaterEnabled(bool enabled) {
    m_enabled = enabled;
    QObject::disconnect(m_observer);
    ManagedObjectContext *context = m_document.managedObjectContext();
    if (enabled && context)
        m_observer = connect(context, &ManagedObjectContext::objectsDidChange, this,
                             [this](const ObjectsDidChange &) { doCacheUpdate(); });
}

void TAInvoiceCacheUpdater::doCacheUpdate() {
    if (!m_enabled || !m_needsUpdateCache)
        return;
    // Taken first: the save below announces changes again, and lands back here.
    m_needsUpdateCache = false;
    QList<ObjectID> queued = std::exchange(m_invoicesForCacheUpdate, {});
    if (queued.isEmpty())
        updateInvoicesCache();
    while (!queued.isEmpty())
        updateInvoiceCacheWithObjectId(queued.takeLast());
}

bool TAInvoiceCacheUpdater::canRunInBackground() const {
    const PersistentStore *store = m_document.persistentStore();
    return store && !store->isInMemory();
}

void TAInvoiceCacheUpdater::makeDocumentSettings() {
    // The totals read the preferences and the default currency. Made here, on the main
    // thread, they come from the user's address card and locale as the document's own
    // lookups make them; the totals' lookup makes nothing.
    (void)m_document.preferences();
    (void)m_document.database().getDefaultCurrency();
}

Result<void> TAInvoiceCacheUpdater::saveBeforeBackgroundRun() {
    ManagedObjectContext *context = m_document.managedObjectContext();
    if (!context)
        return Error{ErrorCode::Generic,
                     QStringLiteral("The totals were left as they were: the document has no "
                                    "contents open to save for them.")};
    // The worker reads the file: what it needs must be there. A failed save is not shown:
    // the worker then reads the older values, and the totals stay as they were until the
    // next change.
    makeDocumentSettings();
    if (auto saved = context->save(); !saved)
        qWarning("Totals are computed from the last saved values: %s",
                 qUtf8Printable(saved.error().message));
    m_document.replaceRecordedModificationDate();
    return {};
}

void TAInvoiceCacheUpdater::updateInvoicesCache() {
    if (isLockedOrInReadOnlyMode())
        return;
    if (!canRunInBackground()) {
        onMainThreadUpdateInvoicesCache();
        return;
    }
    enqueue({}, true);
}

void TAInvoiceCacheUpdater::updateInvoiceCacheWithObjectId(const ObjectID &invoiceID) {
    if (isLockedOrInReadOnlyMode())
        return;
    if (!canRunInBackground()) {
        onMainThreadUpdateInvoiceCacheWithObjectId(invoiceID);
        return;
    }
    enqueue({invoiceID}, false);
}

void TAInvoiceCacheUpdater::enqueue(QList<ObjectID> invoiceIDs, bool allInvoices) {
    if (auto saved = saveBeforeBackgroundRun(); !saved) {
        qWarning("%s", qUtf8Printable(saved.error().message));
        return;
    }
    m_queue.start(
        [store = m_document.sharedStore(), ids = std::move(invoiceIDs), allInvoices,
         receiver = QPointer<TAInvoiceCacheUpdater>(this), cancelled = m_cancelled,
         inbox = m_inbox] { computeTotals(store, ids, allInvoices, receiver, cancelled, inbox); });
}

void TAInvoiceCacheUpdater::onMainThreadUpdateInvoicesCache() {
    ManagedObjectContext *context = m_document.managedObjectContext();
    if (!context)
        return;
    makeDocumentSettings();
    updateAllCachedValuesInContext(context);
    cacheReload();
}

void TAInvoiceCacheUpdater::updateAllCachedValuesInContext(ManagedObjectContext *context) {
    TAContextDatabase::disableUndoRegistrationInContext(context);
    const TAInvoice::TotalsSettings settings = TAInvoice::totalsSettingsInContext(context);
    for (TAInvoice *invoice : TAContextDatabase::getInvoicesInContext(context))
        invoice->updateCachedValuesWithSettings(settings);
    for (TARecurringInvoice *recurring : TAContextDatabase::getRecurringInvoicesInContext(context))
        recurring->updateCachedValuesWithSettings(settings);
    TAContextDatabase::enableUndoRegistrationInContext(context);
}

void TAInvoiceCacheUpdater::onMainThreadUpdateInvoiceCacheWithObjectId(const ObjectID &invoiceID) {
    ManagedObjectContext *context = m_document.managedObjectContext();
    auto *invoice =
        context ? dynamic_cast<TAInvoice *>(context->existingObjectWithID(invoiceID)) : nullptr;
    if (!invoice || !invoice->managedObjectContext())
        return;
    TAContextDatabase::disableUndoRegistrationInContext(context);
    invoice->updateCachedValues();
    TAContextDatabase::enableUndoRegistrationInContext(context);
    cacheReload();
}

void TAInvoiceCacheUpdater::updateInvoiceChachedValues(const QVariantMap &record) {
    ManagedObjectContext *context = m_document.managedObjectContext();
    if (!context)
        return;
    const ObjectID id = record.value(kObjectID).value<ObjectID>();
    TAContextDatabase::disableUndoRegistrationInContext(context);
    ManagedObject *invoice = context->existingObjectWithID(id);
    if (invoice && !invoice->isDeleted())
        for (const QString &key : cachedKeys())
            invoice->setValueForKey(record.value(key), key);
    // Enabling again marks the document changed: the totals are data that must be saved.
    TAContextDatabase::enableUndoRegistrationInContext(context);
    if (invoice)
        emit cachedValuesApplied(id);
}

void TAInvoiceCacheUpdater::drainInbox() {
    QElapsedTimer turn;
    turn.start();
    QVariantMap record;
    while (m_inbox->take(&record)) {
        if (record.isEmpty())
            cacheReload();
        else
            updateInvoiceChachedValues(record);
        if (turn.nsecsElapsed() >= m_drainBudgetNs) {
            // The rest on a later turn, after whatever else waits.
            QMetaObject::invokeMethod(this, &TAInvoiceCacheUpdater::drainInbox,
                                      Qt::QueuedConnection);
            return;
        }
    }
}

void TAInvoiceCacheUpdater::cacheReload() {
    if (TADocumentWindow *window = m_document.window())
        window->cacheReload();
    emit cacheReloaded();
}

bool TAInvoiceCacheUpdater::isIdle() const {
    // The worker counts as active until its run has returned, so every record of a finished
    // run is in the inbox before the pool reads idle: ask the pool first.
    return m_queue.activeThreadCount() == 0 && !m_inbox->hasPending();
}

void TAInvoiceCacheUpdater::stop() {
    m_cancelled->store(true);
    m_queue.clear();
    m_queue.waitForDone();
    m_inbox->clear();
    m_cancelled = std::make_shared<std::atomic_bool>(false);
}
