#include "Decimal.h"

#include <QHashFunctions>

#include <boost/multiprecision/cpp_int.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

// Values are kept normalized: no trailing zeros in the coefficient, zero is 0e0 and
// not-a-number has a zero coefficient. Equal values therefore have equal fields.
//
// Every operation builds an exact (or exactly-sticky) intermediate, then one function,
// finish(), rounds it to 38 digits and to the scale asked for, in one step. Small operands take
// a 64/128-bit fast path; the rest go through 512-bit integers.
//
// The range is that of the documents' amounts: below 10^38 in magnitude, nothing finer than
// 10^-128. A result beyond it overflows and is not-a-number; so is a result that a scale asks
// to keep to more than 38 digits, since rounding it anywhere else would change the amount
// above the places the currency keeps.

namespace {

using UInt128 = unsigned __int128;
using Wide = boost::multiprecision::uint512_t;
using Mode = Decimal::RoundingMode;
using Error = Decimal::CalculationError;

constexpr int kMinExponent = -128;
// The leading digit of the largest value stands for 10^37: whole parts have 38 digits at most.
constexpr int kMaxLeadingPosition = Decimal::kMaxDigits - 1;
constexpr int kWidePowers = 155;
// A dividend of 38 digits shifted this far still fits 512 bits.
constexpr int kMaxDivisionShift = 115;
// Scales finer than this are taken as none: the digits down to them would not fit the 512-bit
// intermediates, and no currency comes near.
constexpr int kFinestScale = 100;

bool isScaled(int minExponent) {
    return minExponent >= -kFinestScale;
}

constexpr std::array<UInt128, 39> makePow10() {
    std::array<UInt128, 39> table{};
    UInt128 value = 1;
    for (auto &entry : table) {
        entry = value;
        value *= 10;
    }
    return table;
}
constexpr auto kPow10 = makePow10();

const std::array<Wide, kWidePowers> &widePow10() {
    static const std::array<Wide, kWidePowers> table = [] {
        std::array<Wide, kWidePowers> t;
        Wide value = 1;
        for (auto &entry : t) {
            entry = value;
            value *= 10;
        }
        return t;
    }();
    return table;
}

int bitWidth(UInt128 v) {
    const auto hi = static_cast<uint64_t>(v >> 64);
    if (hi != 0)
        return 128 - __builtin_clzll(hi);
    const auto lo = static_cast<uint64_t>(v);
    return lo == 0 ? 0 : 64 - __builtin_clzll(lo);
}

// Decimal digits of a non-zero magnitude below 2^127.
int digitCount(UInt128 v) {
    const int t = (bitWidth(v) * 1233) >> 12;
    return t + (v >= kPow10[t] ? 1 : 0);
}

int digitCount(const Wide &v) {
    const int t = ((static_cast<int>(boost::multiprecision::msb(v)) + 1) * 1233) >> 12;
    return t + (v >= widePow10()[t] ? 1 : 0);
}

struct Outcome {
    Decimal value;
    Error error = Error::None;
};

bool roundsAway(Mode mode, bool negative, bool quotientOdd, int versusHalf, bool inexact) {
    switch (mode) {
    case Mode::Plain:
        return versusHalf >= 0;
    case Mode::Bankers:
        return versusHalf > 0 || (versusHalf == 0 && quotientOdd);
    case Mode::Up:
        return inexact && !negative;
    case Mode::Down:
        return inexact && negative;
    }
    return false;
}

// m / 10^k with a constant divisor per case, which compiles to a multiply instead of a divide.
uint64_t dividePow10(uint64_t m, int k) {
    switch (k) {
    case 1:
        return m / 10;
    case 2:
        return m / 100;
    case 3:
        return m / 1000;
    case 4:
        return m / 10000;
    case 5:
        return m / 100000;
    case 6:
        return m / 1000000;
    default:
        return m / static_cast<uint64_t>(kPow10[k]);
    }
}

// (high:low) / divisor where high < divisor, so that the quotient fits 64 bits.
uint64_t divide128By64(uint64_t high, uint64_t low, uint64_t divisor, uint64_t &remainder) {
#if defined(__x86_64__)
    uint64_t quotient;
    __asm__("divq %4" : "=a"(quotient), "=d"(remainder) : "a"(low), "d"(high), "rm"(divisor));
    return quotient;
#else
    const UInt128 dividend = (UInt128(high) << 64) | low;
    remainder = static_cast<uint64_t>(dividend % divisor);
    return static_cast<uint64_t>(dividend / divisor);
#endif
}

// n / divisor for a divisor below 2^64, in two hardware steps instead of a library call.
UInt128 divideBy64(UInt128 n, uint64_t divisor, uint64_t &remainder) {
    const uint64_t high = divide128By64(0, static_cast<uint64_t>(n >> 64), divisor, remainder);
    const uint64_t low = divide128By64(remainder, static_cast<uint64_t>(n), divisor, remainder);
    return (UInt128(high) << 64) | low;
}

struct Dropped {
    UInt128 kept;
    bool inexact;
};

// Divides the magnitude by 10^k (k >= 1) and rounds the quotient by the mode.
Dropped dropDigits(UInt128 mag, int k, int digits, Mode mode, bool negative) {
    if (k > digits) // below a tenth of the unit: never a tie, never at or past half
        return {roundsAway(mode, negative, false, -1, true) ? UInt128(1) : UInt128(0), true};
    UInt128 q;
    UInt128 r;
    UInt128 half;
    if ((mag >> 64) == 0 && k <= 19) {
        const auto m = static_cast<uint64_t>(mag);
        const auto p = static_cast<uint64_t>(kPow10[k]);
        q = dividePow10(m, k);
        r = m - static_cast<uint64_t>(q) * p;
        half = p / 2;
    } else if (k <= 19) {
        const auto p = static_cast<uint64_t>(kPow10[k]);
        uint64_t remainder = 0;
        q = divideBy64(mag, p, remainder);
        r = remainder;
        half = p / 2;
    } else if (k < 39) {
        // Two hardware steps: first the low 19 digits, then the rest.
        uint64_t low = 0;
        uint64_t high = 0;
        const UInt128 upper = divideBy64(mag, static_cast<uint64_t>(kPow10[19]), low);
        q = divideBy64(upper, static_cast<uint64_t>(kPow10[k - 19]), high);
        r = UInt128(high) * kPow10[19] + low;
        half = kPow10[k] / 2;
    } else {
        // Every digit goes, and 128 bits stay below half of 10^39.
        return {roundsAway(mode, negative, false, -1, mag != 0) ? UInt128(1) : UInt128(0),
                mag != 0};
    }
    const int versusHalf = r < half ? -1 : (r == half ? 0 : 1);
    const bool inexact = r != 0;
    if (roundsAway(mode, negative, (q & 1) != 0, versusHalf, inexact))
        ++q;
    return {q, inexact};
}

Dropped dropDigits(const Wide &mag, int k, int digits, Mode mode, bool negative) {
    if (k > digits)
        return {roundsAway(mode, negative, false, -1, true) ? UInt128(1) : UInt128(0), true};
    const Wide &p = widePow10()[k];
    Wide q = mag / p;
    const Wide r = mag - q * p;
    const Wide half = p / 2;
    const int versusHalf = r < half ? -1 : (r == half ? 0 : 1);
    const bool inexact = r != 0;
    if (roundsAway(mode, negative, bit_test(q, 0), versusHalf, inexact))
        ++q;
    return {static_cast<UInt128>(q), inexact};
}

// mag / 10^k (1 <= k < digits) rounded by the mode, kept wide: the quotient may need more
// than 128 bits.
Wide roundedWide(const Wide &mag, int k, Mode mode, bool negative) {
    const Wide &p = widePow10()[k];
    Wide q = mag / p;
    const Wide r = mag - q * p;
    const Wide half = p / 2;
    const int versusHalf = r < half ? -1 : (r == half ? 0 : 1);
    if (roundsAway(mode, negative, bit_test(q, 0), versusHalf, r != 0))
        ++q;
    return q;
}

UInt128 toUInt128(UInt128 v) {
    return v;
}
UInt128 toUInt128(const Wide &v) {
    return static_cast<UInt128>(v);
}

} // namespace

class DecimalAccess {
public:
    static Decimal make(bool negative, UInt128 mag, int exponent) {
        Decimal d;
        d.setCoefficient(negative ? -static_cast<__int128>(mag) : static_cast<__int128>(mag));
        d.m_exponent = exponent;
        return d;
    }
    static bool negative(const Decimal &d) { return d.coefficient() < 0; }
    static UInt128 magnitude(const Decimal &d) {
        return static_cast<UInt128>(d.coefficient() < 0 ? -d.coefficient() : d.coefficient());
    }
    static int exponent(const Decimal &d) { return d.m_exponent; }
    static bool fitsInt64(const Decimal &d) {
        return d.coefficient() > -(__int128(1) << 63) && d.coefficient() < (__int128(1) << 63);
    }

    // Rounds mag * 10^exponent to at most 38 digits and to no finer than 10^minExponent,
    // then normalizes.
    template <class Mag>
    static Outcome finish(bool negative, const Mag &mag, int exponent, Mode mode, int minExponent) {
        if (mag == 0)
            return {};
        const int digits = digitCount(mag);
        if (isScaled(minExponent))
            return finishAtScale(negative, mag, exponent, digits, mode, minExponent);
        const int forDigits = exponent + digits - Decimal::kMaxDigits;
        const int keep = std::max({exponent, forDigits, minExponent, kMinExponent});
        Error error = Error::None;
        UInt128 kept;
        if (keep > exponent) {
            const Dropped dropped = dropDigits(mag, keep - exponent, digits, mode, negative);
            kept = dropped.kept;
            if (dropped.inexact && keep == forDigits && keep > minExponent)
                error = Error::LossOfPrecision;
            if (kept == 0 && keep == kMinExponent && keep > minExponent)
                error = Error::Underflow;
        } else {
            kept = toUInt128(mag);
        }
        const Decimal result = normalized(negative, kept, keep);
        return {result, result.m_nan ? Error::Overflow : error};
    }

    // Rounds to the scale alone: the result holds every digit down to it, or it overflows.
    template <class Mag>
    static Outcome finishAtScale(bool negative, const Mag &mag, int exponent, int digits, Mode mode,
                                 int minExponent) {
        const int keep = std::max(exponent, minExponent);
        const int k = keep - exponent;
        if (digits - k <= Decimal::kMaxDigits) {
            // 38 digits at most, or 39 when rounding carries, and those end in zeros.
            const UInt128 kept =
                k > 0 ? dropDigits(mag, k, digits, mode, negative).kept : toUInt128(mag);
            const Decimal result = normalized(negative, kept, keep);
            return {result, result.m_nan ? Error::Overflow : Error::None};
        }
        // More digits down to the scale than a value holds: only trailing zeros can save it.
        Wide kept = k > 0 ? roundedWide(Wide(mag), k, mode, negative) : Wide(mag);
        int at = keep;
        while (kept != 0 && kept % 10 == 0) {
            kept /= 10;
            ++at;
        }
        if (kept != 0 && digitCount(kept) > Decimal::kMaxDigits)
            return {Decimal::notANumber(), Error::Overflow};
        const Decimal result = normalized(negative, static_cast<UInt128>(kept), at);
        return {result, result.m_nan ? Error::Overflow : Error::None};
    }

    static Decimal normalized(bool negative, UInt128 mag, int exponent) {
        if (mag == 0)
            return Decimal();
        if ((mag >> 64) == 0) {
            auto small = static_cast<uint64_t>(mag);
            while (small % 10 == 0) {
                small /= 10;
                ++exponent;
            }
            mag = small;
        } else {
            uint64_t remainder = 0;
            for (UInt128 q = divideBy64(mag, 10, remainder); remainder == 0;
                 q = divideBy64(mag, 10, remainder)) {
                mag = q;
                ++exponent;
            }
        }
        if (exponent > kMaxLeadingPosition - Decimal::kMaxDigits &&
            exponent + digitCount(mag) - 1 > kMaxLeadingPosition)
            return Decimal::notANumber();
        return make(negative, mag, exponent);
    }

    static Outcome add(const Decimal &a, const Decimal &b, Mode mode, int minExponent);
    static Outcome multiply(const Decimal &a, const Decimal &b, Mode mode, int minExponent);
    static Outcome divide(const Decimal &a, const Decimal &b, Mode mode, int minExponent);
    static std::optional<Outcome> divideNarrow(const Decimal &a, const Decimal &b, Mode mode,
                                               int minExponent);
    static Outcome round(const Decimal &a, Mode mode, int minExponent) {
        if (a.isNaN())
            return {a};
        // Stored values have at most 38 digits and no trailing zeros: already at the scale
        // means nothing to round (sums start from zero, so this is the first step of each).
        if (a.m_exponent >= minExponent && a.m_exponent >= kMinExponent)
            return {a};
        return finish(negative(a), magnitude(a), a.m_exponent, mode, minExponent);
    }
    static Decimal parse(QStringView text, QChar separator);
    static size_t hash(const Decimal &d, size_t seed) {
        const auto bits = static_cast<UInt128>(d.coefficient());
        return qHashMulti(seed, d.m_nan, static_cast<quint64>(bits),
                          static_cast<quint64>(bits >> 64), d.m_exponent);
    }

private:
    static Decimal guardAndSticky(const Decimal &d, int guard);
    static Outcome addExact(const Decimal &a, const Decimal &b, Mode mode, int minExponent);
    static Outcome addWide(const Decimal &a, const Decimal &b, Mode mode, int minExponent);
};

Outcome DecimalAccess::add(const Decimal &a, const Decimal &b, Mode mode, int minExponent) {
    if (a.m_nan || b.m_nan)
        return {Decimal::notANumber()};
    if (a.coefficient() == 0)
        return round(b, mode, minExponent);
    if (b.coefficient() == 0)
        return round(a, mode, minExponent);
    if (minExponent > kMinExponent) {
        const int guard = minExponent - 1;
        if (a.m_exponent < guard && b.m_exponent >= guard)
            return addExact(guardAndSticky(a, guard), b, mode, minExponent);
        if (b.m_exponent < guard && a.m_exponent >= guard)
            return addExact(a, guardAndSticky(b, guard), mode, minExponent);
    }
    return addExact(a, b, mode, minExponent);
}

// A term with digits below the guard digit, added to one without, only decides through
// whether anything is there: both sums then lie between the same two multiples of the guard
// unit, so rounding at the scale (or coarser) ends the same, exactness included. The term
// keeps its digits down to the guard and one sticky digit under it (left unnormalized).
Decimal DecimalAccess::guardAndSticky(const Decimal &d, int guard) {
    const UInt128 mag = magnitude(d);
    const int k = guard - d.m_exponent;
    const UInt128 kept = k > Decimal::kMaxDigits ? 0 : mag / kPow10[k];
    const bool dropped = k > Decimal::kMaxDigits || kept * kPow10[k] != mag;
    return make(negative(d), kept * 10 + (dropped ? 1 : 0), guard - 1);
}

Outcome DecimalAccess::addExact(const Decimal &a, const Decimal &b, Mode mode, int minExponent) {
    const int diff = a.m_exponent - b.m_exponent;
    if (fitsInt64(a) && fitsInt64(b) && diff <= 18 && diff >= -18) {
        const int e = std::min(a.m_exponent, b.m_exponent);
        const __int128 sum = a.coefficient() * static_cast<__int128>(kPow10[a.m_exponent - e]) +
                             b.coefficient() * static_cast<__int128>(kPow10[b.m_exponent - e]);
        const bool neg = sum < 0;
        return finish(neg, static_cast<UInt128>(neg ? -sum : sum), e, mode, minExponent);
    }
    return addWide(a, b, mode, minExponent);
}

Outcome DecimalAccess::addWide(const Decimal &a, const Decimal &b, Mode mode, int minExponent) {
    struct Term {
        bool negative;
        UInt128 mag;
        int exponent;
        int lead() const { return exponent + digitCount(mag) - 1; }
    };
    Term big{negative(a), magnitude(a), a.m_exponent};
    Term small{negative(b), magnitude(b), b.m_exponent};
    if (small.lead() > big.lead())
        std::swap(big, small);
    // A term far below the last digit that can survive only decides the rounding direction;
    // any magnitude below that digit's hundredth decides it the same way. Under a scale the
    // digits down to it survive or the sum overflows.
    int cut = big.lead() - 40;
    if (isScaled(minExponent))
        cut = std::min(cut, minExponent - 2);
    if (small.lead() < cut)
        small = {small.negative, 1, cut - 1};
    const int e = std::min(big.exponent, small.exponent);
    const Wide x = Wide(big.mag) * widePow10()[big.exponent - e];
    const Wide y = Wide(small.mag) * widePow10()[small.exponent - e];
    if (big.negative == small.negative)
        return finish(big.negative, Wide(x + y), e, mode, minExponent);
    if (x >= y)
        return finish(big.negative, Wide(x - y), e, mode, minExponent);
    return finish(small.negative, Wide(y - x), e, mode, minExponent);
}

Outcome DecimalAccess::multiply(const Decimal &a, const Decimal &b, Mode mode, int minExponent) {
    if (a.isNaN() || b.isNaN())
        return {Decimal::notANumber()};
    const bool neg = negative(a) != negative(b);
    const int e = a.m_exponent + b.m_exponent;
    // A product below 2^128 (an unrounded line total times a tax rate, say) stays in 128 bits.
    if (bitWidth(magnitude(a)) + bitWidth(magnitude(b)) <= 128)
        return finish(neg, magnitude(a) * magnitude(b), e, mode, minExponent);
    return finish(neg, Wide(Wide(magnitude(a)) * magnitude(b)), e, mode, minExponent);
}

Outcome DecimalAccess::divide(const Decimal &a, const Decimal &b, Mode mode, int minExponent) {
    if (a.isNaN() || b.isNaN())
        return {Decimal::notANumber()};
    if (b.isZero())
        return {Decimal::notANumber(), Error::DivideByZero};
    if (a.isZero())
        return {};
    const UInt128 ma = magnitude(a);
    const UInt128 mb = magnitude(b);
    if (const auto fast = divideNarrow(a, b, mode, minExponent))
        return *fast;
    // Scale the dividend so the quotient has at least 39 digits, and reaches below the scale
    // asked for; the remainder becomes a sticky digit, so one rounding step gives the
    // correctly rounded result.
    int shift = Decimal::kMaxDigits + 1 + digitCount(mb) - digitCount(ma);
    const bool scaled = isScaled(minExponent);
    if (scaled) // a guard digit of the quotient below the scale, and the sticky one under it
        shift = std::max(shift, a.m_exponent - b.m_exponent - minExponent + 1);
    const bool capped = shift > kMaxDivisionShift;
    shift = std::min(shift, kMaxDivisionShift);
    const Wide x = Wide(ma) * widePow10()[shift];
    const Wide q = x / mb;
    const bool inexact = q * mb != x;
    // The scale lies so far below the quotient's first digit that an inexact quotient holds
    // far more than 38 digits down to it.
    if (scaled && capped && inexact)
        return {Decimal::notANumber(), Error::Overflow};
    const Wide withSticky = q * 10 + (inexact ? 1 : 0);
    return finish(negative(a) != negative(b), withSticky, a.m_exponent - b.m_exponent - shift - 1,
                  mode, minExponent);
}

// Most divisions in the program divide by a small number (an hour in seconds, a rate). Long
// division in 19-digit steps gives the 38-digit quotient and its exact remainder in 128 bits;
// the remainder against half the divisor then rounds exactly as the wide path would.
std::optional<Outcome> DecimalAccess::divideNarrow(const Decimal &a, const Decimal &b, Mode mode,
                                                   int minExponent) {
    const UInt128 ma = magnitude(a);
    const UInt128 mb = magnitude(b);
    if ((mb >> 64) != 0 || minExponent < kMinExponent)
        return std::nullopt;
    // The quotient's leading digit sits at lead or lead - 1 (relative to the unit of a / b).
    const int lead = digitCount(ma) - digitCount(mb);
    int shift = Decimal::kMaxDigits - 1 - lead; // quotient of 37 or 38 digits
    const int floorExponent = std::max(minExponent, kMinExponent);
    const int baseExponent = a.m_exponent - b.m_exponent;
    if (baseExponent - shift < floorExponent)
        shift = baseExponent - floorExponent; // the scale asked for is coarser than 38 digits
    if (shift < 0)
        return std::nullopt;
    const auto divisor = static_cast<uint64_t>(mb);
    uint64_t r = 0;
    UInt128 q = divideBy64(ma, divisor, r);
    // Appends up to count digits; an exact quotient stops early, since the rest are zeros.
    auto moreDigits = [&](int count) {
        while (count > 0 && r != 0) {
            const int step = std::min(count, 19);
            const UInt128 t = UInt128(r) * kPow10[step];
            q = q * kPow10[step] +
                divide128By64(static_cast<uint64_t>(t >> 64), static_cast<uint64_t>(t), divisor, r);
            count -= step;
        }
        return count;
    };
    int exponent = baseExponent - shift + moreDigits(shift);
    const bool byDigits = exponent - 1 >= floorExponent;
    if (byDigits && r != 0 && q < kPow10[Decimal::kMaxDigits - 1]) { // 37 digits: one more
        moreDigits(1);
        --exponent;
    }
    const bool fullWidth = q >= kPow10[Decimal::kMaxDigits - 1];
    const bool neg = negative(a) != negative(b);
    const bool inexact = r != 0;
    // 38 digits end above the scale and more follow: whether they fit at the scale is the
    // wide path's to find out.
    if (inexact && isScaled(minExponent) && exponent > floorExponent)
        return std::nullopt;
    const UInt128 twice = UInt128(r) * 2;
    const int versusHalf = twice < mb ? -1 : (twice == mb ? 0 : 1);
    if (roundsAway(mode, neg, (q & 1) != 0, versusHalf, inexact))
        ++q;
    if (q == 0)
        return Outcome{};
    const Decimal result = normalized(neg, q, exponent);
    Error error = Error::None;
    if (result.m_nan)
        error = Error::Overflow;
    else if (inexact && fullWidth && exponent > minExponent)
        error = Error::LossOfPrecision;
    return Outcome{result, error};
}

// Locale-free parser; see Decimal::fromString.
Decimal DecimalAccess::parse(QStringView text, QChar separator) {
    qsizetype i = 0;
    const qsizetype n = text.size();
    bool neg = false;
    if (i < n && (text[i] == u'-' || text[i] == u'+'))
        neg = text[i++] == u'-';
    UInt128 mag = 0;
    int significant = 0;
    int exponent = 0;
    int firstDropped = -1;
    bool sticky = false;
    bool anyDigit = false;
    bool inFraction = false;
    for (; i < n; ++i) {
        const QChar c = text[i];
        if (c == separator && !inFraction) {
            inFraction = true;
            continue;
        }
        if (c < u'0' || c > u'9')
            break;
        anyDigit = true;
        const int digit = c.unicode() - u'0';
        if (significant < Decimal::kMaxDigits) {
            if (significant > 0 || digit != 0) {
                mag = mag * 10 + digit;
                ++significant;
            }
            if (inFraction)
                --exponent;
        } else {
            if (firstDropped < 0)
                firstDropped = digit;
            else
                sticky = sticky || digit != 0;
            if (!inFraction)
                ++exponent;
        }
    }
    if (!anyDigit)
        return Decimal::notANumber();
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        ++i;
        bool expNeg = false;
        if (i < n && (text[i] == u'-' || text[i] == u'+'))
            expNeg = text[i++] == u'-';
        if (i == n)
            return Decimal::notANumber();
        int value = 0;
        for (; i < n && text[i] >= u'0' && text[i] <= u'9'; ++i)
            value = std::min(value * 10 + (text[i].unicode() - u'0'), 100000);
        exponent += expNeg ? -value : value;
    }
    if (i != n)
        return Decimal::notANumber();
    if (firstDropped < 0)
        return finish(neg, mag, exponent, Mode::Plain, kMinExponent).value;
    const Wide wide = Wide(mag) * 100 + firstDropped * 10 + (sticky ? 1 : 0);
    return finish(neg, wide, exponent - 2, Mode::Plain, kMinExponent).value;
}

namespace {

Decimal withBehavior(const Outcome &outcome, const Decimal &a, const Decimal &b,
                     const DecimalBehavior &behavior) {
    if (outcome.error != Error::None) {
        if (auto answer = behavior.exceptionDuringOperation(outcome.error, a, b))
            return *answer;
    }
    return outcome.value;
}

int minExponentOf(const DecimalBehavior &behavior) {
    const short scale = behavior.scale();
    return scale == Decimal::kNoScale ? kMinExponent : -scale;
}

[[maybe_unused]] const int kRegistered = [] {
    qRegisterMetaType<Decimal>();
    QMetaType::registerConverter<Decimal, QString>(&Decimal::toString);
    QMetaType::registerConverter<Decimal, double>(&Decimal::toDouble);
    return 0;
}();

} // namespace

Decimal::Decimal(int value)
    : Decimal(static_cast<long long>(value)) {}

Decimal::Decimal(long long value) {
    const bool neg = value < 0;
    const UInt128 mag = neg ? UInt128(-(static_cast<__int128>(value))) : UInt128(value);
    *this = DecimalAccess::normalized(neg, mag, 0);
}

Decimal Decimal::notANumber() {
    Decimal d;
    d.m_nan = true;
    return d;
}

Decimal Decimal::fromString(QStringView text) {
    return DecimalAccess::parse(text, u'.');
}

Decimal Decimal::fromString(QStringView text, QChar decimalSeparator) {
    return DecimalAccess::parse(text, decimalSeparator);
}

Decimal Decimal::fromParts(long long mantissa, int exponent) {
    const bool neg = mantissa < 0;
    const UInt128 mag = neg ? UInt128(-(static_cast<__int128>(mantissa))) : UInt128(mantissa);
    return DecimalAccess::finish(neg, mag, exponent, Mode::Plain, kMinExponent).value;
}

bool Decimal::isNaN() const {
    return m_nan;
}
bool Decimal::isZero() const {
    return !m_nan && coefficient() == 0;
}
bool Decimal::isNegative() const {
    return !m_nan && coefficient() < 0;
}

int Decimal::sign() const {
    if (m_nan || coefficient() == 0)
        return 0;
    return coefficient() < 0 ? -1 : 1;
}

long long Decimal::toLongLong() const {
    if (m_nan || coefficient() == 0)
        return 0;
    const UInt128 mag = DecimalAccess::magnitude(*this);
    UInt128 whole;
    if (m_exponent >= 0) {
        const int digits = digitCount(mag);
        whole = digits + m_exponent > 20 ? ~UInt128(0) : mag * kPow10[m_exponent];
    } else {
        whole = -m_exponent > kMaxDigits ? 0 : mag / kPow10[-m_exponent];
    }
    constexpr auto maxValue = static_cast<UInt128>(std::numeric_limits<long long>::max());
    if (coefficient() < 0)
        return whole > maxValue ? std::numeric_limits<long long>::min()
                                : -static_cast<long long>(whole);
    return whole > maxValue ? std::numeric_limits<long long>::max() : static_cast<long long>(whole);
}

Decimal Decimal::operator+(const Decimal &other) const {
    return DecimalAccess::add(*this, other, Mode::Plain, kMinExponent).value;
}

Decimal Decimal::operator-(const Decimal &other) const {
    return *this + (-other);
}

Decimal Decimal::operator*(const Decimal &other) const {
    return DecimalAccess::multiply(*this, other, Mode::Plain, kMinExponent).value;
}

Decimal Decimal::operator/(const Decimal &other) const {
    return DecimalAccess::divide(*this, other, Mode::Plain, kMinExponent).value;
}

Decimal Decimal::operator-() const {
    Decimal d = *this;
    d.setCoefficient(-d.coefficient());
    return d;
}

Decimal Decimal::abs() const {
    return isNegative() ? -*this : *this;
}

Decimal Decimal::rounded(int scale, RoundingMode mode) const {
    const int minExponent = scale == kNoScale ? kMinExponent : -scale;
    return DecimalAccess::round(*this, mode, minExponent).value;
}

std::strong_ordering Decimal::operator<=>(const Decimal &other) const {
    if (m_nan || other.m_nan) {
        if (m_nan == other.m_nan)
            return std::strong_ordering::equal;
        return m_nan ? std::strong_ordering::less : std::strong_ordering::greater;
    }
    const int s = sign();
    if (s != other.sign() || s == 0)
        return s <=> other.sign();
    const UInt128 ma = DecimalAccess::magnitude(*this);
    const UInt128 mb = DecimalAccess::magnitude(other);
    const int leadA = m_exponent + digitCount(ma);
    const int leadB = other.m_exponent + digitCount(mb);
    std::strong_ordering magnitude = leadA <=> leadB;
    if (magnitude == std::strong_ordering::equal) {
        // Same leading position: aligning adds at most 37 digits to the shorter one.
        const int e = std::min(m_exponent, other.m_exponent);
        magnitude = ma * kPow10[m_exponent - e] <=> mb * kPow10[other.m_exponent - e];
    }
    return s > 0 ? magnitude : 0 <=> magnitude;
}

bool Decimal::operator==(const Decimal &other) const {
    return m_nan == other.m_nan && coefficient() == other.coefficient() &&
           m_exponent == other.m_exponent;
}

namespace DecimalMath {

Decimal add(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior) {
    const auto outcome = DecimalAccess::add(a, b, behavior.roundingMode(), minExponentOf(behavior));
    return withBehavior(outcome, a, b, behavior);
}

Decimal subtract(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior) {
    const auto outcome =
        DecimalAccess::add(a, -b, behavior.roundingMode(), minExponentOf(behavior));
    return withBehavior(outcome, a, b, behavior);
}

Decimal multiply(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior) {
    const auto outcome =
        DecimalAccess::multiply(a, b, behavior.roundingMode(), minExponentOf(behavior));
    return withBehavior(outcome, a, b, behavior);
}

Decimal divide(const Decimal &a, const Decimal &b, const DecimalBehavior &behavior) {
    const auto outcome =
        DecimalAccess::divide(a, b, behavior.roundingMode(), minExponentOf(behavior));
    return withBehavior(outcome, a, b, behavior);
}

Decimal round(const Decimal &a, const DecimalBehavior &behavior) {
    const auto outcome = DecimalAccess::round(a, behavior.roundingMode(), minExponentOf(behavior));
    return withBehavior(outcome, a, Decimal(), behavior);
}

} // namespace DecimalMath

size_t qHash(const Decimal &value, size_t seed) {
    return DecimalAccess::hash(value, seed);
}

static_assert(sizeof(Decimal) <= 24 && alignof(Decimal) <= alignof(double),
              "a Decimal must fit inside a QVariant without allocating");
