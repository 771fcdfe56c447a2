#pragma once

#include "Decimal.h"
#include "MoneyLocale.h"

#include <QString>

// The number and money text operations that OTFormatting and OTFunctions both offer under the
// same names; written once here so the two can never drift apart. Fractions are rounded half
// to even for display. Amounts default to the monetary locale, plain numbers to the numeric one.
class OTNumberText {
public:
    // The code's symbol and minor unit in the locale's currency layout. An empty code gives the
    // layout without a symbol; an unknown code the locale's own currency.
    static QString currencyFormatter(const Decimal &number, const QString &currencyCode,
                                     const QLocale &locale = MoneyLocale::monetary());
    // The locale's grouping and at most three fraction digits: for editing an amount, a rate.
    static QString decimalFormatter(const Decimal &number,
                                    const QLocale &locale = MoneyLocale::numeric());
    // Exactly `toPrecision` fraction digits, at least one integer digit, no grouping.
    static QString decimalFormatter(const Decimal &number, int toPrecision,
                                    const QLocale &locale = MoneyLocale::numeric());
    // As above with the currency's minor unit as the precision: for editing prices.
    static QString decimalFormatter(const Decimal &number, const QString &toPrecisionByCurrency,
                                    const QLocale &locale = MoneyLocale::numeric());

    // Parses locale decimal text as a whole; not-a-number when it does not parse (the "null"
    // answer, which callers replace by 0).
    static Decimal decimalFromString(const QString &text,
                                     const QLocale &locale = MoneyLocale::numeric());
    // Parses currency text of the locale's own currency; not-a-number when it does not parse.
    static Decimal numberFromDefaultCurrency(const QString &text,
                                             const QLocale &locale = MoneyLocale::monetary());
    static Decimal numberFromCurrency(const QString &text, const QString &currencyCode,
                                      const QLocale &locale = MoneyLocale::monetary());

protected:
    OTNumberText() = default;
};
