#include "importsync/json/JsonText.h"

#include <QDate>
#include <QDateTime>

#include <gtest/gtest.h>

#include <utility>

TEST(JsonTextTest, DatesRoundTripExactlyAndOffsetsBecomeUtc) {
    for (const char *text :
         {"2026-11-22T06:11:05.329Z", "1969-12-31T23:59:59.999Z", "0001-01-01T00:00:00.000Z",
          "2024-02-29T12:00:00.000Z", "9999-12-31T23:59:59.999Z", "1901-06-15T00:00:00.001Z"}) {
        const auto date = JsonText::parseDate(text);
        ASSERT_TRUE(date) << text;
        EXPECT_EQ(JsonText::dateText(*date), QString::fromLatin1(text));
        EXPECT_EQ(*date, QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs));
    }
    // An offset names the same instant; fractions of one or two digits are tenths and
    // hundredths.
    EXPECT_EQ(JsonText::dateText(*JsonText::parseDate("2026-01-01T01:30:00+02:00")),
              QStringLiteral("2025-12-31T23:30:00.000Z"));
    EXPECT_EQ(JsonText::dateText(*JsonText::parseDate("2026-01-01T00:00:00.5-05:30")),
              QStringLiteral("2026-01-01T05:30:00.500Z"));
    EXPECT_EQ(JsonText::dateText(*JsonText::parseDate("2026-01-01T00:00:00.07Z")),
              QStringLiteral("2026-01-01T00:00:00.070Z"));
    // A local time of day is written as its UTC instant.
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::LocalTime);
    EXPECT_EQ(JsonText::dateText(local), QStringLiteral("2023-11-14T22:13:20.123Z"));

    for (const char *bad :
         {"", "2026-02-30T00:00:00Z", "2026-13-01T00:00:00Z", "2026-01-01T24:00:00Z",
          "2026-01-01T00:60:00Z", "2026-01-01 00:00:00Z", "2026-01-01T00:00:00",
          "2026-01-01T00:00:00.1234Z", "2026-01-01T00:00:00.Z", "2026-01-01T00:00:00Zjunk",
          "2026-01-01T00:00:00+0200", "2026-1-01T00:00:00Z", "２026-01-01T00:00:00Z",
          "2026-01-01T00:00:00+24:00"})
        EXPECT_FALSE(JsonText::parseDate(bad)) << bad;
}

TEST(JsonTextTest, EveryDayIsCountedAsTheCalendarCountsIt) {
    // Leap rules of centuries, the first years and the last ones.
    for (const auto &[from, to] : {std::pair{QDate(1, 1, 1), QDate(5, 3, 1)},
                                   std::pair{QDate(1599, 12, 1), QDate(1601, 3, 1)},
                                   std::pair{QDate(1699, 12, 1), QDate(1701, 3, 1)},
                                   std::pair{QDate(1899, 12, 1), QDate(2101, 3, 1)},
                                   std::pair{QDate(9998, 1, 1), QDate(9999, 12, 31)}}) {
        for (QDate day = from; day <= to; day = day.addDays(1)) {
            const QByteArray text = day.toString(Qt::ISODate).toLatin1() + "T00:00:00Z";
            const auto parsed = JsonText::parseDate(text.toStdString());
            ASSERT_TRUE(parsed) << text.constData();
            ASSERT_EQ(parsed->date(), day) << text.constData();
        }
    }
    for (const char *bad : {"0000-01-01T00:00:00Z", "1900-02-29T00:00:00Z", "2100-02-29T00:00:00Z",
                            "2023-04-31T00:00:00Z", "2023-00-10T00:00:00Z", "2023-01-00T00:00:00Z"})
        EXPECT_FALSE(JsonText::parseDate(bad)) << bad;
}

TEST(JsonTextTest, OnlyWellFormedUtf8Passes) {
    for (const char *good : {"", "plain ASCII text of some length", "Zo\xc3\xab \xe2\x9c\x93",
                             "\xf0\x9d\x84\x9e", "\xf4\x8f\xbf\xbf", "\xed\x9f\xbf"})
        EXPECT_EQ(JsonText::invalidUtf8At(good), -1) << good;
    const struct {
        QByteArray text;
        qsizetype at;
    } bad[] = {
        {"0123456789\x80", 10},          // a lone continuation byte after a long ASCII run
        {"ab\xc0\xaf", 2},               // overlong
        {"\xe0\x80\xaf", 0},             // overlong
        {"x\xed\xa0\x80", 1},            // a surrogate
        {"\xf4\x90\x80\x80", 0},         // above U+10FFFF
        {"\xc3", 0},                     // cut short
        {"\xe2\x9c", 0},                 // cut short
        {"\xe2\x9c\x93\xe2\x28\x93", 3}, // a second byte that is no continuation
        {"\xff", 0},
    };
    for (const auto &c : bad)
        EXPECT_EQ(JsonText::invalidUtf8At(c.text), c.at) << c.text.toHex().constData();
}
