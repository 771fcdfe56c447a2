#include "OTNumberText.h"

#include "NumberFormatterCache.h"
#include "OTConvert.h"

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

QString OTNumberText::currencyFormatter(const Decimal &number, const QLocale &locale) {
    QString text = NumberFormatterCache::format(
        number, NumberFormatterCache::Style::CurrencyWithoutSymbol, locale);
    if (text.endsWith(QChar(0x00A0)))
        text.chop(1);
    return text;
}

Decimal OTNumberText::decimalNumber(const Decimal &number, const QString &roundedByCurrency,
                                    const QLocale &locale) {
    return number.rounded(MoneyLocale::fractionDigits(roundedByCurrency, locale),
                          Decimal::RoundingMode::Bankers);
}

Decimal OTNumberText::decimalNumberCeiledByCurrency(const Decimal &number,
                                                    const QString &ceiledByCurrency,
                                                    const QLocale &locale) {
    const int digits = MoneyLocale::fractionDigits(ceiledByCurrency, locale);
    const QString text = decimalFormatter(number, locale);
    const qsizetype separator = text.lastIndexOf(locale.decimalPoint());
    if (separator < 0)
        return number;
    const qsizetype extra = text.size() - separator - locale.decimalPoint().size() - digits;
    if (extra < 1)
        return number;
    const Decimal cut = OTConvert::decimalNumberFromString(text.chopped(extra), locale);
    if (cut == number)
        return number;
    return cut + Decimal::fromParts(1, -digits);
}

QString OTNumberText::percentFormatter(const Decimal &number, const QLocale &locale) {
    return NumberFormatterCache::format(number, Style::Percent, locale);
}
