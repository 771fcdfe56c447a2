#pragma once

#include "objectstore/KeyPath.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantMap>

class KeyValueCoding;

// What a predicate is evaluated against: an object, or a plain value standing for SELF.
struct PredicateContext {
    const KeyValueCoding *object = nullptr;
    const QVariant *self = nullptr;
};

// One side of a comparison: a constant, a key path, a $variable or a {list}.
class PredicateExpression {
public:
    enum class Kind { Constant, KeyPath, Variable, Aggregate };

    PredicateExpression() = default; // the constant NULL
    static PredicateExpression constant(QVariant value);
    static PredicateExpression keyPath(KeyPath path);
    static PredicateExpression variable(QString name);
    // A list whose members are all constants becomes a constant list.
    static PredicateExpression aggregate(QList<PredicateExpression> items);

    Kind kind() const { return m_kind; }
    bool isConstant() const { return m_kind == Kind::Constant; }
    const QVariant &constantValue() const { return m_constant; }
    // The key of a one-key path; empty for anything else.
    QString singleKey() const {
        return m_kind == Kind::KeyPath && m_keyPath.keys().size() == 1 ? m_keyPath.keys().first()
                                                                       : QString();
    }

    QVariant value(const PredicateContext &context) const;
    // The value in place where the object stores it (a one-key path); else null.
    const QVariant *storedValue(const PredicateContext &context) const {
        return m_kind == Kind::KeyPath && context.object ? m_keyPath.storedValueOf(*context.object)
                                                         : nullptr;
    }
    // Variables found in the map become constants; the others stay.
    PredicateExpression substituted(const QVariantMap &variables) const;
    QString format() const;

    static QString formatConstant(const QVariant &value);

private:
    Kind m_kind = Kind::Constant;
    QVariant m_constant;
    KeyPath m_keyPath;
    QString m_variable;
    QList<PredicateExpression> m_items;
};
