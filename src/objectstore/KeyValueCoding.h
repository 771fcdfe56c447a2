#pragma once

#include <QString>
#include <QVariant>

// Reading values by key and key path. Persistent objects implement it; predicates and sort
// descriptors see objects only through it, so they can be tested on plain test doubles.
//
// Object values travel in a QVariant as a pointer to the object's concrete base type
// (ManagedObject* for persistent objects). A variant holding a null pointer counts as null.
class KeyValueCoding {
public:
    virtual ~KeyValueCoding() = default;

    // The value of one key: an attribute, a relationship or a computed property. An unknown
    // key answers an invalid QVariant.
    virtual QVariant valueForKey(const QString &key) const = 0;

    // The stored value of a key without copying it, where the object keeps one (a plain
    // attribute); null otherwise. Lets predicates scan many objects without touching the
    // reference counts of their texts.
    virtual const QVariant *storedValueForKey(const QString &) const { return nullptr; }

    // The object itself as a QVariant, as it would appear as another object's value. Needed
    // for "SELF" in predicates and for comparing objects by identity.
    virtual QVariant selfVariant() const = 0;

    // Follows a dotted path ("client.displayName", "SELF.invoice"). A null link anywhere
    // answers an invalid QVariant.
    virtual QVariant valueForKeyPath(const QString &keyPath) const;

    // The KeyValueCoding object a variant holds, or nullptr (also for a null pointer).
    static const KeyValueCoding *fromVariant(const QVariant &value);

    // Lets other object kinds (test doubles) take part in key paths: a function that
    // recognises their variants. ManagedObject registers itself.
    using Unwrapper = const KeyValueCoding *(*)(const QVariant &value);
    static void registerUnwrapper(Unwrapper unwrapper);
};
