#include "store/entities/LMManagedObject.h"

#include "foundation/Check.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/UndoManager.h"
#include "store/entities/TAKeys.h"

void LMManagedObject::awakeFromInsert() {
    ManagedObject::awakeFromInsert();
    m_syncEnabled = true;
}

void LMManagedObject::awakeFromFetch() {
    ManagedObject::awakeFromFetch();
    m_syncEnabled = true;
}

bool LMManagedObject::containsAttributeWithName(const QString &name) const {
    return entity() && entity()->attribute(name);
}

void LMManagedObject::copyFromManagedObject(const ManagedObject *source,
                                            const QStringList &excludeKeys) {
    // Objects come from a context, which gives each its entity.
    BF_CHECK(source && entity() && source->entity(), return);
    for (const AttributeDescription &attribute : entity()->attributes()) {
        if (attribute.transient || excludeKeys.contains(attribute.name))
            continue;
        const AttributeDescription *other = source->entity()->attribute(attribute.name);
        if (!other || other->transient)
            continue;
        setValueForKey(source->valueForKey(attribute.name), attribute.name);
    }
}

void LMManagedObject::copyFromManagedObject(const ManagedObject *source,
                                            ReferenceTable &withReference) {
    if (!source)
        return;
    copyFromManagedObject(source, QStringList());
    copyRelationshipsFromManagedObject(source, withReference);
    withReference.insert(source->uriText(), this);
}

void LMManagedObject::copyRelationshipsFromManagedObject(const ManagedObject *source,
                                                         const ReferenceTable &withReference) {
    BF_CHECK(source && entity() && source->entity(), return);
    for (const RelationshipDescription &link : source->entity()->relationships()) {
        const RelationshipDescription *mine = entity()->relationship(link.name);
        if (!mine || mine->toMany != link.toMany)
            continue;
        if (link.toMany) {
            for (ManagedObject *related : source->objectsForKey(link.name))
                if (ManagedObject *copy = withReference.value(related->uriText()))
                    addObjectForKey(copy, link.name);
        } else if (ManagedObject *related = source->objectForKey(link.name)) {
            if (ManagedObject *copy = withReference.value(related->uriText()))
                setObjectForKey(copy, link.name);
        }
    }
}

QVariantMap LMManagedObject::attributeDictionary() const {
    QVariantMap out;
    BF_CHECK(entity(), return out);
    for (const AttributeDescription &attribute : entity()->attributes()) {
        if (attribute.transient || isNullForKey(attribute.name))
            continue;
        out.insert(attribute.name, valueForKey(attribute.name));
    }
    return out;
}

void LMManagedObject::setAttributesFromDictionary(const QVariantMap &dictionary) {
    BF_CHECK(entity(), return);
    for (const AttributeDescription &attribute : entity()->attributes()) {
        const auto found = dictionary.constFind(attribute.name);
        if (found != dictionary.constEnd())
            setValueForKey(found.value(), attribute.name);
    }
}

LMManagedObject *LMManagedObject::insertAttributeCopy() const {
    ManagedObjectContext *context = managedObjectContext();
    if (!context) // deleted: nothing to copy into
        return nullptr;
    BF_CHECK(entity(), return nullptr);
    // The model makes every entity of the layout family an LMManagedObject.
    auto *copy = dynamic_cast<LMManagedObject *>(context->insertNewObject(entity()->name()));
    BF_CHECK(copy, return nullptr);
    copy->copyFromManagedObject(this, QStringList());
    return copy;
}

bool LMManagedObject::isUndoingOrRedoing() const {
    ManagedObjectContext *context = managedObjectContext();
    UndoManager *undo = context ? context->undoManager() : nullptr;
    return undo && (undo->isUndoing() || undo->isRedoing());
}

QStringList LMManagedObject::syncKeys() const {
    return {};
}

void LMManagedObject::setSyncEnabled(bool enabled) {
    m_syncEnabled = enabled;
}

void LMManagedObject::willChangeValueForKey(const QString &key) {
    ManagedObject::willChangeValueForKey(key);
}

void LMManagedObject::didChangeValueForKey(const QString &key) {
    ManagedObject::didChangeValueForKey(key);
}

QVariantMap LMManagedObject::getSyncDict() const {
    return {};
}

QString LMManagedObject::syncType() const {
    return {};
}

QVariantMap LMManagedObject::getDeleteSyncDict() const {
    const QString uuid = valueForKey(TAKey::uuid).toString();
    const QString type = syncType();
    if (uuid.isEmpty() || type.isEmpty())
        return {};
    const QVariantMap entry{{QStringLiteral("uuid"), uuid},
                            {QStringLiteral("action"), QStringLiteral("delete")},
                            {QStringLiteral("synctype"), type}};
    return {{uuid, entry}};
}
