#pragma once

#include "foundation/dates/OTCalendar.h"
#include "foundation/dates/OTDateComponents.h"

#include <QDateTime>
#include <QString>
#include <QVariantMap>

// Calendar work of the program: named report periods, whole-day differences, hours and
// minutes from seconds, and the texts for them. Every operation that depends on the
// zone or the locale takes a calendar, by default the user's current one; "now" comes
// from OTClock. Instants are answered in UTC; a null (invalid) date is accepted anywhere.
class OTDate {
public:
    // Named periods by index, 0 to 11; the word is empty for any other index.
    static QString datePeriodString(int index);
    // The range of the period with that index as {"start", "end"}; empty for "Custom
    // Date" and unknown indexes. Each end is the first moment after the period.
    static QVariantMap periodRange(int index, const OTCalendar &calendar = OTCalendar());

    static QVariantMap lastYear(const OTCalendar &calendar = OTCalendar());
    static QVariantMap lastMonth(const OTCalendar &calendar = OTCalendar());
    static QVariantMap lastWeek(const OTCalendar &calendar = OTCalendar());
    static QVariantMap yesterday(const OTCalendar &calendar = OTCalendar());
    static QVariantMap today(const OTCalendar &calendar = OTCalendar());
    static QVariantMap thisWeek(const OTCalendar &calendar = OTCalendar());
    static QVariantMap thisMonth(const OTCalendar &calendar = OTCalendar());
    static QVariantMap thisYear(const OTCalendar &calendar = OTCalendar());
    static QVariantMap nextWeek(const OTCalendar &calendar = OTCalendar());
    static QVariantMap nextMonth(const OTCalendar &calendar = OTCalendar());
    static QVariantMap nextYear(const OTCalendar &calendar = OTCalendar());

    static QDateTime lastYearStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime lastYearEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime lastMonthStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime lastMonthEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime lastWeekStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime lastWeekEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime yesterdayStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime yesterdayEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime todayStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime todayEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime thisWeekStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime thisWeekEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime thisMonthStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime thisMonthEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime thisYearStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime thisYearEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime nextWeekStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime nextWeekEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime nextMonthStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime nextMonthEndDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime nextYearStartDate(const OTCalendar &calendar = OTCalendar());
    static QDateTime nextYearEndDate(const OTCalendar &calendar = OTCalendar());

    // Day arithmetic; each answers midnight of the day it reaches.
    static QDateTime todayByAddingDays(int days, const OTCalendar &calendar = OTCalendar());
    static QDateTime dateFromComponents(const OTDateComponents &components,
                                        const OTCalendar &calendar = OTCalendar());
    static QDateTime startOfDayDate(const QDateTime &date,
                                    const OTCalendar &calendar = OTCalendar());
    static QDateTime dateByAddingOneMonth(const QDateTime &date,
                                          const OTCalendar &calendar = OTCalendar());
    static QDateTime dateBySubtractingOneMonth(const QDateTime &date,
                                               const OTCalendar &calendar = OTCalendar());
    static QDateTime dateToDayEnd(const QDateTime &date, const OTCalendar &calendar = OTCalendar());

    // Signed count of calendar days, 0 on the same day whatever the hours; 0 if either
    // date is null.
    static int daysFrom(const QDateTime &from, const QDateTime &to,
                        const OTCalendar &calendar = OTCalendar());
    static int daysFromToday(const QDateTime &date, const OTCalendar &calendar = OTCalendar());
    // Whole seconds, truncated towards zero; 0 if either date is null.
    static qint64 secondsFromDate(const QDateTime &from, const QDateTime &toDate);

    static qint64 toSecondFromHours(qint64 hours, qint64 minutes);
    static qint64 parseHoursFromSeconds(qint64 seconds);
    static qint64 parseMinutesFromSeconds(qint64 seconds);
    static qint64 parseSecondsFromSeconds(qint64 seconds);

    static QString secondsToHMString(qint64 seconds);
    static QString secondsToHMStringWithSeconds(qint64 seconds);
    static QString secondsToReadableString(qint64 seconds);

    static QString daysStr(int days);
    static QString daysStr(int days, const QString &withSuffix);
    static QString daysStrFromDate(const QDateTime &from, const QDateTime &toDate,
                                   const OTCalendar &calendar = OTCalendar());

    // Locale texts of a date; the empty text for a null date.
    static QString dateFormatterMediumStyle(const QDateTime &date,
                                            const OTCalendar &calendar = OTCalendar());
    static QString dateFormatter(const QDateTime &date, const OTCalendar &calendar = OTCalendar());
    static QString fullDateFormatter(const QDateTime &date,
                                     const OTCalendar &calendar = OTCalendar());
    static QString dateFromatterShortStyle(const QDateTime &date,
                                           const OTCalendar &calendar = OTCalendar());

private:
    OTDate() = delete;
};
