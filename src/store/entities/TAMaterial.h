#pragma once

#include "store/entities/TAItem.h"

#include <QStringList>

// An item billed by quantity.
class TAMaterial : public TAItem {
public:
    Decimal quantity() const;
    void setQuantity(const Decimal &value);

    // `quantity` times `priceWithDiscount`, unrounded.
    Decimal total() const override;
    Decimal totalQuantity() const override;
    // A Timer with the common fields and links; the quantity has no place there.
    TAItem *copyAsTimer() override;
    TAItem *copyAsMaterial() override;

    QStringList relationshipsToLink() const override;

protected:
    bool changesTotal(const QString &key) const override;
};
