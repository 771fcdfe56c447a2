#include "importsync/json/JsonText.h"

#include <QDate>
#include <QDateTime>

#include <gtest/gtest.h>

#include <utility>

TEST(JsonTextTest, DatesRoundTripExactlyAndOffsetsBecomeUtc) {
    for (const char *text :
         {"2026-11-22T06:11:05.329Z", "1969-12-31T23:59:59.999Z", "0001-01-01T00:00:00.000Z",
          "2024-02-29T12:00:00.000Z", "9999-12-31T23:59:59.999Z", "1901-06-15T00:00:00.001Z"}) {
        auto date = JsonText::parseDate(text);
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
            auto parsed = JsonText::parseDate(text.toStdString());
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

TEST(JsonTextTest, OffsetsCannotCarryADateOutOfTheFourDigitYears) {
    const struct {
        const char *text;
        const char *utc; // nullptr: refused
    } cases[] = {
        {"0001-01-01T00:00:00-14:00", "0001-01-01T14:00:00.000Z"},
        {"0001-01-01T14:00:00+14:00", "0001-01-01T00:00:00.000Z"},
        {"0001-01-01T13:59:59.999+14:00", nullptr},
        {"0001-01-01T00:00:00+14:00", nullptr},
        {"0001-01-01T00:00:00.000+00:01", nullptr},
        {"9999-12-31T23:59:59.999+14:00", "9999-12-31T09:59:59.999Z"},
        {"9999-12-31T23:59:59.999Z", "9999-12-31T23:59:59.999Z"},
        {"9999-12-31T23:59:59-12:00", nullptr},
        {"9999-12-31T23:59:59.999-00:01", nullptr},
    };
    for (const auto &c : cases) {
        auto date = JsonText::parseDate(c.text);
        if (!c.utc) {
            ASSERT_FALSE(date) << c.text;
            EXPECT_EQ(date.error().message,
                      QStringLiteral("\"%1\" lies outside the years 0001 to 9999 in UTC")
                          .arg(QLatin1String(c.text)));
            continue;
        }
        ASSERT_TRUE(date) << c.text;
        EXPECT_TRUE(JsonText::isDateInRange(*date));
        EXPECT_EQ(JsonText::dateText(*date), QLatin1String(c.utc));
    }
    const QDateTime first(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);
    const QDateTime last(QDate(9999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC);
    EXPECT_TRUE(JsonText::isDateInRange(first) && JsonText::isDateInRange(last));
    EXPECT_FALSE(JsonText::isDateInRange(first.addMSecs(-1)));
    EXPECT_FALSE(JsonText::isDateInRange(last.addMSecs(1)));
    EXPECT_FALSE(JsonText::isDateInRange(QDateTime()));
}

TEST(JsonTextTest, DecimalsKeepTheirDigitsWithinTheRangeOrAreRefused) {
    const std::string finest = "-0." + std::string(127, '0') + "1";
    auto parsed = JsonText::parseDecimal(finest);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->toString().toStdString(), finest);
    const std::string nines(38, '9');
    EXPECT_EQ(JsonText::parseDecimal(nines)->toString().toStdString(), nines);
    // Zeros ending a fraction add no digit and no place.
    EXPECT_EQ(JsonText::parseDecimal("1." + std::string(300, '0'))->toString(), "1");

    const struct {
        std::string text;
        const char *reason;
    } refused[] = {
        {"0." + std::string(128, '0') + "1", "past the 128th decimal place"},
        {"1" + nines, "more than 38 significant digits"},
        {nines + ".5", "more than 38 significant digits"},
        {"1e38", "is not a decimal number"},
    };
    for (const auto &r : refused) {
        const auto result = JsonText::parseDecimal(r.text);
        ASSERT_FALSE(result) << r.text;
        EXPECT_TRUE(result.error().message.contains(QLatin1String(r.reason)))
            << result.error().message.toStdString();
        EXPECT_LT(result.error().message.size(), 200) << "the value is cut short";
    }
}

TEST(JsonTextTest, ExcerptsQuoteAndCutLongValues) {
    EXPECT_EQ(JsonText::excerpt("Client/1"), QStringLiteral("\"Client/1\""));
    EXPECT_EQ(JsonText::excerpt("say \"hi\"\n"), QStringLiteral("\"say \\\"hi\\\"\\n\""));
    EXPECT_EQ(JsonText::excerpt(""), QStringLiteral("\"\""));
    const std::string exact(JsonText::kExcerptLength, 'x');
    EXPECT_EQ(JsonText::excerpt(exact), u'"' + QString::fromStdString(exact) + u'"');
    const std::string huge(50'000'000, 'k');
    EXPECT_EQ(JsonText::excerpt(huge),
              u'"' + QString(JsonText::kExcerptLength, u'k') + QChar(0x2026) + u'"');
    // Cut between characters, never inside one: 60 clefs of four bytes and two UTF-16 units.
    QString clefs;
    for (int i = 0; i < 100; ++i)
        clefs += QStringLiteral("\U0001D11E");
    const QByteArray utf8 = clefs.toUtf8();
    EXPECT_EQ(JsonText::excerpt(std::string_view(utf8.constData(), std::size_t(utf8.size()))),
              u'"' + clefs.left(2 * JsonText::kExcerptLength) + QChar(0x2026) + u'"');
}

TEST(JsonTextTest, LoneSurrogatesOfEitherKindAreFound) {
    const struct {
        const char *json;
        qsizetype at;
    } cases[] = {
        {R"("\udc00")", 1},
        {R"("\ud800")", 1},
        {R"("a\uDBFFb")", 2},
        {R"("ab\udfff")", 3},
        {R"("\udc00\ud800")", 1},        // the pair the wrong way round
        {R"("\udc00\udc00")", 1},        // doubled
        {R"("\ud800\ud800\udc00")", 1},  // a high one before a pair
        {R"("\ud83d\ude00\udc00")", 13}, // a pair, then a lone low one
        {R"("\ud83d\ude00")", -1},
        {R"("\uD834\uDD1E and \u00e9\n\t\"")", -1},
        {R"("\\udc00")", -1}, // an escaped backslash, then plain text
        {R"("\\\udc00")", 3},
        {R"({"\udc00": 1})", 2}, // in a name
        {R"("\ud800)", 1},       // cut short
    };
    for (const auto &c : cases)
        EXPECT_EQ(JsonText::loneSurrogateAt(c.json), c.at) << c.json;
    EXPECT_EQ(JsonText::loneSurrogateAt(R"("\udc00\udc00")", 7), 7);
    EXPECT_EQ(JsonText::loneSurrogateAt(R"("\udc00\udc00")", 13), -1);
}
