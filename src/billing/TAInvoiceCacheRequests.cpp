#include "billing/TAInvoiceCacheRequests.h"

#include "objectstore/ManagedObjectContext.h"
#include "store/entities/TAInvoice.h"

#include <QHash>

#include <utility>

namespace {
// Main thread only, like every request.
QHash<const ManagedObjectContext *, TAInvoiceCacheQueue *> &queues() {
    static QHash<const ManagedObjectContext *, TAInvoiceCacheQueue *> byContext;
    return byContext;
}
} // namespace

void TAInvoiceCacheRequests::install() {
    TAInvoice::setCacheRequestHandler(&TAInvoiceCacheRequests::requestUpdate);
}

TAInvoiceCacheRequests::ScopedQueue::ScopedQueue(ManagedObjectContext *context,
                                                 TAInvoiceCacheQueue *queue)
    : m_context(context)
    , m_previousHandler(TAInvoice::setCacheRequestHandler(&TAInvoiceCacheRequests::requestUpdate)) {
    setQueueForContext(context, queue);
}

TAInvoiceCacheRequests::ScopedQueue::~ScopedQueue() {
    setQueueForContext(m_context, nullptr);
    TAInvoice::setCacheRequestHandler(std::move(m_previousHandler));
}

void TAInvoiceCacheRequests::setQueueForContext(ManagedObjectContext *context,
                                                TAInvoiceCacheQueue *queue) {
    if (queue)
        queues().insert(context, queue);
    else
        queues().remove(context);
}

void TAInvoiceCacheRequests::requestUpdate(TAInvoice *invoice) {
    ManagedObjectContext *context = invoice ? invoice->managedObjectContext() : nullptr;
    if (!context)
        return;
    TAInvoiceCacheQueue *queue = queues().value(context);
    if (!queue || queue->isLockedOrInReadOnlyMode()) {
        onMainThreadUpdateInvoiceCacheWithObjectId(context, invoice->objectID());
        return;
    }
    // The background context can only find the invoice by a permanent identity.
    if (invoice->objectID().isTemporaryID())
        context->obtainPermanentIDs({invoice});
    if (invoice->objectID().isTemporaryID())
        onMainThreadUpdateInvoiceCacheWithObjectId(context, invoice->objectID());
    else
        queue->invoiceForCacheUpdate(invoice->objectID());
}

void TAInvoiceCacheRequests::onMainThreadUpdateInvoiceCacheWithObjectId(
    ManagedObjectContext *context, const ObjectID &invoiceID) {
    if (!context)
        return;
    if (auto *invoice = dynamic_cast<TAInvoice *>(context->existingObjectWithID(invoiceID)))
        invoice->updateCachedValuesWithoutUndo();
}
