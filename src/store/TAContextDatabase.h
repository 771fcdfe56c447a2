#pragma once

#include "foundation/money/Decimal.h"
#include "objectstore/Predicate.h"
#include "objectstore/SortDescriptor.h"

#include <QList>
#include <QString>
#include <QVariantMap>

#include <exception>
#include <optional>

class LMInvoiceTemplateClass;
class ManagedObject;
class QLocale;
class ManagedObjectContext;
class TAAccount;
class TAClient;
class TACurrency;
class TACurrencyRate;
class TAHistory;
class TAInventory;
class TAInvoice;
class TAMaterial;
class TAObject;
class TAPayment;
class TAPreferences;
class TAProject;
class TARecurringInvoice;
class TATax;
class TATimer;
class TATimerInterval;

// Raised by the two operations that cannot work without a context.
class TAContextDatabaseNoContext : public std::exception {
public:
    const char *what() const noexcept override { return "Context is nil"; }
    QString name() const { return QStringLiteral("TAContextDatabaseNoContext"); }
    QString reason() const { return QStringLiteral("Context is nil"); }
};

// The data access layer for code that holds a context but no document (background contexts
// among others). Every operation takes the context last. Failures are swallowed: a failed
// fetch is an empty list, a failed lookup null, and a null context answers nothing.
class TAContextDatabase {
public:
    using ObjectList = QList<ManagedObject *>;

    // Named fetch templates; the template's own entity is replaced by the one given.
    static ObjectList fetchEntity(const QString &entity, const QString &request,
                                  const QVariantMap &dictionary, bool subEntities,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QString &request,
                                  const QVariantMap &dictionary, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QString &request, bool subEntities,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QString &request,
                                  ManagedObjectContext *context);

    // Plain fetches, sub-entities included. An empty sort list and a limit or offset of 0
    // mean "not given", as does an empty predicate.
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                  qsizetype fetchOffset, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  const QList<SortDescriptor> &sort, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const std::optional<Predicate> &predicate,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, qsizetype fetchLimit,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                  ManagedObjectContext *context);
    static ObjectList fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                  qsizetype fetchLimit, ManagedObjectContext *context);

    // Projects.
    static QList<TAProject *> getProjectsInContext(ManagedObjectContext *context);
    static QList<TAProject *> getProjectsWithClient(TAClient *client,
                                                    ManagedObjectContext *context);
    static QList<TAProject *> getProjectsSortedByNameInContext(ManagedObjectContext *context);
    static QList<TAProject *> getProjectsWithStatus(int status, ManagedObjectContext *context);
    static QList<TAProject *> getProjectsWithStatus(int status, TAClient *client,
                                                    ManagedObjectContext *context);
    static QList<TAProject *> getActiveProjectsInContext(ManagedObjectContext *context);
    static TAProject *getLastProjectInContext(ManagedObjectContext *context);

    // Invoices. A relation that is a project or a client narrows the request; anything else
    // falls back on the unrelated one.
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

    // Everything else.
    static QList<TAClient *> getClientsInContext(ManagedObjectContext *context);
    static QList<TAClient *> getClientsSortedByDisplayNameInContext(ManagedObjectContext *context);
    static QList<TAPayment *> getPaymentsInContext(ManagedObjectContext *context);
    static QList<TATimer *> getTimersInContext(ManagedObjectContext *context);
    static QList<TAMaterial *> getMaterialsInContext(ManagedObjectContext *context);
    static QList<TAInventory *> getInventoriesInContext(ManagedObjectContext *context);
    static QList<TAAccount *> getAccountsInContext(ManagedObjectContext *context);
    static QList<TACurrency *> getCurrenciesInContext(ManagedObjectContext *context);
    static QList<TATax *> getTaxesInContext(ManagedObjectContext *context);
    static QList<TATimerInterval *> getTimerIntervalsInContext(ManagedObjectContext *context);
    static QList<TATimer *> getAllTimersByUpdateDateInContext(ManagedObjectContext *context);
    static QList<TATimer *> getAllTimersByUpdateDateWithLimit(qsizetype limit,
                                                              ManagedObjectContext *context);
    static QList<TATimer *>
    getAllUninvoicedTimersByUpdateDateWithLimit(qsizetype limit, ManagedObjectContext *context);
    static QList<TACurrency *> getCurrenciesSortedByTitleInContext(ManagedObjectContext *context);
    static QList<TACurrency *> getCurrenciesSortedByCodeInContext(ManagedObjectContext *context);
    static QList<TATax *> getTaxesSortedByNameInContext(ManagedObjectContext *context);
    static QList<LMInvoiceTemplateClass *> getTemplatesInContext(ManagedObjectContext *context);
    static TAPreferences *getPreferencesInContext(ManagedObjectContext *context);
    // Answers the first default currency without repairing duplicates; with none makes one.
    // Raises TAContextDatabaseNoContext for a null context.
    static TACurrency *getDefaultCurrencyInContext(ManagedObjectContext *context);
    // The rate row of the ordered pair, made on first request; null for a currency with itself.
    static TACurrencyRate *getCurrencyRateFromCurrency(TACurrency *fromCurrency,
                                                       TACurrency *toCurrency,
                                                       ManagedObjectContext *context);
    static TACurrency *getCurrencyWithCode(const QString &code, ManagedObjectContext *context);
    // As the document's form, except that with no rate row the number comes back unrounded.
    static Decimal getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                                    TACurrency *toCurrency, ManagedObjectContext *context);
    // A null value (not-a-number) finds nothing; a null name matches the empty one.
    static TATax *getTaxWithName(const QString &name, const Decimal &value,
                                 ManagedObjectContext *context);

    // Creation. The project, invoice and recurring forms refresh the owning document's sidebar
    // and belong to the main thread.
    static TAProject *createProjectInContext(ManagedObjectContext *context);
    // Raises TAContextDatabaseNoContext for a null context.
    static TAHistory *createHistoryInContext(ManagedObjectContext *context);
    static TAHistory *createHistoryWithCurrentDateInContext(ManagedObjectContext *context);
    static TAInvoice *createInvoiceInContext(ManagedObjectContext *context);
    static TARecurringInvoice *createRecurringInvoiceInContext(ManagedObjectContext *context);
    static TAClient *createClientInContext(ManagedObjectContext *context);
    static TAPayment *createPaymentInContext(ManagedObjectContext *context);
    static TATimer *createTimerInContext(ManagedObjectContext *context);
    static TAMaterial *createMaterialInContext(ManagedObjectContext *context);
    static TAInventory *createInventoryInContext(ManagedObjectContext *context);
    static TAAccount *createAccountInContext(ManagedObjectContext *context);
    static TACurrency *createCurrencyInContext(ManagedObjectContext *context);
    static TATax *createTaxInContext(ManagedObjectContext *context);
    static TATimerInterval *createTimerIntervalInContext(ManagedObjectContext *context);

    // Undo control. Each flushes pending changes first, except endUndoGroupingInContext, which
    // closes the group and flushes after. A non-null name always replaces the current one.
    static void disableUndoRegistrationInContext(ManagedObjectContext *context);
    static void enableUndoRegistrationInContext(ManagedObjectContext *context);
    static void beginUndoGroupingWithName(const QString &name, ManagedObjectContext *context);
    static void endUndoGroupingInContext(ManagedObjectContext *context);

    // Deletion with the side steps the business rules ask for (sidebar, timers, the items of
    // a project, the invoices of a template).
    static void deleteObject(ManagedObject *object, ManagedObjectContext *context);
    static void deleteObjects(const QList<ManagedObject *> &objects, ManagedObjectContext *context);
    static void deleteUnassignedTimersInContext(ManagedObjectContext *context);

    // Both forms of the default currency share this: code and title of a new default.
    static QString localeCurrencyCode(const QLocale &locale);
    static QString currencyDisplayName(const QString &code, const QLocale &locale);

    // The typed members of a fetched list.
    template <class T> static QList<T *> objectsAs(const ObjectList &objects) {
        QList<T *> out;
        out.reserve(objects.size());
        for (ManagedObject *object : objects)
            if (T *typed = dynamic_cast<T *>(object))
                out.append(typed);
        return out;
    }

private:
    TAContextDatabase() = delete;
};
