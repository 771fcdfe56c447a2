#include "billing/invoice/TAInvoiceTotalsEditing.h"

#include "billing/items/TAItemRowEditing.h"
#include "foundation/money/DecimalConstants.h"
#include "foundation/money/OTConvert.h"
#include "foundation/money/TADecimalNumberBehavior.h"
#include "store/TAContextDatabase.h"
#include "store/entities/TAInvoice.h"
#include "store/entities/TAKeys.h"
#include "store/entities/TATax.h"

namespace {
Decimal orZero(const Decimal &value) {
    return value.isNaN() ? Decimal() : value;
}
} // namespace

Decimal TAInvoiceTotalsEditing::discountFractionFromAmount(const TAInvoice *invoice,
                                                           const Decimal &amount) {
    const TADecimalNumberBehavior b = invoice->behavior();
    const Decimal S = orZero(invoice->subTotal());
    const Decimal r = orZero(invoice->taxes());
    Decimal base = DecimalMath::add(S, orZero(invoice->itemTaxes()), b);
    if (invoice->calculationType() != 0) {
        base = invoice->taxesCombined()
                   ? DecimalMath::multiply(base, DecimalMath::add(r, Decimal(1), b), b)
                   : DecimalMath::add(base, DecimalMath::multiply(S, r, b), b);
    }
    return base.isZero() ? Decimal() : amount / base;
}

bool TAInvoiceTotalsEditing::dataChanged(TAInvoice *invoice, const TAInvoiceTotalsInput &input) {
    ManagedObjectContext *context = invoice ? invoice->managedObjectContext() : nullptr;
    if (!context)
        return false;
    TAContextDatabase::beginUndoGroupingWithName(QStringLiteral("Invoice edit"), context);
    invoice->setTaxes(TAItemRowEditing::taxFromField(input.secondTax));
    invoice->setTaxName(input.namedTax ? input.namedTax->name() : QString());
    const Decimal typed = OTConvert::decimalNumberFromString(input.discount);
    Decimal d = input.discountIsAmount ? discountFractionFromAmount(invoice, typed)
                                       : typed / DecimalConstants::hundred();
    if (d > Decimal(1))
        d = Decimal(1);
    const bool changed = invoice->isNullForKey(TAKey::discount) || invoice->discount() != d;
    if (changed) {
        invoice->setDiscount(d);
        invoice->updateCachedValues();
    }
    TAContextDatabase::endUndoGroupingInContext(context);
    return changed;
}

void TAInvoiceTotalsEditing::toggleCalculationType(TAInvoice *invoice) {
    if (invoice)
        invoice->setCalculationType(invoice->calculationType() == 0 ? 1 : 0);
}
