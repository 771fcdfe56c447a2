#include "objectstore/ManagedObject.h"

#include "objectstore/EntityDescription.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ObjectGraph.h"

namespace {

const KeyValueCoding *unwrapManagedObject(const QVariant &value) {
    if (value.metaType() == QMetaType::fromType<ManagedObject *>())
        return value.value<ManagedObject *>();
    return nullptr;
}

void registerOnce() {
    static const bool registered = [] {
        KeyValueCoding::registerUnwrapper(&unwrapManagedObject);
        return true;
    }();
    (void)registered;
}

} // namespace

ManagedObject::ManagedObject() {
    registerOnce();
}

ManagedObject::~ManagedObject() = default;

ManagedObjectContext *ManagedObject::managedObjectContext() const {
    return m_deleted || m_state == State::Missing ? nullptr : m_context;
}

bool ManagedObject::isInserted() const {
    return !m_deleted && !m_hasRow && m_state == State::Loaded;
}

bool ManagedObject::isUpdated() const {
    return m_dirty && m_hasRow && !m_deleted;
}

bool ManagedObject::hasChanges() const {
    return isInserted() || isUpdated() || (m_deleted && m_hasRow);
}

void ManagedObject::ensureLoaded() const {
    if (m_state == State::Fault && m_context)
        m_context->ensureEntityLoaded(m_entity);
}

QVariant ManagedObject::valueForKey(const QString &key) const {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot)
        return computedValueForKey(key);
    switch (slot->kind) {
    case PropertySlot::Attribute:
        ensureLoaded();
        return m_values[slot->index];
    case PropertySlot::ToOne:
        return QVariant::fromValue(objectForKey(key));
    case PropertySlot::ToMany:
        return QVariant::fromValue(objectsForKey(key));
    }
    return {};
}

const QVariant *ManagedObject::storedValueForKey(const QString &key) const {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::Attribute)
        return nullptr;
    ensureLoaded();
    return &m_values[slot->index];
}

QVariant ManagedObject::selfVariant() const {
    return QVariant::fromValue(const_cast<ManagedObject *>(this));
}

QVariant ManagedObject::computedValueForKey(const QString &) const {
    return {};
}

void ManagedObject::setValueForKey(const QVariant &value, const QString &key) {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot)
        return;
    switch (slot->kind) {
    case PropertySlot::Attribute: {
        ensureLoaded();
        const QVariant normalized =
            ObjectGraph::normalize(value, m_entity->attributes()[slot->declaration].type);
        if (m_context && !m_deleted)
            m_context->changeAttribute(this, slot->index, normalized);
        else
            m_values[slot->index] = normalized;
        return;
    }
    case PropertySlot::ToOne:
        setObjectForKey(value.value<ManagedObject *>(), key);
        return;
    case PropertySlot::ToMany: {
        const QList<ManagedObject *> wanted = value.value<QList<ManagedObject *>>();
        for (ManagedObject *member : objectsForKey(key))
            if (!wanted.contains(member))
                removeObjectForKey(member, key);
        for (ManagedObject *member : wanted)
            addObjectForKey(member, key);
        return;
    }
    }
}

QString ManagedObject::stringForKey(const QString &key) const {
    return valueForKey(key).toString();
}

qint64 ManagedObject::integerForKey(const QString &key) const {
    if (const QVariant *stored = storedValueForKey(key);
        stored && ObjectGraph::typeOf(*stored) == QMetaType::fromType<qint64>())
        return *static_cast<const qint64 *>(stored->constData());
    const QVariant v = valueForKey(key);
    if (v.metaType() == QMetaType::fromType<Decimal>())
        return v.value<Decimal>().toLongLong();
    return v.toLongLong();
}

bool ManagedObject::boolForKey(const QString &key) const {
    return valueForKey(key).toBool();
}

Decimal ManagedObject::decimalForKey(const QString &key) const {
    // Totals read many amounts: take a stored decimal in place rather than copy the variant.
    if (const QVariant *stored = storedValueForKey(key))
        return ObjectGraph::typeOf(*stored) == QMetaType::fromType<Decimal>()
                   ? *static_cast<const Decimal *>(stored->constData())
                   : Decimal::fromVariant(*stored);
    return Decimal::fromVariant(valueForKey(key));
}

QDateTime ManagedObject::dateForKey(const QString &key) const {
    return valueForKey(key).toDateTime();
}

QByteArray ManagedObject::dataForKey(const QString &key) const {
    return valueForKey(key).toByteArray();
}

double ManagedObject::doubleForKey(const QString &key) const {
    const QVariant v = valueForKey(key);
    if (v.metaType() == QMetaType::fromType<Decimal>())
        return v.value<Decimal>().toDouble();
    return v.toDouble();
}

bool ManagedObject::isNullForKey(const QString &key) const {
    // A stored attribute is looked at in place: copying a variant that holds a decimal costs
    // more than the test.
    if (const QVariant *stored = storedValueForKey(key)) {
        // The stored types are never pointers, so a typed value is not null; the library's
        // own test is a call that asks the type first.
        const QMetaType type = ObjectGraph::typeOf(*stored);
        if (stored->data_ptr().is_null || !type.isValid())
            return true;
        if (type == QMetaType::fromType<Decimal>() || type == QMetaType::fromType<QString>())
            return false;
        return stored->isNull();
    }
    const QVariant v = valueForKey(key);
    return !v.isValid() || v.isNull();
}

ManagedObject *ManagedObject::objectForKey(const QString &key) const {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::ToOne)
        return nullptr;
    ensureLoaded();
    return ObjectGraph::visible(m_toOne[slot->index]);
}

void ManagedObject::setObjectForKey(ManagedObject *value, const QString &key) {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::ToOne)
        return;
    if (value && value->m_context != m_context)
        return; // links never cross contexts
    ensureLoaded();
    if (m_context && !m_deleted)
        m_context->changeToOne(this, slot->index, value);
    else
        m_toOne[slot->index] = value;
}

const QList<ManagedObject *> *ManagedObject::storedObjectsForKey(const QString &key) const {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::ToMany)
        return nullptr;
    if (m_context)
        m_context->ensureToManyLoaded(m_entity->relationships()[slot->declaration]);
    return &m_toMany[slot->index].values();
}

QList<ManagedObject *> ManagedObject::objectsForKey(const QString &key) const {
    const QList<ManagedObject *> *found = storedObjectsForKey(key);
    if (!found)
        return {};
    const QList<ManagedObject *> &stored = *found;
    QList<ManagedObject *> members;
    members.reserve(stored.size());
    // The members lie all over memory; asking for them a few ahead hides the wait.
    constexpr qsizetype kAhead = 6;
    const qsizetype count = qsizetype(stored.size());
    for (qsizetype i = 0; i < std::min(kAhead, count); ++i)
        __builtin_prefetch(stored[i]);
    for (qsizetype i = 0; i < count; ++i) {
        if (i + kAhead < count)
            __builtin_prefetch(stored[i + kAhead]);
        if (ObjectGraph::visible(stored[i]))
            members.append(stored[i]);
    }
    return members;
}

qsizetype ManagedObject::countForKey(const QString &key) const {
    return objectsForKey(key).size();
}

void ManagedObject::addObjectForKey(ManagedObject *value, const QString &key) {
    const RelationshipDescription *r = m_entity ? m_entity->relationship(key) : nullptr;
    if (!value || !r || !r->toMany || !r->inverse)
        return;
    value->setObjectForKey(this, r->inverse->name);
}

void ManagedObject::removeObjectForKey(ManagedObject *value, const QString &key) {
    const RelationshipDescription *r = m_entity ? m_entity->relationship(key) : nullptr;
    if (!value || !r || !r->toMany || !r->inverse)
        return;
    if (value->objectForKey(r->inverse->name) == this)
        value->setObjectForKey(nullptr, r->inverse->name);
}

QVariant ManagedObject::primitiveValueForKey(const QString &key) const {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::Attribute)
        return valueForKey(key);
    ensureLoaded();
    return m_values[slot->index];
}

void ManagedObject::setPrimitiveObjectForKey(ManagedObject *value, const QString &key) {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::ToOne || (value && value->m_context != m_context))
        return;
    ensureLoaded();
    if (m_context && !m_deleted)
        m_context->changeToOnePrimitive(this, slot->index, value);
    else
        m_toOne[slot->index] = value;
}

void ManagedObject::setPrimitiveValueForKey(const QVariant &value, const QString &key) {
    const PropertySlot *slot = m_entity ? m_entity->slot(key) : nullptr;
    if (!slot || slot->kind != PropertySlot::Attribute)
        return;
    ensureLoaded();
    const QVariant normalized =
        ObjectGraph::normalize(value, m_entity->attributes()[slot->declaration].type);
    if (ObjectGraph::sameValue(m_values[slot->index], normalized))
        return;
    m_values[slot->index] = normalized;
    // Still saved, but neither undone nor announced.
    if (m_context)
        m_context->markChanged(this);
}
