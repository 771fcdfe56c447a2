#pragma once

#include "objectstore/KeyValueCoding.h"

#include <QHash>
#include <QMetaType>
#include <QString>
#include <QVariant>

// A stand-in for persistent objects: a bag of values reachable by key, travelling in
// variants as a KeyValueTestObject pointer.
class KeyValueTestObject : public KeyValueCoding {
public:
    KeyValueTestObject() { registerOnce(); }

    KeyValueTestObject &set(const QString &key, const QVariant &value) {
        m_values.insert(key, value);
        return *this;
    }
    QVariant valueForKey(const QString &key) const override { return m_values.value(key); }
    QVariant selfVariant() const override { return asVariant(this); }

    static QVariant asVariant(const KeyValueTestObject *object) {
        return QVariant::fromValue(const_cast<KeyValueTestObject *>(object));
    }
    static QVariant nullObject() { return asVariant(nullptr); }

private:
    static const KeyValueCoding *unwrap(const QVariant &value);
    static void registerOnce() {
        static const bool registered = (KeyValueCoding::registerUnwrapper(&unwrap), true);
        Q_UNUSED(registered);
    }

    QHash<QString, QVariant> m_values;
};

Q_DECLARE_METATYPE(KeyValueTestObject *)

inline const KeyValueCoding *KeyValueTestObject::unwrap(const QVariant &value) {
    if (value.metaType() != QMetaType::fromType<KeyValueTestObject *>())
        return nullptr;
    return value.value<KeyValueTestObject *>();
}
