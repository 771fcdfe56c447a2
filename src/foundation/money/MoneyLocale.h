#pragma once

#include <QLocale>
#include <QString>

#include <unicode/locid.h>

// Which locale number and money text follow, and what a currency code means in it.
//
// Every text operation of the money layer takes a locale, defaulting to numeric() for plain
// numbers and monetary() for amounts, so tests and callers can pin one down.
class MoneyLocale {
public:
    // The default locale (QLocale(), i.e. LC_ALL / LC_NUMERIC / LANG unless the application set
    // one).
    static QLocale numeric();
    // LC_ALL, then LC_MONETARY, then LANG from the environment (read once); numeric() when none
    // of them names a locale.
    static QLocale monetary();

    static icu::Locale icuLocale(const QLocale &locale);

    // The locale's own currency ("EUR" for de_DE); empty when it has none.
    static QString defaultCurrencyCode(const QLocale &locale);
    // True for a code that is or was legal tender somewhere.
    static bool isKnownCurrencyCode(const QString &code);
    // The ISO 4217 minor unit of the code; for an unknown or empty code, that of the locale's
    // own currency (2 when it has none). Cached; safe on any thread.
    static int fractionDigits(const QString &code, const QLocale &locale = monetary());
    // The code a currency formatter ends up with: the code when known, else the locale's own.
    static QString effectiveCurrencyCode(const QString &code, const QLocale &locale);
};
