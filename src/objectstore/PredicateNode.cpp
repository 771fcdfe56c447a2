#include "objectstore/PredicateNode.h"

#include <QStringList>

QString ConstantPredicate::format() const {
    return m_value ? QStringLiteral("TRUEPREDICATE") : QStringLiteral("FALSEPREDICATE");
}

PredicateNodePtr ConstantPredicate::substituted(const QVariantMap &) const {
    return std::make_shared<ConstantPredicate>(m_value);
}

CompoundPredicate::CompoundPredicate(Type type, QList<PredicateNodePtr> children)
    : m_type(type)
    , m_children(std::move(children)) {}

bool CompoundPredicate::evaluate(const PredicateContext &context) const {
    switch (m_type) {
    case Type::And:
        for (const PredicateNodePtr &child : m_children) {
            if (!child->evaluate(context))
                return false;
        }
        return true;
    case Type::Or:
        for (const PredicateNodePtr &child : m_children) {
            if (child->evaluate(context))
                return true;
        }
        return false;
    case Type::Not:
        return !m_children.first()->evaluate(context);
    }
    return false;
}

void CompoundPredicate::collectKeysRequiredNull(QStringList &keys) const {
    if (m_type == Type::And)
        for (const PredicateNodePtr &child : m_children)
            child->collectKeysRequiredNull(keys);
}

QString CompoundPredicate::format() const {
    QStringList parts;
    for (const PredicateNodePtr &child : m_children) {
        const QString text = child->format();
        parts.append(child->isCompound() ? QLatin1Char('(') + text + QLatin1Char(')') : text);
    }
    switch (m_type) {
    case Type::And:
        return parts.join(QLatin1String(" AND "));
    case Type::Or:
        return parts.join(QLatin1String(" OR "));
    case Type::Not:
        return QLatin1String("NOT ") + parts.first();
    }
    return {};
}

PredicateNodePtr CompoundPredicate::substituted(const QVariantMap &variables) const {
    QList<PredicateNodePtr> children;
    for (const PredicateNodePtr &child : m_children)
        children.append(child->substituted(variables));
    return std::make_shared<CompoundPredicate>(m_type, std::move(children));
}
