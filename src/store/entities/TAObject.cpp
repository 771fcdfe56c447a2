#include "store/entities/TAObject.h"

#include "foundation/Check.h"
#include "objectstore/EntityDescription.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAHistory.h"
#include "store/entities/TAKeys.h"

#include <QCborMap>
#include <QCborValue>

namespace {
TAObject::Duplicator &duplicatorSlot() {
    static TAObject::Duplicator duplicator;
    return duplicator;
}
} // namespace

void TAObject::initializePropertiesIfNeeded() const {
    const QByteArray stored = dataForKey(TAKey::properties);
    if (m_propertyList && stored == m_propertySource)
        return;
    m_propertySource = stored;
    m_propertyList = QVariantMap();
    if (stored.isEmpty())
        return;
    QCborParserError error;
    const QCborValue parsed = QCborValue::fromCbor(stored, &error);
    if (error.error == QCborError::NoError && parsed.isMap())
        m_propertyList = parsed.toMap().toVariantMap();
}

void TAObject::updateProperties() {
    initializePropertiesIfNeeded();
    QByteArray blob;
    if (!m_propertyList->isEmpty())
        blob = QCborValue::fromVariant(*m_propertyList).toCbor();
    EntityValues::setData(this, TAKey::properties, blob);
    m_propertySource = blob;
}

QVariant TAObject::valueForProperty(const QString &key) const {
    initializePropertiesIfNeeded();
    return m_propertyList->value(key);
}

void TAObject::setValueForProperty(const QVariant &value, const QString &key) {
    if (!value.isValid()) {
        removeValueForProperty(key);
        return;
    }
    initializePropertiesIfNeeded();
    m_propertyList->insert(key, value);
    updateProperties();
}

void TAObject::removeValueForProperty(const QString &key) {
    initializePropertiesIfNeeded();
    m_propertyList->remove(key);
    updateProperties();
}

void TAObject::copyAttributesFromObject(const ManagedObject *other) {
    // Objects come from a context, which gives each its entity.
    BF_CHECK(other && entity() && other->entity(), return);
    for (const AttributeDescription &attribute : entity()->attributes()) {
        if (attribute.transient || !other->entity()->attribute(attribute.name))
            continue;
        setValueForKey(other->valueForKey(attribute.name), attribute.name);
    }
}

QStringList TAObject::attributesToCopy() const {
    return entity() ? entity()->attributeNames() : QStringList();
}

QStringList TAObject::relationshipsToCopy() const {
    return {};
}

QStringList TAObject::relationshipsToLink() const {
    return {};
}

TAObject *TAObject::duplicate() {
    const Duplicator &duplicator = duplicatorSlot();
    return duplicator ? duplicator(this) : nullptr;
}

void TAObject::setDuplicator(Duplicator duplicator) {
    duplicatorSlot() = std::move(duplicator);
}

QByteArray TAObject::properties() const {
    return dataForKey(TAKey::properties);
}

TAHistory *TAObject::altHistory() const {
    return objectForKeyAs<TAHistory>(TAKey::altHistory);
}

void TAObject::setAltHistory(TAHistory *history) {
    setObjectForKey(history, TAKey::altHistory);
}
