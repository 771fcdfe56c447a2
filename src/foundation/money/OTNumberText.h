#pragma once

#include "Decimal.h"
#include "MoneyLocale.h"

#include <QString>

// Number and money text for editing, views and printed pages, and the currency rounding that
// goes with it. Fractions are rounded half to even for display. Amounts default to the
// monetary locale, plain numbers to the numeric one.
class OTNumberText {
public:
    // The code's symbol and minor unit in the locale's currency layout. An empty code gives the
    // layout without a symbol; an unknown code the locale's own currency.
    static QString currencyFormatter(const Decimal &number, const QString &currencyCode,
                                     const QLocale &locale = MoneyLocale::monetary());
    // The locale's currency layout and minor unit without any symbol, and without the trailing
    // no-break space some layouts leave behind.
    static QString currencyFormatter(const Decimal &number,
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

    // A fraction (0.175) as the locale's percent text ("17.5%"), at most two fraction digits.
    static QString percentFormatter(const Decimal &number,
                                    const QLocale &locale = MoneyLocale::numeric());

    // Rounds to the currency's minor unit with ties to even. Used for a client's balance only;
    // every invoice sum rounds ties away from zero (TADecimalNumberBehavior).
    static Decimal decimalNumber(const Decimal &number, const QString &roundedByCurrency,
                                 const QLocale &locale = MoneyLocale::monetary());
    // Rounds up to what a payment in the currency must be. It works on the displayed text, so
    // only the first three fraction digits count.
    static Decimal decimalNumberCeiledByCurrency(const Decimal &number,
                                                 const QString &ceiledByCurrency,
                                                 const QLocale &locale = MoneyLocale::numeric());

private:
    OTNumberText() = delete;
};
