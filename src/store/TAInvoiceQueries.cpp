#include "store/TAInvoiceQueries.h"

#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextFetching.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using Fetch = TAContextFetching;

const QList<SortDescriptor> &byDueDate() {
    static const QList<SortDescriptor> sort{{K::dueDate, false}, {K::identification, true}};
    return sort;
}
} // namespace

QList<TAInvoice *> TAInvoiceQueries::getInvoicesInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAInvoice>(E::Invoice, QStringLiteral("allInvoices"), context);
}

QList<TAInvoice *> TAInvoiceQueries::getInvoicesInArchive(bool archive,
                                                          ManagedObjectContext *context) {
    return Fetch::objectsAs<TAInvoice>(
        Fetch::fetchEntity(E::Invoice, QStringLiteral("isArchivedInvoices"),
                           QVariantMap{{"param1", archive}}, context));
}

QList<TAInvoice *> TAInvoiceQueries::getInvoicesInArchive(bool archive, TAObject *relation,
                                                          ManagedObjectContext *context) {
    QString request = QStringLiteral("isArchivedInvoices");
    if (dynamic_cast<TAProject *>(relation))
        request = QStringLiteral("isArchivedInvoicesByProject");
    else if (dynamic_cast<TAClient *>(relation))
        request = QStringLiteral("isArchivedInvoicesByClient");
    const QVariantMap variables{{"param1", archive}, {"param2", Fetch::objectArgument(relation)}};
    return Fetch::objectsAs<TAInvoice>(Fetch::fetchEntity(E::Invoice, request, variables, context));
}

QList<TAInvoice *> TAInvoiceQueries::getInvoicesInArchive(bool archive, int status,
                                                          ManagedObjectContext *context) {
    const QVariantMap variables{{"param1", archive}, {"param2", status}};
    return Fetch::objectsAs<TAInvoice>(Fetch::fetchEntity(
        E::Invoice, QStringLiteral("isArchivedInvoicesWithStatus"), variables, context));
}

QList<TAInvoice *> TAInvoiceQueries::getInvoicesInArchive(bool archive, int status,
                                                          TAObject *relation,
                                                          ManagedObjectContext *context) {
    QString request = QStringLiteral("isArchivedInvoicesWithStatus");
    if (dynamic_cast<TAProject *>(relation))
        request = QStringLiteral("isArchivedInvoicesWithStatusByProject");
    else if (dynamic_cast<TAClient *>(relation))
        request = QStringLiteral("isArchivedInvoicesWithStatusByClient");
    const QVariantMap variables{
        {"param1", archive}, {"param2", status}, {"param3", Fetch::objectArgument(relation)}};
    return Fetch::objectsAs<TAInvoice>(Fetch::fetchEntity(E::Invoice, request, variables, context));
}

QList<TAInvoice *>
TAInvoiceQueries::getInvoicesSortedByDueDateInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getInvoicesInContext(context), byDueDate());
}

QList<TAInvoice *>
TAInvoiceQueries::getInvoicesSortedByDueDateInArchive(bool archive, ManagedObjectContext *context) {
    return Fetch::sorted(getInvoicesInArchive(archive, context), byDueDate());
}

QList<TAInvoice *>
TAInvoiceQueries::getInvoicesSortedByDueDateInArchive(bool archive, TAObject *relation,
                                                      ManagedObjectContext *context) {
    return Fetch::sorted(getInvoicesInArchive(archive, relation, context), byDueDate());
}

QList<TAInvoice *>
TAInvoiceQueries::getInvoicesSortedByDueDateInArchive(bool archive, int status,
                                                      ManagedObjectContext *context) {
    return Fetch::sorted(getInvoicesInArchive(archive, status, context), byDueDate());
}

QList<TAInvoice *>
TAInvoiceQueries::getInvoicesSortedByDueDateInArchive(bool archive, int status, TAObject *relation,
                                                      ManagedObjectContext *context) {
    return Fetch::sorted(getInvoicesInArchive(archive, status, relation, context), byDueDate());
}

QList<TARecurringInvoice *>
TAInvoiceQueries::getRecurringInvoicesInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TARecurringInvoice>(E::RecurringInvoice,
                                               QStringLiteral("allRecurringInvoices"), context);
}

QList<TARecurringInvoice *>
TAInvoiceQueries::getRecurringInvoicesSortedByDateInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getRecurringInvoicesInContext(context),
                         {{K::date, true}, {K::identification, true}});
}
