#pragma once

#include "foundation/money/Decimal.h"
#include "objectstore/EntityDescription.h"
#include "objectstore/KeyValueCoding.h"
#include "objectstore/ObjectGraph.h"
#include "objectstore/ObjectID.h"
#include "objectstore/ObjectSet.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

class ManagedObjectContext;
struct RelationshipDescription;

// Why awakeFromSnapshotEvents is called.
enum class SnapshotEvent { Undo, Redo, Rollback };

// A persistent object: values by key, links kept in step with their inverses, change hooks.
// Objects are made and owned by their context; pointers stay valid until the context is reset
// or destroyed. Subclasses add typed accessors over the keyed ones.
class ManagedObject : public KeyValueCoding {
public:
    ManagedObject();
    ~ManagedObject() override;
    ManagedObject(const ManagedObject &) = delete;
    ManagedObject &operator=(const ManagedObject &) = delete;

    const EntityDescription *entity() const { return m_entity; }
    // Null once the object is deleted (or its insertion undone).
    ManagedObjectContext *managedObjectContext() const;
    const ObjectID &objectID() const { return m_id; }
    QString uriText() const { return m_id.uriText(); }

    bool isInserted() const; // new since the last save
    bool isUpdated() const;  // changed since the last save, not new
    bool isDeleted() const { return m_deleted; }
    bool isFault() const { return m_state == State::Fault; }
    bool hasChanges() const;

    // Keyed access. Attributes answer their value (invalid when null), to-one links a
    // ManagedObject* (null pointer when empty), to-many links a QList<ManagedObject*>; any
    // other key goes to computedValueForKey, so key paths reach computed properties.
    QVariant valueForKey(const QString &key) const override;
    QVariant selfVariant() const override;
    const QVariant *storedValueForKey(const QString &key) const override;
    // Attributes take any convertible value (text for a decimal, an int for a date is not);
    // to-one links take a ManagedObject*; to-many links a QList<ManagedObject*>.
    void setValueForKey(const QVariant &value, const QString &key);

    // Typed attribute reads; null reads as the empty value of the type.
    QString stringForKey(const QString &key) const;
    qint64 integerForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    Decimal decimalForKey(const QString &key) const; // null reads as not-a-number
    QDateTime dateForKey(const QString &key) const;  // null reads as an invalid date
    QByteArray dataForKey(const QString &key) const;
    double doubleForKey(const QString &key) const;
    bool isNullForKey(const QString &key) const;

    // Links. Setting either side keeps the inverse in step.
    ManagedObject *objectForKey(const QString &key) const;
    template <class T> T *objectForKeyAs(const QString &key) const {
        return objectAs<T>(objectForKey(key));
    }
    // dynamic_cast, answered once per entity and class: totals cast every item they read.
    template <class T> static T *objectAs(ManagedObject *object) {
        if (!object)
            return nullptr;
        const EntityDescription *entity = object->m_entity;
        if (entity && entity->isKnownKindOf(typeid(T)))
            return static_cast<T *>(object);
        T *cast = dynamic_cast<T *>(object);
        if (cast && entity)
            entity->learnKindOf(typeid(T));
        return cast;
    }
    void setObjectForKey(ManagedObject *value, const QString &key);
    // Asks for the link targets' memory ahead of a walk over many objects that reads them.
    void prefetchLinkTargets() const {
        for (const ManagedObject *target : m_toOne)
            if (target)
                __builtin_prefetch(target);
    }
    // Asks for the memory of the stored values ahead of reading several of them.
    void prefetchValues() const {
        const char *bytes = reinterpret_cast<const char *>(m_values.data());
        const size_t size = m_values.size() * sizeof(QVariant);
        for (size_t at = 0; at < size; at += 64)
            __builtin_prefetch(bytes + at);
    }
    QList<ManagedObject *> objectsForKey(const QString &key) const;
    // Visits the visible members of a to-many key, asking for each member and its values a
    // few members ahead: for walks that read several values of every member. The visit must
    // not change the membership.
    template <class F> void forEachObjectForKey(const QString &key, F &&visit) const {
        const QList<ManagedObject *> *stored = storedObjectsForKey(key);
        if (!stored)
            return;
        constexpr qsizetype kObjectsAhead = 8, kValuesAhead = 4;
        const qsizetype count = stored->size();
        for (qsizetype i = 0; i < std::min(kObjectsAhead, count); ++i)
            __builtin_prefetch(stored->at(i));
        for (qsizetype i = 0; i < count; ++i) {
            if (i + kObjectsAhead < count)
                __builtin_prefetch(stored->at(i + kObjectsAhead));
            if (i + kValuesAhead < count)
                stored->at(i + kValuesAhead)->prefetchValues();
            if (ManagedObject *member = ObjectGraph::visible(stored->at(i)))
                visit(member);
        }
    }
    template <class T> QList<T *> objectsForKeyAs(const QString &key) const {
        QList<T *> out;
        const QList<ManagedObject *> members = objectsForKey(key);
        out.reserve(members.size());
        for (ManagedObject *o : members)
            if (T *t = objectAs<T>(o))
                out.append(t);
        return out;
    }
    qsizetype countForKey(const QString &key) const;
    void addObjectForKey(ManagedObject *value, const QString &key);
    void removeObjectForKey(ManagedObject *value, const QString &key);

    // Reads and writes without change tracking, undo or hooks: for cached values that are
    // not the user's edits, and for the store itself.
    QVariant primitiveValueForKey(const QString &key) const;
    void setPrimitiveValueForKey(const QVariant &value, const QString &key);
    // A to-one link set the same way; the inverse still follows.
    void setPrimitiveObjectForKey(ManagedObject *value, const QString &key);

    // Hooks.
    virtual void awakeFromInsert() {}
    virtual void awakeFromFetch() {}
    virtual void awakeFromSnapshotEvents(SnapshotEvent) {}
    virtual void willChangeValueForKey(const QString &) {}
    virtual void didChangeValueForKey(const QString &) {}
    virtual void prepareForDeletion() {}

protected:
    // Computed properties reachable by key; invalid when the key is unknown.
    virtual QVariant computedValueForKey(const QString &key) const;

private:
    friend class ManagedObjectContext;
    friend class ObjectGraph;
    enum class State { Fault, Loaded, Missing };

    void ensureLoaded() const;
    // The members of a to-many key as stored, deleted ones included; null for another key.
    const QList<ManagedObject *> *storedObjectsForKey(const QString &key) const;

    const EntityDescription *m_entity = nullptr;
    ManagedObjectContext *m_context = nullptr;
    ObjectID m_id;
    State m_state = State::Fault;
    bool m_hasRow = false; // a row exists in the file as of the last save
    bool m_deleted = false;
    bool m_registered = false;    // belongs to the context's live objects
    bool m_dirty = false;         // changed since the last save
    bool m_listedChanged = false; // in the context's list of objects changed since the save
    quint8 m_pending = 0;         // which change notices are waiting for processPendingChanges
    int m_memberIndex = -1;       // position in the context's per-entity list
    std::vector<QVariant> m_values;
    std::vector<ManagedObject *> m_toOne;
    std::vector<ObjectSet> m_toMany;
    struct Snapshot {
        std::vector<QVariant> values;
        std::vector<ManagedObject *> toOne;
    };
    std::unique_ptr<Snapshot> m_snapshot; // state as of the last save, taken at first change
};

Q_DECLARE_METATYPE(ManagedObject *)
Q_DECLARE_METATYPE(QList<ManagedObject *>)

ManagedObject *ObjectGraph::visible(ManagedObject *object) {
    if (!object || object->m_deleted || object->m_state == ManagedObject::State::Missing)
        return nullptr;
    return object;
}
