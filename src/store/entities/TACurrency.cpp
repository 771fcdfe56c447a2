#include "store/entities/TACurrency.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAClient.h"
#include "store/entities/TAKeys.h"

QString TACurrency::code() const {
    return stringForKey(TAKey::code);
}

void TACurrency::setCode(const QString &value) {
    EntityValues::setString(this, TAKey::code, value);
}

QString TACurrency::title() const {
    return stringForKey(TAKey::title);
}

void TACurrency::setTitle(const QString &value) {
    EntityValues::setString(this, TAKey::title, value);
}

Decimal TACurrency::rate() const {
    return decimalForKey(TAKey::rate);
}

void TACurrency::setRate(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::rate, value);
}

bool TACurrency::isDefault() const {
    return boolForKey(TAKey::isDefault);
}

void TACurrency::setIsDefault(bool value) {
    EntityValues::setBool(this, TAKey::isDefault, value);
}

bool TACurrency::automaticallyDownload() const {
    return boolForKey(TAKey::automaticallyDownload);
}

void TACurrency::setAutomaticallyDownload(bool value) {
    EntityValues::setBool(this, TAKey::automaticallyDownload, value);
}

QList<TAClient *> TACurrency::clientsRelationships() const {
    return objectsForKeyAs<TAClient>(TAKey::clients);
}

void TACurrency::addClientRelationship(TAClient *value) {
    if (value)
        addObjectForKey(value, TAKey::clients);
}

void TACurrency::removeClientRelationship(TAClient *value) {
    if (value)
        removeObjectForKey(value, TAKey::clients);
}
