#pragma once

#include "foundation/dates/OTDateComponents.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

// The user's calendar: the time zone that decides where a day begins and the locale
// that decides the first weekday and the texts. A default-made calendar follows the
// system's current zone and the application's default locale at the moment it is made.
class OTCalendar {
public:
    OTCalendar();
    OTCalendar(const QTimeZone &zone, const QLocale &locale);

    const QTimeZone &zone() const { return zone_; }
    const QLocale &locale() const { return locale_; }
    Qt::DayOfWeek firstWeekday() const { return locale_.firstDayOfWeek(); }

    // The calendar day on which the instant falls in this zone.
    QDate dateOf(const QDateTime &instant) const;
    // The first moment of the day in this zone, as a UTC instant. Where a daylight
    // saving change skips midnight, the day begins at the first moment that exists.
    QDateTime startOf(const QDate &day) const;
    // The first day of the week that contains the day.
    QDate weekStart(const QDate &day) const;
    // Builds an instant from wall-clock fields, carrying over out-of-range values.
    // A wall-clock time skipped by a daylight saving change moves forward by the gap.
    QDateTime fromComponents(const OTDateComponents &components) const;

private:
    QTimeZone zone_;
    QLocale locale_;
};
