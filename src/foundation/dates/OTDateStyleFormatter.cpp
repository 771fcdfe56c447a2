#include "foundation/dates/OTDateStyleFormatter.h"

#include <QHash>

#include <memory>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace {

icu::DateFormat::EStyle icuStyle(OTDateStyleFormatter::Style style) {
    switch (style) {
    case OTDateStyleFormatter::Short:
        return icu::DateFormat::kShort;
    case OTDateStyleFormatter::Medium:
        return icu::DateFormat::kMedium;
    case OTDateStyleFormatter::Long:
        return icu::DateFormat::kLong;
    case OTDateStyleFormatter::Full:
        return icu::DateFormat::kFull;
    case OTDateStyleFormatter::None:
        break;
    }
    return icu::DateFormat::kNone;
}

icu::Locale icuLocale(const QLocale &locale) {
    if (locale.language() == QLocale::C)
        return icu::Locale("en_US_POSIX");
    return icu::Locale(locale.name().toUtf8().constData());
}

std::unique_ptr<icu::DateFormat> makeFormat(OTDateStyleFormatter::Style dateStyle,
                                            OTDateStyleFormatter::Style timeStyle,
                                            const OTCalendar &calendar) {
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icuStyle(dateStyle), icuStyle(timeStyle), icuLocale(calendar.locale())));
    if (format) {
        const QByteArray zoneId = calendar.zone().id();
        format->adoptTimeZone(icu::TimeZone::createTimeZone(
            icu::UnicodeString::fromUTF8(icu::StringPiece(zoneId.constData(), zoneId.size()))));
    }
    return format;
}

// ICU formatters keep a mutable calendar inside, so each thread keeps its own.
icu::DateFormat *cachedFormat(OTDateStyleFormatter::Style dateStyle,
                              OTDateStyleFormatter::Style timeStyle, const OTCalendar &calendar) {
    thread_local QHash<QString, std::shared_ptr<icu::DateFormat>> cache;
    const QString key = QStringLiteral("%1|%2|%3|%4")
                            .arg(calendar.locale().name(), QString::fromUtf8(calendar.zone().id()))
                            .arg(int(dateStyle))
                            .arg(int(timeStyle));
    auto it = cache.constFind(key);
    if (it == cache.constEnd())
        it = cache.insert(key, makeFormat(dateStyle, timeStyle, calendar));
    return it->get();
}

} // namespace

QString OTDateStyleFormatter::format(const QDateTime &date, Style dateStyle, Style timeStyle,
                                     const OTCalendar &calendar) {
    if (!date.isValid())
        return QString();
    icu::DateFormat *format = cachedFormat(dateStyle, timeStyle, calendar);
    if (!format)
        return date.toTimeZone(calendar.zone()).toString(Qt::ISODate);
    icu::UnicodeString text;
    format->format(UDate(date.toMSecsSinceEpoch()), text);
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}
