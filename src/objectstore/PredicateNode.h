#pragma once

#include "objectstore/PredicateExpression.h"

#include <QList>
#include <QString>
#include <QVariantMap>

#include <memory>

// A node of a parsed predicate. Nodes are immutable once built, so predicates share them
// freely between copies and threads.
class PredicateNode {
public:
    virtual ~PredicateNode() = default;
    virtual bool evaluate(const PredicateContext &context) const = 0;
    virtual QString format() const = 0;
    virtual std::shared_ptr<const PredicateNode>
    substituted(const QVariantMap &variables) const = 0;
    virtual bool isCompound() const { return false; }
    // Appends the one-key paths that must be NULL wherever the node holds.
    virtual void collectKeysRequiredNull(QStringList &keys) const { (void)keys; }
};

using PredicateNodePtr = std::shared_ptr<const PredicateNode>;

// TRUEPREDICATE and FALSEPREDICATE.
class ConstantPredicate : public PredicateNode {
public:
    explicit ConstantPredicate(bool value)
        : m_value(value) {}
    bool evaluate(const PredicateContext &) const override { return m_value; }
    QString format() const override;
    PredicateNodePtr substituted(const QVariantMap &variables) const override;

private:
    bool m_value;
};

// AND, OR (two or more children) and NOT (one child).
class CompoundPredicate : public PredicateNode {
public:
    enum class Type { And, Or, Not };
    CompoundPredicate(Type type, QList<PredicateNodePtr> children);

    bool evaluate(const PredicateContext &context) const override;
    QString format() const override;
    PredicateNodePtr substituted(const QVariantMap &variables) const override;
    bool isCompound() const override { return true; }
    void collectKeysRequiredNull(QStringList &keys) const override;

private:
    Type m_type;
    QList<PredicateNodePtr> m_children;
};
