#include "store/TAContextDatabase.h"

#include "foundation/dates/OTClock.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/UndoManager.h"
#include "store/TAApplicationHooks.h"
#include "store/TADatabase.h"
#include "store/TADocumentHooks.h"
#include "store/entities/LMInvoiceTemplateClass.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAPreferences.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

#include <QLocale>

#include <unicode/ucurr.h>

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using ObjectList = TAContextDatabase::ObjectList;
using Cmp = SortDescriptor::Comparison;

// The record type of a project's "Created" history entry.
constexpr int kProjectCreatedRecord = 1;
constexpr int kProjectStatusClosed = 3;

QVariant objectArgument(ManagedObject *object) {
    return object ? QVariant::fromValue(object) : QVariant();
}

// A predicate of our own fixed texts; one that does not parse selects nothing.
Predicate predicateWithFormat(const QString &format, const QVariantList &arguments) {
    Result<Predicate> parsed = Predicate::parse(format, arguments);
    return parsed ? parsed.value() : Predicate::falsePredicate();
}

ObjectList execute(const FetchRequest &request, ManagedObjectContext *context) {
    Result<ObjectList> result = context->executeFetchRequest(request);
    return result ? result.value() : ObjectList{};
}

bool knowsEntity(ManagedObjectContext *context, const QString &entity) {
    return context && context->model() && context->model()->entity(entity);
}

template <class T> T *insert(ManagedObjectContext *context, const QString &entity) {
    return context ? context->insertNewObjectAs<T>(entity) : nullptr;
}

template <class T>
QList<T *> fetchAll(const QString &entity, const QString &request, ManagedObjectContext *context) {
    return TAContextDatabase::objectsAs<T>(
        TAContextDatabase::fetchEntity(entity, request, context));
}

template <class T> QList<T *> sorted(QList<T *> objects, const QList<SortDescriptor> &sort) {
    SortDescriptor::sort(objects, sort);
    return objects;
}

const QList<SortDescriptor> &byDueDate() {
    static const QList<SortDescriptor> sort{{K::dueDate, false}, {K::identification, true}};
    return sort;
}

void refreshSidebar(ManagedObjectContext *context) {
    if (TADocumentHooks *document = TADatabase::documentForContext(context))
        document->refreshGroups();
}

void giveFirstTemplate(TAInvoice *invoice, ManagedObjectContext *context) {
    const QList<LMInvoiceTemplateClass *> templates =
        TAContextDatabase::getTemplatesInContext(context);
    if (!templates.isEmpty())
        invoice->setInvoiceTemplate(templates.first());
}

// A project's items that are on no invoice.
QList<TAItem *> notInvoicedItems(TAProject *project) {
    QList<TAItem *> items;
    for (TAItem *item : project->items())
        if (!item->invoice())
            items.append(item);
    return items;
}

// The timers among them, the most recently changed first.
QList<TATimer *> activeProjectTimers(TAProject *project) {
    QList<TATimer *> timers;
    for (TAItem *item : notInvoicedItems(project))
        if (TATimer *timer = dynamic_cast<TATimer *>(item))
            timers.append(timer);
    return sorted(timers, {SortDescriptor(K::updateDate, false)});
}

void stopTimer(TATimer *timer) {
    TAApplicationHooks &hooks = TAApplicationHooks::instance();
    if (hooks.mainTimer() == timer)
        hooks.setMainTimer(nullptr);
    if (hooks.timerIsActive(timer))
        hooks.removeTimer(timer);
}

// The first steps of every deletion: the sidebar, the timers to stop, and the items that go
// with the object (those of a project that are on no invoice).
QList<ManagedObject *> prepareDeletion(ManagedObject *object, ManagedObjectContext *context) {
    TAProject *project = dynamic_cast<TAProject *>(object);
    if (project || dynamic_cast<TAInvoice *>(object))
        refreshSidebar(context);
    QList<TATimer *> timers;
    QList<ManagedObject *> items;
    if (project) {
        timers = activeProjectTimers(project);
        for (TAItem *item : notInvoicedItems(project))
            items.append(item);
    } else if (TATimer *timer = dynamic_cast<TATimer *>(object)) {
        timers.append(timer);
    }
    for (TATimer *timer : timers)
        stopTimer(timer);
    return items;
}

// A template's invoices move to the first template that remains.
void deleteTemplate(LMInvoiceTemplateClass *invoiceTemplate, ManagedObjectContext *context) {
    const QList<TAInvoice *> invoices = invoiceTemplate->invoices();
    if (TADocumentHooks *document = TADatabase::documentForContext(context))
        document->removeTemplateFromEditorList(invoiceTemplate);
    context->deleteObject(invoiceTemplate);
    context->processPendingChanges();
    const QList<LMInvoiceTemplateClass *> templates =
        TAContextDatabase::getTemplatesInContext(context);
    LMInvoiceTemplateClass *first = templates.isEmpty() ? nullptr : templates.first();
    for (TAInvoice *invoice : invoices)
        invoice->setInvoiceTemplate(first);
}

bool belongsTo(ManagedObject *object, ManagedObjectContext *context) {
    return object && context && object->managedObjectContext() == context;
}

QString orEmpty(const QString &text) {
    return text.isNull() ? QStringLiteral("") : text;
}
} // namespace

// --- Fetching ---------------------------------------------------------------------------

ObjectList TAContextDatabase::fetchEntity(const QString &entity, const QString &request,
                                          const QVariantMap &dictionary, bool subEntities,
                                          ManagedObjectContext *context) {
    if (!knowsEntity(context, entity))
        return {};
    Result<FetchRequest> fetch = context->fetchRequestFromTemplate(request, dictionary);
    if (!fetch)
        return {};
    fetch->includesSubentities = subEntities;
    fetch->entityName = entity;
    return execute(fetch.value(), context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, const QString &request,
                                          const QVariantMap &dictionary,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, request, dictionary, false, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, const QString &request,
                                          bool subEntities, ManagedObjectContext *context) {
    return fetchEntity(entity, request, QVariantMap{}, subEntities, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, const QString &request,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, request, QVariantMap{}, false, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                          qsizetype fetchOffset, ManagedObjectContext *context) {
    if (!knowsEntity(context, entity))
        return {};
    FetchRequest fetch(entity);
    if (predicate)
        fetch.predicate = std::make_shared<const Predicate>(*predicate);
    fetch.sortDescriptors = sort;
    fetch.fetchLimit = fetchLimit;
    fetch.fetchOffset = fetchOffset;
    return execute(fetch, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          const QList<SortDescriptor> &sort, qsizetype fetchLimit,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, predicate, sort, fetchLimit, 0, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          const QList<SortDescriptor> &sort,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, predicate, sort, 0, 0, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity,
                                          const std::optional<Predicate> &predicate,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, predicate, {}, 0, 0, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, {}, 0, 0, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, qsizetype fetchLimit,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, {}, fetchLimit, 0, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                          ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, sort, 0, 0, context);
}

ObjectList TAContextDatabase::fetchEntity(const QString &entity, const QList<SortDescriptor> &sort,
                                          qsizetype fetchLimit, ManagedObjectContext *context) {
    return fetchEntity(entity, std::nullopt, sort, fetchLimit, 0, context);
}

// --- Projects ---------------------------------------------------------------------------

QList<TAProject *> TAContextDatabase::getProjectsInContext(ManagedObjectContext *context) {
    return fetchAll<TAProject>(E::Project, QStringLiteral("allProjects"), context);
}

QList<TAProject *> TAContextDatabase::getProjectsWithClient(TAClient *client,
                                                            ManagedObjectContext *context) {
    const Predicate predicate =
        predicateWithFormat(QStringLiteral("client == %@"), {objectArgument(client)});
    return objectsAs<TAProject>(fetchEntity(E::Project, predicate, context));
}

QList<TAProject *>
TAContextDatabase::getProjectsSortedByNameInContext(ManagedObjectContext *context) {
    return sorted(getProjectsInContext(context), {{K::name, true, Cmp::LocalizedStandard}});
}

QList<TAProject *> TAContextDatabase::getProjectsWithStatus(int status,
                                                            ManagedObjectContext *context) {
    const Predicate predicate = predicateWithFormat(QStringLiteral("status == %@"), {status});
    return objectsAs<TAProject>(fetchEntity(E::Project, predicate, context));
}

QList<TAProject *> TAContextDatabase::getProjectsWithStatus(int status, TAClient *client,
                                                            ManagedObjectContext *context) {
    const Predicate predicate = predicateWithFormat(QStringLiteral("status == %@ && client == %@"),
                                                    {status, objectArgument(client)});
    return objectsAs<TAProject>(fetchEntity(E::Project, predicate, context));
}

QList<TAProject *> TAContextDatabase::getActiveProjectsInContext(ManagedObjectContext *context) {
    QList<TAProject *> projects = getProjectsInContext(context);
    projects.removeIf([](TAProject *project) { return project->status() == kProjectStatusClosed; });
    return projects;
}

TAProject *TAContextDatabase::getLastProjectInContext(ManagedObjectContext *context) {
    TAPreferences *preferences = getPreferencesInContext(context);
    const QList<TAProject *> projects = getProjectsSortedByNameInContext(context);
    const QString lastID = preferences ? preferences->lastProjectID() : QString();
    if (!lastID.isEmpty()) {
        for (TAProject *project : projects)
            if (project->uriText() == lastID)
                return project;
    }
    if (projects.isEmpty())
        return nullptr;
    TAProject *first = projects.first();
    disableUndoRegistrationInContext(context);
    preferences->setLastProjectID(first->uriText());
    enableUndoRegistrationInContext(context);
    return first;
}

// --- Invoices ---------------------------------------------------------------------------

QList<TAInvoice *> TAContextDatabase::getInvoicesInContext(ManagedObjectContext *context) {
    return fetchAll<TAInvoice>(E::Invoice, QStringLiteral("allInvoices"), context);
}

QList<TAInvoice *> TAContextDatabase::getInvoicesInArchive(bool archive,
                                                           ManagedObjectContext *context) {
    return objectsAs<TAInvoice>(fetchEntity(E::Invoice, QStringLiteral("isArchivedInvoices"),
                                            QVariantMap{{"param1", archive}}, context));
}

QList<TAInvoice *> TAContextDatabase::getInvoicesInArchive(bool archive, TAObject *relation,
                                                           ManagedObjectContext *context) {
    QString request = QStringLiteral("isArchivedInvoices");
    if (dynamic_cast<TAProject *>(relation))
        request = QStringLiteral("isArchivedInvoicesByProject");
    else if (dynamic_cast<TAClient *>(relation))
        request = QStringLiteral("isArchivedInvoicesByClient");
    const QVariantMap variables{{"param1", archive}, {"param2", objectArgument(relation)}};
    return objectsAs<TAInvoice>(fetchEntity(E::Invoice, request, variables, context));
}

QList<TAInvoice *> TAContextDatabase::getInvoicesInArchive(bool archive, int status,
                                                           ManagedObjectContext *context) {
    const QVariantMap variables{{"param1", archive}, {"param2", status}};
    return objectsAs<TAInvoice>(fetchEntity(
        E::Invoice, QStringLiteral("isArchivedInvoicesWithStatus"), variables, context));
}

QList<TAInvoice *> TAContextDatabase::getInvoicesInArchive(bool archive, int status,
                                                           TAObject *relation,
                                                           ManagedObjectContext *context) {
    QString request = QStringLiteral("isArchivedInvoicesWithStatus");
    if (dynamic_cast<TAProject *>(relation))
        request = QStringLiteral("isArchivedInvoicesWithStatusByProject");
    else if (dynamic_cast<TAClient *>(relation))
        request = QStringLiteral("isArchivedInvoicesWithStatusByClient");
    const QVariantMap variables{
        {"param1", archive}, {"param2", status}, {"param3", objectArgument(relation)}};
    return objectsAs<TAInvoice>(fetchEntity(E::Invoice, request, variables, context));
}

QList<TAInvoice *>
TAContextDatabase::getInvoicesSortedByDueDateInContext(ManagedObjectContext *context) {
    return sorted(getInvoicesInContext(context), byDueDate());
}

QList<TAInvoice *>
TAContextDatabase::getInvoicesSortedByDueDateInArchive(bool archive,
                                                       ManagedObjectContext *context) {
    return sorted(getInvoicesInArchive(archive, context), byDueDate());
}

QList<TAInvoice *>
TAContextDatabase::getInvoicesSortedByDueDateInArchive(bool archive, TAObject *relation,
                                                       ManagedObjectContext *context) {
    return sorted(getInvoicesInArchive(archive, relation, context), byDueDate());
}

QList<TAInvoice *>
TAContextDatabase::getInvoicesSortedByDueDateInArchive(bool archive, int status,
                                                       ManagedObjectContext *context) {
    return sorted(getInvoicesInArchive(archive, status, context), byDueDate());
}

QList<TAInvoice *>
TAContextDatabase::getInvoicesSortedByDueDateInArchive(bool archive, int status, TAObject *relation,
                                                       ManagedObjectContext *context) {
    return sorted(getInvoicesInArchive(archive, status, relation, context), byDueDate());
}

QList<TARecurringInvoice *>
TAContextDatabase::getRecurringInvoicesInContext(ManagedObjectContext *context) {
    return fetchAll<TARecurringInvoice>(E::RecurringInvoice, QStringLiteral("allRecurringInvoices"),
                                        context);
}

QList<TARecurringInvoice *>
TAContextDatabase::getRecurringInvoicesSortedByDateInContext(ManagedObjectContext *context) {
    return sorted(getRecurringInvoicesInContext(context),
                  {{K::date, true}, {K::identification, true}});
}

// --- Other lookups ----------------------------------------------------------------------

QList<TAClient *> TAContextDatabase::getClientsInContext(ManagedObjectContext *context) {
    return fetchAll<TAClient>(E::Client, QStringLiteral("allClients"), context);
}

QList<TAClient *>
TAContextDatabase::getClientsSortedByDisplayNameInContext(ManagedObjectContext *context) {
    return sorted(getClientsInContext(context),
                  {{QStringLiteral("displayName"), true, Cmp::CaseInsensitive}});
}

QList<TAPayment *> TAContextDatabase::getPaymentsInContext(ManagedObjectContext *context) {
    return fetchAll<TAPayment>(E::Payment, QStringLiteral("allPayments"), context);
}

QList<TATimer *> TAContextDatabase::getTimersInContext(ManagedObjectContext *context) {
    return fetchAll<TATimer>(E::Timer, QStringLiteral("allTimers"), context);
}

QList<TAMaterial *> TAContextDatabase::getMaterialsInContext(ManagedObjectContext *context) {
    return fetchAll<TAMaterial>(E::Material, QStringLiteral("allMaterials"), context);
}

QList<TAInventory *> TAContextDatabase::getInventoriesInContext(ManagedObjectContext *context) {
    return fetchAll<TAInventory>(E::Inventory, QStringLiteral("allInventories"), context);
}

QList<TAAccount *> TAContextDatabase::getAccountsInContext(ManagedObjectContext *context) {
    return fetchAll<TAAccount>(E::Account, QStringLiteral("allAccounts"), context);
}

QList<TACurrency *> TAContextDatabase::getCurrenciesInContext(ManagedObjectContext *context) {
    return fetchAll<TACurrency>(E::Currency, QStringLiteral("allCurrencies"), context);
}

QList<TATax *> TAContextDatabase::getTaxesInContext(ManagedObjectContext *context) {
    return fetchAll<TATax>(E::Tax, QStringLiteral("allTaxes"), context);
}

QList<TATimerInterval *>
TAContextDatabase::getTimerIntervalsInContext(ManagedObjectContext *context) {
    return fetchAll<TATimerInterval>(E::TimerInterval, QStringLiteral("allTimerIntervals"),
                                     context);
}

QList<TATimer *>
TAContextDatabase::getAllTimersByUpdateDateInContext(ManagedObjectContext *context) {
    return getAllTimersByUpdateDateWithLimit(0, context);
}

QList<TATimer *>
TAContextDatabase::getAllTimersByUpdateDateWithLimit(qsizetype limit,
                                                     ManagedObjectContext *context) {
    return objectsAs<TATimer>(
        fetchEntity(E::Timer, QList<SortDescriptor>{{K::updateDate, false}}, limit, context));
}

QList<TATimer *>
TAContextDatabase::getAllUninvoicedTimersByUpdateDateWithLimit(qsizetype limit,
                                                               ManagedObjectContext *context) {
    const Predicate predicate = predicateWithFormat(QStringLiteral("invoice == %@"), {QVariant()});
    return objectsAs<TATimer>(
        fetchEntity(E::Timer, predicate, {{K::updateDate, false}}, limit, context));
}

QList<TACurrency *>
TAContextDatabase::getCurrenciesSortedByTitleInContext(ManagedObjectContext *context) {
    return sorted(getCurrenciesInContext(context), {{K::title, true, Cmp::CaseInsensitive}});
}

QList<TACurrency *>
TAContextDatabase::getCurrenciesSortedByCodeInContext(ManagedObjectContext *context) {
    return sorted(getCurrenciesInContext(context), {{K::code, true, Cmp::CaseInsensitive}});
}

QList<TATax *> TAContextDatabase::getTaxesSortedByNameInContext(ManagedObjectContext *context) {
    return sorted(getTaxesInContext(context), {{K::name, true, Cmp::CaseInsensitive}});
}

// With no stored template the built-in set is copied in first; until the template resource
// exists the application hook has nothing to copy and the stored list (empty) stands.
QList<LMInvoiceTemplateClass *>
TAContextDatabase::getTemplatesInContext(ManagedObjectContext *context) {
    const QString request = QStringLiteral("allTemplates");
    QList<LMInvoiceTemplateClass *> templates =
        fetchAll<LMInvoiceTemplateClass>(E::InvoiceTemplate, request, context);
    if (!templates.isEmpty() || !context)
        return templates;
    TAApplicationHooks::instance().seedBuiltInTemplates(context);
    return fetchAll<LMInvoiceTemplateClass>(E::InvoiceTemplate, request, context);
}

TAPreferences *TAContextDatabase::getPreferencesInContext(ManagedObjectContext *context) {
    const QList<TAPreferences *> found =
        fetchAll<TAPreferences>(E::Preferences, QStringLiteral("allPreferences"), context);
    if (!found.isEmpty())
        return found.first();
    if (!context)
        return nullptr;
    disableUndoRegistrationInContext(context);
    TAPreferences *preferences = insert<TAPreferences>(context, E::Preferences);
    TAApplicationHooks::instance().updateFromAddressBook(preferences);
    enableUndoRegistrationInContext(context);
    return preferences;
}

TACurrency *TAContextDatabase::getDefaultCurrencyInContext(ManagedObjectContext *context) {
    if (!context)
        throw TAContextDatabaseNoContext();
    const QList<TACurrency *> found =
        fetchAll<TACurrency>(E::Currency, QStringLiteral("defaultCurrency"), context);
    if (!found.isEmpty())
        return found.first();
    // Code and title come the other way round from the document's form: the code from
    // "en_US", the title in the current locale.
    disableUndoRegistrationInContext(context);
    TACurrency *currency = insert<TACurrency>(context, E::Currency);
    const QString code = localeCurrencyCode(QLocale(QStringLiteral("en_US")));
    currency->setCode(code);
    currency->setTitle(currencyDisplayName(code, QLocale()));
    currency->setIsDefault(true);
    enableUndoRegistrationInContext(context);
    return currency;
}

// Not made under disabled undo; both rates start at the model's default.
TACurrencyRate *TAContextDatabase::getCurrencyRateFromCurrency(TACurrency *fromCurrency,
                                                               TACurrency *toCurrency,
                                                               ManagedObjectContext *context) {
    if (!fromCurrency || !toCurrency || fromCurrency == toCurrency || !context)
        return nullptr;
    const QVariantMap variables{{"param1", objectArgument(fromCurrency)},
                                {"param2", objectArgument(toCurrency)}};
    const ObjectList found =
        fetchEntity(E::CurrencyRate, QStringLiteral("currencyRateSearch"), variables, context);
    if (!found.isEmpty())
        return dynamic_cast<TACurrencyRate *>(found.first());
    TACurrencyRate *rate = insert<TACurrencyRate>(context, E::CurrencyRate);
    rate->setCurrFrom(fromCurrency);
    rate->setCurrTo(toCurrency);
    return rate;
}

TACurrency *TAContextDatabase::getCurrencyWithCode(const QString &code,
                                                   ManagedObjectContext *context) {
    if (code.isNull())
        return nullptr;
    for (TACurrency *currency : getCurrenciesInContext(context))
        if (currency->code() == code)
            return currency;
    return nullptr;
}

Decimal TAContextDatabase::getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                                            TACurrency *toCurrency, ManagedObjectContext *context) {
    TACurrencyRate *rate = getCurrencyRateFromCurrency(fromCurrency, toCurrency, context);
    if (!rate)
        return number;
    return DecimalMath::multiply(
        number, rate->oneFromInTo(),
        TADecimalNumberBehavior::behaviorWithCurrencyCode(toCurrency->code()));
}

TATax *TAContextDatabase::getTaxWithName(const QString &name, const Decimal &value,
                                         ManagedObjectContext *context) {
    if (value.isNaN())
        return nullptr;
    for (TATax *tax : getTaxesInContext(context))
        if (tax->value() == value && orEmpty(tax->name()) == orEmpty(name))
            return tax;
    return nullptr;
}

// --- Creation ---------------------------------------------------------------------------

TAProject *TAContextDatabase::createProjectInContext(ManagedObjectContext *context) {
    TAProject *project = insert<TAProject>(context, E::Project);
    if (!project)
        return nullptr;
    TAHistory *created = createHistoryWithCurrentDateInContext(context);
    created->setType(kProjectCreatedRecord);
    created->setProject(project);
    refreshSidebar(context);
    return project;
}

TAHistory *TAContextDatabase::createHistoryInContext(ManagedObjectContext *context) {
    if (!context)
        throw TAContextDatabaseNoContext();
    return insert<TAHistory>(context, E::History);
}

TAHistory *TAContextDatabase::createHistoryWithCurrentDateInContext(ManagedObjectContext *context) {
    TAHistory *history = createHistoryInContext(context);
    history->setDate(OTClock::now());
    return history;
}

// The number is taken, not advanced: the caller advances it when the invoice is kept.
TAInvoice *TAContextDatabase::createInvoiceInContext(ManagedObjectContext *context) {
    TAInvoice *invoice = insert<TAInvoice>(context, E::Invoice);
    if (!invoice)
        return nullptr;
    giveFirstTemplate(invoice, context);
    TAPreferences *preferences = getPreferencesInContext(context);
    const QString number = preferences ? preferences->nextInvoiceNumber() : QString();
    if (!number.isEmpty())
        invoice->setIdentification(number);
    refreshSidebar(context);
    return invoice;
}

TARecurringInvoice *
TAContextDatabase::createRecurringInvoiceInContext(ManagedObjectContext *context) {
    TARecurringInvoice *invoice = insert<TARecurringInvoice>(context, E::RecurringInvoice);
    if (!invoice)
        return nullptr;
    giveFirstTemplate(invoice, context);
    refreshSidebar(context);
    return invoice;
}

TAClient *TAContextDatabase::createClientInContext(ManagedObjectContext *context) {
    return insert<TAClient>(context, E::Client);
}

TAPayment *TAContextDatabase::createPaymentInContext(ManagedObjectContext *context) {
    return insert<TAPayment>(context, E::Payment);
}

TATimer *TAContextDatabase::createTimerInContext(ManagedObjectContext *context) {
    return insert<TATimer>(context, E::Timer);
}

TAMaterial *TAContextDatabase::createMaterialInContext(ManagedObjectContext *context) {
    return insert<TAMaterial>(context, E::Material);
}

TAInventory *TAContextDatabase::createInventoryInContext(ManagedObjectContext *context) {
    TAInventory *inventory = insert<TAInventory>(context, E::Inventory);
    if (inventory)
        inventory->setIsMaterial(true);
    return inventory;
}

TAAccount *TAContextDatabase::createAccountInContext(ManagedObjectContext *context) {
    return insert<TAAccount>(context, E::Account);
}

TACurrency *TAContextDatabase::createCurrencyInContext(ManagedObjectContext *context) {
    return insert<TACurrency>(context, E::Currency);
}

TATax *TAContextDatabase::createTaxInContext(ManagedObjectContext *context) {
    return insert<TATax>(context, E::Tax);
}

TATimerInterval *TAContextDatabase::createTimerIntervalInContext(ManagedObjectContext *context) {
    return insert<TATimerInterval>(context, E::TimerInterval);
}

// --- Undo -------------------------------------------------------------------------------

void TAContextDatabase::disableUndoRegistrationInContext(ManagedObjectContext *context) {
    if (!context)
        return;
    context->processPendingChanges();
    if (UndoManager *undo = context->undoManager())
        undo->disableUndoRegistration();
}

// An edit made outside undo still leaves the document with unsaved changes.
void TAContextDatabase::enableUndoRegistrationInContext(ManagedObjectContext *context) {
    if (!context)
        return;
    context->processPendingChanges();
    if (UndoManager *undo = context->undoManager())
        undo->enableUndoRegistration();
    if (TADocumentHooks *document = TADatabase::documentForContext(context))
        document->updateChangeCount(0);
}

void TAContextDatabase::beginUndoGroupingWithName(const QString &name,
                                                  ManagedObjectContext *context) {
    if (!context)
        return;
    context->processPendingChanges();
    UndoManager *undo = context->undoManager();
    if (!undo)
        return;
    undo->beginUndoGrouping();
    if (!name.isNull())
        undo->setActionName(name);
}

void TAContextDatabase::endUndoGroupingInContext(ManagedObjectContext *context) {
    if (!context)
        return;
    if (UndoManager *undo = context->undoManager())
        undo->endUndoGrouping();
    context->processPendingChanges();
}

// --- Deletion ---------------------------------------------------------------------------

void TAContextDatabase::deleteObject(ManagedObject *object, ManagedObjectContext *context) {
    if (!belongsTo(object, context))
        return;
    for (ManagedObject *item : prepareDeletion(object, context))
        deleteObject(item, context);
    if (auto *invoiceTemplate = dynamic_cast<LMInvoiceTemplateClass *>(object)) {
        deleteTemplate(invoiceTemplate, context);
        return;
    }
    context->deleteObject(object);
    context->processPendingChanges();
}

void TAContextDatabase::deleteObjects(const QList<ManagedObject *> &objects,
                                      ManagedObjectContext *context) {
    if (!context)
        return;
    for (ManagedObject *object : objects) {
        if (!belongsTo(object, context))
            continue;
        const QList<ManagedObject *> items = prepareDeletion(object, context);
        if (dynamic_cast<TAProject *>(object))
            deleteObjects(items, context);
        if (auto *invoiceTemplate = dynamic_cast<LMInvoiceTemplateClass *>(object))
            deleteTemplate(invoiceTemplate, context);
        else
            context->deleteObject(object);
    }
    context->processPendingChanges();
}

// Timers on neither a project nor an invoice are left-overs and go at each opening.
void TAContextDatabase::deleteUnassignedTimersInContext(ManagedObjectContext *context) {
    const Predicate predicate = predicateWithFormat(
        QStringLiteral("project == %@ && invoice == %@"), {QVariant(), QVariant()});
    deleteObjects(fetchEntity(E::Timer, predicate, context), context);
}

// --- Currency texts ---------------------------------------------------------------------

QString TAContextDatabase::localeCurrencyCode(const QLocale &locale) {
    const QString code = locale.currencySymbol(QLocale::CurrencyIsoCode);
    return code.isEmpty() ? QStringLiteral("USD") : code;
}

QString TAContextDatabase::currencyDisplayName(const QString &code, const QLocale &locale) {
    if (code.size() != 3)
        return code;
    UChar isoCode[4] = {};
    for (int i = 0; i < 3; ++i)
        isoCode[i] = code.at(i).unicode();
    UBool isChoiceFormat = false;
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    const UChar *name = ucurr_getName(isoCode, locale.name().toUtf8().constData(), UCURR_LONG_NAME,
                                      &isChoiceFormat, &length, &status);
    if (U_FAILURE(status) || !name)
        return code;
    return QString(reinterpret_cast<const QChar *>(name), length);
}
