#include "store/TACopyDictionary.h"

#include "foundation/Check.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TADatabase.h"
#include "store/TAGlobal.h"
#include "store/entities/TAAccount.h"
#include "store/entities/TAClient.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAInventory.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TAPayment.h"
#include "store/entities/TAProject.h"
#include "store/entities/TARecurringInvoice.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"
#include "store/entities/TATimerInterval.h"

#include <QUrl>

namespace {
namespace E = TAEntity;
namespace K = TAKey;

QVariantList relatedObjects(const ManagedObject *object, const QString &name) {
    QVariantList out;
    // The names come from the entity's own list of relationships to copy.
    const RelationshipDescription *relationship = object->entity()->relationship(name);
    BF_CHECK(relationship, return out);
    if (relationship->toMany) {
        for (ManagedObject *member : object->objectsForKey(name))
            out.append(QVariant::fromValue(member));
    } else if (ManagedObject *target = object->objectForKey(name)) {
        out.append(QVariant::fromValue(target));
    }
    return out;
}

void attach(ManagedObject *object, const QString &name, ManagedObject *target) {
    const RelationshipDescription *relationship = object->entity()->relationship(name);
    BF_CHECK(relationship, return);
    if (relationship->toMany)
        object->addObjectForKey(target, name);
    else
        object->setObjectForKey(target, name);
}

QString textOrEmpty(const QVariant &value) {
    return value.isValid() && !value.isNull() ? value.toString() : QStringLiteral("");
}

Decimal decimalOrZero(const QVariant &value) {
    return value.isValid() && !value.isNull() ? Decimal::fromVariant(value) : Decimal(0);
}
} // namespace

// Keys in the order of the original form: URI, attributes, entity, deep copies, links. The map
// keeps no order of its own; members of to-many relationships come in no defined order.
QVariantMap TACopyDictionary::copyDictionaryForObject(TAObject *object) {
    QVariantMap dictionary;
    if (!object || !object->entity())
        return dictionary;
    dictionary.insert(kURIRepresentation, QUrl(object->uriText()));
    for (const QString &name : object->attributesToCopy())
        dictionary.insert(name, object->valueForKey(name));
    dictionary.insert(kEntity, object->entity()->name());
    for (const QString &name : object->relationshipsToCopy()) {
        QVariantList members;
        for (const QVariant &member : relatedObjects(object, name))
            if (auto *related = dynamic_cast<TAObject *>(member.value<ManagedObject *>()))
                members.append(copyDictionaryForObject(related));
        dictionary.insert(name, members);
    }
    for (const QString &name : object->relationshipsToLink()) {
        QVariantList links;
        for (const QVariant &member : relatedObjects(object, name)) {
            const ManagedObject *target = member.value<ManagedObject *>();
            links.append(
                QVariantMap{{kId, target->uriText()}, {kEntity, target->entity()->name()}});
        }
        dictionary.insert(name, links);
    }
    return dictionary;
}

TAObject *TACopyDictionary::createObjectOfEntity(const QString &entity) {
    TADatabase &db = m_database;
    if (entity == E::Project)
        return TAContextDatabase::createProjectInContext(db.context());
    if (entity == E::Invoice)
        return TAContextDatabase::createInvoiceInContext(db.context());
    if (entity == E::RecurringInvoice)
        return TAContextDatabase::createRecurringInvoiceInContext(db.context());
    if (entity == E::Client)
        return TAContextDatabase::createClientInContext(db.context());
    if (entity == E::Payment)
        return TAContextDatabase::createPaymentInContext(db.context());
    if (entity == E::Timer)
        return TAContextDatabase::createTimerInContext(db.context());
    if (entity == E::Material)
        return TAContextDatabase::createMaterialInContext(db.context());
    if (entity == E::Inventory)
        return TAContextDatabase::createInventoryInContext(db.context());
    if (entity == E::Account)
        return TAContextDatabase::createAccountInContext(db.context());
    if (entity == E::Currency)
        return TAContextDatabase::createCurrencyInContext(db.context());
    if (entity == E::Tax)
        return TAContextDatabase::createTaxInContext(db.context());
    if (entity == E::TimerInterval)
        return TAContextDatabase::createTimerIntervalInContext(db.context());
    return nullptr;
}

// The new object is made by the creation operation of its entity, so it gets what a new
// object gets (a project its created-record, an invoice its template and number), and then
// takes every copied attribute: one missing from the dictionary is cleared. The template link
// never resolves, as templates are not in the cache: the invoice keeps the first template.
TAObject *TACopyDictionary::objectFromCopyDictionary(const QVariantMap &dictionary) {
    const QString entity = dictionary.value(kEntity).toString();
    TAObject *object = createObjectOfEntity(entity);
    if (!object)
        return nullptr;
    QVariantMap values = dictionary;
    if (entity == E::Invoice && !values.contains(K::identification))
        values.insert(K::identification, object->valueForKey(K::identification));
    for (const QString &name : object->attributesToCopy())
        object->setValueForKey(values.value(name), name);
    copyDeepRelationships(object, values);
    linkRelationships(object, values);
    return object;
}

void TACopyDictionary::copyDeepRelationships(TAObject *object, const QVariantMap &dictionary) {
    for (const QString &name : object->relationshipsToCopy()) {
        if (!dictionary.contains(name))
            continue;
        for (const QVariant &member : dictionary.value(name).toList())
            if (TAObject *copy = objectFromCopyDictionary(member.toMap()))
                attach(object, name, copy);
    }
}

void TACopyDictionary::linkRelationships(TAObject *object, const QVariantMap &dictionary) {
    for (const QString &name : object->relationshipsToLink()) {
        if (!dictionary.contains(name))
            continue;
        for (const QVariant &member : dictionary.value(name).toList()) {
            const QVariantMap link = member.toMap();
            ManagedObject *target = m_database.cachedObjectForEntity(link.value(kEntity).toString(),
                                                                     link.value(kId).toString());
            if (target && target->managedObjectContext() == object->managedObjectContext())
                attach(object, name, target);
        }
    }
}

// Finds the source object of a dictionary, in this document only.
ManagedObject *
TACopyDictionary::objectFromCopyDictionaryByURIRepresentation(const QVariantMap &dictionary) {
    ManagedObjectContext *context = m_database.context();
    if (!context || !dictionary.contains(kURIRepresentation))
        return nullptr;
    QVariant uri = dictionary.value(kURIRepresentation);
    if (uri.metaType() == QMetaType::fromType<QString>())
        uri = QUrl(uri.toString());
    return TAGlobal::decodeObjectForDocument(context, uri);
}

TAInventory *TACopyDictionary::createInvetoryFromItemCopyDictionary(const QVariantMap &dictionary) {
    const QString entity = dictionary.value(kEntity).toString();
    if (entity != E::Timer && entity != E::Material)
        return nullptr;
    TAInventory *inventory = TAContextDatabase::createInventoryInContext(m_database.context());
    if (!inventory)
        return nullptr;
    inventory->setName(textOrEmpty(dictionary.value(K::name)));
    inventory->setPrice(decimalOrZero(dictionary.value(K::price)));
    inventory->setDiscount(decimalOrZero(dictionary.value(K::discount)));
    inventory->setSku(textOrEmpty(dictionary.value(K::sku)));
    inventory->setCustomTax(decimalOrZero(dictionary.value(K::tax)));
    inventory->setIsMaterial(entity != E::Timer);
    return inventory;
}

// Unlike making an item from the catalogue in the editors, this sets no quantity and no tax
// name and ignores the entry's named tax.
TAItem *TACopyDictionary::createItemFromInventoryCopyDictionary(const QVariantMap &dictionary) {
    if (dictionary.value(kEntity).toString() != E::Inventory)
        return nullptr;
    TAItem *item = nullptr;
    if (dictionary.value(K::isMaterial).toBool())
        item = TAContextDatabase::createMaterialInContext(m_database.context());
    else
        item = TAContextDatabase::createTimerInContext(m_database.context());
    if (!item)
        return nullptr;
    item->setName(textOrEmpty(dictionary.value(K::name)));
    item->setPrice(decimalOrZero(dictionary.value(K::price)));
    item->setDiscount(decimalOrZero(dictionary.value(K::discount)));
    item->setSku(textOrEmpty(dictionary.value(K::sku)));
    item->setTax(decimalOrZero(dictionary.value(K::customTax)));
    return item;
}
