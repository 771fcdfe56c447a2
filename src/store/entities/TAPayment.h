#pragma once

#include "store/entities/TAObject.h"

class TACurrency;
class TAInvoice;

// A payment towards an invoice, in its own currency, which it keeps as a code only.
class TAPayment : public TAObject {
public:
    Decimal amount() const;
    void setAmount(const Decimal &value);
    QString currencyCode() const;
    void setCurrencyCode(const QString &value);
    Decimal rate() const;
    void setRate(const Decimal &value);
    QDateTime date() const;
    void setDate(const QDateTime &value);
    TAInvoice *invoiceRelationship() const;
    void setInvoiceRelationship(TAInvoice *value);

    // The document's currency with this payment's code; null once that currency is gone, while
    // amount and rate keep working without it.
    virtual TACurrency *currency() const;

protected:
    QVariant computedValueForKey(const QString &key) const override;
};
