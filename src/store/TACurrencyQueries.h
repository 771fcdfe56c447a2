#pragma once

#include "foundation/money/Decimal.h"

#include <QList>
#include <QString>

class ManagedObjectContext;
class QLocale;
class TACurrency;
class TACurrencyRate;

// Currencies and their rates for code that holds a context; the context comes last.
class TACurrencyQueries {
public:
    static QList<TACurrency *> getCurrenciesInContext(ManagedObjectContext *context);
    static QList<TACurrency *> getCurrenciesSortedByTitleInContext(ManagedObjectContext *context);
    static QList<TACurrency *> getCurrenciesSortedByCodeInContext(ManagedObjectContext *context);
    // Answers the first default currency without repairing duplicates; with none makes one.
    // Null (with a warning) for a null context.
    static TACurrency *getDefaultCurrencyInContext(ManagedObjectContext *context);
    // The rate row of the ordered pair, made on first request; null for a currency with itself.
    static TACurrencyRate *getCurrencyRateFromCurrency(TACurrency *fromCurrency,
                                                       TACurrency *toCurrency,
                                                       ManagedObjectContext *context);
    static TACurrency *getCurrencyWithCode(const QString &code, ManagedObjectContext *context);
    // As the document's form, except that with no rate row the number comes back unrounded.
    static Decimal getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                                    TACurrency *toCurrency, ManagedObjectContext *context);

    // Both forms of the default currency share this: code and title of a new default.
    static QString localeCurrencyCode(const QLocale &locale);
    static QString currencyDisplayName(const QString &code, const QLocale &locale);

private:
    TACurrencyQueries() = delete;
};
