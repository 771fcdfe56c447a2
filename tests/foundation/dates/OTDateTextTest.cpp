#include "DatesTestSupport.h"

#include "foundation/dates/OTDate.h"

TEST(OTDateText, HoursAndMinutes) {
    EXPECT_EQ(OTDate::secondsToHMString(0), "0:00");
    EXPECT_EQ(OTDate::secondsToHMString(59), "0:00");
    EXPECT_EQ(OTDate::secondsToHMString(3661), "1:01");
    EXPECT_EQ(OTDate::secondsToHMString(90000), "25:00");
    EXPECT_EQ(OTDate::secondsToHMString(360000 * 10), "1000:00");
    EXPECT_EQ(OTDate::secondsToHMStringWithSeconds(59), "0:00:59");
    EXPECT_EQ(OTDate::secondsToHMStringWithSeconds(3661), "1:01:01");
    // Parts truncate towards zero, so each part of a negative value carries the sign.
    EXPECT_EQ(OTDate::secondsToHMString(-3661), "-1:-01");

    EXPECT_EQ(OTDate::toSecondFromHours(2, 30), 9000);
    EXPECT_EQ(OTDate::parseHoursFromSeconds(9059), 2);
    EXPECT_EQ(OTDate::parseMinutesFromSeconds(9059), 30);
    EXPECT_EQ(OTDate::parseSecondsFromSeconds(9059), 59);
}

TEST(OTDateText, ReadableDurations) {
    EXPECT_EQ(OTDate::secondsToReadableString(0), "0 seconds");
    EXPECT_EQ(OTDate::secondsToReadableString(1), "1 second");
    EXPECT_EQ(OTDate::secondsToReadableString(59), "59 seconds");
    EXPECT_EQ(OTDate::secondsToReadableString(60), "1 minute 0 seconds");
    EXPECT_EQ(OTDate::secondsToReadableString(121), "2 minutes 1 second");
    EXPECT_EQ(OTDate::secondsToReadableString(3600), "1 hour 0 minutes");
    EXPECT_EQ(OTDate::secondsToReadableString(3661), "1 hour 1 minute");
    EXPECT_EQ(OTDate::secondsToReadableString(90061), "25 hours 1 minute");
    EXPECT_EQ(OTDate::secondsToReadableString(-1), "-1 seconds");
}

TEST(OTDateText, DayCounts) {
    EXPECT_EQ(OTDate::daysStr(0), "0 day");
    EXPECT_EQ(OTDate::daysStr(1), "1 day");
    EXPECT_EQ(OTDate::daysStr(-1), "1 day");
    EXPECT_EQ(OTDate::daysStr(11), "11 days");
    EXPECT_EQ(OTDate::daysStr(21), "21 days");
    EXPECT_EQ(OTDate::daysStr(-112), "112 days");
    EXPECT_EQ(OTDate::daysStr(3, "left"), "3 days left");

    const QTimeZone b = berlinZone();
    const OTCalendar de = berlinDe();
    const QDateTime evening = wall(b, 2024, 3, 30, 23);
    EXPECT_EQ(OTDate::daysStrFromDate(evening, wall(b, 2024, 3, 31, 1), de), "1 day left");
    EXPECT_EQ(OTDate::daysStrFromDate(evening, wall(b, 2024, 3, 30, 0, 5), de), "Today");
    EXPECT_EQ(OTDate::daysStrFromDate(evening, wall(b, 2024, 3, 28), de), "2 days overdue");
}

TEST(OTDateText, LocaleDateTextsInTheCalendarsZone) {
    // Late evening in New York is already the next day in Berlin.
    const QDateTime instant(QDate(2024, 1, 5), QTime(23, 30), Qt::UTC);
    EXPECT_EQ(OTDate::dateFormatter(instant, berlinDe()), "06.01.2024");
    EXPECT_EQ(OTDate::dateFormatterMediumStyle(instant, newYorkUs()), "Jan 5, 2024");
    EXPECT_EQ(OTDate::dateFromatterShortStyle(instant, berlinDe()), "06.01.24, 00:30");
    EXPECT_EQ(OTDate::fullDateFormatter(instant, berlinDe()), "6. Januar 2024 um 00:30:00");
    EXPECT_TRUE(OTDate::fullDateFormatter(instant, newYorkUs()).startsWith("January 5, 2024"));
    EXPECT_TRUE(OTDate::dateFormatter(QDateTime(), berlinDe()).isEmpty());
}
