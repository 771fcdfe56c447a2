// Division and addition against a reference computed with arbitrary-precision integers: the
// exact result rounded once, at the scale asked for or else at the 38th digit; a result that
// then needs more than 38 digits, or reaches 10^38, overflows.
#include "foundation/money/Decimal.h"

#include <gtest/gtest.h>

#include <boost/multiprecision/cpp_int.hpp>

#include <random>
#include <string>
#include <vector>

namespace {

using Big = boost::multiprecision::cpp_int;
using Mode = Decimal::RoundingMode;
using Error = Decimal::CalculationError;

class RecordingBehavior : public DecimalBehavior {
public:
    RecordingBehavior(short scale, Mode mode)
        : m_scale(scale)
        , m_mode(mode) {}
    Mode roundingMode() const override { return m_mode; }
    short scale() const override { return m_scale; }
    std::optional<Decimal> exceptionDuringOperation(Error error, const Decimal &,
                                                    const Decimal &) const override {
        last = error;
        return std::nullopt;
    }
    mutable Error last = Error::None;

private:
    short m_scale;
    Mode m_mode;
};

const Big &pow10(int n) {
    static const std::vector<Big> table = [] {
        std::vector<Big> t(400);
        t[0] = 1;
        for (std::size_t i = 1; i < t.size(); ++i)
            t[i] = t[i - 1] * 10;
        return t;
    }();
    return table.at(std::size_t(n));
}

// "digits" times 10^exponent as plain decimal text.
std::string plainText(bool negative, const std::string &digits, int exponent) {
    std::string text = digits;
    if (exponent >= 0) {
        text.append(std::size_t(exponent), '0');
    } else {
        const int point = int(text.size()) + exponent;
        text = point > 0 ? text.insert(std::size_t(point), ".")
                         : "0." + std::string(std::size_t(-point), '0') + text;
    }
    return (negative ? "-" : "") + text;
}

struct Expected {
    std::string text;
    bool lossOfPrecision;
    bool overflow;
};

Expected reference(bool negative, const Big &ca, int ea, const Big &cb, int eb, int minExponent,
                   Mode mode) {
    // Position of the leading digit of the exact quotient.
    const int probe = 100;
    const Big scaled = ca * pow10(probe) / cb;
    const int lead = int(scaled.str().size()) - 1 - probe + ea - eb;
    const int byDigits = lead - (Decimal::kMaxDigits - 1);
    const bool atScale = minExponent > -128;
    const int keep = atScale ? minExponent : std::max(byDigits, -128);
    const int shift = ea - eb - keep;
    const Big num = shift >= 0 ? ca * pow10(shift) : ca;
    const Big den = shift >= 0 ? cb : cb * pow10(-shift);
    Big q = num / den;
    const Big r = num % den;
    const int versusHalf = 2 * r < den ? -1 : (2 * r == den ? 0 : 1);
    const bool inexact = r != 0;
    bool away = false;
    switch (mode) {
    case Mode::Plain:
        away = versusHalf >= 0;
        break;
    case Mode::Bankers:
        away = versusHalf > 0 || (versusHalf == 0 && (q % 2) == 1);
        break;
    case Mode::Up:
        away = inexact && !negative;
        break;
    case Mode::Down:
        away = inexact && negative;
        break;
    }
    if (away)
        ++q;
    const bool loss = !atScale && inexact && keep == byDigits && keep > minExponent;
    if (q == 0)
        return {"0", false, false};
    std::string digits = q.str();
    int at = keep;
    for (; digits.back() == '0'; ++at)
        digits.pop_back();
    const int count = int(digits.size());
    if (count > Decimal::kMaxDigits || at + count > Decimal::kMaxDigits)
        return {"NaN", false, true};
    return {plainText(negative, digits, at), loss, false};
}

// An exponent that keeps a value of that many digits below 10^38.
int below38(int exponent, const std::string &digits) {
    return std::min(exponent, Decimal::kMaxDigits - int(digits.size()));
}

std::string randomDigits(std::mt19937_64 &rng, int count) {
    std::uniform_int_distribution<int> digit(0, 9);
    std::string s(1, char('1' + digit(rng) % 9));
    for (int i = 1; i < count; ++i)
        s.push_back(char('0' + digit(rng)));
    return s;
}

} // namespace

TEST(DecimalDivision, AgreesWithExactRationalRounding) {
    std::mt19937_64 rng(7331);
    std::uniform_int_distribution<int> dividendDigits(1, 38);
    std::uniform_int_distribution<int> divisorDigits(1, 24); // both sides of 64 bits
    std::uniform_int_distribution<int> exponent(-20, 12);
    std::uniform_int_distribution<int> coin(0, 1);
    const Mode modes[] = {Mode::Plain, Mode::Bankers, Mode::Up, Mode::Down};
    const short scales[] = {Decimal::kNoScale, 0, 2, 3, 12};
    const std::string divisors[] = {"3600", "3", "7", "92166", "1", "2", "125"};
    for (int i = 0; i < 3000; ++i) {
        const std::string da = randomDigits(rng, dividendDigits(rng));
        const std::string db = i % 4 == 0 ? divisors[std::size_t(i / 4) % std::size(divisors)]
                                          : randomDigits(rng, divisorDigits(rng));
        const int ea = below38(exponent(rng), da);
        const int eb = i % 4 == 0 ? 0 : below38(exponent(rng), db);
        const bool na = coin(rng) != 0;
        const bool nb = coin(rng) != 0;
        const Decimal a = Decimal::fromString(QString::fromStdString(plainText(na, da, ea)));
        const Decimal b = Decimal::fromString(QString::fromStdString(plainText(nb, db, eb)));
        ASSERT_FALSE(a.isNaN() || b.isNaN());
        for (const Mode mode : modes) {
            for (const short scale : scales) {
                const int minExponent = scale == Decimal::kNoScale ? -128 : -scale;
                const Expected want =
                    reference(na != nb, Big(da), ea, Big(db), eb, minExponent, mode);
                RecordingBehavior behavior(scale, mode);
                const Decimal got = DecimalMath::divide(a, b, behavior);
                const std::string context = plainText(na, da, ea) + " / " + plainText(nb, db, eb) +
                                            " mode " + std::to_string(int(mode)) + " scale " +
                                            std::to_string(scale);
                ASSERT_EQ(got, Decimal::fromString(QString::fromStdString(want.text))) << context;
                ASSERT_EQ(behavior.last == Error::LossOfPrecision, want.lossOfPrecision) << context;
                ASSERT_EQ(behavior.last == Error::Overflow, want.overflow) << context;
            }
        }
        if (i % 4 == 0) { // the plain operator keeps 38 digits
            ASSERT_EQ(a / b,
                      DecimalMath::divide(a, b, RecordingBehavior(Decimal::kNoScale, Mode::Plain)));
        }
    }
}

TEST(DecimalDivision, CarriesAndTinyQuotients) {
    const RecordingBehavior cents(2, Mode::Plain);
    // Rounding carries into a new digit.
    EXPECT_EQ(
        DecimalMath::divide(Decimal::fromString(QStringLiteral("0.99999")), Decimal(1), cents),
        Decimal(1));
    // Below half a cent: zero, with no sign left behind.
    EXPECT_EQ(DecimalMath::divide(Decimal(-1), Decimal(1000), cents), Decimal());
    EXPECT_EQ(DecimalMath::divide(Decimal(-1), Decimal(1000), cents).sign(), 0);
    // A half cent rounds away from zero.
    EXPECT_EQ(DecimalMath::divide(Decimal(-1), Decimal(200), cents),
              Decimal::fromString(QStringLiteral("-0.01")));
}

TEST(DecimalAddition, AgreesWithTheExactSumRoundedOnce) {
    std::mt19937_64 rng(4242);
    std::uniform_int_distribution<int> digits(1, 38);
    std::uniform_int_distribution<int> fineExponent(-45, -3);
    std::uniform_int_distribution<int> coarseExponent(-3, 6);
    std::uniform_int_distribution<int> coin(0, 1);
    const Mode modes[] = {Mode::Plain, Mode::Bankers, Mode::Up, Mode::Down};
    const short scales[] = {Decimal::kNoScale, 0, 2, 3};
    for (int i = 0; i < 3000; ++i) {
        // A long unrounded line amount meets a running sum already at the scale, as totals do.
        const std::string da = randomDigits(rng, digits(rng));
        const std::string db = randomDigits(rng, 1 + digits(rng) % 12);
        const int ea = fineExponent(rng);
        const int eb = i % 3 == 0 ? fineExponent(rng) : coarseExponent(rng);
        const bool na = coin(rng) != 0;
        const bool nb = coin(rng) != 0;
        const Decimal a = Decimal::fromString(QString::fromStdString(plainText(na, da, ea)));
        const Decimal b = Decimal::fromString(QString::fromStdString(plainText(nb, db, eb)));
        const int e = std::min(ea, eb);
        const Big sum =
            (na ? -1 : 1) * Big(da) * pow10(ea - e) + (nb ? -1 : 1) * Big(db) * pow10(eb - e);
        for (const Mode mode : modes) {
            for (const short scale : scales) {
                const int minExponent = scale == Decimal::kNoScale ? -128 : -scale;
                const Expected want = reference(sum < 0, abs(sum), e, Big(1), 0, minExponent, mode);
                RecordingBehavior behavior(scale, mode);
                const std::string context = plainText(na, da, ea) + " + " + plainText(nb, db, eb) +
                                            " mode " + std::to_string(int(mode)) + " scale " +
                                            std::to_string(scale);
                ASSERT_EQ(DecimalMath::add(a, b, behavior),
                          Decimal::fromString(QString::fromStdString(want.text)))
                    << context;
                ASSERT_EQ(DecimalMath::add(b, a, behavior),
                          Decimal::fromString(QString::fromStdString(want.text)))
                    << context;
                ASSERT_EQ(behavior.last == Error::LossOfPrecision, want.lossOfPrecision) << context;
                ASSERT_EQ(behavior.last == Error::Overflow, want.overflow) << context;
            }
        }
    }
}

TEST(DecimalMultiplication, AgreesWithTheExactProductRoundedOnce) {
    std::mt19937_64 rng(9001);
    std::uniform_int_distribution<int> digits(1, 38);
    std::uniform_int_distribution<int> exponent(-40, 4);
    std::uniform_int_distribution<int> coin(0, 1);
    const Mode modes[] = {Mode::Plain, Mode::Bankers, Mode::Up, Mode::Down};
    const short scales[] = {Decimal::kNoScale, 0, 2, 3};
    for (int i = 0; i < 3000; ++i) {
        // Long line totals times short rates, and long times long, across the 128-bit edge.
        const std::string da = randomDigits(rng, digits(rng));
        const std::string db = randomDigits(rng, i % 2 == 0 ? 1 + digits(rng) % 4 : digits(rng));
        const int ea = below38(exponent(rng), da);
        const int eb = below38(exponent(rng) / 4, db);
        const bool na = coin(rng) != 0;
        const bool nb = coin(rng) != 0;
        const Decimal a = Decimal::fromString(QString::fromStdString(plainText(na, da, ea)));
        const Decimal b = Decimal::fromString(QString::fromStdString(plainText(nb, db, eb)));
        const Big product = Big(da) * Big(db);
        for (const Mode mode : modes) {
            for (const short scale : scales) {
                const int minExponent = scale == Decimal::kNoScale ? -128 : -scale;
                const Expected want =
                    reference(na != nb, product, ea + eb, Big(1), 0, minExponent, mode);
                RecordingBehavior behavior(scale, mode);
                ASSERT_EQ(DecimalMath::multiply(a, b, behavior),
                          Decimal::fromString(QString::fromStdString(want.text)))
                    << plainText(na, da, ea) << " * " << plainText(nb, db, eb) << " mode "
                    << int(mode) << " scale " << scale;
                ASSERT_EQ(behavior.last == Error::LossOfPrecision, want.lossOfPrecision);
                ASSERT_EQ(behavior.last == Error::Overflow, want.overflow);
            }
        }
    }
}

TEST(DecimalMultiplication, AProductOf39DigitsCanLoseEveryDigit) {
    // 0.01799…97 (39 digits, still below 2^128) rounded to tenths: nothing survives but the
    // rounding direction.
    const Decimal a = Decimal::fromString(QStringLiteral("0.005") + QString(37, QLatin1Char('9')));
    const Decimal three(3);
    EXPECT_EQ(DecimalMath::multiply(a, three, RecordingBehavior(1, Mode::Plain)), Decimal());
    EXPECT_EQ(DecimalMath::multiply(a, three, RecordingBehavior(1, Mode::Up)),
              Decimal::fromString(QStringLiteral("0.1")));
    EXPECT_EQ(DecimalMath::multiply(-a, three, RecordingBehavior(1, Mode::Down)),
              Decimal::fromString(QStringLiteral("-0.1")));
    EXPECT_EQ(DecimalMath::multiply(a, three, RecordingBehavior(3, Mode::Plain)),
              Decimal::fromString(QStringLiteral("0.018")));
}
