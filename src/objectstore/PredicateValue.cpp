#include "objectstore/PredicateValue.h"

#include "objectstore/KeyValueCoding.h"
#include "objectstore/ObjectGraph.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QStringList>

#include <cmath>

namespace PredicateValue {

namespace {

int decimalTypeId() {
    static const int id = QMetaType::fromType<Decimal>().id();
    return id;
}

bool isNullPointer(const QVariant &value) {
    return *static_cast<void *const *>(value.constData()) == nullptr;
}

bool isPointerType(const QMetaType &type) {
    return type.flags() & (QMetaType::IsPointer | QMetaType::PointerToQObject);
}

template <typename T> int threeWay(const T &a, const T &b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

std::optional<int> compareSameKind(Kind kind, const QVariant &a, const QVariant &b,
                                   StringOptions options) {
    switch (kind) {
    case Kind::Number: {
        const bool aDouble = a.typeId() == QMetaType::Double || a.typeId() == QMetaType::Float;
        const bool bDouble = b.typeId() == QMetaType::Double || b.typeId() == QMetaType::Float;
        if ((aDouble && std::isnan(a.toDouble())) || (bDouble && std::isnan(b.toDouble())))
            return std::nullopt;
        return compareNumbers(toNumber(a), toNumber(b));
    }
    case Kind::String: {
        return compareFoldedText(TextFolding::fold(a.toString(), options),
                                 TextFolding::fold(b.toString(), options));
    }
    case Kind::Date:
        return threeWay(toDateTime(a), toDateTime(b));
    case Kind::Bytes:
        return threeWay(a.toByteArray(), b.toByteArray());
    default:
        return std::nullopt;
    }
}

} // namespace

Kind kindOf(const QVariant &value) {
    if (!value.isValid())
        return Kind::Null;
    switch (value.typeId()) {
    case QMetaType::QString:
        return static_cast<const QString *>(value.constData())->isNull() ? Kind::Null
                                                                         : Kind::String;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Double:
    case QMetaType::Float:
        return Kind::Number;
    case QMetaType::QDateTime:
        return static_cast<const QDateTime *>(value.constData())->isValid() ? Kind::Date
                                                                            : Kind::Null;
    case QMetaType::QDate:
        return value.toDate().isValid() ? Kind::Date : Kind::Null;
    case QMetaType::QByteArray:
        return static_cast<const QByteArray *>(value.constData())->isNull() ? Kind::Null
                                                                            : Kind::Bytes;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return Kind::List;
    default:
        break;
    }
    if (value.typeId() == decimalTypeId())
        return Kind::Number;
    if (isPointerType(value.metaType()))
        return isNullPointer(value) ? Kind::Null : Kind::Object;
    return KeyValueCoding::fromVariant(value) ? Kind::Object : Kind::Other;
}

Number toNumber(const QVariant &value) {
    Number number;
    switch (value.typeId()) {
    case QMetaType::Bool:
        number.integer = value.toBool() ? 1 : 0;
        return number;
    case QMetaType::Double:
    case QMetaType::Float:
        number.isInteger = false;
        number.isDouble = true;
        number.real = value.toDouble();
        number.decimal = Decimal::fromDouble(number.real);
        return number;
    case QMetaType::ULongLong:
    case QMetaType::ULong:
        if (value.toULongLong() > quint64(std::numeric_limits<qint64>::max())) {
            number.isInteger = false;
            number.decimal = Decimal::fromString(value.toString());
            return number;
        }
        number.integer = qint64(value.toULongLong());
        return number;
    default:
        break;
    }
    if (value.typeId() == decimalTypeId()) {
        number.isInteger = false;
        number.decimal = value.value<Decimal>();
        return number;
    }
    number.integer = value.toLongLong();
    return number;
}

int compareNumbers(const Number &a, const Number &b) {
    if (a.isInteger && b.isInteger)
        return threeWay(a.integer, b.integer);
    if (a.isDouble && b.isDouble)
        return threeWay(a.real, b.real);
    const Decimal left = a.isInteger ? Decimal(static_cast<long long>(a.integer)) : a.decimal;
    const Decimal right = b.isInteger ? Decimal(static_cast<long long>(b.integer)) : b.decimal;
    const std::strong_ordering order = left <=> right;
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

int compareFoldedText(QStringView a, QStringView b) {
    const int result = a.compare(b);
    return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

const void *objectIdentity(const QVariant &value) {
    if (const KeyValueCoding *object = KeyValueCoding::fromVariant(value))
        return object;
    if (value.isValid() && isPointerType(value.metaType()))
        return *static_cast<void *const *>(value.constData());
    return nullptr;
}

bool isEqual(const QVariant &a, const QVariant &b, StringOptions options) {
    const Kind kind = kindOf(a);
    if (kind != kindOf(b))
        return false;
    switch (kind) {
    case Kind::Null:
        return true;
    case Kind::Object:
        return objectIdentity(a) == objectIdentity(b);
    case Kind::List: {
        const QVariantList left = *toList(a);
        const QVariantList right = *toList(b);
        if (left.size() != right.size())
            return false;
        for (qsizetype i = 0; i < left.size(); ++i) {
            if (!isEqual(left.at(i), right.at(i), options))
                return false;
        }
        return true;
    }
    case Kind::Other:
        return a == b;
    default:
        return compareSameKind(kind, a, b, options) == 0;
    }
}

std::optional<int> compare(const QVariant &a, const QVariant &b, StringOptions options) {
    const Kind kind = kindOf(a);
    if (kind != kindOf(b))
        return std::nullopt;
    return compareSameKind(kind, a, b, options);
}

std::optional<QVariantList> toList(const QVariant &value) {
    // Asked of every value a CONTAINS reads: the type is taken inline.
    const QMetaType type = ObjectGraph::typeOf(value);
    if (type == QMetaType::fromType<QVariantList>())
        return value.toList();
    if (type == QMetaType::fromType<QStringList>()) {
        QVariantList list;
        for (const QString &text : value.toStringList())
            list.append(text);
        return list;
    }
    return std::nullopt;
}

QDateTime toDateTime(const QVariant &value) {
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().startOfDay();
    return value.toDateTime();
}

} // namespace PredicateValue
