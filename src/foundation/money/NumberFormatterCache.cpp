#include "NumberFormatterCache.h"

#include "MoneyLocale.h"

#include <QHash>
#include <QReadWriteLock>

#include <unicode/currunit.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>
#include <unicode/numfmt.h>

#include <memory>

using namespace icu::number;

namespace {

using Style = NumberFormatterCache::Style;

struct Key {
    QLocale locale;
    Style style;
    QString code;
    int digits;
    bool operator==(const Key &) const = default;
};

size_t qHash(const Key &key, size_t seed = 0) {
    return qHashMulti(seed, key.locale, static_cast<int>(key.style), key.code, key.digits);
}

icu::UnicodeString toUnicode(const QString &text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t *>(text.utf16()),
                              static_cast<int32_t>(text.size()));
}

QString fromUnicode(const icu::UnicodeString &text) {
    return QString::fromUtf16(text.getBuffer(), text.length());
}

// A read-mostly map from key to an immutable, shared object.
template <class Value> class SharedCache {
public:
    template <class Build> std::shared_ptr<const Value> get(const Key &key, Build build) {
        {
            QReadLocker reader(&m_lock);
            const auto found = m_entries.constFind(key);
            if (found != m_entries.constEnd())
                return *found;
        }
        std::shared_ptr<const Value> built = build();
        QWriteLocker writer(&m_lock);
        return *m_entries.insert(key, std::move(built));
    }

private:
    QReadWriteLock m_lock;
    QHash<Key, std::shared_ptr<const Value>> m_entries;
};

UnlocalizedNumberFormatter withCurrency(UnlocalizedNumberFormatter formatter, const Key &key) {
    const QString code = MoneyLocale::effectiveCurrencyCode(key.code, key.locale);
    if (code.isEmpty()) // a locale without a currency of its own
        return formatter.precision(Precision::fixedFraction(2));
    UErrorCode status = U_ZERO_ERROR;
    const icu::CurrencyUnit unit(toUnicode(code).getTerminatedBuffer(), status);
    if (U_FAILURE(status))
        return formatter.precision(Precision::fixedFraction(2));
    return formatter.unit(unit);
}

std::shared_ptr<const LocalizedNumberFormatter> buildFormatter(const Key &key) {
    UnlocalizedNumberFormatter formatter = NumberFormatter::with();
    switch (key.style) {
    case Style::Currency:
        formatter = withCurrency(formatter, key);
        if (key.code.isEmpty())
            formatter = formatter.unitWidth(UNUM_UNIT_WIDTH_HIDDEN);
        break;
    case Style::CurrencyWithoutSymbol:
        formatter = withCurrency(formatter, {key.locale, key.style, QString(), 0})
                        .unitWidth(UNUM_UNIT_WIDTH_HIDDEN);
        break;
    case Style::Decimal:
        formatter = formatter.precision(Precision::maxFraction(3));
        break;
    case Style::FixedFraction:
        formatter = formatter.precision(Precision::fixedFraction(qBound(0, key.digits, 38)))
                        .grouping(UNUM_GROUPING_OFF);
        break;
    case Style::Percent:
        formatter = formatter.unit(icu::MeasureUnit::getPercent())
                        .scale(Scale::powerOfTen(2))
                        .precision(Precision::maxFraction(2));
        break;
    }
    return std::make_shared<const LocalizedNumberFormatter>(
        formatter.roundingMode(UNUM_ROUND_HALFEVEN).locale(MoneyLocale::icuLocale(key.locale)));
}

std::shared_ptr<const icu::NumberFormat> buildParser(const Key &key) {
    UErrorCode status = U_ZERO_ERROR;
    const bool currency = key.style == Style::Currency;
    std::unique_ptr<icu::NumberFormat> parser(icu::NumberFormat::createInstance(
        MoneyLocale::icuLocale(key.locale), currency ? UNUM_CURRENCY : UNUM_DECIMAL, status));
    if (U_FAILURE(status) || !parser)
        return nullptr;
    if (currency) {
        const QString code = MoneyLocale::effectiveCurrencyCode(key.code, key.locale);
        if (!code.isEmpty())
            parser->setCurrency(toUnicode(code).getTerminatedBuffer(), status);
    }
    return std::shared_ptr<const icu::NumberFormat>(std::move(parser));
}

SharedCache<LocalizedNumberFormatter> &formatters() {
    static SharedCache<LocalizedNumberFormatter> cache;
    return cache;
}

SharedCache<icu::NumberFormat> &parsers() {
    static SharedCache<icu::NumberFormat> cache;
    return cache;
}

} // namespace

QString NumberFormatterCache::format(const Decimal &number, Style style, const QLocale &locale,
                                     const QString &currencyCode, int digits) {
    const Key key{locale, style, currencyCode, style == Style::FixedFraction ? digits : 0};
    const auto formatter = formatters().get(key, [&] { return buildFormatter(key); });
    const QByteArray text = number.toString().toLatin1();
    UErrorCode status = U_ZERO_ERROR;
    const FormattedNumber formatted =
        formatter->formatDecimal(icu::StringPiece(text.constData(), text.size()), status);
    const icu::UnicodeString result = formatted.toString(status);
    return U_SUCCESS(status) ? fromUnicode(result) : QString();
}

Decimal NumberFormatterCache::parse(const QString &text, Style style, const QLocale &locale,
                                    const QString &currencyCode) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return Decimal::notANumber();
    const Key key{locale, style == Style::Currency ? Style::Currency : Style::Decimal,
                  style == Style::Currency ? currencyCode : QString(), 0};
    const auto parser = parsers().get(key, [&] { return buildParser(key); });
    if (!parser)
        return Decimal::notANumber();
    const icu::UnicodeString input = toUnicode(trimmed);
    icu::Formattable result;
    icu::ParsePosition position(0);
    parser->parse(input, result, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != input.length())
        return Decimal::notANumber();
    UErrorCode status = U_ZERO_ERROR;
    const icu::StringPiece digits = result.getDecimalNumber(status);
    if (U_FAILURE(status))
        return Decimal::notANumber();
    return Decimal::fromString(QString::fromLatin1(digits.data(), digits.size()));
}
