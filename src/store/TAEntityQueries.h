#pragma once

#include <QList>
#include <QString>

class Decimal;
class LMInvoiceTemplateClass;
class ManagedObjectContext;
class TAAccount;
class TAClient;
class TAInventory;
class TAMaterial;
class TAPayment;
class TAPreferences;
class TATax;
class TATimer;
class TATimerInterval;

// Lookups of the remaining entities for code that holds a context; the context comes last.
class TAEntityQueries {
public:
    static QList<TAClient *> getClientsInContext(ManagedObjectContext *context);
    static QList<TAClient *> getClientsSortedByDisplayNameInContext(ManagedObjectContext *context);
    static QList<TAPayment *> getPaymentsInContext(ManagedObjectContext *context);
    static QList<TATimer *> getTimersInContext(ManagedObjectContext *context);
    static QList<TAMaterial *> getMaterialsInContext(ManagedObjectContext *context);
    static QList<TAInventory *> getInventoriesInContext(ManagedObjectContext *context);
    static QList<TAAccount *> getAccountsInContext(ManagedObjectContext *context);
    static QList<TATax *> getTaxesInContext(ManagedObjectContext *context);
    static QList<TATimerInterval *> getTimerIntervalsInContext(ManagedObjectContext *context);
    static QList<TATimer *> getAllTimersByUpdateDateInContext(ManagedObjectContext *context);
    static QList<TATimer *> getAllTimersByUpdateDateWithLimit(qsizetype limit,
                                                              ManagedObjectContext *context);
    static QList<TATimer *>
    getAllUninvoicedTimersByUpdateDateWithLimit(qsizetype limit, ManagedObjectContext *context);
    static QList<TATax *> getTaxesSortedByNameInContext(ManagedObjectContext *context);
    static QList<LMInvoiceTemplateClass *> getTemplatesInContext(ManagedObjectContext *context);
    // Made (outside undo) on first request.
    static TAPreferences *getPreferencesInContext(ManagedObjectContext *context);
    // A null value (not-a-number) finds nothing; a null name matches the empty one.
    static TATax *getTaxWithName(const QString &name, const Decimal &value,
                                 ManagedObjectContext *context);

private:
    TAEntityQueries() = delete;
};
