#pragma once

#include <functional>

class ManagedObjectContext;
class ObjectID;
class TAInvoice;

// What a document offers for the refresh of cached invoice totals: whether it may change at
// all, and its background queue.
class TAInvoiceCacheQueue {
public:
    virtual ~TAInvoiceCacheQueue() = default;
    virtual bool isLockedOrInReadOnlyMode() const { return false; }
    // Takes a permanent invoice identity for a later refresh in the background.
    virtual void invoiceForCacheUpdate(const ObjectID &invoiceID) = 0;
};

// The one place where a request to refresh an invoice's cached totals is served, whoever
// makes it (item and invoice change triggers alike). A context without a queue, or whose
// document is locked, gets the refresh at once on the calling (main) thread.
class TAInvoiceCacheRequests {
public:
    // Routes the invoices' own requests here, for the rest of the run.
    static void install();
    // Null removes the context's queue.
    static void setQueueForContext(ManagedObjectContext *context, TAInvoiceCacheQueue *queue);

    // While it lives, requests are routed here and the context's requests go to the queue;
    // afterwards the context has no queue and the previous routing is back.
    class ScopedQueue {
    public:
        ScopedQueue(ManagedObjectContext *context, TAInvoiceCacheQueue *queue);
        ~ScopedQueue();
        ScopedQueue(const ScopedQueue &) = delete;
        ScopedQueue &operator=(const ScopedQueue &) = delete;

    private:
        ManagedObjectContext *m_context;
        std::function<void(TAInvoice *)> m_previousHandler;
    };

    static void requestUpdate(TAInvoice *invoice);
    static void onMainThreadUpdateInvoiceCacheWithObjectId(ManagedObjectContext *context,
                                                           const ObjectID &invoiceID);

private:
    TAInvoiceCacheRequests() = delete;
};
