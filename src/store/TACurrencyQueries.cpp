#include "store/TACurrencyQueries.h"

#include "foundation/money/TADecimalNumberBehavior.h"
#include "objectstore/ManagedObjectContext.h"
#include "store/TAContextFetching.h"
#include "store/TAContextUndo.h"
#include "store/TAEntityCreation.h"
#include "store/entities/TACurrency.h"
#include "store/entities/TACurrencyRate.h"
#include "store/entities/TAKeys.h"

#include <QLocale>

#include <unicode/ucurr.h>

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using Fetch = TAContextFetching;
using Cmp = SortDescriptor::Comparison;
} // namespace

QList<TACurrency *> TACurrencyQueries::getCurrenciesInContext(ManagedObjectContext *context) {
    return Fetch::fetchAll<TACurrency>(E::Currency, QStringLiteral("allCurrencies"), context);
}

QList<TACurrency *>
TACurrencyQueries::getCurrenciesSortedByTitleInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getCurrenciesInContext(context), {{K::title, true, Cmp::CaseInsensitive}});
}

QList<TACurrency *>
TACurrencyQueries::getCurrenciesSortedByCodeInContext(ManagedObjectContext *context) {
    return Fetch::sorted(getCurrenciesInContext(context), {{K::code, true, Cmp::CaseInsensitive}});
}

TACurrency *TACurrencyQueries::getDefaultCurrencyInContext(ManagedObjectContext *context) {
    if (!context) {
        qWarning("No default currency without a context.");
        return nullptr;
    }
    const QList<TACurrency *> found =
        Fetch::fetchAll<TACurrency>(E::Currency, QStringLiteral("defaultCurrency"), context);
    if (!found.isEmpty())
        return found.first();
    // Code and title come the other way round from the document's form: the code from
    // "en_US", the title in the current locale.
    TAContextUndo::disableUndoRegistrationInContext(context);
    TACurrency *currency = TAEntityCreation::insertNewObject<TACurrency>(context, E::Currency);
    const QString code = localeCurrencyCode(QLocale(QStringLiteral("en_US")));
    currency->setCode(code);
    currency->setTitle(currencyDisplayName(code, QLocale()));
    currency->setIsDefault(true);
    TAContextUndo::enableUndoRegistrationInContext(context);
    return currency;
}

// Not made under disabled undo; both rates start at the model's default.
TACurrencyRate *TACurrencyQueries::getCurrencyRateFromCurrency(TACurrency *fromCurrency,
                                                               TACurrency *toCurrency,
                                                               ManagedObjectContext *context) {
    if (!fromCurrency || !toCurrency || fromCurrency == toCurrency || !context)
        return nullptr;
    const QVariantMap variables{{"param1", Fetch::objectArgument(fromCurrency)},
                                {"param2", Fetch::objectArgument(toCurrency)}};
    const Fetch::ObjectList found = Fetch::fetchEntity(
        E::CurrencyRate, QStringLiteral("currencyRateSearch"), variables, context);
    if (!found.isEmpty())
        return dynamic_cast<TACurrencyRate *>(found.first());
    TACurrencyRate *rate =
        TAEntityCreation::insertNewObject<TACurrencyRate>(context, E::CurrencyRate);
    rate->setCurrFrom(fromCurrency);
    rate->setCurrTo(toCurrency);
    return rate;
}

TACurrency *TACurrencyQueries::getCurrencyWithCode(const QString &code,
                                                   ManagedObjectContext *context) {
    if (code.isNull())
        return nullptr;
    for (TACurrency *currency : getCurrenciesInContext(context))
        if (currency->code() == code)
            return currency;
    return nullptr;
}

Decimal TACurrencyQueries::getDecimalNumber(const Decimal &number, TACurrency *fromCurrency,
                                            TACurrency *toCurrency, ManagedObjectContext *context) {
    TACurrencyRate *rate = getCurrencyRateFromCurrency(fromCurrency, toCurrency, context);
    if (!rate)
        return number;
    return DecimalMath::multiply(
        number, rate->oneFromInTo(),
        TADecimalNumberBehavior::behaviorWithCurrencyCode(toCurrency->code()));
}

QString TACurrencyQueries::localeCurrencyCode(const QLocale &locale) {
    const QString code = locale.currencySymbol(QLocale::CurrencyIsoCode);
    return code.isEmpty() ? QStringLiteral("USD") : code;
}

QString TACurrencyQueries::currencyDisplayName(const QString &code, const QLocale &locale) {
    if (code.size() != 3)
        return code;
    UChar isoCode[4] = {};
    for (int i = 0; i < 3; ++i)
        isoCode[i] = code.at(i).unicode();
    UBool isChoiceFormat = false;
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    const UChar *name = ucurr_getName(isoCode, locale.name().toUtf8().constData(), UCURR_LONG_NAME,
                                      &isChoiceFormat, &length, &status);
    if (U_FAILURE(status) || !name)
        return code;
    return QString(reinterpret_cast<const QChar *>(name), length);
}
