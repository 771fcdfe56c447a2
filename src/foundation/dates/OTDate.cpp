#include "foundation/dates/OTDate.h"

#include "foundation/dates/OTClock.h"
#include "foundation/dates/OTDateStyleFormatter.h"

#include <QCoreApplication>

#include <cstdlib>
#include <iterator>

namespace {

enum class Unit { None, Year, Month, Week, Day };

struct Period {
    const char *word;
    Unit unit;
    int shift; // of the start from the current year, month, week or day
};

// By index; the end of each period is the start of the one shifted by one more.
constexpr Period periods[] = {
    {QT_TRANSLATE_NOOP("OTDate", "Custom Date"), Unit::None, 0},
    {QT_TRANSLATE_NOOP("OTDate", "Last Year"), Unit::Year, -1},
    {QT_TRANSLATE_NOOP("OTDate", "Last Month"), Unit::Month, -1},
    {QT_TRANSLATE_NOOP("OTDate", "Last Week"), Unit::Week, -1},
    {QT_TRANSLATE_NOOP("OTDate", "Yesterday"), Unit::Day, -1},
    {QT_TRANSLATE_NOOP("OTDate", "Today"), Unit::Day, 0},
    {QT_TRANSLATE_NOOP("OTDate", "This Week"), Unit::Week, 0},
    {QT_TRANSLATE_NOOP("OTDate", "This Month"), Unit::Month, 0},
    {QT_TRANSLATE_NOOP("OTDate", "This Year"), Unit::Year, 0},
    {QT_TRANSLATE_NOOP("OTDate", "Next Week"), Unit::Week, 1},
    {QT_TRANSLATE_NOOP("OTDate", "Next Month"), Unit::Month, 1},
    {QT_TRANSLATE_NOOP("OTDate", "Next Year"), Unit::Year, 1},
};
constexpr int periodCount = int(std::size(periods));

enum PeriodIndex {
    LastYear = 1,
    LastMonth,
    LastWeek,
    Yesterday,
    Today,
    ThisWeek,
    ThisMonth,
    ThisYear,
    NextWeek,
    NextMonth,
    NextYear
};

QString tr(const char *text, const char *disambiguation = nullptr) {
    return QCoreApplication::translate("OTDate", text, disambiguation);
}

QDate shiftedDay(Unit unit, int shift, const OTCalendar &calendar) {
    const QDate today = calendar.dateOf(OTClock::now());
    switch (unit) {
    case Unit::Year:
        return QDate(today.year(), 1, 1).addYears(shift);
    case Unit::Month:
        return QDate(today.year(), today.month(), 1).addMonths(shift);
    case Unit::Week:
        return calendar.weekStart(today).addDays(7 * qint64(shift));
    case Unit::Day:
        return today.addDays(shift);
    case Unit::None:
        break;
    }
    return QDate();
}

QDateTime bound(int index, bool end, const OTCalendar &calendar) {
    const Period &period = periods[index];
    return calendar.startOf(shiftedDay(period.unit, period.shift + (end ? 1 : 0), calendar));
}

QVariantMap range(int index, const OTCalendar &calendar) {
    return {{QStringLiteral("start"), bound(index, false, calendar)},
            {QStringLiteral("end"), bound(index, true, calendar)}};
}

OTDateComponents dayComponents(const QDateTime &date, const OTCalendar &calendar) {
    const QDate day = calendar.dateOf(date);
    return {day.year(), day.month(), day.day()};
}

} // namespace

QString OTDate::datePeriodString(int index) {
    if (index < 0 || index >= periodCount)
        return QString();
    return tr(periods[index].word);
}

QVariantMap OTDate::periodRange(int index, const OTCalendar &calendar) {
    if (index < LastYear || index >= periodCount)
        return {};
    return range(index, calendar);
}

QVariantMap OTDate::lastYear(const OTCalendar &c) {
    return range(LastYear, c);
}
QVariantMap OTDate::lastMonth(const OTCalendar &c) {
    return range(LastMonth, c);
}
QVariantMap OTDate::lastWeek(const OTCalendar &c) {
    return range(LastWeek, c);
}
QVariantMap OTDate::yesterday(const OTCalendar &c) {
    return range(Yesterday, c);
}
QVariantMap OTDate::today(const OTCalendar &c) {
    return range(Today, c);
}
QVariantMap OTDate::thisWeek(const OTCalendar &c) {
    return range(ThisWeek, c);
}
QVariantMap OTDate::thisMonth(const OTCalendar &c) {
    return range(ThisMonth, c);
}
QVariantMap OTDate::thisYear(const OTCalendar &c) {
    return range(ThisYear, c);
}
QVariantMap OTDate::nextWeek(const OTCalendar &c) {
    return range(NextWeek, c);
}
QVariantMap OTDate::nextMonth(const OTCalendar &c) {
    return range(NextMonth, c);
}
QVariantMap OTDate::nextYear(const OTCalendar &c) {
    return range(NextYear, c);
}

QDateTime OTDate::lastYearStartDate(const OTCalendar &c) {
    return bound(LastYear, false, c);
}
QDateTime OTDate::lastYearEndDate(const OTCalendar &c) {
    return bound(LastYear, true, c);
}
QDateTime OTDate::lastMonthStartDate(const OTCalendar &c) {
    return bound(LastMonth, false, c);
}
QDateTime OTDate::lastMonthEndDate(const OTCalendar &c) {
    return bound(LastMonth, true, c);
}
QDateTime OTDate::lastWeekStartDate(const OTCalendar &c) {
    return bound(LastWeek, false, c);
}
QDateTime OTDate::lastWeekEndDate(const OTCalendar &c) {
    return bound(LastWeek, true, c);
}
QDateTime OTDate::yesterdayStartDate(const OTCalendar &c) {
    return bound(Yesterday, false, c);
}
QDateTime OTDate::yesterdayEndDate(const OTCalendar &c) {
    return bound(Yesterday, true, c);
}
QDateTime OTDate::todayStartDate(const OTCalendar &c) {
    return bound(Today, false, c);
}
QDateTime OTDate::todayEndDate(const OTCalendar &c) {
    return bound(Today, true, c);
}
QDateTime OTDate::thisWeekStartDate(const OTCalendar &c) {
    return bound(ThisWeek, false, c);
}
QDateTime OTDate::thisWeekEndDate(const OTCalendar &c) {
    return bound(ThisWeek, true, c);
}
QDateTime OTDate::thisMonthStartDate(const OTCalendar &c) {
    return bound(ThisMonth, false, c);
}
QDateTime OTDate::thisMonthEndDate(const OTCalendar &c) {
    return bound(ThisMonth, true, c);
}
QDateTime OTDate::thisYearStartDate(const OTCalendar &c) {
    return bound(ThisYear, false, c);
}
QDateTime OTDate::thisYearEndDate(const OTCalendar &c) {
    return bound(ThisYear, true, c);
}
QDateTime OTDate::nextWeekStartDate(const OTCalendar &c) {
    return bound(NextWeek, false, c);
}
QDateTime OTDate::nextWeekEndDate(const OTCalendar &c) {
    return bound(NextWeek, true, c);
}
QDateTime OTDate::nextMonthStartDate(const OTCalendar &c) {
    return bound(NextMonth, false, c);
}
QDateTime OTDate::nextMonthEndDate(const OTCalendar &c) {
    return bound(NextMonth, true, c);
}
QDateTime OTDate::nextYearStartDate(const OTCalendar &c) {
    return bound(NextYear, false, c);
}
QDateTime OTDate::nextYearEndDate(const OTCalendar &c) {
    return bound(NextYear, true, c);
}

QDateTime OTDate::todayByAddingDays(int days, const OTCalendar &calendar) {
    return calendar.startOf(calendar.dateOf(OTClock::now()).addDays(days));
}

QDateTime OTDate::dateFromComponents(const OTDateComponents &components,
                                     const OTCalendar &calendar) {
    return calendar.fromComponents(components);
}

QDateTime OTDate::startOfDayDate(const QDateTime &date, const OTCalendar &calendar) {
    if (!date.isValid())
        return QDateTime();
    return calendar.startOf(calendar.dateOf(date));
}

// Built from fields and left to the calendar to carry over, so January 31 gives
// February 30, which is March 2 (or March 1 in a leap year).
QDateTime OTDate::dateByAddingOneMonth(const QDateTime &date, const OTCalendar &calendar) {
    if (!date.isValid())
        return QDateTime();
    OTDateComponents fields = dayComponents(date, calendar);
    fields.month += 1;
    fields.day -= 1;
    return calendar.fromComponents(fields);
}

QDateTime OTDate::dateBySubtractingOneMonth(const QDateTime &date, const OTCalendar &calendar) {
    if (!date.isValid())
        return QDateTime();
    OTDateComponents fields = dayComponents(date, calendar);
    fields.month -= 1;
    fields.day += 1;
    return calendar.fromComponents(fields);
}

QDateTime OTDate::dateToDayEnd(const QDateTime &date, const OTCalendar &calendar) {
    if (!date.isValid())
        return QDateTime();
    return calendar.startOf(calendar.dateOf(date).addDays(1));
}

int OTDate::daysFrom(const QDateTime &from, const QDateTime &to, const OTCalendar &calendar) {
    if (!from.isValid() || !to.isValid())
        return 0;
    // Whole calendar days, not multiples of 24 hours: a day of 23 or 25 hours counts as one.
    return int(calendar.dateOf(from).daysTo(calendar.dateOf(to)));
}

int OTDate::daysFromToday(const QDateTime &date, const OTCalendar &calendar) {
    return daysFrom(OTClock::now(), date, calendar);
}

qint64 OTDate::secondsFromDate(const QDateTime &from, const QDateTime &toDate) {
    if (!from.isValid() || !toDate.isValid())
        return 0;
    return from.msecsTo(toDate) / 1000;
}

qint64 OTDate::toSecondFromHours(qint64 hours, qint64 minutes) {
    return hours * 3600 + minutes * 60;
}
qint64 OTDate::parseHoursFromSeconds(qint64 seconds) {
    return seconds / 3600;
}
qint64 OTDate::parseMinutesFromSeconds(qint64 seconds) {
    return seconds % 3600 / 60;
}
qint64 OTDate::parseSecondsFromSeconds(qint64 seconds) {
    return seconds % 60;
}

QString OTDate::secondsToHMString(qint64 seconds) {
    return QString::asprintf("%lld:%.2lld", parseHoursFromSeconds(seconds),
                             parseMinutesFromSeconds(seconds));
}

QString OTDate::secondsToHMStringWithSeconds(qint64 seconds) {
    return QString::asprintf("%lld:%.2lld:%.2lld", parseHoursFromSeconds(seconds),
                             parseMinutesFromSeconds(seconds), parseSecondsFromSeconds(seconds));
}

QString OTDate::secondsToReadableString(qint64 seconds) {
    const qint64 h = parseHoursFromSeconds(seconds);
    const qint64 m = parseMinutesFromSeconds(seconds);
    const qint64 s = parseSecondsFromSeconds(seconds);
    const auto word = [](qint64 n, const char *one, const char *many) {
        return n == 1 ? tr(one) : tr(many);
    };
    const QString pair = QStringLiteral("%1 %2 %3 %4");
    if (h >= 1)
        return pair.arg(h).arg(word(h, "hour", "hours")).arg(m).arg(word(m, "minute", "minutes"));
    if (m >= 1)
        return pair.arg(m)
            .arg(word(m, "minute", "minutes"))
            .arg(s)
            .arg(word(s, "second", "seconds"));
    return QStringLiteral("%1 %2").arg(s).arg(word(s, "second", "seconds"));
}

QString OTDate::daysStr(int days) {
    const int n = std::abs(days);
    QString word;
    // The English words coincide, but languages with more plural forms tell these
    // cases apart, so each branch has its own translation.
    if (n == 0 || n == 1)
        word = tr("day");
    else if (n % 10 == 1 && n % 100 != 11)
        word = tr("days", "count ending in 1");
    else if (n % 100 >= 11 && n % 100 <= 19)
        word = tr("days", "count in the teens");
    else
        word = tr("days");
    return QString::asprintf("%i ", n) + word;
}

QString OTDate::daysStr(int days, const QString &withSuffix) {
    return daysStr(days) + QLatin1Char(' ') + withSuffix;
}

QString OTDate::daysStrFromDate(const QDateTime &from, const QDateTime &toDate,
                                const OTCalendar &calendar) {
    const int n = daysFrom(from, toDate, calendar);
    if (n >= 1)
        return daysStr(n, tr("left"));
    if (n == 0)
        return tr("Today");
    return daysStr(n, tr("overdue"));
}

QString OTDate::dateFormatterMediumStyle(const QDateTime &date, const OTCalendar &calendar) {
    return OTDateStyleFormatter::format(date, OTDateStyleFormatter::Medium,
                                        OTDateStyleFormatter::None, calendar);
}

QString OTDate::dateFormatter(const QDateTime &date, const OTCalendar &calendar) {
    return dateFormatterMediumStyle(date, calendar);
}

QString OTDate::fullDateFormatter(const QDateTime &date, const OTCalendar &calendar) {
    return OTDateStyleFormatter::format(date, OTDateStyleFormatter::Long,
                                        OTDateStyleFormatter::Medium, calendar);
}

QString OTDate::dateFromatterShortStyle(const QDateTime &date, const OTCalendar &calendar) {
    return OTDateStyleFormatter::format(date, OTDateStyleFormatter::Short,
                                        OTDateStyleFormatter::Short, calendar);
}
