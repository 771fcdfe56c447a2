#include "objectstore/KeyPath.h"

#include "objectstore/KeyValueCoding.h"

KeyPath::KeyPath(const QString &text) {
    m_keys = text.split(QLatin1Char('.'));
    if (!m_keys.isEmpty() && isSelfKeyword(m_keys.first()))
        m_keys.removeFirst();
}

bool KeyPath::isSelfKeyword(QStringView word) {
    return word.compare(QLatin1String("SELF"), Qt::CaseInsensitive) == 0;
}

QString KeyPath::toString() const {
    return m_keys.isEmpty() ? QStringLiteral("SELF") : m_keys.join(QLatin1Char('.'));
}

QVariant KeyPath::valueOf(const KeyValueCoding &object) const {
    if (m_keys.isEmpty())
        return object.selfVariant();
    return walk(object, 0);
}

QVariant KeyPath::valueOf(const QVariant &self) const {
    if (m_keys.isEmpty())
        return self;
    const KeyValueCoding *object = KeyValueCoding::fromVariant(self);
    return object ? walk(*object, 0) : QVariant();
}

const QVariant *KeyPath::storedValueOf(const KeyValueCoding &object) const {
    return m_keys.size() == 1 ? object.storedValueForKey(m_keys.first()) : nullptr;
}

QVariant KeyPath::walk(const KeyValueCoding &object, qsizetype from) const {
    QVariant value = object.valueForKey(m_keys.at(from));
    for (qsizetype i = from + 1; i < m_keys.size(); ++i) {
        const KeyValueCoding *next = KeyValueCoding::fromVariant(value);
        if (!next)
            return {};
        value = next->valueForKey(m_keys.at(i));
    }
    return value;
}
