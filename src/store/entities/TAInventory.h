#pragma once

#include "store/entities/TAObject.h"

#include <QStringList>

class TAItem;
class TATax;

// An entry of the catalogue from which items are made.
class TAInventory : public TAObject {
public:
    QString name() const;
    void setName(const QString &value);
    QString sku() const;
    void setSku(const QString &value);
    Decimal price() const;
    void setPrice(const Decimal &value);
    Decimal discount() const;
    void setDiscount(const Decimal &value);
    Decimal customTax() const;
    void setCustomTax(const Decimal &value);
    TATax *tax() const;
    void setTax(TATax *value);
    bool isMaterial() const;
    void setIsMaterial(bool value);
    qint64 sortIndex() const;
    void setSortIndex(qint64 value);

    // `price` times `discount`; 0 when either is missing.
    virtual Decimal discountInCash() const;
    virtual Decimal priceWithDiscount() const;
    // The linked tax's rate, else the entry's own.
    virtual Decimal taxValue() const;
    // A new item of the entry's kind and values, attached to nothing yet.
    virtual TAItem *createItem() const;

    QStringList relationshipsToLink() const override;

protected:
    QVariant computedValueForKey(const QString &key) const override;
};
