#include "objectstore/PredicateExpression.h"

#include "objectstore/KeyValueCoding.h"
#include "objectstore/PredicateParser.h"
#include "objectstore/PredicateValue.h"

#include <QDateTime>
#include <QStringList>

#include <cmath>

PredicateExpression PredicateExpression::constant(QVariant value) {
    PredicateExpression expression;
    expression.m_constant = std::move(value);
    return expression;
}

PredicateExpression PredicateExpression::keyPath(KeyPath path) {
    PredicateExpression expression;
    expression.m_kind = Kind::KeyPath;
    expression.m_keyPath = std::move(path);
    return expression;
}

PredicateExpression PredicateExpression::variable(QString name) {
    PredicateExpression expression;
    expression.m_kind = Kind::Variable;
    expression.m_variable = std::move(name);
    return expression;
}

PredicateExpression PredicateExpression::aggregate(QList<PredicateExpression> items) {
    bool allConstant = true;
    for (const PredicateExpression &item : items)
        allConstant = allConstant && item.isConstant();
    if (allConstant) {
        QVariantList values;
        for (const PredicateExpression &item : items)
            values.append(item.m_constant);
        return constant(values);
    }
    PredicateExpression expression;
    expression.m_kind = Kind::Aggregate;
    expression.m_items = std::move(items);
    return expression;
}

QVariant PredicateExpression::value(const PredicateContext &context) const {
    switch (m_kind) {
    case Kind::Constant:
        return m_constant;
    case Kind::KeyPath:
        if (context.object)
            return m_keyPath.valueOf(*context.object);
        return context.self ? m_keyPath.valueOf(*context.self) : QVariant();
    case Kind::Variable:
        return {}; // never substituted: NULL
    case Kind::Aggregate: {
        QVariantList values;
        values.reserve(m_items.size());
        for (const PredicateExpression &item : m_items)
            values.append(item.value(context));
        return values;
    }
    }
    return {};
}

PredicateExpression PredicateExpression::substituted(const QVariantMap &variables) const {
    if (m_kind == Kind::Variable) {
        const auto found = variables.constFind(m_variable);
        return found == variables.cend() ? *this : constant(found.value());
    }
    if (m_kind != Kind::Aggregate)
        return *this;
    QList<PredicateExpression> items;
    for (const PredicateExpression &item : m_items)
        items.append(item.substituted(variables));
    return aggregate(std::move(items));
}

QString PredicateExpression::format() const {
    switch (m_kind) {
    case Kind::Constant:
        return formatConstant(m_constant);
    case Kind::KeyPath:
        // A first key spelled like a keyword keeps its SELF prefix to stay a key.
        if (!m_keyPath.isSelf() && PredicateParser::isKeywordText(m_keyPath.keys().first()))
            return QLatin1String("SELF.") + m_keyPath.toString();
        return m_keyPath.toString();
    case Kind::Variable:
        return QLatin1Char('$') + m_variable;
    case Kind::Aggregate: {
        QStringList parts;
        for (const PredicateExpression &item : m_items)
            parts.append(item.format());
        return QLatin1Char('{') + parts.join(QLatin1String(", ")) + QLatin1Char('}');
    }
    }
    return {};
}

namespace {

QString quoted(const QString &text) {
    QString result = QStringLiteral("\"");
    for (QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            result.append(QLatin1Char('\\'));
        result.append(c);
    }
    return result + QLatin1Char('"');
}

QString formatNumber(const QVariant &value) {
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float) {
        const double number = value.toDouble();
        if (std::isfinite(number))
            return Decimal::fromDouble(number).toString();
        return QString::number(number);
    }
    const PredicateValue::Number number = PredicateValue::toNumber(value);
    return number.isInteger ? QString::number(number.integer) : number.decimal.toString();
}

} // namespace

QString PredicateExpression::formatConstant(const QVariant &value) {
    using PredicateValue::Kind;
    switch (PredicateValue::kindOf(value)) {
    case Kind::Null:
        return QStringLiteral("NULL");
    case Kind::Number:
        return formatNumber(value);
    case Kind::String:
        return quoted(value.toString());
    case Kind::Date:
        return QStringLiteral("DATE(\"%1\")")
            .arg(PredicateValue::toDateTime(value).toUTC().toString(Qt::ISODateWithMs));
    case Kind::List: {
        QStringList parts;
        const QVariantList items = *PredicateValue::toList(value);
        for (const QVariant &item : items)
            parts.append(formatConstant(item));
        return QLatin1Char('{') + parts.join(QLatin1String(", ")) + QLatin1Char('}');
    }
    case Kind::Object:
        // Objects have no literal form; this marks where one stood.
        return QStringLiteral("<object 0x%1>")
            .arg(quintptr(PredicateValue::objectIdentity(value)), 0, 16);
    case Kind::Bytes:
        return QStringLiteral("<bytes %1>").arg(QString::fromLatin1(value.toByteArray().toHex()));
    case Kind::Other:
        break;
    }
    return QStringLiteral("<%1>").arg(QString::fromLatin1(value.typeName()));
}
