#include "store/entities/EntityValues.h"

#include "objectstore/ManagedObject.h"

void EntityValues::setString(ManagedObject *object, const QString &key, const QString &value) {
    object->setValueForKey(value.isNull() ? QVariant() : QVariant(value), key);
}

void EntityValues::setInteger(ManagedObject *object, const QString &key, qint64 value) {
    object->setValueForKey(QVariant(value), key);
}

void EntityValues::setBool(ManagedObject *object, const QString &key, bool value) {
    object->setValueForKey(QVariant(value), key);
}

void EntityValues::setDecimal(ManagedObject *object, const QString &key, const Decimal &value) {
    object->setValueForKey(value.isNaN() ? QVariant() : value.toVariant(), key);
}

void EntityValues::setDate(ManagedObject *object, const QString &key, const QDateTime &value) {
    object->setValueForKey(value.isValid() ? QVariant(value) : QVariant(), key);
}

void EntityValues::setData(ManagedObject *object, const QString &key, const QByteArray &value) {
    object->setValueForKey(value.isNull() ? QVariant() : QVariant(value), key);
}

void EntityValues::setDouble(ManagedObject *object, const QString &key, double value) {
    object->setValueForKey(QVariant(value), key);
}
