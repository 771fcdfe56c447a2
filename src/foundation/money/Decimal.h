#pragma once

#include <QMetaType>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <compare>
#include <cstdint>
#include <optional>

// An exact decimal number: a signed coefficient of at most 38 significant digits and a
// decimal exponent, plus a not-a-number value. Money never passes through binary floating
// point; text conversions are exact in both directions. Values lie below 10^38 in magnitude
// and have no digit finer than 10^-128: the whole part of a value is never rounded, and every
// value is written in plain notation with at most 38 significant digits.
class Decimal {
public:
    enum class RoundingMode {
        Plain,   // nearest, ties away from zero
        Down,    // towards negative infinity
        Up,      // towards positive infinity
        Bankers, // nearest, ties to even
    };
    enum class CalculationError { None, LossOfPrecision, Underflow, Overflow, DivideByZero };

    static constexpr int kMaxDigits = 38;
    static constexpr short kNoScale = 32767;

    Decimal() = default; // zero
    Decimal(int value);
    Decimal(long long value);
    Decimal(long value)
        : Decimal(static_cast<long long>(value)) {}

    static Decimal notANumber();
    // Locale-free text: optional sign, digits with an optional '.' fraction, optional exponent
    // ("e-3"). Anything else, including the empty text and a value of 10^38 or more, is
    // not-a-number. Fraction digits past the 38th significant one are rounded (plain).
    static Decimal fromString(QStringView text);
    // As fromString, but with the given character as the decimal separator.
    static Decimal fromString(QStringView text, QChar decimalSeparator);
    // mantissa * 10^exponent
    static Decimal fromParts(long long mantissa, int exponent);
    // Only where a value is compared "as a double"; never for arithmetic.
    static Decimal fromDouble(double value);

    bool isNaN() const;
    bool isZero() const;
    bool isNegative() const;
    int sign() const; // -1, 0, 1; 0 for not-a-number

    // Canonical text: plain notation with '.', no exponent, no trailing fraction zeros,
    // "NaN" for not-a-number. fromString(d.toString()) == d for every d.
    QString toString() const;
    double toDouble() const;
    long long toLongLong() const; // truncated towards zero, clamped

    // Exact arithmetic. A result of 10^38 or more overflows: not-a-number. Digits of the
    // fraction past the 38th significant one are rounded (plain), as a quotient must be.
    // Division by zero answers not-a-number unless a behaviour says otherwise.
    Decimal operator+(const Decimal &other) const;
    Decimal operator-(const Decimal &other) const;
    Decimal operator*(const Decimal &other) const;
    Decimal operator/(const Decimal &other) const;
    Decimal operator-() const;
    Decimal abs() const;

    Decimal rounded(int scale, RoundingMode mode) const;

    // Comparison by value: 1.50 == 1.5. Not-a-number compares equal to itself and below
    // every number, so that sorting is total.
    std::strong_ordering operator<=>(const Decimal &other) const;
    bool operator==(const Decimal &other) const;

    // QVariant bridge: a variant holding a Decimal, an integer, a double or text.
    // Not-a-number for anything else (or an invalid variant).
    static Decimal fromVariant(const QVariant &value);
    QVariant toVariant() const { return QVariant::fromValue(*this); }

private:
    // Filled in by the implementation; see Decimal.cpp.
    friend class DecimalAccess;
    // The coefficient (|value| < 10^38) is kept as two 64-bit halves rather than one __int128:
    // with 8-byte alignment a Decimal fits inside a QVariant without a heap allocation, which
    // matters for documents with hundreds of thousands of amounts.
    __int128 coefficient() const {
        return static_cast<__int128>(
            (static_cast<unsigned __int128>(static_cast<quint64>(m_high)) << 64) | m_low);
    }
    void setCoefficient(__int128 value) {
        m_low = static_cast<quint64>(value);
        m_high = static_cast<qint64>(value >> 64);
    }
    quint64 m_low = 0;
    qint64 m_high = 0;
    int m_exponent = 0;
    bool m_nan = false;
};

// The rounding policy of an arithmetic operation, as a currency or a fixed scale demands.
class DecimalBehavior {
public:
    virtual ~DecimalBehavior() = default;
    virtual Decimal::RoundingMode roundingMode() const = 0;
    virtual short scale() const = 0;
    // The value to answer instead when an operation fails; nullopt lets the operation's own
    // result stand.
    virtual std::optional<Decimal> exceptionDuringOperation(Decimal::CalculationError error,
                                                            const Decimal &left,
                                                            const Decimal &right) const = 0;
};

// Operations under a behaviour: exact result, then rounding to the behaviour's scale. A result
// that needs more than 38 digits down to the scale overflows (the behaviour is asked, and
// by default the result is not-a-number) instead of being rounded above the places the scale
// keeps. Without a scale, as the plain operators.
namespace DecimalMath {
Decimal add(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior);
Decimal subtract(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior);
Decimal multiply(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior);
Decimal divide(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior);
Decimal round(const Decimal &a, const DecimalBehavior &behavior);
} // namespace DecimalMath

size_t qHash(const Decimal &value, size_t seed = 0);

Q_DECLARE_METATYPE(Decimal)
