#include "foundation/dates/OTCalendar.h"

namespace {

constexpr qint64 secondsPerDay = 86400;

qint64 floorDiv(qint64 a, qint64 b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// Year and month carried like the calendar does: month 13 is January of the next year.
QDate firstOfMonth(int year, int month) {
    const qint64 months = qint64(year) * 12 + (month - 1);
    const qint64 y = floorDiv(months, 12);
    return QDate(int(y), int(months - y * 12) + 1, 1);
}

} // namespace

OTCalendar::OTCalendar()
    : zone_(QTimeZone::systemTimeZone())
    , locale_(QLocale()) {}

OTCalendar::OTCalendar(const QTimeZone &zone, const QLocale &locale)
    : zone_(zone.isValid() ? zone : QTimeZone::systemTimeZone())
    , locale_(locale) {}

QDate OTCalendar::dateOf(const QDateTime &instant) const {
    return instant.toTimeZone(zone_).date();
}

QDateTime OTCalendar::startOf(const QDate &day) const {
    return day.startOfDay(zone_).toUTC();
}

QDate OTCalendar::weekStart(const QDate &day) const {
    const int back = (day.dayOfWeek() - int(firstWeekday()) + 7) % 7;
    return day.addDays(-back);
}

QDateTime OTCalendar::fromComponents(const OTDateComponents &c) const {
    const qint64 clockSeconds = qint64(c.hour) * 3600 + qint64(c.minute) * 60 + c.second;
    const qint64 extraDays = floorDiv(clockSeconds, secondsPerDay);
    const QDate day = firstOfMonth(c.year, c.month).addDays(qint64(c.day) - 1 + extraDays);
    const QTime time = QTime(0, 0).addSecs(int(clockSeconds - extraDays * secondsPerDay));
    const QDateTime local(day, time, zone_);
    if (local.isValid())
        return local.toUTC();
    // Skipped by a daylight saving change: read the wall clock with the offset that held
    // before the change, which lands the same distance past the gap.
    const QDateTime asUtc(day, time, Qt::UTC);
    const int offsetBefore = zone_.offsetFromUtc(asUtc.addSecs(-secondsPerDay));
    return asUtc.addSecs(-offsetBefore);
}
