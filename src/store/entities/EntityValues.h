#pragma once

#include "foundation/money/Decimal.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

class ManagedObject;

// Typed writes shared by the entity classes. The empty value of each type (a null text, an
// invalid date, a not-a-number decimal, a null byte array) is stored as null, so that a
// value read through the typed getters of ManagedObject and written back keeps its nullness.
class EntityValues {
public:
    static void setString(ManagedObject *object, const QString &key, const QString &value);
    static void setInteger(ManagedObject *object, const QString &key, qint64 value);
    static void setBool(ManagedObject *object, const QString &key, bool value);
    static void setDecimal(ManagedObject *object, const QString &key, const Decimal &value);
    static void setDate(ManagedObject *object, const QString &key, const QDateTime &value);
    static void setData(ManagedObject *object, const QString &key, const QByteArray &value);
    static void setDouble(ManagedObject *object, const QString &key, double value);

private:
    EntityValues() = delete;
};
