#include "Decimal.h"

#include <QLocale>
#include <QString>
#include <QVariant>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

// Decimal's conversions to and from text, doubles and variants; doubles go through their
// shortest text so that 0.1 stays 0.1.

namespace {

// The coefficient's digits without a sign.
std::string digitsOf(__int128 coefficient) {
    auto mag = static_cast<unsigned __int128>(coefficient < 0 ? -coefficient : coefficient);
    char buffer[48];
    char *end = buffer + sizeof buffer;
    char *p = end;
    do {
        *--p = static_cast<char>('0' + static_cast<int>(mag % 10));
        mag /= 10;
    } while (mag != 0);
    return std::string(p, end);
}

} // namespace

Decimal Decimal::fromDouble(double value) {
    if (!std::isfinite(value))
        return notANumber();
    return fromString(QString::number(value, 'g', QLocale::FloatingPointShortest));
}

QString Decimal::toString() const {
    if (m_nan)
        return QStringLiteral("NaN");
    std::string digits = digitsOf(coefficient());
    std::string text;
    if (m_exponent >= 0) {
        text = digits;
        if (coefficient() != 0)
            text.append(static_cast<size_t>(m_exponent), '0');
    } else {
        const long point = static_cast<long>(digits.size()) + m_exponent;
        if (point > 0)
            text = digits.substr(0, point) + '.' + digits.substr(point);
        else
            text = "0." + std::string(static_cast<size_t>(-point), '0') + digits;
    }
    if (coefficient() < 0)
        text.insert(text.begin(), '-');
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

double Decimal::toDouble() const {
    if (m_nan)
        return std::numeric_limits<double>::quiet_NaN();
    std::string text = digitsOf(coefficient()) + 'e' + std::to_string(m_exponent);
    const double magnitude = std::strtod(text.c_str(), nullptr);
    return coefficient() < 0 ? -magnitude : magnitude;
}

Decimal Decimal::fromVariant(const QVariant &value) {
    // The type read inline: QVariant::metaType() is a library call, and amounts are many.
    const QMetaType type = value.data_ptr().type();
    if (type == QMetaType::fromType<Decimal>())
        return value.value<Decimal>();
    switch (type.id()) {
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return Decimal(value.toLongLong());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return fromString(QString::number(value.toULongLong()));
    case QMetaType::Float:
    case QMetaType::Double:
        return fromDouble(value.toDouble());
    case QMetaType::QString:
        return fromString(value.toString());
    default:
        return notANumber();
    }
}
