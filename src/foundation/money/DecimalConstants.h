#pragma once

#include "Decimal.h"

// Constants of the decimal type, built from text so they are exact. Functions rather than
// variables, so they are safe to use during static initialisation of other files.
namespace DecimalConstants {

// Seconds in an hour: 3600.
inline const Decimal &hour() {
    static const Decimal value = Decimal::fromString(u"3600");
    return value;
}

// Percent to fraction: 100.
inline const Decimal &hundred() {
    static const Decimal value = Decimal::fromString(u"100");
    return value;
}

inline const Decimal &two() {
    static const Decimal value = Decimal::fromString(u"2");
    return value;
}

} // namespace DecimalConstants
