#include "objectstore/Predicate.h"

#include "objectstore/PredicateNode.h"
#include "objectstore/PredicateParser.h"

Predicate::Predicate()
    : m_root(std::make_shared<ConstantPredicate>(true)) {}

Predicate::Predicate(std::shared_ptr<const PredicateNode> root)
    : m_root(std::move(root)) {}

Result<Predicate> Predicate::parse(const QString &format, const QVariantList &arguments) {
    PredicateParser parser(format, arguments);
    Result<PredicateNodePtr> root = parser.parse();
    if (!root)
        return root.error();
    return Predicate(std::move(root).value());
}

Predicate Predicate::truePredicate() {
    return Predicate();
}

Predicate Predicate::falsePredicate() {
    return Predicate(std::make_shared<ConstantPredicate>(false));
}

Predicate Predicate::compound(int type, const QList<Predicate> &predicates) {
    QList<PredicateNodePtr> children;
    for (const Predicate &predicate : predicates)
        children.append(predicate.m_root);
    return Predicate(
        std::make_shared<CompoundPredicate>(CompoundPredicate::Type(type), std::move(children)));
}

Predicate Predicate::andPredicate(const QList<Predicate> &predicates) {
    if (predicates.isEmpty())
        return truePredicate();
    if (predicates.size() == 1)
        return predicates.first();
    return compound(int(CompoundPredicate::Type::And), predicates);
}

Predicate Predicate::orPredicate(const QList<Predicate> &predicates) {
    if (predicates.isEmpty())
        return falsePredicate();
    if (predicates.size() == 1)
        return predicates.first();
    return compound(int(CompoundPredicate::Type::Or), predicates);
}

Predicate Predicate::notPredicate(const Predicate &predicate) {
    return compound(int(CompoundPredicate::Type::Not), {predicate});
}

Predicate Predicate::withSubstitutionVariables(const QVariantMap &variables) const {
    return Predicate(m_root->substituted(variables));
}

bool Predicate::evaluate(const KeyValueCoding &object) const {
    return m_root->evaluate(PredicateContext{&object, nullptr});
}

bool Predicate::evaluateValue(const QVariant &value) const {
    return m_root->evaluate(PredicateContext{nullptr, &value});
}

QStringList Predicate::keysRequiredNull() const {
    QStringList keys;
    m_root->collectKeysRequiredNull(keys);
    keys.removeDuplicates();
    return keys;
}

QString Predicate::predicateFormat() const {
    return m_root->format();
}

QString Predicate::formattedPredicateString(const QString &text) {
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'"', QStringLiteral("\\\""));
    escaped.replace(u'\'', QStringLiteral("\\'"));
    return escaped;
}
