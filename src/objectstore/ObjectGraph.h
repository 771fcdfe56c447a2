#pragma once

#include "objectstore/EntityDescription.h"

#include <QVariant>

class ManagedObject;

// Small rules about objects and values that the object, the context and the row codec share.
class ObjectGraph {
public:
    // The value in the form the attribute type keeps in memory; invalid for null.
    static QVariant normalize(const QVariant &value, AttributeType type);
    // The object, or null when it is gone (deleted, insertion undone, row missing). Inline,
    // in ManagedObject.h: every link read asks.
    static inline ManagedObject *visible(ManagedObject *object);
    static bool sameValue(const QVariant &a, const QVariant &b);
    // The type of a value without the library call behind QVariant::metaType(): value reads
    // of a long computation ask it for every amount.
    static QMetaType typeOf(const QVariant &value) { return value.data_ptr().type(); }
};
