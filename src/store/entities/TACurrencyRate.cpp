#include "store/entities/TACurrencyRate.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TAKeys.h"

TACurrency *TACurrencyRate::currFrom() const {
    return objectForKeyAs<TACurrency>(TAKey::currFrom);
}

void TACurrencyRate::setCurrFrom(TACurrency *value) {
    setObjectForKey(value, TAKey::currFrom);
}

TACurrency *TACurrencyRate::currTo() const {
    return objectForKeyAs<TACurrency>(TAKey::currTo);
}

void TACurrencyRate::setCurrTo(TACurrency *value) {
    setObjectForKey(value, TAKey::currTo);
}

Decimal TACurrencyRate::oneFromInTo() const {
    return decimalForKey(TAKey::oneFromInTo);
}

void TACurrencyRate::setOneFromInTo(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::oneFromInTo, value);
}

Decimal TACurrencyRate::inFromOneTo() const {
    return decimalForKey(TAKey::inFromOneTo);
}

void TACurrencyRate::setInFromOneTo(const Decimal &value) {
    EntityValues::setDecimal(this, TAKey::inFromOneTo, value);
}
