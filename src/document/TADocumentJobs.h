#pragma once

class ManagedObjectContext;
class TADocument;

// Work a document starts on its timers or on opening, provided by the services that own it:
// recurring invoices, exchange rates, calendar sync, the timers pool. One instance serves
// every document; with none installed the defaults do nothing.
class TADocumentJobs {
public:
    virtual ~TADocumentJobs() = default;

    // The installed jobs, or a do-nothing instance. The object must outlive every document.
    static TADocumentJobs &instance();
    static void setInstance(TADocumentJobs *jobs);

    virtual void updateRecurringInvoices(TADocument &document) { (void)document; }
    virtual void updateCurrencies(TADocument &document) { (void)document; }
    virtual void calendarsDidChange(TADocument &document) { (void)document; }
    // Timers pool: take out the timers of a context, and reload after outside changes.
    virtual void deleteTimersFromContext(ManagedObjectContext *context) { (void)context; }
    virtual void reloadTimersPool() {}
};
