#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <typeinfo>
#include <vector>

class ManagedObject;
class ManagedObjectModel;

enum class AttributeType { String, Integer, Boolean, Decimal, Date, Binary, Float };

struct AttributeDescription {
    QString name;
    AttributeType type = AttributeType::String;
    QVariant defaultValue; // invalid: null
    bool transient = false;
};

enum class DeleteRule { Nullify, Cascade, NoAction };

struct RelationshipDescription {
    QString name;
    QString destinationEntityName;
    QString inverseName; // empty: no inverse
    bool toMany = false;
    DeleteRule deleteRule = DeleteRule::Nullify;

    // Resolved by the model.
    const class EntityDescription *destination = nullptr;
    const RelationshipDescription *inverse = nullptr;
    // Slot of the inverse in any object of the destination (inherited properties come first,
    // so the slot is the same in every subentity); -1 without an inverse.
    int inverseSlot = -1;
};

// Where a property lives in an object: attributes and to-one links have a value slot,
// to-many links a set slot.
struct PropertySlot {
    enum Kind { Attribute, ToOne, ToMany } kind;
    int index;       // slot index within its kind
    int declaration; // index into attributes() or relationships()
};

class EntityDescription {
public:
    using Factory = std::function<ManagedObject *()>;

    EntityDescription(QString name, QString parentName = {}, bool abstract = false);

    const QString &name() const { return m_name; }
    const QString &parentName() const { return m_parentName; }
    bool isAbstract() const { return m_abstract; }
    const EntityDescription *superentity() const { return m_super; }
    // Direct and indirect subentities, in model order.
    const QList<const EntityDescription *> &subentities() const { return m_allSubentities; }
    bool isKindOfEntity(const EntityDescription *other) const;

    // Declaration, before the model is finished.
    EntityDescription &addAttribute(const QString &name, AttributeType type,
                                    const QVariant &defaultValue = {}, bool transient = false);
    EntityDescription &addToOne(const QString &name, const QString &destination,
                                const QString &inverse = {}, DeleteRule rule = DeleteRule::Nullify);
    EntityDescription &addToMany(const QString &name, const QString &destination,
                                 const QString &inverse, DeleteRule rule = DeleteRule::Nullify);
    // Makes instances of the entity's class; inherited from the parent when not set.
    EntityDescription &setFactory(Factory factory);

    // Own and inherited properties, parents first. Valid once the model is finished.
    const QList<AttributeDescription> &attributes() const { return m_attributes; }
    const QList<RelationshipDescription> &relationships() const { return m_relationships; }
    QStringList attributeNames() const;
    QStringList relationshipNames() const;
    const AttributeDescription *attribute(const QString &name) const;
    const RelationshipDescription *relationship(const QString &name) const;
    const PropertySlot *slot(const QString &name) const {
        // The same text buffer as the slot's own name: the model's key strings are shared.
        const NamedSlot *hit = m_recentSlots[recentBucket(name)].load(std::memory_order_relaxed);
        if (hit && hit->name.constData() == name.constData() && hit->name.size() == name.size())
            return &hit->slot;
        const NamedSlot *found = findSlot(name);
        return found ? &found->slot : nullptr;
    }
    int toOneCount() const { return m_toOneCount; }
    int toManyCount() const { return m_toManyCount; }
    int attributeCount() const { return int(m_attributes.size()); }
    // Relationship declaration index of a to-one / to-many slot.
    int relationshipForToOneSlot(int slot) const { return m_toOneDecl[slot]; }
    int relationshipForToManySlot(int slot) const { return m_toManyDecl[slot]; }

    ManagedObject *createInstance() const;
    // Whether this entity's instances are known to be of the class with that type: an
    // entity's factory makes one class, so one successful cast answers for all instances.
    bool isKnownKindOf(const std::type_info &type) const {
        for (const auto &known : m_knownKinds) {
            const std::type_info *entry = known.load(std::memory_order_relaxed);
            if (entry == &type)
                return true;
            if (!entry)
                return false;
        }
        return false;
    }
    void learnKindOf(const std::type_info &type) const;
    const ManagedObjectModel *model() const { return m_model; }
    // Position in the model's entity list.
    int index() const { return m_index; }

private:
    friend class ManagedObjectModel;
    void resolve(const ManagedObjectModel *model, int index);

    QString m_name;
    QString m_parentName;
    bool m_abstract = false;
    const EntityDescription *m_super = nullptr;
    QList<const EntityDescription *> m_directSubentities;
    QList<const EntityDescription *> m_allSubentities;
    QList<AttributeDescription> m_ownAttributes;
    QList<RelationshipDescription> m_ownRelationships;
    QList<AttributeDescription> m_attributes;
    QList<RelationshipDescription> m_relationships;
    struct NamedSlot {
        QString name;
        PropertySlot slot;
    };
    const NamedSlot *findSlot(const QString &name) const;
    static std::size_t recentBucket(const QString &name) {
        const auto address = reinterpret_cast<quintptr>(name.constData());
        return std::size_t((quint64(address) * 0x9E3779B97F4A7C15ull) >> 58);
    }
    std::vector<NamedSlot> m_namedSlots; // immutable once resolved
    QHash<QString, int> m_slotIndex;
    // Keys mostly come from a few long-lived strings, so a key's text pointer finds its slot
    // again without hashing the text. Entries are checked by name, so a stale entry only
    // costs a miss; atomics keep it safe for contexts on other threads.
    static constexpr int kRecentSlots = 64;
    mutable std::array<std::atomic<const NamedSlot *>, kRecentSlots> m_recentSlots{};
    mutable std::array<std::atomic<const std::type_info *>, 8> m_knownKinds{};
    QList<int> m_toOneDecl;
    QList<int> m_toManyDecl;
    int m_toOneCount = 0;
    int m_toManyCount = 0;
    Factory m_factory;
    const ManagedObjectModel *m_model = nullptr;
    int m_index = -1;
};
