#include "store/TAEntityQueries.h"

#include "objectstore/ManagedObjectContext.h"
#include "store/TAApplicationHooks.h"
#include "store/TAContextFetching.h"
#include "store/TAContextUndo.h"
#include "store/TAEntityCreation.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using Fetch = TAContextFetching;
using Cmp = SortDescriptor::Comparison;

QString orEmpty(const QString &text) {
    return text.isNull() ? QStringLiteral("") : text;
}
} // namespace

QList<TAClient *> TAEntityQueries::getClientsInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAClient>(E::Client, QStringLiteral("allClients"), context);
}

QList<TAClient *>
TAEntityQueries::getClientsSortedByDisplayNameInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getClientsInContext(context),
                         {{QStringLiteral("displayName"), true, Cmp::CaseInsensitive}});
}

QList<TAPayment *> TAEntityQueries::getPaymentsInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAPayment>(E::Payment, QStringLiteral("allPayments"), context);
}

QList<TATimer *> TAEntityQueries::getTimersInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TATimer>(E::Timer, QStringLiteral("allTimers"), context);
}

QList<TAMaterial *> TAEntityQueries::getMaterialsInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAMaterial>(E::Material, QStringLiteral("allMaterials"), context);
}

QList<TAInventory *> TAEntityQueries::getInventoriesInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAInventory>(E::Inventory, QStringLiteral("allInventories"), context);
}

QList<TAAccount *> TAEntityQueries::getAccountsInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TAAccount>(E::Account, QStringLiteral("allAccounts"), context);
}

QList<TATax *> TAEntityQueries::getTaxesInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TATax>(E::Tax, QStringLiteral("allTaxes"), context);
}

QList<TATimerInterval *>
TAEntityQueries::getTimerIntervalsInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TATimerInterval>(E::TimerInterval, QStringLiteral("allTimerIntervals"),
                                            context);
}

QList<TATimer *> TAEntityQueries::getAllTimersByUpdateDateInContext(ManagedObjectContext *context) {
    return getAllTimersByUpdateDateWithLimit(0, context);
}

QList<TATimer *> TAEntityQueries::getAllTimersByUpdateDateWithLimit(qsizetype limit,
                                                                    ManagedObjectContext *context) {
    return Fetch::objectsAs<TATimer>(Fetch::fetchEntity(
        E::Timer, QList<SortDescriptor>{{K::updateDate, false}}, limit, context));
}

QList<TATimer *>
TAEntityQueries::getAllUninvoicedTimersByUpdateDateWithLimit(qsizetype limit,
                                                             ManagedObjectContext *context) {
    const Predicate predicate =
        Fetch::predicateWithFormat(QStringLiteral("invoice == %@"), {QVariant()});
    return Fetch::objectsAs<TATimer>(
        Fetch::fetchEntity(E::Timer, predicate, {{K::updateDate, false}}, limit, context));
}

QList<TATax *> TAEntityQueries::getTaxesSortedByNameInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getTaxesInContext(context), {{K::name, true, Cmp::CaseInsensitive}});
}

// With no stored template the built-in set is copied in first; until the template resource
// exists the application hook has nothing to copy and the stored list (empty) stands.
QList<LMInvoiceTemplateClass *>
TAEntityQueries::getTemplatesInContext(ManagedObjectContext *context) {
    const QString request = QStringLiteral("allTemplates");
    QList<LMInvoiceTemplateClass *> templates =
        Fetch::fetchAll<LMInvoiceTemplateClass>(E::InvoiceTemplate, request, context);
    if (!templates.isEmpty() || !context)
        return templates;
    TAApplicationHooks::instance().seedBuiltInTemplates(context);
    return Fetch::fetchAll<LMInvoiceTemplateClass>(E::InvoiceTemplate, request, context);
}

TAPreferences *TAEntityQueries::getPreferencesInContext(ManagedObjectContext *context) {
    const QList<TAPreferences *> found =
        Fetch::fetchAll<TAPreferences>(E::Preferences, QStringLiteral("allPreferences"), context);
    if (!found.isEmpty())
        return found.first();
    if (!context)
        return nullptr;
    TAContextUndo::disableUndoRegistrationInContext(context);
    TAPreferences *preferences =
        TAEntityCreation::insertNewObject<TAPreferences>(context, E::Preferences);
    TAApplicationHooks::instance().updateFromAddressBook(preferences);
    TAContextUndo::enableUndoRegistrationInContext(context);
    return preferences;
}

TATax *TAEntityQueries::getTaxWithName(const QString &name, const Decimal &value,
                                       ManagedObjectContext *context) {
    if (value.isNaN())
        return nullptr;
    for (TATax *tax : getTaxesInContext(context))
        if (tax->value() == value && orEmpty(tax->name()) == orEmpty(name))
            return tax;
    return nullptr;
}
