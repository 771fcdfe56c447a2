#pragma once

#include "objectstore/PredicateNode.h"
#include "objectstore/PredicateValue.h"

#include <QRegularExpression>

// "left OP right", with optional [c]/[d] string modifiers. A constant right side is
// prepared once (diacritics folded, patterns compiled), so evaluation over many objects only
// pays for reading and folding the left side.
class ComparisonPredicate : public PredicateNode {
public:
    enum class Operator {
        Equal,
        NotEqual,
        Less,
        LessOrEqual,
        Greater,
        GreaterOrEqual,
        Between,
        In,
        Contains,
        BeginsWith,
        EndsWith,
        Like,
        Matches,
    };

    ComparisonPredicate(PredicateExpression left, Operator op,
                        PredicateValue::StringOptions options, PredicateExpression right);

    bool evaluate(const PredicateContext &context) const override;
    QString format() const override;
    PredicateNodePtr substituted(const QVariantMap &variables) const override;
    void collectKeysRequiredNull(QStringList &keys) const override;

    static QString operatorText(Operator op);

private:
    bool test(const QVariant &left, const QVariant &right, bool prepared) const;
    bool testOrder(const QVariant &left, const QVariant &right, bool prepared) const;
    bool testBetween(const QVariant &left, const QVariant &right) const;
    bool testIn(const QVariant &left, const QVariant &right, bool prepared) const;
    bool testContains(const QVariant &left, const QVariant &right, bool prepared) const;
    bool testText(const QString &left, const QString &right, bool prepared) const;
    QRegularExpression patternFor(const QString &foldedRight) const;
    QString folded(const QString &text) const;
    QStringView foldedLeft(const QString &text) const;

    PredicateExpression m_left;
    Operator m_op;
    PredicateValue::StringOptions m_options;
    PredicateValue::StringOptions m_foldOptions; // MATCHES leaves case to the pattern
    PredicateExpression m_right;
    QString m_rightFolded;        // when the right side is constant text
    QRegularExpression m_pattern; // LIKE and MATCHES with constant text
};
