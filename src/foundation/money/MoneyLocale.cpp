#include "MoneyLocale.h"

#include <QHash>
#include <QReadWriteLock>

#include <unicode/ucurr.h>

#include <cstdlib>

namespace {

QString environmentMonetaryName() {
    for (const char *variable : {"LC_ALL", "LC_MONETARY", "LANG"}) {
        const char *value = std::getenv(variable);
        if (value != nullptr && *value != '\0')
            return QString::fromLatin1(value).section(u'.', 0, 0).section(u'@', 0, 0);
    }
    return {};
}

std::u16string toUtf16(const QString &text) {
    return std::u16string(reinterpret_cast<const char16_t *>(text.utf16()),
                          static_cast<size_t>(text.size()));
}

int lookUpFractionDigits(const QString &code) {
    UErrorCode status = U_ZERO_ERROR;
    const std::u16string iso = toUtf16(code);
    const int digits = ucurr_getDefaultFractionDigits(iso.c_str(), &status);
    return U_SUCCESS(status) ? digits : 2;
}

template <class Compute> int cachedDigits(const QString &key, Compute compute) {
    static QReadWriteLock lock;
    static QHash<QString, int> cache;
    {
        QReadLocker reader(&lock);
        const auto found = cache.constFind(key);
        if (found != cache.constEnd())
            return *found;
    }
    const int digits = compute();
    QWriteLocker writer(&lock);
    cache.insert(key, digits);
    return digits;
}

} // namespace

QLocale MoneyLocale::numeric() {
    return QLocale();
}

QLocale MoneyLocale::monetary() {
    static const QString name = environmentMonetaryName();
    if (name.isEmpty())
        return numeric();
    static const QLocale fromEnvironment(name);
    return fromEnvironment;
}

icu::Locale MoneyLocale::icuLocale(const QLocale &locale) {
    if (locale.language() == QLocale::C)
        return icu::Locale("en_US_POSIX");
    return icu::Locale(locale.name().toLatin1().constData());
}

QString MoneyLocale::defaultCurrencyCode(const QLocale &locale) {
    UErrorCode status = U_ZERO_ERROR;
    UChar buffer[4] = {};
    const int length = ucurr_forLocale(icuLocale(locale).getName(), buffer, 4, &status);
    if (U_FAILURE(status) || length != 3)
        return {};
    return QString::fromUtf16(reinterpret_cast<const char16_t *>(buffer), 3);
}

bool MoneyLocale::isKnownCurrencyCode(const QString &code) {
    if (code.size() != 3)
        return false;
    UErrorCode status = U_ZERO_ERROR;
    const std::u16string iso = toUtf16(code.toUpper());
    return ucurr_isAvailable(iso.c_str(), U_DATE_MIN, U_DATE_MAX, &status) && U_SUCCESS(status);
}

QString MoneyLocale::effectiveCurrencyCode(const QString &code, const QLocale &locale) {
    if (isKnownCurrencyCode(code))
        return code.toUpper();
    return defaultCurrencyCode(locale);
}

int MoneyLocale::fractionDigits(const QString &code, const QLocale &locale) {
    // Known codes do not depend on the locale (-1 marks an unknown one); unknown codes stand
    // for the locale's own currency, cached under "@" and the locale's name.
    const int digits = cachedDigits(code, [&] {
        return isKnownCurrencyCode(code) ? lookUpFractionDigits(code.toUpper()) : -1;
    });
    if (digits >= 0)
        return digits;
    return cachedDigits(u'@' + locale.name(), [&] {
        const QString own = defaultCurrencyCode(locale);
        return own.isEmpty() ? 2 : lookUpFractionDigits(own);
    });
}
