#pragma once

#include "foundation/dates/OTCalendar.h"

#include <QDateTime>
#include <QString>

// Locale texts of dates in the four standard lengths. QLocale knows only a short and a
// long form, so the medium length comes from ICU, and so do the others to keep the set
// consistent. Formatters are cached per thread by locale, zone and styles.
class OTDateStyleFormatter {
public:
    enum Style { None, Short, Medium, Long, Full };

    static QString format(const QDateTime &date, Style dateStyle, Style timeStyle,
                          const OTCalendar &calendar);

private:
    OTDateStyleFormatter() = delete;
};
