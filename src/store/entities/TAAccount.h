#pragma once

#include "store/entities/TAObject.h"

class TAInvoice;

// An account invoices may be booked to; kept for imported and copied data.
class TAAccount : public TAObject {
public:
    QList<TAInvoice *> invoiceRelationships() const;
    void addInvoiceRelationship(TAInvoice *value);
    void removeInvoiceRelationship(TAInvoice *value);
};
