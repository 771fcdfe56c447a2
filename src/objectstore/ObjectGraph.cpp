#include "objectstore/ObjectGraph.h"

#include "foundation/money/Decimal.h"
#include "objectstore/ManagedObject.h"

#include <QDateTime>

QVariant ObjectGraph::normalize(const QVariant &value, AttributeType type) {
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case AttributeType::String:
        return value.metaType() == QMetaType::fromType<QString>() ? value
                                                                  : QVariant(value.toString());
    case AttributeType::Integer:
        if (value.metaType() == QMetaType::fromType<Decimal>())
            return QVariant(qint64(value.value<Decimal>().toLongLong()));
        return QVariant(value.toLongLong());
    case AttributeType::Boolean:
        return QVariant(value.toBool());
    case AttributeType::Decimal:
        if (value.metaType() == QMetaType::fromType<Decimal>())
            return value;
        return QVariant::fromValue(Decimal::fromVariant(value));
    case AttributeType::Date: {
        const QDateTime date = value.toDateTime();
        if (!date.isValid())
            return {};
        // Qt::UTC keeps the date inline; a QTimeZone-based one allocates per value.
        return QVariant(QDateTime::fromMSecsSinceEpoch(date.toMSecsSinceEpoch(), Qt::UTC));
    }
    case AttributeType::Binary:
        return QVariant(value.toByteArray());
    case AttributeType::Float:
        if (value.metaType() == QMetaType::fromType<Decimal>())
            return QVariant(value.value<Decimal>().toDouble());
        return QVariant(value.toDouble());
    }
    return {};
}

bool ObjectGraph::sameValue(const QVariant &a, const QVariant &b) {
    if (a.isValid() != b.isValid())
        return false;
    if (!a.isValid())
        return true;
    const QMetaType type = typeOf(a);
    if (type != typeOf(b))
        return false;
    // The common stored types compared directly: the generic path dispatches through the
    // meta type and costs more than the rest of a change.
    if (type == QMetaType::fromType<Decimal>())
        return *static_cast<const Decimal *>(a.constData()) ==
               *static_cast<const Decimal *>(b.constData());
    if (type == QMetaType::fromType<QString>())
        return *static_cast<const QString *>(a.constData()) ==
               *static_cast<const QString *>(b.constData());
    if (type == QMetaType::fromType<qint64>())
        return *static_cast<const qint64 *>(a.constData()) ==
               *static_cast<const qint64 *>(b.constData());
    return a == b;
}
