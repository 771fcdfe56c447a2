#include "store/entities/TAInventory.h"

#include "store/TAContextDatabase.h"
#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TAMaterial.h"
#include "store/entities/TATax.h"
#include "store/entities/TATimer.h"

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

Decimal TAInventory::discountInCash() const {
    if (isNullForKey(TAKey::price) || isNullForKey(TAKey::discount))
        return Decimal();
    return price() * discount();
}

Decimal TAInventory::priceWithDiscount() const {
    const Decimal listPrice = price();
    return (listPrice.isNaN() ? Decimal() : listPrice) - discountInCash();
}

Decimal TAInventory::taxValue() const {
    if (const TATax *linked = tax())
        return linked->value();
    return customTax();
}

TAItem *TAInventory::createItem() const {
    ManagedObjectContext *context = managedObjectContext();
    TAItem *item = nullptr;
    if (isMaterial()) {
        TAMaterial *material = TAContextDatabase::createMaterialInContext(context);
        if (material)
            material->setQuantity(Decimal(1));
        item = material;
    } else {
        TATimer *timer = TAContextDatabase::createTimerInContext(context);
        if (timer)
            timer->setSeconds(0);
        item = timer;
    }
    if (!item)
        return nullptr;
    item->setName(name());
    item->setPrice(price());
    item->setDiscount(discount());
    item->setSku(sku());
    const TATax *linked = tax();
    item->setTax(linked ? linked->value() : customTax());
    item->setTaxName(linked ? linked->name() : QStringLiteral(""));
    return item;
}

QVariant TAInventory::computedValueForKey(const QString &key) const {
    if (key == QLatin1String("discountInCash"))
        return discountInCash().toVariant();
    if (key == QLatin1String("priceWithDiscount"))
        return priceWithDiscount().toVariant();
    if (key == QLatin1String("taxValue"))
        return taxValue().toVariant();
    return TAObject::computedValueForKey(key);
}
