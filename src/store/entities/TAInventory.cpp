#include "store/entities/TAInventory.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TATax.h"

QString TAInventory::name() const {
    return stringForKey(TAKey::name);
}

void TAInventory::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

QString TAInventory::sku() const {
    return stringForKey(TAKey::sku);
}

void TAInventory::setSku(const QString &value) {
    EntityValues::setString(this, TAKey::sku, value);
}

Decimal TAInventory::price() const {
    return decimalForKey(TAKey::price);
}

void TAInventory::setPrice(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::price, value);
}

Decimal TAInventory::discount() const {
    return decimalForKey(TAKey::discount);
}

void TAInventory::setDiscount(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::discount, value);
}

Decimal TAInventory::customTax() const {
    return decimalForKey(TAKey::customTax);
}

void TAInventory::setCustomTax(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::customTax, value);
}

TATax *TAInventory::tax() const {
    return objectForKeyAs<TATax>(TAKey::tax);
}

void TAInventory::setTax(TATax *value) {
    setObjectForKey(value, TAKey::tax);
}

bool TAInventory::isMaterial() const {
    return boolForKey(TAKey::isMaterial);
}

void TAInventory::setIsMaterial(bool value) {
    EntityValues::setBool(this, TAKey::isMaterial, value);
}

qint64 TAInventory::sortIndex() const {
    return integerForKey(TAKey::sortIndex);
}

void TAInventory::setSortIndex(qint64 value) {
    EntityValues::setInteger(this, TAKey::sortIndex, value);
}

QStringList TAInventory::relationshipsToLink() const {
    return {TAKey::tax};
}
