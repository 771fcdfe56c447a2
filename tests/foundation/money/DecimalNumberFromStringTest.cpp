#include "foundation/money/OTConvert.h"

#include <gtest/gtest.h>

#include <random>

namespace {

struct Case {
    const char *locale;
    const char16_t *text;
    const char *expected;
};

void expectCases(std::initializer_list<Case> cases) {
    for (const Case &c : cases) {
        const QLocale locale(QString::fromLatin1(c.locale));
        const QString text = QString::fromUtf16(c.text);
        EXPECT_EQ(OTConvert::decimalNumberFromString(text, locale).toString(),
                  QString::fromLatin1(c.expected))
            << c.locale << " [" << text.toStdString() << "]";
    }
}

} // namespace

TEST(DecimalNumberFromString, AmericanLocale) {
    expectCases({
        {"en_US", u"1,234.56", "1234.56"},
        {"en_US", u"1.234,56", "1.23456"}, // the comma goes as grouping first
        {"en_US", u"1 000,5", "10005"},
        {"en_US", u"$7", "7"},
        {"en_US", u"US$ 1,299.99 ", "1299.99"},
        {"en_US", u"-12.50", "12.5"}, // amounts typed here are never negative
        {"en_US", u"12.", "12"},
        {"en_US", u"12\n34\r", "1234"},
        {"en_US", u"1.2.3", "12.3"}, // only the rightmost separator counts
        {"en_US", u"12-34", "12"},
        {"en_US", u"12'5", "12.5"},
        {"en_US", u".5", "0.5"},
        {"en_US", u"abc", "0"},
        {"en_US", u"", "0"},
        {"en_US", u"...", "0"},
    });
    EXPECT_EQ(OTConvert::decimalNumberFromString(QString(), QLocale("en_US")), Decimal());
}

TEST(DecimalNumberFromString, EuropeanLocales) {
    expectCases({
        {"de_DE", u"1.234,56", "1234.56"},
        {"de_DE", u"1,234.56", "1.23456"},
        {"de_DE", u"1 000,5", "1000.5"},
        {"de_DE", u"12,50\u00A0\u20AC", "12.5"},
        {"de_DE", u"-3,5", "3.5"},
        {"de_DE", u"12,", "12"},
        {"fr_FR", u"1\u202F234,56", "1234.56"},
        {"fr_FR", u"1 234,56", "1234.56"},
        {"fr_FR", u"1\u00A0234", "1234"},
        {"fr_FR", u"1 000,5", "1000.5"},
        {"fr_FR", u"12,5\u00A0\u20AC", "12.5"},
        {"de_CH", u"1\u2019234.50", "1234.5"},
        {"de_CH", u"1'234.50", "1234.5"},
        {"de_CH", u"1'234", "1234"},
        {"de_CH", u"CHF 12.\u2013", "12"},
        {"de_CH", u"1 000,5", "1000.5"},
    });
}

TEST(DecimalNumberFromString, JapaneseLocale) {
    expectCases({
        {"ja_JP", u"\uFFE51,234", "1234"},
        {"ja_JP", u"1,234.5\u5186", "1234.5"},
        {"ja_JP", u"1.234,5", "1.2345"},
        {"ja_JP", u"\uFF11\uFF12\uFF13", "0"}, // full-width digits are not read
    });
}

TEST(DecimalNumberFromString, LongAndHugeInputStayFinite) {
    const QLocale en("en_US");
    // 38 whole digits are the most an amount holds; more is as unusable as letters.
    EXPECT_EQ(OTConvert::decimalNumberFromString(QString(38, u'9'), en),
              Decimal::fromString(QString(38, u'9')));
    EXPECT_EQ(OTConvert::decimalNumberFromString(QString(45, u'9'), en), Decimal());
    EXPECT_EQ(OTConvert::decimalNumberFromString(QStringLiteral("1") + QString(400, u'0'), en),
              Decimal());
    EXPECT_EQ(
        OTConvert::decimalNumberFromString(QStringLiteral("0.") + QString(300, u'0') + "1", en),
        Decimal());
}

TEST(DecimalNumberFromString, ArbitraryInputNeverFails) {
    const QLocale locales[] = {QLocale("en_US"), QLocale("de_DE"), QLocale("fr_FR"),
                               QLocale("de_CH"), QLocale("ja_JP"), QLocale::c()};
    const char16_t alphabet[] = u"0123456789.,-'  \u00A0\u202F\u2019\r\n$\u20ACeE+aZ\uFFE5\u0660";
    std::mt19937 rng(7);
    for (int i = 0; i < 30000; ++i) {
        QString text;
        const int length = static_cast<int>(rng() % 48);
        if (i % 3 == 0) {
            QByteArray bytes;
            for (int j = 0; j < length; ++j)
                bytes.append(static_cast<char>(rng() & 0xFF));
            text = QString::fromUtf8(bytes);
        } else {
            for (int j = 0; j < length; ++j)
                text.append(QChar(alphabet[rng() % (std::size(alphabet) - 1)]));
        }
        const Decimal value = OTConvert::decimalNumberFromString(text, locales[i % 6]);
        ASSERT_FALSE(value.isNaN()) << text.toStdString();
        ASSERT_FALSE(value.isNegative()) << text.toStdString();
        ASSERT_EQ(Decimal::fromString(value.toString()), value);
    }
}
