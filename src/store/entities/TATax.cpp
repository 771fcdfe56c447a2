#include "store/entities/TATax.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAKeys.h"

QString TATax::name() const {
    return stringForKey(TAKey::name);
}

void TATax::setName(const QString &value) {
    EntityValues::setString(this, TAKey::name, value);
}

Decimal TATax::value() const {
    return decimalForKey(TAKey::value);
}

void TATax::setValue(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::value, value);
}
