#pragma once

#include <QList>

class ManagedObjectContext;
class TAInvoice;
class TAObject;
class TARecurringInvoice;

// Invoice lookups for code that holds a context; the context comes last. A relation that is
// a project or a client narrows the request; anything else falls back on the unrelated one.
class TAInvoiceQueries {
public:
    static QList<TAInvoice *> getInvoicesInContext(ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesInArchive(bool archive, ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesInArchive(bool archive, TAObject *relation,
                                                   ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesInArchive(bool archive, int status,
                                                   ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesInArchive(bool archive, int status, TAObject *relation,
                                                   ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesSortedByDueDateInContext(ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesSortedByDueDateInArchive(bool archive,
                                                                  ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesSortedByDueDateInArchive(bool archive, TAObject *relation,
                                                                  ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesSortedByDueDateInArchive(bool archive, int status,
                                                                  ManagedObjectContext *context);
    static QList<TAInvoice *> getInvoicesSortedByDueDateInArchive(bool archive, int status,
                                                                  TAObject *relation,
                                                                  ManagedObjectContext *context);
    static QList<TARecurringInvoice *> getRecurringInvoicesInContext(ManagedObjectContext *context);
    static QList<TARecurringInvoice *>
    getRecurringInvoicesSortedByDateInContext(ManagedObjectContext *context);

private:
    TAInvoiceQueries() = delete;
};
