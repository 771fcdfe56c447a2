#include "objectstore/EntityDescription.h"

#include "objectstore/ManagedObject.h"

EntityDescription::EntityDescription(QString name, QString parentName, bool abstract)
    : m_name(std::move(name))
    , m_parentName(std::move(parentName))
    , m_abstract(abstract) {}

bool EntityDescription::isKindOfEntity(const EntityDescription *other) const {
    for (const EntityDescription *e = this; e; e = e->m_super)
        if (e == other)
            return true;
    return false;
}

EntityDescription &EntityDescription::addAttribute(const QString &name, AttributeType type,
                                                   const QVariant &defaultValue, bool transient) {
    m_ownAttributes.append({name, type, defaultValue, transient});
    return *this;
}

EntityDescription &EntityDescription::addToOne(const QString &name, const QString &destination,
                                               const QString &inverse, DeleteRule rule) {
    RelationshipDescription r;
    r.name = name;
    r.destinationEntityName = destination;
    r.inverseName = inverse;
    r.toMany = false;
    r.deleteRule = rule;
    m_ownRelationships.append(r);
    return *this;
}

EntityDescription &EntityDescription::addToMany(const QString &name, const QString &destination,
                                                const QString &inverse, DeleteRule rule) {
    RelationshipDescription r;
    r.name = name;
    r.destinationEntityName = destination;
    r.inverseName = inverse;
    r.toMany = true;
    r.deleteRule = rule;
    m_ownRelationships.append(r);
    return *this;
}

EntityDescription &EntityDescription::setFactory(Factory factory) {
    m_factory = std::move(factory);
    return *this;
}

QStringList EntityDescription::attributeNames() const {
    QStringList names;
    for (const auto &a : m_attributes)
        names.append(a.name);
    return names;
}

QStringList EntityDescription::relationshipNames() const {
    QStringList names;
    for (const auto &r : m_relationships)
        names.append(r.name);
    return names;
}

const AttributeDescription *EntityDescription::attribute(const QString &name) const {
    const PropertySlot *s = slot(name);
    return s && s->kind == PropertySlot::Attribute ? &m_attributes[s->declaration] : nullptr;
}

const RelationshipDescription *EntityDescription::relationship(const QString &name) const {
    const PropertySlot *s = slot(name);
    return s && s->kind != PropertySlot::Attribute ? &m_relationships[s->declaration] : nullptr;
}

const EntityDescription::NamedSlot *EntityDescription::findSlot(const QString &name) const {
    static_assert(kRecentSlots == 64, "the bucket takes the top six bits");
    std::atomic<const NamedSlot *> &recent = m_recentSlots[recentBucket(name)];
    if (const NamedSlot *hit = recent.load(std::memory_order_relaxed); hit && hit->name == name)
        return hit;
    const auto it = m_slotIndex.constFind(name);
    if (it == m_slotIndex.cend())
        return nullptr;
    const NamedSlot *found = &m_namedSlots[std::size_t(it.value())];
    recent.store(found, std::memory_order_relaxed);
    return found;
}

void EntityDescription::learnKindOf(const std::type_info &type) const {
    // A full table only means later casts take the slow way.
    for (auto &known : m_knownKinds) {
        const std::type_info *expected = nullptr;
        if (known.compare_exchange_strong(expected, &type, std::memory_order_relaxed) ||
            expected == &type)
            return;
    }
}

ManagedObject *EntityDescription::createInstance() const {
    for (const EntityDescription *e = this; e; e = e->m_super)
        if (e->m_factory)
            return e->m_factory();
    return new ManagedObject;
}

void EntityDescription::resolve(const ManagedObjectModel *model, int index) {
    m_model = model;
    m_index = index;
    m_attributes.clear();
    m_relationships.clear();
    if (m_super) {
        m_attributes = m_super->m_attributes;
        m_relationships = m_super->m_relationships;
    }
    m_attributes += m_ownAttributes;
    m_relationships += m_ownRelationships;
    for (auto &recent : m_recentSlots)
        recent.store(nullptr, std::memory_order_relaxed);
    m_namedSlots.clear();
    m_slotIndex.clear();
    m_toOneDecl.clear();
    m_toManyDecl.clear();
    for (int i = 0; i < m_attributes.size(); ++i)
        m_namedSlots.push_back({m_attributes[i].name, {PropertySlot::Attribute, i, i}});
    for (int i = 0; i < m_relationships.size(); ++i) {
        if (m_relationships[i].toMany) {
            m_namedSlots.push_back(
                {m_relationships[i].name, {PropertySlot::ToMany, int(m_toManyDecl.size()), i}});
            m_toManyDecl.append(i);
        } else {
            m_namedSlots.push_back(
                {m_relationships[i].name, {PropertySlot::ToOne, int(m_toOneDecl.size()), i}});
            m_toOneDecl.append(i);
        }
    }
    // A later declaration of a name wins, as with the map this replaces.
    for (std::size_t i = 0; i < m_namedSlots.size(); ++i)
        m_slotIndex.insert(m_namedSlots[i].name, int(i));
    m_toOneCount = int(m_toOneDecl.size());
    m_toManyCount = int(m_toManyDecl.size());
}
