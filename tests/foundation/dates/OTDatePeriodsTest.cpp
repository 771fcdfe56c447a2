#include "DatesTestSupport.h"

#include "foundation/dates/OTClock.h"
#include "foundation/dates/OTDate.h"
#include "foundation/dates/ScopedFixedClock.h"

namespace {

QDateTime startOf(const QVariantMap &range) {
    return range.value("start").toDateTime();
}
QDateTime endOf(const QVariantMap &range) {
    return range.value("end").toDateTime();
}

} // namespace

TEST(OTDatePeriods, MonthAndYearChangeAtTheTurnOfTheYear) {
    const QTimeZone z = berlinZone();
    const OTCalendar cal = berlinDe();
    ScopedFixedClock clock(wall(z, 2024, 1, 15, 10, 0));

    EXPECT_EQ(startOf(OTDate::lastMonth(cal)), wall(z, 2023, 12, 1));
    EXPECT_EQ(endOf(OTDate::lastMonth(cal)), wall(z, 2024, 1, 1));
    EXPECT_EQ(startOf(OTDate::lastYear(cal)), wall(z, 2023, 1, 1));
    EXPECT_EQ(endOf(OTDate::lastYear(cal)), wall(z, 2024, 1, 1));
    EXPECT_EQ(OTDate::nextMonthEndDate(cal), wall(z, 2024, 3, 1));

    clock.set(wall(z, 2023, 12, 31, 23, 30));
    EXPECT_EQ(startOf(OTDate::nextMonth(cal)), wall(z, 2024, 1, 1));
    EXPECT_EQ(endOf(OTDate::nextMonth(cal)), wall(z, 2024, 2, 1));
    EXPECT_EQ(endOf(OTDate::nextYear(cal)), wall(z, 2025, 1, 1));
    EXPECT_EQ(endOf(OTDate::today(cal)), wall(z, 2024, 1, 1));
}

TEST(OTDatePeriods, TheZoneDecidesWhichDayNowIs) {
    // 03:00 UTC on New Year's Day is still the old year in New York.
    ScopedFixedClock clock(QDateTime(QDate(2024, 1, 1), QTime(3, 0), Qt::UTC));
    EXPECT_EQ(OTDate::thisYearStartDate(berlinDe()), wall(berlinZone(), 2024, 1, 1));
    EXPECT_EQ(OTDate::thisYearStartDate(newYorkUs()), wall(newYorkZone(), 2023, 1, 1));
    EXPECT_EQ(OTDate::yesterdayStartDate(newYorkUs()), wall(newYorkZone(), 2023, 12, 30));
}

TEST(OTDatePeriods, WeekBoundsFollowTheLocaleFirstWeekdayAcrossTheYear) {
    const QTimeZone z = berlinZone();
    const OTCalendar us(z, QLocale("en_US")); // weeks begin on Sunday
    const OTCalendar de(z, QLocale("de_DE")); // weeks begin on Monday
    ASSERT_EQ(us.firstWeekday(), Qt::Sunday);
    ASSERT_EQ(de.firstWeekday(), Qt::Monday);

    ScopedFixedClock clock(wall(z, 2025, 1, 1, 9, 0)); // a Wednesday
    EXPECT_EQ(startOf(OTDate::thisWeek(us)), wall(z, 2024, 12, 29));
    EXPECT_EQ(endOf(OTDate::thisWeek(us)), wall(z, 2025, 1, 5));
    EXPECT_EQ(startOf(OTDate::thisWeek(de)), wall(z, 2024, 12, 30));
    EXPECT_EQ(endOf(OTDate::thisWeek(de)), wall(z, 2025, 1, 6));
    EXPECT_EQ(OTDate::lastWeekStartDate(de), wall(z, 2024, 12, 23));
    EXPECT_EQ(OTDate::nextWeekEndDate(us), wall(z, 2025, 1, 12));

    // On a Sunday the two locales put "now" in different weeks.
    clock.set(wall(z, 2024, 12, 29, 18, 0));
    EXPECT_EQ(OTDate::thisWeekStartDate(us), wall(z, 2024, 12, 29));
    EXPECT_EQ(OTDate::thisWeekStartDate(de), wall(z, 2024, 12, 23));
    EXPECT_EQ(OTDate::thisWeekEndDate(de), wall(z, 2024, 12, 30));
}

TEST(OTDatePeriods, BoundsStayAtMidnightOverDaylightSavingChanges) {
    const QTimeZone z = berlinZone();
    ScopedFixedClock clock(wall(z, 2024, 3, 31, 12, 0)); // clocks went forward at 02:00
    const QVariantMap today = OTDate::today(berlinDe());
    EXPECT_EQ(startOf(today).secsTo(endOf(today)), 23 * 3600);
    EXPECT_EQ(OTDate::thisWeekEndDate(berlinDe()), wall(z, 2024, 4, 1));
    EXPECT_EQ(OTDate::thisWeekEndDate(berlinDe()).toTimeZone(z).time(), QTime(0, 0));

    const QTimeZone ny = newYorkZone();
    clock.set(wall(ny, 2024, 11, 3, 22, 0)); // clocks went back at 02:00
    const QVariantMap nyToday = OTDate::today(newYorkUs());
    EXPECT_EQ(startOf(nyToday).secsTo(endOf(nyToday)), 25 * 3600);
    EXPECT_EQ(OTDate::lastWeekStartDate(newYorkUs()), wall(ny, 2024, 10, 27));
}

TEST(OTDatePeriods, WordsAndRangesByIndex) {
    ScopedFixedClock clock(wall(berlinZone(), 2024, 6, 15, 12, 0));
    const OTCalendar cal = berlinDe();
    EXPECT_EQ(OTDate::datePeriodString(0), "Custom Date");
    EXPECT_EQ(OTDate::datePeriodString(2), "Last Month");
    EXPECT_EQ(OTDate::datePeriodString(11), "Next Year");
    EXPECT_TRUE(OTDate::datePeriodString(-1).isEmpty());
    EXPECT_TRUE(OTDate::datePeriodString(12).isEmpty());
    EXPECT_TRUE(OTDate::periodRange(0, cal).isEmpty());
    EXPECT_TRUE(OTDate::periodRange(12, cal).isEmpty());

    EXPECT_EQ(OTDate::periodRange(3, cal), OTDate::lastWeek(cal));
    EXPECT_EQ(OTDate::periodRange(10, cal), OTDate::nextMonth(cal));
    // Each end is the first moment of the following period, not the last of its own.
    EXPECT_EQ(OTDate::thisMonthEndDate(cal), OTDate::nextMonthStartDate(cal));
    EXPECT_EQ(OTDate::yesterdayEndDate(cal), OTDate::todayStartDate(cal));
    EXPECT_EQ(OTDate::thisYearEndDate(cal), OTDate::nextYearStartDate(cal));
}

TEST(OTClockTest, FixedClockIsRestoredAndNestsAndMoves) {
    const QDateTime a(QDate(2020, 2, 29), QTime(12, 0), Qt::UTC);
    {
        ScopedFixedClock outer(a);
        {
            ScopedFixedClock inner(a.addDays(1));
            EXPECT_EQ(OTClock::now(), a.addDays(1));
        }
        EXPECT_EQ(OTClock::now(), a);
        outer.advance(20);
        EXPECT_EQ(OTClock::now(), a.addSecs(20));
    }
    EXPECT_LT(qAbs(OTClock::now().secsTo(QDateTime::currentDateTimeUtc())), 5);
}
