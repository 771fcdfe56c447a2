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
