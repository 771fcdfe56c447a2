#include "store/entities/TAAccount.h"

#include "store/entities/EntityValues.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"

QList<TAInvoice *> TAAccount::invoiceRelationships() const {
    return objectsForKeyAs<TAInvoice>(TAKey::invoices);
}

void TAAccount::addInvoiceRelationship(TAInvoice *value) {
    if (value)
        addObjectForKey(value, TAKey::invoices);
}

void TAAccount::removeInvoiceRelationship(TAInvoice *value) {
    if (value)
        removeObjectForKey(value, TAKey::invoices);
}
