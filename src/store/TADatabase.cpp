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

// --- Currencies -------------------------------------------------------------------------

// Unlike the class form, this one repairs several defaults, and a new default takes the code
// of the current locale with its title in "en_US".
TACurrency *TADatabase::getDefaultCurrency() {
    const QList<TACurrency *> found =
        CDB::fetchAll<TACurrency>(TAEntity::Currency, QStringLiteral("defaultCurrency"), ctx());
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
    TACurrency *currency = CDB::createCurrencyInContext(ctx());
    const QString code = CDB::localeCurrencyCode(QLocale());
    currency->setCode(code);
    currency->setTitle(CDB::currencyDisplayName(code, QLocale(QStringLiteral("en_US"))));
    currency->setIsDefault(true);
    enableUndoRegistration();
    return currency;
}

Decimal TADatabase::getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                                     TACurrency *toCurrency) {
    const TADecimalNumberBehavior behavior = TADecimalNumberBehavior::behaviorWithCurrencyCode(
        toCurrency ? toCurrency->code() : QString());
    if (TACurrencyRate *rate = CDB::getCurrencyRateFromCurrency(fromCurrency, toCurrency, ctx()))
        return DecimalMath::multiply(number, rate->oneFromInTo(), behavior);
    return DecimalMath::round(number, behavior);
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
        for (ManagedObject *object : CDB::fetchEntity(entity, ctx()))
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
