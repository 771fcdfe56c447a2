#pragma once

#include "store/entities/TAObject.h"

class TACurrency;
class TAInventory;
class TAInvoice;
class TAProject;

// A line item, on a project, an invoice or both; a Timer or a Material. Its amounts are exact:
// rounding to the currency happens only when the invoice sums them.
class TAItem : public TAObject {
public:
    QString name() const;
    void setName(const QString &value);
    QString sku() const;
    void setSku(const QString &value);
    Decimal price() const;
    void setPrice(const Decimal &value);
    Decimal discount() const;
    void setDiscount(const Decimal &value);
    Decimal tax() const;
    void setTax(const Decimal &value);
    QString taxName() const;
    void setTaxName(const QString &value);
    qint64 sortIndex() const;
    void setSortIndex(qint64 value);
    qint64 invoiceSortIndex() const;
    void setInvoiceSortIndex(qint64 value);
    QDateTime added() const;
    void setAdded(const QDateTime &value);
    QDateTime updateDate() const;
    void setUpdateDate(const QDateTime &value);
    TAInvoice *invoice() const;
    void setInvoice(TAInvoice *value);
    TAProject *project() const;
    void setProject(TAProject *value);

    // `price` times `discount`; 0 without a discount.
    virtual Decimal discountInCash() const;
    virtual Decimal priceWithDiscount() const;
    // What the row comes to, and its quantity (pieces or seconds); 0 here.
    virtual Decimal total() const;
    virtual Decimal totalQuantity() const;
    // 0 for the same rate and the same tax name (both empty counts as same); -1 otherwise.
    virtual int compareTaxes(const TAItem *other) const;
    // The invoice client's currency, else the project's, else the document's default.
    virtual TACurrency *currency() const;
    virtual TAInventory *copyAsInventory() const;
    // The item as the other kind (or a duplicate of the same kind), in the same context.
    virtual TAItem *copyAsTimer();
    virtual TAItem *copyAsMaterial();

    void awakeFromInsert() override;
    void awakeFromSnapshotEvents(SnapshotEvent event) override;
    void didChangeValueForKey(const QString &key) override;

protected:
    // Keys whose change alters the item's total, so the invoice must sum again.
    virtual bool changesTotal(const QString &key) const;
    // The money value of the key, null counting as zero.
    Decimal amountForKey(const QString &key) const;
    QVariant computedValueForKey(const QString &key) const override;
    // Makes the other kind of item and carries over what both kinds have, with the links.
    TAItem *copyAsKind(const QString &entityName) const;
};
