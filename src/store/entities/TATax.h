#pragma once

#include "store/entities/TAObject.h"

// A named tax rate, stored as a fraction.
class TATax : public TAObject {
public:
    QString name() const;
    void setName(const QString &value);
    Decimal value() const;
    void setValue(const Decimal &value);
};
