#pragma once

#include "objectstore/ManagedObject.h"

#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

class TAHistory;

// Base of all business entities: a free-form property dictionary kept in the binary attribute
// `properties` (a CBOR map), and the declarations that tell the copy machinery of the access
// layer which attributes travel with a copy, which links are copied deeply and which are only
// pointed at.
class TAObject : public ManagedObject {
public:
    // Builds a copy of an object in its own context; installed by the access layer, which owns
    // copy dictionaries.
    using Duplicator = std::function<TAObject *(TAObject *)>;

    virtual void initializePropertiesIfNeeded() const;
    virtual void updateProperties();
    virtual QVariant valueForProperty(const QString &key) const;
    // An invalid value removes the key.
    virtual void setValueForProperty(const QVariant &value, const QString &key);
    virtual void removeValueForProperty(const QString &key);

    // Copies every non-transient attribute of this entity that the other entity also has.
    virtual void copyAttributesFromObject(const ManagedObject *other);
    virtual QStringList attributesToCopy() const;
    virtual QStringList relationshipsToCopy() const;
    virtual QStringList relationshipsToLink() const;
    // A copy of this object in the same context, or null when no access layer is installed.
    virtual TAObject *duplicate();
    static void setDuplicator(Duplicator duplicator);

    QByteArray properties() const;
    TAHistory *altHistory() const;
    void setAltHistory(TAHistory *history);

private:
    // The parsed dictionary, valid while `properties` still holds the bytes it came from: a
    // change made behind our back (undo, rollback, a copy) is noticed on the next read.
    mutable std::optional<QVariantMap> m_propertyList;
    mutable QByteArray m_propertySource;
};
