#include "foundation/money/OTNumberText.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

Decimal D(const char *text) {
    return Decimal::fromString(QString::fromLatin1(text));
}
QString T(const char16_t *text) {
    return QString::fromUtf16(text);
}

} // namespace

TEST(MoneyText, CurrencyTextPerLocale) {
    const struct {
        const char *locale;
        const char *code;
        const char *value;
        const char16_t *expected;
    } cases[] = {
        {"en_US", "USD", "1234.5", u"$1,234.50"},
        {"en_US", "USD", "-0.005", u"-$0.00"},
        {"en_US", "JPY", "1234.5", u"\u00A51,234"}, // ties to even on screen
        {"en_US", "JPY", "1235.5", u"\u00A51,236"},
        {"en_US", "KWD", "1234.5", u"KWD\u00A01,234.500"},
        {"en_US", "EUR", "0.125", u"\u20AC0.12"},
        {"de_DE", "EUR", "1234.5", u"1.234,50\u00A0\u20AC"},
        {"de_DE", "USD", "-1234.5", u"-1.234,50\u00A0$"},
        {"de_DE", "XQQ", "3", u"3,00\u00A0\u20AC"}, // unknown code: the locale's currency
        {"fr_FR", "EUR", "1234567.891", u"1\u202F234\u202F567,89\u00A0\u20AC"},
        {"ja_JP", "JPY", "1234", u"\uFFE51,234"},
        {"ja_JP", "USD", "12.3", u"$12.30"},
        {"de_CH", "CHF", "1234.5", u"CHF\u00A01\u2019234.50"},
        // Beyond the range of a double's exact digits.
        {"en_US", "USD", "12345678901234567890123.45", u"$12,345,678,901,234,567,890,123.45"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(OTNumberText::currencyFormatter(D(c.value), c.code, QLocale(c.locale)),
                  T(c.expected))
            << c.locale << " " << c.code << " " << c.value;
    EXPECT_EQ(OTNumberText::currencyFormatter(D("1234.5"), "USD", QLocale("en_US")), "$1,234.50");
}

TEST(MoneyText, CurrencyTextWithoutSymbol) {
    EXPECT_EQ(OTNumberText::currencyFormatter(D("1234.5"), QLocale("en_US")), "1,234.50");
    EXPECT_EQ(OTNumberText::currencyFormatter(D("1234.5"), QLocale("de_DE")), "1.234,50");
    EXPECT_EQ(OTNumberText::currencyFormatter(D("1234.5"), QLocale("ja_JP")), "1,234");
    // Kuwait's dinar keeps three digits, in the locale's own digits.
    EXPECT_TRUE(OTNumberText::currencyFormatter(D("1.2345"), QLocale("ar_KW"))
                    .contains(T(u"\u0661\u066B\u0662\u0663\u0664")));
}

TEST(MoneyText, DecimalAndPercentText) {
    const QLocale en("en_US");
    const QLocale de("de_DE");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("1234567.12345"), en), "1,234,567.123");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("1234.5"), de), "1.234,5");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("0.0005"), en), "0");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("1234.5"), 2, de), "1234,50");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("0.5"), 0, en), "0");
    EXPECT_EQ(OTNumberText::decimalFormatter(D(".25"), 3, en), "0.250");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("1234.5"), QStringLiteral("KWD"), en), "1234.500");
    EXPECT_EQ(OTNumberText::decimalFormatter(D("1234.5"), QStringLiteral("JPY"), en), "1234");

    EXPECT_EQ(OTNumberText::percentFormatter(D("0.175"), en), "17.5%");
    EXPECT_EQ(OTNumberText::percentFormatter(D("0.175"), de), T(u"17,5\u00A0%"));
    EXPECT_EQ(OTNumberText::percentFormatter(D("0.00125"), en), "0.12%"); // exact tie, to even
    EXPECT_EQ(OTNumberText::percentFormatter(D("1"), QLocale("fr_FR")), T(u"100\u00A0%"));
}

TEST(MoneyText, ParsingGivesBackWhatWasFormatted) {
    const char *values[] = {"0", "1234.5", "-98765.43", "0.01", "1000000", "12345678901234567.89"};
    const struct {
        const char *locale;
        const char *code;
    } setups[] = {{"en_US", "USD"}, {"de_DE", "EUR"}, {"fr_FR", "EUR"}, {"de_CH", "CHF"},
                  {"ja_JP", "JPY"}, {"en_US", "KWD"}, {"de_DE", "JPY"}};
    for (const auto &setup : setups) {
        const QLocale locale(setup.locale);
        const int digits = MoneyLocale::fractionDigits(setup.code, locale);
        for (const char *value : values) {
            const Decimal number = D(value);
            const QString text = OTNumberText::currencyFormatter(number, setup.code, locale);
            EXPECT_EQ(OTNumberText::numberFromCurrency(text, setup.code, locale),
                      number.rounded(digits, Decimal::RoundingMode::Bankers))
                << setup.locale << " " << text.toStdString();
            const QString plain = OTNumberText::decimalFormatter(number, locale);
            EXPECT_EQ(OTNumberText::decimalFromString(plain, locale), number)
                << plain.toStdString();
        }
    }
    EXPECT_EQ(OTNumberText::numberFromDefaultCurrency(T(u"1.234,56\u00A0\u20AC"), QLocale("de_DE")),
              D("1234.56"));
    EXPECT_EQ(OTNumberText::decimalFromString("1.234,5", QLocale("de_DE")), D("1234.5"));
    EXPECT_TRUE(OTNumberText::decimalFromString("12abc", QLocale("en_US")).isNaN());
    EXPECT_TRUE(OTNumberText::decimalFromString("", QLocale("en_US")).isNaN());
    EXPECT_TRUE(OTNumberText::numberFromCurrency("dollars", "USD", QLocale("en_US")).isNaN());
}

TEST(MoneyText, RoundedAndCeiledByCurrency) {
    const QLocale en("en_US");
    EXPECT_EQ(OTNumberText::decimalNumber(D("1.005"), "USD", en), D("1"));
    EXPECT_EQ(OTNumberText::decimalNumber(D("1.015"), "USD", en), D("1.02"));
    EXPECT_EQ(OTNumberText::decimalNumber(D("-2.5"), "JPY", en), D("-2"));
    EXPECT_EQ(OTNumberText::decimalNumber(D("0.0125"), "KWD", en), D("0.012"));

    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("2.341"), "USD", en), D("2.35"));
    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("2.3401"), "USD", en), D("2.3401"));
    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("2.34"), "USD", en), D("2.34"));
    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("2.5"), "JPY", en), D("3"));
    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("7"), "JPY", en), D("7"));
    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("1234.001"), "USD", QLocale("de_DE")),
              D("1234.01"));
    EXPECT_EQ(OTNumberText::decimalNumberCeiledByCurrency(D("1.2341"), "KWD", en), D("1.2341"));
}

TEST(MoneyText, FormattersAreSharedSafelyAcrossThreads) {
    const QString expected[] = {T(u"$1,234.50"), T(u"1.234,50\u00A0\u20AC"), T(u"\uFFE51,235")};
    std::vector<std::thread> threads;
    std::atomic<int> mismatches = 0;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 500; ++i) {
                const int k = (i + t) % 3;
                const QString text =
                    k == 0 ? OTNumberText::currencyFormatter(D("1234.5"), "USD", QLocale("en_US"))
                    : k == 1
                        ? OTNumberText::currencyFormatter(D("1234.5"), "EUR", QLocale("de_DE"))
                        : OTNumberText::currencyFormatter(D("1234.6"), "JPY", QLocale("ja_JP"));
                if (text != expected[k])
                    ++mismatches;
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(mismatches, 0);
}
