#include "store/entities/TAMaterial.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"

Decimal TAMaterial::quantity() const {
    return decimalForKey(TAKey::quantity);
}

void TAMaterial::setQuantity(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::quantity, value);
}

QStringList TAMaterial::relationshipsToLink() const {
    return {TAKey::invoice, TAKey::project};
}

Decimal TAMaterial::total() const {
    const Decimal count = amountForKey(TAKey::quantity);
    const Decimal unit = priceWithDiscount();
    if (count.isZero() && unit.isZero())
        return Decimal();
    return count * unit;
}

Decimal TAMaterial::totalQuantity() const {
    return amountForKey(TAKey::quantity);
}

TAItem *TAMaterial::copyAsTimer() {
    return copyAsKind(TAEntity::Timer);
}

TAItem *TAMaterial::copyAsMaterial() {
    return dynamic_cast<TAItem *>(duplicate());
}

bool TAMaterial::changesTotal(const QString &key) const {
    return TAItem::changesTotal(key) || key == TAKey::quantity;
}
