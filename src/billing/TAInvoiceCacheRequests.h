#pragma once

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
    // Routes the invoices' own requests here; uninstall restores the built-in refresh.
    static void install();
    static void uninstall();
    // Null removes the context's queue.
    static void setQueueForContext(ManagedObjectContext *context, TAInvoiceCacheQueue *queue);

    static void requestUpdate(TAInvoice *invoice);
    static void onMainThreadUpdateInvoiceCacheWithObjectId(ManagedObjectContext *context,
                                                           const ObjectID &invoiceID);

private:
    TAInvoiceCacheRequests() = delete;
};
