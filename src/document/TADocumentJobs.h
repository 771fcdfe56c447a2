#pragma once

#include "foundation/ScopedOverride.h"

class ManagedObjectContext;
class TADocument;

// Work a document starts on its timers or on opening, provided by the services that own it:
// recurring invoices, exchange rates, calendar sync, the timers pool. One instance serves
// every document; with none installed the defaults do nothing.
class TADocumentJobs {
public:
    virtual ~TADocumentJobs() = default;

    // The installed jobs, or a do-nothing instance.
    static TADocumentJobs &instance();
    // Serves every document with the given jobs while it lives; null means the do-nothing
    // instance. It must outlive the documents opened meanwhile.
    class ScopedInstance : public ScopedOverride<TADocumentJobs *> {
    public:
        explicit ScopedInstance(TADocumentJobs *jobs)
            : ScopedOverride(&TADocumentJobs::exchangeInstance, jobs) {}
    };

    virtual void updateRecurringInvoices(TADocument &document) { (void)document; }
    virtual void updateCurrencies(TADocument &document) { (void)document; }
    virtual void calendarsDidChange(TADocument &document) { (void)document; }
    // Timers pool: take out the timers of a context, and reload after outside changes.
    virtual void deleteTimersFromContext(ManagedObjectContext *context) { (void)context; }
    virtual void reloadTimersPool() {}

private:
    static TADocumentJobs *exchangeInstance(TADocumentJobs *jobs);
};
