#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

class KeyValueCoding;

// A dotted key path split once, so that walking it per object costs only the lookups.
// A leading "SELF" names the object itself and is dropped: "SELF.invoice" walks "invoice",
// and "SELF" alone answers the object.
class KeyPath {
public:
    KeyPath() = default; // SELF
    explicit KeyPath(const QString &text);

    bool isSelf() const { return m_keys.isEmpty(); }
    const QStringList &keys() const { return m_keys; }
    QString toString() const; // canonical text, "SELF" for the object itself

    // The value at the end of the path; an invalid QVariant where a link is null or a value
    // on the way is not an object.
    QVariant valueOf(const KeyValueCoding &object) const;
    // The value without a copy when the path is one key that the object stores; else null.
    const QVariant *storedValueOf(const KeyValueCoding &object) const;
    // The same starting from a value: SELF is the value itself, further keys need an object.
    QVariant valueOf(const QVariant &self) const;

    bool operator==(const KeyPath &other) const { return m_keys == other.m_keys; }

    static bool isSelfKeyword(QStringView word);

private:
    QVariant walk(const KeyValueCoding &object, qsizetype from) const;

    QStringList m_keys;
};
