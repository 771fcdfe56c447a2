#pragma once

#include "Decimal.h"

#include <QLocale>
#include <QString>

// Locale-aware number text through ICU, fed with and answering exact decimal text: no value
// ever passes through a double. Formatters are built once per (locale, style, code, digits)
// and shared; ICU formatters are immutable once built, so formatting and parsing are safe on
// any thread.
class NumberFormatterCache {
public:
    enum class Style {
        Currency,              // the code's symbol and minor unit in the locale's layout
        CurrencyWithoutSymbol, // the locale's currency layout and minor unit, no symbol
        Decimal,               // grouping, at most three fraction digits
        FixedFraction,         // exactly `digits` fraction digits, no grouping
        Percent,               // a fraction as percent, at most two fraction digits
    };

    // An empty code means the locale's currency without a symbol; an unknown one the locale's
    // currency. Fractions are rounded half to even.
    static QString format(const Decimal &number, Style style, const QLocale &locale,
                          const QString &currencyCode = {}, int digits = 0);

    // Whole-text parse in the locale's decimal or currency form (Style::Decimal or
    // Style::Currency). Not-a-number when the text does not parse as a whole.
    static Decimal parse(const QString &text, Style style, const QLocale &locale,
                         const QString &currencyCode = {});
};
