#include "objectstore/ComparisonPredicate.h"

#include "objectstore/ObjectGraph.h"

#include <string_view>

using namespace PredicateValue;

namespace {

// The text a variant holds without copying it, or nullptr when it holds no (non-null) text.
const QString *textOf(const QVariant &value) {
    if (ObjectGraph::typeOf(value) != QMetaType::fromType<QString>())
        return nullptr;
    const QString *text = static_cast<const QString *>(value.constData());
    return text->isNull() ? nullptr : text;
}

std::u16string_view units(QStringView text) {
    return std::u16string_view(reinterpret_cast<const char16_t *>(text.data()),
                               size_t(text.size()));
}

QString likeToRegularExpression(const QString &pattern) {
    QString result;
    for (QChar c : pattern) {
        if (c == QLatin1Char('*'))
            result += QLatin1String(".*");
        else if (c == QLatin1Char('?'))
            result += QLatin1Char('.');
        else
            result += QRegularExpression::escape(QString(c));
    }
    return result;
}

bool ordered(ComparisonPredicate::Operator op, int order) {
    using Op = ComparisonPredicate::Operator;
    switch (op) {
    case Op::Less:
        return order < 0;
    case Op::LessOrEqual:
        return order <= 0;
    case Op::Greater:
        return order > 0;
    case Op::GreaterOrEqual:
        return order >= 0;
    default:
        return false;
    }
}

} // namespace

ComparisonPredicate::ComparisonPredicate(PredicateExpression left, Operator op,
                                         StringOptions options, PredicateExpression right)
    : m_left(std::move(left))
    , m_op(op)
    , m_options(options)
    , m_foldOptions(op == Operator::Matches ? options & ~CaseInsensitive : options)
    , m_right(std::move(right)) {
    const QString *text = m_right.isConstant() ? textOf(m_right.constantValue()) : nullptr;
    if (!text)
        return;
    m_rightFolded = folded(*text);
    if (m_op == Operator::Like || m_op == Operator::Matches) {
        m_pattern = patternFor(m_rightFolded);
        m_pattern.optimize();
    }
}

QString ComparisonPredicate::folded(const QString &text) const {
    return TextFolding::fold(text, m_foldOptions);
}

// The left side is folded once per evaluation; a per-thread buffer spares the allocation.
QStringView ComparisonPredicate::foldedLeft(const QString &text) const {
    thread_local QString buffer;
    return TextFolding::fold(text, m_foldOptions, buffer);
}

QRegularExpression ComparisonPredicate::patternFor(const QString &foldedRight) const {
    const QString body =
        m_op == Operator::Like ? likeToRegularExpression(foldedRight) : foldedRight;
    QRegularExpression::PatternOptions patternOptions =
        QRegularExpression::DotMatchesEverythingOption;
    if (m_options & CaseInsensitive)
        patternOptions |= QRegularExpression::CaseInsensitiveOption;
    return QRegularExpression(QRegularExpression::anchoredPattern(body), patternOptions);
}

bool ComparisonPredicate::evaluate(const PredicateContext &context) const {
    QVariant copied;
    const QVariant *stored = m_left.storedValue(context);
    if (!stored)
        copied = m_left.value(context);
    const QVariant &left = stored ? *stored : copied;
    if (m_right.isConstant())
        return test(left, m_right.constantValue(), true);
    return test(left, m_right.value(context), false);
}

bool ComparisonPredicate::test(const QVariant &left, const QVariant &right, bool prepared) const {
    const QString *leftText = textOf(left);
    const QString *rightText = leftText ? textOf(right) : nullptr;
    switch (m_op) {
    case Operator::Equal:
    case Operator::NotEqual: {
        const bool equal =
            rightText ? testText(*leftText, *rightText, prepared) : isEqual(left, right, m_options);
        return equal == (m_op == Operator::Equal);
    }
    case Operator::Less:
    case Operator::LessOrEqual:
    case Operator::Greater:
    case Operator::GreaterOrEqual:
        return testOrder(left, right, prepared);
    case Operator::Between:
        return testBetween(left, right);
    case Operator::In:
        return testIn(left, right, prepared);
    case Operator::Contains:
        return testContains(left, right, prepared);
    case Operator::BeginsWith:
    case Operator::EndsWith:
    case Operator::Like:
    case Operator::Matches:
        return rightText && testText(*leftText, *rightText, prepared);
    }
    return false;
}

bool ComparisonPredicate::testOrder(const QVariant &left, const QVariant &right,
                                    bool prepared) const {
    const QString *leftText = textOf(left);
    const QString *rightText = leftText ? textOf(right) : nullptr;
    if (rightText) {
        const QString rightFolded = prepared ? m_rightFolded : folded(*rightText);
        return ordered(m_op, compareFoldedText(foldedLeft(*leftText), rightFolded));
    }
    const std::optional<int> order = compare(left, right, m_options);
    return order && ordered(m_op, *order);
}

bool ComparisonPredicate::testBetween(const QVariant &left, const QVariant &right) const {
    const std::optional<QVariantList> bounds = toList(right);
    if (!bounds || bounds->size() != 2)
        return false;
    const std::optional<int> lower = compare(left, bounds->at(0), m_options);
    const std::optional<int> upper = compare(left, bounds->at(1), m_options);
    return lower && upper && *lower >= 0 && *upper <= 0;
}

bool ComparisonPredicate::testIn(const QVariant &left, const QVariant &right, bool prepared) const {
    if (const std::optional<QVariantList> members = toList(right)) {
        for (const QVariant &member : *members) {
            if (isEqual(left, member, m_options))
                return true;
        }
        return false;
    }
    // Text in text: a substring test.
    const QString *leftText = textOf(left);
    const QString *rightText = textOf(right);
    if (!leftText || !rightText)
        return false;
    const QString haystack = prepared ? m_rightFolded : folded(*rightText);
    return haystack.contains(foldedLeft(*leftText));
}

bool ComparisonPredicate::testContains(const QVariant &left, const QVariant &right,
                                       bool prepared) const {
    if (const std::optional<QVariantList> members = toList(left)) {
        for (const QVariant &member : *members) {
            if (isEqual(member, right, m_options))
                return true;
        }
        return false;
    }
    const QString *leftText = textOf(left);
    const QString *rightText = textOf(right);
    return leftText && rightText && testText(*leftText, *rightText, prepared);
}

// The text operators on two strings; the right one is already folded when prepared.
bool ComparisonPredicate::testText(const QString &left, const QString &right, bool prepared) const {
    // The prepared text is only read: no copy, whose reference count costs in a long scan.
    QString foldedNow;
    if (!prepared)
        foldedNow = folded(right);
    const QString &rightFolded = prepared ? m_rightFolded : foldedNow;
    const QStringView leftFolded = foldedLeft(left);
    switch (m_op) {
    case Operator::Equal:
    case Operator::NotEqual:
        return leftFolded == rightFolded;
    case Operator::Contains:
        // For the short texts of names and notes a plain scan beats Qt's skip-table search.
        return units(leftFolded).find(units(rightFolded)) != std::u16string_view::npos;
    case Operator::BeginsWith:
        return leftFolded.startsWith(rightFolded);
    case Operator::EndsWith:
        return leftFolded.endsWith(rightFolded);
    case Operator::Like:
    case Operator::Matches: {
        const QRegularExpression pattern = prepared ? m_pattern : patternFor(rightFolded);
        return pattern.isValid() && pattern.match(leftFolded.toString()).hasMatch();
    }
    default:
        return false;
    }
}

QString ComparisonPredicate::operatorText(Operator op) {
    switch (op) {
    case Operator::Equal:
        return QStringLiteral("==");
    case Operator::NotEqual:
        return QStringLiteral("!=");
    case Operator::Less:
        return QStringLiteral("<");
    case Operator::LessOrEqual:
        return QStringLiteral("<=");
    case Operator::Greater:
        return QStringLiteral(">");
    case Operator::GreaterOrEqual:
        return QStringLiteral(">=");
    case Operator::Between:
        return QStringLiteral("BETWEEN");
    case Operator::In:
        return QStringLiteral("IN");
    case Operator::Contains:
        return QStringLiteral("CONTAINS");
    case Operator::BeginsWith:
        return QStringLiteral("BEGINSWITH");
    case Operator::EndsWith:
        return QStringLiteral("ENDSWITH");
    case Operator::Like:
        return QStringLiteral("LIKE");
    case Operator::Matches:
        return QStringLiteral("MATCHES");
    }
    return {};
}

QString ComparisonPredicate::format() const {
    QString modifiers;
    if (m_options & CaseInsensitive)
        modifiers += QLatin1Char('c');
    if (m_options & DiacriticInsensitive)
        modifiers += QLatin1Char('d');
    if (!modifiers.isEmpty())
        modifiers = QLatin1Char('[') + modifiers + QLatin1Char(']');
    return m_left.format() + QLatin1Char(' ') + operatorText(m_op) + modifiers + QLatin1Char(' ') +
           m_right.format();
}

void ComparisonPredicate::collectKeysRequiredNull(QStringList &keys) const {
    if (m_op != Operator::Equal)
        return;
    const auto isNull = [](const PredicateExpression &side) {
        return side.isConstant() &&
               (!side.constantValue().isValid() || side.constantValue().isNull());
    };
    if (isNull(m_right) && !m_left.singleKey().isEmpty())
        keys.append(m_left.singleKey());
    else if (isNull(m_left) && !m_right.singleKey().isEmpty())
        keys.append(m_right.singleKey());
}

PredicateNodePtr ComparisonPredicate::substituted(const QVariantMap &variables) const {
    return std::make_shared<ComparisonPredicate>(m_left.substituted(variables), m_op, m_options,
                                                 m_right.substituted(variables));
}
