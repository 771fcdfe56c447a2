#pragma once

#include "store/entities/TAObject.h"

class TAInvoice;
class TAProject;

// A line item, on a project, an invoice or both; a Timer or a Material.
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
};
