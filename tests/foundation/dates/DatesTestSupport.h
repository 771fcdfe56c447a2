#pragma once

#include "foundation/dates/OTCalendar.h"

#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>
#include <ostream>

inline QTimeZone berlinZone() {
    return QTimeZone("Europe/Berlin");
}
inline QTimeZone newYorkZone() {
    return QTimeZone("America/New_York");
}

inline OTCalendar berlinDe() {
    return OTCalendar(berlinZone(), QLocale("de_DE"));
}
inline OTCalendar newYorkUs() {
    return OTCalendar(newYorkZone(), QLocale("en_US"));
}

// A wall-clock moment in the zone, as the instant it is.
inline QDateTime wall(const QTimeZone &zone, int y, int mo, int d, int h = 0, int mi = 0,
                      int s = 0) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), zone).toUTC();
}

QT_BEGIN_NAMESPACE
inline void PrintTo(const QDateTime &dt, std::ostream *os) {
    *os << (dt.isValid() ? dt.toUTC().toString(Qt::ISODateWithMs).toStdString() : "null");
}
inline void PrintTo(const QString &s, std::ostream *os) {
    *os << '"' << s.toStdString() << '"';
}
QT_END_NAMESPACE
