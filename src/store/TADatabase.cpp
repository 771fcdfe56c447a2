#include "store/TADatabase.h"

#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/UndoManager.h"
#include "store/TACopyDictionary.h"
#include "store/TADocumentHooks.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAItem.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAObject.h"

#include <QLocale>
#include <QMutex>
#include <QMutexLocker>

#include <mutex>

namespace {
using CDB = TAContextDatabase;

// Main contexts and the databases bound to them. Background threads ask too, so a lock
// guards it.
QMutex g_registryLock;
QHash<const ManagedObjectContext *, TADatabase *> g_registry;

void registerDatabase(const ManagedObjectContext *context, TADatabase *database) {
    QMutexLocker lock(&g_registryLock);
    if (database)
        g_registry.insert(context, database);
    else
        g_registry.remove(context);
}

// The entities that copies may link to; any other entity has no table.
const QStringList &cachedEntities() {
    namespace E = TAEntity;
    static const QStringList entities{
        E::Project,  E::Invoice,   E::RecurringInvoice, E::Client,   E::Payment, E::Timer,
        E::Material, E::Inventory, E::Account,          E::Currency, E::Tax,     E::TimerInterval};
    return entities;
}

// `duplicate` of the business objects goes through the database of the object's document.
void installDuplicator() {
    static std::once_flag once;
    std::call_once(once, [] {
        TAObject::setDuplicator([](TAObject *object) -> TAObject * {
            TADatabase *database =
                object ? TADatabase::databaseForContext(object->managedObjectContext()) : nullptr;
            if (!database)
                return nullptr;
            return database->objectFromCopyDictionary(database->copyDictionaryForObject(object));
        });
    });
}
} // namespace

TADatabase::TADatabase() {
    installDuplicator();
}

TADatabase::~TADatabase() {
    setContext(nullptr);
}

ManagedObjectContext *TADatabase::context() const {
    return m_context.data();
}

void TADatabase::setContext(ManagedObjectContext *context) {
    if (m_context)
        registerDatabase(m_context.data(), nullptr);
    QObject::disconnect(m_contextGone);
    m_context = context;
    clearCache();
    if (!context)
        return;
    registerDatabase(context, this);
    m_contextGone = QObject::connect(context, &QObject::destroyed, context,
                                     [context] { registerDatabase(context, nullptr); });
}

TADatabase *TADatabase::databaseForContext(const ManagedObjectContext *context) {
    QMutexLocker lock(&g_registryLock);
    return context ? g_registry.value(context) : nullptr;
}

TADocumentHooks *TADatabase::documentForContext(const ManagedObjectContext *context) {
    QMutexLocker lock(&g_registryLock);
    TADatabase *database = context ? g_registry.value(context) : nullptr;
    return database ? database->m_document : nullptr;
}

// --- Fetching ---------------------------------------------------------------------------

TADatabase::ObjectList TADatabase::fetchEntity(const QString &entity, const QString &request,
                                               const QVariantMap &dictionary,
                                               bool subEntities) const {
    return CDB::fetchEntity(entity, request, dictionary, subEntities, ctx());
}

TADatabase::ObjectList TADatabase::fetchEntity(const QString &entity, const QString &request,
                                               bool subEntities) const {
    return CDB::fetchEntity(entity, request, QVariantMap{}, subEntities, ctx());
}

TADatabase::ObjectList TADatabase::fetchEntityCustom(const QString &entity,
                                                     const std::optional<Predicate> &predicate,
                                                     const QList<SortDescriptor> &sort,
                                                     qsizetype fetchLimit,
                                                     qsizetype fetchOffset) const {
    return CDB::fetchEntity(entity, predicate, sort, fetchLimit, fetchOffset, ctx());
}

TADatabase::ObjectList TADatabase::fetchEntityCustom(const QString &entity,
                                                     qsizetype fetchLimit) const {
    return CDB::fetchEntity(entity, std::nullopt, {}, fetchLimit, 0, ctx());
}

TADatabase::ObjectList TADatabase::fetchEntityCustom(const QString &entity,
                                                     const QList<SortDescriptor> &sort,
                                                     qsizetype fetchLimit) const {
    return CDB::fetchEntity(entity, std::nullopt, sort, fetchLimit, 0, ctx());
}

// --- Lookups ----------------------------------------------------------------------------

QList<TAProject *> TADatabase::getProjects() const {
    return CDB::getProjectsInContext(ctx());
}
QList<TAProject *> TADatabase::getProjectsWithClient(TAClient *client) const {
    return CDB::getProjectsWithClient(client, ctx());
}
QList<TAProject *> TADatabase::getProjectsSortedByName() const {
    return CDB::getProjectsSortedByNameInContext(ctx());
}
QList<TAProject *> TADatabase::getProjectsWithStatus(int status) const {
    return CDB::getProjectsWithStatus(status, ctx());
}
QList<TAProject *> TADatabase::getProjectsWithStatus(int status, TAClient *client) const {
    return CDB::getProjectsWithStatus(status, client, ctx());
}
QList<TAProject *> TADatabase::getActiveProjects() const {
    return CDB::getActiveProjectsInContext(ctx());
}
TAProject *TADatabase::getLastProject() {
    return CDB::getLastProjectInContext(ctx());
}

QList<TAInvoice *> TADatabase::getInvoices() const {
    return CDB::getInvoicesInContext(ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesInArchive(bool archive) const {
    return CDB::getInvoicesInArchive(archive, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesInArchive(bool archive, TAObject *relation) const {
    return CDB::getInvoicesInArchive(archive, relation, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesInArchive(bool archive, int status) const {
    return CDB::getInvoicesInArchive(archive, status, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesInArchive(bool archive, int status,
                                                    TAObject *relation) const {
    return CDB::getInvoicesInArchive(archive, status, relation, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesSortedByDueDate() const {
    return CDB::getInvoicesSortedByDueDateInContext(ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesSortedByDueDateInArchive(bool archive) const {
    return CDB::getInvoicesSortedByDueDateInArchive(archive, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesSortedByDueDateInArchive(bool archive,
                                                                   TAObject *relation) const {
    return CDB::getInvoicesSortedByDueDateInArchive(archive, relation, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesSortedByDueDateInArchive(bool archive, int status) const {
    return CDB::getInvoicesSortedByDueDateInArchive(archive, status, ctx());
}
QList<TAInvoice *> TADatabase::getInvoicesSortedByDueDateInArchive(bool archive, int status,
                                                                   TAObject *relation) const {
    return CDB::getInvoicesSortedByDueDateInArchive(archive, status, relation, ctx());
}
QList<TARecurringInvoice *> TADatabase::getRecurringInvoices() const {
    return CDB::getRecurringInvoicesInContext(ctx());
}
QList<TARecurringInvoice *> TADatabase::getRecurringInvoicesSortedByDate() const {
    return CDB::getRecurringInvoicesSortedByDateInContext(ctx());
}

QList<TAClient *> TADatabase::getClients() const {
    return CDB::getClientsInContext(ctx());
}
QList<TAClient *> TADatabase::getClientsSortedByDisplayName() const {
    return CDB::getClientsSortedByDisplayNameInContext(ctx());
}
QList<TAPayment *> TADatabase::getPayments() const {
    return CDB::getPaymentsInContext(ctx());
}
QList<TATimer *> TADatabase::getTimers() const {
    return CDB::getTimersInContext(ctx());
}
QList<TAMaterial *> TADatabase::getMaterials() const {
    return CDB::getMaterialsInContext(ctx());
}
QList<TAInventory *> TADatabase::getInventories() const {
    return CDB::getInventoriesInContext(ctx());
}
QList<TAAccount *> TADatabase::getAccounts() const {
    return CDB::getAccountsInContext(ctx());
}
QList<TACurrency *> TADatabase::getCurrencies() const {
    return CDB::getCurrenciesInContext(ctx());
}
QList<TATax *> TADatabase::getTaxes() const {
    return CDB::getTaxesInContext(ctx());
}
QList<TATimerInterval *> TADatabase::getTimerIntervals() const {
    return CDB::getTimerIntervalsInContext(ctx());
}
QList<TATimer *> TADatabase::getAllTimersByUpdateDate() const {
    return CDB::getAllTimersByUpdateDateInContext(ctx());
}
QList<TATimer *> TADatabase::getAllTimersByUpdateDateWithLimit(qsizetype limit) const {
    return CDB::getAllTimersByUpdateDateWithLimit(limit, ctx());
}
QList<TATimer *> TADatabase::getAllUninvoicedTimersByUpdateDateWithLimit(qsizetype limit) const {
    return CDB::getAllUninvoicedTimersByUpdateDateWithLimit(limit, ctx());
}
QList<TACurrency *> TADatabase::getCurrenciesSortedByTitle() const {
    return CDB::getCurrenciesSortedByTitleInContext(ctx());
}
QList<TACurrency *> TADatabase::getCurrenciesSortedByCode() const {
    return CDB::getCurrenciesSortedByCodeInContext(ctx());
}
QList<TATax *> TADatabase::getTaxesSortedByName() const {
    return CDB::getTaxesSortedByNameInContext(ctx());
}
QList<LMInvoiceTemplateClass *> TADatabase::getTemplates() {
    return CDB::getTemplatesInContext(ctx());
}
TAPreferences *TADatabase::getPreferences() {
    return CDB::getPreferencesInContext(ctx());
}

// Unlike the class form, this one repairs several defaults, and a new default takes the code
// of the current locale with its title in "en_US".
TACurrency *TADatabase::getDefaultCurrency() {
    const QList<TACurrency *> found = TAContextDatabase::objectsAs<TACurrency>(
        fetchEntity(TAEntity::Currency, QStringLiteral("defaultCurrency")));
    if (found.size() > 1) {
        disableUndoRegistration();
        for (qsizetype i = 1; i < found.size(); ++i)
            found.at(i)->setIsDefault(false);
        enableUndoRegistration();
    }
    if (!found.isEmpty())
        return found.first();
    if (!ctx())
        return nullptr;
    disableUndoRegistration();
    TACurrency *currency = createCurrency();
    const QString code = CDB::localeCurrencyCode(QLocale());
    currency->setCode(code);
    currency->setTitle(CDB::currencyDisplayName(code, QLocale(QStringLiteral("en_US"))));
    currency->setIsDefault(true);
    enableUndoRegistration();
    return currency;
}

TACurrencyRate *TADatabase::getCurrencyRateFromCurrency(TACurrency *fromCurrency,
                                                        TACurrency *toCurrency) {
    return CDB::getCurrencyRateFromCurrency(fromCurrency, toCurrency, ctx());
}
TACurrency *TADatabase::getCurrencyWithCode(const QString &code) const {
    return CDB::getCurrencyWithCode(code, ctx());
}
Decimal TADatabase::getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                                     TACurrency *toCurrency) {
    const TADecimalNumberBehavior behavior = TADecimalNumberBehavior::behaviorWithCurrencyCode(
        toCurrency ? toCurrency->code() : QString());
    if (TACurrencyRate *rate = getCurrencyRateFromCurrency(fromCurrency, toCurrency))
        return DecimalMath::multiply(number, rate->oneFromInTo(), behavior);
    return DecimalMath::round(number, behavior);
}
TATax *TADatabase::getTaxWithName(const QString &name, const Decimal &value) const {
    return CDB::getTaxWithName(name, value, ctx());
}

// --- Creation ---------------------------------------------------------------------------

TAProject *TADatabase::createProject() {
    return CDB::createProjectInContext(ctx());
}
TAHistory *TADatabase::createHistory() {
    return ctx() ? CDB::createHistoryInContext(ctx()) : nullptr;
}
TAHistory *TADatabase::createHistoryWithCurrentDate() {
    return ctx() ? CDB::createHistoryWithCurrentDateInContext(ctx()) : nullptr;
}
TAInvoice *TADatabase::createInvoice() {
    return CDB::createInvoiceInContext(ctx());
}
TARecurringInvoice *TADatabase::createRecurringInvoice() {
    return CDB::createRecurringInvoiceInContext(ctx());
}
TAClient *TADatabase::createClient() {
    return CDB::createClientInContext(ctx());
}
TAPayment *TADatabase::createPayment() {
    return CDB::createPaymentInContext(ctx());
}
TATimer *TADatabase::createTimer() {
    return CDB::createTimerInContext(ctx());
}
TAMaterial *TADatabase::createMaterial() {
    return CDB::createMaterialInContext(ctx());
}
TAInventory *TADatabase::createInventory() {
    return CDB::createInventoryInContext(ctx());
}
TAAccount *TADatabase::createAccount() {
    return CDB::createAccountInContext(ctx());
}
TACurrency *TADatabase::createCurrency() {
    return CDB::createCurrencyInContext(ctx());
}
TATax *TADatabase::createTax() {
    return CDB::createTaxInContext(ctx());
}
TATimerInterval *TADatabase::createTimerInterval() {
    return CDB::createTimerIntervalInContext(ctx());
}

// --- Undo -------------------------------------------------------------------------------

void TADatabase::disableUndoRegistration() {
    if (!ctx())
        return;
    ctx()->processPendingChanges();
    if (UndoManager *undo = ctx()->undoManager())
        undo->disableUndoRegistration();
}

void TADatabase::enableUndoRegistration() {
    if (!ctx())
        return;
    ctx()->processPendingChanges();
    if (UndoManager *undo = ctx()->undoManager())
        undo->enableUndoRegistration();
    if (m_document)
        m_document->updateChangeCount(0);
}

void TADatabase::beginUndoGroupingWithName(const QString &name) {
    if (!ctx())
        return;
    ctx()->processPendingChanges();
    UndoManager *undo = ctx()->undoManager();
    if (!undo)
        return;
    undo->beginUndoGrouping();
    if (!name.isNull() && undo->currentActionName().isEmpty())
        undo->setActionName(name);
}

void TADatabase::endUndoGrouping() {
    if (!ctx())
        return;
    ctx()->processPendingChanges();
    if (UndoManager *undo = ctx()->undoManager())
        undo->endUndoGrouping();
}

// --- Cache ------------------------------------------------------------------------------

ManagedObject *TADatabase::cachedObjectForEntity(const QString &entity, const QString &objectID) {
    if (entity.isNull() || objectID.isNull() || !cachedEntities().contains(entity) || !ctx())
        return nullptr;
    auto table = cachedObjects.find(entity);
    if (table == cachedObjects.end()) {
        QHash<QString, ManagedObject *> byURI;
        for (ManagedObject *object : fetchEntityCustom(entity))
            byURI.insert(object->uriText(), object);
        table = cachedObjects.insert(entity, byURI);
    }
    return table->value(objectID);
}

void TADatabase::clearCache() {
    cachedObjects.clear();
}

// --- Copying ----------------------------------------------------------------------------

QVariantMap TADatabase::copyDictionaryForObject(TAObject *object) const {
    return TACopyDictionary::copyDictionaryForObject(object);
}
TAObject *TADatabase::objectFromCopyDictionary(const QVariantMap &dictionary) {
    return TACopyDictionary(*this).objectFromCopyDictionary(dictionary);
}
ManagedObject *
TADatabase::objectFromCopyDictionaryByURIRepresentation(const QVariantMap &dictionary) {
    return TACopyDictionary(*this).objectFromCopyDictionaryByURIRepresentation(dictionary);
}
TAInventory *TADatabase::createInvetoryFromItemCopyDictionary(const QVariantMap &dictionary) {
    return TACopyDictionary(*this).createInvetoryFromItemCopyDictionary(dictionary);
}
TAItem *TADatabase::createItemFromInventoryCopyDictionary(const QVariantMap &dictionary) {
    return TACopyDictionary(*this).createItemFromInventoryCopyDictionary(dictionary);
}
TAInvoice *TADatabase::createInvoiceFromRecurringCopyDictionary(const QVariantMap &) {
    return nullptr;
}
TARecurringInvoice *TADatabase::createRecurringFromInvoiceCopyDictionary(const QVariantMap &) {
    return nullptr;
}

// --- Deletion ---------------------------------------------------------------------------

void TADatabase::deleteObject(ManagedObject *object) {
    CDB::deleteObject(object, ctx());
}
void TADatabase::deleteObjects(const QList<ManagedObject *> &objects) {
    CDB::deleteObjects(objects, ctx());
}
void TADatabase::deleteUnassignedTimers() {
    CDB::deleteUnassignedTimersInContext(ctx());
}
