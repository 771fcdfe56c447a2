#pragma once

#include "store/TAContextDatabase.h"

#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

class ManagedObjectContext;
class TADocumentHooks;
class TAItem;

// The data access layer of one document, bound to its main context: user commands find,
// create and delete objects through TAContextDatabase with its context(), and copy them and
// control undo through it. A document makes it, hands it the context once its window has
// loaded, and keeps it for its life; with no context every fetch is empty and every lookup
// null. Main thread only.
class TADatabase {
public:
    using ObjectList = TAContextDatabase::ObjectList;

    TADatabase();
    ~TADatabase();
    TADatabase(const TADatabase &) = delete;
    TADatabase &operator=(const TADatabase &) = delete;

    // Both held weakly.
    ManagedObjectContext *context() const;
    void setContext(ManagedObjectContext *context);
    TADocumentHooks *document() const { return m_document; }
    void setDocument(TADocumentHooks *document) { m_document = document; }

    // The database and the document bound to a main context; null for any other context
    // (background contexts among them). Safe from any thread.
    static TADatabase *databaseForContext(const ManagedObjectContext *context);
    static TADocumentHooks *documentForContext(const ManagedObjectContext *context);

    // Repairs a document with several defaults (all but the first lose the flag); with none
    // makes one in the currency of the current locale.
    TACurrency *getDefaultCurrency();
    // The number times the rate row's oneFromInTo (the row made on first use), rounded for the
    // target currency; with no row (same currency, or either null) the number rounded alone.
    Decimal getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                             TACurrency *toCurrency);

    // Undo control; each flushes pending changes first. The outermost named group keeps its
    // name: an inner group's name is used only when no name is set yet.
    void disableUndoRegistration();
    void enableUndoRegistration();
    void beginUndoGroupingWithName(const QString &name);
    void endUndoGrouping();

    // The object of this document with that URI text, for the entities that copies link to;
    // null for any other entity. Each entity's table is built on first use and kept until
    // clearCache, so callers clear it before each paste.
    ManagedObject *cachedObjectForEntity(const QString &entity, const QString &objectID);
    void clearCache();

    // Copy dictionaries: see TACopyDictionary.
    QVariantMap copyDictionaryForObject(TAObject *object) const;
    TAObject *objectFromCopyDictionary(const QVariantMap &dictionary);
    ManagedObject *objectFromCopyDictionaryByURIRepresentation(const QVariantMap &dictionary);
    TAInventory *createInvetoryFromItemCopyDictionary(const QVariantMap &dictionary);
    TAItem *createItemFromInventoryCopyDictionary(const QVariantMap &dictionary);
    // Recurring invoice conversions: their rules come with the recurring invoices. Until then
    // both answer null.
    TAInvoice *createInvoiceFromRecurringCopyDictionary(const QVariantMap &dictionary);
    TARecurringInvoice *createRecurringFromInvoiceCopyDictionary(const QVariantMap &dictionary);

private:
    ManagedObjectContext *ctx() const { return m_context.data(); }

    QPointer<ManagedObjectContext> m_context;
    QMetaObject::Connection m_contextGone;
    TADocumentHooks *m_document = nullptr;
    // Entity name -> URI text -> object.
    QHash<QString, QHash<QString, ManagedObject *>> cachedObjects;
    QStringList _undoManangerNamesStack; // no operation uses it
};
