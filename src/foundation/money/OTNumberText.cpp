#include "OTNumberText.h"

#include "NumberFormatterCache.h"

using Style = NumberFormatterCache::Style;

QString OTNumberText::currencyFormatter(const Decimal &number, const QString &currencyCode,
                                        const QLocale &locale) {
    return NumberFormatterCache::format(number, Style::Currency, locale, currencyCode);
}

QString OTNumberText::decimalFormatter(const Decimal &number, const QLocale &locale) {
    return NumberFormatterCache::format(number, Style::Decimal, locale);
}

QString OTNumberText::decimalFormatter(const Decimal &number, int toPrecision,
                                       const QLocale &locale) {
    return NumberFormatterCache::format(number, Style::FixedFraction, locale, {}, toPrecision);
}

QString OTNumberText::decimalFormatter(const Decimal &number, const QString &toPrecisionByCurrency,
                                       const QLocale &locale) {
    const int digits = MoneyLocale::fractionDigits(toPrecisionByCurrency, locale);
    return decimalFormatter(number, digits, locale);
}

Decimal OTNumberText::decimalFromString(const QString &text, const QLocale &locale) {
    return NumberFormatterCache::parse(text, Style::Decimal, locale);
}

Decimal OTNumberText::numberFromDefaultCurrency(const QString &text, const QLocale &locale) {
    return NumberFormatterCache::parse(text, Style::Currency, locale);
}

Decimal OTNumberText::numberFromCurrency(const QString &text, const QString &currencyCode,
                                         const QLocale &locale) {
    return NumberFormatterCache::parse(text, Style::Currency, locale, currencyCode);
}
