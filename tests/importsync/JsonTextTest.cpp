#include "importsync/json/JsonText.h"

#include <QDateTime>

#include <gtest/gtest.h>

TEST(JsonTextTest, DatesRoundTripExactlyAndOffsetsBecomeUtc) {
    for (const char *text :
         {"2026-11-22T06:11:05.329Z", "1969-12-31T23:59:59.999Z", "0001-01-01T00:00:00.000Z",
          "2024-02-29T12:00:00.000Z", "9999-12-31T23:59:59.999Z", "1901-06-15T00:00:00.001Z"}) {
        const auto date = JsonText::parseDate(QString::fromLatin1(text));
        ASSERT_TRUE(date) << text;
        EXPECT_EQ(JsonText::dateText(*date), QString::fromLatin1(text));
        EXPECT_EQ(*date, QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs));
    }
    // An offset names the same instant; fractions of one or two digits are tenths and
    // hundredths.
    EXPECT_EQ(JsonText::dateText(*JsonText::parseDate(QStringLiteral("2026-01-01T01:30:00+02:00"))),
              QStringLiteral("2025-12-31T23:30:00.000Z"));
    EXPECT_EQ(
        JsonText::dateText(*JsonText::parseDate(QStringLiteral("2026-01-01T00:00:00.5-05:30"))),
        QStringLiteral("2026-01-01T05:30:00.500Z"));
    EXPECT_EQ(JsonText::dateText(*JsonText::parseDate(QStringLiteral("2026-01-01T00:00:00.07Z"))),
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
        EXPECT_FALSE(JsonText::parseDate(QString::fromUtf8(bad))) << bad;
}
