#pragma once

#include "store/entities/TAItem.h"

#include <QStringList>

// An item billed by quantity.
class TAMaterial : public TAItem {
public:
    Decimal quantity() const;
    void setQuantity(const Decimal &value);

    QStringList relationshipsToLink() const override;
};
