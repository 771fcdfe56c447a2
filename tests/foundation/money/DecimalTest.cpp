#include "foundation/money/Decimal.h"

#include <gtest/gtest.h>

#include <QHash>
#include <QVariant>

#include <random>

namespace {

Decimal D(const char *text) {
    return Decimal::fromString(QString::fromLatin1(text));
}

class FixedBehavior : public DecimalBehavior {
public:
    FixedBehavior(short scale, Decimal::RoundingMode mode)
        : m_scale(scale)
        , m_mode(mode) {}
    Decimal::RoundingMode roundingMode() const override { return m_mode; }
    short scale() const override { return m_scale; }
    std::optional<Decimal> exceptionDuringOperation(Decimal::CalculationError error,
                                                    const Decimal &left,
                                                    const Decimal &) const override {
        if (error == Decimal::CalculationError::DivideByZero)
            return left;
        return std::nullopt;
    }

private:
    short m_scale;
    Decimal::RoundingMode m_mode;
};

} // namespace

TEST(Decimal, TextRoundTripIsCanonical) {
    const struct {
        const char *in;
        const char *out;
    } cases[] = {
        {"0", "0"},
        {"-0", "0"},
        {"0.000", "0"},
        {"1.50", "1.5"},
        {"+12", "12"},
        {"-0.005", "-0.005"},
        {"1200", "1200"},
        {"1.2e3", "1200"},
        {"12E-4", "0.0012"},
        {".5", "0.5"},
        {"7.", "7"},
        {"00012.3400", "12.34"},
        {"12345678901234567890123456789012345678", "12345678901234567890123456789012345678"},
        {"-9.9999999999999999999999999999999999999", "-9.9999999999999999999999999999999999999"},
        // 39th digit of a fraction rounds half away from zero
        {"1.23456789012345678901234567890123456785", "1.2345678901234567890123456789012345679"},
        {"9999999999999999999999999999999999999.95", "10000000000000000000000000000000000000"},
    };
    for (const auto &c : cases) {
        const Decimal d = D(c.in);
        EXPECT_EQ(d.toString(), QString::fromLatin1(c.out)) << c.in;
        EXPECT_EQ(Decimal::fromString(d.toString()), d) << c.in;
    }
    for (const char *bad : {"", "-", ".", "1.2.3", "1,5", " 1", "1 ", "e5", "1e", "abc", "NaN"})
        EXPECT_TRUE(D(bad).isNaN()) << bad;
    // Whole parts are never rounded: beyond 38 digits there is no value.
    for (const char *beyond :
         {"100000000000000000000000000000000000000", "-1e38", "1e165",
          "99999999999999999999999999999999999999.5", "1234567890123456789012345678901234567850"})
        EXPECT_TRUE(D(beyond).isNaN()) << beyond;
    EXPECT_EQ(D("9.9999999999999999999999999999999999999e37").toString(),
              QStringLiteral("99999999999999999999999999999999999999"));
    EXPECT_EQ(Decimal::fromString(u"1,25", u','), D("1.25"));
    EXPECT_EQ(Decimal::notANumber().toString(), "NaN");
}

TEST(Decimal, EqualValuesShareOneRepresentation) {
    EXPECT_EQ(D("1.50"), D("1.5"));
    EXPECT_EQ(D("100"), Decimal::fromParts(1, 2));
    EXPECT_EQ(qHash(D("2.500")), qHash(D("2.5")));
    EXPECT_EQ(Decimal(0), D("-0.00"));
    EXPECT_LT(D("-2"), D("-1.99"));
    EXPECT_LT(D("0.1"), D("0.11"));
    EXPECT_GT(D("1e20"), D("99999999999999999999.9"));
    EXPECT_LT(Decimal::notANumber(), D("-1e30"));
    EXPECT_EQ(Decimal::notANumber(), Decimal::notANumber());
}

TEST(Decimal, ExactArithmetic) {
    EXPECT_EQ(D("0.1") + D("0.2"), D("0.3"));
    EXPECT_EQ(D("1") - D("1.01"), D("-0.01"));
    EXPECT_EQ(D("12.5") * D("-0.08"), D("-1"));
    EXPECT_EQ(D("1") / D("8"), D("0.125"));
    EXPECT_EQ(D("1") / D("3"), D("0.33333333333333333333333333333333333333"));
    EXPECT_EQ(D("2") / D("3"), D("0.66666666666666666666666666666666666667"));
    EXPECT_EQ(D("-2") / D("3"), D("-0.66666666666666666666666666666666666667"));
    EXPECT_EQ(D("7200") / D("3600"), D("2"));
    EXPECT_TRUE((D("1") / Decimal()).isNaN());
    EXPECT_TRUE((D("1") + Decimal::notANumber()).isNaN());
    // Operands far apart: the small one only decides the last digit's rounding.
    EXPECT_EQ(D("1e30") + D("1e-30"), D("1e30"));
    EXPECT_EQ(D("1") + D("1e-37"), D("1.0000000000000000000000000000000000001"));
    EXPECT_EQ(D("1") + D("5e-38"), D("1.0000000000000000000000000000000000001"));
    EXPECT_EQ(D("1") - D("5e-38"), D("0.99999999999999999999999999999999999995"));
}

TEST(Decimal, AResultBeyond38WholeDigitsOverflowsInsteadOfRounding) {
    const Decimal nines = D("99999999999999999999999999999999999999");
    for (const Decimal &result : {nines + D("1"), nines * Decimal(2), -nines - D("0.5"),
                                  nines * nines, nines / D("0.1"), D("1e37") * D("10")})
        EXPECT_TRUE(result.isNaN()) << result.toString().toStdString();
    // Just inside: the largest value, and fraction digits rounded away below it.
    EXPECT_EQ(nines - D("1") + D("1"), nines);
    EXPECT_EQ(D("9999999999999999999999999999999999999.9") + D("0.04"),
              D("9999999999999999999999999999999999999.9"));
    EXPECT_EQ(D("1e37") * D("9.9"), D("99000000000000000000000000000000000000"));

    FixedBehavior plain(Decimal::kNoScale, Decimal::RoundingMode::Plain);
    Decimal::CalculationError reported = Decimal::CalculationError::None;
    class Recording : public FixedBehavior {
    public:
        Recording(Decimal::CalculationError &to)
            : FixedBehavior(2, Decimal::RoundingMode::Plain)
            , m_to(to) {}
        std::optional<Decimal> exceptionDuringOperation(Decimal::CalculationError error,
                                                        const Decimal &left,
                                                        const Decimal &right) const override {
            m_to = error;
            return FixedBehavior::exceptionDuringOperation(error, left, right);
        }

    private:
        Decimal::CalculationError &m_to;
    } cents(reported);
    // Under a scale the amount must hold every digit down to it: 38 nines and 40 cents cannot.
    EXPECT_TRUE(DecimalMath::add(nines, D("0.4"), cents).isNaN());
    EXPECT_EQ(reported, Decimal::CalculationError::Overflow);
    reported = Decimal::CalculationError::None;
    EXPECT_TRUE(DecimalMath::multiply(nines, Decimal(2), cents).isNaN());
    EXPECT_EQ(reported, Decimal::CalculationError::Overflow);
    // 36 whole digits and cents fit; digits below the cents are the scale's to round.
    reported = Decimal::CalculationError::None;
    EXPECT_EQ(DecimalMath::add(D("999999999999999999999999999999999999"), D("0.004999"), cents),
              D("999999999999999999999999999999999999"));
    EXPECT_EQ(DecimalMath::divide(D("1e35"), D("3"), cents),
              D("33333333333333333333333333333333333.33"));
    EXPECT_EQ(reported, Decimal::CalculationError::None);
    EXPECT_TRUE(DecimalMath::divide(D("1e37"), D("3"), cents).isNaN());
    EXPECT_EQ(reported, Decimal::CalculationError::Overflow);
    EXPECT_TRUE(DecimalMath::round(nines, FixedBehavior(-1, Decimal::RoundingMode::Plain)).isNaN());
    EXPECT_EQ(DecimalMath::add(nines, D("0.4"), plain), nines);
}

TEST(Decimal, RoundingTable) {
    using M = Decimal::RoundingMode;
    const struct {
        const char *value;
        int scale;
        M mode;
        const char *expected;
    } cases[] = {
        {"1.005", 2, M::Plain, "1.01"},
        {"1.005", 2, M::Bankers, "1"},
        {"1.015", 2, M::Plain, "1.02"},
        {"1.015", 2, M::Bankers, "1.02"},
        {"-1.005", 2, M::Plain, "-1.01"},
        {"-1.005", 2, M::Bankers, "-1"},
        {"2.5", 0, M::Plain, "3"},
        {"2.5", 0, M::Bankers, "2"},
        {"3.5", 0, M::Bankers, "4"},
        {"-2.5", 0, M::Plain, "-3"},
        {"0.0005", 3, M::Plain, "0.001"},
        {"0.0005", 3, M::Bankers, "0"},
        {"1.23456", 3, M::Plain, "1.235"},
        {"1.2344999", 3, M::Plain, "1.234"},
        {"1.001", 2, M::Up, "1.01"},
        {"-1.001", 2, M::Up, "-1"},
        {"1.009", 2, M::Down, "1"},
        {"-1.001", 2, M::Down, "-1.01"},
        {"0.4", 0, M::Plain, "0"},
        {"0.0000001", 2, M::Up, "0.01"},
        {"1e-100", 2, M::Plain, "0"},
        {"125", -1, M::Plain, "130"},
        {"99.995", 2, M::Plain, "100"},
        {"12.3", 2, M::Plain, "12.3"},
        {"9999999999999999999999999999999999999.95", 1, M::Plain,
         "10000000000000000000000000000000000000"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(D(c.value).rounded(c.scale, c.mode), D(c.expected))
            << c.value << " scale " << c.scale << " mode " << int(c.mode);
    EXPECT_EQ(D("1.005").rounded(Decimal::kNoScale, M::Plain), D("1.005"));
}

TEST(Decimal, BehaviourRoundsEveryStep) {
    const FixedBehavior jpy(0, Decimal::RoundingMode::Plain);
    const FixedBehavior kwd(3, Decimal::RoundingMode::Plain);
    EXPECT_EQ(DecimalMath::add(D("100.4"), D("0.1"), jpy), D("101"));
    EXPECT_EQ(DecimalMath::multiply(D("0.1234"), D("10"), kwd), D("1.234"));
    EXPECT_EQ(DecimalMath::multiply(D("0.12345"), D("1"), kwd), D("0.123"));
    EXPECT_EQ(DecimalMath::subtract(D("1"), D("0.0005"), kwd), D("1"));
    EXPECT_EQ(DecimalMath::divide(D("10"), D("3"), kwd), D("3.333"));
    EXPECT_EQ(DecimalMath::divide(D("20"), D("3"), jpy), D("7"));
    EXPECT_EQ(DecimalMath::divide(D("12.345"), Decimal(), kwd), D("12.345"));
    EXPECT_EQ(DecimalMath::round(D("-2.0005"), kwd), D("-2.001"));
}

TEST(Decimal, ConversionsAndVariants) {
    EXPECT_EQ(Decimal::fromDouble(0.1), D("0.1"));
    EXPECT_EQ(Decimal::fromDouble(1e21), D("1e21"));
    EXPECT_TRUE(Decimal::fromDouble(std::numeric_limits<double>::infinity()).isNaN());
    EXPECT_DOUBLE_EQ(D("-12.75").toDouble(), -12.75);
    EXPECT_EQ(D("-12.75").toLongLong(), -12);
    EXPECT_EQ(D("1e30").toLongLong(), std::numeric_limits<long long>::max());
    EXPECT_EQ(Decimal(std::numeric_limits<long long>::min()).toLongLong(),
              std::numeric_limits<long long>::min());

    EXPECT_EQ(Decimal::fromVariant(QVariant::fromValue(D("3.25"))), D("3.25"));
    EXPECT_EQ(Decimal::fromVariant(QVariant(42)), Decimal(42));
    EXPECT_EQ(Decimal::fromVariant(QVariant(quint64(18446744073709551615ULL))),
              D("18446744073709551615"));
    EXPECT_EQ(Decimal::fromVariant(QVariant(2.5)), D("2.5"));
    EXPECT_EQ(Decimal::fromVariant(QVariant(QStringLiteral("-7.10"))), D("-7.1"));
    EXPECT_TRUE(Decimal::fromVariant(QVariant()).isNaN());
    EXPECT_TRUE(Decimal::fromVariant(QVariant(QByteArray("1"))).isNaN());
    EXPECT_EQ(D("4.5").toVariant().toString(), "4.5");
    EXPECT_EQ(D("4.50").toVariant(), D("4.5").toVariant());
}

TEST(Decimal, RandomOperationsAgreeWithIdentities) {
    std::mt19937_64 rng(20240603);
    std::uniform_int_distribution<long long> mantissa(-99999999999LL, 99999999999LL);
    std::uniform_int_distribution<int> exponent(-12, 6);
    for (int i = 0; i < 20000; ++i) {
        const Decimal a = Decimal::fromParts(mantissa(rng), exponent(rng));
        const Decimal b = Decimal::fromParts(mantissa(rng), exponent(rng));
        ASSERT_EQ((a + b) - b, a) << a.toString().toStdString() << " "
                                  << b.toString().toStdString();
        ASSERT_EQ(Decimal::fromString(a.toString()), a);
        if (!b.isZero()) {
            ASSERT_EQ((a * b) / b, a);
        }
        ASSERT_EQ(a * b, b * a);
        ASSERT_EQ(a < b, (a - b).sign() < 0);
    }
}
