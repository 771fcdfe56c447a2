#pragma once

#include "foundation/money/Decimal.h"

#include <QString>

class TAInvoice;
class TATax;

// The totals panel of the invoice editor as the user left it.
struct TAInvoiceTotalsInput {
    QString secondTax;         // percent
    TATax *namedTax = nullptr; // the chosen second tax, if any
    QString discount;          // an amount or a percentage, as discountIsAmount says
    bool discountIsAmount = false;
};

// What the totals panel stores on each edit, in one undo group "Invoice edit"; no widgets.
class TAInvoiceTotalsEditing {
public:
    // Stores the second tax and the discount; answers whether the discount changed, in which
    // case the cached totals are already refreshed.
    static bool dataChanged(TAInvoice *invoice, const TAInvoiceTotalsInput &input);
    // An amount as a fraction of the base the current calculation type discounts; 0 for a
    // base of 0. Not capped.
    static Decimal discountFractionFromAmount(const TAInvoice *invoice, const Decimal &amount);
    // Between discount-first (0) and tax-first (1); any other value goes to 0.
    static void toggleCalculationType(TAInvoice *invoice);

private:
    TAInvoiceTotalsEditing() = delete;
};
