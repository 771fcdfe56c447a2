#pragma once

#include "objectstore/ManagedObject.h"

#include <QHash>
#include <QStringList>
#include <QVariantMap>

// Base of the template entities: attribute copying between objects of possibly different
// contexts, a two-pass graph copy through a table from source URI text to new object, and
// synchronisation hooks that nothing drives yet.
class LMManagedObject : public ManagedObject {
public:
    using ReferenceTable = QHash<QString, ManagedObject *>;

    void awakeFromInsert() override;
    void awakeFromFetch() override;

    virtual bool containsAttributeWithName(const QString &name) const;
    // Copies the non-transient attributes both entities have, except the keys named.
    virtual void copyFromManagedObject(const ManagedObject *source, const QStringList &excludeKeys);
    // Copies all shared attributes, then the links whose targets are already in the table,
    // then records this object in the table under the source's URI text.
    virtual void copyFromManagedObject(const ManagedObject *source, ReferenceTable &withReference);
    // Points this object's links at the copies of the source's related objects; related
    // objects without a copy in the table are skipped.
    virtual void copyRelationshipsFromManagedObject(const ManagedObject *source,
                                                    const ReferenceTable &withReference);

    // Every non-transient attribute that has a value, under its own name, as stored.
    QVariantMap attributeDictionary() const;
    // Copies each attribute of the entity that the dictionary names; the others keep their value.
    void setAttributesFromDictionary(const QVariantMap &dictionary);
    // A new object of the same entity in the same context, every non-transient attribute
    // copied, null ones included. Null without a context.
    LMManagedObject *insertAttributeCopy() const;
    // True while the context's undo manager undoes or redoes.
    bool isUndoingOrRedoing() const;

    virtual QStringList syncKeys() const;
    virtual void setSyncEnabled(bool enabled);
    bool syncEnabled() const { return m_syncEnabled; }
    void willChangeValueForKey(const QString &key) override;
    void didChangeValueForKey(const QString &key) override;
    virtual QVariantMap getSyncDict() const;
    virtual QString syncType() const;
    // {uuid: {"uuid", "action": "delete", "synctype"}} when both uuid and syncType are known.
    virtual QVariantMap getDeleteSyncDict() const;

private:
    bool m_syncEnabled = false;
};
