#pragma once

#include "store/entities/TAObject.h"

class TACurrency;

// The rate between an ordered pair of currencies; conversions multiply by oneFromInTo.
class TACurrencyRate : public TAObject {
public:
    TACurrency *currFrom() const;
    void setCurrFrom(TACurrency *value);
    TACurrency *currTo() const;
    void setCurrTo(TACurrency *value);
    Decimal oneFromInTo() const;
    void setOneFromInTo(const Decimal &value);
    Decimal inFromOneTo() const;
    void setInFromOneTo(const Decimal &value);
};
