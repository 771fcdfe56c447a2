#include "OTConvert.h"

#include <QCborArray>
#include <QCborValue>
#include <QHash>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTimeZone>

#include <charconv>
#include <limits>

namespace {

bool isSpaceLike(QChar c) {
    return c == u' ' || c == QChar(0x00A0) || c == QChar(0x202F) || c == QChar(0x2009);
}

bool isApostropheLike(QChar c) {
    return c == u'\'' || c == QChar(0x2019);
}

// Removes the locale's thousand separator. Grouping typed or pasted with a look-alike of it
// (a plain blank for a no-break space, a straight apostrophe for a typographic one) counts too.
void removeGroupSeparators(QString &text, const QLocale &locale) {
    const QString group = locale.groupSeparator();
    if (group.isEmpty())
        return;
    if (group.size() == 1 && isSpaceLike(group[0]))
        text.removeIf(isSpaceLike);
    else if (group.size() == 1 && isApostropheLike(group[0]))
        text.removeIf(isApostropheLike);
    else
        text.remove(group);
}

bool isAsciiDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

QString trimmedToNumberCharacters(const QString &text) {
    const auto keep = [](QChar c) { return isAsciiDigit(c) || c == u'.'; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && !keep(text[begin]))
        ++begin;
    while (end > begin && !keep(text[end - 1]))
        --end;
    return text.mid(begin, end - begin);
}

// Walks from the right: digits and "-" stay, the first other character after some digit
// becomes the decimal separator, all other characters go.
QString keepDigitsAndOneSeparator(const QString &text, QChar &separator) {
    QString result;
    bool digitsSeen = false;
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        const QChar c = text[i];
        if (isAsciiDigit(c)) {
            digitsSeen = true;
            result.prepend(c);
        } else if (c == u'-') {
            result.prepend(c);
        } else if (separator.isNull() && digitsSeen) {
            separator = c;
            result.prepend(c);
        }
    }
    return result;
}

// The numeric prefix of a text as UTF-8, blanks skipped and a leading '+' dropped, for
// std::from_chars (which, unlike strtod, does not depend on the C locale).
QByteArray numericPrefix(const QString &text) {
    QByteArray bytes = text.trimmed().toUtf8();
    if (bytes.startsWith('+'))
        bytes.remove(0, 1);
    return bytes;
}

constexpr auto kDescriptionFormat = "yyyy-MM-dd HH:mm:ss";

QString withoutWeekday(QString format) {
    static const QRegularExpression weekday(QStringLiteral("d{4}[,.]?\\s*|\\s*,?\\s*d{4}"));
    return format.remove(weekday).trimmed();
}

QString dateFormatFor(int style, const QLocale &locale) {
    switch (style) {
    case OTConvert::ShortStyle:
        return locale.dateFormat(QLocale::ShortFormat);
    case OTConvert::MediumStyle:
        return withoutWeekday(locale.dateFormat(QLocale::LongFormat))
            .replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    case OTConvert::LongStyle:
        return withoutWeekday(locale.dateFormat(QLocale::LongFormat));
    case OTConvert::FullStyle:
        return locale.dateFormat(QLocale::LongFormat);
    default:
        return {};
    }
}

QString timeFormatFor(int style, const QLocale &locale) {
    switch (style) {
    case OTConvert::ShortStyle:
        return locale.timeFormat(QLocale::ShortFormat);
    case OTConvert::MediumStyle:
        return locale.timeFormat(QLocale::LongFormat).remove(u't').trimmed();
    case OTConvert::LongStyle:
    case OTConvert::FullStyle:
        return locale.timeFormat(QLocale::LongFormat);
    default:
        return {};
    }
}

// Offsets of the zone abbreviations a stored date text may carry.
int abbreviationOffset(const QString &zone, bool &known) {
    static const QHash<QString, int> hours = {
        {"UTC", 0},   {"GMT", 0},   {"UT", 0},    {"Z", 0},     {"WET", 0},  {"WEST", 1},
        {"BST", 1},   {"CET", 1},   {"CEST", 2},  {"MET", 1},   {"MEST", 2}, {"EET", 2},
        {"EEST", 3},  {"MSK", 3},   {"IST", 5},   {"JST", 9},   {"EST", -5}, {"EDT", -4},
        {"CST", -6},  {"CDT", -5},  {"MST", -7},  {"MDT", -6},  {"PST", -8}, {"PDT", -7},
        {"AKST", -9}, {"AKDT", -8}, {"HST", -10}, {"AEST", 10}, {"AEDT", 11}};
    const auto found = hours.constFind(zone);
    known = found != hours.constEnd();
    return known ? *found * 3600 : 0;
}

// "+0200", "-08:00"; the sign is required.
bool parseOffset(QStringView text, int &seconds) {
    static const QRegularExpression pattern(QStringLiteral("^([+-])(\\d\\d):?(\\d\\d)$"));
    const auto match = pattern.match(text.toString());
    if (!match.hasMatch())
        return false;
    seconds = (match.captured(2).toInt() * 3600 + match.captured(3).toInt() * 60) *
              (match.captured(1) == u"-" ? -1 : 1);
    return true;
}

// The zone part behind "yyyy-MM-dd HH:mm:ss ", tried as "ZZZZ", "ZZZ", then "zzz".
bool parseZone(const QString &zone, int &seconds) {
    if (zone == u"GMT" || zone == u"UTC") {
        seconds = 0;
        return true;
    }
    if ((zone.startsWith(u"GMT") || zone.startsWith(u"UTC")) && parseOffset(zone.mid(3), seconds))
        return true;
    if (parseOffset(zone, seconds) && !zone.contains(u':'))
        return true;
    bool known = false;
    seconds = abbreviationOffset(zone, known);
    return known;
}

QDateTime parseDescription(const QString &text) {
    if (text.size() < 19)
        return {};
    const QDateTime local = QDateTime::fromString(text.left(19), QLatin1String(kDescriptionFormat));
    if (!local.isValid())
        return {};
    if (text.size() == 19)
        return local;
    int offset = 0;
    if (text[19] == u' ' && parseZone(text.mid(20), offset))
        return QDateTime(local.date(), local.time(), QTimeZone(offset));
    return local; // the first 19 characters alone
}

} // namespace

Decimal OTConvert::decimalNumberFromString(const QString &text, const QLocale &locale) {
    if (text.isNull())
        return Decimal();
    QString rest = text;
    removeGroupSeparators(rest, locale);
    rest.remove(u' ').remove(u'\r').remove(u'\n');
    rest = trimmedToNumberCharacters(rest);
    QChar separator;
    QString result = keepDigitsAndOneSeparator(rest, separator);
    // A minus can only be inside the number now; reading stops there.
    const qsizetype minus = result.indexOf(u'-');
    if (minus >= 0)
        result.truncate(minus);
    if (result.isEmpty())
        return Decimal();
    const Decimal number =
        separator.isNull() ? Decimal::fromString(result) : Decimal::fromString(result, separator);
    return number.isNaN() ? Decimal() : number;
}

QString OTConvert::decimalStringFromString(const QString &text) {
    QString result;
    for (const QChar c : text) {
        if (c.isDigit() || c == u',' || c == u'.' || c == u'-')
            result.append(c);
    }
    return result;
}

double OTConvert::doubleFromString(const QString &text) {
    const QByteArray bytes = numericPrefix(text);
    double value = 0;
    const auto [end, error] = std::from_chars(bytes.constData(), bytes.constData() + bytes.size(),
                                              value, std::chars_format::general);
    if (error == std::errc::result_out_of_range)
        return 0;
    return error == std::errc() ? value : 0;
}

int OTConvert::intFromString(const QString &text) {
    const QByteArray bytes = numericPrefix(text);
    long long value = 0;
    const auto [end, error] =
        std::from_chars(bytes.constData(), bytes.constData() + bytes.size(), value);
    if (error == std::errc::result_out_of_range)
        return bytes.startsWith('-') ? std::numeric_limits<int>::min()
                                     : std::numeric_limits<int>::max();
    if (error != std::errc())
        return 0;
    constexpr long long lowest = std::numeric_limits<int>::min();
    constexpr long long highest = std::numeric_limits<int>::max();
    return static_cast<int>(qBound(lowest, value, highest));
}

QString OTConvert::stringFromNumber(const QVariant &number) {
    if (!number.isValid() || number.isNull())
        return {};
    return QString::number(static_cast<int>(Decimal::fromVariant(number).toLongLong()));
}

QString OTConvert::stringFromFloat(float value, int precision) {
    return QString::asprintf("%.*f", precision, static_cast<double>(value));
}

QString OTConvert::stringFromDouble(double value, int precision) {
    return QString::asprintf("%.*f", precision, value);
}

QString OTConvert::stringFromDate(const QDateTime &date) {
    if (!date.isValid())
        return {};
    return date.toUTC().toString(QLatin1String(kDescriptionFormat)) + QStringLiteral(" +0000");
}

QString OTConvert::stringFromDate(const QDateTime &date, int dateStyle, const QLocale &locale) {
    return stringFromDate(date, dateStyle, NoStyle, locale);
}

QString OTConvert::stringFromDateTimeStyle(const QDateTime &date, int timeStyle,
                                           const QLocale &locale) {
    return stringFromDate(date, NoStyle, timeStyle, locale);
}

QString OTConvert::stringFromDate(const QDateTime &date, int dateStyle, int timeStyle,
                                  const QLocale &locale) {
    if (!date.isValid())
        return {};
    const QDateTime local = date.toLocalTime();
    QStringList parts;
    if (const QString format = dateFormatFor(dateStyle, locale); !format.isEmpty())
        parts << locale.toString(local.date(), format);
    if (const QString format = timeFormatFor(timeStyle, locale); !format.isEmpty())
        parts << locale.toString(local, format);
    return parts.join(u' ');
}

QDateTime OTConvert::dateFromObject(const QVariant &object) {
    if (object.metaType() == QMetaType::fromType<QDateTime>())
        return object.toDateTime();
    if (object.metaType() == QMetaType::fromType<QDate>())
        return object.toDate().startOfDay();
    if (object.metaType() != QMetaType::fromType<QString>())
        return {};
    const QString text = object.toString();
    if (QDateTime date = parseDescription(text); date.isValid())
        return date;
    return QDateTime::fromString(text, Qt::ISODateWithMs);
}

QString OTConvert::dateDescriptionFromObject(const QVariant &object) {
    return stringFromDate(dateFromObject(object));
}

QString OTConvert::dateDescriptionFromObject(const QVariant &object, int dateStyle,
                                             const QLocale &locale) {
    return stringFromDate(dateFromObject(object), dateStyle, locale);
}

QString OTConvert::dateDescriptionFromObject(const QVariant &object, int dateStyle, int timeStyle,
                                             const QLocale &locale) {
    return stringFromDate(dateFromObject(object), dateStyle, timeStyle, locale);
}

QString OTConvert::stringFromData(const QByteArray &data,
                                  QStringConverter::Encoding usingEncoding) {
    QStringDecoder decoder(usingEncoding, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(data);
    if (decoder.hasError())
        return {};
    if (text.isNull())
        text = QLatin1String("");
    return text;
}

QByteArray OTConvert::dataFromString(const QString &text,
                                     QStringConverter::Encoding usingEncoding) {
    QStringEncoder encoder(usingEncoding, QStringConverter::Flag::Stateless);
    QByteArray data = encoder.encode(text);
    if (encoder.hasError())
        return {};
    return data;
}

QByteArray OTConvert::dataFromPropertyList(const QVariant &propertyList) {
    if (!propertyList.isValid())
        return {};
    return QCborValue::fromVariant(propertyList).toCbor();
}

QVariant OTConvert::propertyListFromData(const QByteArray &data) {
    if (data.isEmpty())
        return {};
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError)
        return {};
    return value.toVariant();
}

QByteArray OTConvert::archiveObjectToData(const QVariant &object) {
    return dataFromPropertyList(object);
}

QVariant OTConvert::unarchiveObjectFromData(const QByteArray &data) {
    return propertyListFromData(data);
}

int OTConvert::noOfItemsInEncodedArrayData(const QByteArray &data) {
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError || !value.isArray())
        return 0;
    return static_cast<int>(value.toArray().size());
}
