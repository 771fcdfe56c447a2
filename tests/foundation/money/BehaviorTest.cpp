#include "foundation/money/DecimalConstants.h"
#include "foundation/money/LMDecNumHand2Places.h"
#include "foundation/money/TADecimalNumberBehavior.h"

#include <gtest/gtest.h>

namespace {
Decimal D(const char *text) {
    return Decimal::fromString(QString::fromLatin1(text));
}
const QLocale enUS(QStringLiteral("en_US"));
} // namespace

TEST(TADecimalNumberBehavior, ScaleIsTheCurrencysMinorUnit) {
    EXPECT_EQ(TADecimalNumberBehavior().scale(), Decimal::kNoScale);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("JPY", enUS).scale(), 0);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("USD", enUS).scale(), 2);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("KWD", enUS).scale(), 3);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("kwd", enUS).scale(), 3);
    // Unknown or empty codes fall back to the locale's own currency.
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("", enUS).scale(), 2);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("", QLocale("ja_JP")).scale(), 0);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("XQQ", QLocale("ar_KW")).scale(),
              3);
    EXPECT_EQ(TADecimalNumberBehavior::behaviorWithCurrencyCode("JPY", QLocale("ar_KW")).scale(),
              0);

    TADecimalNumberBehavior behavior;
    behavior.setCurrencyCode("KWD", enUS);
    EXPECT_EQ(behavior.currencyCode(), "KWD");
    EXPECT_EQ(behavior.roundingMode(), Decimal::RoundingMode::Plain);
}

TEST(TADecimalNumberBehavior, EverySumRoundsHalfAwayFromZero) {
    const auto usd = TADecimalNumberBehavior::behaviorWithCurrencyCode("USD", enUS);
    const auto jpy = TADecimalNumberBehavior::behaviorWithCurrencyCode("JPY", enUS);
    const auto kwd = TADecimalNumberBehavior::behaviorWithCurrencyCode("KWD", enUS);
    EXPECT_EQ(DecimalMath::add(D("1.005"), Decimal(), usd), D("1.01"));
    EXPECT_EQ(DecimalMath::add(D("1.015"), Decimal(), usd), D("1.02"));
    EXPECT_EQ(DecimalMath::subtract(Decimal(), D("1.005"), usd), D("-1.01"));
    EXPECT_EQ(DecimalMath::multiply(D("19.99"), D("0.075"), usd), D("1.5")); // 1.49925
    EXPECT_EQ(DecimalMath::multiply(D("0.5"), D("-1"), jpy), D("-1"));
    EXPECT_EQ(DecimalMath::add(D("100.4"), D("0.4"), jpy), D("101"));
    EXPECT_EQ(DecimalMath::add(D("100.2"), D("0.2"), jpy), D("100"));
    EXPECT_EQ(DecimalMath::add(D("1.2344"), D("0.0001"), kwd), D("1.235"));
    EXPECT_EQ(DecimalMath::divide(D("10"), D("3"), kwd), D("3.333"));
    // At the edge of 38 digits: the rounding carry adds a digit, and cents that do not fit
    // beside 38 whole digits are no rounding matter but an overflow.
    EXPECT_EQ(DecimalMath::multiply(D("99999999999999999999999999999999999.995"), Decimal(1), usd),
              D("100000000000000000000000000000000000"));
    EXPECT_TRUE(
        DecimalMath::add(D("99999999999999999999999999999999999999"), D("0.4"), usd).isNaN());
}

TEST(TADecimalNumberBehavior, DivisionByZeroAnswersTheLeftOperand) {
    const auto usd = TADecimalNumberBehavior::behaviorWithCurrencyCode("USD", enUS);
    EXPECT_EQ(DecimalMath::divide(D("12.345"), Decimal(), usd), D("12.345"));
    EXPECT_EQ(DecimalMath::divide(Decimal(), Decimal(), usd), Decimal());
    EXPECT_FALSE(usd.exceptionDuringOperation(Decimal::CalculationError::Overflow, D("1"), D("2")));
    // Other failures let the operation's own result stand: an overflow is not-a-number.
    EXPECT_TRUE(DecimalMath::multiply(D("1e30"), D("1e30"), usd).isNaN());
    EXPECT_EQ(DecimalMath::multiply(D("1e-100"), D("1e-100"), usd), Decimal());
    EXPECT_FALSE(
        usd.exceptionDuringOperation(Decimal::CalculationError::LossOfPrecision, D("1"), D("2")));
}

TEST(LMDecNumHand2Places, TwoPlacesAndNoSubstitutes) {
    const LMDecNumHand2Places behavior;
    EXPECT_EQ(DecimalMath::multiply(D("1.005"), Decimal(1), behavior), D("1.01"));
    EXPECT_EQ(DecimalMath::divide(D("2"), D("3"), behavior), D("0.67"));
    EXPECT_TRUE(DecimalMath::divide(D("2"), Decimal(), behavior).isNaN());
}

TEST(DecimalConstants, Values) {
    EXPECT_EQ(DecimalConstants::hour(), Decimal(3600));
    EXPECT_EQ(DecimalConstants::hundred(), Decimal(100));
    EXPECT_EQ(DecimalConstants::two(), Decimal(2));
    EXPECT_EQ(Decimal(5400) / DecimalConstants::hour(), D("1.5"));
}
