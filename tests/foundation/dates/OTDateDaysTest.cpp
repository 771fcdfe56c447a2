#include "DatesTestSupport.h"

#include "foundation/dates/OTDate.h"
#include "foundation/dates/ScopedFixedClock.h"

TEST(OTDateDays, CalendarDaysAcrossDaylightSavingChanges) {
    const QTimeZone b = berlinZone();
    const OTCalendar de = berlinDe();
    // Spring: noon to noon is only 23 hours, autumn: 25 hours; both are one day.
    EXPECT_EQ(OTDate::daysFrom(wall(b, 2024, 3, 30, 12), wall(b, 2024, 3, 31, 12), de), 1);
    EXPECT_EQ(OTDate::daysFrom(wall(b, 2024, 10, 26, 23, 30), wall(b, 2024, 10, 27, 23, 30), de),
              1);
    EXPECT_EQ(OTDate::daysFrom(wall(b, 2024, 4, 1), wall(b, 2024, 3, 25), de), -7);
    // Two minutes over midnight is a day; almost 24 hours within one day is none.
    EXPECT_EQ(OTDate::daysFrom(wall(b, 2024, 3, 30, 23, 59), wall(b, 2024, 3, 31, 0, 1), de), 1);
    EXPECT_EQ(OTDate::daysFrom(wall(b, 2024, 10, 27, 0, 0), wall(b, 2024, 10, 27, 23, 59), de), 0);

    const QTimeZone ny = newYorkZone();
    const OTCalendar us = newYorkUs();
    EXPECT_EQ(OTDate::daysFrom(wall(ny, 2024, 3, 9, 12), wall(ny, 2024, 3, 11, 12), us), 2);
    EXPECT_EQ(OTDate::daysFrom(wall(ny, 2024, 11, 3, 0, 30), wall(ny, 2024, 11, 3, 23, 30), us), 0);
    // The same two instants are one day apart in Berlin and none in New York.
    EXPECT_EQ(OTDate::daysFrom(wall(ny, 2024, 5, 1, 12), wall(ny, 2024, 5, 1, 20), de), 1);
    EXPECT_EQ(OTDate::daysFrom(wall(ny, 2024, 5, 1, 12), wall(ny, 2024, 5, 1, 20), us), 0);
    EXPECT_EQ(OTDate::daysFrom(QDateTime(), wall(b, 2024, 1, 1), de), 0);

    ScopedFixedClock clock(wall(b, 2024, 10, 26, 23, 0));
    EXPECT_EQ(OTDate::daysFromToday(wall(b, 2024, 10, 27, 0, 30), de), 1);
    EXPECT_EQ(OTDate::daysFromToday(wall(b, 2024, 10, 25, 23, 59), de), -1);
}

TEST(OTDateDays, OneMonthOnAndBackLetTheCalendarCarryOver) {
    const QTimeZone b = berlinZone();
    const OTCalendar de = berlinDe();
    // February 30 carries over into March.
    EXPECT_EQ(OTDate::dateByAddingOneMonth(wall(b, 2023, 1, 31, 15), de), wall(b, 2023, 3, 2));
    EXPECT_EQ(OTDate::dateByAddingOneMonth(wall(b, 2024, 1, 31), de), wall(b, 2024, 3, 1));
    EXPECT_EQ(OTDate::dateByAddingOneMonth(wall(b, 2024, 1, 15), de), wall(b, 2024, 2, 14));
    EXPECT_EQ(OTDate::dateByAddingOneMonth(wall(b, 2024, 12, 20), de), wall(b, 2025, 1, 19));
    EXPECT_EQ(OTDate::dateBySubtractingOneMonth(wall(b, 2024, 2, 14), de), wall(b, 2024, 1, 15));
    EXPECT_EQ(OTDate::dateBySubtractingOneMonth(wall(b, 2024, 1, 10), de), wall(b, 2023, 12, 11));
    EXPECT_EQ(OTDate::dateBySubtractingOneMonth(wall(b, 2023, 3, 31), de), wall(b, 2023, 3, 4));
    EXPECT_FALSE(OTDate::dateByAddingOneMonth(QDateTime(), de).isValid());
}

TEST(OTDateDays, MidnightsOnDaysWithAClockChange) {
    const QTimeZone b = berlinZone();
    const OTCalendar de = berlinDe();
    const QDateTime afternoon = wall(b, 2024, 10, 27, 15);
    EXPECT_EQ(OTDate::startOfDayDate(afternoon, de),
              QDateTime(QDate(2024, 10, 26), QTime(22, 0), Qt::UTC));
    EXPECT_EQ(OTDate::dateToDayEnd(afternoon, de),
              QDateTime(QDate(2024, 10, 27), QTime(23, 0), Qt::UTC));
    EXPECT_FALSE(OTDate::startOfDayDate(QDateTime(), de).isValid());
    EXPECT_FALSE(OTDate::dateToDayEnd(QDateTime(), de).isValid());

    // Where the clock jumps over midnight the day begins at 01:00.
    const QTimeZone sp("America/Sao_Paulo");
    const OTCalendar brazil(sp, QLocale("pt_BR"));
    const QDateTime dayStart = OTDate::startOfDayDate(wall(sp, 2018, 11, 4, 12), brazil);
    EXPECT_EQ(dayStart.toTimeZone(sp).date(), QDate(2018, 11, 4));
    EXPECT_EQ(dayStart.toTimeZone(sp).time(), QTime(1, 0));

    ScopedFixedClock clock(wall(b, 2024, 3, 30, 12));
    EXPECT_EQ(OTDate::todayByAddingDays(0, de), wall(b, 2024, 3, 30));
    EXPECT_EQ(OTDate::todayByAddingDays(2, de), wall(b, 2024, 4, 1));
    EXPECT_EQ(OTDate::todayByAddingDays(-90, de), wall(b, 2023, 12, 31));
}

TEST(OTDateDays, ComponentsAreNormalisedByTheCalendar) {
    const QTimeZone b = berlinZone();
    const OTCalendar de = berlinDe();
    EXPECT_EQ(OTDate::dateFromComponents({2024, 0, 15}, de), wall(b, 2023, 12, 15));
    EXPECT_EQ(OTDate::dateFromComponents({2024, 14, 0}, de), wall(b, 2025, 1, 31));
    EXPECT_EQ(OTDate::dateFromComponents({2024, 1, 1, 25, 0, 0}, de), wall(b, 2024, 1, 2, 1));
    // 02:30 does not exist on that day and lands past the gap.
    EXPECT_EQ(OTDate::dateFromComponents({2024, 3, 31, 2, 30, 0}, de), wall(b, 2024, 3, 31, 3, 30));
}

TEST(OTDateDays, WholeSecondsTruncateTowardsZero) {
    const QDateTime t(QDate(2024, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_EQ(OTDate::secondsFromDate(t, t.addMSecs(1999)), 1);
    EXPECT_EQ(OTDate::secondsFromDate(t.addMSecs(1999), t), -1);
    EXPECT_EQ(OTDate::secondsFromDate(QDateTime(), t), 0);
}
