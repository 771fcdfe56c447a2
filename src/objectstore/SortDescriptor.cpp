#include "objectstore/SortDescriptor.h"

#include "objectstore/PredicateValue.h"

#include <QCollator>
#include <QCollatorSortKey>
#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <optional>

using PredicateValue::Kind;

namespace {

// One collator per thread: QCollator is not meant to be shared across threads. The C locale
// would collate by code point and ignore the numeric mode, so it borrows English rules.
QCollator &naturalCollator() {
    thread_local QCollator collator = [] {
        QLocale locale;
        if (locale.language() == QLocale::C)
            locale = QLocale(QLocale::English, QLocale::UnitedStates);
        QCollator c{locale};
        c.setNumericMode(true);
        c.setCaseSensitivity(Qt::CaseInsensitive);
        return c;
    }();
    return collator;
}

// A value read once and prepared for fast comparison.
struct SortKey {
    Kind kind = Kind::Null;
    PredicateValue::Number number;
    QString text; // case-folded for CaseInsensitive
    std::optional<QCollatorSortKey> collated;
    QDateTime date;
    QByteArray bytes;
};

template <typename T> int threeWay(const T &a, const T &b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

SortKey makeKey(const QVariant &value, SortDescriptor::Comparison comparison) {
    SortKey key;
    key.kind = PredicateValue::kindOf(value);
    switch (key.kind) {
    case Kind::Number:
        key.number = PredicateValue::toNumber(value);
        break;
    case Kind::String:
        if (comparison == SortDescriptor::Comparison::LocalizedStandard)
            key.collated = naturalCollator().sortKey(value.toString());
        else if (comparison == SortDescriptor::Comparison::CaseInsensitive)
            key.text = value.toString().toCaseFolded();
        else
            key.text = value.toString();
        break;
    case Kind::Date:
        key.date = PredicateValue::toDateTime(value);
        break;
    case Kind::Bytes:
        key.bytes = value.toByteArray();
        break;
    default:
        break;
    }
    return key;
}

// Kinds rank in the order of the enumeration; objects and others tie.
int compareKeys(const SortKey &a, const SortKey &b) {
    if (a.kind != b.kind)
        return threeWay(int(a.kind), int(b.kind));
    switch (a.kind) {
    case Kind::Number:
        return PredicateValue::compareNumbers(a.number, b.number);
    case Kind::String:
        if (a.collated)
            return qBound(-1, a.collated->compare(*b.collated), 1);
        return qBound(-1, a.text.compare(b.text), 1);
    case Kind::Date:
        return threeWay(a.date, b.date);
    case Kind::Bytes:
        return threeWay(a.bytes, b.bytes);
    default:
        return 0;
    }
}

} // namespace

SortDescriptor::SortDescriptor(QString keyPath, bool ascending, Comparison comparison)
    : m_key(std::move(keyPath))
    , m_keyPath(m_key)
    , m_ascending(ascending)
    , m_comparison(comparison) {}

SortDescriptor SortDescriptor::reversed() const {
    return SortDescriptor(m_key, !m_ascending, m_comparison);
}

int SortDescriptor::compare(const KeyValueCoding &a, const KeyValueCoding &b) const {
    const QVariant left = m_keyPath.valueOf(a);
    const QVariant right = m_keyPath.valueOf(b);
    int result = 0;
    if (m_comparison == Comparison::LocalizedStandard &&
        PredicateValue::kindOf(left) == Kind::String &&
        PredicateValue::kindOf(right) == Kind::String) {
        result = qBound(-1, naturalCollator().compare(left.toString(), right.toString()), 1);
    } else {
        result = compareKeys(makeKey(left, m_comparison), makeKey(right, m_comparison));
    }
    return m_ascending ? result : -result;
}

std::vector<qsizetype>
SortDescriptor::sortedOrder(const std::vector<const KeyValueCoding *> &objects,
                            const QList<SortDescriptor> &descriptors) {
    const size_t count = objects.size();
    const size_t width = size_t(descriptors.size());
    std::vector<SortKey> keys(count * width);
    for (size_t i = 0; i < count; ++i) {
        for (size_t d = 0; d < width; ++d) {
            const SortDescriptor &descriptor = descriptors.at(qsizetype(d));
            const QVariant value =
                objects[i] ? descriptor.m_keyPath.valueOf(*objects[i]) : QVariant();
            keys[i * width + d] = makeKey(value, descriptor.m_comparison);
        }
    }
    std::vector<qsizetype> order(count);
    for (size_t i = 0; i < count; ++i)
        order[i] = qsizetype(i);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
        for (size_t d = 0; d < width; ++d) {
            const int result =
                compareKeys(keys[size_t(a) * width + d], keys[size_t(b) * width + d]);
            if (result != 0)
                return descriptors.at(qsizetype(d)).m_ascending ? result < 0 : result > 0;
        }
        return false;
    });
    return order;
}
